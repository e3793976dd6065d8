// Charts of the control values while they stream: one for each quantity, over the same window.

import { button, element } from "./element.js";
import { Samples } from "./samples.js";
import { StreamChart } from "./streamchart.js";
import { isLamp, order, quantityOf } from "./quantities.js";

const WINDOWS = [[10, "10 s"], [30, "30 s"], [60, "1 min"], [120, "2 min"], [300, "5 min"], [600, "10 min"]];

/// Ten drawings a second look like a stream, and leave the machine to the camera.
const REDRAW = 100;

export class Charts {
    constructor(node, session) {
        this.samples = new Samples();
        this.window = 30;
        this.isPaused = false;
        this.chosen = new Set();
        this.known = "";
        this.charts = [];
        this.readings = [];
        this.#build(node);
        session.on("values", (samples) => this.samples.add(samples));
        session.on("state", ({ controls }) => this.#takeControls(controls));
        window.setInterval(() => this.#redraw(), REDRAW);
    }

    #build(node) {
        this.pause = button("Pause", () => this.setPaused(!this.isPaused), { id: "pause", "aria-pressed": "false" });
        const span = element("select", { id: "window", change: () => {
            this.window = Number(span.value);
            this.#redraw(true);
        } }, ...WINDOWS.map(([value, name]) => element("option", { value, selected: value === this.window }, name)));
        this.values = element("ul", { class: "readings" });
        this.list = element("div", { class: "charts" });
        node.append(
            element("div", { class: "chartbar" }, element("h2", {}, "Values"), this.pause,
                element("label", { for: "window" }, "Window"), span),
            element("details", { class: "which" }, element("summary", {}, "Which values"), this.values),
            this.list);
    }

    setPaused(isPaused) {
        this.isPaused = isPaused;
        this.pause.setAttribute("aria-pressed", String(isPaused));
        this.pause.textContent = isPaused ? "Go on" : "Pause";
    }

    #takeControls(controls) {
        const known = JSON.stringify(controls);
        if (known === this.known) {
            return;
        }
        this.known = known;
        this.samples.clear();
        this.controls = controls.map(({ id, name }, column) => {
            const called = name || `value ${id}`;
            return { column, name: called, ...quantityOf(called) };
        });
        const shown = this.controls.filter(({ name, isShown }) => isShown && !isLamp(name));
        this.chosen = new Set(shown.map(({ name }) => name));
        this.readings = this.controls.map((control) => this.#reading(control));
        this.values.replaceChildren(...this.readings.map(({ node }) => node));
        this.#makeCharts();
    }

    #reading({ name, column, toChart, format }) {
        const box = element("input", { type: "checkbox", checked: this.chosen.has(name), change: () => {
            this.chosen[box.checked ? "add" : "delete"](name);
            this.#makeCharts();
        } });
        const number = element("output", { "data-control": name });
        const node = element("li", {}, element("label", {}, box, name), number);
        return { node, show: () => {
            const value = this.samples.last(column);
            number.textContent = value === null ? "–" : format(toChart(value));
            number.value = number.textContent;
        } };
    }

    #makeCharts() {
        this.charts.forEach((chart) => chart.remove());
        const groups = Map.groupBy(this.controls.filter(({ name }) => this.chosen.has(name)), ({ title }) => title);
        const inOrder = [...groups].sort(([one], [other]) => order(one) - order(other));
        this.charts = inOrder.map(([title, controls]) => new StreamChart(title, controls, this.list,
            (range) => this.#zoom(range)));
        this.#redraw(true);
    }

    /// A person who zooms wants to look: the charts stop, all at the same range.
    #zoom(range) {
        this.setPaused(true);
        this.charts.forEach((chart) => chart.show(range));
    }

    #redraw(isForced = false) {
        if (document.hidden || (this.isPaused && !isForced)) {
            return;
        }
        this.readings.forEach(({ show }) => show());
        const { now } = this.samples;
        if (now === 0 || (now === this.drawn && !isForced)) {
            return;
        }
        this.drawn = now;
        this.charts.forEach((chart) => chart.draw(this.samples, [now - this.window, now]));
    }
}

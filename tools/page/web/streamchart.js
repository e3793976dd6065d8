// One chart of values that share a unit.

import { element } from "./element.js";
import { strokeOf } from "./quantities.js";

const { Dygraph } = window;

function colourOf(variable) {
    return getComputedStyle(document.documentElement).getPropertyValue(variable).trim();
}

/// What stands for a stroke pattern beside the chart.
function styleOf(dashes) {
    if (dashes === null) {
        return "solid";
    }
    return dashes[0] < 3 ? "dotted" : "dashed";
}

/// Since the server was started; there is nothing before.
function clock(seconds) {
    const whole = Math.round(seconds);
    return whole < 0 ? "" : `${Math.floor(whole / 60)}:${String(whole % 60).padStart(2, "0")}`;
}

export class StreamChart {
    /// @param controls {name, column, toChart, format} of one quantity @param onZoom gets the range, s
    constructor(title, controls, place, onZoom) {
        this.controls = controls;
        this.columns = controls.map(({ column }) => column);
        this.onZoom = onZoom;
        this.keys = controls.map(({ name }) => element("output", {}));
        this.plot = element("div", { class: "plot" });
        this.node = element("figure", { class: "stream", "data-chart": title },
            element("figcaption", {}, title,
                element("span", { class: "keys" }, ...controls.map(({ name }, index) => this.#key(name, index)))),
            this.plot);
        place.append(this.node);
        this.isSeen = false;
        this.sight = new IntersectionObserver(([entry]) => this.#takeSight(entry.isIntersecting));
        this.sight.observe(this.plot);
        this.resizing = new ResizeObserver(() => this.isSeen && this.chart?.resize());
        this.resizing.observe(this.plot);
    }

    #key(name, index) {
        const { colour, dashes } = strokeOf(name);
        const line = element("span", { class: `stroke ${styleOf(dashes)}` });
        line.style.setProperty("--stroke", `var(${colour})`);
        return element("span", { class: "key", "data-key": name }, line, name, " ", this.keys[index]);
    }

    /// Names in the chart are its own: those of a camera stand as text beside it.
    #make(rows, range) {
        const names = this.controls.map((_, index) => `y${index}`);
        const strokes = this.controls.map(({ name }) => strokeOf(name));
        this.chart = new Dygraph(this.plot, rows, {
            labels: ["t", ...names],
            colors: strokes.map(({ colour }) => colourOf(colour)),
            series: Object.fromEntries(names.map((name, index) => [name, {
                strokePattern: strokes[index].dashes, strokeWidth: strokes[index].width,
            }])),
            dateWindow: range,
            legend: "never",
            height: 130,
            axisLabelFontSize: 11,
            gridLineColor: colourOf("--line"),
            axisLineColor: colourOf("--line"),
            axes: {
                x: { axisLabelFormatter: clock, pixelsPerLabel: 60, axisLabelWidth: 44 },
                y: { pixelsPerLabel: 24, axisLabelWidth: 48 },
            },
            includeZero: false,
            animatedZooms: false,
            zoomCallback: (least, most) => this.onZoom([least, most]),
            highlightCallback: (_, __, points) => this.#read(points),
            unhighlightCallback: () => this.#read(null),
        });
    }

    /// Beside each name stands what the cursor is over, or else the newest value.
    #read(points) {
        this.cursor = points;
        this.controls.forEach(({ format }, index) => {
            const point = points?.find(({ name }) => name === `y${index}`);
            const value = points === null ? this.newest?.[index + 1] : point?.yval;
            this.keys[index].textContent = value === undefined ? "–" : format(value);
        });
    }

    draw(samples, range) {
        const rows = samples.rows(this.columns, range[0])
            .map(([t, ...values]) => [t, ...values.map((value, index) => this.controls[index].toChart(value))]);
        this.newest = rows.at(-1);
        this.#paint(rows, range);
        if (!this.cursor) {
            this.#read(null);
        }
    }

    /// What nobody sees is drawn once it is scrolled to.
    #paint(rows, range) {
        this.waiting = this.isSeen ? null : { rows, range };
        if (!this.isSeen) {
            return;
        }
        if (this.chart === undefined) {
            this.#make(rows, range);
        } else {
            this.chart.updateOptions({ file: rows, dateWindow: range });
        }
    }

    #takeSight(isSeen) {
        this.isSeen = isSeen;
        if (isSeen && this.waiting) {
            this.#paint(this.waiting.rows, this.waiting.range);
        }
    }

    /// @param range of what is drawn already
    show(range) {
        if (this.waiting) {
            this.waiting.range = range;
        } else {
            this.chart?.updateOptions({ dateWindow: range });
        }
    }

    remove() {
        this.sight.disconnect();
        this.resizing.disconnect();
        this.chart?.destroy();
        this.node.remove();
    }
}

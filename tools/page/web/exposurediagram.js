// How each exposure is split into gain and time, over the exposure tables of the mode in use and the time of a frame.

import { Drawing } from "./drawing.js";
import { element } from "./element.js";
import { setGainTimeAxes } from "./gaintime.js";
import { kneeLists, kneesOf, numbersOf, splitPath } from "./knees.js";
import { duration } from "./numbers.js";
import { ask } from "./server.js";

const MODULE = "kirodbarbitrationtable";
const EXPOSURES = ["short", "safe", "long"];
const DASHES = ["whole", "dashed", "dotted"];
const RADII = { short: 8, safe: 6, long: 3.5 };  // all are seen where they are one
const REDRAW = 200;

export class ExposureDiagram {
    constructor(node, session) {
        this.session = session;
        this.tables = [];
        this.columns = {};
        this.values = null;
        const words = "gain over time of the three exposures";
        this.drawing = new Drawing({ height: 210, words, draw: () => this.#draw() });
        this.cells = new Map();
        node.append(element("h2", {}, "Exposure"), this.#table(), this.drawing.node);
        session.on("state", (state) => this.#takeState(state));
        session.on("values", (samples) => {
            this.values = samples.at(-1).v;
        });
        session.on("edited", (module) => module === MODULE && this.#readTables());
        window.setInterval(() => this.#redraw(), REDRAW);
    }

    #table() {
        const row = (name) => {
            const cells = Array.from({ length: 3 }, () => element("td", {}, "–"));
            this.cells.set(name, cells);
            return element("tr", { class: name }, element("th", { scope: "row" }, name), ...cells);
        };
        const heads = ["", "time", "gain", "EV over safe"].map((name) => element("th", { scope: "col" }, name));
        return element("table", { class: "split" },
            element("thead", {}, element("tr", {}, ...heads)),
            element("tbody", {}, ...EXPOSURES.map(row)));
    }

    #takeState({ controls, active, camera }) {
        this.columns = Object.fromEntries(controls.map(({ name }, column) => [name, column]));
        this.mode = active.at(0) ?? "Default";
        if (camera.connected) {
            this.#readTables();
        }
    }

    async #readTables() {
        const answer = await ask("module", { mode: this.mode, module: MODULE }).catch(() => null);
        this.tables = answer === null ? [] : kneeLists(answer.members).map(({ name, list }) => ({
            name,
            knees: numbersOf(kneesOf(list)),
        }));
    }

    #value(name) {
        return this.values?.[this.columns[name]];
    }

    #points() {
        const point = (name) => ({ name, time: this.#value(`${name}ExposureTime`), gain: this.#value(`${name}Gain`) });
        return EXPOSURES.map(point).filter(({ time, gain }) => time > 0 && gain > 0);
    }

    #redraw() {
        if (document.hidden || this.values === this.drawnValues) {
            return;
        }
        this.drawnValues = this.values;
        const points = this.#points();
        const safe = points.find(({ name }) => name === "safe");
        for (const { name, time, gain } of points) {
            const ev = safe ? Math.log2((time * gain) / (safe.time * safe.gain)) : 0;
            const texts = [duration(time), gain.toFixed(2), `${ev < 0 ? "−" : "+"}${Math.abs(ev).toFixed(2)}`];
            this.cells.get(name).forEach((cell, index) => {
                cell.textContent = texts[index];
            });
        }
        this.drawing.redraw();
    }

    #draw() {
        const points = this.#points();
        const all = [...points, ...this.tables.flatMap(({ knees }) => knees)];
        if (all.length === 0) {
            return;
        }
        const { drawing } = this;
        setGainTimeAxes(drawing, all);
        this.tables.forEach(({ name, knees }, index) => {
            const stroke = { class: `table ${DASHES[index % DASHES.length]}` };
            drawing.line(splitPath(knees), stroke);
            const y = drawing.up.to + 14 + 16 * index;
            const x = drawing.along.from + 8;
            drawing.add("line", { ...stroke, x1: x, x2: x + 24, y1: y - 4, y2: y - 4 });
            drawing.add("text", { class: "mark", x: x + 30, y }, name);
        });
        this.#drawFrameTime();
        for (const { name, time, gain } of points) {
            const [cx, cy] = [drawing.along.toPixel(time), drawing.up.toPixel(gain)];
            drawing.add("circle", { class: `exposure ${name}`, cx, cy, r: RADII[name] });
        }
    }

    /// No exposure is longer than its frame.
    #drawFrameTime() {
        const { drawing } = this;
        const frame = 1e9 / this.#value("frameRate");
        if (frame > drawing.along.least && frame < drawing.along.most) {
            const x = drawing.along.toPixel(frame);
            drawing.add("line", { class: "limit", x1: x, x2: x, y1: drawing.up.to, y2: drawing.up.from });
            drawing.add("text", { class: "mark end", x: x - 4, y: drawing.up.from - 5 }, "frame");
        }
    }
}

// How each exposure is split into gain and time, over the exposure tables of the mode in use and the time of a frame.

import { endsAround } from "./axis.js";
import { Drawing } from "./drawing.js";
import { element } from "./element.js";
import { kneeLists, kneesOf, splitPath } from "./knees.js";
import { brief, duration } from "./numbers.js";
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
        this.drawing = new Drawing({ height: 210, words: "gain over time of the three exposures", draw: () => this.#draw() });
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
            const cells = ["time", "gain", "ev"].map((what) => element("td", { "data-exposure": `${name} ${what}` }, "–"));
            this.cells.set(name, cells);
            return element("tr", { class: name }, element("th", { scope: "row" }, name), ...cells);
        };
        return element("table", { class: "split" },
            element("thead", {}, element("tr", {}, ...["", "time", "gain", "EV over safe"].map((name) => element("th", { scope: "col" }, name)))),
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
            knees: kneesOf(list).map(({ gain, time, isGainFirst }) => ({ gain: Number(gain.value), time: Number(time.value), isGainFirst })),
        }));
    }

    #value(name) {
        return this.values?.[this.columns[name]];
    }

    #points() {
        return EXPOSURES.map((name) => ({ name, time: this.#value(`${name}ExposureTime`), gain: this.#value(`${name}Gain`) }))
            .filter(({ time, gain }) => time > 0 && gain > 0);
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
        drawing.setAxes(
            { ...endsAround(all.map(({ time }) => time), { isRatio: true, room: 0.08 }), isRatio: true, name: "time", format: duration },
            { ...endsAround(all.map(({ gain }) => gain), { isRatio: true, room: 0.15 }), isRatio: true, name: "gain", format: brief });
        this.tables.forEach(({ name, knees }, index) => {
            drawing.line(splitPath(knees), { class: `table ${DASHES[index % DASHES.length]}` });
            const y = drawing.up.to + 14 + 16 * index;
            const x = drawing.along.from + 8;
            drawing.add("line", { class: `table ${DASHES[index % DASHES.length]}`, x1: x, x2: x + 24, y1: y - 4, y2: y - 4 });
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

// A drawing with two axes that fills the width it has, with points that a hand or a key can move.

import { Axis } from "./axis.js";
import { drawn, element } from "./element.js";

const LEFT = 52;
const RIGHT = 14;
const TOP = 12;
const BOTTOM = 38;

export class Drawing {
    #hold = null;

    /// @param words what it shows, for those who cannot see it
    /// @param draw (this) draws it: calls setAxes, then adds to the drawing; called again on each change of size
    constructor({ height, words, draw }) {
        this.height = height;
        this.draw = draw;
        this.svg = drawn("svg", { role: "group", "aria-label": words, height });
        this.node = element("div", { class: "drawing" }, this.svg);
        this.svg.addEventListener("pointermove", (event) => this.#drag(event));
        this.svg.addEventListener("pointerup", () => this.#drop(true));
        this.svg.addEventListener("pointercancel", () => this.#drop(false));
        new ResizeObserver(() => this.redraw()).observe(this.node);
    }

    redraw() {
        this.width = this.node.clientWidth;
        if (this.width === 0) {
            return;
        }
        const focused = this.svg.contains(document.activeElement) ? document.activeElement.dataset.key : null;
        this.svg.setAttribute("width", this.width);
        this.svg.replaceChildren();
        this.draw(this);
        if (focused) {
            this.svg.querySelector(`[data-key="${CSS.escape(focused)}"]`)?.focus();
        }
    }

    /// Draws both axes with marks and names. While a point is held they stay as they are.
    /// @param along and up: {least, most, isRatio, name, format}
    setAxes(along, up) {
        if (this.#hold === null) {
            this.along = new Axis({ ...along, from: LEFT, to: this.width - RIGHT });
            this.up = new Axis({ ...up, from: this.height - BOTTOM, to: TOP });
        }
        for (const mark of this.along.marks(64)) {
            const x = this.along.toPixel(mark);
            this.add("line", { class: "grid", x1: x, x2: x, y1: TOP, y2: this.height - BOTTOM });
            this.add("text", { class: "mark along", x, y: this.height - BOTTOM + 14 }, along.format(mark));
        }
        for (const mark of this.up.marks(28)) {
            const y = this.up.toPixel(mark);
            this.add("line", { class: "grid", x1: LEFT, x2: this.width - RIGHT, y1: y, y2: y });
            this.add("text", { class: "mark up", x: LEFT - 6, y: y + 4 }, up.format(mark));
        }
        this.add("text", { class: "name along", x: this.width - RIGHT, y: this.height - 6 }, along.name);
        this.add("text", { class: "name up", x: 2, y: TOP - 2 }, up.name);
    }

    add(tag, attributes, ...children) {
        const made = drawn(tag, attributes, ...children);
        this.svg.append(made);
        return made;
    }

    /// A line through points {x, y} in values.
    line(points, attributes) {
        const pixels = points.map(({ x, y }) => `${this.along.toPixel(x)},${this.up.toPixel(y)}`);
        return this.add("polyline", { points: pixels.join(" "), ...attributes });
    }

    /// A point to drag, or to focus and move by arrow keys.
    /// @param key names it among those of this drawing @param words what it sets, with its value
    /// @param move (x, y) in values @param done (whether to keep it) at the end of each move
    handle({ key, x, y, words, move, done }) {
        const [cx, cy] = [this.along.toPixel(x), this.up.toPixel(y)];
        const hold = { move, done };
        const keys = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };
        this.add("circle", {
            class: "handle", cx, cy, r: 7, tabindex: 0, role: "button", "aria-label": words, "data-key": key,
            pointerdown: (event) => {
                event.preventDefault();
                event.currentTarget.focus();
                this.svg.setPointerCapture(event.pointerId);
                this.#hold = hold;
            },
            keydown: (event) => {
                const way = keys[event.key];
                if (event.key === "Escape") {
                    this.#drop(false);
                } else if (way) {
                    event.preventDefault();
                    const size = event.shiftKey ? 20 : 4;
                    move(this.along.toValue(cx + way[0] * size), this.up.toValue(cy + way[1] * size));
                    done(true);
                }
            },
        }, drawn("title", {}, words));
    }

    #drag(event) {
        if (this.#hold !== null) {
            const box = this.svg.getBoundingClientRect();
            this.#hold.move(this.along.toValue(event.clientX - box.left), this.up.toValue(event.clientY - box.top));
            this.redraw();
        }
    }

    #drop(isKept) {
        const hold = this.#hold;
        this.#hold = null;
        hold?.done(isKept);
    }
}

// A list of zones as a chart: the trigger along, the value up. Flat within a zone, straight from zone to zone.

import { endsAround } from "./axis.js";
import { Drawing } from "./drawing.js";
import { button, element } from "./element.js";
import { brief, decimal, rounded } from "./numbers.js";
import { triggerOf } from "./zones.js";

/// What is drawn and dragged: numbers, apart from the members until a drag ends.
function draftOf(line) {
    return line.zones.map(({ start, end, value, twin }) => ({
        start: Number(start.value),
        end: Number(end.value),
        value: Number(value.value),
        isTwin: twin !== null && Number(twin.value) === Number(value.value),
    }));
}

/// Of the outer borders nothing depends: an axis that reached them would hide the others.
function borders(draft) {
    const inner = draft.flatMap(({ start, end }) => [start, end]).slice(1, -1);
    const { least, most } = endsAround(inner, { room: 0.35 });
    return { least: Math.max(Math.min(draft[0].start, inner[0]), Math.min(least, inner[0])), most };
}

function limited(value, { min, max }) {
    return Math.min(Math.max(value, min ?? -Infinity), max ?? Infinity);
}

/// What a drag has changed, as an edit.
function changes(line, draft) {
    const values = [];
    const put = (member, value) => {
        if (Number(member.value) !== value) {
            values.push({ path: member.path, value: decimal(member.integer ? Math.round(value) : value) });
        }
    };
    line.zones.forEach((zone, index) => {
        put(zone.start, draft[index].start);
        put(zone.end, draft[index].end);
        put(zone.value, draft[index].value);
        if (draft[index].isTwin) {
            put(zone.twin, draft[index].value);
        }
    });
    return values;
}

/// The name of an axis, with what it is in.
function inNames(name, unit) {
    return unit ? `${name}, ${unit}` : name;
}

class ZoneChart {
    constructor(list, lines, session) {
        this.line = lines[0];
        this.session = session;
        const { members } = session;
        this.trigger = triggerOf(list, members.way(list.path).map((path) => members.find(path)));
        this.draft = draftOf(this.line);
        this.drawing = new Drawing({
            height: 220,
            words: `${list.name}: value over trigger`,
            draw: () => this.draw(),
        });
        this.node = element("div", { class: "zones", "data-zones": list.path, now: () => this.#markNow() },
            ...this.#choices(lines), this.drawing.node);
        session.members.watch(list.path, this.refresh);
    }

    /// Another line is drawn on request; together they would need an axis each.
    #choices(lines) {
        if (lines.length === 1) {
            return [];
        }
        const buttons = lines.map((line) => button(line.name, () => {
            this.line = line;
            buttons.forEach((other) => other.setAttribute("aria-pressed", String(other.textContent === line.name)));
            this.refresh();
        }, { "aria-pressed": String(line === this.line) }));
        return [element("div", { class: "lines", role: "group", "aria-label": "Value" }, ...buttons)];
    }

    refresh = () => {
        this.draft = draftOf(this.line);
        this.drawing.redraw();
    };

    draw() {
        const { drawing, draft } = this;
        const unit = this.line.zones[0].value.unit;
        const values = draft.map(({ value }) => value);
        drawing.setAxes(
            { ...borders(draft), name: inNames("trigger", this.trigger?.name), format: brief },
            { ...endsAround(values), name: inNames(this.line.name, unit === "varies" ? null : unit), format: brief });
        const [left, right] = [drawing.along.least, drawing.along.most];
        for (const { start, end } of draft) {
            const x = drawing.along.toPixel(Math.max(start, left));
            const width = Math.max(drawing.along.toPixel(Math.min(end, right)) - x, 0);
            const height = drawing.up.from - drawing.up.to;
            drawing.add("rect", { class: "zone", x, width, y: drawing.up.to, height });
        }
        const path = draft.flatMap(({ start, end, value }) => [{ x: start, y: value }, { x: end, y: value }]);
        path[0].x = left;
        path.at(-1).x = right;
        drawing.line(path, { class: "curve" });
        draft.forEach((zone, index) => this.#handles(zone, index));
        this.#markNow();
    }

    /// Where the camera is: the value that chooses among the zones, if it is published.
    #markNow() {
        const value = this.session.now(this.trigger?.control);
        if (value === undefined || this.drawing.along === undefined) {
            return;
        }
        const { along, up } = this.drawing;
        const x = along.toPixel(Math.min(Math.max(value, along.least), along.most));
        const isLeft = x < (along.from + along.to) / 2;
        const text = { class: `mark ${isLeft ? "" : "end"}`, x: x + (isLeft ? 5 : -5), y: up.to + 11 };
        this.now?.forEach((node) => node.remove());
        this.now = [
            this.drawing.add("line", { class: "now", x1: x, x2: x, y1: up.to, y2: up.from }),
            this.drawing.add("text", text, `now ${brief(value)}`),
        ];
    }

    #handles(zone, index) {
        const [left, right] = [this.drawing.along.least, this.drawing.along.most];
        for (const side of ["start", "end"]) {
            if (zone[side] < left || zone[side] > right) {
                continue;
            }
            this.drawing.handle({
                key: `${index}.${side}`,
                x: zone[side],
                y: zone.value,
                words: `zone ${index + 1}, ${side} ${brief(zone[side])}, value ${brief(zone.value)}`,
                move: (x, y) => this.#move(index, side, x, y),
                done: (isKept) => this.#done(isKept),
            });
        }
    }

    /// A border stays between its neighbours, so that the zones stay in order.
    #move(index, side, x, y) {
        const { draft } = this;
        const zone = draft[index];
        const least = side === "start" ? draft[index - 1]?.end ?? -Infinity : zone.start;
        const most = side === "start" ? zone.end : draft[index + 1]?.start ?? Infinity;
        const { along, up } = this.drawing;
        zone[side] = Math.min(Math.max(rounded(x, along.most - along.least), least), most);
        zone.value = limited(rounded(y, up.most - up.least), this.line.zones[index].value);
    }

    #done(isKept) {
        const values = isKept ? changes(this.line, this.draft) : [];
        if (values.length === 0) {
            this.refresh();
        } else {
            this.session.set(values);
        }
    }
}

/// @param lines at least one, of linesOf
export function zoneChart(list, lines, session) {
    return new ZoneChart(list, lines, session).node;
}

// An exposure table as a diagram of gain over time, both in even ratios.

import { Drawing } from "./drawing.js";
import { element } from "./element.js";
import { setGainTimeAxes } from "./gaintime.js";
import { kneesOf, numbersOf, splitPath } from "./knees.js";
import { brief, decimal, duration } from "./numbers.js";

class KneeChart {
    constructor(list, session) {
        this.knees = kneesOf(list);
        this.session = session;
        this.drawing = new Drawing({ height: 240, words: `${list.name}: gain over time`, draw: () => this.draw() });
        this.node = element("div", { class: "knees", "data-knees": list.path }, this.drawing.node);
        this.list = list;
        session.members.watch(list.path, this.refresh);
        this.refresh();
    }

    refresh = () => {
        this.knees = kneesOf(this.list);
        this.draft = numbersOf(this.knees);
        this.drawing.redraw();
    };

    draw() {
        const { drawing, draft } = this;
        setGainTimeAxes(drawing, draft);
        drawing.line(splitPath(draft), { class: "curve" });
        draft.forEach((knee, index) => drawing.handle({
            key: String(index),
            x: knee.time,
            y: knee.gain,
            words: `knee ${index + 1}: gain ${brief(knee.gain)}, ${duration(knee.time)}`,
            move: (x, y) => {
                knee.time = Math.max(1, Math.round(Number(x.toPrecision(3))));
                knee.gain = Math.max(this.knees[index].gain.min ?? 0, Number(y.toPrecision(3)));
            },
            done: (isKept) => this.#done(isKept),
        }));
    }

    #done(isKept) {
        const values = !isKept ? [] : this.knees.flatMap(({ gain, time }, index) => [
            { member: gain, value: this.draft[index].gain },
            { member: time, value: this.draft[index].time },
        ]).filter(({ member, value }) => Number(member.value) !== value);
        if (values.length === 0) {
            this.refresh();
        } else {
            this.session.set(values.map(({ member, value }) => ({ path: member.path, value: decimal(value) })));
        }
    }
}

export function kneeChart(list, session) {
    return new KneeChart(list, session).node;
}

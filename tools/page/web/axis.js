// One axis of a drawing: from values to pixels and back, and where its marks stand.

import { roundStep } from "./numbers.js";

/// @param from pixels at the least value @param to pixels at the most
export class Axis {
    constructor({ least, most, from, to, isRatio = false }) {
        Object.assign(this, { least, most, from, to, isRatio });
    }

    toPixel(value) {
        const share = this.isRatio
            ? Math.log(Math.max(value, 1e-12) / this.least) / Math.log(this.most / this.least)
            : (value - this.least) / (this.most - this.least);
        return this.from + share * (this.to - this.from);
    }

    toValue(pixel) {
        const share = (pixel - this.from) / (this.to - this.from);
        return this.isRatio
            ? this.least * (this.most / this.least) ** share
            : this.least + share * (this.most - this.least);
    }

    /// @param distance pixels from mark to mark at least
    marks(distance) {
        return this.isRatio ? this.#ratioMarks(distance) : this.#evenMarks(distance);
    }

    #evenMarks(distance) {
        const count = Math.max(2, Math.floor(Math.abs(this.to - this.from) / distance));
        const step = roundStep((2.4 * (this.most - this.least)) / count);
        const first = Math.ceil(this.least / step);
        const marks = [];
        for (let index = first; index * step <= this.most; ++index) {
            marks.push(Number((index * step).toPrecision(12)));
        }
        return marks;
    }

    #ratioMarks(distance) {
        const marks = [];
        for (let power = Math.floor(Math.log10(this.least)); 10 ** power <= this.most; ++power) {
            for (const factor of [1, 2, 5]) {
                const value = Number((factor * 10 ** power).toPrecision(12));
                const isFar = marks.every((mark) => Math.abs(this.toPixel(mark) - this.toPixel(value)) >= distance);
                if (value >= this.least && value <= this.most && isFar) {
                    marks.push(value);
                }
            }
        }
        return marks;
    }
}

/// Ends of an axis around values, with room to drag beyond them.
export function endsAround(values, { isRatio = false, room = 0.25 } = {}) {
    const least = Math.min(...values);
    const most = Math.max(...values);
    if (isRatio) {
        const factor = Math.max((most / least) ** room, 1.5);
        return { least: least / factor, most: most * factor };
    }
    const span = most - least || Math.abs(most) || 1;
    const isFromZero = least >= 0 && least < span;
    return { least: isFromZero ? 0 : least - room * span, most: most + room * span };
}

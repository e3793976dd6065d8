// The numbers of the last ten minutes.

const LONGEST = 600;

/// Points across a chart at most; more are not seen.
const MOST_POINTS = 1200;

export class Samples {
    #rows = [];
    #dropped = 0;

    /// @param samples {t, v} in order of time, s
    add(samples) {
        for (const { t, v } of samples) {
            if (this.#rows.length > 0 && t < this.#rows.at(-1)[0]) {
                this.clear();  // the server was started anew
            }
            this.#rows.push([t, ...v]);
        }
        const first = this.#rows.findIndex(([t]) => t >= this.now - LONGEST);
        if (first > 100) {
            this.#rows.splice(0, first);
            this.#dropped += first;
        }
    }

    clear() {
        this.#rows = [];
        this.#dropped = 0;
    }

    get now() {
        return this.#rows.at(-1)?.[0] ?? 0;
    }

    /// @param column place among the controls @return null before the first sample
    last(column) {
        return this.#rows.at(-1)?.[column + 1] ?? null;
    }

    /// Rows of time and the columns, from a time on. Where there are too many, each few give way to their least and
    /// their largest, so that no peak is lost; always the same few, so that what is drawn moves without flicker.
    rows(columns, from) {
        const first = Math.max(this.#rows.findIndex(([t]) => t >= from), 0);
        const rows = this.#rows.slice(first);
        const few = Math.ceil((2 * rows.length) / MOST_POINTS);
        const pick = (row) => [row[0], ...columns.map((column) => row[column + 1])];
        if (few <= 2) {
            return rows.map(pick);
        }
        const thinned = [];
        for (let at = 0; at < rows.length; ) {
            const count = few - ((this.#dropped + first + at) % few);
            const group = rows.slice(at, at + count).map(pick);
            for (const [end, row] of [[Math.min, group[0]], [Math.max, group[group.length >> 1]]]) {
                thinned.push([row[0], ...columns.map((_, index) => end(...group.map((values) => values[index + 1])))]);
            }
            at += count;
        }
        return thinned;
    }
}

// Weight tables and regions of the tuning over the picture, for a person who asks which part of it counts.

import { drawn, element } from "./element.js";
import { ask } from "./server.js";

const SIDE = 16;
const OWN_MODULES = { weights: "kirodb2dmeterweight", regions: "kirodbroi" };

/// Entries of a bank whose numbers, of a list of that name, are as many as expected.
function entriesOf(answer, list, count) {
    const data = answer.members.find(({ name }) => name === "data")?.members ?? [];
    return data.map((entry) => {
        const part = (name) => entry.members.find((member) => member.name === name);
        const numbers = (part(list)?.members ?? []).map(({ value }) => Number(value));
        return { name: `${part("description")?.value} (${part("dataID")?.value})`, numbers };
    }).filter(({ numbers }) => numbers.length === count);
}

/// Each cell by its share of the largest weight; one that is left out, at -1, is crossed.
function drawWeights(weights) {
    const most = Math.max(...weights, 1e-6);
    return weights.map((weight, index) => {
        const [x, y] = [index % SIDE, Math.floor(index / SIDE)];
        if (weight === -1) {
            return drawn("line", { class: "out", x1: x, y1: y, x2: x + 1, y2: y + 1 });
        }
        const opacity = Math.max(0.65 * (weight / most), 0);
        return drawn("rect", { class: "weight", x, y, width: 1, height: 1, opacity });
    });
}

/// @param region x, y, width and height as shares of the frame
function drawRegion(region) {
    const [x, y, width, height] = region.map((share) => share * SIDE);
    return [drawn("rect", { class: "region", x, y, width, height })];
}

export class Overlay {
    #choices = [];

    constructor(session) {
        this.session = session;
        this.mode = "Default";
        this.svg = drawn("svg", { viewBox: `0 0 ${SIDE} ${SIDE}`, preserveAspectRatio: "none", "aria-hidden": "true" });
        this.select = element("select", { id: "overlay", change: () => this.#draw() });
        this.control = element("label", { class: "overlay" }, "Show ", this.select);
        this.#offer([]);
        session.on("state", ({ active, camera, picture }) => {
            this.mode = active.at(0) ?? "Default";
            if (camera.connected && picture) {
                this.#read();
            }
        });
        session.on("edited", (module) => Object.values(OWN_MODULES).includes(module) && this.#read());
    }

    async #read() {
        const entries = async (module, list, count, kind, draw) => {
            const answer = await ask("module", { mode: this.mode, module }).catch(() => ({ members: [] }));
            return entriesOf(answer, list, count).map(({ name, numbers }) => ({
                name: `${kind} ${name}`, draw: () => draw(numbers),
            }));
        };
        this.#offer([
            ...(await entries(OWN_MODULES.weights, "weights", SIDE * SIDE, "weights", drawWeights)),
            ...(await entries(OWN_MODULES.regions, "coords", 4, "region", drawRegion)),
        ]);
    }

    /// What was chosen stays so, if there still is one of that name.
    #offer(choices) {
        this.#choices = [{ name: "the picture alone", draw: () => [] }, ...choices];
        const chosen = this.select.value;
        this.select.replaceChildren(...this.#choices.map(({ name }) => element("option", { value: name }, name)));
        this.select.value = this.#choices.some(({ name }) => name === chosen) ? chosen : this.#choices[0].name;
        this.#draw();
    }

    #draw() {
        const choice = this.#choices.find(({ name }) => name === this.select.value);
        this.svg.replaceChildren(...(choice?.draw() ?? []));
    }
}

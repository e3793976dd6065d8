// Where one is: the tree of modes, the list of modules, and the search over both names and meanings.

import { button, element } from "./element.js";

const MOST_FOUND = 60;

export class Places {
    /// @param open (mode, module, member path or null)
    constructor({ search, found, choice, modes, modules }, session, open) {
        Object.assign(this, { search, found, choice, modes, modules, session, open });
        session.on("state", () => {
            this.#show();
            this.#find();
        });
        session.on("module", () => this.#mark());
        search.addEventListener("input", () => this.#find());
        search.addEventListener("keydown", (event) => event.key === "Escape" && this.#leaveSearch());
    }

    #show() {
        const { state } = this.session;
        this.modes.replaceChildren(this.#modeList(state.modes, state.active),
            state.camera.connected && state.active.length === 0 ? element("p", { class: "hint" },
                "This camera holds its whole tuning in memory, and does not tell which modes are in use.") : "");
        this.modules.replaceChildren(element("ul", {}, ...state.modules.map(({ name, words }) => element("li", {},
            button(name, () => this.open(this.session.mode, name, null), { "data-module": name, title: words })))));
        this.#mark();
    }

    #modeList(modes, active) {
        return element("ul", {}, ...modes.map(({ path, children }) => element("li", {},
            button(path.split("|").at(-1), () => this.#chooseMode(path), { "data-mode": path, title: path }),
            active.includes(path) ? element("span", { class: "tag" }, "in use") : null,
            children.length > 0 ? this.#modeList(children, active) : null)));
    }

    #chooseMode(path) {
        if (this.session.module === null) {
            this.session.mode = path;
            this.#mark();
        } else {
            this.open(path, this.session.module, null);
        }
    }

    #mark() {
        const { mode, module } = this.session;
        for (const node of [...this.modes.querySelectorAll("button"), ...this.modules.querySelectorAll("button")]) {
            const isHere = node.dataset.mode === mode || (module !== null && node.dataset.module === module);
            node.toggleAttribute("aria-current", isHere);
        }
    }

    #leaveSearch() {
        this.search.value = "";
        this.#find();
    }

    /// Every word that was typed has to be in a name or in its meaning; what is found by name comes first. What stands
    /// in modules that the camera does not have cannot be opened.
    #find() {
        const words = this.search.value.toLowerCase().split(/\s+/).filter(Boolean);
        this.found.hidden = words.length === 0;
        this.choice.hidden = words.length > 0;
        if (words.length === 0) {
            return;
        }
        if (this.session.state === null) {
            this.found.replaceChildren(element("li", { class: "count" }, "Loading…"));
            return;
        }
        const { modules, index } = this.session.state;
        const own = modules.map(({ name, words: meaning }) => ({ module: name, member: null, words: meaning }));
        const all = [...own, ...index];
        const isHere = ({ module }) => modules.some(({ name: has }) => has === module);
        const hasAll = (text) => words.every((word) => text.includes(word));
        const name = ({ module, member }) => `${module} ${member ?? ""}`.toLowerCase();
        const byName = all.filter((place) => hasAll(name(place)));
        const others = all.filter((place) => !byName.includes(place));
        const byMeaning = others.filter((place) => hasAll(`${name(place)} ${place.words.toLowerCase()}`));
        const everywhere = [...byName, ...byMeaning];
        const hits = everywhere.filter(isHere);
        const missing = new Set(everywhere.filter((place) => !isHere(place)).map(({ module }) => module));
        const first = hits.length > MOST_FOUND ? `, the first ${MOST_FOUND}:` : "";
        this.found.replaceChildren(
            element("li", { class: "count" }, `${hits.length} found${first}`),
            ...hits.slice(0, MOST_FOUND).map((place) => this.#hit(place)),
            missing.size === 0 ? "" : element("li", { class: "count missing" },
                `Left out, since this camera has no such module: ${[...missing].join(", ")}`));
    }

    #hit({ module, member, words }) {
        return element("li", {}, element("button", {
            type: "button",
            "data-module": module,
            "data-member": member,
            click: () => this.open(this.session.mode, module, member),
        },
        element("strong", {}, member ?? module),
        member === null ? null : element("span", { class: "facts" }, module),
        element("span", { class: "words" }, words)));
    }
}

// The open module, as the schema gives it.

import { button, element } from "./element.js";
import { memberList, numbersPath } from "./fold.js";
import { schemaPath } from "./members.js";

/// Versions are of the file; nobody tunes by them.
const LAST = ["moduleID", "module_version", "parameter_version"];

const TELL_NOW = 200;

function inOrder(members) {
    const isLast = ({ name }) => LAST.includes(name);
    return [...members.filter((member) => !isLast(member)), ...members.filter(isLast)];
}

export class ModulePanel {
    #folds = new Map();

    constructor(node, session) {
        this.node = node;
        this.session = session;
        this.shown = "";
        session.on("module", () => this.#show());
        session.on("closed", (why) => this.#wait(`${session.module} cannot be shown: ${why}`));
        session.on("camera", ({ connected }) => this.#wait(connected ? "Loading…" : "Waiting for the camera."));
        window.setInterval(() => this.#tellNow(), TELL_NOW);
    }

    /// Charts that mark where the camera is live as long as their module is open: they are told, and need not listen.
    #tellNow() {
        if (!document.hidden) {
            this.node.querySelectorAll("[data-zones]").forEach((chart) => chart.dispatchEvent(new Event("now")));
        }
    }

    /// Says why there is no module yet.
    #wait(text) {
        if (this.shown === "") {
            this.node.replaceChildren(element("p", { class: "waiting" }, text));
        }
    }

    #show() {
        const { session } = this;
        const what = `${session.mode} ${session.module}`;
        const isSame = what === this.shown;
        const open = isSame ? [...this.node.querySelectorAll("details[open]")].map(({ dataset }) => dataset.path) : [];
        const top = isSame ? this.node.scrollTop : 0;
        this.shown = what;
        this.#folds = new Map();
        this.node.replaceChildren(
            element("div", { class: "title" },
                element("h1", {}, session.module),
                element("span", { class: "mode" }, session.mode),
                button("Reset the module", () => session.reset([]), { class: "reset" })),
            element("p", { class: "words" }, session.words),
            memberList(inOrder(session.members.all), session, this.#folds));
        open.forEach((path) => this.#folds.get(path)?.());
        this.node.scrollTop = top;
    }

    /// Opens what holds a member, and shows it. @param path of the schema: without places in lists
    reveal(path) {
        const member = this.session.members.findInSchema(schemaPath(path));
        if (member === undefined) {
            this.session.notice(`${this.session.module} has no ${path} now: the list that it stands in is empty`);
            return;
        }
        for (const step of this.session.members.way(member.path)) {
            this.#folds.get(step)?.();
            if (step !== member.path) {
                this.#folds.get(numbersPath(step))?.();
            }
        }
        const node = this.node.querySelector(`[data-path="${CSS.escape(member.path)}"]`);
        node.scrollIntoView({ block: "center" });
        node.querySelector("input, select, summary")?.focus({ preventScroll: true });
        node.classList.add("found");
        node.addEventListener("animationend", () => node.classList.remove("found"), { once: true });
    }
}

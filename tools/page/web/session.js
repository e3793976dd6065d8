// What this browser looks at, and its edits. Tells the rest of the page by events:
// "state" the camera was found or is another one; "module" another module is open; "closed" a module cannot be opened;
// "camera" lost, found; "values" new samples; "edited" a module, by any browser; "edits" what can be undone
// has changed; "lost" how many edits a camera does not hold that was started anew; "picture" a new one; "notice" something
// to say.

import { askToForce } from "./guarddialog.js";
import { Latest } from "./latest.js";
import { Members, leavesOf } from "./members.js";
import { Refusal, addressOf, ask, clientID, tell } from "./server.js";

const TRY_AGAIN = 2000;

export class Session extends EventTarget {
    state = null;
    mode = "Default";
    module = null;
    words = "";
    members = new Members([]);
    #newest = [];
    #opened = 0;
    #timer = 0;
    #refreshes = new Latest(() => this.#refresh(), 500);

    #emit(type, detail) {
        this.dispatchEvent(new CustomEvent(type, { detail }));
    }

    /// @param listener gets what the event carries
    on(type, listener) {
        this.addEventListener(type, (event) => listener(event.detail));
    }

    /// @return the newest value of a name, undefined if there is none
    now(name) {
        return this.#newest[this.state.controls.findIndex((control) => control.name === name)];
    }

    notice(text, isError = false) {
        this.#emit("notice", { text, isError });
    }

    /// Opens the stream of values and edits; it finds its way back by itself.
    start() {
        const source = new EventSource(addressOf("events", { client: clientID }));
        const on = (type, act) => source.addEventListener(type, (event) => act(JSON.parse(event.data)));
        on("values", (samples) => {
            this.#newest = samples.at(-1).v;
            this.#emit("values", samples);
        });
        on("picture", (picture) => this.#emit("picture", picture));
        on("lost", ({ lost }) => this.#emit("lost", lost));
        on("edit", (edit) => this.#takeEdit(edit));
        on("camera", (camera) => this.#takeCamera(camera));
        source.addEventListener("open", () => this.reload());
        source.addEventListener("error", () => this.#emit("camera", {
            connected: false, address: "", name: "", error: "the server of this page does not answer",
        }));
    }

    /// Reads all anew: what was edited while nothing was heard, or another camera.
    async reload() {
        try {
            this.state = await ask("state");
            this.#emit("state", this.state);
            this.#emit("camera", this.state.camera);
            this.#emit("edits", this.state.edits);
            this.#emit("lost", this.state.lost);
            if (this.module !== null && this.state.camera.connected) {
                await this.open(this.mode, this.module);
            }
        } catch (error) {
            this.#say(error);
            this.#tryAgain(error);
        }
    }

    /// A camera that is busy, or was lost in the middle, may answer later.
    #tryAgain(error) {
        window.clearTimeout(this.#timer);
        if (error.isPassing) {
            this.#timer = window.setTimeout(() => this.reload(), TRY_AGAIN);
        }
    }

    /// Reads the values of the open module where an edit may have changed more than it says. What is shown stays in
    /// place: somebody may be dragging it.
    async #refresh() {
        const { mode, module, members } = this;
        const answer = await ask("module", { mode, module }).catch(() => null);
        if (answer !== null) {
            const isNews = ({ path, value }) => members.find(path)?.value !== value;
            members.apply(answer.members.flatMap(leavesOf).filter(isNews), false);
        }
    }

    /// @return whether it is open now
    async open(mode, module) {
        const turn = ++this.#opened;
        try {
            const answer = await ask("module", { mode, module });
            if (turn !== this.#opened) {
                return false;  // another was chosen meanwhile
            }
            [this.mode, this.module, this.words] = [mode, module, answer.words];
            this.members = new Members(answer.members);
            this.#emit("module");
            return true;
        } catch (error) {
            this.#emit("closed", error.message);
            this.#say(error);
            this.#tryAgain(error);
            return false;
        }
    }

    /// Sets values of the open module, asking first if they make no sense.
    /// @param isJoined one undo takes this edit back together with the one before it
    /// @param isOnTheWay in the middle of a drag: a value that makes no sense is left out without a question
    async set(values, { isJoined = false, isOnTheWay = false } = {}) {
        const { mode, module, members } = this;
        const send = (force) => tell("set", { mode, module, values, force, join: isJoined });
        try {
            this.#takeAnswer(members, await send(false));
        } catch (error) {
            if (isOnTheWay) {
                return;
            }
            if (!(error instanceof Refusal && error.isGuard)) {
                this.#say(error);
            } else if (await askToForce(error.message)) {
                await send(true).then((answer) => this.#takeAnswer(members, answer), (again) => this.#say(again));
            }
            members.apply(values.map(({ path }) => ({ path, value: members.find(path).value })), false);
        }
    }

    /// Back to what the camera was started with. @param paths none: the whole module
    async reset(paths, mode = this.mode, module = this.module) {
        await this.#act("reset", { mode, module, paths });
    }

    async undo() {
        await this.#act("undo", {});
    }

    async redo() {
        await this.#act("redo", {});
    }

    async setLostAgain() {
        await this.#act("again", {});
    }

    async forgetLost() {
        await this.#act("forget", {});
    }

    /// What it sets comes as an event, as it does to other browsers.
    async #act(path, body) {
        try {
            this.#takeShared((await tell(path, body)).shared);
        } catch (error) {
            this.#say(error);
        }
    }

    #takeAnswer(members, { values, shared }) {
        members.apply(values, false);
        this.#takeShared(shared);
    }

    /// @param shared places that were set as well
    #takeShared(shared) {
        if (shared?.length > 0) {
            this.notice(`shared, and set as well: ${shared.join(", ")}`);
            if (shared.some((place) => place.includes(this.module))) {
                this.#refreshes.push(null);
            }
        }
    }

    #takeEdit({ mode, module, values, by, edits }) {
        const isOther = by === "other";
        this.#emit("edits", edits);
        this.#emit("edited", module);
        if (module === this.module && mode === this.mode) {
            this.members.apply(values, isOther);
        }
        if (module === this.module && (isOther || mode !== this.mode)) {
            this.#refreshes.push(null);
        }
        if (isOther) {
            const what = values.map(({ path, value }) => `${path} = ${value}`).join(", ");
            this.notice(`another browser has set ${mode} ${module}: ${what}`);
        }
    }

    #takeCamera(camera) {
        if (camera.connected) {
            this.reload();
        } else {
            this.#emit("camera", camera);
        }
    }

    #say(error) {
        this.notice(error.message, true);
    }
}

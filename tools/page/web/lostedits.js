// Edits that a camera does not hold since it was started anew: to be saved, set again, or left.

import { button, element } from "./element.js";
import { savePatch } from "./patchfile.js";

export function lostEdits(node, session) {
    const text = element("span");
    node.append(text,
        button("Save them", () => savePatch("lost", session), { class: "save" }),
        button("Set them again", () => session.setLostAgain(), { class: "again" }),
        button("Forget them", () => session.forgetLost(), { class: "forget" }));
    session.on("lost", (count) => {
        node.hidden = count === 0;
        const what = count === 1 ? "the edit" : `the ${count} edits`;
        text.textContent = `The camera is another one, or was started anew: it does not hold ${what} of before.`;
    });
}

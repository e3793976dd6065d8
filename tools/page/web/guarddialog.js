// Asks before a value is set that cannot be meant.

import { button, element } from "./element.js";

/// @return a promise of whether the person wants it all the same
export function askToForce(words) {
    return new Promise((resolve) => {
        const dialog = element("dialog", { class: "guard", "aria-labelledby": "guard-title", close: () => {
            dialog.remove();
            resolve(dialog.returnValue === "force");
        } });
        dialog.append(
            element("h2", { id: "guard-title" }, "This cannot be meant"),
            element("p", {}, words),
            element("div", { class: "answers" },
                button("Leave it as it is", () => dialog.close(), { class: "leave", autofocus: true }),
                button("Set it all the same", () => dialog.close("force"), { class: "force" })));
        document.body.append(dialog);
        dialog.showModal();
    });
}

// Undo, redo, comparing, saving.

import { showChanges } from "./changesdialog.js";
import { button, element } from "./element.js";
import { addressOf } from "./server.js";

export function toolbar(node, session) {
    const undo = button("Undo", () => session.undo(), { id: "undo" });
    const redo = button("Redo", () => session.redo(), { id: "redo", title: "Ctrl+Shift+Z" });
    node.append(undo, redo,
        button("Compare", () => showChanges(session), { id: "compare" }),
        element("a", { id: "save", class: "button", href: addressOf("patch"), download: "patch.yaml" }, "Save patch"));

    session.on("edits", (edits) => {
        undo.disabled = edits.undo === 0;
        undo.title = `${edits.undo} to take back, Ctrl+Z`;
        redo.disabled = edits.redo === 0;
    });
    document.addEventListener("keydown", (event) => {
        const isTyping = event.target.matches("input[type=text], input[type=search]");
        if (!isTyping && (event.ctrlKey || event.metaKey) && event.key.toLowerCase() === "z") {
            event.preventDefault();
            (event.shiftKey ? redo : undo).click();
        }
    });
}

// Undo, redo, comparing, saving.

import { showChanges } from "./changesdialog.js";
import { button } from "./element.js";
import { savePatch } from "./patchfile.js";

export function toolbar(node, session) {
    const undo = button("Undo", () => session.undo(), { id: "undo", disabled: true });
    const redo = button("Redo", () => session.redo(), { id: "redo", disabled: true, title: "Ctrl+Shift+Z" });
    const compare = button("Compare", () => showChanges(session), { id: "compare", disabled: true });
    const save = button("Save patch", () => savePatch("patch", session), { id: "save", disabled: true });
    node.append(undo, redo, compare, save);

    session.on("state", () => {
        compare.disabled = false;
        save.disabled = false;
    });
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

// What differs from the start, or from the file that the camera was started with.

import { button, element } from "./element.js";
import { ask } from "./server.js";

/// Long paths go on in the next line behind a separator, and never within a name.
function breakable(path) {
    return path.split(/(?<=[.|])/).flatMap((part) => [part, element("wbr")]);
}

/// The same change in many modes that share a module is one row each, as in a patch.
function row(change, session, dialog) {
    const { mode, module, path, start, value } = change;
    const back = button("↶", async () => {
        await session.reset([path], mode, module);
        await fillIn(dialog, session);
    }, { "aria-label": `${path} back to ${start}`, title: `back to ${start}` });
    return element("tr", {},
        element("td", { class: "mode" }, ...breakable(mode)),
        element("td", { class: "member" }, ...breakable(`${module} ${path}`)),
        element("td", { class: "value start" }, start),
        element("td", { class: "value now" }, value),
        element("td", {}, back));
}

async function fillIn(dialog, session) {
    const { changes } = await ask("changes");
    const heads = ["mode", "member", session.state.file ?? "at the start", "now", ""];
    const table = element("table", {},
        element("thead", {}, element("tr", {}, ...heads.map((name) => element("th", {}, name)))),
        element("tbody", {}, ...changes.map((change) => row(change, session, dialog))));
    dialog.replaceChildren(
        element("h2", { id: "changes-title" }, `What differs from ${session.state.file ?? "the start"}`),
        changes.length === 0 ? element("p", {}, "Nothing.") : element("div", { class: "wide" }, table),
        element("div", { class: "answers" }, button("Close", () => dialog.close(), { autofocus: true })));
}

export async function showChanges(session) {
    const dialog = element("dialog", {
        class: "changes", "aria-labelledby": "changes-title", close: () => dialog.remove(),
    });
    try {
        await fillIn(dialog, session);
        document.body.append(dialog);
        dialog.showModal();
    } catch (error) {
        session.notice(error.message, true);
    }
}

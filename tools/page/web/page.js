// The page: who is where, and what opens what.

import { Charts } from "./charts.js";
import { connection } from "./connection.js";
import { button } from "./element.js";
import { ExposureDiagram } from "./exposurediagram.js";
import { lamps } from "./lamps.js";
import { lostEdits } from "./lostedits.js";
import { ModulePanel } from "./modulepanel.js";
import { notices } from "./notices.js";
import { picture } from "./picture.js";
import { Places } from "./places.js";
import { Session } from "./session.js";
import { toolbar } from "./toolbar.js";

const byID = (id) => document.getElementById(id);
const session = new Session();
const panel = new ModulePanel(byID("members"), session);

/// A small screen shows one of the three columns.
function showView(name) {
    document.body.dataset.view = name;
    for (const node of document.querySelectorAll("#views button")) {
        node.toggleAttribute("aria-current", node.dataset.view === name);
    }
}

/// What is open stands in the address, so that a page that is loaded again, or sent to a colleague, opens it.
async function open(mode, module, member) {
    if (!await session.open(mode, module)) {
        return;
    }
    window.history.replaceState(null, "", `#${new URLSearchParams({ mode, module })}`);
    showView("members");
    if (member !== null) {
        panel.reveal(member);
    }
}

for (const [name, title] of [["places", "Modules"], ["members", "Members"], ["watch", "Camera"]]) {
    byID("views").append(button(title, () => showView(name), { "data-view": name }));
}
connection({ banner: byID("banner"), lamp: byID("connection"), device: byID("device") }, session);
lostEdits(byID("lostedits"), session);
notices(byID("notice"), session);
toolbar(byID("toolbar"), session);
new Places({
    search: byID("search"),
    found: byID("found"),
    choice: byID("choice"),
    modes: byID("modes"),
    modules: byID("modules"),
}, session, open);
lamps(byID("lamps"), session);
picture(byID("picture"), session);
new ExposureDiagram(byID("exposure"), session);
new Charts(byID("charts"), session);

const opened = new URLSearchParams(window.location.hash.slice(1));
session.mode = opened.get("mode") ?? "Default";
session.module = opened.get("module") ?? "kiroconvergence";
showView("members");
session.start();

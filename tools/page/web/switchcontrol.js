// On or off.

import { element } from "./element.js";

/// @return {node, show}: show takes over what the member holds
export function switchControl(member, id, session) {
    const node = element("input", { type: "checkbox", role: "switch", id, change: () => {
        session.set([{ path: member.path, value: node.checked ? "1" : "0" }]);
    } });
    function show() {
        node.checked = member.value !== "0" && member.value !== "false";
    }
    show();
    return { node, show };
}

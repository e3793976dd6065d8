// One value of a module: its name, what sets it, its words, and whether it differs from the start.

import { choiceControl } from "./choicecontrol.js";
import { button, element } from "./element.js";
import { numberControl } from "./numbercontrol.js";
import { switchControl } from "./switchcontrol.js";

const CONTROLS = { number: numberControl, choice: choiceControl, switch: switchControl };

/// A camera cannot set texts.
function textControl(member, id) {
    const node = element("output", { id });
    const show = () => {
        node.textContent = member.value;
    };
    show();
    return { node, show };
}

function rangeText({ min, max }) {
    if (min === null && max === null) {
        return null;
    }
    if (max === null) {
        return `from ${min}`;
    }
    return min === null ? `up to ${max}` : `${min} to ${max}`;
}

/// Unit, range and value to begin with, as far as there are any.
function facts(member) {
    const begin = member.begin === null ? null : `begin with ${member.begin}`;
    const unit = member.unit === "varies" ? null : member.unit;
    return [unit, rangeText(member), begin].filter(Boolean).join(" · ");
}

/// Cut to one line until it is clicked.
function words(text) {
    const node = button(text, () => node.setAttribute("aria-expanded", node.getAttribute("aria-expanded") !== "true"), {
        class: "words",
        "aria-expanded": "false",
    });
    return node;
}

/// @param hasWords false among many alike, such as entries of a list of numbers
export function memberRow(member, session, hasWords = true) {
    const id = `member-${member.path}`;
    const control = (CONTROLS[member.kind] ?? textControl)(member, id, session);
    const back = button("↶", () => session.reset([member.path]), { class: "back" });
    const row = element("div", { class: "row", "data-path": member.path, "data-kind": member.kind },
        element("label", { for: id }, member.name),
        control.node,
        back,
        element("span", { class: "facts" }, facts(member)),
        hasWords && member.words ? words(member.words) : null);

    function show() {
        control.show();
        row.classList.toggle("differs", member.differs);
        back.hidden = !member.differs;
        back.title = `back to ${member.start}`;
        back.setAttribute("aria-label", `${member.name} back to ${member.start}`);
    }
    row.addEventListener("animationend", () => row.classList.remove("other"));
    session.members.watch(member.path, (_, isOther) => {
        show();
        row.classList.toggle("other", isOther);
    });
    show();
    return row;
}

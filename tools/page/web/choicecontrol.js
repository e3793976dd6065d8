// One of several named values.

import { element } from "./element.js";

/// @return {node, show}: show takes over what the member holds
export function choiceControl(member, id, session) {
    const node = element("select", { id, change: () => session.set([{ path: member.path, value: node.value }]) });
    function show() {
        const choices = member.choices.some((choice) => choice.value === member.value)
            ? member.choices
            : [...member.choices, { value: member.value, name: `${member.value} (no name)` }];
        node.replaceChildren(...choices.map(({ value, name }) => element("option", { value }, name)));
        node.value = member.value;
    }
    show();
    return { node, show };
}

// Records and lists that fold. What is in one is made when it opens: a module may have thousands of values.

import { element } from "./element.js";
import { kneeChart } from "./kneechart.js";
import { isKnees } from "./knees.js";
import { isLeaf, leavesOf } from "./members.js";
import { memberRow } from "./memberrow.js";
import { zoneChart } from "./zonechart.js";
import { isZones, linesOf } from "./zones.js";

/// What tells one entry of a list from the others, if it says so itself.
function describedAs(member) {
    const text = member.members.find(({ name }) => name === "description")?.value;
    const id = member.members.find(({ name }) => name === "dataID")?.value;
    return [text, id === undefined ? null : `dataID ${id}`].filter(Boolean).join(", ");
}

function isOfNumbers(list) {
    return list.members.every(isLeaf);
}

function summaryText(member) {
    if (member.kind === "list") {
        const count = member.members.length;
        return isZones(member) ? `${count} zone${count === 1 ? "" : "s"}` : `${count} entr${count === 1 ? "y" : "ies"}`;
    }
    return describedAs(member);
}

function contents(member, session, folds) {
    if (member.kind === "list" && isOfNumbers(member)) {
        return [element("div", { class: "numbers" }, ...member.members.map((entry) => memberRow(entry, session, false)))];
    }
    const below = memberList(member.members, session, folds);
    if (isKnees(member)) {
        return [kneeChart(member, session), below];
    }
    const lines = isZones(member) ? linesOf(member) : [];
    return lines.length > 0 ? [zoneChart(member, lines, session), below] : [below];
}

function fold(member, session, folds) {
    const mark = element("span", { class: "changed" });
    const node = element("details", { class: "fold", "data-path": member.path },
        element("summary", {}, element("span", { class: "name" }, member.name), " ",
            element("span", { class: "facts" }, summaryText(member)), " ", mark),
        member.words ? element("p", { class: "words" }, member.words) : null);
    let isMade = false;
    const open = () => {
        node.open = true;
        if (!isMade) {
            isMade = true;
            node.append(...contents(member, session, folds));
        }
    };
    node.addEventListener("toggle", () => node.open && open());
    folds.set(member.path, open);

    const leaves = leavesOf(member);
    const show = () => {
        const count = leaves.filter(({ differs }) => differs).length;
        mark.textContent = count === 0 ? "" : `${count} changed`;
    };
    session.members.watch(member.path, show);
    show();
    return node;
}

/// @param folds gets for each fold that is made how to open it, by path
export function memberList(members, session, folds) {
    return element("div", { class: "members" },
        ...members.map((member) => (isLeaf(member) ? memberRow(member, session) : fold(member, session, folds))));
}

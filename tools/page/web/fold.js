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

/// Such as a range: it takes less room than a fold is worth. Nobody tunes by a version.
function isSmall(member) {
    const isFew = member.members.length <= 3 && member.members.every(isLeaf);
    return member.kind === "record" && isFew && !member.name.endsWith("_version");
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

/// Path of the fold below a chart, beside those of members.
export function numbersPath(path) {
    return `${path} in numbers`;
}

/// Below a chart, what it draws is folded once more.
function withChart(chart, member, session, folds) {
    const path = numbersPath(member.path);
    return [chart, lazyFold(path, [element("span", { class: "facts" }, "in numbers")], folds,
        () => [memberList(member.members, session, folds)])];
}

function contents(member, session, folds) {
    if (member.kind === "list" && isOfNumbers(member)) {
        const rows = member.members.map((entry) => memberRow(entry, session, false));
        return [element("div", { class: "numbers" }, ...rows)];
    }
    if (isKnees(member)) {
        return withChart(kneeChart(member, session), member, session, folds);
    }
    const lines = isZones(member) ? linesOf(member) : [];
    if (lines.length > 0) {
        return withChart(zoneChart(member, lines, session), member, session, folds);
    }
    return [memberList(member.members, session, folds)];
}

/// @param make gives what is in the fold, when it is opened first
function lazyFold(path, summary, folds, make) {
    const node = element("details", { class: "fold", "data-path": path }, element("summary", {}, ...summary));
    let isMade = false;
    const open = () => {
        node.open = true;
        if (!isMade) {
            isMade = true;
            node.append(...make());
        }
    };
    node.addEventListener("toggle", () => node.open && open());
    folds.set(path, open);
    return node;
}

function fold(member, session, folds) {
    const mark = element("span", { class: "changed" });
    const summary = [element("span", { class: "name" }, member.name), " ",
        element("span", { class: "facts" }, summaryText(member)), " ", mark];
    const node = lazyFold(member.path, summary, folds, () => [
        ...(member.words ? [element("p", { class: "words" }, member.words)] : []),
        ...contents(member, session, folds),
    ]);
    const leaves = leavesOf(member);
    const show = () => {
        const count = leaves.filter(({ differs }) => differs).length;
        mark.textContent = count === 0 ? "" : `${count} changed`;
    };
    session.members.watch(member.path, show);
    show();
    if (isSmall(member)) {
        folds.get(member.path)();
    }
    return node;
}

/// @param folds gets for each fold that is made how to open it, by path
export function memberList(members, session, folds) {
    return element("div", { class: "members" },
        ...members.map((member) => (isLeaf(member) ? memberRow(member, session) : fold(member, session, folds))));
}

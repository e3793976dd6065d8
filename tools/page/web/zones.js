// Trees of zones over triggers: which lists are such trees, and what they yield.

import { leavesOf } from "./members.js";

function part(member, name) {
    return member.members.find((below) => below.name === name);
}

function isZone(member) {
    const trigger = member.kind === "record" && part(member, "trigger");
    return Boolean(trigger) && member.members.length === 2 && Boolean(part(trigger, "start") && part(trigger, "end"));
}

/// Zones of one level: each the range of a trigger, and what it yields or the zones of the next level.
export function isZones(member) {
    return member.kind === "list" && member.members.length > 0 && member.members.every(isZone);
}

function yieldOf(zone) {
    return zone.members.find((below) => below.name !== "trigger");
}

/// What a zone yields, through levels of one zone each, which are constant over their trigger.
/// @return null if a level below has several zones
function endOf(zone) {
    const yielded = yieldOf(zone);
    if (!isZones(yielded)) {
        return yielded.kind === "list" ? null : yielded;
    }
    return yielded.members.length === 1 ? endOf(yielded.members[0]) : null;
}

/// The ends of a range that a zone yields are one value where they are equal.
function isPair(leaves) {
    return leaves.length === 2 && /start$/i.test(leaves[0].name) && /end$/i.test(leaves[1].name);
}

/// Bank and number of the triggers that a camera publishes, and the names of those values.
const PUBLISHED = { "BankIDTriggers 8": "luxIndex" };

/// What chooses among the zones of a list: a bank and a number in it, as a record beside the tree names it.
/// @param way the members that hold the list, outermost first
/// @return {name, control}: control is the value that the camera publishes of it, or null; null if nothing names it
export function triggerOf(list, way) {
    const holder = way.find((member) => part(member, `${list.name}Bank`));
    const [bank, entry] = ["bankID", "dataID"].map((name) => holder && part(part(holder, `${list.name}Bank`), name));
    if (!bank || !entry) {
        return null;
    }
    const name = `${bank.choices.find(({ value }) => value === bank.value)?.name ?? bank.value} ${entry.value}`;
    return { name: PUBLISHED[name] ?? name, control: PUBLISHED[name] ?? null };
}

/// What can be drawn over the trigger of a list of zones.
/// @return lines {name, zones: [{start, end, value, twin}]} of members; twin is the other end of a range, or null; no
///         lines where a level below has several zones, and for one zone alone, which is a constant
export function linesOf(list) {
    const ends = list.members.map(endOf);
    if (list.members.length < 2 || ends.some((end) => end === null)) {
        return [];
    }
    const leaves = ends.map((end) => leavesOf(end).filter((leaf) => leaf.kind === "number"));
    return leaves[0].map((first, index) => ({
        name: first.name,
        zones: list.members.map((zone, at) => ({
            start: part(part(zone, "trigger"), "start"),
            end: part(part(zone, "trigger"), "end"),
            value: leaves[at][index],
            twin: isPair(leaves[at]) ? leaves[at][1 - index] : null,
        })),
    }));
}

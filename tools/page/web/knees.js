// Exposure tables: knees along which an exposure is split into gain and time.

function part(member, name) {
    return member.members.find((below) => below.name === name);
}

/// Name of the choice by which gain grows before time.
const GAIN_FIRST = "AECExpIncGain";

export function isKnees(member) {
    return member.kind === "list" && member.members.length > 0 &&
        member.members.every((knee) => knee.kind === "record" && part(knee, "gain") && part(knee, "time"));
}

function isGainFirst(knee) {
    const priority = part(knee, "incrementPriority");
    return priority?.choices.find(({ value }) => value === priority.value)?.name === GAIN_FIRST;
}

/// @return for each knee its members gain and time, and whether gain grows first on the way up to it
export function kneesOf(list) {
    return list.members.map((knee) => ({
        gain: part(knee, "gain"), time: part(knee, "time"), isGainFirst: isGainFirst(knee),
    }));
}

/// The same as numbers, apart from the members.
export function numbersOf(knees) {
    return knees.map(({ gain, time, isGainFirst: isFirst }) => ({
        gain: Number(gain.value), time: Number(time.value), isGainFirst: isFirst,
    }));
}

/// All lists of knees at and below members, with the description of the entry that holds them.
export function kneeLists(members, name = "") {
    return members.flatMap((member) => {
        const described = part(member, "description")?.value || name;
        return isKnees(member) ? [{ name: described, list: member }] : kneeLists(member.members, described);
    });
}

/// The way of the split: from knee to knee first one of the two grows, then the other.
/// @param knees {gain, time, isGainFirst} as numbers @return points {x, y}: time in ns, gain
export function splitPath(knees) {
    return knees.flatMap(({ gain, time, isGainFirst: isGain }, index) => {
        const before = knees[index - 1];
        const corner = isGain ? { x: before?.time, y: gain } : { x: time, y: before?.gain };
        return before ? [corner, { x: time, y: gain }] : [{ x: time, y: gain }];
    });
}

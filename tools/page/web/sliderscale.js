// Where a value lies along its slider.

import { decimal, roundStep } from "./numbers.js";

export const POSITIONS = 1000;

/// Ends where the schema names none: from what the value was at the start, four times as far.
function ends(member) {
    const known = [member.value, member.start, member.begin].filter((text) => text !== null && text !== "").map(Number);
    const far = Math.max(...known.map((value) => 4 * Math.abs(value)), member.integer ? 4 : 1);
    const least = member.min ?? (Math.min(...known) < 0 ? -far : 0);
    const most = member.max ?? Math.max(least, 0) + far;
    return [Math.min(least, ...known), Math.max(most, ...known)];
}

/// @return {toPosition, toText, least, most}: even steps, or even ratios where the ends lie a thousandfold apart
export function sliderScale(member) {
    const [least, most] = ends(member);
    const isRatio = least > 0 && most / least > 1000;
    const span = most - least || 1;
    const share = (value) => (isRatio ? Math.log(value / least) / Math.log(most / least) : (value - least) / span);
    const at = (along) => (isRatio ? least * (most / least) ** along : least + span * along);
    const onGrid = (value) => {
        const step = roundStep((isRatio ? value : span) / 200);
        const grid = member.integer ? Math.max(1, Math.round(step)) : step;
        const inside = Math.min(Math.max(Math.round(value / grid) * grid, least), most);
        return decimal(inside, member.integer ? 0 : Math.ceil(-Math.log10(grid)) + 1);
    };
    return {
        least,
        most,
        toPosition: (value) => Math.round(POSITIONS * Math.min(Math.max(share(value), 0), 1)),
        toText: (position) => onGrid(at(position / POSITIONS)),
    };
}

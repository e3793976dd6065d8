// Which of a camera's numbers share a chart, and how they are read.

import { brief, duration } from "./numbers.js";

const EV = (value) => Number(Math.log2(value).toFixed(3));
const asIs = (value) => value;
const fixed = (digits) => (value) => (Number.isFinite(value) ? value.toFixed(digits) : "–");

/// In the order of the page; the first that fits a name has it.
const QUANTITIES = [
    { title: "Luma, 0 to 255", names: /luma$/i, format: fixed(1), isShown: true },
    {
        title: "Exposure and target, EV over 1 ns at gain 1",
        names: /(Sensitivity|Target)$/,
        toChart: EV,
        format: fixed(2),
        isShown: true,
    },
    {
        title: "Exposure time, ms",
        names: /ExposureTime$/,
        toChart: (value) => value / 1e6,
        format: (value) => duration(value * 1e6),
        isShown: true,
    },
    {
        title: "ADRC, dark boost, predictive gain",
        names: /^(adrc|darkBoost|predictive)Gain$/,
        format: fixed(3),
        isShown: true,
    },
    { title: "Gain", names: /Gain$/, format: fixed(2), isShown: true },
    { title: "Lux index, steps of 3 percent", names: /^luxIndex$/, format: fixed(1), isShown: true },
    { title: "Frame number", names: /^frameNumber$/, format: fixed(0), isShown: false },
    { title: "Frame rate, Hz", names: /^frameRate$/, format: fixed(1), isShown: false },
    { title: "Delay of statistics, frames", names: /^statisticsDelay$/, format: fixed(0), isShown: false },
];

/// What is 0 or 1 is a lamp, and in no chart.
const LAMPS = /settled$|skipped$|held$|locked$|flash$|detected$|monitor/i;

export function isLamp(name) {
    return LAMPS.test(name);
}

/// What a name means for its chart: {title, toChart, format, isShown}. Of an unknown one the name is the title.
export function quantityOf(name) {
    const known = QUANTITIES.find(({ names }) => names.test(name));
    return { title: name, toChart: asIs, format: brief, isShown: false, ...known };
}

/// Titles of charts, in the order of the page.
export function order(title) {
    const at = QUANTITIES.findIndex((quantity) => quantity.title === title);
    return at < 0 ? QUANTITIES.length : at;
}

/// Colour and dashes: told apart without colours, too.
export function strokeOf(name) {
    const isTarget = /Target$/.test(name);
    const kind = ["short", "safe", "long"].find((start) => name.startsWith(start));
    const others = { adrcGain: "short", darkBoostGain: "long", predictiveGain: "other" };
    const colour = kind ?? others[name] ?? "safe";
    const dashes = { short: [7, 3], safe: null, long: [2, 2], other: [9, 3, 2, 3] };
    return { colour: `--${colour}`, dashes: isTarget ? [1, 3] : dashes[colour], width: isTarget ? 1.2 : 1.8 };
}

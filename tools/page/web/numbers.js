// Numbers as people read them and as a camera takes them.

/// Decimal, without exponent: a camera reads no other. @param digits after the point at most
export function decimal(value, digits = 10) {
    const text = value.toFixed(Math.max(0, Math.min(digits, 10)));
    return text.includes(".") ? text.replace(/\.?0+$/, "") : text;
}

/// A step of 1, 2 or 5 times a power of ten, at most that large.
export function roundStep(largest) {
    const power = 10 ** Math.floor(Math.log10(largest));
    return [5, 2, 1].find((factor) => factor * power <= largest * 1.000001) * power;
}

/// @return the value on a grid that is fine for a span, such as that of a drag over an axis
export function rounded(value, span) {
    const step = roundStep(span / 200);
    return Number(decimal(Math.round(value / step) * step, Math.ceil(-Math.log10(step))));
}

/// About four digits, with a power of a thousand where that is shorter.
export function brief(value) {
    if (!Number.isFinite(value)) {
        return "–";
    }
    const size = Math.abs(value);
    const [scale, letter] = [[1e9, " G"], [1e6, " M"], [1e4, " k"]].find(([least]) => size >= least) ?? [1, ""];
    const divisor = letter === " k" ? 1e3 : scale;
    return `${Number((value / divisor).toPrecision(4))}${letter}`;
}

/// An exposure time or the like. @param nanoseconds as cameras count
export function duration(nanoseconds) {
    const [scale, unit] = [[1e9, "s"], [1e6, "ms"], [1e3, "µs"]].find(([least]) => nanoseconds >= least) ?? [1, "ns"];
    return `${Number((nanoseconds / scale).toPrecision(3))} ${unit}`;
}

// The plane of gain over time, both in even ratios, in which exposures and the tables that split them are drawn.

import { endsAround } from "./axis.js";
import { brief, duration } from "./numbers.js";

/// @param points {gain, time} that are to be seen, times in ns
export function setGainTimeAxes(drawing, points) {
    const axis = (name, format) => {
        const ends = endsAround(points.map((point) => point[name]), { isRatio: true, room: 0.1 });
        return { ...ends, isRatio: true, name, format };
    };
    drawing.setAxes(axis("time", duration), axis("gain", brief));
}

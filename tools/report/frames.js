// The data of the page, and the rows that all charts share.

const data = JSON.parse(document.getElementById("data").textContent);
const byId = (id) => document.getElementById(id);

const element = (name, text = "", className = "") => {
    const made = document.createElement(name);
    made.textContent = text;
    made.className = className;
    return made;
};

const svgElement = (name, attributes) => {
    const made = document.createElementNS("http://www.w3.org/2000/svg", name);
    Object.entries(attributes).forEach(([key, value]) => made.setAttribute(key, value));
    return made;
};

const themeColour = (name) => getComputedStyle(document.documentElement).getPropertyValue(`--${name}`).trim();

const formatNumber = (value) => {
    if (value === null || value === undefined || Number.isNaN(value)) {
        return "–";
    }
    return Math.abs(value) >= 1000 ? value.toFixed(0) : String(Number(value.toPrecision(4)));
};

// Runs have frames at times of their own: a row for each time of any, with gaps that lines go across.
const times = [...new Set(data.timelines.flatMap((line) => line.times))].sort((one, other) => one - other);
const rowOf = new Map(times.map((time, row) => [time, row]));
const rowsOfTimeline = data.timelines.map((line) => line.times.map((time) => rowOf.get(time)));
const frameOfRow = new Array(times.length).fill(null);
data.timelines.forEach((line, index) => {
    if (index === 0) {
        line.frames.forEach((frame, at) => { frameOfRow[rowsOfTimeline[0][at]] = frame; });
    }
});

// A value for each row, null where the run has no frame or the frame no value.
const spread = (series) => {
    const values = new Array(times.length).fill(null);
    series.values.forEach((value, at) => { values[rowsOfTimeline[series.timeline][at]] = value; });
    return values;
};

const rowNear = (time) => {
    let low = 0;
    let high = times.length - 1;
    while (low < high) {
        const middle = (low + high) >> 1;
        if (times[middle] < time - 1e-9) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low;
};

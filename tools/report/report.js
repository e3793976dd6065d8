// Draws a report from the data that stand in the page: charts that are zoomed and read together, states, pictures and
// tables. All names come in as text, never as markup.

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

// Frames ----------------------------------------------------------------------------------------------------------

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

// A value for each row; what has none keeps that of the frame before, for the cursor.
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

// Charts ----------------------------------------------------------------------------------------------------------

const plots = [];
let cursorRow = 0;
let isFollowing = false;

const axisOptions = () => ({
    axisLineColor: themeColour("line"),
    gridLineColor: themeColour("line"),
});

const drawMarks = (context, area, graph) => {
    context.save();
    context.strokeStyle = themeColour("quiet");
    context.fillStyle = themeColour("quiet");
    context.setLineDash([2, 3]);
    context.font = "11px system-ui, sans-serif";
    data.marks.forEach(([time], index) => {
        const x = Math.round(graph.toDomXCoord(time)) + 0.5;
        if (x >= area.x && x <= area.x + area.w) {
            context.beginPath();
            context.moveTo(x, area.y);
            context.lineTo(x, area.y + area.h);
            context.stroke();
            context.fillText(String(index + 1), x + 3, area.y + 10);
        }
    });
    context.restore();
};

const placeHairline = (plot) => {
    const x = plot.graph.toDomXCoord(times[cursorRow]);
    const area = plot.graph.getArea();
    plot.hairline.hidden = x < area.x - 1 || x > area.x + area.w + 1;
    plot.hairline.style.left = `${x}px`;
};

const follow = (graph, isInitial) => {
    if (isInitial || isFollowing) {
        return;
    }
    isFollowing = true;
    const dateWindow = graph.xAxisRange();
    plots.filter((plot) => plot.graph !== graph).forEach((plot) => plot.graph.updateOptions({ dateWindow }));
    plots.forEach(placeHairline);
    isFollowing = false;
};

const makePlot = (title, unit, rows, options) => {
    const section = element("div", "", "chart");
    const heading = element("h3", `${title} `);
    heading.append(element("span", unit));
    const box = element("div", "", "plot");
    const drawing = element("div");
    drawing.style.cssText = "position:absolute;inset:0";
    const hairline = element("div", "", "hairline");
    const legend = element("ul", "", "legend");
    box.append(drawing, hairline);
    section.append(heading, box, legend);
    byId("charts").append(section);
    const graph = new window.Dygraph(drawing, rows, {
        legend: "never",
        connectSeparatedPoints: true,
        ylabel: unit,
        yLabelWidth: 16,
        highlightCircleSize: 3,
        underlayCallback: drawMarks,
        highlightCallback: (event, x, points, row) => setCursor(row, graph),
        unhighlightCallback: () => setCursor(cursorRow),
        drawCallback: follow,
        ...axisOptions(),
        ...options,
        axes: {
            x: { axisLabelFormatter: (value) => `${formatNumber(value)} s`, pixelsPerLabel: 70, axisLabelWidth: 60 },
            y: { axisLabelFormatter: formatNumber, axisLabelWidth: 46, ...options.axes?.y },
        },
    });
    return { graph, hairline, legend };
};

const swatch = (series) => {
    const drawing = svgElement("svg", { viewBox: "0 0 22 8", "aria-hidden": "true" });
    drawing.append(svgElement("line", {
        x1: 0, x2: 22, y1: 4, y2: 4, stroke: `var(--${series.colour})`,
        "stroke-width": series.timeline === 0 ? 2.5 : 1, "stroke-dasharray": series.dashed ? "5 3" : "none",
    }));
    return drawing;
};

const lineOptions = (chart, names) => Object.fromEntries(chart.series.map((series, index) => [names[index], {
    color: themeColour(series.colour),
    strokeWidth: series.timeline === 0 ? 1.8 : 0.8,
    strokePattern: series.dashed ? [5, 3] : null,
}]));

const addChart = (chart) => {
    const columns = chart.series.map(spread);
    const names = chart.series.map((series, index) => `${index}`);
    const isShown = (value) => value !== null && (!chart.log || value > 0);
    const rows = times.map((time, row) => [time, ...columns.map((column) => (isShown(column[row]) ? column[row] : null))]);
    const plot = makePlot(chart.title, chart.unit, rows, {
        labels: ["time", ...names],
        series: lineOptions(chart, names),
        logscale: chart.log,
    });
    const outputs = chart.series.map((series) => {
        const line = element("li");
        const value = element("span");
        const run = series.timeline === 0 ? "" : `, ${data.timelines[series.timeline].name}`;
        line.append(swatch(series), element("span", series.name + run), value);
        plot.legend.append(line);
        return value;
    });
    plot.read = (row) => outputs.forEach((output, index) => {
        let at = row;
        while (at > 0 && columns[index][at] === null && data.timelines.length > 1) {
            at -= 1;
        }
        output.textContent = formatNumber(columns[index][at]);
    });
    plot.recolour = () => plot.graph.updateOptions({ ...axisOptions(), series: lineOptions(chart, names) });
    plots.push(plot);
};

// States ----------------------------------------------------------------------------------------------------------

const stateColours = ["long", "short", "safe", "other"];
const stripHeight = 20;

const drawStates = (context, area, graph) => {
    context.save();
    context.beginPath();
    context.rect(area.x, area.y, area.w, area.h);
    context.clip();
    context.font = "12px system-ui, sans-serif";
    context.textBaseline = "middle";
    data.bands.forEach((band, index) => {
        const top = area.y + index * (area.h / data.bands.length);
        const height = area.h / data.bands.length - 2;
        context.fillStyle = themeColour("raised");
        context.fillRect(area.x, top, area.w, height);
        const words = [...new Set(band.stretches.map((stretch) => stretch[2]))];
        band.stretches.forEach(([from, to, word]) => {
            const left = graph.toDomXCoord(from);
            context.globalAlpha = 0.75 - 0.25 * (words.indexOf(word) % 3);
            context.fillStyle = themeColour(stateColours[index % stateColours.length]);
            context.fillRect(left, top, Math.max(graph.toDomXCoord(to) - left, 1.5), height);
        });
        context.globalAlpha = 1;
        context.lineWidth = 3;
        context.strokeStyle = themeColour("ground");
        context.strokeText(band.name, area.x + 4, top + height / 2);
        context.fillStyle = themeColour("text");
        context.fillText(band.name, area.x + 4, top + height / 2);
    });
    context.restore();
    drawMarks(context, area, graph);
};

const stateAt = (band, time) => band.stretches.find(([from, to]) => time >= from - 1e-9 && time < to - 1e-9);

const addStates = () => {
    if (data.bands.length === 0) {
        return;
    }
    const rows = times.map((time) => [time, 0]);
    const plot = makePlot("States", "", rows, {
        labels: ["time", "states"],
        valueRange: [0, 1],
        strokeWidth: 0,
        highlightCircleSize: 0,
        underlayCallback: drawStates,
        axes: { y: { ticker: () => [], drawGrid: false } },
    });
    plot.hairline.parentElement.style.height = `${data.bands.length * stripHeight + 24}px`;
    plot.graph.resize();
    const outputs = data.bands.map((band) => {
        const line = element("li");
        const value = element("span");
        line.append(element("span", band.name), value);
        plot.legend.append(line);
        return value;
    });
    plot.read = (row) => outputs.forEach((output, index) => {
        const stretch = stateAt(data.bands[index], times[row]);
        output.textContent = stretch === undefined ? "–" : stretch[2] || "yes";
    });
    plot.recolour = () => plot.graph.updateOptions(axisOptions());
    plots.push(plot);
};

// Pictures --------------------------------------------------------------------------------------------------------

const figures = [];

const histogramOf = (counts) => {
    const drawing = svgElement("svg", {
        class: "histogram", viewBox: `0 0 ${counts.length} 1`, preserveAspectRatio: "none", "aria-hidden": "true",
    });
    const top = Math.sqrt(Math.max(...counts, 1));
    const bars = counts.map((count, bin) => `M${bin} 1V${1 - Math.sqrt(count) / top}H${bin + 1}V1Z`);
    drawing.append(svgElement("path", { d: bars.join("") }));
    return drawing;
};

const outline = (context, [x, y, dx, dy], width, height, dashes) => {
    context.setLineDash(dashes);
    [["#000000", 3], ["#f0e442", 1.5]].forEach(([colour, lineWidth]) => {
        context.strokeStyle = colour;
        context.lineWidth = lineWidth;
        context.strokeRect(x * width + 1, y * height + 1, dx * width - 2, dy * height - 2);
    });
};

// What counts little is veiled.
const drawWeights = (context, measurement, width, height) => {
    const weights = data.weights[measurement.weights];
    const most = Math.max(...weights, 1e-9);
    const [x, y, dx, dy] = measurement.box;
    const side = Math.sqrt(weights.length);
    const veil = (weight) => `rgba(0, 0, 0, ${0.8 * (1 - Math.max(weight, 0) / most)})`;
    context.fillStyle = veil(0);
    context.beginPath();
    context.rect(0, 0, width, height);
    context.rect(x * width, y * height, dx * width, dy * height);
    context.fill("evenodd");
    weights.forEach((weight, cell) => {
        const left = Math.round((x + dx * (cell % side) / side) * width);
        const top = Math.round((y + dy * Math.floor(cell / side) / side) * height);
        const right = Math.round((x + dx * (cell % side + 1) / side) * width);
        const bottom = Math.round((y + dy * (Math.floor(cell / side) + 1) / side) * height);
        context.fillStyle = veil(weight);
        context.fillRect(left, top, right - left, bottom - top);
    });
    outline(context, measurement.box, width, height, []);
};

const drawOverlay = ({ picture, canvas, marks }) => {
    const context = canvas.getContext("2d");
    context.clearRect(0, 0, canvas.width, canvas.height);
    const name = byId("measurement").value;
    const measurement = picture.measurements.find((candidate) => candidate.name === name);
    if (measurement !== undefined) {
        drawWeights(context, measurement, canvas.width, canvas.height);
    }
    if (picture.touch !== null) {
        outline(context, picture.touch, canvas.width, canvas.height, [6, 4]);
    }
    marks.hidden = !byId("show-marks").checked;
};

const imageOf = (source, text) => {
    const image = element("img");
    image.src = source;
    image.alt = text;
    return image;
};

const addPicture = (picture) => {
    const figure = element("figure");
    const stack = element("div", "", "stack");
    const marks = imageOf(picture.marks, "");
    const canvas = element("canvas");
    canvas.width = 440;
    canvas.height = 330;
    stack.append(imageOf(picture.image, `frame ${picture.frame}: ${picture.caption}`), marks, canvas);
    const caption = element("figcaption", picture.caption);
    const percent = (share) => `${formatNumber(share * 100)} %`;
    caption.append(element("br"), element("span", `frame ${picture.frame}, ${picture.time.toFixed(2)} s`),
        element("br"), element("span", `over ${percent(picture.over)}, under ${percent(picture.under)}`));
    figure.append(stack, histogramOf(picture.histogram), caption);
    figure.addEventListener("click", () => setCursor(rowNear(picture.time)));
    byId("strip").append(figure);
    figures.push({ picture, figure, canvas, marks });
};

const addPictures = () => {
    if (data.pictures.length === 0) {
        return;
    }
    byId("pictures").hidden = false;
    byId("picture-note").textContent = data.pictureNote;
    const names = new Set(data.pictures.flatMap((picture) => picture.measurements.map(({ name }) => name)));
    [["", "no weights"], ...[...names].map((name) => [name, name])].forEach(([value, text]) => {
        const option = element("option", text);
        option.value = value;
        byId("measurement").append(option);
    });
    data.pictures.forEach(addPicture);
    const redraw = () => figures.forEach(drawOverlay);
    byId("measurement").addEventListener("change", redraw);
    byId("show-marks").addEventListener("change", redraw);
    redraw();
};

// Cursor, keys, tables --------------------------------------------------------------------------------------------

const setCursor = (row, origin = null) => {
    cursorRow = Math.min(Math.max(row, 0), times.length - 1);
    const frame = frameOfRow[cursorRow];
    byId("cursor").textContent = `${frame === null ? "" : `frame ${frame}, `}${times[cursorRow].toFixed(3)} s`;
    plots.forEach((plot) => {
        if (plot.graph !== origin) {
            plot.graph.setSelection(cursorRow);
        }
        placeHairline(plot);
        plot.read(cursorRow);
    });
    const before = figures.filter(({ picture }) => picture.time <= times[cursorRow] + 1e-9).at(-1);
    figures.forEach((shown) => shown.figure.setAttribute("aria-current", String(shown === before)));
};

const zoom = (factor) => {
    const [from, to] = plots[0].graph.xAxisRange();
    const time = Math.min(Math.max(times[cursorRow], from), to);
    const least = times[0];
    const most = times[times.length - 1];
    plots[0].graph.updateOptions({
        dateWindow: [Math.max(time - (time - from) * factor, least), Math.min(time + (to - time) * factor, most)],
    });
};

const showCursor = () => {
    const [from, to] = plots[0].graph.xAxisRange();
    const time = times[cursorRow];
    if (time < from || time > to) {
        const shift = time < from ? time - from : time - to;
        plots[0].graph.updateOptions({ dateWindow: [from + shift, to + shift] });
    }
};

const moveTo = (row) => {
    setCursor(row);
    showCursor();
};

const toMark = (direction) => {
    const rows = data.marks.map(([time]) => rowNear(time)).filter((row) => (row - cursorRow) * direction > 0);
    if (rows.length > 0) {
        moveTo(direction > 0 ? Math.min(...rows) : Math.max(...rows));
    }
};

const chooseNext = (select) => {
    select.selectedIndex = (select.selectedIndex + 1) % select.options.length;
    select.dispatchEvent(new Event("change"));
};

const keys = {
    ArrowLeft: (event) => moveTo(cursorRow - (event.shiftKey ? 10 : 1)),
    ArrowRight: (event) => moveTo(cursorRow + (event.shiftKey ? 10 : 1)),
    "[": () => toMark(-1),
    "]": () => toMark(1),
    "+": () => zoom(0.5),
    "=": () => zoom(0.5),
    "-": () => zoom(2),
    0: () => plots[0].graph.resetZoom(),
    w: () => chooseNext(byId("measurement")),
    e: () => byId("show-marks").click(),
};

document.addEventListener("keydown", (event) => {
    const isTyping = event.target.closest("select") !== null;
    if (isTyping || event.ctrlKey || event.altKey || event.metaKey || !(event.key in keys) || plots.length === 0) {
        return;
    }
    event.preventDefault();
    keys[event.key](event);
});

const addMarks = () => data.marks.forEach(([time, words], index) => {
    const item = element("li");
    const button = element("button");
    button.append(element("b", String(index + 1)), ` ${time.toFixed(2)} s: ${words}`);
    button.addEventListener("click", () => moveTo(rowNear(time)));
    item.append(button);
    byId("marks").append(item);
});

const addTable = ({ title, columns, rows }) => {
    const table = element("table");
    const addRow = (cells, name) => {
        const line = element("tr");
        line.append(...cells.map((cell) => element(name, cell)));
        table.append(line);
    };
    if (columns.length > 0) {
        addRow(columns, "th");
    }
    rows.forEach((row) => addRow(row, "td"));
    const scroll = element("div", "", "scroll");
    scroll.append(table);
    byId("tables").append(element("h2", title), scroll);
};

document.title = data.title;
byId("title").textContent = data.title;
byId("command").textContent = data.command;
byId("notes").textContent = data.notes.join(" ");
data.tables.forEach(addTable);
addPictures();
if (times.length > 0) {
    addMarks();
    addStates();
    data.charts.forEach(addChart);
    setCursor(times.length - 1);
}
window.matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => {
    plots.forEach((plot) => plot.recolour());
});

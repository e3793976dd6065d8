// Charts that are zoomed and read together.

const plots = [];
let cursorRow = 0;
let isFollowing = false;

const axisOptions = () => ({
    axisLineColor: themeColour("line"),
    gridLineColor: themeColour("line"),
});

const drawMarkLines = (context, area, graph, drawBeside = () => {}) => {
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
            drawBeside(x, index);
        }
    });
    context.restore();
};

const drawMarks = (context, area, graph) => drawMarkLines(context, area, graph, (x, index) => {
    context.fillText(String(index + 1), x + 3, area.y + 10);
});

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
        ylabel: unit.split(",")[0],
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
    // The first lines of a chart matter most: they are drawn last, above the others.
    const shown = columns.map((column) => column.map((value) => (isShown(value) ? value : null))).reverse();
    const plot = makePlot(chart.title, chart.unit, times.map((time, row) => [time, ...shown.map((column) => column[row])]), {
        labels: ["time", ...[...names].reverse()],
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
        while (at > 0 && columns[index][at] === null) {
            at -= 1;
        }
        output.textContent = formatNumber(columns[index][at]);
    });
    plot.recolour = () => plot.graph.updateOptions({ ...axisOptions(), series: lineOptions(chart, names) });
    plots.push(plot);
};

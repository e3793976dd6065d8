// States as strips of one chart.

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
    drawMarkLines(context, area, graph);
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
        line.append(element("span", band.name, "state"), value);
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

// Pictures with what was measured of them.

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
    const percent = (share) => `${Number((share * 100).toPrecision(2))} %`;
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

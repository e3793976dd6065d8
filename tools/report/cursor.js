// One cursor for all charts, and its keys.

// Moves the strip alone: the page stays where the reader is.
const showInStrip = (figure) => {
    const strip = byId("strip");
    const left = figure.offsetLeft - strip.offsetLeft;
    if (left < strip.scrollLeft || left + figure.offsetWidth > strip.scrollLeft + strip.clientWidth) {
        strip.scrollLeft = left + (figure.offsetWidth - strip.clientWidth) / 2;
    }
};

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
    if (before !== undefined) {
        showInStrip(before.figure);
    }
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
    const isTyping = event.target.tagName === "SELECT";
    if (isTyping || event.ctrlKey || event.altKey || event.metaKey || !(event.key in keys) || plots.length === 0) {
        return;
    }
    event.preventDefault();
    keys[event.key](event);
});

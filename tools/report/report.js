// Draws the page. Its scripts stand one behind the other in one module. Names come in as text, never as markup.

const addMarks = () => data.marks.forEach(([time, words], index) => {
    const item = element("li");
    const button = element("button");
    button.append(element("b", String(index + 1)), ` ${time.toFixed(2)} s: ${words}`);
    button.addEventListener("click", () => moveTo(rowNear(time)));
    item.append(button);
    byId("marks").append(item);
});

const addTable = (place, { title, columns, rows }) => {
    const table = element("table");
    const width = Math.max(columns.length, ...rows.map((row) => row.length));
    const addRow = (cells, name) => {
        const line = element("tr");
        line.append(...cells.map((cell) => element(name, cell)));
        line.lastChild.colSpan = width - cells.length + 1;
        table.append(line);
    };
    if (columns.length > 0) {
        addRow(columns, "th");
    }
    rows.forEach((row) => addRow(row, "td"));
    const scroll = element("div", "", "scroll");
    scroll.append(table);
    byId(place).append(element("h2", title), scroll);
};

document.title = data.title;
byId("title").textContent = data.title;
byId("command").textContent = data.command;
byId("notes").textContent = data.notes.join(" ");
addTable("summary", data.summary);
data.tables.forEach((table) => addTable("tables", table));
addPictures();
if (times.length > 0) {
    addMarks();
    addStates();
    data.charts.forEach(addChart);
    setCursor(0);
}
window.matchMedia("(prefers-color-scheme: dark)").addEventListener("change", () => {
    plots.forEach((plot) => plot.recolour());
});

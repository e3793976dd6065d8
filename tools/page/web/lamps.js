// What of the camera is so or not: settled, held, flash, detectors.

import { element } from "./element.js";
import { isLamp } from "./quantities.js";

/// brightnessSettled reads better as brightness settled.
function inWords(name) {
    return name.replaceAll(/([a-z])([A-Z])/g, "$1 $2").toLowerCase();
}

export function lamps(node, session) {
    let shown = [];
    session.on("state", ({ controls }) => {
        shown = controls.map(({ name }, column) => ({
            name, column, lamp: element("span", { class: "lamp" }, inWords(name)),
        })).filter(({ name }) => isLamp(name));
        node.replaceChildren(...shown.map(({ lamp }) => lamp));
    });
    session.on("values", (samples) => {
        for (const { column, lamp } of shown) {
            const isOn = samples.at(-1).v[column] > 0;
            lamp.classList.toggle("on", isOn);
            lamp.setAttribute("aria-label", `${lamp.textContent}: ${isOn ? "yes" : "no"}`);
        }
    });
}

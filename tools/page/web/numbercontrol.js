// A number: slider and field.

import { element } from "./element.js";
import { Latest } from "./latest.js";
import { decimal } from "./numbers.js";
import { POSITIONS, sliderScale } from "./sliderscale.js";

/// Edits on the way of a drag at most eight times a second.
const PAUSE = 125;

/// What is named by a number does not grow, so that an ID has no slider.
/// @return {node, show}: show takes over what the member holds
export function numberControl(member, id, session) {
    const scale = sliderScale(member);
    const slider = element("input", {
        type: "range", min: 0, max: POSITIONS, step: 1, "aria-label": `${member.name}, slider`,
    });
    const field = element("input", { type: "text", inputmode: "decimal", id, autocomplete: "off" });
    let isHeld = false;
    let isJoined = false;

    const edits = new Latest(async ({ text, isOnTheWay }) => {
        const options = { isJoined, isOnTheWay };
        isJoined = isOnTheWay;
        await session.set([{ path: member.path, value: text }], options);
    }, PAUSE);

    function show() {
        if (!isHeld) {
            slider.value = scale.toPosition(Number(member.value));
            field.value = member.value;
            slider.setAttribute("aria-valuetext", `${member.value} ${member.unit}`);
        }
    }

    slider.addEventListener("input", () => {
        isHeld = true;
        field.value = scale.toText(Number(slider.value));
        edits.push({ text: field.value, isOnTheWay: true });
    });
    slider.addEventListener("change", () => {
        isHeld = false;
        edits.push({ text: scale.toText(Number(slider.value)), isOnTheWay: false });
    });
    field.addEventListener("input", () => {
        isHeld = true;
        field.setCustomValidity("");
    });
    field.addEventListener("focus", () => field.select());
    field.addEventListener("blur", () => {
        isHeld = false;
        show();
    });
    field.addEventListener("keydown", (event) => {
        if (event.key === "Escape") {
            isHeld = false;
            show();
        }
    });
    field.addEventListener("change", () => {
        const value = Number(field.value);
        if (field.value.trim() === "" || !Number.isFinite(value) || (member.integer && !Number.isInteger(value))) {
            field.setCustomValidity(member.integer ? "a whole number, please" : "a number, please");
            field.reportValidity();
            return;
        }
        isHeld = false;
        edits.push({ text: decimal(value), isOnTheWay: false });
    });
    show();
    return { node: element("div", { class: "number" }, member.unit === "ID" ? null : slider, field), show };
}

// Elements of the page. What stands in them is set as text, so that a name from a camera stays text whatever it holds.

const SVG = "http://www.w3.org/2000/svg";

function fill(made, attributes, children) {
    for (const [name, value] of Object.entries(attributes)) {
        if (typeof value === "function") {
            made.addEventListener(name, value);
        } else if (value === true) {
            made.setAttribute(name, "");
        } else if (value !== false && value !== null && value !== undefined) {
            made.setAttribute(name, value);
        }
    }
    made.append(...children.filter((child) => child !== null));
    return made;
}

/// @param attributes functions listen to the event of that name; true stands alone; false and null are left out
/// @param children elements or texts; null is left out
export function element(tag, attributes = {}, ...children) {
    return fill(document.createElement(tag), attributes, children);
}

/// The same within a drawing.
export function drawn(tag, attributes = {}, ...children) {
    return fill(document.createElementNS(SVG, tag), attributes, children);
}

export function button(text, onClick, attributes = {}) {
    return element("button", { type: "button", click: onClick, ...attributes }, text);
}

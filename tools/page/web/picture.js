// What the camera sees, with the number of its frame.

import { element } from "./element.js";
import { Latest } from "./latest.js";
import { Overlay } from "./overlay.js";
import { fetchFile } from "./server.js";

const PAUSE = 100;

export function picture(node, session) {
    const image = element("img", { alt: "the camera's picture" });
    const caption = element("span", { id: "frame" });
    const overlay = new Overlay(session);
    node.append(element("div", { class: "view" }, image, overlay.svg),
        element("div", { class: "below" }, caption, overlay.control));
    let isOffered = false;
    let shown = null;

    const fetches = new Latest(async () => {
        try {
            const response = await fetchFile("picture");
            const address = URL.createObjectURL(await response.blob());
            image.src = address;
            URL.revokeObjectURL(shown);
            shown = address;
            caption.textContent = `frame ${response.headers.get("X-Frame")}`;
            node.dataset.frame = response.headers.get("X-Frame");
            node.hidden = false;
        } catch {
            // A lost camera is said elsewhere; the last picture stays.
        }
    }, PAUSE);

    session.on("state", (state) => {
        isOffered = state.picture;
        if (!isOffered && state.camera.connected) {
            node.hidden = true;
        }
    });
    session.on("picture", () => isOffered && !document.hidden && fetches.push(null));
}

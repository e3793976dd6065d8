// A patch from the server, as a file of the browser.

import { element } from "./element.js";
import { fetchFile } from "./server.js";

/// Saves, or says why there is nothing to save. @param path of the patch on the server
export async function savePatch(path, session) {
    try {
        const address = URL.createObjectURL(await (await fetchFile(path)).blob());
        element("a", { href: address, download: "patch.yaml" }).click();
        window.setTimeout(() => URL.revokeObjectURL(address), 60000);
    } catch (error) {
        session.notice(error.message, true);
    }
}

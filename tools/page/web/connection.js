// Which camera it is, and whether it answers.

export function connection({ banner, lamp, device }, session) {
    session.on("camera", ({ connected, address, name, error }) => {
        lamp.classList.toggle("on", connected);
        lamp.classList.toggle("bad", !connected);
        lamp.title = connected ? "connected" : "lost";
        if (connected) {
            device.textContent = `${name} at ${address}`;
        }
        document.body.classList.toggle("lost", !connected);
        banner.hidden = connected;
        const place = address ? `at ${address} ` : "";
        const lost = `The camera ${place}is lost (${error}). What is shown is what it held last; it is looked for.`;
        banner.textContent = connected ? "" : lost;
    });
}

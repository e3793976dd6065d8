// One line at the foot of the page, for a while.

const STAYS = 8000;

export function notices(node, session) {
    let timer = 0;
    session.on("notice", ({ text, isError }) => {
        node.textContent = text;
        node.classList.toggle("error", isError);
        window.clearTimeout(timer);
        timer = window.setTimeout(() => {
            node.textContent = "";
        }, STAYS);
    });
}

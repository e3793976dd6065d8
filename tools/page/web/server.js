// Questions and edits to the server of this page.

const token = new URLSearchParams(window.location.search).get("token");

/// Tells this browser's edits from those of others.
export const clientID = window.crypto.getRandomValues(new Uint32Array(2)).join("-");

/// What the server said no to, in its words.
export class Refusal extends Error {
    /// @param isGuard whether the edit goes through if it is forced @param isPassing whether it may be said yes to later
    constructor(message, { isGuard = false, isPassing = false }) {
        super(message);
        this.isGuard = isGuard;
        this.isPassing = isPassing;
    }
}

/// @return where the server answers, with the token of the page's own address
export function addressOf(path, parameters = {}) {
    const query = new URLSearchParams(parameters);
    if (token) {
        query.set("token", token);
    }
    return `/api/${path}?${query}`;
}

async function answerOf(request) {
    let response;
    try {
        response = await request;
    } catch {
        throw new Refusal("the server of this page does not answer; is kirotune still running?", { isPassing: true });
    }
    if (response.ok) {
        return response;
    }
    const said = await response.json().catch(() => ({}));
    throw new Refusal(said.error ?? `the server answers ${response.status}`, {
        isGuard: said.guard === true,
        isPassing: response.status >= 500,
    });
}

/// @throws Refusal
export async function ask(path, parameters) {
    return (await answerOf(fetch(addressOf(path, parameters)))).json();
}

/// @return the answer with the bytes of a file
/// @throws Refusal
export function fetchFile(path) {
    return answerOf(fetch(addressOf(path)));
}

/// @throws Refusal
export async function tell(path, body) {
    const headers = { "Content-Type": "application/json", "X-Client": clientID };
    return (await answerOf(fetch(addressOf(path), { method: "POST", headers, body: JSON.stringify(body) }))).json();
}

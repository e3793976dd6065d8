// Sends the newest of many values, one at a time.

/// While one is under way only the newest of the others waits, so that a quick hand never floods a camera.
export class Latest {
    #waiting = null;
    #isBusy = false;

    /// @param send gives a promise
    /// @param pause least time between two, ms
    constructor(send, pause) {
        this.send = send;
        this.pause = pause;
    }

    async push(value) {
        this.#waiting = { value };
        if (this.#isBusy) {
            return;
        }
        this.#isBusy = true;
        while (this.#waiting !== null) {
            const next = this.#waiting;
            this.#waiting = null;
            await this.send(next.value);
            await new Promise((resolve) => setTimeout(resolve, this.pause));
        }
        this.#isBusy = false;
    }
}

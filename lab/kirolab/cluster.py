"""Units of work on the machines of a Dask cluster.

A cluster loses workers, has workers that hang, and its scheduler may be started anew. Since a unit gives the same
results wherever and how often it runs, there is one answer to all of that: give what is not done to the workers that
answer."""

import logging
import queue
import sys
import time
from collections import deque
from concurrent.futures import CancelledError
from dataclasses import dataclass
from typing import Any, Callable

from distributed import Client, Future

from kirolab.engine import Patience
from kirolab.errors import LabError
from kirolab.executor import Result
from kirolab.parcels import OtherBuild, Parcel, carried, parcel_of, run_parcel
from kirolab.rollcall import RollCall
from kirolab.runs import Outcome, Unit

UNITS_OF_THREAD = 3  # that wait at the scheduler: enough for none to idle, few enough to move
CALL_SECONDS = 5.0  # between two roll calls
CONNECT_SECONDS = 10.0
RETURN_SECONDS = 120.0  # for which a scheduler, or all workers, may be gone
TICK_SECONDS = 0.5
Work = Callable[..., list[Outcome]]


@dataclass
class Flight:
    """A unit that a worker has, or will have."""

    unit: Unit
    future: Future
    begun: float


def tell(text: str) -> None:
    print(f"kirolab: {text}", file=sys.stderr)


class ClusterExecutor:
    """Raises LabError if nobody is there to do the work. `work` is what a worker does with a parcel."""

    def __init__(
        self,
        address: str,
        build: str,
        patience: Patience = Patience(),
        answer_seconds: float | None = None,
        say: Callable[[str], None] = tell,
        work: Work = run_parcel,
    ) -> None:
        logging.getLogger("distributed").setLevel(logging.CRITICAL)  # what it says of lost workers, this does
        self._address = address
        self._build = build
        self._patience = patience
        self._say = say
        self._work = work
        options = {} if answer_seconds is None else {"answer_seconds": answer_seconds}
        self._new_roll: Callable[[], RollCall] = lambda: RollCall(build, say, **options)
        self._waiting: deque[Unit] = deque()
        self._flights: dict[int, Flight] = {}
        self._landed: "queue.SimpleQueue[int]" = queue.SimpleQueue()
        self._ready: deque[Result] = deque()
        self._inputs: dict[str, Future] = {}
        self._count = 0
        self._generation = 0
        self._client = self._connected(CONNECT_SECONDS)
        self._roll = self._new_roll()
        self._find_workers(CONNECT_SECONDS)

    @property
    def width(self) -> int:
        return max(sum(self._roll.accepted.values()), 1)

    def submit(self, unit: Unit) -> None:
        self._waiting.append(unit)
        self._whatever_happens(self._fill)

    def next(self) -> Result:
        while not self._ready:
            try:
                landed = [self._landed.get(timeout=TICK_SECONDS)]
            except queue.Empty:
                landed = []
            while not self._landed.empty():
                landed.append(self._landed.get())
            self._whatever_happens(lambda: self._unload(landed))
            self._whatever_happens(self._look_around)
            self._whatever_happens(self._fill)
        return self._ready.popleft()

    def _whatever_happens(self, step: Callable[[], None]) -> None:
        """A scheduler that goes away shows in any word to it."""
        try:
            step()
        except (OSError, TimeoutError, CancelledError) as fault:
            self._begin_anew(str(fault))

    def close(self) -> list[Result]:
        """What is on its way is dropped: the store has no result of it."""
        try:
            self._client.cancel([flight.future for flight in self._flights.values()])
        except Exception:  # nobody is there who could go on with it
            pass
        self._flights.clear()
        self._client.close(timeout=CONNECT_SECONDS)
        return list(self._ready)

    def _connected(self, seconds: float) -> Client:
        try:
            return Client(self._address, timeout=seconds, set_as_default=False, name="kirolab")
        except (OSError, TimeoutError, ValueError) as fault:
            raise LabError(f"{self._address}: no scheduler there: {' '.join(str(fault).split())}") from None

    def _find_workers(self, seconds: float) -> None:
        """Waits so long for a worker that can be used, unless all that are there were refused."""
        end = time.monotonic() + seconds
        while not self._roll.accepted:
            self._roll.call(self._client)
            self._next_call = time.monotonic() + CALL_SECONDS
            if not self._roll.accepted and (self._roll.has_refused_all or time.monotonic() >= end):
                raise LabError(f"{self._address}: the cluster has no worker that could do the work")
            if not self._roll.accepted:
                time.sleep(TICK_SECONDS)

    def _fill(self) -> None:
        while self._waiting and len(self._flights) < UNITS_OF_THREAD * self.width:
            self._send(self._waiting[0])
            self._waiting.popleft()

    def _send(self, unit: Unit) -> None:
        parcel, contents = parcel_of(unit, self._patience, self._build)
        # Names of workers cost the scheduler time for each unit, so none are named as long as all may have it.
        workers = list(self._roll.accepted) if self._roll.is_anyone_out else None
        inputs = [self._carried(file.checksum, data, workers) for file, data in zip(parcel.files, contents)]
        self._count += 1
        token = self._count
        future = self._submit(parcel, inputs, workers)
        self._flights[token] = Flight(unit, future, time.monotonic())
        future.add_done_callback(lambda _: self._landed.put(token))

    def _submit(self, parcel: Parcel, inputs: list[Future], workers: list[str] | None) -> Future:
        return self._client.submit(self._work, parcel, *inputs, pure=False, workers=workers, retries=0)

    def _carried(self, checksum: str, data: bytes, workers: list[str] | None) -> Future:
        """Once for all units that need it, as long as its workers are fine."""
        key = f"kirolab-input-{checksum}-{self._generation}"
        if key not in self._inputs:
            self._inputs[key] = self._client.submit(carried, data, key=key, workers=workers)
        return self._inputs[key]

    def _unload(self, landed: list[int]) -> None:
        """Results in one go; of a future that belongs to an earlier attempt there is no flight any more."""
        done = {token: self._flights[token] for token in landed if token in self._flights}
        finished = {token: flight.future for token, flight in done.items() if flight.future.status == "finished"}
        results: dict[int, Any] = self._client.gather(finished, errors="skip") if finished else {}
        is_lost = False
        for token, flight in done.items():
            del self._flights[token]
            if token in results:
                self._ready.append((flight.unit, results[token]))
            elif flight.future.status == "error":
                fault = flight.future.exception()
                if isinstance(fault, OtherBuild):
                    self._waiting.appendleft(flight.unit)
                    self._next_call = 0.0
                    continue
                outcome = Outcome(None, f"{type(fault).__name__}: {' '.join(str(fault).split())}")
                self._ready.append((flight.unit, [outcome] * len(flight.unit.runs)))
            else:
                self._waiting.appendleft(flight.unit)
                is_lost = True
        if is_lost:
            raise OSError("the scheduler does not know its work any more")

    def _look_around(self) -> None:
        if self._client.status != "running":
            raise OSError("the connection is lost")
        now = time.monotonic()
        is_late = any(now - flight.begun > self._wait_of(flight) for flight in self._flights.values())
        if now < self._next_call and not is_late:
            return
        self._next_call = now + CALL_SECONDS
        has_lost = self._roll.call(self._client)
        if not self._roll.accepted:
            self._find_workers(RETURN_SECONDS)
        if has_lost or is_late:
            self._recall()

    def _wait_of(self, flight: Flight) -> float:
        """A unit may stand behind others of its thread."""
        return (UNITS_OF_THREAD + 1) * self._patience.seconds_of(flight.unit)

    def _recall(self) -> None:
        """All that is not done goes out anew, with its files, to whoever answers now."""
        flights = list(self._flights.values())
        self._flights.clear()
        self._generation += 1
        self._waiting.extendleft(flight.unit for flight in reversed(flights))
        inputs, self._inputs = list(self._inputs.values()), {}
        self._client.cancel([flight.future for flight in flights] + inputs, force=True)

    def _begin_anew(self, fault: str) -> None:
        """With a scheduler that has been started again, which knows nothing of us."""
        self._say(f"{self._address}: {' '.join(fault.split())}; waiting for the scheduler")
        flights = list(self._flights.values())
        self._flights.clear()
        self._inputs.clear()
        self._generation += 1
        self._waiting.extendleft(flight.unit for flight in reversed(flights))
        self._client.close(timeout=1)
        end = time.monotonic() + RETURN_SECONDS
        while True:
            try:
                self._client = self._connected(CONNECT_SECONDS)
                break
            except LabError:
                if time.monotonic() > end:
                    raise
                time.sleep(TICK_SECONDS)
        self._roll = self._new_roll()
        self._find_workers(RETURN_SECONDS)

"""Which workers of a cluster get work: those that answer, with the build that is expected."""

import asyncio
import time
from typing import Any, Callable

from distributed import Client

from kirolab.parcels import build_here

ANSWER_SECONDS = 10.0  # a worker that says nothing for so long is taken for hung


class RollCall:
    """Addresses are those by which the scheduler knows workers; a new process has a new one."""

    def __init__(self, build: str, tell: Callable[[str], None], answer_seconds: float = ANSWER_SECONDS) -> None:
        self._build = build
        self._tell = tell
        self._answer_seconds = answer_seconds
        self._refused: set[str] = set()
        self.accepted: dict[str, int] = {}  # threads by address
        self.has_refused_all = False
        self.is_anyone_out = False  # refused, or silent
        self._seen: dict[str, tuple[float, float]] = {}  # last heartbeat, and when it was news

    def call(self, client: Client) -> bool:
        """Asks workers that are new, and those whose heartbeat has stopped. Returns whether one that had work has
        fallen silent or gone."""
        workers = client.scheduler_info()["workers"]
        asked = [address for address in workers if address not in self._refused and self._is_doubtful(address, workers)]
        builds = dict(zip(asked, client.sync(self._ask, client, asked)))
        had_work = set(self.accepted)
        for address, build in builds.items():
            if build is None and address in had_work:
                self._tell(f"worker {address}: no answer within {self._answer_seconds:g} s; its work goes to others")
            elif build is not None and build != self._build:
                self._refused.add(address)
                self._tell(f"worker {address}: {build}; expected {self._build}, it gets no work")
        fine = [address for address in workers if builds.get(address, self._build if address in had_work else None)]
        self.accepted = {address: workers[address]["nthreads"] for address in fine if address not in self._refused}
        self.is_anyone_out = len(self.accepted) < len(workers)
        self.has_refused_all = bool(workers) and set(workers) <= self._refused
        return bool(had_work - set(self.accepted))

    def _is_doubtful(self, address: str, workers: dict[str, Any]) -> bool:
        """By this machine's clock: the scheduler's may be another."""
        now, seen = time.monotonic(), workers[address]["last_seen"]
        if self._seen.get(address, (None, now))[0] != seen:
            self._seen[address] = (seen, now)
        return address not in self.accepted or now - self._seen[address][1] > self._answer_seconds

    async def _ask(self, client: Client, addresses: list[str]) -> list[str | None]:
        """At the same time: one that hangs keeps nobody else waiting."""

        async def ask(address: str) -> str | None:
            try:
                answers = await asyncio.wait_for(
                    client._run(build_here, workers=[address], on_error="return"), self._answer_seconds
                )
            except (OSError, asyncio.TimeoutError):
                return None
            answer = answers.get(address)
            if isinstance(answer, OSError):
                return None  # it is on its way out
            return answer if isinstance(answer, str) else f"no programs, or no lab, there: {answer}"

        return list(await asyncio.gather(*(ask(address) for address in addresses)))

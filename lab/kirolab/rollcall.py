"""Which workers of a cluster get work: those that answer, with the build that is expected."""

import asyncio
from typing import Callable

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

    def call(self, client: Client) -> bool:
        """Asks all workers that were not refused. Returns whether one that had work has fallen silent or gone."""
        threads = {address: facts["nthreads"] for address, facts in client.scheduler_info()["workers"].items()}
        asked = [address for address in threads if address not in self._refused]
        builds = client.sync(self._ask, client, asked)
        silent = [address for address, build in zip(asked, builds) if build is None]
        for address, build in zip(asked, builds):
            if build is not None and build != self._build:
                self._refused.add(address)
                self._tell(f"worker {address}: {build}; expected {self._build}, it gets no work")
        had_work = set(self.accepted)
        for address in silent:
            if address in had_work:
                self._tell(f"worker {address}: no answer within {self._answer_seconds:g} s; its work goes to others")
        self.accepted = {address: threads[address] for address, build in zip(asked, builds) if build == self._build}
        self.has_refused_all = bool(threads) and set(threads) <= self._refused
        return bool(had_work - set(self.accepted))

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
            return answer if isinstance(answer, str) else f"no programs, or no lab, there: {answer}"

        return list(await asyncio.gather(*(ask(address) for address in addresses)))

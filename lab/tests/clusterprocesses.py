"""A scheduler and workers as processes on this machine, for tests to do harm to."""

import os
import signal
import socket
import subprocess
import sys
import time
from pathlib import Path

from distributed import Client

LAB = Path(__file__).resolve().parents[1]
START_SECONDS = 60


class ClusterProcesses:
    """Use it with `with`; all processes end with it."""

    def __init__(self, folder: Path, programs: Path) -> None:
        self._folder = folder
        self._programs = programs
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            self.address = f"tcp://127.0.0.1:{free.getsockname()[1]}"
        self._scheduler: "subprocess.Popen[bytes] | None" = None
        self.workers: "list[subprocess.Popen[bytes]]" = []

    def __enter__(self) -> "ClusterProcesses":
        self.start_scheduler()
        return self

    def __exit__(self, *_: object) -> None:
        for process in [*self.workers, self._scheduler]:
            if process is not None:
                process.kill()
                process.wait()

    def start_scheduler(self) -> None:
        port = self.address.rsplit(":", 1)[1]
        arguments = ["dask_scheduler", "--host", "127.0.0.1", "--port", port, "--no-dashboard"]
        self._scheduler = self._start(arguments, self._programs)

    def stop_scheduler(self) -> None:
        assert self._scheduler is not None
        self._scheduler.kill()
        self._scheduler.wait()

    def start_workers(self, count: int, programs: Path | None = None) -> None:
        """Returns when they are all there."""
        arguments = ["dask_worker", self.address, "--no-nanny", "--nthreads", "1", "--no-dashboard"]
        arguments += ["--local-directory", str(self._folder)]
        with Client(self.address, timeout=START_SECONDS, set_as_default=False) as client:
            before = len(client.scheduler_info()["workers"])
            self.workers += [self._start(arguments, programs or self._programs) for _ in range(count)]
            end = time.monotonic() + START_SECONDS
            while len(client.scheduler_info()["workers"]) < before + count and time.monotonic() < end:
                time.sleep(0.1)

    def kill_worker(self) -> None:
        self.workers[0].kill()

    def hang_worker(self) -> None:
        self.workers[0].send_signal(signal.SIGSTOP)

    def _start(self, arguments: list[str], programs: Path) -> "subprocess.Popen[bytes]":
        environment = os.environ | {
            "PYTHONPATH": str(LAB),
            "KIROLAB_PROGRAMS": str(programs),
            "KIROLAB_INPUTS": str(self._folder / "inputs"),
        }
        log = open(self._folder / f"{arguments[0]}.log", "ab")
        command = [sys.executable, "-m", f"distributed.cli.{arguments[0]}", *arguments[1:]]
        return subprocess.Popen(command, env=environment, stdout=log, stderr=log)

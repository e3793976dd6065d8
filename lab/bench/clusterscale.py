"""How a cluster scales: units of work that sleep, on so many workers in this process, and what a unit costs besides.

usage: clusterscale.py [WORKERS...], such as 1 4 50 200; run it from lab/ with PYTHONPATH=."""

import resource
import sys
import time
from pathlib import Path
from tempfile import TemporaryDirectory

import dask
from distributed import LocalCluster

from kirolab.cluster import ClusterExecutor
from kirolab.parcels import Parcel, build_here
from kirolab.runs import SECONDS_OF_UNIT, WORKERS_OF_SECOND, Outcome, Unit
from kirolab.scenes import Scene
from kirolab.tunings import Tuning

UNITS_OF_WORKER = 10
FIGURES = [{"figure": "kick", "of": "still", "at": 1.0, "value": 0.01, "unit": "EV"}] * 57  # of a run, as kirosim has


def sleep_instead(parcel: Parcel, *_: bytes) -> list[Outcome]:
    time.sleep(float(parcel.edits[0]))
    return [Outcome(FIGURES)] * (len(parcel.variants) * len(parcel.seeds))


# Each worker looks at its machine now and then, which here is the same one for all.
dask.config.set({"distributed.admin.system-monitor.interval": "60s", "distributed.worker.profile.enabled": False})


def measure(workers: int, folder: Path) -> None:
    work = max(SECONDS_OF_UNIT, workers / WORKERS_OF_SECOND)  # as long as a campaign makes units for so many
    tuning, scene = Tuning("t", folder / "t.bin", "t", (str(work),)), Scene(folder / "s.yaml")
    # No limit of memory: workers of one process would each think that all of it is theirs.
    with LocalCluster(
        n_workers=workers,
        threads_per_worker=1,
        processes=False,
        dashboard_address=None,
        silence_logs=50,
        memory_limit=0,
    ) as cluster:
        executor = ClusterExecutor(cluster.scheduler_address, build_here(), work=sleep_instead, answer_seconds=60)
        count = workers * UNITS_OF_WORKER
        begin, busy = time.monotonic(), cpu_seconds()
        for index in range(count):
            executor.submit(Unit(tuning, scene, ("plain",), tuple(range(30 * index, 30 * index + 30))))
        for _ in range(count):
            executor.next()
        seconds, busy = time.monotonic() - begin, cpu_seconds() - busy
        executor.close()
    share = count * work / workers / seconds
    print(
        f"{workers:4} workers: {count} units of {work:g} s in {seconds:.1f} s, {share:.0%} of the time at work, "
        f"{1000 * busy / count:.1f} ms of processor time a unit for scheduler, workers and lab"
    )


def cpu_seconds() -> float:
    usage = resource.getrusage(resource.RUSAGE_SELF)
    return usage.ru_utime + usage.ru_stime


def main() -> None:
    with TemporaryDirectory() as name:
        folder = Path(name)
        (folder / "t.bin").write_bytes(bytes(100_000))
        (folder / "s.yaml").write_text("frames: 300\n")
        for workers in [int(text) for text in sys.argv[1:]] or [1, 4, 50, 200]:
            measure(workers, folder)


if __name__ == "__main__":
    main()

"""Runs the benchmarks that scripts/bench has built and writes their report.

    python3 bench/run.py [--quick] [--cpu-time] [--build FOLDER] [--out FILE] [JOB]...

JOB is the name of a job of jobs.py or the begin of one up to a slash: `raw` runs raw/whole, raw/tiles
and raw/windows.
"""

import argparse
import json
import os
import platform
import re
import subprocess
import sys
import tempfile
import time
from pathlib import Path

import scene
from jobs import JOBS
from report import make_report, missed
from results import Results

TOP = Path(__file__).resolve().parent.parent


def select(names):
    """The jobs of that name, all without one. Raises ValueError for a name that there is not."""
    if not names:
        return list(JOBS)
    wanted = set()
    for name in names:
        found = {job.name for job in JOBS if (job.name + "/").startswith(name.rstrip("/") + "/")}
        if not found:
            there = " ".join(job.name for job in JOBS)
            raise ValueError(f"{name}: no such job; there are: {there}")
        wanted |= found
    return [job for job in JOBS if job.name in wanted]


def _runs(jobs):
    """What runs together in one process: program and jobs. The images of the rasters are large, so
    that they are made in turn."""
    runs = {}
    for job in jobs:
        image = job.name.split("/")[0] if job.program == "bench_raster" else ""
        runs.setdefault((job.program, image), []).append(job)
    return [(program, members) for (program, _), members in runs.items()]


def _run_program(path, jobs, results, folder, given):
    names = "|".join(re.escape(job.name).replace("\\-", "-") for job in jobs)
    out = folder / "result.json"
    command = [
        path,
        f"--benchmark_filter=^({names})/(ours|floor|4x|peer:.*)",
        "--benchmark_enable_random_interleaving=true",
        f"--benchmark_repetitions={1 if given.quick else 5}",
        f"--benchmark_min_time={0.01 if given.quick else 0.1}",
        "--benchmark_out_format=json",
        f"--benchmark_out={out}",
    ]
    environment = dict(os.environ, TMPDIR=str(folder))
    if given.quick:
        environment["RAVELIN_BENCH_QUICK"] = "1"
    done = subprocess.run(
        command, env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True
    )
    if done.returncode != 0:
        raise RuntimeError(f"{path.name} ended with {done.returncode}:\n{done.stdout[-4000:]}")
    clock = "cpu_time" if given.cpu_time else "real_time"
    results.add_google_benchmark(json.loads(out.read_text()), clock)
    out.unlink()


def _first_line(command):
    try:
        return subprocess.run(command, capture_output=True, text=True).stdout.splitlines()[0]
    except (OSError, IndexError):
        return "not found"


def _package(name):
    return _first_line(["dpkg-query", "-W", "-f=${Version}", name])


def _processor():
    for line in Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith("model name"):
            return line.split(":", 1)[1].strip()
    return platform.machine()


def _machine():
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    packages = {
        "GDAL": "libgdal-dev",
        "shapelib": "libshp-dev",
        "libxml2": "libxml2-dev",
        "pugixml": "libpugixml-dev",
        "Qt": "qtbase5-dev",
        "Google Benchmark": "libbenchmark-dev",
    }
    peers = ", ".join(f"{name} {_package(package)}" for name, package in packages.items())
    cores = len(os.sched_getaffinity(0))
    return [
        ("processor", f"{_processor()}, {cores} cores"),
        ("memory", f"{memory:.0f} GiB"),
        ("system", f"Linux {platform.release()}"),
        ("compiler", _first_line([os.environ.get("CXX", "c++"), "--version"])),
        ("others", peers),
    ]


def _how(given, jobs, seconds, load):
    kind = (
        "**A quick run with small data, which shows that everything works and no more.**"
        if given.quick
        else "Medians of five repetitions in mixed order, from the page cache."
    )
    part = "" if len(jobs) == len(JOBS) else " Some of the jobs only."
    if given.cpu_time:
        part += " Processor time, not time on the wall."
    return (
        f"{kind}{part}\nThe run took {seconds / 60:.0f} minutes; the load of the machine was "
        f"{load:.1f} at its begin,\n{os.getloadavg()[0]:.1f} at its end."
    )


def _arguments():
    parser = argparse.ArgumentParser(description="Run the benchmarks and write their report")
    parser.add_argument("jobs", nargs="*", metavar="JOB")
    parser.add_argument("--quick", action="store_true", help="small data, one repetition")
    parser.add_argument(
        "--cpu-time",
        action="store_true",
        help="of the benchmark programs count only the time in which they run: for busy machines",
    )
    parser.add_argument("--build", type=Path, default=TOP / "build/bench", metavar="FOLDER")
    parser.add_argument("--out", type=Path, metavar="FILE")
    given = parser.parse_args()
    if given.out is None:
        whole = not (given.quick or given.jobs or given.cpu_time)
        given.out = TOP / "bench/report.md" if whole else given.build / "report.md"
    return given


def main():
    given = _arguments()
    begin = time.monotonic()
    load = os.getloadavg()[0]
    try:
        jobs = select(given.jobs)
        results = Results()
        with tempfile.TemporaryDirectory(prefix="ravelin-bench-") as name:
            for program, members in _runs(jobs):
                print(f"{program}: {' '.join(job.name for job in members)}", flush=True)
                if program == "scene":
                    ravelin = given.build / "host/ravelin"
                    scene.measure(results, ravelin, Path(name), given.quick)
                else:
                    path = given.build / "bench" / program
                    _run_program(path, members, results, Path(name), given)
        how = _how(given, jobs, time.monotonic() - begin, load)
        given.out.write_text(make_report(jobs, results, _machine(), how))
    except (OSError, RuntimeError, ValueError) as error:
        print(f"bench: {error}", file=sys.stderr)
        return 1
    for text in missed(jobs, results):
        print(f"missed: {text}")
    print(f"The report is {given.out}")
    return 0


if __name__ == "__main__":
    sys.exit(main())

"""Measured times by job and variant, from the JSON that the benchmark programs write."""

import statistics

_SECONDS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}


class Results:
    """Samples of benchmarks that are named JOB/VARIANT. Variants are `ours`, `floor`, `peer:NAME`
    and, for growth, `4x` (four times the work) or `quarter`."""

    def __init__(self):
        self._seconds = {}
        self.peak_mib = {}

    def add(self, job, variant, seconds):
        self._seconds.setdefault(job, {}).setdefault(variant, []).append(seconds)

    def add_google_benchmark(self, document, clock="real_time"):
        """Raises ValueError when a benchmark says that it failed."""
        for run in document["benchmarks"]:
            if run.get("error_occurred"):
                raise ValueError(f"{run['name']}: {run['error_message']}")
            if run["run_type"] != "iteration":
                continue
            # "iterations:1" and the like follow where a benchmark's settings are its own.
            parts = [part for part in run["run_name"].split("/") if not _is_setting(part)]
            seconds = run[clock] * _SECONDS[run["time_unit"]]
            self.add("/".join(parts[:-1]), parts[-1], seconds)

    def median(self, job, variant):
        """In seconds; None when it was not measured."""
        samples = self._seconds.get(job, {}).get(variant)
        return statistics.median(samples) if samples else None

    def peers(self, job):
        variants = self._seconds.get(job, {})
        return sorted(name.removeprefix("peer:") for name in variants if name.startswith("peer:"))

    def ratio(self, job, over, under):
        """None when either was not measured."""
        a, b = self.median(job, over), self.median(job, under)
        return a / b if a is not None and b else None

    def growth(self, job):
        """What four times the work costs, times what the work costs. Of both the quickest
        repetition counts: what else the machine does only adds, and not alike to short and long."""
        larger = self._ratio_of_best(job, "4x", "ours")
        return larger if larger is not None else self._ratio_of_best(job, "ours", "quarter")

    def _ratio_of_best(self, job, over, under):
        variants = self._seconds.get(job, {})
        if over not in variants or under not in variants:
            return None
        return min(variants[over]) / min(variants[under])


def _is_setting(part):
    return part in ("manual_time", "real_time") or part.startswith(
        ("iterations:", "repeats:", "min_time:")
    )

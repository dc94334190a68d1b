"""Tests of the report of the benchmarks: python3 -m unittest, with bench/ on the path."""

import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "bench"))

from jobs import JOBS, Job  # noqa: E402
from report import judgements, make_report, missed  # noqa: E402
from results import Results  # noqa: E402
from run import select  # noqa: E402


def _run(name, milliseconds, **more):
    run = {"name": name, "run_name": name, "run_type": "iteration"}
    return {**run, "real_time": milliseconds, "cpu_time": 1, "time_unit": "ms", **more}


def _results(**milliseconds):
    results = Results()
    for variant, value in milliseconds.items():
        results.add("a/b", variant.replace("peer_", "peer:").replace("four", "4x"), value / 1000)
    return results


JOB = Job("a/b", "bench_a", "a job", floor=2, peers={"GDAL": 3}, growth=4.4, memory=300)


class ResultsTest(unittest.TestCase):
    def test_takes_the_median_of_the_repetitions_and_leaves_out_aggregates(self):
        results = Results()
        runs = [_run("a/b/ours", value) for value in (3, 1, 2)]
        runs.append(_run("a/b/ours", 99, run_type="aggregate"))
        results.add_google_benchmark({"benchmarks": runs})
        self.assertAlmostEqual(results.median("a/b", "ours"), 0.002)

    def test_knows_units_and_settings_in_names(self):
        results = Results()
        run = _run("a/b/peer:X/iterations:1/manual_time", 5, time_unit="us")
        results.add_google_benchmark({"benchmarks": [run]})
        self.assertAlmostEqual(results.median("a/b", "peer:X"), 5e-6)
        self.assertEqual(results.peers("a/b"), ["X"])

    def test_takes_the_clock_that_is_asked_for(self):
        results = Results()
        results.add_google_benchmark({"benchmarks": [_run("a/ours", 7)]}, "cpu_time")
        self.assertAlmostEqual(results.median("a", "ours"), 0.001)

    def test_a_failed_benchmark_is_an_error(self):
        run = _run("a/ours", 0, error_occurred=True, error_message="no file")
        with self.assertRaisesRegex(ValueError, "a/ours: no file"):
            Results().add_google_benchmark({"benchmarks": [run]})

    def test_growth_is_of_four_times_the_work_or_from_a_quarter(self):
        self.assertAlmostEqual(_results(ours=2, four=9).growth("a/b"), 4.5)
        self.assertAlmostEqual(_results(ours=2, quarter=0.5).growth("a/b"), 4)
        self.assertIsNone(_results(ours=2).growth("a/b"))

    def test_growth_is_that_of_the_quickest_repetitions(self):
        results = _results(ours=2, four=8)
        results.add("a/b", "ours", 0.009)
        results.add("a/b", "4x", 0.007)
        self.assertAlmostEqual(results.growth("a/b"), 3.5)


class ReportTest(unittest.TestCase):
    def test_targets_are_met_at_their_bounds(self):
        results = _results(ours=2, floor=1, peer_GDAL=6, four=8.8)
        results.peak_mib["a/b", "ours"] = 299.9
        self.assertEqual([met for _, met in judgements(JOB, results)], [True] * 4)
        self.assertEqual(missed([JOB], results), [])

    def test_targets_are_missed_beyond_them(self):
        results = _results(ours=2, floor=0.99, peer_GDAL=5.9, four=9)
        results.peak_mib["a/b", "ours"] = 300
        self.assertEqual([met for _, met in judgements(JOB, results)], [False] * 4)
        self.assertEqual(missed([JOB], results)[0], "a/b: GDAL ≥ 3")

    def test_what_was_not_measured_is_neither(self):
        self.assertEqual([met for _, met in judgements(JOB, _results(ours=2))], [None] * 4)

    def test_the_table_has_times_ratios_and_verdicts(self):
        results = _results(ours=20, floor=8, peer_GDAL=70, four=80)
        report = make_report([JOB], results, [("memory", "1 GiB")], "How.")
        row = next(line for line in report.splitlines() if line.startswith("| `a/b`"))
        cells = [cell.strip() for cell in row.strip("|").split("|")]
        self.assertEqual(cells[1:6], ["20.0", "70.0 GDAL", "8.000", "2.50", "3.50"])
        self.assertIn("GDAL ≥ 3: met<br>floor ≤ 2: **missed**", cells[6])
        self.assertEqual(cells[7], "4.00")
        self.assertIn("2 met, 1 missed, 1 not measured", report)
        self.assertIn("- memory: 1 GiB", report)


class SelectTest(unittest.TestCase):
    def test_a_name_chooses_a_job_or_all_below_it(self):
        self.assertEqual([job.name for job in select(["pvl/1MB"])], ["pvl/1MB"])
        below = [job.name for job in select(["raw"])]
        self.assertEqual(below, ["raw/whole", "raw/tiles", "raw/windows"])
        self.assertEqual(select([]), JOBS)

    def test_an_unknown_name_is_an_error_that_lists_the_jobs(self):
        with self.assertRaisesRegex(ValueError, "ra: no such job; there are: raw/whole"):
            select(["ra"])

    def test_names_are_unique(self):
        self.assertEqual(len({job.name for job in JOBS}), len(JOBS))


if __name__ == "__main__":
    unittest.main()

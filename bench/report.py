"""Makes the report: a table of the jobs, each target met or missed, and the machine."""


def _number(value, digits=2):
    return "" if value is None else f"{value:,.{digits}f}"


def _milliseconds(seconds):
    if seconds is None:
        return ""
    return _number(1e3 * seconds, 0 if seconds >= 1 else 1 if seconds >= 0.01 else 3)


def judgements(job, results):
    """For each target of the job: its text and whether it is met; None when it was not measured."""
    found = []

    def judge(text, value, met):
        found.append((text, None if value is None else met(value)))

    for peer, times in job.peers.items():
        ratio = results.ratio(job.name, f"peer:{peer}", "ours")
        judge(f"{peer} ≥ {times:g}", ratio, lambda value, least=times: value >= least)
    if job.floor is not None:
        ratio = results.ratio(job.name, "ours", "floor")
        judge(f"floor ≤ {job.floor:g}", ratio, lambda value: value <= job.floor)
    if job.growth is not None:
        judge(f"growth ≤ {job.growth:g}", results.growth(job.name), lambda v: v <= job.growth)
    if job.memory is not None:
        peak = results.peak_mib.get((job.name, "ours"))
        judge(f"peak < {job.memory:g} MiB", peak, lambda value: value < job.memory)
    return found


_WORDS = {True: "met", False: "**missed**", None: "not measured"}


def _row(job, results):
    def lines(cells):
        return "<br>".join(cells)

    peers = results.peers(job.name)
    variants = [f"peer:{peer}" for peer in peers]
    targets = [f"{text}: {_WORDS[met]}" for text, met in judgements(job, results)]
    cells = [
        f"`{job.name}`: {job.what}",
        _milliseconds(results.median(job.name, "ours")),
        lines(
            f"{_milliseconds(results.median(job.name, v))} {p}" for v, p in zip(variants, peers)
        ),
        _milliseconds(results.median(job.name, "floor")),
        _number(results.ratio(job.name, "ours", "floor")),
        lines(_number(results.ratio(job.name, v, "ours")) for v in variants),
        lines(targets),
        _number(results.growth(job.name)),
    ]
    return "| " + " | ".join(cells) + " |"


_HEAD = """\
| job | ours, ms | peer, ms | floor, ms | ours ÷ floor | peer ÷ ours | target | growth |
|---|--:|--:|--:|--:|--:|---|--:|
"""


def _memory(jobs, results):
    lines = []
    for (name, variant), mib in results.peak_mib.items():
        if any(job.name == name for job in jobs):
            lines.append(f"- `{name}`, {variant.removeprefix('peer:')}: {mib:,.0f} MiB\n")
    return "\n## Peak memory\n\n" + "".join(lines) if lines else ""


def missed(jobs, results):
    """The targets that were missed, a text each."""
    return [
        f"{job.name}: {text}"
        for job in jobs
        for text, met in judgements(job, results)
        if met is False
    ]


def make_report(jobs, results, machine, how):
    """`machine` is pairs of what and value, `how` a sentence on the run."""
    verdicts = [met for job in jobs for _, met in judgements(job, results)]
    parts = [
        "# Report of the benchmarks\n\n",
        f"Made by `scripts/bench`. {how} [bench/README.md](../bench/README.md) says what is\n"
        "measured, and against what. Growth is what four times the work costs, divided by what the\n"
        "work costs, both in their quickest repetition.\n\n",
        f"Targets: {verdicts.count(True)} met, {verdicts.count(False)} missed, "
        f"{verdicts.count(None)} not measured.\n\n",
        _HEAD,
        "".join(_row(job, results) + "\n" for job in jobs),
        _memory(jobs, results),
        "\n## Machine\n\n",
        "".join(f"- {what}: {value}\n" for what, value in machine),
    ]
    return "".join(parts)

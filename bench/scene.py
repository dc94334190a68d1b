"""The whole command, `ravelin scene --pixels`, and GDAL's commands for the same; as processes."""

import os
import shutil
import subprocess
import sys
import time
from pathlib import Path

SIDE = 10000
BANDS = ("blue", "green", "red", "nir")
SAMPLE_WIDTH, SAMPLE_HEIGHT = 1200, 900


def _repeat_sample(source, target, side):
    """The sample's band beside and below itself until the side is reached: real bytes, no holes."""
    row_bytes = 2 * SAMPLE_WIDTH
    pixels = source.read_bytes()
    rows = []
    for y in range(SAMPLE_HEIGHT):
        row = pixels[y * row_bytes : (y + 1) * row_bytes]
        rows.append((row * (side // SAMPLE_WIDTH + 1))[: 2 * side])
    with open(target, "wb") as out:
        for y in range(0, side, SAMPLE_HEIGHT):
            out.writelines(rows[: min(SAMPLE_HEIGHT, side - y)])


def _label(side):
    lines = [
        "GROUP = SAMPLE_METADATA_FILE",
        f"  LINES = {side}",
        f"  LINE_SAMPLES = {side}",
        "  SAMPLE_TYPE = MSB_UNSIGNED_INTEGER",
        "  SAMPLE_BITS = 16",
    ]
    for number, (band, kind) in enumerate(zip(BANDS, (3, 4, 6, 32)), 1):
        lines += [
            f"  GROUP = BAND_{number}",
            f'    FILE_NAME = "{band}.raw"',
            f"    CHANNEL_KIND = {kind}",
            f"  END_GROUP = BAND_{number}",
        ]
    return "\n".join([*lines, "END_GROUP = SAMPLE_METADATA_FILE", "END", ""])


def _envi_header(side):
    """GDAL opens raw files by a header beside them."""
    return (
        f"ENVI\nsamples = {side}\nlines = {side}\nbands = 1\nheader offset = 0\n"
        "file type = ENVI Standard\ndata type = 12\ninterleave = bsq\nbyte order = 1\n"
    )


def make_product(ravelin, folder, side):
    """A product of four bands of `side` x `side`; its label is Ravelin's, its headers GDAL's."""
    sample = folder.with_name(folder.name + "-sample")
    subprocess.run([ravelin, "sample", sample], check=True, stdout=subprocess.DEVNULL)
    folder.mkdir()
    for band in BANDS:
        _repeat_sample(sample / f"{band}.raw", folder / f"{band}.raw", side)
        (folder / f"{band}.hdr").write_text(_envi_header(side))
    (folder / "product.lbl").write_text(_label(side))
    shutil.rmtree(sample)


def run_measured(command):
    """Seconds and peak memory in MiB of one command. Raises RuntimeError when it fails."""
    begin = time.monotonic()
    process = subprocess.Popen([str(part) for part in command], stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    seconds = time.monotonic() - begin
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise RuntimeError(f"{command[0]} ended with {process.returncode}")
    return seconds, usage.ru_maxrss / 1024


def _ours(ravelin, product, out):
    return [[ravelin, "scene", product, "-o", out, "--pixels", "--quiet"]]


def _gdal(product, out):
    """All bands interleaved, and a picture of the same size as ours. The range of the samples is
    given, so that GDAL need not look for it."""
    vrt = out / "stack.vrt"
    bands = [product / f"{band}.raw" for band in BANDS]
    picture = ["-of", "PNG", "-ot", "Byte", "-b", 3, "-b", 2, "-b", 1, "-outsize", 2048, 2048]
    return [
        ["gdalbuildvrt", "-q", "-separate", vrt, *bands],
        ["gdal_translate", "-q", "-of", "ENVI", "-co", "INTERLEAVE=BIP", vrt, out / "pixels.bip"],
        ["gdal_translate", "-q", *picture, "-scale", 7000, 25000, vrt, out / "quicklook.png"],
    ]


def _measure(commands, out):
    shutil.rmtree(out, ignore_errors=True)
    out.mkdir()
    # What earlier commands left to be written would be written at the cost of this one.
    os.sync()
    runs = [run_measured(command) for command in commands]
    return sum(seconds for seconds, _ in runs), max(peak for _, peak in runs)


def _check(out, side):
    if (out / "pixels.bip").stat().st_size != 2 * len(BANDS) * side * side:
        raise RuntimeError(f"{out}/pixels.bip is not whole")


def measure(results, ravelin, folder, quick):
    """Adds the job `scene` to the results; five times, in turn."""
    side = SIDE // 8 if quick else SIDE
    sides = {"quarter": side // 2, "ours": side}
    for variant, length in sides.items():
        make_product(ravelin, folder / variant, length)
    peer = shutil.which("gdal_translate") is not None
    if not peer:
        print("gdal_translate not found: the command runs without its peer", file=sys.stderr)
    for _ in range(1 if quick else 5):
        jobs = [(name, _ours(ravelin, folder / name, folder / "out")) for name in sides]
        if peer:
            jobs.append(("peer:GDAL", _gdal(folder / "ours", folder / "out")))
        for variant, commands in jobs:
            seconds, peak = _measure(commands, folder / "out")
            _check(folder / "out", sides.get(variant, side))
            results.add("scene", variant, seconds)
            highest = results.peak_mib.get(("scene", variant), 0)
            results.peak_mib["scene", variant] = max(highest, peak)


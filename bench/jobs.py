"""The jobs of the report: which program runs each, and what it has to reach."""

from dataclasses import dataclass, field


@dataclass(frozen=True)
class Job:
    """`floor` is the most times that the job may cost of its floor, `peers` the least times that
    it must be as fast as each peer, `growth` the most that four times the work may cost of it,
    `memory` the most MiB at its peak."""

    name: str
    program: str
    what: str
    floor: float | None = None
    peers: dict = field(default_factory=dict)
    growth: float | None = None
    memory: float | None = None


def _raster():
    shapes = {
        "whole": "in blocks of 256 rows",
        "tiles": "in tiles of 512 x 512",
        "windows": "1,000 random windows of 256 x 256",
    }
    for shape, how in shapes.items():
        yield Job(f"raw/{shape}", "bench_raster", f"raw band of 8192 x 8192, {how}", 2, {"GDAL": 3})
    for bands in (3, 4, 7, 13):
        for shape, how in shapes.items():
            what = f"{bands} bands of 4096 x 4096, {how}"
            yield Job(f"bands{bands}/{shape}", "bench_raster", what, 2, {"GDAL": 3})
    tiles = "8 x 8 super tiles of 1024 x 1024"
    yield Job("mosaic/whole", "bench_raster", f"{tiles}, in blocks of 256 rows", 2.2, {"GDAL": 3})
    windows = "1,000 random windows of 512 x 512"
    yield Job("mosaic/windows", "bench_raster", f"{tiles}, {windows}", 2.2, {"GDAL": 3})
    for level in (1, 2):
        what = f"{tiles} in envelopes, whole at level {level}"
        yield Job(f"mosaic/level{level}", "bench_raster", what)


def _metadata():
    for dialect, name in (("nasa_pvl", "NASA PVL"), ("pvl", "PVL")):
        for size in (1, 16):
            what = f"{name} of {size} MB to XML"
            yield Job(f"{dialect}/{size}MB", "bench_metadata", what, 2.5, {"GDAL": 20})
    for text, what in (
        ("open_quotes", "a quote opened on every line"),
        ("quoted_ends", "every statement's end quoted"),
        ("far_equals_sign", "names, then one statement's rest"),
        ("vertical_tabs", "white space that ends no line"),
        ("mixture", "a mixture"),
    ):
        what = f"hostile PVL of 1 MB: {what}"
        yield Job(f"pvl_hostile/{text}", "bench_metadata", what, 2.5, growth=4.4)
    yield Job("wkt/siblings", "bench_metadata", "WKT of 1 MB to XML: sections beside each other")
    yield Job("wkt/real", "bench_metadata", "WKT of 1 MB to XML: real texts")
    yield Job("xini_write", "bench_metadata", "XML-ini of 100,000 items, written")
    yield Job("xini_parse", "bench_metadata", "XML-ini of 100,000 items, parsed")
    yield Job("xini_values", "bench_metadata", "XML-ini of 100,000 items, parsed, all values read")


def _others():
    tree = "tree of 100,000 fields"
    yield Job("tree_text_read", "bench_tree", f"{tree} from text")
    yield Job("tree_text_write", "bench_tree", f"{tree} to text")
    yield Job("tree_xml_read", "bench_tree", f"{tree} from XML; the peers parse only")
    yield Job("tree_xml_write", "bench_tree", f"{tree} to XML")
    shape = "shapefile of 1,000,000 points"
    peers = {"shapelib": 2, "OGR": 3}
    yield Job("shapefile_write", "bench_shapefile", f"{shape}, written", 1.8, peers)
    yield Job("shapefile_read", "bench_shapefile", f"{shape}, read", 1.3, peers)
    yield Job("numbers", "bench_text", "10 MB of numbers, split", 1.6, {"sscanf": 4})
    yield Job("folder", "bench_files", "folder of 50,000 files, listed")
    yield Job("log", "bench_log", "log of 1,000,000 lines, saved")
    what = "ravelin scene --pixels on 10,000 x 10,000 x 4"
    yield Job("scene", "scene", what, peers={"GDAL": 2}, memory=300)


JOBS = [*_raster(), *_metadata(), *_others()]

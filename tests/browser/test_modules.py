"""Modules of the page that need no camera, in the browser that runs them."""

import http.server
import pathlib
import tempfile
import threading
import unittest
from typing import Any

from runningpage import ROOT, headless


class Handler(http.server.SimpleHTTPRequestHandler):
    """Serves the modules, and says nothing of it."""

    def __init__(self, *arguments: Any, **named: Any) -> None:
        super().__init__(*arguments, directory=str(ROOT / "tools/page/web"), **named)

    def log_message(self, *_: Any) -> None:
        pass


# A leaf, a range of a trigger and a zone, as the server tells members.
MEMBERS = """
const leaf = (name, value, more = {}) =>
    ({ kind: "number", name, value: String(value), start: String(value), begin: null, min: null, max: null, members: [],
       path: name, choices: [], ...more });
const record = (name, ...members) => ({ kind: "record", name, path: name, members });
const list = (name, ...members) => ({ kind: "list", name, path: name, members });
const range = (start, end) => record("trigger", leaf("start", start), leaf("end", end));
const zone = (start, end, yielded) => record("zone", range(start, end), yielded);
"""


class Modules(unittest.TestCase):
    @classmethod
    def setUpClass(cls) -> None:
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        cls.addClassCleanup(server.server_close)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        cls.addClassCleanup(server.shutdown)
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.driver = headless(pathlib.Path(folder.name))
        cls.addClassCleanup(cls.driver.quit)
        cls.driver.get(f"http://127.0.0.1:{server.server_port}/icon.svg")

    def answer(self, module: str, script: str) -> Any:
        """What a function body answers that gets a module as m."""
        body = f"""
            const done = arguments[0];
            import("/{module}.js").then((m) => {{ {MEMBERS} {script} }}).then(done, (error) => done(String(error)));
        """
        return self.driver.execute_async_script(body)

    def test_camera_gets_decimals_without_exponent(self) -> None:
        values = "[1e-7, 0.25, 33333333, 1e12, -0.5, 3]"
        expected = ["0.0000001", "0.25", "33333333", "1000000000000", "-0.5", "3"]
        self.assertEqual(self.answer("numbers", f"return {values}.map((value) => m.decimal(value));"), expected)

    def test_slider_reaches_both_ends_and_finds_back(self) -> None:
        script = """
            const even = m.sliderScale(leaf("a", 0.25, { min: 0, max: 1 }));
            const ratio = m.sliderScale(leaf("b", 1000, { min: 1, max: 1000000, integer: true }));
            const open = m.sliderScale(leaf("c", 50, { min: 0 }));
            const below = m.sliderScale(leaf("d", -8, { start: "-2" }));
            return [even.toPosition(0.25), even.toText(500), even.toText(1000), ratio.toPosition(1000), ratio.toText(0),
                    ratio.toText(1000), open.most, below.least, below.toPosition(0) > below.toPosition(-8)];
        """
        self.assertEqual(self.answer("sliderscale", script), [250, "0.5", "1", 500, "1", "1000000", 200, -32, True])

    def test_axis_of_ratios_goes_there_and_back(self) -> None:
        script = """
            const axis = new m.Axis({ least: 1, most: 100, from: 0, to: 200, isRatio: true });
            return [axis.toPixel(10), Math.round(axis.toValue(100)), axis.marks(30)];
        """
        self.assertEqual(self.answer("axis", script), [100, 10, [1, 2, 5, 10, 20, 50, 100]])

    def test_levels_of_one_zone_are_looked_through(self) -> None:
        script = """
            const constant = (value) => list("trigger2Data", zone(0, 1, leaf("triggerData", value)));
            const speeds = record("triggerData", leaf("rangeStart", 46), leaf("rangeEnd", 46));
            const drawn = m.linesOf(list("trigger1Data", zone(0, 400, constant(0.5)), zone(480, 600, constant(0.25))));
            const pair = m.linesOf(list("trigger1Data", zone(0, 400, speeds), zone(480, 600, speeds)));
            const several = list("trigger2Data", ...constant(1).members, ...constant(2).members);
            const numbers = ({ start, end, value }) => [start, end, value].map((part) => Number(part.value));
            return [drawn[0].zones.map(numbers),
                    pair[0].zones[0].twin.name,
                    m.linesOf(list("trigger1Data", zone(0, 1, several), zone(2, 3, constant(1)))).length,
                    m.linesOf(constant(1)).length, m.isZones(list("data", record("data[0]", leaf("dataID", 1))))];
        """
        self.assertEqual(self.answer("zones", script), [[[0, 400, 0.5], [480, 600, 0.25]], "rangeEnd", 0, 0, False])

    def test_split_turns_where_the_first_of_two_is_full(self) -> None:
        script = """
            const knees = [{ gain: 1, time: 10 }, { gain: 8, time: 20, isGainFirst: true }, { gain: 16, time: 30 }];
            return m.splitPath(knees).map(({ x, y }) => [x, y]);
        """
        expected = [[10, 1], [10, 8], [20, 8], [30, 8], [30, 16]]
        self.assertEqual(self.answer("knees", script), expected)

    def test_ten_minutes_are_kept_and_no_peak_is_lost(self) -> None:
        script = """
            const samples = new m.Samples();
            for (let frame = 0; frame < 30 * 1200; ++frame) {
                samples.add([{ t: frame / 30, v: [frame === 25000 ? 99 : 1] }]);
            }
            const rows = samples.rows([0], 0);
            samples.add([{ t: 1, v: [5] }]);  // of a server that was started anew
            return { first: rows[0][0], count: rows.length, most: Math.max(...rows.map(([, value]) => value)),
                     anew: samples.rows([0], 0) };
        """
        kept = self.answer("samples", script)
        self.assertGreater(kept["first"], 1200 - 610)
        self.assertLess(kept["count"], 2000)
        self.assertEqual((kept["most"], kept["anew"]), (99, [[1, 5]]))

    def test_what_watches_several_values_is_called_once(self) -> None:
        script = """
            const data = { ...list("data", leaf("x", 1, { path: "data[0]" }), leaf("x", 2, { path: "data[1]" })) };
            const members = new m.Members([data]);
            let calls = 0;
            members.watch("data", () => ++calls);
            const values = { "data[0]": "7", "data[1]": "2.000", "gone": "1" };
            members.apply(Object.entries(values).map(([path, value]) => ({ path, value })));
            return [calls, members.find("data[0]").differs, members.find("data[1]").differs, members.way("data[1]"),
                    members.findInSchema("data").path];
        """
        self.assertEqual(self.answer("members", script), [1, True, False, ["data", "data[1]"], "data"])


if __name__ == "__main__":
    unittest.main()

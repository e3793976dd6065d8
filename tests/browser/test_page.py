"""The page of a running camera, in a browser."""

import http.client
import json

import subprocess

import unittest
from collections.abc import Iterator

from selenium.webdriver import ActionChains
from selenium.webdriver.common.keys import Keys

from runningpage import PROGRAMS, ROOT, Browser, Camera, PageServer, Stand, wait_for

ANALYZER = "kirometeringsceneanalyzer"
TARGET = "analyzers.target.calculators.value.triggerSystem.trigger1Data.trigger2Data.triggerData.rangeStart"
STEP = "unitStepSize"
STEP_AT_START = 0.1
MARKUP = "<b id=injected>phone</b>"

OUT = ROOT / "out"

STAND = Stand()


def setUpModule() -> None:
    OUT.mkdir(exist_ok=True)
    unittest.addModuleCleanup(STAND.end)
    STAND.start(MARKUP)


def request(method: str, path: str, port: int, body: dict | None = None, **headers: str) -> int:
    """The status of a plain request, such as any program may send."""
    connection = http.client.HTTPConnection("127.0.0.1", port, timeout=30)
    connection.request(method, path, json.dumps(body) if body is not None else None, headers)
    status = connection.getresponse().status
    connection.close()
    return status


class Edits(unittest.TestCase):
    """What a person does to a camera, and sees of it."""

    def setUp(self) -> None:
        self.browser = Browser(STAND.server.address, STAND.folder)
        self.addCleanup(self.browser.end)

    def tearDown(self) -> None:
        self.assertEqual(self.browser.errors(), [])

    def exposure(self) -> float:
        return wait_for(lambda: self.browser.chart_value("safeSensitivity"), "an exposure")

    def test_slider_moves_the_exposure_and_undo_takes_it_back(self) -> None:
        browser = self.browser
        browser.find_member("analyzers target range start", ANALYZER, TARGET)
        wait_for(lambda: browser.text("#frame").startswith("frame "), "a picture")
        before, luma = self.exposure(), browser.picture_luma()
        slider = browser.run("return document.activeElement")
        row = slider.find_element("xpath", "ancestor::*[@data-kind][1]")
        for _ in range(4):
            slider.send_keys(Keys.PAGE_UP)
        wait_for(lambda: "differs" in row.get_attribute("class"), "a mark at what differs")
        wait_for(lambda: self.exposure() > before + 0.5, f"an exposure above {before} EV in the chart")
        wait_for(lambda: browser.picture_luma() > luma * 1.15, f"a picture brighter than {luma}")

        browser.one("#compare").click()
        path = row.get_attribute("data-path")
        wait_for(lambda: path in browser.text("dialog.changes"), "the change in the list")
        browser.one("dialog.changes .answers button").click()
        self.save_and_compile(path)

        while browser.one("#undo").is_enabled():
            browser.undo()
        wait_for(lambda: "differs" not in row.get_attribute("class"), "no mark")
        wait_for(lambda: abs(self.exposure() - before) < 0.1, f"the exposure back at {before} EV")

    def save_and_compile(self, path: str) -> None:
        self.browser.one("#save").click()
        patch = STAND.folder / "patch.yaml"
        wait_for(patch.exists, "the patch")
        self.addCleanup(patch.unlink, missing_ok=True)
        self.assertIn(path.rsplit(".", 1)[-1], patch.read_text())
        compiled = [
            PROGRAMS / "kirotune",
            "compile",
            STAND.tuning,
            "--patch",
            patch,
            "-o",
            STAND.folder / "patched.bin",
        ]
        subprocess.run(compiled, check=True)

    def test_saving_without_edits_says_so(self) -> None:
        self.browser.one("#save").click()
        wait_for(lambda: "nothing to save" in self.browser.text("#notice"), "why there is no patch")
        self.browser.driver.get_log("browser")  # the answer that there is none

    def test_search_waits_for_the_camera_and_finds_only_what_it_has(self) -> None:
        driver = self.browser.driver
        late = "const go = new Promise((done) => { window.letGo = done; }); const now = fetch;"
        late += "window.fetch = async (...all) => { await go; return now(...all); };"
        added = driver.execute_cdp_cmd("Page.addScriptToEvaluateOnNewDocument", {"source": late})
        driver.get("about:blank")
        driver.get(self.browser.address)
        self.assertIn("Loading", self.browser.text("#members"))
        self.assertFalse(self.browser.one("#save").is_enabled())
        self.browser.one("#search").send_keys("settle tolerance")
        wait_for(lambda: "Loading" in self.browser.text("#found"), "word that nothing is there yet")
        driver.execute_cdp_cmd("Page.removeScriptToEvaluateOnNewDocument", added)
        self.browser.run("window.letGo()")
        wait_for(lambda: " found" in self.browser.text("#found .count"), "what is found")
        modules = self.browser.run(
            "return [...document.querySelectorAll('#found button')].map((b) => b.dataset.module)"
        )
        self.assertNotIn("kiroskipcontrol", modules)
        self.assertIn("kiroskipcontrol", self.browser.text("#found .missing"))

    def test_what_cannot_be_meant_is_asked_first(self) -> None:
        browser = self.browser
        start = browser.value(STEP)
        browser.type_value(STEP, "-1")
        browser.one("dialog.guard .leave").click()
        wait_for(lambda: not browser.all("dialog") and browser.value(STEP) == start, "the value as it was")
        browser.type_value(STEP, "-1")
        browser.one("dialog.guard .force").click()
        wait_for(lambda: "differs" in browser.attribute(f'[data-path="{STEP}"]', "class"), "the value all the same")
        browser.one(f'[data-path="{STEP}"] .back').click()
        wait_for(lambda: float(browser.value(STEP)) == float(start), "the value of the start")
        browser.driver.get_log("browser")  # the refusal that asked

    def test_points_of_zones_and_knees_are_dragged(self) -> None:
        for module, chart in [("kirodbconvbase", ".zones"), ("kirodbarbitrationtable", ".knees")]:
            with self.subTest(module):
                browser = self.browser
                browser.open(module)
                browser.unfold()
                handle = browser.one(f"{chart} .handle")
                browser.run("arguments[0].scrollIntoView({ block: 'center' })", handle)
                key, words = handle.get_attribute("data-key"), handle.get_attribute("aria-label")

                def now() -> str:
                    return browser.attribute(f'{chart} .handle[data-key="{key}"]', "aria-label")

                ActionChains(browser.driver).drag_and_drop_by_offset(handle, 0, -40).perform()
                wait_for(lambda: "changed" in browser.text(f"#members details:has({chart}) .changed"), "a mark")
                self.assertNotEqual(now(), words)
                browser.undo()
                wait_for(lambda: now() == words, "the point where it was")

    def test_two_browsers_see_each_others_edits(self) -> None:
        other = Browser(STAND.server.address, STAND.folder)
        self.addCleanup(other.end)
        self.browser.type_value(STEP, "0.5")
        wait_for(lambda: float(other.value(STEP)) == 0.5, "the edit in the other browser")
        self.assertIn("another browser", other.text("#notice"))
        other.undo()
        wait_for(lambda: float(self.browser.value(STEP)) == STEP_AT_START, "the other's undo here")

    def test_names_of_a_camera_stay_text(self) -> None:
        self.assertIn(MARKUP, self.browser.text("#device"))
        self.assertEqual(self.browser.all("#injected"), [])

    def test_camera_that_is_started_again_is_found(self) -> None:
        browser = self.browser
        browser.type_value(STEP, "0.4")
        wait_for(lambda: browser.one("#undo").is_enabled(), "an edit")
        last = browser.frame()
        STAND.camera.end()
        wait_for(lambda: browser.is_shown("#banner"), "word of the lost camera")
        self.assertEqual(browser.value(STEP), "0.4")
        self.save_and_compile(STEP)
        STAND.camera = Camera(STAND.folder)
        wait_for(lambda: not browser.is_shown("#banner"), "the camera again", 60)
        wait_for(lambda: 0 < browser.frame() < last, "its values, from the first frame on")
        wait_for(lambda: browser.is_shown("#lostedits"), "word of the lost edit")
        wait_for(lambda: float(browser.value(STEP)) == STEP_AT_START, "the value without it")
        browser.driver.save_screenshot(str(OUT / "page-lost-edits.png"))
        browser.one("#lostedits .again").click()
        wait_for(lambda: not browser.is_shown("#lostedits") and browser.value(STEP) == "0.4", "the edit again")
        browser.undo()
        browser.type_value(STEP, "0.5")
        wait_for(lambda: browser.one("#undo").is_enabled(), "an edit")
        browser.undo()
        wait_for(lambda: float(browser.value(STEP)) == STEP_AT_START, "its undo")
        browser.driver.get_log("browser")  # what could not be fetched meanwhile


class Doors(unittest.TestCase):
    """Who may not edit a camera."""

    EDIT = {"mode": "Default", "module": "kiroconvergence", "values": [{"path": STEP, "value": "0.1"}]}
    JSON = {"Content-Type": "application/json"}

    def test_other_pages_are_refused(self) -> None:
        own = f"127.0.0.1:{STAND.server.port}"
        cases: list[tuple[int, dict[str, str]]] = [
            (200, {**self.JSON}),
            (200, {**self.JSON, "Origin": f"http://{own}"}),
            (403, {**self.JSON, "Origin": "http://other.example"}),
            (403, {**self.JSON, "Origin": "null"}),
            (403, {**self.JSON, "Host": "other.example"}),
            (403, {"Content-Type": "text/plain"}),
        ]
        for status, headers in cases:
            with self.subTest(headers):
                self.assertEqual(request("POST", "/api/set", STAND.server.port, self.EDIT, **headers), status)
        self.assertEqual(request("GET", "/api/state", STAND.server.port, Host="other.example"), 403)

    def test_beyond_this_machine_a_token_is_needed(self) -> None:
        open_server = PageServer(STAND.camera, STAND.tuning, "0.0.0.0")
        self.addCleanup(open_server.end)
        token = open_server.printed.partition("?token=")[2]
        self.assertRegex(token, "^[0-9a-f]{32}$")
        for given, status in [(f"?token={token}", 200), (f"?token={'0' * 32}", 403), ("", 403)]:
            with self.subTest(given):
                self.assertEqual(request("GET", f"/api/state{given}", open_server.port), status)
                status_of_edit = request("POST", f"/api/undo{given}", open_server.port, {}, **self.JSON)
                self.assertEqual(status_of_edit == 403, status == 403)


class Looks(unittest.TestCase):
    """Pictures of the page for a person, in out/; and that nothing sticks out of it."""

    def shots(self) -> Iterator[tuple[str, int, int, str, str | None]]:
        for scheme in ["light", "dark"]:
            for width, height in [(1600, 1000), (1280, 800)]:
                yield f"page-{width}{'' if scheme == 'light' else '-dark'}", width, height, scheme, None
        for view in ["places", "members", "watch"]:
            yield f"page-400-{view}", 400, 800, "light", view

    def test_each_view_fits_each_size(self) -> None:
        browser = Browser(STAND.server.address, STAND.folder)
        self.addCleanup(browser.end)
        for name, width, height, scheme, view in self.shots():
            with self.subTest(name):
                browser.set_size(width, height, scheme)
                browser.open("kirodbarbitrationtable")
                browser.unfold()
                browser.run("document.querySelector('.knees').scrollIntoView({ block: 'center' })")
                if view is not None:
                    browser.one(f'#views button[data-view="{view}"]').click()
                started = browser.frame()
                wait_for(lambda: browser.frame() > started + 60, "something to see in the charts")
                self.assertEqual(browser.run("return document.scrollingElement.scrollWidth"), width)
                browser.driver.save_screenshot(str(OUT / f"{name}.png"))


if __name__ == "__main__":
    unittest.main()

"""The report of a run, in a browser: made by kirosim, opened from disk."""

import os
import pathlib
import subprocess
import tempfile
import unittest

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import Select

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAMS = pathlib.Path(os.environ.get("PROGRAMS", ROOT / "build/release/bin"))
NAME = "<img src=x onerror=document.title='harmed'> & touch"
SCENE = """
name: "{name}"
lux: 800
frames: 90
pattern: {{kind: subject, contrastEV: 3.0, area: 0.08, textureEV: 0.3}}
light: [{{time: 2.0, ev: 1}}]
events: [{{time: 0, antibanding: off}}, {{time: 1, touch: [0.4, 0.4, 0.2, 0.2]}}]
"""


def make_report(folder: pathlib.Path) -> pathlib.Path:
    """A run with a step of the light and a touch, against a shorter one."""
    scene = folder / "scene.yaml"
    scene.write_text(SCENE.format(name=NAME))
    run = [PROGRAMS / "kirosim", "run", "--no-live", "--quiet", "--tuning", ROOT / "examples/tunings/phone.yaml"]
    run += ["--scene", scene]
    subprocess.run([*run, "--frames", "60", "--csv", folder / "other.csv"], check=True, stdout=subprocess.DEVNULL)
    report = folder / "report.html"
    subprocess.run([*run, "--report", report, "--against", folder / "other.csv"], check=True, stdout=subprocess.DEVNULL)
    return report


class Report(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        options = webdriver.ChromeOptions()
        for argument in ["--headless=new", "--no-sandbox", "--disable-gpu", "--hide-scrollbars"]:
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        self.driver = webdriver.Chrome(options=options, service=Service("/usr/bin/chromedriver"))
        self.addCleanup(self.driver.quit)
        self.resize(1280)
        self.driver.get(make_report(pathlib.Path(folder.name)).as_uri())

    def resize(self, width: int, colours: str = "light") -> None:
        metrics = {"width": width, "height": 1600, "deviceScaleFactor": 1, "mobile": False}
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", metrics)
        features = [{"name": "prefers-color-scheme", "value": colours}]
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": features})

    def press(self, *keys: str) -> None:
        ActionChains(self.driver).send_keys(*keys).perform()

    def cursor(self) -> str:
        return self.driver.find_element(By.ID, "cursor").text

    def time_axes(self) -> set[str]:
        """The labels of the time axis of each chart."""
        script = """return [...document.querySelectorAll(".plot")].map((plot) =>
            [...plot.querySelectorAll(".dygraph-axis-label-x")].map((label) => label.textContent).join(" "))"""
        return set(self.driver.execute_script(script))

    def legend(self, title: str) -> dict[str, str]:
        """What the cursor reads in a chart."""
        lines = self.driver.find_elements(By.XPATH, f"//h3[starts-with(., '{title}')]/../ul/li")
        return dict(tuple(part.text for part in line.find_elements(By.TAG_NAME, "span")) for line in lines)

    def test_reads_zooms_and_shows(self) -> None:
        self.assertEqual(self.driver.title, NAME)
        self.assertEqual(self.driver.find_element(By.TAG_NAME, "h1").text, NAME)
        self.assertEqual(self.cursor(), "frame 1, 0.000 s")

        # The cursor reads all charts; the other run has ended and keeps its last value.
        self.press("]", "]")
        self.assertEqual(self.cursor(), "frame 61, 2.000 s")
        light = self.legend("Light of the scene")
        self.assertEqual(light, {"light": "1600", "light, other.csv": "800"})
        self.press(Keys.ARROW_LEFT)
        self.assertEqual(self.legend("Light of the scene")["light"], "800")

        # All charts are zoomed as one, and shown whole again.
        whole = self.time_axes()
        self.press("+", "+")
        zoomed = self.time_axes()
        self.assertEqual((len(whole), len(zoomed)), (1, 1))
        self.assertNotEqual(whole, zoomed)
        self.press("0")
        self.assertEqual(self.time_axes(), whole)
        plot = self.driver.find_elements(By.CSS_SELECTOR, ".plot")[2]
        self.driver.execute_script("arguments[0].scrollIntoView({block: 'center'})", plot)
        drag = ActionChains(self.driver).move_to_element(plot).click_and_hold().move_by_offset(200, 0).release()
        drag.perform()
        self.assertEqual(len(self.time_axes()), 1)
        self.assertNotEqual(self.time_axes(), whole)

        # A picture leads to its frame, and shows where a calculator measured.
        figures = self.driver.find_elements(By.TAG_NAME, "figure")
        touched = next(figure for figure in figures if "\nframe 31," in figure.text)
        self.assertTrue(touched.text.startswith("touch"))
        touched.click()
        self.assertEqual(self.cursor(), "frame 31, 1.000 s")
        self.assertEqual(touched.get_attribute("aria-current"), "true")
        pixel = "return [...arguments[0].querySelector('canvas').getContext('2d').getImageData(10, 10, 1, 1).data]"
        self.assertEqual(self.driver.execute_script(pixel, touched)[3], 0)
        Select(self.driver.find_element(By.ID, "measurement")).select_by_visible_text("TouchSpot")
        self.assertGreater(self.driver.execute_script(pixel, touched)[3], 150)
        self.check_quiet()
        self.look()

    def check_quiet(self) -> None:
        """Nothing went wrong, and nothing was fetched but the page."""
        self.assertEqual([entry for entry in self.driver.get_log("browser") if entry["level"] == "SEVERE"], [])
        events = [entry["message"] for entry in self.driver.get_log("performance")]
        self.assertEqual([event for event in events if '"url":"http' in event and "requestWillBeSent" in event], [])

    def look(self) -> None:
        """Nothing sticks out at either width; a person looks at the rest."""
        out = ROOT / "out"
        out.mkdir(exist_ok=True)
        for width, colours in [(1280, "light"), (1280, "dark"), (400, "light")]:
            self.resize(width, colours)
            self.driver.execute_script("window.scrollTo(0, 0)")
            inner = self.driver.execute_script("return document.documentElement.scrollWidth")
            self.assertLessEqual(inner, width)
            self.driver.save_screenshot(str(out / f"report-{width}-{colours}.png"))


if __name__ == "__main__":
    unittest.main()

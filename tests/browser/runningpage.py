"""A simulated camera, the page that looks at it, and a browser that looks at the page."""

import os
import pathlib
import re
import signal
import socket
import subprocess
import tempfile
import time
from collections.abc import Callable
from typing import Any, TypeVar

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.remote.webelement import WebElement

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAMS = pathlib.Path(os.environ.get("PROGRAMS", ROOT / "build/release/bin"))

Found = TypeVar("Found")


def wait_for(condition: Callable[[], Found], what: str, seconds: float = 30) -> Found:
    """What the condition answers, once that is true. The wait is long since a busy machine is no fault."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        answer = condition()
        if answer:
            return answer
        time.sleep(0.05)
    raise AssertionError(f"in vain: {what}")


class Program:
    """A program that runs on until it is told to end; its output is in a file."""

    def __init__(self, arguments: list[Any], log: pathlib.Path) -> None:
        self.log = log
        with log.open("w") as output:
            self.process = subprocess.Popen([str(part) for part in arguments], stdout=output, stderr=output)

    def wait_for_line(self, pattern: str) -> str:
        """The first group of what matches."""
        found = wait_for(
            lambda: re.search(pattern, self.log.read_text()) or self.process.poll() is not None,
            f"{pattern} in {self.log.read_text()}",
        )
        assert isinstance(found, re.Match), f"ended early: {self.log.read_text()}"
        return found.group(1)

    def end(self) -> None:
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
        self.process.wait(30)


class Camera(Program):
    """Under still light, so that only an edit moves the exposure. At an address of its own it keeps its port."""

    ADDRESS = f"127.{os.getpid() % 250 + 2}.{os.getpid() // 250 % 250 + 1}.1"

    def __init__(self, folder: pathlib.Path) -> None:
        self.folder = folder
        scene = folder / "still.yaml"
        scene.write_text(
            "name: still\nlux: 400\nframes: 300\nstartOffsetEV: 0\npattern: {kind: natural, textureEV: 1.0}\n"
        )
        live = ["--live-address", self.ADDRESS, "--realtime", "--loop", "--quiet"]
        run = [PROGRAMS / "kirosim", "run", "--tuning", folder / "camera.bin", "--scene", scene]
        super().__init__([*run, *live], folder / "camera.log")
        self.port = int(self.wait_for_line(r"live tuning at port (\d+)"))


def compile_tuning(folder: pathlib.Path, tag: str) -> pathlib.Path:
    """The phone's tuning under another tag, as text; the camera's file is made from it."""
    text = (ROOT / "examples/tunings/phone.yaml").read_text()
    tuning = folder / "phone.yaml"
    tuning.write_text(re.sub(r"binaryTag: \w+", lambda _: f'binaryTag: "{tag}"', text, count=1))
    subprocess.run([PROGRAMS / "kirotune", "compile", tuning, "-o", folder / "camera.bin"], check=True)
    return tuning


def free_port() -> int:
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class PageServer(Program):
    """kirotune page, for a camera."""

    def __init__(self, camera: Camera, tuning: pathlib.Path, host: str = "127.0.0.1") -> None:
        self.port = free_port()
        arguments = ["--camera", f"{camera.ADDRESS}:{camera.port}", "--listen", f"{host}:{self.port}", "--file", tuning]
        super().__init__([PROGRAMS / "kirotune", "page", *arguments], camera.folder / f"page-{self.port}.log")
        self.printed = self.wait_for_line(r"(http://\S+)")
        self.address = f"http://127.0.0.1:{self.port}"


LUMA = """
const image = document.querySelector("#picture img");
const canvas = document.createElement("canvas");
[canvas.width, canvas.height] = [32, 32];
const context = canvas.getContext("2d");
context.drawImage(image, 0, 0, 32, 32);
const { data } = context.getImageData(0, 0, 32, 32);
return data.reduce((sum, value, index) => sum + (index % 4 === 1 ? value : 0), 0) / 1024;
"""


def headless(downloads: pathlib.Path) -> webdriver.Chrome:
    """Debian's browser, without a screen."""
    options = webdriver.ChromeOptions()
    for argument in ["--headless=new", "--no-sandbox", "--disable-dev-shm-usage", "--disable-gpu", "--hide-scrollbars"]:
        options.add_argument(argument)
    options.add_experimental_option("prefs", {"download.default_directory": str(downloads)})
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    options.binary_location = "/usr/bin/chromium"
    return webdriver.Chrome(options=options, service=Service("/usr/bin/chromedriver"))


class Browser:
    """With the page open."""

    def __init__(self, address: str, downloads: pathlib.Path) -> None:
        self.driver = headless(downloads)
        self.set_size(1600, 1000)
        self.address = address
        self.open()

    def open(self, module: str = "kiroconvergence", mode: str = "Default") -> None:
        self.driver.get("about:blank")
        self.driver.get(f"{self.address}/#mode={mode}&module={module}")
        try:
            wait_for(lambda: self.text("#members h1") == module, f"the module {module}")
            wait_for(lambda: self.chart_value("safeSensitivity"), "values in the charts")
        except AssertionError as error:
            said = [self.text("#banner"), self.text("#notice"), *self.errors()]
            raise AssertionError(f"{error}; the page says {said}") from None

    def set_size(self, width: int, height: int, scheme: str = "light") -> None:
        metrics = {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": False}
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", metrics)
        feature = {"name": "prefers-color-scheme", "value": scheme}
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [feature]})

    def run(self, script: str, *arguments: Any) -> Any:
        return self.driver.execute_script(script, *arguments)

    def all(self, selector: str) -> list[WebElement]:
        return self.driver.find_elements(By.CSS_SELECTOR, selector)

    def one(self, selector: str) -> WebElement:
        return wait_for(lambda: self.all(selector), selector)[0]

    def text(self, selector: str) -> str:
        """Of what is folded away, too; empty if there is none."""
        return self.run("return document.querySelector(arguments[0])?.textContent ?? ''", selector)

    def attribute(self, selector: str, name: str) -> str:
        """Empty if there is none."""
        return self.run("return document.querySelector(arguments[0])?.getAttribute(arguments[1]) ?? ''", selector, name)

    def is_shown(self, selector: str) -> bool:
        return any(node.is_displayed() for node in self.all(selector))

    def chart_value(self, name: str) -> float | None:
        """The newest that a chart draws. Exposures are in EV."""
        text = self.text(f'[data-key="{name}"] output')
        return float(text) if re.fullmatch(r"-?[\d.]+", text) else None

    def frame(self) -> int:
        """Of the newest values."""
        text = self.text('[data-control="frameNumber"]')
        return int(text) if text.isdigit() else 0

    def picture_luma(self) -> float:
        """Mean of the green channel, 0 to 255."""
        return self.run(LUMA)

    def find_member(self, words: str, module: str, member: str) -> None:
        """Through the search, as a person does."""
        search = self.one("#search")
        search.clear()
        search.send_keys(words)
        self.one(f'#found button[data-module="{module}"][data-member="{member}"]').click()
        wait_for(lambda: self.text("#members h1") == module, f"the module {module}")

    def value(self, path: str) -> str:
        return self.one(f'[id="member-{path}"]').get_property("value")

    def type_value(self, path: str, value: str) -> None:
        field = self.one(f'[id="member-{path}"]')
        field.click()
        field.send_keys(Keys.CONTROL, "a")
        field.send_keys(value, Keys.ENTER)

    def undo(self) -> None:
        before = self.attribute("#undo", "title")
        self.one("#undo").click()
        wait_for(lambda: self.attribute("#undo", "title") != before, "an answer to undo")

    def unfold(self) -> None:
        """All that is folded, but the numbers below charts."""
        script = """
            const folds = [...document.querySelectorAll("#members details:not([open])")]
                .filter(({ dataset }) => !dataset.path.endsWith(" in numbers"));
            folds.forEach((fold) => fold.querySelector("summary").click());
            return folds.length === 0;
        """
        wait_for(lambda: self.run(script), "all folds open")

    def errors(self) -> list[str]:
        """What the browser complained about since it was last asked."""
        return [entry["message"] for entry in self.driver.get_log("browser") if entry["level"] == "SEVERE"]

    def end(self) -> None:
        self.driver.quit()


class Stand:
    """One camera and its page, for all tests."""

    def start(self, tag: str) -> None:
        """The camera's tuning gets the tag."""
        self.temporary = tempfile.TemporaryDirectory()
        self.folder = pathlib.Path(self.temporary.name)
        self.tuning = compile_tuning(self.folder, tag)
        self.camera = Camera(self.folder)
        self.server = PageServer(self.camera, self.tuning)

    def end(self) -> None:
        """What was started before a start failed, too."""
        for name in ["server", "camera"]:
            if hasattr(self, name):
                getattr(self, name).end()
        self.temporary.cleanup()

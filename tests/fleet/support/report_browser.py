# SPDX-License-Identifier: Apache-2.0
"""A browser without a window that opens report pages."""

import base64
from pathlib import Path

from report_sample import write_page
from selenium import webdriver
from selenium.webdriver.common.by import By


class Browser:
    """Opens pages that lie in a directory."""

    def __init__(self, directory):
        options = webdriver.ChromeOptions()
        for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--hide-scrollbars",
                         f"--user-data-dir={directory}/profile"):
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        self.driver = webdriver.Chrome(options=options)
        self.directory = directory
        self.set_size(1280, 900)

    def set_size(self, width, height):
        metrics = {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": width < 600}
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", metrics)

    def set_media(self, media="", scheme="light"):
        features = [{"name": "prefers-color-scheme", "value": scheme}]
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"media": media, "features": features})

    def open(self, answers, language="en"):
        """Opens the page about a fleet with these answers."""
        file = self.directory / "report.html"
        write_page(file, answers, language)
        self.driver.get(file.as_uri())

    def run(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def tell(self, event):
        self.run("dispatchEvent(new Event(arguments[0]))", event)

    def find(self, selector):
        return self.driver.find_element(By.CSS_SELECTOR, selector)

    def attribute(self, selector, name):
        return self.find(selector).get_attribute(name)

    def texts(self, selector):
        """Returns the text of each element as it is seen, with one blank between two pieces."""
        texts = self.run("return [...document.querySelectorAll(arguments[0])].map(each => each.innerText)", selector)
        return [" ".join(text.split()) for text in texts]

    def hosts(self):
        """Returns the names of the hosts that are shown."""
        return self.texts("#rows .host")

    def open_all_hosts(self):
        self.run("document.querySelectorAll('button.host').forEach(button => button.click())")

    def sort_by(self, column):
        self.find(f"[data-column='{column}'] button").click()

    def complaints(self):
        """Returns what the browser complained about since it was asked last."""
        return self.driver.get_log("browser")

    def take_picture(self, file):
        data = self.driver.execute_cdp_cmd("Page.captureScreenshot", {"format": "png"})["data"]
        Path(file).write_bytes(base64.b64decode(data))

# SPDX-License-Identifier: Apache-2.0
"""Looks at report pages in a browser.

usage: report_checks.py DIR CHECK

DIR is an empty directory; CHECK is the name of a function below without its `check_`.
"""

import base64
import functools
import http.server
import sys
import threading
from pathlib import Path

from report_browser import Browser
from report_sample import HOSTILE_NAMES, answer, change, hostile_fleet, large_fleet, small_fleet
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys


def expect(found, wanted):
    """Fails, and tells both, where they differ."""
    assert found == wanted, f"\nfound:  {found}\nwanted: {wanted}"


def check_loading(browser):
    for answers in ({}, small_fleet(), large_fleet()):
        browser.open(answers)
        expect(browser.complaints(), [])
        expect(browser.driver.title, "Host policies")
        expect(len(browser.hosts()), len(answers))


def check_speed(browser):
    browser.open(large_fleet())
    times = [browser.run("const start = performance.now(); show_page(); document.body.offsetHeight;"
                         "return performance.now() - start") for _ in range(5)]
    print(f"1,000 hosts are drawn in {min(times):.0f} ms")
    assert min(times) < 1000


class Pages(http.server.SimpleHTTPRequestHandler):
    """Serves pages, and remembers what was asked for."""

    asked = []

    def log_message(self, *_):
        self.asked.append(self.path)


def check_network(browser):
    browser.open(hostile_fleet())
    handler = functools.partial(Pages, directory=browser.directory)
    with http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler) as server:
        threading.Thread(target=server.serve_forever, daemon=True).start()
        browser.driver.get(f"http://127.0.0.1:{server.server_port}/report.html")
        expect(len(browser.hosts()), 2)
        expect(browser.run("return performance.getEntriesByType('resource').length"), 0)
        expect(browser.complaints(), [])
        # What would ask does not get through.
        browser.run("new Image().src = '/image';"
                    "document.body.append(Object.assign(document.createElement('script'), {src: '/script'}))")
        expect(browser.driver.execute_async_script(
            "fetch('/data').then(() => 'answered', () => 'refused').then(arguments[0])"), "refused")
        server.shutdown()
    expect(Pages.asked, ["/report.html"])


def check_overview(browser):
    browser.open(small_fleet())
    expect(browser.texts(".tile"), ["3 hosts", "1 in order", "0 awaiting restart", "1 drifted", "1 tampered",
                                    "1 unreachable", "0 failed"])
    expect(browser.texts("#modules li"), ["exec on 2", "exec script on 2", "net on 2", "kmod on 1 off 1", "file on 2",
                                          "proc on 2", "3adm on 2", "box on 1 off 1"])
    expect(browser.texts("#rows tr"), [
        "web2 unreachable – – – – – – – – – – –",
        "web1 tampered drifted enabled on on on off on on on on 5 1",
        "db1 in order enabled on on on on on on on off 0 0",
    ])


def check_common_differences(browser):
    hosts = change("/file/files", "/etc/hosts")
    fleet = {f"web{number}": answer(drift=[hosts, change("/kmod/modules", f"m{number}")]) for number in range(3)}
    fleet["db"] = answer(drift=[hosts])
    browser.open(fleet)
    expect(browser.texts("#common li"), ["+ missing file › files › /etc/hosts on 4 hosts"])


def check_details(browser):
    browser.open(small_fleet())
    button = browser.find("button.host")
    button.send_keys(Keys.ENTER)
    expect(button.get_attribute("aria-expanded"), "true")
    expect(browser.texts(".details"), ["Failed to connect to the host via ssh: Connection refused"])
    button.send_keys(Keys.SPACE)
    expect(button.get_attribute("aria-expanded"), "false")
    expect(browser.texts(".details"), [])
    browser.open_all_hosts()
    expect(browser.texts(".details li"), [
        "/usr/local/bin/deploy",
        "~ changed modules › kmod off, to be on",
        "~ changed exec › whitelist › /usr/local/bin/deploy tampered, to be intact",
        "+ missing file › files › /etc/hosts",
        "+ missing file › files › /etc/ssh/sshd_config › excepted_packages › vim",
        "− beyond the document kmod › modules › ext4",
    ])
    browser.sort_by("host")
    expect(len(browser.texts(".details")), 2)


def check_reasons(browser):
    undeclared = answer(tampered=["/a"])
    del undeclared["drift"]
    browser.open({
        "gone": {},
        "lost": {"unreachable": True, "msg": "two\nlines"},
        "refused": answer(drift=[change("/file/files", "/gone")], refused=["/file/files/~1gone: does not exist"]),
        "undeclared": undeclared,
        "waiting": answer(framework="disabled", restart=True, drift=[change("", "framework", "disabled", "enabled")]),
    })
    browser.sort_by("host")
    browser.open_all_hosts()
    expect(browser.texts(".details"), [
        "The host gave no answer.",
        "two lines",
        "The document would be refused /file/files/~1gone: does not exist Differences + missing file › files › /gone",
        "Tampered files /a nothing is declared, so nothing is compared",
        "The document needs a restart to take effect. Differences ~ changed framework disabled, to be enabled",
    ])


def check_filter(browser):
    browser.open(small_fleet())
    search = browser.find("#search")
    for text, hosts in (("WEB1", ["web1"]), ("bin/deploy", ["web1"]), ("sshd_config", ["web1"]), ("refused", ["web2"]),
                        ("b1", ["web1", "db1"]), ("nowhere", []), (" ", ["web2", "web1", "db1"])):
        search.clear()
        search.send_keys(text)
        expect(browser.hosts(), hosts)
        expect(browser.find("#nothing").is_displayed(), not hosts)
    browser.find(".tile.tampered").click()
    expect(browser.hosts(), ["web1"])
    expect(browser.attribute(".tile.tampered", "aria-pressed"), "true")
    expect(browser.texts("#count"), ["1 of 3"])
    browser.find(".tile.tampered").click()
    expect(len(browser.hosts()), 3)
    expect(browser.attribute(".tile.all", "aria-pressed"), "true")


def check_sort(browser):
    browser.open(large_fleet(200))
    browser.sort_by("host")
    expect(browser.hosts(), [f"host{number}" for number in range(1, 201)])
    browser.sort_by("host")
    expect(browser.hosts()[0], "host200")
    expect(browser.attribute("[data-column=host]", "aria-sort"), "descending")
    expect(browser.attribute("[data-column=net]", "aria-sort"), "none")
    for place, column, words in ((3, "framework", ["enabled", "permissive", "disabled", "–"]), (6, "net", ["on", "off", "–"]),
                                 (8, "file", ["on", "warning", "–"]), (13, "tampered", ["3", "2", "1", "0", "–"])):
        browser.sort_by(column)
        expect(list(dict.fromkeys(browser.texts(f"#rows :nth-child({place}):is(td)"))), words)


def check_languages(browser):
    browser.open(small_fleet(), "zh")
    expect(browser.attribute("html", "lang"), "zh-CN")
    browser.open_all_hosts()
    browser.find("#search").send_keys("web")
    assert "无法连接" in browser.find("main").text
    browser.find("[data-language=en]").click()
    expect(browser.attribute("html", "lang"), "en")
    expect([letter for letter in browser.find("body").text.replace("中文", "") if ord(letter) > 0x3000], [])
    expect(browser.hosts(), ["web2", "web1"])
    expect(len(browser.texts(".details")), 2)
    expect(browser.run("return Object.values({...texts, ...words, ...counted_texts}).filter(pair => pair.length !== 2)"), [])


def check_hostile_names(browser):
    browser.open(hostile_fleet())
    browser.open_all_hosts()
    expect(browser.driver.title, "Host policies")
    expect(len(browser.driver.find_elements(By.CSS_SELECTOR, "img, iframe, body script")), 2)
    shown = browser.texts(".details li .name")
    for name in HOSTILE_NAMES[:4] + ("/opt/\\xff", "two\\x0alines\\x09and a bell\\x07", "/tmp/\\xe2\\x80\\xaegnp.exe"):
        assert name in shown, name
    expect(browser.complaints(), [])


def check_print(browser):
    fleet = large_fleet()
    fleet["full"] = answer(drift=[change("/kmod/modules", f"module{number}") for number in range(100)])
    browser.open(fleet)
    browser.set_media("print")
    browser.tell("beforeprint")
    expect(len(browser.hosts()), 1001)
    expect(len(browser.texts(".details")), browser.run("return hosts.filter(has_details).length"))
    expect(browser.texts(".details .more"), ["and 60 more"])
    expect([browser.find(control).is_displayed() for control in ("#languages", "#search")], [False, False])
    browser.set_media()
    browser.tell("afterprint")
    expect(browser.texts(".details"), [])
    browser.find(".tile.failed").click()
    browser.tell("beforeprint")
    expect(browser.texts("#count"), ["7 of 1,001 – Filter: failed"])
    assert base64.b64decode(browser.driver.print_page()).startswith(b"%PDF")


def check_phone(browser):
    browser.set_size(390, 844)
    for fleet in (hostile_fleet(), small_fleet()):
        browser.open(fleet)
        browser.open_all_hosts()
        assert browser.run("return document.scrollingElement.scrollWidth") <= 390
    browser.open(small_fleet())
    browser.sort_by("host")
    expect(browser.hosts(), ["db1", "web1", "web2"])


def check_accessibility(browser):
    browser.open(large_fleet(60))
    browser.open_all_hosts()
    for scheme in ("light", "dark"):
        browser.set_media(scheme=scheme)
        expect(browser.run(Path(__file__).with_name("report_contrast.js").read_text(encoding="utf-8")), [])
    assert browser.find("table").accessible_name.startswith("State, modules")
    expect(browser.find("#search").accessible_name, "Find")
    buttons = browser.driver.find_elements(By.CSS_SELECTOR, "button")
    assert all(button.accessible_name for button in buttons)
    expect(len(browser.driver.find_elements(By.CSS_SELECTOR, "#rows th[scope=row]")), 60)


def check_picture(browser):
    """Leaves the picture of the documents in the directory."""
    browser.open(large_fleet())
    browser.find(".tile.tampered").click()
    browser.find("button.host").click()
    browser.run("document.activeElement.blur(); scrollTo(0, 0)")
    browser.take_picture(browser.directory / "report.png")


def main():
    browser = Browser(Path(sys.argv[1]))
    try:
        globals()["check_" + sys.argv[2]](browser)
    finally:
        browser.driver.quit()


main()

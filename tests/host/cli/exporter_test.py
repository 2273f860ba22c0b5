"""What Prometheus gets: the exporter scraped as Prometheus scrapes it."""

import http.client
import json
import pathlib
import re
import signal
import socket
import threading
import time
import urllib.error
import urllib.request

import pytest
from prometheus_client.parser import text_string_to_metric_families

from patience import until
from region import Region

ROOT = pathlib.Path(__file__).resolve().parents[3]
TEXT_FORMAT = "text/plain; version=0.0.4; charset=utf-8"


class Scrape:
    """The samples of one scrape, found by name and labels."""

    def __init__(self, text):
        self.families = list(text_string_to_metric_families(text))
        self.samples = {}
        for family in self.families:
            assert family.documentation and family.type in ("gauge", "counter", "histogram")
            for sample in family.samples:
                key = (sample.name, frozenset(sample.labels.items()))
                assert key not in self.samples, "each sample is there once"
                self.samples[key] = sample.value

    def __call__(self, name, /, **labels):
        return self.samples.get((name, frozenset(labels.items())))

    def blades(self, name):
        """By blade, the values of a metric that each blade has once."""
        return {dict(labels)["blade"]: value for (each, labels), value in self.samples.items()
                if each == name}


class Exporter:
    def __init__(self, process):
        self.process = process
        self.url = process.line()

    def get(self, path="/metrics"):
        return urllib.request.urlopen(self.url.replace("/metrics", path), timeout=30)

    def scrape(self):
        with self.get() as answer:
            assert answer.headers["Content-Type"] == TEXT_FORMAT
            return Scrape(answer.read().decode())

    def connect(self):
        host, port = re.fullmatch(r"http://(.*):(\d+)/metrics", self.url).groups()
        return socket.create_connection((host, int(port)), timeout=30)


@pytest.fixture
def exporter(follow):
    """Starts an exporter, which listens when this returns."""

    def start_exporter(*arguments):
        return Exporter(follow("exporter", "--listen", "127.0.0.1:0", *arguments))

    return start_exporter


@pytest.fixture
def serve(start, tmp_path):
    """Starts a daemon for a chassis of four slots with these blades."""

    def serve_blades(*blades):
        config = tmp_path / "chassis.toml"
        config.write_text("[chassis]\nslots = 4\n" + "".join("[[blade]]\n" + b for b in blades))
        return start("--config", str(config))

    return serve_blades


SILENT = "faults = { delay_ms = 60000 }\n"


def test_a_blade_is_told_of_as_the_tool_tells_of_it(exporter, serve, ruk_ipmi):
    serve("slot = 2\nsel_entries = 100\n")
    scrape = exporter().scrape()
    assert scrape("ruk_ipmi_chassis_up") == 1
    assert scrape("ruk_ipmi_chassis_slots") == 4
    assert scrape.blades("ruk_ipmi_blade_up") == {"2": 1}
    assert scrape("ruk_ipmi_blade_power_on", blade="2") == 1
    (log,) = ruk_ipmi.json("-b", 2, "sel", "info")
    assert log["entries"] == 100
    assert scrape("ruk_ipmi_sel_entries", blade="2") == 100
    assert scrape("ruk_ipmi_sel_free_bytes", blade="2") == log["free_bytes"]
    assert scrape("ruk_ipmi_sel_overflow", blade="2") == 0
    assert scrape("ruk_ipmi_exchange_duration_seconds_count", blade="2") == 3
    version = ruk_ipmi.json("version")["version"]
    assert scrape("ruk_ipmi_build_info", version=version) == 1
    assert 0 < scrape("ruk_ipmi_scrape_duration_seconds") < 3


def test_each_slot_is_told_of_and_the_sub_slots_in_use(exporter, serve):
    serve("slot = 1\n", "slot = 3\nsub_slot = 1\n", "slot = 3\nsub_slot = 4\n")
    scrape = exporter().scrape()
    present = {"1": 1, "2": 0, "3.1": 1, "3.4": 1, "4": 0}
    assert scrape.blades("ruk_ipmi_blade_present") == present
    assert scrape.blades("ruk_ipmi_blade_up") == {"1": 1, "3.1": 1, "3.4": 1}


def test_only_the_blades_that_are_named_are_asked(exporter, chassis, ruk_ipmi):
    exporting = exporter("-b", "2,3.2")
    ruk_ipmi.text("-b", "1-2", "events", "post", "--events", 40)
    scrape = exporting.scrape()
    assert scrape.blades("ruk_ipmi_blade_present") == {"2": 1, "3.2": 0}
    assert scrape.blades("ruk_ipmi_blade_up") == {"2": 1}
    assert scrape("ruk_ipmi_events_total", blade="2", event="40", name="") == 1
    assert scrape("ruk_ipmi_events_total", blade="1", event="40", name="") is None


def test_a_blades_draw_is_what_the_tool_tells(exporter, chassis, ruk_ipmi):
    ruk_ipmi.text("-b", 1, "raw", 0x04, 0x30, 0x38, 0x01, 150)  # the sensor counts two watts
    scrape = exporter().scrape()
    assert scrape("ruk_ipmi_blade_power_watts", blade="1") == 300
    (draw,) = ruk_ipmi.json("-b", 1, "power", "draw")
    assert draw["word_3"] == 300


def test_switching_the_power_off_shows(exporter, chassis, ruk_ipmi):
    exporting = exporter()
    off = {"blade": "1", "event": "10", "name": "power off"}
    before = exporting.scrape()
    assert before("ruk_ipmi_events_total", **off) == 0
    ruk_ipmi.text("-b", 1, "chassis", "power", "off")
    assert exporting.scrape().blades("ruk_ipmi_blade_power_on") == {"1": 0, "2": 1, "3": 1}
    after = until(lambda: (s := exporting.scrape())("ruk_ipmi_events_total", **off) and s)
    assert after("ruk_ipmi_events_total", **off) == 1
    entries = [each("ruk_ipmi_sel_entries", blade="1") for each in (before, after)]
    assert entries[1] == entries[0] + 1


def test_a_full_log_shows(exporter, serve, ruk_ipmi):
    serve("slot = 1\nsel_entries = 512\n")
    ruk_ipmi("-b", 1, "raw", 0x0A, 0x44, *[0] * 2, 0xC0, *[0] * 13)
    scrape = exporter().scrape()
    assert scrape("ruk_ipmi_sel_free_bytes", blade="1") == 0
    assert scrape("ruk_ipmi_sel_overflow", blade="1") == 1


def test_events_are_counted_from_the_start_on_each_once(exporter, chassis, ruk_ipmi):
    ruk_ipmi.text("-b", 2, "events", "post", "--events", 40)
    exporting = exporter()
    exporting.scrape()
    for _ in range(3):
        ruk_ipmi.text("-b", "2,3", "events", "post", "--events", "1,40")
    scrape = exporting.scrape()
    assert scrape("ruk_ipmi_events_total", blade="2", event="40", name="") == 3
    assert scrape("ruk_ipmi_events_total", blade="3", event="1", name="blade inserted") == 3
    assert scrape("ruk_ipmi_events_total", blade="1", event="1", name="blade inserted") == 0
    assert scrape("ruk_ipmi_interrupts_missed_total") == 0


def test_events_are_counted_though_nobody_scrapes(exporter, chassis, ruk_ipmi):
    exporting = exporter()
    for _ in range(3):
        ruk_ipmi.text("-b", "1-100", "events", "post", "--events", 40)  # the ring holds 200
        time.sleep(0.5)
    scrape = exporting.scrape()
    assert scrape("ruk_ipmi_interrupts_missed_total") == 0
    assert scrape("ruk_ipmi_events_total", blade="100", event="40", name="") == 3


def test_interrupts_that_are_gone_are_counted_too(exporter, chassis, environment):
    exporting = exporter("-b", 1)
    Region(environment).write_head(5)  # as if five had come and gone
    missed = until(lambda: exporting.scrape()("ruk_ipmi_interrupts_missed_total"))
    assert missed == 5


def test_time_outs_are_those_of_the_library(exporter, chassis, environment):
    Region(environment).write_timeouts(1, 7, 2)
    scrape = exporter().scrape()
    assert scrape.blades("ruk_ipmi_timeouts_raised_total") == {"1": 0, "2": 7, "3": 0}
    assert scrape("ruk_ipmi_timeout_sessions_total", blade="2") == 2


def test_a_latency_is_counted_in_its_bucket(exporter, serve):
    serve("slot = 1\nfaults = { delay_ms = 60 }\n")
    scrape = exporter().scrape()
    buckets = {bound: scrape("ruk_ipmi_exchange_duration_seconds_bucket", blade="1", le=bound)
               for bound in ("0.01", "0.05", "0.5", "10", "+Inf")}
    assert buckets == {"0.01": 0, "0.05": 0, "0.5": 3, "10": 3, "+Inf": 3}
    assert 0.18 <= scrape("ruk_ipmi_exchange_duration_seconds_sum", blade="1") < 1.5


def test_what_a_blade_refuses_is_missing_and_counted(exporter, serve):
    serve("slot = 1\nfaults = { completion_code = 0xC1 }\n")
    scrape = exporter().scrape()
    assert scrape("ruk_ipmi_blade_up", blade="1") == 1
    assert scrape("ruk_ipmi_blade_power_on", blade="1") is None
    assert scrape("ruk_ipmi_sel_entries", blade="1") is None
    failures = {kind: scrape("ruk_ipmi_exchange_failures_total", blade="1", kind=kind)
                for kind in ("refused", "access", "transport", "unsupported")}
    assert failures == {"refused": 0, "access": 0, "transport": 0, "unsupported": 3}


def test_a_silent_blade_is_down_and_delays_no_other(exporter, serve):
    serve("slot = 1\n", "slot = 2\n" + SILENT, "slot = 2\nsub_slot = 1\n")
    exporting = exporter("--wait", 0.5)
    for _ in range(2):
        begun = time.monotonic()
        scrape = exporting.scrape()
        assert 0.5 <= time.monotonic() - begun < 3
        assert scrape.blades("ruk_ipmi_blade_up") == {"1": 1, "2": 0, "2.1": 1}
        assert set(scrape.blades("ruk_ipmi_sel_entries")) == {"1", "2.1"}


def test_a_blade_that_cannot_be_reached_is_down_and_counted(exporter, made_up_blade):
    made_up_blade.status = 0x500A
    scrape = exporter("-b", 1).scrape()
    assert scrape("ruk_ipmi_blade_up", blade="1") == 0
    assert scrape("ruk_ipmi_exchange_failures_total", blade="1", kind="transport") == 1


def test_who_scrapes_at_once_shares_the_answers(exporter, serve):
    serve("slot = 1\n", "slot = 2\n" + SILENT)
    exporting = exporter("--wait", 1)
    durations = []

    def scrape():
        scraped = exporting.scrape()
        assert scraped.blades("ruk_ipmi_blade_up") == {"1": 1, "2": 0}
        durations.append(scraped("ruk_ipmi_scrape_duration_seconds"))

    threads = [threading.Thread(target=scrape) for _ in range(20)]
    for each in threads:
        each.start()
    for each in threads:
        each.join()
    assert len(durations) == 20
    assert len(set(durations)) < 20
    asked = exporting.scrape()("ruk_ipmi_exchange_duration_seconds_count", blade="1")
    assert asked < 3 * 20


def test_a_scraper_that_goes_away_ends_nothing(exporter, serve):
    serve("slot = 1\n" + SILENT)
    exporting = exporter("--wait", 0.3)
    for _ in range(3):
        with exporting.connect() as connection:
            connection.sendall(b"GET /metrics HTTP/1.1\r\nHost: here\r\n\r\n")
        with exporting.connect() as connection:
            connection.sendall(b"GET /met")
        time.sleep(0.4)
    assert exporting.scrape()("ruk_ipmi_blade_up", blade="1") == 0


def test_the_daemon_may_go_and_come_back(exporter, start):
    first = start("--simulate", "2")
    exporting = exporter()
    assert exporting.scrape()("ruk_ipmi_chassis_up") == 1
    first.terminate()
    first.wait(timeout=10)
    gone = exporting.scrape()
    assert gone("ruk_ipmi_chassis_up") == 0
    assert gone.blades("ruk_ipmi_blade_present") == gone.blades("ruk_ipmi_blade_up") == {}
    start("--simulate", "2")
    back = exporting.scrape()
    assert back("ruk_ipmi_chassis_up") == 1
    assert back.blades("ruk_ipmi_blade_up") == {"1": 1, "2": 1}


def test_the_daemon_may_start_after_the_exporter(exporter, start, ruk_ipmi):
    exporting = exporter()
    assert "no message service" in exporting.process.message()
    assert exporting.scrape()("ruk_ipmi_chassis_up") == 0
    start("--simulate", "1")
    assert exporting.process.message() == "ruk-ipmi: works again"
    ruk_ipmi.text("-b", 1, "events", "post", "--events", 40)
    scrape = exporting.scrape()
    assert scrape("ruk_ipmi_chassis_up") == 1
    assert scrape("ruk_ipmi_events_total", blade="1", event="40", name="") == 1


def test_the_front_page_leads_to_the_metrics(exporter, chassis):
    with exporter().get("/") as page:
        assert page.headers["Content-Type"] == "text/html; charset=utf-8"
        assert '<a href="/metrics">' in page.read().decode()


@pytest.mark.parametrize("path", ["/metric", "/metrics/", "/metrics/../x", "//", "/%2e%2e/"])
def test_there_are_no_other_pages(exporter, chassis, path):
    with pytest.raises(urllib.error.HTTPError) as refusal:
        exporter().get(path)
    assert refusal.value.code == 404


@pytest.mark.parametrize("method", ["POST", "PUT", "DELETE"])
def test_the_pages_can_only_be_read(exporter, chassis, method):
    connection = http.client.HTTPConnection(exporter().url.split("/")[2], timeout=30)
    connection.request(method, "/metrics", body=b"x=1")
    answer = connection.getresponse()
    assert (answer.status, answer.headers["Allow"]) == (405, "GET, HEAD")
    connection.close()


def test_a_head_and_a_second_request_take_the_same_connection(exporter, chassis):
    connection = http.client.HTTPConnection(exporter().url.split("/")[2], timeout=30)
    connection.request("HEAD", "/metrics")
    answer = connection.getresponse()
    assert (answer.status, answer.read()) == (200, b"")
    first = connection.sock
    connection.request("GET", "/metrics")
    assert Scrape(connection.getresponse().read().decode())("ruk_ipmi_chassis_up") == 1
    assert connection.sock is first
    connection.close()


@pytest.mark.parametrize("how", [signal.SIGTERM, signal.SIGINT])
def test_a_signal_ends_it_well_also_during_a_scrape(exporter, serve, how):
    serve("slot = 1\n" + SILENT)
    exporting = exporter()
    with exporting.connect() as connection:
        connection.sendall(b"GET /metrics HTTP/1.1\r\nHost: here\r\n\r\n")
        time.sleep(0.2)
        assert exporting.process.stop(how) == (0, "")


def test_where_it_serves_is_told_in_json_too(follow, chassis):
    exporting = follow("exporter", "--listen", "[::1]:0", "-o", "json")
    url = json.loads(exporting.line())["serving"]
    assert re.fullmatch(r"http://\[::1\]:\d+/metrics", url)
    with urllib.request.urlopen(url, timeout=30) as answer:
        assert Scrape(answer.read().decode())("ruk_ipmi_chassis_up") == 1


def test_an_address_that_is_in_use_is_refused(exporter, chassis, ruk_ipmi):
    address = exporter().url.split("/")[2]
    ended = ruk_ipmi("exporter", "--listen", address)
    assert ended.returncode == 2
    assert ended.stderr == f"ruk-ipmi: cannot listen at {address}: Address already in use\n"


@pytest.mark.parametrize(
    "address, message",
    [
        (":9623", '--listen: ":9623" is not an address like 127.0.0.1, localhost:9623 or [::1]:9623'),
        ("::1", '--listen: "::1" is not an address like'),
        ("127.0.0.1:http", '--listen: "http" is not a number'),
        ("127.0.0.1:65536", "--listen: 65536 is not from 0 to 65535"),
        ("127.0.0.300:0", "cannot listen at 127.0.0.300:0: "),
        ("192.0.2.1:0", "cannot listen at 192.0.2.1:0: Cannot assign requested address"),
    ],
)
def test_an_address_that_is_none_is_refused(ruk_ipmi, address, message):
    ended = ruk_ipmi("exporter", f"--listen={address}")
    assert (ended.returncode, ended.stdout) == (2, b"")
    assert message in ended.stderr and ended.stderr.count("\n") == 1


def test_without_its_library_it_says_so(ruk_ipmi, chassis, tmp_path):
    (tmp_path / "libmicrohttpd.so.12").touch()
    ended = ruk_ipmi("exporter", "--listen", "127.0.0.1:0", LD_LIBRARY_PATH=str(tmp_path))
    assert ended.returncode == 1
    assert ended.stderr.startswith("ruk-ipmi: libmicrohttpd is needed for this: ")


def served(scrape):
    """The names of all metrics and of all samples."""
    return {family.name for family in scrape.families} | {name for name, _ in scrape.samples}


@pytest.mark.parametrize("file", ["dashboards/ruk-ipmi.json", "dashboards/alerts.yml"])
def test_what_is_shown_and_warned_of_is_served(exporter, chassis, file):
    wanted = set(re.findall(r"\bruk_ipmi_\w+", (ROOT / file).read_text()))
    assert wanted and wanted <= served(exporter().scrape())


def test_the_dashboard_can_be_read(exporter, chassis):
    dashboard = json.loads((ROOT / "dashboards/ruk-ipmi.json").read_text())
    places = [tuple(panel["gridPos"].values()) for panel in dashboard["panels"]]
    assert len(set(places)) == len(places) > 5
    assert all(panel["targets"][0]["expr"] for panel in dashboard["panels"])


def test_the_table_of_metrics_has_each_and_no_other(exporter, chassis):
    table = (ROOT / "docs/monitoring.md").read_text()
    listed = set(re.findall(r"^\| `(ruk_ipmi_\w+)`", table, re.MULTILINE))
    text = exporter().get().read().decode()
    assert listed == set(re.findall(r"^# TYPE (\w+)", text, re.MULTILINE))

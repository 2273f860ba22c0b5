"""What the exporter tells of real controllers."""

import subprocess
import urllib.request

import pytest
from prometheus_client.parser import text_string_to_metric_families

import sim
from conftest import PROGRAMS


@pytest.fixture
def scrape(chassis):
    """Scrapes an exporter: the samples of a blade by their names, and by their kind of failure."""
    command = [PROGRAMS / "ruk-ipmi", "exporter", "--listen", "127.0.0.1:0", "--wait", "5"]
    exporter = subprocess.Popen(
        command, env=chassis.environment, stdout=subprocess.PIPE, text=True
    )
    url = exporter.stdout.readline().strip()

    def scrape_blade(blade):
        with urllib.request.urlopen(url, timeout=30) as answer:
            families = text_string_to_metric_families(answer.read().decode())
        return {
            sample.labels.get("kind", sample.name): sample.value
            for family in families
            for sample in family.samples
            if sample.labels.get("blade") == blade
        }

    yield scrape_blade
    exporter.terminate()
    assert exporter.wait(timeout=10) == 0


def test_a_controllers_power_and_log_are_told(chassis, controllers, scrape):
    for sensor in (7, 8, 9):
        controllers[0].add_sel_entry(sim.sel_event(0x01, sensor, 0x01, [0x59, 86, 85]))
    told = scrape("1")
    assert told["ruk_ipmi_blade_up"] == told["ruk_ipmi_blade_power_on"] == 1
    assert told["ruk_ipmi_sel_entries"] == 3
    (log,) = chassis.read_json(1, "sel", "info")
    assert told["ruk_ipmi_sel_free_bytes"] == log["free_bytes"]


def test_what_a_controller_does_not_know_is_missing(scrape):
    told = scrape("1")
    assert "ruk_ipmi_blade_power_watts" not in told
    assert told["unsupported"] == 1


def test_a_controller_that_stops_is_down_and_the_other_is_not(controllers, scrape):
    assert scrape("1")["ruk_ipmi_blade_up"] == 1
    controllers[0].stop()
    told = scrape("1")
    assert (told["ruk_ipmi_blade_up"], told["transport"]) == (0, 1)
    assert scrape("2")["ruk_ipmi_blade_up"] == 1

"""ipmi_sim as a blade's controller: its configuration, its life, and what is in it at the start.

As a program it runs one controller in the foreground until it gets SIGTERM or SIGINT, and prints
"ready" once the controller answers:

    python3 sim.py --port 9001 --dir /some/directory
"""

import argparse
import contextlib
import pathlib
import signal
import socket
import subprocess
import sys
import time

ADDRESS = "127.0.0.1"
USERNAME = "ipmiusr"
PASSWORD = "test"
FRU_SIZE = 256

LAN_CONFIGURATION = """\
name "{name}"
set_working_mc 0x20
chassis_control "./chassis"
startlan 1
  addr {address} {port}
  priv_limit admin
  allowed_auths_user md5
  allowed_auths_operator md5
  allowed_auths_admin md5
  guid {guid}
endlan
user 2 true "{username}" "{password}" admin 10 md5
"""

# The blade behind it, in a chassis file whose directory holds the password.
BLADE = """
[[blade]]
slot = {slot}
kind = "bridge"
host = "{host}"
port = {port}
username = "{username}"
password_file = "{password_file}"
privilege = "{privilege}"
cipher_suite = {cipher_suite}
workarounds = {workarounds}
timeout_ms = {timeout_ms}
"""

# What the controller runs to look at the chassis and to change it: "get power", or "set identify 5
# 0", where the words behind the name are what it is set to. A file holds each of these.
CHASSIS_CONTROL = """\
#!/bin/sh
case $1 in
get) echo "$2:$(cat state/chassis.$2)" ;;
set) name=$2 && shift 2 && echo "$*" >state/chassis.$name ;;
esac
"""

# Device support 0x8F: sensors, SDR repository, SEL, FRU inventory and chassis. SEL flags 0x0A:
# entries can be deleted and the log reserved.
CONTROLLER = """\
mc_setbmc 0x20
mc_add 0x20 0x21 no-device-sdrs 0x02 0x01 0x23 0x8f 0x{manufacturer:06x} 0x0042
sel_enable 0x20 200 0x0a
{sdrs}
mc_add_fru_data 0x20 0 0x{fru_size:x} data {fru}
mc_enable 0x20
"""


# What FreeIPMI's session with ipmi_sim needs, which else hashes another privilege, and what makes
# it FreeIPMI's.
FREEIPMI = ["opensesspriv", "nochecksumcheck"]


def blade_configuration(**particulars):
    """At least slot, port and timeout_ms; the rest is as usual unless it is said."""
    usual = dict(
        host=ADDRESS,
        username=USERNAME,
        password_file="password",
        privilege="admin",
        cipher_suite=3,
        workarounds=[],
    )
    return BLADE.format(**{**usual, **particulars})


def hex_bytes(data):
    return " ".join(f"0x{byte:02x}" for byte in data)


def sel_event(sensor_type, sensor, event_type, event_data):
    """A system event record; its ID and its time are the controller's to set when it is added."""
    generator = [0x20, 0x00]
    return bytes(
        [0, 0, 0x02, 0, 0, 0, 0, *generator, 0x04, sensor_type, sensor, event_type, *event_data]
    )


def sdr_body(kind, body):
    """A record as the repository keeps it; the controller gives it the ID when it is added."""
    return bytes([0, 0, 0x51, kind, len(body)]) + body


def locator_sdr(name):
    """A management controller device locator."""
    text = name.encode()
    body = bytes([0x20, 0x00, 0x00, 0x8F, 0, 0, 0, 0x07, 0x01, 0, 0xC0 | len(text)]) + text
    return sdr_body(0x12, body)


def temperature_sdr(number, name):
    """A full sensor record: degrees Celsius, readable thresholds, reading = raw value."""
    text = name.encode()
    body = bytes([0x20, 0x00, number, 0x07, 0x01])  # owner, number, entity
    body += bytes([0x7F, 0x68, 0x01, 0x01])  # initialization, capabilities, temperature, threshold
    body += bytes([0x80, 0x0A, 0x80, 0x0A, 0x3F, 0x3F])  # events and thresholds
    body += bytes([0x00, 0x01, 0x00])  # units: unsigned degrees Celsius
    body += bytes([0x00, 1, 0, 0, 0, 0, 0])  # linear, M = 1, B = 0, no exponents
    body += bytes([0x07, 40, 75, 10, 255, 0])  # nominal 40, normal up to 75 and down to 10
    body += bytes([95, 90, 85, 0, 2, 5, 2, 2])  # thresholds, hysteresis
    body += bytes([0, 0, 0, 0xC0 | len(text)]) + text
    return sdr_body(0x01, body)


def fru_area(*parts):
    """An area: version, length in units of 8 bytes, the parts, the end mark, a checksum."""
    content = b"".join(parts) + b"\xC1"
    units = (len(content) + 2 + 1 + 7) // 8
    area = bytes([0x01, units]) + content
    area = area.ljust(units * 8 - 1, b"\0")
    return area + bytes([-sum(area) & 0xFF])


def fru_text(text):
    return bytes([0xC0 | len(text)]) + text.encode()


def fru_image(serial):
    """A whole inventory: a board area and a product area."""
    board = fru_area(
        b"\x19" + (13_000_000).to_bytes(3, "little"),  # English, minutes since 1996
        *map(fru_text, ["Example Boards", "Controller card", serial, "CC-100", ""]),
    )
    product = fru_area(
        b"\x19",
        *map(fru_text, ["Example Systems", "Blade", "BL-7", "1.0", serial, "", ""]),
    )
    header = bytes([0x01, 0, 0, 1, 1 + len(board) // 8, 0, 0])
    return (header + bytes([-sum(header) & 0xFF]) + board + product).ljust(FRU_SIZE, b"\0")


class Controller:
    """One ipmi_sim process. It can be stopped and started again; its state is in its directory."""

    def __init__(self, port, directory, name="blade", manufacturer=0x0F1234, sdrs=None):
        self.port = port
        self.directory = pathlib.Path(directory)
        self.process = None
        state = self.directory / "state"
        state.mkdir(parents=True, exist_ok=True)
        self.directory.joinpath("lan.conf").write_text(
            LAN_CONFIGURATION.format(
                name=name,
                address=ADDRESS,
                port=port,
                guid=f"{port:032x}",
                username=USERNAME,
                password=PASSWORD,
            )
        )
        control = self.directory.joinpath("chassis")
        control.write_text(CHASSIS_CONTROL)
        control.chmod(0o700)
        for thing, value in [("power", "1"), ("boot", "default")]:
            self.directory.joinpath(f"state/chassis.{thing}").write_text(value + "\n")
        if sdrs is None:
            sdrs = [
                locator_sdr(name),
                temperature_sdr(1, f"{name} temp"),
                temperature_sdr(2, "inlet"),
            ]
        self.directory.joinpath("controller.emu").write_text(
            CONTROLLER.format(
                manufacturer=manufacturer,
                sdrs="\n".join(f"main_sdr_add 0x20 {hex_bytes(sdr)}" for sdr in sdrs),
                fru_size=FRU_SIZE,
                fru=hex_bytes(fru_image(f"{name}-{port}")),
            )
        )
        self.directory.joinpath("password").write_text(PASSWORD + "\n")
        self.directory.joinpath("password").chmod(0o600)

    def start(self):
        """Starts the process and waits until it answers."""
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as free:
            free.bind((ADDRESS, self.port))  # ipmi_sim would share the port with another one
        with open(self.directory / "output", "w") as output:
            self.process = subprocess.Popen(
                ["ipmi_sim", "-c", "lan.conf", "-f", "controller.emu", "-s", "state"],
                cwd=self.directory,
                stdin=subprocess.PIPE,  # ipmi_sim ends when its standard input does
                stdout=output,
                stderr=subprocess.STDOUT,
            )
        deadline = time.monotonic() + 10
        while self.ipmitool("mc", "guid", check=False).returncode != 0:
            if self.process.poll() is not None or time.monotonic() > deadline:
                self.stop()
                raise RuntimeError(
                    f"ipmi_sim does not answer on port {self.port}:\n{self.output()}"
                )
            time.sleep(0.05)

    def stop(self):
        if self.process:
            self.process.kill()
            self.process.wait()
            self.process.stdin.close()
            self.process = None

    def output(self):
        return self.directory.joinpath("output").read_text()

    def sessions_opened(self):
        """How many since the start, ipmitool's among them."""
        return self.output().count("Session started")

    def ipmitool(self, *arguments, check=True):
        """Asks the controller through ipmitool."""
        return subprocess.run(
            ["ipmitool", "-I", "lanplus", "-C", "3", "-N", "1", "-R", "1", "-H", ADDRESS]
            + ["-p", str(self.port), "-U", USERNAME, "-f", self.directory / "password"]
            + [str(argument) for argument in arguments],
            capture_output=True,
            text=True,
            timeout=30,
            check=check,
        )

    def raw(self, *request):
        """The bytes of the answer, without the completion code; fails unless that is 0."""
        done = self.ipmitool("raw", *(f"0x{byte:02x}" for byte in request))
        return bytes.fromhex(done.stdout)

    def set_clock(self, seconds):
        """The clock that stamps events, in seconds since 1970."""
        self.raw(0x0A, 0x49, *int(seconds).to_bytes(4, "little"))

    def chassis(self, name):
        """What something of the chassis was last set to, e.g. "power" or "identify"."""
        return self.directory.joinpath(f"state/chassis.{name}").read_text().strip()

    def add_sel_entry(self, record):
        """The ID that the controller gave the entry."""
        return int.from_bytes(self.raw(0x0A, 0x44, *record), "little")


def free_ports(count):
    """UDP ports that nobody uses at the moment."""
    with contextlib.ExitStack() as held:
        sockets = [
            held.enter_context(socket.socket(socket.AF_INET, socket.SOCK_DGRAM))
            for _ in range(count)
        ]
        for each in sockets:
            each.bind((ADDRESS, 0))
        return [each.getsockname()[1] for each in sockets]


def main():
    options = argparse.ArgumentParser(description="Runs one ipmi_sim controller.")
    options.add_argument("--port", type=int, required=True)
    options.add_argument("--dir", required=True)
    chosen = options.parse_args()

    stop = [signal.SIGTERM, signal.SIGINT]
    signal.pthread_sigmask(signal.SIG_BLOCK, stop)
    controller = Controller(chosen.port, chosen.dir)
    try:
        controller.start()
        controller.set_clock(time.time())
        for sensor in (1, 2):  # upper critical, going high: reading 86, threshold 85
            controller.add_sel_entry(sel_event(0x01, sensor, 0x01, [0x59, 86, 85]))
        controller.add_sel_entry(sel_event(0x0D, 0x20, 0x6F, [0x00, 0xFF, 0xFF]))  # a drive
        print("ready", flush=True)
        signal.sigwait(stop)
    finally:
        controller.stop()


if __name__ == "__main__":
    try:
        main()
    except (OSError, RuntimeError) as trouble:
        sys.exit(f"sim.py: {trouble}")

"""What README shows, done as it says."""

import os
import pathlib
import re
import select
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ["RUK_BUILD_DIR"])


def block(language, containing):
    text = (ROOT / "README.md").read_text()
    blocks = re.findall(rf"```{language}\n(.*?)```", text, re.DOTALL)
    (found,) = [each for each in blocks if containing in each]
    return found


def here(commands):
    return commands.replace("-Iinclude", f"-I{ROOT}/include").replace("build/native", str(BUILD))


def test_the_program_that_reads_a_fru_compiles_as_shown_and_prints_the_common_header(
    start, environment, tmp_path
):
    start("--simulate", "1")
    (tmp_path / "read_fru.cpp").write_text(block("cpp", "ipmi_read_fru"))
    commands = here(block("sh", "read_fru.cpp"))
    done = subprocess.run(
        ["sh", "-e", "-c", commands], cwd=tmp_path, env=environment, text=True,
        capture_output=True, timeout=120,
    )
    assert done.stderr == ""
    header = bytes.fromhex(done.stdout)
    assert len(header) == 8
    assert header[0] == 1, "the format version of a FRU"
    assert sum(header) % 256 == 0, "its checksum"


def test_the_program_that_prints_events_compiles_as_shown_and_prints_what_is_posted(
    start, environment, tmp_path
):
    start("--simulate", "4")
    (tmp_path / "print_events.cpp").write_text(block("cpp", "ruk_register_imc_event_set"))
    compile_it, run_it = here(block("sh", "print_events.cpp")).rsplit("\n", 2)[:2]
    subprocess.run(["sh", "-e", "-c", compile_it], cwd=tmp_path, check=True, timeout=120)
    post = [BUILD / "bin/ruk-ipmi", "events", "post", "-b", "3", "--events", "3,40"]
    with subprocess.Popen(
        [run_it], cwd=tmp_path, env=environment, text=True, stdout=subprocess.PIPE
    ) as program:
        try:
            # The program is told of nothing that happened before it was ready.
            while not select.select([program.stdout], [], [], 0.05)[0]:
                subprocess.run(post, env=environment, check=True, timeout=30, capture_output=True)
            assert program.stdout.readline() == "blade 3: event 3\n"
            assert program.stdout.readline() == "blade 3: event 40\n"
        finally:
            program.kill()


def test_the_commands_to_try_by_hand_all_succeed(start, environment):
    start("--simulate", "4")
    commands = [
        line for line in block("sh", "ruk-chassisd --simulate").splitlines()
        if line.startswith("ruk-ipmi")
    ]
    assert len(commands) == 5
    environment = dict(environment, PATH=f"{BUILD}/bin:{os.environ['PATH']}")
    for command in commands:
        done = subprocess.run(command, shell=True, env=environment, capture_output=True, timeout=30)
        assert done.returncode == 0, command
        assert done.stdout, command


def test_the_chassis_shown_has_no_mistakes(tmp_path):
    (tmp_path / "chassis.toml").write_text(block("toml", "[[blade]]"))
    password = tmp_path / "blade2.password"
    password.touch(0o600)
    done = subprocess.run(
        [BUILD / "bin/ruk-chassisd", "--config", tmp_path / "chassis.toml", "--check"],
        capture_output=True, text=True, timeout=30,
    )
    assert (done.returncode, done.stderr) == (0, "")

"""The users of a blade's controller, and how their passwords are asked for."""

import pytest

REQUESTS = [
    (["set-name", "3", "operator"], 0x0645, b"\x03operator" + bytes(8)),
    (["set-name", "3", "x" * 16], 0x0645, b"\x03" + b"x" * 16),
    (["set-name", "3", ""], 0x0645, b"\x03" + bytes(16)),
    (["enable", "4"], 0x0647, b"\x04\x01"),
    (["disable", "4"], 0x0647, b"\x04\x00"),
    (["set-access", "5", "--privilege", "operator"], 0x0643, b"\x01\x05\x03\x00"),
    (["set-access", "5", "--privilege", "none", "--sessions", "2"], 0x0643, b"\x01\x05\x0f\x02"),
]


@pytest.mark.parametrize("arguments, netfn_cmd, payload", REQUESTS)
def test_a_command_sends_its_bytes_once(ruk_ipmi, made_up_blade, arguments, netfn_cmd, payload):
    made_up_blade.answer(netfn_cmd)(lambda _: 0)
    ruk_ipmi.text("-b", "1", "user", *arguments)
    assert made_up_blade.requests == [(netfn_cmd, payload)]


def password_sent(blade):
    ((netfn_cmd, payload),) = blade.requests
    assert (netfn_cmd, payload[:2], len(payload)) == (0x0647, b"\x82\x02", 22)
    return payload[2:].rstrip(b"\0").decode()


@pytest.mark.parametrize("password", ["s", "pass word", "x" * 20])
def test_a_password_comes_from_a_files_first_line(ruk_ipmi, made_up_blade, tmp_path, password):
    made_up_blade.answer(0x0647)(lambda _: 0)
    (tmp_path / "secret").write_text(password + "\nsecond line\n")
    setting = ["user", "set-password", "2", "--password-file", tmp_path / "secret"]
    told = ruk_ipmi.text("-b", "1", *setting)
    assert password_sent(made_up_blade) == password
    assert password not in told or password == "s"


def test_a_password_may_come_from_standard_input(ruk_ipmi, made_up_blade):
    made_up_blade.answer(0x0647)(lambda _: 0)
    setting = ["user", "set-password", "2", "--password-file", "-"]
    ruk_ipmi.text("-b", "1", *setting, stdin=b"secret")
    assert password_sent(made_up_blade) == "secret"


@pytest.mark.parametrize("contents", [b"", b"\nx", b"x" * 21, b"a\0b", b"x" * 10000])
def test_what_is_no_password_is_refused(ruk_ipmi, made_up_blade, contents):
    ended = ruk_ipmi(
        "-b", "1", "user", "set-password", "2", "--password-file", "-", stdin=contents
    )
    assert (ended.returncode, made_up_blade.requests) == (2, [])


def test_without_a_terminal_a_password_must_be_in_a_file(ruk_ipmi, made_up_blade):
    ended = ruk_ipmi("-b", "1", "user", "set-password", "2")
    assert ended.returncode == 2
    assert "there is no terminal to ask for the password at" in ended.stderr
    assert made_up_blade.requests == []


@pytest.fixture
def asking(terminal, made_up_blade):
    """Starts setting a password at a terminal; it waits for the first one."""
    made_up_blade.answer(0x0647)(lambda _: 0)

    def ask(blades="1"):
        asked = terminal(80, "-b", blades, "user", "set-password", "2")
        asked.until(lambda lines: any("The password:" in line for line in lines))
        return asked

    return ask


def confirm(asked, text):
    asked.until(lambda lines: any("The same again:" in line for line in lines))
    asked.type(text)


def test_a_password_is_asked_for_twice_without_echo(asking, made_up_blade):
    asked = asking()
    asked.type("secret\n")
    confirm(asked, "secret\n")
    assert "password: set" in asked.at_the_end()
    assert "secret" not in asked.raw
    assert password_sent(made_up_blade) == "secret"


def test_a_password_is_asked_for_once_for_several_blades(asking, made_up_blade):
    asked = asking("1-3")
    asked.type("secret\n")
    confirm(asked, "secret\n")
    asked.at_the_end()
    assert made_up_blade.count(0x0647) == 3
    assert asked.raw.count("The password:") == 1


def test_a_password_that_was_mistyped_is_not_set(asking, made_up_blade):
    asked = asking()
    asked.type("secret\n")
    confirm(asked, "secrte\n")
    assert any("the two are not the same" in line for line in asked.at_the_end())
    assert (asked.process.returncode, made_up_blade.requests) == (2, [])


@pytest.mark.parametrize("typed", ["\n", "x" * 21 + "\n"])
def test_a_typed_password_must_fit(asking, made_up_blade, typed):
    asked = asking()
    asked.type(typed)
    asked.at_the_end()
    assert (asked.process.returncode, made_up_blade.requests) == (2, [])


def test_an_interrupt_while_asking_sends_nothing(asking, made_up_blade):
    asked = asking()
    asked.type("secr")
    asked.interrupt()
    assert asked.process.returncode != 0
    assert made_up_blade.requests == []


def two_users(blade):
    access = {1: "02 01 01 0f", 2: "02 41 01 34"}
    blade.answer(0x0644)(lambda payload: b"\0" + bytes.fromhex(access[payload[1]]))
    names = {1: 0xCC, 2: b"\0" + b"ad\x1bmin".ljust(16, b"\0")}
    blade.answer(0x0646)(lambda payload: names[payload[0]])


def test_users_are_listed_with_what_they_may_do(ruk_ipmi, made_up_blade):
    two_users(made_up_blade)
    (told,) = ruk_ipmi.json("-b", "1", "user", "list")
    assert told["users"] == [
        {"id": 1, "name": None, "enabled": None, "privilege": "none", "access": []},
        {
            "id": 2,
            "name": "ad?min",
            "enabled": True,
            "privilege": "administrator",
            "access": ["messaging", "link authentication"],
        },
    ]


def test_a_list_that_breaks_off_keeps_what_was_read(ruk_ipmi, made_up_blade):
    two_users(made_up_blade)
    whole = made_up_blade.answers[0x0644]
    made_up_blade.answer(0x0644)(lambda payload: whole(payload) if payload[1] == 1 else 0xD5)
    ended = ruk_ipmi("-b", "1", "user", "list")
    assert ended.returncode == 1
    assert ended.stdout.count(b"\n") == 2


@pytest.mark.parametrize(
    "arguments, message",
    [
        (["enable", "0"], "ID: 0 is not from 1 to 63"),
        (["enable", "64"], "ID: 64 is not from 1 to 63"),
        (["set-name", "1", "x" * 17], "NAME: is longer than 16 bytes"),
        (["set-access", "1", "--privilege", "root"], '"root" is none of callback, user'),
        (["set-access", "1"], "--privilege is required"),
        (["set-password", "1", "secret"], "secret"),
    ],
)
def test_a_mistake_is_told_before_anything_is_sent(ruk_ipmi, made_up_blade, arguments, message):
    ended = ruk_ipmi("-b", "1", "user", *arguments)
    assert ended.returncode == 2
    assert message in ended.stderr
    assert made_up_blade.requests == []

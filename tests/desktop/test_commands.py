"""Commands from other programs: over the session bus and from later starts."""

from desk import APPLIED, NAME, wait_until

IGNORED = "Ignored invalid automation URL"
LOST = "Automation commands from other programs unavailable: the session bus went away"
BACK = "Automation commands from other programs available again"


def commands_in(messages):
    """Without what comes at a time of its own."""
    return [message for message in messages if message == IGNORED or message.startswith("Automation ")]


def test_of_a_flood_without_waiting_the_last_command_wins(desk):
    program = desk.start()
    sent = 0
    for last, is_as_expected in ("on", desk.is_dimmed), ("off", desk.is_untouched), ("on", desk.is_dimmed):
        for word in ["toggle"] * 50 + ["off"] * 50 + ["on"] * 50 + [last]:
            desk.open(f"noctra://{word}", wait=False)
            sent += 1
        assert program.says(APPLIED, sent)
        assert is_as_expected()
    assert desk.ends_cleanly(program)


def test_bad_urls_of_every_shape_are_logged_and_change_nothing(desk):
    bad = ["", "noctra://dim", "http://on", " ", "noctra://\u00f6n", "noctra://" + "a" * (1 << 20)]
    program = desk.start_dimmed()
    before = len(commands_in(program.messages()))
    desk.open(*bad)
    for url in bad:
        desk.open(url)
    later = desk.launch(b"noctra://\xffon", b"noctra://off\xc3", b"noctra://\xed\xa0\x80")
    assert later.ends() == 1 and len(later.errors) == 1
    desk.command(program, "noctra://on")
    assert commands_in(program.messages())[before:] == [IGNORED] * (2 * len(bad) + 3) + [
        "Automation URL received: noctra://on", "Automation command applied: on"]
    assert desk.is_dimmed()


def test_several_urls_of_a_later_start_are_applied_in_their_order(desk):
    program = desk.start()
    later = desk.launch("noctra://ON", "NOCTRA://off/x?y#z", "noctra:nonsense", "noctra:///toggle")
    assert later.ends() == 1 and later.errors == ["noctra: no such command: noctra:nonsense"]
    assert commands_in(program.messages()) == [
        "Automation URL received: noctra://ON", "Automation command applied: on",
        "Automation URL received: NOCTRA://off/x?y#z", "Automation command applied: off", IGNORED,
        "Automation URL received: noctra:///toggle", "Automation command applied: toggle"]
    assert desk.is_dimmed()


def test_a_second_start_without_a_url_shows_the_first_and_ends(desk):
    program = desk.start()
    assert desk.launch().ends() == 0
    assert program.says("Automation command applied: show")
    desk.open(method="Activate")
    assert program.says("Automation command applied: show", 2)
    assert desk.is_untouched()


def test_without_a_bus_a_second_start_on_the_same_display_is_refused(desk):
    desk.bus.kill()
    first = desk.launch("noctra://on")
    assert first.says("Automation command applied: on")
    for arguments in [], ["noctra://off"]:
        second = desk.launch(*arguments)
        assert second.ends() == 1 and second.errors
        assert desk.is_dimmed()
    assert desk.ends_cleanly(first)


def test_commands_come_back_with_the_bus_once_the_name_is_free(desk):
    program = desk.start_dimmed()

    def takes_the_name():
        """False where the program has been faster."""
        desk.bus.start()
        client = desk.bus.client()
        return client.request_name(NAME) == 1 and client

    other = wait_until(takes_the_name)
    assert program.says("another program has the name " + NAME)
    lost, back = program.count(LOST), program.count(BACK)
    assert desk.is_dimmed()
    other.close()
    assert program.says(BACK, back + 1)
    assert desk.launch("noctra://off").ends() == 0
    assert desk.is_untouched()
    assert program.count(LOST) == lost
    assert desk.ends_cleanly(program)

"""What the program does after the machine has slept, as logind tells it."""

from machine import Logind

REFRESH = "Refreshing displays (wake from sleep)"


def test_a_wake_puts_the_filter_on_again_where_the_driver_has_taken_it_off(desk):
    logind = Logind(desk)
    program = desk.start_dimmed()
    desk.server.write(desk.before)
    logind.sleep_and_wake()
    assert program.says(REFRESH)
    assert program.says("Display settle pass reapply")
    assert desk.is_dimmed()
    assert program.count("System woke from sleep") == 1

    desk.command(program, "noctra://off")
    logind.sleep_and_wake()
    assert program.says("System woke from sleep", 2)
    desk.command(program, "noctra://off")
    assert program.count(REFRESH) == 1
    assert desk.ends_cleanly(program)

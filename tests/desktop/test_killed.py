"""A program that is killed cannot put the displays back; the next one does."""

import random

from desk import APPLIED


def kill_dimmed(desk, **options):
    desk.start_dimmed(**options).kill()
    assert desk.is_dimmed()  # a killed program leaves its tint behind


def test_a_killed_program_is_cleared_up_after_by_the_next_start(desk):
    kill_dimmed(desk)
    program = desk.start()
    assert desk.is_untouched()
    assert desk.ends_cleanly(program)


def test_killed_while_it_starts_leaves_no_tint(desk):
    kill_dimmed(desk)
    for moment in "initialized", "init starting", "Captured gamma", "Init complete":
        program = desk.launch("noctra://on")
        assert program.says(moment)
        program.kill()
    assert desk.ends_cleanly(desk.start())


def test_killed_at_any_moment_of_many_changes_leaves_no_tint(desk):
    moments = random.Random(20231)  # the same moments in every run, as far as a clock allows
    for _ in range(12):
        program = desk.start()
        for _ in range(200):
            desk.open("noctra://toggle", wait=False)
        assert program.says(APPLIED, moments.randint(1, 100))
        program.kill()
        program = desk.start()
        assert desk.is_untouched()
        assert desk.ends_cleanly(program)


def test_without_a_runtime_folder_the_next_start_clears_up_too_and_says_so(desk):
    desk.environment["XDG_RUNTIME_DIR"] = "/nonexistent/run"
    kill_dimmed(desk)
    program = desk.start_dimmed()
    assert program.says("/nonexistent/run")
    assert desk.ends_cleanly(program)

"""The direction of dependencies between the folders, as drawn in docs/architecture.md, and the folders in
which only the standard library may be used; read off the sources' own #include lines."""

import pathlib
import re

ROOT = pathlib.Path(__file__).parents[2]
TOPS = ["app", "engine", "foundation", "panel", "platform", "pwmsafe"]
STANDARD_ONLY = {*TOPS, "platform/simulated"}
SOURCES = [path.relative_to(ROOT) for top in TOPS for path in (ROOT / top).rglob("*") if path.is_file()]


def drawn_arrows():
    """Of the first Mermaid flowchart: `id["folder"]` names a node, `a -- why --> b` is an arrow. Dotted
    arrows stand for libraries opened at run time, which nobody includes."""
    picture = (ROOT / "docs/architecture.md").read_text().split("```mermaid\nflowchart TD\n")[1].split("```")[0]
    names = dict(re.findall(r'^ *(\w+)\["([^"]+)"\]$', picture, re.M))
    arrows = re.findall(r"^ *(\w+) --(?: [^-]* --)?> (\w+)$", picture, re.M)
    others = re.findall(r'^(?: *\w+\[\["[^"]+"\]\]| *\w+ -\. [^-]* \.-> \w+|)$', picture, re.M)
    assert len(names) + len(arrows) + len(others) == len(picture.split("\n")), "what else is in the picture?"
    return {(names.get(a, a), names.get(b, b)) for a, b in arrows}


ARROWS = drawn_arrows()
FOLDERS = {folder for arrow in ARROWS for folder in arrow}


def below(folder):
    """Whatever the arrows lead to from there, directly or over others."""
    found, left = set(), [folder]
    while left:
        start = left.pop()
        new = {b for a, b in ARROWS if a == start} - found
        found |= new
        left += new
    return found


def folder_of(file):
    """The innermost folder of the picture."""
    if str(file) == "app/main.cpp":
        return "app/linux"  # it puts the program together, like its neighbours there
    return next((str(folder) for folder in pathlib.Path(file).parents if str(folder) in FOLDERS), str(file))


def includes(opening):
    for source in SOURCES:
        if source.suffix in (".h", ".cpp"):
            for name in re.findall(rf'^\s*#\s*include\s*{opening}([^">]+)', (ROOT / source).read_text(), re.M):
                yield source, name


def test_includes_go_along_the_arrows_of_the_picture():
    taken = set()
    for source, name in includes('"'):
        a, b = folder_of(source), folder_of(name)
        taken.add((a, b))
        assert a == b or b in below(a), f'{source} includes "{name}": no arrow leads from {a} to {b}'
    assert ARROWS <= taken, "an arrow along which nothing goes"
    assert not [folder for folder in FOLDERS if folder in below(folder)], "arrows lead back"
    assert set(TOPS) <= FOLDERS


def test_logic_uses_the_standard_library_alone():
    for source, name in includes("<"):
        if folder_of(source) in STANDARD_ONLY:
            assert re.fullmatch("[a-z_]+", name), f"{source} includes <{name}>"


def test_no_source_file_has_grown_too_long():
    assert not [source for source in SOURCES if source.suffix in (".h", ".cpp", ".qml")
                and (ROOT / source).read_text().count("\n") > 400]

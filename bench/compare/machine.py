"""The machine, and the versions of what is compared on it."""

import os
import pathlib
import platform
import subprocess

PACKAGES = ("redshift", "redshift-gtk", "gammastep", "xsct", "xserver-xorg-core", "xserver-xorg-video-dummy",
            "libqt6core6")


def output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout.strip()


def machine():
    lines = pathlib.Path("/proc/cpuinfo").read_text().splitlines()
    processor = next(line.split(":")[1].strip() for line in lines if line.startswith("model name"))
    distribution = platform.freedesktop_os_release()["PRETTY_NAME"]
    point = pathlib.Path("/etc/debian_version").read_text().strip()
    return f"{processor}, {os.cpu_count()} cores, Linux {platform.release()}, {distribution} ({point})"


def commit():
    """Which one is measured; empty where the sources are under no version control."""
    try:
        name = output("git", "rev-parse", "--short=10", "HEAD")
        # What this benchmark itself writes does not make another program.
        changed = output("git", "status", "--porcelain", "--untracked-files=no", "--", ".", ":!docs")
    except (subprocess.CalledProcessError, FileNotFoundError):
        return ""
    return f" ({name}{', with changes' if changed else ''})"


def versions(noctra):
    """Debian's versions, and Noctra's with its commit."""
    own = output(noctra, "--version") + commit()
    lines = output("dpkg-query", "-W", "-f", "${Package} ${Version}\n", *PACKAGES).splitlines()
    return [own, *lines]

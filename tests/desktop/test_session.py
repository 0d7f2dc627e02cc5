"""What a desktop's session keeps of the program, and what it starts."""

import glob
import os
import signal

from desk import BUILD, NAME, RUNNING, wait_until

XFCE_SESSION = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-session" version="1.0">
  <property name="startup" type="empty">
    <property name="ssh-agent" type="empty"><property name="enabled" type="bool" value="false"/></property>
    <property name="gpg-agent" type="empty"><property name="enabled" type="bool" value="false"/></property>
  </property>
  <property name="general" type="empty">
    <property name="FailsafeSessionName" type="string" value="Failsafe"/>
  </property>
  <property name="sessions" type="empty"><property name="Failsafe" type="empty">
    <property name="IsFailsafe" type="bool" value="true"/>
    <property name="Count" type="int" value="1"/>
    <property name="Client0_PerScreen" type="bool" value="false"/>
    <property name="Client0_Command" type="array"><value type="string" value="{program}"/></property>
  </property></property>
</channel>
"""


def test_a_saved_session_of_xfce_does_not_start_the_program_a_second_time(desk):
    settings = desk.folder / "config/xfce4/xfconf/xfce-perchannel-xml"
    settings.mkdir(parents=True)
    (settings / "xfce4-session.xml").write_text(XFCE_SESSION.format(program=desk.binary))
    desk.run(glob.glob("/usr/lib/*/xfce4/xfconf/xfconfd")[0])
    assert wait_until(lambda: desk.bus.has("org.xfce.Xfconf"))
    # Without the machine's own autostart entries, which would arrange the displays.
    session = desk.run("xfce4-session", environment={"XDG_CONFIG_DIRS": str(desk.folder)})
    assert session.says(RUNNING)

    def call(path, interface, method, signature, *arguments):
        return desk.bus.client().call_blocking("org.xfce.SessionManager", path, "org.xfce.Session." + interface,
                                               method, signature, arguments)

    def call_manager(method, signature, *arguments):
        return call("/org/xfce/SessionManager", "Manager", method, signature, *arguments)

    def is_the_program(client):
        properties = call(client, "Client", "GetSmProperties", "as", ["Program"])
        return "noctra" in str(properties.get("Program"))
    assert wait_until(lambda: any(map(is_the_program, call_manager("ListClients", ""))))
    desk.command(session, "noctra://on")
    assert desk.is_dimmed()
    call_manager("Checkpoint", "s", "")
    saved = wait_until(lambda: [text for file in (desk.folder / "cache/sessions").glob("xfce4-session-*")
                                if "Count=" in (text := file.read_text())])
    assert saved and "noctra" not in saved[0]
    call_manager("Logout", "bb", False, False)
    assert desk.becomes_untouched()


def test_a_link_opened_under_xfce_starts_the_program_and_is_obeyed(desk):
    prefix = desk.folder / "installed"
    assert desk.run("cmake", "--install", BUILD, "--prefix", prefix).ends() == 0
    assert desk.run("update-desktop-database", prefix / "share/applications").ends() == 0
    desk.environment.update(PATH=f"{prefix}/bin:/usr/bin:/bin", XDG_DATA_DIRS=f"{prefix}/share:/usr/share",
                            XDG_CURRENT_DESKTOP="XFCE")
    desk.bus.start(f"<servicedir>{prefix}/share/dbus-1/services</servicedir>")
    def ask_bus(method, signature, argument):
        bus = "org.freedesktop.DBus"
        return desk.bus.client().call_blocking(bus, "/org/freedesktop/DBus", bus, method, signature, [argument])
    ask_bus("UpdateActivationEnvironment", "a{ss}", desk.environment)
    opening = desk.run("xdg-open", "noctra://on")
    try:
        assert desk.becomes_dimmed()
    finally:
        if desk.bus.has(NAME):  # it may be no child of the test's
            os.kill(ask_bus("GetConnectionUnixProcessID", "s", NAME), signal.SIGTERM)
    assert desk.becomes_untouched()
    assert opening.ends() == 0

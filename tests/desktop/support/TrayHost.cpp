#include "tests/desktop/support/TrayHost.h"

#include <array>
#include <filesystem>
#include <ostream>
#include <sstream>

namespace noctra::desktop {

namespace {

constexpr int barHeight = 28;

// At the top, as wide as the display: room, then the tray.
constexpr const char* xfcePanel = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array"><value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="true"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="28"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/><value type="int" value="2"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-2" type="string" value="systray"/>
  </property>
</channel>
)";

/// The settings daemon lies in a folder that depends on the machine.
std::string settingsDaemon() {
    for (const auto& entry : std::filesystem::directory_iterator("/usr/lib")) {
        const std::filesystem::path daemon = entry.path() / "xfce4/xfconf/xfconfd";
        if (std::filesystem::exists(daemon))
            return daemon;
    }
    throw std::runtime_error("xfconfd is not installed");
}

} // namespace

std::ostream& operator<<(std::ostream& stream, TrayKind kind) {
    return stream << (kind == TrayKind::embedded ? "embedded" : "notifierItems");
}

TrayHost::TrayHost(const TestDesktop& desktop, TrayKind kind, std::uint32_t bar)
    : desktop_(desktop), kind_(kind), barColor_(bar) {
    if (kind_ == TrayKind::embedded)
        return;
    const std::filesystem::path settings =
        desktop_.preferencesFile().parent_path().parent_path() / "xfce4/xfconf/xfce-perchannel-xml";
    std::filesystem::create_directories(settings);
    writeFile(settings / "xfce4-panel.xml", xfcePanel);
    windowManager_ = desktop_.startOther({"/usr/bin/openbox"});
}

void TrayHost::start() {
    if (kind_ == TrayKind::notifierItems) {
        settings_.reset(); // it ends with its bus, sooner or later
        settings_ = desktop_.startOther({settingsDaemon()});
        bar_ = desktop_.startOther({"/usr/bin/xfce4-panel", "--disable-wm-check"});
        return;
    }
    std::ostringstream tint;
    tint << "0x" << std::hex << barColor_;
    bar_ = desktop_.startOther({"/usr/bin/trayer", "--edge", "top", "--align", "right",
                                "--widthtype", "request", "--height", "26", "--transparent", "true",
                                "--alpha", "0", "--tint", tint.str()});
}

void TrayHost::kill() {
    bar_->killAtOnce();
}

Box TrayHost::placeOfItems(const Box& display) {
    return {display.x + display.width - barHeight, display.y, barHeight, barHeight};
}

} // namespace noctra::desktop

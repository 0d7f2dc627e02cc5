#include "app/MenuBarIconSelfTest.h"

#include <utility>

#include "app/DateDescription.h"

namespace noctra {

MenuBarIconSelfTest::MenuBarIconSelfTest(Parts parts) : parts_(std::move(parts)) {}

void MenuBarIconSelfTest::run() {
    parts_.files.create(reportPath, "Noctra2 menu bar icon test\n");
    testLog("NOCTRA_MENUBAR_ICON_TEST=1 enabled (will swap icons and quit)");
    parts_.mainQueue.asyncAfter(Seconds(0.2),
                                [this] { showIcon(false, "Menu bar icon -> OFF", "off"); });
    parts_.mainQueue.asyncAfter(Seconds(0.8),
                                [this] { showIcon(true, "Menu bar icon -> ACTIVE", "active"); });
    parts_.mainQueue.asyncAfter(Seconds(1.4), [this] {
        testLog("Menu bar icon test complete -> terminating");
        parts_.terminate();
    });
}

void MenuBarIconSelfTest::showIcon(bool enabled, const std::string& message,
                                   const std::string& name) {
    parts_.updateMenuBarIcon(enabled);
    testLog(message);
    dumpStatusIcon(name);
}

void MenuBarIconSelfTest::testLog(const std::string& message) {
    // A report that cannot be written is no reason to stop: the log has the message as well.
    parts_.files.append(reportPath, describeDate(parts_.wallClock.now()) + ": " + message + "\n");
    parts_.log.log(message);
}

void MenuBarIconSelfTest::dumpStatusIcon(const std::string& name) {
    const std::string step = "dumpStatusIcon(" + name + ") ";
    const std::optional<std::string> png = parts_.statusIconPng();
    if (!png) {
        testLog(step + "failed (no image)");
        return;
    }
    const std::string path = "/tmp/noctra_menubar_" + name + ".png";
    const std::string error = parts_.files.create(path, *png);
    testLog(step + (error.empty() ? "-> " + path : "write failed: " + error));
}

} // namespace noctra

#include "tests/desktop/support/AccessibilityBus.h"

#include <stdexcept>

#include "tests/desktop/support/BusClient.h"

namespace noctra::desktop {

AccessibilityBus::AccessibilityBus(const std::string& sessionBusAddress) {
    ChildProcess::Start start;
    start.arguments = {"/usr/libexec/at-spi-bus-launcher", "--launch-immediately"};
    // Without a display: the address must not be left behind on an X server that other tests use.
    start.environment = {"PATH=/usr/bin:/bin", "GSETTINGS_BACKEND=memory",
                         "HOME=" + folder_.path().string(),
                         "XDG_RUNTIME_DIR=" + folder_.path().string(),
                         "DBUS_SESSION_BUS_ADDRESS=" + sessionBusAddress};
    launcher_ = std::make_unique<ChildProcess>(start);
    const BusClient session(sessionBusAddress);
    if (!pollUntil(patience, [&] { return session.hasService("org.a11y.Bus"); }))
        throw std::runtime_error("the accessibility bus did not come up");
    address_ = session.call("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")
                   .value(0)
                   .toString()
                   .toStdString();
}

} // namespace noctra::desktop

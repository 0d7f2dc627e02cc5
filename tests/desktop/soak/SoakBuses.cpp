// Message buses and tray hosts that go and come again.

#include <QtDBus/QDBusVariant>

#include "tests/desktop/soak/Soak.h"
#include "tests/desktop/support/BusClient.h"

namespace noctra::desktop {

namespace {

constexpr const char* watcher = "org.kde.StatusNotifierWatcher";

} // namespace

void Soak::bringUpLogind() {
    systemBus_->start();
    logind_ = std::make_unique<MockLogind>(*systemBus_);
    if (chance.once(2))
        logind_->refuseBrightness(true);
    else
        logind_->obeyBrightness(backlight_->brightnessFile());
}

void Soak::restartSystemBus() {
    logind_.reset();
    systemBus_->kill();
    bringUpLogind();
}

void Soak::restartSessionBus() {
    awaitOtherStarts();
    awaitTrayItem(); // a bus that goes while Qt makes the item is a known limit
    commands_.reset();
    desktop().bus().restart();
    commands_ = std::make_unique<CommandChannel>(desktop().busAddress());
    model_.anyFilter(); // what was on its way over the old bus
    model_.urlsMayBeLost = true;
    if (trayKind_ == TrayKind::notifierItems)
        restartTray();
}

void Soak::restartTray() {
    if (trayKind_ == TrayKind::notifierItems && !config_->isUsable())
        return note("(no disk for its settings)");
    awaitTrayItem(); // an item that is being made when its host goes stays lost
    tray_.reset();
    tray_ = std::make_unique<TrayHost>(desktop(), trayKind_);
    tray_->start();
    if (trayKind_ == TrayKind::notifierItems) {
        const BusClient bus(desktop().busAddress());
        EXPECT_TRUE(pollUntil(patience, [&] { return bus.hasService(watcher); })) << "no tray";
    }
}

/// Whether the tray has the program's item. Only hosts of StatusNotifierItems say what they show,
/// and only to a program that found them first.
bool Soak::awaitTrayItem() {
    const BusClient bus(desktop().busAddress());
    if (!bus.hasService(watcher))
        return true;
    const auto items = [&] {
        return bus
            .call(watcher, "/StatusNotifierWatcher", "org.freedesktop.DBus.Properties", "Get",
                  {watcher, "RegisteredStatusNotifierItems"})
            .value(0)
            .value<QDBusVariant>()
            .variant()
            .toStringList();
    };
    const bool there = pollUntil(patience, [&] {
        return !program_->isRunning() || program_->countLines("Tray: system tray") > 0 ||
               items().size() == 1;
    });
    if (!there)
        note("(the tray has: " + items().join(' ').toStdString() + ")");
    return there;
}

} // namespace noctra::desktop

#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "tests/desktop/support/InputDevices.h"
#include "tests/desktop/support/TestDesktop.h"

namespace noctra::desktop {

enum class TrayKind {
    notifierItems, ///< xfce4-panel, which shows StatusNotifierItems, with openbox
    embedded,      ///< trayer, which takes in windows, without a window manager
};
std::ostream& operator<<(std::ostream& stream, TrayKind kind);

/// A bar with a tray at the top of the first display, its right end at the display's; 28 pixels
/// high or less. Not there before it is started.
class TrayHost {
public:
    /// What the icon of a filter that is on is drawn in, and how much of it there is at least.
    static constexpr std::uint32_t activeRed = 0xFF453B;
    static constexpr int enoughPixels = 20;

    /// `bar`: its colour as 0xRRGGBB, for `embedded` only; the other's is dark.
    TrayHost(const TestDesktop& desktop, TrayKind kind, std::uint32_t bar = 0x202020);

    /// Also after it was killed, and on a session bus that was started again.
    void start();
    /// Kills it, as a crash does.
    void kill();
    /// The part of the screen in which the item's picture is.
    [[nodiscard]] static Box placeOfItems(const Box& display);

private:
    const TestDesktop& desktop_;
    TrayKind kind_;
    std::uint32_t barColor_;
    std::unique_ptr<Program> windowManager_;
    std::unique_ptr<Program> settings_;
    std::unique_ptr<Program> bar_;
};

} // namespace noctra::desktop

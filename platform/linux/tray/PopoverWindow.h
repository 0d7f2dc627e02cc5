#pragma once

#include <cstdint>

#include "platform/linux/tray/PixelRect.h"

namespace noctra {

// What window managers are told and asked about the popover's window (EWMH 1.5), which is an X
// window of Qt's connection. Nothing happens where there is no X server. Main thread; needs a
// QGuiApplication.

/// Before the window is shown: it is on all workspaces, and in no list of windows.
void announcePopover(std::uintptr_t window);

/// Right after it has been shown: puts its top left corner at `corner`, on whatever workspace the
/// person is, above all else and with the keyboard's focus.
///
/// Said once more, since window managers differ in what they heed of a window that is new to them:
/// some overlook that it is on all workspaces, and some choose its place themselves. The wish for
/// the focus comes as a pager's, as which it also ends the showing of the desktop.
void bringPopover(std::uintptr_t window, PixelPoint corner);

/// Moves the top left corner of the window to `corner`.
void movePopover(std::uintptr_t window, PixelPoint corner);

/// Whether the window is before the person's eyes, as far as the window manager has a say in it:
/// neither unmapped, as some do while they show the desktop, nor iconified, nor left behind on
/// another workspace. Takes some round trips.
[[nodiscard]] bool isBeforeTheEyes(std::uintptr_t window);

} // namespace noctra

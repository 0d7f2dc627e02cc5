#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "panel/PanelServices.h"
#include "panel/PanelWindow.h"
#include "platform/linux/FolderResources.h"
#include "platform/linux/XSettings.h"
#include "platform/qt/QtClipboard.h"
#include "platform/qt/QtCursorStack.h"
#include "platform/qt/QtFonts.h"
#include "platform/qt/QtNumberFormat.h"

namespace noctra {

/// The panel on a Linux desktop: what it needs of the desktop, and the library that draws it, which
/// is loaded when the panel is first shown. Main thread; needs a QGuiApplication.
class LinuxPanel {
public:
    /// All arguments outlive the object.
    LinuxPanel(Log& log, MainQueue& mainQueue, const SteadyClock& steadyClock,
               Application& application);

    [[nodiscard]] const Resources& resources() const { return resources_; }
    [[nodiscard]] Fonts& fonts() { return fonts_; }

    /// Shows the panel at `place`, or moves it there. Where it cannot be drawn that is logged, and
    /// nothing else happens.
    void show(const PanelPlace& place);
    void close();
    [[nodiscard]] bool isShown() const { return window_ && window_->isShown(); }
    /// The X window while it is shown; else 0.
    [[nodiscard]] std::uintptr_t window() const { return window_ ? window_->window() : 0; }
    /// Runs `asked` where the user asks from inside for it to be closed.
    void onCloseAsked(std::function<void()> asked) { closeAsked_ = std::move(asked); }

private:
    [[nodiscard]] MakePanelWindow* load();
    void open();

    Log& log_;
    MainQueue& mainQueue_;
    const SteadyClock& steadyClock_;
    Application& application_;
    const FolderResources resources_;
    QtFonts fonts_;
    QtClipboard clipboard_;
    QtCursorStack cursor_;
    const QtNumberFormat numbers_;
    const XSettings settings_;
    std::unique_ptr<PanelServices> services_;
    std::unique_ptr<PanelWindow> window_; ///< from the first showing on
    std::function<void()> closeAsked_;
};

} // namespace noctra

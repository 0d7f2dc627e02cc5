#pragma once

#include <QtCore/QPointer>

#include "platform/linux/tray/TrayItem.h"

namespace noctra {

/// The desktop's tray. Main thread; needs a QApplication.
class TrayBar : public StatusBar {
public:
    explicit TrayBar(const TrayServices& services) : services_(services) {}

    /// One at a time.
    [[nodiscard]] std::unique_ptr<StatusItem> makeItem() override;
    [[nodiscard]] std::optional<double> mainVisibleScreenHeight() const override;

    /// The item made last; null before the first and once it has gone.
    [[nodiscard]] TrayItem* item() const { return item_; }

private:
    const TrayServices services_;
    QPointer<TrayItem> item_;
};

} // namespace noctra

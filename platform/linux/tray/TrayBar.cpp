#include "platform/linux/tray/TrayBar.h"

namespace noctra {

std::unique_ptr<StatusItem> TrayBar::makeItem() {
    auto item = std::make_unique<TrayItem>(services_);
    item_ = item.get();
    return item;
}

std::optional<double> TrayBar::mainVisibleScreenHeight() const {
    return TraySurroundings({}).visibleHeight();
}

} // namespace noctra

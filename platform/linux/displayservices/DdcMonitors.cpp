#include "platform/linux/displayservices/DdcMonitors.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include <ddcutil_status_codes.h>
#include <dirent.h>

namespace noctra::display_services {

namespace {

constexpr DDCA_Vcp_Feature_Code luminance = 0x10;

/// A monitor that is open as long as the object lives.
class OpenMonitor {
public:
    OpenMonitor(const LibDdcutil& library, DDCA_Display_Ref monitor) : library_(library) {
        if (library_.openDisplay(monitor, false, &handle_) != DDCRC_OK)
            handle_ = nullptr;
    }
    OpenMonitor(const OpenMonitor&) = delete;
    OpenMonitor& operator=(const OpenMonitor&) = delete;
    ~OpenMonitor() {
        if (handle_ != nullptr)
            library_.closeDisplay(handle_);
    }
    [[nodiscard]] DDCA_Display_Handle handle() const { return handle_; }

private:
    const LibDdcutil& library_;
    DDCA_Display_Handle handle_ = nullptr;
};

bool hasI2cBus(const std::string& deviceFolder) {
    struct Close {
        void operator()(DIR* folder) const { ::closedir(folder); }
    };
    const std::unique_ptr<DIR, Close> folder(::opendir(deviceFolder.c_str()));
    if (!folder)
        return false;
    while (const dirent* const entry = ::readdir(folder.get()))
        if (std::string_view(entry->d_name).starts_with("i2c-"))
            return true;
    return false;
}

std::uint16_t joined(std::uint8_t high, std::uint8_t low) {
    return static_cast<std::uint16_t>(high << 8U | low);
}

} // namespace

std::vector<Edid> DdcMonitors::detect() {
    if (detected_ && library_.redetectDisplays != nullptr)
        library_.redetectDisplays();
    detected_ = true;
    monitors_.clear();
    DDCA_Display_Info_List* list = nullptr;
    if (library_.getDisplayInfoList(false, &list) != DDCRC_OK || list == nullptr)
        return {};
    std::vector<Edid> edids;
    for (int i = 0; i < list->ct; ++i) {
        const DDCA_Display_Info& info = list->info[i];
        monitors_.push_back(info.dref);
        Edid& edid = edids.emplace_back();
        std::copy(std::begin(info.edid_bytes), std::end(info.edid_bytes), edid.begin());
    }
    library_.freeDisplayInfoList(list);
    return edids;
}

std::optional<MonitorValue> DdcMonitors::read(std::size_t monitor) {
    const OpenMonitor open(library_, monitors_.at(monitor));
    DDCA_Non_Table_Vcp_Value value{};
    if (open.handle() == nullptr || library_.getValue(open.handle(), luminance, &value) != DDCRC_OK)
        return std::nullopt;
    return MonitorValue{joined(value.sh, value.sl), joined(value.mh, value.ml)};
}

bool DdcMonitors::write(std::size_t monitor, std::uint16_t raw) {
    const OpenMonitor open(library_, monitors_.at(monitor));
    return open.handle() != nullptr &&
           library_.setValue(open.handle(), luminance, static_cast<std::uint8_t>(raw >> 8U),
                             static_cast<std::uint8_t>(raw & 0xFFU)) == DDCRC_OK;
}

std::unique_ptr<MonitorControl> createMonitorControl(const std::string& deviceFolder) {
    if (!hasI2cBus(deviceFolder))
        return nullptr;
    const auto library = LibDdcutil::load();
    return library ? std::make_unique<DdcMonitors>(*library) : nullptr;
}

} // namespace noctra::display_services

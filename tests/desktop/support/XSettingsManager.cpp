#include "tests/desktop/support/XSettingsManager.h"

#include <bit>
#include <cstring>
#include <vector>

namespace noctra::desktop {

namespace {

template <typename Number>
void append(std::vector<char>& bytes, Number number) {
    const std::size_t size = bytes.size();
    bytes.resize(size + sizeof number);
    std::memcpy(bytes.data() + size, &number, sizeof number);
}

/// The bytes of the XSETTINGS protocol, version 0.5.
std::vector<char> settingsProperty(const std::string& name, std::int32_t value) {
    constexpr std::uint32_t serial = 1;
    std::vector<char> bytes{std::endian::native == std::endian::big ? '\1' : '\0', 0, 0, 0};
    append(bytes, serial);
    append<std::uint32_t>(bytes, 1); // settings
    append<std::uint16_t>(bytes, 0); // an integer
    append(bytes, static_cast<std::uint16_t>(name.size()));
    bytes.insert(bytes.end(), name.begin(), name.end());
    bytes.resize((bytes.size() + 3) / 4 * 4);
    append(bytes, serial);
    append(bytes, value);
    return bytes;
}

} // namespace

XSettingsManager::XSettingsManager(const std::string& display, const std::string& setting,
                                   std::int32_t value)
    : connection_(display) {
    xcb_connection_t* xcb = connection_.get();
    const xcb_window_t window = xcb_generate_id(xcb);
    connection_.check(xcb_create_window_checked(xcb, 0, window, connection_.root(), -1, -1, 1, 1, 0,
                                                XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                                                0, nullptr),
                      "settings window");
    const std::vector<char> bytes = settingsProperty(setting, value);
    const xcb_atom_t settings = connection_.atom("_XSETTINGS_SETTINGS");
    connection_.check(
        xcb_change_property_checked(xcb, XCB_PROP_MODE_REPLACE, window, settings, settings, 8,
                                    static_cast<std::uint32_t>(bytes.size()), bytes.data()),
        "settings");
    connection_.check(xcb_set_selection_owner_checked(
                          xcb, window, connection_.atom("_XSETTINGS_S0"), XCB_CURRENT_TIME),
                      "settings selection");
}

} // namespace noctra::desktop

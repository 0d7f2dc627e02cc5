#pragma once

#include <optional>

#include <ddcutil_c_api.h>

namespace noctra::display_services {

/// The functions of libddcutil that are used, found at run time: the library may be missing.
struct LibDdcutil {
    decltype(&ddca_get_display_info_list2) getDisplayInfoList;
    decltype(&ddca_free_display_info_list) freeDisplayInfoList;
    decltype(&ddca_open_display2) openDisplay;
    decltype(&ddca_close_display) closeDisplay;
    decltype(&ddca_get_non_table_vcp_value) getValue;
    decltype(&ddca_set_non_table_vcp_value) setValue;
    decltype(&ddca_redetect_displays) redetectDisplays; ///< null where it has none

    /// Loads the library, which stays for good, without a word on the standard output, and keeps it
    /// from printing on this thread. Nothing when it is missing or lacks a function.
    static std::optional<LibDdcutil> load();
};

} // namespace noctra::display_services

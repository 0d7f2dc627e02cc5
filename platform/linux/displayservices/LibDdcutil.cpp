#include "platform/linux/displayservices/LibDdcutil.h"

#include <ddcutil_macros.h>
#include <dlfcn.h>

#include "platform/linux/Symbol.h"
#include "platform/linux/displayservices/SilencedOutput.h"

namespace noctra::display_services {

namespace {

/// The library whose header this is compiled against: other versions have other records.
constexpr const char* libraryName = DDCUTIL_VMAJOR >= 2 ? "libddcutil.so.5" : "libddcutil.so.4";

/// Version 2 reads a configuration file and writes to the system log unless it is told otherwise.
void startQuietly(void* library) {
    constexpr int neverLog = 0;
    constexpr int withoutConfigurationFile = 1;
    int (*start)(const char* options, int logLevel, int flags) = nullptr;
    if (findSymbol(library, "ddca_init", start))
        start(nullptr, neverLog, withoutConfigurationFile);
}

/// What the library prints otherwise, and a reading of its own after every write.
void keepQuiet(void* library) {
    decltype(&ddca_set_fout) setOutput = nullptr;
    decltype(&ddca_set_ferr) setErrorOutput = nullptr;
    decltype(&ddca_enable_verify) enableVerify = nullptr;
    if (findSymbol(library, "ddca_set_fout", setOutput))
        setOutput(nullptr);
    if (findSymbol(library, "ddca_set_ferr", setErrorOutput))
        setErrorOutput(nullptr);
    if (findSymbol(library, "ddca_enable_verify", enableVerify))
        enableVerify(false);
}

void* open() {
    const SilencedOutput silence;
    void* const library = ::dlopen(libraryName, RTLD_LAZY | RTLD_LOCAL);
    if (library != nullptr)
        startQuietly(library);
    return library;
}

} // namespace

std::optional<LibDdcutil> LibDdcutil::load() {
    void* const library = open();
    if (library == nullptr)
        return std::nullopt;
    keepQuiet(library);
    LibDdcutil functions{};
    findSymbol(library, "ddca_redetect_displays", functions.redetectDisplays);
    if (findSymbol(library, "ddca_get_display_info_list2", functions.getDisplayInfoList) &&
        findSymbol(library, "ddca_free_display_info_list", functions.freeDisplayInfoList) &&
        findSymbol(library, "ddca_open_display2", functions.openDisplay) &&
        findSymbol(library, "ddca_close_display", functions.closeDisplay) &&
        findSymbol(library, "ddca_get_non_table_vcp_value", functions.getValue) &&
        findSymbol(library, "ddca_set_non_table_vcp_value", functions.setValue))
        return functions;
    return std::nullopt;
}

} // namespace noctra::display_services

// The functions that the library exports: the five that every display-services library has, and
// four for the program that it comes with.

#include <cstdlib>
#include <string_view>

#include "platform/DisplayServices.h"
#include "platform/linux/StateFolder.h"
#include "platform/linux/backlight/BacklightDevices.h"
#include "platform/linux/displayservices/DisplayServicesLibrary.h"
#include "platform/linux/displayservices/HostFunctions.h"

#define NOCTRA_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

using noctra::DisplayId;
using namespace noctra::display_services;

/// External monitors are left alone where the environment says so.
std::string deviceFolder() {
    const char* const off = std::getenv("NOCTRA_NO_DDC");
    return off != nullptr && std::string_view(off) == "1" ? "" : "/dev";
}

/// Never destroyed: its thread works until the process has ended.
DisplayServicesLibrary& library() {
    static auto& theLibrary = *new DisplayServicesLibrary(
        {deviceFolder(), noctra::backlightClassFolder, noctra::stateFile("ambient-light-off"),
         noctra::stateFile(ownLevelsFile)});
    return theLibrary;
}

} // namespace

NOCTRA_EXPORT std::int32_t DisplayServicesGetBrightness(DisplayId display, float* brightness) {
    return library().getBrightness(display, brightness);
}

NOCTRA_EXPORT std::int32_t DisplayServicesSetBrightness(DisplayId display, float brightness) {
    return library().setBrightness(display, brightness, false);
}

NOCTRA_EXPORT std::int32_t DisplayServicesSetBrightnessSmooth(DisplayId display, float brightness) {
    return library().setBrightness(display, brightness, true);
}

NOCTRA_EXPORT bool DisplayServicesCanChangeBrightness(DisplayId display) {
    return library().canChangeBrightness(display);
}

NOCTRA_EXPORT std::int32_t DisplayServicesEnableAmbientLightCompensation(DisplayId display,
                                                                         bool enable) {
    return library().enableAmbientLightCompensation(display, enable);
}

NOCTRA_EXPORT void NoctraDisplayServicesSetDisplays(const noctra::AttachedDisplay* displays,
                                                    std::size_t count) {
    library().setDisplays({displays, count});
}

NOCTRA_EXPORT int NoctraDisplayServicesNewsDescriptor() {
    return library().newsDescriptor();
}

NOCTRA_EXPORT std::uint32_t NoctraDisplayServicesTakeNews() {
    return library().takeNews();
}

NOCTRA_EXPORT int NoctraDisplayServicesFinish(int milliseconds) {
    return library().finish(std::chrono::milliseconds(milliseconds)) ? 1 : 0;
}

// The names and types are those that the program looks up.
static_assert(std::is_same_v<decltype(DisplayServicesGetBrightness), GetBrightness>);
static_assert(std::is_same_v<decltype(DisplayServicesSetBrightness), SetBrightness>);
static_assert(std::is_same_v<decltype(DisplayServicesSetBrightnessSmooth), SetBrightness>);
static_assert(std::is_same_v<decltype(DisplayServicesCanChangeBrightness), CanChangeBrightness>);
static_assert(std::is_same_v<decltype(DisplayServicesEnableAmbientLightCompensation),
                             EnableAmbientLightCompensation>);
static_assert(std::is_same_v<decltype(NoctraDisplayServicesSetDisplays), SetDisplays>);
static_assert(std::is_same_v<decltype(NoctraDisplayServicesNewsDescriptor), NewsDescriptor>);
static_assert(std::is_same_v<decltype(NoctraDisplayServicesTakeNews), TakeNews>);
static_assert(std::is_same_v<decltype(NoctraDisplayServicesFinish), Finish>);

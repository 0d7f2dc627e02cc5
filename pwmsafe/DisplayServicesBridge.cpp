#include "pwmsafe/DisplayServicesBridge.h"

#include "foundation/SharedInstance.h"
#include "platform/LibraryLoader.h"

namespace noctra {

namespace {

constexpr int lazyBinding = 1; // RTLD_LAZY, on every system that has it

} // namespace

const DisplayServicesBridge& DisplayServicesBridge::shared() {
    return SharedInstance<DisplayServicesBridge>::get();
}

void* DisplayServicesBridge::handle() const {
    std::call_once(handle_.flag, [this] {
        handle_.value = loader_.open(loader_.displayServicesPath(), lazyBinding);
    });
    return handle_.value;
}

template <typename Function>
Function* DisplayServicesBridge::find(Once<Function*>& member, const char* symbol) const {
    std::call_once(member.flag, [&] {
        if (void* library = handle())
            member.value = reinterpret_cast<Function*>(loader_.symbol(library, symbol));
    });
    return member.value;
}

display_services::GetBrightness* DisplayServicesBridge::getBrightness() const {
    return find(getBrightness_, display_services::getBrightnessSymbol);
}

display_services::SetBrightness* DisplayServicesBridge::setBrightness() const {
    return find(setBrightness_, display_services::setBrightnessSymbol);
}

display_services::SetBrightness* DisplayServicesBridge::setBrightnessSmooth() const {
    return find(setBrightnessSmooth_, display_services::setBrightnessSmoothSymbol);
}

display_services::CanChangeBrightness* DisplayServicesBridge::canChangeBrightness() const {
    return find(canChangeBrightness_, display_services::canChangeBrightnessSymbol);
}

display_services::EnableAmbientLightCompensation* DisplayServicesBridge::enableALC() const {
    return find(enableALC_, display_services::enableALCSymbol);
}

} // namespace noctra

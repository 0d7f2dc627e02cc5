#include "platform/simulated/SimulatedDisplayServices.h"

#include <string_view>

namespace noctra {

namespace {

constexpr std::int32_t unknownDisplay = -1;

} // namespace

SimulatedDisplayServices* SimulatedDisplayServices::current_ = nullptr;

SimulatedDisplayServices::SimulatedDisplayServices() {
    current_ = this;
}

SimulatedDisplayServices::~SimulatedDisplayServices() {
    current_ = nullptr;
}

void* SimulatedDisplayServices::open(const std::string& path, int flags) {
    opened.push_back(path);
    openFlags.push_back(flags);
    return present ? this : nullptr;
}

void* SimulatedDisplayServices::symbol(void*, const char* name) {
    using namespace display_services;
    lookedUp.emplace_back(name);
    if (missing.contains(name))
        return nullptr;
    const std::string_view wanted = name;
    if (wanted == getBrightnessSymbol)
        return reinterpret_cast<void*>(&getBrightness);
    if (wanted == setBrightnessSymbol)
        return reinterpret_cast<void*>(&setBrightness);
    if (wanted == setBrightnessSmoothSymbol)
        return reinterpret_cast<void*>(&setBrightnessSmooth);
    if (wanted == canChangeBrightnessSymbol)
        return reinterpret_cast<void*>(&canChangeBrightness);
    if (wanted == enableALCSymbol)
        return reinterpret_cast<void*>(&enableALC);
    return nullptr;
}

std::int32_t SimulatedDisplayServices::getBrightness(DisplayId display, float* brightness) {
    const auto found = current_->displays.find(display);
    if (found == current_->displays.end())
        return unknownDisplay;
    *brightness = found->second.brightness; // also when it fails: then it is not to be trusted
    return found->second.readStatus;
}

std::int32_t SimulatedDisplayServices::setBrightness(DisplayId display, float brightness) {
    current_->change({Call::Kind::set, display, brightness});
    return 0;
}

std::int32_t SimulatedDisplayServices::setBrightnessSmooth(DisplayId display, float brightness) {
    current_->change({Call::Kind::setSmooth, display, brightness});
    return 0;
}

bool SimulatedDisplayServices::canChangeBrightness(DisplayId display) {
    const auto found = current_->displays.find(display);
    return found != current_->displays.end() && found->second.controllable;
}

std::int32_t SimulatedDisplayServices::enableALC(DisplayId display, bool enable) {
    current_->change({Call::Kind::ambientLight, display, enable ? 1.0F : 0.0F});
    return 0;
}

void SimulatedDisplayServices::change(Call call) {
    calls.push_back(call);
    Display& display = displays[call.display];
    if (call.kind == Call::Kind::ambientLight)
        display.ambientLight = call.value != 0.0F;
    else if (!display.ignoresWrites)
        display.brightness = call.value;
}

} // namespace noctra

#pragma once

#include <mutex>

#include "platform/DisplayServices.h"

namespace noctra {

class LibraryLoader;

/// Optional access to the functions of the desktop's display-services library.
///
/// The library is opened when a function is first asked for, and each function is looked up once,
/// when it is first asked for; what is absent then stays absent. Nothing is ever logged or closed.
/// The members may be read on any thread; see display_services for where the functions may be
/// called.
class DisplayServicesBridge {
public:
    /// The program's one bridge.
    static const DisplayServicesBridge& shared();

    /// `loader` must outlive the bridge.
    explicit DisplayServicesBridge(LibraryLoader& loader) : loader_(loader) {}
    DisplayServicesBridge(const DisplayServicesBridge&) = delete;
    DisplayServicesBridge& operator=(const DisplayServicesBridge&) = delete;

    // Each is null when the library or the function is absent.
    [[nodiscard]] display_services::GetBrightness* getBrightness() const;
    [[nodiscard]] display_services::SetBrightness* setBrightness() const;
    [[nodiscard]] display_services::SetBrightness* setBrightnessSmooth() const;
    [[nodiscard]] display_services::CanChangeBrightness* canChangeBrightness() const;
    [[nodiscard]] display_services::EnableAmbientLightCompensation* enableALC() const;

private:
    template <typename Pointer>
    struct Once {
        std::once_flag flag;
        Pointer value = nullptr;
    };

    [[nodiscard]] void* handle() const;
    template <typename Function>
    Function* find(Once<Function*>& member, const char* symbol) const;

    LibraryLoader& loader_;
    mutable Once<void*> handle_;
    mutable Once<display_services::GetBrightness*> getBrightness_;
    mutable Once<display_services::SetBrightness*> setBrightness_;
    mutable Once<display_services::SetBrightness*> setBrightnessSmooth_;
    mutable Once<display_services::CanChangeBrightness*> canChangeBrightness_;
    mutable Once<display_services::EnableAmbientLightCompensation*> enableALC_;
};

} // namespace noctra

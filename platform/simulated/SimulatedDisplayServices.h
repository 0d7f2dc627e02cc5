#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/DisplayServices.h"
#include "platform/LibraryLoader.h"

namespace noctra {

/// A display-services library in memory, and the loader that finds it. Its functions are plain
/// ones, so that they serve the object that was made last; one such object at a time.
class SimulatedDisplayServices : public LibraryLoader {
public:
    struct Display {
        float brightness = 1.0F;
        bool controllable = true;
        std::int32_t readStatus = 0;
        bool ignoresWrites = false;
        bool ambientLight = true; ///< compensation is on
    };
    /// One call of a function that changes something; what they answer is 0 all the same.
    struct Call {
        enum class Kind { set, setSmooth, ambientLight };
        Kind kind;
        DisplayId display;
        float value; ///< a brightness, or 1 and 0 for on and off

        friend bool operator==(const Call&, const Call&) = default;
    };

    SimulatedDisplayServices();
    SimulatedDisplayServices(const SimulatedDisplayServices&) = delete;
    SimulatedDisplayServices& operator=(const SimulatedDisplayServices&) = delete;
    ~SimulatedDisplayServices() override;

    std::map<DisplayId, Display> displays;
    bool present = true;           ///< the library's file is there
    std::set<std::string> missing; ///< symbols that it lacks
    std::vector<Call> calls;

    std::vector<std::string> opened;   ///< paths, one per call of open
    std::vector<int> openFlags;        ///< of each of them
    std::vector<std::string> lookedUp; ///< symbols, one per call of symbol

    [[nodiscard]] std::string displayServicesPath() const override { return "/simulated/library"; }
    void* open(const std::string& path, int flags) override;
    void* symbol(void* library, const char* name) override;

private:
    static std::int32_t getBrightness(DisplayId display, float* brightness);
    static std::int32_t setBrightness(DisplayId display, float brightness);
    static std::int32_t setBrightnessSmooth(DisplayId display, float brightness);
    static bool canChangeBrightness(DisplayId display);
    static std::int32_t enableALC(DisplayId display, bool enable);
    void change(Call call);

    static SimulatedDisplayServices* current_;
};

} // namespace noctra

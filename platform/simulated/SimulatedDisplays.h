#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "platform/Displays.h"

namespace noctra {

/// Displays in memory, with knobs for the trouble that real ones make, and a record of what was
/// asked of them. Starts without a screen.
class SimulatedDisplays : public Displays {
public:
    struct Call {
        enum class Kind { read, write, settle, restoreCalibrated };
        Kind kind;
        DisplayId display = 0; ///< 0 for settle and restoreCalibrated

        friend bool operator==(const Call&, const Call&) = default;
    };

    /// Attaches a display whose calibrated tables, which it also carries, are `calibrated`.
    /// Attaching a display again gives a second screen with the same identifier.
    void attach(DisplayId display, const GammaTables& calibrated = linearTables());
    /// Takes all of the display's screens away; it keeps its tables, as hardware does.
    void detach(DisplayId display);

    /// The tables that the display carries now.
    [[nodiscard]] const GammaTables& tablesOf(DisplayId display) const;
    /// Puts tables on the display behind the program's back.
    void overwrite(DisplayId display, const GammaTables& tables);
    void setCalibrated(DisplayId display, const GammaTables& tables);

    // Knobs; `status` 0 mends the display.
    void failReads(DisplayId display, Status status);
    void failWrites(DisplayId display, Status status);
    void reportSamples(DisplayId display, std::uint32_t count);
    /// Called in each write, before the display takes the tables; for tests that need two threads.
    void setWriteHook(std::function<void()> hook) { writeHook_ = std::move(hook); }

    [[nodiscard]] const std::vector<Call>& calls() const { return calls_; }
    [[nodiscard]] std::size_t count(Call::Kind kind) const;
    void forgetCalls() { calls_.clear(); }
    /// Switches the record of calls off, for runs that may not allocate.
    void setRecording(bool recording) { recording_ = recording; }

    static GammaTables linearTables();

    void attachedScreens(std::vector<DisplayId>& ids) override;
    Status readTables(DisplayId display, GammaTables& tables, std::uint32_t& sampleCount) override;
    void writeTables(DisplayId display, const GammaTables& tables) override;
    void settle(FunctionRef<void(DisplayId, Status)> failed) override;
    void restoreCalibratedTables() override;
    [[nodiscard]] std::size_t screenCount() const override { return screenCount_; }

private:
    struct Display {
        GammaTables calibrated;
        GammaTables current;
        std::optional<GammaTables> written = std::nullopt; ///< last, by the program
        GammaTables beforeWritten = {};                    ///< what it carried then
        Status readStatus = 0;
        Status writeStatus = 0;
        std::uint32_t samples = gammaTableSize;
    };
    struct Failure {
        DisplayId display;
        Status status;
    };

    [[nodiscard]] bool isAttached(DisplayId display) const;
    void record(Call call);

    std::vector<DisplayId> screens_;
    std::atomic<std::size_t> screenCount_ = 0;
    std::map<DisplayId, Display> displays_;
    std::vector<Failure> failures_;
    std::vector<Call> calls_;
    bool recording_ = true;
    std::function<void()> writeHook_;
};

} // namespace noctra

#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/Log.h"
#include "foundation/ThreadSafety.h"
#include "platform/Displays.h"
#include "platform/linux/AttachedDisplays.h"
#include "platform/linux/CapturedDisplays.h"
#include "platform/linux/RandrChanges.h"
#include "platform/linux/RandrScreens.h"
#include "platform/linux/TableRecord.h"
#include "platform/linux/XConnection.h"
#include "platform/linux/calibration/CalibrationLookup.h"

namespace noctra {

/// Displays over RandR: a display is an output, its tables are those of the output's CRTC.
///
/// Holds a connection of its own. Operations may come from several threads; they take turns.
/// Besides the contract of its interface it keeps this promise: tables that the program wrote are
/// taken off a CRTC that no longer drives the display they were written for, before anything else
/// is done with it (X servers keep a CRTC's tables over being switched off and handed to another
/// output).
class RandrDisplays : public Displays {
public:
    /// `record` knows what earlier runs wrote. `log` must outlive the object.
    RandrDisplays(RandrConnection connection, std::unique_ptr<TableRecord> record, Log& log);
    ~RandrDisplays() override;

    /// Readable when the server has something to say; then `processEvents` has to be called.
    [[nodiscard]] int descriptor() const;
    /// What the server had to say.
    struct News {
        bool configurationChanged = false;  ///< since the last call
        std::vector<DisplayChange> changes; ///< what that was, as far as it is to be seen
        std::string serverGone;             ///< why; empty while it is there
    };
    [[nodiscard]] News processEvents();
    /// Calls `arrived` when an operation has come upon news, which the descriptor will not announce
    /// any more; then too `processEvents` has to be called, but not from inside `arrived`. Any
    /// thread calls.
    void onNews(std::function<void()> arrived);

    /// The displays as last seen by this object.
    [[nodiscard]] AttachedDisplays& online() { return online_; }

    /// Puts the tables that each display should carry on it once more where something else has
    /// taken them off. Any thread.
    void reassertTables();

    void attachedScreens(std::vector<DisplayId>& ids) override;
    Status readTables(DisplayId display, GammaTables& tables, std::uint32_t& sampleCount) override;
    void writeTables(DisplayId display, const GammaTables& tables) override;
    void giveBackTables(DisplayId display, const GammaTables& tables) override;
    void settle(FunctionRef<void(DisplayId, Status)> failed) override;
    void restoreCalibratedTables() override;
    [[nodiscard]] std::size_t screenCount() const override { return screenCount_; }

private:
    struct Screen {
        RandrScreen randr;
        std::string calibrationSource; ///< as last logged
        bool adopted = false;          ///< its CRTC carries no filter that the program forgot
    };
    struct Write {
        unsigned int sequence; ///< 0: never sent
        DisplayId display;
        xcb_randr_crtc_t crtc;
        Status status;
    };

    void queueWrite(DisplayId display, const GammaTables& tables) REQUIRES(mutex_);
    void drainEvents(bool readSocket) REQUIRES(mutex_);
    void noteEvent(const xcb_generic_event_t& event) REQUIRES(mutex_);
    void noteChange() REQUIRES(mutex_);
    void refreshScreens() REQUIRES(mutex_);
    void bringUpToDate() REQUIRES(mutex_);
    void freeUnusedCrtcs() REQUIRES(mutex_);
    [[nodiscard]] std::optional<NativeTables> readForTakeover(Screen& screen) REQUIRES(mutex_);
    [[nodiscard]] NativeTables ownTables(const Screen& screen, const NativeTables& current)
        REQUIRES(mutex_);
    void adopt(Screen& screen) REQUIRES(mutex_);
    void calibrate(Screen& screen) REQUIRES(mutex_);
    /// Queues a write; its outcome is in writes_ after roundTrip.
    void send(DisplayId display, xcb_randr_crtc_t crtc, const NativeTables& tables)
        REQUIRES(mutex_);
    void roundTrip() REQUIRES(mutex_);
    /// Writes and waits. A failure is logged here; it belongs to no write that a caller asked for.
    void writeNow(xcb_randr_crtc_t crtc, const NativeTables& tables) REQUIRES(mutex_);
    [[nodiscard]] Screen* find(DisplayId display) REQUIRES(mutex_);
    /// As log lines about the display begin.
    [[nodiscard]] static std::string nameOf(const Screen& screen);

    Log& log_;
    Mutex mutex_; ///< also for requests on the connection
    RandrConnection connection_;
    std::unique_ptr<TableRecord> record_ GUARDED_BY(mutex_);
    const RandrOutputProperties properties_;
    DisplayNumbers numbers_ GUARDED_BY(mutex_);
    CalibrationLookup calibration_ GUARDED_BY(mutex_);
    std::vector<Screen> screens_ GUARDED_BY(mutex_);
    std::vector<xcb_randr_crtc_t> crtcs_ GUARDED_BY(mutex_);
    CapturedDisplays captured_ GUARDED_BY(mutex_);
    std::vector<Write> writes_ GUARDED_BY(mutex_);
    NativeTables scratch_ GUARDED_BY(mutex_);
    bool configurationStale_ GUARDED_BY(mutex_) = false;
    bool changeToReport_ GUARDED_BY(mutex_) = false;
    std::vector<DisplayChange> changes_ GUARDED_BY(mutex_);
    std::function<void()> newsArrived_ GUARDED_BY(mutex_);
    /// The program has begun to work with the displays.
    bool takesPart_ GUARDED_BY(mutex_) = false;
    bool crtcsChanged_ GUARDED_BY(mutex_) = true; ///< first by what earlier runs left behind
    /// What the record knows of an earlier run was on this very server.
    bool recordIsOfThisServer_ GUARDED_BY(mutex_);
    std::atomic<std::size_t> screenCount_ = 0;
    AttachedDisplays online_; // has a lock of its own
};

} // namespace noctra

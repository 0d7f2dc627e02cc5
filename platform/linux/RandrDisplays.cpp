#include "platform/linux/RandrDisplays.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "platform/linux/Connectors.h"

namespace noctra {

namespace {

constexpr Displays::Status connectionLost = -1;
constexpr Displays::Status noSuchDisplay = -2;
constexpr Displays::Status noTables = -3;

constexpr std::uint16_t watchedChanges = XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE |
                                         XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                                         XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE;

// Two loaders of the same profile differ by their rounding, by at most one step of 8 bits (a linear
// ramp that ends at 0xFF00 instead of 0xFFFF, say). Tables this close are the same calibration: the
// ones that are on the display stay, so that they are what is put back in the end, byte for byte.
constexpr int sameCalibrationWithin = 256;

bool isSameCalibration(const NativeTables& a, const NativeTables& b) {
    const auto close = [](const auto& x, const auto& y) {
        return std::equal(x.begin(), x.end(), y.begin(), y.end(), [](int one, int other) {
            return std::abs(one - other) <= sameCalibrationWithin;
        });
    };
    return close(a.red, b.red) && close(a.green, b.green) && close(a.blue, b.blue);
}

/// What drivers load by themselves, whatever they take for the end of the scale.
bool isLinear(const NativeTables& tables) {
    const auto straight = [](const std::vector<std::uint16_t>& levels) {
        if (levels.size() < 2)
            return true;
        const double step = levels.back() / static_cast<double>(levels.size() - 1);
        for (std::size_t i = 0; i < levels.size(); ++i)
            if (std::abs(levels[i] - step * static_cast<double>(i)) > 1.0)
                return false;
        return levels.back() >= 0xFF00;
    };
    return straight(tables.red) && straight(tables.green) && straight(tables.blue);
}

} // namespace

RandrDisplays::RandrDisplays(RandrConnection connection, std::unique_ptr<TableRecord> record,
                             Log& log)
    : log_(log), connection_(std::move(connection)), record_(std::move(record)),
      calibration_(connection_.xcb.get(), connection_.root) {
    xcb_randr_select_input(connection_.xcb.get(), connection_.root, watchedChanges);
    refreshScreens();
    changes_.clear(); // the first look at the displays is none
}

RandrDisplays::~RandrDisplays() = default;

int RandrDisplays::descriptor() const {
    return xcb_get_file_descriptor(connection_.xcb.get());
}

RandrDisplays::News RandrDisplays::processEvents() {
    const std::lock_guard lock(mutex_);
    drainEvents(true);
    if (takesPart_)
        bringUpToDate();
    else if (configurationStale_)
        refreshScreens();
    News news{std::exchange(changeToReport_, false), std::exchange(changes_, {}),
              connectionError(connection_.xcb.get())};
    drainEvents(false); // what came in with the replies is the next news
    return news;
}

void RandrDisplays::onNews(std::function<void()> arrived) {
    const std::lock_guard lock(mutex_);
    newsArrived_ = std::move(arrived);
    if (changeToReport_ && newsArrived_)
        newsArrived_();
}

void RandrDisplays::attachedScreens(std::vector<DisplayId>& ids) {
    const std::lock_guard lock(mutex_);
    drainEvents(true);
    takesPart_ = true;
    bringUpToDate();
    ids.clear();
    for (const Screen& screen : screens_)
        ids.push_back(screen.randr.output);
    drainEvents(false);
}

Displays::Status RandrDisplays::readTables(DisplayId display, GammaTables& tables,
                                           std::uint32_t& sampleCount) {
    const std::lock_guard lock(mutex_);
    Screen* screen = find(display);
    if (screen == nullptr)
        return noSuchDisplay;
    Status status = 0;
    std::optional<NativeTables> native = readCrtc(screen->randr.crtc, status);
    if (!native)
        return status;
    if (auto base = record_->baseIfOurs(screen->randr.crtc, *native))
        native = std::move(base);
    else
        record_->setBase(screen->randr.crtc, *native);
    sampleNativeTables(*native, tables);
    sampleCount = gammaTableSize;
    captured_.insert_or_assign(display, CapturedTables{std::move(*native), tables});
    drainEvents(false); // what came in with the reply
    return 0;
}

void RandrDisplays::writeTables(DisplayId display, const GammaTables& tables) {
    const std::lock_guard lock(mutex_);
    const Screen* screen = find(display);
    if (screen == nullptr || screen->randr.gammaSize == 0) {
        writes_.push_back({0, display, XCB_NONE, screen == nullptr ? noSuchDisplay : noTables});
        return;
    }
    scratch_.resize(screen->randr.gammaSize);
    const auto captured = captured_.find(display);
    const bool fits =
        captured != captured_.end() && captured->second.native.size() == screen->randr.gammaSize;
    tablesToNative(tables, fits ? &captured->second : nullptr, scratch_);
    send(display, screen->randr.crtc, scratch_);
}

void RandrDisplays::settle(FunctionRef<void(DisplayId, Status)> failed) {
    const std::lock_guard lock(mutex_);
    roundTrip();
    for (const Write& write : writes_)
        if (write.status != 0)
            failed(write.display, write.status);
    writes_.clear();
}

void RandrDisplays::restoreCalibratedTables() {
    const std::lock_guard lock(mutex_);
    drainEvents(true);
    takesPart_ = true;
    refreshScreens();
    crtcsChanged_ = false;
    freeUnusedCrtcs();
    calibration_.beginPass();
    for (Screen& screen : screens_)
        calibrate(screen);
    drainEvents(false);
}

/// Sorts what has arrived: errors to the writes they belong to, changes into one flag. Without
/// `readSocket` after every wait for a reply: what came in with it makes the descriptor readable no
/// more.
void RandrDisplays::drainEvents(bool readSocket) {
    xcb_connection_t* xcb = connection_.xcb.get();
    for (;;) {
        const XcbReply<xcb_generic_event_t> event(readSocket ? xcb_poll_for_event(xcb)
                                                             : xcb_poll_for_queued_event(xcb));
        if (!event)
            return;
        if (event->response_type == 0) {
            const auto* error = reinterpret_cast<const xcb_generic_error_t*>(event.get());
            for (Write& write : writes_)
                if (write.sequence == error->full_sequence)
                    write.status = error->error_code;
        } else {
            const int type = (event->response_type & 0x7F) - connection_.firstEvent;
            if (type == XCB_RANDR_SCREEN_CHANGE_NOTIFY || type == XCB_RANDR_NOTIFY)
                noteChange();
        }
    }
}

void RandrDisplays::noteChange() {
    configurationStale_ = true;
    if (!std::exchange(changeToReport_, true) && newsArrived_)
        newsArrived_();
}

void RandrDisplays::refreshScreens() {
    RandrConfiguration configuration = readConfiguration(connection_);
    configurationStale_ = false;
    if (!connectionError(connection_.xcb.get()).empty())
        return;
    for (RandrScreen& randr : configuration.screens) {
        const Screen* known = find(randr.output);
        randr.builtIn = known != nullptr
                            ? known->randr.builtIn
                            : isBuiltInOutput(connection_.xcb.get(), randr.output, randr.connector);
    }
    std::vector<RandrScreen> before;
    for (const Screen& screen : screens_)
        before.push_back(screen.randr);
    for (const DisplayChange& change : changesBetween(before, configuration.screens))
        changes_.push_back(change);
    online_.replace(configuration.screens);

    std::vector<Screen> screens;
    for (RandrScreen& randr : configuration.screens) {
        Screen next{{}, {}, false};
        const Screen* known = find(randr.output);
        if (known != nullptr && known->randr.crtc == randr.crtc &&
            known->randr.gammaSize == randr.gammaSize)
            next = *known;
        next.randr = std::move(randr);
        screens.push_back(std::move(next));
    }
    screens_ = std::move(screens);
    crtcs_ = std::move(configuration.crtcs);
    crtcsChanged_ = true;
    screenCount_ = screens_.size();
}

void RandrDisplays::bringUpToDate() {
    if (record_->repair())
        for (const Screen& screen : screens_)
            if (const auto captured = captured_.find(screen.randr.output);
                captured != captured_.end())
                record_->setBase(screen.randr.crtc, captured->second.native);
    if (configurationStale_)
        refreshScreens();
    if (!std::exchange(crtcsChanged_, false))
        return;
    freeUnusedCrtcs();
    for (Screen& screen : screens_)
        if (!screen.adopted)
            adopt(screen);
}

/// Takes the program's tables off the CRTCs that drive no display now.
void RandrDisplays::freeUnusedCrtcs() {
    for (const xcb_randr_crtc_t crtc : record_->crtcs()) {
        const bool exists = std::find(crtcs_.begin(), crtcs_.end(), crtc) != crtcs_.end();
        const bool inUse = std::any_of(screens_.begin(), screens_.end(), [&](const Screen& screen) {
            return screen.randr.crtc == crtc;
        });
        if (!exists || inUse)
            continue;
        Status status = 0;
        const auto current = readCrtc(crtc, status);
        const auto base = current ? record_->baseIfOurs(crtc, *current) : std::nullopt;
        if (base && *base != *current)
            writeNow(crtc, *base);
    }
}

/// The tables of a display that the program is about to answer for; nothing where it has none, or
/// where they cannot be read, which is tried again the next time.
std::optional<NativeTables> RandrDisplays::readForTakeover(Screen& screen) {
    if (screen.randr.gammaSize == 0)
        return std::nullopt;
    Status status = 0;
    auto current = readCrtc(screen.randr.crtc, status);
    screen.adopted = current.has_value();
    if (!current)
        crtcsChanged_ = true;
    return current;
}

/// Makes sure that a display that has come to a CRTC starts without a filter on it.
void RandrDisplays::adopt(Screen& screen) {
    const auto current = readForTakeover(screen);
    if (!current)
        return;
    const auto base = record_->baseIfOurs(screen.randr.crtc, *current);
    if (base && *base != *current)
        writeNow(screen.randr.crtc, *base);
    noteBase(screen, base.value_or(*current));
}

/// Tells the record which tables the display will be given back: those it was captured with, if it
/// has been, else those that its CRTC carries.
void RandrDisplays::noteBase(const Screen& screen, const NativeTables& current) {
    const auto captured = captured_.find(screen.randr.output);
    if (captured == captured_.end() || captured->second.native.size() == current.size()) {
        record_->setBase(screen.randr.crtc,
                         captured == captured_.end() ? current : captured->second.native);
        return;
    }
    NativeTables resampled;
    resampled.resize(current.size());
    tablesToNative(captured->second.sampled, nullptr, resampled);
    record_->setBase(screen.randr.crtc, resampled);
}

void RandrDisplays::calibrate(Screen& screen) {
    const auto current = readForTakeover(screen);
    if (!current)
        return;
    const std::string name =
        "Display " + std::to_string(screen.randr.output) + " (" + screen.randr.connector + "): ";
    const auto leftOver = record_->baseIfOurs(screen.randr.crtc, *current);
    NativeTables own = leftOver.value_or(*current);
    std::string source = "as found";
    if (auto profile = calibration_.tablesFor(screen.randr.output, screen.randr.connector,
                                              screen.randr.gammaSize)) {
        source = std::move(profile->source);
        if (!isSameCalibration(profile->tables, own))
            own = std::move(profile->tables);
    }
    if (screen.calibrationSource.empty() && leftOver && *leftOver != *current)
        log_.log(name + "took off the filter that an earlier run had left on it");
    if (source != screen.calibrationSource) {
        log_.log(name + "calibration " + source);
        screen.calibrationSource = std::move(source);
    }
    if (own != *current)
        writeNow(screen.randr.crtc, own);
    if (!record_->setBase(screen.randr.crtc, own))
        log_.log(name + "its tables could not be kept for the case that Noctra is killed");
}

void RandrDisplays::send(DisplayId display, xcb_randr_crtc_t crtc, const NativeTables& tables) {
    record_->willWrite(crtc, tables);
    const auto cookie = xcb_randr_set_crtc_gamma(
        connection_.xcb.get(), crtc, static_cast<std::uint16_t>(tables.size()), tables.red.data(),
        tables.green.data(), tables.blue.data());
    // A broken connection gives no sequence number.
    writes_.push_back({cookie.sequence, display, crtc, cookie.sequence == 0 ? connectionLost : 0});
}

void RandrDisplays::roundTrip() {
    if (std::none_of(writes_.begin(), writes_.end(),
                     [](const Write& write) { return write.sequence != 0; }))
        return;
    xcb_connection_t* xcb = connection_.xcb.get();
    const XcbReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    drainEvents(false); // the errors of the writes have come in before the reply
    for (Write& write : writes_) {
        if (write.sequence == 0)
            continue;
        if (!reply)
            write.status = connectionLost;
        else
            record_->settled(write.crtc, write.status == 0);
        write.sequence = 0;
    }
}

void RandrDisplays::reassertTables() {
    const std::lock_guard lock(mutex_);
    roundTrip(); // somebody may be about to wait for what he has written
    for (const Screen& screen : screens_) {
        Status status = 0;
        const auto current = readCrtc(screen.randr.crtc, status);
        const auto expected = record_->expectedOn(screen.randr.crtc);
        if (!current || !expected || expected->tables == *current ||
            expected->tables.size() != current->size())
            continue;
        // While the filter is off the display is anybody's. But no other program loads a plain
        // ramp.
        if (expected->filtered || isLinear(*current))
            writeNow(screen.randr.crtc, expected->tables);
    }
    drainEvents(false);
}

void RandrDisplays::writeNow(xcb_randr_crtc_t crtc, const NativeTables& tables) {
    send(0, crtc, tables);
    roundTrip();
    if (writes_.back().status != 0)
        log_.log("ERROR: CRTC " + std::to_string(crtc) + " refused its own tables");
    writes_.pop_back();
}

std::optional<NativeTables> RandrDisplays::readCrtc(xcb_randr_crtc_t crtc, Status& status) {
    xcb_connection_t* xcb = connection_.xcb.get();
    xcb_generic_error_t* rawError = nullptr;
    const XcbReply<xcb_randr_get_crtc_gamma_reply_t> reply(
        xcb_randr_get_crtc_gamma_reply(xcb, xcb_randr_get_crtc_gamma(xcb, crtc), &rawError));
    const XcbReply<xcb_generic_error_t> error(rawError);
    if (!reply || reply->size == 0) {
        status = error ? error->error_code : reply ? noTables : connectionLost;
        return std::nullopt;
    }
    const auto copy = [&](const std::uint16_t* levels) {
        return std::vector<std::uint16_t>(levels, levels + reply->size);
    };
    return NativeTables{copy(xcb_randr_get_crtc_gamma_red(reply.get())),
                        copy(xcb_randr_get_crtc_gamma_green(reply.get())),
                        copy(xcb_randr_get_crtc_gamma_blue(reply.get()))};
}

RandrDisplays::Screen* RandrDisplays::find(DisplayId display) {
    const auto found = std::find_if(screens_.begin(), screens_.end(), [&](const Screen& screen) {
        return screen.randr.output == display;
    });
    return found != screens_.end() ? &*found : nullptr;
}

} // namespace noctra

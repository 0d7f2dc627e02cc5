#include "platform/linux/RandrDisplays.h"

#include <algorithm>
#include <utility>

#include "platform/linux/ServerMark.h"
#include "platform/linux/calibration/IccProfileProperty.h"

namespace noctra {

namespace {

constexpr Displays::Status noSuchDisplay = -2;

constexpr std::uint16_t watchedChanges =
    XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
    XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE | XCB_RANDR_NOTIFY_MASK_OUTPUT_PROPERTY;

} // namespace

RandrDisplays::RandrDisplays(RandrConnection connection, std::unique_ptr<TableRecord> record,
                             Log& log)
    : log_(log), connection_(std::move(connection)), record_(std::move(record)),
      properties_(connection_.xcb.get()),
      calibration_(profileSources(connection_.xcb.get(), connection_.root)),
      recordIsOfThisServer_(markServer(connection_)) {
    xcb_randr_select_input(connection_.xcb.get(), connection_.root, watchedChanges);
    refreshScreens();
    changes_.clear(); // what the first look finds is no change
}

RandrDisplays::~RandrDisplays() = default;

int RandrDisplays::descriptor() const {
    return xcb_get_file_descriptor(connection_.xcb.get());
}

RandrDisplays::News RandrDisplays::processEvents() {
    const MutexLock lock(mutex_);
    drainEvents(true);
    if (takesPart_)
        bringUpToDate();
    else if (configurationStale_)
        refreshScreens();
    News news{std::exchange(changeToReport_, false), std::exchange(changes_, {}),
              connectionError(connection_.xcb.get())};
    drainEvents(false); // events that came in with the replies are the next news
    return news;
}

void RandrDisplays::onNews(std::function<void()> arrived) {
    const MutexLock lock(mutex_);
    newsArrived_ = std::move(arrived);
    if (changeToReport_ && newsArrived_)
        newsArrived_();
}

void RandrDisplays::attachedScreens(std::vector<DisplayId>& ids) {
    const MutexLock lock(mutex_);
    drainEvents(true);
    takesPart_ = true;
    bringUpToDate();
    ids.clear();
    for (const Screen& screen : screens_)
        ids.push_back(screen.randr.display.id);
    drainEvents(false);
}

Displays::Status RandrDisplays::readTables(DisplayId display, GammaTables& tables,
                                           std::uint32_t& sampleCount) {
    const MutexLock lock(mutex_);
    Screen* screen = find(display);
    if (screen == nullptr)
        return noSuchDisplay;
    Status status = 0;
    std::optional<NativeTables> native =
        readCrtcTables(connection_.xcb.get(), screen->randr.crtc, status);
    if (!native)
        return status;
    const bool isOurs = record_->baseIfOurs(screen->randr.crtc, *native).has_value();
    NativeTables own = ownTables(*screen, *native);
    if (!isOurs) {
        record_->setBase(screen->randr.crtc, own);
        captured_.setFiltered(display, false);
    }
    sampleNativeTables(own, tables);
    sampleCount = gammaTableSize;
    captured_.capture(display, CapturedTables{std::move(own), tables});
    drainEvents(false); // events that came in with the reply
    return 0;
}

void RandrDisplays::writeTables(DisplayId display, const GammaTables& tables) {
    const MutexLock lock(mutex_);
    captured_.setFiltered(display, true);
    queueWrite(display, tables);
}

void RandrDisplays::giveBackTables(DisplayId display, const GammaTables& tables) {
    const MutexLock lock(mutex_);
    captured_.setFiltered(display, false);
    queueWrite(display, tables);
}

void RandrDisplays::queueWrite(DisplayId display, const GammaTables& tables) {
    const Screen* screen = find(display);
    if (screen == nullptr || screen->randr.gammaSize == 0) {
        writes_.push_back({0, display, XCB_NONE, screen == nullptr ? noSuchDisplay : noTables});
        return;
    }
    scratch_.resize(screen->randr.gammaSize);
    tablesToNative(tables, captured_.withSize(display, screen->randr.gammaSize), scratch_);
    send(display, screen->randr.crtc, scratch_);
}

void RandrDisplays::settle(FunctionRef<void(DisplayId, Status)> failed) {
    const MutexLock lock(mutex_);
    roundTrip();
    for (const Write& write : writes_)
        if (write.status != 0)
            failed(write.display, write.status);
    writes_.clear();
}

void RandrDisplays::restoreCalibratedTables() {
    const MutexLock lock(mutex_);
    drainEvents(true);
    takesPart_ = true;
    refreshScreens();
    crtcsChanged_ = false;
    freeUnusedCrtcs();
    calibration_.beginPass();
    for (Screen& screen : screens_)
        calibrate(screen);
    recordIsOfThisServer_ = false; // from now on it knows of this run
    drainEvents(false);
}

/// Sorts what has arrived: errors to the writes they belong to, changes into one flag. Called
/// without `readSocket` after every wait for a reply: events that came in with it are in xcb's
/// queue, and do not make the descriptor readable.
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
            noteEvent(*event);
        }
    }
}

void RandrDisplays::noteEvent(const xcb_generic_event_t& event) {
    const int type = (event.response_type & 0x7F) - connection_.firstEvent;
    if (type == XCB_RANDR_SCREEN_CHANGE_NOTIFY)
        return noteChange();
    if (type != XCB_RANDR_NOTIFY)
        return;
    const auto& notify = reinterpret_cast<const xcb_randr_notify_event_t&>(event);
    // Other properties change all the time, some with every step of the backlight.
    if (notify.subCode != XCB_RANDR_NOTIFY_OUTPUT_PROPERTY || properties_.reads(notify.u.op.atom))
        noteChange();
}

void RandrDisplays::noteChange() {
    configurationStale_ = true;
    if (!std::exchange(changeToReport_, true) && newsArrived_)
        newsArrived_();
}

void RandrDisplays::refreshScreens() {
    RandrConfiguration configuration = readConfiguration(connection_, properties_);
    configurationStale_ = false;
    if (!connectionError(connection_.xcb.get()).empty())
        return;
    std::vector<AttachedDisplay> displays;
    for (const RandrScreen& randr : configuration.screens)
        displays.push_back(randr.display);
    numbers_.assign(displays);
    for (std::size_t i = 0; i < displays.size(); ++i)
        configuration.screens[i].display.id = displays[i].id;
    std::vector<RandrScreen> before;
    for (const Screen& screen : screens_)
        before.push_back(screen.randr);
    for (const DisplayChange& change : changesBetween(before, configuration.screens))
        changes_.push_back(change);
    online_.replace(std::move(displays));

    std::vector<Screen> screens;
    for (RandrScreen& randr : configuration.screens) {
        Screen next{{}, {}, false};
        const Screen* known = find(randr.display.id);
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
            if (const auto captured =
                    captured_.tablesFor(screen.randr.display.id, screen.randr.gammaSize))
                record_->setBase(screen.randr.crtc, *captured);
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
        const auto current = readCrtcTables(connection_.xcb.get(), crtc, status);
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
    auto current = readCrtcTables(connection_.xcb.get(), screen.randr.crtc, status);
    screen.adopted = current.has_value();
    if (!current)
        crtcsChanged_ = true;
    return current;
}

/// The display's own tables, given what its CRTC carries.
NativeTables RandrDisplays::ownTables(const Screen& screen, const NativeTables& current) {
    const xcb_randr_crtc_t crtc = screen.randr.crtc;
    if (auto base = record_->baseIfOurs(crtc, current))
        return std::move(*base);
    if (!isPlainRamp(current))
        return current;
    // A driver loads a plain ramp over the filter at a wake or a change of the mode.
    std::optional<NativeTables> own;
    if (captured_.isFiltered(screen.randr.display.id))
        own = captured_.tablesFor(screen.randr.display.id, current.size());
    else if (const auto last = recordIsOfThisServer_ ? record_->expectedOn(crtc) : std::nullopt;
             last && last->filtered && last->tables.size() == current.size())
        own = record_->baseIfOurs(crtc, last->tables);
    if (!own || *own == current)
        return current;
    log_.log(nameOf(screen) + "a plain ramp has come over the filter; its own tables still count");
    return std::move(*own);
}

/// Makes sure that a display that has come to a CRTC starts without a filter on it.
void RandrDisplays::adopt(Screen& screen) {
    const auto current = readForTakeover(screen);
    if (!current)
        return;
    const NativeTables own = ownTables(screen, *current);
    if (own != *current)
        writeNow(screen.randr.crtc, own);
    // A display that has been captured is given back what it was captured with.
    record_->setBase(screen.randr.crtc,
                     captured_.tablesFor(screen.randr.display.id, own.size()).value_or(own));
}

void RandrDisplays::calibrate(Screen& screen) {
    const auto current = readForTakeover(screen);
    if (!current)
        return;
    const std::string name = nameOf(screen);
    const bool isOurs = record_->baseIfOurs(screen.randr.crtc, *current).has_value();
    NativeTables own = ownTables(screen, *current);
    if (screen.calibrationSource.empty() && isOurs && own != *current)
        log_.log(name + "took off the filter that an earlier run had left on it");
    std::string source = "as found";
    if (auto profile = calibration_.tablesFor({screen.randr.name, screen.randr.output},
                                              screen.randr.gammaSize)) {
        source = std::move(profile->source);
        if (!isSameCalibration(profile->tables, own))
            own = std::move(profile->tables);
    }
    if (source != screen.calibrationSource) {
        log_.log(name + "calibration " + source);
        screen.calibrationSource = std::move(source);
    }
    if (own != *current)
        writeNow(screen.randr.crtc, own);
    if (!record_->setBase(screen.randr.crtc, own))
        log_.log(name + "its tables could not be kept for the case that Noctra is killed");
}

std::string RandrDisplays::nameOf(const Screen& screen) {
    return "Display " + std::to_string(screen.randr.display.id) + " (" + screen.randr.name + "): ";
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
    const MutexLock lock(mutex_);
    roundTrip(); // settles writes that `settle` has not waited for yet
    for (const Screen& screen : screens_) {
        Status status = 0;
        const auto current = readCrtcTables(connection_.xcb.get(), screen.randr.crtc, status);
        const auto expected = record_->expectedOn(screen.randr.crtc);
        if (!current || !expected || expected->tables == *current ||
            expected->tables.size() != current->size())
            continue;
        // While the filter is off other programs may load tables of their own; a plain ramp is a
        // driver's.
        if (expected->filtered || isPlainRamp(*current))
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

RandrDisplays::Screen* RandrDisplays::find(DisplayId display) {
    const auto found = std::find_if(screens_.begin(), screens_.end(), [&](const Screen& screen) {
        return screen.randr.display.id == display;
    });
    return found != screens_.end() ? &*found : nullptr;
}

} // namespace noctra

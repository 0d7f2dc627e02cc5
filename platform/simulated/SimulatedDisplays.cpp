#include "platform/simulated/SimulatedDisplays.h"

#include <algorithm>

namespace noctra {

namespace {

constexpr Displays::Status noSuchDisplay = 1001;

} // namespace

GammaTables SimulatedDisplays::linearTables() {
    GammaTables tables;
    for (std::size_t k = 0; k < gammaTableSize; ++k)
        tables.red[k] = tables.green[k] = tables.blue[k] = static_cast<float>(k) / 255.0F;
    return tables;
}

void SimulatedDisplays::attach(DisplayId display, const GammaTables& calibrated) {
    screens_.push_back(display);
    screenCount_ = screens_.size();
    if (const auto known = displays_.find(display); known == displays_.end())
        displays_[display] = Display{calibrated, calibrated};
}

void SimulatedDisplays::detach(DisplayId display) {
    std::erase(screens_, display);
    screenCount_ = screens_.size();
}

const GammaTables& SimulatedDisplays::tablesOf(DisplayId display) const {
    return displays_.at(display).current;
}

void SimulatedDisplays::overwrite(DisplayId display, const GammaTables& tables) {
    displays_.at(display).current = tables;
}

void SimulatedDisplays::setCalibrated(DisplayId display, const GammaTables& tables) {
    displays_.at(display).calibrated = tables;
}

void SimulatedDisplays::failReads(DisplayId display, Status status) {
    displays_.at(display).readStatus = status;
}

void SimulatedDisplays::failWrites(DisplayId display, Status status) {
    displays_.at(display).writeStatus = status;
}

void SimulatedDisplays::reportSamples(DisplayId display, std::uint32_t count) {
    displays_.at(display).samples = count;
}

std::size_t SimulatedDisplays::count(Call::Kind kind) const {
    return static_cast<std::size_t>(std::count_if(
        calls_.begin(), calls_.end(), [&](const Call& call) { return call.kind == kind; }));
}

void SimulatedDisplays::attachedScreens(std::vector<DisplayId>& ids) {
    ids.assign(screens_.begin(), screens_.end());
}

Displays::Status SimulatedDisplays::readTables(DisplayId display, GammaTables& tables,
                                               std::uint32_t& sampleCount) {
    record({Call::Kind::read, display});
    if (!isAttached(display))
        return noSuchDisplay;
    const Display& source = displays_.at(display);
    if (source.readStatus != 0)
        return source.readStatus;
    const GammaTables& own =
        source.written == source.current ? source.beforeWritten : source.current;
    sampleCount = std::min(source.samples, gammaTableSize);
    std::copy_n(own.red.begin(), sampleCount, tables.red.begin());
    std::copy_n(own.green.begin(), sampleCount, tables.green.begin());
    std::copy_n(own.blue.begin(), sampleCount, tables.blue.begin());
    return 0;
}

void SimulatedDisplays::writeTables(DisplayId display, const GammaTables& tables) {
    record({Call::Kind::write, display});
    if (writeHook_)
        writeHook_();
    if (!isAttached(display)) {
        failures_.push_back({display, noSuchDisplay});
        return;
    }
    Display& target = displays_.at(display);
    if (target.writeStatus != 0) {
        failures_.push_back({display, target.writeStatus});
        return;
    }
    if (target.written != target.current)
        target.beforeWritten = target.current;
    target.written = tables;
    target.current = tables;
}

void SimulatedDisplays::settle(FunctionRef<void(DisplayId, Status)> failed) {
    record({Call::Kind::settle});
    for (const Failure& failure : failures_)
        failed(failure.display, failure.status);
    failures_.clear();
}

void SimulatedDisplays::restoreCalibratedTables() {
    record({Call::Kind::restoreCalibrated});
    for (const DisplayId display : screens_) {
        displays_.at(display).current = displays_.at(display).calibrated;
        displays_.at(display).written.reset();
    }
}

bool SimulatedDisplays::isAttached(DisplayId display) const {
    return std::find(screens_.begin(), screens_.end(), display) != screens_.end();
}

void SimulatedDisplays::record(Call call) {
    if (recording_)
        calls_.push_back(call);
}

} // namespace noctra

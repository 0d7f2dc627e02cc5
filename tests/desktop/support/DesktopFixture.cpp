#include "tests/desktop/support/DesktopFixture.h"

#include <csignal>
#include <stdexcept>

namespace noctra::desktop {

namespace {

std::unique_ptr<Program> running(std::unique_ptr<Program> program) {
    if (!program->waitForLine(runningLine))
        throw std::runtime_error("the program did not come up");
    return program;
}

} // namespace

std::unique_ptr<XServer> DesktopFixture::server_;

void DesktopFixture::TearDownTestSuite() {
    server_.reset();
}

void DesktopFixture::SetUp() {
    if (!server_ || !server_->isRunning())
        server_ = std::make_unique<XServer>(displayCount);
    probe_ = std::make_unique<GammaProbe>(server_->display());
    plugs_ = std::make_unique<OutputPlugs>(server_->display());
    plugs_->plugOnly(displayCount);
    desktop_ = std::make_unique<TestDesktop>(server_->display());
    desktop_->presetFilter(presetWarmth, presetBrightness);
    before_ = calibratedLike(probe_->readAll());
    probe_->write(before_);
}

std::unique_ptr<Program> DesktopFixture::startProgram() {
    return running(desktop_->start());
}

std::unique_ptr<Program> DesktopFixture::startDriven(const std::vector<std::string>& launcher) {
    return running(desktop_->startDriven(launcher));
}

::testing::AssertionResult DesktopFixture::answers(const Program& program,
                                                   const std::string& question,
                                                   const std::string& expected) {
    std::string last;
    const bool held = pollUntil(patience, [&] {
        program.type(question);
        for (const std::string& line : program.outputLines())
            if (line.starts_with(question))
                last = line;
        return last.find(expected) != std::string::npos;
    });
    return held ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << last;
}

std::unique_ptr<Program> DesktopFixture::startDimmed() {
    std::unique_ptr<Program> program = startProgram();
    command(*program, "noctra://on");
    if (const auto dimmed = isDimmed(); !dimmed)
        throw std::runtime_error(std::string("the filter is not on: ") + dimmed.message());
    return program;
}

void DesktopFixture::command(const Program& program, const std::string& url) {
    const std::size_t applied = program.countLines(appliedLine);
    channel().open({url});
    if (!program.waitForLines(applied + 1, appliedLine))
        throw std::runtime_error("the program did not apply " + url);
}

::testing::AssertionResult DesktopFixture::isUntouched() const {
    const std::string found = difference(probe_->readAll(), before_, 0);
    return found.empty() ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << found;
}

::testing::AssertionResult DesktopFixture::isDimmed(double warmth, double brightness) const {
    TablesByCrtc expected = before_;
    for (const auto& [crtc, tables] : probe_->readLit())
        expected[crtc] = expectedTables({{crtc, before_.at(crtc)}}, warmth, brightness).at(crtc);
    const std::string found = difference(probe_->readAll(), expected, 1);
    return found.empty() ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << found;
}

::testing::AssertionResult DesktopFixture::becomesUntouched() const {
    pollUntil(patience, [this] { return static_cast<bool>(isUntouched()); });
    return isUntouched();
}

::testing::AssertionResult DesktopFixture::becomesDimmed(double warmth, double brightness) const {
    pollUntil(patience, [=, this] { return static_cast<bool>(isDimmed(warmth, brightness)); });
    return isDimmed(warmth, brightness);
}

::testing::AssertionResult DesktopFixture::endsCleanly(Program& program, int signal) const {
    program.signal(signal);
    const std::optional<Ending> ending = program.waitForEnding();
    if (!ending)
        return ::testing::AssertionFailure() << "the program still runs";
    if (*ending != exited(0))
        return ::testing::AssertionFailure() << *ending;
    return isUntouched();
}

CommandChannel& DesktopFixture::channel() {
    if (!channel_ || !channel_->isConnected()) // the bus may have been started again
        channel_ = std::make_unique<CommandChannel>(desktop_->busAddress());
    return *channel_;
}

} // namespace noctra::desktop

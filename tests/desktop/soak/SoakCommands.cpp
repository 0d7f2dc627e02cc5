// Commands for the program, good and bad.

#include <array>

#include "tests/desktop/soak/Soak.h"

namespace noctra::desktop {

namespace {

struct GoodUrl {
    const char* text;
    bool ofOff; ///< what the filter is then where it was off
    bool ofOn;
};

constexpr std::array<GoodUrl, 6> goodUrls{{
    {"noctra://on", true, true},
    {"noctra://oN/x?y", true, true},
    {"noctra://off", false, false},
    {"noctra://OFF/#z", false, false},
    {"noctra://toggle", true, false},
    {"noctra://show", false, true},
}};

std::vector<std::string> badUrls() {
    return {"http://on",     "noctra://dim",    "noctra://" + std::string(8193, 'o'),
            "noctra://o\tn", "noctra://on\x7F", "",
            "noctra:on",     "noctra://%6Fn",   "noctra://\xC3\xB6n"};
}

std::set<bool> after(const GoodUrl& url, const std::set<bool>& before) {
    std::set<bool> either;
    for (const bool on : before)
        either.insert(on ? url.ofOn : url.ofOff);
    return either;
}

constexpr std::array notText{"noctra://\xFFon", "noctra://off\xC3", "noctra://\xED\xA0\x80"};

} // namespace

void Soak::awaitProgramOnBus() {
    if (!program_->isRunning()) // stopped by hand
        return;
    const bool served = pollUntil(patience, [&] { return commands_->isServed(); });
    EXPECT_TRUE(served || !program_->isRunning()) << "the program is not on the bus";
}

/// By a later start, which is a race with whatever else there is, or over the bus, in order.
void Soak::open(const std::string& url, bool throughABus) {
    awaitProgramOnBus();
    if (throughABus)
        commands_->openWithoutWaiting({url});
    else
        otherStarts_.push_back(desktop().start({url}));
}

/// What was sent is with this program, not on its way to the one that is started next.
void Soak::awaitCommands() {
    awaitOtherStarts();
    static_cast<void>(commands_->isServed()); // the bus takes it after them
}

void Soak::goodUrl() {
    openGood(!chance.once(5));
}

void Soak::openGood(bool throughABus) {
    const GoodUrl url = chance.of(goodUrls);
    note(url.text);
    open(url.text, throughABus);
    if (!otherStarts_.empty() || model_.handled) // in whatever order they arrive
        model_.anyFilter();
    else
        model_.enabled = after(url, model_.enabled);
}

void Soak::badUrl() {
    const bool throughABus = !chance.once(3);
    std::string url = !throughABus && chance.once(2) ? chance.of(notText) : chance.of(badUrls());
    if (!throughABus && url.empty())
        url = "noctra:"; // an empty word of a command line is no URL
    note(std::to_string(url.size()) + " bytes");
    open(url, throughABus);
    ++model_.ignoredUrls;
}

} // namespace noctra::desktop

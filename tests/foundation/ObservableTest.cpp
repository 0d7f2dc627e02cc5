#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/Observable.h"
#include "platform/simulated/SimulatedDesktop.h"

namespace noctra {

namespace {

struct Thermostat : ObservableObject {
    Published<int> target{*this, 20, [this] { actions += "t" + std::to_string(target); },
                          [](int value) {
                              return value != 13;
                          }};
    std::string actions;
};

} // namespace

TEST(Observable, AnnouncesEveryAssignmentBeforeTheValueChanges) {
    Thermostat thermostat;
    std::vector<int> before;
    const AnyCancellable token =
        thermostat.onWillChange([&] { before.push_back(thermostat.target); });
    thermostat.target = 21;
    thermostat.target = 21; // also when it stays the same
    thermostat.target = 13; // which is not accepted
    EXPECT_EQ(before, (std::vector<int>{20, 21}));
    EXPECT_EQ(thermostat.actions, "t21t21");
}

TEST(Observable, GivesASubscriberEachValueOnALaterTurnUntilTheTokenIsDropped) {
    SimulatedDesktop desktop;
    Thermostat thermostat;
    std::vector<int> seen;
    AnyCancellable token =
        thermostat.target.subscribe(desktop.mainQueue, [&](int value) { seen.push_back(value); });
    thermostat.target = 21;
    thermostat.target = 22;
    EXPECT_TRUE(seen.empty()) << "nothing arrives inside the assignment";
    desktop.settle();
    EXPECT_EQ(seen, (std::vector<int>{20, 21, 22}));
    thermostat.target = 23;
    token.cancel();
    desktop.settle();
    EXPECT_EQ(seen.size(), 3U) << "not even what was under way";
}

TEST(Observable, LetsListenersComeAndGoWhileTheyAreCalled) {
    Thermostat thermostat;
    AnyCancellable second;
    AnyCancellable late;
    std::string called;
    const AnyCancellable first = thermostat.onWillChange([&] {
        called += '1';
        second.cancel();
        if (!late.isActive())
            late = thermostat.onWillChange([&] { called += '3'; });
    });
    second = thermostat.onWillChange([&] { called += '2'; });
    thermostat.target = 21;
    EXPECT_EQ(called, "1");
    thermostat.target = 22;
    EXPECT_EQ(called, "113");
}

} // namespace noctra

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
    Published<bool> heating{*this, false};
    std::string actions;
};

struct ObservableTest : testing::Test {
    SimulatedDesktop desktop;
    Thermostat thermostat;
    std::vector<int> seen;

    AnyCancellable subscribe() {
        return thermostat.target.subscribe(desktop.mainQueue,
                                           [this](int value) { seen.push_back(value); });
    }
};

} // namespace

TEST_F(ObservableTest, AnnouncesEveryAssignmentBeforeTheValueChanges) {
    std::vector<int> before;
    const AnyCancellable token =
        thermostat.onWillChange([&] { before.push_back(thermostat.target); });
    thermostat.target = 21;
    thermostat.target = 21; // also when it stays the same
    thermostat.heating = true;
    EXPECT_EQ(before, (std::vector<int>{20, 21, 21}));
    EXPECT_EQ(thermostat.actions, "t21t21");
}

TEST_F(ObservableTest, GivesASubscriberTheCurrentValueOnceAndThenEachNewOneOnTheMainQueue) {
    const AnyCancellable token = subscribe();
    thermostat.target = 21;
    thermostat.target = 22;
    EXPECT_TRUE(seen.empty()) << "nothing arrives inside the assignment";
    desktop.settle();
    EXPECT_EQ(seen, (std::vector<int>{20, 21, 22}));
}

TEST_F(ObservableTest, DeliversNothingMoreOnceTheTokenIsDroppedNotEvenWhatWasUnderWay) {
    AnyCancellable token = subscribe();
    thermostat.target = 21;
    token.cancel();
    desktop.settle();
    EXPECT_TRUE(seen.empty());
}

TEST_F(ObservableTest, LetsListenersComeAndGoWhileTheyAreCalled) {
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
    thermostat.heating = true;
    EXPECT_EQ(called, "1");
    thermostat.heating = false;
    EXPECT_EQ(called, "113");
}

} // namespace noctra

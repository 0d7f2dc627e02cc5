#include "platform/simulated/SimulatedDisplays.h"

#include "tests/platform/DisplaysContract.h"

namespace noctra {

namespace {

class TwoSimulatedDisplays : public DisplaysUnderTest {
public:
    TwoSimulatedDisplays() {
        simulated_.attach(11);
        simulated_.attach(12);
    }
    Displays& displays() override { return simulated_; }
    GammaTables carried(DisplayId display) override { return simulated_.tablesOf(display); }
    void unplugLast() override { simulated_.detach(12); }

private:
    SimulatedDisplays simulated_;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, DisplaysContract,
                         testing::Values(MakeDisplays{
                             "SimulatedDisplays", [] {
                                 return std::make_unique<TwoSimulatedDisplays>();
                             }}));

} // namespace noctra

// The contract of every Displays adapter, on a real X server with three displays (tests/desktop/xserver.py
// starts it).

#include "platform/linux/RandrDisplays.h"

#include <cstdlib>
#include <memory>

#include "platform/simulated/SimulatedDesktop.h"
#include "tests/platform/DisplaysContract.h"

namespace noctra {

namespace {

class ThreeRandrDisplays : public DisplaysUnderTest {
public:
    ThreeRandrDisplays() {
        xrandr("--output DUMMY2 --mode 640x480 --pos 1280x0");
        adapter_ = connect();
        adapter_->restoreCalibratedTables();
        for (const DisplayId display : attached(*adapter_))
            own_.emplace_back(display, carried(display));
    }
    ~ThreeRandrDisplays() override {
        for (const auto& [display, tables] : own_)
            adapter_->writeTables(display, tables);
        adapter_->settle([](DisplayId, Displays::Status) {});
    }

    Displays& displays() override { return *adapter_; }
    GammaTables carried(DisplayId display) override {
        // One that has written nothing reads what is there.
        const auto observer = connect();
        static_cast<void>(attached(*observer));
        GammaTables tables;
        std::uint32_t count = 0;
        EXPECT_EQ(observer->readTables(display, tables, count), 0);
        return tables;
    }
    void unplugLast() override {
        xrandr("--output DUMMY2 --off");
        EXPECT_TRUE(adapter_->processEvents().configurationChanged);
    }

private:
    [[nodiscard]] std::unique_ptr<RandrDisplays> connect() {
        return std::make_unique<RandrDisplays>(connectToRandr(std::getenv("DISPLAY")),
                                               TableRecord::open(std::string()).record, log_);
    }
    static std::vector<DisplayId> attached(RandrDisplays& displays) {
        std::vector<DisplayId> ids;
        displays.attachedScreens(ids);
        return ids;
    }
    static void xrandr(const std::string& arguments) {
        EXPECT_EQ(std::system(("xrandr " + arguments).c_str()), 0);
    }

    RecordedLog log_;
    std::unique_ptr<RandrDisplays> adapter_;
    std::vector<std::pair<DisplayId, GammaTables>> own_;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Randr, DisplaysContract,
                         testing::Values(MakeDisplays{"RandrDisplays", [] {
                                                          return std::make_unique<
                                                              ThreeRandrDisplays>();
                                                      }}));

} // namespace noctra

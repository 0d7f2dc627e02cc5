// An X server that hangs or dies under the library: no call waits for it, and brightness can still
// be put back.

#include "tests/desktop/displayservices/MonitorsFixture.h"

namespace noctra::desktop {

namespace {

using namespace std::chrono_literals;

struct XServerTrouble : MonitorsFixture {
    void SetUp() override {
        MonitorsFixture::SetUp();
        if (IsSkipped())
            return;
        bench = std::make_unique<MonitorBench>(1, server);
        first = bench->display(0);
    }
    void lock() {
        start();
        ASSERT_TRUE(becomesChangeable(first));
        EXPECT_TRUE(driver->set(first, 1));
        EXPECT_TRUE(reaches(first, 1.0F));
    }
    void expectPutBack() {
        EXPECT_TRUE(driver->set(first, 0.4F));
        EXPECT_TRUE(driver->finish(2000ms));
        EXPECT_EQ(monitor().value, 40);
    }
    XServer server{1};
};

TEST_F(XServerTrouble, HangsBeforeTheFirstCall) {
    server.pause();
    start();
    EXPECT_FALSE(driver->canChange(first));
    EXPECT_EQ(driver->get(first), std::nullopt);
    EXPECT_FALSE(driver->set(first, 1));
    EXPECT_FALSE(driver->enableAmbientLight(first, false));
    server.resume();
    EXPECT_TRUE(becomesChangeable(first));
    server.pause();
    start();
    EXPECT_FALSE(driver->set(first, 1));
    EXPECT_TRUE(driver->finish(100ms)) << "nothing has been asked for that could be done";
    server.resume();
}

TEST_F(XServerTrouble, HangsWhileItIsAsked) {
    lock();
    OutputPlugs(server.display()).setBuiltIn(0, false); // news that makes the library ask
    server.pause();
    expectPutBack();
    server.resume();
}

TEST_F(XServerTrouble, Dies) {
    lock();
    server.killAtOnce();
    expectPutBack();
}

} // namespace

} // namespace noctra::desktop

#include <cstdlib>

#include <QCoreApplication>
#include <gtest/gtest.h>

#include "tests/platform/linux/calibration/PrivateSystemBus.h"
#include "tests/platform/linux/calibration/ScratchFolder.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // The address is read once in a process; no test may reach the machine's own system bus.
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", noctra::test::PrivateSystemBus::address().c_str(), 1);
    const QCoreApplication application(argc, argv);
    const int result = RUN_ALL_TESTS();
    std::filesystem::remove_all(noctra::test::scratchFolder());
    return result;
}

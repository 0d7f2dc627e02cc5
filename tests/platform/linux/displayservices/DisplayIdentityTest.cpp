#include "platform/linux/Connectors.h"

#include <gtest/gtest.h>

namespace noctra {

namespace {

TEST(Connectors, OfPanelsAreKnownByTheirNames) {
    for (const char* name : {"eDP-1", "eDP1", "eDP", "LVDS-1", "LVDS1", "DSI-1"})
        EXPECT_TRUE(isPanelConnectorName(name)) << name;
    for (const char* name :
         {"", "DP-1", "DP-1-eDP", "HDMI-A-1", "DVI-I-1", "VGA-1", "DUMMY0", "eD", "Virtual-1"})
        EXPECT_FALSE(isPanelConnectorName(name)) << name;
}

} // namespace

} // namespace noctra

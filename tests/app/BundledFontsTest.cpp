#include "app/BundledFonts.h"

#include <gtest/gtest.h>

#include "platform/simulated/SimulatedFonts.h"
#include "platform/simulated/SimulatedResources.h"

namespace noctra {

using Paths = std::vector<std::string>;

TEST(BundledFonts, AreRegisteredInOrderPastAMissingAndABrokenOne) {
    SimulatedResources resources;
    SimulatedFonts none;
    registerFonts(resources, none);
    EXPECT_EQ(none.registered, Paths{});

    resources.paths["Anybody-ExtraBold.ttf"] = "/extra";
    SimulatedFonts one;
    registerFonts(resources, one);
    EXPECT_EQ(one.registered, Paths{"/extra"});

    resources.paths["Anybody-Bold.ttf"] = "/broken";
    SimulatedFonts fonts;
    fonts.files["/extra"] = {"Anybody-ExtraBold", {"Anybody", 800}};
    registerFonts(resources, fonts);
    EXPECT_EQ(fonts.registered, (Paths{"/broken", "/extra"}));
    EXPECT_TRUE(fonts.find("Anybody-ExtraBold"));
}

} // namespace noctra

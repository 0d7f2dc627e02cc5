#include "app/BundledFonts.h"

#include <gtest/gtest.h>

#include "platform/simulated/SimulatedFonts.h"
#include "platform/simulated/SimulatedResources.h"

namespace noctra {

TEST(BundledFonts, AreRegisteredInOrderPastAMissingAndABrokenOne) {
    using Paths = std::vector<std::string>;
    SimulatedResources resources;
    for (const Paths& expected : {Paths{}, Paths{"/extra"}, Paths{"/broken", "/extra"}}) {
        SimulatedFonts fonts;
        fonts.files["/extra"] = {"Anybody-ExtraBold", {"Anybody", 800}};
        registerFonts(resources, fonts);
        EXPECT_EQ(fonts.registered, expected);
        resources.paths[resources.paths.empty() ? "Anybody-ExtraBold.ttf" : "Anybody-Bold.ttf"] =
            resources.paths.empty() ? "/extra" : "/broken";
    }
}

} // namespace noctra

#include "panel/BrandFont.h"

#include <gtest/gtest.h>

#include "platform/simulated/SimulatedFonts.h"

namespace noctra {

TEST(BrandFont, IsTheRegisteredFaceElseTheSystemsInThatWeight) {
    SimulatedFonts fonts;
    fonts.files["bold"] = {"Anybody-Bold", {"Anybody", 700}};
    fonts.files["extra"] = {"Anybody-ExtraBold", {"Anybody", 800}};
    const struct {
        const char* weight;
        int fallback;
    } cases[] = {{"ExtraBold", 900}, {"Bold", 700}, {"Black", 700}, {"extrabold", 700}, {"", 700}};
    for (const auto& [weight, fallback] : cases)
        EXPECT_EQ(BrandFont::anybody(fonts, 14.0, weight), (Font{"", 14.0, fallback, false}))
            << weight;

    fonts.registerFont("extra");
    EXPECT_EQ(BrandFont::anybody(fonts, 13.5, "ExtraBold"), (Font{"Anybody", 13.5, 800, false}));
    EXPECT_EQ(BrandFont::anybody(fonts, 10.0, "Bold"), (Font{"", 10.0, 700, false}));
    fonts.registerFont("bold");
    EXPECT_EQ(BrandFont::anybody(fonts, 10.0, "Bold"), (Font{"Anybody", 10.0, 700, false}));
}

} // namespace noctra

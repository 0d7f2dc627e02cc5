// Where the panel's parts are, in points, and what colours they have, at the scale factor of the
// environment. How boxes, faders and texts are drawn is in tests/panel/quick.

#include <vector>

#include <QtGui/QFontMetricsF>

#include "tests/panel/window/Colours.h"
#include "tests/panel/window/PanelScene.h"

namespace noctra {

namespace {

constexpr Color deep = Color::grey(0.05);
constexpr Color grey = Color::grey(0.1);
const Color lit = over(grey, colors::white.withAlpha(0.05));

struct Place {
    const char* name; ///< or the text
    QRectF box;
};

struct Sample {
    const char* what;
    double x, y;
    Color color;
    double error = 1.6;
};

struct PanelLayout : PanelScene {
    static double lineOf(const std::string& family, int size, int weight) {
        QFont font(QString::fromStdString(family));
        font.setPixelSize(size);
        font.setHintingPreference(QFont::PreferNoHinting); // as the scene measures
        font.setWeight(static_cast<QFont::Weight>(weight));
        return std::ceil(QFontMetricsF(font).height());
    }
    double bold = 0;    ///< the heights of lines
    double regular = 0; ///< of the tooltip's
    double preset = 0;  ///< the height of a button

    PanelLayout() {
        bold = lineOf(fonts.fixedFamily(), 10, 700);
        regular = lineOf(fonts.fixedFamily(), 10, 400);
        preset = lineOf(fonts.find("Anybody-Bold")->family, 10, 700) + 20;
    }
    /// The footer's place where the status row is `row` points high.
    [[nodiscard]] double footerTop(double row) const {
        return 540.0 - (20.0 + row + 16.0 + preset + 16.0 + 54.0 + 20.0);
    }
    static const QQuickItem* textItem(const QQuickItem* parent, const QString& text) {
        if (!parent->isVisible())
            return nullptr;
        if (parent->property("text").toString() == text)
            return parent;
        for (const QQuickItem* child : parent->childItems())
            if (const QQuickItem* found = textItem(child, text))
                return found;
        return nullptr;
    }
    static QRectF place(const char* name) {
        if (find(name) != nullptr)
            return box(name);
        const QQuickItem* text = textItem(window()->contentItem(), name);
        return text == nullptr
                   ? QRectF()
                   : text->mapRectToItem(&content(), {0, 0, text->width(), text->height()});
    }
    static void expectPlaces(const std::vector<Place>& places) {
        for (const auto& [name, expected] : places) {
            const QRectF found = place(name);
            EXPECT_NEAR(found.x(), expected.x(), 0.01) << name;
            EXPECT_NEAR(found.y(), expected.y(), 0.01) << name;
            EXPECT_NEAR(found.width(), expected.width(), 0.01) << name;
            EXPECT_NEAR(found.height(), expected.height(), 0.01) << name;
        }
    }
    static void expectColors(const std::vector<Sample>& samples) {
        const QImage picture = grab();
        const double scale = window()->effectiveDevicePixelRatio();
        EXPECT_EQ(picture.size(), QSize(qRound(320 * scale), qRound(540 * scale)));
        for (const auto& [what, x, y, color, error] : samples) {
            const QColor found =
                picture.pixelColor(static_cast<int>(x * scale), static_cast<int>(y * scale));
            EXPECT_LE(distance(found, color), error) << what << ": " << found.name().toStdString();
        }
    }
};

Color between(const Color& from, const Color& to, double share) {
    return over(from, to.withAlpha(share));
}

} // namespace

TEST_F(PanelLayout, TheMainPanelHasItsPartsInTheirPlacesAndColours) {
    engine.intensity = 1.0 - 2700.0 / 6500.0;
    engine.isEnabled = true;
    setControllable(true);
    open();
    const double row = bold + 18;
    const double footer = footerTop(row);
    const double field = footer - 48; // of the readouts
    const double label = lineOf(fonts.find("Anybody-ExtraBold")->family, 14, 800);
    const double fader = 78 + label + 16;
    const double buttons = footer + 20 + row + 16;
    const double width = (272.0 - 24.0) / 3.0;
    const QRectF title = place("NOCTRA");
    EXPECT_EQ(title.x(), 24);
    EXPECT_NEAR(title.center().y(), 27, 0.51);
    const QRectF warmth =
        textItem(window()->contentItem(), "WARMTH")->mapRectToItem(&content(), {0, 0, 1, 1});
    EXPECT_EQ(warmth.y(), 76) << "2 points above its place";
    expectPlaces({{"gear", {280, 19, 16, 16}},
                  {"WARMTH", {16, fader, 141, field - 16 - fader}},
                  {"BRIGHTNESS", {163, fader, 141, field - 16 - fader}},
                  {"2,700K", {86.5 - 42, field, 84, 24}},
                  {"100%", {233.5 - 32, field, 64, 24}},
                  {"pwmSafeBar", {24, footer + 15, 272, row}},
                  {"DAY", {24, buttons, width, preset}},
                  {"EVENING", {36 + width, buttons, width, preset}},
                  {"NIGHT", {48 + 2 * width, buttons, width, preset}},
                  {"power", {24, 466, 272, 54}}});

    const double middle = buttons + preset / 2;
    const double zero = field - 16 - 20; // of the faders
    const Color slot = Color::grey(0.12);
    const Color bar = over(grey, colors::black.withAlpha(0.45));
    const Color active = between(Color::grey(0.25), Color::grey(0.2), 0.5);
    expectColors(
        {{"header's upper line", 5, 0.5, lit},
         {"header", 5, 20, grey},
         {"header's lower line", 5, 53.5, over(grey, colors::black.withAlpha(0.8))},
         {"ground", 5, 60, deep},
         {"footer's upper line", 5, footer + 0.5, deep},
         {"footer", 5, footer + 4, grey},
         {"footer's lower line", 5, 539.5, lit},
         {"groove", 159.5, footer - 60, colors::black},
         {"beside it", 161.5, footer - 60, over(deep, colors::white.withAlpha(0.05))},
         {"warmth", 86.5, zero - 20, over(slot, Color{1, 0, 0}.withAlpha(0.8))},
         {"brightness", 233.5, zero - 20, over(slot, colors::white.withAlpha(0.8))},
         {"readout", 86.5 - 38, field + 12, colors::black},
         {"beside it", 86.5 - 46, field + 12, deep},
         {"bar", 130, footer + 15 + 4, bar},
         {"its outline", 160, footer + 15.25, over(bar, colors::white.withAlpha(0.08))},
         {"its dot", 38, footer + 15 + row / 2, over(bar, colors::white.withAlpha(0.25)), 4},
         {"active preset", 42 + width, middle, active, 2.1},
         {"inactive preset", 30, middle, grey, 2.1},
         {"switch's upper line", 100, 466.5, {0.86, 0.3, 0.3}, 6},
         {"switch", 40, 493, {0.7, 0, 0}, 2.1},
         {"switch, low", 40, 517, between({0.8, 0, 0}, {0.6, 0, 0}, 51.25 / 54), 2.1},
         {"its glow", 14.5, 493.5, over(grey, colors::systemRed.withAlpha(0.4 * 0.171)), 4}});
    for (const bool locked : {false, true}) {
        locked ? advance(Seconds(1)) : click("pwmSafeBar");
        move({3, 200});
        advance(Seconds(0.3));
        const Color signal = locked ? Color{0, 1, 0.4} : colors::systemYellow;
        expectColors({{"outline", 160, footer + 15.25, over(bar, signal.withAlpha(0.4))},
                      {"dot", 38, footer + 15 + row / 2, signal}});
    }
    engine.isEnabled = false;
    advance(Seconds(1));
    expectColors({{"switch, off", 40, 493, Color::grey(0.125), 2.1},
                  {"fader, off", 233.5, zero - 20, over(slot, colors::white.withAlpha(0.1))}});
}

TEST_F(PanelLayout, OutsideItAreTheLinesOfItsEdge) {
    open();
    openSheet(); // which reaches below its lower end
    const QImage whole = window()->grabWindow();
    const double scale = window()->effectiveDevicePixelRatio();
    const QSize inside(qRound(320 * scale), qRound(540 * scale));
    EXPECT_LE(whole.width() - inside.width(), 3) << "two, and what makes whole points";
    const QColor line(35, 35, 35); // white at 9 % over the ground
    for (int y = 0; y < whole.height(); ++y)
        for (int x = 0; x < whole.width(); ++x)
            if (!QRect(QPoint(1, 1), inside).contains(x, y)) {
                ASSERT_EQ(whole.pixelColor(x, y), line) << x << ", " << y;
            }
    EXPECT_NE(whole.pixelColor(1, 1), line);
    EXPECT_NE(whole.pixelColor(inside.width(), inside.height()), line);
}

TEST_F(PanelLayout, TheSheetHasItsHeaderAndItsRows) {
    engine.isEnabled = true;
    open();
    openSheet();
    const double line = lineOf(fonts.systemFamily(), 11, 700);
    const double header = line + 32;
    const double first = header + 16;
    const double copy = first + 2 * 55;
    const double stop = copy + std::max(line, 14.0) + 33;
    expectPlaces({{"settings", {0, 0, 320, 540}},
                  {"LAUNCH AT LOGIN", {16, first, 288, 54}},
                  {"ALLOW EXTREME DIM", {16, first + 55, 288, 54}},
                  {"copy", {16, copy, 288, stop - 1 - copy}}});
    EXPECT_EQ(box("close").right(), 304);
    EXPECT_NEAR(box("close").center().y(), header / 2, 0.51);
    EXPECT_EQ(box("stop").top(), stop);
    EXPECT_NEAR(box("stop").center().x(), 160, 0.51);

    const Color row = Color::grey(0.15);
    expectColors({{"header", 2, 2, Color::grey(0.12)},
                  {"ground", 8, first + 10, deep},
                  {"row's upper line", 18, first + 0.5, over(row, colors::white.withAlpha(0.05))},
                  {"row", 18, first + 20, row},
                  {"row's lower line", 18, first + 53.5, over(row, colors::black.withAlpha(0.6))},
                  {"between rows", 18, first + 54.5, deep},
                  {"copy", 18, copy + 6, row},
                  {"beside the stop", 20, stop + 6, deep},
                  {"stop", 160, stop + 4, row},
                  {"main panel beneath", 40, 493, over({0.7, 0, 0}, deep.withAlpha(0.98))}});
}

TEST_F(PanelLayout, AWarningHasItsTooltipAboveIt) {
    setBacklight(0.1F);
    open();
    const double warning = footerTop(2 * bold) + 15;
    move({160, qRound(warning) + 5});
    advance(Seconds(1));
    const double height = 36 + 4 * regular + 9;
    const double top = warning - 10 - height;
    expectPlaces({{"pwmSafeWarning", {24, warning, 272, 2 * bold}},
                  {"pwmSafeTooltip", {30, top, 260, height}}});
    expectColors({{"its upper band", 36, top + 2, colors::systemYellow},
                  {"within", 36, top + 8, colors::black},
                  {"its outline", 30.42, top + 30,
                   over(colors::black, colors::systemYellow.withAlpha(0.35))}});
    const double scale = window()->effectiveDevicePixelRatio();
    const QColor glow = grab().pixelColor(static_cast<int>(22 * scale),
                                          static_cast<int>((top + height / 2) * scale));
    EXPECT_GT(glow.red(), glow.blue() + 4) << "the yellow shadow";
}

} // namespace noctra

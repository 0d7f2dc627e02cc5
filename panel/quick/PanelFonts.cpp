#include "panel/quick/PanelFonts.h"

#include "panel/BrandFont.h"
#include "panel/Font.h"
#include "panel/quick/Conversions.h"
#include "platform/Fonts.h"

namespace noctra {

namespace {

QFont made(const QString& family, double size, int weight, double tracking) {
    QFont font(family);
    font.setPixelSize(qRound(size)); // a point of the panel is a pixel at scale 1
    font.setWeight(static_cast<QFont::Weight>(weight));
    if (tracking != 0.0)
        font.setLetterSpacing(QFont::AbsoluteSpacing, tracking);
    return font;
}

} // namespace

QFont PanelFonts::brand(qreal size, const QString& weight, qreal tracking) const {
    const Font font = BrandFont::anybody(fonts_, size, weight.toStdString());
    const std::string family = font.family.empty() ? fonts_.systemFamily() : font.family;
    return made(toQt(family), font.size, font.weight, tracking);
}

QFont PanelFonts::system(qreal size, int weight) const {
    return made(toQt(fonts_.systemFamily()), size, weight, 0.0);
}

QFont PanelFonts::monospaced(qreal size, int weight, qreal tracking) const {
    QFont font = made(toQt(fonts_.fixedFamily()), size, weight, tracking);
    font.setStyleHint(QFont::Monospace);
    return font;
}

} // namespace noctra

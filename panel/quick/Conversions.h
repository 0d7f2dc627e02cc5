#pragma once

#include <algorithm>
#include <string_view>

#include <QtCore/QString>
#include <QtGui/QColor>

#include "foundation/Color.h"

namespace noctra {

[[nodiscard]] inline QColor toQt(const Color& color) {
    const auto component = [](double value) {
        return static_cast<float>(std::clamp(value, 0., 1.));
    };
    return QColor::fromRgbF(component(color.red), component(color.green), component(color.blue),
                            component(color.alpha));
}

[[nodiscard]] inline Color fromQt(const QColor& color) {
    return {color.redF(), color.greenF(), color.blueF(), color.alphaF()};
}

[[nodiscard]] inline QString toQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace noctra

#pragma once

#include <QtCore/QObject>
#include <QtGui/QColor>
#include <QtQml/qqmlregistration.h>

#include "panel/ControlStyles.h"
#include "panel/quick/Conversions.h"

namespace noctra {

/// A button's looks as a value that QML can read.
class ButtonStyleValue {
    Q_GADGET
    QML_VALUE_TYPE(buttonStyle)
    Q_PROPERTY(QColor foreground READ foreground CONSTANT)
    Q_PROPERTY(QColor backgroundTop READ backgroundTop CONSTANT)
    Q_PROPERTY(QColor backgroundBottom READ backgroundBottom CONSTANT)
    Q_PROPERTY(QColor borderTop READ borderTop CONSTANT)
    Q_PROPERTY(QColor borderBottom READ borderBottom CONSTANT)
    Q_PROPERTY(QColor shadowColor READ shadowColor CONSTANT)
    Q_PROPERTY(qreal shadowRadius READ shadowRadius CONSTANT)
    Q_PROPERTY(qreal shadowOffsetY READ shadowOffsetY CONSTANT)

public:
    ButtonStyleValue() = default;
    explicit ButtonStyleValue(const ButtonStyle& style) : style_(style) {}

    [[nodiscard]] QColor foreground() const { return toQt(style_.foreground); }
    [[nodiscard]] QColor backgroundTop() const { return toQt(style_.background.top); }
    [[nodiscard]] QColor backgroundBottom() const { return toQt(style_.background.bottom); }
    [[nodiscard]] QColor borderTop() const { return toQt(style_.border.top); }
    [[nodiscard]] QColor borderBottom() const { return toQt(style_.border.bottom); }
    [[nodiscard]] QColor shadowColor() const { return toQt(style_.shadow.color); }
    [[nodiscard]] qreal shadowRadius() const { return style_.shadow.radius; }
    [[nodiscard]] qreal shadowOffsetY() const { return style_.shadow.offsetY; }

private:
    ButtonStyle style_;
};

} // namespace noctra

#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtQml/qqmlregistration.h>

#include "panel/FaderReadout.h"
#include "panel/quick/Conversions.h"

namespace noctra {

/// A fader's readout as a value that QML can read.
class ReadoutValue {
    Q_GADGET
    QML_VALUE_TYPE(readout)
    Q_PROPERTY(QString text READ text CONSTANT)
    Q_PROPERTY(QColor foregroundColor READ foregroundColor CONSTANT)
    Q_PROPERTY(QColor glowColor READ glowColor CONSTANT)
    Q_PROPERTY(QColor fieldColor READ fieldColor CONSTANT)
    Q_PROPERTY(QColor borderColor READ borderColor CONSTANT)
    Q_PROPERTY(qreal width READ width CONSTANT)

public:
    ReadoutValue() = default;
    explicit ReadoutValue(const FaderReadout& readout)
        : text_(toQt(readout.text)), foregroundColor_(toQt(readout.foregroundColor)),
          glowColor_(toQt(readout.glowColor)), width_(readout.width) {}

    [[nodiscard]] QString text() const { return text_; }
    [[nodiscard]] QColor foregroundColor() const { return foregroundColor_; }
    [[nodiscard]] QColor glowColor() const { return glowColor_; }
    [[nodiscard]] static QColor fieldColor() { return toQt(FaderReadout::fieldColor); }
    [[nodiscard]] static QColor borderColor() { return toQt(FaderReadout::borderColor); }
    [[nodiscard]] qreal width() const { return width_; }

    friend bool operator==(const ReadoutValue&, const ReadoutValue&) = default;

private:
    QString text_;
    QColor foregroundColor_;
    QColor glowColor_;
    qreal width_ = 0.0;
};

} // namespace noctra

#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtGui/QFont>
#include <QtQml/qqmlregistration.h>

namespace noctra {

class Fonts;

/// The panel's fonts for its QML files. Sizes and tracking in points, weights from 100 to 900.
class PanelFonts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")

public:
    /// `fonts` outlives the object.
    explicit PanelFonts(const Fonts& fonts) : fonts_(fonts) {}

    /// The brand's face; `weight` as in the names of its files.
    Q_INVOKABLE QFont brand(qreal size, const QString& weight, qreal tracking = 0.0) const;
    /// The desktop's general face.
    Q_INVOKABLE QFont system(qreal size, int weight) const;
    /// The desktop's face in which all letters are equally wide.
    Q_INVOKABLE QFont monospaced(qreal size, int weight, qreal tracking = 0.0) const;

private:
    const Fonts& fonts_;
};

} // namespace noctra

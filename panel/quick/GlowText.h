#pragma once

#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtGui/QImage>
#include <QtQml/qqmlregistration.h>

#include "panel/quick/DevicePicture.h"
#include "panel/quick/GridItem.h"
#include "panel/quick/SoftShadow.h"

namespace noctra {

/// What is shown of a text that glows. Lengths in points.
struct GlowingText {
    QString text;
    QFont font;
    QColor color = Qt::white;
    QColor glowColor = Qt::transparent;
    qreal glowRadius = 0.0; ///< the standard deviation of the blur
};

/// The picture of a GlowText: its box, and around it what the glow needs.
class GlowTextPicture : public DevicePicture {
    Q_OBJECT

public:
    GlowTextPicture(QQuickItem* parent, const GlowingText& shown)
        : DevicePicture(parent), shown_(shown) {}

    void arrange(const PixelGrid& grid, const QSizeF& box);

protected:
    void paintPixels(QPainter& painter) override;

private:
    void drawMask();

    const GlowingText& shown_;
    PixelGrid grid_;
    QSizeF box_; ///< points
    int bleed_ = 0;
    // Kept from one picture to the next:
    QImage text_;
    QImage glow_;
    SoftShadow shadow_;
};

/// One line of text in the middle of the item, with a glow. What is wider than the item is cut off;
/// the glow goes beyond it.
class GlowText : public GridItem {
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY fontChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY looksChanged)
    Q_PROPERTY(QColor glowColor READ glowColor WRITE setGlowColor NOTIFY looksChanged)
    /// The standard deviation of the blur, in points.
    Q_PROPERTY(qreal glowRadius READ glowRadius WRITE setGlowRadius NOTIFY looksChanged)
    QML_ELEMENT

public:
    explicit GlowText(QQuickItem* parent = nullptr);

    [[nodiscard]] QString text() const { return shown_.text; }
    void setText(const QString& text);
    [[nodiscard]] QFont font() const { return shown_.font; }
    void setFont(const QFont& font);
    [[nodiscard]] QColor color() const { return shown_.color; }
    void setColor(const QColor& color);
    [[nodiscard]] QColor glowColor() const { return shown_.glowColor; }
    void setGlowColor(const QColor& color);
    [[nodiscard]] qreal glowRadius() const { return shown_.glowRadius; }
    void setGlowRadius(qreal radius);

    [[nodiscard]] const GlowTextPicture& picture() const { return *picture_; }

signals:
    void textChanged();
    void fontChanged();
    void looksChanged();

protected:
    void arrange() override;

private:
    void measure();
    void show();

    GlowingText shown_;
    GlowTextPicture* const picture_;
};

} // namespace noctra

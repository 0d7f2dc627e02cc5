#pragma once

#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtQml/qqmlregistration.h>
#include <QtQuick/QQuickPaintedItem>

namespace noctra {

/// An icon out of a PDF file, as large as it fits into the item and in its middle, at the window's
/// resolution. Nothing where there is no such file.
class IconItem : public QQuickPaintedItem {
    Q_OBJECT
    /// The file; empty for none.
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged)
    /// What a template is drawn in. Left unset, the icon keeps its own colours.
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    /// Whether `path` is a file that can be drawn.
    Q_PROPERTY(bool available READ isAvailable NOTIFY availableChanged)
    QML_ELEMENT

public:
    explicit IconItem(QQuickItem* parent = nullptr);

    [[nodiscard]] const QString& path() const { return path_; }
    void setPath(const QString& path);

    [[nodiscard]] const QColor& color() const { return color_; }
    void setColor(const QColor& color);

    [[nodiscard]] bool isAvailable() const { return !icon_.isNull(); }

    void paint(QPainter* painter) override;

signals:
    void pathChanged();
    void colorChanged();
    void availableChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    /// What an icon is drawn for.
    struct Fit {
        double points = 0.0;
        double ratio = 0.0; ///< device pixels to a point

        bool operator==(const Fit&) const = default;
    };

    [[nodiscard]] Fit wantedFit() const;
    void decode();
    void fitIcon();

    QString path_;
    QColor color_;
    QImage icon_; ///< in the file's own colours
    Fit fit_;     ///< what icon_ was drawn for
};

} // namespace noctra

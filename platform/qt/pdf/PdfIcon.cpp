#include "platform/qt/pdf/PdfIcon.h"

#include <cmath>

#include <QtGui/QPainter>
#include <QtPdf/QPdfDocument>

namespace noctra {

namespace {

constexpr double largest = 4096.0; ///< pixels to a side; no icon is that large

bool open(QPdfDocument& document, const QString& path) {
    return document.load(path) == QPdfDocument::Error::None && document.pageCount() > 0;
}

/// In a square of `side` pixels.
QImage draw(QPdfDocument& document, int side) {
    const QSize square(side, side);
    const QSize fitting = document.pagePointSize(0).scaled(square, Qt::KeepAspectRatio).toSize();
    const QImage page = document.render(0, fitting.expandedTo({1, 1}));
    if (page.isNull())
        return {};
    QImage icon(square, QImage::Format_ARGB32_Premultiplied);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    painter.drawImage((icon.width() - page.width()) / 2, (icon.height() - page.height()) / 2, page);
    return icon;
}

} // namespace

QImage drawPdfIcon(const QString& path, double points, double devicePixelRatio) {
    const double side = std::round(points * devicePixelRatio);
    QPdfDocument document;
    if (!(side >= 1.0 && side <= largest) || !open(document, path))
        return {};
    QImage icon = draw(document, static_cast<int>(side));
    if (!icon.isNull())
        icon.setDevicePixelRatio(devicePixelRatio);
    return icon;
}

std::vector<QImage> drawPdfIcons(const QString& path, std::span<const int> sides) {
    std::vector<QImage> icons;
    QPdfDocument document;
    if (!open(document, path))
        return icons;
    for (const int side : sides) {
        icons.push_back(draw(document, side));
        if (icons.back().isNull())
            return {};
    }
    return icons;
}

QImage tinted(const QImage& icon, const QColor& color) {
    if (icon.isNull())
        return {};
    QImage result = icon.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF({}, result.deviceIndependentSize()), color);
    return result;
}

} // namespace noctra

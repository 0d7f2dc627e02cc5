#include "platform/qt/pdf/QtImages.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QtCore/QBuffer>
#include <QtCore/QDateTime>
#include <QtCore/QFileInfo>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtGui/QPixmap>

#include "platform/qt/pdf/PdfIcon.h"

namespace noctra {

namespace {

constexpr double itemPoints = 18.0;
// 18 at 1, 1.5 and 2 pixels to the point; 22, 24 and 32 are the other common heights of items.
constexpr std::array iconSides{18, 22, 24, 27, 32, 36};

/// Draws itself into a square.
class QtPicture : public Picture {
public:
    [[nodiscard]] virtual QImage drawn(int side) const = 0;
};

const QtPicture* pictureOf(const StatusImage& image) {
    return dynamic_cast<const QtPicture*>(image.picture.get());
}

/// Drawn once for all sizes that icons need, so that switching the filter draws nothing anew.
class PdfPicture : public QtPicture {
public:
    explicit PdfPicture(const QString& path)
        : path_(path), images_(drawPdfIcons(path, iconSides)) {}
    [[nodiscard]] bool isDrawn() const { return !images_.empty(); }
    [[nodiscard]] QImage drawn(int side) const override {
        const auto* const known = std::find(iconSides.begin(), iconSides.end(), side);
        return known != iconSides.end()
                   ? images_[static_cast<std::size_t>(known - iconSides.begin())]
                   : drawPdfIcon(path_, side, 1.0);
    }

private:
    QString path_;
    std::vector<QImage> images_;
};

/// A flash of lightning, filled; in a square of 24 units.
class BoltPicture : public QtPicture {
public:
    BoltPicture(const QColor& color, bool bold) : color_(color), bold_(bold) {}
    [[nodiscard]] QImage drawn(int side) const override {
        QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(side / 24.0, side / 24.0);
        QPainterPath bolt(QPointF(14.5, 1.5));
        for (const QPointF& corner : {QPointF(4.5, 13.5), QPointF(11.0, 13.5), QPointF(9.5, 22.5),
                                      QPointF(19.5, 10.0), QPointF(13.0, 10.0)})
            bolt.lineTo(corner);
        bolt.closeSubpath();
        painter.setPen(bold_ ? QPen(color_, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin)
                             : QPen(Qt::NoPen));
        painter.setBrush(color_);
        painter.drawPath(bolt);
        return image;
    }

private:
    QColor color_;
    bool bold_;
};

QColor toQt(const Color& color) {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue), static_cast<float>(color.alpha));
}

/// The picture at its share of an item that is `side` pixels wide, in the middle.
QImage placed(const QtPicture& picture, double points, int side) {
    const int own = std::min(side, static_cast<int>(std::lround(points / itemPoints * side)));
    const QImage image = picture.drawn(std::max(own, 1));
    if (own == side)
        return image;
    QImage whole(side, side, QImage::Format_ARGB32_Premultiplied);
    whole.fill(Qt::transparent);
    QPainter(&whole).drawImage((side - own) / 2, (side - own) / 2, image);
    return whole;
}

} // namespace

std::shared_ptr<const Picture> QtImages::loadPdf(const std::string& path) {
    const QString name = QString::fromStdString(path);
    const QFileInfo info(name);
    const qint64 changed = info.lastModified().toMSecsSinceEpoch();
    auto file = std::find_if(files_.begin(), files_.end(),
                             [&](const File& known) { return known.path == path; });
    if (file == files_.end())
        file = files_.insert(files_.end(), File{path, 0, 0, nullptr});
    if (!file->picture || file->size != info.size() || file->changed != changed) {
        auto picture = std::make_shared<PdfPicture>(name);
        *file = {path, info.size(), changed, picture->isDrawn() ? picture : nullptr};
    }
    return file->picture;
}

std::shared_ptr<const Picture> QtImages::symbol(const SymbolRequest& request) {
    if (request.name != "bolt.fill")
        return nullptr;
    return std::make_shared<BoltPicture>(toQt(request.color.value_or(colors::black)), request.bold);
}

std::optional<std::string> QtImages::png(const StatusImage& image) {
    const QtPicture* const picture = pictureOf(image);
    if (picture == nullptr)
        return std::nullopt;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!picture->drawn(static_cast<int>(std::lround(image.width))).save(&buffer, "PNG"))
        return std::nullopt;
    return bytes.toStdString();
}

QIcon QtImages::icon(const StatusImage& image, const QColor& templateColor) {
    const QtPicture* const picture = pictureOf(image);
    QIcon icon;
    if (picture == nullptr)
        return icon;
    for (const int side : iconSides) {
        QImage drawn = placed(*picture, image.width, side);
        if (image.isTemplate)
            drawn = tinted(drawn, templateColor);
        icon.addPixmap(QPixmap::fromImage(drawn));
    }
    return icon;
}

} // namespace noctra

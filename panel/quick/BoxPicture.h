#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include <QtCore/QPoint>
#include <QtCore/QRect>
#include <QtGui/QImage>

#include "foundation/Color.h"
#include "panel/Layer.h"
#include "panel/quick/SoftShadow.h"

class QPainter;

namespace noctra {

/// One stroke of a BoxPicture; lengths in device pixels.
struct PixelBox {
    enum class Kind { fill, border, shadow };

    Kind kind = Kind::fill;
    Color color = colors::clear;
    std::optional<LayerGradient> gradient = std::nullopt; ///< over the colour

    // A fill or a border:
    QRect rect = {};
    double radius = 0.0;
    int width = 0; ///< of a border, inwards from the rectangle

    // The shadow of the boxes first to last - 1, which come after it or are shadows themselves:
    std::size_t first = 0;
    std::size_t last = 0;
    double sigma = 0.0;
    QPoint offset = {};

    friend bool operator==(const PixelBox&, const PixelBox&) = default;
};

/// Draws boxes with round corners, gradients, borders and shadows, from back to front. The blurred
/// mask of a shadow is kept until the shape that casts it changes.
class BoxPicture {
public:
    [[nodiscard]] const std::vector<PixelBox>& boxes() const { return boxes_; }
    /// Takes over `boxes`, and leaves there the ones that it had. A shadow must not cast itself.
    void swapBoxes(std::vector<PixelBox>& boxes) { boxes_.swap(boxes); }

    /// What is drawn on, blurs included.
    [[nodiscard]] QRect bounds() const;
    void paint(QPainter& painter);

private:
    struct Mask {
        std::vector<PixelBox> shape; ///< what it is the mask of, without its colours
        double sigma = 0.0;
        QRect area;
        QImage image;
    };

    [[nodiscard]] QRect areaOf(const PixelBox& box) const;
    void paintBox(QPainter& painter, std::size_t index);
    Mask& maskOf(std::size_t shadow);

    std::vector<PixelBox> boxes_;
    std::vector<Mask> masks_; ///< by the index of the shadow
    SoftShadow shadow_;
};

} // namespace noctra

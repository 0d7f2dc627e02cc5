#pragma once

#include <memory>
#include <optional>
#include <string>

#include "foundation/Color.h"

namespace noctra {

/// A picture in the form that the desktop's image service keeps it in.
class Picture {
public:
    virtual ~Picture() = default;
};

/// A picture with how it is to be shown.
struct StatusImage {
    std::shared_ptr<const Picture> picture;
    double width = 0.0;      ///< in points
    double height = 0.0;     ///< in points
    bool isTemplate = false; ///< only its coverage counts: the desktop colours it to suit what is
                             ///< around it
    std::string description = {}; ///< for assistive technology
};

/// One of the desktop's own symbols.
struct SymbolRequest {
    std::string name;
    double pointSize = 0.0;
    bool bold = false;
    std::optional<Color> color = std::nullopt; ///< nothing: black, as templates are
};

/// Makes pictures. Main thread.
class Images {
public:
    virtual ~Images() = default;

    /// The first page of a PDF file; null where the file cannot be drawn.
    [[nodiscard]] virtual std::shared_ptr<const Picture> loadPdf(const std::string& path) = 0;
    /// Null where the desktop has no such symbol.
    [[nodiscard]] virtual std::shared_ptr<const Picture> symbol(const SymbolRequest& request) = 0;
    /// A PNG file with `image` at one pixel to the point, in its own colours also where it is a
    /// template; nothing where it cannot be made.
    [[nodiscard]] virtual std::optional<std::string> png(const StatusImage& image) = 0;
};

} // namespace noctra

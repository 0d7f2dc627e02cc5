#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace noctra {

/// By what a font is asked for when text is drawn.
struct FontFace {
    std::string family;
    int weight = 400; ///< 100 (thin) to 900 (black), 400 is regular

    friend bool operator==(const FontFace&, const FontFace&) = default;
};

/// The fonts that this process can draw with. Main thread.
class Fonts {
public:
    virtual ~Fonts() = default;

    /// Adds the font file at `path` for this process alone, until it ends; false where there is no
    /// such file or no font in it.
    virtual bool registerFont(const std::string& path) = 0;

    /// The registered font with the PostScript name `name`, as in "Anybody-ExtraBold".
    [[nodiscard]] virtual std::optional<FontFace> find(std::string_view name) const = 0;

    /// The family of the desktop's general font; the user may change it at any time.
    [[nodiscard]] virtual std::string systemFamily() const = 0;
    /// The family of the desktop's monospaced font, likewise.
    [[nodiscard]] virtual std::string fixedFamily() const = 0;
};

} // namespace noctra

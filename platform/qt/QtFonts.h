#pragma once

#include <functional>
#include <map>
#include <string>

#include "platform/Fonts.h"

namespace noctra {

/// Fonts as Qt finds and draws them. The program's QGuiApplication exists as long as the object.
///
/// Qt does not look fonts up by PostScript name; the names of what is registered are read from the
/// files. Qt itself gets a file when its font is first looked for: its font database costs a
/// program 2 MB, which one that shows no text yet does without.
class QtFonts : public Fonts {
public:
    bool registerFont(const std::string& path) override;
    [[nodiscard]] std::optional<FontFace> find(std::string_view name) const override;
    [[nodiscard]] std::string systemFamily() const override;
    [[nodiscard]] std::string fixedFamily() const override;

private:
    struct Registered {
        std::string file;
        int weight = 400;
        std::string family; ///< empty until Qt has the file
    };
    mutable std::map<std::string, Registered, std::less<>> fonts_; ///< by PostScript name
};

} // namespace noctra

#pragma once

#include <functional>
#include <map>
#include <string>

#include "platform/Fonts.h"

namespace noctra {

/// Fonts as Qt finds and draws them. The program's QGuiApplication exists as long as the object.
///
/// Qt does not look fonts up by PostScript name; the names of what is registered are read from the
/// files.
class QtFonts : public Fonts {
public:
    bool registerFont(const std::string& path) override;
    [[nodiscard]] std::optional<FontFace> find(std::string_view name) const override;
    [[nodiscard]] std::string systemFamily() const override;
    [[nodiscard]] std::string fixedFamily() const override;

private:
    std::map<std::string, FontFace, std::less<>> faces_; ///< by PostScript name
};

} // namespace noctra

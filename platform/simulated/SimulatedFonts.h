#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/Fonts.h"

namespace noctra {

class SimulatedFonts : public Fonts {
public:
    struct File {
        std::string name; ///< PostScript name
        FontFace face;
    };
    std::map<std::string, File> files;   ///< good font files by path
    std::vector<std::string> registered; ///< paths asked for, in order

    bool registerFont(const std::string& path) override {
        registered.push_back(path);
        const auto file = files.find(path);
        if (file == files.end())
            return false;
        faces_[file->second.name] = file->second.face;
        return true;
    }
    [[nodiscard]] std::optional<FontFace> find(std::string_view name) const override {
        const auto face = faces_.find(name);
        return face == faces_.end() ? std::nullopt : std::optional(face->second);
    }
    [[nodiscard]] std::string systemFamily() const override { return "System"; }
    [[nodiscard]] std::string fixedFamily() const override { return "Monospaced"; }

private:
    std::map<std::string, FontFace, std::less<>> faces_;
};

} // namespace noctra

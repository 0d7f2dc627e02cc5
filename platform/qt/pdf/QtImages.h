#pragma once

#include <QtGui/QColor>
#include <QtGui/QIcon>

#include "platform/Images.h"

namespace noctra {

/// Pictures that Qt draws: pages of PDF files, and the one symbol that the program asks for. Main
/// thread; needs a QGuiApplication.
class QtImages : public Images {
public:
    /// Draws the file anew only where it is another one than the last time, by path, size and time
    /// of change.
    [[nodiscard]] std::shared_ptr<const Picture> loadPdf(const std::string& path) override;
    [[nodiscard]] std::shared_ptr<const Picture> symbol(const SymbolRequest& request) override;
    [[nodiscard]] std::optional<std::string> png(const StatusImage& image) override;

    /// `image`, made by a QtImages, as an icon for status bars whose items are 18 points wide: at
    /// 1, 1.5 and 2 pixels to the point, and at the sizes that bars on Linux commonly have. A
    /// template comes in `templateColor`.
    [[nodiscard]] static QIcon icon(const StatusImage& image, const QColor& templateColor);

private:
    struct File {
        std::string path;
        qint64 size = 0;
        qint64 changed = 0; ///< ms since 1970
        std::shared_ptr<const Picture> picture;
    };
    std::vector<File> files_; ///< one for each path: two icons
};

} // namespace noctra

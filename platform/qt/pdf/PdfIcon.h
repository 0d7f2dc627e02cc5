#pragma once

#include <span>
#include <vector>

#include <QtCore/QString>
#include <QtGui/QColor>
#include <QtGui/QImage>

namespace noctra {

// Icons that are drawn in PDF files. Main thread.

/// Draws the first page of the file at `path`, as large as it fits into a square of `points`
/// (device-independent pixels) and in its middle, on a transparent ground. The image has
/// round(points * devicePixelRatio) pixels to a side, and that ratio. Null where the file cannot be
/// read or is no PDF document, or where not one pixel would be left.
///
/// Each time that Qt 6.4 cannot read a file it loses about 1.4 kB: do not retry without end.
QImage drawPdfIcon(const QString& path, double points, double devicePixelRatio);

/// The same as images of these `sides`, in pixels from 1 to 4096, with the file opened once. Empty
/// where one of them cannot be drawn.
std::vector<QImage> drawPdfIcons(const QString& path, std::span<const int> sides);

/// `icon` as a template: its coverage kept, its colours replaced by `color`, whose opacity counts
/// too.
QImage tinted(const QImage& icon, const QColor& color);

} // namespace noctra

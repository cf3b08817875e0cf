#pragma once

#include <QImage>
#include <QUrl>

// Pictures read from files for the preferences window, never larger than they need to be.
namespace NSImageThumbnailExtensions {

// The picture in the file, scaled down to exactly width points wide with its aspect ratio
// kept; a picture narrower than width keeps its size. A null picture when the file cannot be
// read. A scaled picture is described by the file's name without its extension.
QImage iteThumbnailImageWithContentsOfURL(const QUrl &url, qreal width);

} // namespace NSImageThumbnailExtensions

#pragma once

#include <QImage>
#include <QSize>
#include <QSizeF>

// The fully transparent canvas every drawn picture of the application starts from.
namespace EVTransparentPicture {

// The whole-pixel size a requested size in points gives: rounded, and empty for sizes that are
// not finite, not positive, or beyond what any widget or banner could need.
QSize pixelSize(const QSizeF &size);

// A transparent premultiplied-ARGB picture of that size; a null image when the size is empty.
QImage ofSize(const QSizeF &size);

} // namespace EVTransparentPicture

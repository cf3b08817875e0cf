#pragma once

#include <QByteArray>
#include <QImage>

// Pictures as the application stores them.
namespace EVImageData {

// The picture as TIFF data; null for a null picture or when it cannot be encoded.
QByteArray tiffRepresentation(const QImage &image);

} // namespace EVImageData

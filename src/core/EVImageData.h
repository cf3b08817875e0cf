#pragma once

#include <QByteArray>
#include <QImage>

// Pictures as the application stores them.
namespace EVImageData {

// The picture as TIFF data; null for a null picture or when it cannot be encoded.
QByteArray tiffRepresentation(const QImage &image);

// The picture the data holds; a null picture for data that holds none. Callers asking for the
// same data while an earlier answer is still in use share one decoded picture: every widget
// keeps its icon, and most widgets show the same one. Main thread only.
QImage sharedImage(const QByteArray &data);

} // namespace EVImageData

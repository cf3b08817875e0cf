#pragma once

#include <QByteArray>
#include <QIcon>
#include <QImage>
#include <QString>

// The application's own pictures, looked up by name ("clock", ...), drawn from the artwork
// compiled into the program.
namespace EVAppImage {

// The named picture at its natural size; a null image for an unknown name.
QImage named(const QString &name);

// The named picture as an icon; vector artwork is drawn afresh at every size asked for.
QIcon icon(const QString &name);

// The application's own icon, drawn afresh at every size.
QIcon applicationIcon();

// The named picture as TIFF data, made once per process.
QByteArray tiffDataNamed(const QString &name);

} // namespace EVAppImage

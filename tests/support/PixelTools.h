#pragma once

#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>

// The share of a picture's pixels that stand out from a panel colour by at least half the grey
// scale: how well a picture reads on that panel.
inline double contrastingShare(const QImage &image, const QColor &panel)
{
    int standing = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAbs(qGray(image.pixel(x, y)) - qGray(panel.rgb())) >= 128)
                ++standing;
        }
    }
    return double(standing) / (image.width() * image.height());
}

// Writes a picture of one colour and the given size into the folder, in the format its name's
// suffix asks for; its path.
inline QString pictureFile(const QString &folder, const QString &name, const QSize &size,
                           const QColor &color = Qt::red)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(color);
    const QString path = folder + QLatin1Char('/') + name;
    if (!picture.save(path))
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

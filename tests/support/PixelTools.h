#pragma once

#include <QColor>
#include <QImage>

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

#pragma once

#include <QPainter>

#include <cmath>

namespace EVPaintScale {

// How many device pixels one point covers where the painter draws. The device transform holds
// the pixel ratio of the device that is really painted on, which for a widget rendered into a
// picture is the picture's, not the widget's.
inline double devicePixelsPerPoint(const QPainter &painter)
{
    const QTransform &device = painter.deviceTransform();
    return std::sqrt(std::abs(device.m11() * device.m22() - device.m12() * device.m21()));
}

} // namespace EVPaintScale

#pragma once

#include <QPaintDevice>
#include <QPainter>

#include <cmath>

namespace EVPaintScale {

// How many device pixels one point covers where the painter draws: the device's pixel ratio
// times the scale of the painter's own transform.
inline double devicePixelsPerPoint(const QPainter &painter)
{
    const QTransform &world = painter.worldTransform();
    const double worldScale =
        std::sqrt(std::abs(world.m11() * world.m22() - world.m12() * world.m21()));
    return painter.device()->devicePixelRatioF() * worldScale;
}

} // namespace EVPaintScale

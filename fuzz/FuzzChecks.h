#pragma once

#include "platform/EVMainScreen.h"

#include <QRectF>

#include <cmath>
#include <cstdlib>

// Ends the run when a property of what was read does not hold; libFuzzer keeps the input.
inline void require(bool condition)
{
    if (!condition)
        std::abort();
}

// A widget frame as the store hands it out: none, or one a window can be made of.
inline bool isNoneOrWindowFrame(const QRectF &frame)
{
    const QSizeF screen = EVMainScreen::frame().size();
    return frame.isNull() || (std::isfinite(frame.x()) && std::isfinite(frame.y()) &&
                              frame.width() > 0.0 && frame.width() <= 4.0 * screen.width() &&
                              frame.height() > 0.0 && frame.height() <= 4.0 * screen.height());
}

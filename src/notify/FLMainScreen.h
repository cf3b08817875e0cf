#pragma once

#include <QRectF>

// The screen that banners stack on.
namespace FLMainScreen {

// The primary screen's rectangle on the desktop; an empty rectangle at (0, 0) when there is no
// screen, so that positions are then computed from zeros.
QRectF frame();

} // namespace FLMainScreen

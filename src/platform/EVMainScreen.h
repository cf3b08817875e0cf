#pragma once

#include <QList>
#include <QRectF>

// The main screen: widget frames are kept as fractions of it and banners stack on it.
namespace EVMainScreen {

// The primary screen's rectangle on the desktop; an empty rectangle at (0, 0) when there is no
// screen, so that positions are then computed from zeros.
QRectF frame();

// The rectangles of every screen on the desktop; none when there is no screen.
QList<QRectF> everyScreenFrame();

} // namespace EVMainScreen

#pragma once

#include <QImage>
#include <QMarginsF>
#include <QRectF>

// Stretching pictures whose corners and edges must not be distorted. The source is cut into
// parts, each part is scaled to exactly the slot it fills and placed there once, so that edges
// and centre are stretched, never tiled. Sizes are in the source's pixels.
namespace NSImageStretchable {

// Nine-part stretching. Cuts image into a 3 x 3 grid by edgeInsets (left, top, right, bottom
// border widths) and returns a new picture of rect's size in which the four corners keep their
// size, the top and bottom edges stretch across, the left and right edges stretch down, and the
// centre fills the rest. The parts are placed in the frame of rect, origin included: pass a rect
// at (0, 0) for a plain stretch; any other origin shifts the parts and cuts them at the
// picture's edges. Parts of no size, as when the insets exceed the rect, are left out.
// Example, a panel with 30-pixel borders: drawStretchableInRect(panel, QRectF(0, 0, w, h),
// QMarginsF(30, 30, 30, 30)).
QImage drawStretchableInRect(const QImage &image, const QRectF &rect, const QMarginsF &edgeInsets);

// Three-part stretching of a horizontal strip: the leftmost leftCapWidth and rightmost
// rightCapWidth pixels of strip stay as they are at the two ends of the result, and what lies
// between them is stretched to middleWidth. The result is leftCapWidth + middleWidth +
// rightCapWidth wide and as high as strip; null when that width is not positive. Parts that
// are not positive in width are left out.
QImage image(const QImage &strip, float leftCapWidth, float middleWidth, float rightCapWidth);

} // namespace NSImageStretchable

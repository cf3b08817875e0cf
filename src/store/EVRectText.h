#pragma once

#include <QRectF>
#include <QString>

// The text form of a rectangle, "{{x, y}, {w, h}}", with each number written in the shortest
// form that reads back to the same double.
namespace EVRectText {

QString fromRect(const QRectF &rect);

// Reads the four numbers in order; a number that is missing reads as 0.
QRectF toRect(const QString &text);

} // namespace EVRectText

#pragma once

#include <QPointF>
#include <QRectF>
#include <QString>

// The text form of a rectangle, "{{x, y}, {w, h}}", and of a point, "{x, y}", with each number
// written in the shortest form that reads back to the same double.
namespace EVRectText {

QString fromRect(const QRectF &rect);

// Reads the four numbers in order; a number that is missing reads as 0.
QRectF toRect(const QString &text);

QString fromPoint(const QPointF &point);
QPointF toPoint(const QString &text);

} // namespace EVRectText

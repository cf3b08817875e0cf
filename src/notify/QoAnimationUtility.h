#pragma once

#include <QPointF>

class QWidget;

// Helpers for animating views through their layers (FLViewLayer).
class QoAnimationUtility
{
public:
    // Moves the anchor point of the view's layer to anchorPoint (in fractions of the view's
    // size) without moving the layer on screen. A view without a layer is left alone.
    static void setAnchorPoint(const QPointF &anchorPoint, QWidget *view);
};

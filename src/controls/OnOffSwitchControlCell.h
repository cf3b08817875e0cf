#pragma once

#include <QColor>
#include <QFont>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>

class QMouseEvent;
class QPainter;
class QWidget;

// Draws an on/off switch and decides what a press, a drag and a release of its thumb mean.
// It holds the button state (off, on, mixed) and the switch's looks; the widget that shows it
// (OnOffSwitchControl) hands it the painter, its frame and the mouse positions, and advances
// the state after a release inside, as any button does.
//
// Frames and points are in the view's coordinates (y grows downwards).
class OnOffSwitchControlCell
{
public:
    enum State : int { MixedState = -1, OffState = 0, OnState = 1 };

    // The standard text size follows it: 13, 11 and 9 points.
    enum ControlSize { RegularControlSize, SmallControlSize, MiniControlSize };

    enum FocusRingType {
        FocusRingTypeDefault = 0,
        FocusRingTypeNone = 1,
        FocusRingTypeExterior = 2
    };

    // What a point hits, as flags.
    enum HitTest : unsigned { CellHitNone = 0, CellHitContentArea = 1, CellHitTrackableArea = 4 };

    // The colour schemes that onOffSwitchControlColors selects; any other value tints nothing.
    enum ColorScheme : int {
        CustomColors = 1,
        BlueColors = 2,
        GreenRedColors = 3,
        BlueRedColors = 4,
    };

    // A drag keeps tracking when the pointer leaves the switch, until the button goes up.
    static bool prefersTrackingUntilMouseUp() { return true; }
    static FocusRingType defaultFocusRingType() { return FocusRingTypeExterior; }

    // Button state. Like every button, a positive value counts as on, and mixed counts as on
    // while the mixed state is not allowed.
    int state() const { return m_state; }
    void setState(int value);
    bool allowsMixedState() const { return m_allowsMixedState; }
    void setAllowsMixedState(bool allowsMixedState);
    // The state a button advances to from the current one: off, then mixed when allowed, then
    // on, then off again.
    int nextState() const;
    void setNextState() { m_state = nextState(); }

    ControlSize controlSize() const { return m_controlSize; }
    void setControlSize(ControlSize controlSize) { m_controlSize = controlSize; }
    FocusRingType focusRingType() const { return m_focusRingType; }
    void setFocusRingType(FocusRingType focusRingType) { m_focusRingType = focusRingType; }

    bool showsOnOffLabels() const { return m_showsOnOffLabels; }
    void setShowsOnOffLabels(bool showsOnOffLabels) { m_showsOnOffLabels = showsOnOffLabels; }
    int onOffSwitchControlColors() const { return m_onOffSwitchControlColors; }
    void setOnOffSwitchControlColors(int scheme) { m_onOffSwitchControlColors = scheme; }
    QColor customOnColor() const { return m_customOnColor; }
    void setCustomOnColor(const QColor &color) { m_customOnColor = color; }
    QColor customOffColor() const { return m_customOffColor; }
    void setCustomOffColor(const QColor &color) { m_customOffColor = color; }
    // Sets both custom colours; the scheme stays as it is.
    void setOnOffSwitchCustomOnColor(const QColor &onColor, const QColor &offColor);
    QString onSwitchLabel() const { return m_onSwitchLabel; }
    void setOnSwitchLabel(const QString &label) { m_onSwitchLabel = label; }
    QString offSwitchLabel() const { return m_offSwitchLabel; }
    void setOffSwitchLabel(const QString &label) { m_offSwitchLabel = label; }

    double clickTimeout() const { return m_clickTimeout; }
    QSizeF maxDist() const { return m_maxDist; }
    bool isTracking() const { return m_tracking; }

    QRectF thumbRectInFrame(const QRectF &cellFrame) const;
    double centerXForThumbWithFrame(const QRectF &cellFrame) const;

    // The bold label font at the standard size for the control size.
    QFont labelFont() const;

    // Drawing. The view supplies what a button knows of itself: enabled, focused.
    void drawWithFrame(QPainter &painter, const QRectF &cellFrame, const QWidget *view);
    void drawInteriorWithFrame(QPainter &painter, const QRectF &cellFrame, const QWidget *view);
    void tintBackgroundWithFrame(QPainter &painter, const QRectF &cellFrame) const;
    void drawText(QPainter &painter, const QString &text, const QRectF &box) const;

    // Mouse. The cell tracks only in a button, the kind of view that drives it.
    unsigned hitTestForEvent(const QMouseEvent &event, const QRectF &cellFrame,
                             const QWidget *view) const;
    bool startTrackingAt(const QPointF &startPoint, const QWidget *view);
    bool continueTracking(const QPointF &currentPoint, QWidget *view);
    void stopTracking(const QPointF &stopPoint, const QWidget *view);

private:
    struct SchemeColors
    {
        QColor on;
        QColor off;
    };
    // Both colours of the scheme, or two invalid colours when the scheme lacks either.
    SchemeColors schemeColors() const;

    int m_state = OffState;
    bool m_allowsMixedState = false;
    ControlSize m_controlSize = RegularControlSize;
    FocusRingType m_focusRingType = defaultFocusRingType();

    bool m_tracking = false;
    QPointF m_initialTrackingPoint;
    QPointF m_trackingPoint;
    double m_initialTrackingTime = 0.0;
    double m_trackingTime = 0.0;
    QRectF m_trackingCellFrame;
    double m_trackingThumbCenterX = 0.0;

    bool m_showsOnOffLabels = true;
    int m_onOffSwitchControlColors = BlueColors;
    QColor m_customOnColor;
    QColor m_customOffColor;
    QString m_onSwitchLabel = QStringLiteral("ON");
    QString m_offSwitchLabel = QStringLiteral("OFF");
    double m_clickTimeout = 1.0 / 3.0;
    QSizeF m_maxDist = QSizeF(6.0, 6.0);
};

#pragma once

#include "controls/OnOffSwitchControlCell.h"

#include <QAbstractButton>

// A sliding on/off switch. It is a button in every other respect: it has a state (off 0, on 1,
// mixed -1 when the mixed state is allowed), a click toggles it, a drag of the thumb sets it by
// where the thumb is let go, and the left and right arrow keys move it.
//
// The action is clicked(): sent exactly once for a click or a drag that ends on the switch (and
// for the space bar), never for the arrow keys, which only change the state. stateChanged()
// reports every change of the state, whatever made it. isChecked() is true exactly when the
// switch is on.
class OnOffSwitchControl : public QAbstractButton
{
    Q_OBJECT
    Q_PROPERTY(int state READ state WRITE setState NOTIFY stateChanged)
    Q_PROPERTY(bool allowsMixedState READ allowsMixedState WRITE setAllowsMixedState)
    Q_PROPERTY(bool showsOnOffLabels READ showsOnOffLabels WRITE setShowsOnOffLabels)
    Q_PROPERTY(int onOffSwitchControlColors READ onOffSwitchControlColors WRITE
                   setOnOffSwitchControlColors)
    Q_PROPERTY(QColor customOnColor READ customOnColor WRITE setCustomOnColor)
    Q_PROPERTY(QColor customOffColor READ customOffColor WRITE setCustomOffColor)
    Q_PROPERTY(QString onSwitchLabel READ onSwitchLabel WRITE setOnSwitchLabel)
    Q_PROPERTY(QString offSwitchLabel READ offSwitchLabel WRITE setOffSwitchLabel)

public:
    explicit OnOffSwitchControl(QWidget *parent = nullptr);

    int state() const { return m_cell.state(); }
    void setState(int state);
    bool allowsMixedState() const { return m_cell.allowsMixedState(); }
    void setAllowsMixedState(bool allowsMixedState);

    bool showsOnOffLabels() const { return m_cell.showsOnOffLabels(); }
    void setShowsOnOffLabels(bool showsOnOffLabels);
    int onOffSwitchControlColors() const { return m_cell.onOffSwitchControlColors(); }
    void setOnOffSwitchControlColors(int scheme);
    QColor customOnColor() const { return m_cell.customOnColor(); }
    void setCustomOnColor(const QColor &color);
    QColor customOffColor() const { return m_cell.customOffColor(); }
    void setCustomOffColor(const QColor &color);
    QString onSwitchLabel() const { return m_cell.onSwitchLabel(); }
    void setOnSwitchLabel(const QString &label);
    QString offSwitchLabel() const { return m_cell.offSwitchLabel(); }
    void setOffSwitchLabel(const QString &label);
    OnOffSwitchControlCell::ControlSize controlSize() const { return m_cell.controlSize(); }
    void setControlSize(OnOffSwitchControlCell::ControlSize controlSize);

    // The cell that draws the switch and reads its drags; whoever changes its looks directly
    // calls update() afterwards.
    OnOffSwitchControlCell &cell() { return m_cell; }
    const OnOffSwitchControlCell &cell() const { return m_cell; }

    // Wide enough for each label to show beside the thumb in full.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void stateChanged(int state);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void nextCheckState() override;
    void checkStateSet() override;

private:
    void moveByArrowKey(bool towardsOn);
    // Tells the button base and observers about the cell's state, and redraws.
    void publishState();

    OnOffSwitchControlCell m_cell;
    int m_publishedState = OnOffSwitchControlCell::OffState;
    int m_stateAtPress = OnOffSwitchControlCell::OffState;
    bool m_publishing = false;
};

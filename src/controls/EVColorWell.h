#pragma once

#include <QColor>
#include <QPushButton>

// A button that shows a colour and lets the user choose another one in the colour dialog.
class EVColorWell : public QPushButton
{
    Q_OBJECT
    Q_PROPERTY(QColor color READ color WRITE setColor)

public:
    explicit EVColorWell(QWidget *parent = nullptr);

    QColor color() const { return m_color; }
    // Shows the colour without sending colorActivated().
    void setColor(const QColor &color);

    // Opens the colour dialog for this well alone; a chosen colour is shown and sent with
    // colorActivated().
    void activate();

    QSize sizeHint() const override;

Q_SIGNALS:
    // The user chose a colour.
    void colorActivated(const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_color = Qt::black;
};

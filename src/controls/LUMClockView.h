#pragma once

#include <QTime>
#include <QWidget>

// A round clock face that shows a time of day with its hour, minute and second hands.
class LUMClockView : public QWidget
{
    Q_OBJECT

public:
    explicit LUMClockView(QWidget *parent = nullptr);

    QTime time() const { return m_time; }
    void setTime(const QTime &time);

    QSize sizeHint() const override { return QSize(96, 96); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QTime m_time = QTime(0, 0);
};

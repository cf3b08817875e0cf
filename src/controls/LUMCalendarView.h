#pragma once

#include <QDate>
#include <QWidget>

// A month calendar small enough for a popover: the month's name between two arrows, the
// initials of the weekdays, and six weeks of days. A click or an arrow key picks a day.
class LUMCalendarView : public QWidget
{
    Q_OBJECT

public:
    static constexpr int headerHeight = 20;
    static constexpr int weekdayHeight = 14;
    static constexpr int weeks = 6;

    explicit LUMCalendarView(QWidget *parent = nullptr);

    QDate selectedDate() const { return m_selectedDate; }
    // Selects the date and shows its month; sends nothing.
    void setSelectedDate(const QDate &date);

    int shownYear() const { return m_shownMonth.year(); }
    int shownMonth() const { return m_shownMonth.month(); }
    void showMonth(int year, int month);

    // Where the day's cell is on the page shown now; empty when the page does not show it.
    QRect dayRect(const QDate &date) const;
    QRect previousMonthRect() const;
    QRect nextMonthRect() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    // The user picked a day; it is selected now.
    void clicked(const QDate &date);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    QDate firstShownDate() const;
    QRectF cellRect(int index) const;
    QDate dateAt(const QPoint &point) const;
    void pick(const QDate &date);

    QDate m_selectedDate;
    // The first day of the month on the page.
    QDate m_shownMonth;
};

#pragma once

#include <QDateTime>
#include <QWidget>

class LUMCalendarView;
class LUMClockView;
class QTimeEdit;

// A date picker drawn as a calendar, with a clock and a time editor to the right of it that
// come into view when the picker is made wide enough. It draws no background of its own.
class LUMGraphicalDatePicker : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(
        QDateTime dateValue READ dateValue WRITE setDateValue NOTIFY dateValueChanged USER true)

public:
    // The calendar's width; whatever the picker has beyond it shows the clock.
    static constexpr int calendarWidth = 139;

    explicit LUMGraphicalDatePicker(QWidget *parent = nullptr);

    QDateTime dateValue() const { return m_dateValue; }
    // Shows the date and time; sends nothing.
    void setDateValue(const QDateTime &value);

    LUMCalendarView *calendar() const { return m_calendar; }
    LUMClockView *clock() const { return m_clock; }
    QTimeEdit *timeEditor() const { return m_timeEditor; }
    // Whether the picker is wide enough to show the clock.
    bool isClockShown() const;

Q_SIGNALS:
    // The user picked a day or changed the time.
    void dateValueChanged(const QDateTime &value);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void onDayPicked(const QDate &date);
    void onTimeEdited(const QTime &time);
    void showValue();

    QDateTime m_dateValue = QDateTime::currentDateTime();
    LUMCalendarView *m_calendar;
    LUMClockView *m_clock;
    QTimeEdit *m_timeEditor;
    bool m_showing = false;
};

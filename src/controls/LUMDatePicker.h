#pragma once

#include <QDateTime>
#include <QDateTimeEdit>
#include <QSize>

class LUMDatePickerController;
class LUMDatePickerDelegate;
class LUMPopover;
class QToolButton;

// A date field with a small calendar button at its right end. The button opens a popover with
// a calendar, and with a clock when the field shows the time of day. Every pick in the popover
// changes the field at once and sends its action, as typing in the field does.
class LUMDatePicker : public QDateTimeEdit
{
    Q_OBJECT

public:
    // Which parts of a date the field shows, as flags that add up.
    enum Element {
        HourMinuteElement = 0x000c,
        HourMinuteSecondElement = 0x000e,
        TimeZoneElement = 0x0010,
        YearMonthElement = 0x00c0,
        YearMonthDayElement = 0x00e0,
        EraElement = 0x0100,
    };
    // Any of these makes the popover show the clock.
    static constexpr int timeElementsMask = 14;
    static constexpr QSize calendarButtonSize{16, 16};
    // The button keeps this much room between it and the field's right end.
    static constexpr int calendarButtonRightMargin = 18;
    static constexpr QSize calendarPopoverSize{180, 180};
    static constexpr QSize clockPopoverSize{320, 180};

    explicit LUMDatePicker(QWidget *parent = nullptr);
    ~LUMDatePicker() override;

    int datePickerElements() const { return m_elements; }
    // Shows the parts the flags name: year, month and day, and hours, minutes and seconds.
    void setDatePickerElements(int elements);

    QDateTime dateValue() const { return dateTime(); }
    // Shows the date; sends nothing.
    void setDateValue(const QDateTime &value);
    QDateTime dateValueExt() const { return dateValue(); }
    // Shows the date, then sends the field's action.
    void setDateValueExt(const QDateTime &value);

    LUMDatePickerController *controller() const { return m_controller; }
    LUMPopover *popover() const { return m_popover; }
    QToolButton *calendarButton() const { return m_calendarButton; }

    LUMDatePickerDelegate *delegate() const { return m_delegate; }
    // Not owned; asked before the popover opens.
    void setDelegate(LUMDatePickerDelegate *delegate) { m_delegate = delegate; }

    Qt::Edge preferredPopoverEdge() const { return m_preferredPopoverEdge; }
    void setPreferredPopoverEdge(Qt::Edge edge) { m_preferredPopoverEdge = edge; }

public Q_SLOTS:
    // Opens the popover on the field's date, unless the delegate objects.
    void showPopover();

Q_SIGNALS:
    // The field's action: the user changed the date, in the field or in the popover.
    void activated();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void placeCalendarButton();
    void onDateTimeChanged();

    LUMDatePickerController *m_controller;
    LUMPopover *m_popover;
    QToolButton *m_calendarButton;
    LUMDatePickerDelegate *m_delegate = nullptr;
    Qt::Edge m_preferredPopoverEdge = Qt::RightEdge;
    int m_elements = YearMonthDayElement;
    // Set while the date is shown rather than changed by the user.
    bool m_showingValue = false;
};

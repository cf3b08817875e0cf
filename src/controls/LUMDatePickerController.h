#pragma once

#include <QRect>
#include <QWidget>

class LUMGraphicalDatePicker;

// What the date field's popover holds: a graphical date picker, on its own or with its clock.
class LUMDatePickerController : public QWidget
{
    Q_OBJECT

public:
    // The view and its picker, with and without the clock.
    static constexpr QRect calendarViewFrame{0, 0, 180, 180};
    static constexpr QRect calendarPickerFrame{22, 15, 139, 148};
    static constexpr QRect clockViewFrame{0, 0, 320, 180};
    static constexpr QRect clockPickerFrame{22, 15, 280, 148};

    explicit LUMDatePickerController(QWidget *parent = nullptr);

    LUMGraphicalDatePicker *datePicker() const { return m_datePicker; }
    void setShowDatePickerClock(bool show);

private:
    LUMGraphicalDatePicker *m_datePicker;
};

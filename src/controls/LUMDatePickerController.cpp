#include "controls/LUMDatePickerController.h"

#include "controls/LUMGraphicalDatePicker.h"

LUMDatePickerController::LUMDatePickerController(QWidget *parent)
    : QWidget(parent)
    , m_datePicker(new LUMGraphicalDatePicker(this))
{
    m_datePicker->setObjectName(QStringLiteral("datePicker"));
    setShowDatePickerClock(false);
}

void LUMDatePickerController::setShowDatePickerClock(bool show)
{
    const QRect view = show ? clockViewFrame : calendarViewFrame;
    setFixedSize(view.size());
    m_datePicker->setGeometry(show ? clockPickerFrame : calendarPickerFrame);
}

#include "controls/LUMGraphicalDatePicker.h"

#include "controls/LUMCalendarView.h"
#include "controls/LUMClockView.h"

#include <QTimeEdit>

LUMGraphicalDatePicker::LUMGraphicalDatePicker(QWidget *parent)
    : QWidget(parent)
    , m_calendar(new LUMCalendarView(this))
    , m_clock(new LUMClockView(this))
    , m_timeEditor(new QTimeEdit(this))
{
    m_calendar->setObjectName(QStringLiteral("calendar"));
    m_clock->setObjectName(QStringLiteral("clock"));
    m_timeEditor->setObjectName(QStringLiteral("timeEditor"));
    m_timeEditor->setDisplayFormat(QStringLiteral("HH:mm:ss"));
    m_timeEditor->setAlignment(Qt::AlignCenter);
    m_timeEditor->setWrapping(true);
    connect(m_calendar, &LUMCalendarView::clicked, this, &LUMGraphicalDatePicker::onDayPicked);
    connect(m_timeEditor, &QTimeEdit::timeChanged, this, &LUMGraphicalDatePicker::onTimeEdited);
    showValue();
}

void LUMGraphicalDatePicker::setDateValue(const QDateTime &value)
{
    if (!value.isValid())
        return;
    m_dateValue = value;
    showValue();
}

void LUMGraphicalDatePicker::showValue()
{
    // Showing the value is not the user changing it.
    m_showing = true;
    m_calendar->setSelectedDate(m_dateValue.date());
    m_clock->setTime(m_dateValue.time());
    m_timeEditor->setTime(m_dateValue.time());
    m_showing = false;
}

bool LUMGraphicalDatePicker::isClockShown() const
{
    return m_clock->isVisibleTo(this);
}

void LUMGraphicalDatePicker::onDayPicked(const QDate &date)
{
    m_dateValue.setDate(date);
    Q_EMIT dateValueChanged(m_dateValue);
}

void LUMGraphicalDatePicker::onTimeEdited(const QTime &time)
{
    m_clock->setTime(time);
    if (m_showing)
        return;
    m_dateValue.setTime(time);
    Q_EMIT dateValueChanged(m_dateValue);
}

void LUMGraphicalDatePicker::resizeEvent(QResizeEvent *)
{
    m_calendar->setGeometry(0, 0, calendarWidth, height());
    // The clock and its editor share what lies right of the calendar, centred in it.
    const QRect room(calendarWidth + 8, 0, width() - calendarWidth - 8, height());
    const bool wideEnough = room.width() >= 80;
    m_clock->setVisible(wideEnough);
    m_timeEditor->setVisible(wideEnough);
    if (!wideEnough)
        return;
    const int editorHeight = m_timeEditor->sizeHint().height();
    const int side = qMin(room.width(), room.height() - editorHeight - 8);
    const int top = room.top() + (room.height() - side - 8 - editorHeight) / 2;
    m_clock->setGeometry(room.left() + (room.width() - side) / 2, top, side, side);
    const int editorWidth = qMin(room.width(), m_timeEditor->sizeHint().width() + 8);
    m_timeEditor->setGeometry(room.left() + (room.width() - editorWidth) / 2, top + side + 8,
                              editorWidth, editorHeight);
}

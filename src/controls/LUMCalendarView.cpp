#include "controls/LUMCalendarView.h"

#include <QKeyEvent>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWheelEvent>

LUMCalendarView::LUMCalendarView(QWidget *parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setSelectedDate(QDate::currentDate());
}

QSize LUMCalendarView::sizeHint() const
{
    return QSize(139, 148);
}

QSize LUMCalendarView::minimumSizeHint() const
{
    return QSize(7 * 16, headerHeight + weekdayHeight + weeks * 14);
}

void LUMCalendarView::setSelectedDate(const QDate &date)
{
    if (!date.isValid())
        return;
    m_selectedDate = date;
    showMonth(date.year(), date.month());
}

void LUMCalendarView::showMonth(int year, int month)
{
    const QDate first(year, month, 1);
    if (!first.isValid())
        return;
    m_shownMonth = first;
    update();
}

QDate LUMCalendarView::firstShownDate() const
{
    const int firstWeekday = locale().firstDayOfWeek();
    const int back = (m_shownMonth.dayOfWeek() - firstWeekday + 7) % 7;
    return m_shownMonth.addDays(-back);
}

QRectF LUMCalendarView::cellRect(int index) const
{
    const qreal width = qreal(this->width()) / 7;
    const qreal height = qreal(this->height() - headerHeight - weekdayHeight) / weeks;
    return QRectF((index % 7) * width, headerHeight + weekdayHeight + (index / 7) * height, width,
                  height);
}

QRect LUMCalendarView::dayRect(const QDate &date) const
{
    const qint64 index = firstShownDate().daysTo(date);
    if (index < 0 || index >= 7 * weeks)
        return QRect();
    return cellRect(int(index)).toAlignedRect();
}

QRect LUMCalendarView::previousMonthRect() const
{
    return QRect(0, 0, headerHeight, headerHeight);
}

QRect LUMCalendarView::nextMonthRect() const
{
    return QRect(width() - headerHeight, 0, headerHeight, headerHeight);
}

QDate LUMCalendarView::dateAt(const QPoint &point) const
{
    for (int index = 0; index < 7 * weeks; ++index) {
        if (cellRect(index).contains(point))
            return firstShownDate().addDays(index);
    }
    return QDate();
}

void LUMCalendarView::pick(const QDate &date)
{
    if (!date.isValid())
        return;
    setSelectedDate(date);
    Q_EMIT clicked(date);
}

void LUMCalendarView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const QPoint point = event->position().toPoint();
    if (previousMonthRect().contains(point)) {
        const QDate previous = m_shownMonth.addMonths(-1);
        showMonth(previous.year(), previous.month());
    } else if (nextMonthRect().contains(point)) {
        const QDate next = m_shownMonth.addMonths(1);
        showMonth(next.year(), next.month());
    } else {
        pick(dateAt(point));
    }
}

void LUMCalendarView::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Left:
        pick(m_selectedDate.addDays(-1));
        break;
    case Qt::Key_Right:
        pick(m_selectedDate.addDays(1));
        break;
    case Qt::Key_Up:
        pick(m_selectedDate.addDays(-7));
        break;
    case Qt::Key_Down:
        pick(m_selectedDate.addDays(7));
        break;
    case Qt::Key_PageUp:
        pick(m_selectedDate.addMonths(-1));
        break;
    case Qt::Key_PageDown:
        pick(m_selectedDate.addMonths(1));
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void LUMCalendarView::wheelEvent(QWheelEvent *event)
{
    const int steps = event->angleDelta().y() / 120;
    if (steps == 0)
        return;
    const QDate month = m_shownMonth.addMonths(-steps);
    showMonth(month.year(), month.month());
}

void LUMCalendarView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette &colors = palette();
    const QColor text = colors.color(QPalette::WindowText);
    QFont font = this->font();
    font.setPixelSize(11);

    // The month between its two arrows.
    QFont title = font;
    title.setBold(true);
    painter.setFont(title);
    painter.setPen(text);
    const QRect header(headerHeight, 0, width() - 2 * headerHeight, headerHeight);
    painter.drawText(header, Qt::AlignCenter,
                     locale().toString(m_shownMonth, QStringLiteral("MMMM yyyy")));
    for (const bool next : {false, true}) {
        const QRectF box = next ? nextMonthRect() : previousMonthRect();
        const QPointF centre = box.center();
        const qreal dx = next ? 2.5 : -2.5;
        QPainterPath arrow;
        arrow.moveTo(centre.x() - dx, centre.y() - 4.5);
        arrow.lineTo(centre.x() + dx, centre.y());
        arrow.lineTo(centre.x() - dx, centre.y() + 4.5);
        painter.strokePath(arrow, QPen(text, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    }

    // Initials of the weekdays, starting on the locale's first day.
    QFont small = font;
    small.setPixelSize(9);
    painter.setFont(small);
    painter.setPen(colors.color(QPalette::Disabled, QPalette::WindowText));
    const qreal columnWidth = qreal(width()) / 7;
    for (int column = 0; column < 7; ++column) {
        const int weekday = (locale().firstDayOfWeek() - 1 + column) % 7 + 1;
        painter.drawText(QRectF(column * columnWidth, headerHeight, columnWidth, weekdayHeight),
                         Qt::AlignCenter,
                         locale().standaloneDayName(weekday, QLocale::NarrowFormat));
    }

    painter.setFont(font);
    const QDate first = firstShownDate();
    const QDate today = QDate::currentDate();
    for (int index = 0; index < 7 * weeks; ++index) {
        const QDate date = first.addDays(index);
        const QRectF cell = cellRect(index);
        const qreal side = qMin(cell.width(), cell.height()) - 1;
        QRectF mark(0, 0, side, side);
        mark.moveCenter(cell.center());
        QColor dayColor = date.month() == m_shownMonth.month()
                              ? text
                              : colors.color(QPalette::Disabled, QPalette::WindowText);
        if (date == m_selectedDate) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(colors.color(hasFocus() ? QPalette::Active : QPalette::Inactive,
                                          QPalette::Highlight));
            painter.drawEllipse(mark);
            dayColor = colors.color(QPalette::HighlightedText);
        } else if (date == today) {
            painter.setPen(QPen(colors.color(QPalette::Highlight), 1));
            painter.setBrush(Qt::NoBrush);
            painter.drawEllipse(mark.adjusted(0.5, 0.5, -0.5, -0.5));
        }
        painter.setPen(dayColor);
        painter.drawText(cell, Qt::AlignCenter, QString::number(date.day()));
    }
}

#include "controls/LUMDatePicker.h"

#include "controls/LUMDatePickerController.h"
#include "controls/LUMDatePickerDelegate.h"
#include "controls/LUMGraphicalDatePicker.h"
#include "controls/LUMPopover.h"
#include "core/EVAppImage.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QToolButton>

namespace {

QString displayFormatForElements(int elements)
{
    QStringList parts;
    if ((elements & LUMDatePicker::YearMonthDayElement) == LUMDatePicker::YearMonthDayElement)
        parts << QStringLiteral("yyyy-MM-dd");
    else if ((elements & LUMDatePicker::YearMonthElement) == LUMDatePicker::YearMonthElement)
        parts << QStringLiteral("yyyy-MM");
    if ((elements & LUMDatePicker::HourMinuteSecondElement) ==
        LUMDatePicker::HourMinuteSecondElement)
        parts << QStringLiteral("HH:mm:ss");
    else if ((elements & LUMDatePicker::HourMinuteElement) == LUMDatePicker::HourMinuteElement)
        parts << QStringLiteral("HH:mm");
    return parts.join(QLatin1Char(' '));
}

} // namespace

LUMDatePicker::LUMDatePicker(QWidget *parent)
    : QDateTimeEdit(QDateTime::currentDateTime(), parent)
    , m_controller(new LUMDatePickerController)
    , m_popover(new LUMPopover(this))
    , m_calendarButton(new QToolButton(this))
{
    // Whatever the user picks in the popover's calendar goes through dateValueExt.
    connect(m_controller->datePicker(), &LUMGraphicalDatePicker::dateValueChanged, this,
            &LUMDatePicker::setDateValueExt);
    m_popover->setContentViewController(m_controller);
    m_popover->setObjectName(QStringLiteral("popover"));

    m_calendarButton->setObjectName(QStringLiteral("calendarButton"));
    m_calendarButton->setAutoRaise(true);
    m_calendarButton->setToolButtonStyle(Qt::ToolButtonIconOnly);
    m_calendarButton->setIcon(QPixmap::fromImage(EVAppImage::named(QStringLiteral("calendar"))));
    m_calendarButton->setIconSize(calendarButtonSize);
    m_calendarButton->setFixedSize(calendarButtonSize);
    m_calendarButton->setCursor(Qt::ArrowCursor);
    m_calendarButton->setFocusPolicy(Qt::NoFocus);
    m_calendarButton->setToolTip(tr("Show the calendar (Alt+Down)"));
    m_calendarButton->setStyleSheet(QStringLiteral("QToolButton { border: none; padding: 0; }"));
    connect(m_calendarButton, &QToolButton::clicked, this, &LUMDatePicker::showPopover);
    m_popover->setAnchorButton(m_calendarButton);
    // The text stops short of the button.
    lineEdit()->setTextMargins(0, 0, calendarButtonSize.width() + 2, 0);

    connect(this, &QDateTimeEdit::dateTimeChanged, this, &LUMDatePicker::onDateTimeChanged);
    setDatePickerElements(YearMonthDayElement);
    placeCalendarButton();
}

LUMDatePicker::~LUMDatePicker() = default;

void LUMDatePicker::setDatePickerElements(int elements)
{
    m_elements = elements;
    const QDateTime value = dateTime();
    m_showingValue = true;
    setDisplayFormat(displayFormatForElements(elements));
    // A new format may round the shown value: the date itself stays as it was.
    setDateTime(value);
    m_showingValue = false;
}

void LUMDatePicker::setDateValue(const QDateTime &value)
{
    m_showingValue = true;
    setDateTime(value);
    m_showingValue = false;
}

void LUMDatePicker::setDateValueExt(const QDateTime &value)
{
    setDateValue(value);
    Q_EMIT activated();
}

void LUMDatePicker::onDateTimeChanged()
{
    if (!m_showingValue)
        Q_EMIT activated();
}

void LUMDatePicker::showPopover()
{
    m_controller->datePicker()->setDateValue(dateValue());
    if (m_delegate && !m_delegate->datePickerShouldShowPopover(this))
        return;
    const bool showsTime = (m_elements & timeElementsMask) != 0;
    m_popover->setContentSize(showsTime ? clockPopoverSize : calendarPopoverSize);
    m_controller->setShowDatePickerClock(showsTime);
    m_popover->showRelativeToRect(rect(), this, m_preferredPopoverEdge);
}

void LUMDatePicker::resizeEvent(QResizeEvent *event)
{
    QDateTimeEdit::resizeEvent(event);
    placeCalendarButton();
}

void LUMDatePicker::keyPressEvent(QKeyEvent *event)
{
    // The keys that open a combo box's list open the calendar.
    if ((event->key() == Qt::Key_Down && event->modifiers() == Qt::AltModifier) ||
        event->key() == Qt::Key_F4) {
        showPopover();
        return;
    }
    QDateTimeEdit::keyPressEvent(event);
}

void LUMDatePicker::placeCalendarButton()
{
    const QSize button = calendarButtonSize;
    // Centred in the field's height, two points low, and clear of the field's arrows.
    m_calendarButton->move(width() - button.width() - calendarButtonRightMargin,
                           (height() - button.height()) / 2 + 2);
}

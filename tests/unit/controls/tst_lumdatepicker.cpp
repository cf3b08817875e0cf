#include "NotificationTools.h"
#include "TestMain.h"

#include "controls/LUMCalendarView.h"
#include "controls/LUMClockView.h"
#include "controls/LUMDatePicker.h"
#include "controls/LUMDatePickerController.h"
#include "controls/LUMDatePickerDelegate.h"
#include "controls/LUMGraphicalDatePicker.h"
#include "controls/LUMPopover.h"

#include <QSignalSpy>
#include <QTimeEdit>
#include <QToolButton>

namespace {

// Answers the popover question as told, and counts the questions.
class PopoverVeto : public LUMDatePickerDelegate
{
public:
    bool datePickerShouldShowPopover(LUMDatePicker *) override
    {
        ++questions;
        return answer;
    }
    bool answer = false;
    int questions = 0;
};

const QDateTime sample(QDate(2026, 3, 14), QTime(10, 5, 6));

} // namespace

class TestLUMDatePicker : public QObject
{
    Q_OBJECT

private:
    // A field on screen in a window of its own, showing the sample date.
    struct Field
    {
        Field()
        {
            window.resize(400, 300);
            picker = new LUMDatePicker(&window);
            picker->setGeometry(20, 20, 190, 26);
            picker->setDateValue(sample);
            window.show();
        }
        // Popups ask the offscreen platform for what it cannot do; that is no news here.
        OffscreenWindowNotesFilter notes;
        QWidget window;
        LUMDatePicker *picker;
        LUMGraphicalDatePicker *popoverPicker() const { return picker->controller()->datePicker(); }
    };

private Q_SLOTS:
    void buttonSitsAtTheRightEndOfTheField()
    {
        QWidget window;
        LUMDatePicker picker(&window);
        picker.setGeometry(0, 0, 150, 22);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QToolButton *button = picker.calendarButton();
        QCOMPARE(button->objectName(), QStringLiteral("calendarButton"));
        // 150 - 16 - 18 across; a point above the bottom counted upwards is 5 down from the top.
        QCOMPARE(button->geometry(), QRect(116, 5, 16, 16));
        QCOMPARE(button->parentWidget(), &picker);
        QVERIFY(!button->icon().isNull());
        picker.resize(200, 30);
        QCOMPARE(button->geometry(), QRect(166, 9, 16, 16));
    }

    void popoverOpensAtTheRightEdgeByDefault()
    {
        LUMDatePicker picker;
        QCOMPARE(picker.preferredPopoverEdge(), Qt::RightEdge);
    }

    void elementsChooseWhatTheFieldShows()
    {
        LUMDatePicker picker;
        picker.setDatePickerElements(224);
        QCOMPARE(picker.displayFormat(), QStringLiteral("yyyy-MM-dd"));
        QCOMPARE(picker.displayedSections(), QDateTimeEdit::YearSection |
                                                 QDateTimeEdit::MonthSection |
                                                 QDateTimeEdit::DaySection);
        picker.setDatePickerElements(238);
        QCOMPARE(picker.datePickerElements(), 238);
        QCOMPARE(picker.displayFormat(), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        QVERIFY(picker.displayedSections() & QDateTimeEdit::HourSection);
        QVERIFY(picker.displayedSections() & QDateTimeEdit::MinuteSection);
        QVERIFY(picker.displayedSections() & QDateTimeEdit::SecondSection);
    }

    void hidingTheTimeKeepsTheTimeOfTheDate()
    {
        LUMDatePicker picker;
        picker.setDatePickerElements(238);
        picker.setDateValue(sample);
        picker.setDatePickerElements(224);
        QCOMPARE(picker.dateValue(), sample);
        picker.setDatePickerElements(238);
        QCOMPARE(picker.text(), QStringLiteral("2026-03-14 10:05:06"));
    }

    void showingADateSendsNothingAndDateValueExtSendsOnce()
    {
        LUMDatePicker picker;
        QSignalSpy actions(&picker, &LUMDatePicker::activated);
        picker.setDateValue(sample);
        QCOMPARE(actions.size(), 0);
        picker.setDateValueExt(sample.addDays(1));
        QCOMPARE(actions.size(), 1);
        QCOMPARE(picker.dateValueExt(), sample.addDays(1));
    }

    void typingInTheFieldSendsTheAction()
    {
        Field field;
        QVERIFY(QTest::qWaitForWindowExposed(&field.window));
        QSignalSpy actions(field.picker, &LUMDatePicker::activated);
        field.picker->setFocus();
        field.picker->setCurrentSection(QDateTimeEdit::DaySection);
        QTest::keyClick(field.picker, Qt::Key_Up);
        QCOMPARE(actions.size(), 1);
        QCOMPARE(field.picker->dateValue().date(), QDate(2026, 3, 15));
    }

    void dateOnlyFieldOpensTheCalendarAloneThenWithTheClockOnceItShowsTime()
    {
        Field field;
        field.picker->setDatePickerElements(224);
        field.picker->showPopover();
        LUMPopover *popover = field.picker->popover();
        QVERIFY(popover->isVisible());
        QCOMPARE(popover->contentSize(), QSize(180, 180));
        QCOMPARE(field.picker->controller()->size(), QSize(180, 180));
        QCOMPARE(field.popoverPicker()->geometry(), QRect(22, 15, 139, 148));
        QVERIFY(!field.popoverPicker()->isClockShown());
        popover->close();

        field.picker->setDatePickerElements(238);
        field.picker->showPopover();
        QVERIFY(popover->isVisible());
        QCOMPARE(popover->contentSize(), QSize(320, 180));
        QCOMPARE(field.picker->controller()->size(), QSize(320, 180));
        QCOMPARE(field.popoverPicker()->geometry(), QRect(22, 15, 280, 148));
        QVERIFY(field.popoverPicker()->isClockShown());
        QCOMPARE(field.popoverPicker()->timeEditor()->time(), QTime(10, 5, 6));
        QCOMPARE(field.popoverPicker()->clock()->time(), QTime(10, 5, 6));
    }

    void hoursAndMinutesAloneAlsoBringTheClock()
    {
        Field field;
        field.picker->setDatePickerElements(LUMDatePicker::YearMonthDayElement |
                                            LUMDatePicker::HourMinuteElement);
        field.picker->showPopover();
        QCOMPARE(field.picker->popover()->contentSize(), QSize(320, 180));
    }

    void popoverOpensBesideTheFieldOnItsDate()
    {
        Field field;
        QVERIFY(QTest::qWaitForWindowExposed(&field.window));
        QTest::mouseClick(field.picker->calendarButton(), Qt::LeftButton);
        LUMPopover *popover = field.picker->popover();
        QVERIFY(popover->isVisible());
        QCOMPARE(popover->shownEdge(), Qt::RightEdge);
        const QRect fieldOnScreen(field.picker->mapToGlobal(QPoint(0, 0)), field.picker->size());
        QCOMPARE(popover->geometry().left(), fieldOnScreen.right() + 1);
        QVERIFY(popover->geometry().top() < fieldOnScreen.center().y());
        QVERIFY(popover->geometry().bottom() > fieldOnScreen.center().y());
        QCOMPARE(field.popoverPicker()->dateValue(), sample);
        QCOMPARE(field.popoverPicker()->calendar()->selectedDate(), sample.date());
    }

    void fieldAtTheScreensRightEndOpensItsPopoverOnTheLeft()
    {
        Field field;
        const QRect screen = field.window.screen()->availableGeometry();
        field.window.move(screen.right() - field.window.width() + 1, 100);
        field.picker->move(field.window.width() - field.picker->width() - 2, 20);
        field.picker->showPopover();
        LUMPopover *popover = field.picker->popover();
        QCOMPARE(popover->shownEdge(), Qt::LeftEdge);
        QCOMPARE(popover->geometry().right() + 1, field.picker->mapToGlobal(QPoint(0, 0)).x());
    }

    void pickingADayChangesTheFieldAtOnceAndSendsTheActionOncePerChange()
    {
        Field field;
        QVERIFY(QTest::qWaitForWindowExposed(&field.window));
        QSignalSpy actions(field.picker, &LUMDatePicker::activated);
        field.picker->showPopover();
        LUMCalendarView *calendar = field.popoverPicker()->calendar();
        QTest::mouseClick(calendar, Qt::LeftButton, {},
                          calendar->dayRect(QDate(2026, 3, 20)).center());
        QCOMPARE(field.picker->dateValue(), QDateTime(QDate(2026, 3, 20), QTime(10, 5, 6)));
        QCOMPARE(actions.size(), 1);
        QTest::mouseClick(calendar, Qt::LeftButton, {},
                          calendar->dayRect(QDate(2026, 3, 2)).center());
        QCOMPARE(field.picker->dateValue().date(), QDate(2026, 3, 2));
        QCOMPARE(actions.size(), 2);
        // The popover stays until the user clicks somewhere else.
        QVERIFY(field.picker->popover()->isVisible());
    }

    void arrowKeysInTheCalendarPickDays()
    {
        Field field;
        QSignalSpy actions(field.picker, &LUMDatePicker::activated);
        field.picker->showPopover();
        LUMCalendarView *calendar = field.popoverPicker()->calendar();
        QTest::keyClick(calendar, Qt::Key_Right);
        QTest::keyClick(calendar, Qt::Key_Down);
        QCOMPARE(field.picker->dateValue().date(), QDate(2026, 3, 22));
        QCOMPARE(actions.size(), 2);
        QTest::keyClick(calendar, Qt::Key_PageDown);
        QCOMPARE(field.picker->dateValue().date(), QDate(2026, 4, 22));
        QCOMPARE(calendar->shownMonth(), 4);
    }

    void monthArrowsTurnThePageWithoutPicking()
    {
        Field field;
        QSignalSpy actions(field.picker, &LUMDatePicker::activated);
        field.picker->showPopover();
        LUMCalendarView *calendar = field.popoverPicker()->calendar();
        QTest::mouseClick(calendar, Qt::LeftButton, {}, calendar->nextMonthRect().center());
        QCOMPARE(calendar->shownMonth(), 4);
        QCOMPARE(actions.size(), 0);
        QTest::mouseClick(calendar, Qt::LeftButton, {},
                          calendar->dayRect(QDate(2026, 4, 9)).center());
        QCOMPARE(field.picker->dateValue().date(), QDate(2026, 4, 9));
    }

    void changingTheTimeInThePopoverChangesTheFieldsTime()
    {
        Field field;
        field.picker->setDatePickerElements(238);
        QSignalSpy actions(field.picker, &LUMDatePicker::activated);
        field.picker->showPopover();
        QTimeEdit *editor = field.popoverPicker()->timeEditor();
        editor->setFocus();
        editor->setCurrentSection(QDateTimeEdit::HourSection);
        QTest::keyClick(editor, Qt::Key_Up);
        QCOMPARE(field.picker->dateValue(), QDateTime(QDate(2026, 3, 14), QTime(11, 5, 6)));
        QCOMPARE(actions.size(), 1);
        QCOMPARE(field.popoverPicker()->clock()->time(), QTime(11, 5, 6));
    }

    void delegateThatSaysNoKeepsThePopoverClosedButItsPickerHasTheDate()
    {
        Field field;
        PopoverVeto veto;
        field.picker->setDelegate(&veto);
        field.picker->setDateValue(sample.addDays(3));
        field.picker->showPopover();
        QCOMPARE(veto.questions, 1);
        QVERIFY(!field.picker->popover()->isVisible());
        QCOMPARE(field.popoverPicker()->dateValue(), sample.addDays(3));
        veto.answer = true;
        field.picker->showPopover();
        QVERIFY(field.picker->popover()->isVisible());
    }

    void escapeOrAClickOutsideClosesThePopover()
    {
        Field field;
        field.picker->showPopover();
        LUMPopover *popover = field.picker->popover();
        QTest::keyClick(popover, Qt::Key_Escape);
        QVERIFY(!popover->isVisible());
        field.picker->showPopover();
        QTest::mouseClick(popover, Qt::LeftButton, {}, QPoint(-20, -20));
        QVERIFY(!popover->isVisible());
    }

    void altDownOpensThePopoverFromTheKeyboard()
    {
        Field field;
        QVERIFY(QTest::qWaitForWindowExposed(&field.window));
        QTest::keyClick(field.picker, Qt::Key_Down, Qt::AltModifier);
        QVERIFY(field.picker->popover()->isVisible());
    }

    void calendarStartsItsWeeksOnTheLocalesFirstDay()
    {
        LUMCalendarView calendar;
        calendar.resize(139, 148);
        calendar.setLocale(QLocale(QLocale::German, QLocale::Germany));
        calendar.setSelectedDate(QDate(2026, 3, 14));
        // March 2026 starts on a Sunday: a Monday-first page begins on 23 February.
        QCOMPARE(calendar.dayRect(QDate(2026, 2, 23)).topLeft(),
                 QPoint(0, LUMCalendarView::headerHeight + LUMCalendarView::weekdayHeight));
        calendar.setLocale(QLocale(QLocale::English, QLocale::UnitedStates));
        QCOMPARE(calendar.dayRect(QDate(2026, 3, 1)).topLeft(),
                 QPoint(0, LUMCalendarView::headerHeight + LUMCalendarView::weekdayHeight));
    }
};

TALLYVANE_TEST_MAIN(TestLUMDatePicker)
#include "tst_lumdatepicker.moc"

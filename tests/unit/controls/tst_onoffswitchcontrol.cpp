#include "BeepCounter.h"
#include "TestMain.h"

#include "SwitchForm.h"

#include "controls/OnOffSwitchControl.h"
#include "core/EVClock.h"

#include <QAccessible>
#include <QSignalSpy>

#include <optional>

namespace {

const QDateTime startInstant = QDateTime(QDate(2024, 3, 1), QTime(12, 0), Qt::UTC);

// Pressed at one point, moved to another, held still for the pause, released there.
void drag(OnOffSwitchControl *control, QPoint from, QPoint to, qint64 pauseMilliseconds)
{
    press(control, from);
    moveTo(control, to);
    EVClock::advance(pauseMilliseconds);
    release(control, to);
}

} // namespace

class TestOnOffSwitchControl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_clock.emplace(startInstant); }
    void cleanup() { m_clock.reset(); }

    void pressAndReleaseWithinAThirdOfASecondTogglesAndSendsTheActionOnce()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        QVERIFY(control);
        QVERIFY(form.exposed);
        QSignalSpy actions(control, &QAbstractButton::clicked);
        QSignalSpy changes(control, &OnOffSwitchControl::stateChanged);

        press(control, offThumbCentre);
        EVClock::advance(300);
        release(control, offThumbCentre);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OnState));
        QCOMPARE(actions.count(), 1);
        QCOMPARE(changes.count(), 1);

        press(control, offThumbCentre);
        EVClock::advance(300);
        release(control, offThumbCentre);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OffState));
        QCOMPARE(actions.count(), 2);
    }

    void clickOnAMixedSwitchAdvancesThroughTheMiddle()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        control->setAllowsMixedState(true);
        press(control, offThumbCentre);
        release(control, offThumbCentre);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::MixedState));
        press(control, rightOfTheThumb);
        release(control, rightOfTheThumb);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OnState));
    }

    void longPressWithoutMovementLeavesTheStateAndSendsTheActionOnce()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        QSignalSpy actions(control, &QAbstractButton::clicked);
        QSignalSpy changes(control, &OnOffSwitchControl::stateChanged);
        drag(control, offThumbCentre, offThumbCentre, 500);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OffState));
        QCOMPARE(actions.count(), 1);
        QCOMPARE(changes.count(), 0);
    }

    void quickDragThirtyPointsLeftCountsAsAClick()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        QSignalSpy actions(control, &QAbstractButton::clicked);
        drag(control, rightOfTheThumb, rightOfTheThumb - QPoint(30, 0), 0);
        // As a drag the thumb could only have stayed left: off. As a click it turns on.
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OnState));
        QCOMPARE(actions.count(), 1);
    }

    void quickMoveDownCountsAsAClick()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        drag(control, QPoint(14, 2), QPoint(14, 18), 0);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OnState));
    }

    void quickMoveUpIsADrag()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        drag(control, QPoint(14, 18), QPoint(14, 2), 0);
        // Decided by the thumb, which did not move: it stays off.
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OffState));
    }

    void quickMoveRightBeyondTheClickDistanceIsADrag()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        drag(control, offThumbCentre, offThumbCentre + QPoint(7, 0), 0);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OffState));
    }

    void everyMovementRestartsTheClickClock()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        QSignalSpy actions(control, &QAbstractButton::clicked);
        press(control, rightOfTheThumb);
        for (int step = 1; step <= 3; ++step) {
            EVClock::advance(200);
            moveTo(control, rightOfTheThumb - QPoint(5 * step, 0));
        }
        EVClock::advance(200);
        release(control, rightOfTheThumb - QPoint(15, 0));
        // 800 ms after the press, but only 200 ms after the last movement: a click.
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OnState));
        QCOMPARE(actions.count(), 1);
    }

    void restingAfterTheLastMovementMakesItADrag()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        press(control, rightOfTheThumb);
        EVClock::advance(100);
        moveTo(control, rightOfTheThumb - QPoint(5, 0));
        EVClock::advance(334);
        release(control, rightOfTheThumb - QPoint(5, 0));
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OffState));
    }

    void draggingTheThumbPastTheMiddleTurnsItOn()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        QSignalSpy actions(control, &QAbstractButton::clicked);
        QSignalSpy changes(control, &OnOffSwitchControl::stateChanged);
        drag(control, offThumbCentre, offThumbCentre + QPoint(20, 0), 500);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OnState));
        QCOMPARE(actions.count(), 1);
        // The release passes through no other state on the way.
        QCOMPARE(changes.count(), 1);
        QCOMPARE(changes.at(0).at(0).toInt(), int(OnOffSwitchControlCell::OnState));
    }

    void releasingShortOfTheMiddleLeavesItOff()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        QSignalSpy actions(control, &QAbstractButton::clicked);
        QSignalSpy changes(control, &OnOffSwitchControl::stateChanged);
        drag(control, offThumbCentre, offThumbCentre + QPoint(12, 0), 500);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OffState));
        QCOMPARE(actions.count(), 1);
        QCOMPARE(changes.count(), 0);
    }

    void draggingAnOnThumbPastTheMiddleTurnsItOff()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        control->setState(OnOffSwitchControlCell::OnState);
        drag(control, QPoint(46, 10), QPoint(20, 10), 500);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OffState));
    }

    void dragOfAMixedSwitchPicksTheThirdTheThumbEndsIn()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        control->setAllowsMixedState(true);
        QSignalSpy actions(control, &QAbstractButton::clicked);
        drag(control, offThumbCentre, offThumbCentre + QPoint(16, 0), 500);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::MixedState));
        drag(control, QPoint(30, 10), QPoint(55, 10), 500);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OnState));
        drag(control, QPoint(46, 10), QPoint(5, 10), 500);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OffState));
        QCOMPARE(actions.count(), 3);
    }

    void releaseOffTheSwitchChangesNothing()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        QSignalSpy actions(control, &QAbstractButton::clicked);
        QSignalSpy changes(control, &OnOffSwitchControl::stateChanged);
        drag(control, offThumbCentre, QPoint(120, 10), 500);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OffState));
        QCOMPARE(actions.count(), 0);
        QCOMPARE(changes.count(), 0);
        QVERIFY(!control->cell().isTracking());
    }

    void rightArrowOnAnOnSwitchBeeps()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        control->setState(OnOffSwitchControlCell::OnState);
        BeepCounter beeps;
        QSignalSpy actions(control, &QAbstractButton::clicked);
        QTest::keyClick(control, Qt::Key_Right);
        QCOMPARE(beeps.count(), 1);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OnState));
        QCOMPARE(actions.count(), 0);
    }

    void leftArrowOnAnOffSwitchBeeps()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        BeepCounter beeps;
        QTest::keyClick(control, Qt::Key_Left);
        QCOMPARE(beeps.count(), 1);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OffState));
    }

    void arrowKeysMoveTheSwitchWithoutTheAction()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        BeepCounter beeps;
        QSignalSpy actions(control, &QAbstractButton::clicked);
        QSignalSpy changes(control, &OnOffSwitchControl::stateChanged);
        QTest::keyClick(control, Qt::Key_Right);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OnState));
        QTest::keyClick(control, Qt::Key_Left);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OffState));
        QCOMPARE(actions.count(), 0);
        QCOMPARE(beeps.count(), 0);
        QCOMPARE(changes.count(), 2);
    }

    void arrowKeysStopInTheMiddleOfAMixedSwitch()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        control->setAllowsMixedState(true);
        QTest::keyClick(control, Qt::Key_Right);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::MixedState));
        QTest::keyClick(control, Qt::Key_Right);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OnState));
        QTest::keyClick(control, Qt::Key_Left);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::MixedState));
        QTest::keyClick(control, Qt::Key_Left);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OffState));
    }

    void heldArrowKeyMovesTheSwitchOnceWhenLetGo()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        control->setAllowsMixedState(true);
        QTest::keyPress(control, Qt::Key_Right);
        QTest::keyRelease(control, Qt::Key_Right, Qt::NoModifier);
        QKeyEvent repeated(QEvent::KeyRelease, Qt::Key_Right, Qt::NoModifier, QString(), true);
        QApplication::sendEvent(control, &repeated);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::MixedState));
    }

    void arrowKeyPressesAreTakenBySwitch()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        QKeyEvent left(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier);
        QApplication::sendEvent(control, &left);
        QVERIFY(left.isAccepted());
        QKeyEvent right(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier);
        QApplication::sendEvent(control, &right);
        QVERIFY(right.isAccepted());
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OffState));
    }

    void spaceBarClicksLikeAnyButton()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        QSignalSpy actions(control, &QAbstractButton::clicked);
        QTest::keyClick(control, Qt::Key_Space);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OnState));
        QCOMPARE(actions.count(), 1);
    }

    void checkedMeansOn()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        control->setAllowsMixedState(true);
        control->setChecked(true);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OnState));
        control->setState(OnOffSwitchControlCell::MixedState);
        QVERIFY(!control->isChecked());
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::MixedState));
        control->setChecked(false);
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::OffState));
    }

    void stateIsAPropertyThatFormsCanSet()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        QVERIFY(control->setProperty("allowsMixedState", true));
        QVERIFY(control->setProperty("state", -1));
        QCOMPARE(control->state(), int(OnOffSwitchControlCell::MixedState));
        QVERIFY(control->setProperty("onOffSwitchControlColors", 3));
        QCOMPARE(control->cell().onOffSwitchControlColors(), 3);
        QVERIFY(control->setProperty("offSwitchLabel", QStringLiteral("NO")));
        QCOMPARE(control->cell().offSwitchLabel(), QStringLiteral("NO"));
    }

    void switchTakesKeyboardFocusByTab()
    {
        SwitchForm form;
        auto *before = new QWidget(&form.window);
        before->setFocusPolicy(Qt::StrongFocus);
        before->show();
        QWidget::setTabOrder(before, form.control());
        form.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&form.window));
        before->setFocus();
        QTest::keyClick(before, Qt::Key_Tab);
        QVERIFY(form.control()->hasFocus());
    }

    void accessibilityToolsReadANamedToggle()
    {
        SwitchForm form;
        OnOffSwitchControl *control = form.control();
        control->setAccessibleName(QStringLiteral("Lock widget"));
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(control);
        QVERIFY(accessible);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Lock widget"));
        QCOMPARE(accessible->role(), QAccessible::CheckBox);
        QVERIFY(accessible->state().checkable);
        QVERIFY(!accessible->state().checked);
        control->setState(OnOffSwitchControlCell::OnState);
        QVERIFY(accessible->state().checked);
    }

    void sizeHintGrowsWithTheLabels()
    {
        OnOffSwitchControl control;
        const QSize standard = control.sizeHint();
        QVERIFY(standard.width() > standard.height());
        control.setOffSwitchLabel(QStringLiteral("DISABLED"));
        QVERIFY(control.sizeHint().width() > standard.width());
        control.setControlSize(OnOffSwitchControlCell::MiniControlSize);
        QVERIFY(control.sizeHint().height() < standard.height());
    }

private:
    std::optional<PinnedClock> m_clock;
};

TALLYVANE_TEST_MAIN(TestOnOffSwitchControl)
#include "tst_onoffswitchcontrol.moc"

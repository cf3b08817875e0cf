#include "TestMain.h"

#include "SwitchForm.h"

#include "controls/OnOffSwitchControl.h"
#include "controls/OnOffSwitchControlCell.h"
#include "core/EVClock.h"

#include <QMouseEvent>

namespace {

const QRectF frameAtOrigin(0, 0, 60, 20);
const QRectF frameMovedRight(100, 0, 60, 20);

// 58 times the single-precision 0.45: the thumb of a 60-point switch.
const double thumbWidthOf60 = 58.0 * double(0.45f);

bool near(double actual, double expected)
{
    return std::abs(actual - expected) < 1e-9;
}

OnOffSwitchControlCell cellInState(int state, bool allowsMixedState = false)
{
    OnOffSwitchControlCell cell;
    cell.setAllowsMixedState(allowsMixedState);
    cell.setState(state);
    return cell;
}

QMouseEvent pressAt(const QWidget &view, const QPointF &point)
{
    return QMouseEvent(QEvent::MouseButtonPress, point, view.mapToGlobal(point), Qt::LeftButton,
                       Qt::LeftButton, Qt::NoModifier);
}

} // namespace

class TestOnOffSwitchControlCell : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newCellStartsFromTheDefaults()
    {
        const OnOffSwitchControlCell cell;
        QCOMPARE(cell.state(), int(OnOffSwitchControlCell::OffState));
        QVERIFY(!cell.allowsMixedState());
        QVERIFY(!cell.isTracking());
        QVERIFY(cell.showsOnOffLabels());
        QCOMPARE(cell.onOffSwitchControlColors(), 2);
        QVERIFY(!cell.customOnColor().isValid());
        QVERIFY(!cell.customOffColor().isValid());
        QCOMPARE(cell.onSwitchLabel(), QStringLiteral("ON"));
        QCOMPARE(cell.offSwitchLabel(), QStringLiteral("OFF"));
        QCOMPARE(cell.clickTimeout(), 1.0 / 3.0);
        QCOMPARE(cell.maxDist(), QSizeF(6.0, 6.0));
        QCOMPARE(cell.focusRingType(), OnOffSwitchControlCell::FocusRingTypeExterior);
        QCOMPARE(OnOffSwitchControlCell::defaultFocusRingType(),
                 OnOffSwitchControlCell::FocusRingTypeExterior);
        QVERIFY(OnOffSwitchControlCell::prefersTrackingUntilMouseUp());
    }

    void thumbIsFortyFivePerCentOfTheInnerWidthInSinglePrecision()
    {
        const QRectF thumb =
            cellInState(OnOffSwitchControlCell::OffState).thumbRectInFrame(frameAtOrigin);
        QCOMPARE(thumb.width(), thumbWidthOf60);
        QVERIFY(std::abs(thumb.width() - 26.1) < 1e-6);
        QVERIFY(thumb.width() != 26.1);
        QCOMPARE(thumb.height(), 18.0);
        QCOMPARE(thumb.y(), 1.0);
    }

    void thumbSitsLeftWhenOffRightWhenOnAndInTheMiddleWhenMixed()
    {
        QCOMPARE(cellInState(OnOffSwitchControlCell::OffState).thumbRectInFrame(frameAtOrigin).x(),
                 1.0);
        QVERIFY(
            near(cellInState(OnOffSwitchControlCell::OnState).thumbRectInFrame(frameAtOrigin).x(),
                 1.0 + 58.0 - thumbWidthOf60));
        QVERIFY(
            std::abs(
                cellInState(OnOffSwitchControlCell::OnState).thumbRectInFrame(frameAtOrigin).x() -
                32.9) < 1e-6);
        const QRectF mixed =
            cellInState(OnOffSwitchControlCell::MixedState, true).thumbRectInFrame(frameAtOrigin);
        QVERIFY(std::abs(mixed.x() - 15.95) < 1e-6);
    }

    void movedFrameMovesTheEndsButNotTheMixedThumb()
    {
        QCOMPARE(
            cellInState(OnOffSwitchControlCell::OffState).thumbRectInFrame(frameMovedRight).x(),
            101.0);
        QVERIFY(
            std::abs(
                cellInState(OnOffSwitchControlCell::OnState).thumbRectInFrame(frameMovedRight).x() -
                132.9) < 1e-6);
        const OnOffSwitchControlCell mixed = cellInState(OnOffSwitchControlCell::MixedState, true);
        QCOMPARE(mixed.thumbRectInFrame(frameMovedRight).x(),
                 mixed.thumbRectInFrame(frameAtOrigin).x());
        QVERIFY(std::abs(mixed.thumbRectInFrame(frameMovedRight).x() - 15.95) < 1e-6);
    }

    void thumbCentreIsTheMiddleOfTheThumbWhenNotTracking()
    {
        const OnOffSwitchControlCell on = cellInState(OnOffSwitchControlCell::OnState);
        const QRectF thumb = on.thumbRectInFrame(frameMovedRight);
        QCOMPARE(on.centerXForThumbWithFrame(frameMovedRight), thumb.x() + thumb.width() / 2.0);
    }

    void trackedThumbCentreFollowsTheMouseWithinTheOuterFrame()
    {
        OnOffSwitchControl control;
        OnOffSwitchControlCell &cell = control.cell();
        QVERIFY(cell.startTrackingAt(QPointF(14, 10), &control));
        QVERIFY(cell.continueTracking(QPointF(24, 10), &control));
        QVERIFY(
            near(cell.centerXForThumbWithFrame(frameAtOrigin), 1.0 + 10.0 + thumbWidthOf60 / 2));
        // Far right: the thumb stops at the frame's right edge, not at the inner one.
        QVERIFY(cell.continueTracking(QPointF(114, 10), &control));
        QVERIFY(near(cell.centerXForThumbWithFrame(frameAtOrigin),
                     60.0 - thumbWidthOf60 + thumbWidthOf60 / 2));
        // Far left: the frame's left edge.
        QVERIFY(cell.continueTracking(QPointF(-86, 10), &control));
        QVERIFY(near(cell.centerXForThumbWithFrame(frameAtOrigin), thumbWidthOf60 / 2));
    }

    void statesAdvanceAsAButtonDoes()
    {
        OnOffSwitchControlCell twoStates;
        QCOMPARE(twoStates.nextState(), int(OnOffSwitchControlCell::OnState));
        twoStates.setNextState();
        QCOMPARE(twoStates.state(), int(OnOffSwitchControlCell::OnState));
        QCOMPARE(twoStates.nextState(), int(OnOffSwitchControlCell::OffState));

        OnOffSwitchControlCell threeStates;
        threeStates.setAllowsMixedState(true);
        threeStates.setNextState();
        QCOMPARE(threeStates.state(), int(OnOffSwitchControlCell::MixedState));
        threeStates.setNextState();
        QCOMPARE(threeStates.state(), int(OnOffSwitchControlCell::OnState));
        threeStates.setNextState();
        QCOMPARE(threeStates.state(), int(OnOffSwitchControlCell::OffState));
    }

    void mixedWithoutAMixedStateCountsAsOn()
    {
        OnOffSwitchControlCell cell;
        cell.setState(OnOffSwitchControlCell::MixedState);
        QCOMPARE(cell.state(), int(OnOffSwitchControlCell::OnState));
        cell.setState(7);
        QCOMPARE(cell.state(), int(OnOffSwitchControlCell::OnState));

        cell.setAllowsMixedState(true);
        cell.setState(-3);
        QCOMPARE(cell.state(), int(OnOffSwitchControlCell::MixedState));
        // Taking the mixed state away leaves the switch on.
        cell.setAllowsMixedState(false);
        QCOMPARE(cell.state(), int(OnOffSwitchControlCell::OnState));
    }

    void settingBothCustomColoursKeepsTheScheme()
    {
        OnOffSwitchControlCell cell;
        cell.setOnOffSwitchCustomOnColor(Qt::yellow, Qt::magenta);
        QCOMPARE(cell.customOnColor(), QColor(Qt::yellow));
        QCOMPARE(cell.customOffColor(), QColor(Qt::magenta));
        QCOMPARE(cell.onOffSwitchControlColors(), 2);
    }

    void labelFontIsBoldAtTheStandardSizeForTheControlSize()
    {
        OnOffSwitchControlCell cell;
        QVERIFY(cell.labelFont().bold());
        QCOMPARE(cell.labelFont().pixelSize(), 13);
        cell.setControlSize(OnOffSwitchControlCell::SmallControlSize);
        QCOMPARE(cell.labelFont().pixelSize(), 11);
        cell.setControlSize(OnOffSwitchControlCell::MiniControlSize);
        QCOMPARE(cell.labelFont().pixelSize(), 9);
    }

    void hitTestAnswersContentAndTrackableInsideTheFrameOnly()
    {
        OnOffSwitchControl control;
        control.resize(60, 20);
        const OnOffSwitchControlCell &cell = control.cell();
        const unsigned contentAndTrackable = OnOffSwitchControlCell::CellHitContentArea |
                                             OnOffSwitchControlCell::CellHitTrackableArea;
        QCOMPARE(contentAndTrackable, 5u);
        QCOMPARE(cell.hitTestForEvent(pressAt(control, QPointF(0, 0)), frameAtOrigin, &control),
                 contentAndTrackable);
        QCOMPARE(
            cell.hitTestForEvent(pressAt(control, QPointF(59.5, 19.5)), frameAtOrigin, &control),
            contentAndTrackable);
        QCOMPARE(cell.hitTestForEvent(pressAt(control, QPointF(60, 10)), frameAtOrigin, &control),
                 unsigned(OnOffSwitchControlCell::CellHitNone));
        QCOMPARE(cell.hitTestForEvent(pressAt(control, QPointF(30, -1)), frameAtOrigin, &control),
                 unsigned(OnOffSwitchControlCell::CellHitNone));
    }

    void dragLeavesTheStateBeforeTheWantedOneForTheButtonToAdvance_data()
    {
        QTest::addColumn<bool>("allowsMixedState");
        QTest::addColumn<int>("startState");
        QTest::addColumn<int>("moveBy");
        QTest::addColumn<int>("leftState");
        // The wanted state in brackets.
        QTest::newRow("(off) on") << false << int(OnOffSwitchControlCell::OffState) << 0
                                  << int(OnOffSwitchControlCell::OnState);
        QTest::newRow("(on) off") << false << int(OnOffSwitchControlCell::OffState) << 30
                                  << int(OnOffSwitchControlCell::OffState);
        QTest::newRow("(mixed) off") << true << int(OnOffSwitchControlCell::OffState) << 16
                                     << int(OnOffSwitchControlCell::OffState);
        QTest::newRow("(on) mixed") << true << int(OnOffSwitchControlCell::OffState) << 30
                                    << int(OnOffSwitchControlCell::MixedState);
        QTest::newRow("(off) on, from mixed") << true << int(OnOffSwitchControlCell::MixedState)
                                              << -30 << int(OnOffSwitchControlCell::OnState);
    }
    void dragLeavesTheStateBeforeTheWantedOneForTheButtonToAdvance()
    {
        QFETCH(bool, allowsMixedState);
        QFETCH(int, startState);
        QFETCH(int, moveBy);
        QFETCH(int, leftState);
        PinnedClock clock(QDateTime(QDate(2024, 3, 1), QTime(12, 0), Qt::UTC));
        SwitchForm form;
        QVERIFY(form.exposed);
        OnOffSwitchControl *control = form.control();
        control->setAllowsMixedState(allowsMixedState);
        control->setState(startState);
        OnOffSwitchControlCell &cell = control->cell();
        const QPointF start(30, 10);
        QVERIFY(cell.startTrackingAt(start, control));
        QVERIFY(cell.continueTracking(start + QPointF(moveBy, 0), control));
        EVClock::advance(500);
        cell.stopTracking(start + QPointF(moveBy, 0), control);
        QVERIFY(!cell.isTracking());
        QCOMPARE(cell.state(), leftState);
    }

    void cellInAViewThatIsNoControlIsNotTracked()
    {
        QWidget plainView;
        OnOffSwitchControlCell cell;
        QVERIFY(!cell.startTrackingAt(QPointF(14, 10), &plainView));
        QVERIFY(!cell.continueTracking(QPointF(50, 10), &plainView));
        QVERIFY(!cell.isTracking());
        cell.stopTracking(QPointF(50, 10), &plainView);
        QCOMPARE(cell.state(), int(OnOffSwitchControlCell::OffState));
    }
};

TALLYVANE_TEST_MAIN(TestOnOffSwitchControlCell)
#include "tst_onoffswitchcontrolcell.moc"

#include "TestMain.h"

#include "render/EVWidgetLayout.h"

using TextElement = EVWidgetLayout::TextElement;

namespace {
const QRectF smallView(0, 0, 200, 100);
}

class TestEVWidgetLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textBoxesWithAnIconLeaveTheIconColumnFree()
    {
        QCOMPARE(EVWidgetLayout::textBox(TextElement::Title, smallView, true),
                 QRectF(26, 0, 170, 20));
        QCOMPARE(EVWidgetLayout::textBox(TextElement::Date, smallView, true),
                 QRectF(40, 18, 150, 20));
        QCOMPARE(EVWidgetLayout::textBox(TextElement::MajorCountdown, smallView, true),
                 QRectF(46, 40, 130, 40));
        QCOMPARE(EVWidgetLayout::textBox(TextElement::SecondCountdown, smallView, true),
                 QRectF(46, 78, 130, 20));
    }

    void textBoxesWithoutAnIconAreCentred()
    {
        QCOMPARE(EVWidgetLayout::textBox(TextElement::Title, smallView, false),
                 QRectF(15, 0, 170, 20));
        QCOMPARE(EVWidgetLayout::textBox(TextElement::Date, smallView, false),
                 QRectF(25, 18, 150, 20));
        QCOMPARE(EVWidgetLayout::textBox(TextElement::MajorCountdown, smallView, false),
                 QRectF(35, 40, 130, 40));
        QCOMPARE(EVWidgetLayout::textBox(TextElement::SecondCountdown, smallView, false),
                 QRectF(35, 78, 130, 20));
    }

    void textBoxesFollowTheBoundsOrigin()
    {
        QCOMPARE(EVWidgetLayout::textBox(TextElement::Title, QRectF(10, 20, 200, 100), true),
                 QRectF(36, 20, 170, 20));
        QCOMPARE(EVWidgetLayout::iconColumn(QRectF(10, 20, 200, 100)), QRectF(22, 20, 30, 100));
    }

    void textBoxesScaleWithTheView()
    {
        QCOMPARE(EVWidgetLayout::textBox(TextElement::MajorCountdown, QRectF(0, 0, 300, 150), true),
                 QRectF(69, 60, 195, 60));
    }

    void fontSizesAreTheBoxHeightLessThirteen()
    {
        QCOMPARE(EVWidgetLayout::fontPixelSize(TextElement::Title, smallView, QStringLiteral("T")),
                 7.0);
        QCOMPARE(EVWidgetLayout::fontPixelSize(TextElement::Date, smallView, QStringLiteral("D")),
                 7.0);
        QCOMPARE(EVWidgetLayout::fontPixelSize(TextElement::MajorCountdown, smallView,
                                               QStringLiteral("30")),
                 27.0);
        QCOMPARE(EVWidgetLayout::fontPixelSize(TextElement::SecondCountdown, smallView,
                                               QStringLiteral("Days Left")),
                 7.0);
    }

    void majorLineInClockFormIsEightSmaller()
    {
        QCOMPARE(EVWidgetLayout::fontPixelSize(TextElement::MajorCountdown, smallView,
                                               QStringLiteral("12:30:05")),
                 19.0);
    }

    void onlyTheMajorLineShrinksForAColon()
    {
        QCOMPARE(EVWidgetLayout::fontPixelSize(TextElement::SecondCountdown, smallView,
                                               QStringLiteral("12:30:05")),
                 7.0);
        QCOMPARE(
            EVWidgetLayout::fontPixelSize(TextElement::Title, smallView, QStringLiteral("a:b")),
            7.0);
    }

    void fontSizeHasNoLowerBound()
    {
        QCOMPARE(EVWidgetLayout::fontPixelSize(TextElement::Title, QRectF(0, 0, 100, 40),
                                               QStringLiteral("T")),
                 -5.0);
    }

    void lineIsCentredVerticallyInItsBox()
    {
        QCOMPARE(EVWidgetLayout::lineRect(QRectF(46, 40, 130, 40), 10), QRectF(46, 55, 130, 10));
    }

    void lineWithoutATitleHasNoHeightAtTheBoxsMiddle()
    {
        QCOMPARE(EVWidgetLayout::lineRect(QRectF(40, 18, 150, 20), 0), QRectF(40, 28, 150, 0));
    }

    void iconColumnIsTheLeftStrip()
    {
        QCOMPARE(EVWidgetLayout::iconColumn(smallView), QRectF(12, 0, 30, 100));
    }

    void iconOfTheColumnsSizeIsDrawnInTheColumnTenLower()
    {
        QCOMPARE(EVWidgetLayout::iconRect(smallView, QSizeF(30, 100)), QRectF(12, 10, 30, 100));
    }

    void iconOfTheColumnsWholePointSizeIsNotFitted()
    {
        // 30.6 x 100.9 truncates to the column's 30 x 100, so the column is used as it is.
        QCOMPARE(EVWidgetLayout::iconRect(smallView, QSizeF(30.6, 100.9)), QRectF(12, 10, 30, 100));
    }

    void squareIconIsFittedToTheColumnsWidth()
    {
        QCOMPARE(EVWidgetLayout::iconRect(smallView, QSizeF(64, 64)), QRectF(12, 45, 30, 30));
    }

    void wideIconIsFittedToTheColumnsWidth()
    {
        QCOMPARE(EVWidgetLayout::iconRect(smallView, QSizeF(60, 30)), QRectF(12, 52.5, 30, 15));
    }

    void tallIconIsScaledUpToTheColumnsHeight()
    {
        QCOMPARE(EVWidgetLayout::iconRect(smallView, QSizeF(10, 50)), QRectF(17, 10, 20, 100));
    }
};

TALLYVANE_TEST_MAIN(TestEVWidgetLayout)
#include "tst_evwidgetlayout.moc"

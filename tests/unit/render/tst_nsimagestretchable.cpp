#include "TestMain.h"

#include "render/NSImage+stretchable.h"

#include <QPainter>

using NSImageStretchable::drawStretchableInRect;

namespace {

// Every pixel a different opaque colour, so that any move or resampling shows.
QImage patternedPicture(int width, int height)
{
    QImage picture(width, height, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            picture.setPixel(x, y, qRgb(x * 255 / width, y * 255 / height, (x * 7 + y * 13) % 256));
    return picture;
}

const QColor partColors[9] = {Qt::red,    Qt::green, Qt::blue,    Qt::cyan,     Qt::magenta,
                              Qt::yellow, Qt::gray,  Qt::darkRed, Qt::darkGreen};

// A 30 x 30 picture whose nine 10 x 10 parts are each one solid colour.
QImage ninePartPicture()
{
    QImage picture(30, 30, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&picture);
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            painter.fillRect(column * 10, row * 10, 10, 10, partColors[row * 3 + column]);
    return picture;
}

// The first pixel of area in picture that is not color, as text; empty when all are.
QString otherColorIn(const QImage &picture, const QRect &area, const QColor &color)
{
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (picture.pixelColor(x, y) != color)
                return QStringLiteral("(%1, %2) is %3 alpha %4, not %5")
                    .arg(x)
                    .arg(y)
                    .arg(picture.pixelColor(x, y).name())
                    .arg(picture.pixelColor(x, y).alpha())
                    .arg(color.name());
    return QString();
}

bool sameArea(const QImage &a, const QRect &areaOfA, const QImage &b, const QPoint &originInB)
{
    return a.copy(areaOfA) == b.copy(QRect(originInB, areaOfA.size()));
}

} // namespace

class TestNSImageStretchable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ninePartResultHasTheRectsSize()
    {
        const QImage result = drawStretchableInRect(ninePartPicture(), QRectF(0, 0, 100, 50),
                                                    QMarginsF(10, 10, 10, 10));
        QCOMPARE(result.size(), QSize(100, 50));
    }

    void ninePartCornersAreUnchangedPixelForPixel()
    {
        const QImage source = patternedPicture(30, 30);
        const QImage result =
            drawStretchableInRect(source, QRectF(0, 0, 100, 50), QMarginsF(10, 10, 10, 10));
        QVERIFY(sameArea(source, QRect(0, 0, 10, 10), result, QPoint(0, 0)));
        QVERIFY(sameArea(source, QRect(20, 0, 10, 10), result, QPoint(90, 0)));
        QVERIFY(sameArea(source, QRect(0, 20, 10, 10), result, QPoint(0, 40)));
        QVERIFY(sameArea(source, QRect(20, 20, 10, 10), result, QPoint(90, 40)));
    }

    void ninePartEdgesAndCentreFillTheirSlots_data()
    {
        QTest::addColumn<int>("part");
        QTest::addColumn<QRect>("slot");
        // 30 x 30 with insets of 10, stretched to 100 x 50: corners 10 x 10, top and bottom
        // edges 80 x 10, left and right edges 10 x 30, centre 80 x 30.
        QTest::newRow("top-left") << 0 << QRect(0, 0, 10, 10);
        QTest::newRow("top edge") << 1 << QRect(10, 0, 80, 10);
        QTest::newRow("top-right") << 2 << QRect(90, 0, 10, 10);
        QTest::newRow("left edge") << 3 << QRect(0, 10, 10, 30);
        QTest::newRow("centre") << 4 << QRect(10, 10, 80, 30);
        QTest::newRow("right edge") << 5 << QRect(90, 10, 10, 30);
        QTest::newRow("bottom-left") << 6 << QRect(0, 40, 10, 10);
        QTest::newRow("bottom edge") << 7 << QRect(10, 40, 80, 10);
        QTest::newRow("bottom-right") << 8 << QRect(90, 40, 10, 10);
    }
    void ninePartEdgesAndCentreFillTheirSlots()
    {
        QFETCH(int, part);
        QFETCH(QRect, slot);
        const QImage result = drawStretchableInRect(ninePartPicture(), QRectF(0, 0, 100, 50),
                                                    QMarginsF(10, 10, 10, 10));
        const QString offender = otherColorIn(result, slot, partColors[part]);
        QVERIFY2(offender.isEmpty(), qPrintable(offender));
    }

    void ninePartCentreIsStretchedOnceNotTiled()
    {
        QImage source = ninePartPicture();
        QPainter(&source).fillRect(15, 10, 5, 10, Qt::black);
        const QImage result =
            drawStretchableInRect(source, QRectF(0, 0, 100, 50), QMarginsF(10, 10, 10, 10));
        // The centre's left half stays its colour over most of the slot's left half, its right
        // half black over most of the right half; tiling would repeat them. Smooth scaling
        // blends a few pixels around the middle.
        const QString left = otherColorIn(result, QRect(10, 10, 30, 30), partColors[4]);
        QVERIFY2(left.isEmpty(), qPrintable(left));
        const QString right = otherColorIn(result, QRect(60, 10, 30, 30), Qt::black);
        QVERIFY2(right.isEmpty(), qPrintable(right));
    }

    void ninePartWithoutInsetsScalesTheWholePicture()
    {
        QImage source(30, 30, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&source);
        painter.fillRect(0, 0, 15, 15, Qt::red);
        painter.fillRect(15, 0, 15, 15, Qt::green);
        painter.fillRect(0, 15, 15, 15, Qt::blue);
        painter.fillRect(15, 15, 15, 15, Qt::yellow);
        painter.end();
        const QImage result = drawStretchableInRect(source, QRectF(0, 0, 100, 50), QMarginsF());
        QCOMPARE(result.size(), QSize(100, 50));
        QVERIFY(otherColorIn(result, QRect(0, 0, 48, 23), Qt::red).isEmpty());
        QVERIFY(otherColorIn(result, QRect(52, 0, 48, 23), Qt::green).isEmpty());
        QVERIFY(otherColorIn(result, QRect(0, 27, 48, 23), Qt::blue).isEmpty());
        QVERIFY(otherColorIn(result, QRect(52, 27, 48, 23), Qt::yellow).isEmpty());
    }

    void ninePartRectOriginShiftsAndCutsTheParts()
    {
        const QImage result = drawStretchableInRect(ninePartPicture(), QRectF(20, 10, 100, 50),
                                                    QMarginsF(10, 10, 10, 10));
        QCOMPARE(result.size(), QSize(100, 50));
        QVERIFY(otherColorIn(result, QRect(0, 0, 100, 10), Qt::transparent).isEmpty());
        QVERIFY(otherColorIn(result, QRect(0, 0, 20, 50), Qt::transparent).isEmpty());
        QVERIFY(otherColorIn(result, QRect(20, 10, 10, 10), partColors[0]).isEmpty());
        QVERIFY(otherColorIn(result, QRect(30, 10, 70, 10), partColors[1]).isEmpty());
        QVERIFY(otherColorIn(result, QRect(30, 20, 70, 30), partColors[4]).isEmpty());
    }

    void ninePartInsetsWiderThanTheRectLeaveOutTheEmptyParts()
    {
        const QImage result = drawStretchableInRect(ninePartPicture(), QRectF(0, 0, 30, 30),
                                                    QMarginsF(20, 20, 20, 20));
        QCOMPARE(result.size(), QSize(30, 30));
        // The corners overlap, each drawn at its inset size; the last drawn is on top.
        QCOMPARE(result.pixelColor(0, 0), QColor(partColors[0]));
        QCOMPARE(result.pixelColor(29, 29), QColor(partColors[8]));
    }

    void ninePartOfAnEmptyRectIsNoPicture()
    {
        QVERIFY(
            drawStretchableInRect(ninePartPicture(), QRectF(0, 0, 0, 50), QMarginsF(10, 10, 10, 10))
                .isNull());
        QVERIFY(
            drawStretchableInRect(ninePartPicture(), QRectF(0, 0, -5, 50), QMarginsF()).isNull());
    }

    void ninePartOfNoPictureIsTransparent()
    {
        const QImage result =
            drawStretchableInRect(QImage(), QRectF(0, 0, 40, 40), QMarginsF(10, 10, 10, 10));
        QCOMPARE(result.size(), QSize(40, 40));
        QVERIFY(otherColorIn(result, result.rect(), Qt::transparent).isEmpty());
    }

    void threePartKeepsTheCapsUnchanged()
    {
        const QImage strip = patternedPicture(60, 12);
        const QImage result = NSImageStretchable::image(strip, 20, 100, 20);
        QCOMPARE(result.size(), QSize(140, 12));
        QVERIFY(sameArea(strip, QRect(0, 0, 20, 12), result, QPoint(0, 0)));
        QVERIFY(sameArea(strip, QRect(40, 0, 20, 12), result, QPoint(120, 0)));
    }

    void threePartStretchesTheMiddleOnceNotTiled()
    {
        QImage strip(60, 12, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&strip);
        painter.fillRect(0, 0, 20, 12, Qt::red);
        painter.fillRect(20, 0, 10, 12, Qt::green);
        painter.fillRect(30, 0, 10, 12, Qt::blue);
        painter.fillRect(40, 0, 20, 12, Qt::yellow);
        painter.end();
        const QImage result = NSImageStretchable::image(strip, 20, 100, 20);
        QVERIFY(otherColorIn(result, QRect(0, 0, 20, 12), Qt::red).isEmpty());
        // Smooth scaling blends a few pixels where green meets blue.
        const QString green = otherColorIn(result, QRect(20, 0, 40, 12), Qt::green);
        QVERIFY2(green.isEmpty(), qPrintable(green));
        const QString blue = otherColorIn(result, QRect(80, 0, 40, 12), Qt::blue);
        QVERIFY2(blue.isEmpty(), qPrintable(blue));
        QVERIFY(otherColorIn(result, QRect(120, 0, 20, 12), Qt::yellow).isEmpty());
    }

    void threePartCapsWiderThanTheStripLeaveTheMiddleEmpty()
    {
        QImage strip(60, 12, QImage::Format_ARGB32_Premultiplied);
        strip.fill(Qt::red);
        const QImage result = NSImageStretchable::image(strip, 40, 30, 40);
        QCOMPARE(result.size(), QSize(110, 12));
        QVERIFY(otherColorIn(result, QRect(0, 0, 40, 12), Qt::red).isEmpty());
        QVERIFY(otherColorIn(result, QRect(40, 0, 30, 12), Qt::transparent).isEmpty());
        QVERIFY(otherColorIn(result, QRect(70, 0, 40, 12), Qt::red).isEmpty());
    }

    void threePartWithoutCapsStretchesTheWholeStrip()
    {
        const QImage strip = patternedPicture(60, 12);
        const QImage result = NSImageStretchable::image(strip, 0, 60, 0);
        QCOMPARE(result, strip.convertToFormat(result.format()));
    }

    void threePartOfNoWidthIsNoPicture()
    {
        QVERIFY(NSImageStretchable::image(patternedPicture(60, 12), 0, 0, 0).isNull());
        QVERIFY(NSImageStretchable::image(patternedPicture(60, 12), 10, -30, 10).isNull());
        QVERIFY(NSImageStretchable::image(QImage(), 10, 10, 10).isNull());
    }
};

TALLYVANE_TEST_MAIN(TestNSImageStretchable)
#include "tst_nsimagestretchable.moc"

#include "TestMain.h"

#include "render/EVTallyView.h"
#include "store/EVCustomStyle.h"
#include "store/EVWidgetEntry.h"

#include <QBuffer>
#include <QImageWriter>

#include <cmath>
#include <limits>

namespace {

const QSizeF thumbnailSize(60, 40);
const QSizeF backgroundSize(300, 150);

struct ExpectedColor
{
    double red;
    double green;
    double blue;
    double alpha;
};

// Pixels whose whole square lies outside, or inside, the quarter circle of a rounded corner.
// Half a pixel of slack absorbs antialiasing and the curve's approximation.
enum class CornerPlace { Outside, Inside, Edge };

CornerPlace placeInCorners(const QSize &size, int x, int y, double radius)
{
    const double centreX = x < radius ? radius : size.width() - radius;
    const double centreY = y < radius ? radius : size.height() - radius;
    const bool inCornerSquare = (x < radius || x + 1 > size.width() - radius) &&
                                (y < radius || y + 1 > size.height() - radius);
    if (!inCornerSquare)
        return CornerPlace::Inside;
    const double nearestX = std::clamp(centreX, double(x), double(x + 1));
    const double nearestY = std::clamp(centreY, double(y), double(y + 1));
    const double farthestX = std::abs(centreX - x) > std::abs(centreX - (x + 1)) ? x : x + 1;
    const double farthestY = std::abs(centreY - y) > std::abs(centreY - (y + 1)) ? y : y + 1;
    if (std::hypot(nearestX - centreX, nearestY - centreY) > radius + 0.5)
        return CornerPlace::Outside;
    if (std::hypot(farthestX - centreX, farthestY - centreY) < radius - 0.5)
        return CornerPlace::Inside;
    return CornerPlace::Edge;
}

// The first pixel that is not transparent outside the corners, as text; empty when none is.
QString opaquePixelOutsideCorners(const QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (placeInCorners(picture.size(), x, y, EVTallyView::cornerRadius) ==
                    CornerPlace::Outside &&
                qAlpha(picture.pixel(x, y)) != 0)
                return QStringLiteral("(%1, %2) alpha %3")
                    .arg(x)
                    .arg(y)
                    .arg(qAlpha(picture.pixel(x, y)));
        }
    }
    return QString();
}

bool near8Bit(int actual, double fraction)
{
    return std::abs(actual - fraction * 255.0) <= 1.0;
}

// The first pixel inside the rounded rectangle that differs from the colour by more than one
// 8-bit step, as text; empty when all match.
QString pixelInsideOtherThan(const QImage &picture, const ExpectedColor &expected)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (placeInCorners(picture.size(), x, y, EVTallyView::cornerRadius) !=
                CornerPlace::Inside)
                continue;
            const QColor actual = picture.pixelColor(x, y);
            if (!near8Bit(actual.red(), expected.red) ||
                !near8Bit(actual.green(), expected.green) ||
                !near8Bit(actual.blue(), expected.blue) ||
                !near8Bit(actual.alpha(), expected.alpha))
                return QStringLiteral("(%1, %2) is %3 alpha %4")
                    .arg(x)
                    .arg(y)
                    .arg(actual.name())
                    .arg(actual.alpha());
        }
    }
    return QString();
}

int brightness(const QImage &picture, int x, int y)
{
    return qGray(picture.pixel(x, y));
}

QImage quadrantPicture()
{
    QImage picture(2, 2, QImage::Format_ARGB32);
    picture.setPixelColor(0, 0, Qt::red);
    picture.setPixelColor(1, 0, Qt::green);
    picture.setPixelColor(0, 1, Qt::blue);
    picture.setPixelColor(1, 1, Qt::yellow);
    return picture;
}

QByteArray tiffData(const QImage &picture)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "tiff");
    return writer.write(picture) ? data : QByteArray();
}

// The single-precision alphas, widened: 0.949999988079071 and 0.699999988079071.
const double translucentThumbnailAlpha = static_cast<double>(0.95f);
const double translucentBackgroundAlpha = static_cast<double>(0.7f);

struct StyleRow
{
    double red;
    double green;
    double blue;
    bool translucent;
};

const StyleRow solidStyles[] = {
    {0.1, 0.1, 0.1, true},     {0.0, 0.2, 0.25, true},
    {0.1, 0.1, 0.1, false},    {0.2, 0.0, 0.0, true},
    {0.05, 0.2, 0.05, true},   {0.7, 0.7, 0.0, false},
    {0.25, 0.15, 0.65, false}, {1.0, 64 / 255.0, 1.0, true},
    {0.4, 0.4, 0.4, false},    {0, 0, 0, false},
    {0.5, 0.7, 0.0, false},    {118 / 255.0, 77 / 255.0, 36 / 255.0, true},
};

} // namespace

class TestEVTallyView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thumbnailIsCachedByStyleNumberAlone()
    {
        const QImage first = EVTallyView::imageForStyle(3, thumbnailSize);
        const QImage second = EVTallyView::imageForStyle(3, QSizeF(120, 90));
        QCOMPARE(first.size(), QSize(60, 40));
        QCOMPARE(second.cacheKey(), first.cacheKey());
        QCOMPARE(second.size(), QSize(60, 40));
    }

    void backgroundIsCachedByStyleNumberAlone()
    {
        const QImage first = EVTallyView::buildinBackgroundForStyle(0, QSizeF(300, 150));
        const QImage second = EVTallyView::buildinBackgroundForStyle(0, QSizeF(200, 100));
        QCOMPARE(first.size(), QSize(300, 150));
        QCOMPARE(second.cacheKey(), first.cacheKey());
        QCOMPARE(second.size(), QSize(300, 150));
    }

    void thumbnailsAndBackgroundsAreCachedApart()
    {
        const QImage thumbnail = EVTallyView::imageForStyle(1, thumbnailSize);
        const QImage background = EVTallyView::buildinBackgroundForStyle(1, thumbnailSize);
        QVERIFY(thumbnail.cacheKey() != background.cacheKey());
        const QPoint middle(30, 20);
        QVERIFY(qAlpha(thumbnail.pixel(middle)) != qAlpha(background.pixel(middle)));
    }

    void cacheKeyIsTheStyleNumbersLowThirtyTwoBits()
    {
        const QImage style4 = EVTallyView::imageForStyle(4, thumbnailSize);
        const quint64 sameLowBits = (quint64(1) << 32) + 4;
        QCOMPARE(EVTallyView::imageForStyle(sameLowBits, thumbnailSize).cacheKey(),
                 style4.cacheKey());
    }

    void builtinPicturesAreTransparentOutsideTheirCorners_data()
    {
        QTest::addColumn<QImage>("picture");
        for (int style = 0; style < EVTallyView::builtinStyleCount; ++style) {
            QTest::addRow("thumbnail %d", style)
                << EVTallyView::imageForStyle(style, thumbnailSize);
            QTest::addRow("background %d", style)
                << EVTallyView::buildinBackgroundForStyle(style, backgroundSize);
        }
    }
    void builtinPicturesAreTransparentOutsideTheirCorners()
    {
        QFETCH(QImage, picture);
        QVERIFY(!picture.isNull());
        const QString offender = opaquePixelOutsideCorners(picture);
        QVERIFY2(offender.isEmpty(), qPrintable(offender));
    }

    void solidBuiltinStylesHaveTheirColourAndAlphaInside_data()
    {
        QTest::addColumn<QImage>("picture");
        QTest::addColumn<double>("red");
        QTest::addColumn<double>("green");
        QTest::addColumn<double>("blue");
        QTest::addColumn<double>("alpha");
        for (int style = 0; style < EVTallyView::builtinStyleCount; ++style) {
            if (style == EVTallyView::gradientStyle)
                continue;
            const StyleRow &row = solidStyles[style];
            QTest::addRow("thumbnail %d", style)
                << EVTallyView::imageForStyle(style, thumbnailSize) << row.red << row.green
                << row.blue << (row.translucent ? translucentThumbnailAlpha : 1.0);
            QTest::addRow("background %d", style)
                << EVTallyView::buildinBackgroundForStyle(style, backgroundSize) << row.red
                << row.green << row.blue << (row.translucent ? translucentBackgroundAlpha : 1.0);
        }
    }
    void solidBuiltinStylesHaveTheirColourAndAlphaInside()
    {
        QFETCH(QImage, picture);
        QFETCH(double, red);
        QFETCH(double, green);
        QFETCH(double, blue);
        QFETCH(double, alpha);
        const QString offender = pixelInsideOtherThan(picture, {red, green, blue, alpha});
        QVERIFY2(offender.isEmpty(), qPrintable(offender));
    }

    void gradientStyleIsBrighterNearItsUpperCentreThanAtItsRim()
    {
        const QImage gradient = EVTallyView::buildinBackgroundForStyle(9, backgroundSize);
        const int w = gradient.width();
        const int h = gradient.height();
        const int upperCentre = brightness(gradient, w / 2, h / 8);
        QVERIFY(std::abs(upperCentre - qRound(0.35 * 255)) <= 3);
        QVERIFY(upperCentre > brightness(gradient, w / 2, h / 2));
        QVERIFY(brightness(gradient, w / 2, h / 2) > brightness(gradient, w / 2, h - 2));
        QVERIFY(upperCentre > brightness(gradient, 2, h / 2) + 20);
        QVERIFY(upperCentre > brightness(gradient, w - 3, h / 2) + 20);
        QCOMPARE(brightness(gradient, 2, h / 2), brightness(gradient, w - 3, h / 2));
        const QString translucent = [&] {
            for (const QPoint point :
                 {QPoint(w / 2, h / 8), QPoint(w / 2, h - 2), QPoint(2, h / 2)})
                if (qAlpha(gradient.pixel(point)) != 255)
                    return QStringLiteral("not opaque");
            return QString();
        }();
        QVERIFY2(translucent.isEmpty(), qPrintable(translucent));
    }

    void numbersAboveElevenGiveTheGradientUnderTheirOwnKey()
    {
        const QImage style9 = EVTallyView::buildinBackgroundForStyle(9, backgroundSize);
        const QImage style12 = EVTallyView::buildinBackgroundForStyle(12, backgroundSize);
        QVERIFY(style12.cacheKey() != style9.cacheKey());
        QCOMPARE(style12, style9);
        QCOMPARE(EVTallyView::buildinBackgroundForStyle(12, QSizeF(20, 20)).cacheKey(),
                 style12.cacheKey());
        QCOMPARE(EVTallyView::imageForStyle(40, thumbnailSize),
                 EVTallyView::imageForStyle(9, thumbnailSize));
    }

    void emptySizeGivesNoPictureAndIsNotCached()
    {
        // A number no other test asks for, so that nothing is cached under it yet.
        const quint64 unusedStyle = 100;
        QVERIFY(EVTallyView::imageForStyle(unusedStyle, QSizeF(0, 40)).isNull());
        const double notANumber = std::numeric_limits<double>::quiet_NaN();
        QVERIFY(EVTallyView::imageForStyle(unusedStyle, QSizeF(notANumber, 40)).isNull());
        QVERIFY(EVTallyView::imageForStyle(unusedStyle, QSizeF(-60, -40)).isNull());
        QCOMPARE(EVTallyView::imageForStyle(unusedStyle, thumbnailSize).size(), QSize(60, 40));
    }

    void customColourBackgroundIsAnOpaqueRoundedRectangleOfThatColour()
    {
        const QImage picture = EVTallyView::createBackgroundFromColorOrImage(
            QColor::fromRgbF(0.2f, 0.4f, 0.6f), backgroundSize);
        QCOMPARE(picture.size(), QSize(300, 150));
        QVERIFY2(opaquePixelOutsideCorners(picture).isEmpty(),
                 qPrintable(opaquePixelOutsideCorners(picture)));
        const QString offender = pixelInsideOtherThan(picture, {0.2, 0.4, 0.6, 1.0});
        QVERIFY2(offender.isEmpty(), qPrintable(offender));
    }

    void customColourBackgroundKeepsTheColoursOwnAlpha()
    {
        const QImage picture = EVTallyView::createBackgroundFromColorOrImage(
            QColor::fromRgbF(1.0f, 0.0f, 0.0f, 0.5f), backgroundSize);
        const QString offender = pixelInsideOtherThan(picture, {1.0, 0.0, 0.0, 0.5});
        QVERIFY2(offender.isEmpty(), qPrintable(offender));
    }

    void customPictureBackgroundIsThePictureStretchedAndRounded()
    {
        const QImage picture =
            EVTallyView::createBackgroundFromColorOrImage(quadrantPicture(), backgroundSize);
        QCOMPARE(picture.size(), QSize(300, 150));
        QCOMPARE(picture.pixelColor(40, 30), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(260, 30), QColor(Qt::green));
        QCOMPARE(picture.pixelColor(40, 120), QColor(Qt::blue));
        QCOMPARE(picture.pixelColor(260, 120), QColor(Qt::yellow));
        QVERIFY2(opaquePixelOutsideCorners(picture).isEmpty(),
                 qPrintable(opaquePixelOutsideCorners(picture)));
        QCOMPARE(qAlpha(picture.pixel(0, 75)), 255);
    }

    void customBackgroundIsMadeAnewOnEveryCall()
    {
        const QColor color(Qt::darkCyan);
        QVERIFY(EVTallyView::createBackgroundFromColorOrImage(color, backgroundSize).cacheKey() !=
                EVTallyView::createBackgroundFromColorOrImage(color, backgroundSize).cacheKey());
    }

    void customBackgroundOfNothingIsTransparent()
    {
        for (const EVTallyView::ColorOrImage &nothing :
             {EVTallyView::ColorOrImage(QColor()), EVTallyView::ColorOrImage(QImage())}) {
            const QImage picture =
                EVTallyView::createBackgroundFromColorOrImage(nothing, backgroundSize);
            QCOMPARE(picture.size(), QSize(300, 150));
            QCOMPARE(qAlpha(picture.pixel(150, 75)), 0);
        }
    }

    void customColourThumbnailHasTheOpacityBakedIn()
    {
        const QImage thumbnail =
            EVTallyView::imageFromColorOrImage(QColor(Qt::red), 0.5f, thumbnailSize);
        QCOMPARE(thumbnail.size(), QSize(60, 40));
        const QString offender = pixelInsideOtherThan(thumbnail, {1.0, 0.0, 0.0, 0.5});
        QVERIFY2(offender.isEmpty(), qPrintable(offender));
        QVERIFY2(opaquePixelOutsideCorners(thumbnail).isEmpty(),
                 qPrintable(opaquePixelOutsideCorners(thumbnail)));
    }

    void customPictureThumbnailHasTheOpacityBakedIn()
    {
        const QImage thumbnail =
            EVTallyView::imageFromColorOrImage(quadrantPicture(), 0.25f, thumbnailSize);
        const QColor topLeft = thumbnail.pixelColor(12, 10);
        QVERIFY(near8Bit(topLeft.alpha(), 0.25));
        QVERIFY(topLeft.red() >= 250 && topLeft.green() <= 5 && topLeft.blue() <= 5);
        const QColor bottomRight = thumbnail.pixelColor(48, 30);
        QVERIFY(bottomRight.red() >= 250 && bottomRight.green() >= 250 && bottomRight.blue() <= 5);
        QVERIFY2(opaquePixelOutsideCorners(thumbnail).isEmpty(),
                 qPrintable(opaquePixelOutsideCorners(thumbnail)));
    }

    void widgetOnACustomColourStyleGetsTheStylesOpacity()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        EVCustomStyle style;
        style.resetDefault();
        style.setColor(QColor::fromRgbF(0.0f, 0.5f, 1.0f));
        style.setOpacity(0.5f);
        entry.addCustomStylesObject(&style);
        entry.setStyleIndex(12);

        const EVBackgroundImage background =
            EVTallyView::backgroundImageForWidget(entry, QSizeF(200, 100));
        QCOMPARE(background.transparent(), 0.5);
        QCOMPARE(background.image().size(), QSize(200, 100));
        const QString offender = pixelInsideOtherThan(background.image(), {0.0, 0.5, 1.0, 1.0});
        QVERIFY2(offender.isEmpty(), qPrintable(offender));
    }

    void widgetOnACustomPictureStyleGetsThePicture()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        EVCustomStyle colourStyle;
        colourStyle.resetDefault();
        EVCustomStyle pictureStyle;
        pictureStyle.resetDefault();
        pictureStyle.setType(1);
        pictureStyle.setImageData(tiffData(quadrantPicture()));
        pictureStyle.setOpacity(0.8f);
        entry.addCustomStylesObject(&colourStyle);
        entry.addCustomStylesObject(&pictureStyle);
        entry.setStyleIndex(13);

        const EVBackgroundImage background =
            EVTallyView::backgroundImageForWidget(entry, QSizeF(200, 100));
        QCOMPARE(background.transparent(), static_cast<double>(0.8f));
        QCOMPARE(background.image().pixelColor(30, 20), QColor(Qt::red));
        QCOMPARE(background.image().pixelColor(170, 80), QColor(Qt::yellow));
    }

    void undecodablePictureStyleGivesATransparentBackground()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        EVCustomStyle style;
        style.resetDefault();
        style.setType(1);
        style.setImageData(QByteArrayLiteral("not a picture"));
        style.setOpacity(1.0f);
        entry.addCustomStylesObject(&style);
        entry.setStyleIndex(12);

        const EVBackgroundImage background =
            EVTallyView::backgroundImageForWidget(entry, QSizeF(200, 100));
        QCOMPARE(background.image().size(), QSize(200, 100));
        QCOMPARE(qAlpha(background.image().pixel(100, 50)), 0);
        QCOMPARE(qAlpha(EVTallyView::thumbnailForCustomStyle(style, thumbnailSize).pixel(30, 20)),
                 0);
    }

    void widgetOnBuiltinStyleZeroGetsFullOpacityAndATranslucentPicture()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        entry.setStyleIndex(0);
        const EVBackgroundImage background =
            EVTallyView::backgroundImageForWidget(entry, backgroundSize);
        QCOMPARE(background.transparent(), 1.0);
        QCOMPARE(background.image().cacheKey(),
                 EVTallyView::buildinBackgroundForStyle(0, backgroundSize).cacheKey());
        QVERIFY(near8Bit(qAlpha(background.image().pixel(150, 75)), 0.7));
    }

    void widgetOnAMissingCustomStyleGetsNoPicture()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        EVCustomStyle style;
        style.resetDefault();
        entry.addCustomStylesObject(&style);
        entry.setStyleIndex(13);
        const EVBackgroundImage background =
            EVTallyView::backgroundImageForWidget(entry, backgroundSize);
        QVERIFY(background.image().isNull());
    }

    void widgetOnANegativeStyleIndexGetsTheGradient()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        entry.setStyleIndex(-1);
        const EVBackgroundImage background =
            EVTallyView::backgroundImageForWidget(entry, backgroundSize);
        QCOMPARE(background.transparent(), 1.0);
        QCOMPARE(background.image(), EVTallyView::buildinBackgroundForStyle(9, backgroundSize));
    }

    void customStyleThumbnailUsesTheStylesColourAndOpacity()
    {
        EVCustomStyle style;
        style.resetDefault();
        style.setColor(QColor(Qt::green));
        style.setOpacity(0.4f);
        const QImage thumbnail = EVTallyView::thumbnailForCustomStyle(style, thumbnailSize);
        QCOMPARE(thumbnail.size(), QSize(60, 40));
        const QString offender = pixelInsideOtherThan(thumbnail, {0.0, 1.0, 0.0, 0.4});
        QVERIFY2(offender.isEmpty(), qPrintable(offender));
    }

    void newBackgroundHolderIsOpaqueWithoutAPicture()
    {
        const EVBackgroundImage holder;
        QVERIFY(holder.image().isNull());
        QCOMPARE(holder.transparent(), 1.0);
    }
};

TALLYVANE_TEST_MAIN(TestEVTallyView)
#include "tst_evtallyview.moc"

#include "TestMain.h"

#include "core/EVAppImage.h"
#include "render/EVFontFamily.h"
#include "render/EVWidgetView.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QRegularExpression>

#include <memory>

using TextElement = EVWidgetLayout::TextElement;

namespace {

const QColor untouched(10, 20, 30);

// The view painted over a canvas of the colour untouched, as a window would show it.
QImage rendered(EVWidgetView &view)
{
    QImage canvas(view.size(), QImage::Format_ARGB32_Premultiplied);
    canvas.fill(untouched);
    view.render(&canvas, QPoint(), QRegion(), QWidget::DrawChildren);
    return canvas;
}

// The view painted over a transparent canvas, so that only what it drew has any alpha.
QImage renderedAlone(EVWidgetView &view)
{
    QImage canvas(view.size(), QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    view.render(&canvas, QPoint(), QRegion(), QWidget::DrawChildren);
    return canvas;
}

// The bounding box of everything drawn inside area.
QRect inkBounds(const QImage &picture, const QRect &area)
{
    QRect ink;
    const QRect clipped = area.intersected(picture.rect());
    for (int y = clipped.top(); y <= clipped.bottom(); ++y)
        for (int x = clipped.left(); x <= clipped.right(); ++x)
            if (qAlpha(picture.pixel(x, y)) > 0)
                ink |= QRect(x, y, 1, 1);
    return ink;
}

// The colour of the most opaque pixel in area: a glyph's core, free of antialiasing.
QColor strongestColor(const QImage &picture, const QRect &area)
{
    QColor strongest = Qt::transparent;
    const QRect clipped = area.intersected(picture.rect());
    for (int y = clipped.top(); y <= clipped.bottom(); ++y)
        for (int x = clipped.left(); x <= clipped.right(); ++x)
            if (picture.pixelColor(x, y).alpha() > strongest.alpha())
                strongest = picture.pixelColor(x, y);
    return strongest;
}

QImage solidPicture(int width, int height, const QColor &color)
{
    QImage picture(width, height, QImage::Format_ARGB32_Premultiplied);
    picture.fill(color);
    return picture;
}

QFont widgetFont(int pixelSize, bool bold)
{
    QFont font(EVFontFamily::forName(QStringLiteral("LucidaGrande")));
    font.setPixelSize(pixelSize);
    font.setBold(bold);
    return font;
}

std::unique_ptr<EVWidgetView> viewOfSize(int width, int height)
{
    auto view = std::make_unique<EVWidgetView>();
    view->resize(width, height);
    return view;
}

} // namespace

class TestEVWidgetView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void viewFromAnInterfaceFileHasTheSansFontAndNoIcon()
    {
        EVWidgetView view;
        QCOMPARE(view.textFontName(), QStringLiteral("LucidaGrande"));
        QCOMPARE(view.textColor(), QColor(Qt::white));
        QVERIFY(view.icon().isNull());
    }

    void viewMadeWithAFrameHasTheClockIconAndNoFontName()
    {
        EVWidgetView view(QRectF(5, 6, 200, 100));
        QCOMPARE(view.geometry(), QRect(5, 6, 200, 100));
        QVERIFY(view.textFontName().isNull());
        QCOMPARE(view.textColor(), QColor(Qt::white));
        QVERIFY(!view.icon().isNull());
        QCOMPARE(view.icon(), EVAppImage::named(QStringLiteral("clock")));
    }

    void lucidaGrandeIsTheSystemSansFamily()
    {
        const QString family = EVFontFamily::forName(QStringLiteral("LucidaGrande"));
        QVERIFY(!family.isEmpty());
        QCOMPARE(QFontInfo(QFont(family)).family(), family);
        QVERIFY(EVFontFamily::forName(QString()).isNull());
        QVERIFY(EVFontFamily::forName(QStringLiteral("No Such Family 4711")).isNull());
    }

    void backgroundAtTransparentZeroLeavesThePixelsUntouched()
    {
        auto view = viewOfSize(200, 100);
        view->setBackground(EVBackgroundImage(solidPicture(200, 100, Qt::red), 0.0));
        const QImage picture = rendered(*view);
        QCOMPARE(picture.pixelColor(100, 50), untouched);
        QCOMPARE(picture.pixelColor(3, 3), untouched);
    }

    void backgroundAtTransparentOnePaintsThePixels()
    {
        auto view = viewOfSize(200, 100);
        view->setBackground(EVBackgroundImage(solidPicture(200, 100, Qt::red), 1.0));
        const QImage picture = rendered(*view);
        QCOMPARE(picture.pixelColor(100, 50), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(0, 0), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(199, 99), QColor(Qt::red));
    }

    void backgroundIsDrawnAtItsOpacity()
    {
        auto view = viewOfSize(200, 100);
        view->setBackground(EVBackgroundImage(solidPicture(200, 100, Qt::white), 0.5));
        const QImage picture = renderedAlone(*view);
        QVERIFY(std::abs(qAlpha(picture.pixel(100, 50)) - 128) <= 1);
    }

    void backgroundIsScaledToTheBounds()
    {
        auto view = viewOfSize(200, 100);
        view->setBackground(EVBackgroundImage(solidPicture(50, 20, Qt::blue), 1.0));
        const QImage picture = rendered(*view);
        QCOMPARE(picture.pixelColor(2, 2), QColor(Qt::blue));
        QCOMPARE(picture.pixelColor(197, 97), QColor(Qt::blue));
    }

    void viewWithoutBackgroundLetsTheWindowShowThrough()
    {
        auto view = viewOfSize(200, 100);
        QCOMPARE(rendered(*view).pixelColor(100, 50), untouched);
    }

    void iconOfTheColumnsSizeIsDrawnTenPointsLower()
    {
        auto view = viewOfSize(200, 100);
        view->setIcon(solidPicture(30, 100, Qt::green));
        const QImage picture = renderedAlone(*view);
        QCOMPARE(inkBounds(picture, QRect(0, 0, 200, 100)), QRect(12, 10, 30, 90));
    }

    void squareIconIsFittedAndCentredTenPointsLower()
    {
        auto view = viewOfSize(200, 100);
        view->setIcon(solidPicture(64, 64, Qt::green));
        const QImage picture = renderedAlone(*view);
        QCOMPARE(inkBounds(picture, QRect(0, 0, 200, 100)), QRect(12, 45, 30, 30));
        QCOMPARE(picture.pixelColor(27, 60), QColor(Qt::green));
    }

    void iconIsDrawnOverTheBackground()
    {
        auto view = viewOfSize(200, 100);
        view->setBackground(EVBackgroundImage(solidPicture(200, 100, Qt::red), 1.0));
        view->setIcon(solidPicture(64, 64, Qt::green));
        const QImage picture = rendered(*view);
        QCOMPARE(picture.pixelColor(27, 60), QColor(Qt::green));
        QCOMPARE(picture.pixelColor(27, 20), QColor(Qt::red));
    }

    void titleWithoutAnIconIsCentredInTheView()
    {
        auto view = viewOfSize(400, 200);
        view->setTitle(QStringLiteral("Holidays"));
        const QImage picture = renderedAlone(*view);
        const QRect ink = inkBounds(picture, picture.rect());
        QVERIFY(!ink.isEmpty());
        QVERIFY2(std::abs((ink.left() + ink.right() + 1) / 2.0 - 200) <= 1.5,
                 qPrintable(QStringLiteral("ink from %1 to %2").arg(ink.left()).arg(ink.right())));
        QVERIFY(ink.top() >= 0 && ink.bottom() < 40);
    }

    void titleWithAnIconIsCentredInItsBoxRightOfTheIcon()
    {
        auto view = viewOfSize(400, 200);
        view->setTitle(QStringLiteral("Holidays"));
        view->setIcon(solidPicture(60, 200, Qt::transparent));
        const QImage picture = renderedAlone(*view);
        const QRect ink = inkBounds(picture, picture.rect());
        const double boxCentre = 0.13 * 400 + 0.85 * 400 / 2;
        QVERIFY2(std::abs((ink.left() + ink.right() + 1) / 2.0 - boxCentre) <= 1.5,
                 qPrintable(QStringLiteral("ink from %1 to %2").arg(ink.left()).arg(ink.right())));
    }

    void textsAreDrawnInTheTextColour()
    {
        auto view = viewOfSize(400, 200);
        view->setTextColor(QColor(Qt::yellow));
        view->setMajorCountdown(QStringLiteral("88"));
        const QImage picture = renderedAlone(*view);
        QCOMPARE(strongestColor(picture, picture.rect()), QColor(Qt::yellow));
    }

    void eachTextIsDrawnInsideItsOwnBox_data()
    {
        QTest::addColumn<int>("element");
        QTest::newRow("title") << int(TextElement::Title);
        QTest::newRow("date") << int(TextElement::Date);
        QTest::newRow("major") << int(TextElement::MajorCountdown);
        QTest::newRow("second") << int(TextElement::SecondCountdown);
    }
    void eachTextIsDrawnInsideItsOwnBox()
    {
        QFETCH(int, element);
        auto view = viewOfSize(400, 200);
        view->setIcon(solidPicture(60, 200, Qt::transparent));
        const QString text = QStringLiteral("HIH");
        switch (TextElement(element)) {
        case TextElement::Title:
            view->setTitle(text);
            break;
        case TextElement::Date:
            view->setDate(text);
            break;
        case TextElement::MajorCountdown:
            view->setMajorCountdown(text);
            break;
        case TextElement::SecondCountdown:
            view->setSecondCountdown(text);
            break;
        }
        const QImage picture = renderedAlone(*view);
        const QRectF box =
            EVWidgetLayout::textBox(TextElement(element), QRectF(view->rect()), true);
        const QRectF ink = inkBounds(picture, picture.rect());
        QVERIFY(!ink.isEmpty());
        const QString where = QStringLiteral("ink (%1, %2, %3, %4)")
                                  .arg(ink.x())
                                  .arg(ink.y())
                                  .arg(ink.width())
                                  .arg(ink.height());
        QVERIFY2(box.contains(ink), qPrintable(where));
        QVERIFY2(std::abs(ink.center().x() - box.center().x()) <= 1.5, qPrintable(where));
        QVERIFY2(std::abs(ink.center().y() - box.center().y()) <= box.height() / 4,
                 qPrintable(where));
    }

    void majorLineInClockFormIsPaintedEightPixelsSmaller()
    {
        auto view = viewOfSize(400, 200);
        view->setTitle(QStringLiteral("T"));
        const QRect majorBox =
            EVWidgetLayout::textBox(TextElement::MajorCountdown, QRectF(view->rect()), false)
                .toAlignedRect();
        view->setMajorCountdown(QStringLiteral("88"));
        const QRect plain = inkBounds(renderedAlone(*view), majorBox);
        view->setMajorCountdown(QStringLiteral("8:8"));
        const QRect clock = inkBounds(renderedAlone(*view), majorBox);

        // The box is 80 high: fonts of 67 and 59 pixels.
        const qreal plainDigit =
            QFontMetricsF(widgetFont(67, true)).tightBoundingRect(QStringLiteral("8")).height();
        const qreal clockDigit =
            QFontMetricsF(widgetFont(59, true)).tightBoundingRect(QStringLiteral("8")).height();
        QVERIFY(plainDigit - clockDigit > 4);
        QVERIFY2(std::abs(plain.height() - plainDigit) <= 1.5,
                 qPrintable(QStringLiteral("%1 vs %2").arg(plain.height()).arg(plainDigit)));
        QVERIFY2(std::abs(clock.height() - clockDigit) <= 1.5,
                 qPrintable(QStringLiteral("%1 vs %2").arg(clock.height()).arg(clockDigit)));
    }

    void titleTooWideForItsBoxIsShortenedInTheMiddle()
    {
        auto view = viewOfSize(400, 200);
        const QString title =
            QStringLiteral("AB") + QString(60, QLatin1Char('m')) + QStringLiteral("YZ");
        view->setTitle(title);
        const QImage picture = renderedAlone(*view);

        const QRectF box = EVWidgetLayout::textBox(TextElement::Title, QRectF(view->rect()), false);
        const QFont font = widgetFont(27, true);
        const QFontMetricsF metrics(font);
        const QString shortened = metrics.elidedText(title, Qt::ElideMiddle, box.width());
        QVERIFY(shortened.startsWith(QStringLiteral("AB")));
        QVERIFY(shortened.endsWith(QStringLiteral("YZ")));
        QVERIFY(shortened.contains(QChar(0x2026)));

        QImage expected(picture.size(), picture.format());
        expected.fill(Qt::transparent);
        QPainter painter(&expected);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(EVWidgetLayout::lineRect(box, metrics.height()),
                         Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip, shortened);
        painter.end();
        QCOMPARE(picture, expected);
        const QRect ink = inkBounds(picture, picture.rect());
        QVERIFY(ink.width() <= box.width());
    }

    void withoutATitleTheOtherTextsSitAtTheirBoxesMiddle()
    {
        auto view = viewOfSize(400, 200);
        view->setMajorCountdown(QStringLiteral("42"));
        view->setTitle(QStringLiteral("Title"));
        const QRect majorArea(0, 80, 400, 80);
        const QImage withTitle = renderedAlone(*view).copy(majorArea);
        view->setTitle(QString());
        const QImage withoutTitle = renderedAlone(*view).copy(majorArea);
        QVERIFY(!inkBounds(withoutTitle, withoutTitle.rect()).isEmpty());
        QCOMPARE(withoutTitle, withTitle);
    }

    void absentTextsDrawNothing()
    {
        auto view = viewOfSize(400, 200);
        view->setTitle(QString());
        view->setDate(QString());
        const QImage picture = renderedAlone(*view);
        QVERIFY(inkBounds(picture, picture.rect()).isEmpty());
    }

    void textsWithoutRoomForAFontAreLeftOutQuietly()
    {
        // 60 high: title, date and second line would need fonts of -1 pixels, the major line 11.
        auto view = viewOfSize(200, 60);
        view->setTitle(QStringLiteral("Title"));
        view->setDate(QStringLiteral("Date"));
        view->setMajorCountdown(QStringLiteral("12"));
        view->setSecondCountdown(QStringLiteral("Days"));
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        const QImage picture = renderedAlone(*view);
        const QRect majorBox =
            EVWidgetLayout::textBox(TextElement::MajorCountdown, QRectF(view->rect()), false)
                .toAlignedRect();
        QVERIFY(!inkBounds(picture, majorBox).isEmpty());
        QVERIFY(inkBounds(picture, QRect(0, 0, 200, 24)).isEmpty());
        QVERIFY(inkBounds(picture, QRect(0, 48, 200, 12)).isEmpty());
    }

    void viewWithoutAFontNameDrawsInItsOwnFontAndPalette()
    {
        EVWidgetView view(QRectF(0, 0, 400, 200));
        view.setIcon(QImage());
        QPalette palette = view.palette();
        palette.setColor(view.foregroundRole(), Qt::blue);
        view.setPalette(palette);
        view.setTitle(QStringLiteral("Holidays"));
        const QImage picture = renderedAlone(view);
        const QRect ink = inkBounds(picture, picture.rect());
        QVERIFY(!ink.isEmpty());
        const QRectF box = EVWidgetLayout::textBox(TextElement::Title, QRectF(view.rect()), false);
        QVERIFY2(std::abs(ink.left() - box.left()) <= 3,
                 qPrintable(QStringLiteral("ink starts at %1").arg(ink.left())));
        QVERIFY(ink.height() < QFontMetricsF(view.font()).height() + 1);
        QCOMPARE(strongestColor(picture, ink), QColor(Qt::blue));
    }

    void viewWithoutATextColourDrawsInItsPaletteLeftAligned()
    {
        auto view = viewOfSize(400, 200);
        QPalette palette = view->palette();
        palette.setColor(view->foregroundRole(), Qt::green);
        view->setPalette(palette);
        view->setTextColor(QColor());
        view->setTitle(QStringLiteral("Holidays"));
        const QImage picture = renderedAlone(*view);
        const QRect ink = inkBounds(picture, picture.rect());
        QVERIFY(!ink.isEmpty());
        const QRectF box = EVWidgetLayout::textBox(TextElement::Title, QRectF(view->rect()), false);
        QVERIFY2(std::abs(ink.left() - box.left()) <= 3,
                 qPrintable(QStringLiteral("ink starts at %1").arg(ink.left())));
        QCOMPARE(strongestColor(picture, ink), QColor(Qt::green));
        // The font is still the widget font's bold face at the box's size.
        const qreal inkHeight = QFontMetricsF(widgetFont(27, true))
                                    .tightBoundingRect(QStringLiteral("Holidays"))
                                    .height();
        QVERIFY2(std::abs(ink.height() - inkHeight) <= 1.5,
                 qPrintable(QStringLiteral("%1 vs %2").arg(ink.height()).arg(inkHeight)));
    }

    void settingPropertiesDoesNotRepaint()
    {
        EVWidgetView view;
        view.resize(200, 100);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        int paints = 0;
        PaintCounter counter(&paints);
        view.installEventFilter(&counter);
        QCoreApplication::processEvents();
        paints = 0;

        view.setTitle(QStringLiteral("Title"));
        view.setDate(QStringLiteral("Date"));
        view.setMajorCountdown(QStringLiteral("3"));
        view.setSecondCountdown(QStringLiteral("Days Left"));
        view.setIcon(solidPicture(10, 10, Qt::red));
        view.setBackground(EVBackgroundImage(solidPicture(10, 10, Qt::red), 1.0));
        view.setTextColor(Qt::black);
        view.setTextFontName(QStringLiteral("DejaVu Sans"));
        QTest::qWait(50);
        QCOMPARE(paints, 0);

        view.update();
        QTRY_COMPARE(paints, 1);
    }

private:
    class PaintCounter : public QObject
    {
    public:
        explicit PaintCounter(int *paints)
            : m_paints(paints)
        {}
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::Paint)
                ++*m_paints;
            return false;
        }

    private:
        int *m_paints;
    };
};

TALLYVANE_TEST_MAIN(TestEVWidgetView)
#include "tst_evwidgetview.moc"

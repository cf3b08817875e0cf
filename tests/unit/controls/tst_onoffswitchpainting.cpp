#include "TestMain.h"

#include "SwitchForm.h"

#include "controls/OnOffSwitchControl.h"

#include <QPainter>

#include <cmath>
#include <functional>

namespace {

QImage render(OnOffSwitchControl &control, double ratio, const QColor &background = Qt::transparent)
{
    QImage image(control.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(background);
    control.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

// A 60 by 20 switch without labels, so that the track shows its plain colours.
std::unique_ptr<OnOffSwitchControl> unlabelledSwitch(int state, int scheme = 2,
                                                     bool allowsMixedState = false)
{
    auto control = std::make_unique<OnOffSwitchControl>();
    control->resize(60, 20);
    control->setShowsOnOffLabels(false);
    control->setAllowsMixedState(allowsMixedState);
    control->setState(state);
    control->setOnOffSwitchControlColors(scheme);
    return control;
}

// The colour at the centre of the point square (x, y).
QColor colorAtPoint(const QImage &image, int x, int y)
{
    const double ratio = image.devicePixelRatio();
    return image.pixelColor(int((x + 0.5) * ratio), int((y + 0.5) * ratio));
}

bool isThumbWhite(const QColor &color)
{
    return color.red() >= 225 && color.green() >= 225 && color.blue() >= 225;
}

bool isGrey(const QColor &color)
{
    const int highest = std::max({color.red(), color.green(), color.blue()});
    const int lowest = std::min({color.red(), color.green(), color.blue()});
    return highest - lowest <= 4;
}

bool isBlue(const QColor &color)
{
    return color.blue() - color.red() > 60 && color.blue() - color.green() > 30;
}

bool isGreen(const QColor &color)
{
    return color.green() - color.red() > 60 && color.green() - color.blue() > 60;
}

bool isRed(const QColor &color)
{
    return color.red() - color.green() > 60 && color.red() - color.blue() > 60;
}

using ColorTest = std::function<bool(const QColor &)>;

// The first point in the columns and rows given that fails the test, as text; empty when none.
QString pointFailing(const QImage &image, int firstX, int lastX, int firstY, int lastY,
                     const ColorTest &test)
{
    for (int y = firstY; y <= lastY; ++y) {
        for (int x = firstX; x <= lastX; ++x) {
            const QColor color = colorAtPoint(image, x, y);
            if (!test(color))
                return QStringLiteral("(%1, %2) is %3").arg(x).arg(y).arg(color.name());
        }
    }
    return QString();
}

// The visible track beside the thumb, away from the thumb's shadow and the inner shadow: the
// on side left of an on thumb, the off side right of an off thumb.
QString visibleSideFailing(const QImage &image, const QRectF &thumb, bool onSide,
                           const ColorTest &test)
{
    if (onSide)
        return pointFailing(image, 2, int(thumb.left()) - 4, 6, 17, test);
    return pointFailing(image, int(std::ceil(thumb.right())) + 3, 57, 6, 17, test);
}

QRectF thumbOf(const OnOffSwitchControl &control)
{
    return control.cell().thumbRectInFrame(QRectF(control.rect()));
}

void addRatios()
{
    QTest::addColumn<double>("ratio");
    QTest::newRow("1x") << 1.0;
    QTest::newRow("2x") << 2.0;
}

} // namespace

class TestOnOffSwitchPainting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thumbFillsItsRectangle_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<int>("state");
        for (const double ratio : {1.0, 2.0}) {
            const QByteArray suffix = ratio == 1.0 ? " 1x" : " 2x";
            QTest::newRow("off" + suffix) << ratio << int(OnOffSwitchControlCell::OffState);
            QTest::newRow("on" + suffix) << ratio << int(OnOffSwitchControlCell::OnState);
            QTest::newRow("mixed" + suffix) << ratio << int(OnOffSwitchControlCell::MixedState);
        }
    }
    void thumbFillsItsRectangle()
    {
        QFETCH(double, ratio);
        QFETCH(int, state);
        const auto control =
            unlabelledSwitch(state, 3, state == OnOffSwitchControlCell::MixedState);
        const QImage image = render(*control, ratio);
        const QRectF thumb = thumbOf(*control);
        for (const int y : {2, 10, 17}) {
            for (int x = 0; x < 60; ++x) {
                const bool inside = x >= thumb.left() + 1.0 && x + 1 <= thumb.right() - 1.0;
                const bool outside = x + 1 <= thumb.left() - 1.0 || x >= thumb.right() + 1.0;
                const QColor color = colorAtPoint(image, x, y);
                if (inside)
                    QVERIFY2(isThumbWhite(color),
                             qPrintable(
                                 QStringLiteral("(%1, %2) is %3").arg(x).arg(y).arg(color.name())));
                if (outside)
                    QVERIFY2(!isThumbWhite(color),
                             qPrintable(
                                 QStringLiteral("(%1, %2) is %3").arg(x).arg(y).arg(color.name())));
            }
        }
        // Above and below, the track's outline.
        const int middle = int(thumb.center().x());
        QVERIFY(!isThumbWhite(colorAtPoint(image, middle, 0)));
        QVERIFY(!isThumbWhite(colorAtPoint(image, middle, 19)));
    }

    void schemesTintTheSidesOfTheTrack_data()
    {
        QTest::addColumn<int>("scheme");
        QTest::addColumn<QColor>("customOn");
        QTest::addColumn<QColor>("customOff");
        QTest::addColumn<QString>("onSide");
        QTest::addColumn<QString>("offSide");
        const QColor gold(255, 200, 0);
        const QColor purple(200, 0, 200);
        QTest::newRow("2 tints only the on side") << 2 << QColor() << QColor() << "blue"
                                                  << "grey";
        QTest::newRow("3") << 3 << QColor() << QColor() << "green"
                           << "red";
        QTest::newRow("4") << 4 << QColor() << QColor() << "blue"
                           << "red";
        QTest::newRow("1 with both colours") << 1 << gold << purple << "gold"
                                             << "purple";
        QTest::newRow("1 with the on colour only") << 1 << gold << QColor() << "grey"
                                                   << "grey";
        QTest::newRow("1 with the off colour only") << 1 << QColor() << purple << "grey"
                                                    << "grey";
        QTest::newRow("0") << 0 << QColor() << QColor() << "grey"
                           << "grey";
        QTest::newRow("5") << 5 << QColor() << QColor() << "grey"
                           << "grey";
    }
    void schemesTintTheSidesOfTheTrack()
    {
        QFETCH(int, scheme);
        QFETCH(QColor, customOn);
        QFETCH(QColor, customOff);
        QFETCH(QString, onSide);
        QFETCH(QString, offSide);
        const auto onSwitch = unlabelledSwitch(OnOffSwitchControlCell::OnState, scheme);
        const auto offSwitch = unlabelledSwitch(OnOffSwitchControlCell::OffState, scheme);
        for (OnOffSwitchControl *control : {onSwitch.get(), offSwitch.get()}) {
            control->setCustomOnColor(customOn);
            control->setCustomOffColor(customOff);
        }
        const QHash<QString, ColorTest> tests{
            {QStringLiteral("grey"), isGrey},
            {QStringLiteral("blue"), isBlue},
            {QStringLiteral("green"), isGreen},
            {QStringLiteral("red"), isRed},
            // Opaque custom colours cover the track completely.
            {QStringLiteral("gold"), [](const QColor &c) { return c == QColor(255, 200, 0); }},
            {QStringLiteral("purple"), [](const QColor &c) { return c == QColor(200, 0, 200); }},
        };
        for (const double ratio : {1.0, 2.0}) {
            const QString onFailure = visibleSideFailing(render(*onSwitch, ratio),
                                                         thumbOf(*onSwitch), true, tests[onSide]);
            QVERIFY2(onFailure.isEmpty(), qPrintable(onSide + QStringLiteral(": ") + onFailure));
            const QString offFailure = visibleSideFailing(
                render(*offSwitch, ratio), thumbOf(*offSwitch), false, tests[offSide]);
            QVERIFY2(offFailure.isEmpty(), qPrintable(offSide + QStringLiteral(": ") + offFailure));
        }
    }

    void draggedThumbShowsBothTintsAtOnce()
    {
        SwitchForm form;
        QVERIFY(form.exposed);
        OnOffSwitchControl *control = form.control();
        control->setShowsOnOffLabels(false);
        control->setOnOffSwitchControlColors(3);
        press(control, offThumbCentre);
        moveTo(control, offThumbCentre + QPoint(15, 0));
        const QImage image = render(*control, 1.0);
        // The thumb now spans 16 to 42.1.
        QCOMPARE(pointFailing(image, 2, 12, 6, 17, isGreen), QString());
        QCOMPARE(pointFailing(image, 46, 57, 6, 17, isRed), QString());
        QCOMPARE(pointFailing(image, 17, 41, 2, 17, isThumbWhite), QString());
        release(control, offThumbCentre + QPoint(15, 0));
    }

    void switchThatAllowsTheMixedStateHasNeitherTintNorLabels_data()
    {
        QTest::addColumn<int>("state");
        QTest::newRow("off") << int(OnOffSwitchControlCell::OffState);
        QTest::newRow("on") << int(OnOffSwitchControlCell::OnState);
        QTest::newRow("mixed") << int(OnOffSwitchControlCell::MixedState);
    }
    void switchThatAllowsTheMixedStateHasNeitherTintNorLabels()
    {
        QFETCH(int, state);
        const auto unlabelled = unlabelledSwitch(state, 3, true);
        const auto labelled = unlabelledSwitch(state, 3, true);
        labelled->setShowsOnOffLabels(true);
        for (const double ratio : {1.0, 2.0}) {
            const QImage image = render(*labelled, ratio);
            QCOMPARE(image, render(*unlabelled, ratio));
            const QRectF thumb = thumbOf(*labelled);
            if (state != OnOffSwitchControlCell::OffState)
                QCOMPARE(visibleSideFailing(image, thumb, true, isGrey), QString());
            if (state != OnOffSwitchControlCell::OnState)
                QCOMPARE(visibleSideFailing(image, thumb, false, isGrey), QString());
        }
    }

    void labelsShowBesideTheThumb_data() { addRatios(); }
    void labelsShowBesideTheThumb()
    {
        QFETCH(double, ratio);
        for (const int state :
             {int(OnOffSwitchControlCell::OffState), int(OnOffSwitchControlCell::OnState)}) {
            // At its natural size each label fits beside the thumb, and the other is hidden.
            const auto unlabelled = unlabelledSwitch(state, 0);
            const auto labelled = unlabelledSwitch(state, 0);
            labelled->setShowsOnOffLabels(true);
            unlabelled->resize(unlabelled->sizeHint());
            labelled->resize(labelled->sizeHint());
            const QRectF thumb = thumbOf(*labelled);
            const QImage without = render(*unlabelled, ratio);
            const QImage with = render(*labelled, ratio);
            int labelPixels = 0;
            for (int y = 0; y < with.height(); ++y) {
                for (int x = 0; x < with.width(); ++x) {
                    if (with.pixel(x, y) == without.pixel(x, y))
                        continue;
                    ++labelPixels;
                    const double pointX = (x + 0.5) / ratio;
                    // Off: "OFF" right of the thumb; on: "ON" left of it.
                    if (state == OnOffSwitchControlCell::OffState)
                        QVERIFY2(pointX > thumb.right(), qPrintable(QString::number(pointX)));
                    else
                        QVERIFY2(pointX < thumb.left(), qPrintable(QString::number(pointX)));
                }
            }
            QVERIFY(labelPixels > 20);
        }
    }

    void labelsAreCutOffByTheTrack()
    {
        OnOffSwitchControlCell cell;
        cell.setOnOffSwitchControlColors(0);
        cell.setOffSwitchLabel(QStringLiteral("OFFOFFOFFOFFOFFOFF"));
        const QRectF frame(20, 20, 60, 20);
        const auto draw = [&cell, &frame](bool labels) {
            cell.setShowsOnOffLabels(labels);
            QImage image(120, 60, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            QPainter painter(&image);
            cell.drawWithFrame(painter, frame, nullptr);
            return image;
        };
        const QImage with = draw(true);
        const QImage without = draw(false);
        QVERIFY(with != without);
        for (int y = 0; y < with.height(); ++y) {
            for (int x = 0; x < with.width(); ++x) {
                const bool inTrack = x >= 20 && x < 80 && y >= 20 && y < 40;
                if (!inTrack)
                    QVERIFY2(qAlpha(with.pixel(x, y)) == 0,
                             qPrintable(QStringLiteral("(%1, %2)").arg(x).arg(y)));
            }
        }
        // The track's rounded corners are left as they are.
        for (const QPoint corner : {QPoint(20, 20), QPoint(79, 20), QPoint(20, 39), QPoint(79, 39)})
            QCOMPARE(with.pixel(corner), without.pixel(corner));
    }

    void innerShadowDarkensTheTopOfTheTrack_data() { addRatios(); }
    void innerShadowDarkensTheTopOfTheTrack()
    {
        QFETCH(double, ratio);
        const auto control = unlabelledSwitch(OnOffSwitchControlCell::OffState, 0);
        const QImage image = render(*control, ratio);
        // Column 45, far from the thumb: the track's grey gradient from 0.5 at its top to 2/3
        // at its bottom, under a shadow from alpha 0.35 at the top edge to none 4 points down.
        const int column = int(45.5 * ratio);
        for (int row = int(1.5 * ratio); row < int(18.5 * ratio); ++row) {
            const double y = (row + 0.5) / ratio;
            const double track = 0.5 + (2.0 / 3.0 - 0.5) * (y - 1.0) / 18.0;
            const double shadow = y < 4.0 ? 0.35 * (1.0 - y / 4.0) : 0.0;
            const double expected = track * (1.0 - shadow) * 255.0;
            const QColor actual = image.pixelColor(column, row);
            QVERIFY2(std::abs(actual.red() - expected) <= 3.0,
                     qPrintable(QStringLiteral("row %1: %2 against %3")
                                    .arg(row)
                                    .arg(actual.red())
                                    .arg(expected)));
        }
    }

    void disabledWashLightensEveryPixel_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<int>("state");
        QTest::addColumn<bool>("allowsMixedState");
        for (const double ratio : {1.0, 2.0}) {
            const QByteArray suffix = ratio == 1.0 ? " 1x" : " 2x";
            QTest::newRow("off" + suffix)
                << ratio << int(OnOffSwitchControlCell::OffState) << false;
            QTest::newRow("on" + suffix) << ratio << int(OnOffSwitchControlCell::OnState) << false;
            QTest::newRow("mixed" + suffix)
                << ratio << int(OnOffSwitchControlCell::MixedState) << true;
        }
    }
    void disabledWashLightensEveryPixel()
    {
        QFETCH(double, ratio);
        QFETCH(int, state);
        QFETCH(bool, allowsMixedState);
        const auto control = unlabelledSwitch(state, 3, allowsMixedState);
        control->setShowsOnOffLabels(true);
        const QColor background(90, 110, 130);
        const QImage enabled = render(*control, ratio, background);
        control->setEnabled(false);
        const QImage disabled = render(*control, ratio, background);
        // White at two thirds in the lighten mode over an opaque picture: every channel c
        // becomes 2/3 + c/3, lighter unless it was white already.
        for (int y = 0; y < enabled.height(); ++y) {
            for (int x = 0; x < enabled.width(); ++x) {
                const QColor before = enabled.pixelColor(x, y);
                const QColor after = disabled.pixelColor(x, y);
                for (const auto channel : {&QColor::red, &QColor::green, &QColor::blue}) {
                    const int was = (before.*channel)();
                    const int is = (after.*channel)();
                    const double expected = 255.0 * 2.0 / 3.0 + was / 3.0;
                    QVERIFY2(std::abs(is - expected) <= 3.0 && (is > was || was == 255),
                             qPrintable(QStringLiteral("(%1, %2): %3 became %4")
                                            .arg(x)
                                            .arg(y)
                                            .arg(was)
                                            .arg(is)));
                }
            }
        }
    }

    void focusedSwitchRingsTheThumbOnTheTrackSide_data() { addRatios(); }
    void focusedSwitchRingsTheThumbOnTheTrackSide()
    {
        QFETCH(double, ratio);
        SwitchForm form;
        QVERIFY(form.exposed);
        OnOffSwitchControl *control = form.control();
        control->setShowsOnOffLabels(false);
        control->setOnOffSwitchControlColors(0);
        form.window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&form.window));
        control->setFocus();
        QVERIFY(control->hasFocus());
        const QImage focused = render(*control, ratio);
        control->clearFocus();
        const QImage unfocused = render(*control, ratio);
        const QRectF thumb = thumbOf(*control);
        int ringPixels = 0;
        for (int y = 0; y < focused.height(); ++y) {
            for (int x = 0; x < focused.width(); ++x) {
                if (focused.pixel(x, y) == unfocused.pixel(x, y))
                    continue;
                const QPointF point((x + 0.5) / ratio, (y + 0.5) / ratio);
                // Below the thumb, so never over its face; the track clips it to a band beside it.
                QVERIFY2(!thumb.adjusted(1, 1, -1, -1).contains(point) &&
                             point.x() < thumb.right() + 4.0,
                         qPrintable(QStringLiteral("(%1, %2)").arg(point.x()).arg(point.y())));
                if (point.x() > thumb.right())
                    ++ringPixels;
            }
        }
        QVERIFY(ringPixels >= 10 * ratio * ratio);
        // The ring is in the highlight colour, over the grey track.
        QVERIFY(isBlue(colorAtPoint(focused, int(thumb.right()) + 1, 10)));

        control->setFocus();
        control->cell().setFocusRingType(OnOffSwitchControlCell::FocusRingTypeNone);
        QCOMPARE(render(*control, ratio), unfocused);
    }
};

TALLYVANE_TEST_MAIN(TestOnOffSwitchPainting)
#include "tst_onoffswitchpainting.moc"

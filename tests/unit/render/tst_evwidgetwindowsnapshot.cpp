#include "TestMain.h"

#include "render/EVWidgetView.h"
#include "render/EVWidgetWindowSnapshot.h"

namespace {
QImage solidPicture(const QSize &size, const QColor &color)
{
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(color);
    return picture;
}
} // namespace

class TestEVWidgetWindowSnapshot : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void snapshotShowsTheWindowAsItLooksNow()
    {
        EVWidgetView window;
        window.resize(200, 100);
        window.setBackground(EVBackgroundImage(solidPicture(window.size(), Qt::red), 1.0));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        // One pixel of the capture is one point of the snapshot, on scaled screens too.
        const QImage red = widgetWindowSnapshot(&window);
        QCOMPARE(red.size(), QSize(200, 100) * window.devicePixelRatio());
        QCOMPARE(red.devicePixelRatio(), 1.0);
        QCOMPARE(red.pixelColor(red.width() / 2, red.height() / 2), QColor(Qt::red));

        window.setBackground(EVBackgroundImage(solidPicture(window.size(), Qt::blue), 1.0));
        window.update();
        QCOMPARE(widgetWindowSnapshot(&window).pixelColor(red.width() / 2, red.height() / 2),
                 QColor(Qt::blue));
    }

    void noWindowGivesNoSnapshot() { QVERIFY(widgetWindowSnapshot(nullptr).isNull()); }

    void windowWithoutSizeGivesNoSnapshot()
    {
        QWidget window;
        window.resize(0, 0);
        QVERIFY(widgetWindowSnapshot(&window).isNull());
    }
};

TALLYVANE_TEST_MAIN(TestEVWidgetWindowSnapshot)
#include "tst_evwidgetwindowsnapshot.moc"

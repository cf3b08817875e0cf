#include "DesktopTools.h"
#include "LogRecorder.h"
#include "PixelTools.h"
#include "TestMain.h"
#include "TrayPanel.h"

#include "platform/EVTrayHost.h"

#include <QIcon>
#include <QScreen>
#include <QSignalSpy>
#include <QSystemTrayIcon>

#include <memory>

using namespace std::chrono_literals;

// A tray host that turns up after the application (as at login), found by looking again, and
// the status item's picture as a real tray shows it.
class TestTrayHostDesktop : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (QSystemTrayIcon::isSystemTrayAvailable())
            QSKIP("A tray host already runs on this display; none may be there at the start");
    }

    void noTrayHostMeansOneLogLine()
    {
        LogRecorder log("tallyvane.trayhost");
        EVTrayHost tray;
        tray.setRetryInterval(100ms);
        tray.setRetryPeriod(1s);
        QSignalSpy available(&tray, &EVTrayHost::available);

        tray.start();
        QVERIFY(tray.isWaiting());
        QTRY_VERIFY_WITH_TIMEOUT(!tray.isWaiting(), 10000);
        QCOMPARE(available.size(), 0);
        QCOMPARE(log.lines().size(), 1);
    }

    void trayStartedLateIsFound()
    {
        EVTrayHost tray;
        tray.setRetryInterval(200ms);
        tray.setRetryPeriod(60s);
        QSignalSpy available(&tray, &EVTrayHost::available);
        tray.start();
        QTest::qWait(600);
        QVERIFY(tray.isWaiting());
        QCOMPARE(available.size(), 0);

        TrayPanel panel(QColor(0x3c, 0x3f, 0x41));
        QTRY_COMPARE_WITH_TIMEOUT(available.size(), 1, 15000);
        QVERIFY(panel.isRunning());
        QVERIFY(tray.isAvailable());
        QVERIFY(!tray.isWaiting());
    }

    void statusIconReadsInTheTray_data()
    {
        QTest::addColumn<QColor>("panelColour");
        QTest::newRow("dark panel") << QColor(0x3c, 0x3f, 0x41);
        QTest::newRow("light panel") << QColor(0xee, 0xee, 0xee);
    }

    void statusIconReadsInTheTray()
    {
        QFETCH(QColor, panelColour);
        TrayPanel panel(panelColour);
        QTRY_VERIFY_WITH_TIMEOUT(QSystemTrayIcon::isSystemTrayAvailable(), 15000);

        QSystemTrayIcon item(QIcon(QStringLiteral(":/images/status_icon.svg")));
        item.show();
        QTRY_VERIFY_WITH_TIMEOUT(item.geometry().width() >= 16, 10000);
        // Time for the tray to draw it.
        QTest::qWait(500);
        const QRect area = item.geometry();
        const QImage shown = QGuiApplication::primaryScreen()
                                 ->grabWindow(0, area.x(), area.y(), area.width(), area.height())
                                 .toImage();
        QCOMPARE(shown.size(), area.size());
        // The corners show the panel around the round glyph: this is the tray's own strip.
        const QRgb corner = shown.pixel(0, shown.height() - 1);
        QVERIFY(qAbs(qGray(corner) - qGray(panelColour.rgb())) < 24);
        const double share = contrastingShare(shown, panelColour);
        QVERIFY2(share >= 0.2, qPrintable(QString::number(share)));
    }
};

TALLYVANE_DESKTOP_TEST_MAIN(TestTrayHostDesktop)
#include "tst_trayhost_desktop.moc"

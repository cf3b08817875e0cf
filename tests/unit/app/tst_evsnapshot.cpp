#include "TestMain.h"
#include "app/EVSnapshot.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <QImage>

// Stored widgets drawn into one picture without a window.
class TestEVSnapshot : public QObject
{
    Q_OBJECT

private:
    // Pixels of the area that are not the dark ground around the widgets.
    static int drawnPixels(const QImage &image, const QRect &area)
    {
        const QRgb ground = image.pixel(2, 2);
        int count = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                if (image.pixel(x, y) != ground)
                    ++count;
            }
        }
        return count;
    }

private Q_SLOTS:
    void everyStoredWidgetIsDrawnAtItsSizeInRows()
    {
        TestHome home;
        {
            EVCoreDataDelegate store;
            for (const char *title : {"One", "Two", "Three"})
                store.addWidgetEntry()->setEventTitle(QString::fromLatin1(title));
            store.save();
        }
        const QString path = home.path() + QStringLiteral("/widgets.png");
        QString message;
        QVERIFY2(EVSnapshot::write(path, &message), qPrintable(message));

        const QImage sheet(path);
        // Three widgets of the interface file's 300 x 150 in two columns, 16 apart.
        QCOMPARE(sheet.size(), QSize(16 + 2 * (300 + 16), 16 + 2 * (150 + 16)));
        for (const QPoint &origin : {QPoint(16, 16), QPoint(332, 16), QPoint(16, 182)})
            QVERIFY(drawnPixels(sheet, QRect(origin, QSize(300, 150))) > 300 * 150 / 2);
        // The fourth place stays empty.
        QCOMPARE(drawnPixels(sheet, QRect(QPoint(332, 182), QSize(300, 150))), 0);
    }

    void withoutWidgetsThePictureSaysSo()
    {
        TestHome home;
        const QImage empty = EVSnapshot::render({});
        QVERIFY(!empty.isNull());
        QVERIFY(drawnPixels(empty, empty.rect()) > 0);
    }

    void anUnwritableFileIsNamedInTheMessage()
    {
        TestHome home;
        const QString path = home.path() + QStringLiteral("/missing-folder/widgets.png");
        QString message;
        QVERIFY(!EVSnapshot::write(path, &message));
        QVERIFY(message.contains(path));
    }
};

TALLYVANE_TEST_MAIN(TestEVSnapshot)
#include "tst_evsnapshot.moc"

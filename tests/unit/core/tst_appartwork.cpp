#include "PixelTools.h"
#include "TestMain.h"

#include "core/EVAppImage.h"

#include <QIcon>
#include <QPainter>

namespace {

const QList<int> trayIconSizes{16, 22, 24, 32, 48};

// The picture drawn over a panel of the given colour, as the panel would show it.
QImage onPanel(const QIcon &icon, int size, const QColor &panel)
{
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(panel);
    QPainter painter(&image);
    icon.paint(&painter, QRect(0, 0, size, size));
    return image;
}

} // namespace

class TestAppArtwork : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void statusIconIsThereUnderItsName()
    {
        const QImage image = EVAppImage::named(QStringLiteral("status_icon.png"));
        QCOMPARE(image.size(), QSize(48, 48));
        QCOMPARE(qAlpha(image.pixel(0, 47)), 0);
        QCOMPARE(qAlpha(image.pixel(47, 47)), 0);
        const QIcon icon = EVAppImage::icon(QStringLiteral("status_icon.png"));
        QCOMPARE(icon.actualSize(QSize(22, 22)), QSize(22, 22));
        QCOMPARE(icon.pixmap(QSize(22, 22)).size(), QSize(22, 22));
    }

    void statusIconStandsOutOnLightAndDarkPanels_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<QColor>("panel");
        for (int size : trayIconSizes) {
            for (const char *panel : {"#ffffff", "#d6d6d6", "#3c3f41", "#000000"})
                QTest::addRow("%d px on %s", size, panel) << size << QColor(panel);
        }
    }

    void statusIconStandsOutOnLightAndDarkPanels()
    {
        QFETCH(int, size);
        QFETCH(QColor, panel);
        const QIcon icon(QStringLiteral(":/images/status_icon.svg"));
        const double share = contrastingShare(onPanel(icon, size, panel), panel);
        QVERIFY2(share >= 0.2, qPrintable(QString::number(share)));
    }

    void applicationIconIsASquareInColour()
    {
        const QIcon icon(QStringLiteral(":/icons/com.velto.tallyvane.svg"));
        QVERIFY(!icon.isNull());
        for (int size : {16, 32, 128, 512}) {
            const QImage image = icon.pixmap(size).toImage();
            QCOMPARE(image.size(), QSize(size, size));
            // The tile fills the square up to a thin margin, and carries colour, not grey.
            QCOMPARE(qAlpha(image.pixel(size / 2, size - 1 - size / 16)), 255);
            QCOMPARE(qAlpha(image.pixel(size - 1 - size / 16, size / 2)), 255);
            QVERIFY(QColor(image.pixel(size / 8, size * 7 / 8)).saturation() > 100);
        }
    }
};

TALLYVANE_TEST_MAIN(TestAppArtwork)
#include "tst_appartwork.moc"

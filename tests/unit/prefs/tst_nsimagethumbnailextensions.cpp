#include "PixelTools.h"
#include "TestMain.h"

#include "prefs/NSImage+NSImageThumbnailExtensions.h"

#include <QFile>

using NSImageThumbnailExtensions::iteThumbnailImageWithContentsOfURL;

class TestNSImageThumbnailExtensions : public QObject
{
    Q_OBJECT

private:
    TestHome m_home;

    QUrl pictureFile(const QString &name, const QSize &size, const QColor &color = Qt::red)
    {
        return QUrl::fromLocalFile(::pictureFile(m_home.path(), name, size, color));
    }

private Q_SLOTS:
    void widerPicturesAreScaledDownToExactlyTheWidth_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<qreal>("width");
        QTest::addColumn<QSize>("expected");
        QTest::newRow("1600 x 1200 to 400") << QSize(1600, 1200) << 400.0 << QSize(400, 300);
        QTest::newRow("1000 x 500 to 200") << QSize(1000, 500) << 200.0 << QSize(200, 100);
        QTest::newRow("tall") << QSize(300, 900) << 200.0 << QSize(200, 600);
        QTest::newRow("exactly as wide") << QSize(200, 50) << 200.0 << QSize(200, 50);
        QTest::newRow("rounded height") << QSize(999, 500) << 200.0 << QSize(200, 100);
    }

    void widerPicturesAreScaledDownToExactlyTheWidth()
    {
        QFETCH(QSize, size);
        QFETCH(qreal, width);
        QFETCH(QSize, expected);
        const QImage thumbnail = iteThumbnailImageWithContentsOfURL(
            pictureFile(QStringLiteral("wide.png"), size), width);
        QCOMPARE(thumbnail.size(), expected);
        QCOMPARE(thumbnail.pixelColor(thumbnail.rect().center()), QColor(Qt::red));
        QCOMPARE(thumbnail.text(QStringLiteral("Description")), QStringLiteral("wide"));
    }

    void narrowerPicturesKeepTheirSize()
    {
        const QImage loaded = iteThumbnailImageWithContentsOfURL(
            pictureFile(QStringLiteral("small.jpg"), {150, 90}, Qt::blue), 200);
        QCOMPARE(loaded.size(), QSize(150, 90));
    }

    void unreadableFilesGiveNoPicture()
    {
        const QString path = m_home.path() + QStringLiteral("/broken.png");
        QFile broken(path);
        QVERIFY(broken.open(QIODevice::WriteOnly));
        broken.write("PNG? no.");
        broken.close();
        QVERIFY(iteThumbnailImageWithContentsOfURL(QUrl::fromLocalFile(path), 200).isNull());
        QVERIFY(iteThumbnailImageWithContentsOfURL(
                    QUrl::fromLocalFile(m_home.path() + QStringLiteral("/missing.png")), 200)
                    .isNull());
        QVERIFY(iteThumbnailImageWithContentsOfURL(
                    QUrl(QStringLiteral("https://example.com/a.png")), 200)
                    .isNull());
    }

    void tiffFilesAreRead()
    {
        const QImage loaded = iteThumbnailImageWithContentsOfURL(
            pictureFile(QStringLiteral("picture.tiff"), {800, 400}), 400);
        QCOMPARE(loaded.size(), QSize(400, 200));
    }
};

TALLYVANE_TEST_MAIN(TestNSImageThumbnailExtensions)
#include "tst_nsimagethumbnailextensions.moc"

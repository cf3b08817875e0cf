#include "TestMain.h"

#include "core/EVImageData.h"

namespace {

QByteArray tiffOfColour(const QColor &colour)
{
    QImage image(8, 8, QImage::Format_ARGB32);
    image.fill(colour);
    return EVImageData::tiffRepresentation(image);
}

} // namespace

class TestEVImageData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tiffDataReadsBackAsThePicture()
    {
        const QImage image = EVImageData::sharedImage(tiffOfColour(QColor(200, 40, 60)));
        QCOMPARE(image.size(), QSize(8, 8));
        QCOMPARE(image.pixelColor(4, 4), QColor(200, 40, 60));
    }

    void sameDataInUseGivesTheSameDecodedPicture()
    {
        const QByteArray data = tiffOfColour(Qt::blue);
        const QImage first = EVImageData::sharedImage(data);
        const QImage second = EVImageData::sharedImage(QByteArray(data.constData(), data.size()));
        QCOMPARE(second.cacheKey(), first.cacheKey());
        QVERIFY(EVImageData::sharedImage(tiffOfColour(Qt::red)).cacheKey() != first.cacheKey());
    }

    void pictureNoLongerInUseIsDecodedAfresh()
    {
        const QByteArray data = tiffOfColour(Qt::green);
        qint64 firstKey = 0;
        {
            const QImage first = EVImageData::sharedImage(data);
            firstKey = first.cacheKey();
        }
        // Another decoding lets the table drop what nobody holds.
        EVImageData::sharedImage(tiffOfColour(Qt::yellow));
        QVERIFY(EVImageData::sharedImage(data).cacheKey() != firstKey);
    }

    void dataThatIsNoPictureGivesANullPicture()
    {
        QVERIFY(EVImageData::sharedImage(QByteArray("not a picture")).isNull());
        QVERIFY(EVImageData::sharedImage(QByteArray()).isNull());
    }
};

TALLYVANE_TEST_MAIN(TestEVImageData)
#include "tst_evimagedata.moc"

#include "TestMain.h"

#include "store/EVCustomStyle.h"
#include "store/EVWidgetEntry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cmath>
#include <memory>

class TestEVWidgetEntry : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;

private Q_SLOTS:
    void init() { m_home = std::make_unique<TestHome>(); }
    void cleanup()
    {
        m_home.reset();
        QVERIFY(setOffscreenScreenSize(800, 600));
    }

    void newEntryHasEveryDefault()
    {
        const QDateTime now = QDateTime::fromSecsSinceEpoch(1800000000);
        PinnedClock clock(now);
        EVWidgetEntry entry;
        entry.resetDefault();

        QCOMPARE(entry.eventCreationDate(), now);
        QCOMPARE(entry.eventCreationDate().secsTo(entry.eventDate()), 2592000);
        QCOMPARE(entry.eventTitle(), QStringLiteral("Event Title"));
        QCOMPARE(entry.styleIndex(), 9);
        QCOMPARE(entry.countdownUnit(), 1);
        QCOMPARE(entry.dateformat(), 4);
        QCOMPARE(entry.intervalBeforeAlert(), 1);
        QCOMPARE(entry.intervalAlertUnit(), 1);
        QCOMPARE(entry.textcolor(), QColor(Qt::white));
        QVERIFY(entry.note().isEmpty());
        QVERIFY(!entry.note().isNull());
        QCOMPARE(entry.timeElement(), false);
        QCOMPARE(entry.ignoredDayType(), 0);
        QCOMPARE(entry.keepTop(), 0);
        QCOMPARE(entry.priority(), 0);
        QCOMPARE(entry.soundAlert(), false);
        QCOMPARE(entry.lockWidget(), false);
        QVERIFY(entry.widgetFrameDesc().isNull());
        QVERIFY(entry.customStyles().isEmpty());
    }

    void newEntryHasAnUpperCaseUuid()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        static const QRegularExpression form(
            QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$"));
        QVERIFY2(form.match(entry.uuid()).hasMatch(), qPrintable(entry.uuid()));

        EVWidgetEntry other;
        other.resetDefault();
        QVERIFY(entry.uuid() != other.uuid());
    }

    void newEntryHasTheClockIconInAFileNamedByItsUuid()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        const QString path = m_home->pictureFolderPath() + QLatin1Char('/') + entry.uuid();
        QVERIFY(QFileInfo(path).isFile());
        QCOMPARE(entry.iconFilePath(), entry.uuid());

        const QByteArray data = fileContents(path);
        QVERIFY(data.startsWith("II*") || data.startsWith("MM"));
        QImage icon;
        QVERIFY(icon.loadFromData(data, "TIFF"));
        QVERIFY(!icon.isNull());
        QCOMPARE(entry.iconfileData(), data);
    }

    void frameIsStoredAsFractionsOfTheScreen()
    {
        QVERIFY(setOffscreenScreenSize(1000, 800));
        EVWidgetEntry entry;
        entry.setFrame(QRectF(100, 200, 300, 150));
        QCOMPARE(entry.widgetFrameDesc(), QStringLiteral("{{0.1, 0.25}, {0.3, 0.1875}}"));
        QCOMPARE(entry.frame(), QRectF(100, 200, 300, 150));

        QVERIFY(setOffscreenScreenSize(2000, 1600));
        QCOMPARE(entry.frame(), QRectF(200, 400, 600, 300));
    }

    void frameReadsBackExactlyForAwkwardFractions()
    {
        QVERIFY(setOffscreenScreenSize(1366, 768));
        EVWidgetEntry entry;
        const QRectF frame(17.25, 333.0 / 7.0, 301, 149.5);
        entry.setFrame(frame);
        const QRectF back = entry.frame();
        // The fractions survive their text form exactly; only the multiplication back may round.
        QVERIFY(qFuzzyCompare(back.x(), frame.x()));
        QVERIFY(qFuzzyCompare(back.y(), frame.y()));
        QVERIFY(qFuzzyCompare(back.width(), frame.width()));
        QVERIFY(qFuzzyCompare(back.height(), frame.height()));

        EVWidgetEntry copy;
        copy.setWidgetFrameDesc(entry.widgetFrameDesc());
        copy.setFrame(copy.frame());
        QCOMPARE(copy.widgetFrameDesc(), entry.widgetFrameDesc());
    }

    void unsetFrameIsTheZeroRectangle()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        QCOMPARE(entry.frame(), QRectF());
    }

    void malformedFrameTextReadsMissingNumbersAsZero()
    {
        QVERIFY(setOffscreenScreenSize(1000, 800));
        EVWidgetEntry entry;
        entry.setWidgetFrameDesc(QStringLiteral("{{0.5, 0.25}, {0.125"));
        QCOMPARE(entry.frame(), QRectF());
        entry.setWidgetFrameDesc(QStringLiteral("{{0.5, 0.25}, {0.125, 0.5}, garbage"));
        QCOMPARE(entry.frame(), QRectF(500, 200, 125, 400));
        entry.setWidgetFrameDesc(QStringLiteral(""));
        QCOMPARE(entry.frame(), QRectF());
    }

    void settingTheIconToNoneDeletesTheFile()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        const QString path = m_home->pictureFolderPath() + QLatin1Char('/') + entry.uuid();
        QVERIFY(QFileInfo::exists(path));

        entry.setIconfileData(QByteArray());
        QVERIFY(!QFileInfo::exists(path));
        QVERIFY(entry.iconFilePath().isNull());
        QVERIFY(entry.iconfileData().isNull());
    }

    void inlineIconMigratesToAFileOnFirstRead()
    {
        EVWidgetEntry entry;
        entry.setUuid(QStringLiteral("6F9619FF-8B86-D011-B42D-00C04FC964FF"));
        const QByteArray legacy("legacy icon bytes");
        entry.setIconfile(legacy);

        QCOMPARE(entry.iconfileData(), legacy);
        QCOMPARE(entry.iconFilePath(), entry.uuid());
        QVERIFY(entry.iconfile().isNull());
        QCOMPARE(fileContents(m_home->pictureFolderPath() + QLatin1Char('/') + entry.uuid()),
                 legacy);
        QCOMPARE(entry.iconfileData(), legacy);
    }

    void inlineIconStaysWhenItsFileCannotBeWritten()
    {
        EVWidgetEntry entry;
        entry.setUuid(QStringLiteral("6F9619FF-8B86-D011-B42D-00C04FC964FF"));
        const QByteArray legacy("legacy icon bytes");
        entry.setIconfile(legacy);
        // A folder in place of the file makes the write fail.
        QVERIFY(QDir().mkpath(m_home->pictureFolderPath() + QLatin1Char('/') + entry.uuid() +
                              QStringLiteral("/blocker")));

        QCOMPARE(entry.iconfileData(), legacy);
        QCOMPARE(entry.iconfile(), legacy);
        QVERIFY(entry.iconFilePath().isNull());
    }

    void failedWriteLeavesThePathNamingTheDeletedFile()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        const QString path = m_home->pictureFolderPath() + QLatin1Char('/') + entry.uuid();
        QVERIFY(QFile::remove(path));
        QVERIFY(QDir().mkpath(path + QStringLiteral("/blocker")));

        entry.setIconfileData(QByteArray("new icon"));
        QCOMPARE(entry.iconFilePath(), entry.uuid());
        QVERIFY(entry.iconfileData().isNull());
    }

    void pathNamingAMissingFileReadsAsNone()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        QVERIFY(QFile::remove(m_home->pictureFolderPath() + QLatin1Char('/') + entry.uuid()));
        QVERIFY(entry.iconfileData().isNull());
    }

    void pictureFolderFallsBackToTheDocumentsFolder()
    {
        QVERIFY(QDir().mkpath(m_home->documentsPath()));
        QFile blocker(m_home->pictureFolderPath());
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();

        EVCustomStyle style;
        style.resetDefault();
        style.setImageData(QByteArray("picture"));
        QCOMPARE(fileContents(m_home->documentsPath() + QLatin1Char('/') + style.uuid()),
                 QByteArray("picture"));
        QCOMPARE(style.imageData(), QByteArray("picture"));
    }

    void customStyleDefaults()
    {
        EVCustomStyle style;
        style.resetDefault();
        QCOMPARE(style.uuid().size(), 36);
        QCOMPARE(style.color(), QColor(Qt::black));
        QCOMPARE(style.type(), 0);
        QCOMPARE(style.opacity(), 0.0f);
        QVERIFY(style.imagePath().isNull());
        QVERIFY(style.imageData().isNull());
        QVERIFY(!style.widget());
    }

    void customStyleInlinePictureMigratesToAFile()
    {
        EVCustomStyle style;
        style.resetDefault();
        style.setImage(QByteArray("legacy picture"));
        QCOMPARE(style.imageData(), QByteArray("legacy picture"));
        QCOMPARE(style.imagePath(), style.uuid());
        QVERIFY(style.image().isNull());
    }

    void iconsAndStylesShareThePictureFolder()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        EVCustomStyle style;
        style.resetDefault();
        style.setImageData(QByteArray("style picture"));
        QCOMPARE(QDir(m_home->pictureFolderPath()).entryList(QDir::Files).size(), 2);
        QCOMPARE(style.imageData(), QByteArray("style picture"));
        QVERIFY(entry.iconfileData() != style.imageData());
    }

    void customStylesKeepTheirOrderAndCloseGapsOnRemoval()
    {
        EVWidgetEntry entry;
        EVCustomStyle first, second, third;
        entry.addCustomStylesObject(&first);
        entry.addCustomStylesObject(&second);
        entry.addCustomStylesObject(&third);
        QCOMPARE(entry.customStyles(), (QList<EVCustomStyle *>{&first, &second, &third}));

        QCOMPARE(first.widget(), &entry);

        entry.removeObjectFromCustomStylesAtIndex(0);
        QCOMPARE(entry.customStyles(), (QList<EVCustomStyle *>{&second, &third}));
        QVERIFY(!first.widget());
        QCOMPARE(second.widget(), &entry);
        entry.removeObjectFromCustomStylesAtIndex(5);
        QCOMPARE(entry.customStyles().size(), 2);
    }

    void unsetNumbersReadAsZero()
    {
        EVWidgetEntry entry;
        QCOMPARE(entry.countdownUnit(), 0);
        QCOMPARE(entry.styleIndex(), 0);
        QCOMPARE(entry.lockWidget(), false);
        QVERIFY(entry.eventTitle().isNull());
        QVERIFY(!entry.eventDate().isValid());
    }

    void settersMarkTheRecordChangedOnlyOnChange()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        // A fresh record is always written.
        QVERIFY(entry.hasChanges());
    }
};

TALLYVANE_TEST_MAIN(TestEVWidgetEntry)
#include "tst_evwidgetentry.moc"

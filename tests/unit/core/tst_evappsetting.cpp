#include "TestMain.h"

#include "core/EVAppSetting.h"
#include "core/EVUserDefaults.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <memory>

class TestEVAppSetting : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;

    struct Run
    {
        bool normalExit = false;
        QString output;
    };

    // Runs the settings writer as another process of the application on the test's HOME.
    static Run runWriter(const QStringList &arguments)
    {
        QProcess writer;
        writer.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        writer.start(QStringLiteral(SETTINGS_WRITER_PATH), arguments);
        Run run;
        if (!writer.waitForFinished(30000))
            return run;
        run.normalExit = writer.exitStatus() == QProcess::NormalExit && writer.exitCode() == 0;
        run.output = QString::fromUtf8(writer.readAllStandardOutput()).trimmed();
        return run;
    }

    static QString settingsFilePath() { return EVUserDefaults::open()->fileName(); }

    static void writeSettingsFile(const QByteArray &contents)
    {
        const QString path = settingsFilePath();
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(contents);
    }

private Q_SLOTS:
    void init() { m_home = std::make_unique<TestHome>(); }
    void cleanup() { m_home.reset(); }

    void freshSettingsShowTheStatusItemAndDoNotOpenAtLogin()
    {
        const EVAppSetting setting;
        QCOMPARE(setting.openAtLogin(), false);
        QCOMPARE(setting.showStatusBarIcon(), true);
    }

    void firstRunShowsTheStatusItemAndHasOpenAtLoginOff()
    {
        const EVAppSetting setting = EVAppSetting::readFromUserDefaults();
        QCOMPARE(setting.openAtLogin(), false);
        QCOMPARE(setting.showStatusBarIcon(), true);
        QCOMPARE(runWriter({QStringLiteral("print")}).output, QStringLiteral("0 1"));
    }

    void savedValuesAreReadBack()
    {
        EVAppSetting setting;
        setting.setOpenAtLogin(true);
        setting.setShowStatusBarIcon(false);
        setting.save();
        const EVAppSetting read = EVAppSetting::readFromUserDefaults();
        QCOMPARE(read.openAtLogin(), true);
        QCOMPARE(read.showStatusBarIcon(), false);
    }

    void settersDoNotSave()
    {
        EVAppSetting setting;
        setting.setOpenAtLogin(true);
        setting.setShowStatusBarIcon(false);
        QVERIFY(!QFile::exists(settingsFilePath()));
        const EVAppSetting read = EVAppSetting::readFromUserDefaults();
        QCOMPARE(read.openAtLogin(), false);
        QCOMPARE(read.showStatusBarIcon(), true);
    }

    void valuesSavedByOneProcessAreReadByTheNext()
    {
        QVERIFY(
            runWriter({QStringLiteral("change-and-save"), QStringLiteral("1"), QStringLiteral("0")})
                .normalExit);
        QCOMPARE(runWriter({QStringLiteral("print")}).output, QStringLiteral("1 0"));
    }

    void statusItemSwitchedOffAndQuitNormallyStaysOffAtTheNextLaunch()
    {
        QVERIFY(
            runWriter({QStringLiteral("change-and-save"), QStringLiteral("0"), QStringLiteral("0")})
                .normalExit);
        QCOMPARE(runWriter({QStringLiteral("print")}).output, QStringLiteral("0 0"));
    }

    void statusItemSwitchedOffInAKilledProcessShowsAgainAtTheNextLaunch()
    {
        QVERIFY(
            runWriter({QStringLiteral("change-and-save"), QStringLiteral("1"), QStringLiteral("1")})
                .normalExit);
        QVERIFY(
            !runWriter({QStringLiteral("change-and-die"), QStringLiteral("0"), QStringLiteral("0")})
                 .normalExit);
        QCOMPARE(runWriter({QStringLiteral("print")}).output, QStringLiteral("1 1"));
    }

    void recordWithoutTheStatusItemKeyHidesTheStatusItem()
    {
        writeSettingsFile("[kAppSetting]\nopenAtLogin=true\n");
        const EVAppSetting read = EVAppSetting::readFromUserDefaults();
        QCOMPARE(read.openAtLogin(), true);
        QCOMPARE(read.showStatusBarIcon(), false);
    }

    void recordWithoutTheLoginKeyHasOpenAtLoginOff()
    {
        writeSettingsFile("[kAppSetting]\nshowStatusBarIcon=true\n");
        const EVAppSetting read = EVAppSetting::readFromUserDefaults();
        QCOMPARE(read.openAtLogin(), false);
        QCOMPARE(read.showStatusBarIcon(), true);
    }

    void unreadableRecordsCountAsAbsent_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::newRow("plain value instead of a record")
            << QByteArray("[General]\nkAppSetting=@ByteArray(bplist00)\n");
        QTest::newRow("not a boolean")
            << QByteArray("[kAppSetting]\nopenAtLogin=perhaps\nshowStatusBarIcon=false\n");
        QTest::newRow("empty record") << QByteArray("[kAppSetting]\n");
        QTest::newRow("not a settings file") << QByteArray("\x00\xff\xfe garbage [[[ = =\n", 18);
    }

    void unreadableRecordsCountAsAbsent()
    {
        QFETCH(QByteArray, contents);
        writeSettingsFile(contents);
        const EVAppSetting read = EVAppSetting::readFromUserDefaults();
        QCOMPARE(read.openAtLogin(), false);
        QCOMPARE(read.showStatusBarIcon(), true);
    }

    void savingReplacesAnUnreadableRecord()
    {
        writeSettingsFile("[kAppSetting]\nopenAtLogin=perhaps\n");
        EVAppSetting setting;
        setting.setOpenAtLogin(true);
        setting.save();
        const EVAppSetting read = EVAppSetting::readFromUserDefaults();
        QCOMPARE(read.openAtLogin(), true);
        QCOMPARE(read.showStatusBarIcon(), true);
    }

    void sharedSettingsAreReadOnceAndKept()
    {
        EVAppSetting *shared = EVAppSetting::shareAppSetting();
        QCOMPARE(EVAppSetting::shareAppSetting(), shared);
        const bool before = shared->showStatusBarIcon();
        EVAppSetting other;
        other.setShowStatusBarIcon(!before);
        other.save();
        QCOMPARE(EVAppSetting::shareAppSetting()->showStatusBarIcon(), before);
    }
};

TALLYVANE_TEST_MAIN(TestEVAppSetting)
#include "tst_evappsetting.moc"

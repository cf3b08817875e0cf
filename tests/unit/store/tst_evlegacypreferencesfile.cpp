#include "TestMain.h"

#include "core/EVUserDefaults.h"
#include "engine/EVWidgetsManager.h"
#include "store/EVBinaryPropertyListWriter.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVKeyedArchiver.h"
#include "store/EVLegacyPreferencesFile.h"
#include "store/EVWidgetConfig.h"
#include "store/EVWidgetEntry.h"

#include <QDir>
#include <QFile>

#include <memory>

using Object = EVPropertyList::Object;
using Result = EVLegacyPreferencesFile::Result;

namespace {

QByteArray widgetsArchive(const QString &title)
{
    EVWidgetConfig config;
    config.setEventTitle(title);
    config.setStyle(2);
    return EVKeyedArchiver::archivedDataWithRootObject(QVariantList{QVariant::fromValue(config)});
}

// A binary preferences file with these keys and values, besides one unrelated setting.
QByteArray binaryPreferences(const QString &key, const Object &value)
{
    EVPropertyList list;
    const QList<quint64> keys{list.append(Object::string(QStringLiteral("NSWindow Frame"))),
                              list.append(Object::string(key))};
    const QList<quint64> values{list.append(Object::string(QStringLiteral("0 0 100 100"))),
                                list.append(value)};
    list.setTopObject(list.append(Object::dictionary(keys, values)));
    return EVBinaryPropertyListWriter::write(list);
}

QByteArray xmlPreferences(const QByteArray &archive)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
           "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
           "<plist version=\"1.0\">\n<dict>\n\t<key>TransferOldData</key>\n\t<false/>\n"
           "\t<key>widgets</key>\n\t<data>\n\t" +
           archive.toBase64() + "\n\t</data>\n</dict>\n</plist>\n";
}

} // namespace

class TestEVLegacyPreferencesFile : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;

    QString writeFile(const QByteArray &contents)
    {
        const QString path = m_home->path() + QStringLiteral("/com.velto.tally.plist");
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
            return QString();
        return path;
    }

private Q_SLOTS:
    void init() { m_home = std::make_unique<TestHome>(); }
    void cleanup() { m_home.reset(); }

    void binaryFileBringsItsArchiveIntoTheSettings()
    {
        const QByteArray archive = widgetsArchive(QStringLiteral("Launch"));
        const QString path =
            writeFile(binaryPreferences(EVLegacyWidgetsKey, Object::data(archive)));
        QString message;
        QCOMPARE(EVLegacyPreferencesFile::importIntoSettings(path, &message), Result::Imported);
        QCOMPARE(
            message,
            QStringLiteral("The widgets in %1 will be imported at the next launch.").arg(path));
        EVUserDefaults defaults;
        QCOMPARE(defaults.value(EVLegacyWidgetsKey).toByteArray(), archive);
        QVERIFY(!defaults.contains(EVTransferOldDataKey));
    }

    void xmlFileBringsItsArchiveIntoTheSettings()
    {
        const QByteArray archive = widgetsArchive(QStringLiteral("Launch"));
        const QString path = writeFile(xmlPreferences(archive));
        QCOMPARE(EVLegacyPreferencesFile::importIntoSettings(path, nullptr), Result::Imported);
        QCOMPARE(EVUserDefaults().value(EVLegacyWidgetsKey).toByteArray(), archive);
    }

    void theNextLaunchImportsTheFilesWidgets()
    {
        const QString path = writeFile(binaryPreferences(
            EVLegacyWidgetsKey, Object::data(widgetsArchive(QStringLiteral("Moon")))));
        QCOMPARE(EVLegacyPreferencesFile::importIntoSettings(path, nullptr), Result::Imported);
        EVCoreDataDelegate store;
        EVWidgetsManager manager(&store);
        manager.setup();
        QCOMPARE(manager.widgetEntries().size(), 1);
        QCOMPARE(manager.widgetEntries().at(0)->eventTitle(), QStringLiteral("Moon"));
        QCOMPARE(manager.widgetEntries().at(0)->styleIndex(), 2);
    }

    void refusesOnceTheImportHasRun()
    {
        EVUserDefaults().setValue(EVTransferOldDataKey, true);
        const QString path = writeFile(binaryPreferences(
            EVLegacyWidgetsKey, Object::data(widgetsArchive(QStringLiteral("Launch")))));
        QString message;
        QCOMPARE(EVLegacyPreferencesFile::importIntoSettings(path, &message),
                 Result::AlreadyImported);
        QCOMPARE(message, QStringLiteral("The widgets of the earlier version were already imported "
                                         "(\"TransferOldData\" is set); nothing was changed."));
        QVERIFY(!EVUserDefaults().contains(EVLegacyWidgetsKey));
    }

    void refusesAFileWithoutAWidgetsArchive_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::newRow("no widgets key")
            << binaryPreferences(QStringLiteral("other"), Object::data(widgetsArchive({})));
        QTest::newRow("widgets as text")
            << binaryPreferences(EVLegacyWidgetsKey, Object::string(QStringLiteral("archive")));
        QTest::newRow("widgets as bytes of no archive")
            << binaryPreferences(EVLegacyWidgetsKey, Object::data("not an archive"));
        QTest::newRow("widgets as an archive of no collection") << binaryPreferences(
            EVLegacyWidgetsKey,
            Object::data(EVKeyedArchiver::archivedDataWithRootObject(QStringLiteral("one"))));
        QTest::newRow("not a property list") << QByteArrayLiteral("widgets = ();");
        QTest::newRow("a property list of no dictionary")
            << xmlPreferences("x").replace("<dict>", "<array>").replace("</dict>", "</array>");
        QTest::newRow("empty file") << QByteArray();
    }

    void refusesAFileWithoutAWidgetsArchive()
    {
        QFETCH(QByteArray, contents);
        EVUserDefaults().setValue(EVLegacyWidgetsKey, QByteArrayLiteral("earlier"));
        const QString path = writeFile(contents);
        QString message;
        QCOMPARE(EVLegacyPreferencesFile::importIntoSettings(path, &message),
                 Result::NoWidgetsArchive);
        QCOMPARE(message, QStringLiteral("%1 holds no \"widgets\" archive of the earlier version; "
                                         "nothing was changed.")
                              .arg(path));
        QCOMPARE(EVUserDefaults().value(EVLegacyWidgetsKey).toByteArray(),
                 QByteArrayLiteral("earlier"));
    }

    void aMissingFileIsUnreadable()
    {
        const QString path = m_home->path() + QStringLiteral("/missing.plist");
        QString message;
        QCOMPARE(EVLegacyPreferencesFile::importIntoSettings(path, &message), Result::Unreadable);
        QVERIFY2(message.startsWith(QStringLiteral("Cannot read %1: ").arg(path)),
                 qPrintable(message));
        QVERIFY(!EVUserDefaults().contains(EVLegacyWidgetsKey));
    }

    void aFolderIsUnreadable()
    {
        QString message;
        QCOMPARE(EVLegacyPreferencesFile::importIntoSettings(m_home->path(), &message),
                 Result::Unreadable);
        QVERIFY(!EVUserDefaults().contains(EVLegacyWidgetsKey));
    }

    void unwritableSettingsAreReported()
    {
        const QString path = writeFile(binaryPreferences(
            EVLegacyWidgetsKey, Object::data(widgetsArchive(QStringLiteral("Launch")))));
        // A folder where the settings file should be.
        const QString settingsPath = m_home->path() + QStringLiteral("/blocked.conf");
        QVERIFY(QDir().mkpath(settingsPath));
        QSettings settings(settingsPath, QSettings::IniFormat);
        QString message;
        QCOMPARE(EVLegacyPreferencesFile::importIntoSettings(path, settings, &message),
                 Result::SettingsNotWritten);
        QCOMPARE(message, QStringLiteral("Cannot write the settings file %1.").arg(settingsPath));
    }

    void widgetsArchiveIsTheBytesUnderWidgets()
    {
        const QByteArray archive = widgetsArchive(QStringLiteral("Launch"));
        QCOMPARE(EVLegacyPreferencesFile::widgetsArchive(
                     binaryPreferences(EVLegacyWidgetsKey, Object::data(archive))),
                 archive);
        QVERIFY(EVLegacyPreferencesFile::widgetsArchive(QByteArray()).isNull());
    }
};

TALLYVANE_TEST_MAIN(TestEVLegacyPreferencesFile)
#include "tst_evlegacypreferencesfile.moc"

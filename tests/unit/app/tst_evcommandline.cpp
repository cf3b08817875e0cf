#include "TestMain.h"
#include "app/EVCommandLine.h"

#include <QJsonObject>

// What each way of starting the program asks for.
class TestEVCommandLine : public QObject
{
    Q_OBJECT

private:
    static EVCommandLine parsed(const QStringList &arguments)
    {
        return EVCommandLine(QStringList{QStringLiteral("tallyvane")} + arguments);
    }

private Q_SLOTS:
    void noArgumentsRunsTheApplication()
    {
        const EVCommandLine commandLine = parsed({});
        QCOMPARE(commandLine.action(), EVCommandLine::Action::Run);
        QVERIFY(commandLine.needsDisplay());
    }

    void helpAndVersionInTheirShortAndLongForms()
    {
        QCOMPARE(parsed({QStringLiteral("--help")}).action(), EVCommandLine::Action::Help);
        QCOMPARE(parsed({QStringLiteral("-h")}).action(), EVCommandLine::Action::Help);
        QCOMPARE(parsed({QStringLiteral("--version")}).action(), EVCommandLine::Action::Version);
        QCOMPARE(parsed({QStringLiteral("-v")}).action(), EVCommandLine::Action::Version);
        QCOMPARE(EVCommandLine::versionText(),
                 QStringLiteral("Tallyvane ") + QStringLiteral("1.0"));
    }

    void helpNamesTheProgramAndEveryOption()
    {
        const QString help = parsed({QStringLiteral("--help")}).helpText();
        QVERIFY(help.startsWith(QStringLiteral("Usage: tallyvane [options]")));
        for (const char *option :
             {"--help", "--version", "--snapshot <FILE>", "--import-legacy <FILE>"})
            QVERIFY2(help.contains(QLatin1String(option)), option);
    }

    void snapshotTakesItsFileAndNeedsNoDisplay()
    {
        const EVCommandLine commandLine =
            parsed({QStringLiteral("--snapshot"), QStringLiteral("/tmp/out.png")});
        QCOMPARE(commandLine.action(), EVCommandLine::Action::Snapshot);
        QCOMPARE(commandLine.file(), QStringLiteral("/tmp/out.png"));
        QVERIFY(!commandLine.needsDisplay());
    }

    void importLegacyTakesItsFile()
    {
        const EVCommandLine commandLine =
            parsed({QStringLiteral("--import-legacy"), QStringLiteral("old.plist")});
        QCOMPARE(commandLine.action(), EVCommandLine::Action::ImportLegacy);
        QCOMPARE(commandLine.file(), QStringLiteral("old.plist"));
    }

    void listAsksForTextOrJson()
    {
        const EVCommandLine text = parsed({QStringLiteral("list")});
        QCOMPARE(text.action(), EVCommandLine::Action::Command);
        QCOMPARE(text.request(), (QJsonObject{{QStringLiteral("command"), QStringLiteral("list")},
                                              {QStringLiteral("json"), false}}));
        QVERIFY(!text.needsDisplay());
        const EVCommandLine json = parsed({QStringLiteral("list"), QStringLiteral("--json")});
        QCOMPARE(json.request().value(QStringLiteral("json")), QJsonValue(true));
    }

    void addCarriesOnlyTheOptionsGiven()
    {
        const EVCommandLine commandLine =
            parsed({QStringLiteral("add"), QStringLiteral("--title"), QStringLiteral("Launch"),
                    QStringLiteral("--date"), QStringLiteral("2027-01-10 18:30"),
                    QStringLiteral("--remind"), QStringLiteral("2h")});
        QCOMPARE(commandLine.action(), EVCommandLine::Action::Command);
        QCOMPARE(commandLine.request(),
                 (QJsonObject{{QStringLiteral("command"), QStringLiteral("add")},
                              {QStringLiteral("title"), QStringLiteral("Launch")},
                              {QStringLiteral("date"), QStringLiteral("2027-01-10 18:30")},
                              {QStringLiteral("remind"), QStringLiteral("2h")}}));
    }

    void removeTakesTheIdentifier()
    {
        const EVCommandLine commandLine = parsed({QStringLiteral("remove"), QStringLiteral("ABC")});
        QCOMPARE(commandLine.request().value(QStringLiteral("uuid")).toString(),
                 QStringLiteral("ABC"));
    }

    void fileCommandsTakeTheirFileAndSayWhichWayItGoes()
    {
        const EVCommandLine exported =
            parsed({QStringLiteral("export-ics"), QStringLiteral("out.ics")});
        QCOMPARE(exported.command(), QStringLiteral("export-ics"));
        QCOMPARE(exported.file(), QStringLiteral("out.ics"));
        QVERIFY(exported.isExport() && !exported.isImport());
        const EVCommandLine imported =
            parsed({QStringLiteral("import"), QStringLiteral("in.json")});
        QCOMPARE(imported.file(), QStringLiteral("in.json"));
        QVERIFY(imported.isImport() && !imported.isExport());
    }

    void commandsWithWrongArgumentsOrOptionsAreUsageErrors()
    {
        for (const QStringList &arguments :
             {QStringList{QStringLiteral("remove")},
              QStringList{QStringLiteral("export"), QStringLiteral("a"), QStringLiteral("b")},
              QStringList{QStringLiteral("list"), QStringLiteral("extra")},
              QStringList{QStringLiteral("list"), QStringLiteral("--title"), QStringLiteral("x")},
              QStringList{QStringLiteral("add"), QStringLiteral("--json")},
              QStringList{QStringLiteral("--json")},
              QStringList{QStringLiteral("--snapshot"), QStringLiteral("a.png"),
                          QStringLiteral("list")}}) {
            const EVCommandLine commandLine = parsed(arguments);
            QVERIFY2(commandLine.action() == EVCommandLine::Action::UsageError,
                     qPrintable(arguments.join(u' ')));
            QVERIFY(!commandLine.errorText().isEmpty());
        }
    }

    void unknownOptionsArgumentsAndMissingValuesAreUsageErrors()
    {
        for (const QStringList &arguments :
             {QStringList{QStringLiteral("--bogus")}, QStringList{QStringLiteral("bogus")},
              QStringList{QStringLiteral("--snapshot")},
              QStringList{QStringLiteral("--version"), QStringLiteral("--help")}}) {
            const EVCommandLine commandLine = parsed(arguments);
            QCOMPARE(commandLine.action(), EVCommandLine::Action::UsageError);
            QVERIFY(!commandLine.errorText().isEmpty());
        }
        QCOMPARE(EVCommandLine::usageExitCode, 2);
    }
};

TALLYVANE_TEST_MAIN(TestEVCommandLine)
#include "tst_evcommandline.moc"

#include "TestMain.h"
#include "app/EVCommandLine.h"

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

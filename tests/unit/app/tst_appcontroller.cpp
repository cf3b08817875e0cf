#include "AppSeams.h"
#include "TestMain.h"
#include "app/AppController.h"
#include "app/AppDelegate.h"
#include "app/EVAboutBox.h"
#include "controls/EVSegmentedControl.h"
#include "core/EVAppInfo.h"
#include "core/EVAppSetting.h"
#include "core/EVUserDefaults.h"
#include "engine/EVWidgetWindow.h"
#include "engine/EVWidgetsManager.h"
#include "engine/EVWindowController.h"
#include "notify/FLUserNotificationCenter.h"
#include "platform/EVLoginItem.h"
#include "platform/EVNotificationBus.h"
#include "prefs/EVPerferenceController.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QTableView>

#include <memory>

// The application's shell on a manager and store of the test's own, in a temporary HOME.
class TestAppController : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<EVCoreDataDelegate> m_store;
    std::unique_ptr<EVWidgetsManager> m_manager;
    std::unique_ptr<AppController> m_controller;
    EVAppSetting m_settingsBefore;

    void startWith(const QStringList &titles)
    {
        m_store = std::make_unique<EVCoreDataDelegate>();
        for (const QString &title : titles)
            m_store->addWidgetEntry()->setEventTitle(title);
        m_store->save();
        m_manager = std::make_unique<EVWidgetsManager>(m_store.get());
        m_manager->start();
        m_controller = std::make_unique<AppController>(m_manager.get());
    }

    bool preferencesShown() const
    {
        EVPerferenceController *preferences = m_controller->perferenceController();
        return preferences && preferences->isWindowLoaded() && preferences->window()->isVisible();
    }

    QList<EVWidgetWindow *> widgetWindows() const
    {
        QList<EVWidgetWindow *> windows;
        for (EVWindowController *controller : m_manager->widgetControllers())
            windows.append(controller->window());
        return windows;
    }

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<TestHome>();
        m_settingsBefore = *EVAppSetting::shareAppSetting();
        *EVAppSetting::shareAppSetting() = EVAppSetting();
    }

    void cleanup()
    {
        m_controller.reset();
        m_manager.reset();
        m_store.reset();
        *EVAppSetting::shareAppSetting() = m_settingsBefore;
        m_home.reset();
    }

    void launchCounterCountsEachLaunchAndStopsAtAThousand()
    {
        QCOMPARE(EVUserDefaults::integerForKey(EVUserDefaults::appLaunchTimesKey), 0);
        AppDelegate::recordAppLaunchTimes();
        QCOMPARE(EVUserDefaults::integerForKey(EVUserDefaults::appLaunchTimesKey), 1);
        AppDelegate::recordAppLaunchTimes();
        QCOMPARE(EVUserDefaults::integerForKey(EVUserDefaults::appLaunchTimesKey), 2);
        EVUserDefaults::setInteger(EVUserDefaults::appLaunchTimesKey, 999);
        AppDelegate::recordAppLaunchTimes();
        QCOMPARE(EVUserDefaults::integerForKey(EVUserDefaults::appLaunchTimesKey), 1000);
        AppDelegate::recordAppLaunchTimes();
        QCOMPARE(EVUserDefaults::integerForKey(EVUserDefaults::appLaunchTimesKey), 1000);
    }

    void launchWithNoWidgetsOpensThePreferencesWindow()
    {
        startWith({});
        m_controller->onApplicationDidFinishLaunching();
        QVERIFY(preferencesShown());
    }

    void launchWithWidgetsLeavesThePreferencesWindowClosed()
    {
        startWith({QStringLiteral("Launch")});
        m_controller->onApplicationDidFinishLaunching();
        QVERIFY(!preferencesShown());
    }

    void everyActivationWithNoWidgetsOpensThePreferencesWindow()
    {
        startWith({});
        m_controller->onApplicationDidFinishLaunching();
        m_controller->perferenceController()->window()->hide();
        m_controller->onApplicationDidBecomeActive();
        QVERIFY(preferencesShown());
        m_controller->perferenceController()->window()->hide();
        m_controller->onApplicationDidBecomeActive();
        QVERIFY(preferencesShown());
    }

    void activationWithWidgetsOpensNothing()
    {
        startWith({QStringLiteral("Launch")});
        m_controller->onApplicationDidBecomeActive();
        QVERIFY(!preferencesShown());
    }

    void quitWithOpenAtLoginOnEndsWithoutAQuestion()
    {
        startWith({QStringLiteral("Launch")});
        EVAppSetting::shareAppSetting()->setOpenAtLogin(true);
        AlertRecorder alerts;
        QVERIFY(m_controller->onApplicationShouldTerminate());
        QVERIFY(alerts.shown().isEmpty());
    }

    void quitQuestionHidesTheWidgetsAndCancelShowsThemAgain()
    {
        startWith({QStringLiteral("One"), QStringLiteral("Two")});
        AlertRecorder restoresTheDialogAfterwards;
        QList<double> opacitiesDuringQuestion;
        QString question;
        EVAlert::setResponder([&](const EVAlert &alert) {
            for (EVWidgetWindow *window : widgetWindows())
                opacitiesDuringQuestion.append(window->windowOpacity());
            question = alert.messageText;
            return 1; // Cancel
        });

        QVERIFY(!m_controller->onApplicationShouldTerminate());

        QCOMPARE(question, QStringLiteral("Do you want to quit Tallyvane?"));
        QCOMPARE(opacitiesDuringQuestion, (QList<double>{0.0, 0.0}));
        for (EVWidgetWindow *window : widgetWindows())
            QCOMPARE(window->windowOpacity(), 1.0);
    }

    void quitQuestionHasItsTextsAndQuitEnds()
    {
        startWith({QStringLiteral("One")});
        AlertRecorder alerts;
        alerts.queueAnswer(0);
        QVERIFY(m_controller->onApplicationShouldTerminate());
        QCOMPARE(alerts.shown().size(), 1);
        const EVAlert &alert = alerts.shown().at(0);
        QCOMPARE(alert.informativeText,
                 QStringLiteral("We highly recommend that enabled the Open At Login option, so "
                                "that when turn on computer again you can see the Tallyvane."));
        QCOMPARE(alert.buttons, (QStringList{QStringLiteral("Quit"), QStringLiteral("Cancel")}));
        QCOMPARE(alert.checkBox.title, QStringLiteral("Open Tallyvane at login"));
        QVERIFY(alert.checkBox.bold);
        // The widgets stay out of sight until the process ends.
        for (EVWidgetWindow *window : widgetWindows())
            QCOMPARE(window->windowOpacity(), 0.0);
    }

    void tickingTheQuestionsBoxSwitchesOpenAtLoginWhileItIsUp()
    {
        startWith({QStringLiteral("One")});
        AlertRecorder restoresTheDialogAfterwards;
        bool entryWhileUp = false;
        bool settingWhileUp = false;
        EVAlert::setResponder([&](const EVAlert &alert) {
            alert.checkBox.toggled(true);
            entryWhileUp = QFileInfo::exists(EVLoginItem::entryPath());
            settingWhileUp = EVAppSetting::shareAppSetting()->openAtLogin();
            return 1;
        });
        m_controller->onApplicationShouldTerminate();
        QVERIFY(entryWhileUp);
        QVERIFY(settingWhileUp);
    }

    void afterThePowerOffNoticeTheApplicationEndsWithoutAQuestion()
    {
        startWith({QStringLiteral("One")});
        AlertRecorder alerts;
        m_controller->onNSWorkspaceWillPowerOffNotification();
        QVERIFY(m_controller->onApplicationShouldTerminate());
        QVERIFY(alerts.shown().isEmpty());
    }

    void openAtLoginWritesAndRemovesTheAutostartEntry()
    {
        startWith({});
        m_controller->setOpenAtLoginState(true);
        QVERIFY(QFileInfo::exists(EVLoginItem::entryPath()));
        QVERIFY(EVAppSetting::shareAppSetting()->openAtLogin());
        m_controller->setOpenAtLoginState(false);
        QVERIFY(!QFileInfo::exists(EVLoginItem::entryPath()));
        QVERIFY(!EVAppSetting::shareAppSetting()->openAtLogin());
    }

    void openAtLoginThatFailsSaysSoAndKeepsTheSetting()
    {
        startWith({});
        // A file where the configuration folder should be: no entry can be written.
        const QString blocked = m_home->path() + QStringLiteral("/config-is-a-file");
        QFile blocker(blocked);
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        ScopedEnvironment configHome("XDG_CONFIG_HOME", blocked.toUtf8());
        AlertRecorder alerts;

        m_controller->setOpenAtLoginState(true);

        QVERIFY(!EVAppSetting::shareAppSetting()->openAtLogin());
        QCOMPARE(alerts.shown().size(), 1);
        QCOMPARE(alerts.shown().at(0).messageText, QStringLiteral("An error ocurred"));
        QCOMPARE(alerts.shown().at(0).informativeText,
                 QStringLiteral("Couldn't add Helper App to launch at login item list."));
        QCOMPARE(alerts.shown().at(0).buttons, QStringList{QStringLiteral("OK")});
    }

    void removingTheLoginItemThatFailsNamesTheRemoval()
    {
        startWith({});
        EVAppSetting::shareAppSetting()->setOpenAtLogin(true);
        // An entry that cannot be taken away: a folder with something in it, under its name.
        QVERIFY(QDir().mkpath(EVLoginItem::entryPath() + QStringLiteral("/kept")));
        AlertRecorder alerts;

        m_controller->setOpenAtLoginState(false);

        QVERIFY(EVAppSetting::shareAppSetting()->openAtLogin());
        QCOMPARE(alerts.shown().size(), 1);
        QCOMPARE(alerts.shown().at(0).informativeText,
                 QStringLiteral("Couldn't remove Helper App from launch at login item list."));
    }

    void doubleClickingAWidgetOpensThePreferencesWithItSelected()
    {
        startWith({QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("Three")});
        m_controller->onApplicationDidFinishLaunching();
        EVWidgetEntry *second = m_manager->widgetEntries().at(1);
        EVWindowController *controller = m_manager->widgetWindowController(second);

        EVNotificationBus::defaultCenter()->postNotificationName(EVNotificationWidgetDoubleClick,
                                                                 controller);

        QVERIFY(preferencesShown());
        QCOMPARE(m_controller->perferenceController()->selectedWidgetEntry(), second);
    }

    void preferencesFromTheMenuLeavesTheSelectionAsItWas()
    {
        startWith({QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("Three")});
        m_controller->onApplicationDidFinishLaunching();
        EVWidgetEntry *third = m_manager->widgetEntries().at(2);
        m_controller->onEVNotificationWidgetDoubleClick(m_manager->widgetWindowController(third));
        m_controller->perferenceController()->window()->hide();

        m_controller->onEVNotificationWidgetDoubleClick();

        QVERIFY(preferencesShown());
        QCOMPARE(m_controller->perferenceController()->selectedWidgetEntry(), third);
    }

    void feedbackSubjectNamesApplicationVersionAndSystemInHexadecimal()
    {
        QCOMPARE(AppController::feedbackSubject(QStringLiteral("N"), QStringLiteral("2.1"), 0x1094),
                 QStringLiteral("Feedback: N(2.1.1094)"));
    }

    void feedbackButtonOpensAMailToTheMakers()
    {
        startWith({});
        MailRecorder mail;
        m_controller->perferenceToolBarFeedbackClicked(nullptr);
        QCOMPARE(mail.opened().size(), 1);
        QCOMPARE(mail.opened().at(0).path(), EVAppInfo::feedbackAddress());
        QCOMPARE(mail.opened().at(0).query(QUrl::FullyDecoded),
                 QStringLiteral("SUBJECT=") + AppController::feedbackSubject());
    }

    void toolbarSwitchesSetOpenAtLoginAndTheStatusItem()
    {
        startWith({});
        m_controller->onEVNotificationWidgetDoubleClick();
        QWidget *window = m_controller->perferenceController()->window();
        auto *openAtLogin =
            window->findChild<EVSegmentedControl *>(QStringLiteral("openAtLoginSeg"));
        auto *statusIcon =
            window->findChild<EVSegmentedControl *>(QStringLiteral("showStatusBarIconSeg"));
        QVERIFY(openAtLogin && statusIcon);

        openAtLogin->setSelectedSegment(0);
        m_controller->perferenceToolBarOpenAtLoginStateDidChanged(openAtLogin);
        QVERIFY(EVAppSetting::shareAppSetting()->openAtLogin());
        QVERIFY(QFileInfo::exists(EVLoginItem::entryPath()));

        statusIcon->setSelectedSegment(1);
        m_controller->perferenceToolBarStatusBarIconStateDidChanged(statusIcon);
        QVERIFY(!EVAppSetting::shareAppSetting()->showStatusBarIcon());
        QVERIFY(!m_controller->statusItem());
    }

    void aboutShowsTheNameAndVersionWithoutBlocking()
    {
        startWith({});
        m_controller->onAbout();
        QVERIFY(m_controller->aboutBox());
        QVERIFY(m_controller->aboutBox()->isVisible());
        auto *version =
            m_controller->aboutBox()->findChild<QLabel *>(QStringLiteral("aboutVersion"));
        QVERIFY(version);
        QCOMPARE(version->text(), QStringLiteral("Version ") + EVAppInfo::version());
        m_controller->aboutBox()->close();
    }

    void terminationSavesTheSettingsAndTheWidgetsAndStopsTheManager()
    {
        startWith({QStringLiteral("One")});
        EVAppSetting::shareAppSetting()->setShowStatusBarIcon(false);
        EVWidgetWindow *window = widgetWindows().at(0);
        window->move(123, 77);
        QTRY_COMPARE(window->pos(), QPoint(123, 77));

        m_controller->onApplicationWillTerminate();

        QVERIFY(!m_manager->isRunning());
        QVERIFY(!EVAppSetting::readFromUserDefaults().showStatusBarIcon());
        EVCoreDataDelegate reopened;
        const QRectF frame = reopened.fetchWidgetEntries().at(0)->frame();
        QCOMPARE(frame.topLeft().toPoint(), QPoint(123, 77));
    }
};

TALLYVANE_TEST_MAIN(TestAppController)
#include "tst_appcontroller.moc"

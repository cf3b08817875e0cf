#pragma once

#include "notify/FLUserNotificationCenterDelegate.h"

#include <QObject>

class AppController;
class EVSingleInstance;
class EVTerminationSignals;
class EVInstanceReplier;
class QSessionManager;

// The application's delegate: receives its lifecycle (launch, becoming active, the request to
// quit, the end) and hands each to the application controller, counts launches, and is the
// delegate of the notification center so that reminders show also while the application is in
// front. The one way to quit is EVApplication::terminate(), which asks the controller first.
class AppDelegate : public QObject, public FLUserNotificationCenterDelegate
{
    Q_OBJECT

public:
    // The launch counter stops here.
    static constexpr int launchTimesLimit = 1000;

    explicit AppDelegate(AppController *appController, QObject *parent = nullptr);
    ~AppDelegate() override;

    AppController *appController() const { return m_appController; }

    // Connects the application's events and launches: the notification center shows one banner
    // at a time and reports here, the launch is counted, the controller starts the widgets.
    // Termination signals and second launches are taken from the objects given, when given.
    void applicationDidFinishLaunching(EVTerminationSignals *terminationSignals = nullptr,
                                       EVSingleInstance *instance = nullptr);
    void applicationWillTerminate();
    void applicationDidBecomeActive();
    bool applicationShouldTerminate();

    // "AppLaunchTimes" one more, up to launchTimesLimit.
    static void recordAppLaunchTimes();

    Operations implementedOperations() const override;
    bool userNotificationCenterShouldPresentNotification(FLUserNotificationCenter *center,
                                                         FLUserNotification *notification) override;

private Q_SLOTS:
    void onApplicationStateChanged(Qt::ApplicationState state);
    void onCommitDataRequest(QSessionManager &manager);
    void onPowerOff();
    void onInstanceRequest(const QJsonObject &request, const EVInstanceReplier &replier);

private:
    AppController *m_appController;
    bool m_terminating = false;
};

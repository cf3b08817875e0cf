#include "app/AppDelegate.h"

#include "app/AppController.h"
#include "app/EVApplication.h"
#include "core/EVUserDefaults.h"
#include "engine/EVCommandResult.h"
#include "notify/FLUserNotificationCenter.h"
#include "platform/EVInstanceReplier.h"
#include "platform/EVSingleInstance.h"
#include "platform/EVTerminationSignals.h"
#include "store/EVCoreDataDelegate.h"

#include <QGuiApplication>
#include <QJsonObject>
#include <QSessionManager>

AppDelegate::AppDelegate(AppController *appController, QObject *parent)
    : QObject(parent)
    , m_appController(appController)
{}

AppDelegate::~AppDelegate()
{
    EVApplication::setTerminateHandler({});
}

void AppDelegate::applicationDidFinishLaunching(EVTerminationSignals *terminationSignals,
                                                EVSingleInstance *instance)
{
    EVApplication::setTerminateHandler([this] {
        if (applicationShouldTerminate())
            QCoreApplication::quit();
    });
    EVApplication::reportStoreFailures(EVCoreDataDelegate::shareCoreDataDelegate());
    connect(qApp, &QCoreApplication::aboutToQuit, this, &AppDelegate::applicationWillTerminate);
    connect(qApp, &QGuiApplication::applicationStateChanged, this,
            &AppDelegate::onApplicationStateChanged);
    connect(qApp, &QGuiApplication::commitDataRequest, this, &AppDelegate::onCommitDataRequest);
    if (terminationSignals)
        connect(terminationSignals, &EVTerminationSignals::powerOffRequested, this,
                &AppDelegate::onPowerOff);
    if (instance)
        connect(instance, &EVSingleInstance::requestReceived, this,
                &AppDelegate::onInstanceRequest);

    FLUserNotificationCenter *center = FLUserNotificationCenter::defaultUserNotificationCenter();
    center->setCenterType(FLUserNotificationCenterTypeBanner);
    center->setDelegate(this);
    recordAppLaunchTimes();
    m_appController->onApplicationDidFinishLaunching();
}

void AppDelegate::applicationWillTerminate()
{
    if (m_terminating)
        return;
    m_terminating = true;
    m_appController->onApplicationWillTerminate();
    FLUserNotificationCenter::defaultUserNotificationCenter()->setDelegate(nullptr);
}

void AppDelegate::applicationDidBecomeActive()
{
    m_appController->onApplicationDidBecomeActive();
}

bool AppDelegate::applicationShouldTerminate()
{
    return m_appController->onApplicationShouldTerminate();
}

void AppDelegate::recordAppLaunchTimes()
{
    const int launchTimes = EVUserDefaults::integerForKey(EVUserDefaults::appLaunchTimesKey);
    if (launchTimes > launchTimesLimit - 1)
        return;
    EVUserDefaults::setInteger(EVUserDefaults::appLaunchTimesKey, launchTimes + 1);
}

FLUserNotificationCenterDelegate::Operations AppDelegate::implementedOperations() const
{
    return Operation::DidDeliverNotification | Operation::DidActivateNotification |
           Operation::ShouldPresentNotification;
}

bool AppDelegate::userNotificationCenterShouldPresentNotification(FLUserNotificationCenter *,
                                                                  FLUserNotification *)
{
    return true;
}

void AppDelegate::onApplicationStateChanged(Qt::ApplicationState state)
{
    if (state == Qt::ApplicationActive && !m_terminating)
        applicationDidBecomeActive();
}

void AppDelegate::onCommitDataRequest(QSessionManager &)
{
    // The desktop session ends: everything is saved as the application quits, unasked.
    onPowerOff();
}

void AppDelegate::onPowerOff()
{
    m_appController->onNSWorkspaceWillPowerOffNotification();
    EVApplication::terminate();
}

void AppDelegate::onInstanceRequest(const QJsonObject &request, const EVInstanceReplier &replier)
{
    // A second launch of the application: the user is looking for us.
    if (request.value(QStringLiteral("command")).toString() == QLatin1String("activate")) {
        m_appController->onEVNotificationWidgetDoubleClick();
        replier.reply(EVCommandResult::done().toJson());
        return;
    }
    replier.reply(m_appController->runWidgetCommand(request));
}

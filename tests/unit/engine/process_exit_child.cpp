// A program built on the library the way any user of it would be: the process-wide manager with
// widgets and a banner on screen, then a plain return from main. With "teardown" as its argument
// it ends the process-wide objects itself first, as the application does.
#include "core/EVProcessObjects.h"
#include "engine/EVWidgetsManager.h"
#include "notify/FLUserNotification.h"
#include "notify/FLUserNotificationCenter.h"
#include "store/EVWidgetEntry.h"

#include <QApplication>
#include <QTimer>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    EVWidgetsManager *manager = EVWidgetsManager::shareWidgetsMananger();
    for (const char *title : {"First", "Second"})
        manager->addNewWidgetEntry()->setEventTitle(QString::fromLatin1(title));
    manager->refreshAll();

    auto *banner = new FLUserNotification;
    banner->setTitle(QStringLiteral("Reminder"));
    FLUserNotificationCenter::defaultUserNotificationCenter()->deliverNotification(banner);

    // Let the windows map and the banner start moving in before the process ends.
    QTimer::singleShot(300, &application, &QCoreApplication::quit);
    const int status = QApplication::exec();
    if (application.arguments().contains(QStringLiteral("teardown")))
        EVProcessObjects::teardown();
    return status;
}

#include "app/EVApplication.h"

#include "app/EVEmailController.h"
#include "core/EVAlert.h"
#include "core/EVAppInfo.h"
#include "store/EVCoreDataDelegate.h"

#include <QCoreApplication>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcApplication, "tallyvane.application")

namespace {
std::function<void()> &installedTerminateHandler()
{
    static std::function<void()> handler;
    return handler;
}
} // namespace

void EVApplication::setTerminateHandler(std::function<void()> handler)
{
    installedTerminateHandler() = std::move(handler);
}

void EVApplication::terminate()
{
    if (const auto &handler = installedTerminateHandler()) {
        handler();
        return;
    }
    if (QCoreApplication *application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, &QCoreApplication::quit, Qt::QueuedConnection);
}

QString EVApplication::databaseFailureSubject()
{
    return QStringLiteral("Feedback: %1(%2.%3) Database initial failed")
        .arg(EVAppInfo::name(), EVAppInfo::version(),
             QString::number(EVAppInfo::systemVersion(), 16));
}

void EVApplication::countdownPresentError(const EVError &error)
{
    qCWarning(lcApplication).noquote()
        << QStringLiteral("The widget store cannot be used: %1 (%2 %3)%4")
               .arg(error.localizedDescription, error.domain, QString::number(error.code),
                    error.localizedFailureReason.isEmpty()
                        ? QString()
                        : QStringLiteral(": ") + error.localizedFailureReason);

    EVAlert alert;
    alert.icon = QMessageBox::Warning;
    alert.messageText = QStringLiteral("Wow, database initial failed!");
    alert.informativeText =
        QStringLiteral("I'm out of action with the bad database, My master will be always happy "
                       "to offer you efficient services.");
    alert.buttons = {QStringLiteral("Report Issue"), QStringLiteral("Cancel")};
    if (alert.run() == 0)
        EVEmailController::sendEmailWithoutBody(EVAppInfo::feedbackAddress(),
                                                databaseFailureSubject());
    terminate();
}

void EVApplication::reportStoreFailures(EVCoreDataDelegate *store)
{
    QObject::connect(store, &EVCoreDataDelegate::errorReported, store,
                     &EVApplication::countdownPresentError);
}

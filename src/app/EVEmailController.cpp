#include "app/EVEmailController.h"

#include <QDesktopServices>

QUrl EVEmailController::mailUrl(const QString &address, const QString &subject)
{
    const QString escapedAddress = QString::fromLatin1(QUrl::toPercentEncoding(address, "@"));
    const QString query =
        QStringLiteral("SUBJECT=%1").arg(QString::fromLatin1(QUrl::toPercentEncoding(subject)));
    return QUrl(QStringLiteral("mailto:%1?%2").arg(escapedAddress, query), QUrl::StrictMode);
}

void EVEmailController::sendEmailWithoutBody(const QString &address, const QString &subject)
{
    QDesktopServices::openUrl(mailUrl(address, subject));
}

#pragma once

#include <QString>
#include <QUrl>

// Hands a new mail to the user's mail program.
class EVEmailController
{
public:
    // Opens a "mailto:" address with the given subject and no body; the result is not checked.
    static void sendEmailWithoutBody(const QString &address, const QString &subject);

    static QUrl mailUrl(const QString &address, const QString &subject);
};

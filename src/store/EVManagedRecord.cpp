#include "store/EVManagedRecord.h"

#include <QUuid>

QString EVManagedRecord::newUuid()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

bool EVManagedRecord::isUuid(const QString &text)
{
    if (text.size() != 36)
        return false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        const bool hyphenPlace = i == 8 || i == 13 || i == 18 || i == 23;
        const bool upperHex = (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'F');
        if (hyphenPlace ? c != u'-' : !upperHex)
            return false;
    }
    return true;
}

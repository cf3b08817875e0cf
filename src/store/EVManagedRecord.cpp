#include "store/EVManagedRecord.h"

#include <QUuid>

QString EVManagedRecord::newUuid()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

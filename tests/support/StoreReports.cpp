#include "StoreReports.h"

#include "app/EVApplication.h"
#include "store/EVCoreDataDelegate.h"

void StoreReports::watch(EVCoreDataDelegate &store)
{
    EVApplication::reportStoreFailures(&store);
    QObject::connect(&store, &EVCoreDataDelegate::errorReported,
                     [this](const EVError &error) { errors.append(error); });
}

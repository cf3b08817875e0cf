#pragma once

#include "store/EVCoreDataDelegate.h"

#include <QObject>
#include <QString>

// The first failure a store reports while this object lives, for those who work on a store
// without the application's fatal report: the command line, the snapshot, the benchmarks.
class EVStoreFailures
{
public:
    explicit EVStoreFailures(EVCoreDataDelegate *store)
        : m_connection(QObject::connect(store, &EVCoreDataDelegate::errorReported,
                                        [this](const EVError &error) {
                                            if (!m_failed)
                                                m_first = error.localizedDescription;
                                            m_failed = true;
                                        }))
    {}
    ~EVStoreFailures() { QObject::disconnect(m_connection); }
    EVStoreFailures(const EVStoreFailures &) = delete;
    EVStoreFailures &operator=(const EVStoreFailures &) = delete;

    bool any() const { return m_failed; }
    // The description of the first failure.
    QString first() const { return m_first; }

private:
    bool m_failed = false;
    QString m_first;
    QMetaObject::Connection m_connection;
};

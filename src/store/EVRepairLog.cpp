#include "store/EVRepairLog.h"

#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcStore, "tallyvane.store")

void EVRepairLog::count(const QString &kind)
{
    ++m_counts[kind];
}

void EVRepairLog::write() const
{
    for (auto it = m_counts.cbegin(); it != m_counts.cend(); ++it)
        qCWarning(lcStore).noquote() << it.key().arg(it.value());
}

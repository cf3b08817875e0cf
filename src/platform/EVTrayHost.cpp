#include "platform/EVTrayHost.h"

#include <QLoggingCategory>
#include <QSystemTrayIcon>

namespace {
Q_LOGGING_CATEGORY(lcTrayHost, "tallyvane.trayhost")
} // namespace

EVTrayHost::EVTrayHost(QObject *parent)
    : EVTrayHost(&QSystemTrayIcon::isSystemTrayAvailable, parent)
{}

EVTrayHost::EVTrayHost(Probe probe, QObject *parent)
    : QObject(parent)
    , m_probe(std::move(probe))
{
    m_retryTimer.setInterval(std::chrono::seconds(2));
    connect(&m_retryTimer, &QTimer::timeout, this, &EVTrayHost::onRetry);
}

void EVTrayHost::setRetryInterval(std::chrono::milliseconds interval)
{
    m_retryTimer.setInterval(interval);
}

void EVTrayHost::start()
{
    m_retryTimer.stop();
    m_available = false;
    if (m_probe()) {
        found();
        return;
    }
    m_waited.start();
    m_retryTimer.start();
}

void EVTrayHost::onRetry()
{
    if (m_probe()) {
        found();
        return;
    }
    if (std::chrono::milliseconds(m_waited.elapsed()) >= m_retryPeriod) {
        m_retryTimer.stop();
        qCWarning(lcTrayHost).noquote()
            << QStringLiteral("No system tray appeared within %1 s; the status menu is not shown"
                              " (starting the application again opens its preferences window)")
                   .arg(std::chrono::duration_cast<std::chrono::seconds>(m_retryPeriod).count());
    }
}

void EVTrayHost::found()
{
    m_retryTimer.stop();
    m_available = true;
    Q_EMIT available();
}

#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>

// Tells when a system tray host is there to take the status item. At login the application often
// starts before the panel: when no host exists yet, it looks again every retry interval until
// one appears or the retry period is over, and then says so in one log line.
class EVTrayHost : public QObject
{
    Q_OBJECT

public:
    using Probe = std::function<bool()>;

    // Asks QSystemTrayIcon::isSystemTrayAvailable().
    explicit EVTrayHost(QObject *parent = nullptr);
    // Asks the given probe instead.
    explicit EVTrayHost(Probe probe, QObject *parent = nullptr);

    // Every 2 seconds, for 2 minutes, unless set otherwise before start().
    void setRetryInterval(std::chrono::milliseconds interval);
    void setRetryPeriod(std::chrono::milliseconds period) { m_retryPeriod = period; }

    // Looks now; emits available() before returning when a host is there, otherwise keeps
    // looking. Starting again starts the period anew.
    void start();

    bool isAvailable() const { return m_available; }
    bool isWaiting() const { return m_retryTimer.isActive(); }

Q_SIGNALS:
    void available();

private Q_SLOTS:
    void onRetry();

private:
    void found();

    Probe m_probe;
    QTimer m_retryTimer;
    QElapsedTimer m_waited;
    std::chrono::milliseconds m_retryPeriod{std::chrono::minutes(2)};
    bool m_available = false;
};

#pragma once

#include <QObject>

#include <array>
#include <signal.h>

class QSocketNotifier;

// SIGTERM, SIGINT and SIGHUP as one Qt signal: the shell treats them as the power-off notice.
// The signal handler only writes the signal's number into a pipe; the main loop reads it and
// emits, so nothing but that one write ever runs inside the handler.
class EVTerminationSignals : public QObject
{
    Q_OBJECT

public:
    explicit EVTerminationSignals(QObject *parent = nullptr);
    // Puts the handlers back that were there before install().
    ~EVTerminationSignals() override;

    // Routes the three signals here until this object goes. Only one object in the process can
    // hold them: false when another does, or when the pipe cannot be made.
    bool install();
    bool isInstalled() const { return m_readEnd >= 0; }

Q_SIGNALS:
    void powerOffRequested(int signalNumber);

private Q_SLOTS:
    void onPipeReadable();

private:
    void uninstall();

    int m_readEnd = -1;
    QSocketNotifier *m_notifier = nullptr;
    std::array<struct sigaction, 3> m_previousActions{};
};

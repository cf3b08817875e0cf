#include "platform/EVTerminationSignals.h"

#include <QPointer>
#include <QSocketNotifier>

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array<int, 3> terminationSignals{SIGTERM, SIGINT, SIGHUP};

// The pipe's write end as the handler sees it; -1 while nobody listens.
std::atomic<int> pipeWriteEnd{-1};
static_assert(std::atomic<int>::is_always_lock_free, "the signal handler needs a lock-free fd");

extern "C" void writeSignalNumber(int signalNumber)
{
    const int savedErrno = errno;
    const int fd = pipeWriteEnd.load();
    if (fd >= 0) {
        const auto byte = static_cast<unsigned char>(signalNumber);
        // A full pipe already holds more notices than anyone needs: the byte may be dropped.
        [[maybe_unused]] const ssize_t written = ::write(fd, &byte, 1);
    }
    errno = savedErrno;
}

} // namespace

EVTerminationSignals::EVTerminationSignals(QObject *parent)
    : QObject(parent)
{}

EVTerminationSignals::~EVTerminationSignals()
{
    uninstall();
}

bool EVTerminationSignals::install()
{
    if (isInstalled() || pipeWriteEnd.load() >= 0)
        return false;
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return false;
    m_readEnd = ends[0];
    pipeWriteEnd.store(ends[1]);

    struct sigaction action = {};
    action.sa_handler = writeSignalNumber;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < terminationSignals.size(); ++i)
        ::sigaction(terminationSignals[i], &action, &m_previousActions[i]);

    m_notifier = new QSocketNotifier(m_readEnd, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &EVTerminationSignals::onPipeReadable);
    return true;
}

void EVTerminationSignals::uninstall()
{
    if (!isInstalled())
        return;
    for (std::size_t i = 0; i < terminationSignals.size(); ++i)
        ::sigaction(terminationSignals[i], &m_previousActions[i], nullptr);
    const int writeEnd = pipeWriteEnd.exchange(-1);
    delete m_notifier;
    m_notifier = nullptr;
    ::close(writeEnd);
    ::close(m_readEnd);
    m_readEnd = -1;
}

void EVTerminationSignals::onPipeReadable()
{
    // A receiver may delete this object, or end its hold on the signals.
    const QPointer<EVTerminationSignals> alive(this);
    unsigned char numbers[64];
    ssize_t count = 0;
    while (alive && isInstalled() && (count = ::read(m_readEnd, numbers, sizeof numbers)) > 0) {
        for (ssize_t i = 0; i < count && alive; ++i)
            Q_EMIT powerOffRequested(numbers[i]);
    }
}

// The other process of the termination-signal tests: a program that ends through the Qt signal
// when it is sent SIGTERM, SIGINT or SIGHUP, and says which one it got.
#include "platform/EVTerminationSignals.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    EVTerminationSignals signals;
    if (!signals.install())
        return 3;
    QObject::connect(&signals, &EVTerminationSignals::powerOffRequested, &app,
                     [](int signalNumber) {
                         std::printf("power off %d\n", signalNumber);
                         std::fflush(stdout);
                         QCoreApplication::quit();
                     });
    std::puts("ready");
    std::fflush(stdout);
    return app.exec();
}

// Switches open-at-login on for the executable named on the command line, as the application
// does when the user asks for it, and prints where the autostart entry was written; so that
// the packaging tests can check the entry against an installed package.
#include "core/EVAppInfo.h"
#include "platform/EVLoginItem.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2) {
        std::fputs("usage: login_entry_probe EXECUTABLE\n", stderr);
        return 2;
    }
    EVLoginItem loginItem(EVAppInfo::name(), arguments.at(1));
    if (!loginItem.setEnabled(true)) {
        std::fputs(qPrintable(loginItem.errorString() + QLatin1Char('\n')), stderr);
        return 1;
    }
    if (!loginItem.isEnabled()) {
        std::fputs("the autostart entry was written but does not read as enabled\n", stderr);
        return 1;
    }
    std::puts(qPrintable(EVLoginItem::entryPath()));
    return 0;
}

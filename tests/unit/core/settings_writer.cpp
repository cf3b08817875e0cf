// A second process for the settings tests: a later or earlier run of the application that
// reads, changes and saves the application settings of the HOME the test points at.
#include "core/EVAppSetting.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>

namespace {

void change(const QStringList &arguments)
{
    EVAppSetting *setting = EVAppSetting::shareAppSetting();
    setting->setOpenAtLogin(arguments.value(2) == QLatin1String("1"));
    setting->setShowStatusBarIcon(arguments.value(3) == QLatin1String("1"));
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    const QString mode = arguments.value(1);
    if (mode == QLatin1String("print")) {
        const EVAppSetting *setting = EVAppSetting::shareAppSetting();
        std::printf("%d %d\n", int(setting->openAtLogin()), int(setting->showStatusBarIcon()));
        return 0;
    }
    if (mode == QLatin1String("change-and-save")) {
        change(arguments);
        EVAppSetting::shareAppSetting()->save();
        return 0;
    }
    if (mode == QLatin1String("change-and-die")) {
        // Ended without the termination sequence, as by a kill.
        change(arguments);
        std::raise(SIGKILL);
    }
    return 1;
}

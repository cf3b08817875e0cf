// Writes example widgets into the widget store of the current HOME, for a desktop that shows
// real widgets: the run script's screenshot, the start-up benchmark.
//
//   seed_widgets [COUNT]     COUNT widgets, 3 when not given
#include "ExampleWidgets.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    bool isNumber = arguments.size() < 2;
    const int count = isNumber ? 3 : arguments.at(1).toInt(&isNumber);
    if (!isNumber || count < 0 || arguments.size() > 2) {
        std::fputs("usage: seed_widgets [COUNT]\n", stderr);
        return 2;
    }
    QString message;
    const bool saved = ExampleWidgets::save(count, &message);
    std::fputs(qPrintable(message + QLatin1Char('\n')), saved ? stdout : stderr);
    return saved ? 0 : 1;
}

// Times the widget drawing that every widget does once a second: painting a whole widget, and
// building a custom background (which, unlike the built-in ones, is not cached).
// Usage: bench_render [ITERATIONS]

#include "core/EVAppImage.h"
#include "render/EVTallyView.h"
#include "render/EVWidgetView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>

#include <cstdio>
#include <functional>

namespace {

void report(const char *what, int iterations, const std::function<void()> &call)
{
    call(); // the first call loads fonts and fills caches
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < iterations; ++i)
        call();
    const double microseconds = double(timer.nsecsElapsed()) / 1000.0 / iterations;
    std::printf("%-52s %9.1f us per call (%d calls)\n", what, microseconds, iterations);
}

QImage photo()
{
    QImage picture(1024, 768, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixel(x, y, qRgb(x % 256, y % 256, (x + y) % 256));
    return picture;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    const int iterations = argc > 1 ? QByteArray(argv[1]).toInt() : 2000;
    if (iterations <= 0) {
        std::fprintf(stderr, "usage: %s [ITERATIONS]\n", argv[0]);
        return 2;
    }

    const QSizeF size(300, 150);
    EVWidgetView view;
    view.resize(size.toSize());
    view.setIcon(EVAppImage::named(QStringLiteral("clock")));
    view.setTitle(QStringLiteral("Summer Holidays"));
    view.setDate(QStringLiteral("Saturday, July 12, 2025"));
    view.setMajorCountdown(QStringLiteral("42"));
    view.setSecondCountdown(QStringLiteral("Days Left"));
    QImage canvas(view.size(), QImage::Format_ARGB32_Premultiplied);

    auto paintWidget = [&] {
        canvas.fill(Qt::transparent);
        view.render(&canvas, QPoint(), QRegion(), QWidget::DrawChildren);
    };

    view.setBackground(EVBackgroundImage(EVTallyView::buildinBackgroundForStyle(9, size), 1.0));
    report("paint 300 x 150 widget, built-in style 9", iterations, paintWidget);
    view.setBackground(EVBackgroundImage(
        EVTallyView::createBackgroundFromColorOrImage(QColor(200, 40, 90), size), 0.6));
    report("paint 300 x 150 widget, colour style at 0.6", iterations, paintWidget);

    const QColor color(200, 40, 90);
    report("build 300 x 150 custom colour background", iterations,
           [&] { EVTallyView::createBackgroundFromColorOrImage(color, size); });
    const QImage picture = photo();
    report("build 300 x 150 custom picture background (1024 x 768)", iterations,
           [&] { EVTallyView::createBackgroundFromColorOrImage(picture, size); });
    report("fetch 300 x 150 built-in background (cached)", iterations,
           [&] { EVTallyView::buildinBackgroundForStyle(9, size); });
    return 0;
}

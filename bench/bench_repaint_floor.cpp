// bench_repaint_floor N UNIT [SECONDS]: what one desktop window per widget costs in Qt itself, with
// no countdown to compute and no text to draw. N frameless translucent 300 x 150 windows, like the
// widgets' windows; with UNIT "time" each second every window repaints the rectangle of a
// widget's two countdown lines with a plain fill, with "day" nothing is repainted. It runs until
// ended, or for SECONDS. Run it in the side-by-side comparison in place of the application:
//   ../shared/bench-anchors/compare.sh "build/bench/bench_repaint_floor {N} {UNIT}" 50
#include <QApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <vector>

namespace {

// Where a 300 x 150 widget with an icon draws its countdown lines, with the glyph margin.
const QRect countdownLines(67, 58, 199, 92);

class FloorWindow : public QWidget
{
public:
    FloorWindow()
        : QWidget(nullptr, Qt::FramelessWindowHint)
    {
        setAttribute(Qt::WA_TranslucentBackground);
        resize(300, 150);
    }

    void nextSecond()
    {
        m_shade = (m_shade + 1) % 2;
        update(countdownLines);
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QPainter painter(this);
        painter.fillRect(event->rect(), m_shade ? QColor(30, 30, 30, 200) : QColor(0, 0, 0, 200));
    }

private:
    int m_shade = 0;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    const int count = arguments.value(1).toInt();
    const bool repaint = arguments.value(2) != QLatin1String("day");
    std::vector<std::unique_ptr<FloorWindow>> windows;
    for (int index = 0; index < count; ++index) {
        auto window = std::make_unique<FloorWindow>();
        window->move(index % 4 * 310, index / 4 % 5 * 155);
        window->show();
        windows.push_back(std::move(window));
    }
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (repaint)
            for (const auto &window : windows)
                window->nextSecond();
    });
    timer.start(1000);
    if (const int seconds = arguments.value(3).toInt(); seconds > 0)
        QTimer::singleShot(seconds * 1000, &application, &QCoreApplication::quit);
    return application.exec();
}

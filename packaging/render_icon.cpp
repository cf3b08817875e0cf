// Build-time helper: renders the scalable application icon into the PNG sizes that icon themes
// look up, so that no rendered picture has to be kept in the repository.
//
//     tallyvane_render_icon ICON.svg SIZE OUTPUT.png [SIZE OUTPUT.png ...]
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QStringList>
#include <QSvgRenderer>

#include <cstdio>

namespace {

constexpr int usageExitCode = 2;
constexpr int failureExitCode = 1;
// Far above any size an icon theme asks for; keeps a typo from allocating gigabytes.
constexpr int largestSize = 4096;

void complain(const QString &text)
{
    std::fputs(qPrintable(QStringLiteral("render_icon: %1\n").arg(text)), stderr);
}

QImage render(QSvgRenderer &renderer, int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    renderer.render(&painter, QRectF(0, 0, size, size));
    painter.end();
    return image;
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    if (arguments.size() < 3 || arguments.size() % 2 == 0) {
        complain(
            QStringLiteral("usage: render_icon ICON.svg SIZE OUTPUT.png [SIZE OUTPUT.png ...]"));
        return usageExitCode;
    }

    QSvgRenderer renderer(arguments.first());
    if (!renderer.isValid()) {
        complain(QStringLiteral("%1 is not a readable SVG picture").arg(arguments.first()));
        return failureExitCode;
    }
    // A picture that is not square keeps its proportions, centred in the square.
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);

    for (qsizetype i = 1; i < arguments.size(); i += 2) {
        bool isNumber = false;
        const int size = arguments.at(i).toInt(&isNumber);
        if (!isNumber || size < 1 || size > largestSize) {
            complain(QStringLiteral("size '%1' is not a whole number from 1 to %2")
                         .arg(arguments.at(i))
                         .arg(largestSize));
            return usageExitCode;
        }
        const QString &output = arguments.at(i + 1);
        QImageWriter writer(output, "png");
        if (!writer.write(render(renderer, size))) {
            complain(QStringLiteral("cannot write %1: %2").arg(output, writer.errorString()));
            return failureExitCode;
        }
    }
    return 0;
}

// Renders every background style as a whole widget at two sizes into one PNG, to look at.
// Usage: contact_sheet OUTPUT.png

#include "core/EVAppImage.h"
#include "render/EVTallyView.h"
#include "render/EVWidgetView.h"
#include "store/EVCustomStyle.h"
#include "store/EVWidgetEntry.h"

#include <QApplication>
#include <QLinearGradient>
#include <QPainter>

#include <cstdio>
#include <functional>

namespace {

constexpr int columns = 4;
constexpr int margin = 20;
constexpr int captionHeight = 22;

struct Sample
{
    QString caption;
    std::function<EVBackgroundImage(const QSizeF &)> background;
};

// A small landscape, standing in for a photo the user picked.
QImage landscapePicture()
{
    QImage picture(240, 120, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&picture);
    QLinearGradient sky(0, 0, 0, 80);
    sky.setColorAt(0, QColor(40, 90, 170));
    sky.setColorAt(1, QColor(150, 190, 230));
    painter.fillRect(0, 0, 240, 80, sky);
    painter.fillRect(0, 80, 240, 40, QColor(50, 110, 50));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor(250, 210, 80));
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(QPointF(180, 40), 18, 18);
    return picture;
}

QList<Sample> samples()
{
    QList<Sample> list;
    for (int style = 0; style < EVTallyView::builtinStyleCount; ++style) {
        list.append({QStringLiteral("Style %1").arg(style), [style](const QSizeF &size) {
                         EVWidgetEntry entry;
                         entry.setStyleIndex(style);
                         return EVTallyView::backgroundImageForWidget(entry, size);
                     }});
    }
    list.append({QStringLiteral("Colour, opacity 0.6"), [](const QSizeF &size) {
                     // A colour style needs no picture file, so it can go through the record.
                     EVWidgetEntry entry;
                     EVCustomStyle style;
                     style.setColor(QColor(200, 40, 90));
                     style.setOpacity(0.6f);
                     entry.addCustomStylesObject(&style);
                     entry.setStyleIndex(EVTallyView::builtinStyleCount);
                     return EVTallyView::backgroundImageForWidget(entry, size);
                 }});
    list.append({QStringLiteral("Picture, opacity 1.0"), [](const QSizeF &size) {
                     return EVBackgroundImage(
                         EVTallyView::createBackgroundFromColorOrImage(landscapePicture(), size),
                         1.0);
                 }});
    return list;
}

void drawCheckerboard(QPainter &painter, const QRect &area)
{
    constexpr int square = 10;
    for (int y = area.top(); y < area.bottom(); y += square)
        for (int x = area.left(); x < area.right(); x += square)
            painter.fillRect(x, y, square, square,
                             ((x + y) / square) % 2 ? QColor(200, 200, 200)
                                                    : QColor(235, 235, 235));
}

// One section of the sheet: every sample as a widget of size, with the given countdown lines.
int drawSection(QPainter &painter, int top, const QSize &size, const QString &major,
                const QString &second)
{
    const QList<Sample> list = samples();
    const QImage icon = EVAppImage::named(QStringLiteral("clock"));
    for (int index = 0; index < list.size(); ++index) {
        const int x = margin + (index % columns) * (size.width() + margin);
        const int y = top + (index / columns) * (size.height() + captionHeight + margin);

        EVWidgetView view;
        view.resize(size);
        view.setIcon(icon);
        view.setTitle(QStringLiteral("Summer Holidays"));
        view.setDate(QStringLiteral("Saturday, July 12, 2025"));
        view.setMajorCountdown(major);
        view.setSecondCountdown(second);
        view.setBackground(list.at(index).background(QSizeF(size)));
        view.render(&painter, QPoint(x, y), QRegion(), QWidget::DrawChildren);

        painter.setPen(Qt::black);
        painter.drawText(QRect(x, y + size.height() + 2, size.width(), captionHeight),
                         Qt::AlignLeft | Qt::AlignVCenter,
                         QStringLiteral("%1, %2 x %3")
                             .arg(list.at(index).caption)
                             .arg(size.width())
                             .arg(size.height()));
    }
    const int rows = (int(list.size()) + columns - 1) / columns;
    return top + rows * (size.height() + captionHeight + margin);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUTPUT.png\n", argv[0]);
        return 2;
    }

    const QSize large(300, 150);
    const QSize small(200, 100);
    const int width = margin + columns * (large.width() + margin);
    const int height = margin + 4 * (large.height() + captionHeight + margin) +
                       4 * (small.height() + captionHeight + margin);
    QImage sheet(width, height, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&sheet);
    drawCheckerboard(painter, sheet.rect());
    // The built-in backgrounds are cached at the first size asked, as in the application: the
    // small widgets show the large pictures scaled down.
    const int next =
        drawSection(painter, margin, large, QStringLiteral("42"), QStringLiteral("Days Left"));
    drawSection(painter, next, small, QStringLiteral("12:30:05"), QStringLiteral("Seconds Left"));
    painter.end();

    if (!sheet.save(QString::fromLocal8Bit(argv[1]), "PNG")) {
        std::fprintf(stderr, "could not write %s\n", argv[1]);
        return 1;
    }
    return 0;
}

#include "app/EVSnapshot.h"

#include "core/EVError.h"
#include "engine/EVWidgetWindow.h"
#include "engine/EVWindowController.h"
#include "render/EVFontFamily.h"
#include "render/EVWidgetView.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVStoreFailures.h"

#include <QImageWriter>
#include <QLayout>
#include <QPainter>

#include <cmath>
#include <memory>

namespace EVSnapshot {
namespace {

constexpr int gap = 16;
const QColor ground(0x2b, 0x2e, 0x33);

// One widget drawn by its own controller and view, never shown.
QImage widgetPicture(EVWidgetEntry *entry)
{
    const std::unique_ptr<EVWindowController> controller(EVWindowController::windowController());
    controller->setWidgetData(entry);
    QWidget *window = controller->window();
    if (window->layout())
        window->layout()->activate();
    controller->reloadViews();
    QImage picture(window->size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    window->render(&picture, QPoint(), QRegion(), QWidget::DrawChildren);
    return picture;
}

QImage emptyPicture()
{
    QImage picture(QSize(320, 80), QImage::Format_ARGB32_Premultiplied);
    picture.fill(ground);
    QPainter painter(&picture);
    QFont font(EVFontFamily::forName(QStringLiteral("LucidaGrande")));
    font.setPixelSize(16);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(picture.rect(), Qt::AlignCenter, QStringLiteral("No widgets yet"));
    return picture;
}

} // namespace

QImage render(const QList<EVWidgetEntry *> &entries)
{
    if (entries.isEmpty())
        return emptyPicture();

    QList<QImage> pictures;
    for (EVWidgetEntry *entry : entries)
        pictures.append(widgetPicture(entry));
    const int columns = int(std::ceil(std::sqrt(double(pictures.size()))));

    // Rows as tall as their tallest widget, columns as wide as their widest.
    QList<int> columnWidths(columns, 0);
    QList<int> rowHeights((pictures.size() + columns - 1) / columns, 0);
    for (qsizetype i = 0; i < pictures.size(); ++i) {
        columnWidths[i % columns] = std::max(columnWidths[i % columns], pictures[i].width());
        rowHeights[i / columns] = std::max(rowHeights[i / columns], pictures[i].height());
    }
    int width = gap;
    for (int columnWidth : columnWidths)
        width += columnWidth + gap;
    int height = gap;
    for (int rowHeight : rowHeights)
        height += rowHeight + gap;

    QImage sheet(QSize(width, height), QImage::Format_ARGB32_Premultiplied);
    sheet.fill(ground);
    QPainter painter(&sheet);
    int y = gap;
    for (qsizetype row = 0; row < rowHeights.size(); ++row) {
        int x = gap;
        for (int column = 0; column < columns; ++column) {
            const qsizetype index = row * columns + column;
            if (index < pictures.size())
                painter.drawImage(QPoint(x, y), pictures.at(index));
            x += columnWidths.at(column) + gap;
        }
        y += rowHeights.at(row) + gap;
    }
    return sheet;
}

bool write(const QString &path, QString *message)
{
    EVCoreDataDelegate store;
    const EVStoreFailures failures(&store);
    const QList<EVWidgetEntry *> entries = store.fetchWidgetEntries();
    if (failures.any()) {
        *message = QStringLiteral("The widget store cannot be read: %1").arg(failures.first());
        return false;
    }
    QImageWriter writer(path, "png");
    if (!writer.write(render(entries))) {
        *message = QStringLiteral("%1: %2").arg(path, writer.errorString());
        return false;
    }
    *message = QStringLiteral("%1 widget(s) written to %2").arg(entries.size()).arg(path);
    return true;
}

} // namespace EVSnapshot

#include "prefs/EVWidgetListModel.h"

#include "engine/EVWidgetWindow.h"
#include "engine/EVWidgetsManager.h"
#include "engine/EVWindowController.h"
#include "render/EVWidgetView.h"
#include "render/EVWidgetWindowSnapshot.h"
#include "store/EVWidgetEntry.h"

#include <QEvent>

EVWidgetListModel::EVWidgetListModel(EVWidgetsManager *widgetsManager, QObject *parent)
    : QAbstractTableModel(parent)
    , m_widgetsManager(widgetsManager)
{}

QString EVWidgetListModel::columnIdentifier(int column)
{
    switch (column) {
    case PreviewColumn:
        return QStringLiteral("preview");
    case TitleColumn:
        return QStringLiteral("title");
    default:
        return QString();
    }
}

int EVWidgetListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_widgetsManager->widgetEntries().size());
}

int EVWidgetListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant EVWidgetListModel::data(const QModelIndex &index, int role) const
{
    const EVWidgetEntry *entry = entryAt(index.row());
    if (!entry)
        return QVariant();
    const QString identifier = columnIdentifier(index.column());
    if (identifier == QLatin1String("preview") && role == Qt::DecorationRole) {
        const EVWindowController *controller = m_widgetsManager->widgetWindowController(entry);
        m_takingSnapshot = true;
        const QImage snapshot = widgetWindowSnapshot(controller ? controller->window() : nullptr);
        m_takingSnapshot = false;
        return snapshot;
    }
    if (identifier == QLatin1String("title") &&
        (role == Qt::DisplayRole || role == Qt::ToolTipRole))
        return entry->eventTitle();
    if (role == Qt::AccessibleTextRole)
        return entry->eventTitle();
    return QVariant();
}

QVariant EVWidgetListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return columnIdentifier(section);
    return QAbstractTableModel::headerData(section, orientation, role);
}

EVWidgetEntry *EVWidgetListModel::entryAt(int row) const
{
    const QList<EVWidgetEntry *> entries = m_widgetsManager->widgetEntries();
    return row >= 0 && row < entries.size() ? entries.at(row) : nullptr;
}

int EVWidgetListModel::rowOfEntry(const EVWidgetEntry *entry) const
{
    return entry ? int(m_widgetsManager->widgetEntries().indexOf(entry)) : -1;
}

void EVWidgetListModel::reloadData()
{
    beginResetModel();
    endResetModel();
}

void EVWidgetListModel::previewsChanged()
{
    // A preview is a snapshot of the whole window, taken as its row is painted: taken again only
    // for a widget that looks different, not for every widget every second.
    const QList<EVWidgetEntry *> entries = m_widgetsManager->widgetEntries();
    for (int row = 0; row < entries.size(); ++row) {
        const EVWindowController *controller =
            m_widgetsManager->widgetWindowController(entries.at(row));
        if (!controller)
            continue;
        QWidget *view = controller->widgetView();
        watchView(view);
        const bool redrawn = m_redrawnViews.remove(view);
        if (redrawn || !view->isVisible())
            Q_EMIT dataChanged(index(row, PreviewColumn), index(row, PreviewColumn),
                               {Qt::DecorationRole});
    }
}

void EVWidgetListModel::watchView(QWidget *view)
{
    if (m_watchedViews.contains(view))
        return;
    m_watchedViews.insert(view);
    m_redrawnViews.insert(view);
    view->installEventFilter(this);
    connect(view, &QObject::destroyed, this, [this, view] {
        m_watchedViews.remove(view);
        m_redrawnViews.remove(view);
    });
}

bool EVWidgetListModel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint && !m_takingSnapshot)
        m_redrawnViews.insert(watched);
    return QAbstractTableModel::eventFilter(watched, event);
}

void EVWidgetListModel::entryChanged(const EVWidgetEntry *entry)
{
    const int row = rowOfEntry(entry);
    if (row >= 0)
        Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
}

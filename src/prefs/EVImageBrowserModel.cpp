#include "prefs/EVImageBrowserModel.h"

void EVImageBrowserModel::setItems(const QList<EVImageBrowserItem> &items)
{
    beginResetModel();
    m_items = items;
    endResetModel();
}

int EVImageBrowserModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_items.size());
}

QVariant EVImageBrowserModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_items.size())
        return QVariant();
    const EVImageBrowserItem &item = m_items.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return item.imageTitle();
    case Qt::DecorationRole:
        return item.image();
    case ImageUIDRole:
        return item.imageUID();
    case VersionRole:
        return item.version();
    default:
        return QVariant();
    }
}

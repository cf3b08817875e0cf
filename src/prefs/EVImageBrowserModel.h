#pragma once

#include "prefs/EVImageBrowserItem.h"

#include <QAbstractListModel>
#include <QList>

// The style browser's items, in order: the browser shows each item's picture over its title.
class EVImageBrowserModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role { ImageUIDRole = Qt::UserRole, VersionRole };

    using QAbstractListModel::QAbstractListModel;

    const QList<EVImageBrowserItem> &items() const { return m_items; }
    // Replaces every item; the browser reads them all again.
    void setItems(const QList<EVImageBrowserItem> &items);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    // The title as display text and accessible text, the picture as decoration, and the
    // identity and version under their own roles.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

private:
    QList<EVImageBrowserItem> m_items;
};

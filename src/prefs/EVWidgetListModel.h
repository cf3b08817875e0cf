#pragma once

#include <QAbstractTableModel>
#include <QSet>
#include <QString>

class EVWidgetEntry;
class EVWidgetsManager;

// The widget list of the preferences window: one row per widget entry of the manager, with a
// picture of the widget window as it looks now and the widget's title.
class EVWidgetListModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { PreviewColumn, TitleColumn, ColumnCount };

    // Every row is this high, in points.
    static constexpr int rowHeight = 68;

    explicit EVWidgetListModel(EVWidgetsManager *widgetsManager, QObject *parent = nullptr);

    // "preview", "title", or an empty string for any other column.
    static QString columnIdentifier(int column);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    // The preview column's decoration is the snapshot of the row's widget window, taken at
    // the moment it is asked for; the title column shows the entry's eventTitle.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    EVWidgetEntry *entryAt(int row) const;
    int rowOfEntry(const EVWidgetEntry *entry) const;

    // Reads the rows again from the manager.
    void reloadData();
    // The previews of the widgets drawn again since the last call, and of those not on screen
    // (whose drawing cannot be seen), are to be drawn again; the others are left as they are.
    void previewsChanged();
    // The entry's row is to be drawn again, as after its title changed.
    void entryChanged(const EVWidgetEntry *entry);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // Notes from now on when the view is drawn again; a view not watched before counts as drawn.
    void watchView(QWidget *view);

    EVWidgetsManager *m_widgetsManager;
    QSet<const QObject *> m_watchedViews;
    QSet<const QObject *> m_redrawnViews;
    // Set while the list takes a snapshot, whose drawing changes nothing.
    mutable bool m_takingSnapshot = false;
};

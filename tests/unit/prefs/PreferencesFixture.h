#pragma once

#include "NotificationTools.h"
#include "TestEnvironment.h"

#include "engine/EVWidgetsManager.h"
#include "prefs/EVPerferenceController.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <QTableView>
#include <QTest>

// One preferences window on its own store and manager, in its own HOME.
struct Preferences
{
    explicit Preferences(const QStringList &titles = {})
    {
        for (const QString &title : titles)
            manager.addNewWidgetEntry()->setEventTitle(title);
    }

    template <typename T>
    T *find(const char *name) const
    {
        T *found = controller.window()->findChild<T *>(QLatin1String(name));
        if (!found)
            qFatal("no control named %s", name);
        return found;
    }
    QTableView *table() const { return find<QTableView>("widgetTableView"); }
    int selectedRow() const
    {
        const QModelIndexList rows = table()->selectionModel()->selectedRows();
        return rows.isEmpty() ? -1 : rows.first().row();
    }
    void clickRow(int row) const
    {
        QTableView *view = table();
        const QRect cell = view->visualRect(view->model()->index(row, 1));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, cell.center());
    }
    QList<EVWidgetEntry *> entries() { return manager.widgetEntries(); }

    OffscreenWindowNotesFilter notes;
    TestHome home;
    EVCoreDataDelegate store;
    EVWidgetsManager manager{&store};
    mutable EVPerferenceController controller{&manager};
};

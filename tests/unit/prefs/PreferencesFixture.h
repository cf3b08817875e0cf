#pragma once

#include "NotificationTools.h"
#include "TestEnvironment.h"

#include "engine/EVWidgetsManager.h"
#include "prefs/EVPerferenceController.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVWidgetEntry.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

#include <functional>

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
    // The entries' revisions, in the list's order.
    QList<quint64> revisions()
    {
        QList<quint64> revisions;
        for (const EVWidgetEntry *entry : entries())
            revisions << entry->revision();
        return revisions;
    }
    // Looks at the first two widgets in turn, away to the General tab and back to tab, as
    // someone browsing them does; no value is touched.
    void browse(int tab) const
    {
        clickRow(1);
        clickRow(0);
        clickTab(0);
        clickTab(tab);
        clickRow(1);
    }
    // Brings a tab to the front with a click on its title.
    void clickTab(int index) const
    {
        QTabBar *bar = find<QTabWidget>("configTabView")->tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(index).center());
    }
    // Opens a pop-up list with a click and clicks the item at index in it.
    static void chooseItem(QComboBox *popUp, int index)
    {
        QTest::mouseClick(popUp, Qt::LeftButton);
        QAbstractItemView *list = popUp->view();
        if (!QTest::qWaitFor([list] { return list->isVisible(); }, 1000))
            qFatal("the list of %s did not open", qPrintable(popUp->objectName()));
        // As a hand does: away from where the list opened, so that the release is taken as
        // a choice rather than as the end of the opening click, then onto the item.
        QWidget *viewport = list->viewport();
        const QPoint opened = viewport->mapFromGlobal(popUp->mapToGlobal(popUp->rect().center()));
        const QRect area = viewport->rect();
        QTest::mouseMove(viewport, QPoint(opened.x() < area.center().x() ? area.right() - 1 : 1,
                                          opened.y() < area.center().y() ? area.bottom() - 1 : 1));
        const QRect item = list->visualRect(popUp->model()->index(index, popUp->modelColumn()));
        QTest::mouseMove(viewport, item.center());
        QTest::mouseClick(viewport, Qt::LeftButton, {}, item.center());
    }

    OffscreenWindowNotesFilter notes;
    TestHome home;
    EVCoreDataDelegate store;
    EVWidgetsManager manager{&store};
    mutable EVPerferenceController controller{&manager};
};

// The titles of a pop-up list's items, in order.
inline QStringList titlesOf(const QComboBox *popUp)
{
    QStringList titles;
    for (int i = 0; i < popUp->count(); ++i)
        titles << popUp->itemText(i);
    return titles;
}

// Milliseconds until the condition held, checked as often as events allow; -1 when it did not
// hold within the timeout.
inline qint64 millisecondsUntil(const std::function<bool()> &condition, int timeout = 3000)
{
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > timeout)
            return -1;
        QTest::qWait(10);
    }
    return clock.elapsed();
}

// What the widgets manager's one-second pass may take to show an edit: a second, and a little
// more for a busy machine.
inline constexpr qint64 onePassMilliseconds = 1000 + 250;

#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

namespace Ui {
class PreferencesPanel;
}
class EVAdvancedTab;
class EVCustomStylePanel;
class EVGeneralTab;
class EVNoteTab;
class EVPerferenceToolBarActionDelegate;
class EVWidgetEntry;
class EVWidgetListModel;
class EVWidgetsManager;
class QWidget;

// The preferences window: the widget list with its add and remove buttons on the left, the
// tabs that edit the selected widget on the right (or a first-use tip while there is no
// widget), and a toolbar whose switches and feedback button go to the toolbar action delegate.
// Every control of the interface file "PreferencesPanel" carries its outlet's name.
class EVPerferenceController : public QObject
{
    Q_OBJECT

public:
    static inline const QString windowNibName = QStringLiteral("PreferencesPanel");
    // How long after an add the list is read again, so that the new window has been drawn.
    static constexpr int delayedReloadMilliseconds = 100;
    // How often a window on screen looks for previews to take again.
    static constexpr int previewRefreshMilliseconds = 1000;

    // Edits the widgets of widgetsManager, or of the shared manager when none is given.
    explicit EVPerferenceController(EVWidgetsManager *widgetsManager = nullptr,
                                    QObject *parent = nullptr);
    ~EVPerferenceController() override;

    // The window, loaded from the interface file and set up on first use.
    QWidget *window();
    bool isWindowLoaded() const { return bool(m_window); }
    // Loads the window if need be, and brings it to the front.
    void showWindow();
    // The window's controls; the window must have been loaded.
    Ui::PreferencesPanel &ui() const { return *m_ui; }

    EVPerferenceToolBarActionDelegate *toolbarActionDelegate() const
    {
        return m_toolbarActionDelegate;
    }
    // Not owned; none means the toolbar reports to nobody.
    void setToolbarActionDelegate(EVPerferenceToolBarActionDelegate *delegate)
    {
        m_toolbarActionDelegate = delegate;
    }

    EVWidgetsManager *widgetsManager() const;
    EVWidgetListModel *widgetListModel() const { return m_widgetList; }
    EVGeneralTab *generalTab() const { return m_general.get(); }
    EVAdvancedTab *advancedTab() const { return m_advanced.get(); }
    EVNoteTab *noteTab() const { return m_note.get(); }
    // The entry of the list's selected row; none without a selection.
    EVWidgetEntry *selectedWidgetEntry() const;

public Q_SLOTS:
    // Selects the widget with that uuid; an unknown uuid selects the last row.
    void selectWidgetItemWithUUID(const QString &uuid);
    // Reads the list again now, or 0.1 s from now.
    void reloadTableViewDataWithDelay(bool delay);
    // The tip while there is no widget, the tabs otherwise, faded.
    void updateRightViewsState();
    // The toolbar switches as the application settings have them.
    void updateToolbarViewState();

private Q_SLOTS:
    void onAddWidget();
    void onRemoveWidget();
    void onOpenAtLogin();
    void onShowStatusBarIcon();
    void onFeedback();
    void onEVNotificationWidgetDidDisplayed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void windowDidLoad();
    void setupNotification();
    void setupWidgetList();
    void setupToolbar();
    void reloadTableViewData();
    void updateSelectionDependentControls();
    void tableViewSelectionDidChange();
    void tabViewDidSelectTabViewItem(int index);
    void windowWillClose();
    int selectedRow() const;
    void selectRow(int row);

    EVWidgetsManager *m_widgetsManager;
    EVPerferenceToolBarActionDelegate *m_toolbarActionDelegate = nullptr;
    std::unique_ptr<Ui::PreferencesPanel> m_ui;
    std::unique_ptr<QWidget> m_window;
    EVWidgetListModel *m_widgetList = nullptr;
    std::unique_ptr<EVGeneralTab> m_general;
    std::unique_ptr<EVAdvancedTab> m_advanced;
    std::unique_ptr<EVNoteTab> m_note;
    std::unique_ptr<EVCustomStylePanel> m_customStylePanel;
    QTimer m_previewRefresh;
    // Set while a reload puts the selection back on the entry it was on.
    bool m_restoringSelection = false;
};

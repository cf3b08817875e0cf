#include "prefs/EVPerferenceController.h"

#include "ui_PreferencesPanel.h"

#include "controls/EVSegmentedControl.h"
#include "core/EVAppSetting.h"
#include "core/EVUserDefaults.h"
#include "engine/EVWidgetsManager.h"
#include "platform/EVNotificationBus.h"
#include "prefs/EVAdvancedTab.h"
#include "prefs/EVCustomStylePanel.h"
#include "prefs/EVGeneralTab.h"
#include "prefs/EVNoteTab.h"
#include "prefs/EVPerferenceToolBarActionDelegate.h"
#include "prefs/EVViewAnimator.h"
#include "prefs/EVWidgetListDelegate.h"
#include "prefs/EVWidgetListModel.h"
#include "prefs/Rate.h"
#include "store/EVWidgetEntry.h"

#include <QEvent>
#include <QHeaderView>
#include <QShortcut>

EVPerferenceController::EVPerferenceController(EVWidgetsManager *widgetsManager, QObject *parent)
    : QObject(parent)
    , m_widgetsManager(widgetsManager)
{}

EVPerferenceController::~EVPerferenceController()
{
    if (!m_window)
        return;
    // Taking the window down changes tabs and selections that nobody is to act on any more.
    m_window->removeEventFilter(this);
    disconnect(m_ui->configTabView, nullptr, this, nullptr);
    disconnect(m_ui->widgetTableView->selectionModel(), nullptr, this, nullptr);
}

EVWidgetsManager *EVPerferenceController::widgetsManager() const
{
    return m_widgetsManager ? m_widgetsManager : EVWidgetsManager::shareWidgetsMananger();
}

QWidget *EVPerferenceController::window()
{
    if (!m_window) {
        m_window = std::make_unique<QWidget>();
        m_ui = std::make_unique<Ui::PreferencesPanel>();
        m_ui->setupUi(m_window.get());
        windowDidLoad();
    }
    return m_window.get();
}

void EVPerferenceController::showWindow()
{
    QWidget *shown = window();
    shown->show();
    shown->raise();
    shown->activateWindow();
}

void EVPerferenceController::windowDidLoad()
{
    setupWidgetList();
    setupToolbar();
    setupNotification();
    m_general = std::make_unique<EVGeneralTab>(this);
    m_general->setupGeneral();
    m_advanced = std::make_unique<EVAdvancedTab>(this);
    m_advanced->setupAdvanced();
    m_note = std::make_unique<EVNoteTab>(this);
    m_note->setupNote();
    m_customStylePanel = std::make_unique<EVCustomStylePanel>(this);
    m_customStylePanel->setup();
    updateSelectionDependentControls();
    updateRightViewsState();
    updateToolbarViewState();
    if (EVUserDefaults::integerForKey(EVUserDefaults::appLaunchTimesKey) >= Rate::launchThreshold) {
        // Asked once the window is on screen, so that the question can be a sheet on it.
        QMetaObject::invokeMethod(
            this, [this] { Rate::shareRate()->showRateAlert(m_window.get()); },
            Qt::QueuedConnection);
    }
}

void EVPerferenceController::setupNotification()
{
    connect(EVNotificationBus::defaultCenter(), &EVNotificationBus::notificationPosted, this,
            [this](const QString &name) {
                if (name == EVNotificationWidgetDidDisplayed)
                    onEVNotificationWidgetDidDisplayed();
            });
    m_window->installEventFilter(this);
}

void EVPerferenceController::setupWidgetList()
{
    QTableView *table = m_ui->widgetTableView;
    m_widgetList = new EVWidgetListModel(widgetsManager(), this);
    table->setModel(m_widgetList);
    table->setItemDelegate(new EVWidgetListDelegate(table));
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(EVWidgetListModel::rowHeight);
    table->horizontalHeader()->setSectionResizeMode(EVWidgetListModel::PreviewColumn,
                                                    QHeaderView::Fixed);
    table->horizontalHeader()->resizeSection(EVWidgetListModel::PreviewColumn,
                                             2 * EVWidgetListModel::rowHeight);
    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &EVPerferenceController::tableViewSelectionDidChange);
    connect(m_ui->configTabView, &QTabWidget::currentChanged, this,
            &EVPerferenceController::tabViewDidSelectTabViewItem);
    connect(m_ui->addWidgetButton, &QToolButton::clicked, this,
            &EVPerferenceController::onAddWidget);
    connect(m_ui->removeWidgetButton, &QToolButton::clicked, this,
            &EVPerferenceController::onRemoveWidget);
    auto *remove = new QShortcut(QKeySequence::Delete, table, nullptr, nullptr, Qt::WidgetShortcut);
    connect(remove, &QShortcut::activated, this, &EVPerferenceController::onRemoveWidget);

    // Widgets may change every second: as often, while the window is on screen, the list shows
    // again those that were drawn again.
    m_previewRefresh.setInterval(previewRefreshMilliseconds);
    connect(&m_previewRefresh, &QTimer::timeout, this, [this] {
        if (m_window->isVisible())
            m_widgetList->previewsChanged();
    });
    m_previewRefresh.start();
}

void EVPerferenceController::setupToolbar()
{
    connect(m_ui->openAtLoginSeg, &EVSegmentedControl::activated, this,
            &EVPerferenceController::onOpenAtLogin);
    connect(m_ui->showStatusBarIconSeg, &EVSegmentedControl::activated, this,
            &EVPerferenceController::onShowStatusBarIcon);
    connect(m_ui->feedbackButton, &QPushButton::clicked, this, &EVPerferenceController::onFeedback);
}

EVWidgetEntry *EVPerferenceController::selectedWidgetEntry() const
{
    return m_widgetList ? m_widgetList->entryAt(selectedRow()) : nullptr;
}

int EVPerferenceController::selectedRow() const
{
    if (!m_ui)
        return -1;
    const QModelIndexList rows = m_ui->widgetTableView->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void EVPerferenceController::selectRow(int row)
{
    QItemSelectionModel *selection = m_ui->widgetTableView->selectionModel();
    if (row < 0 || row >= m_widgetList->rowCount()) {
        selection->clear();
        return;
    }
    const QModelIndex index = m_widgetList->index(row, EVWidgetListModel::TitleColumn);
    selection->setCurrentIndex(index,
                               QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_ui->widgetTableView->scrollTo(index);
}

void EVPerferenceController::updateSelectionDependentControls()
{
    // Without a selected widget there is nothing to remove, and nothing for the tabs to edit.
    const bool selected = selectedRow() >= 0;
    m_ui->removeWidgetButton->setEnabled(selected);
    for (int tab = 0; tab < m_ui->configTabView->count(); ++tab)
        m_ui->configTabView->widget(tab)->setEnabled(selected);
}

void EVPerferenceController::tableViewSelectionDidChange()
{
    updateSelectionDependentControls();
    if (m_restoringSelection)
        return;
    tabViewDidSelectTabViewItem(m_ui->configTabView->currentIndex());
}

void EVPerferenceController::tabViewDidSelectTabViewItem(int index)
{
    // Each tab shows the selected widget's values when it comes to the front.
    switch (index) {
    case 0:
        m_general->updateGeneralViews();
        break;
    case 1:
        m_advanced->updateAdvancedViews();
        break;
    case 2:
        m_note->updateNoteViews();
        break;
    default:
        break;
    }
}

void EVPerferenceController::selectWidgetItemWithUUID(const QString &uuid)
{
    if (!m_ui)
        window();
    const QList<EVWidgetEntry *> entries = widgetsManager()->widgetEntries();
    if (entries.isEmpty())
        return;
    // Without a match the counter ends on the last row, which is then selected.
    int row = -1;
    for (const EVWidgetEntry *entry : entries) {
        ++row;
        if (entry->uuid() == uuid)
            break;
    }
    selectRow(row);
}

void EVPerferenceController::reloadTableViewDataWithDelay(bool delay)
{
    if (!m_ui)
        return;
    if (delay)
        QTimer::singleShot(delayedReloadMilliseconds, this,
                           &EVPerferenceController::reloadTableViewData);
    else
        reloadTableViewData();
}

void EVPerferenceController::reloadTableViewData()
{
    // Reading the rows again keeps the selection on the widget it was on.
    EVWidgetEntry *selected = selectedWidgetEntry();
    m_widgetList->reloadData();
    const int row = m_widgetList->rowOfEntry(selected);
    m_restoringSelection = true;
    selectRow(row);
    m_restoringSelection = false;
    if (selected && row < 0)
        tableViewSelectionDidChange();
}

void EVPerferenceController::updateRightViewsState()
{
    if (!m_ui)
        return;
    const bool hasWidgets = !widgetsManager()->widgetEntries().isEmpty();
    EVViewAnimator::setHidden(m_ui->firstRemindTip, hasWidgets);
    EVViewAnimator::setHidden(m_ui->configTabView, !hasWidgets);
}

void EVPerferenceController::updateToolbarViewState()
{
    if (!m_ui)
        return;
    const EVAppSetting *setting = EVAppSetting::shareAppSetting();
    m_ui->openAtLoginSeg->setSelectedSegment(setting->openAtLogin() ? 0 : 1);
    m_ui->showStatusBarIconSeg->setSelectedSegment(setting->showStatusBarIcon() ? 0 : 1);
}

void EVPerferenceController::onAddWidget()
{
    EVWidgetsManager *manager = widgetsManager();
    if (EVWidgetEntry *entry = manager->addNewWidgetEntry())
        manager->refreshWidgetController(entry->uuid());
    reloadTableViewDataWithDelay(true);
    updateRightViewsState();
}

void EVPerferenceController::onRemoveWidget()
{
    const int row = selectedRow();
    if (row < 0)
        return;
    // The row's entry goes away: nothing stays selected in its place.
    m_ui->widgetTableView->selectionModel()->clear();
    widgetsManager()->removeWidgetAtIndex(row);
    reloadTableViewDataWithDelay(false);
    updateRightViewsState();
    if (row >= 1)
        selectRow(row - 1);
}

void EVPerferenceController::onOpenAtLogin()
{
    if (m_toolbarActionDelegate)
        m_toolbarActionDelegate->perferenceToolBarOpenAtLoginStateDidChanged(m_ui->openAtLoginSeg);
}

void EVPerferenceController::onShowStatusBarIcon()
{
    if (m_toolbarActionDelegate)
        m_toolbarActionDelegate->perferenceToolBarStatusBarIconStateDidChanged(
            m_ui->showStatusBarIconSeg);
}

void EVPerferenceController::onFeedback()
{
    if (m_toolbarActionDelegate)
        m_toolbarActionDelegate->perferenceToolBarFeedbackClicked(m_ui->feedbackButton);
}

void EVPerferenceController::onEVNotificationWidgetDidDisplayed()
{
    reloadTableViewDataWithDelay(false);
}

bool EVPerferenceController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window.get() && event->type() == QEvent::Close)
        windowWillClose();
    return QObject::eventFilter(watched, event);
}

void EVPerferenceController::windowWillClose()
{
    widgetsManager()->save();
}

#include "prefs/EVAdvancedTab.h"

#include "ui_PreferencesPanel.h"

#include "controls/EVColorWell.h"
#include "controls/OnOffSwitchControl.h"
#include "prefs/EVPerferenceController.h"
#include "store/EVWidgetEntry.h"

#include <QComboBox>
#include <QScopedValueRollback>
#include <QTimeZone>

namespace {

// Where a date-format item keeps its tag.
constexpr int tagRole = Qt::UserRole;

constexpr int tagCount = 6;
// The with-time list is split into its two halves after this tag.
constexpr int lastTagBeforeSeparator = 2;

// Appends an item as a pop-up button does: an item already listed under the same title goes
// first, so a title is never listed twice.
void addItemWithTitle(QComboBox *popUp, const QString &title, int tag)
{
    const int earlier = popUp->findText(title, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (earlier >= 0)
        popUp->removeItem(earlier);
    popUp->addItem(title, tag);
}

void fillWithTitles(QComboBox *popUp, const QStringList &titles)
{
    popUp->clear();
    popUp->addItems(titles);
}

} // namespace

QStringList EVAdvancedTab::countUnitTitles()
{
    return {QStringLiteral("Time"), QStringLiteral("Day"), QStringLiteral("Week"),
            QStringLiteral("Month"), QStringLiteral("Year")};
}

QStringList EVAdvancedTab::ignoredDayTitles()
{
    return {QStringLiteral("None"), QStringLiteral("Weekend"), QStringLiteral("Weekday")};
}

QStringList EVAdvancedTab::keepTopTitles()
{
    return {QStringLiteral("Never"), QStringLiteral("Always"), QStringLiteral("When active")};
}

QDateTime EVAdvancedTab::dateFormatSample()
{
    return QDateTime(QDate(1986, 10, 6), QTime(10, 5, 6), QTimeZone::utc());
}

EVDateText::DateFormat EVAdvancedTab::dateFormatOfItem(int tag, bool timeElement)
{
    if (tag == 3 && timeElement)
        return {QStringLiteral("yyyy-MM-dd hh:mm:ss a"),
                EVDateText::DateFormatKind::UnicodePattern};
    return EVDateText::widgetDateFormat(tag, timeElement);
}

EVAdvancedTab::EVAdvancedTab(EVPerferenceController *controller)
    : m_controller(controller)
{}

void EVAdvancedTab::setupAdvanced()
{
    Ui::PreferencesPanel &ui = m_controller->ui();
    fillWithTitles(ui.advanced_countUnit, countUnitTitles());
    fillWithTitles(ui.advanced_ignore, ignoredDayTitles());
    fillWithTitles(ui.advanced_keeptop, keepTopTitles());
    // Only what the user picks: showing a widget's values is not a change of them.
    connect(ui.advanced_format, &QComboBox::activated, this,
            &EVAdvancedTab::onCountdownDateFormatChanged);
    connect(ui.advanced_countUnit, &QComboBox::activated, this,
            &EVAdvancedTab::onCountdownUnitChanged);
    connect(ui.advanced_ignore, &QComboBox::activated, this,
            &EVAdvancedTab::onCountdownIgoredDaysChanged);
    connect(ui.advanced_color, &EVColorWell::colorActivated, this,
            &EVAdvancedTab::onCountdownTextColorChanged);
    connect(ui.advanced_keeptop, &QComboBox::activated, this,
            &EVAdvancedTab::onCountdownKeepTopChanged);
    // The arrow keys move the switch without its action; the widget follows the switch
    // whatever moved it, so the state is read at every change.
    connect(ui.advanced_lockWidget, &OnOffSwitchControl::stateChanged, this,
            &EVAdvancedTab::onLockWidgetOnDesktop);
    updateAdvancedViews();
}

void EVAdvancedTab::updateAdvancedViews()
{
    const EVWidgetEntry *entry = m_controller->selectedWidgetEntry();
    if (!entry)
        return;
    const QScopedValueRollback updating(m_updatingViews, true);
    Ui::PreferencesPanel &ui = m_controller->ui();
    setupDateFormatsList(*entry);
    // A tag the list lacks (0 to 2 without the time of day) leaves the list without selection.
    ui.advanced_format->setCurrentIndex(ui.advanced_format->findData(entry->dateformat(), tagRole));
    ui.advanced_ignore->setCurrentIndex(entry->ignoredDayType());
    ui.advanced_countUnit->setCurrentIndex(entry->countdownUnit());
    ui.advanced_color->setColor(entry->textcolor());
    ui.advanced_keeptop->setCurrentIndex(entry->keepTop());
    ui.advanced_lockWidget->setState(entry->lockWidget() ? OnOffSwitchControlCell::OnState
                                                         : OnOffSwitchControlCell::OffState);
}

void EVAdvancedTab::setupDateFormatsList(const EVWidgetEntry &entry)
{
    QComboBox *format = m_controller->ui().advanced_format;
    const bool timeElement = entry.timeElement();
    const QDateTime sample = dateFormatSample();
    format->clear();
    for (int tag = 0; tag < tagCount; ++tag) {
        addItemWithTitle(format, EVDateText::renderDate(sample, dateFormatOfItem(tag, timeElement)),
                         tag);
        if (timeElement && tag == lastTagBeforeSeparator)
            format->insertSeparator(format->count());
    }
}

void EVAdvancedTab::onCountdownDateFormatChanged()
{
    const QComboBox *format = m_controller->ui().advanced_format;
    if (format->currentIndex() < 0)
        return;
    if (EVWidgetEntry *entry = m_controller->selectedWidgetEntry())
        entry->setDateformat(format->currentData(tagRole).toInt());
}

void EVAdvancedTab::onCountdownUnitChanged()
{
    if (EVWidgetEntry *entry = m_controller->selectedWidgetEntry())
        entry->setCountdownUnit(m_controller->ui().advanced_countUnit->currentIndex());
}

void EVAdvancedTab::onCountdownIgoredDaysChanged()
{
    if (EVWidgetEntry *entry = m_controller->selectedWidgetEntry())
        entry->setIgnoredDayType(m_controller->ui().advanced_ignore->currentIndex());
}

void EVAdvancedTab::onCountdownTextColorChanged()
{
    if (EVWidgetEntry *entry = m_controller->selectedWidgetEntry())
        entry->setTextcolor(m_controller->ui().advanced_color->color());
}

void EVAdvancedTab::onCountdownKeepTopChanged()
{
    if (EVWidgetEntry *entry = m_controller->selectedWidgetEntry())
        entry->setKeepTop(m_controller->ui().advanced_keeptop->currentIndex());
}

void EVAdvancedTab::onLockWidgetOnDesktop()
{
    if (m_updatingViews)
        return;
    if (EVWidgetEntry *entry = m_controller->selectedWidgetEntry())
        entry->setLockWidget(m_controller->ui().advanced_lockWidget->state() ==
                             OnOffSwitchControlCell::OnState);
}

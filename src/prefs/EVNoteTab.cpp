#include "prefs/EVNoteTab.h"

#include "ui_PreferencesPanel.h"

#include "controls/OnOffSwitchControl.h"
#include "prefs/EVPerferenceController.h"
#include "store/EVWidgetEntry.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScopedValueRollback>

#include <algorithm>

#include <limits>

QStringList EVNoteTab::priorityTitles()
{
    return {QStringLiteral("None"), QStringLiteral("Low"), QStringLiteral("Medium"),
            QStringLiteral("High")};
}

QStringList EVNoteTab::intervalUnitTitles()
{
    return {QStringLiteral("Seconds"), QStringLiteral("Minutes"), QStringLiteral("Hours"),
            QStringLiteral("Days"), QStringLiteral("Weeks")};
}

int EVNoteTab::integerValueOfText(const QString &text)
{
    qsizetype at = 0;
    while (at < text.size() && text.at(at).isSpace())
        ++at;
    bool negative = false;
    if (at < text.size() && (text.at(at) == QLatin1Char('-') || text.at(at) == QLatin1Char('+'))) {
        negative = text.at(at) == QLatin1Char('-');
        ++at;
    }
    // One past the largest magnitude is enough to know that the value stops at an end.
    constexpr qint64 beyond = qint64(std::numeric_limits<int>::max()) + 2;
    qint64 magnitude = 0;
    for (; at < text.size() && text.at(at) >= QLatin1Char('0') && text.at(at) <= QLatin1Char('9');
         ++at)
        magnitude = std::min(beyond, magnitude * 10 + (text.at(at).unicode() - u'0'));
    const qint64 value = negative ? -magnitude : magnitude;
    return int(std::clamp<qint64>(value, std::numeric_limits<int>::min(),
                                  std::numeric_limits<int>::max()));
}

EVNoteTab::EVNoteTab(EVPerferenceController *controller)
    : m_controller(controller)
{}

void EVNoteTab::setupNote()
{
    Ui::PreferencesPanel &ui = m_controller->ui();
    ui.note_priority->clear();
    ui.note_priority->addItems(priorityTitles());
    ui.note_intervalUnit->clear();
    ui.note_intervalUnit->addItems(intervalUnitTitles());
    // Only what the user picks and types: showing a widget's values is not a change of them.
    connect(ui.note_priority, &QComboBox::activated, this, &EVNoteTab::onPriorityChanged);
    connect(ui.note_intervalUnit, &QComboBox::activated, this, &EVNoteTab::onRemindTimeUnitChanged);
    // The arrow keys move the switch without its action; the reminder follows the switch
    // whatever moved it, so the state is read at every change.
    connect(ui.note_remind, &OnOffSwitchControl::stateChanged, this,
            &EVNoteTab::onRemindMeStateChanged);
    updateNoteViews();
    connect(ui.note_interval, &QLineEdit::textEdited, this,
            &EVNoteTab::onNoteRemindIntervalTextChanged);
    connect(ui.note_textNote, &QPlainTextEdit::textChanged, this,
            &EVNoteTab::onNSTextDidChangeNotification);
}

void EVNoteTab::updateNoteViews()
{
    const EVWidgetEntry *entry = m_controller->selectedWidgetEntry();
    if (!entry)
        return;
    const QScopedValueRollback updating(m_updatingViews, true);
    Ui::PreferencesPanel &ui = m_controller->ui();
    const bool soundAlert = entry->soundAlert();
    ui.note_priority->setCurrentIndex(entry->priority());
    ui.note_remind->setState(soundAlert ? OnOffSwitchControlCell::OnState
                                        : OnOffSwitchControlCell::OffState);
    ui.note_interval->setText(QString::number(entry->intervalBeforeAlert()));
    ui.note_intervalUnit->setCurrentIndex(entry->intervalAlertUnit());
    ui.note_interval->setEnabled(soundAlert);
    ui.note_intervalUnit->setEnabled(soundAlert);
    ui.noteBeforeLabel->setEnabled(soundAlert);
    ui.note_textNote->setPlainText(entry->note());
}

void EVNoteTab::onPriorityChanged()
{
    if (EVWidgetEntry *entry = m_controller->selectedWidgetEntry())
        entry->setPriority(m_controller->ui().note_priority->currentIndex());
}

void EVNoteTab::onRemindMeStateChanged()
{
    if (m_updatingViews)
        return;
    if (EVWidgetEntry *entry = m_controller->selectedWidgetEntry())
        entry->setSoundAlert(m_controller->ui().note_remind->state() ==
                             OnOffSwitchControlCell::OnState);
    updateNoteViews();
}

void EVNoteTab::onRemindTimeUnitChanged()
{
    if (EVWidgetEntry *entry = m_controller->selectedWidgetEntry())
        entry->setIntervalAlertUnit(m_controller->ui().note_intervalUnit->currentIndex());
}

void EVNoteTab::onNoteRemindIntervalTextChanged(const QString &text)
{
    if (EVWidgetEntry *entry = m_controller->selectedWidgetEntry())
        entry->setIntervalBeforeAlert(integerValueOfText(text));
}

void EVNoteTab::onNSTextDidChangeNotification()
{
    if (m_updatingViews)
        return;
    // The text of an emptied note is empty, never none.
    if (EVWidgetEntry *entry = m_controller->selectedWidgetEntry())
        entry->setNote(m_controller->ui().note_textNote->toPlainText());
}

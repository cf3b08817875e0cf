#include "prefs/EVGeneralTab.h"

#include "ui_PreferencesPanel.h"

#include "controls/LUMDatePicker.h"
#include "core/EVImageData.h"
#include "prefs/EVIconImageView.h"
#include "prefs/EVPerferenceController.h"
#include "prefs/EVWidgetListModel.h"
#include "store/EVWidgetEntry.h"

EVGeneralTab::EVGeneralTab(EVPerferenceController *controller)
    : m_controller(controller)
{}

void EVGeneralTab::setupGeneral()
{
    Ui::PreferencesPanel &ui = m_controller->ui();
    connect(ui.general_icon, &EVIconImageView::imageChanged, this,
            &EVGeneralTab::onIconImageChanged);
    connect(ui.general_timeElement, &QCheckBox::clicked, this,
            &EVGeneralTab::onTimeElementStateChanged);
    connect(ui.general_date, &LUMDatePicker::activated, this, &EVGeneralTab::onEventDateChanged);
    updateGeneralViews();
    // Only what the user types: showing a widget's title is not a change of it.
    connect(ui.general_title, &QLineEdit::textEdited, this,
            &EVGeneralTab::onEventTitleTextDidChangeNotification);
}

void EVGeneralTab::updateGeneralViews()
{
    EVWidgetEntry *entry = m_controller->selectedWidgetEntry();
    if (!entry)
        return;
    Ui::PreferencesPanel &ui = m_controller->ui();
    const bool timeElement = entry->timeElement();
    ui.general_title->setText(entry->eventTitle());
    ui.general_date->setDateValue(entry->eventDate());
    ui.general_timeElement->setChecked(timeElement);
    ui.general_date->setDatePickerElements(timeElement ? dateAndTimeElements : dateElements);
    // Shown, not changed: passing the picture on would only write the same icon again.
    const QByteArray icon = entry->iconfileData();
    ui.general_icon->showImage(icon.isNull() ? QImage() : QImage::fromData(icon));
}

void EVGeneralTab::onEventTitleTextDidChangeNotification()
{
    EVWidgetEntry *entry = m_controller->selectedWidgetEntry();
    if (!entry)
        return;
    entry->setEventTitle(m_controller->ui().general_title->text());
    m_controller->widgetListModel()->entryChanged(entry);
}

void EVGeneralTab::onIconImageChanged(const QImage &image)
{
    if (EVWidgetEntry *entry = m_controller->selectedWidgetEntry())
        entry->setIconfileData(EVImageData::tiffRepresentation(image));
}

void EVGeneralTab::onTimeElementStateChanged()
{
    Ui::PreferencesPanel &ui = m_controller->ui();
    const bool timeElement = ui.general_timeElement->isChecked();
    if (EVWidgetEntry *entry = m_controller->selectedWidgetEntry())
        entry->setTimeElement(timeElement);
    ui.general_date->setDatePickerElements(timeElement ? dateAndTimeElements : dateElements);
}

void EVGeneralTab::onEventDateChanged()
{
    if (EVWidgetEntry *entry = m_controller->selectedWidgetEntry())
        entry->setEventDate(m_controller->ui().general_date->dateValue());
}

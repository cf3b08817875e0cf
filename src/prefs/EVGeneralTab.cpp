#include "prefs/EVGeneralTab.h"

#include "ui_PreferencesPanel.h"

#include "controls/LUMDatePicker.h"
#include "core/EVImageData.h"
#include "engine/EVWidgetsManager.h"
#include "prefs/EVIconImageView.h"
#include "prefs/EVImageBrowserModel.h"
#include "prefs/EVPerferenceController.h"
#include "prefs/EVWidgetListModel.h"
#include "prefs/ImageBrowserBackgroundLayer.h"
#include "prefs/ImageBrowserView.h"
#include "render/EVTallyView.h"
#include "store/EVCustomStyle.h"
#include "store/EVWidgetEntry.h"

#include <QLoggingCategory>
#include <QRandomGenerator>

Q_LOGGING_CATEGORY(lcPreferences, "tallyvane.preferences")

EVGeneralTab::EVGeneralTab(EVPerferenceController *controller)
    : m_controller(controller)
    , m_styleData(new EVImageBrowserModel(this))
{}

const QList<EVImageBrowserItem> &EVGeneralTab::styleData() const
{
    return m_styleData->items();
}

void EVGeneralTab::setupStylePreview()
{
    ImageBrowserView *browser = m_controller->ui().general_styles;
    auto *background = new ImageBrowserBackgroundLayer;
    background->setOwner(browser);
    browser->setBackgroundLayer(background);
}

void EVGeneralTab::setupGeneral()
{
    Ui::PreferencesPanel &ui = m_controller->ui();
    setupStylePreview();
    ui.general_styles->setModel(m_styleData);
    connect(ui.general_styles, &ImageBrowserView::removeItemsRequested, this,
            &EVGeneralTab::imageBrowserRemoveItemsAtIndexes);
    connect(ui.general_styles, &ImageBrowserView::selectionDidChange, this,
            &EVGeneralTab::imageBrowserSelectionDidChange);
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
    construcStypePreviewData(entry);
    ui.general_title->setText(entry->eventTitle());
    ui.general_date->setDateValue(entry->eventDate());
    ui.general_timeElement->setChecked(timeElement);
    ui.general_date->setDatePickerElements(timeElement ? dateAndTimeElements : dateElements);
    // Shown, not changed: passing the picture on would only write the same icon again.
    const QByteArray icon = entry->iconfileData();
    ui.general_icon->showImage(icon.isNull() ? QImage() : QImage::fromData(icon));
    selectStyleIndex(ui.general_styles, qint32(entry->styleIndex()));
}

void EVGeneralTab::construcStypePreviewData(EVWidgetEntry *entry)
{
    const QSizeF thumbnail = ImageBrowserView::thumbnailSize;
    QList<EVImageBrowserItem> items;
    for (int style = 0; style < EVTallyView::builtinStyleCount; ++style)
        items.append(EVImageBrowserItem(QStringLiteral("Style%1").arg(style + 1),
                                        EVTallyView::imageForStyle(quint64(style), thumbnail)));
    for (EVCustomStyle *style : entry->customStyles()) {
        // A new name at every rebuild; two custom styles may happen to share one.
        const int number = int(QRandomGenerator::global()->bounded(1000)) + 12;
        items.append(EVImageBrowserItem(QStringLiteral("Style%1").arg(number),
                                        EVTallyView::thumbnailForCustomStyle(*style, thumbnail)));
    }
    m_styleData->setItems(items);
}

void EVGeneralTab::selectStyleIndex(ImageBrowserView *browser, qint32 index)
{
    if (index < 0) {
        qCWarning(lcPreferences, "cannot select imagebrowse at index: %ld", long(index));
        return;
    }
    browser->setSelectionIndexes({index}, false);
    browser->scrollIndexToVisible(index);
}

void EVGeneralTab::imageBrowserRemoveItemsAtIndexes()
{
    // What is selected now counts, whatever the request named.
    const QList<int> selection = m_controller->ui().general_styles->selectionIndexes();
    if (selection.isEmpty())
        return;
    const int last = selection.last();
    if (last < EVTallyView::builtinStyleCount)
        return;
    EVWidgetEntry *entry = m_controller->selectedWidgetEntry();
    if (!entry)
        return;
    m_controller->widgetsManager()->removeCustomStyleAtIndex(last - EVTallyView::builtinStyleCount,
                                                             entry);
    updateGeneralViews();
}

void EVGeneralTab::imageBrowserSelectionDidChange()
{
    const QList<int> selection = m_controller->ui().general_styles->selectionIndexes();
    if (selection.isEmpty())
        return;
    if (EVWidgetEntry *entry = m_controller->selectedWidgetEntry())
        entry->setStyleIndex(selection.last());
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

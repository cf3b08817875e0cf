#include "prefs/EVCustomStylePanel.h"

#include "ui_PreferencesPanel.h"

#include "core/EVAlert.h"
#include "controls/EVColorWell.h"
#include "controls/EVDoubleSlider.h"
#include "core/EVImageData.h"
#include "core/EVOpenPanel.h"
#include "engine/EVWidgetsManager.h"
#include "prefs/EVGeneralTab.h"
#include "prefs/EVPerferenceController.h"
#include "prefs/NSImage+NSImageThumbnailExtensions.h"
#include "render/EVTallyView.h"
#include "store/EVCustomStyle.h"
#include "store/EVWidgetEntry.h"

EVCustomStylePanel::EVCustomStylePanel(EVPerferenceController *controller)
    : m_controller(controller)
{}

void EVCustomStylePanel::setup()
{
    Ui::PreferencesPanel &ui = m_controller->ui();
    ui.cs_customType->setId(ui.cs_customTypePicture, pictureRow);
    ui.cs_customType->setId(ui.cs_customTypeColor, colorRow);
    connect(ui.general_addCustomStyle, &QPushButton::clicked, this,
            &EVCustomStylePanel::onCustomStyle);
    // Clicks and the arrow keys both change the type.
    connect(ui.cs_customType, &QButtonGroup::idToggled, this, [this](int, bool checked) {
        if (checked)
            onCustomStyleTypeChanged();
    });
    connect(ui.cs_opacitySlider, &EVDoubleSlider::doubleValueChanged, this,
            &EVCustomStylePanel::onCustomStyleOpacityChanged);
    connect(ui.cs_browseImage, &QPushButton::clicked, this,
            &EVCustomStylePanel::onBrowseStyleImage);
    connect(ui.cs_changeColor, &QPushButton::clicked, this,
            &EVCustomStylePanel::onChangeStyleColor);
    connect(ui.cs_done, &QPushButton::clicked, this, &EVCustomStylePanel::onCustomStyleDone);
    connect(ui.cs_cancel, &QPushButton::clicked, this, &EVCustomStylePanel::onCustomStyleCancel);
    connect(ui.customStylePanel, &QDialog::finished, this, &EVCustomStylePanel::customPanelDidEnd);
    ui.customStylePanel->setWindowModality(Qt::WindowModal);
    onCustomStyleOpacityChanged();
}

void EVCustomStylePanel::onCustomStyle()
{
    EVWidgetEntry *entry = m_controller->selectedWidgetEntry();
    if (!entry)
        return;
    if (entry->customStyles().size() >= customStyleQuota) {
        EVAlert alert;
        alert.icon = QMessageBox::Critical;
        alert.messageText = QStringLiteral("Custom style reached the quota limit!");
        alert.informativeText = QStringLiteral(
            "The custom styles over the storage limit, please remove some styles and try again.");
        alert.buttons = {QStringLiteral("OK")};
        alert.run();
        return;
    }
    Ui::PreferencesPanel &ui = m_controller->ui();
    updateCustomStyleType(pictureRow);
    // A sheet belongs over the middle of its window.
    QDialog *sheet = ui.customStylePanel;
    sheet->adjustSize();
    const QRect window = m_controller->window()->geometry();
    sheet->move(window.center() - QPoint(sheet->width() / 2, sheet->height() / 2));
    sheet->open();
    sheet->activateWindow();
    // Return confirms the sheet; the keyboard starts at its first control.
    ui.cs_done->setDefault(true);
    ui.cs_customTypePicture->setFocus(Qt::ActiveWindowFocusReason);
}

void EVCustomStylePanel::updateCustomStyleType(int row)
{
    Ui::PreferencesPanel &ui = m_controller->ui();
    if (QAbstractButton *cell = ui.cs_customType->button(row))
        cell->setChecked(true);
    const bool color = row != pictureRow;
    ui.cs_color->setEnabled(color);
    ui.cs_changeColor->setEnabled(color);
    ui.cs_imagePath->setEnabled(!color);
    ui.cs_browseImage->setEnabled(!color);
}

void EVCustomStylePanel::onCustomStyleTypeChanged()
{
    updateCustomStyleType(m_controller->ui().cs_customType->checkedId());
}

void EVCustomStylePanel::onCustomStyleOpacityChanged()
{
    Ui::PreferencesPanel &ui = m_controller->ui();
    // Whole percents, cut toward zero.
    ui.cs_opacityValue->setText(QString::number(int(ui.cs_opacitySlider->doubleValue())));
}

void EVCustomStylePanel::onBrowseStyleImage()
{
    Ui::PreferencesPanel &ui = m_controller->ui();
    EVOpenPanel panel;
    panel.title = QStringLiteral("Choose a background picture...");
    panel.allowedFileTypes = {QStringLiteral("png"), QStringLiteral("jpg"), QStringLiteral("jpeg"),
                              QStringLiteral("bmp"), QStringLiteral("tif"), QStringLiteral("tiff")};
    panel.canChooseFiles = true;
    panel.canChooseDirectories = false;
    panel.allowsMultipleSelection = false;
    panel.window = ui.customStylePanel;
    if (panel.runModal() == EVOpenPanel::okButton)
        ui.cs_imagePath->setText(panel.URLs().last().toLocalFile());
}

void EVCustomStylePanel::onChangeStyleColor()
{
    m_controller->ui().cs_color->activate();
}

void EVCustomStylePanel::onCustomStyleDone()
{
    Ui::PreferencesPanel &ui = m_controller->ui();
    EVWidgetEntry *entry = m_controller->selectedWidgetEntry();
    if (!entry) {
        ui.customStylePanel->reject();
        return;
    }
    EVWidgetsManager *manager = m_controller->widgetsManager();

    if (ui.cs_customType->checkedId() != pictureRow) {
        EVCustomStyle *style = manager->addCustomStyle(entry);
        if (style) {
            const double value = ui.cs_opacitySlider->doubleValue();
            style->setColor(ui.cs_color->color());
            style->setType(0);
            style->setOpacity(float(value / 100));
            showNewStyle();
        }
        ui.customStylePanel->accept();
        return;
    }

    const QString path = ui.cs_imagePath->text();
    if (path.isEmpty()) {
        EVAlert alert;
        alert.messageText = QStringLiteral("No image selected!");
        alert.informativeText =
            QStringLiteral("Please click browse button and choose an image file.");
        alert.buttons = {QStringLiteral("OK")};
        alert.run();
        return;
    }
    // The style is added before the picture is read: a picture that cannot be read leaves a
    // style with its defaults, which shows as nothing.
    EVCustomStyle *style = manager->addCustomStyle(entry);
    const double value = ui.cs_opacitySlider->doubleValue();
    const QImage picture = NSImageThumbnailExtensions::iteThumbnailImageWithContentsOfURL(
        QUrl::fromLocalFile(path), pictureWidth);
    if (!style || picture.isNull()) {
        ui.customStylePanel->accept();
        return;
    }
    style->setImageData(EVImageData::tiffRepresentation(picture));
    style->setType(1);
    style->setOpacity(float(value / 100));
    showNewStyle();
    ui.customStylePanel->accept();
}

void EVCustomStylePanel::showNewStyle()
{
    EVWidgetEntry *entry = m_controller->selectedWidgetEntry();
    EVGeneralTab *general = m_controller->generalTab();
    general->construcStypePreviewData(entry);
    // The new style is the last one.
    EVGeneralTab::selectStyleIndex(m_controller->ui().general_styles,
                                   qint32(entry->customStyles().size()) +
                                       EVTallyView::builtinStyleCount - 1);
}

void EVCustomStylePanel::onCustomStyleCancel()
{
    m_controller->ui().customStylePanel->reject();
}

void EVCustomStylePanel::customPanelDidEnd()
{
    m_controller->ui().customStylePanel->hide();
}

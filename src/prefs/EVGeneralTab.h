#pragma once

#include "prefs/EVImageBrowserItem.h"

#include <QImage>
#include <QList>
#include <QObject>

class EVImageBrowserModel;
class EVPerferenceController;
class EVWidgetEntry;
class ImageBrowserView;

// The General tab: the selected widget's title, event date (with or without the time of day),
// icon and background style. The style browser shows the twelve built-in styles, then the
// widget's custom ones. Every edit goes straight into the widget's entry.
class EVGeneralTab : public QObject
{
    Q_OBJECT

public:
    // Date field elements with and without the time of day.
    static constexpr int dateAndTimeElements = 238;
    static constexpr int dateElements = 224;

    explicit EVGeneralTab(EVPerferenceController *controller);

    // Connects the tab's controls and shows the selected widget; once, with the window.
    void setupGeneral();
    // Shows the selected widget's values; nothing happens without a selection.
    void updateGeneralViews();

    // Makes the browser's items anew for the entry: Style1 to Style12, then one item per
    // custom style, named "Style" and a number from 12 to 1011 drawn anew every time.
    void construcStypePreviewData(EVWidgetEntry *entry);
    const QList<EVImageBrowserItem> &styleData() const;

    // Selects exactly the item at index and scrolls to it; a negative index is only logged.
    static void selectStyleIndex(ImageBrowserView *browser, qint32 index);

private Q_SLOTS:
    void imageBrowserRemoveItemsAtIndexes();
    void imageBrowserSelectionDidChange();
    void onEventTitleTextDidChangeNotification();
    void onIconImageChanged(const QImage &image);
    void onTimeElementStateChanged();
    void onEventDateChanged();

private:
    void setupStylePreview();

    EVPerferenceController *m_controller;
    EVImageBrowserModel *m_styleData;
};

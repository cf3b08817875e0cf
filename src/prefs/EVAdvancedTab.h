#pragma once

#include "engine/EVDateText.h"

#include <QDateTime>
#include <QObject>
#include <QStringList>

class EVPerferenceController;
class EVWidgetEntry;

// The Advanced tab: how the selected widget shows its date and counts, the colour of its texts,
// its window level and whether it is locked in place. Every edit goes straight into the
// widget's entry; the widget picks it up on its next one-second update.
class EVAdvancedTab : public QObject
{
    Q_OBJECT

public:
    // The fixed lists, in the order of the values they store.
    static QStringList countUnitTitles();
    static QStringList ignoredDayTitles();
    static QStringList keepTopTitles();

    // The instant the date-format list shows each format with: 6 October 1986, 10:05:06 UTC,
    // rendered in the local time zone.
    static QDateTime dateFormatSample();
    // The format the list shows for a tag. It is the widget's own, except that tag 3 with the
    // time of day is shown on the 12-hour clock while the widget prints 24 hours.
    static EVDateText::DateFormat dateFormatOfItem(int tag, bool timeElement);

    explicit EVAdvancedTab(EVPerferenceController *controller);

    // Fills the fixed lists, connects the controls and shows the selected widget; once, with
    // the window.
    void setupAdvanced();
    // Shows the selected widget's values; nothing happens without a selection.
    void updateAdvancedViews();
    // Makes the date-format list anew for the entry: with the time of day six items (tags 0 to
    // 5, a separator after the third); without it three, tagged 3, 4 and 5, because adding a
    // title that is already listed replaces the earlier item.
    void setupDateFormatsList(const EVWidgetEntry &entry);

private Q_SLOTS:
    void onCountdownDateFormatChanged();
    void onCountdownUnitChanged();
    void onCountdownIgoredDaysChanged();
    void onCountdownTextColorChanged();
    void onCountdownKeepTopChanged();
    void onLockWidgetOnDesktop();

private:
    EVPerferenceController *m_controller;
    // Set while the controls are filled from the entry: showing a value is not an edit.
    bool m_updatingViews = false;
};

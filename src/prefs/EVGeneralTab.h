#pragma once

#include <QImage>
#include <QObject>

class EVPerferenceController;

// The General tab: the selected widget's title, event date (with or without the time of day)
// and icon. Every edit goes straight into the widget's entry.
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

private Q_SLOTS:
    void onEventTitleTextDidChangeNotification();
    void onIconImageChanged(const QImage &image);
    void onTimeElementStateChanged();
    void onEventDateChanged();

private:
    EVPerferenceController *m_controller;
};

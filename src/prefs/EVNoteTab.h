#pragma once

#include <QObject>
#include <QStringList>

class EVPerferenceController;

// The Note tab: the selected widget's priority and free-text note, and its reminder: whether one
// is pending (the remind-me switch) and how long before the event it comes. Every edit goes
// straight into the widget's entry, the lead time and the note at every keystroke.
class EVNoteTab : public QObject
{
    Q_OBJECT

public:
    // The fixed lists, in the order of the values they store.
    static QStringList priorityTitles();
    static QStringList intervalUnitTitles();

    // The integer a text field reads from its text: leading white space, then an optional sign
    // and the digits that follow; whatever comes after is ignored, text without such digits is
    // 0, and numbers beyond the 32-bit range stop at its ends.
    static int integerValueOfText(const QString &text);

    explicit EVNoteTab(EVPerferenceController *controller);

    // Fills the fixed lists, shows the selected widget and connects the controls; once, with
    // the window.
    void setupNote();
    // Shows the selected widget's values, with the lead time editable only while a reminder is
    // pending; nothing happens without a selection. A reminder that has fired shows off here.
    void updateNoteViews();

private Q_SLOTS:
    void onPriorityChanged();
    void onRemindMeStateChanged();
    void onRemindTimeUnitChanged();
    void onNoteRemindIntervalTextChanged(const QString &text);
    void onNSTextDidChangeNotification();

private:
    EVPerferenceController *m_controller;
    // Set while the controls are filled from the entry: showing a value is not an edit.
    bool m_updatingViews = false;
};

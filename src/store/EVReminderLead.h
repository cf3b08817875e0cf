#pragma once

#include <QString>

#include <optional>

// How long before its event a widget reminds the user, as the Note tab edits it: a count of one
// unit (intervalBeforeAlert, intervalAlertUnit). Written short as on the command line: "30s",
// "15m", "2h", "3d", "1w".
struct EVReminderLead
{
    // The indices of the Note tab's unit list.
    enum Unit { Seconds = 0, Minutes = 1, Hours = 2, Days = 3, Weeks = 4 };

    int count = 1;
    int unit = Minutes;

    bool operator==(const EVReminderLead &other) const = default;

    // Seconds in one of the unit: 1, 60, 3,600, 86,400 or 604,800; 0 for an unknown unit.
    static qint64 unitSeconds(int unit);
    qint64 seconds() const { return count * unitSeconds(unit); }

    // A positive whole number followed by one unit letter (s, m, h, d, w); none otherwise.
    static std::optional<EVReminderLead> fromText(const QString &text);
    QString text() const;

    // The lead in the largest unit that divides it wholly; none unless the seconds are
    // positive and the count fits the field.
    static std::optional<EVReminderLead> fromSeconds(qint64 seconds);
};

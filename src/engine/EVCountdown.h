#pragma once

#include <QDateTime>
#include <QMap>
#include <QString>

class EVWidgetEntry;

// Keys of the dictionary form of the two countdown lines.
inline const QString EVCountdownMajorDescKey = QStringLiteral("MajorDesc");
inline const QString EVCountdownSecondDescKey = QStringLiteral("SecondDesc");

// The two countdown lines a widget shows under its date: the count from now to the event in
// the entry's unit, and what it counts. Every call reads the entry afresh.
class EVCountdown
{
public:
    struct Lines
    {
        QString majorDesc;  // drawn large: "12", "03:15:42"
        QString secondDesc; // under it: "Days Left", "Seconds Passed", "02:05:09"

        bool operator==(const Lines &other) const = default;
    };

    // The two countdown lines from now to the entry's event date, counted in the entry's unit.
    static Lines countdownLines(const EVWidgetEntry &entry, const QDateTime &now);
    // The instant, in milliseconds since 1970, up to which the lines stay those at now: the
    // first millisecond they read differently, or the end of the span searched (a bit over a
    // year) when they do not change within it. A clock countdown changes every second and is
    // not searched: its lines hold for the current millisecond only.
    static qint64 linesUnchangedUntil(const EVWidgetEntry &entry, const QDateTime &now);

    // The same at the program's clock, keyed by EVCountdownMajorDescKey and
    // EVCountdownSecondDescKey.
    static QMap<QString, QString> countdownDesc(const EVWidgetEntry &entry);
};

#pragma once

#include "store/EVImportReport.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <vector>

class EVCoreDataDelegate;
class EVCustomStyle;
class EVWidgetEntry;
template <typename Record>
struct EVBackupField;

// A complete backup of widgets as JSON: every field of every entry and of its custom styles,
// none kept apart from empty (null against ""), and the pictures (icons, style images)
// as base64, under a format name and version:
//
//   {"format": "tallyvane-backup", "version": 1,
//    "widgets": [{"uuid": "...", "eventTitle": "...", "eventDate": "2025-03-01T14:30:00.000Z",
//                 "textcolor": [1, 1, 1, 1], "iconfileData": "<base64>", ...,
//                 "customStyles": [{"uuid": "...", "color": [0, 0, 0, 1], "imageData": null,
//                                   ...}]}]}
//
// Dates are ISO 8601 with milliseconds and an offset, colours their red, green, blue and alpha
// fractions, bytes base64. iconfileData and imageData hold the picture files' contents.
class EVWidgetBackup
{
public:
    static constexpr int formatVersion = 1;
    static inline const QString formatName = QStringLiteral("tallyvane-backup");

    // The backup of the entries, their custom styles in their order, as indented JSON.
    static QByteArray exportEntries(const QList<EVWidgetEntry *> &entries);

    // Adds the widgets of a backup to the store, unsaved: all of them or, on any error in the
    // file, none. A widget whose identifier (or one of whose custom styles' identifiers) the
    // store already holds is left out and reported; nothing is ever deleted. fileName only
    // names the file in messages.
    static EVImportReport importInto(EVCoreDataDelegate *store, const QString &fileName,
                                     const QByteArray &content);

private:
    friend class EVBackupReader;

    // Every field of each record as the backup names it, pictures and styles aside.
    static const std::vector<EVBackupField<EVWidgetEntry>> &widgetEntryFields();
    static const std::vector<EVBackupField<EVCustomStyle>> &customStyleFields();
};

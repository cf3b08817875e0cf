#pragma once

#include <QVariant>

class EVWidgetsManager;
class QSettings;

// The one-time import of the earlier generation's widgets from the settings: one new widget
// entry per old configuration, in the archive's order, after which "TransferOldData" is set so
// that the import never runs again. The old "widgets" value is left where it is, and nothing is
// saved here: the new entries reach the store with its next save.
class EVLegacyImport
{
public:
    // What the archive under "widgets" decodes to; none when there is no such value or it is no
    // keyed archive.
    static QVariant transferOldData(const QSettings &settings);
    // Imports through the manager unless "TransferOldData" is set, and then sets it, also when
    // there was nothing to import.
    static void setup(EVWidgetsManager &manager, QSettings &settings);
};

#include "engine/EVLegacyImport.h"

#include "core/EVUserDefaults.h"
#include "engine/EVWidgetsManager.h"
#include "store/EVKeyedUnarchiver.h"
#include "store/EVWidgetConfig.h"
#include "store/EVWidgetEntry.h"

QVariant EVLegacyImport::transferOldData(const QSettings &settings)
{
    const QByteArray archive = settings.value(EVLegacyWidgetsKey).toByteArray();
    if (archive.isEmpty())
        return QVariant();
    return EVKeyedUnarchiver::unarchiveObjectWithData(archive);
}

void EVLegacyImport::setup(EVWidgetsManager &manager, QSettings &settings)
{
    if (settings.value(EVTransferOldDataKey).toBool())
        return;
    // Only a collection is iterated; members that are no configuration are passed over.
    const QVariant old = transferOldData(settings);
    const QVariantList configs =
        old.typeId() == QMetaType::QVariantList ? old.toList() : QVariantList();
    for (const QVariant &member : configs) {
        if (member.typeId() != qMetaTypeId<EVWidgetConfig>())
            continue;
        const EVWidgetConfig config = member.value<EVWidgetConfig>();
        EVWidgetEntry *entry = manager.addNewWidgetEntry();
        if (!entry)
            continue;
        entry->setEventTitle(config.eventTitle());
        entry->setEventDate(config.eventDate());
        entry->setTimeElement(config.enabledTime());
        // Only a built-in style is taken; anything else leaves the widget on its default style.
        if (config.style() < quint64(EVWidgetEntry::builtinStyleCount))
            entry->setStyleIndex(int(config.style()));
    }
    settings.setValue(EVTransferOldDataKey, true);
}

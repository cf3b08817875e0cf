#include "store/EVRecordRepair.h"

#include "store/EVCustomStyle.h"
#include "store/EVPictureFile.h"
#include "store/EVRepairLog.h"
#include "store/EVWidgetEntry.h"

#include <QSet>

namespace EVRecordRepair {
namespace {

// The record's picture goes with it to a file of its own name, so that it stays when the
// record whose identifier it shared changes its picture or goes.
template <typename Record>
void giveFreshUuid(Record &record, const QString &picturePath,
                   void (Record::*setPicture)(const QByteArray &))
{
    const QByteArray picture = EVPictureFile::read(picturePath);
    record.setUuid(EVManagedRecord::newUuid());
    if (!picture.isNull())
        (record.*setPicture)(picture);
}

} // namespace

void repair(const EVStoreFile::Records &records, EVRepairLog *log)
{
    const QString uuidRepair = QStringLiteral(
        "%1 records had a uuid that is not a UUID or that an earlier record has; each was given "
        "a fresh one, saved with the next save");
    // Entries and custom styles share the picture folder, so one set of identifiers serves both.
    QSet<QString> taken;
    const auto needsFreshUuid = [&taken](const QString &uuid) {
        return !EVManagedRecord::isUuid(uuid) || taken.contains(uuid);
    };
    for (const auto &entry : records.entries) {
        if (needsFreshUuid(entry->uuid())) {
            giveFreshUuid(*entry, entry->iconFilePath(), &EVWidgetEntry::setIconfileData);
            log->count(uuidRepair);
        }
        taken.insert(entry->uuid());
    }
    for (const auto &style : records.styles) {
        if (needsFreshUuid(style->uuid())) {
            giveFreshUuid(*style, style->imagePath(), &EVCustomStyle::setImageData);
            log->count(uuidRepair);
        }
        taken.insert(style->uuid());
    }

    for (const auto &entry : records.entries) {
        const qsizetype styles = EVWidgetEntry::builtinStyleCount + entry->customStyles().size();
        if (entry->styleIndex() < 0 || entry->styleIndex() >= styles) {
            entry->setStyleIndex(EVWidgetEntry::defaultStyleIndex);
            log->count(QStringLiteral("widget_entry.style_index: %1 stored values pointed to no "
                                      "style of the widget and took the default style"));
        }
        if (!entry->widgetFrameDesc().isNull() && entry->frame().isNull()) {
            log->count(QStringLiteral("widget_entry.widget_frame_desc: %1 stored frames cannot "
                                      "be shown on any screen; those widgets keep their window's "
                                      "own size and place"));
        }
    }
}

} // namespace EVRecordRepair

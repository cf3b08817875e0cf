// Arbitrary bytes for the readers of property lists and keyed archives, as a damaged or hostile
// "widgets" value or preferences file would hand them over. Whatever the bytes, reading must
// end, stay within the input's size, and give nothing or a value; and a property list that was
// read must read back the same once written in the binary form.
#include "store/EVBinaryPropertyListWriter.h"
#include "store/EVKeyedUnarchiver.h"
#include "store/EVLegacyPreferencesFile.h"
#include "store/EVPropertyList.h"
#include "store/EVWidgetConfig.h"

#include <QByteArray>
#include <QVariant>

#include <cstdint>
#include <cstdlib>

namespace {

// Reads every part of a decoded value, so that whatever decoding made is touched in full. The
// sum is unsigned so that it may wrap.
quint64 visit(const QVariant &value)
{
    if (value.typeId() == QMetaType::QVariantList) {
        quint64 total = 0;
        for (const QVariant &member : value.toList())
            total += visit(member);
        return total;
    }
    if (value.typeId() == QMetaType::QVariantMap) {
        quint64 total = 0;
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            total += quint64(it.key().size()) + visit(it.value());
        return total;
    }
    if (value.typeId() == qMetaTypeId<EVWidgetConfig>()) {
        const EVWidgetConfig config = value.value<EVWidgetConfig>();
        return quint64(config.description().size()) + quint64(config.eventTitle().size()) +
               quint64(config.iconFile().size()) + quint64(config.soundFile().size()) +
               config.style() + config.size() + config.dateFormat() +
               quint64(config.position().x() == config.position().x()) +
               quint64(config.textColor().isValid());
    }
    return quint64(value.toString().size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // No copy: a read past the end of the input lands outside libFuzzer's buffer.
    const QByteArray bytes =
        QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));

    if (const std::optional<EVPropertyList> list = EVPropertyList::fromData(bytes)) {
        const std::optional<EVPropertyList> again =
            EVPropertyList::fromData(EVBinaryPropertyListWriter::write(*list));
        if (!again || !(*again == *list))
            std::abort();
    }

    visit(EVKeyedUnarchiver::unarchiveObjectWithData(bytes));

    const QByteArray archive = EVLegacyPreferencesFile::widgetsArchive(bytes);
    if (!archive.isNull())
        visit(EVKeyedUnarchiver::unarchiveObjectWithData(archive));
    return 0;
}

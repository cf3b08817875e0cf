// Arbitrary bytes as the widget store file, as a damaged disk, a restored backup or a hand edit
// would leave it. Whatever the bytes, opening must either load every record or report one
// failure and load nothing; every loaded widget must have a UUID of its own and a frame that a
// window can be made of; and what is saved must read back as the same widgets.
#include "FuzzChecks.h"

#include "platform/EVPaths.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVCustomStyle.h"
#include "store/EVObjectContext.h"
#include "store/EVWidgetEntry.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QSet>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

namespace {

// Every record's uuid, each checked to be a UUID that no other record has.
QSet<QString> checkedUuids(EVCoreDataDelegate &store)
{
    QSet<QString> uuids;
    const auto take = [&uuids](const QString &uuid) {
        require(EVManagedRecord::isUuid(uuid) && !uuids.contains(uuid));
        uuids.insert(uuid);
    };
    for (const EVWidgetEntry *entry : store.fetchWidgetEntries())
        take(entry->uuid());
    for (const EVCustomStyle *style : store.managedObjectContext()->customStyles())
        take(style->uuid());
    return uuids;
}

// Reads what a widget window reads of each entry. A frame is none, or one a window can take.
void visit(EVWidgetEntry &entry)
{
    require(isNoneOrWindowFrame(entry.frame()));
    entry.iconfileData();
    for (EVCustomStyle *style : entry.customStyles())
        style->imageData();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    // The store and the pictures go to a HOME of their own, removed at exit.
    static QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    for (const char *name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        qunsetenv(name);
    // Frames are judged against the screens, so there must be some: the offscreen platform's.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static QGuiApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString folder = EVPaths::applicationFilesDirectory();
    QDir(folder).removeRecursively();
    QDir(EVPaths::documentsDirectory()).removeRecursively();
    QDir().mkpath(folder);
    QFile file(EVCoreDataDelegate().storeFilePath());
    if (!file.open(QIODevice::WriteOnly))
        return 0;
    file.write(reinterpret_cast<const char *>(data), qint64(size));
    file.close();

    int loaded = 0;
    QSet<QString> saved;
    {
        EVCoreDataDelegate store;
        int failures = 0;
        QObject::connect(&store, &EVCoreDataDelegate::errorReported, [&failures] { ++failures; });
        const QList<EVWidgetEntry *> entries = store.fetchWidgetEntries();
        if (failures > 0) {
            // No partial load, and one report however often the store is asked.
            require(entries.isEmpty() && !store.addWidgetEntry());
            store.save();
            require(failures == 1);
            return 0;
        }
        loaded = int(entries.size());
        for (EVWidgetEntry *entry : entries)
            visit(*entry);
        saved = checkedUuids(store);
        store.save();
        if (failures > 0)
            return 0; // the file refused the save (a hostile constraint); it is left as it was
    }

    EVCoreDataDelegate reopened;
    int failures = 0;
    QObject::connect(&reopened, &EVCoreDataDelegate::errorReported, [&failures] { ++failures; });
    require(reopened.fetchWidgetEntries().size() == loaded && failures == 0);
    require(checkedUuids(reopened) == saved);
    return 0;
}

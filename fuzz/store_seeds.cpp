// Writes seed files for fuzz_store: real stores, saved by the store itself, of a few shapes
// (empty, one widget, widgets with custom styles, frames and legacy inline pictures, a store
// changed by hand), each rewritten with small pages so that it fits the fuzzer's input size.
//
// Usage: store_seeds OUTPUT-FOLDER
#include "store/EVCoreDataDelegate.h"
#include "store/EVCustomStyle.h"
#include "store/EVWidgetEntry.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <cstdio>
#include <functional>

namespace {

QString storePath()
{
    return EVCoreDataDelegate().storeFilePath();
}

// Runs statements on the store file behind the store's back, as the sqlite3 shell would.
bool execute(const QStringList &statements)
{
    bool ok = true;
    {
        QSqlDatabase database =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("seeds"));
        database.setDatabaseName(storePath());
        ok = database.open();
        QSqlQuery query(database);
        for (const QString &statement : statements)
            ok = ok && query.exec(statement);
    }
    QSqlDatabase::removeDatabase(QStringLiteral("seeds"));
    return ok;
}

// Makes a store with the function, shrinks its pages and copies it to the output folder.
bool writeSeed(const QString &output, const QString &name,
               const std::function<void(EVCoreDataDelegate &)> &fill,
               const QStringList &handEdits = {})
{
    QFile::remove(storePath());
    {
        EVCoreDataDelegate store;
        fill(store);
        store.save();
    }
    const bool ok = execute(handEdits) &&
                    execute({QStringLiteral("PRAGMA page_size = 512"), QStringLiteral("VACUUM")});
    QFile::remove(output + QLatin1Char('/') + name);
    return ok && QFile::copy(storePath(), output + QLatin1Char('/') + name);
}

void widgetsWithStyles(EVCoreDataDelegate &store)
{
    for (int i = 0; i < 3; ++i) {
        EVWidgetEntry *entry = store.addWidgetEntry();
        entry->setEventTitle(QStringLiteral("Widget %1").arg(i));
        entry->setNote(QStringLiteral("note ✓"));
        entry->setWidgetFrameDesc(QStringLiteral("{{0.1, 0.25}, {0.3, 0.1875}}"));
        entry->setKeepTop(i);
        entry->setSoundAlert(true);
        for (int s = 0; s <= i; ++s) {
            EVCustomStyle *style = store.addCustomStyle(entry);
            style->setColor(QColor::fromRgbF(0.25f * float(s), 0.5f, 0.75f, 0.9f));
            style->setOpacity(0.5f);
        }
        entry->setStyleIndex(12 + i);
    }
}

void legacyPictures(EVCoreDataDelegate &store)
{
    EVWidgetEntry *entry = store.addWidgetEntry();
    entry->setIconfileData(QByteArray());
    entry->setIconfile(QByteArray("II*\0legacy icon", 15));
    EVCustomStyle *style = store.addCustomStyle(entry);
    style->setType(1);
    style->setImage(QByteArray("MM\0*legacy picture", 18));
}

} // namespace

int main(int argc, char *argv[])
{
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const QString output = application.arguments().value(1);
    if (output.isEmpty() || !QDir().mkpath(output)) {
        std::fputs("usage: store_seeds OUTPUT-FOLDER\n", stderr);
        return 1;
    }

    const bool ok =
        writeSeed(output, QStringLiteral("store-empty"), [](EVCoreDataDelegate &) {}) &&
        writeSeed(output, QStringLiteral("store-one-widget"),
                  [](EVCoreDataDelegate &store) { store.addWidgetEntry(); }) &&
        writeSeed(output, QStringLiteral("store-styles"), widgetsWithStyles) &&
        writeSeed(output, QStringLiteral("store-legacy-pictures"), legacyPictures) &&
        writeSeed(output, QStringLiteral("store-hand-edited"), widgetsWithStyles,
                  {QStringLiteral("UPDATE widget_entry SET uuid = (SELECT min(uuid) FROM "
                                  "widget_entry), keep_top = 'x', textcolor_red = 2"),
                   QStringLiteral("UPDATE widget_entry SET id = -id WHERE id = 2"),
                   QStringLiteral("UPDATE custom_style SET widget_id = -2 WHERE widget_id = 2"),
                   QStringLiteral("UPDATE custom_style SET image_path = '../x', opacity = 9e999 "
                                  "WHERE id = 1")});
    if (!ok) {
        std::fputs("store_seeds: a seed could not be written\n", stderr);
        return 1;
    }
    return 0;
}

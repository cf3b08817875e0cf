#include "engine/EVWidgetCommands.h"

#include "core/EVClock.h"
#include "engine/EVCountdown.h"
#include "engine/EVDateText.h"
#include "engine/EVWidgetsManager.h"
#include "render/EVTallyView.h"
#include "store/EVCalendarFile.h"
#include "store/EVCoreDataDelegate.h"
#include "store/EVImportReport.h"
#include "store/EVReminderLead.h"
#include "store/EVStoreFailures.h"
#include "store/EVWidgetBackup.h"
#include "store/EVWidgetEntry.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStringDecoder>

#include <algorithm>

namespace {

// The counting units in the order of the Advanced tab's list, whose index is the stored value.
const QStringList countingUnits{QStringLiteral("time"), QStringLiteral("day"),
                                QStringLiteral("week"), QStringLiteral("month"),
                                QStringLiteral("year")};

// Titles and lines on one text line each: tabs and line breaks would split a record.
QString oneLine(const QString &text)
{
    QString line = text;
    for (QChar &c : line) {
        if (c == u'\t' || c == u'\n' || c == u'\r')
            c = u' ';
    }
    return line;
}

QString countOf(qsizetype count, const QString &one, const QString &many)
{
    return QStringLiteral("%1 %2").arg(count).arg(count == 1 ? one : many);
}

struct ParsedDate
{
    QDateTime instant;
    bool withTime = false;
};

// "2025-12-24", "2025-12-24 18:30", "2025-12-24T18:30:05", in local time.
std::optional<ParsedDate> parseDate(const QString &text, QString *why)
{
    static const QRegularExpression form(
        QStringLiteral(R"(^(\d{4})-(\d{2})-(\d{2})(?:[T ](\d{2}):(\d{2})(?::(\d{2}))?)?$)"));
    const QRegularExpressionMatch match = form.match(text.trimmed());
    if (!match.hasMatch()) {
        *why = QStringLiteral("The date \"%1\" is not written as 2025-12-24 or 2025-12-24 18:30")
                   .arg(text);
        return std::nullopt;
    }
    const QDate date(match.captured(1).toInt(), match.captured(2).toInt(),
                     match.captured(3).toInt());
    const bool withTime = match.hasCaptured(4);
    const QTime time = withTime ? QTime(match.captured(4).toInt(), match.captured(5).toInt(),
                                        match.captured(6).toInt())
                                : QTime(0, 0);
    if (!date.isValid() || !time.isValid()) {
        *why = QStringLiteral("The date \"%1\" does not exist").arg(text);
        return std::nullopt;
    }
    // A day whose midnight summer time skips starts when its first hour does.
    const QDateTime instant = withTime ? QDateTime(date, time) : date.startOfDay();
    // A time that the change to summer time skips: said so, rather than moved or dropped.
    if (withTime && (!instant.isValid() || instant.date() != date || instant.time() != time)) {
        *why = QStringLiteral("The time \"%1\" does not exist in the local time zone").arg(text);
        return std::nullopt;
    }
    return ParsedDate{instant, withTime};
}

// The first line of the text where it stops being UTF-8; 0 when all of it is UTF-8.
int firstLineThatIsNotUtf8(const QByteArray &content)
{
    const QList<QByteArray> lines = content.split('\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString decoded = decoder.decode(lines.at(i));
        if (decoder.hasError())
            return int(i) + 1;
    }
    return 0;
}

} // namespace

EVWidgetCommands::EVWidgetCommands(EVWidgetsManager *manager)
    : m_manager(manager)
    , m_store(manager->store())
{}

EVWidgetCommands::EVWidgetCommands(EVCoreDataDelegate *store)
    : m_store(store)
{}

QList<EVWidgetEntry *> EVWidgetCommands::entries()
{
    return m_manager ? m_manager->widgetEntries() : m_store->fetchWidgetEntries();
}

QString EVWidgetCommands::openStore()
{
    EVStoreFailures failures(m_store);
    if (m_store->managedObjectContext())
        return QString();
    return QStringLiteral("The widget store cannot be opened: %1").arg(failures.first());
}

QString EVWidgetCommands::save()
{
    EVStoreFailures failures(m_store);
    if (m_manager)
        m_manager->save();
    else
        m_store->save();
    if (!failures.any())
        return QString();
    return QStringLiteral("The widget store cannot be saved: %1").arg(failures.first());
}

EVCommandResult EVWidgetCommands::list(bool json)
{
    if (const QString failure = openStore(); !failure.isNull())
        return EVCommandResult::badInput(failure);
    const QDateTime now = EVClock::now();
    QJsonArray widgets;
    QString text;
    for (const EVWidgetEntry *entry : entries()) {
        const QString date = EVDateText::widgetDateText(*entry);
        const EVCountdown::Lines lines = EVCountdown::countdownLines(*entry, now);
        widgets.append(QJsonObject{{QStringLiteral("uuid"), entry->uuid()},
                                   {QStringLiteral("title"), entry->eventTitle()},
                                   {QStringLiteral("date"), date},
                                   {QStringLiteral("majorDesc"), lines.majorDesc},
                                   {QStringLiteral("secondDesc"), lines.secondDesc}});
        text += QStringList{entry->uuid(), oneLine(entry->eventTitle()), oneLine(date),
                            lines.majorDesc, lines.secondDesc}
                    .join(QLatin1Char('\t')) +
                QLatin1Char('\n');
    }
    if (!json)
        return EVCommandResult::done(text);
    return EVCommandResult::done(QString::fromUtf8(
        QJsonDocument(QJsonObject{{QStringLiteral("widgets"), widgets}}).toJson()));
}

EVCommandResult EVWidgetCommands::add(const AddOptions &options)
{
    // Every option is checked before the widget exists, so that bad input adds nothing.
    std::optional<ParsedDate> date;
    if (!options.date.isNull()) {
        QString why;
        date = parseDate(options.date, &why);
        if (!date)
            return EVCommandResult::badInput(why);
    }
    const qsizetype unit =
        options.unit.isNull() ? -1 : countingUnits.indexOf(options.unit.trimmed().toLower());
    if (!options.unit.isNull() && unit < 0)
        return EVCommandResult::badInput(
            QStringLiteral("The counting unit \"%1\" is none of %2")
                .arg(options.unit, countingUnits.join(QStringLiteral(", "))));
    bool styleOk = true;
    const int style = options.style.isNull() ? -1 : options.style.trimmed().toInt(&styleOk);
    if (!options.style.isNull() &&
        (!styleOk || style < 0 || style >= EVTallyView::builtinStyleCount))
        return EVCommandResult::badInput(
            QStringLiteral("The style \"%1\" is not a number from 0 to %2")
                .arg(options.style)
                .arg(EVTallyView::builtinStyleCount - 1));
    const std::optional<EVReminderLead> lead =
        options.remind.isNull() ? std::nullopt : EVReminderLead::fromText(options.remind);
    if (!options.remind.isNull() && !lead)
        return EVCommandResult::badInput(
            QStringLiteral("The reminder lead \"%1\" is not a count with a unit, such as 30s, "
                           "15m, 2h, 3d or 1w")
                .arg(options.remind));
    if (const QString failure = openStore(); !failure.isNull())
        return EVCommandResult::badInput(failure);

    EVWidgetEntry *entry = m_manager ? m_manager->addNewWidgetEntry() : m_store->addWidgetEntry();
    if (!entry)
        return EVCommandResult::badInput(QStringLiteral("The widget store cannot be opened"));
    if (!options.title.isNull())
        entry->setEventTitle(options.title);
    if (date) {
        entry->setEventDate(date->instant);
        entry->setTimeElement(date->withTime);
    }
    if (unit >= 0)
        entry->setCountdownUnit(int(unit));
    if (style >= 0)
        entry->setStyleIndex(style);
    if (lead) {
        entry->setSoundAlert(true);
        entry->setIntervalBeforeAlert(lead->count);
        entry->setIntervalAlertUnit(lead->unit);
    }
    if (!options.note.isNull())
        entry->setNote(options.note);
    if (m_manager)
        m_manager->refreshWidgetController(entry->uuid());
    if (const QString failure = save(); !failure.isNull())
        return EVCommandResult::badInput(failure);
    return EVCommandResult::done(entry->uuid() + QLatin1Char('\n'));
}

EVCommandResult EVWidgetCommands::remove(const QString &uuid)
{
    if (const QString failure = openStore(); !failure.isNull())
        return EVCommandResult::badInput(failure);
    const QList<EVWidgetEntry *> all = entries();
    const auto found = std::find_if(all.begin(), all.end(), [&uuid](const EVWidgetEntry *entry) {
        return entry->uuid().compare(uuid.trimmed(), Qt::CaseInsensitive) == 0;
    });
    if (found == all.end())
        return EVCommandResult::badInput(
            QStringLiteral("No widget has the identifier \"%1\"").arg(uuid));
    if (m_manager)
        m_manager->removeWidgetWithEntry(*found);
    else
        m_store->removeWidgetEntry(*found);
    if (const QString failure = save(); !failure.isNull())
        return EVCommandResult::badInput(failure);
    return EVCommandResult::done();
}

EVCommandResult EVWidgetCommands::exportBackup()
{
    if (const QString failure = openStore(); !failure.isNull())
        return EVCommandResult::badInput(failure);
    EVCommandResult result = EVCommandResult::done();
    result.fileContent = QString::fromUtf8(EVWidgetBackup::exportEntries(entries()));
    return result;
}

EVCommandResult EVWidgetCommands::exportCalendar()
{
    if (const QString failure = openStore(); !failure.isNull())
        return EVCommandResult::badInput(failure);
    QStringList skipped;
    EVCommandResult result = EVCommandResult::done();
    result.fileContent = QString::fromUtf8(EVCalendarFile::exportEntries(entries(), &skipped));
    for (const QString &line : std::as_const(skipped))
        result.output += QStringLiteral("Left out %1\n").arg(line);
    return result;
}

EVCommandResult EVWidgetCommands::importBackup(const QString &fileName, const QByteArray &content)
{
    if (const QString failure = openStore(); !failure.isNull())
        return EVCommandResult::badInput(failure);
    return finishImport(fileName, EVWidgetBackup::importInto(m_store, fileName, content));
}

EVCommandResult EVWidgetCommands::importCalendar(const QString &fileName, const QByteArray &content)
{
    if (const QString failure = openStore(); !failure.isNull())
        return EVCommandResult::badInput(failure);
    return finishImport(fileName, EVCalendarFile::importInto(m_store, fileName, content));
}

EVCommandResult EVWidgetCommands::finishImport(const QString &fileName,
                                               const EVImportReport &report)
{
    if (!report.ok())
        return EVCommandResult::badInput(report.error);
    if (m_manager) {
        for (EVWidgetEntry *entry : report.added)
            m_manager->addNewWidgetWindowController(entry);
    }
    if (!report.added.isEmpty()) {
        if (const QString failure = save(); !failure.isNull())
            return EVCommandResult::badInput(failure);
    }
    QString output =
        QStringLiteral("Imported %1 from %2\n")
            .arg(countOf(report.added.size(), QStringLiteral("widget"), QStringLiteral("widgets")),
                 fileName);
    for (const QString &line : report.skipped)
        output += QStringLiteral("Skipped %1\n").arg(line);
    return EVCommandResult::done(output);
}

EVCommandResult EVWidgetCommands::runRequest(const QJsonObject &request)
{
    const QString command = request.value(QLatin1String("command")).toString();
    QStringList allowed{QStringLiteral("command")};
    if (command == QLatin1String("list"))
        allowed.append(QStringLiteral("json"));
    else if (command == QLatin1String("add"))
        allowed.append({QStringLiteral("title"), QStringLiteral("date"), QStringLiteral("unit"),
                        QStringLiteral("style"), QStringLiteral("remind"), QStringLiteral("note")});
    else if (command == QLatin1String("remove"))
        allowed.append(QStringLiteral("uuid"));
    else if (command == QLatin1String("import") || command == QLatin1String("import-ics"))
        allowed.append({QStringLiteral("fileName"), QStringLiteral("content")});
    else if (command != QLatin1String("export") && command != QLatin1String("export-ics"))
        return EVCommandResult::usage(QStringLiteral("Unknown command \"%1\"").arg(command));

    for (auto member = request.begin(); member != request.end(); ++member) {
        if (!allowed.contains(member.key()))
            return EVCommandResult::usage(
                QStringLiteral("The command %1 takes no \"%2\"").arg(command, member.key()));
        const bool isFlag = member.key() == QLatin1String("json");
        if (isFlag ? !member.value().isBool() : !member.value().isString())
            return EVCommandResult::usage(
                QStringLiteral("\"%1\" must be %2")
                    .arg(member.key(), isFlag ? "true or false" : "a text"));
    }
    // A string member, null when the request does not hold it.
    const auto option = [&request](const char *key) {
        const QJsonValue value = request.value(QLatin1String(key));
        return value.isString() ? value.toString() : QString();
    };
    const auto required = [&](const char *key) { return request.contains(QLatin1String(key)); };

    if (command == QLatin1String("list"))
        return list(request.value(QLatin1String("json")).toBool());
    if (command == QLatin1String("add"))
        return add(AddOptions{option("title"), option("date"), option("unit"), option("style"),
                              option("remind"), option("note")});
    if (command == QLatin1String("remove")) {
        if (!required("uuid"))
            return EVCommandResult::usage(QStringLiteral("remove needs the widget's identifier"));
        return remove(option("uuid"));
    }
    if (command == QLatin1String("export"))
        return exportBackup();
    if (command == QLatin1String("export-ics"))
        return exportCalendar();
    if (!required("fileName") || !required("content"))
        return EVCommandResult::usage(
            QStringLiteral("%1 needs the file's name and content").arg(command));
    const QByteArray content = option("content").toUtf8();
    if (command == QLatin1String("import"))
        return importBackup(option("fileName"), content);
    return importCalendar(option("fileName"), content);
}

QJsonObject EVWidgetCommands::run(const QJsonObject &request)
{
    return runRequest(request).toJson();
}

std::optional<QJsonObject> EVWidgetCommands::importRequest(const QString &command,
                                                           const QString &path,
                                                           EVCommandResult *failure)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *failure = EVCommandResult::badInput(
            QStringLiteral("%1: cannot be read: %2").arg(path, file.errorString()));
        return std::nullopt;
    }
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        *failure = EVCommandResult::badInput(
            QStringLiteral("%1: cannot be read: %2").arg(path, file.errorString()));
        return std::nullopt;
    }
    // The request carries text; bytes that are no UTF-8 would not arrive as they were.
    if (const int line = firstLineThatIsNotUtf8(content); line > 0) {
        *failure = EVCommandResult::badInput(
            EVImportReport::located(path, line, QStringLiteral("not UTF-8 text")));
        return std::nullopt;
    }
    return QJsonObject{{QStringLiteral("command"), command},
                       {QStringLiteral("fileName"), path},
                       {QStringLiteral("content"), QString::fromUtf8(content)}};
}

EVCommandResult EVWidgetCommands::writeExportFile(const EVCommandResult &result,
                                                  const QString &path)
{
    if (!result.ok())
        return result;
    QSaveFile file(path);
    const QByteArray content = result.fileContent.toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
        return EVCommandResult::badInput(
            QStringLiteral("%1: cannot be written: %2").arg(path, file.errorString()));
    EVCommandResult written = result;
    written.fileContent = QString();
    return written;
}

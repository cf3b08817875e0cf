#include "store/EVWidgetBackup.h"

#include "store/EVCoreDataDelegate.h"
#include "store/EVCustomStyle.h"
#include "store/EVJsonLines.h"
#include "store/EVObjectContext.h"
#include "store/EVPictureFile.h"
#include "store/EVWidgetEntry.h"

#include <QColor>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <optional>

// One field of a record as a backup holds it: its name, and how its value is written, read
// (giving why a value cannot be read, or a null string) and copied from record to record.
template <typename Record>
struct EVBackupField
{
    QString name;
    std::function<QJsonValue(const Record &record)> write;
    std::function<QString(const QJsonValue &json, Record &record)> read;
    std::function<void(const Record &from, Record &to)> copy;
};

namespace {

const QString iconDataKey = QStringLiteral("iconfileData");
const QString imageDataKey = QStringLiteral("imageData");
const QString customStylesKey = QStringLiteral("customStyles");

// A float by its shortest decimal form, so that 0.7f is written 0.7 and still reads back as
// 0.7f; from_chars and to_chars ignore the locale's decimal separator.
double shortestDecimal(float value)
{
    char text[32];
    const auto written = std::to_chars(std::begin(text), std::end(text), value);
    double decimal = 0.0;
    std::from_chars(text, written.ptr, decimal);
    return decimal;
}

QJsonValue toJson(const std::optional<int> &value)
{
    return value ? QJsonValue(*value) : QJsonValue();
}

QJsonValue toJson(const std::optional<bool> &value)
{
    return value ? QJsonValue(*value) : QJsonValue();
}

QJsonValue toJson(const std::optional<float> &value)
{
    return value ? QJsonValue(shortestDecimal(*value)) : QJsonValue();
}

QJsonValue toJson(const QString &value)
{
    return value.isNull() ? QJsonValue() : QJsonValue(value);
}

QJsonValue toJson(const QByteArray &value)
{
    return value.isNull() ? QJsonValue() : QJsonValue(QString::fromLatin1(value.toBase64()));
}

QJsonValue toJson(const QDateTime &value)
{
    return value.isValid() ? QJsonValue(value.toUTC().toString(Qt::ISODateWithMs)) : QJsonValue();
}

QJsonValue toJson(const QColor &value)
{
    if (!value.isValid())
        return QJsonValue();
    // The same components as the store keeps.
    float components[4] = {};
    value.toRgb().getRgbF(&components[0], &components[1], &components[2], &components[3]);
    QJsonArray array;
    for (float component : components)
        array.append(shortestDecimal(component));
    return array;
}

QString fromJson(const QJsonValue &json, std::optional<int> &value)
{
    if (json.isNull()) {
        value.reset();
        return QString();
    }
    const double number = json.toDouble();
    if (!json.isDouble() || !(number >= std::numeric_limits<int>::min()) ||
        !(number <= std::numeric_limits<int>::max()) || std::trunc(number) != number)
        return QStringLiteral("must be a whole number or null");
    value = int(number);
    return QString();
}

QString fromJson(const QJsonValue &json, std::optional<bool> &value)
{
    if (json.isNull()) {
        value.reset();
        return QString();
    }
    if (!json.isBool())
        return QStringLiteral("must be true, false or null");
    value = json.toBool();
    return QString();
}

bool isFloat(double number)
{
    return std::isfinite(number) && std::fabs(number) <= std::numeric_limits<float>::max();
}

QString fromJson(const QJsonValue &json, std::optional<float> &value)
{
    if (json.isNull()) {
        value.reset();
        return QString();
    }
    if (!json.isDouble() || !isFloat(json.toDouble()))
        return QStringLiteral("must be a number or null");
    value = float(json.toDouble());
    return QString();
}

QString fromJson(const QJsonValue &json, QString &value)
{
    if (json.isNull()) {
        value = QString();
        return QString();
    }
    if (!json.isString())
        return QStringLiteral("must be a text or null");
    value = json.toString();
    return QString();
}

QString fromJson(const QJsonValue &json, QByteArray &value)
{
    if (json.isNull()) {
        value = QByteArray();
        return QString();
    }
    const auto decoded = QByteArray::fromBase64Encoding(json.toString().toLatin1(),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    if (!json.isString() || !decoded)
        return QStringLiteral("must be base64 text or null");
    // Empty data is not the same as none.
    value = decoded.decoded.isNull() ? QByteArray("") : decoded.decoded;
    return QString();
}

QString fromJson(const QJsonValue &json, QDateTime &value)
{
    if (json.isNull()) {
        value = QDateTime();
        return QString();
    }
    const QDateTime parsed = QDateTime::fromString(json.toString(), Qt::ISODateWithMs);
    // Without an offset the instant would depend on the zone the backup is read in.
    if (!json.isString() || !parsed.isValid() || parsed.timeSpec() == Qt::LocalTime)
        return QStringLiteral("must be a real date and time with its offset, such as "
                              "\"2025-03-01T14:30:00.000Z\", or null");
    value = parsed;
    return QString();
}

QString fromJson(const QJsonValue &json, QColor &value)
{
    if (json.isNull()) {
        value = QColor();
        return QString();
    }
    const QJsonArray array = json.toArray();
    bool numbers = json.isArray() && array.size() == 4;
    for (const QJsonValue &component : array)
        numbers = numbers && component.isDouble() && isFloat(component.toDouble());
    if (!numbers)
        return QStringLiteral("must be four numbers (red, green, blue, alpha) or null");
    value = QColor::fromRgbF(float(array.at(0).toDouble()), float(array.at(1).toDouble()),
                             float(array.at(2).toDouble()), float(array.at(3).toDouble()));
    return QString();
}

template <typename Record, typename T>
EVBackupField<Record> backupField(const char *name, T Record::*member)
{
    return EVBackupField<Record>{
        QString::fromLatin1(name),
        [member](const Record &record) { return toJson(record.*member); },
        [member](const QJsonValue &json, Record &record) { return fromJson(json, record.*member); },
        [member](const Record &from, Record &to) { to.*member = from.*member; }};
}

template <typename Record>
QJsonObject writeFields(const std::vector<EVBackupField<Record>> &fields, const Record &record)
{
    QJsonObject object;
    for (const EVBackupField<Record> &field : fields)
        object.insert(field.name, field.write(record));
    return object;
}

template <typename Record>
void copyFields(const std::vector<EVBackupField<Record>> &fields, const Record &from, Record &to)
{
    for (const EVBackupField<Record> &field : fields)
        field.copy(from, to);
}

// A picture file's contents; none when the record names no file or the file is gone.
QByteArray pictureOf(const QString &pathField)
{
    return pathField.isEmpty() ? QByteArray() : EVPictureFile::read(pathField);
}

} // namespace

// The widgets of a backup, read and checked as a whole before anything of them reaches the
// store.
class EVBackupReader
{
public:
    struct StagedStyle
    {
        std::unique_ptr<EVCustomStyle> style;
        QByteArray image;
    };
    struct StagedWidget
    {
        std::unique_ptr<EVWidgetEntry> entry;
        QByteArray icon;
        std::vector<StagedStyle> styles;
    };

    EVBackupReader(const QString &fileName, const QByteArray &content)
        : m_fileName(fileName)
        , m_content(content)
    {}

    // The staged widgets, or the message of the first error.
    bool read(std::vector<StagedWidget> *widgets, QString *error);

private:
    QString fail(const QStringList &path, const QString &text)
    {
        return EVImportReport::located(m_fileName, m_lines ? m_lines->line(path) : 1, text);
    }
    bool readWidget(const QJsonValue &json, const QStringList &path, StagedWidget *widget,
                    QString *error);
    // Reads the fields of one record and its picture; the label names it in messages.
    template <typename Record>
    bool readRecord(const QJsonObject &object, const QStringList &path, const QString &label,
                    const std::vector<EVBackupField<Record>> &fields, const QStringList &otherKeys,
                    Record &record, QString *error);
    bool readPicture(const QJsonObject &object, const QStringList &path, const QString &label,
                     const QString &key, const QString &uuid, const QString &pathField,
                     const QString &pathFieldName, QByteArray *picture, QString *error);
    bool claimUuid(const QString &uuid, const QStringList &path, const QString &label,
                   QString *error);

    QString m_fileName;
    const QByteArray &m_content;
    std::unique_ptr<EVJsonLines> m_lines;
    QSet<QString> m_uuids;
};

bool EVBackupReader::read(std::vector<StagedWidget> *widgets, QString *error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(m_content, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        *error = EVImportReport::located(
            m_fileName, EVJsonLines::lineAtOffset(m_content, parseError.offset),
            QStringLiteral("malformed JSON: %1").arg(parseError.errorString()));
        return false;
    }
    m_lines = std::make_unique<EVJsonLines>(m_content);
    if (const QStringList repeated = m_lines->repeatedMember(); !repeated.isEmpty()) {
        *error = EVImportReport::located(
            m_fileName, m_lines->repeatedMemberLine(),
            QStringLiteral("the field \"%1\" appears twice in one object").arg(repeated.last()));
        return false;
    }
    if (!document.isObject()) {
        *error = fail({}, QStringLiteral("not a Tallyvane backup: it holds no JSON object"));
        return false;
    }

    const QJsonObject root = document.object();
    const QString format = root.value(QLatin1String("format")).toString();
    if (format != EVWidgetBackup::formatName) {
        *error = fail({QStringLiteral("format")},
                      QStringLiteral("not a Tallyvane backup: \"format\" must be \"%1\"")
                          .arg(EVWidgetBackup::formatName));
        return false;
    }
    for (auto member = root.begin(); member != root.end(); ++member) {
        const QString key = member.key();
        if (key != QLatin1String("format") && key != QLatin1String("version") &&
            key != QLatin1String("widgets")) {
            *error = fail({key}, QStringLiteral("unknown field \"%1\"").arg(key));
            return false;
        }
    }
    const QJsonValue version = root.value(QLatin1String("version"));
    if (!version.isDouble() || version.toDouble() != std::trunc(version.toDouble()) ||
        version.toDouble() < 1) {
        *error = fail({QStringLiteral("version")},
                      QStringLiteral("\"version\" must be a whole number from 1"));
        return false;
    }
    if (version.toDouble() > EVWidgetBackup::formatVersion) {
        *error = fail({QStringLiteral("version")},
                      QStringLiteral("written by a newer Tallyvane: backup version %1, this "
                                     "version reads version %2")
                          .arg(version.toDouble())
                          .arg(EVWidgetBackup::formatVersion));
        return false;
    }
    const QJsonValue list = root.value(QLatin1String("widgets"));
    if (!list.isArray()) {
        *error = fail({QStringLiteral("widgets")},
                      QStringLiteral("\"widgets\" must be a list of widgets"));
        return false;
    }

    const QJsonArray array = list.toArray();
    for (qsizetype i = 0; i < array.size(); ++i) {
        StagedWidget widget;
        if (!readWidget(array.at(i), {QStringLiteral("widgets"), QString::number(i)}, &widget,
                        error))
            return false;
        widgets->push_back(std::move(widget));
    }
    return true;
}

bool EVBackupReader::readWidget(const QJsonValue &json, const QStringList &path,
                                StagedWidget *widget, QString *error)
{
    const QString label = QStringLiteral("widget %1").arg(path.last().toInt() + 1);
    if (!json.isObject()) {
        *error = fail(path, QStringLiteral("%1 must be an object").arg(label));
        return false;
    }
    const QJsonObject object = json.toObject();
    widget->entry = std::make_unique<EVWidgetEntry>();
    EVWidgetEntry &entry = *widget->entry;
    if (!readRecord(object, path, label, EVWidgetBackup::widgetEntryFields(),
                    {iconDataKey, customStylesKey}, entry, error) ||
        !readPicture(object, path, label, iconDataKey, entry.uuid(), entry.iconFilePath(),
                     QStringLiteral("iconFilePath"), &widget->icon, error))
        return false;

    QStringList stylesPath = path;
    stylesPath.append(customStylesKey);
    const QJsonValue styles = object.value(customStylesKey);
    if (!styles.isArray()) {
        *error = fail(stylesPath,
                      QStringLiteral("%1: \"customStyles\" must be a list of styles").arg(label));
        return false;
    }
    const QJsonArray array = styles.toArray();
    for (qsizetype i = 0; i < array.size(); ++i) {
        QStringList stylePath = stylesPath;
        stylePath.append(QString::number(i));
        const QString styleLabel = QStringLiteral("%1, custom style %2").arg(label).arg(i + 1);
        if (!array.at(i).isObject()) {
            *error = fail(stylePath, QStringLiteral("%1 must be an object").arg(styleLabel));
            return false;
        }
        const QJsonObject styleObject = array.at(i).toObject();
        StagedStyle staged{std::make_unique<EVCustomStyle>(), QByteArray()};
        if (!readRecord(styleObject, stylePath, styleLabel, EVWidgetBackup::customStyleFields(),
                        {imageDataKey}, *staged.style, error) ||
            !readPicture(styleObject, stylePath, styleLabel, imageDataKey, staged.style->uuid(),
                         staged.style->imagePath(), QStringLiteral("imagePath"), &staged.image,
                         error))
            return false;
        widget->styles.push_back(std::move(staged));
    }
    return true;
}

template <typename Record>
bool EVBackupReader::readRecord(const QJsonObject &object, const QStringList &path,
                                const QString &label,
                                const std::vector<EVBackupField<Record>> &fields,
                                const QStringList &otherKeys, Record &record, QString *error)
{
    QStringList known;
    for (const EVBackupField<Record> &field : fields)
        known.append(field.name);
    known.append(otherKeys);
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (!known.contains(member.key())) {
            *error = fail(path + QStringList{member.key()},
                          QStringLiteral("%1: unknown field \"%2\"").arg(label, member.key()));
            return false;
        }
    }
    for (const QString &key : std::as_const(known)) {
        if (!object.contains(key)) {
            *error = fail(path, QStringLiteral("%1: the field \"%2\" is missing").arg(label, key));
            return false;
        }
    }
    for (const EVBackupField<Record> &field : fields) {
        const QString why = field.read(object.value(field.name), record);
        if (!why.isNull()) {
            *error = fail(path + QStringList{field.name},
                          QStringLiteral("%1: \"%2\" %3").arg(label, field.name, why));
            return false;
        }
    }
    return claimUuid(record.uuid(), path + QStringList{QStringLiteral("uuid")}, label, error);
}

bool EVBackupReader::claimUuid(const QString &uuid, const QStringList &path, const QString &label,
                               QString *error)
{
    // Identifiers name picture files, so one from a file must be a plain file name.
    if (!EVPictureFile::isFileName(uuid)) {
        *error = fail(path, QStringLiteral("%1: \"uuid\" must be a name without \"/\"").arg(label));
        return false;
    }
    // Identifiers name the picture files of widgets and styles alike, so no two may share one.
    if (m_uuids.contains(uuid)) {
        *error = fail(
            path, QStringLiteral("%1: the uuid %2 appears twice in this file").arg(label, uuid));
        return false;
    }
    m_uuids.insert(uuid);
    return true;
}

bool EVBackupReader::readPicture(const QJsonObject &object, const QStringList &path,
                                 const QString &label, const QString &key, const QString &uuid,
                                 const QString &pathField, const QString &pathFieldName,
                                 QByteArray *picture, QString *error)
{
    const QString why = fromJson(object.value(key), *picture);
    if (!why.isNull()) {
        *error =
            fail(path + QStringList{key}, QStringLiteral("%1: \"%2\" %3").arg(label, key, why));
        return false;
    }
    // A record's picture file is always named by its uuid; any other name could reach files
    // that are not the record's own.
    if (!pathField.isEmpty() && pathField != uuid) {
        *error = fail(path + QStringList{pathFieldName},
                      QStringLiteral("%1: \"%2\" must be empty, null or the record's uuid")
                          .arg(label, pathFieldName));
        return false;
    }
    if (!picture->isNull() && pathField != uuid) {
        *error = fail(path + QStringList{key},
                      QStringLiteral("%1: a picture needs \"%2\" to be the record's uuid")
                          .arg(label, pathFieldName));
        return false;
    }
    return true;
}

const std::vector<EVBackupField<EVWidgetEntry>> &EVWidgetBackup::widgetEntryFields()
{
    using E = EVWidgetEntry;
    static const std::vector<EVBackupField<E>> fields{
        backupField("uuid", &E::m_uuid),
        backupField("countdownUnit", &E::m_countdownUnit),
        backupField("dateformat", &E::m_dateformat),
        backupField("eventCreationDate", &E::m_eventCreationDate),
        backupField("eventDate", &E::m_eventDate),
        backupField("eventTitle", &E::m_eventTitle),
        backupField("iconfile", &E::m_iconfile),
        backupField("iconFilePath", &E::m_iconFilePath),
        backupField("ignoredDayType", &E::m_ignoredDayType),
        backupField("intervalAlertUnit", &E::m_intervalAlertUnit),
        backupField("intervalBeforeAlert", &E::m_intervalBeforeAlert),
        backupField("keepTop", &E::m_keepTop),
        backupField("lockWidget", &E::m_lockWidget),
        backupField("note", &E::m_note),
        backupField("priority", &E::m_priority),
        backupField("soundAlert", &E::m_soundAlert),
        backupField("styleIndex", &E::m_styleIndex),
        backupField("textcolor", &E::m_textcolor),
        backupField("timeElement", &E::m_timeElement),
        backupField("widgetFrameDesc", &E::m_widgetFrameDesc),
    };
    return fields;
}

const std::vector<EVBackupField<EVCustomStyle>> &EVWidgetBackup::customStyleFields()
{
    using S = EVCustomStyle;
    static const std::vector<EVBackupField<S>> fields{
        backupField("uuid", &S::m_uuid),       backupField("color", &S::m_color),
        backupField("image", &S::m_image),     backupField("imagePath", &S::m_imagePath),
        backupField("opacity", &S::m_opacity), backupField("sid", &S::m_sid),
        backupField("type", &S::m_type),
    };
    return fields;
}

QByteArray EVWidgetBackup::exportEntries(const QList<EVWidgetEntry *> &entries)
{
    QJsonArray widgets;
    for (const EVWidgetEntry *entry : entries) {
        QJsonObject widget = writeFields(widgetEntryFields(), *entry);
        widget.insert(iconDataKey, toJson(pictureOf(entry->iconFilePath())));
        QJsonArray styles;
        for (const EVCustomStyle *style : entry->customStyles()) {
            QJsonObject object = writeFields(customStyleFields(), *style);
            object.insert(imageDataKey, toJson(pictureOf(style->imagePath())));
            styles.append(object);
        }
        widget.insert(customStylesKey, styles);
        widgets.append(widget);
    }
    const QJsonObject root{{QStringLiteral("format"), formatName},
                           {QStringLiteral("version"), formatVersion},
                           {QStringLiteral("widgets"), widgets}};
    return QJsonDocument(root).toJson(QJsonDocument::Indented);
}

EVImportReport EVWidgetBackup::importInto(EVCoreDataDelegate *store, const QString &fileName,
                                          const QByteArray &content)
{
    std::vector<EVBackupReader::StagedWidget> widgets;
    QString error;
    const QByteArray text = EVImportReport::withoutByteOrderMark(content);
    if (!EVBackupReader(fileName, text).read(&widgets, &error)) {
        EVImportReport report;
        report.error = error;
        return report;
    }
    EVObjectContext *context = store ? store->managedObjectContext() : nullptr;
    if (!context)
        return EVImportReport::storeUnavailable(fileName);

    QSet<QString> taken = context->usedUuids();

    EVImportReport report;
    std::vector<const EVBackupReader::StagedWidget *> accepted;
    for (const EVBackupReader::StagedWidget &widget : widgets) {
        const QString uuid = widget.entry->uuid();
        if (taken.contains(uuid)) {
            report.skipped.append(
                QStringLiteral("%1: a widget with this identifier already exists").arg(uuid));
            continue;
        }
        const auto styleTaken =
            std::find_if(widget.styles.begin(), widget.styles.end(), [&taken](const auto &staged) {
                return taken.contains(staged.style->uuid());
            });
        if (styleTaken != widget.styles.end()) {
            report.skipped.append(QStringLiteral("%1: its custom style %2 already exists")
                                      .arg(uuid, styleTaken->style->uuid()));
            continue;
        }
        accepted.push_back(&widget);
    }

    // Pictures first: should one not be written, the files written so far go again and the
    // store has not been touched.
    QStringList written;
    const auto writePicture = [&written](const QString &uuid, const QByteArray &data) {
        if (!EVPictureFile::replace(uuid, data))
            return false;
        written.append(uuid);
        return true;
    };
    for (const EVBackupReader::StagedWidget *widget : accepted) {
        bool ok = writePicture(widget->entry->uuid(), widget->icon);
        for (const auto &staged : widget->styles)
            ok = ok && writePicture(staged.style->uuid(), staged.image);
        if (!ok) {
            for (const QString &uuid : std::as_const(written))
                EVPictureFile::replace(uuid, QByteArray());
            return EVImportReport::failure(
                fileName, 0,
                QStringLiteral("the pictures of widget %1 cannot be written to the picture folder")
                    .arg(widget->entry->uuid()));
        }
    }

    for (const EVBackupReader::StagedWidget *widget : accepted) {
        EVWidgetEntry *entry = context->insertWidgetEntry();
        copyFields(widgetEntryFields(), *widget->entry, *entry);
        for (const auto &staged : widget->styles) {
            EVCustomStyle *style = context->insertCustomStyle();
            copyFields(customStyleFields(), *staged.style, *style);
            entry->addCustomStylesObject(style);
        }
        report.added.append(entry);
    }
    return report;
}

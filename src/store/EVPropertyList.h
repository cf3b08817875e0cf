#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>
#include <variant>

// A property list held as a table of objects that refer to one another by position, the way
// the binary form lays it out; the XML form is read into the same table. Containers hold
// positions rather than copies, so shared and even cyclic references cost nothing until a
// reader follows them, and every reference may point outside the table.
class EVPropertyList
{
public:
    enum class Kind {
        Null,
        Boolean,
        Integer,
        Real,
        Date,
        Data,
        String,
        Uid,
        Array,
        Set,
        Dictionary
    };

    class Object
    {
    public:
        static Object null() { return Object(Kind::Null); }
        static Object boolean(bool value);
        static Object integer(qint64 value);
        // Values above the signed 64-bit range.
        static Object unsignedInteger(quint64 value);
        static Object real(double value);
        // Seconds since 2001-01-01 00:00:00 UTC.
        static Object date(double secondsSinceReferenceDate);
        static Object data(const QByteArray &value);
        static Object string(const QString &value);
        static Object uid(quint64 value);
        static Object array(const QList<quint64> &members);
        static Object set(const QList<quint64> &members);
        static Object dictionary(const QList<quint64> &keys, const QList<quint64> &values);

        Kind kind() const { return m_kind; }
        bool toBool() const { return m_bits != 0; }
        // The integer's 64 bits; read as unsigned when isUnsigned().
        qint64 toInteger() const { return qint64(m_bits); }
        bool isUnsigned() const { return m_unsigned; }
        // A real's value, or a date's seconds since 2001-01-01 00:00:00 UTC.
        double toReal() const;
        quint64 toUid() const { return m_bits; }
        QByteArray toData() const;
        QString toString() const;
        // An array's or a set's members; a dictionary's keys followed by as many values.
        QList<quint64> references() const;
        // Entries of a dictionary.
        qsizetype dictionaryCount() const { return references().size() / 2; }

        bool operator==(const Object &other) const = default;

    private:
        explicit Object(Kind kind)
            : m_kind(kind)
        {}

        Kind m_kind;
        bool m_unsigned = false;
        // A boolean, an integer, a UID, or the bit pattern of a real or a date.
        quint64 m_bits = 0;
        std::variant<std::monostate, QByteArray, QString, QList<quint64>> m_payload;
    };

    // Dates are kept as seconds since 2001-01-01 00:00:00 UTC. A moment too far from then for a
    // date of this program reads as an invalid date.
    static QDateTime dateFromReferenceSeconds(double seconds);
    static double referenceSecondsFromDate(const QDateTime &date);

    // Reads the binary form ("bplist00") or the XML form; nothing when the bytes are neither
    // or are damaged anywhere.
    static std::optional<EVPropertyList> fromData(const QByteArray &data);

    qsizetype count() const { return m_objects.size(); }
    // The object at that position; null when there is none.
    const Object *object(quint64 index) const;
    const QList<Object> &objects() const { return m_objects; }
    quint64 topObject() const { return m_topObject; }
    const Object *top() const { return object(m_topObject); }

    // The position of a dictionary's value under a string key; nothing when the key is absent.
    std::optional<quint64> valueIndex(const Object &dictionary, const QString &key) const;
    // The value itself; null when the key is absent or its value out of the table.
    const Object *value(const Object &dictionary, const QString &key) const;

    quint64 append(const Object &object);
    void replace(quint64 index, const Object &object);
    void setTopObject(quint64 index) { m_topObject = index; }

    bool operator==(const EVPropertyList &other) const = default;

private:
    QList<Object> m_objects;
    quint64 m_topObject = 0;
};

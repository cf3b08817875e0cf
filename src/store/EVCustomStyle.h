#pragma once

#include "store/EVManagedRecord.h"

#include <QByteArray>
#include <QColor>
#include <QString>

#include <optional>

class EVWidgetEntry;

// A background style the user composed for one widget: a colour or a picture, with an opacity.
class EVCustomStyle : public EVManagedRecord
{
public:
    EVCustomStyle() = default;
    ~EVCustomStyle() = default;

    // What resetDefault sets, and what a stored colour that cannot be used takes.
    static QColor defaultColor() { return QColor(Qt::black); }

    void resetDefault();

    QColor color() const { return m_color; }
    void setColor(const QColor &value) { assign(m_color, value); }
    QByteArray image() const { return m_image; }
    void setImage(const QByteArray &value) { assign(m_image, value); }
    QString imagePath() const { return m_imagePath; }
    void setImagePath(const QString &value) { assign(m_imagePath, value); }
    float opacity() const { return m_opacity.value_or(0.0f); }
    void setOpacity(std::optional<float> value) { assign(m_opacity, value); }
    int sid() const { return m_sid.value_or(0); }
    void setSid(std::optional<int> value) { assign(m_sid, value); }
    int type() const { return m_type.value_or(0); }
    void setType(std::optional<int> value) { assign(m_type, value); }
    QString uuid() const { return m_uuid; }
    void setUuid(const QString &value) { assign(m_uuid, value); }
    EVWidgetEntry *widget() const { return m_widget; }
    void setWidget(EVWidgetEntry *value) { assign(m_widget, value); }

    // The picture's data, kept as a file in the picture folder named by the uuid.
    QByteArray imageData();
    void setImageData(const QByteArray &data);

private:
    friend class EVStoreFile;
    friend class EVWidgetBackup;

    QColor m_color;
    QByteArray m_image;
    QString m_imagePath;
    std::optional<float> m_opacity;
    std::optional<int> m_sid;
    std::optional<int> m_type;
    QString m_uuid;
    EVWidgetEntry *m_widget = nullptr;
};

#pragma once

#include <QImage>
#include <QString>

// One thumbnail of the style browser: its picture, and the identifier that is both the
// browser's identity of the item and its title.
class EVImageBrowserItem
{
public:
    EVImageBrowserItem() = default;
    EVImageBrowserItem(const QString &imageID, const QImage &image)
        : m_imageID(imageID)
        , m_image(image)
    {}

    QString imageID() const { return m_imageID; }
    void setImageID(const QString &imageID) { m_imageID = imageID; }
    QImage image() const { return m_image; }
    void setImage(const QImage &image) { m_image = image; }
    // Items never change once made: a changed picture is a new item.
    quint64 version() const { return m_version; }

    QString imageUID() const { return m_imageID; }
    QString imageTitle() const { return m_imageID; }

private:
    QString m_imageID;
    QImage m_image;
    quint64 m_version = 0;
};

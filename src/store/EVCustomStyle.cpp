#include "store/EVCustomStyle.h"

#include "store/EVPictureFile.h"

void EVCustomStyle::resetDefault()
{
    setUuid(newUuid());
    setColor(defaultColor());
    setType(0);
}

QByteArray EVCustomStyle::imageData()
{
    return EVPictureFile::readMigrating({m_uuid, m_imagePath, m_image,
                                         [this](const QByteArray &data) { setImageData(data); },
                                         [this] { setImage(QByteArray()); }});
}

void EVCustomStyle::setImageData(const QByteArray &data)
{
    if (const auto path = EVPictureFile::replace(m_uuid, data))
        setImagePath(*path);
    // The file changed even when its name did not.
    markChanged();
}

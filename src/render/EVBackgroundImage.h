#pragma once

#include <QImage>

// A widget's background picture, built at the view's size, with the opacity at which the view
// draws it. A plain carrier: the view scales and fades, the style routines build.
class EVBackgroundImage
{
public:
    EVBackgroundImage() = default;
    EVBackgroundImage(const QImage &image, double transparent)
        : m_image(image)
        , m_transparent(transparent)
    {}

    QImage image() const { return m_image; }
    void setImage(const QImage &image) { m_image = image; }

    // 0.0 draws nothing, 1.0 draws the picture as it is.
    double transparent() const { return m_transparent; }
    void setTransparent(double transparent) { m_transparent = transparent; }

private:
    QImage m_image;
    double m_transparent = 1.0;
};

#pragma once

#include "render/EVBackgroundImage.h"
#include "store/EVWidgetEntry.h"

#include <QColor>
#include <QImage>
#include <QSizeF>

#include <variant>

class EVCustomStyle;

// Turns background styles into pictures: the twelve built-in styles (0 to 11) and the styles the
// user composes from a colour or a picture. Every picture is a rounded rectangle of corner radius
// 10 on a transparent canvas, which is what gives widgets their rounded corners.
// Main thread only: the caches are not locked.
class EVTallyView
{
public:
    // What a custom style is made of. An invalid colour or a null picture draws nothing.
    using ColorOrImage = std::variant<QColor, QImage>;

    static constexpr int builtinStyleCount = EVWidgetEntry::builtinStyleCount;
    // The radial gradient, also the style new widgets start with.
    static constexpr int gradientStyle = 9;
    static constexpr qreal cornerRadius = 10.0;

    EVTallyView() = delete;

    // The built-in style's thumbnail for the style browser. Numbers above 11 give style 9's
    // gradient. Cached by style number alone: the first picture made for a number is returned
    // for every later request, whatever size is asked for (the browser always asks 60 x 40).
    static QImage imageForStyle(quint64 style, const QSizeF &size);

    // The built-in style's widget background; the translucent styles are more transparent here
    // than in their thumbnails. Cached by style number alone, like the thumbnails: the view
    // scales the background to its bounds when it draws it.
    static QImage buildinBackgroundForStyle(quint64 style, const QSizeF &size);

    // A custom style's widget background, opaque apart from the colour's own alpha. The style's
    // opacity is applied when the view draws it. Made anew on every call.
    static QImage createBackgroundFromColorOrImage(const ColorOrImage &colorOrImage,
                                                   const QSizeF &size);

    // A custom style's thumbnail with the opacity alpha baked in. Made anew on every call.
    static QImage imageFromColorOrImage(const ColorOrImage &colorOrImage, float alpha,
                                        const QSizeF &size);

    // The colour of a colour style (type 0), or the decoded picture of a picture style (any
    // other type); a picture that cannot be decoded is a null image.
    static ColorOrImage colorOrImageOfCustomStyle(EVCustomStyle &style);

    // The custom style the entry's styleIndex picks; none for a built-in style or a position the
    // entry does not have.
    static EVCustomStyle *customStyleOfWidget(const EVWidgetEntry &entry);

    // What the widget view of entry, sized size, draws under its texts: a custom style (styleIndex
    // 12 and above picks customStyles at styleIndex - 12) at the style's opacity, or a built-in
    // style at opacity 1.0, its translucency being in the picture. A styleIndex naming a custom
    // style the entry does not have gives a holder without a picture.
    static EVBackgroundImage backgroundImageForWidget(const EVWidgetEntry &entry,
                                                      const QSizeF &size);

    // The style browser's thumbnail of a custom style, at the style's opacity.
    static QImage thumbnailForCustomStyle(EVCustomStyle &style, const QSizeF &size);
};

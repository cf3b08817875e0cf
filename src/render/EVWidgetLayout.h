#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>

// Where the widget view puts its parts. Every box is a fixed fraction of the view's bounds, so
// that a widget of any size keeps its proportions. Qt coordinates: y grows downwards.
class EVWidgetLayout
{
public:
    enum class TextElement { Title, Date, MajorCountdown, SecondCountdown };

    EVWidgetLayout() = delete;

    // The box a text is centred in. With an icon the boxes leave the icon column free (title at
    // 13 % of the width, date at 20 %, both countdown lines at 23 %); without one each box is
    // centred horizontally, keeping its width. The title's and date's boxes overlap by 2 % of
    // the height, as do the two countdown lines'.
    static QRectF textBox(TextElement element, const QRectF &bounds, bool withIcon);

    // The text's font size in pixels: its box's height less 13, and less 8 again for a major line
    // in clock form (one containing ':'). Zero or negative in small views, where the text is
    // left out.
    static qreal fontPixelSize(TextElement element, const QRectF &bounds, const QString &text);

    // The line a text is drawn on: across the whole box, lineHeight high, centred vertically.
    // Every text is centred by the title's line height, so that the four lines sit alike.
    static QRectF lineRect(const QRectF &box, qreal lineHeight);

    // The column on the left that holds the icon: 6 % in from the left edge, 15 % of the width
    // wide, the whole height high.
    static QRectF iconColumn(const QRectF &bounds);

    // Where an icon of iconSize (in points) is drawn: the column itself when the icon has the
    // column's whole-point size, else the icon fitted into the column keeping its aspect ratio
    // (small icons are scaled up) and centred. Either way 10 points lower, which sets the icon
    // off against the texts.
    static QRectF iconRect(const QRectF &bounds, const QSizeF &iconSize);
};

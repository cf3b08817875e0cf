#pragma once

#include "render/EVBackgroundImage.h"
#include "render/EVWidgetLayout.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QString>
#include <QWidget>

#include <array>
#include <optional>

class QPainter;

// The content of a widget window: the background, the icon, and the event's title, date and two
// countdown lines, laid out as fixed fractions of the view's size (EVWidgetLayout). It computes
// nothing: the window's controller fills in the properties and then calls update(), since the
// setters do not repaint by themselves.
class EVWidgetView : public QWidget
{
    Q_OBJECT

public:
    // The view of a widget window's interface file: "LucidaGrande" texts in white, no icon.
    explicit EVWidgetView(QWidget *parent = nullptr);
    // A view made in code at frame: the "clock" icon and white, but no font name, so that its
    // texts fall back to the widget's own font and palette, left-aligned.
    explicit EVWidgetView(const QRectF &frame, QWidget *parent = nullptr);

    // A null string is no text: nothing is drawn for it.
    QString title() const { return m_title; }
    void setTitle(const QString &title) { m_title = title; }
    QString date() const { return m_date; }
    void setDate(const QString &date) { m_date = date; }
    QString majorCountdown() const { return m_majorCountdown; }
    void setMajorCountdown(const QString &majorCountdown) { m_majorCountdown = majorCountdown; }
    QString secondCountdown() const { return m_secondCountdown; }
    void setSecondCountdown(const QString &secondCountdown) { m_secondCountdown = secondCountdown; }

    // A null image is no icon: the texts then take the whole width.
    QImage icon() const { return m_icon; }
    void setIcon(const QImage &icon) { m_icon = icon; }

    EVBackgroundImage background() const { return m_background; }
    void setBackground(const EVBackgroundImage &background) { m_background = background; }

    // An invalid colour draws the texts in the widget's palette, left-aligned and not shortened.
    QColor textColor() const { return m_textColor; }
    void setTextColor(const QColor &textColor) { m_textColor = textColor; }

    // A family name such as "LucidaGrande" (see EVFontFamily). The title and the major line use
    // its bold face.
    QString textFontName() const { return m_textFontName; }
    void setTextFontName(const QString &textFontName) { m_textFontName = textFontName; }

    // Where the two countdown lines are drawn: what has to be painted again when only they
    // changed.
    QRect countdownLinesRect() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    // The font a text element is drawn in and its metrics, kept while its inputs stay the same:
    // making them is a good part of a repaint.
    struct TextFont
    {
        QString family;
        int pixelSize = 0;
        QFont widgetFont;
        QFont font;
        QFontMetricsF metrics{QFont()};
    };
    const TextFont &textFont(EVWidgetLayout::TextElement element, const QString &family,
                             int pixelSize);
    // The icon scaled to where it is drawn, kept until the icon, the view's size or the pixel
    // ratio changes.
    struct ScaledIcon
    {
        qint64 icon = 0;
        QSize pixels;
        qreal pixelRatio = 0;
        QImage image;
    };

    void drawBackground(QPainter &painter) const;
    void drawIcon(QPainter &painter, const QRect &dirty);
    void drawText(QPainter &painter, EVWidgetLayout::TextElement element, const QString &text,
                  const QRect &dirty);

    QString m_title;
    QString m_date;
    QString m_majorCountdown;
    QString m_secondCountdown;
    QImage m_icon;
    EVBackgroundImage m_background;
    QColor m_textColor;
    QString m_textFontName;
    std::array<std::optional<TextFont>, 4> m_textFonts;
    ScaledIcon m_scaledIcon;
};

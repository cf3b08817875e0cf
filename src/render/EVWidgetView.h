#pragma once

#include "render/EVBackgroundImage.h"
#include "render/EVWidgetLayout.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QString>
#include <QWidget>

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
    // What the picture of the still layers was made from.
    struct StillLayersKey
    {
        qint64 background;
        double transparent;
        qint64 icon;
        QString title;
        bool titleIsNull;
        QString date;
        bool dateIsNull;
        QColor textColor;
        QString textFontName;
        QFont font;
        QSize size;
        qreal pixelRatio;
        bool operator==(const StillLayersKey &) const = default;
    };
    const QImage &stillLayers(qreal pixelRatio);

    void drawBackground(QPainter &painter) const;
    void drawIcon(QPainter &painter) const;
    void drawText(QPainter &painter, EVWidgetLayout::TextElement element,
                  const QString &text) const;

    QString m_title;
    QString m_date;
    QString m_majorCountdown;
    QString m_secondCountdown;
    QImage m_icon;
    EVBackgroundImage m_background;
    QColor m_textColor;
    QString m_textFontName;
    QImage m_stillLayers;
    std::optional<StillLayersKey> m_stillLayersKey;
};

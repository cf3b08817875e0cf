#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

// One line of a banner: left-aligned text in one font and colour, cut short with an ellipsis
// where it does not fit. It cannot be selected or edited and has no border or background.
class FLBannerTextField : public QWidget
{
    Q_OBJECT

public:
    FLBannerTextField(int pixelSize, const QColor &textColor, QWidget *parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString &text);

    QColor textColor() const { return m_textColor; }

    // The text as it is drawn at the field's width.
    QString displayedText() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_text;
    QColor m_textColor;
};

#pragma once

#include <QImage>
#include <QRect>
#include <QSize>
#include <QString>
#include <QTransform>
#include <QWidget>

class FLBannerTextField;
class QAbstractButton;
class QLabel;
class QPushButton;

// The buttons' titles where the notification names none.
inline const QString FLActionButtonDefaultTitle = QStringLiteral("Show");
inline const QString FLOtherButtonDefaultTitle = QStringLiteral("Close");

// The window of one banner: a borderless, see-through 328 x 100 panel at the top of the window
// stack that never takes focus. Over the panel picture lie the application's icon and three
// lines of text, over those an invisible button that takes every click on the body, and over
// that the "Close" and "Show" buttons.
class FLBannerWindow : public QWidget
{
    Q_OBJECT

public:
    static constexpr QSize bannerSize{328, 100};
    // Banners stack above ordinary windows from this level up.
    static constexpr int statusWindowLevel = 25;

    // Text frames with the buttons shown, and widened into the buttons' room without them.
    static constexpr QRect alertTitleFrame{56, 20, 180, 18};
    static constexpr QRect alertSubtitleFrame{56, 38, 190, 18};
    static constexpr QRect alertInformativeFrame{56, 56, 190, 18};
    static constexpr QRect bannerTitleFrame{56, 20, 240, 18};
    static constexpr QRect bannerSubtitleFrame{56, 38, 250, 18};
    static constexpr QRect bannerInformativeFrame{56, 56, 250, 18};

    explicit FLBannerWindow(QWidget *parent = nullptr);

    // The panel picture every banner shows: the "banner2lines" artwork stretched to the banner's
    // size with 30-point caps, made once per process. Null when the artwork is missing.
    static QImage backgroundImage();

    // The view that holds everything the banner shows; its layer carries the swing.
    QWidget *contentView() const { return m_contentView; }
    QLabel *backgroundView() const { return m_backgroundView; }
    QLabel *iconView() const { return m_iconView; }
    FLBannerTextField *titleField() const { return m_titleField; }
    FLBannerTextField *subtitleField() const { return m_subtitleField; }
    FLBannerTextField *informativeField() const { return m_informativeField; }
    QAbstractButton *bgButton() const { return m_bgButton; }
    QPushButton *actionButton() const { return m_actionButton; }
    QPushButton *otherButton() const { return m_otherButton; }

    // The text frames for a banner with buttons (false) or without them (true).
    void setTextFieldsWidened(bool widened);

    // Where the window stands among banners: higher levels lie on top. The banners' owner
    // raises them in the order of their levels.
    int level() const { return m_level; }
    void setLevel(int level) { m_level = level; }

public Q_SLOTS:
    // Where no compositing manager blends see-through pixels with the desktop, they would show
    // black: the window is then cut to the panel's shape, as the content is drawn through the
    // transform (a swing in progress); elsewhere this does nothing.
    void fitShapeTo(const QTransform &contentTransform);

protected:
    void showEvent(QShowEvent *event) override;

private:
    QWidget *m_contentView;
    QLabel *m_backgroundView;
    QLabel *m_iconView;
    FLBannerTextField *m_titleField;
    FLBannerTextField *m_subtitleField;
    FLBannerTextField *m_informativeField;
    QAbstractButton *m_bgButton;
    QPushButton *m_actionButton;
    QPushButton *m_otherButton;
    int m_level = statusWindowLevel;
    bool m_cutToShape = false;
};

#pragma once

#include "notify/FLDateComponents.h"
#include "notify/FLViewAnimation.h"

#include <QDateTime>
#include <QObject>
#include <QPointF>
#include <QString>
#include <QTimeZone>
#include <QVariantMap>

#include <memory>
#include <optional>

class FLBannerWindow;
class FLUserNotificationDelegate;
class QVariantAnimation;

// Which part of a banner was clicked.
enum FLUserNotificationActivationType : qint64 {
    FLUserNotificationActivationTypeNone = 0, // the other ("Close") button
    FLUserNotificationActivationTypeContentsClicked = 1,
    FLUserNotificationActivationTypeActionButtonClicked = 2, // the action ("Show") button
};

// One user notification: its texts and dates, and the banner window that shows it at the top
// right of the main screen. The banner slides and fades on request; while one of its
// animations runs it drops every further request, and it asks its delegate before it reports
// a click.
class FLUserNotification : public QObject
{
    Q_OBJECT

public:
    // Each of the banner's animations takes this long.
    static constexpr int animationDuration = 500;

    // Builds the banner window, not shown.
    explicit FLUserNotification(QObject *parent = nullptr);
    ~FLUserNotification() override;

    bool isPresented() const { return m_presented; }
    // Notifications never come from elsewhere here; kept for the shape of platform records.
    bool isRemote() const { return false; }
    bool hasActionButton() const { return m_hasActionButton; }
    void setHasActionButton(bool hasActionButton) { m_hasActionButton = hasActionButton; }
    // On screen: from the start of a move-in until the start of a move-out or fade-out.
    bool isVisible() const { return m_visible; }
    void setVisible(bool visible) { m_visible = visible; }
    bool isAnimating() const { return m_animating; }
    void setAnimating(bool animating) { m_animating = animating; }

    // Texts; a null string is unset.
    QString title() const { return m_title; }
    void setTitle(const QString &title) { m_title = title; }
    QString subtitle() const { return m_subtitle; }
    void setSubtitle(const QString &subtitle) { m_subtitle = subtitle; }
    QString informativeText() const { return m_informativeText; }
    void setInformativeText(const QString &text) { m_informativeText = text; }
    QString actionButtonTitle() const { return m_actionButtonTitle; }
    void setActionButtonTitle(const QString &title) { m_actionButtonTitle = title; }
    QString otherButtonTitle() const { return m_otherButtonTitle; }
    void setOtherButtonTitle(const QString &title) { m_otherButtonTitle = title; }
    // Carried for the client, never played or read.
    QString soundName() const { return m_soundName; }
    void setSoundName(const QString &soundName) { m_soundName = soundName; }
    QVariantMap userInfo() const { return m_userInfo; }
    void setUserInfo(const QVariantMap &userInfo) { m_userInfo = userInfo; }
    QTimeZone deliveryTimeZone() const { return m_deliveryTimeZone; }
    void setDeliveryTimeZone(const QTimeZone &timeZone) { m_deliveryTimeZone = timeZone; }

    // When a scheduled notification falls due; invalid means at once.
    QDateTime deliveryDate() const { return m_deliveryDate; }
    void setDeliveryDate(const QDateTime &date) { m_deliveryDate = date; }
    // How long after each presentation it comes again.
    std::optional<FLDateComponents> deliveryRepeatInterval() const { return m_repeatInterval; }
    void setDeliveryRepeatInterval(const std::optional<FLDateComponents> &interval)
    {
        m_repeatInterval = interval;
    }
    // The moment of the latest presentation.
    QDateTime actualDeliveryDate() const { return m_actualDeliveryDate; }
    // The kind of the latest accepted click (FLUserNotificationActivationType).
    qint64 activationType() const { return m_activationType; }

    FLBannerWindow *showWindow() const { return m_window.get(); }
    // The latest slide or fade the banner started.
    FLViewAnimation *viewAnimation() const { return m_viewAnimation; }
    // The swing of a move-in while it runs.
    QVariantAnimation *rotationAnimation() const { return m_rotationAnimation; }

    FLUserNotificationDelegate *delegate() const { return m_delegate; }
    void setDelegate(FLUserNotificationDelegate *delegate) { m_delegate = delegate; }

    // Marks the notification presented, now.
    void presentedNotification();
    // Fills the banner's texts and lays it out for a center type (FLUserNotificationCenterType):
    // type 1 shows no buttons and gives the texts their room.
    void setup(qint64 centerType);
    // A click on one of the banner's buttons.
    void buttonClick(QObject *sender);

    // Where a banner of that size lies when it has moved in: flush right, just under the top of
    // the main screen.
    static QPointF bannerOrigin(const QSizeF &size);

    // Swings the banner down about its bottom edge into the top right corner, fading it in.
    void moveInAnimation();
    // Slides the banner so that its top-left corner comes to point.
    void moveAnimation(const QPointF &point);
    // Slides the banner right by half its width, fading it out.
    void moveOutAnimation();
    // Fades the banner out where it stands.
    void fadeOutAnimation();
    // The end of any of the banner's animations; a slide or fade passes itself.
    void animationFinished(FLViewAnimation *animation);

private:
    void startViewAnimation(const QRectF &startFrame, const QRectF &endFrame,
                            FLViewAnimation::Effect effect);
    void setLayerBacked(bool layerBacked);

    bool m_presented = false;
    bool m_hasActionButton = true;
    bool m_visible = false;
    bool m_animating = false;
    QString m_title;
    QString m_subtitle;
    QString m_informativeText;
    QString m_actionButtonTitle;
    QString m_otherButtonTitle;
    QString m_soundName;
    QVariantMap m_userInfo;
    QTimeZone m_deliveryTimeZone;
    QDateTime m_deliveryDate;
    std::optional<FLDateComponents> m_repeatInterval;
    QDateTime m_actualDeliveryDate;
    qint64 m_activationType = FLUserNotificationActivationTypeNone;
    std::unique_ptr<FLBannerWindow> m_window;
    FLViewAnimation *m_viewAnimation = nullptr;
    QVariantAnimation *m_rotationAnimation = nullptr;
    FLUserNotificationDelegate *m_delegate = nullptr;
};

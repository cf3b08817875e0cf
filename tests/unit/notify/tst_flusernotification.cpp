#include "NotificationTools.h"
#include "TestMain.h"

#include "core/EVAppImage.h"
#include "core/EVClock.h"
#include "notify/FLBannerTextField.h"
#include "notify/FLBannerWindow.h"
#include "notify/FLUserNotification.h"
#include "notify/FLUserNotificationCenter.h"
#include "notify/FLViewAnimation.h"
#include "notify/FLViewLayer.h"
#include "notify/QoAnimationUtility.h"
#include "render/NSImage+stretchable.h"

#include <QAbstractAnimation>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVariantAnimation>

#include <cmath>
#include <memory>

namespace {

constexpr int screenWidth = bannerSceneScreenSize.width();
constexpr int screenHeight = bannerSceneScreenSize.height();
constexpr qreal quarterTurn = qreal(1.5707964f);

QString buttonTitleOrHidden(const QPushButton *button)
{
    return button->isHidden() ? QStringLiteral("<hidden>") : button->text();
}

} // namespace

class TestFLUserNotification : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<BannerScene> m_scene;

    // A banner that has moved in and stands at the top right.
    static void moveInAndFinish(FLUserNotification &notification)
    {
        notification.moveInAnimation();
        finishAnimations(&notification);
    }

    static QRect topRightFrame() { return QRect(screenWidth - 328, 20, 328, 100); }

private Q_SLOTS:
    void initTestCase() { QVERIFY(bannerSceneSetUp()); }
    void init() { m_scene = std::make_unique<BannerScene>(); }
    void cleanup() { m_scene.reset(); }

    void newNotificationHasItsDefaultsAndAHiddenBanner()
    {
        FLUserNotification notification;
        QVERIFY(!notification.isPresented());
        QVERIFY(!notification.isRemote());
        QVERIFY(notification.hasActionButton());
        QVERIFY(!notification.isVisible());
        QVERIFY(!notification.isAnimating());
        QCOMPARE(notification.activationType(), qint64(FLUserNotificationActivationTypeNone));
        QVERIFY(notification.title().isNull());
        QVERIFY(notification.subtitle().isNull());
        QVERIFY(notification.informativeText().isNull());
        QVERIFY(notification.actionButtonTitle().isNull());
        QVERIFY(notification.otherButtonTitle().isNull());
        QVERIFY(notification.soundName().isNull());
        QVERIFY(notification.userInfo().isEmpty());
        QVERIFY(!notification.deliveryDate().isValid());
        QVERIFY(!notification.actualDeliveryDate().isValid());
        QVERIFY(!notification.deliveryRepeatInterval().has_value());
        QVERIFY(!notification.viewAnimation());
        QVERIFY(!notification.delegate());

        FLBannerWindow *window = notification.showWindow();
        QVERIFY(window);
        QVERIFY(!window->isVisible());
        QCOMPARE(window->size(), QSize(328, 100));
        QVERIFY(window->windowFlags().testFlag(Qt::FramelessWindowHint));
        QVERIFY(window->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
        QVERIFY(window->testAttribute(Qt::WA_ShowWithoutActivating));
        QVERIFY(window->testAttribute(Qt::WA_TranslucentBackground));
        QCOMPARE(window->level(), FLBannerWindow::statusWindowLevel);
    }

    void recordKeepsWhatItIsGiven()
    {
        FLUserNotification notification;
        notification.setUserInfo({{QStringLiteral("key"), 7}});
        notification.setSoundName(QStringLiteral("Glass"));
        notification.setDeliveryTimeZone(QTimeZone("Europe/Berlin"));
        const QDateTime due = EVClock::now().addSecs(90);
        notification.setDeliveryDate(due);
        FLDateComponents interval;
        interval.minute = 2;
        notification.setDeliveryRepeatInterval(interval);
        QCOMPARE(notification.userInfo().value(QStringLiteral("key")).toInt(), 7);
        QCOMPARE(notification.soundName(), QStringLiteral("Glass"));
        QCOMPARE(notification.deliveryTimeZone(), QTimeZone("Europe/Berlin"));
        QCOMPARE(notification.deliveryDate(), due);
        QCOMPARE(notification.deliveryRepeatInterval(), std::optional<FLDateComponents>(interval));
        QVERIFY(!notification.deliveryRepeatInterval()->second.has_value());
    }

    void presentingMarksItPresentedNow()
    {
        FLUserNotification notification;
        notification.presentedNotification();
        QVERIFY(notification.isPresented());
        QCOMPARE(notification.actualDeliveryDate(), EVClock::now());
        EVClock::advance(3000);
        notification.presentedNotification();
        QCOMPARE(notification.actualDeliveryDate(), EVClock::now());
    }

    void bannerViewsLieInTheirFramesFromTheBottomUp()
    {
        FLUserNotification notification;
        FLBannerWindow *window = notification.showWindow();
        QWidget *content = window->contentView();
        QCOMPARE(content->geometry(), QRect(0, 0, 328, 100));
        const QList<QWidget *> bottomUp{window->backgroundView(),   window->iconView(),
                                        window->titleField(),       window->subtitleField(),
                                        window->informativeField(), window->bgButton(),
                                        window->actionButton(),     window->otherButton()};
        QCOMPARE(content->findChildren<QWidget *>(Qt::FindDirectChildrenOnly), bottomUp);

        QCOMPARE(window->backgroundView()->geometry(), QRect(0, 0, 328, 100));
        QVERIFY(window->backgroundView()->hasScaledContents());
        QCOMPARE(window->iconView()->geometry(), QRect(20, 18, 32, 32));
        QCOMPARE(window->iconView()->alignment(), Qt::AlignCenter);
        QVERIFY(!window->iconView()->pixmap().isNull());
        QVERIFY(window->iconView()->pixmap().width() <= 32);
        QVERIFY(window->iconView()->pixmap().height() <= 32);
        QCOMPARE(window->titleField()->geometry(), QRect(56, 20, 180, 18));
        QCOMPARE(window->subtitleField()->geometry(), QRect(56, 38, 190, 18));
        QCOMPARE(window->informativeField()->geometry(), QRect(56, 56, 190, 18));
        QCOMPARE(window->bgButton()->geometry(), QRect(0, 0, 328, 100));
        QVERIFY(window->bgButton()->text().isEmpty());
        QCOMPARE(window->actionButton()->geometry(), QRect(254, 48, 52, 22));
        QCOMPARE(window->otherButton()->geometry(), QRect(254, 20, 52, 22));
        QCOMPARE(window->actionButton()->text(), QStringLiteral("Show"));
        QCOMPARE(window->otherButton()->text(), QStringLiteral("Close"));
        for (QAbstractButton *button :
             {window->bgButton(), static_cast<QAbstractButton *>(window->actionButton()),
              static_cast<QAbstractButton *>(window->otherButton())}) {
            QVERIFY(button->isCheckable());
            QCOMPARE(button->focusPolicy(), Qt::NoFocus);
        }
    }

    void textLinesHaveTheirFontsAndGreys()
    {
        FLUserNotification notification;
        FLBannerWindow *window = notification.showWindow();
        QCOMPARE(window->titleField()->font().pixelSize(), 13);
        QCOMPARE(window->subtitleField()->font().pixelSize(), 12);
        QCOMPARE(window->informativeField()->font().pixelSize(), 11);
        QCOMPARE(window->titleField()->textColor(), QColor(50, 50, 50));
        QCOMPARE(window->subtitleField()->textColor(), QColor(70, 70, 70));
        QCOMPARE(window->informativeField()->textColor(), QColor(90, 90, 90));
    }

    void longTextIsCutShortWithAnEllipsis()
    {
        FLUserNotification notification;
        notification.setTitle(QString(200, QLatin1Char('W')));
        notification.setSubtitle(QStringLiteral("short"));
        notification.setup(FLUserNotificationCenterTypeAlert);
        FLBannerTextField *title = notification.showWindow()->titleField();
        QCOMPARE(title->text(), notification.title());
        QVERIFY(title->displayedText().endsWith(QChar(0x2026)));
        QVERIFY(title->fontMetrics().horizontalAdvance(title->displayedText()) <= title->width());
        QCOMPARE(notification.showWindow()->subtitleField()->displayedText(),
                 QStringLiteral("short"));
    }

    void panelIsTheArtworkStretchedOnceWithThirtyPointCaps()
    {
        const QImage panel = FLBannerWindow::backgroundImage();
        QCOMPARE(panel.size(), QSize(328, 100));
        QCOMPARE(FLBannerWindow::backgroundImage().cacheKey(), panel.cacheKey());
        const QImage artwork = EVAppImage::named(QStringLiteral("banner2lines"));
        QVERIFY(!artwork.isNull());
        QCOMPARE(panel, NSImageStretchable::drawStretchableInRect(artwork, QRectF(0, 0, 328, 100),
                                                                  QMarginsF(30, 30, 30, 30)));
        // Rounded corners let the desktop through; the face is an opaque light grey.
        QCOMPARE(qAlpha(panel.pixel(0, 0)), 0);
        QCOMPARE(qAlpha(panel.pixel(327, 99)), 0);
        const QColor face = panel.pixelColor(164, 50);
        QCOMPARE(face.alpha(), 255);
        QVERIFY(face.lightness() > 220);
        // The banner shows that very picture, filling it on both axes.
        FLUserNotification notification;
        QCOMPARE(notification.showWindow()->backgroundView()->pixmap().toImage().convertToFormat(
                     panel.format()),
                 panel);
    }

    void bannerLayoutHidesTheButtonsAndWidensTheTextsThenAlertLayoutRestoresThem()
    {
        FLUserNotification notification;
        FLBannerWindow *window = notification.showWindow();
        notification.setup(FLUserNotificationCenterTypeBanner);
        QVERIFY(window->actionButton()->isHidden());
        QVERIFY(window->otherButton()->isHidden());
        QCOMPARE(window->titleField()->geometry(), QRect(56, 20, 240, 18));
        QCOMPARE(window->subtitleField()->geometry(), QRect(56, 38, 250, 18));
        QCOMPARE(window->informativeField()->geometry(), QRect(56, 56, 250, 18));

        notification.setup(FLUserNotificationCenterTypeAlert);
        QCOMPARE(buttonTitleOrHidden(window->actionButton()), QStringLiteral("Show"));
        QCOMPARE(buttonTitleOrHidden(window->otherButton()), QStringLiteral("Close"));
        QCOMPARE(window->titleField()->width(), 180);
        QCOMPARE(window->subtitleField()->width(), 190);
        QCOMPARE(window->informativeField()->width(), 190);
    }

    void unknownCenterTypesLayOutAsAlerts()
    {
        FLUserNotification notification;
        for (qint64 type : {qint64(0), qint64(-1), qint64(7)}) {
            notification.setup(FLUserNotificationCenterTypeBanner);
            notification.setup(type);
            QVERIFY(!notification.showWindow()->otherButton()->isHidden());
            QCOMPARE(notification.showWindow()->titleField()->width(), 180);
        }
    }

    void withoutActionButtonOnlyCloseShowsAndClickingItGivesTypeNone()
    {
        FLUserNotification notification;
        notification.setHasActionButton(false);
        notification.setup(FLUserNotificationCenterTypeAlert);
        FLBannerWindow *window = notification.showWindow();
        QVERIFY(window->actionButton()->isHidden());
        QCOMPARE(buttonTitleOrHidden(window->otherButton()), QStringLiteral("Close"));

        BannerDelegateRecorder delegate;
        notification.setDelegate(&delegate);
        moveInAndFinish(notification);
        QTest::mouseClick(window->otherButton(), Qt::LeftButton);
        QCOMPARE(delegate.activations, QList<qint64>{FLUserNotificationActivationTypeNone});
        QCOMPARE(notification.activationType(), qint64(FLUserNotificationActivationTypeNone));
        QVERIFY(!window->otherButton()->isChecked());
    }

    void missingTextsLeaveEmptyLinesNotThoseOfAnEarlierLayout()
    {
        FLUserNotification notification;
        notification.setTitle(QStringLiteral("Title"));
        notification.setSubtitle(QStringLiteral("Subtitle"));
        notification.setInformativeText(QStringLiteral("Informative"));
        notification.setup(FLUserNotificationCenterTypeAlert);
        FLBannerWindow *window = notification.showWindow();
        QCOMPARE(window->titleField()->text(), QStringLiteral("Title"));
        QCOMPARE(window->informativeField()->text(), QStringLiteral("Informative"));

        notification.setTitle(QString());
        notification.setSubtitle(QString());
        notification.setInformativeText(QString());
        notification.setup(FLUserNotificationCenterTypeAlert);
        QVERIFY(window->titleField()->text().isEmpty());
        QVERIFY(window->subtitleField()->text().isEmpty());
        QVERIFY(window->informativeField()->text().isEmpty());
    }

    void buttonTitlesReplaceShowAndCloseOnlyWhenSet()
    {
        FLUserNotification notification;
        FLBannerWindow *window = notification.showWindow();
        notification.setActionButtonTitle(QStringLiteral("Open"));
        notification.setup(FLUserNotificationCenterTypeAlert);
        QCOMPARE(window->actionButton()->text(), QStringLiteral("Open"));
        QCOMPARE(window->otherButton()->text(), QStringLiteral("Close"));

        notification.setActionButtonTitle(QString());
        notification.setOtherButtonTitle(QStringLiteral("Later"));
        notification.setup(FLUserNotificationCenterTypeAlert);
        QCOMPARE(window->actionButton()->text(), QStringLiteral("Show"));
        QCOMPARE(window->otherButton()->text(), QStringLiteral("Later"));
    }

    void clicksReportWhichPartWasClicked()
    {
        FLUserNotification notification;
        notification.setup(FLUserNotificationCenterTypeAlert);
        BannerDelegateRecorder delegate;
        notification.setDelegate(&delegate);
        moveInAndFinish(notification);
        FLBannerWindow *window = notification.showWindow();

        QTest::mouseClick(window->actionButton(), Qt::LeftButton);
        QCOMPARE(notification.activationType(),
                 qint64(FLUserNotificationActivationTypeActionButtonClicked));
        // The body button lies over the texts and the icon: a click on the title reaches it.
        QTest::mouseClick(window->bgButton(), Qt::LeftButton, {},
                          window->titleField()->geometry().center());
        QCOMPARE(notification.activationType(),
                 qint64(FLUserNotificationActivationTypeContentsClicked));
        QTest::mouseClick(window->bgButton(), Qt::LeftButton, {},
                          window->iconView()->geometry().center());
        QTest::mouseClick(window->otherButton(), Qt::LeftButton);
        QCOMPARE(delegate.activations,
                 (QList<qint64>{FLUserNotificationActivationTypeActionButtonClicked,
                                FLUserNotificationActivationTypeContentsClicked,
                                FLUserNotificationActivationTypeContentsClicked,
                                FLUserNotificationActivationTypeNone}));
        QCOMPARE(delegate.questions, 4);
        for (QAbstractButton *button :
             {window->bgButton(), static_cast<QAbstractButton *>(window->actionButton()),
              static_cast<QAbstractButton *>(window->otherButton())})
            QVERIFY(!button->isChecked());
    }

    void refusedClickLeavesTheTypeAndTheButtonOff()
    {
        FLUserNotification notification;
        notification.setup(FLUserNotificationCenterTypeAlert);
        BannerDelegateRecorder delegate;
        notification.setDelegate(&delegate);
        moveInAndFinish(notification);
        QTest::mouseClick(notification.showWindow()->actionButton(), Qt::LeftButton);
        QCOMPARE(notification.activationType(),
                 qint64(FLUserNotificationActivationTypeActionButtonClicked));

        delegate.answer = false;
        QTest::mouseClick(notification.showWindow()->bgButton(), Qt::LeftButton);
        QTest::mouseClick(notification.showWindow()->otherButton(), Qt::LeftButton);
        QCOMPARE(delegate.questions, 3);
        QCOMPARE(delegate.activations.size(), 1);
        QCOMPARE(notification.activationType(),
                 qint64(FLUserNotificationActivationTypeActionButtonClicked));
        QVERIFY(!notification.showWindow()->bgButton()->isChecked());
        QVERIFY(!notification.showWindow()->otherButton()->isChecked());
    }

    void clickWithoutDelegateIsDropped()
    {
        FLUserNotification notification;
        notification.setup(FLUserNotificationCenterTypeAlert);
        notification.buttonClick(notification.showWindow()->actionButton());
        QCOMPARE(notification.activationType(), qint64(FLUserNotificationActivationTypeNone));
        notification.buttonClick(nullptr);
        QCOMPARE(notification.activationType(), qint64(FLUserNotificationActivationTypeNone));
    }

    // State table: hidden --moveInAnimation--> moving in, shown above the screen.
    void moveInStartsAboveTheScreenAndSwingsDownWhileItSlidesAndFadesIn()
    {
        FLUserNotification notification;
        notification.moveInAnimation();
        QVERIFY(notification.isVisible());
        QVERIFY(notification.isAnimating());
        FLBannerWindow *window = notification.showWindow();
        QVERIFY(window->isVisible());
        QVERIFY(!window->isActiveWindow());

        FLViewAnimation *slide = notification.viewAnimation();
        QVERIFY(slide);
        QCOMPARE(slide->state(), QAbstractAnimation::Running);
        QCOMPARE(slide->duration(), 500);
        QCOMPARE(slide->target(), window);
        QCOMPARE(slide->startFrame(), QRectF(screenWidth - 328, -100, 328, 100));
        QCOMPARE(slide->endFrame(), QRectF(screenWidth - 328, 20, 328, 100));
        QCOMPARE(slide->effect(), FLViewAnimation::Effect::FadeIn);
        QCOMPARE(window->geometry(), QRect(screenWidth - 328, -100, 328, 100));
        QCOMPARE(window->windowOpacity(), 0.0);

        QVariantAnimation *swing = notification.rotationAnimation();
        QVERIFY(swing);
        QCOMPARE(swing->state(), QAbstractAnimation::Running);
        QCOMPARE(swing->duration(), 500);
        QCOMPARE(swing->startValue().toReal(), quarterTurn);
        QCOMPARE(swing->endValue().toReal(), 0.0);
        // Ease-in: at half time far less than half of the turn is done.
        QCOMPARE(swing->easingCurve().type(), QEasingCurve::BezierSpline);
        QVERIFY(std::abs(swing->easingCurve().valueForProgress(0.5) - 0.3153) < 0.01);
        QVERIFY(swing->easingCurve().valueForProgress(0.2) < 0.1);

        // The content turns about the middle of its bottom edge.
        auto *layer = qobject_cast<FLViewLayer *>(window->contentView()->graphicsEffect());
        QVERIFY(layer);
        QCOMPARE(layer->anchorPoint(), QPointF(0.5, 1.0));
        QCOMPARE(layer->position(), QPointF(164, 100));
        QCOMPARE(layer->rotationX(), quarterTurn);

        swing->setCurrentTime(250);
        slide->setCurrentTime(250);
        QVERIFY(layer->rotationX() < quarterTurn && layer->rotationX() > quarterTurn / 2);
        QVERIFY(window->y() > -100 && window->y() < 20);
        QVERIFY(window->windowOpacity() > 0.0 && window->windowOpacity() < 1.0);
    }

    // State table: moving in --end of an animation--> on screen; the window stays.
    void endOfTheMoveInLeavesTheBannerFlatAtTheTopRight()
    {
        FLUserNotification notification;
        notification.moveInAnimation();
        notification.viewAnimation()->setCurrentTime(500);
        QVERIFY(notification.isVisible());
        QVERIFY(!notification.isAnimating());
        QVERIFY(!notification.rotationAnimation());
        FLBannerWindow *window = notification.showWindow();
        QVERIFY(!window->contentView()->graphicsEffect());
        QVERIFY(window->isVisible());
        QCOMPARE(window->geometry(), topRightFrame());
        QCOMPARE(window->windowOpacity(), 1.0);
    }

    void theFirstEndClearsAnimatingAndTheBannerTakesRequestsAgain()
    {
        FLUserNotification notification;
        notification.moveInAnimation();
        FLViewAnimation *slide = notification.viewAnimation();
        // The swing ends first; the slide still runs.
        notification.rotationAnimation()->setCurrentTime(500);
        QVERIFY(!notification.isAnimating());
        QVERIFY(!notification.rotationAnimation());
        QVERIFY(!notification.showWindow()->contentView()->graphicsEffect());
        QCOMPARE(slide->state(), QAbstractAnimation::Running);
        QVERIFY(notification.isVisible());

        notification.fadeOutAnimation();
        QVERIFY(notification.isAnimating());
        QVERIFY(notification.viewAnimation() != slide);
    }

    void swingIsPaintedEdgeOnAtFirstAndFlatAtTheEnd()
    {
        FLUserNotification notification;
        notification.setTitle(QStringLiteral("Title"));
        notification.setup(FLUserNotificationCenterTypeBanner);
        notification.moveInAnimation();
        QWidget *content = notification.showWindow()->contentView();
        const auto alphaAt = [](const QImage &image, int x, int y) {
            return qAlpha(image.pixel(x, y));
        };

        QImage edgeOn = content->grab().toImage();
        QCOMPARE(alphaAt(edgeOn, 164, 50), 0);
        QCOMPARE(alphaAt(edgeOn, 164, 10), 0);

        // A third of the way: the top lies well below the window's top, tipped away and
        // narrower than the bottom.
        auto *layer = qobject_cast<FLViewLayer *>(content->graphicsEffect());
        layer->setRotationX(std::acos(0.5));
        QImage halfUp = content->grab().toImage();
        QCOMPARE(alphaAt(halfUp, 164, 20), 0);
        QCOMPARE(alphaAt(halfUp, 164, 85), 255);
        QCOMPARE(alphaAt(halfUp, 6, 90), 255);
        const int topRow = 60;
        QCOMPARE(alphaAt(halfUp, 164, topRow), 255);
        QCOMPARE(alphaAt(halfUp, 6, topRow), 0);

        finishAnimations(&notification);
        QVERIFY(!content->graphicsEffect());
        const QImage flat = content->grab().toImage();
        QCOMPARE(alphaAt(flat, 6, 10), 255);
        QCOMPARE(alphaAt(flat, 164, 10), 255);
    }

    // State table: on screen --moveAnimation: to a new point--> moving --end--> on screen.
    void moveToANewPointSlidesThere()
    {
        FLUserNotification notification;
        moveInAndFinish(notification);
        notification.moveAnimation(QPointF(screenWidth - 328, 110));
        QVERIFY(notification.isVisible());
        QVERIFY(notification.isAnimating());
        FLViewAnimation *slide = notification.viewAnimation();
        QCOMPARE(slide->startFrame(), QRectF(topRightFrame()));
        QCOMPARE(slide->endFrame(), QRectF(screenWidth - 328, 110, 328, 100));
        QCOMPARE(slide->effect(), FLViewAnimation::Effect::None);
        QCOMPARE(slide->duration(), 500);
        slide->setCurrentTime(500);
        QVERIFY(notification.isVisible());
        QVERIFY(!notification.isAnimating());
        QCOMPARE(notification.showWindow()->geometry(), QRect(screenWidth - 328, 110, 328, 100));
        QVERIFY(notification.showWindow()->isVisible());
        QCOMPARE(notification.showWindow()->windowOpacity(), 1.0);
    }

    // State table: on screen --moveAnimation: to its own point--> on screen, nothing moves.
    void moveToWhereItStandsStartsNoAnimation()
    {
        FLUserNotification notification;
        moveInAndFinish(notification);
        FLViewAnimation *before = notification.viewAnimation();
        notification.moveAnimation(QPointF(screenWidth - 328, 20));
        QVERIFY(!notification.isAnimating());
        QVERIFY(notification.isVisible());
        QCOMPARE(notification.viewAnimation(), before);
        QCOMPARE(before->state(), QAbstractAnimation::Stopped);
    }

    // State table: on screen --moveOutAnimation--> leaving --end--> hidden, ordered out.
    void moveOutSlidesHalfPastTheRightEdgeFadingAndEndsHidden()
    {
        FLUserNotification notification;
        moveInAndFinish(notification);
        notification.moveOutAnimation();
        QVERIFY(!notification.isVisible());
        QVERIFY(notification.isAnimating());
        FLViewAnimation *slide = notification.viewAnimation();
        QCOMPARE(slide->startFrame(), QRectF(topRightFrame()));
        QCOMPARE(slide->endFrame(), QRectF(screenWidth - 164, 20, 328, 100));
        QCOMPARE(slide->effect(), FLViewAnimation::Effect::FadeOut);
        QCOMPARE(slide->duration(), 500);
        slide->setCurrentTime(500);
        QVERIFY(!notification.isAnimating());
        QVERIFY(!notification.isVisible());
        QVERIFY(!notification.showWindow()->isVisible());
    }

    // State table: on screen --fadeOutAnimation--> leaving --end--> hidden, in place.
    void fadeOutStaysInPlaceAndEndsHidden()
    {
        FLUserNotification notification;
        moveInAndFinish(notification);
        notification.fadeOutAnimation();
        QVERIFY(!notification.isVisible());
        QVERIFY(notification.isAnimating());
        FLViewAnimation *fade = notification.viewAnimation();
        QCOMPARE(fade->startFrame(), QRectF(topRightFrame()));
        QCOMPARE(fade->endFrame(), QRectF(topRightFrame()));
        QCOMPARE(fade->effect(), FLViewAnimation::Effect::FadeOut);
        fade->setCurrentTime(250);
        QVERIFY(notification.showWindow()->windowOpacity() < 1.0);
        QVERIFY(notification.showWindow()->isVisible());
        fade->setCurrentTime(500);
        QVERIFY(!notification.isAnimating());
        QVERIFY(!notification.showWindow()->isVisible());
        QCOMPARE(notification.showWindow()->geometry(), topRightFrame());
    }

    // State table: any state with animating set --any of the four requests--> unchanged.
    void requestsDuringAnAnimationAreDropped()
    {
        FLUserNotification notification;
        notification.moveInAnimation();
        FLViewAnimation *moveIn = notification.viewAnimation();
        QVariantAnimation *swing = notification.rotationAnimation();
        notification.moveInAnimation();
        notification.moveAnimation(QPointF(0, 300));
        notification.moveOutAnimation();
        notification.fadeOutAnimation();
        QVERIFY(notification.isVisible());
        QVERIFY(notification.isAnimating());
        QCOMPARE(notification.viewAnimation(), moveIn);
        QCOMPARE(notification.rotationAnimation(), swing);

        finishAnimations(&notification);
        notification.moveOutAnimation();
        FLViewAnimation *moveOut = notification.viewAnimation();
        notification.moveInAnimation();
        notification.moveAnimation(QPointF(0, 300));
        notification.fadeOutAnimation();
        QVERIFY(!notification.isVisible());
        QCOMPARE(notification.viewAnimation(), moveOut);
        QCOMPARE(moveOut->endFrame(), QRectF(screenWidth - 164, 20, 328, 100));
    }

    void aBannerThatLeftCanMoveInAgain()
    {
        FLUserNotification notification;
        moveInAndFinish(notification);
        notification.fadeOutAnimation();
        finishAnimations(&notification);
        QVERIFY(!notification.showWindow()->isVisible());
        notification.moveInAnimation();
        QVERIFY(notification.isVisible());
        QVERIFY(notification.showWindow()->isVisible());
        finishAnimations(&notification);
        QCOMPARE(notification.showWindow()->geometry(), topRightFrame());
        QCOMPARE(notification.showWindow()->windowOpacity(), 1.0);
    }

    void deletingABannerWhileItAnimatesTakesItsWindowAndAnimationsAlong()
    {
        BannerDelegateRecorder delegate;
        auto *movingIn = new FLUserNotification;
        movingIn->setDelegate(&delegate);
        movingIn->moveInAnimation();
        QVERIFY(movingIn->isAnimating());
        QPointer<FLBannerWindow> window = movingIn->showWindow();
        QList<QPointer<QAbstractAnimation>> animations;
        for (QAbstractAnimation *animation : movingIn->findChildren<QAbstractAnimation *>())
            animations.append(animation);
        QVERIFY(!animations.isEmpty());

        delete movingIn;

        QVERIFY(window.isNull());
        for (const QPointer<QAbstractAnimation> &animation : animations)
            QVERIFY(animation.isNull());

        auto *movingOut = new FLUserNotification;
        movingOut->setDelegate(&delegate);
        moveInAndFinish(*movingOut);
        movingOut->moveOutAnimation();
        QVERIFY(movingOut->isAnimating());
        window = movingOut->showWindow();
        delete movingOut;
        QVERIFY(window.isNull());

        // Past the time the animations would have ended: nothing is told of them.
        QTest::qWait(FLUserNotification::animationDuration + 100);
        QCOMPARE(delegate.questions, 0);
        QVERIFY(delegate.activations.isEmpty());
    }

    void anchorPointMovesWithoutMovingTheLayer()
    {
        QWidget view;
        view.resize(328, 100);
        // Without a layer there is nothing to move.
        QoAnimationUtility::setAnchorPoint(QPointF(0.5, 1.0), &view);
        QoAnimationUtility::setAnchorPoint(QPointF(0.5, 1.0), nullptr);
        QVERIFY(!view.graphicsEffect());

        auto *layer = new FLViewLayer(view.size());
        view.setGraphicsEffect(layer);
        QCOMPARE(layer->anchorPoint(), QPointF(0.5, 0.5));
        QCOMPARE(layer->position(), QPointF(164, 50));
        const QTransform before = layer->transform();
        QoAnimationUtility::setAnchorPoint(QPointF(0.5, 1.0), &view);
        QCOMPARE(layer->anchorPoint(), QPointF(0.5, 1.0));
        QCOMPARE(layer->position(), QPointF(164, 100));
        QCOMPARE(layer->transform(), before);
        QoAnimationUtility::setAnchorPoint(QPointF(0.0, 0.0), &view);
        QCOMPARE(layer->position(), QPointF(0, 0));
        QCOMPARE(layer->transform().map(QPointF(328, 100)), QPointF(328, 100));
    }

    void layerTurnsAboutItsAnchor()
    {
        FLViewLayer layer(QSizeF(328, 100));
        layer.setAnchorPoint(QPointF(0.5, 1.0));
        layer.setPosition(QPointF(164, 100));
        layer.setRotationX(std::acos(0.5));
        const QTransform transform = layer.transform();
        // Points on the axis stay; the top comes down and, tipped away, draws in.
        QCOMPARE(transform.map(QPointF(0, 100)), QPointF(0, 100));
        QCOMPARE(transform.map(QPointF(328, 100)), QPointF(328, 100));
        const QPointF topLeft = transform.map(QPointF(0, 0));
        QVERIFY(topLeft.y() > 50 && topLeft.y() < 55);
        QVERIFY(topLeft.x() > 10 && topLeft.x() < 15);
        layer.setRotationX(quarterTurn);
        QVERIFY(std::abs(layer.transform().map(QPointF(164, 0)).y() - 100) < 0.01);
    }
};

TALLYVANE_TEST_MAIN(TestFLUserNotification)
#include "tst_flusernotification.moc"

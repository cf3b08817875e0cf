#include "NotificationRecorder.h"
#include "PaintCounter.h"
#include "TestMain.h"

#include "core/EVClock.h"
#include "engine/EVCountdown.h"
#include "engine/EVDateText.h"
#include "engine/EVWidgetWindow.h"
#include "engine/EVWindowController.h"
#include "render/EVTallyView.h"
#include "render/EVWidgetView.h"
#include "store/EVCustomStyle.h"
#include "store/EVWidgetEntry.h"

#include <QBuffer>
#include <QTimeZone>

#include <memory>

// An entry showing a colour style of its own. The style is taken off the entry before either
// goes, also when a test ends early.
struct EntryWithColourStyle
{
    EVWidgetEntry entry;
    EVCustomStyle style;

    explicit EntryWithColourStyle(const QColor &colour, float opacity = 1.0f)
    {
        entry.resetDefault();
        style.resetDefault();
        style.setColor(colour);
        style.setOpacity(opacity);
        entry.addCustomStylesObject(&style);
        entry.setStyleIndex(12);
    }
    ~EntryWithColourStyle() { entry.removeObjectFromCustomStylesAtIndex(0); }
};

class TestEVWindowController : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestHome> m_home;
    std::unique_ptr<PinnedClock> m_clock;
    const QDateTime m_now = QDateTime::fromSecsSinceEpoch(1800000000);

    static std::unique_ptr<EVWindowController> shownController(EVWidgetEntry *entry)
    {
        auto controller = std::make_unique<EVWindowController>();
        controller->display(false);
        controller->setWidgetData(entry);
        if (!QTest::qWaitForWindowExposed(controller->window()))
            return nullptr;
        return controller;
    }

    static QRgb pixel(const QImage &image, int x, int y)
    {
        return image.convertToFormat(QImage::Format_ARGB32).pixel(x, y);
    }

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<TestHome>();
        m_clock = std::make_unique<PinnedClock>(m_now);
    }
    void cleanup()
    {
        m_clock.reset();
        m_home.reset();
    }

    void zeroFrameKeepsTheInterfaceFileSizeAndPlace()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        // Its place is well away from the interface file's, so that taking it would show.
        entry.setWidgetFrameDesc(QStringLiteral("{{0.4, 0.3}, {0, 0.2}}"));
        auto controller = shownController(&entry);
        QVERIFY(controller);
        QCOMPARE(controller->window()->size(), QSize(300, 150));
        QCOMPARE(controller->window()->pos(), QPoint(0, 0));
        QCOMPARE(controller->widgetView()->size(), QSize(300, 150));
    }

    void windowIsNamedAfterItsEvent()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        entry.setEventTitle(QStringLiteral("Team offsite"));
        auto controller = shownController(&entry);
        QVERIFY(controller);
        QCOMPARE(controller->window()->windowTitle(), QStringLiteral("Tallyvane Widget"));
        controller->update();
        QCOMPARE(controller->window()->windowTitle(), QStringLiteral("Team offsite"));
        entry.setEventTitle(QString());
        controller->update();
        QCOMPARE(controller->window()->windowTitle(), QStringLiteral("Tallyvane Widget"));
    }

    void storedFrameIsApplied()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        entry.setFrame(QRectF(40, 60, 320, 160));
        auto controller = shownController(&entry);
        QVERIFY(controller);
        QCOMPARE(controller->window()->geometry(), QRect(40, 60, 320, 160));
    }

    void saveCopiesTheWindowFrameIntoTheEntry()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        auto controller = shownController(&entry);
        QVERIFY(controller);
        controller->window()->setGeometry(QRect(120, 80, 280, 140));
        controller->save();
        QCOMPARE(entry.frame(), QRectF(120, 80, 280, 140));
    }

    void lockFollowsTheEntry()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        auto controller = shownController(&entry);
        QVERIFY(controller);
        controller->update();
        QVERIFY(controller->window()->isMovable());
        entry.setLockWidget(true);
        controller->update();
        QVERIFY(!controller->window()->isMovable());
        entry.setLockWidget(false);
        controller->update();
        QVERIFY(controller->window()->isMovable());
    }

    void levelFollowsKeepTop()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        auto controller = shownController(&entry);
        QVERIFY(controller);
        controller->update();
        QCOMPARE(controller->window()->level(), EVWidgetWindow::Level::Below);
        entry.setKeepTop(1);
        controller->update();
        QCOMPARE(controller->window()->level(), EVWidgetWindow::Level::Above);
        entry.setKeepTop(2);
        controller->update();
        QCOMPARE(controller->window()->level(), EVWidgetWindow::Level::Normal);
        entry.setKeepTop(0);
        controller->update();
        QCOMPARE(controller->window()->level(), EVWidgetWindow::Level::Below);
    }

    void reloadFillsTheViewFromTheEntry()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        entry.setEventTitle(QStringLiteral("Launch"));
        entry.setTextcolor(QColor(10, 200, 30));
        auto controller = shownController(&entry);
        QVERIFY(controller);
        controller->reloadViews();

        const EVWidgetView *view = controller->widgetView();
        QCOMPARE(view->title(), QStringLiteral("Launch"));
        QCOMPARE(view->date(), EVDateText::widgetDateText(entry));
        QCOMPARE(view->majorCountdown(), QStringLiteral("30"));
        QCOMPARE(view->secondCountdown(), QStringLiteral("Days Left"));
        QCOMPARE(view->textColor(), QColor(10, 200, 30));
        QVERIFY(!view->icon().isNull());
        QCOMPARE(controller->countdownDesc().value(EVCountdownMajorDescKey), QStringLiteral("30"));
        QCOMPARE(controller->eventDate(), EVDateText::widgetDateText(entry));
    }

    void entryWithoutIconShowsNone()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        auto controller = shownController(&entry);
        QVERIFY(controller);
        controller->reloadViews();
        QVERIFY(!controller->widgetView()->icon().isNull());
        entry.setIconfileData(QByteArray());
        controller->reloadViews();
        QVERIFY(controller->widgetView()->icon().isNull());
    }

    void customColourStyleGivesItsColourAtItsOpacity()
    {
        EntryWithColourStyle styled(QColor(200, 40, 60), 0.5f);
        EVWindowController controller;
        controller.setWidgetData(&styled.entry);

        const EVBackgroundImage background = controller.backgroundImage(QSizeF(300, 150));
        QCOMPARE(background.transparent(), 0.5);
        QCOMPARE(qRed(pixel(background.image(), 150, 75)), 200);
        QCOMPARE(qGreen(pixel(background.image(), 150, 75)), 40);
        QCOMPARE(qBlue(pixel(background.image(), 150, 75)), 60);
    }

    void builtInStyleIsOpaqueHolder()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        entry.setStyleIndex(5);
        EVWindowController controller;
        controller.setWidgetData(&entry);
        const EVBackgroundImage background = controller.backgroundImage(QSizeF(300, 150));
        QCOMPARE(background.transparent(), 1.0);
        QCOMPARE(background.image().cacheKey(),
                 EVTallyView::buildinBackgroundForStyle(5, QSizeF(300, 150)).cacheKey());
    }

    void backgroundIsMadeAgainWhenTheStyleChanges()
    {
        EntryWithColourStyle styled(QColor(0, 0, 255));
        EVWindowController controller;
        controller.setWidgetData(&styled.entry);
        const QImage first = controller.backgroundImage(QSizeF(300, 150)).image();
        QCOMPARE(controller.backgroundImage(QSizeF(300, 150)).image().cacheKey(), first.cacheKey());

        styled.style.setColor(QColor(255, 0, 0));
        const QImage second = controller.backgroundImage(QSizeF(300, 150)).image();
        QCOMPARE(qRed(pixel(second, 150, 75)), 255);
    }

    void singleClickPostsNothing()
    {
        NotificationRecorder posts(EVNotificationWidgetDoubleClick);
        EVWindowController controller;
        controller.mouseDown(1);
        QCOMPARE(posts.count(), 0);
    }

    void doubleClickPostsOnceWithTheController()
    {
        NotificationRecorder posts(EVNotificationWidgetDoubleClick);
        EVWindowController controller;
        controller.mouseDown(1);
        controller.mouseDown(2);
        QCOMPARE(posts.count(), 1);
        QCOMPARE(posts.objectAt(0), &controller);
    }

    void tripleClickPostsAgain()
    {
        NotificationRecorder posts(EVNotificationWidgetDoubleClick);
        EVWindowController controller;
        controller.mouseDown(1);
        controller.mouseDown(2);
        controller.mouseDown(3);
        QCOMPARE(posts.count(), 2);
    }

    void windowClicksAreCountedAsASeries()
    {
        NotificationRecorder posts(EVNotificationWidgetDoubleClick);
        EVWidgetEntry entry;
        entry.resetDefault();
        auto controller = shownController(&entry);
        QVERIFY(controller);
        QWidget *view = controller->widgetView();
        QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(150, 75));
        QCOMPARE(posts.count(), 0);
        QTest::mouseDClick(view, Qt::LeftButton, {}, QPoint(150, 75));
        QVERIFY(posts.count() >= 1);
    }

    void destroyLetsGoOfTheEntryAndHidesTheWindow()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        auto controller = shownController(&entry);
        QVERIFY(controller);
        controller->destroy();
        QVERIFY(!controller->widgetData());
        QVERIFY(!controller->window()->isVisible());
        controller->update(); // nothing to show any more, and no crash
    }

    void widgetCountedInDaysIsNotRepaintedWhileNothingChanges()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        entry.setEventDate(m_now.addDays(30).addSecs(12 * 3600));
        auto controller = shownController(&entry);
        QVERIFY(controller);
        PaintCounter paints(controller->widgetView());
        controller->update();
        QTRY_VERIFY(paints.count() > 0);
        QTest::qWait(100); // the first show's paints are over
        paints.reset();

        for (int second = 0; second < 5; ++second) {
            EVClock::advance(1000);
            controller->update();
        }
        QTest::qWait(50);
        QCOMPARE(paints.count(), 0);
    }

    void widgetCountedInTimeIsRepaintedEverySecond()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        entry.setCountdownUnit(0);
        entry.setEventDate(m_now.addSecs(3600));
        auto controller = shownController(&entry);
        QVERIFY(controller);
        PaintCounter paints(controller->widgetView());
        controller->update();
        QTRY_VERIFY(paints.count() > 0);
        QTest::qWait(100); // the first show's paints are over
        paints.reset();

        EVClock::advance(1000);
        controller->update();
        QTRY_COMPARE(paints.count(), 1);
        QCOMPARE(controller->widgetView()->majorCountdown(), QStringLiteral("00:59:59"));
    }

    void widgetCountedInDaysTurnsOverAtLocalMidnightWhenClocksGoForward()
    {
        ScopedEnvironment tz("TZ", "Europe/Berlin");
        const QTimeZone berlin("Europe/Berlin");
        const auto berlinTime = [&](int day, int hour, int minute, int second) {
            // Passes land a few milliseconds after the full second.
            return QDateTime(QDate(2026, 3, day), QTime(hour, minute, second, 5), berlin);
        };
        EVWidgetEntry entry;
        entry.resetDefault();
        entry.setCountdownUnit(1);
        entry.setEventDate(QDateTime(QDate(2026, 4, 2), QTime(0, 0), berlin));
        auto controller = shownController(&entry);
        QVERIFY(controller);
        const EVWidgetView *view = controller->widgetView();

        EVClock::pin(berlinTime(28, 23, 59, 59));
        controller->update();
        QCOMPARE(view->majorCountdown(), QStringLiteral("4"));
        EVClock::pin(berlinTime(29, 0, 0, 0));
        controller->update();
        QCOMPARE(view->majorCountdown(), QStringLiteral("3"));
        // The 29th has 23 hours: the next turn is at the next midnight, not 24 hours on.
        EVClock::pin(berlinTime(29, 23, 59, 59));
        controller->update();
        QCOMPARE(view->majorCountdown(), QStringLiteral("3"));
        EVClock::pin(berlinTime(30, 0, 0, 0));
        controller->update();
        QCOMPARE(view->majorCountdown(), QStringLiteral("2"));
    }

    void clockSetBackShowsTheEarlierCountAgain()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        auto controller = shownController(&entry);
        QVERIFY(controller);
        controller->update();
        QCOMPARE(controller->widgetView()->majorCountdown(), QStringLiteral("30"));
        EVClock::pin(m_now.addDays(2));
        controller->update();
        QCOMPARE(controller->widgetView()->majorCountdown(), QStringLiteral("28"));
        EVClock::pin(m_now);
        controller->update();
        QCOMPARE(controller->widgetView()->majorCountdown(), QStringLiteral("30"));
    }

    void changedStyleColourOfAWidgetCountedInDaysIsShownAtTheNextUpdate()
    {
        EntryWithColourStyle styled(QColor(0, 0, 255));
        auto controller = shownController(&styled.entry);
        QVERIFY(controller);
        controller->update();
        EVClock::advance(1000);
        controller->update();

        styled.style.setColor(QColor(255, 0, 0));
        EVClock::advance(1000);
        controller->update();
        QCOMPARE(qRed(pixel(controller->widgetView()->background().image(), 150, 75)), 255);
    }

    void resizedWidgetCountedInDaysGetsABackgroundOfItsNewSize()
    {
        EntryWithColourStyle styled(QColor(0, 0, 255));
        auto controller = shownController(&styled.entry);
        QVERIFY(controller);
        controller->update();
        QCOMPARE(controller->widgetView()->background().image().size(), QSize(300, 150));

        controller->window()->resize(400, 200);
        QTRY_COMPARE(controller->widgetView()->size(), QSize(400, 200));
        EVClock::advance(1000);
        controller->update();
        QCOMPARE(controller->widgetView()->background().image().size(), QSize(400, 200));
    }

    void changedTimeZoneOfAWidgetCountedInDaysIsShownAtTheNextUpdate()
    {
        ScopedEnvironment tz("TZ", "Europe/Berlin");
        EVWidgetEntry entry;
        entry.resetDefault();
        // Evening in Berlin, already the next day in Tokyo.
        entry.setEventDate(QDateTime(QDate(2027, 2, 14), QTime(16, 0), Qt::UTC));
        auto controller = shownController(&entry);
        QVERIFY(controller);
        controller->update();
        const QString berlinDate = controller->widgetView()->date();

        ScopedEnvironment tokyo("TZ", "Asia/Tokyo");
        EVClock::advance(1000);
        controller->update();
        QCOMPARE(controller->widgetView()->date(), EVDateText::widgetDateText(entry));
        QVERIFY(controller->widgetView()->date() != berlinDate);
    }

    void changedTitleIsRepainted()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        auto controller = shownController(&entry);
        QVERIFY(controller);
        PaintCounter paints(controller->widgetView());
        controller->update();
        QTRY_VERIFY(paints.count() > 0);
        QTest::qWait(100); // the first show's paints are over
        paints.reset();

        entry.setEventTitle(QStringLiteral("Renamed"));
        controller->update();
        QTRY_COMPARE(paints.count(), 1);
        QCOMPARE(controller->widgetView()->title(), QStringLiteral("Renamed"));
    }

    void newIconIsShownAtTheNextUpdate()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        auto controller = shownController(&entry);
        QVERIFY(controller);
        controller->update();
        const qint64 before = controller->widgetView()->icon().cacheKey();

        QImage red(16, 16, QImage::Format_ARGB32);
        red.fill(Qt::red);
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        red.save(&buffer, "PNG");
        entry.setIconfileData(png);
        controller->update();
        QVERIFY(controller->widgetView()->icon().cacheKey() != before);
        QCOMPARE(controller->widgetView()->icon().size(), QSize(16, 16));
    }

    void alphaZeroMakesTheWidgetInvisible()
    {
        EVWidgetEntry entry;
        entry.resetDefault();
        auto controller = shownController(&entry);
        QVERIFY(controller);
        controller->setAlphaValue(0.0);
        QCOMPARE(controller->window()->windowOpacity(), 0.0);
        controller->setAlphaValue(1.0);
        QCOMPARE(controller->window()->windowOpacity(), 1.0);
        QVERIFY(controller->window()->isVisible());
    }
};

TALLYVANE_TEST_MAIN(TestEVWindowController)
#include "tst_evwindowcontroller.moc"

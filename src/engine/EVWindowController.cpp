#include "engine/EVWindowController.h"

#include "core/EVClock.h"
#include "core/EVImageData.h"
#include "core/EVValues.h"
#include "engine/EVCountdown.h"
#include "engine/EVDateText.h"
#include "engine/EVLocalCalendar.h"
#include "engine/EVWidgetWindow.h"
#include "platform/EVDesktopWindowHints.h"
#include "platform/EVNotificationBus.h"
#include "render/EVTallyView.h"
#include "render/EVWidgetView.h"
#include "store/EVCustomStyle.h"
#include "store/EVWidgetEntry.h"

#include "ui_EVWindowController.h"

#include <QEvent>

namespace {

// keepTop 0 "Never", 1 "Always", 2 "When active"; the order is the stored one.
EVWidgetWindow::Level levelForKeepTop(int keepTop)
{
    switch (keepTop) {
    case 1:
        return EVWidgetWindow::Level::Above;
    case 2:
        return EVWidgetWindow::Level::Normal;
    default:
        return EVWidgetWindow::Level::Below;
    }
}

} // namespace

EVWindowController *EVWindowController::windowController(QObject *parent)
{
    return new EVWindowController(parent);
}

EVWindowController::EVWindowController(QObject *parent)
    : QObject(parent)
    , m_ui(std::make_unique<Ui::EVWindowController>())
    , m_window(std::make_unique<EVWidgetWindow>())
{
    m_ui->setupUi(m_window.get());
    connect(m_window.get(), &EVWidgetWindow::mouseDown, this, &EVWindowController::mouseDown);
    m_ui->widgetView->installEventFilter(this);
}

EVWindowController::~EVWindowController() = default;

bool EVWindowController::eventFilter(QObject *watched, QEvent *event)
{
    // A view of another size needs a background of that size: what it shows is made again.
    if (watched == m_ui->widgetView && event->type() == QEvent::Resize)
        m_shown = {};
    return QObject::eventFilter(watched, event);
}

EVWidgetView *EVWindowController::widgetView() const
{
    return m_ui->widgetView;
}

void EVWindowController::setWidgetData(EVWidgetEntry *entry)
{
    m_widgetData = entry;
    if (!entry)
        return;
    const QRectF frame = entry->frame();
    if (frame.width() > 0 && frame.height() > 0)
        m_window->setGeometry(frame.toRect());
}

void EVWindowController::display(bool reload)
{
    // A window being shown comes to the front by itself; one already shown is brought there.
    if (m_window->isVisible())
        m_window->raise();
    else
        m_window->show();
    if (reload)
        reloadViews();
}

void EVWindowController::update()
{
    if (!m_widgetData)
        return;
    const bool movable = !m_widgetData->lockWidget();
    if (m_window->isMovable() != movable)
        m_window->setMovable(movable);
    const EVWidgetWindow::Level level = levelForKeepTop(m_widgetData->keepTop());
    if (m_window->level() != level)
        m_window->setLevel(level);
    reloadViews();
}

void EVWindowController::reloadViews()
{
    if (!m_widgetData)
        return;
    const qint64 nowMSecs = EVClock::nowMSecsSinceEpoch();
    const bool sourceUnchanged = m_shown.source == shownSource();
    // A widget counted in days shows the same for hours: until then, and until the entry, its
    // style, the view's size or the time zone and locale change, there is nothing to compute.
    if (sourceUnchanged && nowMSecs >= m_shown.since && nowMSecs < m_shown.until)
        return;

    // The calculation works on instants; a local time would only add a time-zone lookup.
    const QDateTime now = QDateTime::fromMSecsSinceEpoch(nowMSecs, Qt::UTC);
    // The lines straight from the calculation: the dictionary form of countdownDesc() would
    // cost an allocation per widget every second.
    const EVCountdown::Lines lines = EVCountdown::countdownLines(*m_widgetData, now);
    const qint64 linesUntil = EVCountdown::linesUnchangedUntil(*m_widgetData, now);
    if (sourceUnchanged) {
        // Only time went on, so only the countdown lines can read differently.
        m_shown.since = nowMSecs;
        m_shown.until = linesUntil;
        showCountdownLines(lines);
        return;
    }

    EVWidgetView *view = widgetView();
    const QString title = m_widgetData->eventTitle();
    const QString date = eventDate();
    const QColor textColor = m_widgetData->textcolor();
    const QImage icon = iconImage();
    const EVBackgroundImage background = backgroundImage(view->size());
    // Taken after the icon and background were read, which may count as changes of their own.
    m_shown = {shownSource(), nowMSecs, linesUntil};

    // What did not change is not painted again.
    const auto same = [](const QString &a, const QString &b) { return isIdentical(a, b); };
    const bool stillLayersUnchanged =
        same(view->title(), title) && same(view->date(), date) && view->textColor() == textColor &&
        view->icon().cacheKey() == icon.cacheKey() &&
        view->background().image().cacheKey() == background.image().cacheKey() &&
        view->background().transparent() == background.transparent();
    if (stillLayersUnchanged) {
        showCountdownLines(lines);
        return;
    }

    // Window lists, screen readers and scripts name the widget by its event.
    if (!same(view->title(), title))
        m_window->setWindowTitle(title.isEmpty() ? QStringLiteral("Tallyvane Widget") : title);
    view->setTitle(title);
    view->setDate(date);
    view->setMajorCountdown(lines.majorDesc);
    view->setSecondCountdown(lines.secondDesc);
    view->setTextColor(textColor);
    view->setIcon(icon);
    view->setBackground(background);
    view->update();
}

void EVWindowController::showCountdownLines(const EVCountdown::Lines &lines)
{
    EVWidgetView *view = widgetView();
    if (isIdentical(view->majorCountdown(), lines.majorDesc) &&
        isIdentical(view->secondCountdown(), lines.secondDesc))
        return;
    view->setMajorCountdown(lines.majorDesc);
    view->setSecondCountdown(lines.secondDesc);
    // A clock countdown changes only its two lines each second: only they are painted again.
    view->update(view->countdownLinesRect());
}

EVWindowController::ShownSource EVWindowController::shownSource() const
{
    const EVCustomStyle *style = EVTallyView::customStyleOfWidget(*m_widgetData);
    return {m_widgetData, m_widgetData->revision(), style ? style->revision() : 0,
            EVLocalCalendar::settingsGeneration()};
}

QString EVWindowController::eventDate() const
{
    return m_widgetData ? EVDateText::widgetDateText(*m_widgetData) : QString();
}

QMap<QString, QString> EVWindowController::countdownDesc() const
{
    return m_widgetData ? EVCountdown::countdownDesc(*m_widgetData) : QMap<QString, QString>();
}

QImage EVWindowController::iconImage()
{
    const IconSource source{m_widgetData, m_widgetData->revision()};
    if (source == m_iconSource)
        return m_icon;
    m_iconSource = source;
    const QByteArray data = m_widgetData->iconfileData();
    // Reading the data may have moved a legacy icon into a file, which is a change of its own.
    m_iconSource.revision = m_widgetData->revision();
    m_icon = EVImageData::sharedImage(data);
    return m_icon;
}

EVBackgroundImage EVWindowController::backgroundImage(const QSizeF &size)
{
    if (!m_widgetData)
        return EVBackgroundImage();
    const EVCustomStyle *style = EVTallyView::customStyleOfWidget(*m_widgetData);
    const BackgroundSource source{m_widgetData, m_widgetData->revision(),
                                  style ? style->revision() : 0, size};
    if (source == m_backgroundSource)
        return m_background;
    m_background = EVTallyView::backgroundImageForWidget(*m_widgetData, size);
    m_backgroundSource = source;
    // Reading a picture style's data may have moved it into a file.
    m_backgroundSource.styleRevision = style ? style->revision() : 0;
    return m_background;
}

void EVWindowController::save()
{
    if (m_widgetData)
        m_widgetData->setFrame(QRectF(m_window->geometry()));
}

void EVWindowController::destroy()
{
    m_widgetData = nullptr;
    m_window->hide();
}

void EVWindowController::setAlphaValue(double alpha)
{
    m_window->setWindowOpacity(alpha);
    if (EVDesktopWindowHints::hasCompositingManager())
        return;
    if (alpha <= 0.0 && m_window->isVisible()) {
        m_window->hide();
        m_hiddenByAlpha = true;
    } else if (alpha > 0.0 && m_hiddenByAlpha) {
        m_hiddenByAlpha = false;
        m_window->show();
    }
}

void EVWindowController::mouseDown(int clickCount)
{
    if (clickCount < 2)
        return;
    EVNotificationBus::defaultCenter()->postNotificationName(EVNotificationWidgetDoubleClick, this);
}

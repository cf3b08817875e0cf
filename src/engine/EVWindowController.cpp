#include "engine/EVWindowController.h"

#include "core/EVClock.h"
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
}

EVWindowController::~EVWindowController() = default;

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
    EVWidgetView *view = widgetView();
    const qint64 nowMSecs = EVClock::nowMSecsSinceEpoch();
    // A widget counted in days shows the same for hours: until then, and until the entry, its
    // style, the view's size or the time zone and locale change, there is nothing to compute.
    if (m_shown.source == shownSource() && nowMSecs >= m_shown.since && nowMSecs < m_shown.until)
        return;

    const QDateTime now = QDateTime::fromMSecsSinceEpoch(nowMSecs);
    // The lines straight from the calculation: the dictionary form of countdownDesc() would
    // cost an allocation per widget every second.
    const EVCountdown::Lines lines = EVCountdown::countdownLines(*m_widgetData, now);
    const QString title = m_widgetData->eventTitle();
    const QString date = eventDate();
    const QString &major = lines.majorDesc;
    const QString &second = lines.secondDesc;
    const QColor textColor = m_widgetData->textcolor();
    const QImage icon = iconImage();
    const EVBackgroundImage background = backgroundImage(view->size());
    // Taken after the icon and background were read, which may count as changes of their own.
    m_shown = {shownSource(), nowMSecs, EVCountdown::linesUnchangedUntil(*m_widgetData, now)};

    // What did not change is not painted again.
    const auto same = [](const QString &a, const QString &b) { return isIdentical(a, b); };
    const bool stillLayersUnchanged =
        same(view->title(), title) && same(view->date(), date) && view->textColor() == textColor &&
        view->icon().cacheKey() == icon.cacheKey() &&
        view->background().image().cacheKey() == background.image().cacheKey() &&
        view->background().transparent() == background.transparent();
    const bool linesUnchanged =
        same(view->majorCountdown(), major) && same(view->secondCountdown(), second);
    if (stillLayersUnchanged && linesUnchanged)
        return;

    // Window lists, screen readers and scripts name the widget by its event.
    if (!same(view->title(), title))
        m_window->setWindowTitle(title.isEmpty() ? QStringLiteral("Tallyvane Widget") : title);
    view->setTitle(title);
    view->setDate(date);
    view->setMajorCountdown(major);
    view->setSecondCountdown(second);
    view->setTextColor(textColor);
    view->setIcon(icon);
    view->setBackground(background);
    // A clock countdown changes only its two lines each second: only they are painted again.
    if (stillLayersUnchanged)
        view->update(view->countdownLinesRect());
    else
        view->update();
}

EVWindowController::ShownSource EVWindowController::shownSource() const
{
    const EVCustomStyle *style = EVTallyView::customStyleOfWidget(*m_widgetData);
    return {m_widgetData, m_widgetData->revision(), style ? style->revision() : 0,
            EVLocalCalendar::settingsGeneration(), widgetView()->size()};
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
    m_icon = data.isNull() ? QImage() : QImage::fromData(data);
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

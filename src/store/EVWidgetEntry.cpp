#include "store/EVWidgetEntry.h"

#include "core/EVAppImage.h"
#include "core/EVClock.h"
#include "platform/EVMainScreen.h"
#include "store/EVCustomStyle.h"
#include "store/EVPictureFile.h"
#include "store/EVRectText.h"

#include <algorithm>
#include <cmath>

namespace {

// A widget window is never wider or taller than this many main screens.
constexpr double mostScreensAcross = 4.0;

// Whether a window can be made at the frame (its size fits in integer geometry and in memory)
// and be seen there.
bool isShowable(const QRectF &frame, const QSizeF &screen)
{
    if (!std::isfinite(frame.x()) || !std::isfinite(frame.y()) || !std::isfinite(frame.width()) ||
        !std::isfinite(frame.height()))
        return false;
    if (!(frame.width() > 0.0 && frame.height() > 0.0))
        return false;
    if (frame.width() > mostScreensAcross * screen.width() ||
        frame.height() > mostScreensAcross * screen.height())
        return false;
    const QList<QRectF> screens = EVMainScreen::everyScreenFrame();
    return std::any_of(screens.begin(), screens.end(),
                       [&frame](const QRectF &each) { return each.intersects(frame); });
}

} // namespace

EVWidgetEntry::~EVWidgetEntry()
{
    for (EVCustomStyle *style : std::as_const(m_customStyles)) {
        if (style->widget() == this)
            style->setWidget(nullptr);
    }
}

void EVWidgetEntry::resetDefault()
{
    setUuid(newUuid());
    const QDateTime now = EVClock::now();
    setEventCreationDate(now);
    setEventTitle(defaultEventTitle());
    setEventDate(now.addSecs(defaultEventDistanceSeconds));
    setIconfileData(EVAppImage::tiffDataNamed(QStringLiteral("clock")));
    setStyleIndex(defaultStyleIndex);
    setCountdownUnit(defaultCountdownUnit);
    setTimeElement(false);
    setIgnoredDayType(0);
    setDateformat(defaultDateformat);
    setTextcolor(defaultTextcolor());
    setKeepTop(0);
    setPriority(0);
    setSoundAlert(false);
    setIntervalBeforeAlert(defaultIntervalBeforeAlert);
    setIntervalAlertUnit(defaultIntervalAlertUnit);
    setNote(QStringLiteral(""));
    setLockWidget(false);
}

QRectF EVWidgetEntry::frame() const
{
    if (m_widgetFrameDesc.isNull())
        return QRectF();
    const QRectF fractions = EVRectText::toRect(m_widgetFrameDesc);
    const QSizeF screen = EVMainScreen::frame().size();
    const QRectF frame(fractions.x() * screen.width(), fractions.y() * screen.height(),
                       fractions.width() * screen.width(), fractions.height() * screen.height());
    return isShowable(frame, screen) ? frame : QRectF();
}

void EVWidgetEntry::setFrame(const QRectF &frame)
{
    // No guard against a zero screen: the fractions are then stored as non-finite numbers.
    const QSizeF screen = EVMainScreen::frame().size();
    const QRectF fractions(frame.x() / screen.width(), frame.y() / screen.height(),
                           frame.width() / screen.width(), frame.height() / screen.height());
    setWidgetFrameDesc(EVRectText::fromRect(fractions));
}

QByteArray EVWidgetEntry::iconfileData()
{
    return EVPictureFile::readMigrating({m_uuid, m_iconFilePath, m_iconfile,
                                         [this](const QByteArray &data) { setIconfileData(data); },
                                         [this] { setIconfile(QByteArray()); }});
}

void EVWidgetEntry::setIconfileData(const QByteArray &data)
{
    if (const auto path = EVPictureFile::replace(m_uuid, data))
        setIconFilePath(*path);
    // The file changed even when its name did not.
    markChanged();
}

void EVWidgetEntry::addCustomStylesObject(EVCustomStyle *style)
{
    m_customStyles.append(style);
    style->setWidget(this);
    markChanged();
}

void EVWidgetEntry::removeObjectFromCustomStylesAtIndex(qsizetype index)
{
    if (index < 0 || index >= m_customStyles.size())
        return;
    EVCustomStyle *style = m_customStyles.takeAt(index);
    if (style->widget() == this)
        style->setWidget(nullptr);
    markChanged();
}

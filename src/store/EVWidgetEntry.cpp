#include "store/EVWidgetEntry.h"

#include "core/EVAppImage.h"
#include "core/EVClock.h"
#include "platform/EVMainScreen.h"
#include "store/EVCustomStyle.h"
#include "store/EVPictureFile.h"
#include "store/EVRectText.h"

namespace {

constexpr qint64 thirtyDaysInSeconds = 2592000;

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
    setEventTitle(QStringLiteral("Event Title"));
    setEventDate(now.addSecs(thirtyDaysInSeconds));
    setIconfileData(EVAppImage::tiffDataNamed(QStringLiteral("clock")));
    setStyleIndex(9);
    setCountdownUnit(1);
    setTimeElement(false);
    setIgnoredDayType(0);
    setDateformat(4);
    setTextcolor(QColor(Qt::white));
    setKeepTop(0);
    setPriority(0);
    setSoundAlert(false);
    setIntervalBeforeAlert(1);
    setIntervalAlertUnit(1);
    setNote(QStringLiteral(""));
    setLockWidget(false);
}

QRectF EVWidgetEntry::frame() const
{
    if (m_widgetFrameDesc.isNull())
        return QRectF();
    const QRectF fractions = EVRectText::toRect(m_widgetFrameDesc);
    const QSizeF screen = EVMainScreen::frame().size();
    return QRectF(fractions.x() * screen.width(), fractions.y() * screen.height(),
                  fractions.width() * screen.width(), fractions.height() * screen.height());
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

#include "notify/FLBannerWindow.h"

#include "core/EVAppImage.h"
#include "notify/FLBannerTextField.h"
#include "platform/EVDesktopWindowHints.h"
#include "render/EVFontFamily.h"
#include "render/NSImage+stretchable.h"

#include <QAbstractButton>
#include <QBitmap>
#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QRegion>

namespace {

constexpr QRect iconFrame{20, 18, 32, 32};
constexpr QRect actionButtonFrame{254, 48, 52, 22};
constexpr QRect otherButtonFrame{254, 20, 52, 22};
constexpr int buttonFontPixelSize = 12;

// Takes every click on the banner's body and shows nothing of itself.
class BodyButton : public QAbstractButton
{
public:
    using QAbstractButton::QAbstractButton;

protected:
    void paintEvent(QPaintEvent *) override {}
};

// The application's icon, or the clock picture while the application has set none.
QPixmap applicationIcon()
{
    const QIcon windowIcon = QGuiApplication::windowIcon();
    const QPixmap icon = windowIcon.isNull()
                             ? QPixmap::fromImage(EVAppImage::named(QStringLiteral("clock")))
                             : windowIcon.pixmap(iconFrame.size());
    // Scaled down in proportion to fit, never up.
    if (icon.width() > iconFrame.width() || icon.height() > iconFrame.height())
        return icon.scaled(iconFrame.size(), Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return icon;
}

QPushButton *makeButton(const QString &title, const QRect &frame, QWidget *parent)
{
    auto *button = new QPushButton(title, parent);
    QFont buttonFont(EVFontFamily::forName(QStringLiteral("LucidaGrande")));
    buttonFont.setPixelSize(buttonFontPixelSize);
    button->setFont(buttonFont);
    button->setGeometry(frame);
    button->setCheckable(true);
    button->setFocusPolicy(Qt::NoFocus);
    return button;
}

// The opaque part of the panel picture (alpha cut at one half): its faint outer shadow, which
// only a compositing manager can blend, is left out.
QRegion panelShape()
{
    static const QRegion shape(
        QBitmap::fromImage(FLBannerWindow::backgroundImage().createAlphaMask()));
    return shape;
}

} // namespace

FLBannerWindow::FLBannerWindow(QWidget *parent)
    : QWidget(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                          Qt::WindowDoesNotAcceptFocus | Qt::X11BypassWindowManagerHint)
{
    // Out of the window manager's hands: it places the banner exactly where the stack wants
    // it, on every workspace, and never gives it focus.
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_X11NetWmWindowTypeNotification);
    setFixedSize(bannerSize);

    // Added from the bottom up: each view lies over the ones before it.
    m_contentView = new QWidget(this);
    m_contentView->setGeometry(rect());

    m_backgroundView = new QLabel(m_contentView);
    m_backgroundView->setGeometry(rect());
    m_backgroundView->setScaledContents(true);
    m_backgroundView->setPixmap(QPixmap::fromImage(backgroundImage()));

    m_iconView = new QLabel(m_contentView);
    m_iconView->setGeometry(iconFrame);
    m_iconView->setAlignment(Qt::AlignCenter);
    m_iconView->setPixmap(applicationIcon());

    m_titleField = new FLBannerTextField(13, QColor(50, 50, 50), m_contentView);
    m_subtitleField = new FLBannerTextField(12, QColor(70, 70, 70), m_contentView);
    m_informativeField = new FLBannerTextField(11, QColor(90, 90, 90), m_contentView);
    setTextFieldsWidened(false);

    m_bgButton = new BodyButton(m_contentView);
    m_bgButton->setGeometry(rect());
    m_bgButton->setCheckable(true);
    m_bgButton->setFocusPolicy(Qt::NoFocus);

    m_actionButton = makeButton(FLActionButtonDefaultTitle, actionButtonFrame, m_contentView);
    m_otherButton = makeButton(FLOtherButtonDefaultTitle, otherButtonFrame, m_contentView);
}

QImage FLBannerWindow::backgroundImage()
{
    static const QImage image = NSImageStretchable::drawStretchableInRect(
        EVAppImage::named(QStringLiteral("banner2lines")), QRectF(QPointF(0, 0), bannerSize),
        QMarginsF(30, 30, 30, 30));
    return image;
}

void FLBannerWindow::setTextFieldsWidened(bool widened)
{
    m_titleField->setGeometry(widened ? bannerTitleFrame : alertTitleFrame);
    m_subtitleField->setGeometry(widened ? bannerSubtitleFrame : alertSubtitleFrame);
    m_informativeField->setGeometry(widened ? bannerInformativeFrame : alertInformativeFrame);
}

void FLBannerWindow::fitShapeTo(const QTransform &contentTransform)
{
    if (!m_cutToShape)
        return;
    const QRegion shape = contentTransform.map(panelShape());
    // An empty mask would mean no mask at all; a pixel outside the window hides all of it.
    setMask(shape.isEmpty() ? QRegion(-1, -1, 1, 1) : shape);
}

void FLBannerWindow::showEvent(QShowEvent *event)
{
    m_cutToShape = !panelShape().isEmpty() && !EVDesktopWindowHints::hasCompositingManager();
    fitShapeTo(QTransform());
    QWidget::showEvent(event);
}

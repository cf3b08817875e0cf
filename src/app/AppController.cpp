#include "app/AppController.h"

#include "app/EVAboutBox.h"
#include "app/EVApplication.h"
#include "app/EVEmailController.h"
#include "controls/EVSegmentedControl.h"
#include "core/EVAlert.h"
#include "core/EVAppImage.h"
#include "core/EVAppInfo.h"
#include "core/EVAppSetting.h"
#include "engine/EVWidgetCommands.h"
#include "engine/EVWidgetsManager.h"
#include "engine/EVWindowController.h"
#include "platform/EVLoginItem.h"
#include "platform/EVNotificationBus.h"
#include "platform/EVTrayHost.h"
#include "prefs/EVPerferenceController.h"
#include "render/EVFontFamily.h"
#include "store/EVWidgetEntry.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QWidget>

QString AppController::feedbackSubject(const QString &name, const QString &version,
                                       int systemVersion)
{
    return QStringLiteral("Feedback: %1(%2.%3)")
        .arg(name, version, QString::number(systemVersion, 16));
}

QString AppController::feedbackSubject()
{
    return feedbackSubject(EVAppInfo::name(), EVAppInfo::version(), EVAppInfo::systemVersion());
}

AppController::AppController(EVWidgetsManager *widgetsManager, QObject *parent)
    : QObject(parent)
    , m_widgetsManager(widgetsManager)
{}

AppController::~AppController() = default;

EVAboutBox *AppController::aboutBox() const
{
    return m_aboutBox.get();
}

EVWidgetsManager *AppController::widgetsManager() const
{
    return m_widgetsManager ? m_widgetsManager : EVWidgetsManager::shareWidgetsMananger();
}

void AppController::onApplicationDidFinishLaunching()
{
    setStatusMenuState(EVAppSetting::shareAppSetting()->showStatusBarIcon());
    // The manager's first use starts its timer and shows the stored widgets.
    EVWidgetsManager *manager = widgetsManager();
    manager->setup();
    connect(EVNotificationBus::defaultCenter(), &EVNotificationBus::notificationPosted, this,
            &AppController::onNotificationPosted, Qt::UniqueConnection);
    if (manager->widgetEntries().isEmpty())
        onEVNotificationWidgetDoubleClick();
}

void AppController::onApplicationDidBecomeActive()
{
    if (widgetsManager()->widgetEntries().isEmpty())
        onEVNotificationWidgetDoubleClick();
}

void AppController::onApplicationWillTerminate()
{
    EVAppSetting::shareAppSetting()->save();
    EVWidgetsManager *manager = widgetsManager();
    manager->save();
    manager->teardown();
    disconnect(EVNotificationBus::defaultCenter(), nullptr, this, nullptr);
}

bool AppController::onApplicationShouldTerminate()
{
    if (m_powerOffNotification)
        return true;
    if (EVAppSetting::shareAppSetting()->openAtLogin())
        return true;

    EVWidgetsManager *manager = widgetsManager();
    manager->setAllDesktopWidgetState(0);
    EVAlert alert;
    alert.icon = QMessageBox::Question;
    alert.messageText = QStringLiteral("Do you want to quit Tallyvane?");
    alert.informativeText = QStringLiteral(
        "We highly recommend that enabled the Open At Login option, so that when turn on computer "
        "again you can see the Tallyvane.");
    alert.buttons = {QStringLiteral("Quit"), QStringLiteral("Cancel")};
    alert.checkBox.title = QStringLiteral("Open %1 at login").arg(EVAppInfo::name());
    alert.checkBox.bold = true;
    alert.checkBox.checked = EVAppSetting::shareAppSetting()->openAtLogin();
    alert.checkBox.toggled = [this](bool checked) { onAlertOpenAtLogin(checked); };
    if (alert.run() == 0)
        return true; // the widgets stay invisible until the process ends
    manager->setAllDesktopWidgetState(1);
    return false;
}

void AppController::setStatusMenuState(bool shown)
{
    m_statusItemWanted = shown;
    m_trayHost.reset();
    m_statusItem.reset();
    m_statusMenu.reset();
    if (shown) {
        // At login the panel may come up after us: wait for its tray for a while.
        m_trayHost = std::make_unique<EVTrayHost>();
        connect(m_trayHost.get(), &EVTrayHost::available, this, &AppController::onTrayAvailable);
        m_trayHost->start();
    }
    EVAppSetting::shareAppSetting()->setShowStatusBarIcon(shown);
}

void AppController::onTrayAvailable()
{
    if (m_statusItemWanted && !m_statusItem)
        showStatusItem();
}

void AppController::showStatusItem()
{
    m_statusMenu = std::make_unique<QMenu>();
    m_statusMenu->setObjectName(QStringLiteral("statusMenu"));
    QFont font(EVFontFamily::forName(QStringLiteral("Menlo")));
    font.setItalic(true);
    font.setPixelSize(13);
    m_statusMenu->setFont(font);
    m_statusMenu->addAction(QStringLiteral("About %1").arg(EVAppInfo::name()), this,
                            &AppController::onAbout);
    m_statusMenu->addAction(QStringLiteral("Preferences..."), this,
                            [this] { onEVNotificationWidgetDoubleClick(); });
    m_statusMenu->addAction(QStringLiteral("Quit"), this, &AppController::onQuit);

    m_statusItem =
        std::make_unique<QSystemTrayIcon>(EVAppImage::icon(QStringLiteral("status_icon.png")));
    m_statusItem->setToolTip(QStringLiteral("%1 %2").arg(EVAppInfo::name(), EVAppInfo::version()));
    m_statusItem->setContextMenu(m_statusMenu.get());
    // A plain click opens the menu too, as a status item's does.
    connect(m_statusItem.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger && m_statusMenu)
                    m_statusMenu->popup(QCursor::pos());
            });
    m_statusItem->show();
}

void AppController::setOpenAtLoginState(bool enabled)
{
    EVLoginItem loginItem(EVAppInfo::name(), QCoreApplication::applicationFilePath());
    if (loginItem.setEnabled(enabled)) {
        EVAppSetting::shareAppSetting()->setOpenAtLogin(enabled);
        return;
    }
    EVAlert alert;
    alert.icon = QMessageBox::Warning;
    alert.messageText = QStringLiteral("An error ocurred");
    alert.informativeText =
        enabled ? QStringLiteral("Couldn't add Helper App to launch at login item list.")
                : QStringLiteral("Couldn't remove Helper App from launch at login item list.");
    alert.buttons = {QStringLiteral("OK")};
    alert.run();
}

QJsonObject AppController::runWidgetCommand(const QJsonObject &request)
{
    const QJsonObject result = EVWidgetCommands(widgetsManager()).run(request);
    if (m_perferenceController && m_perferenceController->isWindowLoaded()) {
        m_perferenceController->reloadTableViewDataWithDelay(false);
        m_perferenceController->updateRightViewsState();
    }
    return result;
}

void AppController::onEVNotificationWidgetDoubleClick(QObject *sender)
{
    if (!m_perferenceController) {
        m_perferenceController = std::make_unique<EVPerferenceController>(m_widgetsManager);
        m_perferenceController->setToolbarActionDelegate(this);
    }
    m_perferenceController->showWindow();
    if (auto *controller = qobject_cast<EVWindowController *>(sender)) {
        if (const EVWidgetEntry *entry = controller->widgetData())
            m_perferenceController->selectWidgetItemWithUUID(entry->uuid());
    }
}

void AppController::onNotificationPosted(const QString &name, QObject *object)
{
    if (name == EVNotificationWidgetDoubleClick)
        onEVNotificationWidgetDoubleClick(object);
}

void AppController::onNSWorkspaceWillPowerOffNotification()
{
    m_powerOffNotification = true;
}

void AppController::onAlertOpenAtLogin(bool checked)
{
    setOpenAtLoginState(checked);
}

void AppController::onAbout()
{
    if (!m_aboutBox)
        m_aboutBox = std::make_unique<EVAboutBox>();
    m_aboutBox->show();
    m_aboutBox->raise();
    m_aboutBox->activateWindow();
}

void AppController::onQuit()
{
    EVApplication::terminate();
}

void AppController::perferenceToolBarOpenAtLoginStateDidChanged(EVSegmentedControl *sender)
{
    setOpenAtLoginState(sender->selectedSegment() == 0);
}

void AppController::perferenceToolBarStatusBarIconStateDidChanged(EVSegmentedControl *sender)
{
    setStatusMenuState(sender->selectedSegment() == 0);
}

void AppController::perferenceToolBarFeedbackClicked(QAbstractButton *)
{
    EVEmailController::sendEmailWithoutBody(EVAppInfo::feedbackAddress(), feedbackSubject());
}

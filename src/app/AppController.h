#pragma once

#include "prefs/EVPerferenceToolBarActionDelegate.h"

#include <QJsonObject>
#include <QObject>

#include <memory>

class EVAboutBox;
class EVLoginItem;
class EVPerferenceController;
class EVTrayHost;
class EVWidgetsManager;
class QMenu;
class QSystemTrayIcon;

// The shell's work: the status item with its menu, the preferences window (also on a widget's
// double click), open at login, the quit question and the feedback mail. Widgets themselves
// are run by the widgets manager, which this only starts, saves and stops.
class AppController : public QObject, public EVPerferenceToolBarActionDelegate
{
    Q_OBJECT

public:
    // The subject of the feedback mail: "Feedback: name(version.system version in hex)".
    static QString feedbackSubject(const QString &name, const QString &version, int systemVersion);
    static QString feedbackSubject();

    // The shell of the process-wide widgets manager, or of the one given (tests).
    explicit AppController(EVWidgetsManager *widgetsManager = nullptr, QObject *parent = nullptr);
    ~AppController() override;

    void onApplicationDidFinishLaunching();
    void onApplicationWillTerminate();
    void onApplicationDidBecomeActive();
    // True to end the application now, false to go on running.
    bool onApplicationShouldTerminate();

    // Shows or hides the status item and records the choice.
    void setStatusMenuState(bool shown);
    // Switches open at login; the choice is recorded only when the desktop took it.
    void setOpenAtLoginState(bool enabled);

    // A widget command from the command line, on the widgets on screen; the preferences window's
    // list follows.
    QJsonObject runWidgetCommand(const QJsonObject &request);

    bool powerOffNotification() const { return m_powerOffNotification; }
    EVPerferenceController *perferenceController() const { return m_perferenceController.get(); }
    QSystemTrayIcon *statusItem() const { return m_statusItem.get(); }
    QMenu *statusMenu() const { return m_statusMenu.get(); }
    EVAboutBox *aboutBox() const;
    EVWidgetsManager *widgetsManager() const;

    void perferenceToolBarOpenAtLoginStateDidChanged(EVSegmentedControl *sender) override;
    void perferenceToolBarStatusBarIconStateDidChanged(EVSegmentedControl *sender) override;
    void perferenceToolBarFeedbackClicked(QAbstractButton *sender) override;

public Q_SLOTS:
    // Opens the preferences window; with the window controller of a double-clicked widget, it
    // selects that widget.
    void onEVNotificationWidgetDoubleClick(QObject *sender = nullptr);
    // The desktop is ending the session or the system is going down: quit without a question.
    void onNSWorkspaceWillPowerOffNotification();
    void onAlertOpenAtLogin(bool checked);
    void onAbout();
    void onQuit();

private Q_SLOTS:
    void onNotificationPosted(const QString &name, QObject *object);
    void onTrayAvailable();

private:
    void showStatusItem();

    EVWidgetsManager *m_widgetsManager;
    bool m_powerOffNotification = false;
    bool m_statusItemWanted = false;
    std::unique_ptr<EVPerferenceController> m_perferenceController;
    std::unique_ptr<QMenu> m_statusMenu;
    std::unique_ptr<QSystemTrayIcon> m_statusItem;
    std::unique_ptr<EVTrayHost> m_trayHost;
    std::unique_ptr<EVAboutBox> m_aboutBox;
};

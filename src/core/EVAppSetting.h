#pragma once

#include <QSettings>

#include <optional>

// The two application-wide choices that belong to no widget: open at login, and show the
// status-bar icon. One instance is read from the user defaults on first use and written back
// only by save(), which the shell calls when the application ends.
class EVAppSetting
{
public:
    // The process-wide settings, read on the first call.
    static EVAppSetting *shareAppSetting();

    // The defaults: not opened at login, status-bar icon shown.
    EVAppSetting() = default;

    // The record stored under "kAppSetting" in the user defaults, or the defaults when there is
    // none or it cannot be read.
    static EVAppSetting readFromUserDefaults();

    // The record kept in settings: a group "kAppSetting" holding the booleans "openAtLogin"
    // and "showStatusBarIcon". A key the record lacks reads false. None when there is no
    // record, or when it is not a group of booleans.
    static std::optional<EVAppSetting> decode(QSettings &settings);
    void encode(QSettings &settings) const;

    // Writes the record to the user defaults and flushes them at once; a failure is silent.
    void save() const;

    bool openAtLogin() const { return m_openAtLogin; }
    void setOpenAtLogin(bool openAtLogin) { m_openAtLogin = openAtLogin; }
    bool showStatusBarIcon() const { return m_showStatusBarIcon; }
    void setShowStatusBarIcon(bool show) { m_showStatusBarIcon = show; }

private:
    bool m_openAtLogin = false;
    bool m_showStatusBarIcon = true;
};

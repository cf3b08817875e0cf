#pragma once

#include <QString>
#include <QUrl>

#include <functional>

class EVAlert;
class QWidget;

// Asks an established user, now and then, to rate the application in its store: at most once
// per opening of the preferences window, by chance, and never again once the user rated or
// declined. The answer is kept in the user defaults under "RateApp".
class Rate
{
public:
    // The launch count from which the preferences window offers the question.
    static constexpr int launchThreshold = 8;
    // "RateApp": 0 (or none) not answered, 1 rated, -1 declined.
    static inline const QString rateAppKey = QStringLiteral("RateApp");
    // The application's page in the store, which the "rate" answer opens.
    static inline const QString storePageAddress =
        QStringLiteral("https://flathub.org/apps/com.velto.tallyvane");
    // The texts of the question, one JSON object of key and text.
    static inline const QString defaultStringTable = QStringLiteral(":/strings/iRate.json");

    // The answers, by the button chosen.
    static constexpr int rateReturnCode = 1;
    static constexpr int declineReturnCode = 0;
    static constexpr int remindReturnCode = -1;

    static Rate *shareRate();

    explicit Rate(const QString &stringTablePath = defaultStringTable);

    // The table's text for key; defaultText when the table has none, and the key itself when
    // that is none too.
    QString localizedStringForKey(const QString &key, const QString &defaultText = QString()) const;

    // Unless the user answered already, and only one time in four, asks as a sheet on window.
    void showRateAlert(QWidget *window);

    // Acts on the answer: opens the store page and remembers 1, remembers -1, or nothing.
    void alertDidEndReturnCodeContextInfo(const EVAlert &alert, int returnCode);

    // Replaces the one-in-four draw for tests; an empty source restores the system's entropy.
    using RandomSource = std::function<quint32()>;
    static void setRandomSource(RandomSource source);

private:
    QString m_stringTablePath;
};

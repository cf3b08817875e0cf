#include "PreferencesFixture.h"
#include "TestMain.h"

#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QTabWidget>

class TestPreferencesKeyboard : public QObject
{
    Q_OBJECT

private:
    // The outlet (or other named control) that the focused widget belongs to.
    static QString focusedControl(QWidget *root)
    {
        for (QWidget *widget = QApplication::focusWidget(); widget && widget != root;
             widget = widget->parentWidget()) {
            // The tab widget's own bar stands for the tab widget.
            if (widget->objectName().startsWith(QLatin1String("qt_")))
                continue;
            if (widget->objectName().contains(QLatin1Char('_')) ||
                widget->objectName().endsWith(QLatin1String("Seg")) ||
                widget->objectName().endsWith(QLatin1String("Button")) ||
                widget->objectName().endsWith(QLatin1String("View")))
                return widget->objectName();
        }
        return QString();
    }

    // Every control that Tab reaches from the focused one, once round the window.
    static QStringList tabRound(QWidget *root, int presses)
    {
        QStringList reached;
        for (int i = 0; i < presses; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            const QString control = focusedControl(root);
            if (!control.isEmpty() && !reached.contains(control))
                reached << control;
        }
        return reached;
    }

private Q_SLOTS:
    void everyControlOfTheWindowIsReachedWithTab_data()
    {
        QTest::addColumn<int>("tab");
        QTest::addColumn<QStringList>("controls");
        const QStringList always = {"openAtLoginSeg",  "showStatusBarIconSeg", "feedbackButton",
                                    "widgetTableView", "addWidgetButton",      "removeWidgetButton",
                                    "configTabView"};
        QTest::newRow("General") << 0
                                 << always + QStringList{
                                                 "general_title",       "general_date",
                                                 "general_timeElement", "general_icon",
                                                 "general_styles",      "general_addCustomStyle"};
        QTest::newRow("Advanced") << 1
                                  << always +
                                         QStringList{"advanced_format",  "advanced_countUnit",
                                                     "advanced_ignore",  "advanced_color",
                                                     "advanced_keeptop", "advanced_lockWidget"};
        QTest::newRow("Note") << 2
                              << always + QStringList{"note_priority", "note_remind",
                                                      "note_interval", "note_intervalUnit",
                                                      "note_textNote"};
    }

    void everyControlOfTheWindowIsReachedWithTab()
    {
        QFETCH(int, tab);
        QFETCH(QStringList, controls);
        Preferences preferences({QStringLiteral("one"), QStringLiteral("two")});
        // With a reminder pending, so that its lead time can be edited as well.
        for (EVWidgetEntry *entry : preferences.entries())
            entry->setSoundAlert(true);
        QWidget *window = preferences.controller.window();
        preferences.controller.showWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
        preferences.clickRow(0);
        preferences.find<QTabWidget>("configTabView")->setCurrentIndex(tab);
        const QStringList reached = tabRound(window, 60);
        for (const QString &control : controls)
            QVERIFY2(reached.contains(control),
                     qPrintable(control + " not in " + reached.join(", ")));
    }

    void everyControlOfTheCustomStyleSheetIsReachedWithTab()
    {
        Preferences preferences({QStringLiteral("one")});
        preferences.controller.showWindow();
        QVERIFY(QTest::qWaitForWindowActive(preferences.controller.window()));
        preferences.clickRow(0);
        QTest::mouseClick(preferences.find<QPushButton>("general_addCustomStyle"), Qt::LeftButton);
        QDialog *sheet = preferences.find<QDialog>("customStylePanel");
        QTRY_COMPARE(QGuiApplication::focusWindow(), sheet->windowHandle());
        const QStringList reached = tabRound(sheet, 30);
        for (const char *control : {"cs_customTypePicture", "cs_imagePath", "cs_browseImage",
                                    "cs_opacitySlider", "cs_opacityValue", "cs_cancel", "cs_done"})
            QVERIFY2(reached.contains(QLatin1String(control)),
                     qPrintable(QLatin1String(control) + " not in " + reached.join(", ")));
        // With the colour type chosen, its controls take the picture's place.
        QTest::mouseClick(preferences.find<QWidget>("cs_customTypeColor"), Qt::LeftButton);
        const QStringList colour = tabRound(sheet, 30);
        for (const char *control : {"cs_customTypeColor", "cs_color", "cs_changeColor"})
            QVERIFY2(colour.contains(QLatin1String(control)),
                     qPrintable(QLatin1String(control) + " not in " + colour.join(", ")));
        QTest::keyClick(sheet, Qt::Key_Escape);
    }
};

TALLYVANE_TEST_MAIN(TestPreferencesKeyboard)
#include "tst_preferenceskeyboard.moc"

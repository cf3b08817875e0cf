#include "DialogSeams.h"
#include "PixelTools.h"
#include "PreferencesFixture.h"
#include "TestMain.h"

#include "controls/LUMCalendarView.h"
#include "controls/LUMDatePicker.h"
#include "controls/LUMDatePickerController.h"
#include "controls/LUMGraphicalDatePicker.h"
#include "controls/LUMPopover.h"
#include "core/EVAppImage.h"
#include "prefs/EVIconImageView.h"

#include <QCheckBox>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QTabWidget>
#include <QToolButton>

namespace {

QImage iconOf(EVWidgetEntry *entry)
{
    const QByteArray data = entry->iconfileData();
    return data.isNull() ? QImage() : QImage::fromData(data);
}

const QDateTime sample(QDate(2026, 3, 14), QTime(10, 5, 6));

} // namespace

class TestEVGeneralTab : public QObject
{
    Q_OBJECT

private:
    // Two widgets, the first one selected, in a window on screen.
    struct General : Preferences
    {
        General()
            : Preferences({QStringLiteral("Launch"), QStringLiteral("Holiday")})
        {
            entries().at(0)->setEventDate(sample);
            entries().at(1)->setEventDate(sample.addDays(10));
            entries().at(1)->setTimeElement(true);
            controller.showWindow();
            clickRow(0);
        }
        QLineEdit *title() const { return find<QLineEdit>("general_title"); }
        LUMDatePicker *date() const { return find<LUMDatePicker>("general_date"); }
        QCheckBox *timeElement() const { return find<QCheckBox>("general_timeElement"); }
        EVIconImageView *icon() const { return find<EVIconImageView>("general_icon"); }
    };

private Q_SLOTS:
    void selectingAWidgetShowsItsValues()
    {
        General general;
        QCOMPARE(general.title()->text(), QStringLiteral("Launch"));
        QCOMPARE(general.date()->dateValue(), sample);
        QVERIFY(!general.timeElement()->isChecked());
        QVERIFY(!general.icon()->image().isNull());
        general.clickRow(1);
        QCOMPARE(general.title()->text(), QStringLiteral("Holiday"));
        QCOMPARE(general.date()->dateValue(), sample.addDays(10));
        QVERIFY(general.timeElement()->isChecked());
    }

    void timeElementOnShowsHoursMinutesAndSecondsAndOffOnlyTheDate()
    {
        General general;
        QCOMPARE(general.date()->datePickerElements(), 224);
        QCOMPARE(general.date()->text(), QStringLiteral("2026-03-14"));
        general.clickRow(1);
        QCOMPARE(general.date()->datePickerElements(), 238);
        QCOMPARE(general.date()->text(), QStringLiteral("2026-03-24 10:05:06"));
    }

    void timeCheckBoxWritesTheEntryAndSwitchesTheFieldsElements()
    {
        General general;
        EVWidgetEntry *entry = general.entries().at(0);
        QTest::mouseClick(general.timeElement(), Qt::LeftButton);
        QVERIFY(entry->timeElement());
        QCOMPARE(general.date()->datePickerElements(), 238);
        QTest::mouseClick(general.timeElement(), Qt::LeftButton);
        QVERIFY(!entry->timeElement());
        QCOMPARE(general.date()->datePickerElements(), 224);
    }

    void typingThreeCharactersWritesTheTitleThreeTimes()
    {
        General general;
        EVWidgetEntry *entry = general.entries().at(0);
        general.title()->setFocus();
        general.title()->end(false);
        const quint64 before = entry->revision();
        QTest::keyClicks(general.title(), QStringLiteral("!?x"));
        QCOMPARE(entry->revision(), before + 3);
        QCOMPARE(entry->eventTitle(), QStringLiteral("Launch!?x"));
        // The list shows it as well.
        QCOMPARE(general.table()->model()->index(0, 1).data().toString(),
                 QStringLiteral("Launch!?x"));
    }

    void showingAWidgetWritesNothing()
    {
        General general;
        EVWidgetEntry *second = general.entries().at(1);
        const quint64 before = second->revision();
        general.clickRow(1);
        general.clickRow(0);
        general.clickRow(1);
        QCOMPARE(second->revision(), before);
    }

    void typingInTheDateFieldWritesTheEventDate()
    {
        General general;
        general.date()->setFocus();
        general.date()->setCurrentSection(QDateTimeEdit::DaySection);
        QTest::keyClick(general.date(), Qt::Key_Down);
        QCOMPARE(general.entries().at(0)->eventDate(), sample.addDays(-1));
    }

    void pickingADayInThePopoverWritesTheEventDate()
    {
        General general;
        QTest::mouseClick(general.date()->calendarButton(), Qt::LeftButton);
        QVERIFY(general.date()->popover()->isVisible());
        LUMCalendarView *calendar = general.date()->controller()->datePicker()->calendar();
        QTest::mouseClick(calendar, Qt::LeftButton, {},
                          calendar->dayRect(QDate(2026, 3, 28)).center());
        QCOMPARE(general.entries().at(0)->eventDate(),
                 QDateTime(QDate(2026, 3, 28), QTime(10, 5, 6)));
        general.date()->popover()->close();
    }

    void iconFile1000WideIsStored200Wide()
    {
        General general;
        OpenPanelRecorder panels;
        panels.queueChoice(
            pictureFile(general.home.path(), QStringLiteral("wide.png"), {1000, 500}));
        QTest::mouseDClick(general.icon(), Qt::LeftButton);
        QCOMPARE(panels.shown().size(), 1);
        const QImage stored = iconOf(general.entries().at(0));
        QCOMPARE(stored.size(), QSize(200, 100));
        QCOMPARE(general.icon()->image().size(), QSize(200, 100));
    }

    void iconFile150WideIsStoredAtItsOwnSize()
    {
        General general;
        OpenPanelRecorder panels;
        panels.queueChoice(
            pictureFile(general.home.path(), QStringLiteral("small.png"), {150, 90}));
        QTest::mouseDClick(general.icon(), Qt::LeftButton);
        QCOMPARE(iconOf(general.entries().at(0)).size(), QSize(150, 90));
    }

    void iconDialogAsksForOnePictureFileOfTheIconTypes()
    {
        General general;
        OpenPanelRecorder panels;
        panels.queueCancel();
        const QByteArray before = general.entries().at(0)->iconfileData();
        QTest::mouseDClick(general.icon(), Qt::LeftButton);
        QCOMPARE(panels.shown().size(), 1);
        const EVOpenPanel &panel = panels.shown().first();
        QCOMPARE(panel.title, QStringLiteral("Choose icon picture..."));
        QCOMPARE(panel.allowedFileTypes, QStringList({"png", "jpg", "jpeg", "bmp", "tif"}));
        QVERIFY(panel.canChooseFiles);
        QVERIFY(!panel.canChooseDirectories);
        QVERIFY(!panel.allowsMultipleSelection);
        // Cancelled: the icon stays.
        QCOMPARE(general.entries().at(0)->iconfileData(), before);
    }

    void singleClickOnTheIconOpensNothing()
    {
        General general;
        OpenPanelRecorder panels;
        QTest::mouseClick(general.icon(), Qt::LeftButton);
        QVERIFY(panels.shown().isEmpty());
    }

    void unreadablePictureClearsTheIcon()
    {
        General general;
        OpenPanelRecorder panels;
        const QString path = general.home.path() + QStringLiteral("/broken.png");
        QFile broken(path);
        QVERIFY(broken.open(QIODevice::WriteOnly));
        broken.write("not a picture at all");
        broken.close();
        panels.queueChoice(path);
        QTest::mouseDClick(general.icon(), Qt::LeftButton);
        QVERIFY(general.icon()->image().isNull());
        QVERIFY(general.entries().at(0)->iconfileData().isEmpty());
    }

    void contextMenuChoosesResetsAndClears()
    {
        General general;
        QMenu *menu = general.icon()->contextMenu();
        QCOMPARE(menu->title(), QStringLiteral("MainMenu"));
        QVERIFY(menu->font().italic());
        QCOMPARE(menu->font().pixelSize(), 13);
        QVERIFY(QFontInfo(menu->font()).fixedPitch());
        const QList<QAction *> items = menu->actions();
        QCOMPARE(items.size(), 3);
        QCOMPARE(items.at(0)->text(), QStringLiteral("Choose..."));
        QCOMPARE(items.at(1)->text(), QStringLiteral("Default"));
        QCOMPARE(items.at(2)->text(), QStringLiteral("Clear"));
        for (QAction *item : items)
            QVERIFY(item->shortcut().isEmpty());

        EVWidgetEntry *entry = general.entries().at(0);
        items.at(2)->trigger();
        QVERIFY(entry->iconfileData().isEmpty());
        QVERIFY(general.icon()->image().isNull());
        items.at(1)->trigger();
        QCOMPARE(iconOf(entry).size(), EVAppImage::named(QStringLiteral("clock")).size());
        OpenPanelRecorder panels;
        items.at(0)->trigger();
        QCOMPARE(panels.shown().size(), 1);
    }

    void withoutASelectionTheTabLeavesItsControlsAsTheyAre()
    {
        General general;
        general.table()->selectionModel()->clear();
        QCOMPARE(general.title()->text(), QStringLiteral("Launch"));
        general.entries().at(0)->setEventTitle(QStringLiteral("Changed elsewhere"));
        QMetaObject::invokeMethod(general.find<QTabWidget>("configTabView"), "setCurrentIndex",
                                  Q_ARG(int, 1));
        QMetaObject::invokeMethod(general.find<QTabWidget>("configTabView"), "setCurrentIndex",
                                  Q_ARG(int, 0));
        QCOMPARE(general.title()->text(), QStringLiteral("Launch"));
        // Typing then goes nowhere.
        QTest::keyClicks(general.title(), QStringLiteral("abc"));
        QCOMPARE(general.entries().at(0)->eventTitle(), QStringLiteral("Changed elsewhere"));
    }

    void onlyTheShownTabIsRefreshedWhenTheSelectionChanges()
    {
        General general;
        auto *tabs = general.find<QTabWidget>("configTabView");
        tabs->setCurrentIndex(1);
        general.clickRow(1);
        QCOMPARE(general.title()->text(), QStringLiteral("Launch"));
        tabs->setCurrentIndex(0);
        QCOMPARE(general.title()->text(), QStringLiteral("Holiday"));
    }
};

TALLYVANE_TEST_MAIN(TestEVGeneralTab)
#include "tst_evgeneraltab.moc"

#include "AppSeams.h"
#include "DialogSeams.h"
#include "PixelTools.h"
#include "PreferencesFixture.h"
#include "TestMain.h"

#include "controls/EVColorWell.h"
#include "controls/EVDoubleSlider.h"
#include "prefs/EVGeneralTab.h"
#include "prefs/ImageBrowserView.h"
#include "store/EVCustomStyle.h"

#include <QApplication>
#include <QButtonGroup>
#include <QDialog>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

class TestEVCustomStylePanel : public QObject
{
    Q_OBJECT

private:
    // One widget with the given number of colour styles, selected, in a window on screen.
    struct Panel : Preferences
    {
        explicit Panel(int customStyles = 0)
            : Preferences({QStringLiteral("Launch")})
        {
            for (int i = 0; i < customStyles; ++i)
                manager.addCustomStyle(entries().first())->setColor(Qt::gray);
            controller.showWindow();
            clickRow(0);
        }
        EVWidgetEntry *entry() { return entries().first(); }
        QDialog *sheet() const { return find<QDialog>("customStylePanel"); }
        template <typename T>
        T *control(const char *name) const
        {
            return find<T>(name);
        }
        void clickAdd() const
        {
            QTest::mouseClick(find<QPushButton>("general_addCustomStyle"), Qt::LeftButton);
        }
        void chooseColor(const QColor &color) const
        {
            ColorPanelRecorder colors;
            colors.queueColor(color);
            QTest::mouseClick(find<QPushButton>("cs_changeColor"), Qt::LeftButton);
        }
        void choosePicture(const QString &path) const
        {
            OpenPanelRecorder panels;
            panels.queueChoice(path);
            QTest::mouseClick(find<QPushButton>("cs_browseImage"), Qt::LeftButton);
        }
        void clickDone() const { QTest::mouseClick(find<QPushButton>("cs_done"), Qt::LeftButton); }
        // Opens the sheet and adds a colour style at the opacity.
        void addColorStyle(const QColor &color, double opacity)
        {
            clickAdd();
            QTest::mouseClick(find<QRadioButton>("cs_customTypeColor"), Qt::LeftButton);
            chooseColor(color);
            find<EVDoubleSlider>("cs_opacitySlider")->setDoubleValue(opacity);
            clickDone();
        }
        QString pictureFile(const QString &name, const QSize &size) const
        {
            return ::pictureFile(home.path(), name, size);
        }
    };

private Q_SLOTS:
    void sheetOpensOnTheWindowWithThePictureTypeSelected()
    {
        Panel panel;
        panel.clickAdd();
        QDialog *sheet = panel.sheet();
        QVERIFY(sheet->isVisible());
        QCOMPARE(sheet->windowModality(), Qt::WindowModal);
        QCOMPARE(sheet->parentWidget(), panel.controller.window());
        QCOMPARE(panel.control<QButtonGroup>("cs_customType")->checkedId(), 0);
        QVERIFY(panel.control<QLineEdit>("cs_imagePath")->isEnabled());
        QVERIFY(panel.control<QPushButton>("cs_browseImage")->isEnabled());
        QVERIFY(!panel.control<EVColorWell>("cs_color")->isEnabled());
        QVERIFY(!panel.control<QPushButton>("cs_changeColor")->isEnabled());
        QVERIFY(panel.control<QPushButton>("cs_done")->isDefault());
    }

    void choosingTheColourTypeEnablesTheColourControlsOnly()
    {
        Panel panel;
        panel.clickAdd();
        QTest::mouseClick(panel.control<QRadioButton>("cs_customTypeColor"), Qt::LeftButton);
        QCOMPARE(panel.control<QButtonGroup>("cs_customType")->checkedId(), 1);
        QVERIFY(!panel.control<QLineEdit>("cs_imagePath")->isEnabled());
        QVERIFY(!panel.control<QPushButton>("cs_browseImage")->isEnabled());
        QVERIFY(panel.control<EVColorWell>("cs_color")->isEnabled());
        QVERIFY(panel.control<QPushButton>("cs_changeColor")->isEnabled());
        QTest::mouseClick(panel.control<QRadioButton>("cs_customTypePicture"), Qt::LeftButton);
        QVERIFY(panel.control<QLineEdit>("cs_imagePath")->isEnabled());
        QVERIFY(!panel.control<EVColorWell>("cs_color")->isEnabled());
    }

    void arrowKeysChangeTheTypeToo()
    {
        Panel panel;
        panel.clickAdd();
        QTRY_COMPARE(QGuiApplication::focusWindow(), panel.sheet()->windowHandle());
        auto *picture = panel.control<QRadioButton>("cs_customTypePicture");
        QCOMPARE(QApplication::focusWidget(), picture);
        QTest::keyClick(picture, Qt::Key_Down);
        QCOMPARE(panel.control<QButtonGroup>("cs_customType")->checkedId(), 1);
        QVERIFY(panel.control<EVColorWell>("cs_color")->isEnabled());
        QVERIFY(!panel.control<QLineEdit>("cs_imagePath")->isEnabled());
    }

    void widgetWithFiveStylesCanGetASixth()
    {
        AlertRecorder alerts;
        Panel panel(5);
        panel.addColorStyle(Qt::red, 50);
        QVERIFY(alerts.shown().isEmpty());
        QCOMPARE(panel.entry()->customStyles().size(), 6);
    }

    void widgetWithSixStylesOnlyGetsTheQuotaAlert()
    {
        AlertRecorder alerts;
        Panel panel(6);
        panel.clickAdd();
        QVERIFY(!panel.sheet()->isVisible());
        QCOMPARE(alerts.shown().size(), 1);
        const EVAlert &alert = alerts.shown().first();
        QCOMPARE(alert.icon, QMessageBox::Critical);
        QCOMPARE(alert.messageText, QStringLiteral("Custom style reached the quota limit!"));
        QCOMPARE(alert.informativeText,
                 QStringLiteral("The custom styles over the storage limit, please remove some "
                                "styles and try again."));
        QCOMPARE(alert.buttons, QStringList({QStringLiteral("OK")}));
        QCOMPARE(alert.window, nullptr);
        QCOMPARE(panel.entry()->customStyles().size(), 6);
    }

    void colourStylesBecomeTheWidgetsStyleInTurn()
    {
        Panel panel;
        panel.addColorStyle(QColor(10, 200, 30), 80);
        QVERIFY(!panel.sheet()->isVisible());
        QCOMPARE(panel.entry()->styleIndex(), 12);
        EVCustomStyle *style = panel.entry()->customStyles().first();
        QCOMPARE(style->type(), 0);
        QCOMPARE(style->color(), QColor(10, 200, 30));
        QCOMPARE(style->opacity(), 0.8f);
        panel.addColorStyle(Qt::blue, 80);
        panel.addColorStyle(Qt::yellow, 80);
        QCOMPARE(panel.entry()->styleIndex(), 14);
        // The browser shows them and has the new one selected.
        ImageBrowserView *browser = panel.control<ImageBrowserView>("general_styles");
        QCOMPARE(browser->model()->rowCount(), 15);
        QCOMPARE(browser->selectionIndexes(), QList<int>({14}));
    }

    void sliderAtThirtySevenPointNineShowsThirtySevenAndStoresPointThreeSevenNine()
    {
        Panel panel;
        panel.clickAdd();
        QTest::mouseClick(panel.control<QRadioButton>("cs_customTypeColor"), Qt::LeftButton);
        panel.control<EVDoubleSlider>("cs_opacitySlider")->setDoubleValue(37.9);
        QCOMPARE(panel.control<QLineEdit>("cs_opacityValue")->text(), QStringLiteral("37"));
        panel.clickDone();
        QCOMPARE(panel.entry()->customStyles().first()->opacity(), float(37.9 / 100));
        QCOMPARE(panel.entry()->customStyles().first()->opacity(), 0.379f);
    }

    void sliderRunsFromNoneToAll()
    {
        Panel panel;
        auto *slider = panel.control<EVDoubleSlider>("cs_opacitySlider");
        QCOMPARE(slider->minimumValue(), 0.0);
        QCOMPARE(slider->maximumValue(), 100.0);
        slider->setFocus();
        slider->setDoubleValue(50);
        QTest::keyClick(slider, Qt::Key_Right);
        QCOMPARE(slider->doubleValue(), 51.0);
        QCOMPARE(panel.control<QLineEdit>("cs_opacityValue")->text(), QStringLiteral("51"));
    }

    void bigPictureIsStoredAsFourHundredByThreeHundred()
    {
        Panel panel;
        panel.clickAdd();
        panel.choosePicture(panel.pictureFile(QStringLiteral("big.png"), {1600, 1200}));
        panel.control<EVDoubleSlider>("cs_opacitySlider")->setDoubleValue(60);
        panel.clickDone();
        QVERIFY(!panel.sheet()->isVisible());
        EVCustomStyle *style = panel.entry()->customStyles().first();
        QCOMPARE(style->type(), 1);
        QCOMPARE(style->opacity(), 0.6f);
        const QByteArray data = style->imageData();
        QVERIFY(data.startsWith("II*") || data.startsWith("MM"));
        QCOMPARE(QImage::fromData(data).size(), QSize(400, 300));
        QCOMPARE(panel.entry()->styleIndex(), 12);
    }

    void pictureDialogAsksForOnePictureFileOfTheStyleTypes()
    {
        Panel panel;
        panel.clickAdd();
        OpenPanelRecorder panels;
        panels.queueChoice(QStringLiteral("/somewhere/picture.tiff"));
        QTest::mouseClick(panel.control<QPushButton>("cs_browseImage"), Qt::LeftButton);
        QCOMPARE(panels.shown().size(), 1);
        const EVOpenPanel &dialog = panels.shown().first();
        QCOMPARE(dialog.title, QStringLiteral("Choose a background picture..."));
        QCOMPARE(dialog.allowedFileTypes,
                 QStringList({"png", "jpg", "jpeg", "bmp", "tif", "tiff"}));
        QVERIFY(!dialog.allowsMultipleSelection);
        QVERIFY(!dialog.canChooseDirectories);
        QCOMPARE(panel.control<QLineEdit>("cs_imagePath")->text(),
                 QStringLiteral("/somewhere/picture.tiff"));
        // Cancelled: the path stays.
        panels.queueCancel();
        QTest::mouseClick(panel.control<QPushButton>("cs_browseImage"), Qt::LeftButton);
        QCOMPARE(panel.control<QLineEdit>("cs_imagePath")->text(),
                 QStringLiteral("/somewhere/picture.tiff"));
    }

    void pictureStyleWithoutAPathKeepsTheSheetOpen()
    {
        AlertRecorder alerts;
        Panel panel;
        panel.clickAdd();
        panel.control<QLineEdit>("cs_imagePath")->clear();
        panel.clickDone();
        QCOMPARE(alerts.shown().size(), 1);
        QCOMPARE(alerts.shown().first().messageText, QStringLiteral("No image selected!"));
        QCOMPARE(alerts.shown().first().informativeText,
                 QStringLiteral("Please click browse button and choose an image file."));
        QCOMPARE(alerts.shown().first().buttons, QStringList({QStringLiteral("OK")}));
        QVERIFY(panel.sheet()->isVisible());
        QVERIFY(panel.entry()->customStyles().isEmpty());
    }

    void unreadablePictureEndsTheSheetWithADefaultStyleAdded()
    {
        Panel panel;
        const QString path = panel.home.path() + QStringLiteral("/broken.png");
        QFile broken(path);
        QVERIFY(broken.open(QIODevice::WriteOnly));
        broken.write("no picture here");
        broken.close();
        panel.clickAdd();
        panel.choosePicture(path);
        panel.clickDone();
        QVERIFY(!panel.sheet()->isVisible());
        QCOMPARE(panel.entry()->customStyles().size(), 1);
        EVCustomStyle *style = panel.entry()->customStyles().first();
        QCOMPARE(style->type(), 0);
        QCOMPARE(style->opacity(), 0.0f);
        // The browser is not rebuilt until its next update.
        QCOMPARE(panel.control<ImageBrowserView>("general_styles")->model()->rowCount(), 12);
        QCOMPARE(panel.entry()->styleIndex(), 9);
    }

    void reopeningShowsThePictureTypeAndTheLastValuesAgain()
    {
        Panel panel;
        const QString path = panel.pictureFile(QStringLiteral("small.png"), {120, 80});
        panel.clickAdd();
        panel.choosePicture(path);
        panel.control<EVDoubleSlider>("cs_opacitySlider")->setDoubleValue(42);
        panel.clickDone();
        QCOMPARE(QImage::fromData(panel.entry()->customStyles().first()->imageData()).size(),
                 QSize(120, 80));

        panel.addColorStyle(QColor(1, 2, 3), 70);
        panel.clickAdd();
        QCOMPARE(panel.control<QButtonGroup>("cs_customType")->checkedId(), 0);
        QCOMPARE(panel.control<QLineEdit>("cs_imagePath")->text(), path);
        QCOMPARE(panel.control<EVColorWell>("cs_color")->color(), QColor(1, 2, 3));
        QCOMPARE(panel.control<EVDoubleSlider>("cs_opacitySlider")->doubleValue(), 70.0);
        QCOMPARE(panel.control<QLineEdit>("cs_opacityValue")->text(), QStringLiteral("70"));
    }

    void colourWellOpensTheColourDialogToo()
    {
        Panel panel;
        panel.clickAdd();
        QTest::mouseClick(panel.control<QRadioButton>("cs_customTypeColor"), Qt::LeftButton);
        ColorPanelRecorder colors;
        colors.queueColor(QColor(9, 9, 9));
        QTest::mouseClick(panel.control<EVColorWell>("cs_color"), Qt::LeftButton);
        QCOMPARE(colors.shown().size(), 1);
        QCOMPARE(panel.control<EVColorWell>("cs_color")->color(), QColor(9, 9, 9));
        // A cancelled dialog keeps the colour.
        QTest::mouseClick(panel.control<QPushButton>("cs_changeColor"), Qt::LeftButton);
        QCOMPARE(panel.control<EVColorWell>("cs_color")->color(), QColor(9, 9, 9));
    }

    void returnConfirmsTheSheet()
    {
        Panel panel;
        panel.clickAdd();
        QTest::mouseClick(panel.control<QRadioButton>("cs_customTypeColor"), Qt::LeftButton);
        QTest::keyClick(panel.control<QRadioButton>("cs_customTypeColor"), Qt::Key_Return);
        QVERIFY(!panel.sheet()->isVisible());
        QCOMPARE(panel.entry()->customStyles().size(), 1);
    }

    void escapeCancelsTheSheet()
    {
        Panel panel;
        panel.clickAdd();
        QTest::mouseClick(panel.control<QRadioButton>("cs_customTypeColor"), Qt::LeftButton);
        QTest::keyClick(panel.control<QRadioButton>("cs_customTypeColor"), Qt::Key_Escape);
        QVERIFY(!panel.sheet()->isVisible());
        QVERIFY(panel.entry()->customStyles().isEmpty());
    }

    void cancelAddsNothing()
    {
        Panel panel;
        panel.clickAdd();
        QTest::mouseClick(panel.control<QPushButton>("cs_cancel"), Qt::LeftButton);
        QVERIFY(!panel.sheet()->isVisible());
        QVERIFY(panel.entry()->customStyles().isEmpty());
        QCOMPARE(panel.entry()->styleIndex(), 9);
    }
};

TALLYVANE_TEST_MAIN(TestEVCustomStylePanel)
#include "tst_evcustomstylepanel.moc"

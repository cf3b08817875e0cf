#include "PreferencesFixture.h"
#include "TestMain.h"

#include "prefs/EVGeneralTab.h"
#include "prefs/ImageBrowserBackgroundLayer.h"
#include "prefs/ImageBrowserCell.h"
#include "prefs/ImageBrowserView.h"
#include "render/EVTallyView.h"
#include "store/EVCustomStyle.h"

#include <QRegularExpression>
#include <QScrollBar>

class TestEVStyleBrowser : public QObject
{
    Q_OBJECT

private:
    // One widget with the given number of colour styles, selected, in a window on screen.
    struct Styles : Preferences
    {
        explicit Styles(int customStyles)
            : Preferences({QStringLiteral("Launch")})
        {
            EVWidgetEntry *entry = entries().first();
            for (int i = 0; i < customStyles; ++i) {
                EVCustomStyle *style = manager.addCustomStyle(entry);
                style->setType(0);
                style->setColor(QColor::fromHsv(40 * i, 200, 200));
                style->setOpacity(1.0f);
            }
            controller.window()->resize(900, 700);
            controller.showWindow();
            clickRow(0);
        }
        EVWidgetEntry *entry() { return entries().first(); }
        ImageBrowserView *browser() const { return find<ImageBrowserView>("general_styles"); }
        QStringList identifiers() const
        {
            QStringList ids;
            for (const EVImageBrowserItem &item : controller.generalTab()->styleData())
                ids << item.imageID();
            return ids;
        }
        void clickItem(int index, Qt::KeyboardModifiers modifiers = {}) const
        {
            ImageBrowserView *view = browser();
            view->scrollIndexToVisible(index);
            const QRect cell = view->visualRect(view->model()->index(index, 0));
            QTest::mouseClick(view->viewport(), Qt::LeftButton, modifiers, cell.center());
        }
    };

private Q_SLOTS:
    void twoCustomStylesMakeFourteenItems()
    {
        Styles styles(2);
        const QStringList ids = styles.identifiers();
        QCOMPARE(ids.size(), 14);
        for (int n = 0; n < 12; ++n)
            QCOMPARE(ids.at(n), QStringLiteral("Style%1").arg(n + 1));
        static const QRegularExpression custom(QStringLiteral("^Style(\\d+)$"));
        for (int n = 12; n < 14; ++n) {
            const QRegularExpressionMatch match = custom.match(ids.at(n));
            QVERIFY2(match.hasMatch(), qPrintable(ids.at(n)));
            const int number = match.captured(1).toInt();
            QVERIFY2(number >= 12 && number <= 1011, qPrintable(ids.at(n)));
        }
        QCOMPARE(styles.browser()->model()->rowCount(), 14);
        QCOMPARE(styles.browser()->model()->index(0, 0).data().toString(),
                 QStringLiteral("Style1"));
    }

    void thumbnailsAreTheStylePicturesAtSixtyByForty()
    {
        Styles styles(1);
        const QList<EVImageBrowserItem> &items = styles.controller.generalTab()->styleData();
        for (int n = 0; n < 12; ++n)
            QCOMPARE(items.at(n).image(), EVTallyView::imageForStyle(quint64(n), QSizeF(60, 40)));
        EVCustomStyle *style = styles.entry()->customStyles().first();
        QCOMPARE(items.at(12).image(),
                 EVTallyView::thumbnailForCustomStyle(*style, QSizeF(60, 40)));
        QCOMPARE(items.at(12).image().size(), QSize(60, 40));
        QCOMPARE(items.at(12).version(), quint64(0));
    }

    void customItemsGetNewIdentitiesAtEveryRebuild()
    {
        Styles styles(6);
        const QStringList first = styles.identifiers();
        // Six numbers drawn from a thousand could all repeat, but not five times running.
        QStringList later;
        int attempt = 0;
        do {
            styles.controller.generalTab()->updateGeneralViews();
            later = styles.identifiers();
        } while (++attempt < 5 && later.mid(12) == first.mid(12));
        QCOMPARE(later.mid(0, 12), first.mid(0, 12));
        QVERIFY(later.mid(12) != first.mid(12));
    }

    void selectingTheThirteenthItemSetsStyleIndexTwelveAndTheFirstSetsZero()
    {
        Styles styles(2);
        styles.clickItem(12);
        QCOMPARE(styles.entry()->styleIndex(), 12);
        styles.clickItem(0);
        QCOMPARE(styles.entry()->styleIndex(), 0);
    }

    void arrowKeysMoveTheSelectionAndTheStyle()
    {
        Styles styles(0);
        styles.clickItem(4);
        styles.browser()->setFocus();
        QTest::keyClick(styles.browser(), Qt::Key_Right);
        QCOMPARE(styles.entry()->styleIndex(), 5);
    }

    void widgetStyleIsSelectedWhenTheWidgetIs()
    {
        Styles styles(2);
        styles.entry()->setStyleIndex(13);
        styles.controller.generalTab()->updateGeneralViews();
        QCOMPARE(styles.browser()->selectionIndexes(), QList<int>({13}));
    }

    void negativeStyleIndexIsOnlyLogged()
    {
        Styles styles(0);
        styles.clickItem(3);
        QTest::ignoreMessage(QtWarningMsg, "cannot select imagebrowse at index: -3");
        EVGeneralTab::selectStyleIndex(styles.browser(), -3);
        QCOMPARE(styles.browser()->selectionIndexes(), QList<int>({3}));
    }

    void deletingWithItemsThreeAndThirteenSelectedRemovesCustomStyleOne()
    {
        Styles styles(3);
        const QList<EVCustomStyle *> before = styles.entry()->customStyles();
        styles.clickItem(3);
        styles.clickItem(13, Qt::ControlModifier);
        QCOMPARE(styles.browser()->selectionIndexes(), QList<int>({3, 13}));
        styles.browser()->setFocus();
        QTest::keyClick(styles.browser(), Qt::Key_Delete);
        QCOMPARE(styles.entry()->customStyles(),
                 QList<EVCustomStyle *>({before.at(0), before.at(2)}));
        // The widget is back on the default style, and the browser shows it.
        QCOMPARE(styles.entry()->styleIndex(), 9);
        QCOMPARE(styles.identifiers().size(), 14);
        QCOMPARE(styles.browser()->selectionIndexes(), QList<int>({9}));
    }

    void deletingWithOnlyABuiltInStyleSelectedDoesNothing()
    {
        Styles styles(2);
        styles.clickItem(5);
        styles.browser()->setFocus();
        QTest::keyClick(styles.browser(), Qt::Key_Delete);
        QCOMPARE(styles.entry()->customStyles().size(), 2);
        QCOMPARE(styles.entry()->styleIndex(), 5);
    }

    void deleteRequestsCountTheSelectionNotTheIndexesHandedIn()
    {
        Styles styles(2);
        styles.clickItem(12);
        Q_EMIT styles.browser()->removeItemsRequested({3});
        QCOMPARE(styles.entry()->customStyles().size(), 1);
    }

    void metalTileIsOurArtwork()
    {
        const QImage tile = ImageBrowserBackgroundLayer::tile();
        QVERIFY(!tile.isNull());
        QCOMPARE(tile.size(), QSize(128, 128));
        QCOMPARE(ImageBrowserBackgroundLayer::tile().cacheKey(), tile.cacheKey());
    }

    void tilesStayFixedToTheContentWhileItScrolls()
    {
        const QSizeF tile(64, 32);
        const QRectF bounds(0, 0, 300, 1000);
        const QList<QRectF> top =
            ImageBrowserBackgroundLayer::tileRects(tile, QRectF(0, 0, 200, 100), bounds);
        QCOMPARE(top.first(), QRectF(0, 0, 64, 32));
        // Columns until the visible width is covered, rows until its height is.
        QCOMPARE(top.last(), QRectF(192, 96, 64, 32));
        QCOMPARE(top.size(), 4 * 4);
        // Scrolled by 10: the rows start 10 above the layer's top.
        const QList<QRectF> scrolled =
            ImageBrowserBackgroundLayer::tileRects(tile, QRectF(0, 10, 200, 100), bounds);
        QCOMPARE(scrolled.first(), QRectF(0, -10, 64, 32));
        QCOMPARE(scrolled.last().bottom(), 118.0);
        // Scrolled by a whole tile and 10 more: the same pattern.
        QCOMPARE(ImageBrowserBackgroundLayer::tileRects(tile, QRectF(0, 42, 200, 100), bounds),
                 scrolled);
        QVERIFY(ImageBrowserBackgroundLayer::tileRects(QSizeF(), QRectF(0, 0, 10, 10), bounds)
                    .isEmpty());
    }

    void browserDrawsTheTileUnderTheThumbnails()
    {
        Styles styles(0);
        ImageBrowserView *browser = styles.browser();
        QVERIFY(browser->backgroundLayer());
        QCOMPARE(browser->backgroundLayer()->owner(), browser);
        const QImage shown = browser->viewport()->grab().toImage();
        const QImage tile =
            ImageBrowserBackgroundLayer::tile().convertToFormat(QImage::Format_RGB32);
        // A corner between the cells shows the tile's own pixel.
        QCOMPARE(shown.pixelColor(1, 1).rgb(), tile.pixelColor(1, 1).rgb());
        QCOMPARE(browser->lastVisibleRect(), browser->visibleRect());
    }

    void backgroundIsDrawnAgainOnlyWhenAnotherPartIsShown()
    {
        Styles styles(6);
        ImageBrowserView *browser = styles.browser();
        browser->setFixedHeight(120);
        QTest::qWait(50);
        browser->viewport()->grab();
        const QRect before = browser->lastVisibleRect();
        browser->viewport()->grab();
        QCOMPARE(browser->lastVisibleRect(), before);
        browser->verticalScrollBar()->setValue(30);
        browser->viewport()->grab();
        QCOMPARE(browser->lastVisibleRect().top(), 30);
        const QImage shown = browser->viewport()->grab().toImage();
        const QImage tile =
            ImageBrowserBackgroundLayer::tile().convertToFormat(QImage::Format_RGB32);
        QCOMPARE(shown.pixelColor(1, 0).rgb(), tile.pixelColor(1, 30).rgb());
    }

    void selectionFrameIsPinkWithAWhiteBorder()
    {
        QCOMPARE(ImageBrowserCell::myBackgroundFrame(QRect(10, 20, 84, 80), QRect(22, 30, 60, 40)),
                 QRect(10, 22, 84, 68));
        QCOMPARE(ImageBrowserCell::selectionBackgroundColor(),
                 QColor::fromRgbF(1.0f, 0.0f, 0.5f, 0.1f));
        QCOMPARE(ImageBrowserCell::selectionBorderColor(), QColor(Qt::white));
        QCOMPARE(ImageBrowserCell::selectionBorderWidth, 2.0);

        Styles styles(0);
        styles.clickItem(2);
        ImageBrowserView *browser = styles.browser();
        const QRect cell = browser->visualRect(browser->model()->index(2, 0));
        const QRect frame =
            ImageBrowserCell::myBackgroundFrame(cell, ImageBrowserCell::imageFrame(cell));
        const QImage shown = browser->viewport()->grab().toImage();
        QCOMPARE(shown.pixelColor(frame.left() + 1, frame.center().y()), QColor(Qt::white));
        // Just inside the border the metal shows through a tenth of pink.
        const QPoint inside(frame.left() + 4, frame.top() + 4);
        const QImage tile =
            ImageBrowserBackgroundLayer::tile().convertToFormat(QImage::Format_RGB32);
        const QColor metal = tile.pixelColor(inside.x() % tile.width(), inside.y() % tile.height());
        const QColor shownInside = shown.pixelColor(inside);
        const auto blend = [](int under, qreal over) {
            return qRound(under * 0.9 + over * 255 * 0.1);
        };
        QVERIFY(qAbs(shownInside.red() - blend(metal.red(), 1.0)) <= 2);
        QVERIFY(qAbs(shownInside.green() - blend(metal.green(), 0.0)) <= 2);
        QVERIFY(qAbs(shownInside.blue() - blend(metal.blue(), 0.5)) <= 2);
    }
};

TALLYVANE_TEST_MAIN(TestEVStyleBrowser)
#include "tst_evstylebrowser.moc"

#pragma once

#include "engine/EVCountdown.h"
#include "render/EVBackgroundImage.h"

#include <QMap>
#include <QObject>
#include <QSizeF>
#include <QString>

#include <memory>

namespace Ui {
class EVWindowController;
}
class EVWidgetEntry;
class EVWidgetView;
class EVWidgetWindow;

// Shows one widget entry in its own desktop window: fills the view with the entry's texts, icon
// and background once a second, applies its level and lock, reports double clicks, and copies
// the window's frame back into the entry when asked.
class EVWindowController : public QObject
{
    Q_OBJECT

public:
    // A new controller with its window as the interface file describes it.
    static EVWindowController *windowController(QObject *parent = nullptr);

    explicit EVWindowController(QObject *parent = nullptr);
    ~EVWindowController() override;

    EVWidgetWindow *window() const { return m_window.get(); }
    EVWidgetView *widgetView() const;

    EVWidgetEntry *widgetData() const { return m_widgetData; }
    // Places the window at the entry's stored frame when that frame has a size.
    void setWidgetData(EVWidgetEntry *entry);

    // Shows the window in front; with true also fills the view.
    void display(bool reload);
    // The once-a-second refresh: lock, level, then the view.
    void update();
    // Fills the view from the entry. Repaints only when something the view shows changed.
    void reloadViews();

    QString eventDate() const;
    QMap<QString, QString> countdownDesc() const;
    EVBackgroundImage backgroundImage(const QSizeF &size);

    // Copies the window's frame into the entry.
    void save();
    // Lets go of the entry and takes the window off the screen.
    void destroy();

    // 0.0 hides the widget, 1.0 shows it again; on a desktop without compositing, where
    // opacity cannot be seen, the window is hidden and shown instead.
    void setAlphaValue(double alpha);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

public Q_SLOTS:
    // A press of the window with its place in a click series; 2 and more post a double click.
    void mouseDown(int clickCount);

private:
    QImage iconImage();
    // Shows new countdown lines, painting only them again; nothing when they read the same.
    void showCountdownLines(const EVCountdown::Lines &lines);

    std::unique_ptr<Ui::EVWindowController> m_ui;
    std::unique_ptr<EVWidgetWindow> m_window;
    EVWidgetEntry *m_widgetData = nullptr;
    bool m_hiddenByAlpha = false;

    // What the view shows is made again only when what it is made from changed.
    struct IconSource
    {
        const EVWidgetEntry *entry = nullptr;
        quint64 revision = 0;
        bool operator==(const IconSource &) const = default;
    };
    IconSource m_iconSource;
    QImage m_icon;
    struct BackgroundSource
    {
        const EVWidgetEntry *entry = nullptr;
        quint64 entryRevision = 0;
        quint64 styleRevision = 0;
        QSizeF size;
        bool operator==(const BackgroundSource &) const = default;
    };
    BackgroundSource m_backgroundSource;
    EVBackgroundImage m_background;

    // What the view's texts were computed from, and the span of time (milliseconds since
    // 1970, until excluded) in which they read the same. A resize of the view clears it.
    struct ShownSource
    {
        const EVWidgetEntry *entry = nullptr;
        quint64 entryRevision = 0;
        quint64 styleRevision = 0;
        quint64 calendarGeneration = 0;
        bool operator==(const ShownSource &) const = default;
    };
    ShownSource shownSource() const;
    struct Shown
    {
        ShownSource source;
        qint64 since = 0;
        qint64 until = 0;
    };
    Shown m_shown;
};

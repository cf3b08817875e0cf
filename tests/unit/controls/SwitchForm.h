#pragma once

#include "controls/OnOffSwitchControl.h"

#include <QTest>
#include <QWidget>

// A small form holding one 60 by 20 switch named "lockSwitch", as an interface file places it,
// shown on screen: a drag is decided by where the switch last drew its thumb.
class SwitchForm
{
public:
    SwitchForm()
    {
        window.resize(200, 60);
        auto *created = new OnOffSwitchControl(&window);
        created->setObjectName(QStringLiteral("lockSwitch"));
        created->setGeometry(20, 20, 60, 20);
        window.show();
        exposed = QTest::qWaitForWindowExposed(&window);
    }

    OnOffSwitchControl *control() const
    {
        return window.findChild<OnOffSwitchControl *>(QStringLiteral("lockSwitch"));
    }

    QWidget window;
    bool exposed = false;
};

// Where the off thumb's centre lies, and a point on the track well right of it.
inline const QPoint offThumbCentre(14, 10);
inline const QPoint rightOfTheThumb(40, 10);

inline void press(OnOffSwitchControl *control, QPoint at)
{
    QTest::mousePress(control, Qt::LeftButton, Qt::NoModifier, at);
}

inline void moveTo(OnOffSwitchControl *control, QPoint to)
{
    QTest::mouseMove(control, to);
}

inline void release(OnOffSwitchControl *control, QPoint at)
{
    QTest::mouseRelease(control, Qt::LeftButton, Qt::NoModifier, at);
}

#include "core/EVProcessObjects.h"

#include <QCoreApplication>

#include <memory>
#include <vector>

namespace {

std::vector<std::unique_ptr<QObject>> &keptObjects()
{
    static std::vector<std::unique_ptr<QObject>> objects;
    return objects;
}

} // namespace

void EVProcessObjects::keepObject(QObject *object)
{
    static const bool routineAdded = [] {
        // Post routines run at the start of the application object's destructor, before it
        // tears down the remaining windows.
        qAddPostRoutine(&EVProcessObjects::teardown);
        return true;
    }();
    Q_UNUSED(routineAdded);
    keptObjects().emplace_back(object);
}

void EVProcessObjects::teardown()
{
    // An object being deleted may still reach for another one; each is taken off the list
    // before it goes, so that nothing is deleted twice.
    auto &objects = keptObjects();
    while (!objects.empty()) {
        std::unique_ptr<QObject> newest = std::move(objects.back());
        objects.pop_back();
        newest.reset();
    }
}

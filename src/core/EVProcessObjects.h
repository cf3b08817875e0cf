#pragma once

#include <QObject>

// Owner of the process-wide objects (the store, the widgets manager, the notification center,
// ...), each made on first use. They are ended newest first, by teardown(), before the
// application object goes: their windows must not outlive it. A program that never calls
// teardown() still has them ended while the application object is being destroyed, before its
// windows are.
class EVProcessObjects
{
public:
    // Takes ownership of a process-wide object; returns it.
    template <typename T>
    static T *keep(T *object)
    {
        keepObject(object);
        return object;
    }

    // Deletes every object kept so far, the most recently made first.
    static void teardown();

private:
    static void keepObject(QObject *object);
};

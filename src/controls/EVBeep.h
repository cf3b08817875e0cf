#pragma once

#include <functional>

// The system beep. Every beep of the controls goes through beep(), so that tests can count
// beeps instead of hearing them.
class EVBeep
{
public:
    static void beep();

    using Handler = std::function<void()>;
    // Replaces the system beep for tests; an empty handler restores it.
    static void setHandler(Handler handler);
};

#pragma once

#include "core/EVError.h"

#include <functional>

class EVCoreDataDelegate;

// What the application as a whole offers to its parts: the request to end it, and the one
// report of a store that cannot be used.
class EVApplication
{
public:
    // Asks the application to end. The application shell routes this through its quit
    // decision; until one is installed the event loop is asked to quit.
    static void terminate();
    static void setTerminateHandler(std::function<void()> handler);

    // The fatal report of the store: a warning alert, a feedback mail when the user agrees,
    // then the termination request. The error itself is only logged.
    static void countdownPresentError(const EVError &error);

    // Routes every failure the store reports into countdownPresentError.
    static void reportStoreFailures(EVCoreDataDelegate *store);

    static QString databaseFailureSubject();
};

#pragma once

#include "AppSeams.h"

#include "core/EVError.h"

#include <QList>

class EVCoreDataDelegate;

// What the store's failure reports looked like from the outside: the errors it emitted, and the
// alerts, feedback mails and termination requests the application shell made of them.
struct StoreReports
{
    AlertRecorder alerts;
    MailRecorder mail;
    TerminationRecorder terminations;
    QList<EVError> errors;

    // Composes the store with the shell as the application does: its failures become the fatal
    // report.
    void watch(EVCoreDataDelegate &store);
};

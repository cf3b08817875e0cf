#pragma once

#include "engine/EVCommandResult.h"

#include <QJsonObject>

#include <cstdio>

class EVCommandLine;
class EVSingleInstance;

// Carries out a widget command of the command line: sends it to the running Tallyvane, whose
// windows follow at once, or, when none runs, applies it to the store while holding the
// instance lock, so that two writers never touch the store at once. Prints what the command
// printed and returns its exit status.
namespace EVCommandRunner {

int run(const EVCommandLine &commandLine);

// Sends a request to the Tallyvane that holds the instance, and reads its result.
EVCommandResult sendToRunningInstance(const EVSingleInstance &instance, const QJsonObject &request);

// Prints the result (its output to standard output, its message to standard error) and returns
// its exit status.
int report(const EVCommandResult &result);

// A text on a line of its own.
void print(FILE *stream, const QString &text);

} // namespace EVCommandRunner

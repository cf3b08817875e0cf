#pragma once

class EVCommandLine;

// Carries out a widget command of the command line: sends it to the running Tallyvane, whose
// windows follow at once, or, when none runs, applies it to the store while holding the
// instance lock, so that two writers never touch the store at once. Prints what the command
// printed and returns its exit status.
namespace EVCommandRunner {

int run(const EVCommandLine &commandLine);

} // namespace EVCommandRunner

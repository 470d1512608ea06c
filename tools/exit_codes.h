// What the `nebtrace` command ends with. docs/exit-codes.md tells the same to those who call it.
#pragma once

enum ExitCode : int
{
    kExitSuccess = 0,
    kExitFailure = 1,        // with one line on standard error; of `doctor`, with a problem
    kExitUsage = 2,          // a mistake on the command line: nothing was done
    kExitNotRunnable = 126,  // `record`: as env(1) and shells have it
    kExitNotFound = 127,
    kExitSignal = 128  // and the signal's number: it ended the application of `record`, or `perf` itself
};

#ifndef KXINSPECT_USAGE_H
#define KXINSPECT_USAGE_H

#include "HelpText.h"

#include <QString>

namespace kxinspect {

//! Exit statuses of the program.
enum ExitCode {
    ExitOk = 0,
    ExitInputError = 1,
    ExitUsage = 2,
    ExitNotes = 3,         //!< --fail-on-notes and the reading wrote at least one note
    ExitLookupMessages = 4, //!< --check and the lookup gave at least one message
    // 5 is ExitOutputError (HelpText.h): the output could not be written whole.
    ExitChanges = 6         //!< --diff found at least one change
};

//! Writes the synopsis and the whole help to stdout; the errno of a failed write, else 0.
int printHelp();
//! "keladmin-inspect X (libmodel_KelAdmin Y, ReadStat Z, Qt W)": the tool's and the loaded libraries' versions.
QString versionLine();
//! Writes versionLine() and a line end to stdout; the errno of a failed write, else 0.
int printVersion();
//! Writes "keladmin-inspect: PROBLEM" and the synopsis to stderr; returns ExitUsage.
int usageError(const QString &problem);

} // namespace kxinspect

#endif // KXINSPECT_USAGE_H

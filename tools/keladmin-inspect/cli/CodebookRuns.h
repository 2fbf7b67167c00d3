#ifndef KXINSPECT_CODEBOOKRUNS_H
#define KXINSPECT_CODEBOOKRUNS_H

#include "InspectOptions.h"

#include <QStringList>

namespace kxinspect {

//! The program's arguments after its name, as text.
QStringList argumentsOf(int argc, char **argv);

/*! Whether the run reads through the front end's library: one file or
 * several as the front end reads them, or a lookup file. --codebook, --ddi
 * and --diff on their files need the codebook library only. */
bool readsWithFrontEnd(const InspectOptions &o);

/*! Runs --codebook, --ddi or --diff, whichever \a o asks for, and returns
 * the exit status; what it writes to the standard output is not yet flushed
 * (finishOutput()). */
int inspectWithCodebook(const InspectOptions &o);

/*! \a status, unless the standard output did not take everything written to
 * it: then one line names the system's reason and the status is
 * ExitOutputError (a failure to read the input keeps its own status). */
int finishOutput(int status, int writeError = 0);

} // namespace kxinspect

#endif // KXINSPECT_CODEBOOKRUNS_H

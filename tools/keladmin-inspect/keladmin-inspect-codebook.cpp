// The inspector's runs that read with the codebook library alone (--codebook,
// --ddi, --diff), loaded by the keladmin-inspect program in place of the
// inspector proper when one of those options is given: it spares loading the
// front end's library, which these runs do not use. Anything else it hands
// back to the program, which then loads the inspector proper.
#include "CodebookRuns.h"
#include "InspectOptions.h"
#include "TextOutput.h"

#include <QCoreApplication>

using namespace kxinspect;

/*! The codebook runs' main(), called by the keladmin-inspect program with its
 * own arguments: the exit status, or -1 when the run is not one of these
 * (help, version, a usage error, files read by the front end) and nothing
 * was written. */
extern "C" __attribute__((visibility("default"))) int kx_inspect_codebook_main(int argc, char **argv)
{
    InspectOptions o;
    if (!parseArguments(argumentsOf(argc, argv), o).isEmpty() || o.help || o.version || readsWithFrontEnd(o))
        return -1;
    installMessageFilter();
    setVerboseLog(o.verbose, false);
    QCoreApplication app(argc, argv);
    return finishOutput(inspectWithCodebook(o));
}

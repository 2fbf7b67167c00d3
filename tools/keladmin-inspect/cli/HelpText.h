#ifndef KXINSPECT_HELPTEXT_H
#define KXINSPECT_HELPTEXT_H

namespace kxinspect {

//! The synopsis, "Usage:" and one line per form.
extern const char *const UsageText;
//! What the program does, its formats, options and exit statuses.
extern const char *const HelpText;

//! The exit status when the output could not be written whole.
constexpr int ExitOutputError = 5;

/*! Flushes the standard output and tells whether everything written to it
 * arrived: null when it did, else the system's reason ("No space left on
 * device"): that of the flush, else \a earlierError (the errno of a write
 * that failed before). Free of Qt, for the launcher too. */
const char *standardOutputFailure(int earlierError = 0);

//! Writes the synopsis and the help to stdout; the errno of a write that failed, else 0.
int writeHelp();

} // namespace kxinspect

#endif // KXINSPECT_HELPTEXT_H

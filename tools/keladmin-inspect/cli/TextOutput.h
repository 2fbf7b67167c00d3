#ifndef KXINSPECT_TEXTOUTPUT_H
#define KXINSPECT_TEXTOUTPUT_H

#include <QString>

class QTextStream;

namespace kxinspect {

//! The program's name, first word of every line on stderr.
extern const char *const ProgramName;

//! \a text with control characters shown as \\uXXXX, so that a hostile name cannot drive the terminal.
QString printable(const QString &text);
//! \a text made printable (control characters as \\uXXXX) and escaped for HTML text and attribute values.
QString htmlText(const QString &text);
//! The non-empty lines of \a text, trimmed and joined by "; ", made printable.
QString oneLine(const QString &text);
//! Writes "keladmin-inspect: FILE: PROBLEM" as one line on stderr.
void printError(const QString &file, const QString &problem);
//! The standard output as a UTF-8 text stream.
QTextStream &standardOutput();
//! Keeps the library's debug log off stderr unless \a verbose.
void installMessageFilter();
/*! Lets the debug log through from now on when \a verbose. When not, and
 * \a traceLinesPossible (the run reads through the front end's library),
 * the library's trace lines are turned off where they are made. */
void setVerboseLog(bool verbose, bool traceLinesPossible);

} // namespace kxinspect

#endif // KXINSPECT_TEXTOUTPUT_H

#ifndef KXINSPECT_HTMLWRITER_H
#define KXINSPECT_HTMLWRITER_H

#include "InspectReport.h"
#include "WriteSettings.h"

#include <QString>

class QTextStream;

namespace kxinspect {

/*! The report as one self-contained HTML page (inline CSS and SVG, no
 * script, nothing loaded from elsewhere): a summary, a drawing of every
 * record's columns (CSPro) or a table of the variables (SPSS, Stata), the
 * field table with the value labels, and the reading notes when there are
 * notes and settings.notes. The page is also well-formed XML. */
QString htmlOfReport(const InspectReport &report, const WriteSettings &settings = WriteSettings());

//! The page's style sheet (CSS), shared by the comparison page.
const char *pageStyle();

//! Writes htmlOfReport() to \a out.
void writeHtmlReport(const InspectReport &report, const WriteSettings &settings, QTextStream &out);

//! Writes the page to \a path, whole or not at all; the problem in words, or an empty text.
QString writeHtmlFile(const InspectReport &report, const WriteSettings &settings, const QString &path);

} // namespace kxinspect

#endif // KXINSPECT_HTMLWRITER_H

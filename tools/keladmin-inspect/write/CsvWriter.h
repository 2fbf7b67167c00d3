#ifndef KXINSPECT_CSVWRITER_H
#define KXINSPECT_CSVWRITER_H

#include "InspectReport.h"

#include <QString>
#include <QStringList>

class QTextStream;

namespace kxinspect {

//! The record end of RFC 4180: CR LF, on every platform.
extern const char *const CsvRecordEnd;

/*! \a text as one CSV field (RFC 4180): kept as it is, control characters
 * included, and enclosed in double quotes, with its own quotes doubled, when
 * it holds a comma, a double quote, a CR or an LF. */
QString csvField(const QString &text);

//! The fields of \a cells joined by commas, with the record end.
QString csvRecord(const QStringList &cells);

/*! Writes the report to \a out as CSV: one header row, then one row per
 * field with the columns of the table (the value labels as "code=label"
 * entries joined by "; ", never cut) and a NAME NOTE for a name a spreadsheet
 * would not show as it is (an occurrence named with a control character); for a lookup file one row per label
 * with its count (COUNT, LABEL). Texts are written as read. The notes and
 * lookup messages are not part of it. */
void writeCsvReport(const InspectReport &report, QTextStream &out);

} // namespace kxinspect

#endif // KXINSPECT_CSVWRITER_H

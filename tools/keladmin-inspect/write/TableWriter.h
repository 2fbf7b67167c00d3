#ifndef KXINSPECT_TABLEWRITER_H
#define KXINSPECT_TABLEWRITER_H

#include "InspectReport.h"
#include "WriteSettings.h"

#include <QList>
#include <QStringList>

class QTextStream;

namespace kxinspect {

//! Longest label a table cell shows unless settings.wideLabels, ellipsis included.
constexpr int MaxTableLabel = 60;

/*! \a label as a table cell: printable, and when it is longer than
 * MaxTableLabel characters cut to one less and an ellipsis (U+2026), unless
 * \a wide. A control character's escape or a surrogate pair is never split. */
QString labelCell(const QString &label, bool wide);

//! Writes rows as a table whose columns are padded to their widest cell; the last column is not padded.
void writeTable(QTextStream &out, const QStringList &header, const QList<QStringList> &rows);

/*! Writes the report to \a out as a header of "Key: value" lines and an
 * aligned table; then the reading notes and their count by kind, when there
 * are notes and settings.notes. Of the lookup messages it shows those up to
 * the 'too many' message and says how many more there are. */
void writeTableReport(const InspectReport &report, const WriteSettings &settings, QTextStream &out);

} // namespace kxinspect

#endif // KXINSPECT_TABLEWRITER_H

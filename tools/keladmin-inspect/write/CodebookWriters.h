#ifndef KXINSPECT_CODEBOOKWRITERS_H
#define KXINSPECT_CODEBOOKWRITERS_H

// --codebook: what a file says as its own format means it (the codebook
// library's reading), as a table, one JSON document or CSV.

#include "WriteSettings.h"

#include <KxCodebook.h>

#include <QString>
#include <QStringList>

class QTextStream;

namespace kxinspect {

//! The version of the codebook document's keys ("schemaVersion"), described by keladmin-codebook.schema.json.
int codebookSchemaVersion();

/*! The value sets of \a v as one cell: "code=label" entries joined by "; ",
 * a range as "from:to", the special value in brackets ("9=Missing [MISSING]");
 * the primary label. With \a enough of 0 or more, no entry is added once the
 * cell is longer than \a enough characters: a table cell that will be cut
 * needs only its start. */
QString codebookValuesCell(const KxCodebook::Variable &v, int enough = -1);
/*! The declared missing values of \a v as one cell: "code [SPECIAL]" or
 * "from:to" entries joined by "; ", each with "=label" when it has one. */
QString codebookMissingCell(const KxCodebook::Variable &v);

/*! Writes the codebook as a header of "Key: value" lines, the records (CSPro)
 * and one row per variable: name, record, start, width, occurrences, storage,
 * decimals, format, label, values and missing values. Labels in the table are
 * the primary ones, cut unless settings.wideLabels. */
void writeCodebookTable(const KxCodebook::Codebook &codebook, const WriteSettings &settings, QTextStream &out);
//! Writes the codebook as one JSON document (KxCodebook::writeJson()), streamed to the stream's device.
void writeCodebookJson(const KxCodebook::Codebook &codebook, QTextStream &out);
/*! Writes one CSV header row and one row per variable with the table's
 * columns, and a label column for each further language (LABEL:NAME). */
void writeCodebookCsv(const KxCodebook::Codebook &codebook, QTextStream &out);

} // namespace kxinspect

#endif // KXINSPECT_CODEBOOKWRITERS_H

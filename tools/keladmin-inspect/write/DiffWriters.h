#ifndef KXINSPECT_DIFFWRITERS_H
#define KXINSPECT_DIFFWRITERS_H

// --diff OLD NEW: the changes between two files' codebooks, as a table or
// one JSON document (described by keladmin-diff.schema.json).

#include "WriteSettings.h"

#include <KxCodebook.h>
#include <KxCodebookDiff.h>

#include <QJsonObject>
#include <QString>

class QTextStream;

namespace kxinspect {

//! What a comparison report holds: the two codebooks and what changed.
struct DiffReport
{
    QString oldFile;
    QString newFile;
    KxCodebook::Codebook oldCodebook;
    KxCodebook::Codebook newCodebook;
    KxCodebook::Comparison comparison;
    bool ignoreLabels = false;
};

//! The version of the comparison document's keys ("schemaVersion").
constexpr int DiffSchemaVersion = 1;

/*! Writes the comparison as a header (the two files, the number of changes,
 * whether positions were compared) and one row per change, grouped by record,
 * most serious first: record ("-" for none: identification items, SPSS and
 * Stata variables), subject (variable, value set, [value], (language)),
 * change, old, new, detail. */
void writeDiffTable(const DiffReport &report, const WriteSettings &settings, QTextStream &out);
//! The comparison as one JSON object.
QJsonObject jsonOfDiff(const DiffReport &report);
//! Writes jsonOfDiff() to \a out.
void writeDiffJson(const DiffReport &report, QTextStream &out);

} // namespace kxinspect

#endif // KXINSPECT_DIFFWRITERS_H

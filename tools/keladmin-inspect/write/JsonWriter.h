#ifndef KXINSPECT_JSONWRITER_H
#define KXINSPECT_JSONWRITER_H

#include "InspectReport.h"
#include "WriteSettings.h"

#include <QJsonObject>

class QTextStream;

namespace kxinspect {

/*! Version of the JSON document's layout, its top-level "schemaVersion";
 * raised whenever a key is added, removed or changes its meaning, together
 * with docs/keladmin-inspect.schema.json. */
constexpr int JsonSchemaVersion = 1;

/*! The report as one JSON object; texts are carried whole, as read, and
 * every lookup message is listed. SPSS and Stata files add "fileMetadata"
 * (what the file says about itself, null where it does not say). The notes are the top-level array "notes"
 * (objects with the keys line, subject, kind and text) unless settings.notes
 * is false. */
QJsonObject jsonOfReport(const InspectReport &report, const WriteSettings &settings = WriteSettings());
//! Writes the report to \a out as one indented JSON document.
void writeJsonReport(const InspectReport &report, const WriteSettings &settings, QTextStream &out);

} // namespace kxinspect

#endif // KXINSPECT_JSONWRITER_H

#ifndef KXINSPECT_REPORTBUILDER_H
#define KXINSPECT_REPORTBUILDER_H

#include "InspectOptions.h"
#include "InspectReport.h"

#include <QString>

#include <functional>

namespace kxinspect {

//! Receives a warning about the file at once, in the order they arise (the text after "FILE: ").
using WarningSink = std::function<void(const QString &)>;

//! What becomes of the importer's model once the report is filled.
enum class ModelMemory {
    Release,     //!< freed before the value labels are split, so that the two never take memory at once
    LeaveToExit  //!< left to the operating system at the process's exit: a run of one file saves the freeing
};

/*! Opens options.file with the importer of its format, as the front end does,
 * and fills \a report from the importer and the data provider. Returns the
 * problem that stopped the reading, or an empty text. \a dialogPossible
 * tells whether the decimal prompt can be shown (a GUI application on a
 * display); without it "--decimal ask" is answered no-to-all. */
QString fillDictionaryReport(const InspectOptions &options, bool dialogPossible, const WarningSink &warn,
                             InspectReport &report, ModelMemory model = ModelMemory::Release);

//! Reads options.file as a lookup file and fills \a report; returns the problem, or an empty text.
QString fillLookupReport(const InspectOptions &options, InspectReport &report);

//! Splits a value-label text (entries "code label", each ended by a tab).
QList<ValueLabel> splitValueLabels(const QString &text);

} // namespace kxinspect

#endif // KXINSPECT_REPORTBUILDER_H

#ifndef KXINSPECT_CODEBOOKPAGE_H
#define KXINSPECT_CODEBOOKPAGE_H

// The codebook on the HTML page of a CSPro dictionary: what the file says as
// CSPro reads it, record by record, each with its wrapped column ruler, and
// every place where the front end's reading differs marked with its note.

#include "InspectReport.h"

#include <KxCodebook.h>

#include <QSet>
#include <QString>

#include <functional>

namespace kxinspect {

/*! The codebook as the report the column layout draws: one field per
 * variable with its whole span, one group per record; the variables named in
 * \a marked are drawn marked. */
InspectReport codebookLayout(const KxCodebook::Codebook &codebook, const QSet<QString> &marked);

//! Widest ruler on the codebook page, in pixels: an A4 page's width within its print margins.
constexpr int MaxRulerWidth = 660;

/*! Writes the codebook section of the page to \a sink: the dictionary, then
 * the identification items and each record in a section of its own (a page
 * of its own in print) with its rulers, at most MaxRulerWidth pixels wide
 * each, and a table of its variables. A variable, value set, record or the
 * dictionary that a note of \a notes is about is marked, with the note. */
void writeCodebookSection(const KxCodebook::Codebook &codebook, const QList<NoteRow> &notes,
                          const std::function<void(const QString &)> &sink);

} // namespace kxinspect

#endif // KXINSPECT_CODEBOOKPAGE_H

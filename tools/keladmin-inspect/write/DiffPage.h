#ifndef KXINSPECT_DIFFPAGE_H
#define KXINSPECT_DIFFPAGE_H

#include "DiffWriters.h"

#include <QString>

namespace kxinspect {

/*! The comparison as one self-contained HTML page (inline CSS and SVG, no
 * script): the two files, the changes in a table, and for every record the
 * old and the new column ruler one above the other, the variables that
 * changed marked on both. Also well-formed XML. */
QString diffPage(const DiffReport &report);

} // namespace kxinspect

#endif // KXINSPECT_DIFFPAGE_H

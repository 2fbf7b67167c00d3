#ifndef KXINSPECT_SVGDRAWING_H
#define KXINSPECT_SVGDRAWING_H

// The column layout of a record drawn in SVG: a ruler, a box per item on its
// lane, subitems on a second row, gaps and overlaps marked.

#include "ColumnLayout.h"

#include <QList>
#include <QString>

namespace kxinspect {

//! Pixels per column for a page of \a drawings: one scale for all, so that their rulers line up.
int pageScale(const QList<RecordDrawing> &drawings);

//! One record's drawing as an inline SVG element at \a scale pixels per column.
QString drawingSvg(const RecordDrawing &drawing, int scale);

} // namespace kxinspect

#endif // KXINSPECT_SVGDRAWING_H

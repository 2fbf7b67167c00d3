#ifndef KXINSPECT_COLUMNLAYOUT_H
#define KXINSPECT_COLUMNLAYOUT_H

// The column layout of a CSPro report's records: which item takes which
// columns, on which lane, and where columns are left empty or claimed twice.
// A model, drawn by SvgDrawing.

#include "InspectReport.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace kxinspect {

//! What a box of a record's drawing stands for.
enum class BoxKind {
    Item,               //!< an item of the record
    IdentificationItem, //!< an item of the common record, drawn on every record
    SubItem,            //!< drawn on the second row, over its parent's columns
    RecordType,         //!< the columns of the record-type code
    Gap,                //!< columns that no item covers
    Overlap             //!< columns claimed by two items that are not subitems
};

//! One box of a drawing, in CSPro's 1-based columns.
struct ColumnBox
{
    BoxKind kind = BoxKind::Item;
    QString name;  //!< as read; the record-type code for BoxKind::RecordType
    QString label; //!< as read; for marks, the names involved
    qint64 start = 0;
    qint64 length = 0;
    int lane = 0; //!< row within the items or the subitems, from 0
    bool changed = false; //!< drawn marked: its field changed between two files

    qint64 end() const { return start + length - 1; }
};

/*! \brief The columns of one record type: the boxes of its items and of the
 * identification items, the record-type code, and the gaps and overlaps. */
struct RecordDrawing
{
    QString name;       //!< the record's name; empty when the dictionary has no record
    QString recordType; //!< the record-type code
    qint64 first = 1;   //!< first column of the ruler
    qint64 end = 0;     //!< last column of the ruler
    QList<ColumnBox> boxes;    //!< items, identification items and the record-type code, with their lanes
    QList<ColumnBox> subItems; //!< with their lanes among the subitems
    QList<ColumnBox> marks;    //!< gaps and overlaps
    QStringList notDrawn;      //!< fields that have no columns to draw, with the reason
    int itemLanes = 0;
    int subItemLanes = 0;
};

//! Columns past this one are not drawn (a hostile start would make the page endless).
constexpr qint64 MaxDrawnColumn = 5000;

//! True for the formats whose fields have columns in a data line (CSPro text and JSON).
bool hasColumnLayout(const InspectReport &report);

/*! The drawing of every record of a CSPro report, in the order of its groups
 * (one drawing of every field when there are no groups). A record's ruler ends
 * at the last column of its items, of the identification items or of the
 * record-type code. Empty for other formats. */
QList<RecordDrawing> recordDrawingsOf(const InspectReport &report);

/*! \a drawing cut into rulers of at most \a columns columns, one after the
 * other, so that a long record wraps: each box is cut to the columns of the
 * ruler it lies on, and a box across two rulers is on both. */
QList<RecordDrawing> wrappedDrawings(const RecordDrawing &drawing, qint64 columns);

} // namespace kxinspect

#endif // KXINSPECT_COLUMNLAYOUT_H

#ifndef KXCODEBOOK_CSPROLAYOUT_P_H
#define KXCODEBOOK_CSPROLAYOUT_P_H

// What both CSPro readers do with what they read: the missing values of a
// value set, the linked value sets filled and each record's length, as CSPro
// means them.

#include "KxCodebook.h"

namespace KxCodebook {
namespace detail {

// Bounds against hostile numbers, shared by both readers. CSPro's own limits
// are 9999 occurrences and 9999 records (MAX_OCCURS, MAX_MAX_RECS); its
// validator also caps starts and record lengths at 32000 and decimals at 9,
// but a file beyond those is still a dictionary: only what cannot be a
// column, a width or a count is refused. With these bounds start + width ×
// occurrences stays below 2^31.
constexpr qint64 MaxStart = 1000000000;
constexpr qint64 MaxWidth = 100000;
constexpr qint64 MaxOccurrences = 9999;
constexpr qint64 MaxRecords = 9999;
constexpr qint64 MaxDecimals = 15;

/*! The first value set with a given link id carries the values; every later
 * set with the same id and no values of its own receives a copy of them
 * (marked ValueSet::linkFilled). */
void fillLinkedValueSets(QVector<Variable> *variables);

//! \a code of \a value, a value with a special meaning, as a missing value labelled with its primary label.
MissingValue missingValueOf(const Value &value, const Code &code);

/*! The special values of \a set as missing values: one for each code or
 * range of a value with a special meaning, labelled with its primary label. */
QVector<MissingValue> missingValuesOf(const ValueSet &set);

/*! Sets each record's length: the largest of the record-type code's end, the
 * end of every identification item of every level, and the end of every item
 * of the record that is not a subitem (start + width × occurrences - 1). */
void computeRecordLengths(QVector<Record> *records, const QVector<Variable> &variables,
                          int recordTypeStart, int recordTypeLength);

} // namespace detail
} // namespace KxCodebook

#endif // KXCODEBOOK_CSPROLAYOUT_P_H

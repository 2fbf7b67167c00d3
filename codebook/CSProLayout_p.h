#ifndef KXCODEBOOK_CSPROLAYOUT_P_H
#define KXCODEBOOK_CSPROLAYOUT_P_H

// What both CSPro readers do with what they read: the missing values of a
// value set, the linked value sets filled and each record's length, as CSPro
// means them.

#include "KxCodebook.h"

namespace KxCodebook {
namespace detail {

/*! The first value set with a given link id carries the values; every later
 * set with the same id and no values of its own receives a copy of them
 * (marked ValueSet::linkFilled). */
void fillLinkedValueSets(QVector<Variable> *variables);

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

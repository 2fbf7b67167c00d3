#ifndef FIXTURECSPRO_H
#define FIXTURECSPRO_H

#include <QList>
#include <QStringList>

class TCSPro;
class TCSProItem;

namespace kxtest {

//! The codes of the item's first value set, in stored order; empty without one.
QStringList codesOf(TCSProItem *item);

//! One record as a dictionary reader should have read it; a recordLen of -1 is not checked.
struct ExpectedRecord
{
    const char *name;
    const char *label;
    const char *recordTypeValue;
    const char *required;
    int maxRecords;
    int recordLen;
};

//! Checks the reader's records, in order, and that each is found by its record type value.
void expectRecords(TCSPro &d, const QList<ExpectedRecord> &expected);

} // namespace kxtest

#endif // FIXTURECSPRO_H

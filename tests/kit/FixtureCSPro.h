#ifndef FIXTURECSPRO_H
#define FIXTURECSPRO_H

#include <QStringList>

class TCSProItem;

namespace kxtest {

//! The codes of the item's first value set, in stored order; empty without one.
QStringList codesOf(TCSProItem *item);

} // namespace kxtest

#endif // FIXTURECSPRO_H

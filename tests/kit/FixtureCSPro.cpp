#include "FixtureCSPro.h"

#include "CSProDictionary.h"

namespace kxtest {

QStringList codesOf(TCSProItem *item)
{
    QStringList codes;
    if (!item->getHasValueSet())
        return codes;
    TCSProValueSet *set = item->getValueSet(0);
    for (int i = 0; i < set->getCount(); ++i)
        codes << set->getValueSetItem(i)->code;
    return codes;
}

} // namespace kxtest

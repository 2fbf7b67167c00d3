#include "FixtureCSPro.h"

#include "CSPro.h"
#include "CSProDictionary.h"

#include <gtest/gtest.h>

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

void expectRecords(TCSPro &d, const QList<ExpectedRecord> &expected)
{
    ASSERT_EQ(d.getRecordsCount(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        const ExpectedRecord &e = expected.at(i);
        TCSProRecord *r = d.getRecord(i);
        SCOPED_TRACE(e.name);
        EXPECT_EQ(r->name, QLatin1String(e.name));
        EXPECT_EQ(r->label, QLatin1String(e.label));
        EXPECT_EQ(r->recordTypeValue, QLatin1String(e.recordTypeValue));
        EXPECT_EQ(r->required, QLatin1String(e.required));
        EXPECT_EQ(r->maxRecords, e.maxRecords);
        if (e.recordLen >= 0) {
            EXPECT_EQ(r->recordLen, e.recordLen);
        }
        EXPECT_EQ(d.findRecordByValue(QLatin1String(e.recordTypeValue)), r);
    }
}

} // namespace kxtest

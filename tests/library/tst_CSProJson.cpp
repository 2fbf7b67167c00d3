#include "model_KelAdmin.h"
#include "FixtureCSPro.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

namespace {

using kxtest::codesOf;

QStringList entriesOf(TCSProItem *item)
{
    QStringList entries;
    if (!item->getHasValueSet())
        return entries;
    TCSProValueSet *set = item->getValueSet(0);
    for (int i = 0; i < set->getCount(); ++i) {
        TValueSetItem *e = set->getValueSetItem(i);
        entries << e->code + QStringLiteral("=") + e->name;
        EXPECT_EQ(e->type, 0);
        EXPECT_FALSE(e->special);
    }
    return entries;
}

// Writes \a json and loads it into \a d through loadFromFile.
void loadJson(TCSProJson &d, const QByteArray &json)
{
    QTemporaryDir dir;
    d.loadFromFile(kxtest::writeFile(dir, QStringLiteral("dict.json"), json));
}

// A dictionary with one level whose records are \a records (JSON text).
QByteArray withRecords(const QByteArray &records, const QByteArray &extra = QByteArray())
{
    return "{\"name\":\"D\"," + extra + "\"levels\":[{\"records\":[" + records + "]}]}";
}

struct Expected
{
    const char *name;
    int start;
    int len;
    int isAlpha;
    bool decimalChar;
    bool zeroFill;
    int index;
    const char *record;
};

} // namespace

// ---------------------------------------------------------------- the file

TEST(CSProJson, FileNotStartingWithBraceLeavesDictionaryUntouched)
{
    TCSProJson d;
    d.loadFromFile(kxtest::samplePath(QStringLiteral("census.dcf")));
    EXPECT_EQ(d.getItemsCount(), 0);
    EXPECT_EQ(d.getRecordsCount(), 0);
    EXPECT_EQ(d.version, QString());
    EXPECT_EQ(d.commonRecord->label, QString());
    loadJson(d, "[{\"name\":\"X\"}]");
    EXPECT_EQ(d.name, QString());
    loadJson(d, "");
    EXPECT_EQ(d.name, QString());
}

TEST(CSProJson, LeadingBlanksBeforeTheBraceAreAllowed)
{
    TCSProJson d;
    loadJson(d, "  \n\t {\"name\":\"SURVEY\"}");
    EXPECT_EQ(d.name, QStringLiteral("SURVEY"));
}

TEST(CSProJson, UnreadableFileIsIgnored)
{
    TCSProJson d;
    d.loadFromFile(QStringLiteral("/nonexistent/dir/x.json"));
    d.loadFromJson(QStringLiteral("/nonexistent/dir/x.json"));
    EXPECT_EQ(d.getItemsCount(), 0);
    EXPECT_EQ(d.version, QString());
}

TEST(CSProJson, ParseErrorLeavesDictionaryUntouched)
{
    TCSProJson d;
    loadJson(d, "{\"name\":\"X\",");
    EXPECT_EQ(d.name, QString());
    EXPECT_EQ(d.version, QString());
}

TEST(CSProJson, LoadThroughTheBaseClassReadsJson)
{
    TCSProJson json;
    TCSPro *d = &json;
    d->loadFromFile(kxtest::samplePath(QStringLiteral("census.json")));
    // 28 items, ASSET's six copies counted, and BIRTHDATE's two subitems read as items: 35.
    EXPECT_EQ(d->getItemsCount(), 35);
}

// --------------------------------------------------------- dictionary level

TEST(CSProJson, DictionaryWithoutVersionGetsVersion8)
{
    TCSProJson d;
    loadJson(d, "{\"name\":\"X\"}");
    EXPECT_EQ(d.version, QStringLiteral("8"));
    TCSProJson text;
    loadJson(text, "{\"version\":\"8.1\"}");
    EXPECT_EQ(text.version, QStringLiteral("8")); // not a number counts as 8
}

TEST(CSProJson, VersionIsWrittenWithSixSignificantDigits)
{
    TCSProJson a;
    loadJson(a, "{\"version\":8.1}");
    EXPECT_EQ(a.version, QStringLiteral("8.1"));
    TCSProJson b;
    loadJson(b, "{\"version\":8.0}");
    EXPECT_EQ(b.version, QStringLiteral("8"));
    TCSProJson c;
    loadJson(c, "{\"version\":8.1234567}");
    EXPECT_EQ(c.version, QStringLiteral("8.12346"));
}

TEST(CSProJson, NameReadFromANumberIsEmpty)
{
    TCSProJson d;
    loadJson(d, "{\"name\":12}");
    EXPECT_EQ(d.name, QString());
}

TEST(CSProJson, RecordTypeStartAndLength)
{
    TCSProJson a;
    loadJson(a, "{\"recordType\":{\"start\":3,\"length\":2}}");
    EXPECT_EQ(a.recordTypeStart, 3);
    EXPECT_EQ(a.recordTypeLen, 2);
    TCSProJson b;
    loadJson(b, "{\"recordType\":{\"length\":2}}");
    EXPECT_EQ(b.recordTypeStart, 0);
    EXPECT_EQ(b.recordTypeLen, 2);
    TCSProJson c;
    loadJson(c, "{\"recordType\":5}");
    EXPECT_EQ(c.recordTypeStart, 0);
    EXPECT_EQ(c.recordTypeLen, 0);
    TCSProJson e;
    loadJson(e, "{\"recordType\":{\"start\":\"3\",\"length\":2.5}}");
    EXPECT_EQ(e.recordTypeStart, 0); // an integer read from text is the default
    EXPECT_EQ(e.recordTypeLen, 0);
}

TEST(CSProJson, DictionaryObjectInsideTheRootIsRead)
{
    TCSProJson d;
    loadJson(d, "{\"name\":\"OUTER\",\"dictionary\":{\"name\":\"INNER\",\"version\":8.2}}");
    EXPECT_EQ(d.name, QStringLiteral("INNER"));
    EXPECT_EQ(d.version, QStringLiteral("8.2"));
}

TEST(CSProJson, WithoutLevelsTheDictionaryMembersStay)
{
    TCSProJson d;
    loadJson(d, "{\"name\":\"X\",\"recordType\":{\"start\":1,\"length\":1},\"levels\":{}}");
    EXPECT_EQ(d.name, QStringLiteral("X"));
    EXPECT_EQ(d.recordTypeLen, 1);
    EXPECT_EQ(d.commonRecord->label, QStringLiteral("Common"));
    EXPECT_EQ(d.getItemsCount(), 0);
}

// ------------------------------------------------------------------ records

TEST(CSProJson, RecordFieldsAndDebugLine)
{
    TCSProJson d;
    kxtest::MessageCollector log;
    loadJson(d, withRecords("{\"name\":\"PERSON\",\"labels\":[{\"text\":\"Person\"},{\"text\":\"Persona\"}],"
                            "\"recordType\":\"P\",\"occurrences\":{\"required\":true,\"maximum\":25}},"
                            "{\"name\":\"VISIT\",\"recordType\":\"V\",\"occurrences\":{}},"
                            "{\"name\":\"NOTE\",\"recordType\":7}"));
    ASSERT_EQ(d.getRecordsCount(), 3);
    TCSProRecord *p = d.getRecord(0);
    EXPECT_EQ(p->name, QStringLiteral("PERSON"));
    EXPECT_EQ(p->label, QStringLiteral("Person")); // only the first label
    EXPECT_EQ(p->recordTypeValue, QStringLiteral("P"));
    EXPECT_EQ(p->maxRecords, 25);
    EXPECT_EQ(p->required, QStringLiteral("YES"));
    EXPECT_EQ(p->recordLen, 0);
    EXPECT_EQ(d.getRecord(1)->maxRecords, 1);
    EXPECT_EQ(d.getRecord(1)->required, QStringLiteral("NO"));
    EXPECT_EQ(d.getRecord(2)->maxRecords, 1);
    EXPECT_EQ(d.getRecord(2)->required, QStringLiteral("NO"));
    EXPECT_EQ(d.getRecord(2)->recordTypeValue, QString());
    EXPECT_EQ(d.findRecordByValue(QStringLiteral("P")), p);
    EXPECT_EQ(d.findRecordByValue(QString()), nullptr); // empty values are not entered
    EXPECT_TRUE(log.contains(QStringLiteral("Record \"PERSON\" \"P\""))) << log.messages().join('\n').toStdString();
}

TEST(CSProJson, RepeatedRecordTypeReplacesTheEarlierRecordInTheMap)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"FIRST\",\"recordType\":\"P\"},{\"name\":\"SECOND\",\"recordType\":\"P\"}"));
    ASSERT_EQ(d.getRecordsCount(), 2);
    EXPECT_EQ(d.getRecord(0)->name, QStringLiteral("FIRST"));
    EXPECT_EQ(d.getRecord(1)->name, QStringLiteral("SECOND"));
    EXPECT_EQ(d.findRecordByValue(QStringLiteral("P"))->name, QStringLiteral("SECOND"));
}

TEST(CSProJson, ElementsOfTheWrongTypeAreSkippedOneByOne)
{
    TCSProJson d;
    loadJson(d, "{\"levels\":[1,\"x\",{\"records\":{}},{\"records\":[3,{\"name\":\"R\",\"items\":{}},"
                "{\"name\":\"S\",\"items\":[null,{\"name\":\"A\",\"length\":1}]}]}]}");
    ASSERT_EQ(d.getRecordsCount(), 2);
    ASSERT_EQ(d.getItemsCount(), 1);
    EXPECT_EQ(d.getItem(0)->name, QStringLiteral("A"));
    EXPECT_EQ(d.getItem(0)->record->name, QStringLiteral("S"));
}

TEST(CSProJson, WrongTypesAmongTheIdentificationItemsAreSkippedOneByOne)
{
    // "ids" that is no object, "items" that is no array, and elements that are no objects.
    TCSProJson d;
    loadJson(d, R"({"name":"D","levels":[{"ids":[1]},{"ids":{"items":{"name":"X"}}},
        {"ids":{"items":[7,"Y",{"name":"PROV","length":2},null,{"name":"DIST","length":3}]},
         "records":[{"name":"R","items":[{"name":"A","length":1}]}]}]})");
    ASSERT_EQ(d.getItemsCount(), 3);
    EXPECT_EQ(d.getItem(0)->name, QStringLiteral("PROV"));
    EXPECT_EQ(d.getItem(1)->name, QStringLiteral("DIST"));
    EXPECT_EQ(d.getItem(2)->name, QStringLiteral("A"));
    // Identification items belong to the common record and follow each other from column 1.
    EXPECT_EQ(d.getItem(0)->record, d.getCommonRecord());
    EXPECT_EQ(d.getItem(1)->record, d.getCommonRecord());
    EXPECT_EQ(d.getItem(0)->start, 1);
    EXPECT_EQ(d.getItem(1)->start, 3);
}

// -------------------------------------------------------------------- items

TEST(CSProJson, RelativePositionsStartAtOneForIdsAndForEveryRecord)
{
    TCSProJson d;
    loadJson(d, "{\"levels\":[{\"ids\":{\"items\":[{\"name\":\"A\",\"length\":3},{\"name\":\"B\",\"length\":2}]},"
                "\"records\":[{\"name\":\"R1\",\"items\":[{\"name\":\"C\",\"length\":4},{\"name\":\"D\",\"length\":1}]},"
                "{\"name\":\"R2\",\"items\":[{\"name\":\"E\",\"length\":2}]}]}]}");
    ASSERT_EQ(d.getItemsCount(), 5);
    EXPECT_EQ(d.getItem(0)->start, 1);
    EXPECT_EQ(d.getItem(1)->start, 4);
    EXPECT_EQ(d.getItem(0)->record, d.commonRecord);
    EXPECT_EQ(d.getItem(2)->start, 1);
    EXPECT_EQ(d.getItem(3)->start, 5);
    EXPECT_EQ(d.getItem(4)->start, 1);
    EXPECT_EQ(d.getItem(4)->record->name, QStringLiteral("R2"));
}

TEST(CSProJson, ExplicitStartMovesTheRunningPosition)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"A\",\"start\":10,\"length\":3},"
                            "{\"name\":\"B\",\"length\":2}]}"));
    ASSERT_EQ(d.getItemsCount(), 2);
    EXPECT_EQ(d.getItem(0)->start, 10);
    EXPECT_EQ(d.getItem(1)->start, 13);
}

TEST(CSProJson, ItemOfLengthZeroAdvancesTheRunningPositionByOne)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"Z\",\"length\":0},{\"name\":\"N\",\"length\":2},"
                            "{\"name\":\"M\"}]}"));
    ASSERT_EQ(d.getItemsCount(), 3);
    EXPECT_EQ(d.getItem(0)->start, 1);
    EXPECT_EQ(d.getItem(0)->len, 0);
    EXPECT_EQ(d.getItem(1)->start, 2);
    EXPECT_EQ(d.getItem(2)->start, 4);
    EXPECT_EQ(d.getItem(2)->len, 0);
}

TEST(CSProJson, WithoutRelativePositionsRunningPositionIsRaisedToOne)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"A\",\"start\":-5,\"length\":1},"
                            "{\"name\":\"B\",\"length\":1},{\"name\":\"C\",\"length\":1}]}",
                            "\"relativePositions\":false,"));
    ASSERT_EQ(d.getItemsCount(), 3);
    EXPECT_EQ(d.getItem(0)->start, -5);
    EXPECT_EQ(d.getItem(1)->start, 1);  // running position -4 raised to 1
    EXPECT_EQ(d.getItem(2)->start, 1);  // running position -3 raised to 1
}

TEST(CSProJson, WithRelativePositionsTheRunningPositionIsInsertedAsStart)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"A\",\"start\":-5,\"length\":1},"
                            "{\"name\":\"B\",\"length\":1}]}"));
    ASSERT_EQ(d.getItemsCount(), 2);
    EXPECT_EQ(d.getItem(1)->start, -4);
}

TEST(CSProJson, ItemFields)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"NAME\",\"labels\":[{\"text\":\"Full name\"}],"
                            "\"contentType\":\"Alpha\",\"length\":20,\"decimals\":2,\"zeroFill\":true,"
                            "\"decimalMark\":true},{\"name\":\"N\",\"contentType\":\"numeric\",\"length\":\"3\"}]}"));
    ASSERT_EQ(d.getItemsCount(), 2);
    TCSProItem *a = d.getItem(0);
    EXPECT_EQ(a->name, QStringLiteral("NAME"));
    EXPECT_EQ(a->label, QStringLiteral("Full name"));
    EXPECT_EQ(a->isAlpha, 1);
    EXPECT_EQ(a->len, 20);
    EXPECT_EQ(a->decimal, 0); // no number of decimals is read
    EXPECT_EQ(a->occurrences, 1);
    EXPECT_TRUE(a->zeroFill);
    EXPECT_TRUE(a->decimalChar);
    EXPECT_EQ(a->index, 0);
    EXPECT_EQ(d.currentItem, d.getItem(1));
    EXPECT_EQ(d.getItem(1)->isAlpha, 0);
    EXPECT_EQ(d.getItem(1)->len, 0); // an integer read from text is the default
}

TEST(CSProJson, DecimalMarkAndZeroFillDefaultFromTheDictionary)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"A\"},{\"name\":\"B\",\"zeroFill\":false,"
                            "\"decimalMark\":false}]}",
                            "\"defaults\":{\"decimalMark\":true,\"zeroFill\":true},"));
    ASSERT_EQ(d.getItemsCount(), 2);
    EXPECT_TRUE(d.getItem(0)->decimalChar);
    EXPECT_TRUE(d.getItem(0)->zeroFill);
    EXPECT_FALSE(d.getItem(1)->decimalChar);
    EXPECT_FALSE(d.getItem(1)->zeroFill);
    TCSProJson n;
    loadJson(n, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"A\"}]}", "\"defaults\":3,"));
    EXPECT_FALSE(n.getItem(0)->decimalChar);
    EXPECT_FALSE(n.getItem(0)->zeroFill);
}

TEST(CSProJson, OccurrencesExpandIntoItemsNamedWithDecimalDigits)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"FIRST\",\"length\":1},"
                            "{\"name\":\"AGE\",\"labels\":[{\"text\":\"Age\"}],\"start\":10,\"length\":2,"
                            "\"occurrences\":{\"maximum\":3},\"zeroFill\":true},{\"name\":\"NEXT\",\"length\":1}]}"));
    ASSERT_EQ(d.getItemsCount(), 5);
    const char *names[] = {"AGE_1", "AGE_2", "AGE_3"};
    for (int i = 0; i < 3; ++i) {
        TCSProItem *it = d.getItem(1 + i);
        EXPECT_EQ(it->name, QString::fromLatin1(names[i]));
        EXPECT_EQ(it->start, 10 + 2 * i);
        EXPECT_EQ(it->len, 2);
        EXPECT_EQ(it->occurrences, 1);
        EXPECT_EQ(it->label, QStringLiteral("Age"));
        EXPECT_EQ(it->index, 1);
        EXPECT_TRUE(it->zeroFill);
        EXPECT_EQ(it->record->name, QStringLiteral("R"));
    }
    EXPECT_EQ(d.getItem(4)->name, QStringLiteral("NEXT"));
    EXPECT_EQ(d.getItem(4)->start, 16);
}

TEST(CSProJson, CopiesOfARepeatedAlphaItemAreAlpha)
{
    TCSProJson d;
    loadJson(d, withRecords(R"({"name":"R","items":[{"name":"CODE","contentType":"Alpha","length":3,
        "occurrences":{"maximum":2}},{"name":"N","contentType":"numeric","length":1,"occurrences":{"maximum":2}}]})"));
    ASSERT_EQ(d.getItemsCount(), 4);
    EXPECT_EQ(d.getItem(0)->name, QStringLiteral("CODE_1"));
    EXPECT_EQ(d.getItem(0)->isAlpha, 1);
    EXPECT_EQ(d.getItem(1)->isAlpha, 1);
    EXPECT_EQ(d.getItem(2)->name, QStringLiteral("N_1"));
    EXPECT_EQ(d.getItem(2)->isAlpha, 0);
    EXPECT_EQ(d.getItem(3)->isAlpha, 0);
}

TEST(CSProJson, OccurrenceMaximumBelowTwoGivesOneItem)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"A\",\"length\":1,\"occurrences\":{\"maximum\":1}},"
                            "{\"name\":\"B\",\"length\":1,\"occurrences\":{}},"
                            "{\"name\":\"C\",\"length\":1,\"occurrences\":{\"maximum\":0}}]}"));
    ASSERT_EQ(d.getItemsCount(), 3);
    EXPECT_EQ(d.getItem(0)->name, QStringLiteral("A"));
    EXPECT_EQ(d.getItem(2)->name, QStringLiteral("C"));
}

TEST(CSProJson, EachOccurrenceCopyReadsTheValueSet)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"F\",\"length\":1,\"occurrences\":{\"maximum\":2},"
                            "\"valueSets\":[{\"name\":\"F_VS\",\"values\":[{\"pairs\":[{\"value\":\"1\"}]}]}]}]}"));
    ASSERT_EQ(d.getItemsCount(), 2);
    EXPECT_EQ(codesOf(d.getItem(0)), QStringList{"1"});
    EXPECT_EQ(codesOf(d.getItem(1)), QStringList{"1"});
}

// --------------------------------------------------------------- value sets

TEST(CSProJson, RangePairGivesOneEntryLowColonHigh)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"A\",\"length\":1,\"valueSets\":[{\"values\":["
                            "{\"labels\":[{\"text\":\"Young\"}],\"pairs\":[{\"range\":[\"1\",\"5\"]}]},"
                            "{\"pairs\":[{\"range\":[\"1\",\"5\",\"9\"]}]},"
                            "{\"pairs\":[{\"range\":[\"1\"]}]}]}]}]}"));
    EXPECT_EQ(entriesOf(d.getItem(0)), (QStringList{"1:5=Young", "=", "="}));
}

TEST(CSProJson, NumericValueGivesAnEmptyCode)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"A\",\"length\":1,\"valueSets\":[{\"values\":["
                            "{\"pairs\":[{\"value\":1}]},{\"pairs\":[{\"value\":\"2\"}]},"
                            "{\"pairs\":[{\"range\":[1,5]}]}]}]}]}"));
    EXPECT_EQ(codesOf(d.getItem(0)), (QStringList{"", "2", ":"}));
}

TEST(CSProJson, OnlyTheFirstPairAndTheFirstValueSetCount)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"A\",\"length\":1,\"valueSets\":["
                            "{\"name\":\"ONE\",\"labels\":[{\"text\":\"First\"}],\"values\":["
                            "{\"labels\":[{\"text\":\"Low\"}],\"pairs\":[{\"value\":\"1\"},{\"value\":\"2\"}]},"
                            "{\"pairs\":[{\"value\":\"3\",\"range\":[\"4\",\"5\"]}]}]},"
                            "{\"name\":\"TWO\",\"values\":[{\"pairs\":[{\"value\":\"9\"}]}]}]}]}"));
    TCSProItem *a = d.getItem(0);
    ASSERT_EQ(a->getCount(), 1);
    EXPECT_EQ(a->getValueSet(0)->name, QStringLiteral("ONE"));
    EXPECT_EQ(a->getValueSet(0)->label, QStringLiteral("First"));
    EXPECT_EQ(entriesOf(a), (QStringList{"1=Low", "3="}));
}

TEST(CSProJson, EntriesAreNeitherSortedNorValidatedNorPrompted)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"A\",\"length\":3,\"valueSets\":[{\"values\":["
                            "{\"pairs\":[{\"value\":\"10\"}]},{\"pairs\":[{\"value\":\"2.5\"}]},"
                            "{\"pairs\":[{\"value\":\"X\"}]},{\"pairs\":[]},{},7]}]}]}"));
    EXPECT_EQ(codesOf(d.getItem(0)), (QStringList{"10", "2.5", "X", "", ""}));
    EXPECT_EQ(d.messageBox, nullptr);
}

TEST(CSProJson, ValueSetsOfTheWrongShapeGiveNoValueSet)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"A\",\"valueSets\":[]},"
                            "{\"name\":\"B\",\"valueSets\":{}},{\"name\":\"C\",\"valueSets\":[1]},"
                            "{\"name\":\"D\",\"valueSets\":[{\"values\":3}]}]}"));
    ASSERT_EQ(d.getItemsCount(), 4);
    EXPECT_FALSE(d.getItem(0)->getHasValueSet());
    EXPECT_FALSE(d.getItem(1)->getHasValueSet());
    EXPECT_FALSE(d.getItem(2)->getHasValueSet());
    ASSERT_TRUE(d.getItem(3)->getHasValueSet());
    EXPECT_EQ(d.getItem(3)->getValueSet(0)->getCount(), 0);
}

TEST(CSProJson, LabelReaderTakesTheFirstLabelObjectOnly)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"A\",\"labels\":[]},"
                            "{\"name\":\"B\",\"labels\":[\"text\"]},{\"name\":\"C\",\"labels\":{\"text\":\"x\"}},"
                            "{\"name\":\"D\",\"labels\":[{\"text\":5}]}]}"));
    ASSERT_EQ(d.getItemsCount(), 4);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(d.getItem(i)->label, QString());
}

// ------------------------------------------------------------ census, end to end

namespace {

// samples/census.json: the same census story in the CSPro 8 JSON form.
const QString CensusJsonPath = kxtest::samplePath(QStringLiteral("census.json"));

void expectCensusJsonRecords(TCSProJson &d)
{
    EXPECT_EQ(d.name, QStringLiteral("CENSUS2023_DICT"));
    EXPECT_EQ(d.version, QStringLiteral("8")); // the number 8.0 in the general format
    EXPECT_EQ(d.label, QString());             // the dictionary's label is not read
    EXPECT_EQ(d.recordTypeStart, 1);
    EXPECT_EQ(d.recordTypeLen, 1);
    EXPECT_EQ(d.commonRecord->label, QStringLiteral("Common"));
    // Required written YES or NO from the boolean; RecordLen is not read.
    kxtest::expectRecords(d, {{"HOUSING", "Housing record", "H", "YES", 1, -1},
                              {"PERSON", "Person record", "P", "NO", 30, -1},
                              {"DEATH", "Deaths in the last 12 months", "D", "NO", 10, -1}});
}

void expectCensusJsonItems(TCSProJson &d)
{
    // census.json has relative positions and gives only the identification
    // items a "start": every record's items are laid out again from column 1,
    // one after the other (length × occurrences), and BIRTHDATE's subitems
    // ("subitem": true) are read as items of their own that take columns too.
    // "zeroFill" is written on every numeric item; alpha items take the
    // dictionary's default, true. Only LANDAREA has "decimalMark". ASSET's
    // copies get the index 9, the number of items before them.
    const Expected expected[] = {
        {"PROVINCE", 2, 2, 0, false, true, 0, "Common"},  {"DISTRICT", 4, 2, 0, false, true, 0, "Common"},
        {"URBRUR", 6, 1, 0, false, false, 0, "Common"},   {"EA", 7, 3, 0, false, true, 0, "Common"},
        {"HHNUM", 10, 3, 0, false, true, 0, "Common"},    {"DWELLING", 1, 1, 0, false, false, 0, "HOUSING"},
        {"ROOMS", 2, 2, 0, false, true, 0, "HOUSING"},    {"WALLS", 4, 1, 1, false, true, 0, "HOUSING"},
        {"WATER", 5, 2, 0, false, false, 0, "HOUSING"},   {"ASSET_1", 7, 1, 0, false, false, 9, "HOUSING"},
        {"ASSET_2", 8, 1, 0, false, false, 9, "HOUSING"}, {"ASSET_3", 9, 1, 0, false, false, 9, "HOUSING"},
        {"ASSET_4", 10, 1, 0, false, false, 9, "HOUSING"}, {"ASSET_5", 11, 1, 0, false, false, 9, "HOUSING"},
        {"ASSET_6", 12, 1, 0, false, false, 9, "HOUSING"}, {"LANDAREA", 13, 5, 0, true, false, 0, "HOUSING"},
        {"RENT", 18, 7, 0, false, false, 0, "HOUSING"},   {"HHSIZE", 25, 2, 0, false, true, 0, "HOUSING"},
        {"ADDRESS", 27, 30, 1, false, true, 0, "HOUSING"}, {"PLINE", 1, 2, 0, false, true, 0, "PERSON"},
        {"RELATION", 3, 1, 0, false, false, 0, "PERSON"}, {"SEX", 4, 1, 0, false, false, 0, "PERSON"},
        {"AGE", 5, 3, 0, false, false, 0, "PERSON"},      {"BIRTHDATE", 8, 6, 0, false, false, 0, "PERSON"},
        {"BIRTHYEAR", 14, 4, 0, false, false, 0, "PERSON"}, {"BIRTHMONTH", 18, 2, 0, false, false, 0, "PERSON"},
        {"MARITAL", 20, 1, 0, false, false, 0, "PERSON"}, {"SCHOOL", 21, 1, 0, false, false, 0, "PERSON"},
        {"OCCUP", 22, 4, 1, false, true, 0, "PERSON"},    {"INCOME", 26, 8, 0, false, false, 0, "PERSON"},
        {"CHILDREN", 34, 2, 0, false, false, 0, "PERSON"}, {"DLINE", 1, 2, 0, false, true, 0, "DEATH"},
        {"DSEX", 3, 1, 0, false, false, 0, "DEATH"},      {"DAGE", 4, 3, 0, false, false, 0, "DEATH"},
        {"DCAUSE", 7, 1, 0, false, false, 0, "DEATH"},
    };
    ASSERT_EQ(d.getItemsCount(), int(std::size(expected)));
    for (int i = 0; i < d.getItemsCount(); ++i) {
        SCOPED_TRACE(i);
        TCSProItem *it = d.getItem(i);
        const Expected &e = expected[i];
        EXPECT_EQ(it->name, QString::fromLatin1(e.name));
        EXPECT_EQ(it->start, e.start);
        EXPECT_EQ(it->len, e.len);
        EXPECT_EQ(it->isAlpha, e.isAlpha);
        EXPECT_EQ(it->decimalChar, e.decimalChar);
        EXPECT_EQ(it->zeroFill, e.zeroFill);
        EXPECT_EQ(it->index, e.index);
        EXPECT_EQ(it->isSubItem, 0);
        EXPECT_EQ(it->decimal, 0);
        EXPECT_EQ(it->occurrences, 1);
        ASSERT_NE(it->record, nullptr);
        EXPECT_EQ(it->record->name, QString::fromLatin1(e.record));
    }
    EXPECT_EQ(d.getItem(0)->label, QStringLiteral("Province"));
    EXPECT_EQ(d.getItem(9)->label, QStringLiteral("Household owns the item"));
}

// Entries in file order, a range as one code "low:high", special values as ordinary entries.
void expectCensusJsonValueSets(TCSProJson &d)
{
    const QStringList yesNo = {"1=Yes", "2=No"};
    const QStringList ages = {"0:97=Years", "98=98 years or more", "999=Not reported"};
    const QStringList sexes = {"1=Male", "2=Female"};
    const QMap<int, QStringList> entries = {
        {0, {"1=North", "2=South", "3=East", "4=West", "5=Capital district"}},
        {2, {"1=Urban", "2=Rural"}},
        {5, {"1=Detached house", "2=Semi-detached house", "3=Apartment or flat", "4=Traditional dwelling",
             "5=Improvised housing unit", "9=Not reported"}},
        {6, {"1:20=Rooms", "99=Not reported"}},
        {7, {"A=Brick or concrete blocks", "B=Wood or timber", "C=Mud or earth", "X=Other material"}},
        {8, {"11=Piped into dwelling", "12=Piped into yard or plot", "21=Public tap or standpipe", "31=Protected well",
             "32=Unprotected well", "41=River, lake or pond", "96=Other source"}},
        {9, yesNo}, {10, yesNo}, {11, yesNo}, {12, yesNo}, {13, yesNo}, {14, yesNo},
        {15, {"0.5=Under one hectare", "1:999=One hectare or more"}},
        {19, {"1:30=Line"}},
        {20, {"1=Head", "2=Spouse or partner", "3=Son or daughter", "4=Parent", "5=Other relative", "6=Non-relative",
              "9=Not reported"}},
        {21, sexes},
        {22, ages},
        {25, {"1:12=Month", "99=Not reported"}},
        {26, {"1=Never married", "2=Married", "3=Consensual union", "4=Separated or divorced", "5=Widowed",
              "9=Not reported"}},
        {27, {"1=Attending", "2=Attended in the past", "3=Never attended", "8=Not applicable", "9=Not reported"}},
        {28, {"1120=Managing directors and chief executives", "2341=Primary school teachers",
              "6111=Field crop and vegetable growers", "7115=Carpenters and joiners", "9999=Not stated"}},
        {30, {"0:30=Children", "98=Not applicable", "99=Not reported"}},
        {32, sexes},
        {33, ages},
        {34, {"1=Illness", "2=Accident", "3=Violence", "4=Pregnancy or childbirth", "9=Not known"}},
    };
    for (int i = 0; i < d.getItemsCount(); ++i)
        EXPECT_EQ(entriesOf(d.getItem(i)), entries.value(i)) << i;
    EXPECT_EQ(d.getItem(0)->getValueSet(0)->name, QStringLiteral("PROVINCE_VS1"));
    EXPECT_EQ(d.getItem(0)->getValueSet(0)->label, QStringLiteral("Province"));
    EXPECT_EQ(d.getItem(32)->getValueSet(0)->label, QStringLiteral("Sex"));
}

} // namespace

TEST(CSProJson, CensusDictionaryReadEndToEnd)
{
    TCSProJson d;
    kxtest::MessageCollector log;
    d.loadFromFile(CensusJsonPath);
    EXPECT_EQ(d.messageBox, nullptr); // the decimal code 0.5 asks nothing
    for (const char *line : {"Record \"HOUSING\" \"H\"", "Record \"PERSON\" \"P\"", "Record \"DEATH\" \"D\""})
        EXPECT_TRUE(log.contains(QLatin1String(line))) << line;
    expectCensusJsonRecords(d);
    expectCensusJsonItems(d);
    expectCensusJsonValueSets(d);
}

// ----------------------------------------------------------------- robustness

namespace {
QByteArray censusJson()
{
    QFile f(CensusJsonPath);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly));
    return f.readAll();
}

void loadsCleanly(const QTemporaryDir &dir, const QByteArray &bytes)
{
    const QString path = kxtest::writeFile(dir, QStringLiteral("fuzz.json"), bytes);
    TCSProJson d;
    d.setDecimalMode(2);
    d.setDecimalAnswer(QMessageBox::NoToAll);
    try {
        d.loadFromFile(path);
    } catch (KxErrorManager *e) {
        delete e;
    }
    for (int i = 0; i < d.getItemsCount(); ++i)
        ASSERT_NE(d.getItem(i)->record, nullptr);
}
} // namespace

TEST(CSProJson, TruncatedDictionariesLoadCleanly)
{
    QTemporaryDir dir;
    const QByteArray json = censusJson();
    for (int n = 0; n <= json.size(); n += 11)
        loadsCleanly(dir, json.left(n));
}

TEST(CSProJson, GarbledDictionariesLoadCleanly)
{
    QTemporaryDir dir;
    const QByteArray json = censusJson();
    static const char chars[] = "{}[]\":,0123456789-.eE tfn\x00\xff";
    const QByteArray alphabet(chars, int(sizeof chars) - 1);
    QRandomGenerator rng(20240611);
    for (int round = 0; round < 300; ++round) {
        QByteArray bytes = json;
        const int flips = 1 + int(rng.bounded(6));
        for (int f = 0; f < flips; ++f) {
            const int at = int(rng.bounded(bytes.size()));
            bytes[at] = rng.bounded(2) ? alphabet.at(int(rng.bounded(alphabet.size()))) : char(rng.bounded(256));
        }
        loadsCleanly(dir, bytes);
    }
}

TEST(CSProJson, HugeOccurrenceCountIsClampedToTheMaximum)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"A\",\"length\":1,"
                            "\"occurrences\":{\"maximum\":2000000000}},{\"name\":\"B\",\"length\":1}]}"));
    ASSERT_EQ(d.getItemsCount(), TCSPro::MaxOccurrences + 1);
    EXPECT_EQ(d.getItem(TCSPro::MaxOccurrences - 1)->name, QStringLiteral("A_9999"));
    EXPECT_EQ(d.getItem(TCSPro::MaxOccurrences)->start, 1 + TCSPro::MaxOccurrences);
}

TEST(CSProJson, PositionsNearTheIntLimitDoNotOverflow)
{
    TCSProJson d;
    loadJson(d, withRecords("{\"name\":\"R\",\"items\":[{\"name\":\"A\",\"start\":2147483600,\"length\":30,"
                            "\"occurrences\":{\"maximum\":5}},{\"name\":\"B\",\"length\":2147483647},"
                            "{\"name\":\"C\",\"length\":2147483647},{\"name\":\"D\",\"start\":-2147483648,"
                            "\"length\":-5,\"occurrences\":{\"maximum\":3}}]}"));
    // Copies whose start would pass the int limit are not made.
    ASSERT_GE(d.getItemsCount(), 4);
    EXPECT_EQ(d.getItem(0)->name, QStringLiteral("A_1"));
    EXPECT_EQ(d.getItem(1)->name, QStringLiteral("A_2"));
    EXPECT_EQ(d.getItem(2)->name, QStringLiteral("B"));
    EXPECT_EQ(d.getItem(2)->start, 2147483647);
    EXPECT_EQ(d.getItem(3)->start, 2147483647);
}

// ---------------------------------------------------------------- reading notes

namespace {

using kxtest::expectNotes;
using kxtest::fileNote;

TReadNotes notesOfJson(const QByteArray &json)
{
    TCSProJson d;
    loadJson(d, json);
    return d.getReadNotes();
}

} // namespace

// The dictionaries of withRecords() give the record type no length.
TReadNote noRecordType()
{
    return kxtest::fileNote("D", "group-not-set",
                            "The dictionary gives the record type no length: CSPro still knows the record of every "
                            "item, but the reading gives no field a group, the identification items included.");
}

TEST(CSProJsonNotes, DictionaryCarriedOverWholeGivesNoNotes)
{
    expectNotes(notesOfJson(withRecords(R"({"name":"P","recordType":"P","occurrences":{"required":true,"maximum":1},"items":[
        {"name":"AGE","start":2,"length":2,"valueSets":[{"name":"AGE_VS1","values":[
            {"labels":[{"text":"One"}],"pairs":[{"value":"1"}]}]}]}]})",
                                        R"("recordType":{"start":1,"length":1},)")),
                {});
}

TEST(CSProJsonNotes, DecimalsOfAnItemAreNotRead)
{
    expectNotes(notesOfJson(withRecords(R"({"name":"P","occurrences":{"required":true,"maximum":1},"items":[
        {"name":"AREA","length":5,"decimals":2},{"name":"RATE","length":3,"decimals":1},
        {"name":"N","length":1,"decimals":0}]})")),
                {noRecordType(), fileNote("AREA", "decimals-not-read", "Item AREA has 2 decimals; the reading kept no number of decimals."),
                 fileNote("RATE", "decimals-not-read", "Item RATE has 1 decimal; the reading kept no number of decimals.")});
}

TEST(CSProJsonNotes, SubitemIsReadAsAnItemOfItsOwn)
{
    // Relative positions: DATE takes columns 1-8, the subitem without "start"
    // is placed at the running position 9 and advances it.
    TCSProJson d;
    loadJson(d, withRecords(R"({"name":"P","occurrences":{"required":true,"maximum":1},"items":[{"name":"DATE","length":8},
        {"name":"YEAR","subitem":true,"subitemOffset":0,"length":4}]})"));
    expectNotes(d.getReadNotes(),
                {noRecordType(), fileNote("YEAR", "subitem-read-as-item",
                          "Item YEAR is a subitem; the reading made it an item of its own at column 9 (its offset 0 "
                          "within its parent is not read).")});
    ASSERT_EQ(d.getItemsCount(), 2);
    EXPECT_EQ(d.getItem(1)->start, 9);
    EXPECT_EQ(d.getItem(1)->isSubItem, 0);
}

TEST(CSProJsonNotes, SubitemWithoutAnOffsetIsNotedWithoutOne)
{
    expectNotes(notesOfJson(withRecords(R"({"name":"P","occurrences":{"required":true,"maximum":1},"items":[{"name":"DATE","length":8},
        {"name":"YEAR","subitem":true,"length":4},{"name":"MONTH","subitem":false,"length":2}]})")),
                {noRecordType(), fileNote("YEAR", "subitem-read-as-item",
                          "Item YEAR is a subitem; the reading made it an item of its own at column 9.")});
}

TEST(CSProJsonNotes, LinkWrittenAsANumberIsNamedAsTheNumber)
{
    expectNotes(notesOfJson(withRecords(R"({"name":"P","occurrences":{"required":true,"maximum":1},"items":[
        {"name":"ACT1","length":1,"valueSets":[{"name":"ACT_VS1","link":3,"values":[{"pairs":[{"value":"1"}]}]}]},
        {"name":"ACT2","length":1,"valueSets":[{"name":"ACT_VS2","link":3}]}]})")),
                {noRecordType(), fileNote("ACT_VS2", "linked-value-set-empty",
                          "Value set ACT_VS2 has no values of its own: CSPro fills it from value set ACT_VS1, which "
                          "has the same link 3; the reading leaves it empty.")});
}

TEST(CSProJsonNotes, RangeIsKeptAsOneCode)
{
    expectNotes(notesOfJson(withRecords(R"({"name":"P","occurrences":{"required":true,"maximum":1},"items":[{"name":"AGE","length":2,"valueSets":[
        {"name":"AGE_VS1","values":[{"pairs":[{"range":["0","97"]}]},{"pairs":[{"value":"98"}]}]}]}]})")),
                {noRecordType(), fileNote("AGE_VS1", "range-code",
                          "Value set AGE_VS1: the range 0 to 97 is kept as the one code '0:97', which reads as the "
                          "number 0 for bounds.")});
}

TEST(CSProJsonNotes, SpecialValuesAreKeptAsOrdinaryCodes)
{
    TCSProJson d;
    loadJson(d, withRecords(R"({"name":"P","occurrences":{"required":true,"maximum":1},"items":[{"name":"AGE","length":3,"valueSets":[
        {"name":"AGE_VS1","values":[{"pairs":[{"value":"998"}],"special":"NOTAPPL"},
                                    {"pairs":[{"value":"999"}],"special":"MISSING"}]}]}]})"));
    expectNotes(d.getReadNotes(),
                {noRecordType(), fileNote("AGE_VS1", "special-not-read",
                          "Value set AGE_VS1: the code '998' is the special value NOTAPPL in CSPro; the reading kept "
                          "it as an ordinary code."),
                 fileNote("AGE_VS1", "special-not-read",
                          "Value set AGE_VS1: the code '999' is the special value MISSING in CSPro; the reading kept "
                          "it as an ordinary code.")});
    EXPECT_TRUE(d.getItem(0)->missingCode.isEmpty());
    EXPECT_TRUE(d.getItem(0)->notApplCode.isEmpty());
}

TEST(CSProJsonNotes, LinkedValueSetWithoutValuesIsNoted)
{
    expectNotes(notesOfJson(withRecords(R"({"name":"P","occurrences":{"required":true,"maximum":1},"items":[
        {"name":"ACT1","length":1,"valueSets":[{"name":"ACT_VS1","link":"3","values":[{"pairs":[{"value":"1"}]}]}]},
        {"name":"ACT2","length":1,"valueSets":[{"name":"ACT_VS2","link":"3"}]},
        {"name":"ACT3","length":1,"valueSets":[{"name":"ACT_VS3","link":"4"}]}]})")),
                {noRecordType(), fileNote("ACT_VS2", "linked-value-set-empty",
                          "Value set ACT_VS2 has no values of its own: CSPro fills it from value set ACT_VS1, which "
                          "has the same link 3; the reading leaves it empty.")});
}

TEST(CSProJsonNotes, OccurrenceLabelsOfItemsAndRecordsAreNotRead)
{
    expectNotes(notesOfJson(withRecords(R"({"name":"P","occurrences":{"required":true,"maximum":2,
        "labels":[{"occurrence":1,"labels":[{"text":"First"}]},{"occurrence":2,"labels":[{"text":"Second"}]}]},
        "items":[{"name":"DAY","length":1,"occurrences":{"maximum":7,"labels":[
            {"occurrence":1,"labels":[{"text":"Monday"}]}]}}]})")),
                {noRecordType(), fileNote("P", "occurrence-labels-not-read", "Record P has 2 occurrence labels; the reading does not keep them."),
                 fileNote("DAY", "occurrence-labels-not-read",
                          "Item DAY has 1 occurrence labels; the reading does not keep them.")});
}

TEST(CSProJsonNotes, OccurrenceLabelsThatAreNoListOrAnEmptyListAreNotNoted)
{
    expectNotes(notesOfJson(withRecords(R"({"name":"P","occurrences":{"required":true,"maximum":2,"labels":{"text":"First"}},
        "items":[{"name":"DAY","length":1,"occurrences":{"maximum":7,"labels":[]}}]})")),
                {noRecordType()});
}

TEST(CSProJsonNotes, ValueSetWithoutALinkBesideLinkedOnesIsNotNoted)
{
    expectNotes(notesOfJson(withRecords(R"({"name":"P","occurrences":{"required":true,"maximum":1},"items":[
        {"name":"ACT1","length":1,"valueSets":[{"name":"ACT_VS1","link":"3","values":[{"pairs":[{"value":"1"}]}]}]},
        {"name":"ACT2","length":1,"valueSets":[{"name":"ACT_VS2"}]}]})")),
                {noRecordType()});
}

TEST(CSProJsonNotes, ValueSetsAfterTheFirstAreNotedAsDropped)
{
    expectNotes(notesOfJson(withRecords(R"({"name":"P","occurrences":{"required":true,"maximum":1},"items":[{"name":"AGE","length":2,"valueSets":[
        {"name":"AGE_VS1","values":[{"pairs":[{"value":"1"}]}]},{"name":"AGE_VS2","values":[]}]}]})")),
                {noRecordType(), fileNote("AGE_VS2", "value-set-dropped",
                          "Value set AGE_VS2 dropped: item AGE has 2 value sets, and only the first, AGE_VS1, is read.")});
}

TEST(CSProJsonNotes, OccurrencesPastTheLimitAreClippedAndNoted)
{
    TCSProJson d;
    loadJson(d, withRecords(R"({"name":"P","occurrences":{"required":true,"maximum":1},"items":[{"name":"X","length":1,"occurrences":{"maximum":10000}}]})"));
    EXPECT_EQ(d.getItemsCount(), 9999);
    expectNotes(d.getReadNotes(),
                {noRecordType(),
                 fileNote("X", "malformed-item-kept",
                          "CSPro skips item X as malformed: its \"occurrences\" give no \"maximum\" from 1 to 9999; "
                          "the reading keeps it."),
                 fileNote("X", "limit-reached", "Item X has 10000 occurrences; the reading made only the first 9999.")});
}

TEST(CSProJsonNotes, EachCopyOfARepeatedItemGetsItsOwnValueSet)
{
    TCSProJson d;
    loadJson(d, withRecords(R"({"name":"P","occurrences":{"required":true,"maximum":1},"items":[{"name":"X","length":1,"occurrences":{"maximum":3},
        "valueSets":[{"name":"X_VS1","values":[{"labels":[{"text":"Yes"}],"pairs":[{"value":"1"}]}]}]}]})"));
    ASSERT_EQ(d.getItemsCount(), 3);
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(d.getItem(i)->getHasValueSet()) << i;
        EXPECT_EQ(entriesOf(d.getItem(i)), QStringList{QStringLiteral("1=Yes")}) << i;
    }
    EXPECT_NE(d.getItem(0)->getValueSet(0), d.getItem(1)->getValueSet(0));
    EXPECT_NE(d.getItem(1)->getValueSet(0), d.getItem(2)->getValueSet(0));
    expectNotes(d.getReadNotes(), {noRecordType()});
}

TEST(CSProJsonNotes, CopiesPastTheCopyBudgetAreNotMadeAndNoted)
{
    // A file of a few hundred bytes may expand to 10,000 copies and one more
    // per 100 bytes: X's 9999 copies fit, Y's stop where the budget ends.
    const QByteArray json = withRecords(R"({"name":"P","occurrences":{"required":true,"maximum":1},"items":[
        {"name":"X","length":1,"occurrences":{"maximum":9999}},
        {"name":"Y","length":1,"occurrences":{"maximum":50}}]})");
    const int budget = 10000 + json.size() / 100;
    TCSProJson d;
    loadJson(d, json);
    ASSERT_EQ(d.getItemsCount(), budget);
    EXPECT_EQ(d.getItem(budget - 1)->name, QStringLiteral("Y_%1").arg(budget - 9999));
    expectNotes(d.getReadNotes(),
                {noRecordType(), TReadNote(0, QStringLiteral("Y"), QStringLiteral("limit-reached"),
                           QStringLiteral("Item Y: the reading stopped making its copies at copy %1, as the "
                                          "dictionary made the %2 copies of repeated items it may expand to (10000 "
                                          "and one for every 100 bytes of the file).")
                               .arg(budget - 9999 + 1)
                               .arg(budget))});
}

TEST(CSProJsonNotes, CopiesShareTheFirstValueSetOncePastTheEntryBudget)
{
    // 100 codes a copy: the budget of 250,000 entries is spent after 2,500
    // copies; copy 2,501 and later share the first copy's value set.
    QByteArray values;
    for (int v = 0; v < 100; ++v)
        values += (v ? "," : "") + QByteArray(R"({"pairs":[{"value":")") + QByteArray::number(v) + "\"}]}";
    TCSProJson d;
    loadJson(d, withRecords(R"({"name":"P","occurrences":{"required":true,"maximum":1},"items":[{"name":"X","length":1,"occurrences":{"maximum":3000},
        "valueSets":[{"name":"X_VS1","values":[)" + values + "]}]}]}"));
    ASSERT_EQ(d.getItemsCount(), 3000);
    EXPECT_NE(d.getItem(2499)->getValueSet(0), d.getItem(0)->getValueSet(0));
    EXPECT_EQ(d.getItem(2500)->getValueSet(0), d.getItem(0)->getValueSet(0));
    EXPECT_EQ(d.getItem(2999)->getValueSet(0), d.getItem(0)->getValueSet(0));
    EXPECT_EQ(d.getItem(2999)->getValueSet(0)->getCount(), 100);
    expectNotes(d.getReadNotes(),
                {noRecordType(), fileNote("X", "limit-reached",
                          "Value sets of repeated items passed 250000 entries in all: from copy 2501 of item X on, the "
                          "copies share the value set of their first copy.")});
}

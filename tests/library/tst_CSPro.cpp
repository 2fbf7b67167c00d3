#include "model_KelAdmin.h"
#include "FixtureCSPro.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextCodec>

namespace {

using kxtest::codesOf;

QStringList L(std::initializer_list<const char *> lines)
{
    QStringList out;
    for (const char *line : lines)
        out << QString::fromUtf8(line);
    return out;
}

QString occ(const char *name, int k)
{
    return QString::fromUtf8(name) + QStringLiteral("_") + QChar(k);
}

QStringList entriesOf(TCSProItem *item)
{
    QStringList entries;
    if (!item->getHasValueSet())
        return entries;
    TCSProValueSet *set = item->getValueSet(0);
    for (int i = 0; i < set->getCount(); ++i) {
        TValueSetItem *e = set->getValueSetItem(i);
        entries << e->code + QStringLiteral("=") + e->name + QStringLiteral("/") + QString::number(e->type)
                + (e->special ? QStringLiteral("/S") : QString());
    }
    return entries;
}

// A readable dump of everything the reader stores, to compare two loads.
QStringList dump(TCSPro &d)
{
    QStringList out;
    out << QStringLiteral("dict %1|%2|%3|%4|%5|%6|%7|%8")
               .arg(d.version, d.label, d.name)
               .arg(d.recordTypeStart)
               .arg(d.recordTypeLen)
               .arg(d.positions, d.zeroFill, d.decimalChar);
    for (int i = 0; i < d.getRecordsCount(); ++i) {
        TCSProRecord *r = d.getRecord(i);
        out << QStringLiteral("record %1|%2|%3|%4|%5|%6")
                   .arg(r->name, r->label, r->recordTypeValue, r->required)
                   .arg(r->maxRecords)
                   .arg(r->recordLen);
    }
    for (int i = 0; i < d.getItemsCount(); ++i) {
        TCSProItem *it = d.getItem(i);
        out << QStringLiteral("item %1|%2|%3|%4|%5|%6|%7|%8|%9")
                   .arg(it->name, it->label)
                   .arg(it->start)
                   .arg(it->len)
                   .arg(it->isAlpha)
                   .arg(it->isSubItem)
                   .arg(it->decimal)
                   .arg(it->record ? it->record->name : QStringLiteral("-"))
                   .arg(entriesOf(it).join(QStringLiteral(",")));
    }
    return out;
}

// Tests that read decimal codes without a dialog remember 'No to All'.
void neverPrompt(TCSPro &d)
{
    d.setDecimalMode(2);
    d.setDecimalAnswer(QMessageBox::NoToAll);
}

struct Expected
{
    const char *name;
    int start;
    int len;
    int isAlpha;
    int isSubItem;
    int decimal;
    bool decimalChar;
    bool zeroFill;
    int index;
    const char *record;
};

} // namespace

// ------------------------------------------------------------- construction

TEST(CSPro, ConstructionCreatesNoDialogAndAnEmptyModel)
{
    TCSPro d;
    EXPECT_EQ(d.messageBox, nullptr);
    EXPECT_EQ(d.getItemsCount(), 0);
    EXPECT_EQ(d.getRecordsCount(), 0);
    EXPECT_EQ(d.recordTypeStart, 0);
    EXPECT_EQ(d.recordTypeLen, 0);
    EXPECT_EQ(d.decimalMode, 0);
    EXPECT_EQ(d.undefinedMode, 0);
    ASSERT_NE(d.commonRecord, nullptr);
    EXPECT_EQ(d.commonRecord->name, QStringLiteral("Common"));
    EXPECT_EQ(d.commonRecord->recordTypeValue, QStringLiteral("_COMMON_"));
    EXPECT_EQ(d.currentRecord, d.commonRecord);
    EXPECT_EQ(d.currentItem, nullptr);
    EXPECT_EQ(d.getItemsList(), d.items);
}

TEST(CSPro, UnreadableFileGivesEmptyDictionaryWithoutError)
{
    TCSPro d;
    EXPECT_FALSE(kxtest::catchKxError([&] { d.loadFromFile(QStringLiteral("/nonexistent/dir/x.dcf")); }));
    EXPECT_EQ(d.getItemsCount(), 0);
    EXPECT_EQ(d.getRecordsCount(), 0);
    EXPECT_EQ(d.recordTypeLen, 0);
}

TEST(CSPro, LoadFromCSDBChangesNothing)
{
    TCSPro d;
    d.loadFromCSDB(kxtest::samplePath(QStringLiteral("census.dcf")));
    EXPECT_EQ(d.getItemsCount(), 0);
    EXPECT_EQ(d.version, QString());
}

// ---------------------------------------------------------- section handling

TEST(CSPro, ItemTypeOfHeadersIsCaseInsensitive)
{
    TCSPro d;
    EXPECT_EQ(d.getItemType(QStringLiteral("[Dictionary]")), 1);
    EXPECT_EQ(d.getItemType(QStringLiteral("[record]")), 2);
    EXPECT_EQ(d.getItemType(QStringLiteral("[item]")), 3);
    EXPECT_EQ(d.getItemType(QStringLiteral("[VALUESET]")), 4);
    EXPECT_EQ(d.getItemType(QStringLiteral("[Level]")), 0);
    EXPECT_EQ(d.getItemType(QStringLiteral("[IdItems]")), 0);
    EXPECT_EQ(d.getItemType(QStringLiteral("[Relation]")), 0);
    EXPECT_EQ(d.getItemType(QStringLiteral("[Item")), 3); // no ']': the whole rest
    EXPECT_EQ(d.getItemType(QStringLiteral("[")), 0);
}

TEST(CSPro, LowerCaseItemHeaderIsReadAsItem)
{
    TCSPro d;
    QStringList lines = L({"[item]", "Name=AGE", "Len=3"});
    d.loadFromStr(&lines);
    ASSERT_EQ(d.getItemsCount(), 1);
    EXPECT_EQ(d.getItem(0)->name, QStringLiteral("AGE"));
    EXPECT_EQ(d.getItem(0)->len, 3);
}

TEST(CSPro, LevelIdItemsAndRelationSectionsAreSkippedButLaterItemsRead)
{
    TCSPro d;
    QStringList lines = L({"[Level]", "Name=HOUSEHOLD", "Label=Household", "[IdItems]", "", "[Item]", "Name=PROV",
                           "Start=2", "Len=2", "[Relation]", "Name=REL", "Start=9", "[Item]", "Name=DIST",
                           "Start=4"});
    d.loadFromStr(&lines);
    ASSERT_EQ(d.getItemsCount(), 2);
    EXPECT_EQ(d.getItem(0)->name, QStringLiteral("PROV"));
    EXPECT_EQ(d.getItem(0)->start, 2);
    EXPECT_EQ(d.getItem(1)->name, QStringLiteral("DIST"));
    EXPECT_EQ(d.getItem(1)->start, 4);
    EXPECT_EQ(d.name, QString());
}

TEST(CSPro, GetSectionKeepsTrimmedLinesAndStopsBeforeTheNextHeader)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "  Name=A  ", "", "   ", "Len=2", "[Item]", "Name=B"});
    int index = 0;
    QStringList *section = d.getSection(&lines, index);
    EXPECT_EQ(*section, L({"Name=A", "Len=2"}));
    EXPECT_EQ(index, 4);
    delete section;
    index = 5;
    section = d.getSection(&lines, index);
    EXPECT_EQ(*section, L({"Name=B"}));
    EXPECT_EQ(index, 6);
    delete section;
}

TEST(CSPro, GetSectionStopsOnlyAtAnUnindentedBracket)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=A", "  [Item]", "Name=B"});
    int index = 0;
    QStringList *section = d.getSection(&lines, index);
    EXPECT_EQ(*section, L({"Name=A", "[Item]", "Name=B"}));
    EXPECT_EQ(index, 3);
    delete section;
}

// ------------------------------------------------------------- processLine

TEST(CSPro, ProcessLineMatchesTheCommandAnywhereInTheLine)
{
    TCSPro d;
    EXPECT_EQ(d.processLine(L({"RecordTypeStart=5"}), QStringLiteral("Start"), QStringLiteral("d")),
              QStringLiteral("5"));
    EXPECT_EQ(d.processLineToInt(L({"Label=Age", "XStartY=7"}), QStringLiteral("Start"), 1), 7);
}

TEST(CSPro, ProcessLineIsCaseSensitive)
{
    TCSPro d;
    EXPECT_EQ(d.processLine(L({"name=AGE"}), QStringLiteral("Name"), QStringLiteral("d")), QStringLiteral("d"));
}

TEST(CSPro, ProcessLineReturnsTheValueUntrimmed)
{
    TCSPro d;
    EXPECT_EQ(d.processLine(L({"Name= AGE "}), QStringLiteral("Name"), QString()), QStringLiteral(" AGE "));
    EXPECT_EQ(d.processLine(L({"Name="}), QStringLiteral("Name"), QStringLiteral("d")), QString());
}

TEST(CSPro, ProcessLineDefaultsForEmptySectionAndMissingCommand)
{
    TCSPro d;
    EXPECT_EQ(d.processLine(QStringList(), QStringLiteral("Name"), QStringLiteral("d")), QStringLiteral("d"));
    EXPECT_EQ(d.processLine(L({"Len=2"}), QStringLiteral("Name"), QStringLiteral("d")), QStringLiteral("d"));
    EXPECT_EQ(d.processLineToInt(QStringList(), QStringLiteral("Len"), 42), 42);
}

TEST(CSPro, LineWithTwoEqualSignsGivesTheDefault)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Label=a=b", "Name=X"});
    d.loadFromStr(&lines);
    ASSERT_EQ(d.getItemsCount(), 1);
    EXPECT_EQ(d.getItem(0)->label, QString());
    EXPECT_EQ(d.processLine(L({"Label=a=b"}), QStringLiteral("Label"), QStringLiteral("d")), QStringLiteral("d"));
}

TEST(CSPro, OnlyTheFirstMatchingLineCountsEvenWhenItHasNoValue)
{
    TCSPro d;
    EXPECT_EQ(d.processLine(L({"Name=a=b", "Name=GOOD"}), QStringLiteral("Name"), QStringLiteral("d")),
              QStringLiteral("d"));
}

TEST(CSPro, LabelContainingLenShadowsTheLength)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Label=Length of stay", "Name=STAY", "Start=5", "Len=3"});
    d.loadFromStr(&lines);
    ASSERT_EQ(d.getItemsCount(), 1);
    EXPECT_EQ(d.getItem(0)->label, QStringLiteral("Length of stay"));
    EXPECT_EQ(d.getItem(0)->len, 0);
    EXPECT_EQ(d.getItem(0)->start, 5);
}

TEST(CSPro, NonNumericIntCommandGivesTheDefault)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=X", "Start=abc", "Len=x", "Occurrences=two", "Decimal=1.5"});
    d.loadFromStr(&lines);
    ASSERT_EQ(d.getItemsCount(), 1);
    EXPECT_EQ(d.getItem(0)->start, 1);
    EXPECT_EQ(d.getItem(0)->len, 0);
    EXPECT_EQ(d.getItem(0)->occurrences, 1);
    EXPECT_EQ(d.getItem(0)->decimal, 0);
}

// -------------------------------------------------------------- [Dictionary]

TEST(CSPro, DictionaryWithoutRecordTypeKeysGetsStartAndLenOne)
{
    TCSPro d;
    QStringList lines = L({"[Dictionary]", "Version=CSPro 7.7", "Label=Survey", "Name=SURVEY_DICT"});
    d.loadFromStr(&lines);
    EXPECT_EQ(d.recordTypeLen, 1);
    EXPECT_EQ(d.recordTypeStart, 1);
    EXPECT_EQ(d.version, QStringLiteral("CSPro 7.7"));
    EXPECT_EQ(d.label, QStringLiteral("Survey"));
    EXPECT_EQ(d.name, QStringLiteral("SURVEY_DICT"));
}

TEST(CSPro, DictionaryKeepsPositionsZeroFillAndDecimalCharAsRawText)
{
    TCSPro d;
    QStringList lines = L({"[Dictionary]", "RecordTypeStart=3", "RecordTypeLen=2", "Positions=Relative",
                           "ZeroFill=yes", "DecimalChar=No"});
    d.loadFromStr(&lines);
    EXPECT_EQ(d.recordTypeStart, 3);
    EXPECT_EQ(d.recordTypeLen, 2);
    EXPECT_EQ(d.positions, QStringLiteral("Relative"));
    EXPECT_EQ(d.zeroFill, QStringLiteral("yes"));
    EXPECT_EQ(d.decimalChar, QStringLiteral("No"));
}

// ------------------------------------------------------------------ [Record]

TEST(CSPro, RecordTypeValueLosesItsQuotesAndIsFoundByValue)
{
    TCSPro d;
    QStringList lines = L({"[Record]", "Label=Housing", "Name=HOUSING", "RecordTypeValue='H'", "Required=Yes",
                           "MaxRecords=1", "RecordLen=80"});
    d.loadFromStr(&lines);
    ASSERT_EQ(d.getRecordsCount(), 1);
    TCSProRecord *r = d.getRecord(0);
    EXPECT_EQ(r->recordTypeValue, QStringLiteral("H"));
    EXPECT_EQ(d.findRecordByValue(QStringLiteral("H")), r);
    EXPECT_EQ(d.findRecordByValue(QStringLiteral("'H'")), nullptr);
    EXPECT_EQ(d.findRecordByValue(QStringLiteral("X")), nullptr);
    EXPECT_EQ(r->required, QStringLiteral("Yes"));
    EXPECT_EQ(r->maxRecords, 1);
    EXPECT_EQ(r->recordLen, 80);
    EXPECT_EQ(d.currentRecord, r);
    EXPECT_EQ(d.recordsCount, 1);
}

TEST(CSPro, RecordDefaultsAndUnquotedValueLosesItsEnds)
{
    TCSPro d;
    QStringList lines = L({"[Record]", "Name=A", "RecordTypeValue=ABC", "[Record]", "Name=B", "RecordTypeValue=H",
                           "[Record]", "Name=C"});
    d.loadFromStr(&lines);
    ASSERT_EQ(d.getRecordsCount(), 3);
    EXPECT_EQ(d.getRecord(0)->recordTypeValue, QStringLiteral("B"));
    EXPECT_EQ(d.getRecord(0)->maxRecords, 100);
    EXPECT_EQ(d.getRecord(0)->recordLen, 0);
    EXPECT_EQ(d.getRecord(1)->recordTypeValue, QString());
    EXPECT_EQ(d.getRecord(2)->recordTypeValue, QString());
}

TEST(CSPro, LaterRecordWithSameValueReplacesEarlierInMapOnly)
{
    TCSPro d;
    QStringList lines = L({"[Record]", "Name=FIRST", "RecordTypeValue='P'", "[Record]", "Name=SECOND",
                           "RecordTypeValue='P'"});
    d.loadFromStr(&lines);
    ASSERT_EQ(d.getRecordsCount(), 2);
    EXPECT_EQ(d.findRecordByValue(QStringLiteral("P"))->name, QStringLiteral("SECOND"));
    EXPECT_EQ(d.getRecord(0)->name, QStringLiteral("FIRST"));
}

TEST(CSPro, ItemBeforeAnyRecordBelongsToCommonRecord)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=PROVINCE", "[Record]", "Name=PERSON", "RecordTypeValue='P'", "[Item]",
                           "Name=AGE"});
    d.loadFromStr(&lines);
    ASSERT_EQ(d.getItemsCount(), 2);
    TCSProRecord *common = d.getItem(0)->record;
    ASSERT_NE(common, nullptr);
    EXPECT_EQ(common->name, QStringLiteral("Common"));
    EXPECT_EQ(common->recordTypeValue, QStringLiteral("_COMMON_"));
    EXPECT_EQ(d.getItem(1)->record->name, QStringLiteral("PERSON"));
    EXPECT_EQ(d.getRecordsCount(), 1); // the common record is not listed
}

// -------------------------------------------------------------------- [Item]

TEST(CSPro, ItemFlagsFromDataTypeItemTypeDecimalCharAndZeroFill)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=A", "DataType=alpha", "ItemType=subitem", "Decimal=2",
                           "DecimalChar=yes", "ZeroFill=Yes", "[Item]", "Name=B", "DataType=Numeric",
                           "DecimalChar=No"});
    d.loadFromStr(&lines);
    ASSERT_EQ(d.getItemsCount(), 2);
    TCSProItem *a = d.getItem(0);
    EXPECT_EQ(a->isAlpha, 1);
    EXPECT_EQ(a->isSubItem, 1);
    EXPECT_EQ(a->decimal, 2);
    EXPECT_TRUE(a->decimalChar);
    EXPECT_TRUE(a->zeroFill);
    TCSProItem *b = d.getItem(1);
    EXPECT_EQ(b->isAlpha, 0);
    EXPECT_FALSE(b->decimalChar);
    EXPECT_FALSE(b->zeroFill);
    EXPECT_TRUE(d.lastItemNumeric);
    EXPECT_EQ(d.currentItem, b);
}

TEST(CSPro, OccurrencesExpandIntoCopiesNamedWithCharacterCodes)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=FIRST", "[Item]", "Label=Child age", "Name=X", "Start=10", "Len=2",
                           "Occurrences=3", "Decimal=1", "ZeroFill=Yes", "DecimalChar=Yes", "ItemType=SubItem",
                           "DataType=Alpha"});
    d.loadFromStr(&lines);
    ASSERT_EQ(d.getItemsCount(), 4);
    for (int k = 1; k <= 3; ++k) {
        TCSProItem *it = d.getItem(k);
        EXPECT_EQ(it->name, occ("X", k));
        EXPECT_EQ(it->name.size(), 3);
        EXPECT_EQ(it->name.at(2).unicode(), k);
        EXPECT_EQ(it->start, 10 + (k - 1) * 2);
        EXPECT_EQ(it->len, 2);
        EXPECT_EQ(it->occurrences, 1);
        EXPECT_EQ(it->label, QStringLiteral("Child age"));
        EXPECT_EQ(it->decimal, 1);
        EXPECT_TRUE(it->decimalChar);
        EXPECT_EQ(it->isAlpha, 1);
        EXPECT_EQ(it->isSubItem, 1);
        EXPECT_FALSE(it->zeroFill); // not copied
        EXPECT_EQ(it->index, 1);    // the item list held one item before
        EXPECT_EQ(it->record, d.commonRecord);
    }
    EXPECT_EQ(d.currentItem, d.getItem(3));
}

TEST(CSPro, ZeroOrNegativeOccurrencesStoreNothing)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=A", "[Item]", "Name=Z", "Occurrences=0", "[Item]", "Name=N",
                           "Occurrences=-2"});
    d.loadFromStr(&lines);
    ASSERT_EQ(d.getItemsCount(), 1);
    EXPECT_EQ(d.getItem(0)->name, QStringLiteral("A"));
    EXPECT_EQ(d.currentItem, d.getItem(0));
}

TEST(CSPro, HugeOccurrenceCountFailsWithError242AtTheSectionEnd)
{
    TCSPro d;
    // Line 6 is the last line of the item section, so the error names line 6.
    QStringList lines = L({"[Item]", "Name=A", "[Item]", "Name=BIG", "Len=1", "Occurrences=2000000000",
                           "Start=1"});
    int number = 0;
    QString text;
    EXPECT_TRUE(kxtest::catchKxError([&] { d.loadFromStr(&lines); }, &number, nullptr, &text));
    EXPECT_EQ(number, 242);
    EXPECT_EQ(text, QString(QChar(6)));
    ASSERT_EQ(d.getItemsCount(), 1); // what was read before stays
    EXPECT_EQ(d.getItem(0)->name, QStringLiteral("A"));
}

TEST(CSPro, OccurrenceStartsBeyondIntFailWithError242)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=W", "Start=2147483000", "Len=1000", "Occurrences=5"});
    int number = 0;
    EXPECT_TRUE(kxtest::catchKxError([&] { d.loadFromStr(&lines); }, &number));
    EXPECT_EQ(number, 242);
    EXPECT_EQ(d.getItemsCount(), 0);
}

TEST(CSPro, MaximumOccurrenceCountIsExpanded)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=M", "Len=1", "Occurrences=9999"});
    d.loadFromStr(&lines);
    ASSERT_EQ(d.getItemsCount(), 9999);
    EXPECT_EQ(d.getItem(9998)->start, 9999);
}

// ---------------------------------------------------------------- [ValueSet]

TEST(CSPro, ValueLinesMakeEntriesSortedNumerically)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=SEX", "Len=1", "[ValueSet]", "Label=Sex", "Name=SEX_VS1",
                           "Value=2;Female", "Value=1;Male"});
    d.loadFromStr(&lines);
    TCSProItem *sex = d.getItem(0);
    ASSERT_TRUE(sex->getHasValueSet());
    EXPECT_EQ(entriesOf(sex), L({"1=Male/0", "2=Female/0"}));
    EXPECT_EQ(sex->getValueSet(0)->label, QStringLiteral("Sex"));
    EXPECT_EQ(sex->getValueSet(0)->name, QStringLiteral("SEX_VS1"));
    EXPECT_EQ(sex->getValueSet(0)->isNumeric, 1);
}

TEST(CSPro, RangeIsStoredAsItsTwoBoundCodes)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=AGE", "Len=2", "[ValueSet]", "Name=AGE_VS1", "Value=1:5;Young",
                           "Value=6:10"});
    d.loadFromStr(&lines);
    EXPECT_EQ(entriesOf(d.getItem(0)), L({"1=Young/0", "5=Young/0", "6=/0", "10=/0"}));
}

TEST(CSPro, LowBoundWithSeveralCodesGivesOneEntryPerCode)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=C", "DataType=Alpha", "[ValueSet]", "Value=A B:E;Letters"});
    d.loadFromStr(&lines);
    EXPECT_EQ(entriesOf(d.getItem(0)), L({"A=Letters/0", "B=Letters/0", "E=Letters/0"}));
}

TEST(CSPro, ColonAfterTheSemicolonIsPartOfTheLabel)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=T", "Len=1", "[ValueSet]", "Value=1;Time: morning"});
    d.loadFromStr(&lines);
    EXPECT_EQ(entriesOf(d.getItem(0)), L({"1=Time: morning/0"}));
}

TEST(CSPro, OpeningApostropheIsRemovedAndClosingOneStays)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=CODE", "DataType=Alpha", "[ValueSet]", "Value='A';Alpha",
                           "Value=B;Bravo"});
    d.loadFromStr(&lines);
    EXPECT_EQ(entriesOf(d.getItem(0)), L({"A'=Alpha/0", "B=Bravo/0"}));
}

TEST(CSPro, UsualSpecialValueFormLeavesTheEntryOrdinary)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=AGE", "Len=3", "[ValueSet]", "Name=AGE_VS1", "Value=0:98",
                           "Value=999;Not reported", "Name=MISSING,Special", "Value=998;Not applicable",
                           "Name=NOTAPPL,Special"});
    d.loadFromStr(&lines);
    TCSProItem *age = d.getItem(0);
    EXPECT_EQ(entriesOf(age), L({"0=/0", "98=/0", "998=Not applicable/0", "999=Not reported/0"}));
    EXPECT_EQ(age->missingCode, QString());
    EXPECT_EQ(age->notApplCode, QString());
}

TEST(CSPro, KeywordOneCharacterLongerMarksMissingAndNotAppl)
{
    // The keyword is compared without its last character.
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=AGE", "Len=3", "[ValueSet]", "Name=AGE_VS1", "Value=1;One",
                           "Value=999;Not reported", "Name=MISSING ,Special", "Value=998;Not applicable",
                           "Name=notapplx,whatever", "Value=2;Two", "Name=NOCOMMA", "Value=3;Three",
                           "Name=,MISSING"});
    d.loadFromStr(&lines);
    TCSProItem *age = d.getItem(0);
    EXPECT_EQ(age->missingCode, QStringLiteral("999"));
    EXPECT_EQ(age->notApplCode, QStringLiteral("998"));
    // Special entries are not kept in the value set.
    EXPECT_EQ(entriesOf(age), L({"1=One/0", "2=Two/0", "3=Three/0"}));
}

TEST(CSPro, NameLineOfTheValueSetItselfDoesNotTouchEntries)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=X", "Len=1", "[ValueSet]", "Name=MISSING ,Special", "Value=1;One"});
    d.loadFromStr(&lines);
    EXPECT_EQ(entriesOf(d.getItem(0)), L({"1=One/0"}));
    EXPECT_EQ(d.getItem(0)->missingCode, QString());
}

TEST(CSPro, ProcessOtherRangesLosesTheCharacterBeforeEachColon)
{
    TCSPro d;
    TCSProValueSet set;
    set.isNumeric = 0;
    TValueSetItem entry;
    entry.code = QStringLiteral("1:5 7:9");
    entry.name = QStringLiteral("Ranges");
    kxtest::MessageCollector log;
    d.processOtherRanges(&set, &entry);
    EXPECT_TRUE(log.contains(QStringLiteral("PROCESAR OTROS RANGOS")));
    ASSERT_EQ(set.getCount(), 2); // ' 5  9'
    EXPECT_EQ(set.getValueSetItem(0)->code, QStringLiteral("5"));
    EXPECT_EQ(set.getValueSetItem(1)->code, QStringLiteral("9"));
    EXPECT_EQ(set.getValueSetItem(0)->name, QStringLiteral("Ranges"));
    EXPECT_EQ(set.getValueSetItem(1)->type, 0);
    EXPECT_FALSE(set.getValueSetItem(1)->special);
    EXPECT_EQ(entry.code, QStringLiteral("1:5 7:9")); // the entry itself is unchanged
    qDeleteAll(*set.items);
}

TEST(CSPro, ProcessOtherRangesAppendsTheLastPieceOnce)
{
    TCSPro d;
    TCSProValueSet set;
    TValueSetItem entry;
    entry.code = QStringLiteral("12 34 56");
    d.processOtherRanges(&set, &entry);
    ASSERT_EQ(set.getCount(), 3);
    EXPECT_EQ(set.getValueSetItem(2)->code, QStringLiteral("56"));
    qDeleteAll(*set.items);
    set.items->clear();
    entry.code = QStringLiteral(":9");
    d.processOtherRanges(&set, &entry);
    ASSERT_EQ(set.getCount(), 1);
    EXPECT_EQ(set.getValueSetItem(0)->code, QStringLiteral("9"));
    qDeleteAll(*set.items);
}

TEST(CSPro, SeveralRangesOnOneLineOfAnAlphaItemAreKept)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=W", "DataType=Alpha", "[ValueSet]", "Value=B:D F:G;Well"});
    d.loadFromStr(&lines);
    EXPECT_EQ(codesOf(d.getItem(0)), L({"B", "D", "D F:G", "G"}));
}

TEST(CSPro, SeveralRangesOnOneLineOfANumericItemDropTheValueSet)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=N", "Len=1", "[ValueSet]", "Value=1:2 4:5;Some"});
    d.loadFromStr(&lines);
    EXPECT_FALSE(d.getItem(0)->getHasValueSet());
}

TEST(CSPro, NonIntegerCodeInNumericSetDropsTheValueSetSilently)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=N", "Len=1", "[ValueSet]", "Value=1;One", "Value=A;Letter"});
    d.loadFromStr(&lines);
    EXPECT_FALSE(d.getItem(0)->getHasValueSet());
    EXPECT_EQ(d.messageBox, nullptr); // nothing was asked
}

TEST(CSPro, AlphaValueSetIsNeverCheckedForDecimalsAndSortsAsText)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=A", "DataType=Alpha", "[ValueSet]", "Value=9;Nine", "Value=2.5;Half",
                           "Value=10;Ten"});
    d.loadFromStr(&lines);
    EXPECT_EQ(d.messageBox, nullptr);
    EXPECT_EQ(d.getItem(0)->getValueSet(0)->isNumeric, 0);
    EXPECT_EQ(codesOf(d.getItem(0)), L({"10", "2.5", "9"}));
}

TEST(CSPro, SecondValueSetOfTheSameItemIsIgnored)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=X", "Len=1", "[ValueSet]", "Name=FIRST", "Value=1;One", "[ValueSet]",
                           "Name=SECOND", "Value=2;Two"});
    d.loadFromStr(&lines);
    EXPECT_EQ(d.getItem(0)->getCount(), 1);
    EXPECT_EQ(d.getItem(0)->getValueSet(0)->name, QStringLiteral("FIRST"));
}

TEST(CSPro, OccurrenceCopiesShareOneValueSet)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=A", "[Item]", "Name=F", "Start=5", "Len=1", "Occurrences=3",
                           "[ValueSet]", "Value=1;Yes", "Value=2;No"});
    d.loadFromStr(&lines);
    ASSERT_EQ(d.getItemsCount(), 4);
    EXPECT_FALSE(d.getItem(0)->getHasValueSet());
    TCSProValueSet *shared = d.getItem(3)->getValueSet(0);
    EXPECT_EQ(d.getItem(1)->getValueSet(0), shared);
    EXPECT_EQ(d.getItem(2)->getValueSet(0), shared);
}

TEST(CSPro, OccurrencesOfTheFirstItemGiveTheValueSetToTheLastCopyOnly)
{
    // The copies' index is 0, which is also the mark of an ordinary item.
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=F", "Len=1", "Occurrences=2", "[ValueSet]", "Value=1;Yes"});
    d.loadFromStr(&lines);
    ASSERT_EQ(d.getItemsCount(), 2);
    EXPECT_FALSE(d.getItem(0)->getHasValueSet());
    EXPECT_TRUE(d.getItem(1)->getHasValueSet());
}

TEST(CSPro, ValueSetBeforeAnyItemIsDropped)
{
    TCSPro d;
    QStringList lines = L({"[ValueSet]", "Value=1;One", "[Item]", "Name=X"});
    d.loadFromStr(&lines);
    ASSERT_EQ(d.getItemsCount(), 1);
    EXPECT_FALSE(d.getItem(0)->getHasValueSet());
}

TEST(CSPro, SecondLoadAppendsToTheFirst)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=X"});
    d.loadFromStr(&lines);
    d.loadFromStr(&lines);
    EXPECT_EQ(d.getItemsCount(), 2);
}

// --------------------------------------------------------------- the prompt

namespace {
const QStringList kDecimalDictionary = L({"[Item]", "Name=AREA", "Len=4", "Decimal=1", "[ValueSet]",
                                          "Value=0.5;Half", "Value=2;Two", "[Item]", "Name=WEIGHT", "Len=3",
                                          "[ValueSet]", "Value=1.5;One and a half", "Value=3;Three"});
}

TEST(CSPro, DecimalPromptShowsWarningDialogAndYesConvertsCodesToZero)
{
    TCSPro d;
    QStringList lines = kDecimalDictionary;
    kxtest::ModalPresser presser({QMessageBox::Yes, QMessageBox::Yes});
    d.loadFromStr(&lines);
    ASSERT_EQ(presser.seen().size(), 2);
    const auto seen = presser.seen().at(0);
    EXPECT_EQ(seen.text, QStringLiteral("<b>A decimal number was found</b>"));
    EXPECT_EQ(seen.informativeText, QStringLiteral("Would you like to convert it to an integer number?"));
    EXPECT_EQ(seen.title, QStringLiteral("Caution"));
    EXPECT_EQ(seen.icon, QMessageBox::Warning);
    EXPECT_EQ(seen.buttons,
              QMessageBox::StandardButtons(QMessageBox::Yes | QMessageBox::YesToAll | QMessageBox::No
                                           | QMessageBox::NoToAll));
    EXPECT_EQ(seen.defaultButton, QMessageBox::No);
    EXPECT_TRUE(seen.richText);
    EXPECT_EQ(seen.minimumSize, QSize(300, 200));
    EXPECT_EQ(d.decimalAnswer, int(QMessageBox::Yes));
    EXPECT_EQ(d.decimalMode, 0);
    EXPECT_EQ(entriesOf(d.getItem(0)), L({"0=Half/0", "2=Two/0"}));
    EXPECT_EQ(entriesOf(d.getItem(1)), L({"0=One and a half/0", "3=Three/0"}));
}

TEST(CSPro, YesToAllConvertsLaterDecimalValueSetsWithoutAsking)
{
    TCSPro d;
    QStringList lines = kDecimalDictionary;
    kxtest::ModalPresser presser({QMessageBox::YesToAll, QMessageBox::No});
    d.loadFromStr(&lines);
    EXPECT_EQ(presser.seen().size(), 1);
    EXPECT_EQ(d.decimalMode, 1);
    EXPECT_EQ(codesOf(d.getItem(0)), L({"0", "2"}));
    EXPECT_EQ(codesOf(d.getItem(1)), L({"0", "3"}));
}

TEST(CSPro, NoDropsTheValueSetAndAsksAgainNextTime)
{
    TCSPro d;
    QStringList lines = kDecimalDictionary;
    kxtest::ModalPresser presser({QMessageBox::No, QMessageBox::Yes});
    d.loadFromStr(&lines);
    EXPECT_EQ(presser.seen().size(), 2);
    EXPECT_EQ(d.decimalMode, 0);
    EXPECT_FALSE(d.getItem(0)->getHasValueSet());
    EXPECT_EQ(codesOf(d.getItem(1)), L({"0", "3"}));
}

TEST(CSPro, NoToAllDropsThisAndLaterDecimalValueSetsWithoutAsking)
{
    TCSPro d;
    QStringList lines = kDecimalDictionary;
    kxtest::ModalPresser presser({QMessageBox::NoToAll, QMessageBox::Yes});
    d.loadFromStr(&lines);
    EXPECT_EQ(presser.seen().size(), 1);
    EXPECT_EQ(d.decimalMode, 2);
    EXPECT_FALSE(d.getItem(0)->getHasValueSet());
    EXPECT_FALSE(d.getItem(1)->getHasValueSet());
}

TEST(CSPro, PresetConvertAllChoiceNeverShowsTheDialog)
{
    TCSPro d;
    d.setDecimalMode(1);
    d.setDecimalAnswer(QMessageBox::YesToAll);
    QStringList lines = kDecimalDictionary;
    d.loadFromStr(&lines);
    EXPECT_EQ(d.messageBox, nullptr);
    EXPECT_EQ(codesOf(d.getItem(0)), L({"0", "2"}));
    EXPECT_EQ(codesOf(d.getItem(1)), L({"0", "3"}));
}

TEST(CSPro, PresetKeepNoneChoiceNeverShowsTheDialog)
{
    TCSPro d;
    neverPrompt(d);
    QStringList lines = kDecimalDictionary;
    d.loadFromStr(&lines);
    EXPECT_EQ(d.messageBox, nullptr);
    EXPECT_FALSE(d.getItem(0)->getHasValueSet());
    EXPECT_FALSE(d.getItem(1)->getHasValueSet());
}

TEST(CSPro, ModeThreeAsksLikeModeZero)
{
    TCSPro d;
    d.setDecimalMode(3);
    kxtest::ModalPresser presser({QMessageBox::Yes});
    d.showMessageBoxDecimal(QStringLiteral("t"), QStringLiteral("i"), QStringLiteral("c"), QMessageBox::Warning);
    EXPECT_EQ(presser.seen().size(), 1);
    EXPECT_EQ(d.getDecimalAnswer(), int(QMessageBox::Yes));
}

TEST(CSPro, UndefinedPromptFollowsUndefinedMode)
{
    TCSPro d;
    {
        kxtest::ModalPresser presser({QMessageBox::NoToAll});
        d.showMessageBoxUndefined(QStringLiteral("Undefined"), QStringLiteral("More"), QStringLiteral("Title"),
                                  QMessageBox::Question);
        ASSERT_EQ(presser.seen().size(), 1);
        EXPECT_EQ(presser.seen().at(0).icon, QMessageBox::Question);
        EXPECT_EQ(presser.seen().at(0).title, QStringLiteral("Title"));
    }
    EXPECT_EQ(d.getUndefinedAnswer(), int(QMessageBox::NoToAll));
    d.setUndefinedMode(2);
    d.setUndefinedAnswer(QMessageBox::No);
    d.showMessageBoxUndefined(QStringLiteral("Undefined"), QString(), QString(), QMessageBox::Question);
    EXPECT_EQ(d.getUndefinedAnswer(), int(QMessageBox::No)); // not asked
}

TEST(CSPro, ShowMessageBoxAlwaysAsksAndReturnsTheButton)
{
    TCSPro d;
    d.setDecimalMode(1);
    kxtest::ModalPresser presser({QMessageBox::YesToAll});
    EXPECT_EQ(d.showMessageBox(QStringLiteral("Text"), QStringLiteral("Info"), QStringLiteral("Title"),
                               QMessageBox::Information),
              int(QMessageBox::YesToAll));
    ASSERT_EQ(presser.seen().size(), 1);
    EXPECT_EQ(presser.seen().at(0).text, QStringLiteral("Text"));
    EXPECT_EQ(presser.seen().at(0).defaultButton, QMessageBox::No);
}

// ------------------------------------------------------------ census, end to end

namespace {

// samples/census.dcf: the census story the inspector shows, read by the rules.
const QString CensusPath = kxtest::samplePath(QStringLiteral("census.dcf"));

void expectCensusDictionaryAndRecords(TCSPro &d)
{
    EXPECT_EQ(d.version, QStringLiteral("CSPro 7.7"));
    EXPECT_EQ(d.label, QStringLiteral("2023 Population and Housing Census"));
    EXPECT_EQ(d.name, QStringLiteral("CENSUS2023_DICT"));
    EXPECT_EQ(d.recordTypeStart, 1);
    EXPECT_EQ(d.recordTypeLen, 1);
    EXPECT_EQ(d.positions, QStringLiteral("Relative"));
    EXPECT_EQ(d.zeroFill, QStringLiteral("Yes"));
    EXPECT_EQ(d.decimalChar, QStringLiteral("No"));

    // The type values without their quotes; Required as written.
    kxtest::expectRecords(d, {{"HOUSING", "Housing record", "H", "Yes", 1, 68},
                              {"PERSON", "Person record", "P", "No", 30, 41},
                              {"DEATH", "Deaths in the last 12 months", "D", "No", 10, 19}});
}

void expectCensusItems(TCSPro &d)
{
    QList<QByteArray> assets;
    for (int k = 1; k <= 6; ++k)
        assets << occ("ASSET", k).toUtf8();
    // The five identification items belong to the common record; ASSET's six copies follow each
    // other from column 19, each with the index 9 (the items before them); zeroFill is not copied.
    const Expected expected[] = {
        {"PROVINCE", 2, 2, 0, 0, 0, false, true, 0, "Common"},
        {"DISTRICT", 4, 2, 0, 0, 0, false, true, 0, "Common"},
        {"URBRUR", 6, 1, 0, 0, 0, false, false, 0, "Common"},
        {"EA", 7, 3, 0, 0, 0, false, true, 0, "Common"},
        {"HHNUM", 10, 3, 0, 0, 0, false, true, 0, "Common"},
        {"DWELLING", 13, 1, 0, 0, 0, false, false, 0, "HOUSING"},
        {"ROOMS", 14, 2, 0, 0, 0, false, true, 0, "HOUSING"},
        {"WALLS", 16, 1, 1, 0, 0, false, false, 0, "HOUSING"},
        {"WATER", 17, 2, 0, 0, 0, false, false, 0, "HOUSING"},
        {assets[0].constData(), 19, 1, 0, 0, 0, false, false, 9, "HOUSING"},
        {assets[1].constData(), 20, 1, 0, 0, 0, false, false, 9, "HOUSING"},
        {assets[2].constData(), 21, 1, 0, 0, 0, false, false, 9, "HOUSING"},
        {assets[3].constData(), 22, 1, 0, 0, 0, false, false, 9, "HOUSING"},
        {assets[4].constData(), 23, 1, 0, 0, 0, false, false, 9, "HOUSING"},
        {assets[5].constData(), 24, 1, 0, 0, 0, false, false, 9, "HOUSING"},
        {"LANDAREA", 25, 5, 0, 0, 1, true, false, 0, "HOUSING"},
        {"RENT", 30, 7, 0, 0, 2, false, false, 0, "HOUSING"},
        {"HHSIZE", 37, 2, 0, 0, 0, false, true, 0, "HOUSING"},
        {"ADDRESS", 39, 30, 1, 0, 0, false, false, 0, "HOUSING"},
        {"PLINE", 13, 2, 0, 0, 0, false, true, 0, "PERSON"},
        {"RELATION", 15, 1, 0, 0, 0, false, false, 0, "PERSON"},
        {"SEX", 16, 1, 0, 0, 0, false, false, 0, "PERSON"},
        {"AGE", 17, 3, 0, 0, 0, false, false, 0, "PERSON"},
        {"BIRTHDATE", 20, 6, 0, 0, 0, false, false, 0, "PERSON"},
        {"BIRTHYEAR", 20, 4, 0, 1, 0, false, false, 0, "PERSON"},
        {"BIRTHMONTH", 24, 2, 0, 1, 0, false, false, 0, "PERSON"},
        {"MARITAL", 26, 1, 0, 0, 0, false, false, 0, "PERSON"},
        {"SCHOOL", 27, 1, 0, 0, 0, false, false, 0, "PERSON"},
        {"OCCUP", 28, 4, 1, 0, 0, false, false, 0, "PERSON"},
        {"INCOME", 32, 8, 0, 0, 2, false, false, 0, "PERSON"},
        {"CHILDREN", 40, 2, 0, 0, 0, false, false, 0, "PERSON"},
        {"DLINE", 13, 2, 0, 0, 0, false, true, 0, "DEATH"},
        {"DSEX", 15, 1, 0, 0, 0, false, false, 0, "DEATH"},
        {"DAGE", 16, 3, 0, 0, 0, false, false, 0, "DEATH"},
        {"DCAUSE", 19, 1, 0, 0, 0, false, false, 0, "DEATH"},
    };
    ASSERT_EQ(d.getItemsCount(), int(std::size(expected)));
    for (int i = 0; i < d.getItemsCount(); ++i) {
        SCOPED_TRACE(i);
        TCSProItem *it = d.getItem(i);
        const Expected &e = expected[i];
        EXPECT_EQ(it->name, QString::fromUtf8(e.name));
        EXPECT_EQ(it->start, e.start);
        EXPECT_EQ(it->len, e.len);
        EXPECT_EQ(it->isAlpha, e.isAlpha);
        EXPECT_EQ(it->isSubItem, e.isSubItem);
        EXPECT_EQ(it->decimal, e.decimal);
        EXPECT_EQ(it->decimalChar, e.decimalChar);
        EXPECT_EQ(it->zeroFill, e.zeroFill);
        EXPECT_EQ(it->index, e.index);
        EXPECT_EQ(it->occurrences, 1);
        ASSERT_NE(it->record, nullptr);
        EXPECT_EQ(it->record->name, QString::fromUtf8(e.record));
        // "Name=MISSING,Special" and "Name=NOTAPPL,Special" match neither word.
        EXPECT_EQ(it->missingCode, QString());
        EXPECT_EQ(it->notApplCode, QString());
    }
    EXPECT_EQ(d.getItem(0)->label, QStringLiteral("Province"));
    EXPECT_EQ(d.getItem(9)->label, QStringLiteral("Household owns the item"));
    EXPECT_EQ(d.getItem(28)->label, QStringLiteral("Occupation (ISCO-08 unit group)"));
}

// Entries sorted by code (numerically, as text for the alpha items WALLS and OCCUP); a range
// "low:high" is kept as its two bounds; the special-value lines leave ordinary entries.
void expectCensusValueSets(TCSPro &d)
{
    const QStringList reported = {"9=Not reported/0"};
    const QMap<int, QStringList> entries = {
        {0, {"1=North/0", "2=South/0", "3=East/0", "4=West/0", "5=Capital district/0"}},
        {2, {"1=Urban/0", "2=Rural/0"}},
        {5, QStringList{"1=Detached house/0", "2=Semi-detached house/0", "3=Apartment or flat/0",
                        "4=Traditional dwelling/0", "5=Improvised housing unit/0"} + reported},
        {6, {"1=Rooms/0", "20=Rooms/0", "99=Not reported/0"}},
        {7, {"A'=Brick or concrete blocks/0", "B'=Wood or timber/0", "C'=Mud or earth/0", "X'=Other material/0"}},
        {8, {"11=Piped into dwelling/0", "12=Piped into yard or plot/0", "21=Public tap or standpipe/0",
             "31=Protected well/0", "32=Unprotected well/0", "41=River, lake or pond/0", "96=Other source/0"}},
        {15, {"0=Under one hectare/0", "1=One hectare or more/0", "999=One hectare or more/0"}},
        {19, {"1=Line/0", "30=Line/0"}},
        {20, QStringList{"1=Head/0", "2=Spouse or partner/0", "3=Son or daughter/0", "4=Parent/0",
                         "5=Other relative/0", "6=Non-relative/0"} + reported},
        {21, {"1=Male/0", "2=Female/0"}},
        {22, {"0=Years/0", "97=Years/0", "98=98 years or more/0", "999=Not reported/0"}},
        {25, {"1=Month/0", "12=Month/0", "99=Not reported/0"}},
        {26, QStringList{"1=Never married/0", "2=Married/0", "3=Consensual union/0", "4=Separated or divorced/0",
                         "5=Widowed/0"} + reported},
        {27, QStringList{"1=Attending/0", "2=Attended in the past/0", "3=Never attended/0", "8=Not applicable/0"}
                 + reported},
        {28, {"1120'=Managing directors and chief executives/0", "2341'=Primary school teachers/0",
              "6111'=Field crop and vegetable growers/0", "7115'=Carpenters and joiners/0", "9999'=Not stated/0"}},
        {30, {"0=Children/0", "30=Children/0", "98=Not applicable/0", "99=Not reported/0"}},
        {32, {"1=Male/0", "2=Female/0"}},
        {33, {"0=Years/0", "97=Years/0", "98=98 years or more/0", "999=Not reported/0"}},
        {34, {"1=Illness/0", "2=Accident/0", "3=Violence/0", "4=Pregnancy or childbirth/0", "9=Not known/0"}},
    };
    for (int i = 0; i < d.getItemsCount(); ++i) {
        if (i >= 9 && i <= 14) // ASSET: one value set for all six copies
            continue;
        EXPECT_EQ(entriesOf(d.getItem(i)), entries.value(i)) << i;
    }
    for (int i = 9; i <= 14; ++i) {
        ASSERT_TRUE(d.getItem(i)->getHasValueSet()) << i;
        EXPECT_EQ(d.getItem(i)->getValueSet(0), d.getItem(9)->getValueSet(0)) << i;
    }
    EXPECT_EQ(entriesOf(d.getItem(9)), L({"1=Yes/0", "2=No/0"}));
    EXPECT_EQ(d.getItem(9)->getValueSet(0)->name, QStringLiteral("ASSET_VS1"));
    EXPECT_EQ(d.getItem(9)->getValueSet(0)->label, QStringLiteral("Yes or no"));
    EXPECT_EQ(d.getItem(32)->getValueSet(0)->name, QStringLiteral("DSEX_VS1"));
    EXPECT_EQ(d.getItem(32)->getValueSet(0)->label, QStringLiteral("Sex"));
    EXPECT_EQ(d.getItem(7)->getValueSet(0)->isNumeric, 0);
    EXPECT_EQ(d.getItem(8)->getValueSet(0)->isNumeric, 1);
}

} // namespace

TEST(CSPro, CensusDictionaryReadEndToEnd)
{
    TCSPro d;
    kxtest::ModalPresser presser({QMessageBox::Yes});
    d.loadFromFile(CensusPath);
    EXPECT_EQ(presser.seen().size(), 1); // only the land-area value set holds a decimal code
    expectCensusDictionaryAndRecords(d);
    expectCensusItems(d);
    expectCensusValueSets(d);
}

TEST(CSPro, CensusAnsweredNoLosesOnlyTheDecimalValueSet)
{
    TCSPro d;
    kxtest::ModalPresser presser({QMessageBox::No});
    d.loadFromFile(CensusPath);
    ASSERT_EQ(d.getItemsCount(), 35);
    EXPECT_FALSE(d.getItem(15)->getHasValueSet()); // LANDAREA
    EXPECT_TRUE(d.getItem(8)->getHasValueSet());
    EXPECT_TRUE(d.getItem(19)->getHasValueSet());
}

TEST(CSPro, ReleaseModelDeletesTheCensusModelOnceAndTheReaderReadsAgain)
{
    TCSPro d;
    kxtest::ModalPresser presser({QMessageBox::Yes, QMessageBox::Yes});
    d.loadFromFile(CensusPath);
    ASSERT_EQ(d.getItemsCount(), 35);
    // The six ASSET copies share one value set: deleted once (the
    // sanitizer build would report a second delete).
    ASSERT_EQ(d.getItem(14)->getValueSet(0), d.getItem(9)->getValueSet(0));

    d.releaseModel();
    EXPECT_EQ(d.getItemsCount(), 0);
    EXPECT_TRUE(d.records->isEmpty());
    EXPECT_TRUE(d.recordsByValue->isEmpty());
    ASSERT_NE(d.commonRecord, nullptr);
    EXPECT_EQ(d.commonRecord->name, QStringLiteral("Common"));
    EXPECT_EQ(d.currentRecord, d.commonRecord);
    EXPECT_EQ(d.currentItem, nullptr);

    d.loadFromFile(CensusPath);
    EXPECT_EQ(d.getItemsCount(), 35);
    EXPECT_EQ(d.getRecordsCount(), 3);
    d.releaseModel();
}

// ------------------------------------------------------ encodings, line ends

namespace {
QByteArray censusBytes()
{
    QFile f(CensusPath);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly));
    return f.readAll();
}

QStringList loadDump(const QString &path)
{
    TCSPro d;
    d.setDecimalMode(1);
    d.setDecimalAnswer(QMessageBox::YesToAll);
    d.loadFromFile(path);
    return dump(d);
}
} // namespace

TEST(CSPro, ByteOrderMarkReadsTheSameAsPlain)
{
    QTemporaryDir dir;
    const QByteArray plain = censusBytes();
    ASSERT_FALSE(plain.contains('\r'));
    const QString bom = kxtest::writeFile(dir, QStringLiteral("bom.dcf"), QByteArray("\xEF\xBB\xBF") + plain);
    const QStringList expected = loadDump(CensusPath);
    EXPECT_EQ(expected.size(), 1 + 3 + 35);
    EXPECT_EQ(loadDump(bom), expected);
}

TEST(CSPro, CrlfLineEndsReadTheSameAsPlain)
{
    QTemporaryDir dir;
    QByteArray crlf = censusBytes();
    crlf.replace("\n", "\r\n");
    const QString path = kxtest::writeFile(dir, QStringLiteral("crlf.dcf"), crlf);
    const QString both = kxtest::writeFile(dir, QStringLiteral("both.dcf"), QByteArray("\xEF\xBB\xBF") + crlf);
    const QStringList expected = loadDump(CensusPath);
    EXPECT_EQ(loadDump(path), expected);
    EXPECT_EQ(loadDump(both), expected);
}

// ----------------------------------------------------------------- robustness

namespace {
// Loads \a bytes; passes when the reader returns or throws KxErrorManager*.
void loadsCleanly(const QTemporaryDir &dir, const QByteArray &bytes)
{
    const QString path = kxtest::writeFile(dir, QStringLiteral("fuzz.dcf"), bytes);
    TCSPro d;
    neverPrompt(d);
    try {
        d.loadFromFile(path);
    } catch (KxErrorManager *e) {
        EXPECT_EQ(e->getErrorNumber(), 242);
        delete e;
    }
    // Whatever was read is consistent.
    for (int i = 0; i < d.getItemsCount(); ++i) {
        ASSERT_NE(d.getItem(i), nullptr);
        ASSERT_NE(d.getItem(i)->record, nullptr);
    }
}
} // namespace

TEST(CSPro, TruncatedDictionariesLoadCleanly)
{
    QTemporaryDir dir;
    const QByteArray plain = censusBytes();
    for (int n = 0; n <= plain.size(); n += 7)
        loadsCleanly(dir, plain.left(n));
    loadsCleanly(dir, plain);
}

TEST(CSPro, GarbledDictionariesLoadCleanly)
{
    QTemporaryDir dir;
    const QByteArray plain = censusBytes();
    static const char chars[] = "[]=:;', \n\r0123456789-.AZaz\x00\xff";
    const QByteArray alphabet(chars, int(sizeof chars) - 1);
    QRandomGenerator rng(20240611);
    for (int round = 0; round < 300; ++round) {
        QByteArray bytes = plain;
        const int flips = 1 + int(rng.bounded(12));
        for (int f = 0; f < flips; ++f) {
            const int at = int(rng.bounded(bytes.size()));
            if (rng.bounded(2))
                bytes[at] = alphabet.at(int(rng.bounded(alphabet.size())));
            else
                bytes[at] = char(rng.bounded(256));
        }
        loadsCleanly(dir, bytes);
    }
}

TEST(CSPro, HostileNumbersLoadCleanly)
{
    QTemporaryDir dir;
    const char *const cases[] = {
        "[Item]\nName=A\nOccurrences=2000000000\nLen=1\n",
        "[Item]\nName=A\nOccurrences=-2147483648\n",
        "[Item]\nName=A\nStart=2147483647\nLen=2147483647\nOccurrences=2\n",
        "[Item]\nName=A\nStart=-2147483648\nLen=-2147483648\nOccurrences=3\n",
        "[Item]\nName=A\nOccurrences=9999\nLen=2147483647\n",
        "[Record]\nRecordTypeValue=\n[Item]\n[ValueSet]\nValue=\nName=,\nValue=:\nValue=;\nValue=:;\n",
        "[ValueSet]\nValue=1:2 3:4 :5: ::: ;x\nName=MISSING ,Special\n",
        "[Item]\nDataType=Alpha\n[ValueSet]\nValue=::::\nValue= : : \nValue=a:b c:d e:f g h:i;j\n",
        "[\n[]\n[[[\n]]]\n[Item\n[ValueSet\n",
    };
    for (const char *c : cases)
        loadsCleanly(dir, QByteArray(c));
}

// ------------------------------------------------------------------ reading notes

namespace {

using kxtest::expectNotes;

TReadNote note(int line, const char *subject, const char *kind, const QString &text)
{
    return TReadNote(line, QString::fromUtf8(subject), QString::fromLatin1(kind), text);
}


// Loads \a lines the way loadFromFile() does after reading them; line n of the
// list is line n + 1 of a file.
TReadNotes notesOf(TCSPro &d, QStringList lines)
{
    d.loadFromStr(&lines);
    return d.getReadNotes();
}

TReadNotes notesOf(QStringList lines)
{
    TCSPro d;
    d.setDecimalMode(2);
    d.setDecimalAnswer(QMessageBox::NoToAll);
    return notesOf(d, lines);
}

} // namespace

TEST(CSProNotes, DictionaryCarriedOverWholeGivesNoNotes)
{
    expectNotes(notesOf(L({"[Dictionary]", "Name=D", "RecordTypeStart=1", "RecordTypeLen=1", "", "[Record]",
                           "Label=Person", "Name=PERSON", "RecordTypeValue='P'", "[Item]", "Label=Age", "Name=AGE",
                           "Start=2", "Len=2", "[ValueSet]", "Name=AGE_VS1", "Value=97;Years", "Value=98;Old"})),
                {});
}

TEST(CSProNotes, NameTakenFromTheLabelLineThatContainsTheWord)
{
    const QStringList lines = L({"[Item]", "Label=Name of the head", "Name=HEAD", "Start=1", "Len=2"});
    expectNotes(notesOf(lines),
                {note(2, "HEAD", "key-from-other-line",
                      QStringLiteral("Name was read from the line 'Label=Name of the head', which gave 'Name of "
                                     "the head'; its own line 'Name=HEAD' says 'HEAD'."))});
}

TEST(CSProNotes, LengthTakenFromALabelThatContainsLenGivesTheDefault)
{
    // "Len" is found in "Label=Length of stay": not a number, so the length is 0.
    const QStringList lines = L({"", "[Item]", "Label=Length of stay", "Name=STAY", "Start=5", "Len=3"});
    expectNotes(notesOf(lines),
                {note(3, "STAY", "key-from-other-line",
                      QStringLiteral("Len was read from the line 'Label=Length of stay', which gave '0'; its own "
                                     "line 'Len=3' says '3'."))});
}

TEST(CSProNotes, LineWithASecondEqualsSignGivesTheDefault)
{
    const QStringList lines = L({"[Record]", "Label=a=b", "Name=R", "RecordTypeValue='R'"});
    expectNotes(notesOf(lines), {note(2, "R", "key-from-other-line",
                                      QStringLiteral("Label: its line 'Label=a=b' holds a second '=', so the "
                                                     "reading kept '' instead of 'a=b'."))});
}

TEST(CSProNotes, AbsentCommandFoundInAnotherLineWithANumberIsNoted)
{
    // No "Start=" line: the search for "Start" stops at "SubStart=7", whose 7
    // replaces the default start of 1.
    const QStringList lines = L({"[Item]", "Name=X", "Len=2", "SubStart=7"});
    expectNotes(notesOf(lines),
                {note(4, "X", "key-from-other-line",
                      QStringLiteral("Start was read from the line 'SubStart=7', which gave '7'; without a line "
                                     "'Start=' of its own it would be 1."))});
}

TEST(CSProNotes, AbsentCommandFoundInAnotherLineWithoutLossGivesNoNote)
{
    // "Decimal" is found in "DecimalChar=Yes": not a number, so the default 0,
    // which is what the absent command means anyway.
    expectNotes(notesOf(L({"[Item]", "Name=X", "Start=1", "Len=2", "DecimalChar=Yes"})), {});
}

TEST(CSProNotes, SpecialValueLinesAreNotedWithTheirCodes)
{
    TCSPro d;
    const TReadNotes notes = notesOf(d, L({"[Item]", "Name=AGE", "Start=1", "Len=2", "[ValueSet]", "Name=AGE_VS1",
                                           "Value=98;Refused", "Name=REFUSED,Special", "Value=99;Missing",
                                           "Name=missing,special", "Value=97;Not applicable", "Name=NOTAPPL,Special"}));
    expectNotes(notes,
                {note(8, "AGE_VS1", "special-not-read",
                      QStringLiteral("The line 'Name=REFUSED,Special' makes the code '98' the special value REFUSED "
                                     "in CSPro; the reading kept 98 as an ordinary code.")),
                 note(10, "AGE_VS1", "special-not-read",
                      QStringLiteral("The line 'Name=missing,special' makes the code '99' the special value MISSING "
                                     "in CSPro; the reading kept 99 as an ordinary code, and the item gets no "
                                     "missing code.")),
                 note(12, "AGE_VS1", "special-not-read",
                      QStringLiteral("The line 'Name=NOTAPPL,Special' makes the code '97' the special value NOTAPPL "
                                     "in CSPro; the reading kept 97 as an ordinary code, and the item gets no "
                                     "not-applicable code."))});
    // The notes tell; the reading is unchanged: no codes set, ordinary entries.
    EXPECT_TRUE(d.getItem(0)->missingCode.isEmpty());
    EXPECT_TRUE(d.getItem(0)->notApplCode.isEmpty());
    EXPECT_EQ(entriesOf(d.getItem(0)), L({"97=Not applicable/0", "98=Refused/0", "99=Missing/0"}));
}

TEST(CSProNotes, ValueLineWithSeveralCodesDropsTheValueSet)
{
    const QStringList lines = L({"[Item]", "Name=AGE", "Start=1", "Len=2", "[ValueSet]", "Name=AGE_VS2",
                                 "Value=0 1:14 15:19;Young", "Value=20;Adult"});
    expectNotes(notesOf(lines), {note(7, "AGE_VS2", "value-set-dropped",
                                      QStringLiteral("Value set AGE_VS2 dropped: the value line "
                                                     "'Value=0 1:14 15:19;Young' lists several codes."))});
}

TEST(CSProNotes, CodeThatIsNoWholeNumberDropsTheValueSet)
{
    const QStringList lines = L({"[Item]", "Name=SEX", "Start=1", "Len=1", "[ValueSet]", "Name=SEX_VS1",
                                 "Value=1;Male", "Value=F;Female"});
    expectNotes(notesOf(lines), {note(8, "SEX_VS1", "value-set-dropped",
                                      QStringLiteral("Value set SEX_VS1 dropped: the code 'F' of the value line "
                                                     "'Value=F;Female' is not a whole number."))});
}

TEST(CSProNotes, DecimalCodesAnsweredNoToAllDropTheValueSet)
{
    const QStringList lines = L({"[Item]", "Name=AREA", "Start=1", "Len=4", "[ValueSet]", "Name=AREA_VS1",
                                 "Value=1;One", "Value=0.5;Half"});
    expectNotes(notesOf(lines), {note(8, "AREA_VS1", "value-set-dropped",
                                      QStringLiteral("Value set AREA_VS1 dropped: the codes 0.5 are not whole "
                                                     "numbers and the decimal prompt was answered No to All."))});
}

TEST(CSProNotes, DecimalCodesAnsweredYesToAllBecomeZero)
{
    TCSPro d;
    d.setDecimalMode(1);
    d.setDecimalAnswer(QMessageBox::YesToAll);
    const TReadNotes notes = notesOf(d, L({"[Item]", "Name=AREA", "Start=1", "Len=4", "[ValueSet]",
                                           "Name=AREA_VS1", "Value=0.5;Half", "Value=1.5;One and a half",
                                           "Value=2;Two"}));
    expectNotes(notes, {note(7, "AREA_VS1", "value-codes-changed",
                             QStringLiteral("Value set AREA_VS1: the codes 0.5, 1.5 are not whole numbers; the "
                                            "decimal prompt was answered Yes to All, so the reading turned them "
                                            "into 0."))});
    EXPECT_EQ(codesOf(d.getItem(0)), L({"0", "0", "2"}));
}

struct PresetAnswerCase
{
    const char *name;
    QMessageBox::StandardButton answer;
    const char *kind;
    const char *text;
    QStringList codes; // of the item afterwards; empty when its value set was dropped
};

void PrintTo(const PresetAnswerCase &c, std::ostream *os)
{
    *os << c.name;
}

class CSProDecimalAnswerNotes : public ::testing::TestWithParam<PresetAnswerCase>
{
};

// Mode 1 uses the preset answer without a dialog; the note names that answer.
TEST_P(CSProDecimalAnswerNotes, NameTheAnswerGiven)
{
    const PresetAnswerCase &c = GetParam();
    TCSPro d;
    d.setDecimalMode(1);
    d.setDecimalAnswer(c.answer);
    const TReadNotes notes = notesOf(d, L({"[Item]", "Name=AREA", "Start=1", "Len=4", "[ValueSet]",
                                           "Name=AREA_VS1", "Value=0.5;Half", "Value=2;Two"}));
    expectNotes(notes, {note(7, "AREA_VS1", c.kind, QString::fromUtf8(c.text))});
    EXPECT_EQ(d.getItem(0)->getHasValueSet() ? codesOf(d.getItem(0)) : QStringList(), c.codes);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, CSProDecimalAnswerNotes,
    ::testing::Values(PresetAnswerCase{"Yes", QMessageBox::Yes, "value-codes-changed",
                                       "Value set AREA_VS1: the codes 0.5 are not whole numbers; the decimal prompt "
                                       "was answered Yes, so the reading turned them into 0.",
                                       {"0", "2"}},
                      PresetAnswerCase{"No", QMessageBox::No, "value-set-dropped",
                                       "Value set AREA_VS1 dropped: the codes 0.5 are not whole numbers and the "
                                       "decimal prompt was answered No.",
                                       {}},
                      // A preset mode without an answer drops the set, as No does.
                      PresetAnswerCase{"NoButton", QMessageBox::NoButton, "value-set-dropped",
                                       "Value set AREA_VS1 dropped: the codes 0.5 are not whole numbers and the "
                                       "decimal prompt was answered with no button.",
                                       {}}),
    [](const ::testing::TestParamInfo<PresetAnswerCase> &info) { return std::string(info.param.name); });

TEST(CSProNotes, DefaultIsASpecialValueAndOtherKeywordsAreNot)
{
    TCSPro d;
    const TReadNotes notes = notesOf(d, L({"[Item]", "Name=AGE", "Start=1", "Len=2", "[ValueSet]", "Name=AGE_VS1",
                                           "Value=95;Default", "Name=DEFAULT,Special", "Value=96;Other",
                                           "Name=OTHER,Special"}));
    expectNotes(notes, {note(8, "AGE_VS1", "special-not-read",
                             QStringLiteral("The line 'Name=DEFAULT,Special' makes the code '95' the special value "
                                            "DEFAULT in CSPro; the reading kept 95 as an ordinary code."))});
    EXPECT_EQ(entriesOf(d.getItem(0)), L({"95=Default/0", "96=Other/0"}));
}

// A caller may walk the sections itself with the public section readers: the
// model is the one a load makes, but without a loaded file there are no lines
// to point at, so no notes are written.
TEST(CSProNotes, SectionsReadOneByOneOutsideALoadWriteNoNotes)
{
    const QStringList text = L({"[Item]", "Name=AGE", "Start=1", "Len=2", "[ValueSet]", "Name=AGE_VS1",
                                "Value=1;One", "Value=98;Refused", "Name=MISSING,Special", "[ValueSet]",
                                "Name=AGE_VS2", "Value=2;Two", "[Item]", "Name=AREA", "Start=3", "Len=4",
                                "[ValueSet]", "Name=AREA_VS1", "Value=1;One", "Value=0.5;Half", "[Item]",
                                "Name=SEX", "Start=7", "Len=1", "[ValueSet]", "Name=SEX_VS1", "Value=1 2;Both",
                                "[ValueSet]", "Name=SEX_VS2", "Link=4"});
    const auto prepared = [](TCSPro &d) {
        d.setDecimalMode(2);
        d.setDecimalAnswer(QMessageBox::NoToAll);
    };
    TCSPro loaded;
    prepared(loaded);
    QStringList lines = text;
    loaded.loadFromStr(&lines);
    QStringList kinds;
    for (const TReadNote &n : loaded.getReadNotes())
        kinds << n.getKind();
    // The special value, AGE's second set, AREA's decimal code and SEX's line of several codes.
    EXPECT_EQ(kinds, L({"special-not-read", "value-set-dropped", "value-set-dropped", "value-set-dropped"}));

    TCSPro walked;
    prepared(walked);
    QStringList walkedLines = text;
    for (int i = 0; i < walkedLines.size(); ++i) {
        if (walkedLines.at(i) == QLatin1String("[Item]"))
            walked.processItem(&walkedLines, i);
        else if (walkedLines.at(i) == QLatin1String("[ValueSet]"))
            walked.processValueSet(&walkedLines, i);
    }
    EXPECT_TRUE(walked.getReadNotes().isEmpty()) << kxtest::describeNotes(walked.getReadNotes());
    ASSERT_EQ(walked.getItemsCount(), 3);
    ASSERT_EQ(loaded.getItemsCount(), 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(entriesOf(walked.getItem(i)), entriesOf(loaded.getItem(i))) << i;
    EXPECT_EQ(entriesOf(walked.getItem(0)), L({"1=One/0", "98=Refused/0"}));
    EXPECT_FALSE(walked.getItem(1)->getHasValueSet());
    // SEX_VS1 was dropped, so the linked SEX_VS2, empty, is SEX's first value set.
    ASSERT_TRUE(walked.getItem(2)->getHasValueSet());
    EXPECT_EQ(walked.getItem(2)->getValueSet(0)->name, QStringLiteral("SEX_VS2"));
    EXPECT_TRUE(entriesOf(walked.getItem(2)).isEmpty());
}

TEST(CSProNotes, SecondValueSetOfAnItemIsNotedAsDropped)
{
    const QStringList lines = L({"[Item]", "Name=AGE", "Start=1", "Len=2", "[ValueSet]", "Name=AGE_VS1",
                                 "Value=1;One", "[ValueSet]", "Name=AGE_VS2", "Value=2;Two"});
    expectNotes(notesOf(lines), {note(8, "AGE_VS2", "value-set-dropped",
                                      QStringLiteral("Value set AGE_VS2 dropped: its item already has the value "
                                                     "set AGE_VS1, and only the first is kept."))});
}

TEST(CSProNotes, ValueSetBeforeAnyItemIsNotedAsDropped)
{
    expectNotes(notesOf(L({"[ValueSet]", "Name=LOOSE", "Value=1;One"})),
                {note(1, "LOOSE", "value-set-dropped",
                      QStringLiteral("Value set LOOSE dropped: no item comes before it."))});
}

TEST(CSProNotes, LinkedValueSetWithoutValuesIsNotedWhenAnEarlierSetHasThem)
{
    const QStringList lines = L({"[Item]", "Name=ACT1", "Start=1", "Len=1", "[ValueSet]", "Name=ACT1_VS1",
                                 "Link=7", "Value=1;Employed", "[Item]", "Name=ACT2", "Start=2", "Len=1",
                                 "[ValueSet]", "Name=ACT2_VS1", "Link=7", "[Item]", "Name=ACT3", "Start=3",
                                 "Len=1", "[ValueSet]", "Name=ACT3_VS1", "Link=8"});
    // ACT3_VS1 has a link no earlier set carries values for: nothing is lost.
    expectNotes(notesOf(lines), {note(15, "ACT2_VS1", "linked-value-set-empty",
                                      QStringLiteral("Value set ACT2_VS1 has no values of its own: CSPro fills it "
                                                     "from value set ACT1_VS1, which has the same link 7; the "
                                                     "reading leaves it empty."))});
}

// The note on the names of a repeated item's copies.
TReadNote occurrenceNames(int line, const char *item, int occurrences, const char *lastCode)
{
    const QString name = QString::fromLatin1(item);
    return note(line, item, "occurrence-name-control",
                QStringLiteral("Item %1 has %2 occurrences; the reading names their fields %1_ followed by the "
                               "character of code 1 to %2 (U+0001 to U+%3), not %1_1 to %1_%2.")
                    .arg(name)
                    .arg(occurrences)
                    .arg(QString::fromLatin1(lastCode)));
}

TEST(CSProNotes, ValueSetOfARepeatedFirstItemReachesOnlyItsLastCopy)
{
    TCSPro d;
    const TReadNotes notes = notesOf(d, L({"[Item]", "Name=X", "Start=1", "Len=1", "Occurrences=3", "[ValueSet]",
                                           "Name=X_VS1", "Value=1;Yes"}));
    expectNotes(notes, {occurrenceNames(5, "X", 3, "0003"), note(6, "X", "occurrence-value-set",
                             QStringLiteral("Item X is the dictionary's first item and has 3 occurrences; only its "
                                            "last copy gets value set X_VS1, the other 2 copies get none."))});
    EXPECT_FALSE(d.getItem(0)->getHasValueSet());
    EXPECT_FALSE(d.getItem(1)->getHasValueSet());
    EXPECT_TRUE(d.getItem(2)->getHasValueSet());
}

TEST(CSProNotes, RepeatedItemAfterTheFirstSharesItsValueSetWithoutNote)
{
    expectNotes(notesOf(L({"[Item]", "Name=A", "Start=1", "Len=1", "[Item]", "Name=X", "Start=2", "Len=1",
                           "Occurrences=3", "[ValueSet]", "Name=X_VS1", "Value=1;Yes"})),
                {occurrenceNames(9, "X", 3, "0003")});
}

TEST(CSProNotes, OccurrencesPastTheLimitAreNotedBeforeTheError)
{
    TCSPro d;
    QStringList lines = L({"[Item]", "Name=BIG", "Start=1", "Len=1", "Occurrences=10000"});
    try {
        d.loadFromStr(&lines);
        FAIL() << "expected error 242";
    } catch (KxErrorManager *e) {
        EXPECT_EQ(e->getErrorNumber(), 242);
        delete e;
    }
    expectNotes(d.getReadNotes(), {note(5, "BIG", "limit-reached",
                                        QStringLiteral("Item BIG has 10000 occurrences, more than the 9999 that are "
                                                       "expanded; the reading stops here with error 242."))});
}

TEST(CSProNotes, CopiesPastTheBudgetAreNotedBeforeTheError)
{
    TCSPro d;
    // 78 characters with the line ends: the budget is the 10,000 copies every
    // dictionary may make. The first item's 9999 copies fit, the second's do not.
    QStringList lines{QStringLiteral("[Item]"), QStringLiteral("Name=I0"),   QStringLiteral("Len=1"),
                      QStringLiteral("Occurrences=9999"), QStringLiteral("[Item]"), QStringLiteral("Name=LAST"),
                      QStringLiteral("Len=1"),  QStringLiteral("Occurrences=9999")};
    try {
        d.loadFromStr(&lines);
        FAIL() << "expected error 242";
    } catch (KxErrorManager *e) {
        delete e;
    }
    expectNotes(d.getReadNotes(),
                {occurrenceNames(4, "I0", 9999, "270F"), note(8, "LAST", "limit-reached",
                      QStringLiteral("Item LAST with 9999 occurrences would pass the 10000 copies of repeated items "
                                     "that this dictionary may expand to (10000 and one for every 100 characters "
                                     "of the file); the reading stops here with error 242."))});
    EXPECT_EQ(d.getItemsCount(), 9999);
}

TEST(CSProNotes, EveryHundredCharactersOfTheFileAllowOneCopyMore)
{
    // 9999 copies, then 2 more: 10,001 copies need a file of 100 characters
    // more than the bare lines, which a long label gives.
    QStringList lines{QStringLiteral("[Item]"), QStringLiteral("Name=I0"),   QStringLiteral("Len=1"),
                      QStringLiteral("Occurrences=9999"), QStringLiteral("[Item]"), QStringLiteral("Name=LAST"),
                      QStringLiteral("Len=1"),  QStringLiteral("Occurrences=2")};
    {
        TCSPro d;
        QStringList bare = lines;
        EXPECT_TRUE(kxtest::catchKxError([&] { d.loadFromStr(&bare); }));
        EXPECT_EQ(d.getItemsCount(), 9999);
    }
    TCSPro d;
    lines << QStringLiteral("Label=") + QString(100, QLatin1Char('x'));
    EXPECT_FALSE(kxtest::catchKxError([&] { d.loadFromStr(&lines); }));
    EXPECT_EQ(d.getItemsCount(), 10001);
    expectNotes(d.getReadNotes(), {occurrenceNames(4, "I0", 9999, "270F"), occurrenceNames(8, "LAST", 2, "0002")});
}

TEST(CSProNotes, UndecodableBytesAreNotedWithTheirLine)
{
    if (QTextCodec::codecForLocale()->name() != "UTF-8")
        GTEST_SKIP() << "the locale's text codec is " << QTextCodec::codecForLocale()->name().toStdString()
                     << ", which decodes every byte";
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bad.dcf"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[Item]\nLabel=Caf\xff\nName=CAFE\nStart=1\nLen=1\n");
    file.close();
    TCSPro d;
    d.loadFromFile(path);
    const QString label = QStringLiteral("Label=Caf") + QChar(QChar::ReplacementCharacter);
    expectNotes(d.getReadNotes(),
                {TReadNote(2, label, QStringLiteral("undecodable-text"),
                           QStringLiteral("Line 2 holds bytes that are not valid text; the reading kept a "
                                          "replacement character (U+FFFD) in their place: '%1'.")
                               .arg(label))});
    EXPECT_EQ(d.getItem(0)->label, QStringLiteral("Caf") + QChar(QChar::ReplacementCharacter));
}

TEST(CSProNotes, EachLoadFromFileStartsWithNoNotes)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("plain.dcf"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[Item]\nLabel=Name of X\nName=X\nLen=1\n");
    file.close();
    TCSPro d;
    d.loadFromFile(path);
    EXPECT_EQ(d.getReadNotes().size(), 1);
    d.loadFromFile(path);
    EXPECT_EQ(d.getReadNotes().size(), 1);
}

TEST(CSProNotes, ProcessLineOutsideALoadWritesNoNote)
{
    TCSPro d;
    EXPECT_EQ(d.processLine(L({"Label=Name of X", "Name=X"}), QStringLiteral("Name"), QString()),
              QStringLiteral("Name of X"));
    EXPECT_TRUE(d.getReadNotes().isEmpty());
}

TEST(CSProNotes, IdenticalSpecialLinesEachGiveTheirOwnLine)
{
    const QStringList lines = L({"[Item]", "Name=AGE", "Len=3", "[ValueSet]", "Name=AGE_VS1", "Value=998;Refused",
                                 "Name=REFUSED,Special", "Value=999;Refused again", "Name=REFUSED,Special"});
    const TReadNotes notes = notesOf(lines);
    ASSERT_EQ(notes.size(), 2);
    EXPECT_EQ(notes.at(0).getLine(), 7);
    EXPECT_EQ(notes.at(1).getLine(), 9);
}

TEST(CSProNotes, NotesStopAtTheirLimitWithOneNoteSayingSo)
{
    // Every special line of this value set is a note: more than the limit.
    QStringList lines = L({"[Item]", "Name=AGE", "Len=6", "[ValueSet]", "Name=AGE_VS1"});
    for (int code = 0; code < TCSPro::MaxReadNotes + 5; ++code)
        lines << QStringLiteral("Value=%1;Refused").arg(code) << QStringLiteral("Name=REFUSED,Special");
    const TReadNotes notes = notesOf(lines);
    ASSERT_EQ(notes.size(), TCSPro::MaxReadNotes + 1);
    EXPECT_EQ(notes.at(TCSPro::MaxReadNotes - 1).getLine(), 5 + 2 * TCSPro::MaxReadNotes);
    expectNotes({notes.last()},
                {note(0, "", "limit-reached",
                      QStringLiteral("The reading wrote more than 10000 notes; the rest are not kept."))});
}

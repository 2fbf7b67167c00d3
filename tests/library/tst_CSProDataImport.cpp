#include "model_KelAdmin.h"
#include "TestSupport.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

// The text importer and its CSPro 8 JSON twin follow the same rules: every
// rule below runs against both, on a dictionary model built by hand.

namespace {

template <class Importer>
struct Twin;

template <>
struct Twin<TCSProDataImport>
{
    using Reader = TCSPro;
    static QString type() { return QStringLiteral("CSPRO"); }
    static QString debugName() { return QStringLiteral("TCSProDataImport"); }
};

template <>
struct Twin<TCSProJsonDataImport>
{
    using Reader = TCSProJson;
    static QString type() { return QStringLiteral("CSPRO8"); }
    static QString debugName() { return QStringLiteral("TCSProJsonImport"); }
};

struct TwinNames
{
    template <class T>
    static std::string GetName(int)
    {
        return std::is_same<T, TCSProDataImport>::value ? "Text" : "Json";
    }
};

// A dictionary reader filled by hand, handed to an importer without loading.
template <class Importer>
struct HandModel
{
    using Reader = typename Twin<Importer>::Reader;
    Reader *reader = new Reader;
    Importer importer;

    HandModel() { importer.setDictionaryReader(reader); }

    TCSProRecord *record(const QString &name, const QString &value)
    {
        auto *r = new TCSProRecord;
        r->name = name;
        r->recordTypeValue = value;
        reader->records->append(r);
        return r;
    }

    TCSProItem *item(const QString &name, int len, int decimal = 0, bool alpha = false)
    {
        auto *i = new TCSProItem;
        i->name = name;
        i->label = name + QStringLiteral(" label");
        i->len = len;
        i->decimal = decimal;
        i->isAlpha = alpha ? 1 : 0;
        i->start = 5;
        i->record = reader->commonRecord;
        reader->items->append(i);
        return i;
    }

    static TCSProValueSet *valueSet(TCSProItem *item, const QList<QPair<QString, QString>> &entries,
                                    const QList<int> &special = {})
    {
        auto *vs = new TCSProValueSet;
        for (int k = 0; k < entries.size(); ++k) {
            auto *e = new TValueSetItem;
            e->code = entries.at(k).first;
            e->name = entries.at(k).second;
            e->special = special.contains(k);
            vs->addItem(e);
        }
        item->addValueSet(vs);
        return vs;
    }

    TCSProVariable *copy(int index = 0)
    {
        importer.copyDataFromDictionary();
        return dynamic_cast<TCSProVariable *>(importer.getField(index));
    }
};

template <class Importer>
class CSProImport : public ::testing::Test
{
};

using Importers = ::testing::Types<TCSProDataImport, TCSProJsonDataImport>;
TYPED_TEST_SUITE(CSProImport, Importers, TwinNames);

} // namespace

// ------------------------------------------------------------ identity

TYPED_TEST(CSProImport, TypeNameAndIdAreTheFormatAndThePath)
{
    TypeParam importer(QStringLiteral("/data/census.dcf"));
    EXPECT_EQ(importer.getDataProviderType(), Twin<TypeParam>::type());
    EXPECT_EQ(importer.getDataProviderId(), Twin<TypeParam>::type() + QStringLiteral("_/data/census.dcf"));
}

TYPED_TEST(CSProImport, ConstructorWithPathWritesItsDebugLineAndAllocatesGroups)
{
    kxtest::MessageCollector log;
    TypeParam importer(QStringLiteral("x"));
    EXPECT_TRUE(log.contains(Twin<TypeParam>::debugName() + QStringLiteral(" Constructor")));
    ASSERT_NE(importer.getGroups(), nullptr);
    EXPECT_EQ(importer.getGroupCount(), 0);
    EXPECT_TRUE(importer.getNotRead());
    EXPECT_EQ(importer.getRecordTypeStart(), 0);
    EXPECT_EQ(importer.getRecordTypeSize(), 0);
    EXPECT_EQ(importer.getDictionaryReader(), nullptr);
    EXPECT_TRUE(importer.getCurrentRecordType().isEmpty());
}

TYPED_TEST(CSProImport, DefaultConstructorWritesNoLineAndHasNoGroupList)
{
    kxtest::MessageCollector log;
    TypeParam importer;
    EXPECT_TRUE(log.messages().isEmpty());
    EXPECT_EQ(importer.getGroups(), nullptr);
    EXPECT_EQ(importer.getGroupCount(), 0);
    EXPECT_TRUE(importer.getNotRead());
}

TYPED_TEST(CSProImport, OpenFileOfAMissingFileGivesNoFieldsAndReturnsTrue)
{
    TypeParam importer(QStringLiteral("/no/such/dictionary"));
    EXPECT_TRUE(importer.openFile());
    EXPECT_EQ(importer.getFieldCount(), 0);
    EXPECT_EQ(importer.getGroupCount(), 0);
    EXPECT_FALSE(importer.getNotRead());
    EXPECT_NE(importer.getDictionaryReader(), nullptr);
    EXPECT_EQ(importer.getOpeningValue(), 1.0);
    EXPECT_EQ(importer.getImportCounter(), 1);
}

TYPED_TEST(CSProImport, SelectLayoutSourceWritesBothDebugLinesAndListsTheFields)
{
    HandModel<TypeParam> m;
    m.item("A", 1);
    kxtest::MessageCollector log;
    // selectLayoutSource reopens the (missing) source: the list is empty.
    QStringList *names = m.importer.selectLayoutSource();
    EXPECT_TRUE(log.contains(Twin<TypeParam>::debugName() + QStringLiteral(" - selectLayoutSource")));
    EXPECT_TRUE(log.contains(QStringLiteral("DataImport - selectLayoutSource")));
    EXPECT_TRUE(names->isEmpty());
    delete names;
}

TYPED_TEST(CSProImport, StringOfCharRepeatsTheCharacter)
{
    EXPECT_EQ(TypeParam::StringOfChar('9', 3), QStringLiteral("999"));
    EXPECT_EQ(TypeParam::StringOfChar('x', 1), QStringLiteral("x"));
    EXPECT_EQ(TypeParam::StringOfChar('9', 0), QString());
    EXPECT_EQ(TypeParam::StringOfChar('9', -2), QString());
}

// ------------------------------------------------------- type and decimals

TYPED_TEST(CSProImport, NumericLength9IsIntegerAndLength10IsRealWithDecimals0)
{
    HandModel<TypeParam> m;
    m.item("N9", 9);
    m.item("N10", 10);
    m.importer.copyDataFromDictionary();
    TGenericField *n9 = m.importer.fieldByName("N9");
    TGenericField *n10 = m.importer.fieldByName("N10");
    EXPECT_EQ(n9->getFieldType(), 1);
    EXPECT_EQ(n9->getDecimals(), QStringLiteral("0"));
    EXPECT_EQ(n10->getFieldType(), 2);
    EXPECT_EQ(n10->getDecimals(), QStringLiteral("0"));
    EXPECT_EQ(n10->getMaximum(), QStringLiteral("9999999999"));
}

TYPED_TEST(CSProImport, NumericWithDecimalsIsRealWithTheDecimalCount)
{
    HandModel<TypeParam> m;
    m.item("R", 6, 2);
    TCSProVariable *f = m.copy();
    EXPECT_EQ(f->getFieldType(), 2);
    EXPECT_EQ(f->getDecimals(), QStringLiteral("2"));
}

TYPED_TEST(CSProImport, AlphaItemIsTextWithoutDecimalsOrRange)
{
    HandModel<TypeParam> m;
    m.item("T", 12, 3, true);
    TCSProVariable *f = m.copy();
    EXPECT_EQ(f->getFieldType(), 3);
    EXPECT_TRUE(f->getDecimals().isEmpty());
    EXPECT_TRUE(f->getMinimum().isEmpty());
    EXPECT_TRUE(f->getMaximum().isEmpty());
}

TYPED_TEST(CSProImport, ItemDescriptionIsCopied)
{
    HandModel<TypeParam> m;
    TCSProItem *i = m.item("AGE", 3);
    i->start = 14;
    i->missingCode = "999";
    i->notApplCode = "998";
    TCSProVariable *f = m.copy();
    EXPECT_EQ(f->getName(), QStringLiteral("AGE"));
    EXPECT_EQ(f->getLabel(), QStringLiteral("AGE label"));
    EXPECT_EQ(f->getSize(), 3);
    EXPECT_EQ(f->getStart(), 14);
    EXPECT_EQ(f->getMissingCode(), QStringLiteral("999"));
    EXPECT_EQ(f->getNotApplicableCode(), QStringLiteral("998"));
    EXPECT_EQ(f->getItem(), i);
    EXPECT_FALSE(f->getCopiedFlag());
    EXPECT_EQ(f->getOwner(), &m.importer);
}

// ------------------------------------------------------------ ranges

TYPED_TEST(CSProImport, NumericRangeDefaultsToZeroAndNinesOfTheLength)
{
    HandModel<TypeParam> m;
    m.item("N", 4);
    TCSProVariable *f = m.copy();
    EXPECT_EQ(f->getMinimum(), QStringLiteral("0"));
    EXPECT_EQ(f->getMaximum(), QStringLiteral("9999"));
}

TYPED_TEST(CSProImport, Length5With2DecimalsNoValueSetMaximumIs999WithoutDecimalChar)
{
    HandModel<TypeParam> m;
    m.item("R", 5, 2)->decimalChar = false;
    TCSProVariable *f = m.copy();
    EXPECT_EQ(f->getMinimum(), QStringLiteral("0"));
    EXPECT_EQ(f->getMaximum(), QStringLiteral("999"));
}

TYPED_TEST(CSProImport, Length5With2DecimalsNoValueSetMaximumIs9999WithDecimalChar)
{
    HandModel<TypeParam> m;
    m.item("R", 5, 2)->decimalChar = true;
    TCSProVariable *f = m.copy();
    EXPECT_EQ(f->getMaximum(), QStringLiteral("9999"));
}

TYPED_TEST(CSProImport, DecimalsEqualToTheLengthGiveMaximum9)
{
    HandModel<TypeParam> m;
    m.item("R", 3, 3);
    TCSProVariable *f = m.copy();
    EXPECT_EQ(f->getMaximum(), QStringLiteral("9"));
}

TYPED_TEST(CSProImport, DecimalsBeyondTheLengthGiveAnEmptyMaximum)
{
    HandModel<TypeParam> m;
    m.item("R", 2, 3);
    TCSProVariable *f = m.copy();
    EXPECT_EQ(f->getMaximum(), QString());
}

TYPED_TEST(CSProImport, DecimalCharWithLength1GivesAnEmptyMaximum)
{
    HandModel<TypeParam> m;
    m.item("R", 1, 1)->decimalChar = true;
    TCSProVariable *f = m.copy();
    EXPECT_EQ(f->getMaximum(), QString());
}

TYPED_TEST(CSProImport, HostileLengthsGiveBoundedMaximaWithoutCrash)
{
    HandModel<TypeParam> m;
    m.item("HUGE", std::numeric_limits<int>::max());
    m.item("NEG", -5);
    m.item("DEC", std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    m.importer.copyDataFromDictionary();
    EXPECT_EQ(m.importer.fieldByName("HUGE")->getMaximum(), QString(TGenericField::ValueCapacity, QLatin1Char('9')));
    EXPECT_EQ(m.importer.fieldByName("NEG")->getMaximum(), QString());
    EXPECT_EQ(m.importer.fieldByName("DEC")->getMaximum(), QString());
}

// --------------------------------------------------------- value sets

TYPED_TEST(CSProImport, SpecialEntrySkippedInLabelsButStillBoundsTheRange)
{
    HandModel<TypeParam> m;
    TCSProItem *i = m.item("Q", 2);
    HandModel<TypeParam>::valueSet(i, {{"1", "Yes"}, {"2", "No"}, {"99", "Unknown"}}, {2});
    TCSProVariable *f = m.copy();
    EXPECT_EQ(f->getFieldType(), 1);
    EXPECT_EQ(f->getValueLabels(), QStringLiteral("1 Yes\t2 No\t"));
    EXPECT_EQ(f->getMinimum(), QStringLiteral("1"));
    EXPECT_EQ(f->getMaximum(), QStringLiteral("99"));
}

TYPED_TEST(CSProImport, IntegerFieldWritesCodesAsNumbersRealFieldAsWritten)
{
    HandModel<TypeParam> m;
    HandModel<TypeParam>::valueSet(m.item("I", 2), {{"07", "Seven"}, {"10", "Ten"}});
    HandModel<TypeParam>::valueSet(m.item("R", 4, 1), {{"07", "Seven"}, {"10", "Ten"}});
    m.importer.copyDataFromDictionary();
    EXPECT_EQ(m.importer.fieldByName("I")->getValueLabels(), QStringLiteral("7 Seven\t10 Ten\t"));
    EXPECT_EQ(m.importer.fieldByName("R")->getValueLabels(), QStringLiteral("07 Seven\t10 Ten\t"));
    EXPECT_EQ(m.importer.fieldByName("R")->getMinimum(), QStringLiteral("7"));
    EXPECT_EQ(m.importer.fieldByName("R")->getMaximum(), QStringLiteral("10"));
}

TYPED_TEST(CSProImport, LoopWidensTheBoundsBeyondFirstAndLastEntries)
{
    HandModel<TypeParam> m;
    HandModel<TypeParam>::valueSet(m.item("U", 3), {{"5", "a"}, {"1", "b"}, {"900", "c"}, {"7", "d"}});
    TCSProVariable *f = m.copy();
    EXPECT_EQ(f->getMinimum(), QStringLiteral("1"));
    EXPECT_EQ(f->getMaximum(), QStringLiteral("900"));
}

TYPED_TEST(CSProImport, UnparsableCodeCountsAsZero)
{
    HandModel<TypeParam> m;
    HandModel<TypeParam>::valueSet(m.item("C", 2), {{"3", "Three"}, {"1:5", "Range"}});
    TCSProVariable *f = m.copy();
    EXPECT_EQ(f->getValueLabels(), QStringLiteral("3 Three\t0 Range\t"));
    EXPECT_EQ(f->getMinimum(), QStringLiteral("0"));
    EXPECT_EQ(f->getMaximum(), QStringLiteral("3"));
}

TYPED_TEST(CSProImport, TextItemWithValueSetGetsMinimum0AndNoMaximum)
{
    HandModel<TypeParam> m;
    HandModel<TypeParam>::valueSet(m.item("T", 1, 0, true), {{"A", "Alpha"}, {"B", "Beta"}});
    TCSProVariable *f = m.copy();
    EXPECT_EQ(f->getValueLabels(), QStringLiteral("A Alpha\tB Beta\t"));
    EXPECT_EQ(f->getMinimum(), QStringLiteral("0"));
    EXPECT_EQ(f->getMaximum(), QString());
}

TYPED_TEST(CSProImport, EmptyFirstValueSetGivesZeroBoundsAndKeepsTheNines)
{
    HandModel<TypeParam> m;
    HandModel<TypeParam>::valueSet(m.item("E", 2), {});
    TCSProVariable *f = m.copy();
    EXPECT_EQ(f->getValueLabels(), QString());
    EXPECT_EQ(f->getMinimum(), QStringLiteral("0"));
    EXPECT_EQ(f->getMaximum(), QStringLiteral("99"));
}

TYPED_TEST(CSProImport, RealItemWithDecimalsAndValueSetTakesTheValueSetRange)
{
    HandModel<TypeParam> m;
    HandModel<TypeParam>::valueSet(m.item("R", 5, 2), {{"1.5", "low"}, {"250", "high"}});
    TCSProVariable *f = m.copy();
    EXPECT_EQ(f->getMinimum(), QStringLiteral("1.5"));
    EXPECT_EQ(f->getMaximum(), QStringLiteral("250"));
}

// ------------------------------------------------------ records and groups

TYPED_TEST(CSProImport, MultipleOnlyWhenRecordTypeLengthIsPositive)
{
    HandModel<TypeParam> m;
    TCSProRecord *person = m.record("PERSON", "P");
    m.item("AGE", 2)->record = person;
    m.importer.setRecordTypeLen(0);
    EXPECT_FALSE(m.importer.isMultiple());
    m.importer.copyDataFromDictionary();
    EXPECT_EQ(m.importer.getField(0)->getGroup(), QString());

    m.importer.setRecordTypeLen(1);
    EXPECT_TRUE(m.importer.isMultiple());
    m.importer.openDataImport();
    m.importer.copyDataFromDictionary();
    EXPECT_EQ(m.importer.getField(0)->getGroup(), QStringLiteral("PERSON"));
}

TYPED_TEST(CSProImport, SameRecordTypeValueSearchedBothWays)
{
    HandModel<TypeParam> m;
    m.record("HOUSE", "1");
    m.record("FIRST", "2");
    m.record("SECOND", "2");
    EXPECT_EQ(m.importer.getRecordTypeIndex(QStringLiteral("2")), 2);
    m.importer.setCurrentRecordType("2");
    EXPECT_EQ(m.importer.getRecordTypeIndex(), 1);
    EXPECT_EQ(m.importer.getRecordTypeIndex(QStringLiteral("9")), -1);
    m.importer.setCurrentRecordType("9");
    EXPECT_EQ(m.importer.getRecordTypeIndex(), -1);
}

TYPED_TEST(CSProImport, RecordTypeIndexWithoutDictionaryIsMinus1)
{
    TypeParam importer;
    EXPECT_EQ(importer.getRecordTypeIndex(QStringLiteral("1")), -1);
    EXPECT_EQ(importer.getRecordTypeIndex(), -1);
}

TYPED_TEST(CSProImport, GroupValueForAReturnsAnEarlierEntryContainingA)
{
    // Records BA and A share the type value 2: the entry "A=2" of record A
    // is contained in the earlier entry "BA=2", which is returned whole.
    TypeParam importer(QStringLiteral("x"));
    *importer.getGroups() << QStringLiteral("BA=2") << QStringLiteral("A=2");
    EXPECT_EQ(importer.getGroupCount(), 2);
    EXPECT_EQ(importer.getGroupName(1), QStringLiteral("A=2"));
    EXPECT_EQ(importer.getGroupValue(1), QStringLiteral("BA=2"));
    EXPECT_EQ(importer.getGroupValue(0), QStringLiteral("BA=2"));
}

TYPED_TEST(CSProImport, GroupValueIsTheWholeEntryNotTheValue)
{
    TypeParam importer(QStringLiteral("x"));
    *importer.getGroups() << QStringLiteral("HA=1") << QStringLiteral("A=2");
    EXPECT_EQ(importer.getGroupValue(0), QStringLiteral("HA=1"));
    EXPECT_EQ(importer.getGroupValue(1), QStringLiteral("A=2"));
}

TYPED_TEST(CSProImport, GroupAccessOutsideTheListIsEmpty)
{
    TypeParam importer(QStringLiteral("x"));
    *importer.getGroups() << QStringLiteral("H=1");
    EXPECT_EQ(importer.getGroupName(1), QString());
    EXPECT_EQ(importer.getGroupName(-1), QString());
    EXPECT_EQ(importer.getGroupValue(5), QString());
}

TYPED_TEST(CSProImport, MissingAndNotApplicableCodesAreTakenFromTheItem)
{
    HandModel<TypeParam> m;
    TCSProItem *i = m.item("AGE", 3);
    TCSProVariable *f = m.copy();
    i->missingCode = "999";
    i->notApplCode = "998";
    m.importer.getVarMissingValue(f);
    m.importer.getNotApplicable(f);
    EXPECT_EQ(f->getMissingCode(), QStringLiteral("999"));
    EXPECT_EQ(f->getNotApplicableCode(), QStringLiteral("998"));
}

TYPED_TEST(CSProImport, FieldsAreOfTheImportersVariableClass)
{
    HandModel<TypeParam> m;
    m.item("A", 1);
    TCSProVariable *f = m.copy();
    ASSERT_NE(f, nullptr);
    if (std::is_same<TypeParam, TCSProJsonDataImport>::value) {
        EXPECT_NE(dynamic_cast<TCSProJsonVariable *>(f), nullptr);
    }
}

// ------------------------------------------------------------ the variable

namespace {

struct VariableFixture
{
    TCSProDataImport owner;
    TCSProItem item;
    TCSProVariable field{&owner, &item};

    VariableFixture(int type, int size)
    {
        field.setFieldType(type);
        field.setSize(size);
    }
};

} // namespace

TEST(CSProVariable, MissingWhenTheValueIsExactlyTheItemsMissingCode)
{
    VariableFixture v(1, 3);
    v.item.missingCode = "99";
    v.field.setAsString("99");
    EXPECT_TRUE(v.field.isMissing());
    v.field.setAsString(" 99");
    EXPECT_FALSE(v.field.isMissing());
}

TEST(CSProVariable, NotMissingWhenTheItemHasNoMissingCode)
{
    VariableFixture v(1, 3);
    v.field.setAsString("99");
    EXPECT_FALSE(v.field.isMissing());
}

TEST(CSProVariable, MissingFlagMakesAnyValueMissing)
{
    VariableFixture v(1, 3);
    v.field.setAsString("12");
    v.field.setMissingFlag(true);
    EXPECT_TRUE(v.field.isMissing());
}

TEST(CSProVariable, SetAsStringLeavesTheMissingFlag)
{
    VariableFixture v(1, 3);
    v.field.setMissingFlag(true);
    v.field.setAsString("12");
    EXPECT_TRUE(v.field.getMissingFlag());
    // The base class's assignment clears it.
    static_cast<TGenericField &>(v.field).setAsString("12");
    EXPECT_FALSE(v.field.getMissingFlag());
}

TEST(CSProVariable, NotApplicableWhenTheValueIsExactlyTheItemsCode)
{
    VariableFixture v(1, 3);
    EXPECT_FALSE(v.field.isNotApplicable());
    v.item.notApplCode = "98";
    v.field.setAsString("98");
    EXPECT_TRUE(v.field.isNotApplicable());
    v.field.setAsString("98 ");
    EXPECT_FALSE(v.field.isNotApplicable());
}

TEST(CSProVariable, BlankWhenTheTrimmedValueIsEmpty)
{
    VariableFixture v(3, 4);
    EXPECT_TRUE(v.field.isBlank());
    v.field.setAsString("   ");
    EXPECT_TRUE(v.field.isBlank());
    v.field.setAsString(" x ");
    EXPECT_FALSE(v.field.isBlank());
}

TEST(CSProVariable, GroupIsTheRecordName)
{
    VariableFixture v(1, 1);
    EXPECT_EQ(v.field.getGroup(), QString());
    v.field.setRecordName("PERSON");
    EXPECT_EQ(v.field.getGroup(), QStringLiteral("PERSON"));
}

TEST(CSProVariable, ImpliedDecimalsFollowTheItemsDecimalChar)
{
    VariableFixture v(2, 5);
    v.field.setDecimals("2");
    v.field.setDecimalCharPresent(true);
    v.item.decimalChar = false;
    v.field.setAsString("345");
    EXPECT_DOUBLE_EQ(v.field.getAsFloat(), 3.45);

    v.field.setDecimalCharPresent(false);
    v.item.decimalChar = true;
    v.field.setAsString("345");
    EXPECT_DOUBLE_EQ(v.field.getAsFloat(), 345.0);
}

TEST(CSProVariable, IntegerTextThatDoesNotParseGivesZero)
{
    VariableFixture v(1, 3);
    v.field.setAsString("abc");
    EXPECT_EQ(v.field.getAsInteger(), 0);
    EXPECT_EQ(v.field.getAsString(), QStringLiteral("0"));
    v.field.setAsString("42");
    EXPECT_EQ(v.field.getAsInteger(), 42);
    EXPECT_DOUBLE_EQ(v.field.getRealValue(), 42.0);
}

TEST(CSProVariable, MissingValueKeepsThePreviousNumber)
{
    VariableFixture v(1, 3);
    v.item.missingCode = "999";
    v.field.setMissingCode("999");
    v.field.setAsString("12");
    v.field.setAsString("999");
    EXPECT_DOUBLE_EQ(v.field.getIntegerValue(), 12.0);
    EXPECT_EQ(v.field.getAsString(), QStringLiteral("999"));
}

TEST(CSProVariable, UnsetTypeMarksTheValueBuffer)
{
    VariableFixture v(0, 4);
    v.field.setAsString("1234");
    EXPECT_EQ(v.field.getValue()[0], wchar_t(0x15151515));
    EXPECT_EQ(v.field.getValue()[1], wchar_t(0x15151515));
}

TEST(CSProVariable, JsonVariableIsACSProVariable)
{
    TCSProJsonDataImport owner;
    TCSProItem item;
    item.missingCode = "9";
    TCSProJsonVariable f(&owner, &item);
    f.setFieldType(1);
    f.setSize(1);
    f.setAsString("9");
    EXPECT_TRUE(f.isMissing());
    TCSProDataImport text;
    text.getVarMissingValue(&f);
    EXPECT_EQ(f.getMissingCode(), QStringLiteral("9"));
}

// ------------------------------------------ census dictionaries end to end

namespace {

struct ExpectedField
{
    QString name;
    QString label;
    QString type;
    int start;
    int size;
    int decimals;
    QString minimum;
    QString maximum;
    QString valueLabels;
    QString group;
};

QString occurrence(const QString &name, int k)
{
    return name + QStringLiteral("_") + QChar(k);
}

const QString CensusText = kxtest::samplePath(QStringLiteral("census.dcf"));
const QString CensusJson = kxtest::samplePath(QStringLiteral("census.json"));

// The fields both readers give alike: the identification items and the items
// whose value sets hold single whole-number codes only.
ExpectedField commonField(const char *name, const char *label, int start, int size, const char *minimum,
                          const char *maximum, const char *valueLabels)
{
    return {name, label, "INTEGER", start, size, 0, minimum, maximum, valueLabels, "Common"};
}

ExpectedField integerField(const char *name, const char *label, int start, int size, const char *minimum,
                           const char *maximum, const char *valueLabels, const char *record)
{
    return {name, label, "INTEGER", start, size, 0, minimum, maximum, valueLabels, record};
}

const char *const DwellingLabels = "1 Detached house\t2 Semi-detached house\t3 Apartment or flat\t4 Traditional "
                                   "dwelling\t5 Improvised housing unit\t9 Not reported\t";
const char *const WaterLabels = "11 Piped into dwelling\t12 Piped into yard or plot\t21 Public tap or standpipe\t31 "
                                "Protected well\t32 Unprotected well\t41 River, lake or pond\t96 Other source\t";
const char *const RelationLabels = "1 Head\t2 Spouse or partner\t3 Son or daughter\t4 Parent\t5 Other relative\t6 "
                                   "Non-relative\t9 Not reported\t";
const char *const MaritalLabels = "1 Never married\t2 Married\t3 Consensual union\t4 Separated or divorced\t5 "
                                  "Widowed\t9 Not reported\t";
const char *const SchoolLabels = "1 Attending\t2 Attended in the past\t3 Never attended\t8 Not applicable\t9 Not "
                                 "reported\t";
const char *const CauseLabels = "1 Illness\t2 Accident\t3 Violence\t4 Pregnancy or childbirth\t9 Not known\t";

QList<ExpectedField> censusIdentificationFields()
{
    return {commonField("PROVINCE", "Province", 2, 2, "1", "5",
                        "1 North\t2 South\t3 East\t4 West\t5 Capital district\t"),
            commonField("DISTRICT", "District", 4, 2, "0", "99", ""),
            commonField("URBRUR", "Urban or rural area", 6, 1, "1", "2", "1 Urban\t2 Rural\t"),
            commonField("EA", "Enumeration area", 7, 3, "0", "999", ""),
            commonField("HHNUM", "Household number", 10, 3, "0", "999", "")};
}

// The text dictionary as the text reader gives it: ASSET expanded with the
// occurrence characters 1 to 6; the lines "Name=MISSING,Special" and
// "Name=NOTAPPL,Special" mark nothing, so 9, 99, 999 and 98 stay ordinary
// codes; a range is stored as its two bound codes; the alpha codes keep their
// closing apostrophe; LANDAREA's decimal code 0.5 becomes 0 after the prompt
// is answered Yes; numbers of decimals make REAL fields.
QList<ExpectedField> censusTextFields()
{
    const char *h = "HOUSING", *p = "PERSON", *d = "DEATH";
    QList<ExpectedField> f = censusIdentificationFields();
    f << integerField("DWELLING", "Type of dwelling", 13, 1, "1", "9", DwellingLabels, h)
      << integerField("ROOMS", "Number of rooms", 14, 2, "1", "99", "1 Rooms\t20 Rooms\t99 Not reported\t", h)
      << ExpectedField{"WALLS", "Main material of the outer walls", "STRING", 16, 1, 0, "0", "",
                       "A' Brick or concrete blocks\tB' Wood or timber\tC' Mud or earth\tX' Other material\t", h}
      << integerField("WATER", "Main source of drinking water", 17, 2, "11", "96", WaterLabels, h);
    for (int k = 1; k <= 6; ++k)
        f << ExpectedField{occurrence("ASSET", k), "Household owns the item", "INTEGER", 18 + k, 1, 0, "1", "2",
                           "1 Yes\t2 No\t", h};
    f << ExpectedField{"LANDAREA", "Agricultural land in hectares", "REAL", 25, 5, 1, "0", "999",
                       "0 Under one hectare\t1 One hectare or more\t999 One hectare or more\t", h}
      << ExpectedField{"RENT", "Monthly rent paid", "REAL", 30, 7, 2, "0", "99999", "", h}
      << integerField("HHSIZE", "Persons in the household", 37, 2, "0", "99", "", h)
      << ExpectedField{"ADDRESS", "Street address", "STRING", 39, 30, 0, "", "", "", h}
      << integerField("PLINE", "Person line number", 13, 2, "1", "30", "1 Line\t30 Line\t", p)
      << integerField("RELATION", "Relationship to head of household", 15, 1, "1", "9", RelationLabels, p)
      << integerField("SEX", "Sex", 16, 1, "1", "2", "1 Male\t2 Female\t", p)
      << integerField("AGE", "Age in completed years", 17, 3, "0", "999",
                      "0 Years\t97 Years\t98 98 years or more\t999 Not reported\t", p)
      << integerField("BIRTHDATE", "Date of birth", 20, 6, "0", "999999", "", p)
      << integerField("BIRTHYEAR", "Year of birth", 20, 4, "0", "9999", "", p)
      << integerField("BIRTHMONTH", "Month of birth", 24, 2, "1", "99", "1 Month\t12 Month\t99 Not reported\t", p)
      << integerField("MARITAL", "Marital status", 26, 1, "1", "9", MaritalLabels, p)
      << integerField("SCHOOL", "School attendance", 27, 1, "1", "9", SchoolLabels, p)
      << ExpectedField{"OCCUP", "Occupation (ISCO-08 unit group)", "STRING", 28, 4, 0, "0", "",
                       "1120' Managing directors and chief executives\t2341' Primary school teachers\t6111' Field "
                       "crop and vegetable growers\t7115' Carpenters and joiners\t9999' Not stated\t",
                       p}
      << ExpectedField{"INCOME", "Monthly income from work", "REAL", 32, 8, 2, "0", "999999", "", p}
      << integerField("CHILDREN", "Children ever born", 40, 2, "0", "99",
                      "0 Children\t30 Children\t98 Not applicable\t99 Not reported\t", p)
      << integerField("DLINE", "Line of the deceased", 13, 2, "0", "99", "", d)
      << integerField("DSEX", "Sex of the deceased", 15, 1, "1", "2", "1 Male\t2 Female\t", d)
      << integerField("DAGE", "Age at death", 16, 3, "0", "999",
                      "0 Years\t97 Years\t98 98 years or more\t999 Not reported\t", d)
      << integerField("DCAUSE", "Cause of death", 19, 1, "1", "9", CauseLabels, d);
    return f;
}

// The JSON dictionary as the JSON reader gives it: census.json has relative
// positions and gives record items no "start", so every record's items are
// laid out again from column 1, each after the one before (the identification
// items keep their starts); BIRTHDATE's subitems ("subitem": true) are read
// as items that take columns of their own. ASSET becomes ASSET_1 to _6 each
// with its own value set, no number of decimals is read (LANDAREA, RENT and
// INCOME are whole numbers), entries stay in file order, a range stays one
// code "low:high" that reads as the number 0, and the "special" keys mark
// nothing.
QList<ExpectedField> censusJsonFields()
{
    const char *h = "HOUSING", *p = "PERSON", *d = "DEATH";
    QList<ExpectedField> f = censusIdentificationFields();
    f << integerField("DWELLING", "Type of dwelling", 1, 1, "1", "9", DwellingLabels, h)
      << integerField("ROOMS", "Number of rooms", 2, 2, "0", "99", "0 Rooms\t99 Not reported\t", h)
      << ExpectedField{"WALLS", "Main material of the outer walls", "STRING", 4, 1, 0, "0", "",
                       "A Brick or concrete blocks\tB Wood or timber\tC Mud or earth\tX Other material\t", h}
      << integerField("WATER", "Main source of drinking water", 5, 2, "11", "96", WaterLabels, h);
    for (int k = 1; k <= 6; ++k)
        f << ExpectedField{QStringLiteral("ASSET_%1").arg(k), "Household owns the item", "INTEGER", 6 + k, 1, 0,
                           "1", "2", "1 Yes\t2 No\t", h};
    f << integerField("LANDAREA", "Agricultural land in hectares", 13, 5, "0", "0.5",
                      "0.5 Under one hectare\t0 One hectare or more\t", h)
      << integerField("RENT", "Monthly rent paid", 18, 7, "0", "9999999", "", h)
      << integerField("HHSIZE", "Persons in the household", 25, 2, "0", "99", "", h)
      << ExpectedField{"ADDRESS", "Street address", "STRING", 27, 30, 0, "", "", "", h}
      << integerField("PLINE", "Person line number", 1, 2, "0", "0", "0 Line\t", p)
      << integerField("RELATION", "Relationship to head of household", 3, 1, "1", "9", RelationLabels, p)
      << integerField("SEX", "Sex", 4, 1, "1", "2", "1 Male\t2 Female\t", p)
      << integerField("AGE", "Age in completed years", 5, 3, "0", "999",
                      "0 Years\t98 98 years or more\t999 Not reported\t", p)
      << integerField("BIRTHDATE", "Date of birth", 8, 6, "0", "999999", "", p)
      << integerField("BIRTHYEAR", "Year of birth", 14, 4, "0", "9999", "", p)
      << integerField("BIRTHMONTH", "Month of birth", 18, 2, "0", "99", "0 Month\t99 Not reported\t", p)
      << integerField("MARITAL", "Marital status", 20, 1, "1", "9", MaritalLabels, p)
      << integerField("SCHOOL", "School attendance", 21, 1, "1", "9", SchoolLabels, p)
      << ExpectedField{"OCCUP", "Occupation (ISCO-08 unit group)", "STRING", 22, 4, 0, "0", "",
                       "1120 Managing directors and chief executives\t2341 Primary school teachers\t6111 Field crop "
                       "and vegetable growers\t7115 Carpenters and joiners\t9999 Not stated\t",
                       p}
      << integerField("INCOME", "Monthly income from work", 26, 8, "0", "99999999", "", p)
      << integerField("CHILDREN", "Children ever born", 34, 2, "0", "99",
                      "0 Children\t98 Not applicable\t99 Not reported\t", p)
      << integerField("DLINE", "Line of the deceased", 1, 2, "0", "99", "", d)
      << integerField("DSEX", "Sex of the deceased", 3, 1, "1", "2", "1 Male\t2 Female\t", d)
      << integerField("DAGE", "Age at death", 4, 3, "0", "999", "0 Years\t98 98 years or more\t999 Not reported\t", d)
      << integerField("DCAUSE", "Cause of death", 7, 1, "1", "9", CauseLabels, d);
    return f;
}

void expectSourceFields(const TKxDataProvider &provider, const QList<ExpectedField> &expected,
                        const QString &fieldProviderType)
{
    ASSERT_NE(provider.getSourceFields(), nullptr);
    ASSERT_EQ(provider.getSourceFields()->count(), expected.count());
    for (int i = 0; i < expected.count(); ++i) {
        const ExpectedField &e = expected.at(i);
        const TKxSourceField *f = provider.getSourceFields()->at(i);
        SCOPED_TRACE(qPrintable(e.name));
        EXPECT_EQ(f->getFieldName(), e.name);
        EXPECT_EQ(f->getLabel(), e.label);
        EXPECT_EQ(f->getFieldType(), e.type);
        EXPECT_EQ(f->getStart(), e.start);
        EXPECT_EQ(f->getSize(), e.size);
        EXPECT_EQ(f->getDecimals(), e.decimals);
        EXPECT_EQ(f->getMinimum(), e.minimum);
        EXPECT_EQ(f->getMaximum(), e.maximum);
        EXPECT_EQ(f->getMissingCode(), QString());
        EXPECT_EQ(f->getNotApplicableCode(), QString());
        EXPECT_EQ(f->getValueLabels(), e.valueLabels);
        EXPECT_EQ(f->getGroup(), e.group);
        EXPECT_EQ(f->getDataProviderType(), fieldProviderType);
        // setFieldType stores the name only.
        EXPECT_EQ(f->getFieldTypeIndex(), 0);
    }
}

// A data line of distinct letters shows which columns each field cuts: the
// source field's start is taken as a position counted from 0.
const QString Letters = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ");

void expectRecordLayout(TDataImport &importer, TKxDataProvider &provider)
{
    EXPECT_TRUE(importer.isMultiple());
    EXPECT_EQ(importer.getRecordTypeStart(), 1);
    EXPECT_EQ(importer.getRecordTypeSize(), 1);
    EXPECT_EQ(importer.getGroupCount(), 3);
    EXPECT_EQ(importer.getGroupName(0), QStringLiteral("HOUSING=H"));
    EXPECT_EQ(importer.getGroupName(1), QStringLiteral("PERSON=P"));
    EXPECT_EQ(importer.getGroupName(2), QStringLiteral("DEATH=D"));
    EXPECT_EQ(importer.getGroupValue(1), QStringLiteral("PERSON=P"));
    EXPECT_EQ(importer.getRecordTypeIndex(QStringLiteral("H")), 0);
    EXPECT_EQ(importer.getRecordTypeIndex(QStringLiteral("P")), 1);
    EXPECT_EQ(importer.getRecordTypeIndex(QStringLiteral("D")), 2);
    EXPECT_EQ(importer.getRecordTypeIndex(QStringLiteral("_COMMON_")), -1);

    EXPECT_EQ(provider.getRecordTypeStart(), 1);
    EXPECT_EQ(provider.getRecordTypeSize(), 1);
    ASSERT_NE(provider.getRecordTree(), nullptr);
    EXPECT_EQ(provider.getRecordTree()->getFirstChild(), nullptr);
    EXPECT_EQ(provider.getImportData(), &importer);
    EXPECT_EQ(provider.getLayoutFileName(), importer.getSourceName());

    // Fields of the common record belong to no other record.
    EXPECT_NE(provider.getFieldFromRecord("PROVINCE", "common"), nullptr);
    EXPECT_EQ(provider.getFieldFromRecord("PROVINCE", "PERSON"), nullptr);
    EXPECT_EQ(provider.getFieldFromRecord("AGE", "person"), provider.getField("AGE"));
    EXPECT_EQ(provider.getFieldFromRecord("AGE", "housing"), nullptr);
    EXPECT_EQ(provider.getFieldFromRecord("DAGE", "death"), provider.getField("DAGE"));

    // The record type is cut at position 1 of the line as well.
    provider.setCurrentLine("H0312004221210125B");
    EXPECT_EQ(provider.getRecordTypeValue(), QStringLiteral("0"));
    provider.setCurrentLine(Letters);
    EXPECT_EQ(provider.getRecordTypeValue(), QStringLiteral("B"));
}

void expectCuts(TKxDataProvider &provider, const QList<QPair<QString, QString>> &cuts)
{
    for (const auto &cut : cuts) {
        TKxSourceField *f = provider.getField(cut.first);
        ASSERT_NE(f, nullptr) << qPrintable(cut.first);
        EXPECT_EQ(f->getStringValue(Letters), cut.second) << qPrintable(cut.first);
    }
}

//! The columns of the fields both readers place alike, cut from the line of letters.
QList<QPair<QString, QString>> censusCuts()
{
    const char *const cuts[][2] = {{"PROVINCE", "CD"}, {"DISTRICT", "EF"}, {"URBRUR", "G"}, {"EA", "HIJ"},
                                   {"HHNUM", "KLM"},   {"DWELLING", "N"},  {"ROOMS", "OP"}, {"WALLS", "Q"},
                                   {"WATER", "RS"},    {"LANDAREA", "Z"},  {"PLINE", "NO"}, {"RELATION", "P"},
                                   {"SEX", "Q"},       {"AGE", "RST"},     {"BIRTHDATE", "UVWXYZ"},
                                   {"DLINE", "NO"},    {"DSEX", "P"},      {"DAGE", "QRS"}, {"DCAUSE", "T"}};
    QList<QPair<QString, QString>> out;
    for (const auto &cut : cuts)
        out.append({QLatin1String(cut[0]), QLatin1String(cut[1])});
    return out;
}

} // namespace

TEST(CensusImport, TextDictionaryGivesTheCensusSourceFields)
{
    TCSProDataImport importer(CensusText);
    {
        kxtest::ModalPresser presser({QMessageBox::Yes});
        importer.openFile();
        ASSERT_EQ(presser.seen().size(), 1);
        EXPECT_EQ(presser.seen().at(0).text, QStringLiteral("<b>A decimal number was found</b>"));
    }
    TKxDataProvider provider;
    ASSERT_TRUE(provider.genericGetFieldsFrom(&importer));
    EXPECT_EQ(provider.getDataProviderType(), QStringLiteral("CSPRO"));
    EXPECT_EQ(provider.getDataProviderTypeIndex(), 1);
    EXPECT_EQ(provider.getDataProviderId(), QStringLiteral("CSPRO_") + CensusText);
    expectSourceFields(provider, censusTextFields(), QStringLiteral("CSPRO"));
}

TEST(CensusImport, TextDictionaryRecordLayout)
{
    TCSProDataImport importer(CensusText);
    {
        kxtest::ModalPresser presser({QMessageBox::Yes});
        importer.openFile();
    }
    TKxDataProvider provider;
    provider.genericGetFieldsFrom(&importer);
    expectRecordLayout(importer, provider);
}

TEST(CensusImport, TextDictionaryFieldsCutTheirColumns)
{
    TCSProDataImport importer(CensusText);
    {
        kxtest::ModalPresser presser({QMessageBox::Yes});
        importer.openFile();
    }
    TKxDataProvider provider;
    provider.genericGetFieldsFrom(&importer);
    QList<QPair<QString, QString>> cuts = censusCuts();
    for (int k = 1; k <= 6; ++k)
        cuts.append({occurrence("ASSET", k), QString(Letters.at(18 + k))});
    cuts << qMakePair(QStringLiteral("BIRTHYEAR"), QStringLiteral("UVWX"))
         << qMakePair(QStringLiteral("BIRTHMONTH"), QStringLiteral("YZ"));
    expectCuts(provider, cuts);

    // A housing line cut short after ASSET: LANDAREA, from position 25 on, has nothing.
    const QString housing = QStringLiteral("H03121004221204A11121212");
    EXPECT_EQ(provider.getField("HHNUM")->getStringValue(housing), QStringLiteral("212"));
    TKxSourceField *land = provider.getField("LANDAREA");
    EXPECT_EQ(land->getStringValue(housing), QString());
    EXPECT_TRUE(land->getIsBlankValue());
    // A short person line yields what exists from the start position on.
    TKxSourceField *birth = provider.getField("BIRTHDATE");
    EXPECT_EQ(birth->getStringValue(QStringLiteral("P031210042210121198907")), QStringLiteral("07"));
    EXPECT_FALSE(birth->getIsBlankValue());
}

TEST(CensusImport, TextDictionaryDecimalPromptAnsweredNoDropsTheLandAreaValueSet)
{
    TCSProDataImport importer(CensusText);
    {
        kxtest::ModalPresser presser({QMessageBox::No});
        importer.openFile();
        EXPECT_EQ(presser.seen().size(), 1);
    }
    TGenericField *land = importer.fieldByName("LANDAREA");
    ASSERT_NE(land, nullptr);
    EXPECT_EQ(land->getValueLabels(), QString());
    EXPECT_EQ(land->getMinimum(), QStringLiteral("0"));
    // Decimal character present, length 5: four nines.
    EXPECT_EQ(land->getMaximum(), QStringLiteral("9999"));
}

TEST(CensusImport, PresetYesToAllConvertsDecimalCodesWithoutPrompting)
{
    TCSProDataImport importer(CensusText);
    importer.setDecimalChoice(1, QMessageBox::YesToAll);
    kxtest::ModalPresser presser({QMessageBox::No});
    importer.openFile();
    EXPECT_TRUE(presser.seen().isEmpty());
    TGenericField *land = importer.fieldByName("LANDAREA");
    ASSERT_NE(land, nullptr);
    EXPECT_EQ(land->getValueLabels(), QStringLiteral("0 Under one hectare\t1 One hectare or more\t"
                                                     "999 One hectare or more\t"));
    EXPECT_EQ(importer.getDictionaryReader()->getDecimalMode(), 1);
}

TEST(CensusImport, PresetNoToAllDropsDecimalValueSetsWithoutPrompting)
{
    TCSProDataImport importer(CensusText);
    importer.setDecimalChoice(2, QMessageBox::NoToAll);
    kxtest::ModalPresser presser({QMessageBox::Yes});
    importer.openFile();
    EXPECT_TRUE(presser.seen().isEmpty());
    TGenericField *land = importer.fieldByName("LANDAREA");
    ASSERT_NE(land, nullptr);
    EXPECT_EQ(land->getValueLabels(), QString());
    EXPECT_EQ(land->getMaximum(), QStringLiteral("9999"));
}

TEST(CensusImport, DecimalChoiceEnumPresetsTheMatchingModeAndAnswer)
{
    TCSProDataImport importer(CensusText);
    importer.setDecimalChoice(TDecimalChoice::YesToAll);
    EXPECT_EQ(importer.getPresetDecimalMode(), 1);
    EXPECT_EQ(importer.getPresetDecimalAnswer(), int(QMessageBox::YesToAll));
    importer.setDecimalChoice(TDecimalChoice::NoToAll);
    EXPECT_EQ(importer.getPresetDecimalMode(), 2);
    EXPECT_EQ(importer.getPresetDecimalAnswer(), int(QMessageBox::NoToAll));
    importer.setDecimalChoice(TDecimalChoice::Ask);
    EXPECT_EQ(importer.getPresetDecimalMode(), 0);
}

TEST(CensusImport, DecimalChoiceNoToAllDropsDecimalValueSetsWithoutPrompting)
{
    TCSProDataImport importer(CensusText);
    importer.setDecimalChoice(TDecimalChoice::NoToAll);
    kxtest::ModalPresser presser({QMessageBox::Yes});
    importer.openFile();
    EXPECT_TRUE(presser.seen().isEmpty());
    TGenericField *land = importer.fieldByName("LANDAREA");
    ASSERT_NE(land, nullptr);
    EXPECT_EQ(land->getValueLabels(), QString());
}

TEST(CensusImport, JsonDictionaryGivesTheCensusSourceFields)
{
    TCSProJsonDataImport importer(CensusJson);
    importer.openFile();
    TKxDataProvider provider;
    ASSERT_TRUE(provider.genericGetFieldsFrom(&importer));
    // "CSPRO8" is not a type the provider or its source fields take over.
    EXPECT_EQ(provider.getDataProviderType(), QString());
    EXPECT_EQ(provider.getDataProviderTypeIndex(), 0);
    EXPECT_EQ(provider.getDataProviderId(), QStringLiteral("CSPRO8_") + CensusJson);
    expectSourceFields(provider, censusJsonFields(), QString());
}

TEST(CensusImport, JsonDictionaryRecordLayout)
{
    TCSProJsonDataImport importer(CensusJson);
    importer.openFile();
    TKxDataProvider provider;
    provider.genericGetFieldsFrom(&importer);
    expectRecordLayout(importer, provider);
}

// census.json gives its record items no start: the reading lays every
// record's items out from column 1 again, on top of the record type and the
// identification items (the identification items keep their columns).
TEST(CensusImport, JsonDictionaryFieldsCutTheirColumns)
{
    TCSProJsonDataImport importer(CensusJson);
    importer.openFile();
    TKxDataProvider provider;
    provider.genericGetFieldsFrom(&importer);
    const char *const cuts[][2] = {{"PROVINCE", "CD"}, {"DISTRICT", "EF"},     {"URBRUR", "G"},      {"EA", "HIJ"},
                                   {"HHNUM", "KLM"},   {"DWELLING", "B"},      {"ROOMS", "CD"},      {"WALLS", "E"},
                                   {"WATER", "FG"},    {"LANDAREA", "NOPQR"},  {"PLINE", "BC"},      {"RELATION", "D"},
                                   {"SEX", "E"},       {"AGE", "FGH"},         {"BIRTHDATE", "IJKLMN"},
                                   {"BIRTHYEAR", "OPQR"}, {"BIRTHMONTH", "ST"}, {"DLINE", "BC"},     {"DSEX", "D"},
                                   {"DAGE", "EFG"},    {"DCAUSE", "H"}};
    QList<QPair<QString, QString>> expected;
    for (const auto &cut : cuts)
        expected.append({QLatin1String(cut[0]), QLatin1String(cut[1])});
    // ASSET_1 to _6 start at columns 7 to 12.
    for (int k = 1; k <= 6; ++k)
        expected.append({QStringLiteral("ASSET_%1").arg(k), QString(Letters.at(6 + k))});
    expectCuts(provider, expected);
}

TEST(CensusImport, CensusQuestionnaireCheckedAgainstTheDictionaryRecords)
{
    TCSProDataImport importer(CensusText);
    {
        kxtest::ModalPresser presser({QMessageBox::Yes});
        importer.openFile();
    }
    TCSPro *dictionary = importer.getDictionaryReader();
    ASSERT_EQ(dictionary->getRecordsCount(), 3);
    TKxRecord housing;
    housing.setName(dictionary->getRecord(0)->name);
    housing.setRecordInfo(dictionary->getRecord(0));
    TKxRecord person;
    person.setName(dictionary->getRecord(1)->name);
    person.setRecordInfo(dictionary->getRecord(1));
    housing.addChild(&person);

    QStringList lines{"H0312004221210125B", "P03120042011304519870301", "P03120042022204419890202"};
    TQuestIndex q;
    q.lines = &lines;
    q.recordTypeStart = 0;
    q.recordTypeLength = 1;
    q.assembledText = QStringLiteral("OK");
    EXPECT_EQ(housing.checkQuestionnaire(&q), QStringLiteral("OK\r\nOK\r\nOK\r\n"));
    EXPECT_EQ(q.status, 0);
    EXPECT_EQ(housing.retrieveRecord("PERSON"), &person);
    housing.setFirstChild(nullptr);
}

// ------------------------------------------------------------------ reading notes of the samples

namespace {

struct ExpectedNote
{
    int line;
    const char *subject;
    const char *kind;
};

// The notes' line, subject and kind; their texts are pinned by the reader tests.
void expectNoteKinds(const TReadNotes &notes, const std::vector<ExpectedNote> &expected)
{
    ASSERT_EQ(notes.size(), int(expected.size()));
    for (int i = 0; i < notes.size(); ++i) {
        EXPECT_EQ(notes.at(i).getLine(), expected.at(size_t(i)).line) << "note " << i;
        EXPECT_EQ(notes.at(i).getSubject(), QString::fromUtf8(expected.at(size_t(i)).subject)) << "note " << i;
        EXPECT_EQ(notes.at(i).getKind(), QString::fromLatin1(expected.at(size_t(i)).kind)) << "note " << i;
    }
}

template <class Importer>
TReadNotes notesOfSample(const char *name)
{
    Importer importer(kxtest::samplePath(QString::fromLatin1(name)));
    importer.setDecimalChoice(TDecimalChoice::NoToAll);
    importer.openFile();
    return importer.getReadNotes();
}

} // namespace

TEST(SampleNotes, CensusTextDictionary)
{
    // Every Name=MISSING,Special and Name=NOTAPPL,Special line of the sample;
    // LANDAREA's value set with the code 0.5 dropped by the No to All answer;
    // each range line (Value=1:20, 1:30, 0:97, 1:12, 0:30, 0:97); the quoted
    // codes of WALLS ('A', line 115) and OCCUP ('1120', line 326); ASSET's
    // Occurrences=6 (line 142). A value set's special values are noted as its
    // lines are read, the shape of its codes once it is attached.
    const char *special = "special-not-read";
    const char *range = "range-split";
    const char *quoted = "quoted-code-bent";
    expectNoteKinds(notesOfSample<TCSProDataImport>("census.dcf"),
                    {{89, "DWELLING_VS1", special}, {103, "ROOMS_VS1", special}, {101, "ROOMS_VS1", range},
                     {115, "WALLS_VS1", quoted}, {142, "ASSET", "occurrence-name-control"},
                     {167, "LANDAREA_VS1", "value-set-dropped"}, {209, "PLINE_VS1", range},
                     {227, "RELATION_VS1", special}, {253, "AGE_VS1", special}, {250, "AGE_VS1", range},
                     {280, "BIRTHMONTH_VS1", special}, {278, "BIRTHMONTH_VS1", range}, {297, "MARITAL_VS1", special},
                     {312, "SCHOOL_VS1", special}, {314, "SCHOOL_VS1", special}, {326, "OCCUP_VS1", quoted},
                     {350, "CHILDREN_VS1", special}, {352, "CHILDREN_VS1", special}, {348, "CHILDREN_VS1", range},
                     {393, "DAGE_VS1", special}, {390, "DAGE_VS1", range}, {409, "DCAUSE_VS1", special}});
}

TEST(SampleNotes, CensusJsonDictionary)
{
    // The "special" values, the "range" pairs, ASSET's occurrence labels, the
    // items with "decimals" (noted once the item and its value set are read)
    // and BIRTHDATE's two subitems, each read as an item. The dictionary uses
    // relative positions and its record items give no "start": each of the
    // three records is laid out from column 1, where CSPro starts at 13.
    const char *special = "special-not-read";
    const char *range = "range-code";
    const char *subitem = "subitem-read-as-item";
    const char *relative = "start-not-relative";
    expectNoteKinds(notesOfSample<TCSProJsonDataImport>("census.json"),
                    {{0, "HOUSING", relative}, {0, "DWELLING_VS1", special}, {0, "ROOMS_VS1", range}, {0, "ROOMS_VS1", special},
                     {0, "ASSET", "occurrence-labels-not-read"}, {0, "LANDAREA_VS1", range},
                     {0, "LANDAREA", "decimals-not-read"}, {0, "RENT", "decimals-not-read"},
                     {0, "PERSON", relative}, {0, "PLINE_VS1", range}, {0, "RELATION_VS1", special}, {0, "AGE_VS1", range},
                     {0, "AGE_VS1", special}, {0, "BIRTHYEAR", subitem}, {0, "BIRTHMONTH_VS1", range},
                     {0, "BIRTHMONTH_VS1", special}, {0, "BIRTHMONTH", subitem}, {0, "MARITAL_VS1", special}, {0, "SCHOOL_VS1", special},
                     {0, "SCHOOL_VS1", special}, {0, "INCOME", "decimals-not-read"}, {0, "CHILDREN_VS1", range},
                     {0, "CHILDREN_VS1", special}, {0, "CHILDREN_VS1", special}, {0, "DEATH", relative},
                     {0, "DAGE_VS1", range},
                     {0, "DAGE_VS1", special}, {0, "DCAUSE_VS1", special}});
}

TEST(SampleNotes, LanguagesDictionary)
{
    // Every item label with a segment per language (CLUSTER, HHNO, REGION,
    // LINE, AGE, ACTIVITY, ACTIVITY_YR); REGION_VS1's quoted codes ('N  ' at
    // line 53), two of them padded, and its labels per language; the special
    // values of AGE_VS1 (lines 87, 89, 91), noted before the value set is
    // dropped for "Value=18:59 60 61:64" (line 83); ACTIVITY_VS1's labels per
    // language (line 103) and its MISSING line (107); ACTIVITY_YR_VS1, linked
    // (Link=1, line 118) without values of its own.
    const char *special = "special-not-read";
    const char *languages = "language-labels-joined";
    expectNoteKinds(notesOfSample<TCSProDataImport>("languages.dcf"),
                    {{22, "CLUSTER", languages}, {29, "HHNO", languages}, {44, "REGION", languages},
                     {53, "REGION_VS1", "quoted-code-bent"}, {50, "REGION_VS1", "padded-code-split"},
                     {53, "REGION_VS1", languages}, {66, "LINE", languages}, {73, "AGE", languages},
                     {87, "AGE_VS1", special}, {89, "AGE_VS1", special}, {91, "AGE_VS1", special},
                     {83, "AGE_VS1", "value-set-dropped"}, {94, "ACTIVITY", languages},
                     {107, "ACTIVITY_VS1", special}, {103, "ACTIVITY_VS1", languages},
                     {110, "ACTIVITY_YR", languages}, {118, "ACTIVITY_YR_VS1", "linked-value-set-empty"}});
}

TEST(SampleNotes, CensusRoundTwoDictionary)
{
    // census.dcf's notes, at their new lines, without BIRTHMONTH (removed)
    // and SCHOOL's NOTAPPL line (dropped); LANDHA's value set with the code
    // 0.5 (line 187) dropped by the No to All answer; the new range of HHSIZE
    // (line 206), the quoted codes of WATER (line 150) and ASSET's
    // Occurrences=5 (line 163).
    const char *special = "special-not-read";
    const char *range = "range-split";
    const char *quoted = "quoted-code-bent";
    expectNoteKinds(notesOfSample<TCSProDataImport>("census-round2.dcf"),
                    {{108, "DWELLING_VS1", special}, {122, "ROOMS_VS1", special}, {120, "ROOMS_VS1", range},
                     {134, "WALLS_VS1", quoted}, {150, "WATER_VS1", quoted}, {163, "ASSET", "occurrence-name-control"},
                     {187, "LANDHA_VS1", "value-set-dropped"}, {206, "HHSIZE_VS1", range}, {233, "PLINE_VS1", range},
                     {251, "RELATION_VS1", special}, {277, "AGE_VS1", special}, {274, "AGE_VS1", range},
                     {307, "MARSTAT_VS1", special}, {323, "SCHOOL_VS1", special}, {335, "OCCUP_VS1", quoted},
                     {358, "CHILDREN_VS1", special}, {360, "CHILDREN_VS1", special}, {356, "CHILDREN_VS1", range},
                     {416, "DAGE_VS1", special}, {413, "DAGE_VS1", range}, {432, "DCAUSE_VS1", special}});
}

TEST(SampleNotes, LabourNotesDictionaryShowsSeveralKinds)
{
    expectNoteKinds(notesOfSample<TCSProDataImport>("labour-notes.dcf"),
                    {{32, "PNAME", "key-from-other-line"},
                     {50, "AGE_VS1", "special-not-read"},
                     {47, "AGE_VS1", "range-split"},
                     {61, "HOURS_VS1", "value-set-dropped"},
                     {87, "ACTSEC_VS1", "linked-value-set-empty"},
                     {99, "PLOTAREA_VS1", "value-set-dropped"}});
}

TEST(SampleNotes, NotesAreEmptiedWhenTheNextOpenFileStarts)
{
    TCSProDataImport importer(kxtest::samplePath(QStringLiteral("labour-notes.dcf")));
    importer.setDecimalChoice(TDecimalChoice::NoToAll);
    importer.openFile();
    EXPECT_EQ(importer.getReadNotes().size(), 6);
    importer.openFile();
    EXPECT_EQ(importer.getReadNotes().size(), 6);
}

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

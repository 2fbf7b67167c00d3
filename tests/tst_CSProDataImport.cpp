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

// The text dictionary as the text reader gives it: FACILITY expanded with
// occurrence characters 1 to 3; the MISSING/NOTAPPL lines written
// "Name=MISSING,Special" mark nothing, so 9, 999 and 998 stay ordinary codes;
// value ranges are stored as their two bound codes; the alpha codes 'A' and
// 'X' keep their closing apostrophe and "B:D F:G" adds the pieces B, D, G.
// LANDAREA's decimal code 0.5 becomes 0 after the prompt is answered Yes.
QList<ExpectedField> censusTextFields()
{
    const QString h = QStringLiteral("HOUSING");
    const QString p = QStringLiteral("PERSON");
    const QString c = QStringLiteral("Common");
    QList<ExpectedField> f{
        {"PROVINCE", "Province", "INTEGER", 2, 2, 0, "1", "4", "1 North\t2 South\t3 East\t4 West\t", c},
        {"DISTRICT", "District", "INTEGER", 4, 2, 0, "0", "99", "", c},
        {"HHNUM", "Household number", "INTEGER", 6, 4, 0, "0", "9999", "", c},
        {"DWELLING", "Type of dwelling", "INTEGER", 10, 1, 0, "1", "9",
         "1 Detached house\t2 Apartment\t3 Traditional hut\t9 Not reported\t", h},
    };
    for (int k = 1; k <= 3; ++k)
        f << ExpectedField{occurrence("FACILITY", k), "Facility available", "INTEGER", 10 + k, 1, 0, "1", "2",
                           "1 Yes\t2 No\t", h};
    f << ExpectedField{"LANDAREA", "Land area in hectares", "REAL", 14, 5, 1, "0", "999",
                       "0 Under one hectare\t1 One hectare or more\t99 One hectare or more\t999 Not reported\t", h}
      << ExpectedField{"WATER", "Source of drinking water", "STRING", 19, 1, 0, "0", "",
                       "A' Piped into dwelling\tB Well or spring\tD Well or spring\tD F:G Well or spring\t"
                       "G Well or spring\tX' Other source\t",
                       h}
      << ExpectedField{"LINE", "Person line number", "INTEGER", 10, 2, 0, "0", "99", "", p}
      << ExpectedField{"RELATION", "Relationship to head", "INTEGER", 12, 1, 0, "1", "8",
                       "1 Head\t2 Spouse\t3 Child\t4 Other relative\t8 Other relative\t", p}
      << ExpectedField{"SEX", "Sex", "INTEGER", 13, 1, 0, "1", "2", "1 Male\t2 Female\t", p}
      << ExpectedField{"AGE", "Age in completed years", "INTEGER", 14, 3, 0, "0", "999",
                       "0 \t98 \t998 Not applicable\t999 Not reported\t", p}
      << ExpectedField{"BIRTHDATE", "Date of birth", "INTEGER", 17, 6, 0, "0", "999999", "", p}
      << ExpectedField{"BIRTHYEAR", "Year of birth", "INTEGER", 17, 4, 0, "0", "9999", "", p}
      << ExpectedField{"BIRTHMONTH", "Month of birth", "INTEGER", 21, 2, 0, "1", "12", "1 Month\t12 Month\t", p}
      << ExpectedField{"OCCUP", "Occupation code", "STRING", 23, 4, 0, "", "", "", p};
    return f;
}

// The JSON dictionary as the JSON reader gives it: positions follow the
// running position, FACILITY becomes FACILITY_1 to _3 each with its own
// unsorted value set, no number of decimals is read (LANDAREA is a whole
// number of length 5), subitems are ignored, a range stays one code "1:99"
// that reads as the number 0, and the "special" keys mark nothing.
QList<ExpectedField> censusJsonFields()
{
    const QString h = QStringLiteral("HOUSING");
    const QString p = QStringLiteral("PERSON");
    const QString c = QStringLiteral("Common");
    QList<ExpectedField> f{
        {"PROVINCE", "Province", "INTEGER", 2, 2, 0, "1", "4", "1 North\t2 South\t3 East\t4 West\t", c},
        {"DISTRICT", "District", "INTEGER", 4, 2, 0, "0", "99", "", c},
        {"HHNUM", "Household number", "INTEGER", 6, 4, 0, "0", "9999", "", c},
        {"DWELLING", "Type of dwelling", "INTEGER", 10, 1, 0, "1", "9",
         "1 Detached house\t2 Apartment\t3 Traditional hut\t9 Not reported\t", h},
    };
    for (int k = 1; k <= 3; ++k)
        f << ExpectedField{QStringLiteral("FACILITY_%1").arg(k), "Facility available", "INTEGER", 10 + k, 1, 0,
                           "1", "2", "2 No\t1 Yes\t", h};
    f << ExpectedField{"LANDAREA", "Land area in hectares", "INTEGER", 14, 5, 0, "0", "999",
                       "0.5 Under one hectare\t0 One hectare or more\t999 Not reported\t", h}
      << ExpectedField{"WATER", "Source of drinking water", "STRING", 19, 1, 0, "0", "",
                       "A Piped into dwelling\tB:D Well or spring\tX Other source\t", h}
      << ExpectedField{"LINE", "Person line number", "INTEGER", 10, 2, 0, "0", "99", "", p}
      << ExpectedField{"RELATION", "Relationship to head", "INTEGER", 12, 1, 0, "0", "3",
                       "1 Head\t2 Spouse\t3 Child\t0 Other relative\t", p}
      << ExpectedField{"SEX", "Sex", "INTEGER", 13, 1, 0, "1", "2", "1 Male\t2 Female\t", p}
      << ExpectedField{"AGE", "Age in completed years", "INTEGER", 14, 3, 0, "0", "999",
                       "0 \t999 Not reported\t998 Not applicable\t", p}
      << ExpectedField{"BIRTHDATE", "Date of birth", "INTEGER", 17, 6, 0, "0", "999999", "", p}
      << ExpectedField{"OCCUP", "Occupation code", "STRING", 23, 4, 0, "", "", "", p};
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
    EXPECT_EQ(importer.getGroupCount(), 2);
    EXPECT_EQ(importer.getGroupName(0), QStringLiteral("HOUSING=H"));
    EXPECT_EQ(importer.getGroupName(1), QStringLiteral("PERSON=P"));
    EXPECT_EQ(importer.getGroupValue(1), QStringLiteral("PERSON=P"));
    EXPECT_EQ(importer.getRecordTypeIndex(QStringLiteral("H")), 0);
    EXPECT_EQ(importer.getRecordTypeIndex(QStringLiteral("P")), 1);
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

} // namespace

TEST(CensusImport, TextDictionaryGivesTheCensusSourceFields)
{
    TCSProDataImport importer(kxtest::dataPath("census.dcf"));
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
    EXPECT_EQ(provider.getDataProviderId(), QStringLiteral("CSPRO_") + kxtest::dataPath("census.dcf"));
    expectSourceFields(provider, censusTextFields(), QStringLiteral("CSPRO"));
}

TEST(CensusImport, TextDictionaryRecordLayout)
{
    TCSProDataImport importer(kxtest::dataPath("census.dcf"));
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
    TCSProDataImport importer(kxtest::dataPath("census.dcf"));
    {
        kxtest::ModalPresser presser({QMessageBox::Yes});
        importer.openFile();
    }
    TKxDataProvider provider;
    provider.genericGetFieldsFrom(&importer);
    expectCuts(provider, {{"PROVINCE", "CD"},
                          {"DISTRICT", "EF"},
                          {"HHNUM", "GHIJ"},
                          {"DWELLING", "K"},
                          {occurrence("FACILITY", 1), "L"},
                          {occurrence("FACILITY", 2), "M"},
                          {occurrence("FACILITY", 3), "N"},
                          {"LANDAREA", "OPQRS"},
                          {"WATER", "T"},
                          {"LINE", "KL"},
                          {"RELATION", "M"},
                          {"SEX", "N"},
                          {"AGE", "OPQ"},
                          {"BIRTHDATE", "RSTUVW"},
                          {"BIRTHYEAR", "RSTU"},
                          {"BIRTHMONTH", "VW"},
                          {"OCCUP", "XYZ"}});

    // A housing line of the census: position 19 is past its end.
    const QString housing = QStringLiteral("H0312004221210125B");
    EXPECT_EQ(provider.getField("HHNUM")->getStringValue(housing), QStringLiteral("0422"));
    EXPECT_EQ(provider.getField("LANDAREA")->getStringValue(housing), QStringLiteral("125B"));
    TKxSourceField *water = provider.getField("WATER");
    EXPECT_EQ(water->getStringValue(housing), QString());
    EXPECT_TRUE(water->getIsBlankValue());
    // A short person line yields what exists from the start position on.
    TKxSourceField *birth = provider.getField("BIRTHDATE");
    EXPECT_EQ(birth->getStringValue(QStringLiteral("P031200420113045198")), QStringLiteral("98"));
    EXPECT_FALSE(birth->getIsBlankValue());
}

TEST(CensusImport, TextDictionaryDecimalPromptAnsweredNoDropsTheLandAreaValueSet)
{
    TCSProDataImport importer(kxtest::dataPath("census.dcf"));
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
    TCSProDataImport importer(kxtest::dataPath("census.dcf"));
    importer.setDecimalChoice(1, QMessageBox::YesToAll);
    kxtest::ModalPresser presser({QMessageBox::No});
    importer.openFile();
    EXPECT_TRUE(presser.seen().isEmpty());
    TGenericField *land = importer.fieldByName("LANDAREA");
    ASSERT_NE(land, nullptr);
    EXPECT_EQ(land->getValueLabels(), QStringLiteral("0 Under one hectare\t1 One hectare or more\t"
                                                     "99 One hectare or more\t999 Not reported\t"));
    EXPECT_EQ(importer.getDictionaryReader()->getDecimalMode(), 1);
}

TEST(CensusImport, PresetNoToAllDropsDecimalValueSetsWithoutPrompting)
{
    TCSProDataImport importer(kxtest::dataPath("census.dcf"));
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
    TCSProDataImport importer(kxtest::dataPath("census.dcf"));
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
    TCSProDataImport importer(kxtest::dataPath("census.dcf"));
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
    TCSProJsonDataImport importer(kxtest::dataPath("census.json"));
    importer.openFile();
    TKxDataProvider provider;
    ASSERT_TRUE(provider.genericGetFieldsFrom(&importer));
    // "CSPRO8" is not a type the provider or its source fields take over.
    EXPECT_EQ(provider.getDataProviderType(), QString());
    EXPECT_EQ(provider.getDataProviderTypeIndex(), 0);
    EXPECT_EQ(provider.getDataProviderId(), QStringLiteral("CSPRO8_") + kxtest::dataPath("census.json"));
    expectSourceFields(provider, censusJsonFields(), QString());
}

TEST(CensusImport, JsonDictionaryRecordLayout)
{
    TCSProJsonDataImport importer(kxtest::dataPath("census.json"));
    importer.openFile();
    TKxDataProvider provider;
    provider.genericGetFieldsFrom(&importer);
    expectRecordLayout(importer, provider);
}

TEST(CensusImport, JsonDictionaryFieldsCutTheirColumns)
{
    TCSProJsonDataImport importer(kxtest::dataPath("census.json"));
    importer.openFile();
    TKxDataProvider provider;
    provider.genericGetFieldsFrom(&importer);
    expectCuts(provider, {{"PROVINCE", "CD"},
                          {"DISTRICT", "EF"},
                          {"HHNUM", "GHIJ"},
                          {"DWELLING", "K"},
                          {"FACILITY_1", "L"},
                          {"FACILITY_2", "M"},
                          {"FACILITY_3", "N"},
                          {"LANDAREA", "OPQRS"},
                          {"WATER", "T"},
                          {"LINE", "KL"},
                          {"RELATION", "M"},
                          {"SEX", "N"},
                          {"AGE", "OPQ"},
                          {"BIRTHDATE", "RSTUVW"},
                          {"OCCUP", "XYZ"}});
}

TEST(CensusImport, CensusQuestionnaireCheckedAgainstTheDictionaryRecords)
{
    TCSProDataImport importer(kxtest::dataPath("census.dcf"));
    {
        kxtest::ModalPresser presser({QMessageBox::Yes});
        importer.openFile();
    }
    TCSPro *dictionary = importer.getDictionaryReader();
    ASSERT_EQ(dictionary->getRecordsCount(), 2);
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
    Importer importer(QStringLiteral(KX_SAMPLES_DIR "/") + QString::fromLatin1(name));
    importer.setDecimalChoice(TDecimalChoice::NoToAll);
    importer.openFile();
    return importer.getReadNotes();
}

} // namespace

TEST(SampleNotes, CensusTextDictionary)
{
    // Every Name=MISSING,Special and Name=NOTAPPL,Special line of the sample, and
    // LANDAREA's value set with the code 0.5 dropped by the No to All answer.
    const char *special = "special-not-read";
    expectNoteKinds(notesOfSample<TCSProDataImport>("census.dcf"),
                    {{89, "DWELLING_VS1", special}, {103, "ROOMS_VS1", special},
                     {167, "LANDAREA_VS1", "value-set-dropped"}, {227, "RELATION_VS1", special},
                     {253, "AGE_VS1", special}, {280, "BIRTHMONTH_VS1", special}, {297, "MARITAL_VS1", special},
                     {312, "SCHOOL_VS1", special}, {314, "SCHOOL_VS1", special}, {350, "CHILDREN_VS1", special},
                     {352, "CHILDREN_VS1", special}, {393, "DAGE_VS1", special}, {409, "DCAUSE_VS1", special}});
}

TEST(SampleNotes, CensusJsonDictionary)
{
    // The "special" values, the "range" pairs, ASSET's occurrence labels and
    // the items with "decimals" (noted once the item and its value set are read).
    const char *special = "special-not-read";
    const char *range = "range-code";
    expectNoteKinds(notesOfSample<TCSProJsonDataImport>("census.json"),
                    {{0, "DWELLING_VS1", special}, {0, "ROOMS_VS1", range}, {0, "ROOMS_VS1", special},
                     {0, "ASSET", "occurrence-labels-not-read"}, {0, "LANDAREA_VS1", range},
                     {0, "LANDAREA", "decimals-not-read"}, {0, "RENT", "decimals-not-read"},
                     {0, "PLINE_VS1", range}, {0, "RELATION_VS1", special}, {0, "AGE_VS1", range},
                     {0, "AGE_VS1", special}, {0, "MARITAL_VS1", special}, {0, "SCHOOL_VS1", special},
                     {0, "SCHOOL_VS1", special}, {0, "INCOME", "decimals-not-read"}, {0, "CHILDREN_VS1", range},
                     {0, "CHILDREN_VS1", special}, {0, "CHILDREN_VS1", special}, {0, "DAGE_VS1", range},
                     {0, "DAGE_VS1", special}, {0, "DCAUSE_VS1", special}});
}

TEST(SampleNotes, LabourNotesDictionaryShowsSeveralKinds)
{
    expectNoteKinds(notesOfSample<TCSProDataImport>("labour-notes.dcf"),
                    {{32, "PNAME", "key-from-other-line"},
                     {50, "AGE_VS1", "special-not-read"},
                     {61, "HOURS_VS1", "value-set-dropped"},
                     {87, "ACTSEC_VS1", "linked-value-set-empty"},
                     {99, "PLOTAREA_VS1", "value-set-dropped"}});
}

TEST(SampleNotes, NotesAreEmptiedWhenTheNextOpenFileStarts)
{
    TCSProDataImport importer(QStringLiteral(KX_SAMPLES_DIR "/labour-notes.dcf"));
    importer.setDecimalChoice(TDecimalChoice::NoToAll);
    importer.openFile();
    EXPECT_EQ(importer.getReadNotes().size(), 5);
    importer.openFile();
    EXPECT_EQ(importer.getReadNotes().size(), 5);
}

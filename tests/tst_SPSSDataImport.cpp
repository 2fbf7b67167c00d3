#include "model_KelAdmin.h"

#include "FixtureReadStat.h"
#include "FixtureReadStatRecords.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

using namespace kxtest;
using Type = ReadStatFile::Type;
using Container = ReadStatFile::Container;

namespace {

// One variable per rule; the rows give the file a data section.
ReadStatFile sampleSav(Container container)
{
    ReadStatFile f;
    f.container = container;
    f.rows = 3;
    f.labelSets << readStatLabelSet("whole", Type::Double, {numericLabel(1, "Male"), numericLabel(2, "Female")})
                << readStatLabelSet("half", Type::Double, {numericLabel(1.5, "Half")})
                << readStatLabelSet("minus", Type::Double, {numericLabel(-1, "Minus"), numericLabel(3, "Three")})
                << readStatLabelSet("minushalf", Type::Double, {numericLabel(-1.5, "Below"), numericLabel(4, "Four")})
                << readStatLabelSet("realminus", Type::Double,
                                    {numericLabel(-1, "Minus"), numericLabel(2.5, "TwoHalf")})
                << readStatLabelSet("codes", Type::String, {stringLabel("abc", "ABC")})
                << readStatLabelSet("long", Type::String, {stringLabel("longvalue1", "Long value")});
    f.variables << readStatVariable("sex", Type::Double, "F3.0", "Sex of person", "whole")
                << readStatVariable("income", Type::Double, "F8.2", "Income", "half")
                << readStatVariable("wide", Type::Double, "F10.2")
                << readStatVariable("amount", Type::Double, "COMMA9.2")
                << readStatVariable("plain", Type::Double, "F3.0")
                << readStatVariable("minus", Type::Double, "F3.0", "", "minus")
                << readStatVariable("minushalf", Type::Double, "F3.0", "", "minushalf")
                << readStatVariable("realminus", Type::Double, "F8.2", "", "realminus")
                << readStatVariable("code", Type::String, "A5", "Short code", "codes", 5)
                << readStatVariable("comment", Type::String, "A20", "", "long", 20);
    return f;
}

const QList<ExpectedField> sampleExpectedField = {
    {"sex", "Sex of person", 1, 3, "1", "2", "1 Male\t2 Female\t"},
    {"income", "Income", 2, 8, "1.5", "1.5", "1.500000 Half\t"},
    {"wide", "", 2, 1, "0", "9", ""},
    {"amount", "", 2, 0, "0", "", ""},
    {"plain", "", 1, 3, "0", "999", ""},
    {"minus", "", 1, 3, "3", "3", "3 Three\t"},
    {"minushalf", "", 1, 3, "4", "4", "4 Four\t"},
    {"realminus", "", 2, 8, "2.5", "2.5", "2.500000 TwoHalf\t"},
    {"code", "Short code", 3, 5, "", "", "abc ABC\t"},
    {"comment", "", 3, 2, "", "", "longvalue1 Long value\t"},
};

ExpectedField expectedFor(const char *name)
{
    for (const ExpectedField &e : sampleExpectedField) {
        if (qstrcmp(e.name, name) == 0)
            return e;
    }
    return ExpectedField{};
}

class SpssSample : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QString error;
        path = writeReadStatFile(dir, QStringLiteral("sample.sav"), sampleSav(Container::Sav), &error);
        ASSERT_FALSE(path.isEmpty()) << error.toStdString();
        importer = new TSPSSDataImport(path);
        ASSERT_TRUE(importer->openFile());
    }
    void TearDown() override { delete importer; }

    void expectVariable(const char *name)
    {
        expectField(importer->fieldByName(QString::fromLatin1(name)), expectedFor(name));
    }

    QTemporaryDir dir;
    QString path;
    TSPSSDataImport *importer = nullptr;
};

// --- the variable class ---------------------------------------------------

TEST(SpssVariable, ConstructorSetsImportFlag)
{
    TSPSSVariable v(nullptr);
    EXPECT_TRUE(v.getImportFlag());
}

TEST(SpssVariable, IsAlwaysMissingAndNeverNotApplicable)
{
    TSPSSVariable v(nullptr);
    v.setFieldType(1);
    v.setSize(3);
    v.setMissingCode(QStringLiteral("-9"));
    v.setAsString(QStringLiteral("12"));
    EXPECT_TRUE(v.isMissing());
    EXPECT_FALSE(v.isNotApplicable());
    EXPECT_EQ(v.getAsString(), QStringLiteral("-9"));
}

TEST(SpssVariable, NumericFieldIsNeverBlank)
{
    TSPSSVariable v(nullptr);
    v.setFieldType(2);
    v.setSize(5);
    v.setAsString(QStringLiteral("   "));
    EXPECT_FALSE(v.isBlank());
}

TEST(SpssVariable, StringFieldIsBlankExactlyWhenTrimmedValueIsEmpty)
{
    TSPSSVariable v(nullptr);
    v.setFieldType(3);
    v.setSize(5);
    v.setAsString(QStringLiteral("  \t "));
    EXPECT_TRUE(v.isBlank());
    v.setAsString(QStringLiteral(" x "));
    EXPECT_FALSE(v.isBlank());
}

// --- identity -------------------------------------------------------------

TEST(SpssImport, TypeIsSpssAndIdIsSpssUnderscoreSourceName)
{
    TSPSSDataImport importer(QStringLiteral("/data/survey.sav"));
    EXPECT_EQ(importer.getDataProviderType(), QStringLiteral("SPSS"));
    EXPECT_EQ(importer.getDataProviderId(), QStringLiteral("SPSS_/data/survey.sav"));
}

TEST(SpssImport, OpenFileReturnsTrueAndSetsOpeningValueToOne)
{
    QTemporaryDir dir;
    const QString path = writeReadStatFile(dir, QStringLiteral("s.sav"), sampleSav(Container::Sav));
    TSPSSDataImport importer(path);
    EXPECT_TRUE(importer.openFile());
    EXPECT_EQ(importer.getOpeningValue(), 1.0);
}

// --- the dictionary of each SAV flavour -----------------------------------

class SpssContainers : public ::testing::TestWithParam<Container>
{
};

TEST_P(SpssContainers, ListsEveryVariableInFileOrderWithItsDescription)
{
    QTemporaryDir dir;
    QString error;
    const QString path = writeReadStatFile(dir, QStringLiteral("c.sav"), sampleSav(GetParam()), &error);
    ASSERT_FALSE(path.isEmpty()) << error.toStdString();
    TSPSSDataImport importer(path);
    importer.openFile();
    ASSERT_EQ(importer.getFieldCount(), sampleExpectedField.size());
    for (int i = 0; i < sampleExpectedField.size(); ++i) {
        expectField(importer.getField(i), sampleExpectedField.at(i));
        EXPECT_NE(dynamic_cast<TSPSSVariable *>(importer.getField(i)), nullptr);
    }
}

INSTANTIATE_TEST_SUITE_P(Flavours, SpssContainers,
                         ::testing::Values(Container::Sav, Container::SavCompressed, Container::Zsav),
                         [](const ::testing::TestParamInfo<Container> &info) {
                             switch (info.param) {
                             case Container::Sav:
                                 return std::string("Uncompressed");
                             case Container::SavCompressed:
                                 return std::string("RowCompressed");
                             case Container::Zsav:
                                 return std::string("Zsav");
                             default:
                                 return std::string("Other");
                             }
                         });

// --- the variable rules ---------------------------------------------------

TEST_F(SpssSample, RealWithoutDecimalsIsIntegerAndPrintsItsLabelledValuesAsIntegers)
{
    expectVariable("sex");
}

TEST_F(SpssSample, RealWithDecimalsPrintsSixDecimalsAndBoundsInGeneralFormat)
{
    expectVariable("income");
}

TEST_F(SpssSample, WidthIsTheSecondCharacterOfTheFormatSoF10Gives1)
{
    expectVariable("wide");
}

TEST_F(SpssSample, FormatWhoseSecondCharacterIsNoDigitGivesWidth0AndEmptyUpperBound)
{
    expectVariable("amount");
}

TEST_F(SpssSample, UnlabelledNumericGetsBounds0AndNineRepeatedWidthTimes)
{
    expectVariable("plain");
}

TEST_F(SpssSample, StringGetsNoBoundsEmptyNotApplicableCodeAndStringValuesAsTheyStand)
{
    expectVariable("code");
    TGenericField *code = importer->fieldByName(QStringLiteral("code"));
    ASSERT_NE(code, nullptr);
    EXPECT_FALSE(code->getNotApplicableCode().isNull());
    EXPECT_TRUE(code->getNotApplicableCode().isEmpty());
    EXPECT_TRUE(importer->fieldByName(QStringLiteral("sex"))->getNotApplicableCode().isNull());
}

TEST_F(SpssSample, StringWiderThan8BytesStillGetsItsValueLabels)
{
    expectVariable("comment");
}

TEST_F(SpssSample, ValueLabelForMinusOneIsLeftOutOfAWholeNumberVariable)
{
    expectVariable("minus");
}

TEST_F(SpssSample, ValueLabelWhoseDoubleTruncatesToMinusOneIsLeftOut)
{
    expectVariable("minushalf");
}

TEST_F(SpssSample, ValueLabelForMinusOneIsLeftOutOfARealVariable)
{
    expectVariable("realminus");
}

TEST_F(SpssSample, OpeningTheSameImporterTwiceListsEachVariableTwice)
{
    const int n = sampleExpectedField.size();
    ASSERT_EQ(importer->getFieldCount(), n);
    importer->openFile();
    ASSERT_EQ(importer->getFieldCount(), 2 * n);
    for (int i = 0; i < n; ++i) {
        EXPECT_EQ(importer->getField(i)->getName(), QString::fromLatin1(sampleExpectedField.at(i).name));
        EXPECT_EQ(importer->getField(n + i)->getName(), QString::fromLatin1(sampleExpectedField.at(i).name));
        EXPECT_NE(importer->getField(i), importer->getField(n + i));
    }
    // The name index holds the later copy.
    EXPECT_EQ(importer->fieldByName(QStringLiteral("sex")), importer->getField(n));
}

TEST_F(SpssSample, SelectLayoutSourceOpensAgainAndListsTheNames)
{
    MessageCollector log;
    QStringList *names = importer->selectLayoutSource();
    ASSERT_NE(names, nullptr);
    EXPECT_TRUE(log.contains(QStringLiteral("DataImport - selectLayoutSource")));
    // A second open: every name twice.
    EXPECT_EQ(names->size(), 2 * sampleExpectedField.size());
    EXPECT_EQ(names->first(), QStringLiteral("sex"));
    delete names;
}

TEST_F(SpssSample, LabelSetsAreEmptiedAtTheStartOfEveryRead)
{
    EXPECT_FALSE(importer->getLabelSetNames().isEmpty());
    importer->openRead(dir.filePath(QStringLiteral("absent.sav")));
    EXPECT_TRUE(importer->getLabelSetNames().isEmpty());
}

TEST_F(SpssSample, MetadataCallbackIsNotRegistered)
{
    EXPECT_EQ(importer->getRowCount(), 0);
    EXPECT_EQ(importer->getVariableCount(), 0);
}

// Entries are truncated in place, so a later variable sharing the set sees
// integers even when it has decimals.
TEST(SpssRules, EntriesTruncatedForAWholeNumberVariableStayTruncatedForTheNextSharingTheSet)
{
    ReadStatFile f;
    f.labelSets << readStatLabelSet("half", Type::Double, {numericLabel(1.5, "Half")});
    f.variables << readStatVariable("first", Type::Double, "F3.0", "", "half")
                << readStatVariable("second", Type::Double, "F8.2", "", "half");
    QTemporaryDir dir;
    TSPSSDataImport importer(writeReadStatFile(dir, QStringLiteral("shared.sav"), f));
    importer.openFile();
    expectField(importer.fieldByName(QStringLiteral("first")), {"first", "", 1, 3, "1", "1", "1 Half\t"});
    expectField(importer.fieldByName(QStringLiteral("second")), {"second", "", 2, 8, "1", "1", "1 Half\t"});
}

// --- reading the file -----------------------------------------------------

TEST(SpssFile, HeaderDateWithNonEnglishMonthIsRead)
{
    QTemporaryDir dir;
    const QString path = writeReadStatFile(dir, QStringLiteral("dic.sav"), sampleSav(Container::Sav));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.seek(92));
    ASSERT_EQ(file.write("18 Dic 20", 9), 9);
    file.close();

    // ReadStat on its own rejects the file.
    readstat_parser_t *parser = readstat_parser_init();
    EXPECT_EQ(readstat_parse_sav(parser, QFile::encodeName(path).constData(), nullptr),
              READSTAT_ERROR_BAD_TIMESTAMP_STRING);
    readstat_parser_free(parser);

    TSPSSDataImport importer(path);
    importer.openFile();
    ASSERT_EQ(importer.getFieldCount(), sampleExpectedField.size());
    for (int i = 0; i < sampleExpectedField.size(); ++i)
        expectField(importer.getField(i), sampleExpectedField.at(i));
}

TEST(SpssFile, DataSectionIsNotRead)
{
    ReadStatFile f = sampleSav(Container::Sav);
    f.rows = 500;
    QTemporaryDir dir;
    const QString path = writeReadStatFile(dir, QStringLiteral("rows.sav"), f);
    QFile file(path);
    ASSERT_GT(file.size(), 20000);
    ASSERT_TRUE(file.resize(file.size() - 10000));

    TSPSSDataImport importer(path);
    importer.openFile();
    ASSERT_EQ(importer.getFieldCount(), sampleExpectedField.size());
    expectField(importer.getField(0), sampleExpectedField.at(0));
}

TEST(SpssFile, MissingFileGivesNoFieldsAndNoMessage)
{
    QTemporaryDir dir;
    TSPSSDataImport importer(dir.filePath(QStringLiteral("absent.sav")));
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_TRUE(importer.openFile());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), std::string());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), std::string());
    EXPECT_EQ(importer.getFieldCount(), 0);
}

TEST(SpssFile, TruncatedOrForeignFilesGiveNoFields)
{
    QTemporaryDir dir;
    const QByteArray whole = readStatBytes(sampleSav(Container::Sav));
    const QList<QByteArray> inputs = {QByteArray(), whole.left(4), whole.left(100), whole.left(180),
                                      whole.left(400), QByteArray("$FL2") + QByteArray(1000, '\xff'),
                                      QByteArray(5000, 'x')};
    for (int i = 0; i < inputs.size(); ++i) {
        TSPSSDataImport importer(writeFile(dir, QStringLiteral("bad%1.sav").arg(i), inputs.at(i)));
        importer.openFile();
        EXPECT_EQ(importer.getFieldCount(), 0) << "input " << i;
    }
}

// --- the callbacks, with records a file cannot deliver --------------------

TEST(SpssCallbacks, LabelSetThatNoVariableNamesIsKeptButUsedByNoField)
{
    TSPSSDataImport importer;
    handle_value_label_spss("used", readStatDouble(1), "One", &importer);
    handle_value_label_spss("unused", readStatDouble(7), "Seven", &importer);
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_DOUBLE, "v", "F3.0");
    handle_variable_spss(0, &v, "used", &importer);
    EXPECT_EQ(importer.getLabelSetNames(), QStringList({QStringLiteral("unused"), QStringLiteral("used")}));
    ASSERT_EQ(importer.getVariables().size(), 1);
    EXPECT_EQ(importer.getVariables().first()->getValueLabels(), QStringLiteral("1 One\t"));
}

TEST(SpssCallbacks, ValueLabelWithoutLabelIsDroppedButItsSetIsCreated)
{
    TSPSSDataImport importer;
    handle_value_label_spss("set", readStatDouble(1), nullptr, &importer);
    EXPECT_EQ(importer.getLabelSetNames(), QStringList(QStringLiteral("set")));
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_DOUBLE, "v", "F3.0");
    handle_variable_spss(0, &v, "set", &importer);
    expectField(importer.getVariables().first(), {"v", "", 1, 3, "0", "999", ""});
}

TEST(SpssCallbacks, StringReferenceValueBecomesTheMarkerMinus88)
{
    TSPSSDataImport importer;
    handle_value_label_spss("set", readStatValue(READSTAT_TYPE_STRING_REF), "Ref", &importer);
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_DOUBLE, "v", "F8.2");
    handle_variable_spss(0, &v, "set", &importer);
    expectField(importer.getVariables().first(), {"v", "", 2, 8, "-88", "-88", "-88 Ref\t"});
}

TEST(SpssCallbacks, IntegerValuesAreSignExtendedAndFloatsTakenAsDoubles)
{
    TSPSSDataImport importer;
    readstat_value_t i8 = readStatValue(READSTAT_TYPE_INT8);
    i8.v.i8_value = -5;
    readstat_value_t i16 = readStatValue(READSTAT_TYPE_INT16);
    i16.v.i16_value = -300;
    readstat_value_t f = readStatValue(READSTAT_TYPE_FLOAT);
    f.v.float_value = 2.5f;
    handle_value_label_spss("set", i8, "a", &importer);
    handle_value_label_spss("set", i16, "b", &importer);
    handle_value_label_spss("set", readStatInt32(70000), "c", &importer);
    handle_value_label_spss("set", f, "d", &importer);
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_DOUBLE, "v", "F8.2");
    handle_variable_spss(0, &v, "set", &importer);
    expectField(importer.getVariables().first(),
                {"v", "", 2, 8, "-300", "70000", "-5 a\t-300 b\t70000 c\t2.500000 d\t"});
}

TEST(SpssCallbacks, IntegerStorageTypesGiveIntegerFields)
{
    TSPSSDataImport importer;
    for (readstat_type_t t : {READSTAT_TYPE_INT8, READSTAT_TYPE_INT16, READSTAT_TYPE_INT32}) {
        readstat_variable_t v = readStatRecord(t, "i", "F8.2");
        handle_variable_spss(0, &v, nullptr, &importer);
    }
    ASSERT_EQ(importer.getVariables().size(), 3);
    for (TGenericField *field : importer.getVariables())
        EXPECT_EQ(field->getFieldType(), 1);
}

TEST(SpssCallbacks, StringReferenceVariableIsReadAsString)
{
    TSPSSDataImport importer;
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_STRING_REF, "s", "A9");
    handle_variable_spss(0, &v, nullptr, &importer);
    expectField(importer.getVariables().first(), {"s", "", 3, 9, "", "", ""});
}

TEST(SpssCallbacks, AbsentNameLabelAndFormatGiveEmptyTextsAndWidth0)
{
    TSPSSDataImport importer;
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_DOUBLE, "", "", "");
    ASSERT_EQ(readstat_variable_get_name(&v), nullptr);
    ASSERT_EQ(readstat_variable_get_format(&v), nullptr);
    handle_variable_spss(0, &v, nullptr, &importer);
    expectField(importer.getVariables().first(), {"", "", 1, 0, "0", "", ""});
}

TEST(SpssCallbacks, HugeLabelledNumberInAWholeNumberVariableIsClampedToTheIntegerRange)
{
    TSPSSDataImport importer;
    handle_value_label_spss("set", readStatDouble(1e12), "Big", &importer);
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_DOUBLE, "v", "F9.0");
    handle_variable_spss(0, &v, "set", &importer);
    EXPECT_EQ(importer.getVariables().first()->getValueLabels(), QStringLiteral("2147483647 Big\t"));
}

TEST(SpssCallbacks, MetadataCallbackCopiesRowAndVariableCounts)
{
    TSPSSDataImport importer;
    readstat_metadata_t metadata;
    std::memset(&metadata, 0, sizeof metadata);
    metadata.row_count = 42;
    metadata.var_count = 7;
    EXPECT_EQ(handle_metadata_spss(&metadata, &importer), 0);
    EXPECT_EQ(importer.getRowCount(), 42);
    EXPECT_EQ(importer.getVariableCount(), 7);
}

// ReadStat 1.1.8 delivers SAV value labels only as doubles and strings, so an
// unknown type can only be handed to the callback directly.
TEST(SpssCallbacksDeathTest, UnknownValueTypeEndsTheProcessWithStatus1)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    TSPSSDataImport importer;
    EXPECT_EXIT(handle_value_label_spss("set", readStatValue(static_cast<readstat_type_t>(42)), "x", &importer),
                ::testing::ExitedWithCode(1), "model_KelAdmin/SPSSDataImport:304 unsupported type!\n");
}

} // namespace

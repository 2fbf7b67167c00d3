#include "model_KelAdmin.h"

#include "FixtureReadStat.h"
#include "FixtureReadStatRecords.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

using namespace kxtest;
using Type = ReadStatFile::Type;

namespace {

// One variable per rule; strL variables exist from version 117 on.
ReadStatFile sampleDta(int version, int rows = 3)
{
    ReadStatFile f;
    f.container = ReadStatFile::Container::Dta;
    f.dtaVersion = version;
    f.rows = rows;
    f.labelSets << readStatLabelSet("sexl", Type::Int32, {numericLabel(1, "Male"), numericLabel(2, "Female")})
                << readStatLabelSet("minus", Type::Int32, {numericLabel(-1, "Minus"), numericLabel(3, "Three")})
                << readStatLabelSet("unused", Type::Int32, {numericLabel(7, "Seven")});
    f.variables << readStatVariable("sex", Type::Int8, "%8.0g", "Sex of person", "sexl")
                << readStatVariable("weight", Type::Double, "%10.2f", "Weight", "sexl")
                << readStatVariable("ratio", Type::Float, "%9.0g")
                << readStatVariable("small", Type::Int16, "%8.0g")
                << readStatVariable("count", Type::Int32, "%12.0g", "", "minus")
                // ReadStat's DTA writer stores one byte more than asked: str5.
                << readStatVariable("code", Type::String, "%5s", "Code", "", 4);
    if (version >= 117)
        f.variables << readStatVariable("note", Type::StringRef, "%9s");
    return f;
}

QList<ExpectedField> expectedFor(int version)
{
    QList<ExpectedField> list = {
        {"sex", "Sex of person", 1, 1, "1", "2", "1 Male\t2 Female\t"},
        {"weight", "Weight", 2, 8, "1", "2", "1 Male\t2 Female\t"},
        {"ratio", "", 2, 4, "0", "9999", ""},
        {"small", "", 1, 2, "0", "99", ""},
        {"count", "", 1, 4, "3", "3", "3 Three\t"},
        {"code", "Code", 3, 5, "0", "99999", ""},
    };
    // A strL arrives as a string of storage width 0.
    if (version >= 117)
        list.append({"note", "", 3, 0, "0", "", ""});
    return list;
}

// The line expected for a file ReadStat fails on, with the error number
// ReadStat gives when it reads the file on its own.
std::string errorLineFor(const QString &path)
{
    readstat_parser_t *parser = readstat_parser_init();
    const readstat_error_t alone = readstat_parse_dta(parser, QFile::encodeName(path).constData(), nullptr);
    readstat_parser_free(parser);
    EXPECT_NE(alone, READSTAT_OK);
    return "Error processing " + QFile::encodeName(path).toStdString() + ": " + std::to_string(alone) + "\n";
}

std::string stdoutOfOpen(TSTATADataImport *importer)
{
    testing::internal::CaptureStdout();
    importer->openFile();
    return testing::internal::GetCapturedStdout();
}

class StataSample : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QString error;
        path = writeReadStatFile(dir, QStringLiteral("sample.dta"), sampleDta(118), &error);
        ASSERT_FALSE(path.isEmpty()) << error.toStdString();
        importer = new TSTATADataImport(path);
        ASSERT_TRUE(importer->openFile());
    }
    void TearDown() override { delete importer; }

    void expectVariable(const char *name)
    {
        for (const ExpectedField &e : expectedFor(118)) {
            if (qstrcmp(e.name, name) == 0)
                expectField(importer->fieldByName(QString::fromLatin1(name)), e);
        }
    }

    QTemporaryDir dir;
    QString path;
    TSTATADataImport *importer = nullptr;
};

// --- the variable class ---------------------------------------------------

TEST(StataVariable, ConstructorSetsImportFlagAndClearsItsMissingFlag)
{
    TSTATAVariable v(nullptr);
    EXPECT_TRUE(v.getImportFlag());
    EXPECT_FALSE(v.getMissing());
    EXPECT_FALSE(v.isMissing());
}

TEST(StataVariable, IsMissingFollowsItsMissingFlagAndIsNeverNotApplicable)
{
    TSTATAVariable v(nullptr);
    v.setMissing(true);
    EXPECT_TRUE(v.isMissing());
    EXPECT_FALSE(v.isNotApplicable());
}

TEST(StataVariable, OnlyAStringWhoseTrimmedValueIsEmptyIsBlank)
{
    TSTATAVariable v(nullptr);
    v.setSize(5);
    v.setFieldType(1);
    v.setAsString(QStringLiteral("  "));
    EXPECT_FALSE(v.isBlank());
    v.setFieldType(3);
    EXPECT_TRUE(v.isBlank());
    v.setAsString(QStringLiteral(" a"));
    EXPECT_FALSE(v.isBlank());
    EXPECT_EQ(v.getAsString(), QStringLiteral(" a"));
}

// --- identity -------------------------------------------------------------

TEST(StataImport, TypeIsStataAndIdIsStataUnderscoreSourceName)
{
    TSTATADataImport importer(QStringLiteral("/data/survey.dta"));
    EXPECT_EQ(importer.getDataProviderType(), QStringLiteral("STATA"));
    EXPECT_EQ(importer.getDataProviderId(), QStringLiteral("STATA_/data/survey.dta"));
}

TEST(StataImport, OpenFileReturnsTrueAndSetsOpeningValueToOne)
{
    QTemporaryDir dir;
    TSTATADataImport importer(writeReadStatFile(dir, QStringLiteral("s.dta"), sampleDta(118)));
    EXPECT_TRUE(importer.openFile());
    EXPECT_EQ(importer.getOpeningValue(), 1.0);
}

// --- the dictionary of each DTA version -----------------------------------

class StataVersions : public ::testing::TestWithParam<int>
{
};

TEST_P(StataVersions, ListsEveryVariableInFileOrderWithItsDescription)
{
    QTemporaryDir dir;
    QString error;
    const QString path = writeReadStatFile(dir, QStringLiteral("v.dta"), sampleDta(GetParam()), &error);
    ASSERT_FALSE(path.isEmpty()) << error.toStdString();
    TSTATADataImport importer(path);
    EXPECT_EQ(stdoutOfOpen(&importer), std::string());
    const QList<ExpectedField> expected = expectedFor(GetParam());
    ASSERT_EQ(importer.getFieldCount(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        expectField(importer.getField(i), expected.at(i));
        EXPECT_NE(dynamic_cast<TSTATAVariable *>(importer.getField(i)), nullptr);
    }
}

INSTANTIATE_TEST_SUITE_P(Dta, StataVersions, ::testing::Values(114, 117, 118),
                         [](const ::testing::TestParamInfo<int> &info) {
                             return "Version" + std::to_string(info.param);
                         });

// --- the variable rules ---------------------------------------------------

TEST_F(StataSample, StringOfStorageWidth5GetsBounds0And99999)
{
    expectVariable("code");
    TGenericField *code = importer->fieldByName(QStringLiteral("code"));
    ASSERT_NE(code, nullptr);
    EXPECT_FALSE(code->getNotApplicableCode().isNull());
    EXPECT_TRUE(code->getNotApplicableCode().isEmpty());
}

TEST_F(StataSample, StrLIsAStringOfWidth0WithAnEmptyUpperBound)
{
    expectVariable("note");
}

TEST_F(StataSample, SizeIsTheStorageWidthOfIntegerAndRealTypes)
{
    expectVariable("sex");
    expectVariable("small");
    expectVariable("count");
    expectVariable("ratio");
}

TEST_F(StataSample, FloatAndDoubleAreRealWhateverTheirDecimals)
{
    expectVariable("ratio");
    expectVariable("weight");
}

TEST_F(StataSample, IntegerLabelledValuesPrintAsIntegersInARealVariable)
{
    expectVariable("weight");
}

TEST_F(StataSample, ValueLabelForMinusOneIsLeftOut)
{
    expectVariable("count");
}

TEST_F(StataSample, LabelSetThatNoVariableNamesIsKeptButUsedByNoField)
{
    EXPECT_TRUE(importer->getLabelSetNames().contains(QStringLiteral("unused")));
    for (int i = 0; i < importer->getFieldCount(); ++i)
        EXPECT_FALSE(importer->getField(i)->getValueLabels().contains(QStringLiteral("Seven")));
}

TEST_F(StataSample, OpeningTheSameImporterTwiceListsEachVariableOnce)
{
    const int n = expectedFor(118).size();
    TGenericField *first = importer->getField(0);
    importer->openFile();
    ASSERT_EQ(importer->getFieldCount(), n);
    ASSERT_EQ(importer->getVariables().size(), n);
    EXPECT_NE(importer->getField(0), first);
    expectField(importer->getField(0), expectedFor(118).first());
}

TEST_F(StataSample, SelectLayoutSourceWritesItsDebugLineAndListsTheNames)
{
    MessageCollector log;
    QStringList *names = importer->selectLayoutSource();
    ASSERT_NE(names, nullptr);
    EXPECT_TRUE(log.contains(QStringLiteral("TSTATADataImport - selectLayoutSource")));
    EXPECT_TRUE(log.contains(QStringLiteral("DataImport - selectLayoutSource")));
    EXPECT_EQ(names->size(), expectedFor(118).size());
    EXPECT_EQ(names->first(), QStringLiteral("sex"));
    delete names;
}

TEST_F(StataSample, MetadataCallbackIsNotRegistered)
{
    EXPECT_EQ(importer->getRowCount(), 0);
    EXPECT_EQ(importer->getVariableCount(), 0);
}

// --- reading the file -----------------------------------------------------

TEST(StataFile, UnreadableFilePrintsErrorProcessingWithReadStatsNumberAndGivesNoFields)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("absent.dta"));
    TSTATADataImport importer(path);
    // READSTAT_ERROR_OPEN is 1.
    EXPECT_EQ(stdoutOfOpen(&importer), "Error processing " + QFile::encodeName(path).toStdString() + ": 1\n");
    EXPECT_EQ(importer.getFieldCount(), 0);
}

TEST(StataFile, TruncatedFilePrintsErrorProcessingAndGivesNoFields)
{
    QTemporaryDir dir;
    const QByteArray whole = readStatBytes(sampleDta(118));
    for (int cut : {0, 10, 60, 200}) {
        const QString path = writeFile(dir, QStringLiteral("cut%1.dta").arg(cut), whole.left(cut));
        TSTATADataImport importer(path);
        EXPECT_EQ(stdoutOfOpen(&importer), errorLineFor(path));
        EXPECT_EQ(importer.getFieldCount(), 0) << "cut " << cut;
    }
}

TEST(StataFile, DataSectionIsNotReadByTheVariablePass)
{
    QTemporaryDir dir;
    const QByteArray whole = readStatBytes(sampleDta(114, 1000));
    ASSERT_GT(whole.size(), 20000);
    TSTATADataImport importer(writeFile(dir, QStringLiteral("rows.dta"), whole.left(whole.size() - 10000)));
    EXPECT_EQ(stdoutOfOpen(&importer), std::string());
    EXPECT_EQ(importer.getFieldCount(), expectedFor(114).size());
}

TEST(StataFile, FailedVariablePassKeepsTheFieldsReadSoFar)
{
    // Versions 117 and 118 look past the data section, so a file cut inside
    // it fails after the variables were delivered.
    QTemporaryDir dir;
    const QByteArray whole = readStatBytes(sampleDta(118, 1000));
    ASSERT_GT(whole.size(), 20000);
    const QString path = writeFile(dir, QStringLiteral("cutdata.dta"), whole.left(whole.size() - 10000));
    TSTATADataImport importer(path);
    EXPECT_EQ(stdoutOfOpen(&importer), errorLineFor(path));
    ASSERT_EQ(importer.getFieldCount(), expectedFor(118).size());
    EXPECT_EQ(importer.getField(0)->getName(), QStringLiteral("sex"));
}

// --- the callbacks, with records a file cannot deliver --------------------

TEST(StataCallbacks, DoubleEntryPrintsSixDecimalsIntegerEntryPrintsIntegerBothBound1)
{
    TSTATADataImport importer;
    handle_value_label_stata("dbl", readStatDouble(1.0), "One", &importer);
    handle_value_label_stata("int", readStatInt32(1), "One", &importer);
    readstat_variable_t a = readStatRecord(READSTAT_TYPE_DOUBLE, "a", "%10.2f");
    readstat_variable_t b = readStatRecord(READSTAT_TYPE_DOUBLE, "b", "%10.2f");
    handle_variable_stata(0, &a, "dbl", &importer);
    handle_variable_stata(1, &b, "int", &importer);
    ASSERT_EQ(importer.getVariables().size(), 2);
    expectField(importer.getVariables().at(0), {"a", "", 2, 8, "1", "1", "1.000000 One\t"});
    expectField(importer.getVariables().at(1), {"b", "", 2, 8, "1", "1", "1 One\t"});
}

TEST(StataCallbacks, DoubleEntriesAreNotTruncatedInAVariableWithoutDecimals)
{
    TSTATADataImport importer;
    handle_value_label_stata("set", readStatDouble(1.5), "Half", &importer);
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_DOUBLE, "v", "%9.0g");
    handle_variable_stata(0, &v, "set", &importer);
    expectField(importer.getVariables().first(), {"v", "", 2, 8, "1.5", "1.5", "1.500000 Half\t"});
}

TEST(StataCallbacks, ValueLabelForMinusOneAsDoubleIsLeftOut)
{
    TSTATADataImport importer;
    handle_value_label_stata("set", readStatDouble(-1.0), "Minus", &importer);
    handle_value_label_stata("set", readStatInt32(5), "Five", &importer);
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_DOUBLE, "v", "%9.2f");
    handle_variable_stata(0, &v, "set", &importer);
    expectField(importer.getVariables().first(), {"v", "", 2, 8, "5", "5", "5 Five\t"});
}

TEST(StataCallbacks, StringReferenceValueBecomesTheMarkerMinus88)
{
    TSTATADataImport importer;
    handle_value_label_stata("set", readStatValue(READSTAT_TYPE_STRING_REF), "Ref", &importer);
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_INT32, "v", "%12.0g", "", 4);
    handle_variable_stata(0, &v, "set", &importer);
    expectField(importer.getVariables().first(), {"v", "", 1, 4, "-88", "-88", "-88 Ref\t"});
}

TEST(StataCallbacks, StringVariableKeepsNoBoundsFromItsLabelsButGetsTheWidthBounds)
{
    TSTATADataImport importer;
    handle_value_label_stata("set", readStatString("ab"), "Ab", &importer);
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_STRING, "s", "%3s", "", 3);
    handle_variable_stata(0, &v, "set", &importer);
    expectField(importer.getVariables().first(), {"s", "", 3, 3, "0", "999", "ab Ab\t"});
}

TEST(StataCallbacks, StringReferenceVariableIsReadAsString)
{
    TSTATADataImport importer;
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_STRING_REF, "s", "%9s", "", 0);
    handle_variable_stata(0, &v, nullptr, &importer);
    expectField(importer.getVariables().first(), {"s", "", 3, 0, "0", "", ""});
}

TEST(StataCallbacks, VariableAndValueLabelsAreReadAsLatin1)
{
    TSTATADataImport importer;
    handle_value_label_stata("set", readStatInt32(1), "caf\xe9", &importer);
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_INT8, "v", "%8.0g", "Gr\xf6\xdf" "e", 1);
    handle_variable_stata(0, &v, "set", &importer);
    TGenericField *field = importer.getVariables().first();
    EXPECT_EQ(field->getLabel(), QString::fromUtf8("Gr\xc3\xb6\xc3\x9f" "e"));
    EXPECT_EQ(field->getValueLabels(), QString::fromUtf8("1 caf\xc3\xa9\t"));
}

TEST(StataCallbacks, AbsentNameLabelAndFormatGiveEmptyTexts)
{
    TSTATADataImport importer;
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_DOUBLE, "", "", "", 8);
    ASSERT_EQ(readstat_variable_get_label(&v), nullptr);
    handle_variable_stata(0, &v, nullptr, &importer);
    expectField(importer.getVariables().first(), {"", "", 2, 8, "0", "99999999", ""});
}

TEST(StataCallbacks, MetadataCallbackCopiesRowAndVariableCounts)
{
    TSTATADataImport importer;
    readstat_metadata_t metadata;
    std::memset(&metadata, 0, sizeof metadata);
    metadata.row_count = 1234;
    metadata.var_count = 56;
    EXPECT_EQ(handle_metadata_stata(&metadata, &importer), 0);
    EXPECT_EQ(importer.getRowCount(), 1234);
    EXPECT_EQ(importer.getVariableCount(), 56);
}

// ReadStat 1.1.8 delivers DTA value labels only as 32-bit integers, so an
// unknown type can only be handed to the callback directly.
TEST(StataCallbacksDeathTest, UnknownValueTypeEndsTheProcessWithStatus1)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    TSTATADataImport importer;
    EXPECT_EXIT(handle_value_label_stata("set", readStatValue(static_cast<readstat_type_t>(42)), "x", &importer),
                ::testing::ExitedWithCode(1), "model_KelAdmin/STATADataImport:282 unsupported type!\n");
}

} // namespace

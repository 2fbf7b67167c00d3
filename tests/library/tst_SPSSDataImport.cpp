#include "model_KelAdmin.h"

#include "FixtureReadStat.h"
#include "FixtureReadStatRecords.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QFile>
#include <QSysInfo>
#include <QTemporaryDir>

#include <limits>

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

// The file's metadata is now read (the exported metadata callback itself is
// still not registered): the counts are those written.
TEST_F(SpssSample, RowAndVariableCountsAreTheFilesOwn)
{
    EXPECT_EQ(importer->getRowCount(), 3);
    EXPECT_EQ(importer->getVariableCount(), sampleExpectedField.size());
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

TEST(SpssCallbacks, HugeNegativeLabelledNumberIsClampedToTheLowestInteger)
{
    TSPSSDataImport importer;
    handle_value_label_spss("set", readStatDouble(-1e12), "Debt", &importer);
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_DOUBLE, "v", "F9.0");
    handle_variable_spss(0, &v, "set", &importer);
    EXPECT_EQ(importer.getVariables().first()->getValueLabels(), QStringLiteral("-2147483648 Debt\t"));
}

// --- what the file says about itself -------------------------------------

QDateTime localTime(int year, int month, int day, int hour, int minute, int second)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second));
}

// ReadStat's writer writes the host's byte order.
QString hostByteOrder()
{
    return QSysInfo::ByteOrder == QSysInfo::LittleEndian ? QStringLiteral("little-endian")
                                                         : QStringLiteral("big-endian");
}

TEST(SpssMetadata, RowCountVersionEncodingByteOrderTimeAndLabelAreThoseWritten)
{
    ReadStatFile f = sampleSav(Container::Sav);
    f.rows = 7;
    f.fileLabel = "Census 2023, persons";
    f.timestamp = localTime(2021, 3, 4, 5, 6, 7).toSecsSinceEpoch();
    QTemporaryDir dir;
    TSPSSDataImport importer(writeReadStatFile(dir, QStringLiteral("meta.sav"), f));
    importer.openFile();
    EXPECT_EQ(importer.getRowCount(), 7);
    EXPECT_EQ(importer.getVariableCount(), sampleExpectedField.size());
    EXPECT_EQ(importer.getFileFormatVersion(), 2);
    EXPECT_EQ(importer.getFileEncoding(), QStringLiteral("UTF-8"));
    EXPECT_EQ(importer.getByteOrder(), hostByteOrder());
    EXPECT_EQ(importer.getCreationTime(), localTime(2021, 3, 4, 5, 6, 7));
    EXPECT_EQ(importer.getFileLabel(), QStringLiteral("Census 2023, persons"));
}

TEST(SpssMetadata, ZsavIsVersion3)
{
    QTemporaryDir dir;
    TSPSSDataImport importer(writeReadStatFile(dir, QStringLiteral("z.zsav"), sampleSav(Container::Zsav)));
    importer.openFile();
    EXPECT_EQ(importer.getFileFormatVersion(), 3);
    EXPECT_EQ(importer.getRowCount(), 3);
}

TEST(SpssMetadata, ReadingTheMetadataChangesNoField)
{
    ReadStatFile f = sampleSav(Container::Sav);
    f.fileLabel = "A label";
    QTemporaryDir dir;
    TSPSSDataImport importer(writeReadStatFile(dir, QStringLiteral("fields.sav"), f));
    importer.openFile();
    ASSERT_EQ(importer.getFieldCount(), sampleExpectedField.size());
    for (int i = 0; i < sampleExpectedField.size(); ++i)
        expectField(importer.getField(i), sampleExpectedField.at(i));
}

struct HeaderDateCase
{
    const char *name;
    const char *header; // the nine characters at offset 92
    QDate date;         // invalid: the creation time is unknown
};

void PrintTo(const HeaderDateCase &c, std::ostream *os)
{
    *os << c.name;
}

class SpssHeaderDate : public ::testing::TestWithParam<HeaderDateCase>
{
};

// The header's date is hidden from ReadStat (it rejects months in other
// languages); the importer reads it itself, "dd mmm yy" as ReadStat reads it:
// a blank or a dash between the parts, English months in capitals or with a
// capital first letter, years before 70 in the 2000s.
TEST_P(SpssHeaderDate, GivesTheCreationDateOrNone)
{
    const HeaderDateCase &c = GetParam();
    ReadStatFile f = sampleSav(Container::Sav);
    f.timestamp = localTime(2021, 3, 4, 5, 6, 7).toSecsSinceEpoch();
    QTemporaryDir dir;
    const QString path = writeReadStatFile(dir, QStringLiteral("date.sav"), f);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.seek(92));
    ASSERT_EQ(file.write(c.header, 9), 9);
    file.close();

    TSPSSDataImport importer(path);
    importer.openFile();
    if (c.date.isValid())
        EXPECT_EQ(importer.getCreationTime(), QDateTime(c.date, QTime(5, 6, 7)));
    else
        EXPECT_FALSE(importer.getCreationTime().isValid()) << importer.getCreationTime().toString().toStdString();
    EXPECT_EQ(importer.getRowCount(), 3);
}

INSTANTIATE_TEST_SUITE_P(
    Dates, SpssHeaderDate,
    ::testing::Values(HeaderDateCase{"Capitals", "18 DEC 20", QDate(2020, 12, 18)},
                      HeaderDateCase{"MonthInAnotherLanguage", "18 Dic 20", QDate()},
                      HeaderDateCase{"Dashes", "18-Dec-20", QDate(2020, 12, 18)},
                      HeaderDateCase{"BlankPaddedDayAndYear", " 8 Jan  5", QDate(2005, 1, 8)},
                      HeaderDateCase{"Year69IsInThe2000s", "01 Jul 69", QDate(2069, 7, 1)},
                      HeaderDateCase{"Year70IsInThe1900s", "01 Jul 70", QDate(1970, 7, 1)},
                      HeaderDateCase{"SlashesAreNotSeparators", "18/Dec/20", QDate()},
                      HeaderDateCase{"DayThatIsNoNumber", "xx Dec 20", QDate()},
                      HeaderDateCase{"YearThatIsNoNumber", "18 Dec 2x", QDate()},
                      HeaderDateCase{"MonthInSmallLetters", "18 dec 20", QDate()}),
    [](const ::testing::TestParamInfo<HeaderDateCase> &info) { return std::string(info.param.name); });

TEST(SpssMetadata, ReopeningForgetsTheEarlierFile)
{
    QTemporaryDir dir;
    const QString path = writeReadStatFile(dir, QStringLiteral("gone.sav"), sampleSav(Container::Sav));
    TSPSSDataImport importer(path);
    importer.openFile();
    ASSERT_EQ(importer.getRowCount(), 3);
    ASSERT_TRUE(QFile::remove(path));
    importer.openFile();
    EXPECT_EQ(importer.getRowCount(), -1);
    EXPECT_EQ(importer.getFileFormatVersion(), 0);
}

// samples/census.sav: 12 rows of 15 variables, header "21 Nov 26" "09:13:27".
TEST(SpssMetadata, CensusSample)
{
    TSPSSDataImport importer(kxtest::samplePath(QStringLiteral("census.sav")));
    importer.openFile();
    EXPECT_EQ(importer.getFieldCount(), 15);
    EXPECT_EQ(importer.getRowCount(), 12);
    EXPECT_EQ(importer.getVariableCount(), 15);
    EXPECT_EQ(importer.getFileFormatVersion(), 2);
    EXPECT_EQ(importer.getFileEncoding(), QStringLiteral("UTF-8"));
    EXPECT_EQ(importer.getByteOrder(), QStringLiteral("little-endian"));
    EXPECT_EQ(importer.getCreationTime(), localTime(2026, 11, 21, 9, 13, 27));
    EXPECT_TRUE(importer.getFileLabel().isEmpty());
}

// --- parse errors in words ------------------------------------------------

TEST(SpssParseError, TruncatedFileGivesReadStatsReadErrorInWords)
{
    QTemporaryDir dir;
    const QByteArray whole = readStatBytes(sampleSav(Container::Sav));
    // Shorter than the 176-byte file header.
    TSPSSDataImport importer(writeFile(dir, QStringLiteral("cut.sav"), whole.left(100)));
    testing::internal::CaptureStdout();
    importer.openFile();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), std::string());
    EXPECT_EQ(importer.getFieldCount(), 0);
    EXPECT_EQ(importer.getParseError(), READSTAT_ERROR_READ);
    EXPECT_EQ(importer.getParseErrorText(), QStringLiteral("Unable to read from file"));
}

TEST(SpssParseError, MissingFileCannotBeOpened)
{
    QTemporaryDir dir;
    TSPSSDataImport importer(dir.filePath(QStringLiteral("absent.sav")));
    importer.openFile();
    EXPECT_EQ(importer.getParseError(), READSTAT_ERROR_OPEN);
    EXPECT_EQ(importer.getParseErrorText(), QStringLiteral("Unable to open file"));
}

TEST(SpssParseError, ASuccessfulReadClearsTheEarlierError)
{
    QTemporaryDir dir;
    const QByteArray whole = readStatBytes(sampleSav(Container::Sav));
    const QString path = writeFile(dir, QStringLiteral("later.sav"), whole.left(100));
    TSPSSDataImport importer(path);
    importer.openFile();
    ASSERT_EQ(importer.getParseError(), READSTAT_ERROR_READ);
    writeFile(dir, QStringLiteral("later.sav"), whole);
    importer.openFile();
    EXPECT_EQ(importer.getParseError(), 0);
    EXPECT_TRUE(importer.getParseErrorText().isEmpty());
}

// --- reading notes --------------------------------------------------------

TReadNotes notesOf(const ReadStatFile &f)
{
    QTemporaryDir dir;
    QString error;
    const QString path = writeReadStatFile(dir, QStringLiteral("notes.sav"), f, &error);
    EXPECT_FALSE(path.isEmpty()) << error.toStdString();
    TSPSSDataImport importer(path);
    importer.openFile();
    return importer.getReadNotes();
}

ReadStatFile savWith(const QList<ReadStatFile::LabelSet> &sets, const QList<ReadStatFile::Variable> &variables)
{
    ReadStatFile f;
    f.labelSets = sets;
    f.variables = variables;
    f.rows = 2;
    return f;
}

TEST(SpssNotes, FileCarriedOverWholeGivesNoNotes)
{
    const ReadStatFile f = savWith(
        {readStatLabelSet("sexl", Type::Double, {numericLabel(1, "Male"), numericLabel(2, "Female")}),
         readStatLabelSet("yesno", Type::Double, {numericLabel(1, "S\xc3\xad"), numericLabel(2, "No")}),
         readStatLabelSet("codes", Type::String, {stringLabel("abc", "ABC")})},
        {readStatVariable("sex", Type::Double, "F1.0", "Sex", "sexl"),
         readStatVariable("age", Type::Double, "F3.0", "Age in years"),
         // SPSS value labels are read as UTF-8: nothing lost.
         readStatVariable("agree", Type::Double, "F1.0", "Agrees", "yesno"),
         readStatVariable("code", Type::String, "A5", "Code", "codes", 5)});
    expectNotes(notesOf(f), {});
}

TEST(SpssNotes, FormatWidthOfTwoDigitsKeepsItsFirstDigit)
{
    const ReadStatFile f = savWith({}, {readStatVariable("wide", Type::Double, "F10.0"),
                                        readStatVariable("fullname", Type::String, "A24", "", "", 24)});
    expectNotes(notesOf(f),
                {fileNote("wide", "width-first-digit",
                          "Variable wide has the format F10.0 of width 10; the reading kept its first digit, 1."),
                 fileNote("fullname", "width-first-digit",
                          "Variable fullname has the format A24 of width 24; the reading kept its first digit, 2.")});
}

TEST(SpssNotes, FormatWhoseSecondCharacterIsNoDigitKeepsWidth0)
{
    const ReadStatFile f = savWith({}, {readStatVariable("amount", Type::Double, "COMMA9"),
                                        readStatVariable("born", Type::Double, "DATE11")});
    expectNotes(notesOf(f),
                {fileNote("amount", "width-not-read",
                          "Variable amount has the format COMMA9 of width 9; the reading kept the width 0, as the "
                          "format's second character is not a digit."),
                 fileNote("born", "width-not-read",
                          "Variable born has the format DATE11 of width 11; the reading kept the width 0, as the "
                          "format's second character is not a digit.")});
}

TEST(SpssNotes, DecimalsOfTheFormatAreNotKept)
{
    const ReadStatFile f = savWith({}, {readStatVariable("income", Type::Double, "F8.2", "Income")});
    expectNotes(notesOf(f), {fileNote("income", "decimals-not-read",
                                      "Variable income has the format F8.2 with 2 decimals; the reading kept no "
                                      "number of decimals.")});
}

// SAV files give label sets no names: ReadStat numbers them labels0, labels1, ... in file order.
TEST(SpssNotes, LabelOfMinusOneIsLeftOut)
{
    const ReadStatFile f = savWith(
        {readStatLabelSet("minus", Type::Double, {numericLabel(-1, "Minus"), numericLabel(3, "Three")}),
         readStatLabelSet("below", Type::Double, {numericLabel(-1.5, "Below"), numericLabel(4, "Four")})},
        {readStatVariable("count", Type::Double, "F3.0", "", "minus"),
         readStatVariable("level", Type::Double, "F3.0", "", "below")});
    expectNotes(notesOf(f),
                {fileNote("count", "label-minus-one-dropped",
                          "Variable count has the label 'Minus' for the value -1 in label set labels0; the reading "
                          "left it out of the value labels."),
                 fileNote("level", "label-minus-one-dropped",
                          "Variable level has the label 'Below' for the value -1.5 in label set labels1; the reading "
                          "cut it to -1 and left it out of the value labels.")});
}

TEST(SpssNotes, NameAndLabelOutsideAsciiAreReadByteByByte)
{
    const ReadStatFile f =
        savWith({}, {readStatVariable("gr\xc3\xb6\xc3\x9f" "e", Type::Double, "F3.0",
                                      "K\xc3\xb6rpergr\xc3\xb6\xc3\x9f" "e")});
    const TReadNotes notes = notesOf(f);
    const char *readName = "gr\xc3\x83\xc2\xb6\xc3\x83\xc2\x9f" "e";
    expectNotes(notes,
                {fileNote(readName, "text-not-ascii",
                          "The variable name 'gr\xc3\xb6\xc3\x9f" "e' is UTF-8 in the file; read byte by byte as "
                          "Latin-1 it became 'gr\xc3\x83\xc2\xb6\xc3\x83\xc2\x9f" "e'."),
                 fileNote(readName, "text-not-ascii",
                          "Variable gr\xc3\x83\xc2\xb6\xc3\x83\xc2\x9f" "e has the label "
                          "'K\xc3\xb6rpergr\xc3\xb6\xc3\x9f" "e' in UTF-8; read byte by byte as Latin-1 it became "
                          "'K\xc3\x83\xc2\xb6rpergr\xc3\x83\xc2\xb6"
                          "\xc3\x83\xc2\x9f" "e'.")});
}

// The first variable, without decimals, cuts the shared set in place.
TEST(SpssNotes, SharedSetCutByAnEarlierVariableIsNotedForTheLaterOneWithDecimals)
{
    const ReadStatFile f = savWith(
        {readStatLabelSet("half", Type::Double, {numericLabel(1.5, "Half"), numericLabel(2, "Two"),
                                                 numericLabel(2.25, "Quarter")})},
        {readStatVariable("first", Type::Double, "F3.0", "", "half"),
         readStatVariable("second", Type::Double, "F8.2", "", "half")});
    const TReadNotes notes = notesOf(f);
    expectNotes(notes,
                {fileNote("first", "label-value-truncated",
                          "Variable first has the label 'Half' for the value 1.5 in label set labels0; as the "
                          "variable has no decimals, the reading cut the value to 1."),
                 fileNote("first", "label-value-truncated",
                          "Variable first has the label 'Quarter' for the value 2.25 in label set labels0; as the "
                          "variable has no decimals, the reading cut the value to 2."),
                 fileNote("second", "decimals-not-read",
                          "Variable second has the format F8.2 with 2 decimals; the reading kept no number of "
                          "decimals."),
                 fileNote("labels0", "label-set-truncated",
                          "Label set labels0 was cut to integers in place by the earlier variable first, which has no "
                          "decimals; variable second, with 2 decimals, reads 1.5 as 1 and 2.25 as 2.")});
}

TEST(SpssNotes, SetReadByAVariableWithDecimalsOnlyGivesNoCutNotes)
{
    const ReadStatFile f = savWith({readStatLabelSet("half", Type::Double, {numericLabel(1.5, "Half")})},
                                   {readStatVariable("second", Type::Double, "F8.2", "", "half"),
                                    readStatVariable("third", Type::Double, "F8.2", "", "half")});
    for (const TReadNote &note : notesOf(f))
        EXPECT_EQ(note.getKind(), QStringLiteral("decimals-not-read")) << note.getText().toStdString();
}

TEST(SpssNotes, UserMissingValuesAndRangesAreListed)
{
    ReadStatFile::Variable age = readStatVariable("age", Type::Double, "F3.0");
    age.missing << missingRange(90, std::numeric_limits<double>::infinity()) << missingRange(-9, -9);
    ReadStatFile::Variable low = readStatVariable("low", Type::Double, "F3.0");
    low.missing << missingRange(-std::numeric_limits<double>::infinity(), -1);
    ReadStatFile::Variable code = readStatVariable("code", Type::String, "A2", "", "", 2);
    code.missing << missingText("NA") << missingText("DK");
    expectNotes(notesOf(savWith({}, {age, low, code})),
                {fileNote("age", "user-missing-not-read",
                          "Variable age declares the user-missing values 90 to HIGHEST and -9; the reading kept none "
                          "of them."),
                 fileNote("low", "user-missing-not-read",
                          "Variable low declares the user-missing values LOWEST to -1; the reading kept none of "
                          "them."),
                 fileNote("code", "user-missing-not-read",
                          "Variable code declares the user-missing values 'NA' and 'DK'; the reading kept none of "
                          "them.")});
}

TEST(SpssNotes, NotesStartAfreshWithEveryOpenFile)
{
    const ReadStatFile f = savWith({}, {readStatVariable("wide", Type::Double, "F10.0")});
    QTemporaryDir dir;
    TSPSSDataImport importer(writeReadStatFile(dir, QStringLiteral("again.sav"), f));
    importer.openFile();
    importer.openFile();
    ASSERT_EQ(importer.getReadNotes().size(), 1);
    EXPECT_EQ(importer.getReadNotes().first().getKind(), QStringLiteral("width-first-digit"));
}

TEST(SpssNotes, SampleFileGivesOneNotePerLoss)
{
    const TReadNotes notes = notesOf(sampleSav(Container::Sav));
    QStringList kinds;
    for (const TReadNote &note : notes)
        kinds << note.getSubject() + QLatin1Char(' ') + note.getKind();
    EXPECT_EQ(kinds, QStringList({QStringLiteral("income decimals-not-read"),
                                  QStringLiteral("wide width-first-digit"), QStringLiteral("wide decimals-not-read"),
                                  QStringLiteral("amount width-not-read"), QStringLiteral("amount decimals-not-read"),
                                  QStringLiteral("minus label-minus-one-dropped"),
                                  QStringLiteral("minushalf label-minus-one-dropped"),
                                  QStringLiteral("realminus decimals-not-read"),
                                  QStringLiteral("realminus label-minus-one-dropped"),
                                  QStringLiteral("comment width-first-digit")}));
}

// samples/census.sav: the name of person is A24, income and weight have decimals.
TEST(SpssNotes, CensusSample)
{
    TSPSSDataImport importer(kxtest::samplePath(QStringLiteral("census.sav")));
    importer.openFile();
    expectNotes(importer.getReadNotes(),
                {fileNote("income", "decimals-not-read",
                          "Variable income has the format F9.2 with 2 decimals; the reading kept no number of "
                          "decimals."),
                 fileNote("pweight", "decimals-not-read",
                          "Variable pweight has the format F8.4 with 4 decimals; the reading kept no number of "
                          "decimals."),
                 fileNote("fullname", "width-first-digit",
                          "Variable fullname has the format A24 of width 24; the reading kept its first digit, 2.")});
}

// --- notes from records a file cannot deliver ------------------------------

TEST(SpssCallbackNotes, VariableNamingAnUndefinedSetIsNoted)
{
    TSPSSDataImport importer;
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_DOUBLE, "v", "F3.0");
    handle_variable_spss(0, &v, "nosuch", &importer);
    expectField(importer.getVariables().first(), {"v", "", 1, 3, "0", "999", ""});
    expectNotes(importer.getReadNotes(),
                {fileNote("v", "label-set-missing",
                          "Variable v names the label set nosuch, of which the file holds no value labels; the field "
                          "got none.")});
}

TEST(SpssCallbackNotes, LabelOfTheSystemMissingValueBecomesAnOrdinaryCode)
{
    TSPSSDataImport importer;
    readstat_value_t sysmis = readStatDouble(std::numeric_limits<double>::quiet_NaN());
    sysmis.is_system_missing = 1;
    handle_value_label_spss("set", sysmis, "No answer", &importer);
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_DOUBLE, "v", "F3.0");
    handle_variable_spss(0, &v, "set", &importer);
    expectField(importer.getVariables().first(), {"v", "", 1, 3, "0", "0", "0 No answer\t"});
    expectNotes(importer.getReadNotes(),
                {fileNote("v", "missing-label-as-code",
                          "Variable v has the label 'No answer' for the system-missing value in label set set; the "
                          "reading kept it as the ordinary code 0.")});
}

TEST(SpssCallbackNotes, HugeLabelledNumberClampedToTheIntegerRangeIsNoted)
{
    TSPSSDataImport importer;
    handle_value_label_spss("set", readStatDouble(1e12), "Big", &importer);
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_DOUBLE, "v", "F9.0");
    handle_variable_spss(0, &v, "set", &importer);
    expectNotes(importer.getReadNotes(),
                {fileNote("v", "label-value-truncated",
                          "Variable v has the label 'Big' for the value 1000000000000 in label set set; as the "
                          "variable has no decimals, the reading cut the value to 2147483647.")});
}

} // namespace

#include "model_KelAdmin.h"

#include "FixtureReadStat.h"
#include "FixtureReadStatRecords.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QFile>
#include <QSysInfo>
#include <QTemporaryDir>

#include <random>

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

// The file's metadata is now read (the exported metadata callback itself is
// still not registered): the counts are those written.
TEST_F(StataSample, RowAndVariableCountsAreTheFilesOwn)
{
    EXPECT_EQ(importer->getRowCount(), 3);
    EXPECT_EQ(importer->getVariableCount(), expectedFor(118).size());
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

TEST(StataCallbacks, StringVariableKeepsNoBoundsFromItsLabelsButGetsTheWidthBounds)
{
    TSTATADataImport importer;
    handle_value_label_stata("set", readStatString("ab"), "Ab", &importer);
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_STRING, "s", "%3s", "", 3);
    handle_variable_stata(0, &v, "set", &importer);
    expectField(importer.getVariables().first(), {"s", "", 3, 3, "0", "999", "ab Ab\t"});
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

// --- what the file says about itself -------------------------------------

QDateTime localTime(int year, int month, int day, int hour, int minute)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute));
}

// ReadStat's writer writes the host's byte order.
QString hostByteOrder()
{
    return QSysInfo::ByteOrder == QSysInfo::LittleEndian ? QStringLiteral("little-endian")
                                                         : QStringLiteral("big-endian");
}

class StataMetadataVersions : public ::testing::TestWithParam<int>
{
};

// A DTA timestamp holds minutes, not seconds; ReadStat reports no encoding for DTA files.
TEST_P(StataMetadataVersions, RowCountVersionByteOrderTimeAndLabelAreThoseWritten)
{
    ReadStatFile f = sampleDta(GetParam(), 5);
    f.fileLabel = "Census 2023, persons";
    f.timestamp = QDateTime(QDate(2021, 3, 4), QTime(5, 6, 7)).toSecsSinceEpoch();
    QTemporaryDir dir;
    TSTATADataImport importer(writeReadStatFile(dir, QStringLiteral("meta.dta"), f));
    EXPECT_EQ(stdoutOfOpen(&importer), std::string());
    EXPECT_EQ(importer.getRowCount(), 5);
    EXPECT_EQ(importer.getVariableCount(), expectedFor(GetParam()).size());
    EXPECT_EQ(importer.getFileFormatVersion(), GetParam());
    EXPECT_TRUE(importer.getFileEncoding().isEmpty());
    EXPECT_EQ(importer.getByteOrder(), hostByteOrder());
    EXPECT_EQ(importer.getCreationTime(), localTime(2021, 3, 4, 5, 6));
    EXPECT_EQ(importer.getFileLabel(), QStringLiteral("Census 2023, persons"));
    const QList<ExpectedField> expected = expectedFor(GetParam());
    ASSERT_EQ(importer.getFieldCount(), expected.size());
    for (int i = 0; i < expected.size(); ++i)
        expectField(importer.getField(i), expected.at(i));
}

INSTANTIATE_TEST_SUITE_P(Dta, StataMetadataVersions, ::testing::Values(114, 117, 118),
                         [](const ::testing::TestParamInfo<int> &info) {
                             return "Version" + std::to_string(info.param);
                         });

// samples/census.dta: format 118, 12 rows of 16 variables, timestamp "21 Nov 2026 09:13".
TEST(StataMetadata, CensusSample)
{
    TSTATADataImport importer(kxtest::samplePath(QStringLiteral("census.dta")));
    importer.openFile();
    EXPECT_EQ(importer.getFieldCount(), 16);
    EXPECT_EQ(importer.getRowCount(), 12);
    EXPECT_EQ(importer.getVariableCount(), 16);
    EXPECT_EQ(importer.getFileFormatVersion(), 118);
    EXPECT_TRUE(importer.getFileEncoding().isEmpty());
    EXPECT_EQ(importer.getByteOrder(), QStringLiteral("little-endian"));
    EXPECT_EQ(importer.getCreationTime(), localTime(2026, 11, 21, 9, 13));
    EXPECT_TRUE(importer.getFileLabel().isEmpty());
}

// --- parse errors in words ------------------------------------------------

// A DTA file starts with "<stata_dta>" or its format version (104 to 119) as one byte.
TEST(StataParseError, RandomBytesGiveTheUnsupportedVersionErrorInWordsBesideTheErrorLine)
{
    std::mt19937 random(20261121);
    QByteArray bytes;
    for (int i = 0; i < 4096; ++i)
        bytes.append(static_cast<char>(random() & 0xff));
    const unsigned char first = static_cast<unsigned char>(bytes.at(0));
    ASSERT_TRUE(first != '<' && (first < 104 || first > 119)) << int(first);

    QTemporaryDir dir;
    const QString path = writeFile(dir, QStringLiteral("random.bin"), bytes);
    TSTATADataImport importer(path);
    EXPECT_EQ(stdoutOfOpen(&importer), "Error processing " + QFile::encodeName(path).toStdString() + ": 24\n");
    EXPECT_EQ(importer.getFieldCount(), 0);
    EXPECT_EQ(importer.getParseError(), READSTAT_ERROR_UNSUPPORTED_FILE_FORMAT_VERSION);
    EXPECT_EQ(importer.getParseErrorText(), QStringLiteral("This version of the file format is not supported"));
}

TEST(StataParseError, FailureAfterTheVariablesIsKeptWithTheFields)
{
    QTemporaryDir dir;
    const QByteArray whole = readStatBytes(sampleDta(118, 1000));
    const QString path = writeFile(dir, QStringLiteral("cutdata.dta"), whole.left(whole.size() - 10000));
    TSTATADataImport importer(path);
    stdoutOfOpen(&importer);
    EXPECT_EQ(importer.getFieldCount(), expectedFor(118).size());
    EXPECT_NE(importer.getParseError(), 0);
    EXPECT_EQ(importer.getParseErrorText(),
              QString::fromUtf8(readstat_error_message(static_cast<readstat_error_t>(importer.getParseError()))));
    EXPECT_FALSE(importer.getParseErrorText().isEmpty());
}

// --- reading notes --------------------------------------------------------

TReadNotes notesOf(const ReadStatFile &f)
{
    QTemporaryDir dir;
    QString error;
    const QString path = writeReadStatFile(dir, QStringLiteral("notes.dta"), f, &error);
    EXPECT_FALSE(path.isEmpty()) << error.toStdString();
    TSTATADataImport importer(path);
    EXPECT_EQ(stdoutOfOpen(&importer), std::string());
    return importer.getReadNotes();
}

ReadStatFile dtaWith(const QList<ReadStatFile::LabelSet> &sets, const QList<ReadStatFile::Variable> &variables)
{
    ReadStatFile f;
    f.container = ReadStatFile::Container::Dta;
    f.dtaVersion = 118;
    f.labelSets = sets;
    f.variables = variables;
    f.rows = 2;
    return f;
}

TEST(StataNotes, FileCarriedOverWholeGivesNoNotes)
{
    const ReadStatFile f =
        dtaWith({readStatLabelSet("sexl", Type::Int32, {numericLabel(1, "Male"), numericLabel(2, "Female")})},
                {readStatVariable("sex", Type::Int8, "%8.0g", "Sex", "sexl"),
                 readStatVariable("weight", Type::Float, "%9.0g", "Weight"),
                 readStatVariable("code", Type::String, "%5s", "Code", "", 4)});
    expectNotes(notesOf(f), {});
}

TEST(StataNotes, LabelOfMinusOneIsLeftOut)
{
    const ReadStatFile f =
        dtaWith({readStatLabelSet("minus", Type::Int32, {numericLabel(-1, "Minus"), numericLabel(3, "Three")})},
                {readStatVariable("count", Type::Int32, "%12.0g", "", "minus")});
    expectNotes(notesOf(f), {fileNote("count", "label-minus-one-dropped",
                                      "Variable count has the label 'Minus' for the value -1 in label set minus; the "
                                      "reading left it out of the value labels.")});
}

// ReadStat hands out UTF-8; the importer reads labels as Latin-1 and names as ASCII.
TEST(StataNotes, NameLabelAndValueLabelsOutsideAsciiAreReadByteByByte)
{
    const ReadStatFile f =
        dtaWith({readStatLabelSet("jn", Type::Int32, {numericLabel(1, "S\xc3\xad"), numericLabel(2, "No")})},
                {readStatVariable("gr\xc3\xb6\xc3\x9f" "e", Type::Int8, "%8.0g", "K\xc3\xb6rpergr\xc3\xb6\xc3\x9f" "e"),
                 readStatVariable("agree", Type::Int8, "%8.0g", "", "jn"),
                 readStatVariable("again", Type::Int8, "%8.0g", "", "jn")});
    const char *readName = "gr\xc3\x83\xc2\xb6\xc3\x83\xc2\x9f" "e";
    expectNotes(notesOf(f),
                {fileNote(readName, "text-not-ascii",
                          "The variable name 'gr\xc3\xb6\xc3\x9f" "e' is UTF-8 in the file; read byte by byte as "
                          "Latin-1 it became 'gr\xc3\x83\xc2\xb6\xc3\x83\xc2\x9f" "e'."),
                 fileNote(readName, "text-not-ascii",
                          "Variable gr\xc3\x83\xc2\xb6\xc3\x83\xc2\x9f" "e has the label "
                          "'K\xc3\xb6rpergr\xc3\xb6\xc3\x9f" "e' in UTF-8; read byte by byte as Latin-1 it became "
                          "'K\xc3\x83\xc2\xb6rpergr\xc3\x83\xc2\xb6"
                          "\xc3\x83\xc2\x9f" "e'."),
                 // Once for the set, not once for each variable naming it.
                 fileNote("jn", "text-not-ascii",
                          "Label set jn has the label 'S\xc3\xad' in UTF-8 for the value 1; read byte by byte as "
                          "Latin-1 it became 'S\xc3\x83\xc2\xad'.")});
}

// An empty label set is written as a table without labels: ReadStat delivers none.
TEST(StataNotes, VariableNamingASetWithoutLabelsIsNoted)
{
    const ReadStatFile f = dtaWith({readStatLabelSet("empty", Type::Int32, {})},
                                   {readStatVariable("v", Type::Int8, "%8.0g", "", "empty")});
    expectNotes(notesOf(f), {fileNote("v", "label-set-missing",
                                      "Variable v names the label set empty, of which the file holds no value labels; "
                                      "the field got none.")});
}

TEST(StataNotes, LabelSetThatNoVariableNamesIsNoted)
{
    const ReadStatFile f =
        dtaWith({readStatLabelSet("unused", Type::Int32, {numericLabel(7, "Seven")}),
                 readStatLabelSet("more", Type::Int32, {numericLabel(1, "One"), numericLabel(2, "Two")})},
                {readStatVariable("v", Type::Int8, "%8.0g")});
    expectNotes(notesOf(f),
                {fileNote("more", "label-set-unused",
                          "Label set more holds 2 value labels, but no variable names it, so no field got its labels."),
                 fileNote("unused", "label-set-unused",
                          "Label set unused holds 1 value label, but no variable names it, so no field got its "
                          "labels.")});
}

// Stata's .a is stored as 2147483622 in a label table.
TEST(StataNotes, LabelOfAMissingValueBecomesAnOrdinaryCode)
{
    const ReadStatFile f =
        dtaWith({readStatLabelSet("yn", Type::Int32, {numericLabel(1, "Yes"), taggedLabel('a', "Refused")})},
                {readStatVariable("q", Type::Int8, "%8.0g", "", "yn")});
    QTemporaryDir dir;
    TSTATADataImport importer(writeReadStatFile(dir, QStringLiteral("tagged.dta"), f));
    importer.openFile();
    expectField(importer.getField(0), {"q", "", 1, 1, "1", "2.14748e+09", "1 Yes\t2147483622 Refused\t"});
    expectNotes(importer.getReadNotes(),
                {fileNote("q", "missing-label-as-code",
                          "Variable q has the label 'Refused' for the missing value .a in label set yn; the reading "
                          "kept it as the ordinary code 2147483622.")});
}

TEST(StataNotes, DecimalsOfTheFormatAreNotKept)
{
    const ReadStatFile f = dtaWith({}, {readStatVariable("income", Type::Double, "%10.2f", "Income")});
    expectNotes(notesOf(f), {fileNote("income", "decimals-not-read",
                                      "Variable income has the format %10.2f with 2 decimals; the reading kept no "
                                      "number of decimals.")});
}

TEST_F(StataSample, NotesNameEachLoss)
{
    expectNotes(importer->getReadNotes(),
                {fileNote("weight", "decimals-not-read",
                          "Variable weight has the format %10.2f with 2 decimals; the reading kept no number of "
                          "decimals."),
                 fileNote("count", "label-minus-one-dropped",
                          "Variable count has the label 'Minus' for the value -1 in label set minus; the reading left "
                          "it out of the value labels."),
                 fileNote("unused", "label-set-unused",
                          "Label set unused holds 1 value label, but no variable names it, so no field got its "
                          "labels.")});
    // A second open starts the notes afresh.
    importer->openFile();
    EXPECT_EQ(importer->getReadNotes().size(), 3);
}

// samples/census.dta: only income has decimals in its format.
TEST(StataNotes, CensusSample)
{
    TSTATADataImport importer(kxtest::samplePath(QStringLiteral("census.dta")));
    importer.openFile();
    expectNotes(importer.getReadNotes(),
                {fileNote("income", "decimals-not-read",
                          "Variable income has the format %10.2f with 2 decimals; the reading kept no number of "
                          "decimals.")});
}

// --- notes from records a file cannot deliver ------------------------------

// ReadStat reports user-missing values for SAV files only; the rule is shared.
TEST(StataCallbackNotes, UserMissingValuesOfTheRecordAreListed)
{
    TSTATADataImport importer;
    readstat_variable_t v = readStatRecord(READSTAT_TYPE_INT16, "v", "%8.0g", "", 2);
    v.missingness.missing_ranges_count = 1;
    v.missingness.missing_ranges[0] = readStatDouble(97);
    v.missingness.missing_ranges[1] = readStatDouble(99);
    handle_variable_stata(0, &v, nullptr, &importer);
    expectNotes(importer.getReadNotes(),
                {fileNote("v", "user-missing-not-read",
                          "Variable v declares the user-missing values 97 to 99; the reading kept none of them.")});
}

} // namespace

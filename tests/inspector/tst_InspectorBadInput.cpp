// Files the inspector cannot read, and how it words the reason.
#include "InspectorRun.h"

#include "FixtureReadStat.h"
#include "TestSupport.h"
#include "model_KelAdmin.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <readstat.h>

using namespace kxinspecttest;
using kxtest::writeFile;
using kxtest::samplePath;

namespace {

// ------------------------------------------------------------------ bad input

struct BadInputCase
{
    const char *name;
    const char *fileName;          // written into the temporary folder, or a sample's name
    QByteArray content;            // content of the file; ignored for the special cases below
    QStringList options;           // before the file
    QString problem;               // expected text after "keladmin-inspect: <file>: "
    bool problemIsPrefix = false;  // the line only starts with it
};

void PrintTo(const BadInputCase &c, std::ostream *os)
{
    *os << c.name;
}

class InspectorBadInput : public Inspector, public ::testing::WithParamInterface<BadInputCase>
{
};

TEST_P(InspectorBadInput, PrintsOneLineNamingTheFileAndExitsOne)
{
    const BadInputCase &c = GetParam();
    const QString name = QString::fromLatin1(c.fileName);
    if (name == QLatin1String("directory"))
        ASSERT_TRUE(QDir(dir.path()).mkdir(name));
    else if (name != QLatin1String("missing.dcf") && name != QLatin1String("missing.txt"))
        writeFile(dir, name, c.content);

    // The file is named as given on the command line (relative to the working folder).
    const Outcome r = runInspector(c.options + QStringList{name}, dir.path());
    ASSERT_TRUE(r.finished) << "the inspector did not finish";
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.out.isEmpty()) << r.out.toStdString();
    ASSERT_EQ(r.errLines().size(), 1) << r.err.toStdString();
    const QString expected = QStringLiteral("keladmin-inspect: ") + name + QStringLiteral(": ") + c.problem;
    if (c.problemIsPrefix)
        EXPECT_TRUE(r.errLines().at(0).startsWith(expected)) << r.err.toStdString();
    else
        EXPECT_EQ(r.errLines().at(0), expected);
}

const char Garbage[] = "\x00\x01\xfe\xff garbage \x80\x81";
const QByteArray TruncatedSav = sampleHead(QStringLiteral("census.sav"), 200);
const QByteArray TruncatedDta = sampleHead(QStringLiteral("census.dta"), 300);

INSTANTIATE_TEST_SUITE_P(
    Files, InspectorBadInput,
    ::testing::Values(
        BadInputCase{"MissingFile", "missing.dcf", {}, {}, "no such file"},
        // A folder is searched for dictionaries and data files; this one is empty.
        BadInputCase{"Directory", "directory", {}, {}, "no dictionaries or data files (.dcf, .json, .sav, .zsav, .dta) found"},
        BadInputCase{"EmptyFile", "empty.dcf", QByteArray(), {}, "empty file, format not recognised"},
        BadInputCase{"GarbageFile",
                     "garbage.bin",
                     QByteArray(Garbage, sizeof Garbage - 1),
                     {},
                     "format not recognised (not a CSPro text or JSON dictionary, SPSS or Stata file); --format "
                     "forces one"},
        BadInputCase{"OldStataVersionWithAnUnknownByteOrderIsNotStata",
                     "old.bin",
                     QByteArray("q\x03\x01\x00rest", 8),
                     {},
                     "format not recognised (not a CSPro text or JSON dictionary, SPSS or Stata file); --format "
                     "forces one"},
        BadInputCase{"TextStartingWithALetterIsNotTakenForOldStata",
                     "hello.txt",
                     "hello world\n",
                     {},
                     "format not recognised (not a CSPro text or JSON dictionary, SPSS or Stata file); --format "
                     "forces one"},
        // Detection from the content, whatever the file's name.
        // Files that end before ReadStat has read their header or their variables: a short read.
        BadInputCase{"SavMagicIsDetectedAsSpss", "magic.bin", "$FL2 and nothing more", {},
                     "no fields read as spss (" + readStatReason(READSTAT_ERROR_READ) + ")"},
        BadInputCase{"OldBinaryStataHeaderIsDetectedAsStata", "old.bin", QByteArray("q\x02\x01\x00rest", 8), {},
                     "no fields read as stata (" + readStatReason(READSTAT_ERROR_READ) + ")"},
        BadInputCase{"TruncatedSav", "truncated.sav", TruncatedSav, {},
                     "no fields read as spss (" + readStatReason(READSTAT_ERROR_READ) + ")"},
        // ReadStat's message takes the place of the Stata importer's "Error processing FILE: CODE" report.
        BadInputCase{"TruncatedDta", "truncated.dta", TruncatedDta, {},
                     "no fields read as stata (" + readStatReason(READSTAT_ERROR_READ) + ")"},
        // The parser's own complaint, at the end of the 14 characters: line 1, column 15.
        BadInputCase{"MalformedJson", "broken.json", "{ \"levels\": [ ", {},
                     "no fields read as cspro8 (invalid JSON: unterminated array at line 1, column 15)"},
        BadInputCase{"DictionaryWithoutItems", "empty.dcf", "[Dictionary]\nName=EMPTY_DICT\n", {},
                     "no fields read as cspro"},
        // 48 bytes: shorter than the 176 bytes of an SPSS file's header.
        BadInputCase{"ForcedFormatThatDoesNotFit",
                     "census.dcf",
                     "[Dictionary]\nName=D\n[Item]\nName=A\nStart=1\nLen=1\n",
                     {"--format", "spss"},
                     "no fields read as spss (" + readStatReason(READSTAT_ERROR_READ) + ")"},
        // Error 242 thrown by the text reader is caught and its message printed on the line.
        BadInputCase{"LibraryErrorIsCaughtAndPrinted",
                     "corrupt.dcf",
                     "[Dictionary]\nName=D\n[Item]\nName=A\nStart=1\nLen=1\nOccurrences=100000\n",
                     {},
                     "cannot be read as cspro: Class : CSPro; Error : 242; Message : Invalid contents in line; [",
                     true},
        BadInputCase{"MissingLookupFile", "missing.txt", {}, {"--separator", "tab", "--lookup"}, "no such file"},
        BadInputCase{"EmptyLookupFile", "empty.txt", QByteArray(), {"--separator", "tab", "--lookup"},
                     "no entries read as a lookup file"}),
    [](const ::testing::TestParamInfo<BadInputCase> &info) { return std::string(info.param.name); });

// ------------------------------------------------------------------ why a file cannot be read

TEST_F(Inspector, JsonDictionaryCutInTheMiddleGivesTheParsersErrorWithLineAndColumn)
{
    // Line 4 holds 37 characters and the text stops after them: the innermost array is left open.
    const QByteArray cut = "{\n  \"name\": \"CUT\",\n  \"levels\": [\n    { \"name\": \"LEVEL1\", \"records\": [ ";
    writeFile(dir, QStringLiteral("cut.json"), cut);
    const Outcome r = runInspector({QStringLiteral("cut.json")}, dir.path());
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_EQ(r.errLines(), QStringList{"keladmin-inspect: cut.json: no fields read as cspro8 (invalid JSON: "
                                        "unterminated array at line 4, column 38)"});
}

TEST_F(Inspector, JsonDictionaryWithAWrongValueNamesItsLine)
{
    // The parser stops at the letter x that begins line 3.
    writeFile(dir, QStringLiteral("bad.json"), "{\n  \"name\":\nxyz\n}\n");
    const Outcome r = runInspector({QStringLiteral("bad.json")}, dir.path());
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 1);
    ASSERT_EQ(r.errLines().size(), 1);
    EXPECT_TRUE(r.errLines().at(0).startsWith(
        QStringLiteral("keladmin-inspect: bad.json: no fields read as cspro8 (invalid JSON: ")));
    EXPECT_TRUE(r.errLines().at(0).endsWith(QStringLiteral(" at line 3, column 1)"))) << r.err.toStdString();
}

TEST_F(Inspector, JsonDocumentThatIsNotAnObjectIsSaidSo)
{
    writeFile(dir, QStringLiteral("array.json"), "[1, 2]\n");
    const Outcome r = runInspector({QStringLiteral("--format"), QStringLiteral("cspro8"), QStringLiteral("array.json")},
                                   dir.path());
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.errLines(), QStringList{"keladmin-inspect: array.json: no fields read as cspro8 (the JSON document "
                                        "is not an object)"});
}

TEST_F(Inspector, LibraryErrorGivesTheCatalogueTextWithItsNumber)
{
    // An occurrence count far above what CSPro allows makes the text reader fail with error 242.
    writeFile(dir, QStringLiteral("corrupt.dcf"),
              "[Dictionary]\nName=D\n[Record]\nName=R\nRecordTypeValue='1'\n[Item]\nName=A\nStart=2\nLen=1\n"
              "Occurrences=99999999\n");
    const Outcome r = runInspector({QStringLiteral("corrupt.dcf")}, dir.path());
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 1);
    ASSERT_EQ(r.errLines().size(), 1) << r.err.toStdString();
    const QString line = r.errLines().at(0);
    EXPECT_TRUE(line.startsWith(QStringLiteral("keladmin-inspect: corrupt.dcf: cannot be read as cspro: Class : "
                                               "CSPro; Error : 242; Message : Invalid contents in line; [")))
        << line.toStdString();
    // The detail is a line index held as one character, shown escaped, never raw.
    EXPECT_FALSE(line.contains(QRegularExpression(QStringLiteral("[\\x00-\\x1f]"))));
}

// ------------------------------------------------------------------ files that cannot be read

TEST_F(Inspector, FileThatCannotBeReadIsSaidSoForADictionaryAndForALookup)
{
    const QString path = kxtest::unreadableFile(dir);
    if (path.isEmpty())
        GTEST_SKIP() << "no file here that this user cannot read";
    const QString expected = QStringLiteral("keladmin-inspect: %1: cannot be read (Permission denied)").arg(path);
    const Outcome dictionary = runInspector({path});
    ASSERT_TRUE(dictionary.finished);
    EXPECT_EQ(dictionary.exitCode, 1);
    EXPECT_EQ(dictionary.errLines(), QStringList{expected});
    const Outcome lookup = runInspector({QStringLiteral("--lookup"), path, QStringLiteral("--separator"),
                                         QStringLiteral("tab")});
    ASSERT_TRUE(lookup.finished);
    EXPECT_EQ(lookup.exitCode, 1);
    EXPECT_EQ(lookup.errLines(), QStringList{expected});
}

// ------------------------------------------------------------------ the line of error 242

TEST_F(Inspector, Error242SaysTheLineInDecimal)
{
    // The reading fails in the item section of lines 6 to 10; its last line is line 10.
    writeFile(dir, QStringLiteral("corrupt.dcf"),
              "[Dictionary]\nName=D\n[Record]\nName=R\nRecordTypeValue='1'\n[Item]\nName=A\nStart=2\nLen=1\n"
              "Occurrences=99999999\n");
    const Outcome r = runInspector({QStringLiteral("corrupt.dcf")}, dir.path());
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.errLines(), QStringList{"keladmin-inspect: corrupt.dcf: cannot be read as cspro: Class : CSPro; "
                                        "Error : 242; Message : Invalid contents in line; [\\u0009 ] (line 10 of "
                                        "the file)"});
}

TEST_F(Inspector, Error242NamesTheLastLineOfTheFailingSection)
{
    // The failing item is followed by a blank line 9 and the next section at line 10.
    writeFile(dir, QStringLiteral("corrupt.dcf"),
              "[Dictionary]\nName=D\n[Item]\nName=A\nStart=2\nLen=1\nOccurrences=99999999\nLabel=A\n\n"
              "[Item]\nName=B\nStart=3\nLen=1\n");
    const Outcome r = runInspector({QStringLiteral("corrupt.dcf")}, dir.path());
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 1);
    ASSERT_EQ(r.errLines().size(), 1);
    EXPECT_TRUE(r.errLines().at(0).endsWith(QStringLiteral("Error : 242; Message : Invalid contents in line; "
                                                          "[\\u0008 ] (line 9 of the file)")))
        << r.err.toStdString();
}

TEST_F(Inspector, Error242PastLine65536SaysTheLineIsKeptIn16Bits)
{
    // Two lines, 70000 more, then an item whose section ends at line 70006: of its index 70005, 16 bits keep
    // 70005 - 65536 = 4469, which says line 4470.
    QByteArray text = "[Dictionary]\nName=D\n";
    for (int i = 0; i < 70000; ++i)
        text += "Note=x\n";
    text += "[Item]\nName=A\nStart=2\nOccurrences=99999999\n";
    writeFile(dir, QStringLiteral("big.dcf"), text);
    const Outcome r = runInspector({QStringLiteral("big.dcf")}, dir.path());
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 1);
    ASSERT_EQ(r.errLines().size(), 1);
    EXPECT_TRUE(r.errLines().at(0).endsWith(QStringLiteral(
        " (line 4470 of the file, or a multiple of 65536 lines further: the line is kept in 16 bits)")))
        << r.err.toStdString();
}

// ------------------------------------------------------------------ ReadStat's reason, in words

//! \a size bytes of a fixed pseudo-random sequence (a linear congruential generator seeded with 1).
QByteArray randomBytes(int size)
{
    QByteArray bytes(size, '\0');
    quint32 state = 1;
    for (char &b : bytes) {
        state = state * 1103515245u + 12345u;
        b = static_cast<char>(state >> 16);
    }
    return bytes;
}

TEST_F(Inspector, RandomBytesForcedAsStataGiveReadStatsMessageForAnUnsupportedVersion)
{
    const QByteArray bytes = randomBytes(4096);
    // ReadStat takes the first byte for the format version: neither "<" (the XML form) nor 104 to 119.
    const int first = static_cast<unsigned char>(bytes.at(0));
    ASSERT_TRUE(first != '<' && (first < 104 || first > 119)) << first;
    writeFile(dir, QStringLiteral("random.bin"), bytes);
    const Outcome r = runInspector({QStringLiteral("--format"), QStringLiteral("stata"), QStringLiteral("random.bin")},
                                   dir.path());
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_EQ(r.errLines(), QStringList{"keladmin-inspect: random.bin: no fields read as stata (ReadStat: This version "
                                        "of the file format is not supported (error 24))"});
    EXPECT_EQ(QString::fromUtf8(readstat_error_message(READSTAT_ERROR_UNSUPPORTED_FILE_FORMAT_VERSION)),
              QStringLiteral("This version of the file format is not supported"));
}

TEST_F(Inspector, RandomBytesForcedAsSpssAreAnInvalidFile)
{
    writeFile(dir, QStringLiteral("random.bin"), randomBytes(4096));
    const Outcome r = runInspector({QStringLiteral("--format"), QStringLiteral("spss"), QStringLiteral("random.bin")},
                                   dir.path());
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 1);
    // No "$FL2" or "$FL3" at the start.
    EXPECT_EQ(r.errLines(), QStringList{"keladmin-inspect: random.bin: no fields read as spss (" +
                                        readStatReason(READSTAT_ERROR_PARSE) + ")"});
}

TEST_F(Inspector, SpssFileCutAmongItsVariablesGivesReadStatsMessageNotANumberAlone)
{
    // The 176-byte header whole, the variable records cut after 24 more bytes.
    writeFile(dir, QStringLiteral("cut.sav"), sampleHead(QStringLiteral("census.sav"), 200));
    const Outcome r = runInspector({QStringLiteral("cut.sav")}, dir.path());
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.errLines(), QStringList{"keladmin-inspect: cut.sav: no fields read as spss (ReadStat: Unable to read "
                                        "from file (error 2))"});
}

//! A compressed SPSS file (.zsav) with a file label and a creation time of its own.
kxtest::ReadStatFile labelledZsav(qint64 timestamp)
{
    kxtest::ReadStatFile f;
    f.container = kxtest::ReadStatFile::Container::Zsav;
    f.variables << kxtest::readStatVariable("age", kxtest::ReadStatFile::Type::Double, "F3.0", "Age");
    f.rows = 7;
    f.fileLabel = "Census 2023, \"person\" extract";
    f.timestamp = timestamp;
    return f;
}

TEST_F(Inspector, SpssFileWhoseHeaderDateIsInAnotherLanguageHasNoCreationTime)
{
    kxtest::ReadStatFile f = labelledZsav(1677663015);
    f.container = kxtest::ReadStatFile::Container::Sav;
    const QString path = kxtest::writeReadStatFile(dir, QStringLiteral("dated.sav"), f);
    ASSERT_FALSE(path.isEmpty());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.seek(92)); // the header's creation date, "dd mmm yy", with a German month
    ASSERT_EQ(file.write("01 Mrz 23", 9), 9);
    file.close();
    const Outcome json = runInspector({QStringLiteral("--json"), path});
    ASSERT_TRUE(json.finished);
    ASSERT_EQ(json.exitCode, 0) << json.err.toStdString();
    EXPECT_TRUE(jsonOf(json).value(QStringLiteral("fileMetadata")).toObject().value(QStringLiteral("creationTime")).isNull());
    const Outcome table = runInspector({path});
    ASSERT_TRUE(table.finished);
    EXPECT_TRUE(table.outLines().contains(QStringLiteral("Created:           unknown"))) << table.out.toStdString();
}

TEST_F(Inspector, ZsavReportsVersionThreeItsLabelAndItsCreationTime)
{
    const qint64 timestamp = 1677663015; // 2023-03-01 09:30:15 UTC
    const QString path = kxtest::writeReadStatFile(dir, QStringLiteral("labelled.zsav"), labelledZsav(timestamp));
    ASSERT_FALSE(path.isEmpty());
    // ReadStat's writer states the time in local time; the inspector shows it as the file states it.
    const QString created = QDateTime::fromSecsSinceEpoch(timestamp).toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));

    const Outcome table = runInspector({path});
    ASSERT_TRUE(table.finished);
    ASSERT_EQ(table.exitCode, 0) << table.err.toStdString();
    const QStringList lines = table.outLines();
    EXPECT_TRUE(lines.contains(QStringLiteral("Rows:              7")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Format version:    3")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Created:           ") + created)) << table.out.toStdString();
    EXPECT_TRUE(lines.contains(QStringLiteral("File label:        Census 2023, \"person\" extract")));

    const Outcome json = runInspector({QStringLiteral("--json"), path});
    ASSERT_TRUE(json.finished);
    const QJsonObject meta = jsonOf(json).value(QStringLiteral("fileMetadata")).toObject();
    EXPECT_EQ(num(meta, "rowCount"), 7);
    EXPECT_EQ(num(meta, "formatVersion"), 3);
    EXPECT_EQ(str(meta, "creationTime"), created);
    EXPECT_EQ(str(meta, "label"), QStringLiteral("Census 2023, \"person\" extract"));
}

TEST_F(Inspector, StataFileCutInItsDataKeepsItsFieldsAndWarnsInReadStatsWords)
{
    kxtest::ReadStatFile f;
    f.container = kxtest::ReadStatFile::Container::Dta;
    f.variables << kxtest::readStatVariable("a", kxtest::ReadStatFile::Type::Int8, "%8.0g", "A")
                << kxtest::readStatVariable("b", kxtest::ReadStatFile::Type::Double, "%10.2f", "B");
    f.rows = 5000;
    const QByteArray whole = kxtest::readStatBytes(f);
    ASSERT_GT(whole.size(), 45000);
    // 9 bytes a row: the last 10000 bytes hold data rows and the value-label section that follows them.
    writeFile(dir, QStringLiteral("cut.dta"), whole.left(whole.size() - 10000));
    const Outcome r = runInspector({QStringLiteral("cut.dta")}, dir.path());
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.outLines().contains(QStringLiteral("Fields:            2"))) << r.out.toStdString();
    ASSERT_EQ(r.errLines().size(), 1) << r.err.toStdString();
    EXPECT_EQ(r.errLines().at(0), QStringLiteral("keladmin-inspect: cut.dta: warning: the reading stopped early: ")
                                      + readStatReason(READSTAT_ERROR_READ));
}

TEST_F(Inspector, CsvWithFailOnNotesPrintsEveryRowAndExitsThree)
{
    // samples/census.sav gives notes (formats with decimals, the width of A24).
    const Outcome r = runInspector({QStringLiteral("--csv"), QStringLiteral("--fail-on-notes"),
                                    samplePath(QStringLiteral("census.sav"))});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 3);
    EXPECT_EQ(csvRecordsOf(r.out).size(), 1 + 15);
}

} // namespace

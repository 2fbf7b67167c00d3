// Runs the keladmin-inspect program on the bundled samples and on bad input,
// and checks its exit status, its output lines and its JSON document.
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

using kxtest::writeFile;

namespace {

struct Outcome
{
    bool finished = false;
    int exitCode = -1;
    QString out;
    QString err;

    QStringList errLines() const { return err.split(QLatin1Char('\n'), Qt::SkipEmptyParts); }
    QStringList outLines() const { return out.split(QLatin1Char('\n')); }
};

#ifdef KX_INSPECT_PROGRAM
const QString Program = QStringLiteral(KX_INSPECT_PROGRAM);
#else
const QString Program;
#endif

using kxtest::samplePath;

// No display: the program must never wait for a dialog.
Outcome runInspector(const QStringList &args, const QString &workDir = QString(),
                     const QList<QPair<QString, QString>> &extraEnv = {})
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    // The test program's own offscreen platform is not the user's.
    env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    // Under the sanitizers: the library keeps its fields alive on purpose.
    const QString asan = env.value(QStringLiteral("ASAN_OPTIONS"));
    env.insert(QStringLiteral("ASAN_OPTIONS"),
               asan.isEmpty() ? QStringLiteral("detect_leaks=0") : asan + QStringLiteral(":detect_leaks=0"));
    for (const auto &var : extraEnv)
        env.insert(var.first, var.second);
    p.setProcessEnvironment(env);
    if (!workDir.isEmpty())
        p.setWorkingDirectory(workDir);
    p.start(Program, args);
    Outcome r;
    if (!p.waitForStarted(10000))
        return r;
    r.finished = p.waitForFinished(60000);
    if (!r.finished) {
        p.kill();
        p.waitForFinished(5000);
    }
    r.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = QString::fromUtf8(p.readAllStandardOutput());
    r.err = QString::fromLocal8Bit(p.readAllStandardError());
    return r;
}

QJsonObject jsonOf(const Outcome &r)
{
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(r.out.toUtf8(), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();
    return doc.object();
}

QJsonObject fieldNamed(const QJsonObject &root, const QString &name)
{
    for (const QJsonValue &v : root.value(QStringLiteral("fields")).toArray()) {
        if (v.toObject().value(QStringLiteral("name")).toString() == name)
            return v.toObject();
    }
    ADD_FAILURE() << "no field " << name.toStdString();
    return QJsonObject();
}

QStringList codesOf(const QJsonObject &field)
{
    QStringList codes;
    for (const QJsonValue &v : field.value(QStringLiteral("valueLabels")).toArray())
        codes << v.toObject().value(QStringLiteral("code")).toString();
    return codes;
}

QStringList labelsOf(const QJsonObject &field)
{
    QStringList labels;
    for (const QJsonValue &v : field.value(QStringLiteral("valueLabels")).toArray())
        labels << v.toObject().value(QStringLiteral("label")).toString();
    return labels;
}

int frequencyOf(const QJsonObject &root, const QString &label)
{
    for (const QJsonValue &v : root.value(QStringLiteral("labelFrequencies")).toArray()) {
        if (v.toObject().value(QStringLiteral("label")).toString() == label)
            return v.toObject().value(QStringLiteral("count")).toInt();
    }
    return 0;
}

QString str(const QJsonObject &o, const char *key)
{
    return o.value(QLatin1String(key)).toString();
}

int num(const QJsonObject &o, const char *key)
{
    return o.value(QLatin1String(key)).toInt(-999);
}

class Inspector : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (Program.isEmpty())
            GTEST_SKIP() << "the inspector is not built (KX_BUILD_TOOLS=OFF)";
        ASSERT_TRUE(dir.isValid());
    }
    QTemporaryDir dir;
};

// ------------------------------------------------------------------ usage

TEST_F(Inspector, HelpExitsZeroAndDocumentsEveryOption)
{
    const Outcome r = runInspector({QStringLiteral("--help")});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.startsWith(QStringLiteral("Usage:\n")));
    for (const char *option : {"--format cspro|cspro8|spss|stata", "--json", "--decimal ask|yes-to-all|no-to-all",
                               "--lookup FILE", "--separator tab|comma|semicolon|colon|blank", "--check",
                               "--max-messages N", "--help"})
        EXPECT_TRUE(r.out.contains(QLatin1String(option))) << option;
    EXPECT_TRUE(r.err.isEmpty());
}

struct UsageCase
{
    const char *name;
    QStringList args;
    QString firstLine;
};

void PrintTo(const UsageCase &c, std::ostream *os)
{
    *os << c.name;
}

class InspectorUsage : public Inspector, public ::testing::WithParamInterface<UsageCase>
{
};

TEST_P(InspectorUsage, ExitsTwoWithTheProblemAndTheUsage)
{
    const Outcome r = runInspector(GetParam().args);
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.out.isEmpty());
    ASSERT_GE(r.errLines().size(), 2);
    EXPECT_EQ(r.errLines().at(0), GetParam().firstLine);
    EXPECT_EQ(r.errLines().at(1), QStringLiteral("Usage:"));
}

INSTANTIATE_TEST_SUITE_P(
    Arguments, InspectorUsage,
    ::testing::Values(
        UsageCase{"NoFile", {}, "keladmin-inspect: no file given"},
        UsageCase{"UnknownOption", {"--frobnicate", "x.dcf"}, "keladmin-inspect: unknown option '--frobnicate'"},
        UsageCase{"UnknownFormat",
                  {"--format", "excel", "x.dcf"},
                  "keladmin-inspect: unknown format 'excel' (cspro, cspro8, spss or stata)"},
        UsageCase{"UnknownDecimalAnswer",
                  {"--decimal", "maybe", "x.dcf"},
                  "keladmin-inspect: unknown decimal answer 'maybe' (ask, yes-to-all or no-to-all)"},
        UsageCase{"LookupWithoutSeparator", {"--lookup", "a.txt"}, "keladmin-inspect: --lookup needs --separator"},
        UsageCase{"UnknownSeparator",
                  {"--lookup", "a.txt", "--separator", "pipe"},
                  "keladmin-inspect: unknown separator 'pipe' (tab, comma, semicolon, colon or blank)"},
        UsageCase{"NegativeMaxMessages",
                  {"--lookup", "a.txt", "--separator", "tab", "--max-messages", "-1"},
                  "keladmin-inspect: --max-messages needs a number of 0 or more, not '-1'"},
        UsageCase{"CheckWithoutLookup",
                  {"--check", "x.dcf"},
                  "keladmin-inspect: --separator, --check and --max-messages apply to --lookup only"},
        UsageCase{"DecimalWithLookup",
                  {"--lookup", "a.txt", "--separator", "tab", "--decimal", "ask"},
                  "keladmin-inspect: --format and --decimal apply to dictionaries, not to --lookup"},
        UsageCase{"TwoFiles", {"a.dcf", "b.dcf"}, "keladmin-inspect: only one file can be inspected"},
        UsageCase{"FileAndLookup", {"a.dcf", "--lookup", "b.txt"}, "keladmin-inspect: only one file can be inspected"},
        UsageCase{"NothingAfterDashDash", {"--"}, "keladmin-inspect: no file given"},
        UsageCase{"TwoFilesAfterDashDash", {"--", "-a.dcf", "-b.dcf"},
                  "keladmin-inspect: only one file can be inspected"},
        UsageCase{"FormatWithoutValue", {"--format"}, "keladmin-inspect: --format needs a value"},
        UsageCase{"DecimalWithoutValue", {"a.dcf", "--decimal"}, "keladmin-inspect: --decimal needs a value"},
        UsageCase{"LookupWithoutFile", {"--lookup"}, "keladmin-inspect: --lookup needs a file"},
        UsageCase{"SeparatorWithoutValue", {"--lookup", "a.txt", "--separator"},
                  "keladmin-inspect: --separator needs a value"},
        UsageCase{"MaxMessagesWithoutNumber", {"--lookup", "a.txt", "--separator", "tab", "--max-messages"},
                  "keladmin-inspect: --max-messages needs a number"},
        UsageCase{"MaxMessagesThatIsNoNumber",
                  {"--lookup", "a.txt", "--separator", "tab", "--max-messages", "ten"},
                  "keladmin-inspect: --max-messages needs a number of 0 or more, not 'ten'"},
        UsageCase{"FormatWithLookup",
                  {"--lookup", "a.txt", "--separator", "tab", "--format", "cspro"},
                  "keladmin-inspect: --format and --decimal apply to dictionaries, not to --lookup"},
        UsageCase{"SeparatorWithoutLookup",
                  {"--separator", "tab", "x.dcf"},
                  "keladmin-inspect: --separator, --check and --max-messages apply to --lookup only"},
        UsageCase{"MaxMessagesWithoutLookup",
                  {"--max-messages", "5", "x.dcf"},
                  "keladmin-inspect: --separator, --check and --max-messages apply to --lookup only"}),
    [](const ::testing::TestParamInfo<UsageCase> &info) { return std::string(info.param.name); });

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

QByteArray sampleHead(const QString &name, int bytes)
{
    QFile f(samplePath(name));
    return f.open(QIODevice::ReadOnly) ? f.read(bytes) : QByteArray();
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

//! How the inspector words a ReadStat error: ReadStat's own message and its code.
QString readStatReason(readstat_error_t code)
{
    return QStringLiteral("ReadStat: %1 (error %2)").arg(QString::fromUtf8(readstat_error_message(code))).arg(code);
}

const char Garbage[] = "\x00\x01\xfe\xff garbage \x80\x81";
const QByteArray TruncatedSav = sampleHead(QStringLiteral("census.sav"), 200);
const QByteArray TruncatedDta = sampleHead(QStringLiteral("census.dta"), 300);

INSTANTIATE_TEST_SUITE_P(
    Files, InspectorBadInput,
    ::testing::Values(
        BadInputCase{"MissingFile", "missing.dcf", {}, {}, "no such file"},
        BadInputCase{"Directory", "directory", {}, {}, "is a directory, not a file"},
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

// ------------------------------------------------------------------ CSPro text sample

TEST_F(Inspector, CSProTextSampleTableShowsIdentityRecordTypesGroupsAndFields)
{
    const QString path = samplePath(QStringLiteral("census.dcf"));
    const Outcome r = runInspector({path});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    const QStringList lines = r.outLines();
    EXPECT_TRUE(lines.contains(QStringLiteral("Format:            cspro (detected)")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Provider id:       CSPRO_") + path));
    EXPECT_TRUE(lines.contains(QStringLiteral("Provider type:     CSPRO")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Record type:       start 1, length 1")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Groups:            3")));
    EXPECT_TRUE(lines.contains(QStringLiteral("  HOUSING=H  (14 fields)")));
    EXPECT_TRUE(lines.contains(QStringLiteral("  PERSON=P  (12 fields)")));
    EXPECT_TRUE(lines.contains(QStringLiteral("  DEATH=D  (4 fields)")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Fields:            35")));
    // Header row, then one row per field; occurrence names show their control character escaped.
    const int header = lines.indexOf(QRegularExpression(QStringLiteral("^NAME +LABEL +TYPE +START +SIZE +DEC +MIN +MAX "
                                                                        "+MISSING +NOTAPPL +GROUP +VALUE LABELS$")));
    ASSERT_GE(header, 0);
    // The field rows end where the reading notes begin.
    const int notes = lines.indexOf(QRegularExpression(QStringLiteral("Notes: +[0-9]+")));
    ASSERT_GT(notes, header);
    EXPECT_EQ(lines.mid(header + 1, notes - header - 1).filter(QRegularExpression(QStringLiteral("\\S"))).size(), 35);
    EXPECT_TRUE(lines.at(header + 1).startsWith(QStringLiteral("PROVINCE ")));
    EXPECT_TRUE(lines.at(header + 1).endsWith(QStringLiteral("1=North; 2=South; 3=East; 4=West; 5=Capital district")));
    const QStringList assets = lines.filter(QRegularExpression(QStringLiteral("^ASSET_\\\\u000[1-6] ")));
    EXPECT_EQ(assets.size(), 6);
}

TEST_F(Inspector, CSProTextSampleAsJson)
{
    const QString path = samplePath(QStringLiteral("census.dcf"));
    const Outcome r = runInspector({QStringLiteral("--json"), path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(str(root, "file"), path);
    EXPECT_EQ(str(root, "format"), QStringLiteral("cspro"));
    EXPECT_EQ(str(root, "providerId"), QStringLiteral("CSPRO_") + path);
    EXPECT_EQ(str(root, "providerType"), QStringLiteral("CSPRO"));
    // The data provider takes over the type "CSPRO".
    EXPECT_EQ(str(root, "descriptionType"), QStringLiteral("CSPRO"));
    EXPECT_EQ(num(root, "recordTypeStart"), 1);
    EXPECT_EQ(num(root, "recordTypeLength"), 1);
    const QJsonArray groups = root.value(QStringLiteral("groups")).toArray();
    ASSERT_EQ(groups.size(), 3);
    EXPECT_EQ(str(groups.at(0).toObject(), "name"), QStringLiteral("HOUSING"));
    EXPECT_EQ(str(groups.at(0).toObject(), "recordType"), QStringLiteral("H"));
    EXPECT_EQ(str(groups.at(2).toObject(), "name"), QStringLiteral("DEATH"));
    EXPECT_EQ(str(groups.at(2).toObject(), "recordType"), QStringLiteral("D"));
    EXPECT_EQ(root.value(QStringLiteral("fields")).toArray().size(), 35);

    // Identification items belong to the record "Common".
    EXPECT_EQ(str(fieldNamed(root, "PROVINCE"), "group"), QStringLiteral("Common"));

    // Six occurrences named with the occurrence number as one character, one column apart.
    for (int k = 1; k <= 6; ++k) {
        const QJsonObject asset = fieldNamed(root, QStringLiteral("ASSET_") + QChar(k));
        EXPECT_EQ(num(asset, "start"), 18 + k);
        EXPECT_EQ(num(asset, "size"), 1);
        EXPECT_EQ(str(asset, "group"), QStringLiteral("HOUSING"));
        EXPECT_EQ(codesOf(asset), (QStringList{"1", "2"}));
    }

    // A range is stored as its two bound codes; bounds come from the codes.
    const QJsonObject age = fieldNamed(root, "AGE");
    EXPECT_EQ(str(age, "type"), QStringLiteral("INTEGER"));
    EXPECT_EQ(codesOf(age), (QStringList{"0", "97", "98", "999"}));
    EXPECT_EQ(str(age, "minimum"), QStringLiteral("0"));
    EXPECT_EQ(str(age, "maximum"), QStringLiteral("999"));
    EXPECT_EQ(str(age, "group"), QStringLiteral("PERSON"));
    const QJsonObject rooms = fieldNamed(root, "ROOMS");
    EXPECT_EQ(codesOf(rooms), (QStringList{"1", "20", "99"}));
    EXPECT_EQ(str(rooms, "minimum"), QStringLiteral("1"));
    EXPECT_EQ(str(rooms, "maximum"), QStringLiteral("99"));

    // The usual "Name=MISSING,Special" line leaves the entry ordinary: no missing code.
    const QJsonObject dwelling = fieldNamed(root, "DWELLING");
    EXPECT_EQ(str(dwelling, "missingCode"), QString());
    EXPECT_TRUE(codesOf(dwelling).contains(QStringLiteral("9")));
    EXPECT_EQ(str(fieldNamed(root, "SCHOOL"), "notApplicableCode"), QString());

    // Alpha codes keep their closing apostrophe; a text item with values gets minimum "0".
    const QJsonObject walls = fieldNamed(root, "WALLS");
    EXPECT_EQ(str(walls, "type"), QStringLiteral("STRING"));
    EXPECT_EQ(codesOf(walls), (QStringList{"A'", "B'", "C'", "X'"}));
    EXPECT_EQ(str(walls, "minimum"), QStringLiteral("0"));
    EXPECT_EQ(str(walls, "maximum"), QString());
    const QJsonObject address = fieldNamed(root, "ADDRESS");
    EXPECT_EQ(str(address, "minimum"), QString());
    EXPECT_EQ(str(address, "maximum"), QString());

    // Implied decimals: length 7 with 2 decimals gives five nines.
    const QJsonObject rent = fieldNamed(root, "RENT");
    EXPECT_EQ(str(rent, "type"), QStringLiteral("REAL"));
    EXPECT_EQ(num(rent, "decimals"), 2);
    EXPECT_EQ(str(rent, "maximum"), QStringLiteral("99999"));
    EXPECT_EQ(str(fieldNamed(root, "INCOME"), "maximum"), QStringLiteral("999999"));

    // Subitems are read like items and overlap their parent.
    const QJsonObject year = fieldNamed(root, "BIRTHYEAR");
    EXPECT_EQ(num(year, "start"), 20);
    EXPECT_EQ(num(year, "size"), 4);
}

TEST_F(Inspector, DecimalValueSetIsDroppedByDefault)
{
    const Outcome r = runInspector({QStringLiteral("--json"), samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0);
    const QJsonObject land = fieldNamed(jsonOf(r), "LANDAREA");
    EXPECT_TRUE(codesOf(land).isEmpty());
    // No value set, a decimal character present: length minus one nines.
    EXPECT_EQ(str(land, "maximum"), QStringLiteral("9999"));
    EXPECT_EQ(num(land, "decimals"), 1);
}

TEST_F(Inspector, DecimalYesToAllTurnsDecimalCodesIntoZeroAndKeepsTheValueSet)
{
    const Outcome r = runInspector(
        {QStringLiteral("--decimal"), QStringLiteral("yes-to-all"), QStringLiteral("--json"),
         samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject land = fieldNamed(jsonOf(r), "LANDAREA");
    EXPECT_EQ(codesOf(land), (QStringList{"0", "1", "999"}));
    EXPECT_EQ(labelsOf(land).at(0), QStringLiteral("Under one hectare"));
    EXPECT_EQ(str(land, "minimum"), QStringLiteral("0"));
    EXPECT_EQ(str(land, "maximum"), QStringLiteral("999"));
}

TEST_F(Inspector, DecimalNoToAllDropsTheValueSet)
{
    const Outcome r = runInspector(
        {QStringLiteral("--decimal"), QStringLiteral("no-to-all"), QStringLiteral("--json"),
         samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0);
    EXPECT_TRUE(codesOf(fieldNamed(jsonOf(r), "LANDAREA")).isEmpty());
    EXPECT_TRUE(r.err.isEmpty());
}

TEST_F(Inspector, DecimalAskWithoutDisplayDoesNotWaitAndAnswersNoToAll)
{
    const QString path = samplePath(QStringLiteral("census.dcf"));
    const Outcome r = runInspector({QStringLiteral("--decimal"), QStringLiteral("ask"), QStringLiteral("--json"), path});
    ASSERT_TRUE(r.finished) << "the inspector waited for a dialog";
    ASSERT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.errLines(), QStringList{QStringLiteral("keladmin-inspect: ") + path
                                        + QStringLiteral(": note: no display, the decimal prompt is answered "
                                                         "no-to-all")});
    EXPECT_TRUE(codesOf(fieldNamed(jsonOf(r), "LANDAREA")).isEmpty());
}

TEST_F(Inspector, DecimalAskOnTheOffscreenOrMinimalPlatformCountsAsNoDisplay)
{
    const QString path = samplePath(QStringLiteral("census.dcf"));
    const QList<QPair<QString, QString>> displays[] = {
        {{QStringLiteral("DISPLAY"), QStringLiteral(":99")}, {QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen")}},
        {{QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("wayland-0")},
         {QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("minimal")}}};
    for (const auto &environment : displays) {
        const Outcome r = runInspector({QStringLiteral("--decimal"), QStringLiteral("ask"), path}, QString(), environment);
        ASSERT_TRUE(r.finished) << "the inspector waited for a dialog";
        EXPECT_EQ(r.exitCode, 0);
        EXPECT_EQ(r.errLines(), QStringList{QStringLiteral("keladmin-inspect: ") + path
                                            + QStringLiteral(": note: no display, the decimal prompt is answered "
                                                             "no-to-all")});
    }
}

TEST_F(Inspector, FormatIsDetectedAfterAByteOrderMarkAndBlankLines)
{
    writeFile(dir, QStringLiteral("bom.txt"), "\xEF\xBB\xBF\n\n[Dictionary]\nName=D\n[Item]\nName=A\nStart=1\nLen=2\n");
    const Outcome r = runInspector({QStringLiteral("--json"), dir.filePath(QStringLiteral("bom.txt"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(str(root, "format"), QStringLiteral("cspro"));
    EXPECT_TRUE(root.value(QStringLiteral("formatDetected")).toBool());
    EXPECT_EQ(str(fieldNamed(root, "A"), "maximum"), QStringLiteral("99"));
}

TEST_F(Inspector, ForcedFormatIsReportedAsForced)
{
    const Outcome r = runInspector({QStringLiteral("--format"), QStringLiteral("cspro8"),
                                samplePath(QStringLiteral("census.json"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.outLines().contains(QStringLiteral("Format:            cspro8 (forced)")));
}

// ------------------------------------------------------------------ CSPro 8 JSON sample

TEST_F(Inspector, CSProJsonSampleAsJson)
{
    const QString path = samplePath(QStringLiteral("census.json"));
    const Outcome r = runInspector({QStringLiteral("--json"), path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(str(root, "format"), QStringLiteral("cspro8"));
    EXPECT_EQ(str(root, "providerId"), QStringLiteral("CSPRO8_") + path);
    EXPECT_EQ(str(root, "providerType"), QStringLiteral("CSPRO8"));
    // The data provider does not take over "CSPRO8".
    EXPECT_EQ(str(root, "descriptionType"), QString());
    EXPECT_EQ(num(root, "recordTypeStart"), 1);
    EXPECT_EQ(num(root, "recordTypeLength"), 1);
    EXPECT_EQ(root.value(QStringLiteral("groups")).toArray().size(), 3);
    // Subitems are not read: 35 text fields less BIRTHYEAR and BIRTHMONTH.
    EXPECT_EQ(root.value(QStringLiteral("fields")).toArray().size(), 33);

    for (int k = 1; k <= 6; ++k) {
        const QJsonObject asset = fieldNamed(root, QStringLiteral("ASSET_%1").arg(k));
        EXPECT_EQ(num(asset, "start"), 18 + k);
        EXPECT_EQ(codesOf(asset), (QStringList{"1", "2"}));
    }
    // A range stays one entry "low:high", which reads as the number 0.
    const QJsonObject rooms = fieldNamed(root, "ROOMS");
    EXPECT_EQ(codesOf(rooms), (QStringList{"0", "99"}));
    EXPECT_EQ(str(rooms, "minimum"), QStringLiteral("0"));
    EXPECT_EQ(str(rooms, "maximum"), QStringLiteral("99"));
    // No number of decimals is read from JSON.
    const QJsonObject rent = fieldNamed(root, "RENT");
    EXPECT_EQ(str(rent, "type"), QStringLiteral("INTEGER"));
    EXPECT_EQ(num(rent, "decimals"), 0);
    EXPECT_EQ(str(rent, "maximum"), QStringLiteral("9999999"));
    // Alpha codes are kept as written.
    EXPECT_EQ(codesOf(fieldNamed(root, "WALLS")), (QStringList{"A", "B", "C", "X"}));
}

// ------------------------------------------------------------------ SPSS and Stata samples

TEST_F(Inspector, SpssSampleAsJson)
{
    const QString path = samplePath(QStringLiteral("census.sav"));
    const Outcome r = runInspector({QStringLiteral("--json"), path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(str(root, "format"), QStringLiteral("spss"));
    EXPECT_EQ(str(root, "providerId"), QStringLiteral("SPSS_") + path);
    EXPECT_EQ(str(root, "providerType"), QStringLiteral("SPSS"));
    EXPECT_EQ(str(root, "descriptionType"), QString());
    EXPECT_EQ(num(root, "recordTypeStart"), 0);
    EXPECT_EQ(num(root, "recordTypeLength"), 0);
    EXPECT_TRUE(root.value(QStringLiteral("groups")).toArray().isEmpty());
    EXPECT_EQ(root.value(QStringLiteral("fields")).toArray().size(), 15);

    const QJsonObject sex = fieldNamed(root, "sex");
    EXPECT_EQ(str(sex, "label"), QStringLiteral("Sex"));
    EXPECT_EQ(str(sex, "type"), QStringLiteral("INTEGER"));
    EXPECT_EQ(codesOf(sex), (QStringList{"1", "2"}));
    EXPECT_EQ(labelsOf(sex), (QStringList{"Male", "Female"}));
    EXPECT_EQ(str(sex, "minimum"), QStringLiteral("1"));
    EXPECT_EQ(str(sex, "maximum"), QStringLiteral("2"));
    // Unlabelled: "0" and the width's nines; the width is the digit after the format letter.
    const QJsonObject district = fieldNamed(root, "district");
    EXPECT_EQ(num(district, "size"), 2);
    EXPECT_EQ(str(district, "minimum"), QStringLiteral("0"));
    EXPECT_EQ(str(district, "maximum"), QStringLiteral("99"));
    EXPECT_EQ(str(fieldNamed(root, "income"), "type"), QStringLiteral("REAL"));
    // A24 has the width 2; strings get no bounds, and their value labels carry the string values.
    const QJsonObject fullname = fieldNamed(root, "fullname");
    EXPECT_EQ(str(fullname, "type"), QStringLiteral("STRING"));
    EXPECT_EQ(num(fullname, "size"), 2);
    EXPECT_EQ(str(fullname, "minimum"), QString());
    EXPECT_EQ(str(fullname, "maximum"), QString());
    const QJsonObject occup = fieldNamed(root, "occup");
    EXPECT_EQ(codesOf(occup), (QStringList{"1120", "6111", "7115", "9999"}));
    EXPECT_EQ(labelsOf(occup).at(2), QStringLiteral("Carpenters and joiners"));
}

TEST_F(Inspector, StataSampleAsJson)
{
    const QString path = samplePath(QStringLiteral("census.dta"));
    const Outcome r = runInspector({QStringLiteral("--json"), path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(str(root, "format"), QStringLiteral("stata"));
    EXPECT_EQ(str(root, "providerId"), QStringLiteral("STATA_") + path);
    EXPECT_EQ(str(root, "providerType"), QStringLiteral("STATA"));
    EXPECT_EQ(str(root, "descriptionType"), QString());
    EXPECT_EQ(root.value(QStringLiteral("fields")).toArray().size(), 16);

    const QJsonObject marital = fieldNamed(root, "marital");
    EXPECT_EQ(str(marital, "type"), QStringLiteral("INTEGER"));
    EXPECT_EQ(codesOf(marital), (QStringList{"1", "2", "3", "4", "5", "9"}));
    EXPECT_EQ(str(marital, "minimum"), QStringLiteral("1"));
    EXPECT_EQ(str(marital, "maximum"), QStringLiteral("9"));
    // Float and double are real whatever their decimals.
    EXPECT_EQ(str(fieldNamed(root, "pweight"), "type"), QStringLiteral("REAL"));
    EXPECT_EQ(str(fieldNamed(root, "income"), "type"), QStringLiteral("REAL"));
    // Strings get "0" and as many nines as their storage width.
    const QJsonObject occup = fieldNamed(root, "occup");
    EXPECT_EQ(str(occup, "type"), QStringLiteral("STRING"));
    EXPECT_EQ(str(occup, "minimum"), QStringLiteral("0"));
    EXPECT_GT(num(occup, "size"), 0);
    EXPECT_EQ(str(occup, "maximum"), QString(num(occup, "size"), QLatin1Char('9')));
}

// ------------------------------------------------------------------ lookups

TEST_F(Inspector, LookupSampleCountsEntriesAndLabelFrequencies)
{
    const QString path = samplePath(QStringLiteral("areas.txt"));
    const Outcome r = runInspector({QStringLiteral("--lookup"), path, QStringLiteral("--separator"), QStringLiteral("tab"),
                                QStringLiteral("--check"), QStringLiteral("--json")});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(str(root, "file"), path);
    EXPECT_EQ(num(root, "lines"), 34);
    EXPECT_EQ(num(root, "entries"), 34);
    EXPECT_TRUE(root.value(QStringLiteral("messages")).toArray().isEmpty());
    EXPECT_EQ(frequencyOf(root, QStringLiteral("Central")), 3);
    EXPECT_EQ(frequencyOf(root, QStringLiteral("Harbour")), 2);
    EXPECT_EQ(frequencyOf(root, QStringLiteral("North province")), 1);
}

TEST_F(Inspector, LookupTableListsCountsMessagesAndFrequencies)
{
    const Outcome r = runInspector({QStringLiteral("--lookup"), samplePath(QStringLiteral("areas.txt")),
                                QStringLiteral("--separator"), QStringLiteral("tab")});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0);
    const QStringList lines = r.outLines();
    EXPECT_TRUE(lines.contains(QStringLiteral("Separator:         tab")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Checks:            off")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Entries:           34")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Messages:          0")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Label frequencies: 30")));
    EXPECT_TRUE(lines.contains(QStringLiteral("3      Central")));
}

const QByteArray ProblemLookup = "01\tNorth\n02\tSouth\n003\tEast\n01\tWest\nnoseparator\n";

TEST_F(Inspector, LookupChecksReportNumberedMessages)
{
    const QString path = writeFile(dir, QStringLiteral("areas.txt"), ProblemLookup);
    const Outcome r = runInspector({QStringLiteral("--lookup"), path, QStringLiteral("--separator"), QStringLiteral("tab"),
                                QStringLiteral("--check"), QStringLiteral("--json")});
    ASSERT_TRUE(r.finished);
    // Checks that found something: the status of its own.
    ASSERT_EQ(r.exitCode, 4);
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(num(root, "entries"), 3);
    // The line without separator repeats the previous pair, which is then a duplicate.
    EXPECT_EQ(root.value(QStringLiteral("messages")).toVariant().toStringList(),
              (QStringList{"3_Key [003] has a different key size [3] from the first record [2]",
                           "4_Key [01] already exists", "5_Separator [\t] does not exist",
                           "5_Key [01] already exists"}));
    EXPECT_EQ(frequencyOf(root, QStringLiteral("North")), 1);
    EXPECT_EQ(frequencyOf(root, QStringLiteral("West")), 0);
}

TEST_F(Inspector, LookupWithoutChecksReportsNothing)
{
    const QString path = writeFile(dir, QStringLiteral("areas.txt"), ProblemLookup);
    const Outcome r = runInspector(
        {QStringLiteral("--lookup"), path, QStringLiteral("--separator"), QStringLiteral("tab"), QStringLiteral("--json")});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0);
    EXPECT_TRUE(jsonOf(r).value(QStringLiteral("messages")).toArray().isEmpty());
}

TEST_F(Inspector, LookupMaxMessagesZeroReplacesTheFirstMessageByTheCap)
{
    const QString path = writeFile(dir, QStringLiteral("areas.txt"), ProblemLookup);
    const Outcome r = runInspector({QStringLiteral("--lookup"), path, QStringLiteral("--separator"), QStringLiteral("tab"),
                                QStringLiteral("--check"), QStringLiteral("--max-messages"), QStringLiteral("0")});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 4);
    const QStringList lines = r.outLines();
    EXPECT_TRUE(lines.contains(QStringLiteral("Messages:          4")));
    EXPECT_TRUE(lines.contains(QStringLiteral("  3_Too many error messages [1], only the first [0] will be shown")));
    // The cap promises that nothing after it is shown: the three others are counted instead.
    EXPECT_TRUE(lines.contains(QStringLiteral("  (3 more messages not shown)")));
    EXPECT_TRUE(lines.filter(QRegularExpression(QStringLiteral("^  [45]_"))).isEmpty()) << r.out.toStdString();
}

TEST_F(Inspector, LookupTableShowsControlCharactersInMessagesEscaped)
{
    const QString path = writeFile(dir, QStringLiteral("areas.txt"), ProblemLookup);
    const Outcome r = runInspector({QStringLiteral("--lookup"), path, QStringLiteral("--separator"), QStringLiteral("tab"),
                                    QStringLiteral("--check")});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 4);
    EXPECT_TRUE(r.outLines().contains(QStringLiteral("  5_Separator [\\u0009] does not exist")));
}

TEST_F(Inspector, LookupBlankSeparatorTakesSeveralBlanksAsOne)
{
    const QString path = writeFile(dir, QStringLiteral("blank.txt"), "01   North\n02 South Coast\n");
    const Outcome r = runInspector(
        {QStringLiteral("--lookup"), path, QStringLiteral("--separator"), QStringLiteral("blank"), QStringLiteral("--json")});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0);
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(num(root, "entries"), 2);
    EXPECT_EQ(frequencyOf(root, QStringLiteral("North")), 1);
    EXPECT_EQ(frequencyOf(root, QStringLiteral("South Coast")), 1);
}

// The separator names stand for the codes 2 (comma), 3 (semicolon) and 4
// (colon) of the lookup import; each splits its file's lines at that character.
class InspectorSeparator : public Inspector, public ::testing::WithParamInterface<std::pair<const char *, char>>
{
};

TEST_P(InspectorSeparator, LookupSplitsAtTheNamedCharacter)
{
    const QByteArray separator(1, GetParam().second);
    const QString path =
        writeFile(dir, QStringLiteral("sep.txt"), "01" + separator + "North\n02" + separator + "South Coast\n");
    const Outcome r = runInspector({QStringLiteral("--lookup"), path, QStringLiteral("--separator"),
                                    QString::fromLatin1(GetParam().first), QStringLiteral("--json")});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0);
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(num(root, "entries"), 2);
    EXPECT_EQ(frequencyOf(root, QStringLiteral("North")), 1);
    EXPECT_EQ(frequencyOf(root, QStringLiteral("South Coast")), 1);
}

INSTANTIATE_TEST_SUITE_P(Separators, InspectorSeparator,
                         ::testing::Values(std::make_pair("comma", ','), std::make_pair("semicolon", ';'),
                                           std::make_pair("colon", ':')),
                         [](const ::testing::TestParamInfo<std::pair<const char *, char>> &info) {
                             return std::string(info.param.first);
                         });

// ------------------------------------------------------------------ version

TEST_F(Inspector, VersionPrintsTheToolsLibrarysReadStatsAndQtsVersionsOnOneLine)
{
    const Outcome r = runInspector({QStringLiteral("--version")});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    // The tool is built with this project's version and loads this build's library.
    const QString expected = QStringLiteral("keladmin-inspect %1 (libmodel_KelAdmin %1, ReadStat %2, Qt %3)\n")
                                 .arg(QStringLiteral(MODEL_KELADMIN_VERSION_STRING),
                                      QLatin1String(Model_KelAdmin::readStatVersion()), QLatin1String(qVersion()));
    EXPECT_EQ(r.out, expected);
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^\\d+\\.\\d+\\.\\d+$"))
                    .match(QLatin1String(Model_KelAdmin::readStatVersion()))
                    .hasMatch())
        << Model_KelAdmin::readStatVersion();
}

TEST_F(Inspector, VersionNeedsNoFile)
{
    const Outcome r = runInspector({QStringLiteral("--version"), QStringLiteral("--json")});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.startsWith(QStringLiteral("keladmin-inspect ")));
}

TEST_F(Inspector, HelpAmongOtherOptionsPrintsTheSameHelp)
{
    // -h and --help after other options: the whole help, exit 0, no file read.
    const Outcome alone = runInspector({QStringLiteral("--help")});
    for (const QStringList &args : {QStringList{QStringLiteral("--json"), QStringLiteral("--help")},
                                    QStringList{QStringLiteral("--wide"), QStringLiteral("-h")}}) {
        const Outcome r = runInspector(args);
        ASSERT_TRUE(r.finished);
        EXPECT_EQ(r.exitCode, 0) << args.join(' ').toStdString();
        EXPECT_EQ(r.out, alone.out) << args.join(' ').toStdString();
        EXPECT_TRUE(r.err.isEmpty());
    }
}

TEST_F(Inspector, HelpDocumentsTheScriptOptionsAndEveryExitStatus)
{
    const Outcome r = runInspector({QStringLiteral("--help")});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    for (const char *text : {"--version", "--wide", "--no-notes", "--fail-on-notes", "0 success", "2 wrong usage",
                             "3 reading notes with --fail-on-notes", "4 lookup messages with\n--check",
                             "longer than 60 characters"})
        EXPECT_TRUE(r.out.contains(QLatin1String(text))) << text;
}

// ------------------------------------------------------------------ reading notes

// Every command on its own line, no value set: the reading keeps all the file says.
const QByteArray PlainDictionary = "[Dictionary]\nName=PLAIN\n[Item]\nName=AGE\nLabel=Age\nStart=1\nLen=2\n";

TEST_F(Inspector, JsonCarriesAnEmptyNotesArrayWhenTheReadingWroteNone)
{
    const QString path = writeFile(dir, QStringLiteral("plain.dcf"), PlainDictionary);
    const Outcome r = runInspector({QStringLiteral("--json"), path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    ASSERT_TRUE(root.value(QStringLiteral("notes")).isArray());
    EXPECT_TRUE(root.value(QStringLiteral("notes")).toArray().isEmpty());
}

TEST_F(Inspector, FailOnNotesExitsZeroWhenTheReadingWroteNone)
{
    const QString path = writeFile(dir, QStringLiteral("plain.dcf"), PlainDictionary);
    const Outcome r = runInspector({QStringLiteral("--fail-on-notes"), path});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    // No notes, no Notes section: the table ends with the field rows.
    EXPECT_FALSE(r.out.contains(QStringLiteral("Notes")));
    EXPECT_TRUE(r.outLines().at(r.outLines().size() - 2).startsWith(QStringLiteral("AGE ")));
}

TEST_F(Inspector, NoNotesLeavesTheNotesKeyOut)
{
    const QString path = writeFile(dir, QStringLiteral("plain.dcf"), PlainDictionary);
    const Outcome r = runInspector({QStringLiteral("--json"), QStringLiteral("--no-notes"), path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0);
    EXPECT_FALSE(jsonOf(r).contains(QStringLiteral("notes")));
}

TEST_F(Inspector, LookupJsonCarriesAnEmptyNotesArray)
{
    const Outcome r = runInspector({QStringLiteral("--lookup"), samplePath(QStringLiteral("areas.txt")),
                                    QStringLiteral("--separator"), QStringLiteral("tab"), QStringLiteral("--json"),
                                    QStringLiteral("--fail-on-notes")});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(jsonOf(r).value(QStringLiteral("notes")).toArray().isEmpty());
}

// ------------------------------------------------------------------ exit statuses and the message cap

// Seven lines, each with a key of another size than the first ("1"): six messages.
const QByteArray SixMessageLookup = "1\ta\n22\tb\n33\tc\n44\td\n55\te\n66\tf\n77\tg\n";

TEST_F(Inspector, CheckWithMessagesExitsFour)
{
    const QString path = writeFile(dir, QStringLiteral("sizes.txt"), SixMessageLookup);
    const Outcome r = runInspector(
        {QStringLiteral("--lookup"), path, QStringLiteral("--separator"), QStringLiteral("tab"), QStringLiteral("--check")});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 4);
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    EXPECT_TRUE(r.outLines().contains(QStringLiteral("Messages:          6")));
}

TEST_F(Inspector, CheckWithoutMessagesExitsZero)
{
    const QString path = writeFile(dir, QStringLiteral("fine.txt"), "01\ta\n02\tb\n");
    const Outcome r = runInspector(
        {QStringLiteral("--lookup"), path, QStringLiteral("--separator"), QStringLiteral("tab"), QStringLiteral("--check")});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.outLines().contains(QStringLiteral("Messages:          0")));
}

TEST_F(Inspector, MaxMessagesShowsTheFirstNTheCapAndHowManyMoreThereAre)
{
    const QString path = writeFile(dir, QStringLiteral("sizes.txt"), SixMessageLookup);
    const Outcome r = runInspector({QStringLiteral("--lookup"), path, QStringLiteral("--separator"),
                                    QStringLiteral("tab"), QStringLiteral("--check"), QStringLiteral("--max-messages"),
                                    QStringLiteral("2")});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 4);
    const QStringList lines = r.outLines();
    const int count = lines.indexOf(QStringLiteral("Messages:          6"));
    ASSERT_GE(count, 0) << r.out.toStdString();
    // The third message (line 4) is the one the cap takes the place of; lines 5 to 7 are not shown.
    EXPECT_EQ(lines.mid(count + 1, 5),
              (QStringList{"  2_Key [22] has a different key size [2] from the first record [1]",
                           "  3_Key [33] has a different key size [2] from the first record [1]",
                           "  4_Too many error messages [3], only the first [2] will be shown",
                           "  (3 more messages not shown)", "Label frequencies: 7"}));
}

TEST_F(Inspector, MaxMessagesKeepsEveryMessageInJson)
{
    const QString path = writeFile(dir, QStringLiteral("sizes.txt"), SixMessageLookup);
    const Outcome r = runInspector({QStringLiteral("--lookup"), path, QStringLiteral("--separator"),
                                    QStringLiteral("tab"), QStringLiteral("--check"), QStringLiteral("--max-messages"),
                                    QStringLiteral("1"), QStringLiteral("--json")});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 4);
    const QStringList messages = jsonOf(r).value(QStringLiteral("messages")).toVariant().toStringList();
    ASSERT_EQ(messages.size(), 6);
    EXPECT_EQ(messages.at(1), QStringLiteral("3_Too many error messages [2], only the first [1] will be shown"));
    EXPECT_EQ(messages.at(5), QStringLiteral("7_Key [77] has a different key size [2] from the first record [1]"));
}

TEST_F(Inspector, OneHiddenMessageIsCountedInTheSingular)
{
    const QString path = writeFile(dir, QStringLiteral("sizes.txt"), "1\ta\n22\tb\n33\tc\n44\td\n");
    const Outcome r = runInspector({QStringLiteral("--lookup"), path, QStringLiteral("--separator"),
                                    QStringLiteral("tab"), QStringLiteral("--check"), QStringLiteral("--max-messages"),
                                    QStringLiteral("1")});
    ASSERT_TRUE(r.finished);
    EXPECT_TRUE(r.outLines().contains(QStringLiteral("  (1 more message not shown)"))) << r.out.toStdString();
}

TEST_F(Inspector, NoHiddenLineWhenTheCapIsTheLastMessage)
{
    const QString path = writeFile(dir, QStringLiteral("sizes.txt"), "1\ta\n22\tb\n33\tc\n");
    const Outcome r = runInspector({QStringLiteral("--lookup"), path, QStringLiteral("--separator"),
                                    QStringLiteral("tab"), QStringLiteral("--check"), QStringLiteral("--max-messages"),
                                    QStringLiteral("1")});
    ASSERT_TRUE(r.finished);
    const QStringList lines = r.outLines();
    EXPECT_TRUE(lines.contains(QStringLiteral("  3_Too many error messages [2], only the first [1] will be shown")));
    EXPECT_TRUE(lines.filter(QStringLiteral("not shown)")).isEmpty()) << r.out.toStdString();
}

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

// ------------------------------------------------------------------ long labels

TEST_F(Inspector, TableCutsLongLabelsAndStaysSmallWhileJsonKeepsThemWhole)
{
    const int size = 20 * 1024 * 1024;
    QByteArray dictionary = "[Dictionary]\nName=D\n[Item]\nName=A\nLabel=";
    dictionary += QByteArray(size, 'x');
    dictionary += "\nStart=1\nLen=2\n[Item]\nName=B\nLabel=Short\nStart=3\nLen=1\n";
    const QString path = writeFile(dir, QStringLiteral("long.dcf"), dictionary);

    const Outcome table = runInspector({path});
    ASSERT_TRUE(table.finished);
    ASSERT_EQ(table.exitCode, 0) << table.err.toStdString();
    EXPECT_LT(table.out.size(), 4096);
    // 59 characters of the label and the ellipsis: 60 in all.
    const QString cut = QString(59, QLatin1Char('x')) + QChar(0x2026);
    EXPECT_TRUE(table.outLines().filter(QRegularExpression(QStringLiteral("^A +") + cut + QStringLiteral("  INTEGER")))
                    .size() == 1)
        << table.out.left(2000).toStdString();

    const Outcome json = runInspector({QStringLiteral("--json"), path});
    ASSERT_TRUE(json.finished);
    ASSERT_EQ(json.exitCode, 0);
    EXPECT_EQ(str(fieldNamed(jsonOf(json), "A"), "label").size(), size);
}

TEST_F(Inspector, WideKeepsLabelsWhole)
{
    const QString label = QString(100, QLatin1Char('y'));
    const QString path = writeFile(dir, QStringLiteral("wide.dcf"),
                                   "[Dictionary]\nName=D\n[Item]\nName=A\nLabel=" + label.toLatin1()
                                       + "\nStart=1\nLen=2\n");
    const Outcome r = runInspector({QStringLiteral("--wide"), path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.outLines().filter(QRegularExpression(QStringLiteral("^A +") + label + QStringLiteral("  INTEGER"))).size(),
              1)
        << r.out.toStdString();
    EXPECT_FALSE(r.out.contains(QChar(0x2026)));
}

// ------------------------------------------------------------------ the debug log

TEST_F(Inspector, VerboseShowsTheLibrarysDebugLogOnStandardError)
{
    // Each importer writes its constructor's debug line when the inspector creates it.
    const struct
    {
        const char *sample;
        const char *line;
    } cases[] = {{"census.dcf", "TCSProDataImport Constructor"}, {"census.json", "TCSProJsonImport Constructor"}};
    for (const auto &c : cases) {
        const QString path = samplePath(QLatin1String(c.sample));
        const Outcome quiet = runInspector({path});
        const Outcome verbose = runInspector({QStringLiteral("--verbose"), path});
        ASSERT_TRUE(verbose.finished);
        EXPECT_EQ(verbose.exitCode, 0) << verbose.err.toStdString();
        EXPECT_TRUE(verbose.errLines().contains(QLatin1String(c.line))) << verbose.err.toStdString();
        EXPECT_FALSE(quiet.err.contains(QLatin1String(c.line))) << quiet.err.toStdString();
        EXPECT_EQ(verbose.out, quiet.out) << c.sample;
    }
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

// ------------------------------------------------------------------ start-up

TEST_F(Inspector, WithoutAskNoGuiApplicationIsCreatedEvenWithADisplay)
{
    // A GUI application would need the platform plugin, which does not exist; a core application does not.
    const Outcome r = runInspector({samplePath(QStringLiteral("census.dcf"))}, QString(),
                                   {{QStringLiteral("DISPLAY"), QStringLiteral(":99")},
                                    {QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("no-such-platform")}});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
}

TEST_F(Inspector, DecimalAskWithADisplayCreatesAGuiApplication)
{
    // Qt's VNC platform stands in for an X11 or a Wayland display: the GUI application loads it; a
    // dictionary without decimal codes never shows the dialog, so nothing waits.
    const QString path = writeFile(dir, QStringLiteral("plain.dcf"), PlainDictionary);
    const Outcome plain = runInspector({path});
    for (const char *display : {"DISPLAY", "WAYLAND_DISPLAY"}) {
        const QList<QPair<QString, QString>> environment = {
            {QLatin1String(display), QStringLiteral(":99")},
            {QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("vnc:port=0")},
            {QStringLiteral("LD_DEBUG"), QStringLiteral("libs")}};
        const Outcome ask =
            runInspector({QStringLiteral("--decimal"), QStringLiteral("ask"), path}, QString(), environment);
        ASSERT_TRUE(ask.finished);
        EXPECT_EQ(ask.exitCode, 0);
        EXPECT_TRUE(ask.err.contains(QLatin1String("libqvnc.so"))) << display << ": no platform plugin loaded";
        EXPECT_FALSE(ask.err.contains(QLatin1String("note: no display")));
        EXPECT_EQ(ask.out, plain.out);
        const Outcome noAsk = runInspector({path}, QString(), environment);
        ASSERT_TRUE(noAsk.finished);
        EXPECT_EQ(noAsk.exitCode, 0);
        EXPECT_TRUE(noAsk.err.contains(QLatin1String("libc.so"))) << "no loader trace";
        EXPECT_FALSE(noAsk.err.contains(QLatin1String("libqvnc.so"))) << display;
    }
}

TEST_F(Inspector, HelpLoadsNeitherQtNorTheLibrary)
{
    for (const QString &option : {QStringLiteral("--help"), QStringLiteral("-h")}) {
        const Outcome r = runInspector({option}, QString(), {{QStringLiteral("LD_DEBUG"), QStringLiteral("libs")}});
        ASSERT_TRUE(r.finished);
        EXPECT_EQ(r.exitCode, 0);
        EXPECT_TRUE(r.out.startsWith(QStringLiteral("Usage:\n"))) << option.toStdString();
        // The dynamic loader names every library it loads.
        EXPECT_TRUE(r.err.contains(QStringLiteral("libc.so"))) << "no loader trace";
        EXPECT_FALSE(r.err.contains(QStringLiteral("libQt5"))) << r.err.toStdString();
        EXPECT_FALSE(r.err.contains(QStringLiteral("libmodel_KelAdmin"))) << r.err.toStdString();
    }
}

TEST_F(Inspector, ReadingLoadsQtCoreButNoQtGuiLibrary)
{
    // The library and the inspector link Qt Core only; Qt Gui and Widgets come
    // with a dialog, which a reading without --decimal ask never shows.
    for (const char *sample : {"census.sav", "census.dta", "census.dcf", "census.json"}) {
        const Outcome r = runInspector({samplePath(QLatin1String(sample))}, QString(),
                                       {{QStringLiteral("LD_DEBUG"), QStringLiteral("libs")}});
        ASSERT_TRUE(r.finished);
        EXPECT_EQ(r.exitCode, 0) << sample;
        EXPECT_TRUE(r.err.contains(QStringLiteral("libQt5Core.so"))) << "no loader trace";
        EXPECT_FALSE(r.err.contains(QStringLiteral("libQt5Gui"))) << sample;
        EXPECT_FALSE(r.err.contains(QStringLiteral("libQt5Widgets"))) << sample;
    }
}

TEST_F(Inspector, DecimalAskWithoutItsGuiModuleSaysSoAndAnswersNoToAll)
{
    // A copy of the inspector without keladmin-inspect-gui.so beside its module:
    // the module's absence is named, and the prompt is answered as without a display.
    const QDir built = QFileInfo(Program).dir();
    const QString program = dir.filePath(QStringLiteral("keladmin-inspect"));
    ASSERT_TRUE(QFile::copy(Program, program));
    ASSERT_TRUE(QFile::copy(built.filePath(QStringLiteral("keladmin-inspect-core.so")),
                            dir.filePath(QStringLiteral("keladmin-inspect-core.so"))));
    QFile::setPermissions(program, QFile::permissions(Program));
    const QString census = samplePath(QStringLiteral("census.dcf"));
    const Outcome noToAll = runInspector({QStringLiteral("--decimal"), QStringLiteral("no-to-all"), census});

    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("DISPLAY"), QStringLiteral(":99"));
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("vnc:port=0"));
    env.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    p.setProcessEnvironment(env);
    p.start(program, {QStringLiteral("--decimal"), QStringLiteral("ask"), census});
    ASSERT_TRUE(p.waitForFinished(60000));
    const QString err = QString::fromLocal8Bit(p.readAllStandardError());
    EXPECT_EQ(p.exitCode(), 0) << err.toStdString();
    const QStringList lines = err.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2) << err.toStdString();
    const QString guiModule = dir.filePath(QStringLiteral("keladmin-inspect-gui.so"));
    EXPECT_TRUE(lines.at(0).startsWith(QStringLiteral("keladmin-inspect: ") + guiModule + QStringLiteral(": ")))
        << err.toStdString();
    EXPECT_EQ(lines.at(1), QStringLiteral("keladmin-inspect: ") + census
                               + QStringLiteral(": note: no display, the decimal prompt is answered no-to-all"));
    EXPECT_EQ(QString::fromUtf8(p.readAllStandardOutput()), noToAll.out);
}

TEST_F(Inspector, LoneDashIsAFileName)
{
    writeFile(dir, QStringLiteral("-"), PlainDictionary);
    const Outcome r = runInspector({QStringLiteral("--json"), QStringLiteral("-")}, dir.path());
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(str(root, "file"), QDir(dir.path()).absoluteFilePath(QStringLiteral("-")));
    EXPECT_EQ(num(fieldNamed(root, QStringLiteral("AGE")), "size"), 2);
}

TEST_F(Inspector, ProgramWithoutTheInspectorModuleStillHelpsAndSaysWhatIsMissing)
{
    const QString copy = dir.filePath(QStringLiteral("keladmin-inspect"));
    ASSERT_TRUE(QFile::copy(Program, copy));
    ASSERT_TRUE(QFile::setPermissions(copy, QFile::permissions(copy) | QFileDevice::ExeOwner));

    QProcess help;
    help.start(copy, {QStringLiteral("--help")});
    ASSERT_TRUE(help.waitForFinished(10000));
    EXPECT_EQ(help.exitCode(), 0);
    EXPECT_TRUE(help.readAllStandardOutput().startsWith("Usage:\n"));

    QProcess run;
    run.start(copy, {samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(run.waitForFinished(10000));
    EXPECT_EQ(run.exitCode(), 127);
    EXPECT_TRUE(run.readAllStandardOutput().isEmpty());
    EXPECT_TRUE(run.readAllStandardError().startsWith("keladmin-inspect: cannot load keladmin-inspect-core.so: "));
}

// ------------------------------------------------------------------ HTML page

INSTANTIATE_TEST_SUITE_P(
    HtmlArguments, InspectorUsage,
    ::testing::Values(UsageCase{"HtmlWithoutAFile", {"x.dcf", "--html"}, "keladmin-inspect: --html needs a file"},
                      UsageCase{"HtmlWithLookup",
                                {"--lookup", "a.txt", "--separator", "tab", "--html", "page.html"},
                                "keladmin-inspect: --html applies to dictionaries, not to --lookup"},
                      UsageCase{"HtmlWithAnEmptyName", {"--html", "", "x.dcf"}, "keladmin-inspect: --html needs a file"},
                      UsageCase{"HtmlOverTheInspectedFile",
                                {"--html", "x.dcf", "x.dcf"},
                                "keladmin-inspect: --html would overwrite the inspected file"}),
    [](const ::testing::TestParamInfo<UsageCase> &info) { return std::string(info.param.name); });

QString readText(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

TEST_F(Inspector, HtmlWritesThePageAndLeavesStdoutAsWithoutIt)
{
    const QString sample = samplePath(QStringLiteral("census.dcf"));
    const QString page = dir.filePath(QStringLiteral("census.html"));
    const Outcome plain = runInspector({sample});
    const Outcome r = runInspector({QStringLiteral("--html"), page, sample});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_EQ(r.out, plain.out);
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    const QString html = readText(page);
    EXPECT_TRUE(html.startsWith(QLatin1String("<!DOCTYPE html>")));
    // One drawing per record of the sample: H, P and D.
    for (const char *record : {"HOUSING", "PERSON", "DEATH"})
        EXPECT_TRUE(
            html.contains(QStringLiteral("<svg class=\"record\" data-record=\"%1\"").arg(QLatin1String(record))))
            << record;
    // BIRTHYEAR is written ItemType=SubItem, Start=20, Len=4 in the sample.
    EXPECT_TRUE(html.contains(QLatin1String("<rect class=\"subitem\" data-name=\"BIRTHYEAR\" data-start=\"20\" "
                                            "data-len=\"4\"")));
}

TEST_F(Inspector, HtmlThroughALinkToTheInspectedFileIsRefusedAndTheFileKept)
{
    const QString path = writeFile(dir, QStringLiteral("plain.dcf"), PlainDictionary);
    const QString link = dir.filePath(QStringLiteral("page.html"));
    ASSERT_TRUE(QFile::link(path, link));
    const Outcome r = runInspector({QStringLiteral("--html"), link, path});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 2);
    ASSERT_FALSE(r.errLines().isEmpty());
    EXPECT_EQ(r.errLines().at(0), QStringLiteral("keladmin-inspect: --html would overwrite the inspected file"));
    EXPECT_EQ(readText(path), QString::fromUtf8(PlainDictionary));
}

TEST_F(Inspector, HtmlDrawsADictionaryWithoutRecordsAsOneLine)
{
    const QString path = writeFile(dir, QStringLiteral("plain.dcf"), PlainDictionary);
    const QString page = dir.filePath(QStringLiteral("plain.html"));
    const Outcome r = runInspector({QStringLiteral("--html"), page, path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QString html = readText(page);
    EXPECT_TRUE(html.contains(QLatin1String("<svg class=\"record\" data-record=\"\"")));
    // AGE is an identification item (read before any record) at Start=1, Len=2.
    EXPECT_TRUE(html.contains(QLatin1String("<rect class=\"id\" data-name=\"AGE\" data-start=\"1\" data-len=\"2\"")));
}

TEST_F(Inspector, HtmlPageThatCannotBeWrittenExitsOneAndSaysWhere)
{
    const QString page = dir.filePath(QStringLiteral("missing-folder/census.html"));
    const Outcome r = runInspector({QStringLiteral("--html"), page, samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 1);
    ASSERT_EQ(r.errLines().size(), 1) << r.err.toStdString();
    EXPECT_TRUE(r.errLines().at(0).startsWith(QStringLiteral("keladmin-inspect: %1: cannot be written: ").arg(page)))
        << r.err.toStdString();
    EXPECT_FALSE(QFileInfo::exists(page));
}

TEST_F(Inspector, HelpDocumentsTheHtmlPage)
{
    const Outcome r = runInspector({QStringLiteral("--help")});
    ASSERT_TRUE(r.finished);
    EXPECT_TRUE(r.out.contains(QLatin1String("[--html PAGE]")));
    EXPECT_TRUE(r.out.contains(QLatin1String("--html PAGE       also write")));
}

// ------------------------------------------------------------------ CSV

INSTANTIATE_TEST_SUITE_P(
    CsvArguments, InspectorUsage,
    ::testing::Values(UsageCase{"CsvWithJson", {"--csv", "--json", "x.dcf"},
                                "keladmin-inspect: --json and --csv cannot be combined"},
                      UsageCase{"JsonWithCsvInLookup",
                                {"--lookup", "a.txt", "--separator", "tab", "--json", "--csv"},
                                "keladmin-inspect: --json and --csv cannot be combined"}),
    [](const ::testing::TestParamInfo<UsageCase> &info) { return std::string(info.param.name); });

//! The records of a CSV text whose fields hold no line ends.
QStringList csvRecordsOf(const QString &text)
{
    EXPECT_TRUE(text.endsWith(QStringLiteral("\r\n")));
    QStringList records = text.split(QStringLiteral("\r\n"));
    records.removeLast();
    return records;
}

TEST_F(Inspector, CsvOfTheCSProTextSampleHasTheHeaderAndOneRowPerField)
{
    const Outcome r = runInspector({QStringLiteral("--csv"), samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    EXPECT_FALSE(r.out.startsWith(QChar(0xfeff)));
    const QStringList records = csvRecordsOf(r.out);
    ASSERT_EQ(records.size(), 1 + 35);
    EXPECT_EQ(records.at(0), QStringLiteral("NAME,LABEL,TYPE,START,SIZE,DEC,MIN,MAX,MISSING,NOTAPPL,GROUP,VALUE LABELS"));
    // Item PROVINCE: columns 2-3, codes 1 to 5, an identification item of the record "Common".
    EXPECT_EQ(records.at(1), QStringLiteral("PROVINCE,Province,INTEGER,2,2,0,1,5,,,Common,1=North; 2=South; 3=East; "
                                            "4=West; 5=Capital district"));
    // The occurrence number stays one raw character, not an escape.
    EXPECT_TRUE(records.contains(QStringLiteral("ASSET_") + QChar(3)
                                 + QStringLiteral(",Household owns the item,INTEGER,21,1,0,1,2,,,HOUSING,1=Yes; 2=No")));
    EXPECT_FALSE(r.out.contains(QStringLiteral("\\u000")));
}

TEST_F(Inspector, CsvKeepsLongLabelsWhole)
{
    const QString label(100, QLatin1Char('y'));
    const QString path = writeFile(dir, QStringLiteral("long.dcf"),
                                   "[Dictionary]\nName=D\n[Item]\nName=A\nLabel=" + label.toLatin1()
                                       + "\nStart=1\nLen=2\n");
    const Outcome r = runInspector({QStringLiteral("--csv"), path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0);
    // An item outside any record belongs to the common record.
    EXPECT_EQ(csvRecordsOf(r.out).value(1),
              QStringLiteral("A,") + label + QStringLiteral(",INTEGER,1,2,0,0,99,,,Common,"));
}

TEST_F(Inspector, CsvOfALookupListsTheLabelCounts)
{
    const Outcome r = runInspector({QStringLiteral("--lookup"), samplePath(QStringLiteral("areas.txt")),
                                    QStringLiteral("--separator"), QStringLiteral("tab"), QStringLiteral("--csv")});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QStringList records = csvRecordsOf(r.out);
    // 30 different labels among the 34 lines; Central three times, Harbour twice.
    ASSERT_EQ(records.size(), 1 + 30);
    EXPECT_EQ(records.at(0), QStringLiteral("COUNT,LABEL"));
    EXPECT_TRUE(records.contains(QStringLiteral("3,Central")));
    EXPECT_TRUE(records.contains(QStringLiteral("2,Harbour")));
    EXPECT_TRUE(records.contains(QStringLiteral("1,North province")));
}

TEST_F(Inspector, CsvWithCheckKeepsTheExitStatusOfTheMessages)
{
    writeFile(dir, QStringLiteral("dup.txt"), "01\tNorth\n01\tSouth\n");
    const Outcome r = runInspector({QStringLiteral("--lookup"), QStringLiteral("dup.txt"), QStringLiteral("--separator"),
                                    QStringLiteral("tab"), QStringLiteral("--check"), QStringLiteral("--csv")},
                                   dir.path());
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 4);
    EXPECT_TRUE(r.out.startsWith(QStringLiteral("COUNT,LABEL\r\n"))) << r.out.toStdString();
}

TEST_F(Inspector, HelpDocumentsTheCsv)
{
    const Outcome r = runInspector({QStringLiteral("--help")});
    ASSERT_TRUE(r.finished);
    for (const char *text : {"[--json | --csv]", "--csv             print CSV (RFC 4180)", "CR LF",
                             "control characters kept", "kept as they are in the CSV"})
        EXPECT_TRUE(r.out.contains(QLatin1String(text))) << text;
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

// ------------------------------------------------------------------ JSON schema version

TEST_F(Inspector, JsonOfADictionaryAndOfALookupCarrySchemaVersionOne)
{
    const Outcome dictionary = runInspector({QStringLiteral("--json"), samplePath(QStringLiteral("census.sav"))});
    const Outcome lookup = runInspector({QStringLiteral("--json"), QStringLiteral("--lookup"),
                                         samplePath(QStringLiteral("areas.txt")), QStringLiteral("--separator"),
                                         QStringLiteral("tab"), QStringLiteral("--no-notes")});
    for (const Outcome &r : {dictionary, lookup}) {
        ASSERT_TRUE(r.finished);
        ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
        EXPECT_EQ(num(jsonOf(r), "schemaVersion"), 1);
    }
}

TEST_F(Inspector, HelpNamesTheJsonSchema)
{
    const Outcome r = runInspector({QStringLiteral("--help")});
    ASSERT_TRUE(r.finished);
    EXPECT_TRUE(r.out.contains(QLatin1String("share/keladmin-inspect/keladmin-inspect.schema.json")));
    EXPECT_TRUE(r.out.contains(QLatin1String("\"schemaVersion\" (now 1)")));
}

// ------------------------------------------------------------------ what SPSS and Stata files say about themselves

// samples/census.sav, as scripts/make-samples.sh writes it through ReadStat's writer: 12 rows (f.rows), an
// uncompressed system file ("$FL2": version 2), the character code 65001 that ReadStat's writer always states
// (UTF-8), written on a little-endian machine (layout code 2 in its byte order), header date "21 Nov 26" and
// time "09:13:27", no file label.
TEST_F(Inspector, SpssSampleHeaderSaysWhatTheFileSaysAboutItself)
{
    const Outcome r = runInspector({samplePath(QStringLiteral("census.sav"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QStringList lines = r.outLines();
    const int record = lines.indexOf(QStringLiteral("Record type:       start 0, length 0"));
    ASSERT_GE(record, 0) << r.out.toStdString();
    EXPECT_EQ(lines.mid(record + 1, 7), (QStringList{"Rows:              12", "Format version:    2",
                                                      "Encoding:          UTF-8", "Byte order:        little-endian",
                                                      "Created:           2026-11-21T09:13:27",
                                                      "File label:        none", "Groups:            0"}));
}

TEST_F(Inspector, SpssSampleJsonCarriesTheFileMetadata)
{
    const Outcome r = runInspector({QStringLiteral("--json"), samplePath(QStringLiteral("census.sav"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject meta = jsonOf(r).value(QStringLiteral("fileMetadata")).toObject();
    EXPECT_EQ(meta.keys(),
              (QStringList{"byteOrder", "creationTime", "encoding", "formatVersion", "label", "rowCount"}));
    EXPECT_EQ(num(meta, "rowCount"), 12);
    EXPECT_EQ(num(meta, "formatVersion"), 2);
    EXPECT_EQ(str(meta, "encoding"), QStringLiteral("UTF-8"));
    EXPECT_EQ(str(meta, "byteOrder"), QStringLiteral("little-endian"));
    EXPECT_EQ(str(meta, "creationTime"), QStringLiteral("2026-11-21T09:13:27"));
    ASSERT_TRUE(meta.value(QStringLiteral("label")).isString());
    EXPECT_EQ(str(meta, "label"), QString());
}

// samples/census.dta: format 118 (f.dtaVersion), 12 rows, <byteorder>LSF</byteorder> (little-endian),
// <timestamp> "21 Nov 2026 09:13" (minutes only), no data label; Stata files state no encoding.
TEST_F(Inspector, StataSampleHeaderAndJsonSayWhatTheFileSaysAboutItself)
{
    const QString path = samplePath(QStringLiteral("census.dta"));
    const Outcome table = runInspector({path});
    ASSERT_TRUE(table.finished);
    ASSERT_EQ(table.exitCode, 0) << table.err.toStdString();
    const QStringList lines = table.outLines();
    const int rows = lines.indexOf(QStringLiteral("Rows:              12"));
    ASSERT_GE(rows, 0) << table.out.toStdString();
    EXPECT_EQ(lines.mid(rows + 1, 5), (QStringList{"Format version:    118", "Encoding:          unknown",
                                                    "Byte order:        little-endian",
                                                    "Created:           2026-11-21T09:13:00", "File label:        none"}));

    const Outcome json = runInspector({QStringLiteral("--json"), path});
    ASSERT_TRUE(json.finished);
    const QJsonObject meta = jsonOf(json).value(QStringLiteral("fileMetadata")).toObject();
    EXPECT_EQ(num(meta, "rowCount"), 12);
    EXPECT_EQ(num(meta, "formatVersion"), 118);
    EXPECT_TRUE(meta.value(QStringLiteral("encoding")).isNull());
    EXPECT_EQ(str(meta, "byteOrder"), QStringLiteral("little-endian"));
    EXPECT_EQ(str(meta, "creationTime"), QStringLiteral("2026-11-21T09:13:00"));
}

TEST_F(Inspector, CSProDictionariesHaveNoFileMetadata)
{
    for (const char *sample : {"census.dcf", "census.json"}) {
        const Outcome table = runInspector({samplePath(QLatin1String(sample))});
        const Outcome json = runInspector({QStringLiteral("--json"), samplePath(QLatin1String(sample))});
        ASSERT_TRUE(table.finished && json.finished);
        EXPECT_TRUE(table.outLines().filter(QRegularExpression(QStringLiteral("^(Rows|Created):"))).isEmpty())
            << sample;
        EXPECT_FALSE(jsonOf(json).contains(QStringLiteral("fileMetadata"))) << sample;
    }
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

TEST_F(Inspector, FailOnNotesExitsThreeOnTheNotesSampleAfterPrintingEverything)
{
    const Outcome r = runInspector({QStringLiteral("--fail-on-notes"), samplePath(QStringLiteral("labour-notes.dcf"))});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 3) << r.err.toStdString();
    const QStringList lines = r.outLines();
    EXPECT_TRUE(lines.contains(QStringLiteral("Notes:             5")));
    // The count by kind closes the table: the five notes of the sample's file.
    const int byKind = lines.indexOf(QStringLiteral("Notes by kind:"));
    ASSERT_GE(byKind, 0);
    EXPECT_EQ(lines.mid(byKind + 1).filter(QRegularExpression(QStringLiteral("\\S"))),
              QStringList({QStringLiteral("  key-from-other-line     1"), QStringLiteral("  linked-value-set-empty  1"),
                           QStringLiteral("  special-not-read        1"), QStringLiteral("  value-set-dropped       2")}));
}

TEST_F(Inspector, JsonNotesOfTheNotesSampleHaveExactlyTheFourKeys)
{
    const Outcome r = runInspector({QStringLiteral("--json"), samplePath(QStringLiteral("labour-notes.dcf"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonArray notes = jsonOf(r).value(QStringLiteral("notes")).toArray();
    ASSERT_EQ(notes.size(), 5);
    const QStringList keys{QStringLiteral("kind"), QStringLiteral("line"), QStringLiteral("subject"),
                           QStringLiteral("text")};
    for (const QJsonValue &note : notes)
        EXPECT_EQ(note.toObject().keys(), keys);
    const QJsonObject first = notes.at(0).toObject();
    EXPECT_EQ(first.value(QStringLiteral("line")).toInt(), 32);
    EXPECT_EQ(first.value(QStringLiteral("subject")).toString(), QStringLiteral("PNAME"));
    EXPECT_EQ(first.value(QStringLiteral("kind")).toString(), QStringLiteral("key-from-other-line"));
}

// Runs the keladmin-inspect program on the bundled samples and on bad input,
// and checks its exit status, its output lines and its JSON document.
#include "TestSupport.h"

#include <gtest/gtest.h>

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

#ifdef KX_SAMPLES_DIR
QString samplePath(const QString &name)
{
    return QDir(QStringLiteral(KX_SAMPLES_DIR)).absoluteFilePath(name);
}
#else
QString samplePath(const QString &name)
{
    return name;
}
#endif

// No display: the program must never wait for a dialog.
Outcome runInspector(const QStringList &args, const QString &workDir = QString(),
                     const QList<QPair<QString, QString>> &extraEnv = {})
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
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
        UsageCase{"TwoFiles", {"a.dcf", "b.dcf"}, "keladmin-inspect: only one file can be inspected"}),
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
        BadInputCase{"TextStartingWithALetterIsNotTakenForOldStata",
                     "hello.txt",
                     "hello world\n",
                     {},
                     "format not recognised (not a CSPro text or JSON dictionary, SPSS or Stata file); --format "
                     "forces one"},
        // Detection from the content, whatever the file's name.
        BadInputCase{"SavMagicIsDetectedAsSpss", "magic.bin", "$FL2 and nothing more", {}, "no fields read as spss"},
        BadInputCase{"OldBinaryStataHeaderIsDetectedAsStata", "old.bin", QByteArray("q\x02\x01\x00rest", 8), {},
                     "no fields read as stata (Error processing ", true},
        BadInputCase{"TruncatedSav", "truncated.sav", TruncatedSav, {}, "no fields read as spss"},
        // The Stata importer's own report goes into the one line, not to stdout.
        BadInputCase{"TruncatedDta", "truncated.dta", TruncatedDta, {}, "no fields read as stata (Error processing ",
                     true},
        BadInputCase{"MalformedJson", "broken.json", "{ \"levels\": [ ", {}, "no fields read as cspro8"},
        BadInputCase{"DictionaryWithoutItems", "empty.dcf", "[Dictionary]\nName=EMPTY_DICT\n", {},
                     "no fields read as cspro"},
        BadInputCase{"ForcedFormatThatDoesNotFit",
                     "census.dcf",
                     "[Dictionary]\nName=D\n[Item]\nName=A\nStart=1\nLen=1\n",
                     {"--format", "spss"},
                     "no fields read as spss"},
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
    EXPECT_EQ(lines.mid(header + 1).filter(QRegularExpression(QStringLiteral("\\S"))).size(), 35);
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

TEST_F(Inspector, DecimalAskOnTheOffscreenPlatformCountsAsNoDisplay)
{
    const QString path = samplePath(QStringLiteral("census.dcf"));
    const Outcome r = runInspector({QStringLiteral("--decimal"), QStringLiteral("ask"), path}, QString(),
                                   {{QStringLiteral("DISPLAY"), QStringLiteral(":99")},
                                    {QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen")}});
    ASSERT_TRUE(r.finished) << "the inspector waited for a dialog";
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.errLines().size(), 1);
    EXPECT_TRUE(r.err.contains(QStringLiteral("note: no display, the decimal prompt is answered no-to-all")));
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
    ASSERT_EQ(r.exitCode, 0);
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
    ASSERT_EQ(r.exitCode, 0);
    const QStringList lines = r.outLines();
    EXPECT_TRUE(lines.contains(QStringLiteral("Messages:          4")));
    EXPECT_TRUE(lines.contains(QStringLiteral("  3_Too many error messages [1], only the first [0] will be shown")));
    // Control characters in messages are shown escaped.
    EXPECT_TRUE(lines.contains(QStringLiteral("  5_Separator [\\u0009] does not exist")));
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

} // namespace

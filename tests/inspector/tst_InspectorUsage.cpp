// The command line: usage, version, exit statuses, the debug log and start-up.
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
    const QDir built = QFileInfo(program()).dir();
    const QString copied = dir.filePath(QStringLiteral("keladmin-inspect"));
    ASSERT_TRUE(QFile::copy(program(), copied));
    ASSERT_TRUE(QFile::copy(built.filePath(QStringLiteral("keladmin-inspect-core.so")),
                            dir.filePath(QStringLiteral("keladmin-inspect-core.so"))));
    QFile::setPermissions(copied, QFile::permissions(program()));
    const QString census = samplePath(QStringLiteral("census.dcf"));
    const Outcome noToAll = runInspector({QStringLiteral("--decimal"), QStringLiteral("no-to-all"), census});

    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("DISPLAY"), QStringLiteral(":99"));
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("vnc:port=0"));
    env.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    // The module finds the libraries relative to its own folder, which the copy left.
    env.insert(QStringLiteral("LD_LIBRARY_PATH"), built.absoluteFilePath(QStringLiteral("../model_KelAdmin")) + QLatin1Char(':')
                                                      + built.absoluteFilePath(QStringLiteral("../codebook")));
    p.setProcessEnvironment(env);
    p.start(copied, {QStringLiteral("--decimal"), QStringLiteral("ask"), census});
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
    ASSERT_TRUE(QFile::copy(program(), copy));
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

TEST_F(Inspector, CodebookRunsNeedNeitherTheInspectorModuleNorTheFrontEndLibrary)
{
    // The program and its codebook module alone, with the codebook library
    // only on the library path: what reads with the codebook library works,
    // and what needs the front end is handed over to the missing module.
    const QDir built = QFileInfo(program()).dir();
    const QString copy = dir.filePath(QStringLiteral("keladmin-inspect"));
    ASSERT_TRUE(QFile::copy(program(), copy));
    ASSERT_TRUE(QFile::setPermissions(copy, QFile::permissions(copy) | QFileDevice::ExeOwner));
    ASSERT_TRUE(QFile::copy(built.filePath(QStringLiteral("keladmin-inspect-codebook.so")),
                            dir.filePath(QStringLiteral("keladmin-inspect-codebook.so"))));
    const auto run = [&](const QStringList &args) {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("LD_LIBRARY_PATH"), built.absoluteFilePath(QStringLiteral("../codebook")));
        env.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
        p.setProcessEnvironment(env);
        p.start(copy, args);
        EXPECT_TRUE(p.waitForFinished(60000));
        return std::make_pair(p.exitCode(), QString::fromUtf8(p.readAllStandardOutput() + p.readAllStandardError()));
    };
    const QString census = samplePath(QStringLiteral("census.dta"));
    const QString round1 = samplePath(QStringLiteral("census.dcf"));
    const QString round2 = samplePath(QStringLiteral("census-round2.dcf"));

    const auto table = run({QStringLiteral("--codebook"), census});
    EXPECT_EQ(table.first, 0) << table.second.toStdString();
    EXPECT_TRUE(table.second.startsWith(QStringLiteral("File:              ") + census)) << table.second.toStdString();
    const auto ddi = run({QStringLiteral("--ddi"), QStringLiteral("-"), census});
    EXPECT_EQ(ddi.first, 0) << ddi.second.toStdString();
    EXPECT_TRUE(ddi.second.contains(QStringLiteral("<codeBook"))) << ddi.second.toStdString();
    const auto diff = run({QStringLiteral("--diff"), round1, round2});
    EXPECT_EQ(diff.first, 6) << diff.second.toStdString();  // the documented status of a diff with changes

    const QString missing = QStringLiteral("keladmin-inspect: cannot load keladmin-inspect-core.so: ");
    for (const QStringList &args : {QStringList{census}, QStringList{QStringLiteral("--codebook")},
                                    QStringList{QStringLiteral("--codebook"), QStringLiteral("--version")}}) {
        const auto handedBack = run(args);
        EXPECT_EQ(handedBack.first, 127) << args.join(QLatin1Char(' ')).toStdString();
        EXPECT_TRUE(handedBack.second.startsWith(missing)) << handedBack.second.toStdString();
    }
}

TEST_F(Inspector, LoadsNoLibraryFromTheWorkingDirectory)
{
    // Files named as the libraries the inspector and its module load, but no
    // libraries: a run from this folder must not even try them.
    for (const char *name : {"libQt5Core.so.5", "libmodel_KelAdmin.so.1", "libkelcodebook.so.1", "libreadstat.so.1",
                             "libstdc++.so.6", "libc.so.6"}) {
        QFile bogus(dir.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(bogus.open(QIODevice::WriteOnly));
        bogus.write("not a library\n");
    }
    const QString census = samplePath(QStringLiteral("census.dcf"));
    for (const QStringList &args : {QStringList{census}, QStringList{QStringLiteral("--codebook"), census}}) {
        const Outcome r = runInspector(args, dir.path());
        EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
        EXPECT_TRUE(r.out.startsWith(QStringLiteral("File:")) && r.out.contains(QStringLiteral("census.dcf")))
            << r.out.toStdString();
    }
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
        UsageCase{"TwoFilesAsCsv", {"--csv", "a.dcf", "b.dcf"},
                  "keladmin-inspect: --csv, --html, --ddi and --codebook take one file"},
        UsageCase{"FileAndLookup", {"a.dcf", "--lookup", "b.txt"}, "keladmin-inspect: only one file can be inspected"},
        UsageCase{"NothingAfterDashDash", {"--"}, "keladmin-inspect: no file given"},
        UsageCase{"TwoFilesAfterDashDashWithCodebook", {"--codebook", "--", "-a.dcf", "-b.dcf"},
                  "keladmin-inspect: --csv, --html, --ddi and --codebook take one file"},
        UsageCase{"LookupAndAFile", {"--lookup", "a.txt", "--separator", "tab", "b.dcf"},
                  "keladmin-inspect: only one file can be inspected"},
        UsageCase{"DiffWithOneFile", {"--diff", "a.dcf"}, "keladmin-inspect: --diff needs two files, the old and the new"},
        UsageCase{"DiffWithThreeFiles", {"--diff", "a.dcf", "b.dcf", "c.dcf"},
                  "keladmin-inspect: --diff needs two files, the old and the new"},
        UsageCase{"DiffWithCsv", {"--diff", "--csv", "a.dcf", "b.dcf"},
                  "keladmin-inspect: --diff takes --json, --html, --ignore-labels and --format only"},
        UsageCase{"DdiWithJson", {"--ddi", "out.xml", "--json", "a.dcf"},
                  "keladmin-inspect: --ddi takes --format and --codebook only"},
        UsageCase{"DdiWithoutAFile", {"a.dcf", "--ddi"}, "keladmin-inspect: --ddi needs a file (- for the standard output)"},
        UsageCase{"IgnoreLabelsWithoutDiff", {"--ignore-labels", "a.dcf"},
                  "keladmin-inspect: --ignore-labels applies to --diff"},
        UsageCase{"RecursiveWithLookup", {"--recursive", "--lookup", "a.txt", "--separator", "tab"},
                  "keladmin-inspect: --recursive applies to folders of dictionaries and data files"},
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

INSTANTIATE_TEST_SUITE_P(
    CsvArguments, InspectorUsage,
    ::testing::Values(UsageCase{"CsvWithJson", {"--csv", "--json", "x.dcf"},
                                "keladmin-inspect: --json and --csv cannot be combined"},
                      UsageCase{"JsonWithCsvInLookup",
                                {"--lookup", "a.txt", "--separator", "tab", "--json", "--csv"},
                                "keladmin-inspect: --json and --csv cannot be combined"}),
    [](const ::testing::TestParamInfo<UsageCase> &info) { return std::string(info.param.name); });

} // namespace

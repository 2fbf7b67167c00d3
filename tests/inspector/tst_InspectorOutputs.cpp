// The outputs besides the table: the HTML page, CSV and the JSON schema version.
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

// ------------------------------------------------------------------ HTML page

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

TEST_F(Inspector, HtmlPageThatCannotBeWrittenExitsFiveAndSaysWhere)
{
    const QString page = dir.filePath(QStringLiteral("missing-folder/census.html"));
    const Outcome r = runInspector({QStringLiteral("--html"), page, samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 5);
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

TEST_F(Inspector, CsvOfTheCSProTextSampleHasTheHeaderAndOneRowPerField)
{
    const Outcome r = runInspector({QStringLiteral("--csv"), samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    EXPECT_FALSE(r.out.startsWith(QChar(0xfeff)));
    const QStringList records = csvRecordsOf(r.out);
    ASSERT_EQ(records.size(), 1 + 35);
    EXPECT_EQ(records.at(0),
              QStringLiteral("NAME,LABEL,TYPE,START,SIZE,DEC,MIN,MAX,MISSING,NOTAPPL,GROUP,VALUE LABELS,NAME NOTE"));
    // Item PROVINCE: columns 2-3, codes 1 to 5, an identification item of the record "Common".
    EXPECT_EQ(records.at(1), QStringLiteral("PROVINCE,Province,INTEGER,2,2,0,1,5,,,Common,1=North; 2=South; 3=East; "
                                            "4=West; 5=Capital district,"));
    // The occurrence number stays one raw character, not an escape, and the
    // last column says what a spreadsheet would not show: ASSET_ and U+0003.
    EXPECT_TRUE(records.contains(QStringLiteral("ASSET_") + QChar(3)
                                 + QStringLiteral(",Household owns the item,INTEGER,21,1,0,1,2,,,HOUSING,1=Yes; 2=No,"
                                                  "\"occurrence 3 of ASSET: the name ends with the character U+0003, "
                                                  "as the front end numbers occurrences; --codebook lists the item "
                                                  "once with its occurrences\"")));
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
              QStringLiteral("A,") + label + QStringLiteral(",INTEGER,1,2,0,0,99,,,Common,,"));
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

} // namespace

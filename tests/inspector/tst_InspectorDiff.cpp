// --diff OLD NEW: what changed between two files' codebooks, as a table,
// JSON and a page, with the exit status of diff for scripts. The expected
// changes are those between samples/census.dcf and samples/census-round2.dcf
// as their texts differ (the round-2 file lists them at its top).
#include "InspectorRun.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QXmlStreamReader>

using namespace kxinspecttest;
using kxtest::samplePath;

namespace {

QString census() { return samplePath(QStringLiteral("census.dcf")); }
QString round2() { return samplePath(QStringLiteral("census-round2.dcf")); }

QJsonObject changeOf(const QJsonObject &root, const QString &kind, const QString &variable)
{
    for (const QJsonValue &v : root.value(QStringLiteral("changes")).toArray()) {
        const QJsonObject c = v.toObject();
        if (str(c, "kind") == kind && str(c, "variable") == variable)
            return c;
    }
    ADD_FAILURE() << "no change " << kind.toStdString() << " of " << variable.toStdString();
    return QJsonObject();
}

TEST_F(Inspector, DiffOfTwoRoundsExitsSixAndListsEveryChangeByRecord)
{
    const Outcome r = runInspector({QStringLiteral("--diff"), census(), round2()});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 6) << r.err.toStdString();
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    const QStringList lines = r.outLines();
    EXPECT_TRUE(lines.contains(QStringLiteral("Old:               %1 (cspro)").arg(census())));
    EXPECT_TRUE(lines.contains(QStringLiteral("New:               %1 (cspro)").arg(round2())));
    // LANDAREA (Start=25, Len=5) is LANDHA in round 2 (Start=24, Len=6), with the same label.
    EXPECT_EQ(lines.filter(QRegularExpression(QStringLiteral("^HOUSING +LANDHA +variable-moved +25 +24$"))).size(), 1);
    EXPECT_EQ(lines.filter(QRegularExpression(QStringLiteral("^HOUSING +LANDHA +variable-resized +5 +6$"))).size(), 1);
    EXPECT_EQ(lines.filter(QRegularExpression(QStringLiteral("^HOUSING +LANDHA +variable-renamed +LANDAREA +LANDHA +same label$")))
                  .size(),
              1);
    // DEATH: RecordTypeValue='D' becomes 'M'.
    EXPECT_EQ(lines.filter(QRegularExpression(QStringLiteral("^DEATH +record-type-changed +D +M$"))).size(), 1);
    // EA is an identification item: no record.
    EXPECT_EQ(lines.filter(QRegularExpression(QStringLiteral("^- +EA +label-changed +Enumeration area +Enumeration area code$")))
                  .size(),
              1);
    // Within HOUSING the layout comes before the wording: the move before the relabelled value.
    const int moved = lines.indexOf(QRegularExpression(QStringLiteral("HOUSING +LANDHA +variable-moved.*")));
    const int relabelled = lines.indexOf(QRegularExpression(QStringLiteral("HOUSING +DWELLING .*value-relabelled.*")));
    ASSERT_GE(moved, 0);
    ASSERT_GE(relabelled, 0);
    EXPECT_LT(moved, relabelled);
}

TEST_F(Inspector, DiffAsJsonNamesEveryChangeForScripts)
{
    const Outcome r = runInspector({QStringLiteral("--diff"), QStringLiteral("--json"), census(), round2()});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 6) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(str(root, "kind"), QStringLiteral("comparison"));
    EXPECT_TRUE(root.value(QStringLiteral("positionsCompared")).toBool());
    EXPECT_EQ(str(root.value(QStringLiteral("old")).toObject(), "format"), QStringLiteral("cspro"));
    // MARITAL (PERSON, Start=26, Len=1) is MARSTAT at the same place.
    const QJsonObject renamed = changeOf(root, QStringLiteral("variable-renamed"), QStringLiteral("MARSTAT"));
    EXPECT_EQ(str(renamed, "old"), QStringLiteral("MARITAL"));
    EXPECT_EQ(str(renamed, "detail"), QStringLiteral("same record, start and width"));
    EXPECT_EQ(num(renamed, "severity"), 3);
    // RENT: Decimal=2 becomes Decimal=0.
    const QJsonObject decimals = changeOf(root, QStringLiteral("decimals-changed"), QStringLiteral("RENT"));
    EXPECT_EQ(str(decimals, "old"), QStringLiteral("2"));
    EXPECT_EQ(str(decimals, "new"), QStringLiteral("0"));
    // The new record ABROAD.
    bool added = false;
    for (const QJsonValue &v : root.value(QStringLiteral("changes")).toArray())
        added = added || (str(v.toObject(), "kind") == QLatin1String("record-added")
                          && str(v.toObject(), "record") == QLatin1String("ABROAD"));
    EXPECT_TRUE(added);
}

TEST_F(Inspector, DiffOfTheTextAndJsonFormsOfOneDictionaryFindsNothing)
{
    const Outcome r = runInspector({QStringLiteral("--diff"), census(), samplePath(QStringLiteral("census.json"))});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0) << r.out.toStdString();
    EXPECT_TRUE(r.outLines().contains(QStringLiteral("Changes:           0")));
}

TEST_F(Inspector, DiffAgainstAnSpssFileComparesNoPositions)
{
    const Outcome r = runInspector({QStringLiteral("--diff"), census(), samplePath(QStringLiteral("census.sav"))});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 6);
    EXPECT_TRUE(r.outLines().contains(QStringLiteral("Positions:         not compared: one file has no columns")));
    EXPECT_TRUE(r.outLines().filter(QRegularExpression(QStringLiteral(" variable-moved "))).isEmpty());
}

TEST_F(Inspector, DiffWithoutLabelsLeavesTheWordingOut)
{
    const Outcome r = runInspector({QStringLiteral("--diff"), QStringLiteral("--ignore-labels"), census(), round2()});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 6);
    const QStringList lines = r.outLines();
    EXPECT_TRUE(lines.contains(QStringLiteral("Labels:            not compared (--ignore-labels)")));
    EXPECT_TRUE(lines.filter(QRegularExpression(QStringLiteral(" (label-changed|value-relabelled) "))).isEmpty());
    EXPECT_EQ(lines.filter(QRegularExpression(QStringLiteral("^DEATH +record-type-changed +D +M$"))).size(), 1);
}

TEST_F(Inspector, DiffPageShowsBothRulersWithTheChangedColumnsMarked)
{
    const QString page = dir.filePath(QStringLiteral("diff.html"));
    const Outcome r = runInspector({QStringLiteral("--diff"), QStringLiteral("--html"), page, census(), round2()});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 6) << r.err.toStdString();
    const QString html = readText(page);
    // Well-formed XML, no script.
    QXmlStreamReader xml(html);
    while (!xml.atEnd())
        xml.readNext();
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    EXPECT_FALSE(html.contains(QLatin1String("<script")));
    // HOUSING in both files, DEATH in both, ABROAD only in the new one.
    EXPECT_EQ(html.count(QStringLiteral("data-record=\"HOUSING\"")), 2);
    EXPECT_EQ(html.count(QStringLiteral("data-record=\"DEATH\"")), 2);
    EXPECT_EQ(html.count(QStringLiteral("data-record=\"ABROAD\"")), 1);
    // LANDHA at 24, 6 wide, marked; LANDAREA at 25, 5 wide, marked on the old ruler.
    EXPECT_TRUE(html.contains(QLatin1String("class=\"item changed\" data-name=\"LANDHA\" data-start=\"24\" data-len=\"6\"")));
    EXPECT_TRUE(html.contains(QLatin1String("class=\"item changed\" data-name=\"LANDAREA\" data-start=\"25\" data-len=\"5\"")));
    // DWELLING kept its columns but a value was relabelled: it is marked too. SEX did not change.
    EXPECT_TRUE(html.contains(QLatin1String("class=\"item changed\" data-name=\"DWELLING\"")));
    EXPECT_TRUE(html.contains(QLatin1String("class=\"item\" data-name=\"SEX\"")));
}

TEST_F(Inspector, DiffOfAFileThatCannotBeReadExitsOne)
{
    const Outcome r = runInspector({QStringLiteral("--diff"), census(), dir.filePath(QStringLiteral("absent.dcf"))});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_EQ(r.errLines(), QStringList{QStringLiteral("keladmin-inspect: %1: no such file")
                                            .arg(dir.filePath(QStringLiteral("absent.dcf")))});
}

} // namespace

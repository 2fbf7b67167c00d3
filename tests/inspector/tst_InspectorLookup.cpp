// Lookup files: their report, separators and checks.
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

} // namespace

// Several files or a folder in one run: a report per file, a closing
// summary, one JSON document for all, the worst file's exit status.
#include "InspectorRun.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

using namespace kxinspecttest;
using kxtest::samplePath;
using kxtest::writeFile;

namespace {

//! Copies the sample \a name to \a folder.
void copySample(const QString &name, const QString &folder)
{
    QDir().mkpath(folder);
    ASSERT_TRUE(QFile::copy(samplePath(name), QDir(folder).filePath(name))) << name.toStdString();
}

TEST_F(Inspector, TwoFilesGiveTwoReportsAndASummary)
{
    const QString dcf = samplePath(QStringLiteral("census.dcf"));
    const QString sav = samplePath(QStringLiteral("census.sav"));
    const Outcome r = runInspector({dcf, sav});
    ASSERT_TRUE(r.finished);
    // census.dcf and census.sav both give reading notes, but without --fail-on-notes that is success.
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QStringList lines = r.outLines();
    EXPECT_TRUE(lines.contains(QStringLiteral("==> %1 <==").arg(dcf)));
    EXPECT_TRUE(lines.contains(QStringLiteral("==> %1 <==").arg(sav)));
    EXPECT_LT(lines.indexOf(QStringLiteral("==> %1 <==").arg(dcf)), lines.indexOf(QStringLiteral("==> %1 <==").arg(sav)));
    EXPECT_TRUE(lines.contains(QStringLiteral("Summary:")));
    EXPECT_TRUE(lines.contains(QStringLiteral("  Files read:        2")));
    EXPECT_TRUE(lines.contains(QStringLiteral("  Files failed:      0")));
    EXPECT_TRUE(lines.contains(QStringLiteral("  Files with notes:  2")));
}

TEST_F(Inspector, AFolderGivesItsDictionariesAndDataFilesOnly)
{
    const QString folder = dir.filePath(QStringLiteral("survey"));
    copySample(QStringLiteral("census.dcf"), folder);
    copySample(QStringLiteral("census.dta"), folder);
    copySample(QStringLiteral("areas.txt"), folder);          // a lookup file: not a description
    copySample(QStringLiteral("census.json"), folder + QStringLiteral("/round1"));
    const Outcome flat = runInspector({folder});
    ASSERT_TRUE(flat.finished);
    EXPECT_EQ(flat.exitCode, 0) << flat.err.toStdString();
    EXPECT_EQ(flat.outLines().filter(QRegularExpression(QStringLiteral("^==> "))),
              (QStringList{QStringLiteral("==> %1/census.dcf <==").arg(folder),
                           QStringLiteral("==> %1/census.dta <==").arg(folder)}));
    const Outcome deep = runInspector({QStringLiteral("--recursive"), folder});
    ASSERT_TRUE(deep.finished);
    EXPECT_EQ(deep.outLines().filter(QRegularExpression(QStringLiteral("^==> "))),
              (QStringList{QStringLiteral("==> %1/census.dcf <==").arg(folder),
                           QStringLiteral("==> %1/census.dta <==").arg(folder),
                           QStringLiteral("==> %1/round1/census.json <==").arg(folder)}));
}

TEST_F(Inspector, AFileThatFailsDoesNotStopTheOthersAndGivesTheWorstStatus)
{
    const QString bad = writeFile(dir, QStringLiteral("bad.dcf"), "no dictionary here\n");
    const QString dcf = samplePath(QStringLiteral("census.dcf"));
    const Outcome r = runInspector({QStringLiteral("--fail-on-notes"), bad, dcf});
    ASSERT_TRUE(r.finished);
    // A file not read (1) is worse than notes (3).
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.outLines().contains(QStringLiteral("==> %1 <==").arg(dcf)));
    EXPECT_TRUE(r.outLines().contains(QStringLiteral("  Files read:        1")));
    EXPECT_TRUE(r.outLines().contains(QStringLiteral("  Files failed:      1")));
    ASSERT_EQ(r.errLines().size(), 1) << r.err.toStdString();
    EXPECT_TRUE(r.errLines().first().startsWith(QStringLiteral("keladmin-inspect: %1: format not recognised").arg(bad)));
}

TEST_F(Inspector, FailOnNotesOverSeveralFilesExitsThreeWhenOneHasNotes)
{
    const QByteArray plain = "[Dictionary]\nName=PLAIN\n[Item]\nName=AGE\nLabel=Age\nStart=1\nLen=2\n";
    const QString quiet = writeFile(dir, QStringLiteral("plain.dcf"), plain);
    const Outcome clean = runInspector({QStringLiteral("--fail-on-notes"), quiet, quiet});
    ASSERT_TRUE(clean.finished);
    EXPECT_EQ(clean.exitCode, 0);
    const Outcome noted = runInspector({QStringLiteral("--fail-on-notes"), quiet,
                                        samplePath(QStringLiteral("labour-notes.dcf"))});
    ASSERT_TRUE(noted.finished);
    EXPECT_EQ(noted.exitCode, 3);
}

TEST_F(Inspector, SeveralFilesAsJsonAreOneDocument)
{
    const QString bad = writeFile(dir, QStringLiteral("bad.dcf"), "no dictionary here\n");
    const QString notes = samplePath(QStringLiteral("labour-notes.dcf"));
    const Outcome r = runInspector({QStringLiteral("--json"), notes, bad});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 1);
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(str(root, "kind"), QStringLiteral("files"));
    const QJsonArray files = root.value(QStringLiteral("files")).toArray();
    ASSERT_EQ(files.size(), 2);
    EXPECT_EQ(str(files.at(0).toObject(), "file"), notes);
    // labour-notes.dcf: its six notes (samples/README.md).
    EXPECT_EQ(files.at(0).toObject().value(QStringLiteral("report")).toObject().value(QStringLiteral("notes"))
                  .toArray().size(),
              6);
    EXPECT_EQ(str(files.at(1).toObject(), "file"), bad);
    EXPECT_TRUE(str(files.at(1).toObject(), "problem").startsWith(QStringLiteral("format not recognised")));
    const QJsonObject summary = root.value(QStringLiteral("summary")).toObject();
    EXPECT_EQ(num(summary, "read"), 1);
    EXPECT_EQ(num(summary, "failed"), 1);
    EXPECT_EQ(num(summary, "withNotes"), 1);
    // labour-notes.dcf's notes are of five kinds.
    EXPECT_EQ(summary.value(QStringLiteral("filesByNoteKind")).toArray().size(), 5);
}

TEST_F(Inspector, AFolderWithoutDescriptionsSaysSo)
{
    const QString folder = dir.filePath(QStringLiteral("empty"));
    QDir().mkpath(folder);
    const Outcome r = runInspector({folder});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 1);
    ASSERT_EQ(r.errLines().size(), 1) << r.err.toStdString();
    EXPECT_EQ(r.errLines().first(), QStringLiteral("keladmin-inspect: %1: no dictionaries or data files (.dcf, .json, "
                                                   ".sav, .zsav, .dta) found")
                                        .arg(folder));
}

} // namespace

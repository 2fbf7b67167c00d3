// --ddi OUT: the codebook as one DDI Codebook 2.5 document, to a file or the
// standard output, written whole or not at all.
#include "InspectorRun.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QXmlStreamReader>

using namespace kxinspecttest;
using kxtest::samplePath;

namespace {

//! The names of the var elements of a DDI document, in order.
QStringList varNames(const QString &xml)
{
    QStringList names;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == QLatin1String("var"))
            names << reader.attributes().value(QStringLiteral("name")).toString();
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return names;
}

TEST_F(Inspector, DdiToTheStandardOutputIsOneDocument)
{
    const Outcome r = runInspector({QStringLiteral("--ddi"), QStringLiteral("-"), samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.startsWith(QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<codeBook xmlns=\"ddi:codebook:2_5\"")));
    // census.dcf: 30 items; ASSET (Occurrences=6) gives ASSET_1 to ASSET_6.
    const QStringList names = varNames(r.out);
    EXPECT_EQ(names.size(), 35);
    EXPECT_EQ(names.mid(9, 6), (QStringList{"ASSET_1", "ASSET_2", "ASSET_3", "ASSET_4", "ASSET_5", "ASSET_6"}));
}

TEST_F(Inspector, DdiToAFileWritesNothingElse)
{
    const QString out = dir.filePath(QStringLiteral("census.xml"));
    const Outcome r = runInspector({QStringLiteral("--ddi"), out, samplePath(QStringLiteral("census.sav"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.isEmpty());
    // census.sav: 15 variables.
    EXPECT_EQ(varNames(readText(out)).size(), 15);
}

TEST_F(Inspector, DdiThatCannotBeWrittenLeavesNoFileAndExitsFive)
{
    const QString out = dir.filePath(QStringLiteral("missing-folder/census.xml"));
    const Outcome r = runInspector({QStringLiteral("--ddi"), out, samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 5);
    ASSERT_EQ(r.errLines().size(), 1) << r.err.toStdString();
    EXPECT_TRUE(r.errLines().first().startsWith(QStringLiteral("keladmin-inspect: %1: cannot be written: ").arg(out)));
    EXPECT_FALSE(QFileInfo::exists(out));
}

TEST_F(Inspector, DdiOfAFileThatCannotBeReadExitsOne)
{
    const Outcome r = runInspector({QStringLiteral("--ddi"), QStringLiteral("-"), dir.filePath(QStringLiteral("absent.dcf"))});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.out.isEmpty());
}

} // namespace

// Replays every input the fuzz targets once failed on (tests/data/regress/
// <target>/<file>) through the same reader entry points as the targets. Each
// must now read to its documented outcome: no crash, overflow, hang or
// sanitizer report (the sanitizer build of the suite checks the last).

#include "../fuzz/FuzzReaders.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <string>
#include <vector>

namespace {

struct RegressionCase
{
    kxfuzz::Reader reader;
    QString path;
    std::string name;
};

const kxfuzz::Reader AllReaders[] = {kxfuzz::Reader::CSProText, kxfuzz::Reader::CSProJson, kxfuzz::Reader::Lookup,
                                     kxfuzz::Reader::Spss, kxfuzz::Reader::Stata};

QString regressionRoot()
{
    return kxtest::dataPath(QStringLiteral("regress"));
}

std::string testName(const QString &reader, const QString &file)
{
    std::string name = (reader + QLatin1Char('_') + file).toStdString();
    for (char &c : name) {
        if (!((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')))
            c = '_';
    }
    return name;
}

std::vector<RegressionCase> regressionCases()
{
    std::vector<RegressionCase> cases;
    for (kxfuzz::Reader reader : AllReaders) {
        const QString folder = QString::fromLatin1(kxfuzz::readerName(reader));
        const QDir dir(QDir(regressionRoot()).filePath(folder));
        for (const QString &file : dir.entryList(QDir::Files, QDir::Name)) {
            if (file == QLatin1String("README.md"))
                continue;
            cases.push_back({reader, dir.filePath(file), testName(folder, file)});
        }
    }
    return cases;
}

class FuzzRegression : public ::testing::TestWithParam<RegressionCase>
{
};

TEST_P(FuzzRegression, ReadsToItsDocumentedOutcome)
{
    const RegressionCase &c = GetParam();
    QFile file(c.path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << c.path.toStdString();
    const QByteArray bytes = file.readAll();

    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    QElapsedTimer timer;
    timer.start();
    // The count is the reader's result (items, entries or fields); -1 would
    // mean the scratch file could not be written.
    const int count = kxfuzz::runReader(c.reader, bytes, dir.filePath(QStringLiteral("input")));
    EXPECT_GE(count, 0);
    // The fuzz targets ran with a 10 s limit per input; a replay well under it
    // shows that the hang, if that was the finding, is gone.
    EXPECT_LT(timer.elapsed(), 10000);
}

INSTANTIATE_TEST_SUITE_P(Regress, FuzzRegression, ::testing::ValuesIn(regressionCases()),
                         [](const ::testing::TestParamInfo<RegressionCase> &info) { return info.param.name; });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(FuzzRegression);

// Every folder under tests/data/regress is named after a fuzz target, so no
// kept input is silently skipped.
TEST(FuzzRegressionFolders, EveryFolderIsNamedAfterAFuzzTarget)
{
    QStringList known;
    for (kxfuzz::Reader reader : AllReaders)
        known << QString::fromLatin1(kxfuzz::readerName(reader));
    const QDir root(regressionRoot());
    for (const QString &folder : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        EXPECT_TRUE(known.contains(folder)) << folder.toStdString();
}

} // namespace

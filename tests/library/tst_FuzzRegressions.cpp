// Replays every input the fuzz targets once failed on (tests/data/regress/
// <target>/<file>), and their seeds (tests/data/seeds/<target>/<file>),
// through the same reader entry points as the targets. Each must read to its
// documented outcome: no crash, overflow, hang or sanitizer report (the
// sanitizer build of the suite checks the last).

#include "FuzzReaders.h"

#include "FixtureReadStat.h"
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

const kxfuzz::Reader AllReaders[] = {kxfuzz::Reader::CSProText,     kxfuzz::Reader::CSProJson,
                                     kxfuzz::Reader::Lookup,        kxfuzz::Reader::Spss,
                                     kxfuzz::Reader::Stata,         kxfuzz::Reader::CodebookText,
                                     kxfuzz::Reader::CodebookJson,  kxfuzz::Reader::CodebookSpss,
                                     kxfuzz::Reader::CodebookStata};

// The codebook reader of the same format: every input kept for a front-end
// reader is read by the codebook library too.
bool codebookTwin(kxfuzz::Reader reader, kxfuzz::Reader *twin)
{
    switch (reader) {
    case kxfuzz::Reader::CSProText: *twin = kxfuzz::Reader::CodebookText; return true;
    case kxfuzz::Reader::CSProJson: *twin = kxfuzz::Reader::CodebookJson; return true;
    case kxfuzz::Reader::Spss: *twin = kxfuzz::Reader::CodebookSpss; return true;
    case kxfuzz::Reader::Stata: *twin = kxfuzz::Reader::CodebookStata; return true;
    default: return false;
    }
}

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

std::vector<RegressionCase> casesUnder(const QString &root, const QString &prefix)
{
    std::vector<RegressionCase> cases;
    for (kxfuzz::Reader reader : AllReaders) {
        const QString folder = QString::fromLatin1(kxfuzz::readerName(reader));
        const QDir dir(QDir(root).filePath(folder));
        kxfuzz::Reader twin = reader;
        const bool hasTwin = codebookTwin(reader, &twin);
        for (const QString &file : dir.entryList(QDir::Files, QDir::Name)) {
            cases.push_back({reader, dir.filePath(file), testName(prefix + folder, file)});
            if (hasTwin)
                cases.push_back({twin, dir.filePath(file), testName(prefix + QStringLiteral("codebook_") + folder, file)});
        }
    }
    return cases;
}

std::vector<RegressionCase> regressionCases()
{
    std::vector<RegressionCase> cases = casesUnder(regressionRoot(), QString());
    const std::vector<RegressionCase> seeds =
        casesUnder(kxtest::dataPath(QStringLiteral("seeds")), QStringLiteral("seed_"));
    cases.insert(cases.end(), seeds.begin(), seeds.end());
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

// What the kept inputs must read to, beyond not failing.

QString regressionFile(const QString &name)
{
    return QDir(regressionRoot()).filePath(name);
}

// Thirty items of 9999 occurrences in a file of a few kilobytes: the first
// fits in the copy budget (10,000 and one per 100 characters), the second
// fails the load with error 242 before any of its copies is stored.
TEST(FuzzRegressionCSProText, CopiesPastTheBudgetFailWithError242)
{
    TCSPro d;
    int number = 0;
    EXPECT_TRUE(kxtest::catchKxError(
        [&] { d.loadFromFile(regressionFile(QStringLiteral("cspro_text/occurrences-past-item-limit.dcf"))); },
        &number));
    EXPECT_EQ(number, 242);
    EXPECT_EQ(d.getItemsCount(), TCSPro::MaxOccurrences);
    kxfuzz::releaseModel(d);
}

// One item of 9999 occurrences with a value set of 200 codes: the copies share
// one value set instead of holding 9999 copies of it.
TEST(FuzzRegressionCSProJson, OccurrenceCopiesShareOneValueSet)
{
    TCSProJson d;
    d.loadFromFile(regressionFile(QStringLiteral("cspro_json/occurrences-copy-value-sets.json")));
    ASSERT_EQ(d.getItemsCount(), TCSPro::MaxOccurrences);
    TCSProItem *first = d.getItem(0);
    TCSProItem *last = d.getItem(TCSPro::MaxOccurrences - 1);
    EXPECT_EQ(last->name, QStringLiteral("A0_9999"));
    ASSERT_TRUE(first->getHasValueSet());
    ASSERT_TRUE(last->getHasValueSet());
    EXPECT_EQ(first->getValueSet(0), last->getValueSet(0));
    EXPECT_EQ(first->getValueSet(0)->getCount(), 200);
    EXPECT_EQ(first->getValueSet(0)->getValueSetItem(199)->code, QStringLiteral("199"));
    kxfuzz::releaseModel(d);
}

// Thirty items of 9999 occurrences: copies stop at the copy budget, 10,000
// and one for every 100 bytes of the file, in the second item.
TEST(FuzzRegressionCSProJson, CopiesStopAtTheCopyBudget)
{
    const QString path = regressionFile(QStringLiteral("cspro_json/occurrences-past-item-limit.json"));
    const qint64 budget = 10000 + QFileInfo(path).size() / 100;
    TCSProJson d;
    d.loadFromFile(path);
    ASSERT_EQ(d.getItemsCount(), budget);
    EXPECT_EQ(d.getItem(9998)->name, QStringLiteral("A0_9999"));
    EXPECT_EQ(d.getItem(int(budget) - 1)->name, QStringLiteral("A1_%1").arg(budget - 9999));
    // The file gives no record type, and its record R no "occurrences", which
    // the first two notes say; then one note for each item that lost copies:
    // A1 from its copy after the budget, A2 to A29 from their first.
    TReadNotes notes = d.getReadNotes();
    ASSERT_EQ(notes.size(), 31);
    EXPECT_EQ(notes.takeFirst().getKind(), QStringLiteral("group-not-set"));
    EXPECT_EQ(notes.takeFirst().getKind(), QStringLiteral("malformed-item-kept"));
    for (int i = 0; i < notes.size(); ++i) {
        EXPECT_EQ(notes.at(i).getKind(), QStringLiteral("limit-reached"));
        EXPECT_EQ(notes.at(i).getSubject(), QStringLiteral("A%1").arg(i + 1));
    }
    EXPECT_TRUE(notes.at(0).getText().contains(QStringLiteral("at copy %1,").arg(budget - 9999 + 1)))
        << notes.at(0).getText().toStdString();
    EXPECT_TRUE(notes.at(1).getText().contains(QStringLiteral("at copy 1,"))) << notes.at(1).getText().toStdString();
    kxfuzz::releaseModel(d);
}

// In Stata files before format 110 a label-set name has a field of 9 bytes; a
// name of 9 characters fills it with no NUL after it. The name is read whole
// and nothing past the field.
TEST(FuzzRegressionStata, LabelSetNameThatFillsItsFieldIsReadWithinTheField)
{
    using kxtest::ReadStatFile;
    ReadStatFile f;
    f.container = ReadStatFile::Container::Dta;
    f.dtaVersion = 105;
    f.labelSets = {{"yesnoyesn", ReadStatFile::Type::Int32,
                    {kxtest::numericLabel(1, "Yes"), kxtest::numericLabel(2, "No")}}};
    f.variables = {kxtest::readStatVariable("answer", ReadStatFile::Type::Int8, "%8.0g", "Answer", "yesnoyesn")};
    QTemporaryDir dir;
    QString error;
    const QString path = kxtest::writeReadStatFile(dir, QStringLiteral("full.dta"), f, &error);
    ASSERT_FALSE(path.isEmpty()) << error.toStdString();

    TSTATADataImport importer(path);
    importer.openFile();
    ASSERT_EQ(importer.getFieldCount(), 1);
    EXPECT_EQ(importer.getField(0)->getValueLabels(), QStringLiteral("1 Yes\t2 No\t"));
    qDeleteAll(*importer.getFields());
}

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

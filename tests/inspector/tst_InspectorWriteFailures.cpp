// Output that was not written is never reported as written: a full standard
// output (/dev/full) and a full disk under --html give exit status 5 and one
// line with the system's reason, and an old page stays as it was.
#include "InspectorRun.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

#include <unistd.h>

using namespace kxinspecttest;
using kxtest::samplePath;

namespace {

//! Runs the inspector with its standard output sent to /dev/full.
Outcome runIntoFullOutput(const QStringList &args)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    env.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    p.setProcessEnvironment(env);
    p.setStandardOutputFile(QStringLiteral("/dev/full"));
    p.start(program(), args);
    Outcome r;
    if (!p.waitForStarted(10000))
        return r;
    r.finished = p.waitForFinished(60000);
    r.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.err = QString::fromLocal8Bit(p.readAllStandardError());
    return r;
}

struct FullOutputCase
{
    const char *name;
    QStringList args;
};

class InspectorFullOutput : public Inspector, public ::testing::WithParamInterface<FullOutputCase>
{
};

TEST_P(InspectorFullOutput, ExitsFiveWithTheSystemsReason)
{
    if (!QFile::exists(QStringLiteral("/dev/full")))
        GTEST_SKIP() << "this system has no /dev/full";
    QStringList args;
    for (const QString &a : GetParam().args)
        args << (a.startsWith(QLatin1String("@")) ? samplePath(a.mid(1)) : a);
    const Outcome r = runIntoFullOutput(args);
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 5);
    EXPECT_EQ(r.errLines(), QStringList{QStringLiteral("keladmin-inspect: standard output: No space left on device")});
}

INSTANTIATE_TEST_SUITE_P(
    EveryOutput, InspectorFullOutput,
    ::testing::Values(FullOutputCase{"Help", {"--help"}}, FullOutputCase{"Version", {"--version"}},
                      FullOutputCase{"Table", {"@census.dcf"}}, FullOutputCase{"Json", {"--json", "@census.json"}},
                      FullOutputCase{"Csv", {"--csv", "@census.sav"}},
                      FullOutputCase{"Lookup", {"--lookup", "@areas.txt", "--separator", "tab"}},
                      FullOutputCase{"LookupJson", {"--json", "--lookup", "@areas.txt", "--separator", "tab"}},
                      FullOutputCase{"LookupCsv", {"--csv", "--lookup", "@areas.txt", "--separator", "tab"}},
                      FullOutputCase{"Codebook", {"--codebook", "@census.dta"}},
                      FullOutputCase{"CodebookJson", {"--codebook", "--json", "@census.dcf"}},
                      FullOutputCase{"CodebookCsv", {"--codebook", "--csv", "@census.sav"}},
                      FullOutputCase{"Ddi", {"--ddi", "-", "@census.dcf"}},
                      FullOutputCase{"Diff", {"--diff", "@census.dcf", "@census-round2.dcf"}},
                      FullOutputCase{"SeveralFiles", {"@census.dcf", "@census.sav"}}),
    [](const ::testing::TestParamInfo<FullOutputCase> &info) { return std::string(info.param.name); });

TEST_F(Inspector, AFileThatCannotBeReadKeepsItsStatusWhenTheOutputIsFullToo)
{
    if (!QFile::exists(QStringLiteral("/dev/full")))
        GTEST_SKIP() << "this system has no /dev/full";
    const Outcome r = runIntoFullOutput({dir.filePath(QStringLiteral("absent.dcf"))});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 1);
}

//! A file system of \a kilobytes, mounted for one test and unmounted after; skips the test where none can be mounted.
class SmallDisk
{
public:
    SmallDisk(const QString &path, int kilobytes)
        : path(path)
    {
        QDir().mkpath(path);
        if (geteuid() != 0) {
            why = QStringLiteral("mounting a small tmpfs needs root");
            return;
        }
        QProcess mount;
        mount.start(QStringLiteral("mount"), {QStringLiteral("-t"), QStringLiteral("tmpfs"), QStringLiteral("-o"),
                                             QStringLiteral("size=%1k").arg(kilobytes), QStringLiteral("tmpfs"),
                                             path});
        mounted = mount.waitForFinished(10000) && mount.exitStatus() == QProcess::NormalExit && mount.exitCode() == 0;
        if (!mounted)
            why = QStringLiteral("this machine cannot mount a tmpfs: ") + QString::fromLocal8Bit(mount.readAllStandardError());
    }
    ~SmallDisk()
    {
        if (mounted)
            QProcess::execute(QStringLiteral("umount"), {path});
    }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    bool isMounted() const { return mounted; }
    QString reason() const { return why; }

private:
    QString path;
    bool mounted = false;
    QString why;
};

TEST_F(Inspector, HtmlPageOnAFullDiskExitsFiveAndLeavesTheOldPage)
{
    const QString folder = dir.filePath(QStringLiteral("small"));
    SmallDisk disk(folder, 16);
    if (!disk.isMounted())
        GTEST_SKIP() << disk.reason().toStdString();
    // The old page; the new one of census.dcf (about 43 KB) does not fit in 16 KB.
    const QString page = QDir(folder).filePath(QStringLiteral("census.html"));
    {
        QFile old(page);
        ASSERT_TRUE(old.open(QIODevice::WriteOnly));
        ASSERT_EQ(old.write("<p>old page</p>"), 15);
    }
    const Outcome r = runInspector({QStringLiteral("--html"), page, samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 5);
    ASSERT_EQ(r.errLines().size(), 1) << r.err.toStdString();
    EXPECT_EQ(r.errLines().at(0),
              QStringLiteral("keladmin-inspect: %1: cannot be written: No space left on device").arg(page));
    EXPECT_EQ(readText(page), QStringLiteral("<p>old page</p>"));
    EXPECT_EQ(QDir(folder).entryList(QDir::Files), QStringList{QStringLiteral("census.html")});
}

TEST_F(Inspector, DdiOnAFullDiskExitsFiveAndLeavesNoFile)
{
    const QString folder = dir.filePath(QStringLiteral("small"));
    SmallDisk disk(folder, 8);
    if (!disk.isMounted())
        GTEST_SKIP() << disk.reason().toStdString();
    // census.dcf's DDI document (about 18 KB) does not fit in 8 KB.
    const QString document = QDir(folder).filePath(QStringLiteral("census.xml"));
    const Outcome r = runInspector({QStringLiteral("--ddi"), document, samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 5);
    ASSERT_EQ(r.errLines().size(), 1) << r.err.toStdString();
    EXPECT_EQ(r.errLines().at(0),
              QStringLiteral("keladmin-inspect: %1: cannot be written: No space left on device").arg(document));
    EXPECT_TRUE(QDir(folder).entryList(QDir::Files).isEmpty());
}

} // namespace

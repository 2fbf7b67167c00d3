// Input that can be read only once, a pipe on the standard input or a named
// pipe: read once, its format found from the bytes read, and named as given.
#include "InspectorRun.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>

#include <sys/stat.h>

using namespace kxinspecttest;
using kxtest::samplePath;

namespace {

QByteArray sampleBytes(const char *name)
{
    QFile f(samplePath(QString::fromLatin1(name)));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

//! Runs the inspector with \a input written to its standard input through a pipe.
Outcome runWithInput(const QStringList &args, const QByteArray &input)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    env.insert(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    p.setProcessEnvironment(env);
    p.start(program(), args);
    Outcome r;
    if (!p.waitForStarted(10000))
        return r;
    p.write(input);
    p.closeWriteChannel();
    r.finished = p.waitForFinished(60000);
    r.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = QString::fromUtf8(p.readAllStandardOutput());
    r.err = QString::fromLocal8Bit(p.readAllStandardError());
    return r;
}

TEST_F(Inspector, ACSProJsonDictionaryOnTheStandardInputIsRead)
{
    const Outcome r = runWithInput({QStringLiteral("--json"), QStringLiteral("/dev/stdin")}, sampleBytes("census.json"));
    ASSERT_TRUE(r.finished) << "the inspector waited";
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(str(root, "format"), QStringLiteral("cspro8"));
    EXPECT_EQ(str(root, "file"), QStringLiteral("/dev/stdin"));
    EXPECT_EQ(str(root, "providerId"), QStringLiteral("CSPRO8_/dev/stdin"));
    // census.json: 35 fields (samples/README.md).
    EXPECT_EQ(root.value(QStringLiteral("fields")).toArray().size(), 35);
}

TEST_F(Inspector, AnSpssFileOnTheStandardInputGivesItsCodebook)
{
    const Outcome r = runWithInput({QStringLiteral("--codebook"), QStringLiteral("--json"), QStringLiteral("/dev/stdin")},
                                   sampleBytes("census.sav"));
    ASSERT_TRUE(r.finished) << "the inspector waited";
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(str(root, "file"), QStringLiteral("/dev/stdin"));
    EXPECT_EQ(num(root, "rowCount"), 12);
}

TEST_F(Inspector, ALookupFileOnTheStandardInputIsRead)
{
    const Outcome r = runWithInput({QStringLiteral("--lookup"), QStringLiteral("/dev/stdin"), QStringLiteral("--separator"),
                                    QStringLiteral("tab")},
                                   sampleBytes("areas.txt"));
    ASSERT_TRUE(r.finished) << "the inspector waited";
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    // areas.txt: 34 lines with distinct keys.
    EXPECT_TRUE(r.outLines().contains(QStringLiteral("Entries:           34"))) << r.out.toStdString();
}

TEST_F(Inspector, ANamedPipeIsReadOnce)
{
    const QString fifo = dir.filePath(QStringLiteral("census.pipe"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    // A writer that opens the pipe once and goes away when it has written.
    QProcess writer;
    writer.start(QStringLiteral("/bin/sh"),
                 {QStringLiteral("-c"), QStringLiteral("cat \"$0\" > \"$1\""), samplePath(QStringLiteral("census.dta")), fifo});
    ASSERT_TRUE(writer.waitForStarted(10000));
    const Outcome r = runInspector({fifo});
    writer.waitForFinished(10000);
    ASSERT_TRUE(r.finished) << "the inspector waited for a second writer";
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.outLines().contains(QStringLiteral("File:              %1").arg(fifo))) << r.out.toStdString();
    EXPECT_TRUE(r.outLines().contains(QStringLiteral("Format:            stata (detected)"))) << r.out.toStdString();
}

} // namespace

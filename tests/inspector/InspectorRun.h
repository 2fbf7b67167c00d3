#ifndef INSPECTORRUN_H
#define INSPECTORRUN_H

// Runs the built keladmin-inspect program and reads what it printed: the
// helpers and the fixture that every inspector test file shares.

#include <gtest/gtest.h>

#include <QJsonObject>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <readstat.h>

#include <ostream>

namespace kxinspecttest {

//! How one run of the inspector ended.
struct Outcome
{
    bool finished = false;
    int exitCode = -1;
    QString out;
    QString err;

    QStringList errLines() const { return err.split(QLatin1Char('\n'), Qt::SkipEmptyParts); }
    QStringList outLines() const { return out.split(QLatin1Char('\n')); }
};

//! The built inspector; empty when the tools are not built.
QString program();

//! Runs the inspector with no display: it must never wait for a dialog.
Outcome runInspector(const QStringList &args, const QString &workDir = QString(),
                     const QList<QPair<QString, QString>> &extraEnv = {});

QJsonObject jsonOf(const Outcome &r);
QJsonObject fieldNamed(const QJsonObject &root, const QString &name);
QStringList codesOf(const QJsonObject &field);
QStringList labelsOf(const QJsonObject &field);
int frequencyOf(const QJsonObject &root, const QString &label);
QString str(const QJsonObject &o, const char *key);
int num(const QJsonObject &o, const char *key);

//! The first \a bytes bytes of the sample \a name.
QByteArray sampleHead(const QString &name, int bytes);
//! How the inspector words a ReadStat error: ReadStat's own message and its code.
QString readStatReason(readstat_error_t code);
//! A file's text, read as UTF-8.
QString readText(const QString &path);
//! The records of a CSV text whose fields hold no line ends.
QStringList csvRecordsOf(const QString &text);

//! Every command on its own line, no value set: the reading keeps all the file says.
extern const QByteArray PlainDictionary;

//! Skips itself when the inspector is not built; a temporary folder for each test.
class Inspector : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (program().isEmpty())
            GTEST_SKIP() << "the inspector is not built (KX_BUILD_TOOLS=OFF)";
        ASSERT_TRUE(dir.isValid());
    }
    QTemporaryDir dir;
};

//! Wrong command lines: exit status 2, the problem and the usage.
struct UsageCase
{
    const char *name;
    QStringList args;
    QString firstLine;
};

inline void PrintTo(const UsageCase &c, std::ostream *os)
{
    *os << c.name;
}

class InspectorUsage : public Inspector, public ::testing::WithParamInterface<UsageCase>
{
};

} // namespace kxinspecttest

#endif // INSPECTORRUN_H

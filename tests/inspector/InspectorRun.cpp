#include "InspectorRun.h"

#include "TestSupport.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QProcessEnvironment>

namespace kxinspecttest {

using kxtest::samplePath;

QString program()
{
#ifdef KX_INSPECT_PROGRAM
    return QStringLiteral(KX_INSPECT_PROGRAM);
#else
    return QString();
#endif
}

const QByteArray PlainDictionary = "[Dictionary]\nName=PLAIN\n[Item]\nName=AGE\nLabel=Age\nStart=1\nLen=2\n";

Outcome runInspector(const QStringList &args, const QString &workDir,
                     const QList<QPair<QString, QString>> &extraEnv)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    // The test program's own offscreen platform is not the user's.
    env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    // Under the sanitizers: the library keeps its fields alive on purpose.
    const QString asan = env.value(QStringLiteral("ASAN_OPTIONS"));
    env.insert(QStringLiteral("ASAN_OPTIONS"),
               asan.isEmpty() ? QStringLiteral("detect_leaks=0") : asan + QStringLiteral(":detect_leaks=0"));
    for (const auto &var : extraEnv)
        env.insert(var.first, var.second);
    p.setProcessEnvironment(env);
    if (!workDir.isEmpty())
        p.setWorkingDirectory(workDir);
    p.start(program(), args);
    Outcome r;
    if (!p.waitForStarted(10000))
        return r;
    r.finished = p.waitForFinished(60000);
    if (!r.finished) {
        p.kill();
        p.waitForFinished(5000);
    }
    r.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = QString::fromUtf8(p.readAllStandardOutput());
    r.err = QString::fromLocal8Bit(p.readAllStandardError());
    return r;
}

QJsonObject jsonOf(const Outcome &r)
{
    QJsonParseError error;
    const QJsonDocument doc = QJsonDocument::fromJson(r.out.toUtf8(), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();
    return doc.object();
}

QJsonObject fieldNamed(const QJsonObject &root, const QString &name)
{
    for (const QJsonValue &v : root.value(QStringLiteral("fields")).toArray()) {
        if (v.toObject().value(QStringLiteral("name")).toString() == name)
            return v.toObject();
    }
    ADD_FAILURE() << "no field " << name.toStdString();
    return QJsonObject();
}

QStringList codesOf(const QJsonObject &field)
{
    QStringList codes;
    for (const QJsonValue &v : field.value(QStringLiteral("valueLabels")).toArray())
        codes << v.toObject().value(QStringLiteral("code")).toString();
    return codes;
}

QStringList labelsOf(const QJsonObject &field)
{
    QStringList labels;
    for (const QJsonValue &v : field.value(QStringLiteral("valueLabels")).toArray())
        labels << v.toObject().value(QStringLiteral("label")).toString();
    return labels;
}

int frequencyOf(const QJsonObject &root, const QString &label)
{
    for (const QJsonValue &v : root.value(QStringLiteral("labelFrequencies")).toArray()) {
        if (v.toObject().value(QStringLiteral("label")).toString() == label)
            return v.toObject().value(QStringLiteral("count")).toInt();
    }
    return 0;
}

QString str(const QJsonObject &o, const char *key)
{
    return o.value(QLatin1String(key)).toString();
}

int num(const QJsonObject &o, const char *key)
{
    return o.value(QLatin1String(key)).toInt(-999);
}

QByteArray sampleHead(const QString &name, int bytes)
{
    QFile f(samplePath(name));
    return f.open(QIODevice::ReadOnly) ? f.read(bytes) : QByteArray();
}

QString readStatReason(readstat_error_t code)
{
    return QStringLiteral("ReadStat: %1 (error %2)").arg(QString::fromUtf8(readstat_error_message(code))).arg(code);
}

QString readText(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

QStringList csvRecordsOf(const QString &text)
{
    EXPECT_TRUE(text.endsWith(QStringLiteral("\r\n")));
    QStringList records = text.split(QStringLiteral("\r\n"));
    records.removeLast();
    return records;
}

} // namespace kxinspecttest

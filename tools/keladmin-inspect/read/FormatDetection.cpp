#include "FormatDetection.h"

#include <KxCodebook.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

namespace kxinspect {

QString checkInputFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return QStringLiteral("no such file");
    if (info.isDir())
        return QStringLiteral("is a directory, not a file");
    // A pipe is opened once, by readablePath(): a second open would wait for
    // a writer that has gone.
    if (!info.isFile())
        return QString();
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot be read (%1)").arg(f.errorString());
    return QString();
}

QString detectFormat(const QByteArray &head)
{
    return KxCodebook::formatName(KxCodebook::detectFormat(head));
}

QString detectFileFormat(const QString &path, QString *format)
{
    QFile f(path);
    // Unbuffered: 64 bytes are read, not the 16 KB of Qt's buffer.
    if (!f.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return QStringLiteral("cannot be read (%1)").arg(f.errorString());
    const QByteArray head = f.read(64);
    if (head.isEmpty())
        return QStringLiteral("empty file, format not recognised");
    *format = detectFormat(head);
    if (format->isEmpty())
        return QStringLiteral("format not recognised (not a CSPro text or JSON dictionary, SPSS or Stata file); "
                              "--format forces one");
    return QString();
}

QString readablePath(const QString &path, QTemporaryFile &copy, QString *problem)
{
    if (QFileInfo(path).isFile())
        return path;
    QFile stream(path);
    if (!stream.open(QIODevice::ReadOnly)) {
        *problem = QStringLiteral("cannot be read (%1)").arg(stream.errorString());
        return QString();
    }
    if (!copy.open()) {
        *problem = QStringLiteral("no room for a copy of the stream (%1)").arg(copy.errorString());
        return QString();
    }
    char block[65536];
    for (;;) {
        const qint64 n = stream.read(block, sizeof block);
        if (n == 0)
            break;
        if (n < 0) {
            *problem = QStringLiteral("cannot be read (%1)").arg(stream.errorString());
            return QString();
        }
        if (copy.write(block, n) != n) {
            *problem = QStringLiteral("no room for a copy of the stream (%1)").arg(copy.errorString());
            return QString();
        }
    }
    copy.flush();
    return copy.fileName();
}

QString openInput(const QString &path, QTemporaryFile &copy, QString *absolutePath)
{
    QString problem = checkInputFile(path);
    if (!problem.isEmpty())
        return problem;
    const QString source = readablePath(path, copy, &problem);
    if (source.isEmpty())
        return problem;
    *absolutePath = QFileInfo(source).absoluteFilePath();
    return QString();
}

} // namespace kxinspect

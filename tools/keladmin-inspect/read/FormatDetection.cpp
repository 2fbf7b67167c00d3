#include "FormatDetection.h"

#include <KxCodebook.h>

#include <QFile>
#include <QFileInfo>

namespace kxinspect {

QString checkInputFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return QStringLiteral("no such file");
    if (info.isDir())
        return QStringLiteral("is a directory, not a file");
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

} // namespace kxinspect

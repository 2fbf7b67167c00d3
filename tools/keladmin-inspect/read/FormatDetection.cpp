#include "FormatDetection.h"

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
    QByteArray text = head;
    if (text.startsWith("\xEF\xBB\xBF"))
        text.remove(0, 3);
    if (text.startsWith("$FL2") || text.startsWith("$FL3"))
        return QStringLiteral("spss");
    if (text.startsWith("<stata_dta>"))
        return QStringLiteral("stata");
    // Old binary Stata files: format version 104-119, then the byte order
    // (1 high-low, 2 low-high). The second byte keeps plain text starting
    // with a letter h..s from passing as Stata.
    if (text.size() >= 4) {
        const unsigned char version = static_cast<unsigned char>(text.at(0));
        const unsigned char order = static_cast<unsigned char>(text.at(1));
        if (version >= 104 && version <= 119 && (order == 1 || order == 2))
            return QStringLiteral("stata");
    }
    const QByteArray trimmed = text.trimmed();
    if (trimmed.startsWith('{'))
        return QStringLiteral("cspro8");
    if (trimmed.left(12).toLower() == "[dictionary]")
        return QStringLiteral("cspro");
    return QString();
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

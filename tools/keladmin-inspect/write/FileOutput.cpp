#include "FileOutput.h"

#include <QSaveFile>

#include <cerrno>
#include <cstring>

namespace kxinspect {

QString writeFileWhole(const QString &path, const QByteArray &bytes)
{
    return writeFileWhole(path, [&bytes](QIODevice *file) { return file->write(bytes) == bytes.size(); });
}

QString writeFileWhole(const QString &path, const std::function<bool(QIODevice *)> &write)
{
    QSaveFile file(path);
    // Unbuffered: each write goes to the system at once, and a failed one
    // keeps the system's reason in errno.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return QStringLiteral("cannot be written: %1").arg(file.errorString());
    errno = 0;
    if (!write(&file)) {
        const int writeError = errno;
        const QString why = writeError != 0 ? QString::fromLocal8Bit(std::strerror(writeError)) : file.errorString();
        file.cancelWriting();
        file.commit();
        return QStringLiteral("cannot be written: %1").arg(why);
    }
    if (!file.commit())
        return QStringLiteral("cannot be written: %1").arg(file.errorString());
    return QString();
}

} // namespace kxinspect

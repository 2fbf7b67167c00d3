#include "FileOutput.h"

#include <QSaveFile>

#include <cerrno>
#include <cstring>

namespace kxinspect {

QString writeFileWhole(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    // Unbuffered: the bytes go to the system in one write, whose failure
    // keeps the system's reason.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return QStringLiteral("cannot be written: %1").arg(file.errorString());
    errno = 0;
    if (file.write(bytes) != bytes.size()) {
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

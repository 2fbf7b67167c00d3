#ifndef FUZZTARGET_H
#define FUZZTARGET_H

// What every libFuzzer target shares: a silent Qt log, one scratch file per
// process, and LLVMFuzzerTestOneInput calling one reader of FuzzReaders.h.

#include "FuzzReaders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QtGlobal>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <unistd.h>

namespace kxfuzz {

// The readers trace to the Qt log ("PROCESAR OTROS RANGOS", "Record ..."):
// millions of lines that would drown libFuzzer's own output.
inline void quietLog(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtFatalMsg) {
        fprintf(stderr, "%s\n", qPrintable(message));
        abort();
    }
}

inline QString &scratchPath()
{
    static QString path;
    return path;
}

inline void removeScratch()
{
    QFile::remove(scratchPath());
}

inline void initTarget(Reader reader)
{
    qInstallMessageHandler(quietLog);
    // A RAM-backed folder where there is one: every input goes through a file.
    const QString folder = QFileInfo(QStringLiteral("/dev/shm")).isWritable() ? QStringLiteral("/dev/shm")
                                                                             : QDir::tempPath();
    scratchPath() = QDir(folder).filePath(QStringLiteral("kxfuzz-%1-%2")
                                              .arg(QString::fromLatin1(readerName(reader)))
                                              .arg(qint64(getpid())));
    atexit(removeScratch);
}

inline int fuzzOne(Reader reader, const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(qMin<size_t>(size, 64 * 1024 * 1024)));
    runReader(reader, bytes, scratchPath());
    return 0;
}

} // namespace kxfuzz

//! Defines the two libFuzzer entry points for \a READER.
#define KX_FUZZ_TARGET(READER)                                                                \
    extern "C" int LLVMFuzzerInitialize(int *, char ***)                                      \
    {                                                                                         \
        kxfuzz::initTarget(READER);                                                           \
        return 0;                                                                             \
    }                                                                                         \
    extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)                   \
    {                                                                                         \
        return kxfuzz::fuzzOne(READER, data, size);                                           \
    }

#endif // FUZZTARGET_H

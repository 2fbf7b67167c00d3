#ifndef KXINSPECT_FILEOUTPUT_H
#define KXINSPECT_FILEOUTPUT_H

#include <QByteArray>
#include <QString>

#include <functional>

class QIODevice;

namespace kxinspect {

/*! Writes \a bytes to \a path whole or not at all: through a temporary file
 * that replaces \a path only once everything is written, so a full disk
 * leaves an old file as it was. The problem with the system's reason
 * ("cannot be written: No space left on device"), or an empty text. */
QString writeFileWhole(const QString &path, const QByteArray &bytes);

/*! The same for a document streamed by \a write to the device it is given,
 * which returns false when the device refused a write. */
QString writeFileWhole(const QString &path, const std::function<bool(QIODevice *)> &write);

} // namespace kxinspect

#endif // KXINSPECT_FILEOUTPUT_H

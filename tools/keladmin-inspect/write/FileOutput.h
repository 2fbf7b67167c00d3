#ifndef KXINSPECT_FILEOUTPUT_H
#define KXINSPECT_FILEOUTPUT_H

#include <QByteArray>
#include <QString>

namespace kxinspect {

/*! Writes \a bytes to \a path whole or not at all: through a temporary file
 * that replaces \a path only once everything is written, so a full disk
 * leaves an old file as it was. The problem with the system's reason
 * ("cannot be written: No space left on device"), or an empty text. */
QString writeFileWhole(const QString &path, const QByteArray &bytes);

} // namespace kxinspect

#endif // KXINSPECT_FILEOUTPUT_H

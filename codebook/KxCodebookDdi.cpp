#include "KxCodebookDdi.h"

#include <QBuffer>

namespace KxCodebook {

bool writeDdi(const Codebook &codebook, QIODevice *device, const DdiOptions &options, QString *error)
{
    Q_UNUSED(codebook);
    Q_UNUSED(device);
    Q_UNUSED(options);
    if (error)
        *error = QStringLiteral("not written yet");
    return false;
}

QByteArray toDdi(const Codebook &codebook, const DdiOptions &options)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    writeDdi(codebook, &buffer, options);
    return bytes;
}

} // namespace KxCodebook

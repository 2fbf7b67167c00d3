#include "CodebookReaders_p.h"

namespace KxCodebook {
namespace detail {

Codebook readCSProJson(const QByteArray &data, const QString &fileName, Error *error)
{
    Q_UNUSED(data);
    Q_UNUSED(fileName);
    error->kind = Error::Malformed;
    error->message = QStringLiteral("not read yet");
    return Codebook();
}

} // namespace detail
} // namespace KxCodebook

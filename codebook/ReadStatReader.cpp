#include "CodebookReaders_p.h"

namespace KxCodebook {
namespace detail {

Codebook readReadStatFile(const QString &path, Format format, Error *error)
{
    Q_UNUSED(path);
    Q_UNUSED(format);
    error->kind = Error::Malformed;
    error->message = QStringLiteral("not read yet");
    return Codebook();
}

} // namespace detail
} // namespace KxCodebook

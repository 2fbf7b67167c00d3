#include "ReadFailure.h"

#include <QJsonDocument>
#include <QJsonParseError>

namespace kxinspect {

namespace {

bool isUtf8Continuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

} // namespace

TextPosition positionOfOffset(const QByteArray &data, int offset)
{
    const int end = qBound(0, offset, data.size());
    TextPosition position;
    for (int i = 0; i < end; ++i) {
        const char byte = data.at(i);
        if (byte == '\n') {
            ++position.line;
            position.column = 1;
        } else if (!isUtf8Continuation(byte)) {
            ++position.column;
        }
    }
    return position;
}

QString jsonProblem(const QByteArray &data)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(data, &error);
    if (error.error != QJsonParseError::NoError) {
        const TextPosition at = positionOfOffset(data, error.offset);
        return QStringLiteral("invalid JSON: %1 at line %2, column %3")
            .arg(error.errorString())
            .arg(at.line)
            .arg(at.column);
    }
    if (!document.isObject())
        return QStringLiteral("the JSON document is not an object");
    return QString();
}

} // namespace kxinspect

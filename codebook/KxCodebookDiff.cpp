#include "KxCodebookDiff.h"

namespace KxCodebook {

QString changeKindName(ChangeKind kind)
{
    Q_UNUSED(kind);
    return QString();
}

int changeSeverity(ChangeKind kind)
{
    Q_UNUSED(kind);
    return 0;
}

Comparison compare(const Codebook &before, const Codebook &after, const CompareOptions &options)
{
    Q_UNUSED(before);
    Q_UNUSED(after);
    Q_UNUSED(options);
    return Comparison();
}

} // namespace KxCodebook

#ifndef KXTEXT_P_H
#define KXTEXT_P_H

// Text helpers of the dictionary readers, where the Qt calls they stand for
// cost more than the reading itself. Each answers exactly as the Qt call named.

#include <QString>

#include <algorithm>
#include <cmath>

namespace kxtext {

/*! QString::toInt(ok, 10). The usual codes of a dictionary, an optional minus
 * and one to nine ASCII digits, are converted here; anything else goes to Qt. */
inline int toInt(const QString &text, bool *ok)
{
    const QChar *p = text.constData();
    const int size = text.size();
    const bool negative = size > 1 && p[0] == QLatin1Char('-');
    const int digits = negative ? size - 1 : size;
    if (digits < 1 || digits > 9)
        return text.toInt(ok, 10);
    int value = 0;
    for (int i = negative ? 1 : 0; i < size; ++i) {
        const ushort c = p[i].unicode();
        if (c < '0' || c > '9')
            return text.toInt(ok, 10);
        value = value * 10 + (c - '0');
    }
    *ok = true;
    return negative ? -value : value;
}

/*! QString::contains(needle), case-sensitive: a plain search, which for the
 * short command words costs less than the set-up of Qt's. */
inline bool contains(const QString &haystack, const QString &needle)
{
    const QChar *begin = haystack.constData();
    const QChar *end = begin + haystack.size();
    return std::search(begin, end, needle.constData(), needle.constData() + needle.size()) != end
        || needle.isEmpty();
}

/*! QString::startsWith(prefix, Qt::CaseInsensitive) for an upper-case ASCII
 * \a prefix: compared here while the text's first characters are ASCII,
 * where folding case is plain; Qt's full case folding decides otherwise. */
inline bool startsWithNoCase(const QString &text, QLatin1String prefix)
{
    if (text.size() < prefix.size())
        return false;
    const QChar *p = text.constData();
    for (int i = 0; i < prefix.size(); ++i) {
        ushort c = p[i].unicode();
        if (c >= 0x80)
            return text.startsWith(prefix, Qt::CaseInsensitive);
        if (c >= 'a' && c <= 'z')
            c = ushort(c - 'a' + 'A');
        if (c != ushort(uchar(prefix.data()[i])))
            return false;
    }
    return true;
}

/*! QString::number(v, 'g', 6). Whole numbers between -999,999 and 999,999,
 * which the bounds of value labels nearly always are, are written here as
 * integers; anything else goes to Qt's general conversion. */
inline QString numberG6(double v)
{
    if (v > -1e6 && v < 1e6 && v == std::trunc(v) && !(v == 0 && std::signbit(v)))
        return QString::number(static_cast<qint64>(v));
    return QString::number(v, 'g', 6);
}

inline QString formatArg(const QString &text) { return text; }
inline QString formatArg(int n) { return QString::number(n); }
inline QString formatArg(qint64 n) { return QString::number(n); }

/*! \a pattern with its %1, %2 ... replaced by \a args (texts and whole
 * numbers) in one pass: a name read from a file that holds "%2" stays as it
 * is, where QString::arg() called once per argument would replace inside it. */
template <typename... Args>
QString format(const QString &pattern, const Args &...args)
{
    return pattern.arg(formatArg(args)...);
}

} // namespace kxtext

#endif // KXTEXT_P_H

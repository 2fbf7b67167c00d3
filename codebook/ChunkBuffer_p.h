#ifndef KXCODEBOOK_CHUNKBUFFER_P_H
#define KXCODEBOOK_CHUNKBUFFER_P_H

#include <QChar>
#include <QIODevice>
#include <QString>

#include <algorithm>

#include <cstddef>
#include <cstring>
#include <vector>

namespace KxCodebook {
namespace Internal {

//! Bytes on their way to a device: written in place, sent in chunks of 64 KiB.
class ChunkBuffer
{
public:
    explicit ChunkBuffer(QIODevice *device) : m_device(device), m_bytes(ChunkSize) {}

    //! Room for \a n more bytes; say with commit() where the written bytes end.
    Q_ALWAYS_INLINE char *room(size_t n)
    {
        if (Q_UNLIKELY(m_used + n > m_bytes.size()))
            makeRoom(n);
        return m_bytes.data() + m_used;
    }

    void commit(const char *end) { m_used = size_t(end - m_bytes.data()); }

    Q_ALWAYS_INLINE void add(const char *text, size_t n)
    {
        std::memcpy(room(n), text, n);
        m_used += n;
    }

    Q_ALWAYS_INLINE void add(char c)
    {
        *room(1) = c;
        ++m_used;
    }

    /*! Appends \a text's UTF-16 units as \a escape writes them: called as
     * escape(out, units, begin, end) on slices of the text, with room for
     * \a maxBytesPerUnit bytes a unit, it returns the end of what it wrote.
     * A slice never ends between the two halves of a surrogate pair. */
    template <typename Escape>
    void addEscaped(const QString &text, size_t maxBytesPerUnit, Escape escape)
    {
        constexpr int Slice = 4096;
        const ushort *units = reinterpret_cast<const ushort *>(text.unicode());
        const int size = text.size();
        for (int begin = 0; begin < size;) {
            int end = std::min(size, begin + Slice);
            if (end < size && QChar::isHighSurrogate(units[end - 1]))
                ++end;  // keep a pair together
            commit(escape(room(maxBytesPerUnit * size_t(end - begin)), units, begin, end));
            begin = end;
        }
    }

    //! Sends what is left; false when the device refused any of it.
    bool finish()
    {
        send();
        return m_sent;
    }

private:
    static constexpr size_t ChunkSize = 1 << 16;

    Q_NEVER_INLINE void makeRoom(size_t n)
    {
        send();
        if (n > m_bytes.size())
            m_bytes.resize(n);
    }

    void send()
    {
        if (m_sent && m_used > 0)
            m_sent = m_device->write(m_bytes.data(), qint64(m_used)) == qint64(m_used);
        m_used = 0;
    }

    QIODevice *const m_device;
    std::vector<char> m_bytes;
    size_t m_used = 0;
    bool m_sent = true;
};

//! Writes the UTF-8 of the code point \a c (U+0080 and above) at \a out; returns the end.
inline char *putUtf8(char *out, uint c)
{
    if (c < 0x800) {
        *out++ = char(0xC0 | (c >> 6));
    } else if (c < 0x10000) {
        *out++ = char(0xE0 | (c >> 12));
        *out++ = char(0x80 | ((c >> 6) & 0x3F));
    } else {
        *out++ = char(0xF0 | (c >> 18));
        *out++ = char(0x80 | ((c >> 12) & 0x3F));
        *out++ = char(0x80 | ((c >> 6) & 0x3F));
    }
    *out++ = char(0x80 | (c & 0x3F));
    return out;
}

} // namespace Internal
} // namespace KxCodebook

#endif // KXCODEBOOK_CHUNKBUFFER_P_H

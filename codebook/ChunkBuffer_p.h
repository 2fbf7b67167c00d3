#ifndef KXCODEBOOK_CHUNKBUFFER_P_H
#define KXCODEBOOK_CHUNKBUFFER_P_H

#include <QIODevice>

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

} // namespace Internal
} // namespace KxCodebook

#endif // KXCODEBOOK_CHUNKBUFFER_P_H

#ifndef KXLOOKUPIMPORT_P_H
#define KXLOOKUPIMPORT_P_H

// What TKxLookup::importAVL() reads a lookup file into before the map is
// built: the file's lines, the pairs they give, the messages that wait until
// the duplicates are known. Not part of the public API.

#include "KxLookup.h"

#include <QFile>
#include <QString>
#include <QStringView>
#include <QTextCodec>

// One line of the file as importAVL() reads it.
struct TKxLookup::LookupPair
{
    QString key;
    QString label;
    int line = 0;
};

// A message found while reading, issued once the duplicates are known.
// Within one line the kinds come in this order.
struct TKxLookup::PendingMessage
{
    enum Kind { NoSeparator, WrongKeySize, DuplicateKey };
    int line;
    Kind kind;
    QString key;
    int referenceKeySize = 0;
};

// How the keys came in the file.
enum class TKxLookup::KeyOrder { Ascending, AscendingWithRepeats, Unordered };

// Hands out a file's lines exactly as QTextStream::readLine() does on a file
// opened in text mode with UTF-8 as the codec and byte-order-mark detection
// on: the same 16 KB blocks, decoded by the same codec with its state carried
// from block to block, every carriage return dropped, a line ending at each
// line feed. Lines are views into the decoded text instead of new strings.
class TKxLookup::LineReader
{
public:
    explicit LineReader(QFile &file)
        : file(file)
    {
    }

    //! Nothing is left to decode, and the file is at its end.
    bool atEnd() const { return offset == text.size() && file.atEnd(); }

    /*! The next line, valid until the following call. False when nothing at
     * all is left, which QTextStream reports as a null line. */
    bool next(QStringView &line)
    {
        int from = offset;
        for (;;) {
            const int end = text.indexOf(QLatin1Char('\n'), from);
            if (end >= 0) {
                line = QStringView(text).mid(offset, end - offset);
                offset = end + 1;
                return true;
            }
            const int searched = text.size() - offset;
            if (!fill())
                break;
            from = offset + searched;
        }
        if (offset == text.size())
            return false;
        line = QStringView(text).mid(offset);
        offset = text.size();
        return true;
    }

private:
    // Decodes one more block behind what is left of the text.
    bool fill()
    {
        char block[16384];
        const qint64 size = file.read(block, sizeof block);
        if (size <= 0)
            return false;
        if (!codec) {
            codec = QTextCodec::codecForUtfText(QByteArray::fromRawData(block, int(size)),
                                                QTextCodec::codecForName("UTF-8"));
        }
        QString decoded = codec->toUnicode(block, int(size), &state);
        decoded.remove(QLatin1Char('\r'));
        text.remove(0, offset);
        offset = 0;
        text += decoded;
        return true;
    }

    QFile &file;
    QTextCodec *codec = nullptr;
    QTextCodec::ConverterState state;
    QString text; // decoded, from offset on not yet handed out
    int offset = 0;
};

#endif // KXLOOKUPIMPORT_P_H

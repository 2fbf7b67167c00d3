#include "KxLookup.h"
#include "KxLookupImport_p.h"

#include "KxConstants.h"
#include "KxErrorManager.h"
#include "UtilFiles.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextCodec>
#include <QTextStream>

#include <algorithm>
#include <deque>
#include <limits>

namespace {

// Counters read from a file never wrap: they stop at the largest int.
void increment(int &counter)
{
    if (counter < std::numeric_limits<int>::max())
        ++counter;
}

// Files without a byte-order mark are read as UTF-8 whatever the locale; a
// byte-order mark (UTF-8, UTF-16, UTF-32) still selects its own encoding.
void prepareStream(QTextStream &stream)
{
    stream.setCodec("UTF-8");
    stream.setAutoDetectUnicode(true);
}

// Whether "^\s*" can remove anything from \a label. Without Unicode
// properties the pattern's \s matches only characters below 256, never a
// printable ASCII one; the expression itself decides every other case.
bool mayStartWithSpace(const QString &label)
{
    if (label.isEmpty())
        return false;
    const ushort first = label.at(0).unicode();
    return first <= 0x20 || (first >= 0x7F && first <= 0xFF);
}

// QString's own order (UTF-16 code units as unsigned numbers, then length),
// inline: the import compares every key with the one before it.
int compareKeys(const QString &a, const QString &b)
{
    const ushort *x = reinterpret_cast<const ushort *>(a.constData());
    const ushort *y = reinterpret_cast<const ushort *>(b.constData());
    const int common = std::min(a.size(), b.size());
    for (int i = 0; i < common; ++i) {
        if (x[i] != y[i])
            return x[i] < y[i] ? -1 : 1;
    }
    return a.size() - b.size();
}

// The first eight UTF-16 code units of a key, zero-padded, as two numbers
// that order as the keys do wherever they differ.
struct KeyPrefix
{
    quint64 high = 0;
    quint64 low = 0;

    explicit KeyPrefix(const QString &key)
    {
        const ushort *units = reinterpret_cast<const ushort *>(key.constData());
        const int size = key.size();
        for (int i = 0; i < 8; ++i) {
            const quint64 unit = i < size ? units[i] : 0;
            (i < 4 ? high : low) |= unit << (16 * (3 - i % 4));
        }
    }
};

// Sorts pairs by key, then line. Pairs are compared through a prefix held
// next to a pointer, so most comparisons read no key text; the pairs are
// then moved into that order (moving a QString copies no text).
template<class Pair>
void sortByKeyThenLine(std::deque<Pair> &pairs)
{
    struct Item
    {
        KeyPrefix prefix;
        Pair *pair;
    };
    std::vector<Item> items;
    items.reserve(pairs.size());
    for (Pair &pair : pairs)
        items.push_back({KeyPrefix(pair.key), &pair});
    std::sort(items.begin(), items.end(), [](const Item &a, const Item &b) {
        if (a.prefix.high != b.prefix.high)
            return a.prefix.high < b.prefix.high;
        if (a.prefix.low != b.prefix.low)
            return a.prefix.low < b.prefix.low;
        const int order = compareKeys(a.pair->key, b.pair->key);
        return order < 0 || (order == 0 && a.pair->line < b.pair->line);
    });
    std::deque<Pair> sorted;
    for (const Item &item : items)
        sorted.push_back(std::move(*item.pair));
    pairs.swap(sorted);
}

// Adds \a lines to \a counter as that many increments would.
void addLines(int &counter, int lines)
{
    counter = counter > std::numeric_limits<int>::max() - lines ? std::numeric_limits<int>::max() : counter + lines;
}

// Empty labels, counted apart: a null and an empty text are equal keys, and
// the frequency map keeps the one entered first in file order.
class EmptyLabels
{
public:
    template<class Pair>
    void add(const Pair &pair)
    {
        if (lines == 0 || pair.line < firstLine) {
            firstLine = pair.line;
            firstIsNull = pair.label.isNull();
        }
        increment(lines);
    }
    void count(QMap<QString, int> &frequencies) const
    {
        if (lines == 0)
            return;
        addLines(frequencies[firstIsNull ? QString() : QString(QLatin1String(""))], lines);
    }

private:
    int lines = 0;
    int firstLine = 0;
    bool firstIsNull = false;
};

} // namespace

TKxLookup::TKxLookup() = default;

TKxLookup::~TKxLookup()
{
    closeReader();
}

QChar TKxLookup::separatorChar(int code)
{
    switch (code) {
    case 1:
        return QLatin1Char('\t');
    case 2:
        return QLatin1Char(',');
    case 3:
        return QLatin1Char(';');
    case 4:
        return QLatin1Char(':');
    default:
        return QLatin1Char(' ');
    }
}

QString TKxLookup::separatorText(int code)
{
    switch (code) {
    case 1:
        return TABCHR;
    case 2:
        return COMMACHR;
    case 3:
        return SEMICOLONCHR;
    case 4:
        return COLONCHR;
    default:
        return SPACECHR;
    }
}

void TKxLookup::setCurrentLine(const QString &value)
{
    currentLine = value;
    currentLineLength = value.length();
}

void TKxLookup::updateFileName(QString fileName)
{
    ffileName = fileName;
}

bool TKxLookup::consistencyCheck(econsistencyCheck mode, TKxLabelFrequencies &frequencies, QStringList &errors)
{
    consistency = mode;
    return importAVL(frequencies, errors);
}

void TKxLookup::closeReader()
{
    readerStream.reset();
    readerFile.reset();
}

void TKxLookup::nextLine(const QString &line)
{
    setCurrentLine(line);
    increment(lineNumber);
}

bool TKxLookup::openLookup()
{
    closeReader();
    if (!UtilFiles::FileExists(ffileName))
        return false;
    fileSize = QFileInfo(ffileName).size();
    currentLineLength = 0;
    endOfFile = false;
    // A fresh walk with readLookup() counts lines from the start again.
    lineNumber = 0;
    return true;
}

bool TKxLookup::readLookup()
{
    if (endOfFile)
        return false;
    if (!readerStream) {
        readerFile.reset(new QFile(ffileName));
        if (!readerFile->open(QIODevice::ReadOnly | QIODevice::Text)) {
            readerFile.reset();
            endOfFile = true;
            return false;
        }
        readerStream.reset(new QTextStream(readerFile.get()));
        prepareStream(*readerStream);
    }
    if (readerStream->atEnd()) {
        endOfFile = true;
        closeReader();
        return false;
    }
    nextLine(readerStream->readLine());
    return true;
}

bool TKxLookup::importAVL(TKxLabelFrequencies &frequencies, QStringList &errors)
{
    if (!openLookup()) {
        messageText = MLDBGetMessage(QStringLiteral("Workspace.LoadDefinition.InputDataFile"),
                                     QStringLiteral("Input data file [%1] was not found"), ffileName);
        errorFlag = 1;
        return false;
    }

    lookupMap.clear();
    lineNumber = 0;
    currentLine.clear();

    QFile file(ffileName);
    if (!file.open(QIODevice::ReadOnly))
        return true; // exists but unreadable: nothing to read, like an empty file

    // The whole file is read first and the map built afterwards in key order:
    // adding before the first key of an ordered map costs far less than
    // searching it once per line. Messages wait until the duplicates are known
    // and are then issued in file order, with the numbers of their own lines.
    std::deque<LookupPair> pairs;
    std::vector<PendingMessage> pending;
    LineReader reader(file);
    const KeyOrder order = readPairs(reader, pairs, pending);
    file.close();

    // Pairs in file order are already sorted by key and line when the keys never go down.
    if (order == KeyOrder::Unordered)
        sortByKeyThenLine(pairs);
    enterPairs(pairs, order == KeyOrder::Ascending, frequencies, pending);
    issuePending(errors, pending);
    return true;
}

TKxLookup::KeyOrder TKxLookup::readPairs(LineReader &reader, std::deque<LookupPair> &pairs,
                                         std::vector<PendingMessage> &pending)
{
    const bool fileChecks = fileChecksOn();
    int referenceKeySize = 0;
    KeyOrder order = KeyOrder::Ascending;
    QStringView line;

    const LookupPair *previous = nullptr; // deque elements stay in place as the deque grows
    while (!reader.atEnd()) {
        const bool gotLine = reader.next(line);
        increment(lineNumber);

        pairs.emplace_back();
        LookupPair &pair = pairs.back();
        pair.line = lineNumber;
        if (!gotLine || !splitLine(line, pair.key, pair.label)) {
            // No separator: the previous pair (or the one left from before) repeats.
            pair.key = previous ? previous->key : currentKey;
            pair.label = previous ? previous->label : currentLabel;
            if (fileChecks)
                pending.push_back({lineNumber, PendingMessage::NoSeparator, QString()});
        }

        const int keySize = pair.key.length();
        if (lineNumber == 1)
            referenceKeySize = keySize;
        else if (fileChecks && keySize != referenceKeySize)
            pending.push_back({lineNumber, PendingMessage::WrongKeySize, pair.key, referenceKeySize});

        if (order != KeyOrder::Unordered && previous) {
            const int step = compareKeys(previous->key, pair.key);
            if (step > 0)
                order = KeyOrder::Unordered;
            else if (step == 0)
                order = KeyOrder::AscendingWithRepeats;
        }
        previous = &pair;

        if (reader.atEnd()) {
            // The current line and pair end as those of the last line, as when walking line by line.
            setCurrentLine(gotLine ? line.toString() : QString());
            currentKey = pair.key;
            currentLabel = pair.label;
        }
    }
    return order;
}

void TKxLookup::enterPairs(std::deque<LookupPair> &pairs, bool noDuplicates, TKxLabelFrequencies &frequencies,
                           std::vector<PendingMessage> &pending)
{
    const bool fileChecks = fileChecksOn();
    const bool labelCount = labelCountOn();
    // Pairs are sorted by key, then line: of equal keys the first in the file
    // wins, and the later lines count for nothing.
    const auto isRepeat = [&pairs, noDuplicates](std::deque<LookupPair>::const_iterator pair) {
        return !noDuplicates && pair != pairs.cbegin() && std::prev(pair)->key == pair->key;
    };
    if (fileChecks && !noDuplicates) {
        for (auto pair = pairs.cbegin(); pair != pairs.cend(); ++pair) {
            if (isRepeat(pair))
                pending.push_back({pair->line, PendingMessage::DuplicateKey, pair->key});
        }
    }
    // The map is filled from its largest key down: a key placed before the
    // current first one needs no search (QMap keeps its first node at hand).
    EmptyLabels emptyLabels;
    auto first = lookupMap.begin();
    for (auto pair = pairs.end(); pair != pairs.begin();) {
        --pair;
        if (isRepeat(pair))
            continue;
        if (labelCount) {
            // Every entered line raises the count of its label.
            if (pair->label.isEmpty())
                emptyLabels.add(*pair);
            else
                increment(frequencies[pair->label]);
        }
        first = lookupMap.insert(first, pair->key, QString());
        first.value().swap(pair->label);
        // Let go of the key while it is in the cache, not when the pairs go.
        pair->key = QString();
    }
    emptyLabels.count(frequencies);
}

void TKxLookup::issuePending(QStringList &errors, std::vector<PendingMessage> &pending)
{
    if (pending.empty())
        return;
    // Duplicates were found in key order; every message goes out in file order.
    const auto fileOrder = [](const PendingMessage &a, const PendingMessage &b) {
        return a.line < b.line || (a.line == b.line && a.kind < b.kind);
    };
    if (!std::is_sorted(pending.begin(), pending.end(), fileOrder))
        std::sort(pending.begin(), pending.end(), fileOrder);
    const int linesRead = lineNumber;
    const QString separatorChar = separatorText(separator);
    for (const PendingMessage &message : pending) {
        lineNumber = message.line; // each message carries the number of its own line
        switch (message.kind) {
        case PendingMessage::NoSeparator:
            issueErrorMessage(errors, MLDBGetMessage(QStringLiteral("KxLookup.splitKeyValueAVL.noSeparator"),
                                                     QStringLiteral("Separator [%1] does not exist"), separatorChar));
            break;
        case PendingMessage::WrongKeySize:
            issueErrorMessage(errors,
                              MLDBGetMessage(QStringLiteral("KxLookup.importAVL.wrongKeySize"),
                                             QStringLiteral("Key [%1] has a different key size [%2] from the first record [%3]"),
                                             message.key, QString::number(message.key.length()),
                                             QString::number(message.referenceKeySize)));
            break;
        case PendingMessage::DuplicateKey:
            issueErrorMessage(errors, MLDBGetMessage(QStringLiteral("KxLookup.importAVL.duplicateKey"),
                                                     QStringLiteral("Key [%1] already exists"), message.key));
            break;
        }
    }
    lineNumber = linesRead;
}

bool TKxLookup::splitLine(QStringView line, QString &key, QString &label) const
{
    const qsizetype at = line.indexOf(separatorChar(separator));
    if (at < 1)
        return false;
    key = line.left(at).toString();
    // An empty label is an empty text, never a null one.
    const QStringView rest = line.mid(at + 1);
    label = rest.isEmpty() ? QString(QLatin1String("")) : rest.toString();
    // Several blanks after the key count as one separator, for code 0 only.
    if (separator == 0 && mayStartWithSpace(label)) {
        static const QRegularExpression leadingSpace(QStringLiteral("^\\s*"));
        label.remove(leadingSpace);
    }
    return true;
}

void TKxLookup::splitKeyValueAVL(QStringList &errors)
{
    // No separator, or nothing before it: the previous key and label stay.
    if (!splitLine(currentLine, currentKey, currentLabel) && fileChecksOn())
        issueErrorMessage(errors, MLDBGetMessage(QStringLiteral("KxLookup.splitKeyValueAVL.noSeparator"),
                                                 QStringLiteral("Separator [%1] does not exist"),
                                                 separatorText(separator)));
}

void TKxLookup::issueErrorMessage(QStringList &errors, QString message)
{
    const int before = messageCount;
    increment(messageCount);
    if (before >= maxMessages && !capped) {
        capped = true;
        message = MLDBGetMessage(QStringLiteral("System.Common.MaxMessages"),
                                 QStringLiteral("Too many error messages [%1], only the first [%2] will be shown"),
                                 QString::number(messageCount), QString::number(maxMessages));
    }
    errors.append(QString::number(lineNumber) + UNDERSCORE + message);
}

ReportLookup::ReportLookup()
    : titleReport(QCoreApplication::translate("ReportLookup", "Kelvo Lookup Checking"))
    , idLabel(QCoreApplication::translate("ReportLookup", "Lookup Identification"))
    , labelLabel(QCoreApplication::translate("ReportLookup", "Lookup Label"))
    , dataFileLabel(QCoreApplication::translate("ReportLookup", "Lookup File"))
{
}

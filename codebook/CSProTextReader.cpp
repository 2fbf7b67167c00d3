// CSPro's classic text dictionary (CSPro 7.7 and earlier), read as CSPro
// itself reads it: CSpecFile::GetLine splits the lines and
// DictionaryPre80SpecFileConverter (cspro/zDictO/Pre80SpecFile.cpp, CSPro
// 8.0.1) gives the grammar of sections and keys; StdioFileUnicode chooses
// the encoding.
//
// The text is decoded once; the lines are walked by index as views into it,
// and commands are compared in place, so a line costs no allocation beyond
// the texts the codebook keeps.

#include "CodebookReaders_p.h"
#include "CSProLayout_p.h"

#include <QHash>
#include <QStringView>
#include <QTextCodec>

#include <algorithm>
#include <cstring>
#include <map>
#include <utility>

namespace KxCodebook {
namespace detail {

namespace {

// --- Decoding -------------------------------------------------------------

// Whether \a n bytes at \a p are well-formed UTF-8 (Unicode 3.9, table 3-7).
bool isValidUtf8(const unsigned char *p, qsizetype n)
{
    qsizetype i = 0;
    while (i < n) {
        // Eight ASCII bytes at a time.
        if (i + 8 <= n) {
            quint64 chunk;
            std::memcpy(&chunk, p + i, 8);
            if ((chunk & Q_UINT64_C(0x8080808080808080)) == 0) {
                i += 8;
                continue;
            }
        }
        const unsigned char c = p[i];
        if (c < 0x80) {
            ++i;
            continue;
        }
        int extra = 0;
        unsigned char lo = 0x80, hi = 0xBF;
        if (c >= 0xC2 && c <= 0xDF) {
            extra = 1;
        } else if (c >= 0xE0 && c <= 0xEF) {
            extra = 2;
            if (c == 0xE0)
                lo = 0xA0;
            else if (c == 0xED)
                hi = 0x9F;
        } else if (c >= 0xF0 && c <= 0xF4) {
            extra = 3;
            if (c == 0xF0)
                lo = 0x90;
            else if (c == 0xF4)
                hi = 0x8F;
        } else {
            return false;
        }
        if (i + extra >= n)
            return false;
        if (p[i + 1] < lo || p[i + 1] > hi)
            return false;
        for (int k = 2; k <= extra; ++k) {
            if (p[i + k] < 0x80 || p[i + k] > 0xBF)
                return false;
        }
        i += extra + 1;
    }
    return true;
}

// The text of \a data, as StdioFileUnicode chooses the encoding (a BOM), and
// as careful readers do without one: UTF-8 when the bytes are valid UTF-8,
// otherwise Windows-1252.
QString decode(const QByteArray &data, QString *encoding)
{
    const auto *p = reinterpret_cast<const unsigned char *>(data.constData());
    const qsizetype n = data.size();
    if (n >= 3 && p[0] == 0xEF && p[1] == 0xBB && p[2] == 0xBF) {
        *encoding = QStringLiteral("UTF-8");
        return QString::fromUtf8(data.constData() + 3, int(n - 3));
    }
    if (n >= 2 && p[0] == 0xFF && p[1] == 0xFE) {
        *encoding = QStringLiteral("UTF-16LE");
        const qsizetype units = (n - 2) / 2;  // an odd last byte is no character
        QString text(int(units), Qt::Uninitialized);
        QChar *out = text.data();
        for (qsizetype i = 0; i < units; ++i)
            out[i] = QChar(ushort(p[2 + 2 * i] | (p[3 + 2 * i] << 8)));
        return text;
    }
    if (isValidUtf8(p, n)) {
        *encoding = QStringLiteral("UTF-8");
        return QString::fromUtf8(data.constData(), int(n));  // not fromUtf8(QByteArray): that one stops at a NUL
    }
    if (QTextCodec *codec = QTextCodec::codecForName("windows-1252")) {
        *encoding = QStringLiteral("windows-1252");
        return codec->toUnicode(data);
    }
    *encoding = QStringLiteral("ISO-8859-1");  // a Qt without its codecs
    return QString::fromLatin1(data);
}

// --- Views ----------------------------------------------------------------

// CString::Trim's white space: ASCII only.
inline bool isWhite(QChar c)
{
    const ushort u = c.unicode();
    return u == ' ' || (u >= '\t' && u <= '\r');
}

QStringView trimmedLeft(QStringView s)
{
    qsizetype i = 0;
    while (i < s.size() && isWhite(s.at(i)))
        ++i;
    return s.mid(i);
}

QStringView trimmedRight(QStringView s)
{
    qsizetype n = s.size();
    while (n > 0 && isWhite(s.at(n - 1)))
        --n;
    return s.left(n);
}

QStringView trimmed(QStringView s)
{
    return trimmedRight(trimmedLeft(s));
}

// Copies only when something is cut.
QString rightTrimmed(const QString &s)
{
    int n = s.size();
    while (n > 0 && isWhite(s.at(n - 1)))
        --n;
    return n == s.size() ? s : s.left(n);
}

QString trimmedString(const QString &s)
{
    const QStringView t = trimmed(s);
    return t.size() == s.size() ? s : t.toString();
}

qsizetype indexOf(QStringView s, QChar c, qsizetype from = 0)
{
    for (qsizetype i = from; i < s.size(); ++i) {
        if (s.at(i) == c)
            return i;
    }
    return -1;
}

// Whether \a s is the ASCII literal \a lit, ignoring ASCII case; no allocation.
template <qsizetype N>
bool is(QStringView s, const char (&lit)[N])
{
    if (s.size() != N - 1)
        return false;
    for (qsizetype i = 0; i < N - 1; ++i) {
        ushort a = s.at(i).unicode();
        ushort b = static_cast<unsigned char>(lit[i]);
        if (a >= 'A' && a <= 'Z')
            a += 'a' - 'A';
        if (b >= 'A' && b <= 'Z')
            b += 'a' - 'A';
        if (a != b)
            return false;
    }
    return true;
}

// CSPro's ArgumentIsYes: only the first letter is tested.
bool isYes(QStringView s)
{
    return !s.isEmpty() && (s.at(0) == QLatin1Char('Y') || s.at(0) == QLatin1Char('y'));
}

// A text for a message, cut short when a hostile file makes it long.
QString shown(QStringView s)
{
    constexpr qsizetype Most = 40;
    if (s.size() <= Most)
        return s.toString();
    return s.left(Most).toString() + QChar(0x2026);
}

// '|' separates the languages (LabelSet as Pre80SpecFile::GetLabelSet fills
// it); empty segments stay empty strings.
Labels labelsOf(QStringView s)
{
    Labels labels;
    qsizetype from = 0;
    for (;;) {
        const qsizetype bar = indexOf(s, QLatin1Char('|'), from);
        if (bar < 0) {
            labels.texts.append(s.mid(from).toString());
            return labels;
        }
        labels.texts.append(s.mid(from, bar - from).toString());
        from = bar + 1;
    }
}

// The first token of \a s as CIMSAString::GetToken() with its default
// separators (space and comma) returns it: quotes removed.
QStringView firstToken(QStringView s)
{
    qsizetype i = 0;
    const qsizetype n = s.size();
    while (i < n && (s.at(i) == QLatin1Char(' ') || s.at(i) == QLatin1Char(',')))
        ++i;
    if (i == n)
        return QStringView();
    const QChar c = s.at(i);
    if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
        const qsizetype close = indexOf(s, c, i + 1);
        return s.mid(i + 1, (close < 0 ? n : close) - i - 1);
    }
    const qsizetype from = i;
    while (i < n && s.at(i) != QLatin1Char(' ') && s.at(i) != QLatin1Char(','))
        ++i;
    return s.mid(from, i - from);
}

// _ttoi: leading blanks, a sign, then digits up to the first other character.
qint64 leadingInteger(QStringView s)
{
    qsizetype i = 0;
    while (i < s.size() && isWhite(s.at(i)))
        ++i;
    bool negative = false;
    if (i < s.size() && (s.at(i) == QLatin1Char('-') || s.at(i) == QLatin1Char('+')))
        negative = s.at(i++) == QLatin1Char('-');
    qint64 value = 0;
    for (; i < s.size() && s.at(i) >= QLatin1Char('0') && s.at(i) <= QLatin1Char('9'); ++i) {
        value = value * 10 + (s.at(i).unicode() - '0');
        if (value > MaxStart)  // far beyond any occurrence; stop before overflow
            break;
    }
    return negative ? -value : value;
}

Special specialOf(QStringView s)
{
    if (is(s, "MISSING"))
        return Special::Missing;
    if (is(s, "NOTAPPL"))
        return Special::NotAppl;
    if (is(s, "DEFAULT"))
        return Special::Default;
    if (is(s, "REFUSED"))
        return Special::Refused;
    return Special::None;
}

// Note= lines, as ProcessBase adds them: a literal \r\n is a newline, a part
// not ending in a newline is followed by a space, a leading '~' is a space.
void appendNote(QString *note, QStringView argument)
{
    if (argument.isEmpty())
        return;
    QString part = argument.toString();
    part.replace(QLatin1String("\\r\\n"), QLatin1String("\n"));
    if (!part.endsWith(QLatin1Char('\n')))
        part.append(QLatin1Char(' '));
    if (part.startsWith(QLatin1Char('~')))
        part[0] = QLatin1Char(' ');
    note->append(part);
}

// The separators the note rules add at its end are not part of the note.
void finishNote(QString *note)
{
    int n = note->size();
    while (n > 0 && isWhite(note->at(n - 1)))
        --n;
    note->truncate(n);
}

// The <pairs> of a value line cut into tokens as ReadValues does with
// CIMSAString::GetToken (strtoken): tokens separated by spaces, a quoted token
// ('…' or "…") keeps its spaces, a token followed at once by ':' is a range's
// from and the next token its to. Codes are kept as written here and settled
// when the item ends (Parser::closeItem).
QVector<Code> codesOf(QStringView pairs)
{
    QVector<Code> codes;
    const qsizetype n = pairs.size();
    qsizetype i = 0;
    auto isQuote = [](QChar ch) { return ch == QLatin1Char('\'') || ch == QLatin1Char('"'); };
    while (i < n) {
        // The from: separators are ' ' and ':'.
        while (i < n && (pairs.at(i) == QLatin1Char(' ') || pairs.at(i) == QLatin1Char(':')))
            ++i;
        if (i >= n)
            break;
        QStringView from;
        bool range = false;
        if (isQuote(pairs.at(i))) {
            const qsizetype close = indexOf(pairs, pairs.at(i), i + 1);
            const qsizetype end = close < 0 ? n : close;
            from = pairs.mid(i + 1, end - i - 1);
            i = close < 0 ? n : close + 1;
            // strtoken leaves a ':' after a closing quote in the text, which
            // makes CSPro's to ":'B'"; the ':' is taken as the range mark here.
            if (i < n && pairs.at(i) == QLatin1Char(':')) {
                range = true;
                ++i;
            }
        } else {
            const qsizetype start = i;
            while (i < n && pairs.at(i) != QLatin1Char(' ') && pairs.at(i) != QLatin1Char(':'))
                ++i;
            from = pairs.mid(start, i - start);
            if (i < n) {
                range = pairs.at(i) == QLatin1Char(':');
                ++i;
            }
        }
        QStringView to;
        if (range) {
            // The to: the only separator is ' '.
            while (i < n && pairs.at(i) == QLatin1Char(' '))
                ++i;
            if (i < n && isQuote(pairs.at(i))) {
                const qsizetype close = indexOf(pairs, pairs.at(i), i + 1);
                const qsizetype end = close < 0 ? n : close;
                to = pairs.mid(i + 1, end - i - 1);
                i = close < 0 ? n : close + 1;
            } else if (i < n) {
                const qsizetype start = i;
                while (i < n && pairs.at(i) != QLatin1Char(' '))
                    ++i;
                to = pairs.mid(start, i - start);
                if (i < n)
                    ++i;
            }
        }
        // An empty from ('') is no pair, as in ReadValues; an empty to makes
        // a single code.
        if (from.isEmpty())
            continue;
        Code code;
        code.from = from.toString();
        if (!to.isEmpty()) {
            code.to = to.toString();
            code.isRange = true;
        }
        codes.append(std::move(code));
    }
    return codes;
}

// --- Lines ----------------------------------------------------------------

struct Line
{
    QStringView command;   // right-trimmed; a section header keeps its brackets
    QStringView argument;  // left-trimmed; empty without '='
    int number = 0;        // 1-based physical line where the logical line starts
    bool inText = true;    // the views point into the decoded text (not a joined continuation)
};

// CSpecFile::GetLine over the decoded text: physical lines (LF or CRLF); a
// raw line ending in '&' (two characters or more) continues on the next one;
// the joined line is trimmed; empty lines and lines starting with '.' are
// skipped; the line is split at its first '='.
class LineReader
{
public:
    explicit LineReader(const QString &text) : m_text(text) {}

    bool next(Line *line)
    {
        while (m_pos < m_text.size()) {
            const int first = m_physical + 1;
            QStringView logical = takeRaw();
            if (continues(logical)) {
                m_joined.clear();
                bool complete = true;
                while (continues(logical)) {
                    m_joined.append(logical.data(), int(logical.size() - 1));
                    if (m_pos >= m_text.size()) {
                        complete = false;  // CSPro drops a continuation cut by the end of the file
                        break;
                    }
                    logical = takeRaw();
                }
                if (!complete)
                    return false;
                m_joined.append(logical.data(), int(logical.size()));
                logical = QStringView(m_joined);
                line->inText = false;
            } else {
                line->inText = true;
            }
            logical = trimmed(logical);
            if (logical.isEmpty() || logical.at(0) == QLatin1Char('.'))
                continue;
            const qsizetype equals = indexOf(logical, QLatin1Char('='));
            if (equals < 0) {
                line->command = logical;
                line->argument = QStringView();
            } else {
                line->command = trimmedRight(logical.left(equals));
                line->argument = trimmedLeft(logical.mid(equals + 1));
            }
            line->number = first;
            return true;
        }
        return false;
    }

private:
    static bool continues(QStringView raw)
    {
        return raw.size() >= 2 && raw.back() == QLatin1Char('&');
    }

    QStringView takeRaw()
    {
        const int start = m_pos;
        const int newline = m_text.indexOf(QLatin1Char('\n'), start);
        int end = newline < 0 ? m_text.size() : newline;
        m_pos = newline < 0 ? m_text.size() : newline + 1;
        ++m_physical;
        if (end > start && m_text.at(end - 1) == QLatin1Char('\r'))
            --end;
        return QStringView(m_text.constData() + start, end - start);
    }

    const QString &m_text;
    int m_pos = 0;
    int m_physical = 0;
    QString m_joined;
};

// --- The grammar ----------------------------------------------------------

// Value lines repeat (yes/no, one scale on many items, "Not reported"): the
// codes or labels made from a text already seen are shared with it (Qt's
// implicit sharing) rather than made again. The keys are views into the
// decoded text, so a lookup allocates nothing; a memo that finds little stops
// looking, and it holds at most MaxEntries texts.
template <typename T>
class Memo
{
public:
    template <typename Make>
    T get(QStringView text, bool stable, Make make)
    {
        if (!m_on || !stable)
            return make(text);
        const auto found = m_seen.constFind(text);
        if (found != m_seen.constEnd()) {
            ++m_hits;
            return *found;
        }
        T made = make(text);
        if (++m_misses >= 4096 && m_hits < m_misses / 2) {
            m_on = false;  // mostly new texts: looking them up costs more than it saves
            m_seen = QHash<QStringView, T>();
        } else if (m_seen.size() < MaxEntries) {
            m_seen.insert(text, made);
        }
        return made;
    }

private:
    static constexpr int MaxEntries = 1 << 16;
    QHash<QStringView, T> m_seen;
    bool m_on = true;
    qint64 m_hits = 0;
    qint64 m_misses = 0;
};

class Parser
{
public:
    explicit Parser(const QString &text) : m_lines(text) {}

    bool run();

    Error error;
    QString name;
    QString version;
    Labels labels;
    QVector<Language> languages;
    int recordTypeStart = 0;
    int recordTypeLength = 0;
    bool relative = false;
    QVector<Level> levels;
    QVector<Record> records;
    QVector<Variable> variables;

private:
    enum class State { Dictionary, Languages, Level, Record, Item, ValueSet, Value, Relation };

    // What an item says that is settled when the item ends.
    struct PendingItem
    {
        bool open = false;
        int line = 0;
        bool hasStart = false;
        bool hasLen = false;
        int decimals = 0;
        bool decimalChar = false;
        bool zeroFill = false;
        bool subitem = false;
        std::map<int, Labels> occurrenceLabels;
    };

    struct PendingRecord
    {
        bool open = false;
        std::map<int, Labels> occurrenceLabels;
    };

    bool section(const Line &line);
    bool key(const Line &line);
    bool dictionaryKey(const Line &line);
    bool recordKey(const Line &line);
    bool itemKey(const Line &line);
    bool valueSetKey(const Line &line);
    bool valueKey(const Line &line);

    bool inLevel() const
    {
        return m_state == State::Level || m_state == State::Record || m_state == State::Item
               || m_state == State::ValueSet || m_state == State::Value;
    }

    bool closeItem();
    void closeRecord();
    bool closeAll()
    {
        if (!closeItem())
            return false;
        closeRecord();
        return true;
    }
    void addValue(const Line &line);
    static void addOccurrenceLabel(std::map<int, Labels> *labels, QStringView argument);
    static QVector<OccurrenceLabel> occurrenceLabels(const std::map<int, Labels> &labels, int maximum);

    bool fail(const QString &message, int line)
    {
        error.kind = Error::Malformed;
        error.message = message;
        error.line = line;
        return false;
    }
    bool unknown(const Line &line)
    {
        return fail(QStringLiteral("Unknown command '%1' on line %2").arg(shown(line.command)).arg(line.number),
                    line.number);
    }
    bool number(const Line &line, qint64 minimum, qint64 maximum, const char *what, int *out);

    Variable &item() { return variables.last(); }
    ValueSet &valueSet() { return variables.last().valueSets.last(); }

    LineReader m_lines;
    State m_state = State::Dictionary;
    bool m_languagesSeen = false;
    bool m_levelSeen = false;
    bool m_idItems = false;   // the items that follow identify the level ([IdItems])
    int m_lastParent = -1;    // the last item that is not a subitem, in the current record or ID items
    PendingItem m_item;
    PendingRecord m_record;
    Memo<QVector<Code>> m_codes;
    Memo<Labels> m_labels;
};

bool Parser::run()
{
    Line line;
    if (!m_lines.next(&line))
        return fail(QStringLiteral("The file is empty: a CSPro dictionary starts with [Dictionary]"), 0);
    if (is(line.command, "[NoEdit]") && !m_lines.next(&line))
        return fail(QStringLiteral("The file has no [Dictionary] section"), 0);
    if (!is(line.command, "[Dictionary]"))
        return fail(QStringLiteral("Line %1 ('%2') is not [Dictionary]: a CSPro text dictionary starts with its "
                                   "[Dictionary] section")
                        .arg(line.number)
                        .arg(shown(line.command)),
                    line.number);
    m_state = State::Dictionary;
    while (m_lines.next(&line)) {
        // A line starting with '=' has an empty command, which no section knows.
        const bool isSection = !line.command.isEmpty() && line.command.at(0) == QLatin1Char('[');
        const bool ok = isSection ? section(line) : key(line);
        if (!ok)
            return false;
    }
    if (!closeAll())
        return false;
    if (languages.isEmpty())
        languages.append(Language());
    return true;
}

bool Parser::section(const Line &line)
{
    const QStringView s = line.command;
    auto misplaced = [&]() {
        return fail(QStringLiteral("Section '%1' on line %2 is out of place").arg(shown(s)).arg(line.number),
                    line.number);
    };
    if (is(s, "[Item]")) {
        if (!inLevel() || (!m_record.open && !m_idItems))
            return misplaced();
        if (!closeItem())
            return false;
        Variable v;
        v.level = levels.size();
        v.isId = !m_record.open;
        if (m_record.open)
            v.record = records.last().name;  // the record's keys come before its items
        variables.append(std::move(v));
        m_item = PendingItem();
        m_item.open = true;
        m_item.line = line.number;
        m_state = State::Item;
        return true;
    }
    if (is(s, "[ValueSet]")) {
        if (m_state != State::Item && m_state != State::ValueSet && m_state != State::Value)
            return misplaced();
        item().valueSets.append(ValueSet());
        m_state = State::ValueSet;
        return true;
    }
    if (is(s, "[Record]")) {
        if (!inLevel())
            return misplaced();
        if (!closeAll())
            return false;
        Record r;
        r.level = levels.size();
        records.append(std::move(r));
        m_record = PendingRecord();
        m_record.open = true;
        m_idItems = false;
        m_lastParent = -1;
        m_state = State::Record;
        return true;
    }
    if (is(s, "[IdItems]")) {
        if (!inLevel())
            return misplaced();
        if (!closeAll())
            return false;
        m_idItems = true;
        m_lastParent = -1;
        m_state = State::Level;
        return true;
    }
    if (is(s, "[Level]")) {
        if (!closeAll())
            return false;
        levels.append(Level());
        m_levelSeen = true;
        m_idItems = false;
        m_lastParent = -1;
        m_state = State::Level;
        return true;
    }
    if (is(s, "[Languages]")) {
        // Read before the levels, once (ReadLanguages).
        if (m_levelSeen || m_languagesSeen)
            return misplaced();
        m_languagesSeen = true;
        m_state = State::Languages;
        return true;
    }
    if (is(s, "[Relation]")) {
        if (!closeAll())
            return false;
        m_idItems = false;
        m_state = State::Relation;
        return true;
    }
    if (is(s, "[Dictionary]") || is(s, "[NoEdit]")) {
        // CSPro's dictionary loop accepts them again.
        if (!closeAll())
            return false;
        m_idItems = false;
        m_state = State::Dictionary;
        return true;
    }
    return unknown(line);
}

bool Parser::key(const Line &line)
{
    const QStringView c = line.command;
    switch (m_state) {
    case State::Dictionary:
        return dictionaryKey(line);
    case State::Languages: {
        Language language;
        language.name = c.toString();
        language.label = line.argument.toString();
        languages.append(std::move(language));
        return true;
    }
    case State::Level:
        if (is(c, "Name"))
            levels.last().name = line.argument.toString();
        else if (is(c, "Label"))
            levels.last().labels = labelsOf(line.argument);
        else if (!is(c, "Note") && !is(c, "Alias"))
            return unknown(line);
        return true;
    case State::Record:
        return recordKey(line);
    case State::Item:
        return itemKey(line);
    case State::ValueSet:
        return valueSetKey(line);
    case State::Value:
        return valueKey(line);
    case State::Relation:
        // Relations are read and left out: the codebook has no place for them yet.
        if (is(c, "Name") || is(c, "Label") || is(c, "Note") || is(c, "Alias") || is(c, "Primary")
            || is(c, "PrimaryLink") || is(c, "Secondary") || is(c, "SecondaryLink"))
            return true;
        return unknown(line);
    }
    return unknown(line);
}

bool Parser::dictionaryKey(const Line &line)
{
    const QStringView c = line.command;
    if (is(c, "Name"))
        name = line.argument.toString();
    else if (is(c, "Label"))
        labels = labelsOf(line.argument);
    else if (is(c, "Version"))
        version = line.argument.toString();
    else if (is(c, "RecordTypeStart"))
        return number(line, 0, MaxStart, "a column number", &recordTypeStart);
    else if (is(c, "RecordTypeLen"))
        return number(line, 0, MaxWidth, "a width (0 to 100000)", &recordTypeLength);
    else if (is(c, "Positions"))
        relative = is(line.argument, "Relative");
    // The dictionary's ZeroFill and DecimalChar are defaults for new items
    // only; notes, aliases and the security blob have no place here.
    else if (!is(c, "ZeroFill") && !is(c, "DecimalChar") && !is(c, "Note") && !is(c, "Alias")
             && !is(c, "SecurityOptions") && !is(c, "ValueSetImages"))
        return unknown(line);
    return true;
}

bool Parser::recordKey(const Line &line)
{
    const QStringView c = line.command;
    Record &r = records.last();
    if (is(c, "Name"))
        r.name = line.argument.toString();
    else if (is(c, "Label"))
        r.labels = labelsOf(line.argument);
    else if (is(c, "RecordTypeValue"))
        r.typeValue = firstToken(line.argument).toString();
    else if (is(c, "Required"))
        r.required = isYes(line.argument);
    else if (is(c, "MaxRecords"))
        return number(line, 1, MaxRecords, "a number of records (1 to 9999)", &r.maxOccurrences);
    else if (is(c, "OccurrenceLabel") || is(c, "OccurenceLabel"))
        addOccurrenceLabel(&m_record.occurrenceLabels, line.argument);
    // RecordLen= is recomputed, as CSPro does.
    else if (!is(c, "RecordLen") && !is(c, "Note") && !is(c, "Alias"))
        return unknown(line);
    return true;
}

bool Parser::itemKey(const Line &line)
{
    const QStringView c = line.command;
    const QStringView a = line.argument;
    Variable &v = item();
    if (is(c, "Name")) {
        v.name = a.toString();
    } else if (is(c, "Label")) {
        v.labels = labelsOf(a);
    } else if (is(c, "Note")) {
        appendNote(&v.note, a);
    } else if (is(c, "Start")) {
        m_item.hasStart = true;
        return number(line, 1, MaxStart, "a column number", &v.start);
    } else if (is(c, "Len")) {
        m_item.hasLen = true;
        return number(line, 1, MaxWidth, "a width (1 to 100000)", &v.width);
    } else if (is(c, "DataType")) {
        struct Type { const char *name; Storage storage; };
        static const Type types[] = {{"numeric", Storage::Numeric}, {"alpha", Storage::Text},
                                     {"audio", Storage::Binary},    {"document", Storage::Binary},
                                     {"geometry", Storage::Binary}, {"image", Storage::Binary}};
        for (const Type &t : types) {
            if (a.compare(QLatin1String(t.name), Qt::CaseInsensitive) == 0) {
                v.storage = t.storage;
                v.contentType = QLatin1String(t.name);
                return true;
            }
        }
        return fail(QStringLiteral("%1=%2 on line %3 is not a CSPro data type (Numeric, Alpha, Audio, Document, "
                                   "Geometry or Image)")
                        .arg(shown(c), shown(a))
                        .arg(line.number),
                    line.number);
    } else if (is(c, "ItemType")) {
        m_item.subitem = is(a, "SubItem");
    } else if (is(c, "Occurrences")) {
        return number(line, 1, MaxOccurrences, "a number of occurrences (1 to 9999)", &v.occurrences);
    } else if (is(c, "Decimal")) {
        return number(line, 0, MaxDecimals, "a number of decimal places (0 to 15)", &m_item.decimals);
    } else if (is(c, "DecimalChar")) {
        m_item.decimalChar = isYes(a);
    } else if (is(c, "ZeroFill")) {
        m_item.zeroFill = isYes(a);
    } else if (is(c, "OccurrenceLabel") || is(c, "OccurenceLabel")) {
        addOccurrenceLabel(&m_item.occurrenceLabels, a);
    } else if (!is(c, "Alias") && !is(c, "CaptureType") && !is(c, "CaptureDateFormat")) {
        return unknown(line);
    }
    return true;
}

bool Parser::valueSetKey(const Line &line)
{
    const QStringView c = line.command;
    if (is(c, "Value")) {
        addValue(line);
        m_state = State::Value;
    } else if (is(c, "Name")) {
        valueSet().name = line.argument.toString();
    } else if (is(c, "Label")) {
        valueSet().labels = labelsOf(line.argument);
    } else if (is(c, "Link")) {
        valueSet().link = line.argument.toString();
    } else if (!is(c, "Note") && !is(c, "Alias")) {
        return unknown(line);
    }
    return true;
}

// The lines that follow a Value= line, up to the next one (ReadValues).
bool Parser::valueKey(const Line &line)
{
    const QStringView c = line.command;
    if (is(c, "Value")) {
        addValue(line);
        return true;
    }
    Value &value = valueSet().values.last();
    if (is(c, "Name")) {
        // Name=MISSING,Special; a name CSPro does not know is left alone.
        const Special special = specialOf(firstToken(line.argument));
        if (special != Special::None)
            value.special = special;
    } else if (is(c, "Label")) {
        value.labels = labelsOf(line.argument);
    } else if (is(c, "Note")) {
        appendNote(&value.note, line.argument);
    } else if (is(c, "Image")) {
        value.image = line.argument.toString();
    } else if (!is(c, "TextColor")) {
        return unknown(line);
    }
    return true;
}

// Value=<pairs>[;<label>[|<label>...]].
void Parser::addValue(const Line &line)
{
    const QStringView argument = line.argument;
    Value value;
    const qsizetype semicolon = indexOf(argument, QLatin1Char(';'));
    const QStringView pairs = semicolon >= 0 ? argument.left(semicolon) : argument;
    value.codes = m_codes.get(pairs, line.inText, codesOf);
    if (semicolon >= 0)
        value.labels = m_labels.get(argument.mid(semicolon + 1), line.inText, labelsOf);
    valueSet().values.append(std::move(value));
}

// OccurrenceLabel=<n>,<label> or <n>:<label> (ProcessOccurrenceLabel): n is
// read as _ttoi reads it; a later label for the same n replaces the earlier.
void Parser::addOccurrenceLabel(std::map<int, Labels> *labels, QStringView argument)
{
    qsizetype separator = -1;
    for (qsizetype i = 0; i < argument.size(); ++i) {
        if (argument.at(i) == QLatin1Char(',') || argument.at(i) == QLatin1Char(':')) {
            separator = i;
            break;
        }
    }
    if (separator <= 0)
        return;
    const qint64 n = leadingInteger(argument.left(separator));
    if (n < 1 || n > MaxOccurrences)
        return;
    (*labels)[int(n)] = labelsOf(argument.mid(separator + 1));
}

// The labels of occurrences 1..maximum with a primary label that is not
// blank; none when there is a single occurrence (CSPro writes occurrence
// labels only for more than one).
QVector<OccurrenceLabel> Parser::occurrenceLabels(const std::map<int, Labels> &labels, int maximum)
{
    QVector<OccurrenceLabel> result;
    if (maximum <= 1)
        return result;
    for (const auto &entry : labels) {
        if (entry.first > maximum)
            break;
        if (trimmed(entry.second.primary()).isEmpty())
            continue;
        OccurrenceLabel label;
        label.occurrence = entry.first;
        label.labels = entry.second;
        result.append(label);
    }
    return result;
}

// An item ends: what CSPro 8 makes of it when it reads the converted item
// (CDictItem::CreateFromJson and ValueSetFixer).
bool Parser::closeItem()
{
    if (!m_item.open)
        return true;
    m_item.open = false;
    const int index = variables.size() - 1;
    Variable &v = variables[index];
    if (v.contentType.isEmpty())
        v.contentType = QStringLiteral("numeric");
    if (v.storage == Storage::Binary) {
        // Binary items have no columns of text: length 1, no subitems.
        v.width = 1;
        m_lastParent = index;
    } else {
        const QString who = v.name.isEmpty() ? QStringLiteral("The item") : QStringLiteral("Item '%1'").arg(v.name);
        if (!m_item.hasStart)
            return fail(QStringLiteral("%1 of line %2 has no Start=").arg(who).arg(m_item.line), m_item.line);
        if (!m_item.hasLen)
            return fail(QStringLiteral("%1 of line %2 has no Len=").arg(who).arg(m_item.line), m_item.line);
        if (m_item.subitem) {
            v.isSubitem = true;
            if (m_lastParent >= 0)
                v.parent = variables.at(m_lastParent).name;
        } else {
            m_lastParent = index;
        }
    }
    // Decimals, the decimal mark and zero fill are numeric properties; the
    // decimal mark counts only with decimals.
    if (v.storage == Storage::Numeric) {
        v.decimals = m_item.decimals;
        v.decimalMark = m_item.decimalChar && m_item.decimals > 0;
        v.zeroFill = m_item.zeroFill;
    }
    if (!m_item.occurrenceLabels.empty())
        v.occurrenceLabels = occurrenceLabels(m_item.occurrenceLabels, v.occurrences);
    if (!v.note.isEmpty())
        finishNote(&v.note);

    // Codes: numeric ones trimmed, a NOTAPPL code of another length than the
    // item a blank field; alpha ones right-trimmed, as CSPro 8 writes them.
    // Codes shared with other values are copied only when one changes.
    const bool numeric = v.storage == Storage::Numeric;
    for (ValueSet &set : v.valueSets) {
        for (Value &value : set.values) {
            if (!value.note.isEmpty())
                finishNote(&value.note);
            const bool blank = numeric && value.special == Special::NotAppl;
            auto padded = [numeric](const QString &text) {
                return !text.isEmpty() && (isWhite(text.back()) || (numeric && isWhite(text.front())));
            };
            auto unsettled = [&](const Code &code) {
                return (blank && code.from.size() != v.width && !code.from.isEmpty()) || padded(code.from)
                       || padded(code.to);
            };
            const QVector<Code> &codes = value.codes;  // const: no copy of shared codes yet
            if (!std::any_of(codes.cbegin(), codes.cend(), unsettled))
                continue;
            for (Code &code : value.codes) {
                if (blank && code.from.size() != v.width)
                    code.from.clear();
                code.from = numeric ? trimmedString(code.from) : rightTrimmed(code.from);
                code.to = numeric ? trimmedString(code.to) : rightTrimmed(code.to);
            }
        }
    }
    for (const ValueSet &set : qAsConst(v.valueSets))
        v.missing += missingValuesOf(set);
    return true;
}

void Parser::closeRecord()
{
    if (!m_record.open)
        return;
    m_record.open = false;
    Record &r = records.last();
    if (!m_record.occurrenceLabels.empty())
        r.occurrenceLabels = occurrenceLabels(m_record.occurrenceLabels, r.maxOccurrences);
}

bool Parser::number(const Line &line, qint64 minimum, qint64 maximum, const char *what, int *out)
{
    const QStringView s = line.argument;
    qsizetype i = 0;
    bool negative = false;
    if (i < s.size() && (s.at(i) == QLatin1Char('-') || s.at(i) == QLatin1Char('+')))
        negative = s.at(i++) == QLatin1Char('-');
    bool ok = i < s.size();
    qint64 value = 0;
    for (; ok && i < s.size(); ++i) {
        const ushort d = s.at(i).unicode();
        if (d < '0' || d > '9' || value > MaxStart)
            ok = false;
        else
            value = value * 10 + (d - '0');
    }
    if (negative)
        value = -value;
    if (!ok || value < minimum || value > maximum)
        return fail(QStringLiteral("%1=%2 on line %3 is not %4")
                        .arg(shown(line.command), shown(s))
                        .arg(line.number)
                        .arg(QLatin1String(what)),
                    line.number);
    *out = int(value);
    return true;
}

// Each item took the missing values of its own value sets when it ended; a
// variable that received linked values takes them again, in value-set order.
// The linked values are shared, not copied, and so are their missing values
// where a variable has no others; the copies made otherwise are bounded by
// the size of the text, so that a few lines linking a large set many times
// cannot make a codebook out of proportion to the file.
bool addLinkedMissingValues(QVector<Variable> *variables, qint64 textSize, Error *error)
{
    QHash<QString, QVector<MissingValue>> byLink;
    qint64 budget = textSize / 2 + 65536;
    for (Variable &v : *variables) {
        if (std::none_of(v.valueSets.cbegin(), v.valueSets.cend(), [](const ValueSet &set) { return set.linkFilled; }))
            continue;
        v.missing.clear();
        for (const ValueSet &set : qAsConst(v.valueSets)) {
            QVector<MissingValue> part;
            if (set.linkFilled) {
                auto found = byLink.constFind(set.link);
                if (found == byLink.constEnd())
                    found = byLink.insert(set.link, missingValuesOf(set));
                part = *found;
            } else {
                part = missingValuesOf(set);
            }
            if (v.missing.isEmpty()) {
                v.missing = part;  // shared
                continue;
            }
            budget -= part.size();
            if (budget < 0) {
                error->kind = Error::LimitReached;
                error->message = QStringLiteral("The linked value sets repeat more missing values than a dictionary "
                                                "of %1 characters can declare").arg(textSize);
                return false;
            }
            v.missing += part;
        }
    }
    return true;
}

} // namespace

Codebook readCSProText(const QByteArray &data, const QString &fileName, Error *error)
{
    *error = Error();
    QString encoding;
    const QString text = decode(data, &encoding);

    Parser parser(text);
    if (!parser.run()) {
        *error = parser.error;
        return Codebook();
    }

    fillLinkedValueSets(&parser.variables);
    if (!addLinkedMissingValues(&parser.variables, text.size(), error))
        return Codebook();
    computeRecordLengths(&parser.records, parser.variables, parser.recordTypeStart, parser.recordTypeLength);

    Codebook book;
    book.setFileName(fileName);
    book.setFormat(Format::CSProText);
    book.setFormatVersion(parser.version);
    book.setEncoding(encoding);
    book.setName(parser.name);
    book.setLabels(parser.labels);
    book.setLanguages(parser.languages);
    book.setRecordType(parser.recordTypeStart, parser.recordTypeLength);
    book.setRelativePositions(parser.relative);
    book.setLevels(parser.levels);
    book.setRecords(parser.records);
    book.setVariables(parser.variables);
    return book;
}

} // namespace detail
} // namespace KxCodebook

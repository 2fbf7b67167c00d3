#include "KxCodebookDdi.h"

#include "CSProLayout_p.h"
#include "ChunkBuffer_p.h"

#include <QBuffer>
#include <QFileInfo>
#include <QHash>
#include <QMap>
#include <QSet>
#include <QVarLengthArray>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <vector>

/* What goes where. IDs are generated, never taken from names: F1 for the
 * file, R1... for records, VG1... for the records' groups of variables,
 * V1... for variables in document order.
 *
 *   title (labels, else file name)  docDscr citation titl "Codebook of ...";
 *                                   stdyDscr citation titl, parTitl per language
 *   name (else file name)           stdyDscr citation IDNo
 *   created                         stdyDscr citation prodStmt/prodDate
 *   fileName                        fileTxt/fileName (without folders)
 *   format, formatVersion           fileTxt/fileType; fileCont's sentence;
 *                                   fileTxt/format for CSPro's fixed columns
 *   encoding                        fileType/@charset
 *   records                         fileStrc type="hierarchical", one recGrp each:
 *                                   @rectype = typeValue, @keyvar = identification
 *                                   items of its level and the levels above,
 *                                   labl, recDimnsn varQnty and logRecL = length;
 *                                   and one varGrp type="record", @name = its name
 *   recordTypeStart/Length          recGrp/@rtypeloc, @rtypewidth (character)
 *   rowCount                        dimensns/caseQnty
 *   variable                        var @name, @rectype (its recGrp's ID),
 *                                   @dcml, @intrvl, @nature; location; labl per
 *                                   language; valrng, invalrng; catgry; varFormat;
 *                                   notes (the note)
 *   occurrences                     one var per occurrence, named NAME_1,
 *                                   NAME_2, ...; the occurrence's label is added
 *                                   to the label in parentheses
 *   values of the first value set   catgry per single code (catValu, labl,
 *                                   txt = note, missing="Y" and missType for
 *                                   specials and declared missing codes);
 *                                   valrng per range (key = its label)
 *   missing values                  invalrng per code (item) or range
 *   format / contentType            varFormat @formatname, @schema, @category
 *   measure                         var/@nature (nominal, ordinal); scale gives
 *                                   intrvl="contin"
 *
 * Left out, for want of a DDI element: levels, the languages' own labels,
 * relativePositions, records' required and maxOccurrences and their
 * occurrence labels, decimalMark, zeroFill, storageWidth, displayWidth,
 * alignment, labelSet, value sets after the first, value sets' names, labels
 * and links, values' images.
 *
 * The file: a streaming XML writer; language tags; where each variable
 * lands (occurrences); missing values; the words of the file and variable
 * descriptions; the document's writer.
 */

namespace KxCodebook {

namespace {

// --- A streaming XML writer ---------------------------------------------------

//! An ASCII word of the code's own: an element or attribute name, a fixed value.
struct Word
{
    template <size_t N>
    constexpr Word(const char (&literal)[N]) : text(literal), size(N - 1)
    {
    }
    explicit Word(const char *word) : text(word), size(std::strlen(word)) {}

    const char *text;
    size_t size;
};

/* Writes XML as UTF-8, streaming. QXmlStreamWriter costs several times
 * more than reading the codebook does, for documents made of many small
 * elements; this writer does only what the document needs. Element and
 * attribute names are the code's own ASCII words; every text and attribute
 * value is escaped. Each element starts a line, without indentation, which
 * would add a sixth to the size of a large document. */
class XmlStream
{
public:
    explicit XmlStream(QIODevice *device) : m_out(device) {}

    void startDocument() { add("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"); }

    void startElement(Word name)
    {
        openTag(name);
        m_open.push_back({name, false});
        m_startTagOpen = true;
    }

    void attribute(Word name, const QString &value)
    {
        attributeStart(name);
        appendEscaped(value, Context::Attribute);
        m_out.add('"');
    }

    //! An attribute whose value is the code's own ASCII word.
    void attribute(Word name, Word word)
    {
        attributeStart(name);
        add(word);
        m_out.add('"');
    }

    template <size_t N>
    void attribute(Word name, const char (&word)[N])
    {
        attribute(name, Word(word));
    }

    void attribute(Word name, qint64 number)
    {
        attributeStart(name);
        appendNumber(number);
        m_out.add('"');
    }

    //! An ID: \a prefix and \a number ("V12").
    void idAttribute(Word name, Word prefix, qint64 number)
    {
        attributeStart(name);
        add(prefix);
        appendNumber(number);
        m_out.add('"');
    }

    //! An IDREFS value: \a prefix and each of \a numbers, space-separated.
    void idRefsAttribute(Word name, Word prefix, const QVector<int> &numbers)
    {
        attributeStart(name);
        for (int i = 0; i < numbers.size(); ++i) {
            if (i > 0)
                m_out.add(' ');
            add(prefix);
            appendNumber(numbers.at(i));
        }
        m_out.add('"');
    }

    void characters(const QString &text)
    {
        closeStartTag();
        appendEscaped(text, Context::Text);
    }

    //! An element holding only \a text.
    void textElement(Word name, const QString &text)
    {
        openTag(name);
        m_out.add('>');
        appendEscaped(text, Context::Text);
        m_out.add("</", 2);
        add(name);
        m_out.add('>');
    }

    //! textElement() with an attribute, for labels in a language.
    void textElement(Word name, Word attributeName, const QString &attributeValue, const QString &text)
    {
        openTag(name);
        attribute(attributeName, attributeValue);
        m_out.add('>');
        appendEscaped(text, Context::Text);
        m_out.add("</", 2);
        add(name);
        m_out.add('>');
    }

    void endElement()
    {
        const OpenElement element = m_open.back();
        m_open.pop_back();
        if (m_startTagOpen) {
            m_out.add("/>", 2);
            m_startTagOpen = false;
        } else {
            if (element.hasChildren)
                newLine();
            m_out.add("</", 2);
            add(element.name);
            m_out.add('>');
        }
    }

    //! Writes what is left; false when the device refused any of it.
    bool finish()
    {
        m_out.add('\n');
        return m_out.finish();
    }

private:
    enum class Context { Text, Attribute };

    struct OpenElement
    {
        Word name;
        bool hasChildren;
    };

    // The most bytes one UTF-16 unit can become: "&quot;".
    static constexpr int MaxBytesPerUnit = 6;

    void add(Word word) { m_out.add(word.text, word.size); }

    void attributeStart(Word name)
    {
        m_out.add(' ');
        add(name);
        m_out.add("=\"", 2);
    }

    //! A new line and "<name", as a child of the open element.
    void openTag(Word name)
    {
        closeStartTag();
        if (!m_open.empty())
            m_open.back().hasChildren = true;
        newLine();
        m_out.add('<');
        add(name);
    }

    void closeStartTag()
    {
        if (m_startTagOpen) {
            m_out.add('>');
            m_startTagOpen = false;
        }
    }

    void newLine()
    {
        m_out.add('\n');
    }

    void appendNumber(qint64 number)
    {
        char *out = m_out.room(24);
        m_out.commit(std::to_chars(out, out + 24, number).ptr);
    }

    static char *put(char *out, const char *text)
    {
        while (*text)
            *out++ = *text++;
        return out;
    }

    /* XML 1.0 cannot carry control characters other than tab, line feed and
     * carriage return, nor lone surrogates, U+FFFE or U+FFFF: each becomes
     * U+FFFD, the replacement character, so that damaged text shows as such.
     * A carriage return is written as a reference everywhere, since a parser
     * reads a literal one as a line feed; in attributes, tab and line feed
     * are references too, since a parser reads them as spaces there. */
    static char *putAscii(char *out, ushort u, Context context)
    {
        const bool attribute = context == Context::Attribute;
        switch (u) {
        case '&': return put(out, "&amp;");
        case '<': return put(out, "&lt;");
        case '>': return put(out, "&gt;");
        case '"': return attribute ? put(out, "&quot;") : put(out, "\"");
        case '\r': return put(out, "&#13;");
        case '\n': return attribute ? put(out, "&#10;") : put(out, "\n");
        case '\t': return attribute ? put(out, "&#9;") : put(out, "\t");
        default: break;
        }
        if (u < 0x20)
            return Internal::putUtf8(out, QChar::ReplacementCharacter);
        *out++ = char(u);
        return out;
    }

    //! ASCII characters that are written as they are, in text and in attributes.
    struct PlainAscii
    {
        bool plain[128] = {};
        constexpr PlainAscii()
        {
            for (int c = 0x20; c < 0x80; ++c)
                plain[c] = c != '&' && c != '<' && c != '>' && c != '"';
        }
    };

    //! Units [begin, end) of \a units, escaped, at \a out; a surrogate pair never straddles \a end.
    static char *putEscaped(char *out, const ushort *units, int begin, int end, Context context)
    {
        static constexpr PlainAscii ascii;
        for (int i = begin; i < end; ++i) {
            const ushort u = units[i];
            if (u < 0x80 && ascii.plain[u]) {
                *out++ = char(u);
            } else if (u < 0x80) {
                out = putAscii(out, u, context);
            } else if (QChar::isHighSurrogate(u) && i + 1 < end && QChar::isLowSurrogate(units[i + 1])) {
                out = Internal::putUtf8(out, QChar::surrogateToUcs4(u, units[i + 1]));
                ++i;
            } else if (QChar::isSurrogate(u) || u == 0xFFFE || u == 0xFFFF) {
                out = Internal::putUtf8(out, QChar::ReplacementCharacter);
            } else {
                out = Internal::putUtf8(out, u);
            }
        }
        return out;
    }

    void appendEscaped(const QString &text, Context context)
    {
        m_out.addEscaped(text, MaxBytesPerUnit, [context](char *out, const ushort *units, int begin, int end) {
            return putEscaped(out, units, begin, end, context);
        });
    }

    Internal::ChunkBuffer m_out;
    std::vector<OpenElement> m_open;
    bool m_startTagOpen = false;
};

// --- Languages ----------------------------------------------------------------

bool isAsciiLetter(QChar c)
{
    return (c >= QLatin1Char('a') && c <= QLatin1Char('z')) || (c >= QLatin1Char('A') && c <= QLatin1Char('Z'));
}

bool isAsciiLetterOrDigit(QChar c)
{
    return isAsciiLetter(c) || (c >= QLatin1Char('0') && c <= QLatin1Char('9'));
}

//! xs:language: [a-zA-Z]{1,8}(-[a-zA-Z0-9]{1,8})*
bool isLanguageTag(const QString &tag)
{
    const QStringList parts = tag.split(QLatin1Char('-'));
    for (int p = 0; p < parts.size(); ++p) {
        const QString &part = parts.at(p);
        if (part.isEmpty() || part.size() > 8)
            return false;
        for (QChar c : part) {
            if (!(p == 0 ? isAsciiLetter(c) : isAsciiLetterOrDigit(c)))
                return false;
        }
    }
    return true;
}

/* The xml:lang of a language named \a name (the \a index-th, 0-based): the
 * name lower-cased ("EN" gives "en"), with "_" read as "-"; a name that is no
 * language tag even so becomes a private-use tag "x-..." of its letters and
 * digits. Empty for an unnamed first language. */
QString languageTag(const QString &name, int index)
{
    const QString lower = name.toLower();
    if (isLanguageTag(lower))
        return lower;
    const QString dashed = QString(lower).replace(QLatin1Char('_'), QLatin1Char('-'));
    if (isLanguageTag(dashed))
        return dashed;
    QString letters;
    for (QChar c : lower) {
        if (isAsciiLetterOrDigit(c) && letters.size() < 8)
            letters += c;
    }
    if (letters.isEmpty())
        return index == 0 ? QString() : QStringLiteral("x-lang%1").arg(index + 1);
    return QStringLiteral("x-") + letters;
}

QStringList languageTags(const QVector<Language> &languages)
{
    QStringList tags;
    for (int i = 0; i < languages.size(); ++i)
        tags << languageTag(languages.at(i).name, i);
    if (tags.isEmpty())
        tags << QString();  // one unnamed language
    return tags;
}

// --- Where each variable lands ------------------------------------------------

//! One var element: a variable, or one occurrence of a repeating one.
struct VarCopy
{
    int variable = 0;          //!< index in the codebook's variables
    int occurrence = 0;        //!< 1-based occurrence of a repeating item; 0 when it does not repeat
    qint64 start = 0;          //!< first column; 0 where the format has none
    int record = -1;           //!< index of its record; -1 for none
    int repeating = -1;        //!< the variable whose occurrences these are (itself, or a subitem's parent)
    int occurrenceLabel = -1;  //!< index in that variable's occurrence labels; -1 for none
};

//! How often a variable is written, and how far apart its copies lie.
struct Repetition
{
    int count = 1;
    int step = 0;
    int source = -1;  //!< the variable whose occurrences are counted
};

// CSPro's own bound; a codebook put together by hand with more occurrences
// is written with this many.
constexpr int MaxOccurrences = 9999;

/* A repeating item repeats by its own width; a subitem of a repeating
 * parent repeats with its parent, by the parent's width. */
Repetition repetitionOf(const QVector<Variable> &variables, int index, int parent)
{
    const Variable &v = variables.at(index);
    if (v.occurrences > 1)
        return {std::min(v.occurrences, MaxOccurrences), v.width, index};
    if (v.isSubitem && parent >= 0) {
        const Variable &p = variables.at(parent);
        if (p.name == v.parent && p.record == v.record && p.occurrences > 1)
            return {std::min(p.occurrences, MaxOccurrences), p.width, parent};
    }
    return {1, 0, -1};
}

//! For each occurrence 1..count, the index of its label in \a labels, or -1.
QVector<int> occurrenceLabelIndexes(const QVector<OccurrenceLabel> &labels, int count)
{
    QVector<int> indexes(count + 1, -1);
    for (int i = 0; i < labels.size(); ++i) {
        const int occurrence = labels.at(i).occurrence;
        if (occurrence >= 1 && occurrence <= count && indexes.at(occurrence) < 0)
            indexes[occurrence] = i;
    }
    return indexes;
}

QHash<QString, int> recordIndexes(const QVector<Record> &records)
{
    QHash<QString, int> indexes;
    for (int i = 0; i < records.size(); ++i) {
        if (!indexes.contains(records.at(i).name))
            indexes.insert(records.at(i).name, i);
    }
    return indexes;
}

QVector<VarCopy> layOut(const QVector<Variable> &variables, const QVector<Record> &records)
{
    const QHash<QString, int> recordIndex = recordIndexes(records);
    QVector<VarCopy> copies;
    copies.reserve(variables.size());
    int parent = -1;  // the last item that is not a subitem
    for (int i = 0; i < variables.size(); ++i) {
        const Variable &v = variables.at(i);
        if (!v.isSubitem)
            parent = i;
        const Repetition repetition = repetitionOf(variables, i, parent);
        const QVector<int> labelIndexes = repetition.count > 1
            ? occurrenceLabelIndexes(variables.at(repetition.source).occurrenceLabels, repetition.count)
            : QVector<int>();
        const int record = v.record.isEmpty() ? -1 : recordIndex.value(v.record, -1);
        for (int k = 1; k <= repetition.count; ++k) {
            VarCopy copy;
            copy.variable = i;
            copy.record = record;
            if (v.start > 0)
                copy.start = v.start + qint64(k - 1) * repetition.step;
            if (repetition.count > 1) {
                copy.occurrence = k;
                copy.repeating = repetition.source;
                copy.occurrenceLabel = labelIndexes.at(k);
            }
            copies.append(copy);
        }
    }
    return copies;
}

// --- Missing values -----------------------------------------------------------

//! A code as a number; toDouble() skips the spaces around it.
bool toNumber(const QString &text, double *number)
{
    bool ok = false;
    *number = text.toDouble(&ok);
    return ok;
}

/* Tells whether a code is declared missing: equal to a missing code or
 * inside a missing range. Single codes are compared as written (the readers
 * write a code alike in a value set and in the missing values); ranges as
 * numbers, so a code is read as a number only when the variable has missing
 * ranges. Codes are sorted and ranges merged once: each question costs
 * binary searches. */
class MissingCodes
{
public:
    MissingCodes(const QVector<MissingValue> &missing, bool spssEnds)
    {
        for (const MissingValue &m : missing) {
            if (m.isRange)
                addRange(m, spssEnds);
            else
                m_texts.append(m.from);
        }
        std::sort(m_texts.begin(), m_texts.end());
        mergeRanges();
    }

    bool covers(const QString &code) const
    {
        if (isListed(code))
            return true;
        if (m_ranges.isEmpty() && m_textRanges.isEmpty())
            return false;
        double n = 0;
        if (!toNumber(code, &n))
            return coversText(code);
        auto after = std::upper_bound(m_ranges.begin(), m_ranges.end(), n,
                                      [](double x, const Range &r) { return x < r.low; });
        return after != m_ranges.begin() && n <= std::prev(after)->high;
    }

private:
    struct Range
    {
        double low;
        double high;
    };
    struct TextRange
    {
        QString low;
        QString high;
    };

    //! An end of a numeric range; SPSS's LO and HI are open ends.
    static bool rangeEnd(const QString &text, bool spssEnds, const char *open, double openValue, double *end)
    {
        if (spssEnds && text == QLatin1String(open)) {
            *end = openValue;
            return true;
        }
        return toNumber(text, end);
    }

    void addRange(const MissingValue &m, bool spssEnds)
    {
        const double infinity = std::numeric_limits<double>::infinity();
        double low = 0, high = 0;
        if (rangeEnd(m.from, spssEnds, "LO", -infinity, &low) && rangeEnd(m.to, spssEnds, "HI", infinity, &high))
            m_ranges.append({std::min(low, high), std::max(low, high)});
        else
            m_textRanges.append({m.from, m.to});
    }

    void mergeRanges()
    {
        std::sort(m_ranges.begin(), m_ranges.end(), [](const Range &a, const Range &b) { return a.low < b.low; });
        int kept = 0;
        for (int i = 0; i < m_ranges.size(); ++i) {
            if (kept > 0 && m_ranges[i].low <= m_ranges[kept - 1].high)
                m_ranges[kept - 1].high = std::max(m_ranges[kept - 1].high, m_ranges[i].high);
            else
                m_ranges[kept++] = m_ranges[i];
        }
        m_ranges.resize(kept);
    }

    bool isListed(const QString &code) const
    {
        constexpr int FewCodes = 8;  // fewer compare faster one by one
        if (m_texts.size() <= FewCodes)
            return std::find(m_texts.begin(), m_texts.end(), code) != m_texts.end();
        return std::binary_search(m_texts.begin(), m_texts.end(), code);
    }

    bool coversText(const QString &code) const
    {
        for (const TextRange &r : m_textRanges) {
            if (r.low <= code && code <= r.high)
                return true;
        }
        return false;
    }

    // Most variables declare a few missing values: these stay off the heap.
    QVarLengthArray<QString, 8> m_texts;
    QVarLengthArray<Range, 4> m_ranges;
    QVector<TextRange> m_textRanges;
};

bool sameCode(const MissingValue &m, const Code &code)
{
    return m.isRange == code.isRange && m.from == code.from && (!code.isRange || m.to == code.to);
}

//! Whether \a missing lists \a code: a search through the list, or through a set made of it when it is long.
class MissingList
{
public:
    explicit MissingList(const QVector<MissingValue> &missing) : m_missing(missing)
    {
        if (missing.size() <= LongList)
            return;
        for (const MissingValue &m : missing)
            m_keys.insert(key(m.from, m.to, m.isRange));
    }

    bool contains(const Code &code) const
    {
        if (m_missing.size() > LongList)
            return m_keys.contains(key(code.from, code.to, code.isRange));
        return std::any_of(m_missing.begin(), m_missing.end(),
                           [&](const MissingValue &m) { return sameCode(m, code); });
    }

private:
    static constexpr int LongList = 16;

    static QString key(const QString &from, const QString &to, bool isRange)
    {
        return isRange ? from + QChar(QChar::Null) + to : from;
    }

    const QVector<MissingValue> &m_missing;
    QSet<QString> m_keys;
};

/* The variable's missing values, then the codes of the special values of
 * \a values that they lack (a codebook put together by hand may leave them
 * out of the variable's list). */
QVector<MissingValue> invalidValues(const Variable &v, const QVector<Value> &values)
{
    QVector<MissingValue> all = v.missing;
    const bool hasSpecials =
        std::any_of(values.begin(), values.end(), [](const Value &value) { return value.special != Special::None; });
    if (!hasSpecials)
        return all;
    const MissingList listed(v.missing);
    for (const Value &value : values) {
        for (const Code &code : value.codes) {
            if (value.special != Special::None && !listed.contains(code))
                all.append(detail::missingValueOf(value, code));
        }
    }
    return all;
}

// --- Words of the file description ------------------------------------------

bool isCSPro(Format format)
{
    return format == Format::CSProText || format == Format::CSProJson;
}

QString counted(qint64 n, const char *one, const char *many)
{
    return QStringLiteral("%1 %2").arg(n).arg(QLatin1String(n == 1 ? one : many));
}

QString cSProVersion(const QString &version)
{
    if (version.isEmpty())
        return QStringLiteral("CSPro");
    return version.startsWith(QLatin1String("CSPro")) ? version : QStringLiteral("CSPro ") + version;
}

QString fileTypeOf(const Codebook &book)
{
    switch (book.format()) {
    case Format::CSProText: return cSProVersion(book.formatVersion()) + QStringLiteral(" text dictionary");
    case Format::CSProJson: return cSProVersion(book.formatVersion()) + QStringLiteral(" JSON dictionary");
    case Format::Spss:
        return book.formatVersion() == QLatin1String("3") ? QStringLiteral("SPSS compressed system file")
                                                          : QStringLiteral("SPSS system file");
    case Format::Stata: return QStringLiteral("Stata %1").arg(book.formatVersion()).trimmed();
    case Format::Unknown: break;
    }
    return QString();
}

QString fileContentOf(const Codebook &book, int variables, int records)
{
    const QString items = counted(variables, "variable", "variables");
    const QString cases = book.rowCount() >= 0 ? QStringLiteral(", ") + counted(book.rowCount(), "case", "cases")
                                               : QString();
    switch (book.format()) {
    case Format::CSProText:
    case Format::CSProJson:
        return QStringLiteral("CSPro dictionary of a fixed-width text data file: %1, %2.")
            .arg(counted(records, "record type", "record types"), counted(variables, "item", "items"));
    case Format::Spss: return QStringLiteral("SPSS system file: %1%2.").arg(items, cases);
    case Format::Stata: return QStringLiteral("Stata data file: %1%2.").arg(items, cases);
    case Format::Unknown: break;
    }
    return QStringLiteral("Data file: %1%2.").arg(items, cases);
}

QString physicalFormatOf(const Codebook &book)
{
    if (!isCSPro(book.format()))
        return QString();
    QString text = QStringLiteral("Fixed-width text, one record per line");
    const int start = book.recordTypeStart(), length = book.recordTypeLength();
    if (start > 0 && length == 1)
        text += QStringLiteral(", the record type in column %1").arg(start);
    else if (start > 0 && length > 1)
        text += QStringLiteral(", the record type in columns %1 to %2").arg(start).arg(qint64(start) + length - 1);
    return text + QLatin1Char('.');
}

// --- Words of a variable ------------------------------------------------------

//! var's nature attribute, or nullptr: an SPSS scale is interval or ratio, DDI cannot tell which.
const char *natureOf(Measure measure)
{
    switch (measure) {
    case Measure::Nominal: return "nominal";
    case Measure::Ordinal: return "ordinal";
    case Measure::Scale:
    case Measure::Unknown: break;
    }
    return nullptr;
}

bool hasValueLabels(const Variable &v)
{
    return !v.valueSets.isEmpty() && !v.valueSets.first().values.isEmpty();
}

//! "contin" or "discrete" for numeric variables; nullptr for others.
const char *intervalOf(const Variable &v)
{
    if (v.storage != Storage::Numeric)
        return nullptr;
    if (v.measure == Measure::Scale)
        return "contin";
    if (v.measure == Measure::Unknown && v.decimals > 0 && !hasValueLabels(v))
        return "contin";
    return "discrete";
}

//! The category of an SPSS format from its letters (DATE11 gives DATE): date, time, currency, or nullptr.
const char *spssFormatCategory(const QString &format)
{
    struct Kind
    {
        const char *letters;
        const char *category;
    };
    static const Kind kinds[] = {
        {"DATE", "date"},      {"ADATE", "date"},     {"EDATE", "date"},     {"JDATE", "date"},
        {"SDATE", "date"},     {"QYR", "date"},       {"MOYR", "date"},      {"WKYR", "date"},
        {"DATETIME", "date"},  {"YMDHMS", "date"},    {"WKDAY", "date"},     {"MONTH", "date"},
        {"TIME", "time"},      {"DTIME", "time"},     {"MTIME", "time"},     {"DOLLAR", "currency"},
        {"CCA", "currency"},   {"CCB", "currency"},   {"CCC", "currency"},   {"CCD", "currency"},
        {"CCE", "currency"},
    };
    int n = 0;
    while (n < format.size() && format.at(n).isLetter())
        ++n;
    const QStringRef letters = format.leftRef(n);
    for (const Kind &kind : kinds) {
        if (letters.compare(QLatin1String(kind.letters), Qt::CaseInsensitive) == 0)
            return kind.category;
    }
    return nullptr;
}

//! Stata's date and time formats: %t..., %-t..., and the old %d....
const char *stataFormatCategory(const QString &format)
{
    if (!format.startsWith(QLatin1Char('%')))
        return nullptr;
    int at = 1;
    while (at < format.size() && format.at(at) == QLatin1Char('-'))
        ++at;
    if (at >= format.size())
        return nullptr;
    const QChar kind = format.at(at);
    return kind == QLatin1Char('t') || kind == QLatin1Char('d') ? "date" : nullptr;
}

//! varFormat's category of an SPSS or Stata display format, or nullptr.
const char *formatCategory(const QString &format, Format fileFormat)
{
    switch (fileFormat) {
    case Format::Spss: return spssFormatCategory(format);
    case Format::Stata: return stataFormatCategory(format);
    case Format::CSProText:
    case Format::CSProJson:
    case Format::Unknown: break;
    }
    return nullptr;
}

QString baseFileName(const QString &path)
{
    return QFileInfo(path).fileName();
}

// --- The document ---------------------------------------------------------------

//! Labels::text() without a copy: the label in language \a language, else the primary one.
const QString &labelIn(const Labels &labels, int language)
{
    static const QString none;
    const QStringList &texts = labels.texts;
    if (language > 0 && language < texts.size() && !texts.at(language).isEmpty())
        return texts.at(language);
    return texts.isEmpty() ? none : texts.first();
}

class DdiWriter
{
public:
    DdiWriter(const Codebook &codebook, const DdiOptions &options, QIODevice *device)
        : m_book(codebook),
          m_options(options),
          m_xml(device),
          m_variables(codebook.variables()),
          m_records(codebook.records()),
          m_languages(languageTags(codebook.languages())),
          m_copies(layOut(m_variables, m_records))
    {
        groupCopies();
    }

    bool write()
    {
        m_xml.startDocument();
        m_xml.startElement("codeBook");
        // No xsi:schemaLocation: the hint is optional, and a validator is given
        // the DDI Alliance's codebook.xsd for the namespace instead.
        m_xml.attribute("xmlns", "ddi:codebook:2_5");
        m_xml.attribute("version", "2.5");
        writeDocDscr();
        writeStdyDscr();
        writeFileDscr();
        writeDataDscr();
        m_xml.endElement();
        return m_xml.finish();
    }

private:
    // --- Helpers

    void writeLanguage(int index)
    {
        const QString &tag = m_languages.at(index);
        if (!tag.isEmpty())
            m_xml.attribute("xml:lang", tag);
    }

    //! One \a element per language whose label is not empty; CSPro's empty label means the primary one.
    void writeLabels(Word element, const Labels &labels)
    {
        for (int i = 0; i < m_languages.size(); ++i) {
            const QString &label = labelIn(labels, i);
            const QString &tag = m_languages.at(i);
            if (label.isEmpty())
                continue;
            if (tag.isEmpty())
                m_xml.textElement(element, label);
            else
                m_xml.textElement(element, "xml:lang", tag, label);
        }
    }

    QString title() const
    {
        const QString label = m_book.labels().primary();
        if (!label.isEmpty())
            return label;
        const QString file = baseFileName(m_book.fileName());
        if (!file.isEmpty())
            return file;
        return m_book.name().isEmpty() ? QStringLiteral("unnamed data set") : m_book.name();
    }

    void groupCopies()
    {
        m_recordCopies.resize(m_records.size());
        for (int i = 0; i < m_copies.size(); ++i) {
            const VarCopy &c = m_copies.at(i);
            if (c.record >= 0)
                m_recordCopies[c.record].append(i + 1);
            const Variable &v = m_variables.at(c.variable);
            if (v.isId)
                m_idCopiesByLevel[v.level].append(i + 1);
        }
    }

    // --- docDscr

    void writeDocDscr()
    {
        m_xml.startElement("docDscr");
        m_xml.startElement("citation");
        m_xml.startElement("titlStmt");
        m_xml.textElement("titl", QStringLiteral("Codebook of ") + title());
        m_xml.endElement();
        writeDocProdStmt();
        m_xml.endElement();
        m_xml.endElement();
    }

    void writeDocProdStmt()
    {
        const QString producer = m_options.producer.trimmed();
        const QString version = m_options.producerVersion.trimmed();
        const QDateTime date = m_options.date.isValid() ? m_options.date : QDateTime::currentDateTime();
        const QString day = date.date().toString(Qt::ISODate);
        m_xml.startElement("prodStmt");
        if (!producer.isEmpty())
            m_xml.textElement("producer", version.isEmpty() ? producer : producer + QLatin1Char(' ') + version);
        m_xml.startElement("prodDate");
        m_xml.attribute("date", day);
        m_xml.characters(day);
        m_xml.endElement();
        if (!producer.isEmpty()) {
            m_xml.startElement("software");
            if (!version.isEmpty())
                m_xml.attribute("version", version);
            m_xml.characters(producer);
            m_xml.endElement();
        }
        m_xml.endElement();
    }

    // --- stdyDscr

    void writeStdyDscr()
    {
        m_xml.startElement("stdyDscr");
        m_xml.startElement("citation");
        writeStudyTitles();
        writeStudyProdStmt();
        m_xml.endElement();
        m_xml.endElement();
    }

    void writeStudyTitles()
    {
        const Labels dataSetLabels = m_book.labels();
        const bool labelled = !dataSetLabels.primary().isEmpty();
        m_xml.startElement("titlStmt");
        m_xml.startElement("titl");
        if (labelled)
            writeLanguage(0);
        m_xml.characters(title());
        m_xml.endElement();
        for (int i = 1; i < m_languages.size() && labelled; ++i) {
            m_xml.startElement("parTitl");
            writeLanguage(i);
            m_xml.characters(dataSetLabels.text(i));
            m_xml.endElement();
        }
        const QString id = m_book.name().isEmpty() ? baseFileName(m_book.fileName()) : m_book.name();
        if (!id.isEmpty())
            m_xml.textElement("IDNo", id);
        m_xml.endElement();
    }

    void writeStudyProdStmt()
    {
        if (!m_book.created().isValid())
            return;
        const QString when = m_book.created().toString(Qt::ISODate);
        m_xml.startElement("prodStmt");
        m_xml.startElement("prodDate");
        m_xml.attribute("date", when);
        m_xml.characters(when);
        m_xml.endElement();
        m_xml.endElement();
    }

    // --- fileDscr

    void writeFileDscr()
    {
        m_xml.startElement("fileDscr");
        m_xml.attribute("ID", "F1");
        m_xml.startElement("fileTxt");
        const QString name = baseFileName(m_book.fileName());
        if (!name.isEmpty())
            m_xml.textElement("fileName", name);
        m_xml.textElement("fileCont", fileContentOf(m_book, m_variables.size(), m_records.size()));
        writeFileStrc();
        writeDimensns();
        writeFileType();
        const QString physical = physicalFormatOf(m_book);
        if (!physical.isEmpty())
            m_xml.textElement("format", physical);
        m_xml.endElement();
        m_xml.endElement();
    }

    void writeFileStrc()
    {
        m_xml.startElement("fileStrc");
        m_xml.attribute("type", Word(m_records.isEmpty() ? "rectangular" : "hierarchical"));
        for (int r = 0; r < m_records.size(); ++r)
            writeRecGrp(r);
        m_xml.endElement();
    }

    //! The identification variables of levels 1 to \a level.
    QVector<int> keyCopies(int level) const
    {
        QVector<int> keys;
        for (auto it = m_idCopiesByLevel.begin(); it != m_idCopiesByLevel.end() && it.key() <= level; ++it)
            keys += it.value();
        return keys;
    }

    bool hasRecordType() const { return m_book.recordTypeStart() > 0 && m_book.recordTypeLength() > 0; }

    void writeRecGrp(int r)
    {
        const Record &record = m_records.at(r);
        m_xml.startElement("recGrp");
        m_xml.idAttribute("ID", "R", r + 1);
        if (hasRecordType() || !record.typeValue.isEmpty())
            m_xml.attribute("rectype", record.typeValue);
        const QVector<int> keys = keyCopies(record.level);
        if (!keys.isEmpty())
            m_xml.idRefsAttribute("keyvar", "V", keys);
        if (hasRecordType()) {
            m_xml.attribute("rtypeloc", qint64(m_book.recordTypeStart()));
            m_xml.attribute("rtypewidth", qint64(m_book.recordTypeLength()));
            m_xml.attribute("rtypevtype", "character");
        }
        writeLabels("labl", record.labels);
        m_xml.startElement("recDimnsn");
        m_xml.attribute("level", "record");
        m_xml.textElement("varQnty", QString::number(m_recordCopies.at(r).size()));
        if (record.length > 0)
            m_xml.textElement("logRecL", QString::number(record.length));
        m_xml.endElement();
        m_xml.endElement();
    }

    void writeDimensns()
    {
        m_xml.startElement("dimensns");
        if (m_book.rowCount() >= 0)
            m_xml.textElement("caseQnty", QString::number(m_book.rowCount()));
        m_xml.textElement("varQnty", QString::number(m_copies.size()));
        m_xml.endElement();
    }

    void writeFileType()
    {
        const QString type = fileTypeOf(m_book);
        if (type.isEmpty())
            return;
        m_xml.startElement("fileType");
        if (!m_book.encoding().isEmpty())
            m_xml.attribute("charset", m_book.encoding());
        m_xml.characters(type);
        m_xml.endElement();
    }

    // --- dataDscr

    void writeDataDscr()
    {
        m_xml.startElement("dataDscr");
        for (int r = 0; r < m_records.size(); ++r)
            writeVarGrp(r);
        for (int i = 0; i < m_copies.size(); ++i)
            writeVar(i);
        m_xml.endElement();
    }

    void writeVarGrp(int r)
    {
        const Record &record = m_records.at(r);
        m_xml.startElement("varGrp");
        m_xml.idAttribute("ID", "VG", r + 1);
        m_xml.attribute("type", "record");
        if (!m_recordCopies.at(r).isEmpty())
            m_xml.idRefsAttribute("var", "V", m_recordCopies.at(r));
        m_xml.attribute("name", record.name);
        writeLabels("labl", record.labels);
        m_xml.endElement();
    }

    void writeVar(int copyIndex)
    {
        const VarCopy &copy = m_copies.at(copyIndex);
        const Variable &v = m_variables.at(copy.variable);
        m_xml.startElement("var");
        writeVarAttributes(copyIndex, copy, v);
        writeLocation(copy, v);
        writeLabels("labl", copyLabels(copy, v));
        writeValues(v);
        writeVarFormat(v);
        if (!v.note.isEmpty())
            m_xml.textElement("notes", v.note);
        m_xml.endElement();
    }

    // Copies of a repeating item are named NAME_1, NAME_2, ... by occurrence
    // (a DDI name is any string; the occurrence stays readable in it).
    static QString copyName(const VarCopy &copy, const Variable &v)
    {
        return copy.occurrence > 0 ? v.name + QLatin1Char('_') + QString::number(copy.occurrence) : v.name;
    }

    void writeVarAttributes(int copyIndex, const VarCopy &copy, const Variable &v)
    {
        m_xml.idAttribute("ID", "V", copyIndex + 1);
        m_xml.attribute("name", copyName(copy, v));
        m_xml.attribute("files", "F1");
        if (copy.record >= 0)
            m_xml.idAttribute("rectype", "R", copy.record + 1);
        if (v.storage == Storage::Numeric)
            m_xml.attribute("dcml", qint64(v.decimals));
        if (const char *interval = intervalOf(v))
            m_xml.attribute("intrvl", Word(interval));
        if (const char *nature = natureOf(v.measure))
            m_xml.attribute("nature", Word(nature));
    }

    void writeLocation(const VarCopy &copy, const Variable &v)
    {
        if (copy.start <= 0)
            return;
        m_xml.startElement("location");
        m_xml.attribute("StartPos", copy.start);
        m_xml.attribute("EndPos", copy.start + std::max(v.width, 1) - 1);
        m_xml.attribute("width", qint64(v.width));
        m_xml.endElement();
    }

    //! The variable's labels; a copy of a repeating item adds its occurrence's label in parentheses.
    Labels copyLabels(const VarCopy &copy, const Variable &v) const
    {
        if (copy.occurrenceLabel < 0)
            return v.labels;
        const Labels &occurrence = m_variables.at(copy.repeating).occurrenceLabels.at(copy.occurrenceLabel).labels;
        Labels combined;
        for (int i = 0; i < m_languages.size(); ++i) {
            const QString label = v.labels.text(i);
            const QString suffix = occurrence.text(i);
            if (suffix.isEmpty())
                combined.texts << label;
            else
                combined.texts << (label.isEmpty() ? suffix : label + QStringLiteral(" (") + suffix + QLatin1Char(')'));
        }
        return combined;
    }

    // --- Values

    //! valrng, invalrng and catgry, in the schema's order; codes come from the first value set.
    void writeValues(const Variable &v)
    {
        const QVector<Value> values = v.valueSets.isEmpty() ? QVector<Value>() : v.valueSets.first().values;
        const bool real = v.storage == Storage::Numeric && v.decimals > 0;
        writeValidRanges(values, real);
        writeInvalidValues(v, values, real);
        writeCategories(v, values);
    }

    void writeValidRanges(const QVector<Value> &values, bool real)
    {
        for (const Value &value : values) {
            if (value.special != Special::None)
                continue;
            for (const Code &code : value.codes) {
                if (code.isRange)
                    writeRange("valrng", code.from, code.to, value.labels.primary(), real);
            }
        }
    }

    void writeInvalidValues(const Variable &v, const QVector<Value> &values, bool real)
    {
        for (const MissingValue &m : invalidValues(v, values)) {
            if (m.isRange)
                writeRange("invalrng", spssEnd(m.from, "LO"), spssEnd(m.to, "HI"), m.label, real);
            else
                writeItem("invalrng", m.from, m.label, real);
        }
    }

    //! One catgry per single code; ranges are in valrng and invalrng.
    void writeCategories(const Variable &v, const QVector<Value> &values)
    {
        const MissingCodes missing(v.missing, m_book.format() == Format::Spss);
        for (const Value &value : values) {
            for (const Code &code : value.codes) {
                if (!code.isRange)
                    writeCategory(value, code.from, value.special != Special::None || missing.covers(code.from));
            }
        }
    }

    //! SPSS writes the open ends of missing ranges as LO and HI: no bound.
    QString spssEnd(const QString &end, const char *open) const
    {
        return m_book.format() == Format::Spss && end == QLatin1String(open) ? QString() : end;
    }

    void writeRange(Word element, const QString &min, const QString &max, const QString &label, bool real)
    {
        m_xml.startElement(element);
        m_xml.startElement("range");
        if (real)
            m_xml.attribute("UNITS", "REAL");
        if (!min.isNull())
            m_xml.attribute("min", min);
        if (!max.isNull())
            m_xml.attribute("max", max);
        m_xml.endElement();
        if (!label.isEmpty())
            m_xml.textElement("key", label);
        m_xml.endElement();
    }

    void writeItem(Word element, const QString &value, const QString &label, bool real)
    {
        m_xml.startElement(element);
        m_xml.startElement("item");
        if (real)
            m_xml.attribute("UNITS", "REAL");
        m_xml.attribute("VALUE", value);
        m_xml.endElement();
        if (!label.isEmpty())
            m_xml.textElement("key", label);
        m_xml.endElement();
    }

    void writeCategory(const Value &value, const QString &code, bool isMissing)
    {
        m_xml.startElement("catgry");
        if (isMissing)
            m_xml.attribute("missing", "Y");
        if (value.special != Special::None)
            m_xml.attribute("missType", specialName(value.special));
        m_xml.textElement("catValu", code);
        writeLabels("labl", value.labels);
        if (!value.note.isEmpty())
            m_xml.textElement("txt", value.note);
        m_xml.endElement();
    }

    // --- varFormat

    QString formatName(const Variable &v) const
    {
        if (isCSPro(m_book.format()))
            return v.contentType;
        return v.format.isEmpty() ? v.contentType : v.format;
    }

    void writeFormatSchema()
    {
        switch (m_book.format()) {
        case Format::Spss: m_xml.attribute("schema", "SPSS"); return;
        case Format::Stata:
            m_xml.attribute("schema", "other");
            m_xml.attribute("otherSchema", "Stata");
            return;
        case Format::CSProText:
        case Format::CSProJson:
            m_xml.attribute("schema", "other");
            m_xml.attribute("otherSchema", "CSPro");
            return;
        case Format::Unknown: break;
        }
        m_xml.attribute("schema", "other");
    }

    // DDI knows numeric and character formats only: a binary item (audio,
    // image, ...) gets no type, and its content type as the format's name.
    void writeVarFormat(const Variable &v)
    {
        m_xml.startElement("varFormat");
        if (v.storage != Storage::Binary)
            m_xml.attribute("type", Word(v.storage == Storage::Numeric ? "numeric" : "character"));
        const QString name = formatName(v);
        if (!name.isEmpty())
            m_xml.attribute("formatname", name);
        writeFormatSchema();
        if (const char *category = formatCategory(v.format, m_book.format()))
            m_xml.attribute("category", Word(category));
        m_xml.endElement();
    }

    const Codebook &m_book;
    const DdiOptions &m_options;
    XmlStream m_xml;
    const QVector<Variable> m_variables;
    const QVector<Record> m_records;
    const QStringList m_languages;  //!< the xml:lang of each language; empty for none
    const QVector<VarCopy> m_copies;
    QVector<QVector<int>> m_recordCopies;       //!< per record, the numbers of its var elements (V1 is 1)
    QMap<int, QVector<int>> m_idCopiesByLevel;  //!< per level, the numbers of its identification var elements
};

} // namespace

bool writeDdi(const Codebook &codebook, QIODevice *device, const DdiOptions &options, QString *error)
{
    auto fail = [error](const QString &message) {
        if (error)
            *error = message;
        return false;
    };
    if (!device || !device->isWritable())
        return fail(QStringLiteral("the DDI document cannot be written: the device is not open for writing"));
    DdiWriter writer(codebook, options, device);
    if (!writer.write())
        return fail(QStringLiteral("the DDI document could not be written: %1").arg(device->errorString()));
    if (error)
        error->clear();
    return true;
}

QByteArray toDdi(const Codebook &codebook, const DdiOptions &options)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    writeDdi(codebook, &buffer, options);
    return bytes;
}

} // namespace KxCodebook

#include "KxCodebookJson.h"

#include "ChunkBuffer_p.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QLocale>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <vector>

namespace KxCodebook {

namespace {

/* Writes JSON as QJsonDocument::Indented does: four spaces a level, a
 * container's members on lines of their own, an empty container still split
 * over two lines, members of an object in the order of their keys (the
 * writer's callers give them in that order). */
char hexDigit(uint n) { return char(n < 10 ? '0' + n : 'a' + n - 10); }

/* As Qt escapes: quote, backslash and the controls below U+0020 (\b \f
 * \n \r \t by name, the rest as \u00XX); everything else as UTF-8, but a
 * lone surrogate, which has no UTF-8, as \uXXXX. */
char *putJsonEscaped(char *out, const ushort *units, int begin, int end)
{
    for (int i = begin; i < end; ++i) {
        const uint u = units[i];
        if (u >= 0x20 && u < 0x80 && u != '"' && u != '\\') {
            *out++ = char(u);
        } else if (u < 0x80) {
            *out++ = '\\';
            switch (u) {
            case '"': *out++ = '"'; break;
            case '\\': *out++ = '\\'; break;
            case '\b': *out++ = 'b'; break;
            case '\f': *out++ = 'f'; break;
            case '\n': *out++ = 'n'; break;
            case '\r': *out++ = 'r'; break;
            case '\t': *out++ = 't'; break;
            default:
                *out++ = 'u';
                *out++ = '0';
                *out++ = '0';
                *out++ = hexDigit(u >> 4);
                *out++ = hexDigit(u & 0xF);
            }
        } else if (!QChar::isSurrogate(u)) {
            out = Internal::putUtf8(out, u);
        } else if (QChar::isHighSurrogate(u) && i + 1 < end && QChar::isLowSurrogate(units[i + 1])) {
            out = Internal::putUtf8(out, QChar::surrogateToUcs4(ushort(u), units[i + 1]));
            ++i;
        } else {
            *out++ = '\\';
            *out++ = 'u';
            for (int shift = 12; shift >= 0; shift -= 4)
                *out++ = hexDigit((u >> shift) & 0xF);
        }
    }
    return out;
}


class JsonStream
{
public:
    explicit JsonStream(QIODevice *device) : m_out(device) {}

    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    void beginArray() { open('['); }
    void endArray() { close(']'); }

    //! Starts the member \a key (an ASCII word of the code's own) of the open object.
    template <size_t N>
    void key(const char (&key)[N])
    {
        element();
        m_out.add('"');
        m_out.add(key, N - 1);
        m_out.add("\": ", 3);
    }

    //! Starts the next element of the open array.
    void element()
    {
        if (m_hasMembers.back())
            m_out.add(",\n", 2);
        else
            m_out.add('\n');
        m_hasMembers.back() = true;
        indent(int(m_hasMembers.size()));
    }

    void value(const QString &text) { appendString(text); }
    void value(bool b) { b ? m_out.add("true", 4) : m_out.add("false", 5); }
    void value(int n) { appendInteger(n); }
    void null() { m_out.add("null", 4); }
    void textOrNull(const QString &text) { text.isEmpty() ? null() : value(text); }

    //! \a n as QJsonValue(double(n)) writes it: exactly up to 2^53, rounded above.
    void number(qint64 n)
    {
        constexpr qint64 exact = qint64(1) << 53;
        if (n >= -exact && n <= exact) {
            appendInteger(n);
        } else {
            const QByteArray text = QByteArray::number(double(n), 'f', QLocale::FloatingPointShortest);
            m_out.add(text.constData(), size_t(text.size()));
        }
    }

    //! Ends the document as QJsonDocument does, with a line feed; false when the device refused a byte.
    bool finish()
    {
        m_out.add('\n');
        return m_out.finish();
    }

private:
    void open(char bracket)
    {
        m_out.add(bracket);
        m_hasMembers.push_back(false);
    }

    void close(char bracket)
    {
        m_out.add('\n');
        m_hasMembers.pop_back();
        indent(int(m_hasMembers.size()));
        m_out.add(bracket);
    }

    void indent(int depth)
    {
        char *out = m_out.room(size_t(4 * depth));
        std::memset(out, ' ', size_t(4 * depth));
        m_out.commit(out + 4 * depth);
    }

    void appendInteger(qint64 n)
    {
        char *out = m_out.room(24);
        m_out.commit(std::to_chars(out, out + 24, n).ptr);
    }

    void appendString(const QString &text)
    {
        constexpr size_t MaxBytesPerUnit = 6;  // \u00XX
        m_out.add('"');
        m_out.addEscaped(text, MaxBytesPerUnit, putJsonEscaped);
        m_out.add('"');
    }

    Internal::ChunkBuffer m_out;
    std::vector<bool> m_hasMembers;  // one per open container
};

class JsonWriter
{
public:
    JsonWriter(const Codebook &codebook, QIODevice *device) : m_codebook(codebook), m_json(device) {}

    bool write()
    {
        const Codebook &c = m_codebook;
        m_json.beginObject();
        m_json.key("created");
        c.created().isValid() ? m_json.value(c.created().toString(Qt::ISODate)) : m_json.null();
        m_json.key("encoding");
        m_json.textOrNull(c.encoding());
        m_json.key("file");
        m_json.value(c.fileName());
        m_json.key("format");
        m_json.value(formatName(c.format()));
        m_json.key("formatVersion");
        m_json.textOrNull(c.formatVersion());
        m_json.key("kind");
        m_json.value(QStringLiteral("codebook"));
        m_json.key("labels");
        writeLabels(c.labels());
        m_json.key("languages");
        writeLanguages(c.languages());
        m_json.key("levels");
        writeLevels(c.levels());
        m_json.key("name");
        m_json.textOrNull(c.name());
        m_json.key("recordType");
        writeRecordType();
        m_json.key("records");
        writeRecords(c.records());
        m_json.key("relativePositions");
        m_json.value(c.relativePositions());
        m_json.key("rowCount");
        c.rowCount() >= 0 ? m_json.number(c.rowCount()) : m_json.null();
        m_json.key("schemaVersion");
        m_json.value(CodebookJsonSchemaVersion);
        m_json.key("variables");
        writeVariables(c.variables());
        m_json.endObject();
        return m_json.finish();
    }

private:
    void writeLabels(const Labels &labels)
    {
        m_json.beginArray();
        for (const QString &text : labels.texts) {
            m_json.element();
            m_json.value(text);
        }
        m_json.endArray();
    }

    void writeLanguages(const QVector<Language> &languages)
    {
        m_json.beginArray();
        for (const Language &l : languages) {
            m_json.element();
            m_json.beginObject();
            m_json.key("label");
            m_json.value(l.label);
            m_json.key("name");
            m_json.value(l.name);
            m_json.endObject();
        }
        m_json.endArray();
    }

    void writeLevels(const QVector<Level> &levels)
    {
        m_json.beginArray();
        for (const Level &l : levels) {
            m_json.element();
            m_json.beginObject();
            m_json.key("labels");
            writeLabels(l.labels);
            m_json.key("name");
            m_json.value(l.name);
            m_json.endObject();
        }
        m_json.endArray();
    }

    void writeRecordType()
    {
        m_json.beginObject();
        m_json.key("length");
        m_json.value(m_codebook.recordTypeLength());
        m_json.key("start");
        m_json.value(m_codebook.recordTypeStart());
        m_json.endObject();
    }

    void writeOccurrenceLabels(const QVector<OccurrenceLabel> &labels)
    {
        m_json.beginArray();
        for (const OccurrenceLabel &l : labels) {
            m_json.element();
            m_json.beginObject();
            m_json.key("labels");
            writeLabels(l.labels);
            m_json.key("occurrence");
            m_json.value(l.occurrence);
            m_json.endObject();
        }
        m_json.endArray();
    }

    void writeRecords(const QVector<Record> &records)
    {
        m_json.beginArray();
        for (const Record &r : records) {
            m_json.element();
            m_json.beginObject();
            m_json.key("labels");
            writeLabels(r.labels);
            m_json.key("length");
            m_json.value(r.length);
            m_json.key("level");
            m_json.value(r.level);
            m_json.key("maxOccurrences");
            m_json.value(r.maxOccurrences);
            m_json.key("name");
            m_json.value(r.name);
            m_json.key("occurrenceLabels");
            writeOccurrenceLabels(r.occurrenceLabels);
            m_json.key("required");
            m_json.value(r.required);
            m_json.key("typeValue");
            m_json.value(r.typeValue);
            m_json.endObject();
        }
        m_json.endArray();
    }

    void writeCodes(const QVector<Code> &codes)
    {
        m_json.beginArray();
        for (const Code &code : codes) {
            m_json.element();
            m_json.beginObject();
            m_json.key("from");
            m_json.value(code.from);
            if (code.isRange) {
                m_json.key("to");
                m_json.value(code.to);
            }
            m_json.endObject();
        }
        m_json.endArray();
    }

    void writeValue(const Value &value)
    {
        m_json.beginObject();
        m_json.key("codes");
        writeCodes(value.codes);
        m_json.key("image");
        m_json.textOrNull(value.image);
        m_json.key("labels");
        writeLabels(value.labels);
        m_json.key("note");
        m_json.textOrNull(value.note);
        m_json.key("special");
        m_json.textOrNull(specialName(value.special));
        m_json.endObject();
    }

    void writeValueSets(const QVector<ValueSet> &sets)
    {
        m_json.beginArray();
        for (const ValueSet &set : sets) {
            m_json.element();
            m_json.beginObject();
            m_json.key("labels");
            writeLabels(set.labels);
            m_json.key("link");
            m_json.textOrNull(set.link);
            m_json.key("linkFilled");
            m_json.value(set.linkFilled);
            m_json.key("name");
            m_json.value(set.name);
            m_json.key("values");
            m_json.beginArray();
            for (const Value &v : set.values) {
                m_json.element();
                writeValue(v);
            }
            m_json.endArray();
            m_json.endObject();
        }
        m_json.endArray();
    }

    void writeMissing(const QVector<MissingValue> &missing)
    {
        m_json.beginArray();
        for (const MissingValue &m : missing) {
            m_json.element();
            m_json.beginObject();
            m_json.key("from");
            m_json.value(m.from);
            m_json.key("label");
            m_json.textOrNull(m.label);
            m_json.key("special");
            m_json.textOrNull(specialName(m.special));
            if (m.isRange) {
                m_json.key("to");
                m_json.value(m.to);
            }
            m_json.endObject();
        }
        m_json.endArray();
    }

    void writeVariable(const Variable &v)
    {
        m_json.beginObject();
        m_json.key("alignment");
        m_json.textOrNull(alignmentName(v.alignment));
        m_json.key("contentType");
        m_json.textOrNull(v.contentType);
        m_json.key("decimalMark");
        m_json.value(v.decimalMark);
        m_json.key("decimals");
        m_json.value(v.decimals);
        m_json.key("displayWidth");
        m_json.value(v.displayWidth);
        m_json.key("format");
        m_json.textOrNull(v.format);
        m_json.key("isId");
        m_json.value(v.isId);
        m_json.key("isSubitem");
        m_json.value(v.isSubitem);
        m_json.key("labelSet");
        m_json.textOrNull(v.labelSet);
        m_json.key("labels");
        writeLabels(v.labels);
        m_json.key("level");
        m_json.value(v.level);
        m_json.key("measure");
        m_json.textOrNull(measureName(v.measure));
        m_json.key("missing");
        writeMissing(v.missing);
        m_json.key("name");
        m_json.value(v.name);
        m_json.key("note");
        m_json.textOrNull(v.note);
        m_json.key("occurrenceLabels");
        writeOccurrenceLabels(v.occurrenceLabels);
        m_json.key("occurrences");
        m_json.value(v.occurrences);
        m_json.key("parent");
        m_json.textOrNull(v.parent);
        m_json.key("record");
        m_json.textOrNull(v.record);
        m_json.key("start");
        v.start > 0 ? m_json.value(v.start) : m_json.null();
        m_json.key("storage");
        m_json.value(storageName(v.storage));
        m_json.key("storageWidth");
        m_json.value(v.storageWidth);
        m_json.key("valueSets");
        writeValueSets(v.valueSets);
        m_json.key("width");
        m_json.value(v.width);
        m_json.key("zeroFill");
        m_json.value(v.zeroFill);
        m_json.endObject();
    }

    void writeVariables(const QVector<Variable> &variables)
    {
        m_json.beginArray();
        for (const Variable &v : variables) {
            m_json.element();
            writeVariable(v);
        }
        m_json.endArray();
    }

    const Codebook &m_codebook;
    JsonStream m_json;
};

} // namespace

QString storageName(Storage storage)
{
    switch (storage) {
    case Storage::Text: return QStringLiteral("text");
    case Storage::Binary: return QStringLiteral("binary");
    case Storage::Numeric: break;
    }
    return QStringLiteral("numeric");
}

QString measureName(Measure measure)
{
    switch (measure) {
    case Measure::Nominal: return QStringLiteral("nominal");
    case Measure::Ordinal: return QStringLiteral("ordinal");
    case Measure::Scale: return QStringLiteral("scale");
    case Measure::Unknown: break;
    }
    return QString();
}

QString alignmentName(Alignment alignment)
{
    switch (alignment) {
    case Alignment::Left: return QStringLiteral("left");
    case Alignment::Center: return QStringLiteral("center");
    case Alignment::Right: return QStringLiteral("right");
    case Alignment::Unknown: break;
    }
    return QString();
}

QJsonObject toJson(const Codebook &codebook)
{
    // The keys are described once, by the writer; the object is its text read back.
    QByteArray text;
    QBuffer buffer(&text);
    buffer.open(QIODevice::WriteOnly);
    writeJson(codebook, &buffer);
    return QJsonDocument::fromJson(text).object();
}

bool writeJson(const Codebook &codebook, QIODevice *device, QString *error)
{
    auto fail = [error](const QString &message) {
        if (error)
            *error = message;
        return false;
    };
    if (!device || !device->isWritable())
        return fail(QStringLiteral("the codebook's JSON cannot be written: the device is not open for writing"));
    JsonWriter writer(codebook, device);
    if (!writer.write())
        return fail(QStringLiteral("the codebook's JSON could not be written: %1").arg(device->errorString()));
    if (error)
        error->clear();
    return true;
}

void appendJsonString(QByteArray *out, const QString &text)
{
    constexpr int MaxBytesPerUnit = 6;  // \u00XX
    const int at = out->size();
    out->resize(at + 2 + MaxBytesPerUnit * text.size());
    char *begin = out->data() + at;
    *begin = '"';
    // unicode(), not utf16(): a text over raw data is read where it stands, not copied to end it.
    char *end = putJsonEscaped(begin + 1, reinterpret_cast<const ushort *>(text.unicode()), 0, text.size());
    *end++ = '"';
    out->resize(int(end - out->data()));
}

} // namespace KxCodebook

#include "JsonWriter.h"

#include <KxCodebookJson.h>

#include <QFileDevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>
#include <QTextStream>

#include <functional>

namespace kxinspect {

namespace {

//! A text, or null when it is empty (unknown).
QJsonValue textOrNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(text);
}

QJsonObject jsonOfFileMetadata(const FileMetadata &m)
{
    QJsonObject out;
    out.insert(QStringLiteral("rowCount"), m.rowCount < 0 ? QJsonValue(QJsonValue::Null) : QJsonValue(m.rowCount));
    out.insert(QStringLiteral("formatVersion"),
               m.formatVersion > 0 ? QJsonValue(m.formatVersion) : QJsonValue(QJsonValue::Null));
    out.insert(QStringLiteral("encoding"), textOrNull(m.encoding));
    out.insert(QStringLiteral("byteOrder"), textOrNull(m.byteOrder));
    out.insert(QStringLiteral("creationTime"), textOrNull(m.creationTime));
    out.insert(QStringLiteral("label"), m.label);
    return out;
}

QJsonObject jsonOfSource(const SourceDescription &source)
{
    QJsonObject root;
    root.insert(QStringLiteral("file"), source.file);
    root.insert(QStringLiteral("format"), source.format);
    root.insert(QStringLiteral("formatDetected"), source.formatDetected);
    root.insert(QStringLiteral("providerId"), source.providerId);
    root.insert(QStringLiteral("providerType"), source.providerType);
    root.insert(QStringLiteral("descriptionType"), source.descriptionType);
    root.insert(QStringLiteral("recordTypeStart"), source.recordTypeStart);
    root.insert(QStringLiteral("recordTypeLength"), source.recordTypeLength);
    if (source.metadata.present)
        root.insert(QStringLiteral("fileMetadata"), jsonOfFileMetadata(source.metadata));
    return root;
}

QJsonArray jsonOfGroups(const QList<GroupRow> &groups)
{
    QJsonArray out;
    for (const GroupRow &g : groups)
        out.append(QJsonObject{{QStringLiteral("name"), g.name}, {QStringLiteral("recordType"), g.recordType}});
    return out;
}

QJsonObject jsonOfField(const FieldRow &f)
{
    QJsonObject jf;
    jf.insert(QStringLiteral("name"), f.name);
    jf.insert(QStringLiteral("label"), f.label);
    jf.insert(QStringLiteral("type"), f.type);
    jf.insert(QStringLiteral("start"), f.start);
    jf.insert(QStringLiteral("size"), f.size);
    jf.insert(QStringLiteral("decimals"), f.decimals);
    jf.insert(QStringLiteral("minimum"), f.minimum);
    jf.insert(QStringLiteral("maximum"), f.maximum);
    jf.insert(QStringLiteral("missingCode"), f.missingCode);
    jf.insert(QStringLiteral("notApplicableCode"), f.notApplicableCode);
    jf.insert(QStringLiteral("group"), f.group);
    QJsonArray labels;
    for (const ValueLabel &vl : valueLabelsOf(f))
        labels.append(QJsonObject{{QStringLiteral("code"), vl.code}, {QStringLiteral("label"), vl.label}});
    jf.insert(QStringLiteral("valueLabels"), labels);
    return jf;
}

//! With \a longArrays false, the long arrays are left empty (streamedArrays() lists them).
QJsonObject jsonOfDictionary(const InspectReport &report, bool longArrays)
{
    QJsonObject root = jsonOfSource(report.source);
    root.insert(QStringLiteral("groups"), jsonOfGroups(report.groups));
    QJsonArray fields;
    for (int i = 0; longArrays && i < report.fields.size(); ++i)
        fields.append(jsonOfField(report.fields.at(i)));
    root.insert(QStringLiteral("fields"), fields);
    return root;
}

QJsonObject jsonOfLookup(const LookupResult &lookup, bool longArrays)
{
    QJsonObject root;
    root.insert(QStringLiteral("file"), lookup.file);
    root.insert(QStringLiteral("separator"), lookup.separator);
    root.insert(QStringLiteral("checks"), lookup.checks);
    root.insert(QStringLiteral("maxMessages"), lookup.maxMessages);
    root.insert(QStringLiteral("lines"), lookup.lines);
    root.insert(QStringLiteral("entries"), lookup.entries);
    root.insert(QStringLiteral("messages"), longArrays ? QJsonArray::fromStringList(lookup.messages) : QJsonArray());
    QJsonArray frequencies;
    for (int i = 0; longArrays && i < lookup.labelFrequencies.size(); ++i) {
        const auto &f = lookup.labelFrequencies.at(i);
        frequencies.append(QJsonObject{{QStringLiteral("label"), f.first}, {QStringLiteral("count"), f.second}});
    }
    root.insert(QStringLiteral("labelFrequencies"), frequencies);
    return root;
}

QJsonObject jsonOfNote(const NoteRow &n)
{
    return QJsonObject{{QStringLiteral("line"), n.line},
                       {QStringLiteral("subject"), n.subject},
                       {QStringLiteral("kind"), n.kind},
                       {QStringLiteral("text"), n.text}};
}

QJsonArray jsonOfNotes(const QList<NoteRow> &notes)
{
    QJsonArray out;
    for (const NoteRow &n : notes)
        out.append(jsonOfNote(n));
    return out;
}

QJsonObject reportObject(const InspectReport &report, const WriteSettings &settings, bool longArrays)
{
    QJsonObject root = report.kind == InspectReport::Kind::Lookup ? jsonOfLookup(report.lookup, longArrays)
                                                                  : jsonOfDictionary(report, longArrays);
    root.insert(QStringLiteral("schemaVersion"), JsonSchemaVersion);
    if (settings.notes)
        root.insert(QStringLiteral("notes"), longArrays ? jsonOfNotes(report.notes) : QJsonArray());
    return root;
}

} // namespace

QJsonObject jsonOfReport(const InspectReport &report, const WriteSettings &settings)
{
    return reportObject(report, settings, true);
}

namespace {

/* The report's long arrays are streamed: the rest of the document is made by
 * Qt with those arrays left empty, and each element is made by Qt alone and
 * put in place with its indentation. A JSON text holds no raw line feed
 * inside a string, so shifting its lines is exact and the document is byte
 * for byte what Qt makes of jsonOfReport(); only one element is held at a
 * time. */
struct StreamedArray
{
    QString key;
    int count;
    std::function<QJsonValue(int)> element;
    //! The element's text, when it is written without Qt: must equal arrayElementText(element(i)).
    std::function<QByteArray(int)> elementText = nullptr;
};

/*! Calls \a each(code, label) for every value label of \a f, in order, as
 * valueLabelsOf() gives them; the importer's text is not copied: the texts
 * handed over share its characters and live only during the call. */
template <typename Each>
void forEachValueLabel(const FieldRow &f, Each each)
{
    if (!f.valueLabels.isEmpty()) {
        for (const ValueLabel &vl : f.valueLabels)
            each(vl.code, vl.label);
        return;
    }
    const QString &text = f.valueLabelText;
    for (int from = 0; from < text.size();) {
        int end = text.indexOf(QLatin1Char('\t'), from);
        if (end < 0)
            end = text.size();
        const int length = end - from;
        if (length > 0) {
            const QChar *entry = text.constData() + from;
            const int blank = QStringRef(&text, from, length).indexOf(QLatin1Char(' '));
            if (blank < 0)
                each(QString::fromRawData(entry, length), QString());
            else
                each(QString::fromRawData(entry, blank), QString::fromRawData(entry + blank + 1, length - blank - 1));
        }
        from = end + 1;
    }
}

/* A field as Qt writes it as an element of the report's "fields", keys in
 * Qt's order, without building a QJsonObject: the fields are most of a
 * dictionary's report, and their value labels most of the fields. */
QByteArray fieldElementText(const FieldRow &f)
{
    QByteArray out;
    out.reserve(400 + 2 * f.valueLabelText.size() + 100 * f.valueLabels.size());
    const auto key = [&out](const char *name) {
        out += "            \"";
        out += name;
        out += "\": ";
    };
    const auto text = [&out, &key](const char *name, const QString &value) {
        key(name);
        KxCodebook::appendJsonString(&out, value);
        out += ",\n";
    };
    const auto number = [&out, &key](const char *name, int value) {
        key(name);
        out += QByteArray::number(value);
        out += ",\n";
    };
    out += "        {\n";
    number("decimals", f.decimals);
    text("group", f.group);
    text("label", f.label);
    text("maximum", f.maximum);
    text("minimum", f.minimum);
    text("missingCode", f.missingCode);
    text("name", f.name);
    text("notApplicableCode", f.notApplicableCode);
    number("size", f.size);
    number("start", f.start);
    text("type", f.type);
    key("valueLabels");
    out += "[\n";
    bool first = true;
    forEachValueLabel(f, [&out, &first](const QString &code, const QString &label) {
        out += first ? "                {\n                    \"code\": " : ",\n                {\n                    \"code\": ";
        first = false;
        KxCodebook::appendJsonString(&out, code);
        out += ",\n                    \"label\": ";
        KxCodebook::appendJsonString(&out, label);
        out += "\n                }";
    });
    out += first ? "            ]\n        }" : "\n            ]\n        }";
    return out;
}

QList<StreamedArray> streamedArrays(const InspectReport &report, const WriteSettings &settings)
{
    QList<StreamedArray> arrays;
    if (report.kind == InspectReport::Kind::Lookup) {
        const LookupResult &lookup = report.lookup;
        arrays << StreamedArray{QStringLiteral("messages"), int(lookup.messages.size()),
                                [&lookup](int i) { return QJsonValue(lookup.messages.at(i)); }};
        arrays << StreamedArray{QStringLiteral("labelFrequencies"), int(lookup.labelFrequencies.size()),
                                [&lookup](int i) {
                                    const auto &f = lookup.labelFrequencies.at(i);
                                    return QJsonValue(QJsonObject{{QStringLiteral("label"), f.first},
                                                                  {QStringLiteral("count"), f.second}});
                                }};
    } else {
        arrays << StreamedArray{QStringLiteral("fields"), int(report.fields.size()),
                                [&report](int i) { return QJsonValue(jsonOfField(report.fields.at(i))); },
                                [&report](int i) { return fieldElementText(report.fields.at(i)); }};
    }
    if (settings.notes)
        arrays << StreamedArray{QStringLiteral("notes"), int(report.notes.size()),
                                [&report](int i) { return QJsonValue(jsonOfNote(report.notes.at(i))); }};
    return arrays;
}

//! \a value as Qt writes it as an element of a top-level array: indented by 8 spaces, no line feed at the end.
QByteArray arrayElementText(const QJsonValue &value)
{
    const QByteArray wrapped = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Indented);
    // "[\n" + the element at an indentation of 4 + "\n]\n"
    QByteArray element = wrapped.mid(2, wrapped.size() - 5);
    element.replace("\n", "\n    ");
    return "    " + element;
}

//! Bytes to the stream's device in large writes, or to the stream itself when it has no device.
class ReportSink
{
public:
    explicit ReportSink(QTextStream &out) : m_out(out) { m_out.flush(); }
    ~ReportSink() { flush(); }

    void add(const QByteArray &bytes)
    {
        m_pending += bytes;
        if (m_pending.size() >= 1 << 16)
            flush();
    }

    void flush()
    {
        if (m_pending.isEmpty())
            return;
        if (QIODevice *device = m_out.device())
            device->write(m_pending);
        else
            m_out << QString::fromUtf8(m_pending);
        m_pending.clear();
    }

private:
    QTextStream &m_out;
    QByteArray m_pending;
};

} // namespace

void writeJsonReport(const InspectReport &report, const WriteSettings &settings, QTextStream &out)
{
    const QList<StreamedArray> arrays = streamedArrays(report, settings);
    const QByteArray text = QJsonDocument(reportObject(report, settings, false)).toJson(QJsonDocument::Indented);
    // Each streamed array stands in the skeleton as a top-level key with an empty array.
    QMap<int, const StreamedArray *> places;
    for (const StreamedArray &array : arrays) {
        const QByteArray empty = "\n    \"" + array.key.toUtf8() + "\": [\n    ]";
        const int at = text.indexOf(empty);
        if (at < 0) {  // not where it should be: the whole document at once, then
            out << QString::fromUtf8(QJsonDocument(jsonOfReport(report, settings)).toJson(QJsonDocument::Indented));
            out.flush();
            return;
        }
        places.insert(at + empty.size() - 6, &array);
    }
    ReportSink sink(out);
    int done = 0;
    for (auto it = places.cbegin(); it != places.cend(); ++it) {
        const StreamedArray &array = *it.value();
        if (array.count == 0)
            continue;
        sink.add(text.mid(done, it.key() - done));  // up to the array's "\n    ]"
        for (int i = 0; i < array.count; ++i) {
            sink.add(i == 0 ? QByteArrayLiteral("\n") : QByteArrayLiteral(",\n"));
            sink.add(array.elementText ? array.elementText(i) : arrayElementText(array.element(i)));
        }
        done = it.key();
    }
    sink.add(text.mid(done));
    sink.flush();
    if (auto *file = qobject_cast<QFileDevice *>(out.device()))
        file->flush();
}

} // namespace kxinspect

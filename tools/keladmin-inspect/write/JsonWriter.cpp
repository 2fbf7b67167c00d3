#include "JsonWriter.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTextStream>

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
    for (const ValueLabel &vl : f.valueLabels)
        labels.append(QJsonObject{{QStringLiteral("code"), vl.code}, {QStringLiteral("label"), vl.label}});
    jf.insert(QStringLiteral("valueLabels"), labels);
    return jf;
}

QJsonObject jsonOfDictionary(const InspectReport &report)
{
    QJsonObject root = jsonOfSource(report.source);
    root.insert(QStringLiteral("groups"), jsonOfGroups(report.groups));
    QJsonArray fields;
    for (const FieldRow &f : report.fields)
        fields.append(jsonOfField(f));
    root.insert(QStringLiteral("fields"), fields);
    return root;
}

QJsonObject jsonOfLookup(const LookupResult &lookup)
{
    QJsonObject root;
    root.insert(QStringLiteral("file"), lookup.file);
    root.insert(QStringLiteral("separator"), lookup.separator);
    root.insert(QStringLiteral("checks"), lookup.checks);
    root.insert(QStringLiteral("maxMessages"), lookup.maxMessages);
    root.insert(QStringLiteral("lines"), lookup.lines);
    root.insert(QStringLiteral("entries"), lookup.entries);
    root.insert(QStringLiteral("messages"), QJsonArray::fromStringList(lookup.messages));
    QJsonArray frequencies;
    for (const auto &f : lookup.labelFrequencies)
        frequencies.append(QJsonObject{{QStringLiteral("label"), f.first}, {QStringLiteral("count"), f.second}});
    root.insert(QStringLiteral("labelFrequencies"), frequencies);
    return root;
}

QJsonArray jsonOfNotes(const QList<NoteRow> &notes)
{
    QJsonArray out;
    for (const NoteRow &n : notes)
        out.append(QJsonObject{{QStringLiteral("line"), n.line},
                               {QStringLiteral("subject"), n.subject},
                               {QStringLiteral("kind"), n.kind},
                               {QStringLiteral("text"), n.text}});
    return out;
}

} // namespace

QJsonObject jsonOfReport(const InspectReport &report, const WriteSettings &settings)
{
    QJsonObject root =
        report.kind == InspectReport::Kind::Lookup ? jsonOfLookup(report.lookup) : jsonOfDictionary(report);
    root.insert(QStringLiteral("schemaVersion"), JsonSchemaVersion);
    if (settings.notes)
        root.insert(QStringLiteral("notes"), jsonOfNotes(report.notes));
    return root;
}

void writeJsonReport(const InspectReport &report, const WriteSettings &settings, QTextStream &out)
{
    out << QString::fromUtf8(QJsonDocument(jsonOfReport(report, settings)).toJson(QJsonDocument::Indented));
    out.flush();
}

} // namespace kxinspect

#include "KxCodebookJson.h"

#include <QJsonArray>

namespace KxCodebook {

namespace {

QJsonValue textOrNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

QJsonValue positiveOrNull(qint64 n)
{
    return n > 0 ? QJsonValue(double(n)) : QJsonValue();
}

QJsonArray jsonOfLabels(const Labels &labels)
{
    return QJsonArray::fromStringList(labels.texts);
}

QJsonArray jsonOfOccurrenceLabels(const QVector<OccurrenceLabel> &labels)
{
    QJsonArray array;
    for (const OccurrenceLabel &l : labels)
        array.append(QJsonObject{{QStringLiteral("occurrence"), l.occurrence},
                                 {QStringLiteral("labels"), jsonOfLabels(l.labels)}});
    return array;
}

QJsonObject jsonOfCode(const Code &code)
{
    QJsonObject o{{QStringLiteral("from"), code.from}};
    if (code.isRange)
        o.insert(QStringLiteral("to"), code.to);
    return o;
}

QJsonObject jsonOfValue(const Value &value)
{
    QJsonArray codes;
    for (const Code &c : value.codes)
        codes.append(jsonOfCode(c));
    return QJsonObject{{QStringLiteral("codes"), codes},
                       {QStringLiteral("labels"), jsonOfLabels(value.labels)},
                       {QStringLiteral("special"), textOrNull(specialName(value.special))},
                       {QStringLiteral("note"), textOrNull(value.note)},
                       {QStringLiteral("image"), textOrNull(value.image)}};
}

QJsonObject jsonOfValueSet(const ValueSet &set)
{
    QJsonArray values;
    for (const Value &v : set.values)
        values.append(jsonOfValue(v));
    return QJsonObject{{QStringLiteral("name"), set.name},
                       {QStringLiteral("labels"), jsonOfLabels(set.labels)},
                       {QStringLiteral("link"), textOrNull(set.link)},
                       {QStringLiteral("linkFilled"), set.linkFilled},
                       {QStringLiteral("values"), values}};
}

QJsonObject jsonOfMissing(const MissingValue &m)
{
    QJsonObject o{{QStringLiteral("from"), m.from},
                  {QStringLiteral("special"), textOrNull(specialName(m.special))},
                  {QStringLiteral("label"), textOrNull(m.label)}};
    if (m.isRange)
        o.insert(QStringLiteral("to"), m.to);
    return o;
}

QJsonObject jsonOfPlace(const Variable &v)
{
    return QJsonObject{{QStringLiteral("record"), textOrNull(v.record)},
                       {QStringLiteral("level"), v.level},
                       {QStringLiteral("isId"), v.isId},
                       {QStringLiteral("start"), positiveOrNull(v.start)},
                       {QStringLiteral("width"), v.width},
                       {QStringLiteral("occurrences"), v.occurrences},
                       {QStringLiteral("occurrenceLabels"), jsonOfOccurrenceLabels(v.occurrenceLabels)},
                       {QStringLiteral("isSubitem"), v.isSubitem},
                       {QStringLiteral("parent"), textOrNull(v.parent)}};
}

QJsonObject jsonOfFormat(const Variable &v)
{
    return QJsonObject{{QStringLiteral("format"), textOrNull(v.format)},
                       {QStringLiteral("storageWidth"), v.storageWidth},
                       {QStringLiteral("displayWidth"), v.displayWidth},
                       {QStringLiteral("measure"), textOrNull(measureName(v.measure))},
                       {QStringLiteral("alignment"), textOrNull(alignmentName(v.alignment))},
                       {QStringLiteral("labelSet"), textOrNull(v.labelSet)}};
}

QJsonObject jsonOfVariable(const Variable &v)
{
    QJsonObject o{{QStringLiteral("name"), v.name},
                  {QStringLiteral("labels"), jsonOfLabels(v.labels)},
                  {QStringLiteral("note"), textOrNull(v.note)},
                  {QStringLiteral("storage"), storageName(v.storage)},
                  {QStringLiteral("contentType"), textOrNull(v.contentType)},
                  {QStringLiteral("decimals"), v.decimals},
                  {QStringLiteral("decimalMark"), v.decimalMark},
                  {QStringLiteral("zeroFill"), v.zeroFill}};
    for (const QJsonObject &part : {jsonOfPlace(v), jsonOfFormat(v)}) {
        for (auto it = part.begin(); it != part.end(); ++it)
            o.insert(it.key(), it.value());
    }
    QJsonArray sets;
    for (const ValueSet &s : v.valueSets)
        sets.append(jsonOfValueSet(s));
    QJsonArray missing;
    for (const MissingValue &m : v.missing)
        missing.append(jsonOfMissing(m));
    o.insert(QStringLiteral("valueSets"), sets);
    o.insert(QStringLiteral("missing"), missing);
    return o;
}

QJsonObject jsonOfRecord(const Record &r)
{
    return QJsonObject{{QStringLiteral("name"), r.name},
                       {QStringLiteral("labels"), jsonOfLabels(r.labels)},
                       {QStringLiteral("level"), r.level},
                       {QStringLiteral("typeValue"), r.typeValue},
                       {QStringLiteral("required"), r.required},
                       {QStringLiteral("maxOccurrences"), r.maxOccurrences},
                       {QStringLiteral("length"), r.length},
                       {QStringLiteral("occurrenceLabels"), jsonOfOccurrenceLabels(r.occurrenceLabels)}};
}

QJsonArray jsonOfLanguages(const QVector<Language> &languages)
{
    QJsonArray array;
    for (const Language &l : languages)
        array.append(QJsonObject{{QStringLiteral("name"), l.name}, {QStringLiteral("label"), l.label}});
    return array;
}

QJsonObject jsonOfDataSet(const Codebook &c)
{
    return QJsonObject{
        {QStringLiteral("schemaVersion"), CodebookJsonSchemaVersion},
        {QStringLiteral("kind"), QStringLiteral("codebook")},
        {QStringLiteral("file"), c.fileName()},
        {QStringLiteral("format"), formatName(c.format())},
        {QStringLiteral("formatVersion"), textOrNull(c.formatVersion())},
        {QStringLiteral("encoding"), textOrNull(c.encoding())},
        {QStringLiteral("name"), textOrNull(c.name())},
        {QStringLiteral("labels"), jsonOfLabels(c.labels())},
        {QStringLiteral("languages"), jsonOfLanguages(c.languages())},
        {QStringLiteral("rowCount"), c.rowCount() >= 0 ? QJsonValue(double(c.rowCount())) : QJsonValue()},
        {QStringLiteral("created"), c.created().isValid()
                                        ? QJsonValue(c.created().toString(Qt::ISODate))
                                        : QJsonValue()},
        {QStringLiteral("recordType"), QJsonObject{{QStringLiteral("start"), c.recordTypeStart()},
                                                   {QStringLiteral("length"), c.recordTypeLength()}}},
        {QStringLiteral("relativePositions"), c.relativePositions()}};
}

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
    QJsonObject o = jsonOfDataSet(codebook);
    QJsonArray levels;
    for (const Level &l : codebook.levels())
        levels.append(QJsonObject{{QStringLiteral("name"), l.name}, {QStringLiteral("labels"), jsonOfLabels(l.labels)}});
    QJsonArray records;
    for (const Record &r : codebook.records())
        records.append(jsonOfRecord(r));
    QJsonArray variables;
    for (const Variable &v : codebook.variables())
        variables.append(jsonOfVariable(v));
    o.insert(QStringLiteral("levels"), levels);
    o.insert(QStringLiteral("records"), records);
    o.insert(QStringLiteral("variables"), variables);
    return o;
}

} // namespace KxCodebook

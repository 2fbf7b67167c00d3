// CSPro 8's JSON dictionary, read as CSPro reads it: the document is parsed
// once, then walked level by level. A level, record, item, value set or value
// that CSPro would skip (with a warning) is skipped here too; only a broken
// document or a broken dictionary header is an error.

#include "CodebookReaders_p.h"
#include "CSProLayout_p.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QJsonValue>
#include <QLocale>
#include <QMap>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace KxCodebook {
namespace detail {
namespace {

// A number outside the shared bounds (CSProLayout_p.h) makes the item (or
// record) a bad one, which CSPro skips.
constexpr int kMaxOccurrences = int(MaxOccurrences);
constexpr int kMaxLength = int(MaxWidth);
constexpr int kMaxDecimals = int(MaxDecimals);
constexpr int kMaxStart = int(MaxStart);
// Missing values copied from linked value sets into variables that carry several sets.
constexpr int kMaxCopiedMissingValues = 1000000;

QLatin1String key(const char *name)
{
    return QLatin1String(name);
}

// A JSON number as CSPro would have written it as text: 8 and 8.0 give "8", 8.1 gives "8.1".
QString numberText(double number)
{
    if (std::floor(number) == number && std::fabs(number) < 1e15)
        return QString::number(qint64(number));
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

// How a value looks in an error message.
QString describe(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Double: return numberText(value.toDouble());
    case QJsonValue::String: return QLatin1Char('"') + value.toString() + QLatin1Char('"');
    case QJsonValue::Bool: return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QJsonValue::Null: return QStringLiteral("null");
    case QJsonValue::Array: return QStringLiteral("an array");
    case QJsonValue::Object: return QStringLiteral("an object");
    case QJsonValue::Undefined: break;
    }
    return QStringLiteral("missing");
}

// A whole JSON number from min to max; 3.7, 1e308 and text are refused.
bool readWhole(const QJsonValue &value, int min, int max, int *out)
{
    if (!value.isDouble())
        return false;
    const double d = value.toDouble();
    if (!(d >= min && d <= max) || std::floor(d) != d)
        return false;
    *out = int(d);
    return true;
}

// Text, or a number converted to text (CSPro accepts both where it expects text).
bool readText(const QJsonValue &value, QString *out)
{
    if (value.isString())
        *out = value.toString();
    else if (value.isDouble())
        *out = numberText(value.toDouble());
    else
        return false;
    return true;
}

// Absent leaves \a out as it is; present must be text or a number.
bool readOptionalText(const QJsonValue &value, QString *out)
{
    if (value.isUndefined())
        return true;
    return readText(value, out);
}

QString rightTrimmed(const QString &text)
{
    int end = text.size();
    while (end > 0 && text.at(end - 1).isSpace())
        --end;
    return end == text.size() ? text : text.left(end);
}

bool readContentType(const QJsonValue &value, QString *contentType, Storage *storage)
{
    // The names are shared by every item rather than copied into each.
    struct Known { QString name; Storage storage; };
    static const Known known[] = {
        {QStringLiteral("numeric"), Storage::Numeric}, {QStringLiteral("alpha"), Storage::Text},
        {QStringLiteral("audio"), Storage::Binary}, {QStringLiteral("document"), Storage::Binary},
        {QStringLiteral("geometry"), Storage::Binary}, {QStringLiteral("image"), Storage::Binary},
    };
    if (value.isUndefined()) {
        *contentType = known[0].name;
        *storage = known[0].storage;
        return true;
    }
    const QString type = value.toString();
    for (const Known &k : known) {
        if (type.size() == k.name.size() && (type == k.name || type.compare(k.name, Qt::CaseInsensitive) == 0)) {
            *contentType = k.name;
            *storage = k.storage;
            return true;
        }
    }
    return false;
}

Special specialFromName(const QJsonValue &value)
{
    const QString name = value.toString();
    if (name.compare(QLatin1String("MISSING"), Qt::CaseInsensitive) == 0)
        return Special::Missing;
    if (name.compare(QLatin1String("NOTAPPL"), Qt::CaseInsensitive) == 0)
        return Special::NotAppl;
    if (name.compare(QLatin1String("DEFAULT"), Qt::CaseInsensitive) == 0)
        return Special::Default;
    if (name.compare(QLatin1String("REFUSED"), Qt::CaseInsensitive) == 0)
        return Special::Refused;
    return Special::None;  // CSPro warns and keeps the value as an ordinary one
}

Error failure(Error::Kind kind, const QString &fileName, const QString &message, int line = 0)
{
    Error e;
    e.kind = kind;
    e.message = fileName.isEmpty() ? message : fileName + QStringLiteral(": ") + message;
    e.line = line;
    return e;
}

// The members of one JSON object that the reader asks for. The object is
// gone through once, key by key: cheaper than a search for each key the
// format allows, most of which an object does not hold. This keeps the walk
// cheap next to the parsing. A key the reader does not know is ignored.
template <int N>
class Members
{
public:
    Members(const QJsonObject &object, const QLatin1String (&names)[N])
        : m_begin(object.constBegin())
    {
        std::fill(std::begin(m_position), std::end(m_position), -1);
        const int count = object.size();
        auto it = m_begin;
        for (int position = 0; position < count; ++position, ++it) {
            const int member = indexOf(it.key(), names);
            if (member >= 0)
                m_position[member] = position;
        }
    }
    Members(QJsonObject &&, const QLatin1String (&)[N]) = delete;  // it must outlive the members
    Members(const Members &) = delete;
    Members &operator=(const Members &) = delete;

    //! The member's value; undefined when the object does not hold it.
    QJsonValue operator[](int member) const
    {
        return m_position[member] < 0 ? QJsonValue(QJsonValue::Undefined) : (m_begin + m_position[member]).value();
    }

private:
    static int indexOf(const QString &key, const QLatin1String (&names)[N])
    {
        for (int i = 0; i < N; ++i) {
            if (equals(key, names[i]))
                return i;
        }
        return -1;
    }

    static bool equals(const QString &key, QLatin1String name)
    {
        if (key.size() != name.size())
            return false;
        const QChar *k = key.constData();
        for (int i = 0; i < name.size(); ++i) {
            if (k[i].unicode() != static_cast<uchar>(name.data()[i]))
                return false;
        }
        return true;
    }

    const QJsonObject::const_iterator m_begin;
    int m_position[N];
};

// The members read from each kind of object.
enum ItemMember {
    ItemName, ItemLabels, ItemContentType, ItemStart, ItemLength, ItemZeroFill, ItemValueSets, ItemSubitem,
    ItemSubitemOffset, ItemOccurrences, ItemDecimals, ItemDecimalMark, ItemNote, ItemMemberCount
};
const QLatin1String kItemMembers[ItemMemberCount] = {
    QLatin1String("name"), QLatin1String("labels"), QLatin1String("contentType"), QLatin1String("start"),
    QLatin1String("length"), QLatin1String("zeroFill"), QLatin1String("valueSets"), QLatin1String("subitem"),
    QLatin1String("subitemOffset"), QLatin1String("occurrences"), QLatin1String("decimals"),
    QLatin1String("decimalMark"), QLatin1String("note")
};
using ItemJson = Members<ItemMemberCount>;

enum ValueSetMember { SetName, SetLabels, SetValues, SetLink, SetMemberCount };
const QLatin1String kValueSetMembers[SetMemberCount] = {
    QLatin1String("name"), QLatin1String("labels"), QLatin1String("values"), QLatin1String("link")
};

enum ValueMember { ValueLabels, ValuePairs, ValueSpecial, ValueNote, ValueImage, ValueMemberCount };
const QLatin1String kValueMembers[ValueMemberCount] = {
    QLatin1String("labels"), QLatin1String("pairs"), QLatin1String("special"), QLatin1String("note"),
    QLatin1String("image")
};

enum PairMember { PairValue, PairRange, PairMemberCount };
const QLatin1String kPairMembers[PairMemberCount] = {QLatin1String("value"), QLatin1String("range")};

enum LabelMember { LabelText, LabelLanguage, LabelMemberCount };
const QLatin1String kLabelMembers[LabelMemberCount] = {QLatin1String("text"), QLatin1String("language")};

enum RecordMember { RecordName, RecordLabels, RecordType, RecordOccurrences, RecordMemberCount };
const QLatin1String kRecordMembers[RecordMemberCount] = {
    QLatin1String("name"), QLatin1String("labels"), QLatin1String("recordType"), QLatin1String("occurrences")
};

// Where the items of one record (or a level's identification items) are laid out.
struct ItemPlacement
{
    int level = 1;
    QString record;               // empty for identification items
    bool isId = false;
    bool computeStarts = false;   // relative positions: an item without "start" follows the previous one
    qint64 nextStart = 1;
    bool hasParent = false;       // the last item that is not a subitem was read
    QString parentName;
    int parentStart = 0;
};

// One level while it is read: identification items first (for every level),
// then the records, whose relative starts depend on all levels' identifiers.
struct LevelRead
{
    Level level;
    QJsonObject json;
    QVector<Variable> ids;
};

class JsonDictionaryReader
{
public:
    JsonDictionaryReader(const QJsonObject &root, const QString &fileName)
        : m_root(root), m_fileName(fileName)
    {
    }

    Codebook read(Error *error);

private:
    bool readHeader(Codebook *book, Error *error);
    bool readRecordType(Error *error);
    void readLanguages();
    Labels readLabels(const QJsonValue &value) const;
    int languageIndex(const QJsonValue &language) const;
    QVector<OccurrenceLabel> readOccurrenceLabels(const QJsonValue &value, int maximum) const;

    QVector<LevelRead> readLevels() const;
    qint64 lastCommonColumn(const QVector<LevelRead> &levels) const;
    void readRecords(const QJsonObject &level, int levelNumber, qint64 firstItemColumn,
                     QVector<Record> *records, QVector<Variable> *items) const;
    bool readRecord(const QJsonObject &json, int levelNumber, Record *record) const;

    void readItems(const QJsonValue &items, ItemPlacement *placement, QVector<Variable> *out) const;
    bool readItem(const ItemJson &json, ItemPlacement *placement, Variable *item) const;
    bool readItemShape(const ItemJson &json, Variable *item) const;
    bool readItemNumbers(const ItemJson &json, Variable *item) const;
    bool placeItem(const ItemJson &json, const ItemPlacement &placement, Variable *item) const;

    QVector<ValueSet> readValueSets(const QJsonValue &value, const Variable &item) const;
    bool readValueSet(const QJsonObject &json, const Variable &item, ValueSet *set) const;
    bool readValue(const QJsonObject &json, const Variable &item, Value *value) const;
    bool readPair(const QJsonValue &pair, const Variable &item, Special special, Code *code) const;
    QString normalizedCode(const QString &raw, const Variable &item, Special special, bool isFrom) const;

    bool fillMissingValues(QVector<Variable> *variables, Error *error) const;

    Error headerError(const QString &message) const
    {
        return failure(Error::Malformed, m_fileName, message);
    }

    QJsonObject m_root;
    QString m_fileName;
    QVector<Language> m_languages;
    QHash<QString, int> m_languageIndex;  // name as written and upper-cased -> index
    int m_recordTypeStart = 0;
    int m_recordTypeLength = 0;
    bool m_relative = false;
    bool m_defaultDecimalMark = false;
    bool m_defaultZeroFill = false;
};

// --- The dictionary --------------------------------------------------------

Codebook JsonDictionaryReader::read(Error *error)
{
    Codebook book;
    if (!readHeader(&book, error))
        return Codebook();

    QVector<LevelRead> levels = readLevels();
    const qint64 firstItemColumn = lastCommonColumn(levels) + 1;
    QVector<Level> bookLevels;
    QVector<Record> records;
    QVector<Variable> variables;
    for (int i = 0; i < levels.size(); ++i) {
        LevelRead &level = levels[i];
        bookLevels.append(level.level);
        for (Variable &id : level.ids)
            variables.append(std::move(id));
        readRecords(level.json, i + 1, firstItemColumn, &records, &variables);
    }
    levels.clear();
    detail::computeRecordLengths(&records, variables, m_recordTypeStart, m_recordTypeLength);
    detail::fillLinkedValueSets(&variables);
    if (!fillMissingValues(&variables, error))
        return Codebook();

    book.setLevels(bookLevels);
    book.setRecords(records);
    book.setVariables(variables);
    return book;
}

bool JsonDictionaryReader::readHeader(Codebook *book, Error *error)
{
    const QJsonValue fileType = m_root.value(key("fileType"));
    if (!fileType.isUndefined() && fileType.toString() != QLatin1String("dictionary")) {
        *error = headerError(QStringLiteral("\"fileType\" is %1; a dictionary has \"dictionary\"")
                                 .arg(describe(fileType)));
        return false;
    }
    if (!readRecordType(error))
        return false;
    const QJsonValue relative = m_root.value(key("relativePositions"));
    if (!relative.isBool()) {
        *error = headerError(QStringLiteral("\"relativePositions\" is %1; a dictionary must say true or false")
                                 .arg(describe(relative)));
        return false;
    }
    m_relative = relative.toBool();
    const QJsonObject defaults = m_root.value(key("defaults")).toObject();
    m_defaultDecimalMark = defaults.value(key("decimalMark")).toBool(false);
    m_defaultZeroFill = defaults.value(key("zeroFill")).toBool(false);
    readLanguages();

    book->setFileName(m_fileName);
    book->setFormat(Format::CSProJson);
    // The version as the file gives it: a number is written as CSPro would (8.0 -> "8").
    QString version;
    readText(m_root.value(key("version")), &version);
    book->setFormatVersion(version);
    book->setEncoding(QStringLiteral("UTF-8"));
    book->setName(m_root.value(key("name")).toString());
    book->setLabels(readLabels(m_root.value(key("labels"))));
    book->setLanguages(m_languages);
    book->setRecordType(m_recordTypeStart, m_recordTypeLength);
    book->setRelativePositions(m_relative);
    return true;
}

bool JsonDictionaryReader::readRecordType(Error *error)
{
    const QJsonValue recordType = m_root.value(key("recordType"));
    if (!recordType.isObject()) {
        *error = headerError(QStringLiteral("\"recordType\" is %1; a dictionary must give {\"start\", \"length\"}")
                                 .arg(describe(recordType)));
        return false;
    }
    const QJsonValue start = recordType.toObject().value(key("start"));
    const QJsonValue length = recordType.toObject().value(key("length"));
    if (!readWhole(start, 0, kMaxStart, &m_recordTypeStart)) {
        *error = headerError(QStringLiteral("\"recordType\".\"start\" is %1; it must be a whole number from 0 to %2")
                                 .arg(describe(start)).arg(kMaxStart));
        return false;
    }
    if (!readWhole(length, 0, kMaxLength, &m_recordTypeLength)) {
        *error = headerError(QStringLiteral("\"recordType\".\"length\" is %1; it must be a whole number from 0 to %2")
                                 .arg(describe(length)).arg(kMaxLength));
        return false;
    }
    return true;
}

// --- Languages and labels --------------------------------------------------

void JsonDictionaryReader::readLanguages()
{
    const QJsonArray languages = m_root.value(key("languages")).toArray();
    for (const QJsonValue entry : languages) {
        const QJsonObject json = entry.toObject();
        const QJsonValue name = json.value(key("name"));
        if (!name.isString())
            continue;
        Language language;
        language.name = name.toString();
        language.label = json.value(key("label")).toString();
        const int index = m_languages.size();
        // CSPro matches language names without regard to case; the first of two alike wins.
        if (!m_languageIndex.contains(language.name))
            m_languageIndex.insert(language.name, index);
        const QString upper = language.name.toUpper();
        if (!m_languageIndex.contains(upper))
            m_languageIndex.insert(upper, index);
        m_languages.append(language);
    }
    if (m_languages.isEmpty())
        m_languages.append(Language());
}

// The index of a label's language: 0 (the primary) without one, -1 for an unknown one.
int JsonDictionaryReader::languageIndex(const QJsonValue &language) const
{
    if (language.isUndefined() || language.isNull())
        return 0;
    const QString name = language.toString();
    if (name.isEmpty())
        return 0;
    const auto found = m_languageIndex.constFind(name);
    if (found != m_languageIndex.constEnd())
        return found.value();
    return m_languageIndex.value(name.toUpper(), -1);
}

Labels JsonDictionaryReader::readLabels(const QJsonValue &value) const
{
    Labels labels;
    QStringList &texts = labels.texts;
    int firstDefined = -1;
    const QJsonArray entries = value.toArray();
    for (const QJsonValue entry : entries) {
        if (!entry.isObject())
            continue;
        const QJsonObject object = entry.toObject();
        const Members<LabelMemberCount> json(object, kLabelMembers);
        int index = languageIndex(json[LabelLanguage]);
        if (index < 0) {
            // An unknown language: the primary label when it comes first, else discarded.
            if (!texts.isEmpty())
                continue;
            index = 0;
        }
        if (texts.size() == index) {
            texts.append(json[LabelText].toString());
        } else {
            while (texts.size() <= index)
                texts.append(QString());
            if (texts.at(index).isEmpty())
                texts[index] = json[LabelText].toString();
        }
        if (firstDefined < 0)
            firstDefined = index;
    }
    if (texts.size() > 1 && texts.first().isEmpty())
        texts[0] = texts.at(firstDefined);
    return labels;
}

QVector<OccurrenceLabel> JsonDictionaryReader::readOccurrenceLabels(const QJsonValue &value, int maximum) const
{
    QMap<int, Labels> byOccurrence;  // a later label of the same occurrence replaces the earlier one
    const QJsonArray entries = value.toArray();
    for (const QJsonValue entry : entries) {
        const QJsonObject json = entry.toObject();
        int occurrence = 0;
        if (!readWhole(json.value(key("occurrence")), 1, maximum, &occurrence))
            continue;
        const Labels labels = readLabels(json.value(key("labels")));
        if (!labels.primary().isEmpty())
            byOccurrence.insert(occurrence, labels);
    }
    QVector<OccurrenceLabel> result;
    result.reserve(byOccurrence.size());
    for (auto it = byOccurrence.constBegin(); it != byOccurrence.constEnd(); ++it) {
        OccurrenceLabel label;
        label.occurrence = it.key();
        label.labels = it.value();
        result.append(label);
    }
    return result;
}

// --- Levels and records ----------------------------------------------------

QVector<LevelRead> JsonDictionaryReader::readLevels() const
{
    QVector<LevelRead> levels;
    const QJsonArray entries = m_root.value(key("levels")).toArray();
    for (const QJsonValue entry : entries) {
        const QJsonObject json = entry.toObject();
        const QJsonValue name = json.value(key("name"));
        if (!name.isString() || name.toString().isEmpty())
            continue;
        LevelRead level;
        level.json = json;
        level.level.name = name.toString();
        level.level.labels = readLabels(json.value(key("labels")));
        ItemPlacement placement;
        placement.level = levels.size() + 1;
        placement.isId = true;
        readItems(json.value(key("ids")).toObject().value(key("items")), &placement, &level.ids);
        levels.append(level);
    }
    return levels;
}

// The last column of the record type and of every level's identification items:
// record items are laid out after it (level 1's records leave room for level 2's ids).
qint64 JsonDictionaryReader::lastCommonColumn(const QVector<LevelRead> &levels) const
{
    qint64 last = m_recordTypeLength > 0 ? qint64(m_recordTypeStart) + m_recordTypeLength - 1 : 0;
    for (const LevelRead &level : levels) {
        for (const Variable &id : level.ids)
            last = std::max(last, qint64(id.start) + qint64(id.span()) - 1);
    }
    return last;
}

void JsonDictionaryReader::readRecords(const QJsonObject &level, int levelNumber, qint64 firstItemColumn,
                                       QVector<Record> *records, QVector<Variable> *items) const
{
    const QJsonArray entries = level.value(key("records")).toArray();
    for (const QJsonValue entry : entries) {
        const QJsonObject json = entry.toObject();
        Record record;
        if (!readRecord(json, levelNumber, &record))
            continue;
        ItemPlacement placement;
        placement.level = levelNumber;
        placement.record = record.name;
        placement.computeStarts = m_relative;
        placement.nextStart = firstItemColumn;
        readItems(json.value(key("items")), &placement, items);
        records->append(record);
    }
}

bool JsonDictionaryReader::readRecord(const QJsonObject &object, int levelNumber, Record *record) const
{
    const Members<RecordMemberCount> json(object, kRecordMembers);
    const QJsonValue name = json[RecordName];
    if (!name.isString() || name.toString().isEmpty())
        return false;
    record->name = name.toString();
    record->labels = readLabels(json[RecordLabels]);
    record->level = levelNumber;
    if (!readOptionalText(json[RecordType], &record->typeValue))
        return false;
    // "occurrences" with "required" and "maximum" is mandatory for a record.
    const QJsonObject occurrences = json[RecordOccurrences].toObject();
    const QJsonValue required = occurrences.value(key("required"));
    if (!required.isBool())
        return false;
    record->required = required.toBool();
    if (!readWhole(occurrences.value(key("maximum")), 1, kMaxOccurrences, &record->maxOccurrences))
        return false;
    if (record->maxOccurrences > 1)
        record->occurrenceLabels = readOccurrenceLabels(occurrences.value(key("labels")), record->maxOccurrences);
    return true;
}

// --- Items -----------------------------------------------------------------

void JsonDictionaryReader::readItems(const QJsonValue &items, ItemPlacement *placement, QVector<Variable> *out) const
{
    const QJsonArray entries = items.toArray();
    for (const QJsonValue entry : entries) {
        const QJsonObject object = entry.toObject();
        out->resize(out->size() + 1);  // read in place: a Variable is large
        if (!readItem(ItemJson(object, kItemMembers), placement, &out->last()))
            out->removeLast();
    }
}

bool JsonDictionaryReader::readItem(const ItemJson &json, ItemPlacement *placement, Variable *item) const
{
    const bool typeKnown = readContentType(json[ItemContentType], &item->contentType, &item->storage);
    // Only text and numeric items can be subitems. A subitem belongs to the
    // nearest item before it; when that item was skipped, so are its subitems.
    item->isSubitem = typeKnown && item->storage != Storage::Binary && json[ItemSubitem].toBool(false);
    if (!item->isSubitem)
        placement->hasParent = false;
    else if (!placement->hasParent)
        return false;
    if (!typeKnown || !readItemShape(json, item))
        return false;
    item->record = placement->record;
    item->level = placement->level;
    item->isId = placement->isId;
    if (item->isSubitem)
        item->parent = placement->parentName;
    if (!placeItem(json, *placement, item))
        return false;
    if (item->storage != Storage::Binary)
        item->valueSets = readValueSets(json[ItemValueSets], *item);
    if (!item->isSubitem) {
        // Like CSPro, the next relative start moves on by the item's span even
        // when the item gives its own start.
        placement->nextStart += item->span();
        placement->hasParent = true;
        placement->parentName = item->name;
        placement->parentStart = item->start;
    }
    return true;
}

// Name, labels, occurrences, width and decimals: all but the content type and the position.
bool JsonDictionaryReader::readItemShape(const ItemJson &json, Variable *item) const
{
    const QJsonValue name = json[ItemName];
    if (!name.isString() || name.toString().isEmpty())
        return false;
    item->name = name.toString();
    item->labels = readLabels(json[ItemLabels]);
    item->note = json[ItemNote].toString();
    const QJsonValue occurrences = json[ItemOccurrences];
    if (!occurrences.isUndefined()) {
        const QJsonObject o = occurrences.toObject();
        if (!readWhole(o.value(key("maximum")), 1, kMaxOccurrences, &item->occurrences))
            return false;
        if (item->occurrences > 1)
            item->occurrenceLabels = readOccurrenceLabels(o.value(key("labels")), item->occurrences);
    }
    return readItemNumbers(json, item);
}

bool JsonDictionaryReader::readItemNumbers(const ItemJson &json, Variable *item) const
{
    if (item->storage == Storage::Binary) {
        item->width = 1;  // binary items take no columns of text; CSPro gives them length 1
        return true;
    }
    if (!readWhole(json[ItemLength], 1, kMaxLength, &item->width))
        return false;
    if (item->storage != Storage::Numeric)
        return true;
    const QJsonValue decimals = json[ItemDecimals];
    if (!decimals.isUndefined() && !readWhole(decimals, 0, kMaxDecimals, &item->decimals))
        return false;
    // CSPro requires "decimalMark" with decimals; without it we take the dictionary's default.
    if (item->decimals > 0)
        item->decimalMark = json[ItemDecimalMark].toBool(m_defaultDecimalMark);
    item->zeroFill = json[ItemZeroFill].toBool(m_defaultZeroFill);
    return true;
}

// The item's start: as given, or laid out after the previous item in a
// relative dictionary (a subitem at its parent's start plus its offset).
bool JsonDictionaryReader::placeItem(const ItemJson &json, const ItemPlacement &placement, Variable *item) const
{
    const QJsonValue start = json[ItemStart];
    if (!start.isUndefined())
        return readWhole(start, 1, kMaxStart, &item->start);
    if (!placement.computeStarts)
        return false;  // absolute dictionaries and identification items give every start
    qint64 computed = placement.nextStart;
    if (item->isSubitem) {
        int offset = 0;
        if (!readWhole(json[ItemSubitemOffset], 0, kMaxStart, &offset))
            return false;
        computed = qint64(placement.parentStart) + offset;
    }
    if (computed < 1 || computed > kMaxStart)
        return false;
    item->start = int(computed);
    return true;
}

// --- Value sets ------------------------------------------------------------

QVector<ValueSet> JsonDictionaryReader::readValueSets(const QJsonValue &value, const Variable &item) const
{
    QVector<ValueSet> sets;
    const QJsonArray entries = value.toArray();
    for (const QJsonValue entry : entries) {
        ValueSet set;
        if (readValueSet(entry.toObject(), item, &set))
            sets.append(std::move(set));
    }
    return sets;
}

bool JsonDictionaryReader::readValueSet(const QJsonObject &object, const Variable &item, ValueSet *set) const
{
    const Members<SetMemberCount> json(object, kValueSetMembers);
    const QJsonValue name = json[SetName];
    if (!name.isString())
        return false;
    set->name = name.toString();
    set->labels = readLabels(json[SetLabels]);
    if (!readOptionalText(json[SetLink], &set->link))
        return false;
    const QJsonArray values = json[SetValues].toArray();
    set->values.reserve(values.size());
    for (const QJsonValue entry : values) {
        Value value;
        if (readValue(entry.toObject(), item, &value))
            set->values.append(std::move(value));
    }
    return true;
}

// Every pair of a value becomes one of its codes; a value with a bad pair, or
// with none, is skipped.
bool JsonDictionaryReader::readValue(const QJsonObject &object, const Variable &item, Value *value) const
{
    const Members<ValueMemberCount> json(object, kValueMembers);
    const QJsonValue special = json[ValueSpecial];
    if (!special.isUndefined())
        value->special = specialFromName(special);
    const QJsonArray pairs = json[ValuePairs].toArray();
    if (pairs.isEmpty())
        return false;
    value->codes.reserve(pairs.size());
    for (const QJsonValue pair : pairs) {
        Code code;
        if (!readPair(pair, item, value->special, &code))
            return false;
        value->codes.append(code);
    }
    value->labels = readLabels(json[ValueLabels]);
    value->note = json[ValueNote].toString();
    value->image = json[ValueImage].toString();
    return true;
}

bool JsonDictionaryReader::readPair(const QJsonValue &pair, const Variable &item, Special special, Code *code) const
{
    const QJsonObject object = pair.toObject();
    const Members<PairMemberCount> json(object, kPairMembers);
    QString from;
    const QJsonValue single = json[PairValue];
    if (!single.isUndefined()) {
        if (!readText(single, &from))
            return false;
        code->from = normalizedCode(from, item, special, true);
        return true;
    }
    const QJsonArray range = json[PairRange].toArray();
    QString to;
    if (range.size() != 2 || !readText(range.at(0), &from) || !readText(range.at(1), &to))
        return false;
    code->from = normalizedCode(from, item, special, true);
    code->to = normalizedCode(to, item, special, false);
    code->isRange = true;
    return true;
}

// Alpha codes lose trailing blanks, numeric codes all blanks. A numeric
// NOTAPPL code whose length is not the item's width stands for a blank field,
// as CSPro normalises it.
QString JsonDictionaryReader::normalizedCode(const QString &raw, const Variable &item, Special special,
                                             bool isFrom) const
{
    if (item.storage == Storage::Text)
        return rightTrimmed(raw);
    if (special == Special::NotAppl && isFrom && raw.size() != item.width)
        return QString();
    return raw.trimmed();
}

// --- Missing values --------------------------------------------------------

// One missing value per code of every special value, in value-set order. A
// set filled from a linked one shares the linked set's list rather than
// copying it, so a hostile file cannot multiply them; the copies that a
// variable with several sets needs are counted and bounded.
bool JsonDictionaryReader::fillMissingValues(QVector<Variable> *variables, Error *error) const
{
    QHash<QString, QVector<MissingValue>> byLink;
    qint64 copiedFromLinks = 0;
    for (Variable &variable : *variables) {
        bool sharesALinkedList = false;
        for (const ValueSet &set : variable.valueSets) {
            QVector<MissingValue> missing;
            if (set.linkFilled) {
                missing = byLink.value(set.link);
            } else {
                missing = missingValuesOf(set);
                if (!set.link.isEmpty() && !byLink.contains(set.link))
                    byLink.insert(set.link, missing);
            }
            if (missing.isEmpty())
                continue;
            if (variable.missing.isEmpty()) {
                variable.missing = missing;
                sharesALinkedList = set.linkFilled;
                continue;
            }
            if (set.linkFilled || sharesALinkedList) {
                copiedFromLinks += missing.size() + (sharesALinkedList ? variable.missing.size() : 0);
                sharesALinkedList = false;
                if (copiedFromLinks > kMaxCopiedMissingValues) {
                    *error = failure(Error::LimitReached, m_fileName,
                                     QStringLiteral("item \"%1\": linked value sets repeat more than %2 "
                                                    "missing values in all")
                                         .arg(variable.name, QString::number(kMaxCopiedMissingValues)));
                    return false;
                }
            }
            variable.missing += missing;
        }
    }
    return true;
}

// The 1-based line and column of byte \a offset in \a data.
void lineAndColumn(const QByteArray &data, int offset, int *line, int *column)
{
    offset = std::max(0, std::min(offset, data.size()));
    int lastNewline = -1;
    int newlines = 0;
    for (int i = 0; i < offset; ++i) {
        if (data.at(i) == '\n') {
            ++newlines;
            lastNewline = i;
        }
    }
    *line = 1 + newlines;
    *column = offset - lastNewline;
}

} // namespace

Codebook readCSProJson(const QByteArray &data, const QString &fileName, Error *error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(data, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        int line = 0;
        int column = 0;
        lineAndColumn(data, parseError.offset, &line, &column);
        *error = failure(Error::Malformed, fileName,
                         QStringLiteral("invalid JSON at line %1, column %2: %3")
                             .arg(line).arg(column).arg(parseError.errorString()),
                         line);
        return Codebook();
    }
    if (!document.isObject()) {
        *error = failure(Error::Malformed, fileName,
                         QStringLiteral("the JSON document is an array, not a dictionary object"));
        return Codebook();
    }
    return JsonDictionaryReader(document.object(), fileName).read(error);
}

} // namespace detail
} // namespace KxCodebook

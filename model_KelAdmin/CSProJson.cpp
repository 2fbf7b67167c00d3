#include "CSProJson.h"

#include "CSProCodeNotes_p.h"
#include "KxConstants.h"
#include "KxText_p.h"
#include "KxTrace_p.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <string_view>

namespace {

// Positions are summed from file values; keep them inside int.
int clampToInt(qint64 v)
{
    return int(qBound(qint64(std::numeric_limits<int>::min()), v, qint64(std::numeric_limits<int>::max())));
}

bool isAlphaContent(const QJsonObject &object)
{
    return object.value(QStringLiteral("contentType")).toString().compare(QLatin1String("alpha"), Qt::CaseInsensitive)
        == 0;
}

// Gives the item its decimal mark and zero fill from the dictionary defaults
// and, with relative positions, its start from the running position.
QJsonObject completeItem(QJsonObject item, bool relativePositions, int position, bool defaultDecimalMark,
                         bool defaultZeroFill)
{
    if (!item.contains(QStringLiteral("decimalMark")))
        item.insert(QStringLiteral("decimalMark"), defaultDecimalMark);
    if (!item.contains(QStringLiteral("zeroFill")))
        item.insert(QStringLiteral("zeroFill"), defaultZeroFill);
    if (relativePositions && !item.contains(QStringLiteral("start")))
        item.insert(QStringLiteral("start"), position);
    return item;
}

// A skip-table search: QByteArray::contains() costs several times as much on
// the megabytes of a large dictionary.
bool holdsKey(const QByteArray &bytes, std::string_view key)
{
    const std::boyer_moore_horspool_searcher searcher(key.begin(), key.end());
    return std::search(bytes.cbegin(), bytes.cend(), searcher) != bytes.cend();
}

} // namespace

TCSProJson::TCSProJson() = default;

TCSProJson::~TCSProJson() = default;

void TCSProJson::loadFromFile(QString path)
{
    readNotes.clear();
    linkedValueSets.clear();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    const QByteArray head = file.readAll().left(16).trimmed();
    file.close();
    if (!head.isEmpty() && head.at(0) == '{')
        loadFromJson(path);
}

void TCSProJson::loadFromJson(QString path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    QJsonParseError error;
    QJsonDocument document;
    qint64 fileBytes = 0;
    {
        // The file's bytes go before the model is built, as the heap then
        // has no large block in the middle of the items.
        const QByteArray bytes = file.readAll();
        fileBytes = bytes.size();
        // Keys that only notes look for are looked up per object only when
        // the file holds them at all: a lookup walks the object's keys.
        noteKeys.decimals = holdsKey(bytes, "\"decimals\"");
        noteKeys.subitem = holdsKey(bytes, "\"subitem\"");
        noteKeys.special = holdsKey(bytes, "\"special\"");
        noteKeys.link = holdsKey(bytes, "\"link\"");
        document = QJsonDocument::fromJson(bytes, &error);
    }
    file.close();
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return;

    const QJsonObject root = document.object();
    const QJsonObject dictionary = root.value(QStringLiteral("dictionary")).isObject()
        ? root.value(QStringLiteral("dictionary")).toObject()
        : root;
    const ItemDefaults defaults = readDictionaryMembers(dictionary);
    commonRecord->label = QStringLiteral("Common");
    valueSetEntries = 0;
    valueSetBudgetNoted = false;
    startCopyBudget(fileBytes);

    const QJsonValue levelsValue = dictionary.value(QStringLiteral("levels"));
    if (!levelsValue.isArray())
        return;
    const QJsonArray levels = levelsValue.toArray();
    readIdItems(levels, defaults);
    firstRecordColumn = firstColumnAfterIds();
    for (const QJsonValue &levelValue : levels) {
        if (!levelValue.isObject())
            continue;
        const QJsonValue recordsValue = levelValue.toObject().value(QStringLiteral("records"));
        if (!recordsValue.isArray())
            continue;
        for (const QJsonValue &recordValue : recordsValue.toArray()) {
            if (recordValue.isObject())
                readRecord(recordValue.toObject(), defaults);
        }
    }
}

TCSProJson::ItemDefaults TCSProJson::readDictionaryMembers(const QJsonObject &dictionary)
{
    name = dictionary.value(QStringLiteral("name")).toString();
    const QJsonValue versionValue = dictionary.value(QStringLiteral("version"));
    version = QString::number(versionValue.isDouble() ? versionValue.toDouble() : 8.0, 'g', 6);
    const QJsonValue recordType = dictionary.value(QStringLiteral("recordType"));
    if (recordType.isObject()) {
        recordTypeStart = recordType.toObject().value(QStringLiteral("start")).toInt(0);
        recordTypeLen = recordType.toObject().value(QStringLiteral("length")).toInt(0);
    } else {
        recordTypeStart = 0;
        recordTypeLen = 0;
    }

    if (recordTypeLen <= 0)
        noteNoRecordType();

    ItemDefaults defaults;
    defaults.relativePositions = dictionary.value(QStringLiteral("relativePositions")).toBool(true);
    const QJsonValue defaultsValue = dictionary.value(QStringLiteral("defaults"));
    if (defaultsValue.isObject()) {
        defaults.decimalMark = defaultsValue.toObject().value(QStringLiteral("decimalMark")).toBool(false);
        defaults.zeroFill = defaultsValue.toObject().value(QStringLiteral("zeroFill")).toBool(false);
    }
    return defaults;
}

void TCSProJson::readIdItems(const QJsonArray &levels, const ItemDefaults &defaults)
{
    // Identification items belong to the common record.
    for (const QJsonValue &levelValue : levels) {
        if (!levelValue.isObject())
            continue;
        const QJsonValue ids = levelValue.toObject().value(QStringLiteral("ids"));
        if (!ids.isObject())
            continue;
        const QJsonValue idItems = ids.toObject().value(QStringLiteral("items"));
        if (!idItems.isArray())
            continue;
        int position = 1;
        parentKept = false;
        for (const QJsonValue &itemValue : idItems.toArray()) {
            if (!itemValue.isObject())
                continue;
            noteMalformedItem(itemValue.toObject(), true, defaults.relativePositions);
            const QJsonObject item = completeItem(itemValue.toObject(), defaults.relativePositions, position,
                                                  defaults.decimalMark, defaults.zeroFill);
            readItem(item, commonRecord, position, defaults.relativePositions, defaults.decimalMark,
                     defaults.zeroFill);
            noteItem(item, currentItem->start, QJsonValue());
        }
    }
}

void TCSProJson::readRecord(const QJsonObject &jsonRecord, const ItemDefaults &defaults)
{
    auto *record = new TCSProRecord;
    record->name = jsonRecord.value(QStringLiteral("name")).toString();
    record->label = readLabel(jsonRecord);
    record->recordTypeValue = jsonRecord.value(QStringLiteral("recordType")).toString();
    // The front end relies on this debug line.
    KX_TRACE() << "Record" << record->name << record->recordTypeValue;

    const QJsonValue occurrences = jsonRecord.value(QStringLiteral("occurrences"));
    if (occurrences.isObject()) {
        record->maxRecords = occurrences.toObject().value(QStringLiteral("maximum")).toInt(1);
        record->required = occurrences.toObject().value(QStringLiteral("required")).toBool(false)
            ? QStringLiteral("YES")
            : QStringLiteral("NO");
        noteOccurrenceLabels(QStringLiteral("Record"), record->name, occurrences.toObject());
    } else {
        record->maxRecords = 1;
        record->required = QStringLiteral("NO");
    }

    noteMalformedRecord(jsonRecord);
    records->append(record);
    currentRecord = record;
    if (!record->recordTypeValue.isEmpty())
        recordsByValue->insert(record->recordTypeValue, record);

    int position = 1;
    const QJsonValue itemsValue = jsonRecord.value(QStringLiteral("items"));
    if (!itemsValue.isArray())
        return;
    bool startsComputed = false;
    parentOccurrences = 1;
    parentKept = false;
    for (const QJsonValue &itemValue : itemsValue.toArray()) {
        if (!itemValue.isObject())
            continue;
        noteMalformedItem(itemValue.toObject(), false, defaults.relativePositions);
        if (defaults.relativePositions && !startsComputed && !itemValue.toObject().contains(QStringLiteral("start"))) {
            startsComputed = true;
            const int cspro = firstRecordColumn;
            if (cspro > 1)
                noteStartsFromColumnOne(record->name, QStringLiteral("Record %1: its items").arg(record->name),
                                        cspro);
        }
        const QJsonObject item = completeItem(itemValue.toObject(), defaults.relativePositions, position,
                                              defaults.decimalMark, defaults.zeroFill);
        int count = 1;
        const QJsonValue itemOccurrences = item.value(QStringLiteral("occurrences"));
        const QString itemName = item.value(QStringLiteral("name")).toString();
        if (itemOccurrences.isObject()) {
            count = itemOccurrences.toObject().value(QStringLiteral("maximum")).toInt(1);
            noteNumber(itemOccurrences.toObject(), QStringLiteral("maximum"), itemName, count);
        }
        noteSubitem(item, itemName);
        if (count < 2) {
            readItem(item, record, position, defaults.relativePositions, defaults.decimalMark, defaults.zeroFill);
            noteItem(item, currentItem->start, itemOccurrences);
            continue;
        }
        readRepeatedItem(item, record, position, count, defaults);
    }
}

void TCSProJson::readRepeatedItem(const QJsonObject &item, TCSProRecord *record, int &position, int count,
                                  const ItemDefaults &defaults)
{
    const QString itemName = item.value(QStringLiteral("name")).toString();
    // Counts come from the file: at most MaxOccurrences copies are made, and
    // copies whose start would leave int are not made.
    if (count > MaxOccurrences) {
        addReadNote(0, itemName, TReadNoteKind::LimitReached,
                    kxtext::format(QStringLiteral("Item %1 has %2 occurrences; the reading made only the first %3."),
                                   itemName, count, MaxOccurrences));
        count = MaxOccurrences;
    }
    const QString itemLabel = readLabel(item);
    const int alpha = isAlphaContent(item) ? 1 : 0;
    const int len = item.value(QStringLiteral("length")).toInt(0);
    const bool decimalMark = item.value(QStringLiteral("decimalMark")).toBool(defaults.decimalMark);
    const bool zeroFillValue = item.value(QStringLiteral("zeroFill")).toBool(defaults.zeroFill);
    const int start = item.value(QStringLiteral("start")).toInt(position);
    const int index = items->size();
    noteItem(item, start, item.value(QStringLiteral("occurrences")));
    TCSProValueSet *firstValueSet = nullptr;
    for (int i = 1; i <= count; ++i) {
        const qint64 copyStart = qint64(start) + qint64(i - 1) * qint64(len);
        if (copyStart != qint64(clampToInt(copyStart)))
            break;
        if (!mayMakeCopy(itemName, i))
            break;
        ++copiesMade;
        auto *copy = new TCSProItem;
        copy->name = itemName + UNDERSCORE + QString::number(i);
        copy->label = itemLabel;
        copy->start = int(copyStart);
        copy->len = len;
        copy->isAlpha = alpha;
        copy->occurrences = 1;
        copy->index = index;
        copy->decimalChar = decimalMark;
        copy->zeroFill = zeroFillValue;
        copy->record = record;
        readCopyValueSet(copy, item, i == 1, firstValueSet);
        if (i == 1) {
            firstValueSet = copy->getHasValueSet() ? copy->getValueSet(0) : nullptr;
            noteItemShape(item, *copy, itemName);
        }
        record->addItem(copy);
        items->append(copy);
    }
    position = clampToInt(qint64(start) + qint64(count) * qint64(std::max(len, 1)));
}

bool TCSProJson::mayMakeCopy(const QString &itemName, int copy)
{
    // A few bytes of "occurrences" must not turn into millions of objects.
    if (copiesMade >= copyBudget) {
        addReadNote(0, itemName, TReadNoteKind::LimitReached,
                    kxtext::format(QStringLiteral("Item %1: the reading stopped making its copies at copy %2, as the "
                                                  "dictionary made the %3 copies of repeated items it may expand to "
                                                  "(%4 and one for every %5 bytes of the file)."),
                                   itemName, copy, copyBudget, MinCopyBudget, FileBytesPerCopy));
        return false;
    }
    if (items->size() >= MaxExpandedItems) {
        addReadNote(0, itemName, TReadNoteKind::LimitReached,
                    kxtext::format(QStringLiteral("Item %1: the reading stopped making its copies at copy %2, as the "
                                                  "dictionary reached %3 items."),
                                   itemName, copy, MaxExpandedItems));
        return false;
    }
    return true;
}

void TCSProJson::readCopyValueSet(TCSProItem *copy, const QJsonObject &item, bool first,
                                  TCSProValueSet *firstValueSet)
{
    // Each copy reads its own value set until the dictionary's entry budget
    // is spent; later copies share the value set of their first copy.
    if (first || valueSetEntries < MaxValueSetEntries || !firstValueSet) {
        readValueSet(copy, item, first);
        return;
    }
    if (!valueSetBudgetNoted) {
        valueSetBudgetNoted = true;
        addReadNote(0, item.value(QStringLiteral("name")).toString(), TReadNoteKind::LimitReached,
                    kxtext::format(QStringLiteral("Value sets of repeated items passed %1 entries in all: from copy %2 "
                                                  "of item %3 on, the copies share the value set of their first copy."),
                                   MaxValueSetEntries, copy->name.mid(copy->name.lastIndexOf(UNDERSCORE) + 1),
                                   item.value(QStringLiteral("name")).toString()));
    }
    copy->addValueSet(firstValueSet);
}

QString TCSProJson::readLabel(const QJsonObject &object)
{
    const QJsonValue labels = object.value(QStringLiteral("labels"));
    if (!labels.isArray() || labels.toArray().isEmpty())
        return QString();
    const QJsonValue first = labels.toArray().first();
    if (!first.isObject())
        return QString();
    return first.toObject().value(QStringLiteral("text")).toString();
}

void TCSProJson::readItem(const QJsonObject &jsonItem, TCSProRecord *record, int &position, bool,
                          bool defaultDecimalMark, bool defaultZeroFill)
{
    auto *item = new TCSProItem;
    item->record = record;
    currentItem = item;

    item->name = jsonItem.value(QStringLiteral("name")).toString();
    item->label = readLabel(jsonItem);
    item->isAlpha = isAlphaContent(jsonItem) ? 1 : 0;
    item->len = jsonItem.value(QStringLiteral("length")).toInt(0);
    item->occurrences = 1;
    item->decimal = 0;
    item->decimalChar = jsonItem.contains(QStringLiteral("decimalMark"))
        ? jsonItem.value(QStringLiteral("decimalMark")).toBool(false)
        : defaultDecimalMark;
    item->zeroFill = jsonItem.contains(QStringLiteral("zeroFill"))
        ? jsonItem.value(QStringLiteral("zeroFill")).toBool(false)
        : defaultZeroFill;

    const qint64 step = std::max(item->len, 1);
    if (jsonItem.contains(QStringLiteral("start"))) {
        item->start = jsonItem.value(QStringLiteral("start")).toInt(position);
        position = clampToInt(qint64(item->start) + step);
    } else {
        item->start = std::max(position, 1);
        position = clampToInt(qint64(position) + step);
    }

    readValueSet(item, jsonItem);
    record->addItem(item);
    items->append(item);
    noteItemShape(jsonItem, *item, item->name);
}

void TCSProJson::readValueSet(TCSProItem *item, const QJsonObject &jsonItem)
{
    readValueSet(item, jsonItem, true);
}

void TCSProJson::readValueSet(TCSProItem *item, const QJsonObject &jsonItem, bool withNotes)
{
    const QJsonValue valueSets = jsonItem.value(QStringLiteral("valueSets"));
    if (!valueSets.isArray() || valueSets.toArray().isEmpty() || !valueSets.toArray().first().isObject())
        return;
    const QJsonArray sets = valueSets.toArray();
    const QJsonObject jsonValueSet = sets.first().toObject();

    auto *valueSet = new TCSProValueSet;
    valueSet->name = jsonValueSet.value(QStringLiteral("name")).toString();
    valueSet->label = readLabel(jsonValueSet);

    const QJsonValue values = jsonValueSet.value(QStringLiteral("values"));
    if (values.isArray()) {
        for (const QJsonValue &value : values.toArray()) {
            if (value.isObject())
                valueSet->addItem(readValue(value.toObject(), valueSet->name, withNotes));
        }
    }
    valueSetEntries += valueSet->items->size();
    item->addValueSet(valueSet);
    if (withNotes) {
        noteLink(jsonValueSet, valueSet);
        noteFurtherValueSets(jsonItem, sets, valueSet->name);
    }
}

TValueSetItem *TCSProJson::readValue(const QJsonObject &jsonValue, const QString &valueSetName, bool withNotes)
{
    QString code;
    const QJsonValue pairs = jsonValue.value(QStringLiteral("pairs"));
    if (pairs.isArray() && !pairs.toArray().isEmpty() && pairs.toArray().first().isObject()) {
        const QJsonObject pair = pairs.toArray().first().toObject();
        if (withNotes && pairs.toArray().size() > 1)
            addReadNote(0, valueSetName, TReadNoteKind::FirstPairOnly,
                        kxtext::format(QStringLiteral("Value set %1: the value '%2' has %3 pairs, and the reading kept "
                                                      "the first."),
                                       valueSetName, readLabel(jsonValue), pairs.toArray().size()));
        const QJsonValue range = pair.value(QStringLiteral("range"));
        if (pair.contains(QStringLiteral("value"))) {
            code = pair.value(QStringLiteral("value")).toString();
        } else if (range.isArray() && range.toArray().size() == 2) {
            code = range.toArray().at(0).toString() + COLONCHR + range.toArray().at(1).toString();
            if (withNotes)
                addReadNote(0, valueSetName, TReadNoteKind::RangeCode,
                            QStringLiteral("Value set %1: the range %2 to %3 is kept as the one code '%4', "
                                           "which reads as the number 0 for bounds.")
                                .arg(valueSetName, range.toArray().at(0).toString(),
                                     range.toArray().at(1).toString(), code));
        }
    }
    if (withNotes)
        noteValueCodes(jsonValue, valueSetName);
    if (withNotes && noteKeys.special && jsonValue.contains(QStringLiteral("special")))
        addReadNote(0, valueSetName, TReadNoteKind::SpecialNotRead,
                    QStringLiteral("Value set %1: the code '%2' is the special value %3 in CSPro; the reading "
                                   "kept it as an ordinary code.")
                        .arg(valueSetName, code, jsonValue.value(QStringLiteral("special")).toString().toUpper()));
    // An entry with an empty code is kept.
    auto *entry = new TValueSetItem;
    entry->code = code;
    entry->name = readLabel(jsonValue);
    entry->type = 0;
    entry->special = false;
    return entry;
}

// ---- Reading notes -------------------------------------------------------

void TCSProJson::noteItem(const QJsonObject &item, int start, const QJsonValue &occurrences)
{
    if (!noteKeys.decimals && !noteKeys.subitem && !occurrences.isObject())
        return;
    const QString itemName = item.value(QStringLiteral("name")).toString();
    const int decimals = noteKeys.decimals ? item.value(QStringLiteral("decimals")).toInt(0) : 0;
    if (decimals > 0)
        addReadNote(0, itemName, TReadNoteKind::DecimalsNotRead,
                    QStringLiteral("Item %1 has %2; the reading kept no number of decimals.")
                        .arg(itemName, decimals == 1 ? QStringLiteral("1 decimal")
                                                     : QStringLiteral("%1 decimals").arg(decimals)));
    if (noteKeys.subitem && item.value(QStringLiteral("subitem")).toBool(false)) {
        QString where = kxtext::format(QStringLiteral("Item %1 is a subitem; the reading made it an item of its own at "
                                                      "column %2"),
                                       itemName, start);
        if (item.contains(QStringLiteral("subitemOffset")))
            where += QStringLiteral(" (its offset %1 within its parent is not read)")
                         .arg(item.value(QStringLiteral("subitemOffset")).toInt(0));
        addReadNote(0, itemName, TReadNoteKind::SubitemReadAsItem, where + QLatin1Char('.'));
    }
    if (occurrences.isObject())
        noteOccurrenceLabels(QStringLiteral("Item"), itemName, occurrences.toObject());
}

void TCSProJson::noteOccurrenceLabels(const QString &what, const QString &subject, const QJsonObject &occurrences)
{
    const QJsonValue labels = occurrences.value(QStringLiteral("labels"));
    if (!labels.isArray() || labels.toArray().isEmpty())
        return;
    addReadNote(0, subject, TReadNoteKind::OccurrenceLabelsNotRead,
                kxtext::format(QStringLiteral("%1 %2 has %3 occurrence labels; the reading does not keep them."),
                               what, subject, labels.toArray().size()));
}

void TCSProJson::noteLink(const QJsonObject &jsonValueSet, const TCSProValueSet *valueSet)
{
    if (!noteKeys.link)
        return;
    const QJsonValue linkValue = jsonValueSet.value(QStringLiteral("link"));
    if (linkValue.isUndefined())
        return;
    noteLinkedValueSet(0, linkValue.isDouble() ? QString::number(linkValue.toDouble()) : linkValue.toString(),
                       valueSet);
}

void TCSProJson::noteFurtherValueSets(const QJsonObject &jsonItem, const QJsonArray &sets, const QString &kept)
{
    for (int i = 1; i < sets.size(); ++i) {
        const QString setName = sets.at(i).toObject().value(QStringLiteral("name")).toString();
        addReadNote(0, setName, TReadNoteKind::ValueSetDropped,
                    kxtext::format(QStringLiteral("Value set %1 dropped: item %2 has %3 value sets, and only the "
                                                  "first, %4, is read."),
                                   setName, jsonItem.value(QStringLiteral("name")).toString(), sets.size(), kept));
    }
}

void TCSProJson::noteNoRecordType()
{
    addReadNote(0, name, TReadNoteKind::GroupNotSet,
                QStringLiteral("The dictionary gives the record type no length: CSPro still knows the record of "
                               "every item, but the reading gives no field a group, the identification items "
                               "included."));
}

int TCSProJson::firstColumnAfterIds() const
{
    qint64 last = recordTypeLen > 0 ? qint64(recordTypeStart) + recordTypeLen - 1 : 0;
    for (const TCSProItem *item : qAsConst(*items)) {
        if (item->record == commonRecord)
            last = std::max(last, qint64(item->start) + std::max(item->len, 0) - 1);
    }
    return clampToInt(last + 1);
}

namespace {

bool isWhole(const QJsonValue &value, double min, double max)
{
    const double d = value.toDouble(-1);
    return value.isDouble() && d >= min && d <= max && std::floor(d) == d;
}

bool isCodeText(const QJsonValue &value)
{
    return value.isString() || value.isDouble();
}

const QStringList &contentTypes()
{
    static const QStringList types{QStringLiteral("numeric"),  QStringLiteral("alpha"),    QStringLiteral("audio"),
                                   QStringLiteral("document"), QStringLiteral("geometry"), QStringLiteral("image")};
    return types;
}

//! The index of \a contentType among CSPro's, in any case; -1 for none.
int contentTypeIndex(const QString &contentType)
{
    const QStringList &types = contentTypes();
    for (int i = 0; i < types.size(); ++i) {
        if (contentType.compare(types.at(i), Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

// Why CSPro skips a pair: empty when it reads it.
QString malformedPair(const QJsonObject &object)
{
    if (object.contains(QStringLiteral("value")))
        return isCodeText(object.value(QStringLiteral("value"))) ? QString()
                                                                  : QStringLiteral("a \"value\" that is no text");
    const QJsonArray range = object.value(QStringLiteral("range")).toArray();
    if (range.size() == 2 && isCodeText(range.at(0)) && isCodeText(range.at(1)))
        return QString();
    return QStringLiteral("a pair with neither a \"value\" nor a \"range\" of two codes");
}

} // namespace

void TCSProJson::noteMalformedItem(const QJsonObject &item, bool isId, bool relativePositions)
{
    // The rules of CSPro's JSON reading: a malformed item is skipped, and so
    // are the subitems of a skipped item.
    QStringList why;
    const QJsonValue nameValue = item.value(QStringLiteral("name"));
    const QString contentType = item.value(QStringLiteral("contentType")).toString(QStringLiteral("numeric"));
    const int type = contentTypeIndex(contentType);
    const bool typeKnown = type >= 0;
    const bool binary = type >= 2;
    const bool subitem = !binary && noteKeys.subitem && item.value(QStringLiteral("subitem")).toBool(false);
    if (!nameValue.isString() || nameValue.toString().isEmpty())
        why << QStringLiteral("it has no name");
    if (!typeKnown)
        why << QStringLiteral("its content type '%1' is none of CSPro's").arg(contentType);
    if (!binary && !isWhole(item.value(QStringLiteral("length")), 1, 100000))
        why << QStringLiteral("its \"length\" is no whole number from 1 to 100000");
    const QJsonValue occurrences = item.value(QStringLiteral("occurrences"));
    if (!occurrences.isUndefined() && !isWhole(occurrences.toObject().value(QStringLiteral("maximum")), 1, 9999))
        why << QStringLiteral("its \"occurrences\" give no \"maximum\" from 1 to 9999");
    if (!binary && !item.value(QStringLiteral("decimals")).isUndefined()
        && !isWhole(item.value(QStringLiteral("decimals")), 0, 15))
        why << QStringLiteral("its \"decimals\" are no whole number from 0 to 15");
    const QJsonValue start = item.value(QStringLiteral("start"));
    if (!start.isUndefined() && !isWhole(start, 1, 1000000000))
        why << QStringLiteral("its \"start\" is no whole number from 1 to 1000000000");
    if (start.isUndefined() && (isId || !relativePositions))
        why << QStringLiteral("it gives no \"start\", which %1 must")
                   .arg(isId ? QStringLiteral("an identification item") : QStringLiteral("an item of an absolute dictionary"));
    if (subitem && !parentKept)
        why << QStringLiteral("it is a subitem without a parent that CSPro keeps");
    if (!subitem)
        parentKept = why.isEmpty();
    if (why.isEmpty())
        return;
    const QString name = nameValue.toString();
    addReadNote(0, name, TReadNoteKind::MalformedItemKept,
                QStringLiteral("CSPro skips item %1 as malformed: %2; the reading keeps it.")
                    .arg(name, why.join(QStringLiteral(", "))));
}

void TCSProJson::noteMalformedRecord(const QJsonObject &record)
{
    QStringList why;
    const QJsonValue nameValue = record.value(QStringLiteral("name"));
    if (!nameValue.isString() || nameValue.toString().isEmpty())
        why << QStringLiteral("it has no name");
    const QJsonValue type = record.value(QStringLiteral("recordType"));
    if (!type.isUndefined() && !isCodeText(type))
        why << QStringLiteral("its \"recordType\" is no text");
    const QJsonObject occurrences = record.value(QStringLiteral("occurrences")).toObject();
    if (!occurrences.value(QStringLiteral("required")).isBool())
        why << QStringLiteral("its \"occurrences\" give no \"required\"");
    if (!isWhole(occurrences.value(QStringLiteral("maximum")), 1, 9999))
        why << QStringLiteral("its \"occurrences\" give no \"maximum\" from 1 to 9999");
    if (why.isEmpty())
        return;
    const QString name = nameValue.toString();
    addReadNote(0, name, TReadNoteKind::MalformedItemKept,
                QStringLiteral("CSPro skips record %1 and its items as malformed: %2; the reading keeps them.")
                    .arg(name, why.join(QStringLiteral(", "))));
}

void TCSProJson::noteValueCodes(const QJsonObject &jsonValue, const QString &valueSetName)
{
    // The common value, one pair with a text code, costs one look-up.
    const QJsonArray pairs = jsonValue.value(QStringLiteral("pairs")).toArray();
    QString why = pairs.isEmpty() ? QStringLiteral("it has no pairs") : QString();
    bool number = false;
    for (int i = 0; i < pairs.size() && why.isEmpty(); ++i) {
        const QJsonObject pair = pairs.at(i).toObject();
        const QJsonValue code = pair.value(QStringLiteral("value"));
        if (code.isString())
            continue;
        why = malformedPair(pair);
        if (why.isEmpty() && i == 0) {
            const QJsonArray range = pair.value(QStringLiteral("range")).toArray();
            number = code.isDouble() || (code.isUndefined() && (range.at(0).isDouble() || range.at(1).isDouble()));
        }
    }
    if (!why.isEmpty())
        addReadNote(0, valueSetName, TReadNoteKind::MalformedValueKept,
                    QStringLiteral("Value set %1: CSPro skips the value '%2' as malformed (%3); the reading keeps "
                                   "it.")
                        .arg(valueSetName, readLabel(jsonValue), why));
    else if (number)
        addReadNote(0, valueSetName, TReadNoteKind::NumericCodeNotRead,
                    QStringLiteral("Value set %1: the value '%2' writes its code as a JSON number, which CSPro reads "
                                   "as text; the reading makes it an empty code.")
                        .arg(valueSetName, readLabel(jsonValue)));
}

void TCSProJson::noteStartsFromColumnOne(const QString &subject, const QString &what, int cspro)
{
    addReadNote(0, subject, TReadNoteKind::StartNotRelative,
                kxtext::format(QStringLiteral("%1 give no \"start\" and the dictionary uses relative positions: CSPro "
                                              "lays them out from column %2, after the record type and the "
                                              "identification items; the reading lays them out from column 1."),
                               what, cspro));
}

void TCSProJson::noteNumber(const QJsonObject &object, const QString &key, const QString &itemName, int kept)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined())
        return;
    const double number = value.toDouble(-1);
    if (value.isDouble() && number >= 0 && number <= std::numeric_limits<int>::max() && number == int(number))
        return;
    const QString written = value.isDouble() ? QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest)
                                             : QStringLiteral("a %1").arg(value.isString() ? QStringLiteral("text")
                                                                                           : QStringLiteral("non-number"));
    addReadNote(0, itemName, TReadNoteKind::NumberOutOfRange,
                kxtext::format(QStringLiteral("Item %1: \"%2\" is %3, no whole number from 0 to %4; the reading kept "
                                              "%5."),
                               itemName, key, written, std::numeric_limits<int>::max(), kept));
}

void TCSProJson::noteSubitem(const QJsonObject &jsonItem, const QString &itemName)
{
    if (!noteKeys.subitem)
        return;
    if (!jsonItem.value(QStringLiteral("subitem")).toBool(false)) {
        parentName = itemName;
        const QJsonValue occurrences = jsonItem.value(QStringLiteral("occurrences"));
        parentOccurrences = occurrences.isObject() ? occurrences.toObject().value(QStringLiteral("maximum")).toInt(1) : 1;
        parentLength = jsonItem.value(QStringLiteral("length")).toInt(0);
        return;
    }
    if (parentOccurrences < 2 || jsonItem.value(QStringLiteral("occurrences")).isObject())
        return;
    addReadNote(0, itemName, TReadNoteKind::SubitemOccurrencesOnce,
                kxtext::format(QStringLiteral("Subitem %1 lies in item %2, which has %3 occurrences: CSPro gives it "
                                              "once per occurrence, every %4 columns; the reading gives it once."),
                               itemName, parentName, parentOccurrences, parentLength));
}

void TCSProJson::noteItemShape(const QJsonObject &jsonItem, const TCSProItem &item, const QString &itemName)
{
    noteNumber(jsonItem, QStringLiteral("start"), itemName, item.start);
    noteNumber(jsonItem, QStringLiteral("length"), itemName, item.len);
    const int type = item.isAlpha ? 1 : contentTypeIndex(jsonItem.value(QStringLiteral("contentType")).toString());
    if (type >= 2) {
        const QString content = contentTypes().at(type);
        addReadNote(0, itemName, TReadNoteKind::BinaryItemAsNumber,
                    kxtext::format(QStringLiteral("Item %1 holds %2 content, which takes no columns of the data file; "
                                                  "the reading made it a numeric field of length %3 at column %4."),
                                   itemName, content, item.len, item.start));
        return;
    }
    const int decimals = noteKeys.decimals ? jsonItem.value(QStringLiteral("decimals")).toInt(0) : 0;
    if (item.isAlpha == 0 && decimals == 0 && item.len > 9)
        addReadNote(0, itemName, TReadNoteKind::WideIntegerAsReal,
                    kxtext::format(QStringLiteral("Item %1 is a whole number of %2 digits; the reading types it REAL "
                                                  "(field type 2, decimals 0), as every numeric item longer than 9 "
                                                  "digits."),
                                   itemName, item.len));
    noteCodes(item);
}

void TCSProJson::noteCodes(const TCSProItem &item)
{
    if (!item.valueSets || item.valueSets->isEmpty())
        return;
    const TCSProValueSet *valueSet = item.valueSets->first();
    const QString padded = item.isAlpha == 1 ? paddedCodesNote(*valueSet) : QString();
    if (!padded.isEmpty())
        addReadNote(0, valueSet->name, TReadNoteKind::PaddedCodeSplit, padded);
    const QString rounded = item.isAlpha == 0 && item.len <= 9 ? roundedCodesNote(*valueSet) : QString();
    if (!rounded.isEmpty())
        addReadNote(0, valueSet->name, TReadNoteKind::CodeRounded, rounded);
}

#include "CSProJson.h"

#include "KxConstants.h"

#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>

#include <algorithm>
#include <limits>

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

} // namespace

TCSProJson::TCSProJson() = default;

TCSProJson::~TCSProJson() = default;

void TCSProJson::loadFromFile(QString path)
{
    readNotes.clear();
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
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return;

    const QJsonObject root = document.object();
    const QJsonObject dictionary = root.value(QStringLiteral("dictionary")).isObject()
        ? root.value(QStringLiteral("dictionary")).toObject()
        : root;

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

    const bool relativePositions = dictionary.value(QStringLiteral("relativePositions")).toBool(true);
    bool defaultDecimalMark = false;
    bool defaultZeroFill = false;
    const QJsonValue defaults = dictionary.value(QStringLiteral("defaults"));
    if (defaults.isObject()) {
        defaultDecimalMark = defaults.toObject().value(QStringLiteral("decimalMark")).toBool(false);
        defaultZeroFill = defaults.toObject().value(QStringLiteral("zeroFill")).toBool(false);
    }
    commonRecord->label = QStringLiteral("Common");

    const QJsonValue levelsValue = dictionary.value(QStringLiteral("levels"));
    if (!levelsValue.isArray())
        return;
    const QJsonArray levels = levelsValue.toArray();

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
        for (const QJsonValue &itemValue : idItems.toArray()) {
            if (!itemValue.isObject())
                continue;
            const QJsonObject item = completeItem(itemValue.toObject(), relativePositions, position,
                                                  defaultDecimalMark, defaultZeroFill);
            readItem(item, commonRecord, position, relativePositions, defaultDecimalMark, defaultZeroFill);
        }
    }

    for (const QJsonValue &levelValue : levels) {
        if (!levelValue.isObject())
            continue;
        const QJsonValue recordsValue = levelValue.toObject().value(QStringLiteral("records"));
        if (!recordsValue.isArray())
            continue;
        for (const QJsonValue &recordValue : recordsValue.toArray()) {
            if (!recordValue.isObject())
                continue;
            const QJsonObject jsonRecord = recordValue.toObject();
            auto *record = new TCSProRecord;
            record->name = jsonRecord.value(QStringLiteral("name")).toString();
            record->label = readLabel(jsonRecord);
            record->recordTypeValue = jsonRecord.value(QStringLiteral("recordType")).toString();
            qDebug() << "Record" << record->name << record->recordTypeValue;

            const QJsonValue occurrences = jsonRecord.value(QStringLiteral("occurrences"));
            if (occurrences.isObject()) {
                record->maxRecords = occurrences.toObject().value(QStringLiteral("maximum")).toInt(1);
                record->required =
                    occurrences.toObject().value(QStringLiteral("required")).toBool(false) ? QStringLiteral("YES")
                                                                                            : QStringLiteral("NO");
            } else {
                record->maxRecords = 1;
                record->required = QStringLiteral("NO");
            }

            records->append(record);
            currentRecord = record;
            if (!record->recordTypeValue.isEmpty())
                recordsByValue->insert(record->recordTypeValue, record);

            int position = 1;
            const QJsonValue itemsValue = jsonRecord.value(QStringLiteral("items"));
            if (!itemsValue.isArray())
                continue;
            for (const QJsonValue &itemValue : itemsValue.toArray()) {
                if (!itemValue.isObject())
                    continue;
                const QJsonObject item = completeItem(itemValue.toObject(), relativePositions, position,
                                                      defaultDecimalMark, defaultZeroFill);
                int count = 1;
                const QJsonValue itemOccurrences = item.value(QStringLiteral("occurrences"));
                if (itemOccurrences.isObject())
                    count = itemOccurrences.toObject().value(QStringLiteral("maximum")).toInt(1);
                if (count < 2) {
                    readItem(item, record, position, relativePositions, defaultDecimalMark, defaultZeroFill);
                    continue;
                }

                // Counts come from the file: at most MaxOccurrences copies are
                // made, and copies whose start would leave int are not made.
                count = std::min(count, int(MaxOccurrences));
                const QString itemLabel = readLabel(item);
                const QString itemName = item.value(QStringLiteral("name")).toString();
                const int alpha = isAlphaContent(item) ? 1 : 0;
                const int len = item.value(QStringLiteral("length")).toInt(0);
                const bool decimalMark = item.value(QStringLiteral("decimalMark")).toBool(defaultDecimalMark);
                const bool zeroFillValue = item.value(QStringLiteral("zeroFill")).toBool(defaultZeroFill);
                const int start = item.value(QStringLiteral("start")).toInt(position);
                const int index = items->size();
                // The copies share the value set read for the first one, and no
                // copy is made past MaxExpandedItems items: a few bytes of
                // "occurrences" must not turn into millions of objects.
                TCSProValueSet *sharedValueSet = nullptr;
                for (int i = 1; i <= count; ++i) {
                    const qint64 copyStart = qint64(start) + qint64(i - 1) * qint64(len);
                    if (copyStart != qint64(clampToInt(copyStart)) || items->size() >= MaxExpandedItems)
                        break;
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
                    if (i == 1) {
                        readValueSet(copy, item);
                        sharedValueSet = copy->getHasValueSet() ? copy->getValueSet(0) : nullptr;
                    } else if (sharedValueSet) {
                        copy->addValueSet(sharedValueSet);
                    }
                    record->addItem(copy);
                    items->append(copy);
                }
                position = clampToInt(qint64(start) + qint64(count) * qint64(std::max(len, 1)));
            }
        }
    }
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
}

void TCSProJson::readValueSet(TCSProItem *item, const QJsonObject &jsonItem)
{
    const QJsonValue valueSets = jsonItem.value(QStringLiteral("valueSets"));
    if (!valueSets.isArray() || valueSets.toArray().isEmpty() || !valueSets.toArray().first().isObject())
        return;
    const QJsonObject jsonValueSet = valueSets.toArray().first().toObject();

    auto *valueSet = new TCSProValueSet;
    valueSet->name = jsonValueSet.value(QStringLiteral("name")).toString();
    valueSet->label = readLabel(jsonValueSet);

    const QJsonValue values = jsonValueSet.value(QStringLiteral("values"));
    if (values.isArray()) {
        for (const QJsonValue &value : values.toArray()) {
            if (!value.isObject())
                continue;
            const QJsonObject jsonValue = value.toObject();
            QString code;
            const QJsonValue pairs = jsonValue.value(QStringLiteral("pairs"));
            if (pairs.isArray() && !pairs.toArray().isEmpty() && pairs.toArray().first().isObject()) {
                const QJsonObject pair = pairs.toArray().first().toObject();
                const QJsonValue range = pair.value(QStringLiteral("range"));
                if (pair.contains(QStringLiteral("value")))
                    code = pair.value(QStringLiteral("value")).toString();
                else if (range.isArray() && range.toArray().size() == 2)
                    code = range.toArray().at(0).toString() + COLONCHR + range.toArray().at(1).toString();
            }
            // An entry with an empty code is kept.
            auto *entry = new TValueSetItem;
            entry->code = code;
            entry->name = readLabel(jsonValue);
            entry->type = 0;
            entry->special = false;
            valueSet->addItem(entry);
        }
    }
    item->addValueSet(valueSet);
}

#ifndef CSPROIMPORTCORE_P_H
#define CSPROIMPORTCORE_P_H

// The definitions of TCSProImportCore, included by the two importers'
// sources, which give the form's traits and instantiate the template.

#include "CSProDictionary.h"
#include "CSProImportCore.h"
#include "CSProVariable.h"
#include "KxConstants.h"

#include "KxTrace_p.h"
#include <QMessageBox>

#include <algorithm>
#include <string>

namespace kxcsproimport {

// A value holds at most this many characters, so longer bounds mean nothing;
// it also keeps a hostile item length from asking for a huge text.
constexpr qint64 MaxBoundDigits = TGenericField::ValueCapacity;

inline int boundDigits(qint64 count)
{
    return int(qBound<qint64>(0, count, MaxBoundDigits));
}

inline double codeNumber(const TValueSetItem *entry)
{
    if (!entry)
        return 0.0;
    bool ok = false;
    const double v = entry->code.toDouble(&ok);
    return ok ? v : 0.0;
}

inline QString formatNumber(double v)
{
    return QString::number(v, 'g', 6);
}

// The steps of TCSProImportCore::fillFromItem.

// Alpha items are text (3); numbers without decimals are int (1) up to nine
// digits, as longer ones do not fit an int, and real (2) beyond; with decimals real.
template <class Variable>
void setTypeAndDecimals(Variable *field, const TCSProItem *item)
{
    if (item->isAlpha == 1) {
        field->setFieldType(3);
    } else if (item->decimal == 0) {
        field->setDecimals(QStringLiteral("0"));
        field->setFieldType(item->len <= 9 ? 1 : 2);
    } else {
        field->setDecimals(QString::number(item->decimal));
        field->setFieldType(2);
    }
}

template <class Variable>
void setIdentity(Variable *field, const TCSProItem *item)
{
    field->setName(item->name);
    field->setLabel(item->label);
    field->setSize(item->len);
    field->setStart(item->start);
    field->setMissingCode(item->missingCode);
    field->setNotApplicableCode(item->notApplCode);
}

// A numeric item with decimals and no value set: the decimal character takes
// one column, implied decimals take theirs from the integer part.
template <class Core, class Variable>
void setDecimalMaximum(Variable *field, const TCSProItem *item)
{
    if (item->decimalChar) {
        field->setMaximum(Core::StringOfChar('9', boundDigits(qint64(item->len) - 1)));
        return;
    }
    const qint64 integerDigits = qint64(item->len) - item->decimal;
    field->setMaximum(integerDigits == 0 ? QStringLiteral("9") : Core::StringOfChar('9', boundDigits(integerDigits)));
}

// Bounds start at the first and last entries of the first value set,
// special or not; only the walk over the entries skips special ones.
template <class Variable>
void setFromValueSets(Variable *field, TCSProItem *item)
{
    const bool numeric = field->getFieldType() == 1 || field->getFieldType() == 2;
    double low = 0.0;
    double high = 0.0;
    bool rangeFound = false;
    TCSProValueSet *first = item->getValueSet(0);
    if (numeric && first && first->getCount() >= 1) {
        low = codeNumber(first->getValueSetItem(0));
        high = codeNumber(first->getValueSetItem(first->getCount() - 1));
        rangeFound = true;
    }

    QString labels;
    for (int s = 0; s < item->getCount(); ++s) {
        TCSProValueSet *valueSet = item->getValueSet(s);
        const int entries = valueSet ? valueSet->getCount() : 0;
        for (int e = 0; e < entries; ++e) {
            const TValueSetItem *entry = valueSet->getValueSetItem(e);
            if (!entry || entry->special)
                continue;
            QString code = entry->code;
            if (numeric) {
                const double x = codeNumber(entry);
                low = std::min(low, x);
                high = std::max(high, x);
                if (field->getFieldType() == 1)
                    code = formatNumber(x);
            }
            labels += code + SPACECHR + entry->name + TABCHR;
        }
    }
    field->setValueLabels(field->getValueLabels() + labels);
    field->setMinimum(formatNumber(low));
    if (rangeFound)
        field->setMaximum(formatNumber(high));
}

} // namespace kxcsproimport

/*! What tells the two dictionary forms apart besides their reader; each
 * importer's source specialises it with typeName(), the provider type name,
 * and debugName(), the class name of its debug lines. */
template <class Reader>
struct CSProImportTraits;

// ----------------------------------------------------------- TCSProImportCore

template <class Reader, class Variable>
TCSProImportCore<Reader, Variable>::TCSProImportCore() = default;

template <class Reader, class Variable>
TCSProImportCore<Reader, Variable>::TCSProImportCore(QString sourceName)
    : TDataImport(sourceName)
    , groups(new QStringList)
{
    // A fixed debug line: the front end relies on it.
    KX_TRACE().noquote() << CSProImportTraits<Reader>::debugName() + QStringLiteral(" Constructor");
    initDataImport();
}

// The reader, the group list and the fields stay alive: source fields and
// callers may still point into the dictionary.
template <class Reader, class Variable>
TCSProImportCore<Reader, Variable>::~TCSProImportCore() = default;

template <class Reader, class Variable>
void TCSProImportCore<Reader, Variable>::setDecimalChoice(TDecimalChoice choice)
{
    switch (choice) {
    case TDecimalChoice::YesToAll:
        setDecimalChoice(1, QMessageBox::YesToAll);
        break;
    case TDecimalChoice::NoToAll:
        setDecimalChoice(2, QMessageBox::NoToAll);
        break;
    case TDecimalChoice::Ask:
        setDecimalChoice(0, QMessageBox::NoButton);
        break;
    }
}

template <class Reader, class Variable>
QString TCSProImportCore<Reader, Variable>::getDataProviderType()
{
    return CSProImportTraits<Reader>::typeName();
}

template <class Reader, class Variable>
QStringList *TCSProImportCore<Reader, Variable>::selectLayoutSource()
{
    // A fixed debug line: the front end relies on it.
    KX_TRACE().noquote() << CSProImportTraits<Reader>::debugName() + QStringLiteral(" - selectLayoutSource");
    return TDataImport::selectLayoutSource();
}

template <class Reader, class Variable>
QString TCSProImportCore<Reader, Variable>::getDataProviderId()
{
    return getDataProviderType() + UNDERSCORE + sourceName;
}

template <class Reader, class Variable>
bool TCSProImportCore<Reader, Variable>::openFile()
{
    openDataImport();
    openingValue = 1.0;
    importCounter = 1;
    openRead(getSourceName());
    return true;
}

template <class Reader, class Variable>
bool TCSProImportCore<Reader, Variable>::isMultiple()
{
    return getRecordTypeSize() > 0;
}

template <class Reader, class Variable>
int TCSProImportCore<Reader, Variable>::getGroupCount()
{
    return groups ? groups->count() : 0;
}

template <class Reader, class Variable>
QString TCSProImportCore<Reader, Variable>::getGroupName(int i)
{
    if (i < 0 || i >= getGroupCount())
        return QString();
    return groups->at(i);
}

template <class Reader, class Variable>
QString TCSProImportCore<Reader, Variable>::getGroupValue(int i)
{
    if (i < 0 || i >= getGroupCount())
        return QString();
    const QString name = getGroupName(i);
    for (const QString &entry : qAsConst(*groups)) {
        if (entry.contains(name, Qt::CaseSensitive))
            return entry;
    }
    return QString();
}

template <class Reader, class Variable>
int TCSProImportCore<Reader, Variable>::getRecordTypeIndex(QString value)
{
    if (!dictionary)
        return -1;
    for (int i = dictionary->getRecordsCount() - 1; i >= 0; --i) {
        const TCSProRecord *record = dictionary->getRecord(i);
        if (record && record->recordTypeValue == value)
            return i;
    }
    return -1;
}

template <class Reader, class Variable>
int TCSProImportCore<Reader, Variable>::getRecordTypeIndex()
{
    if (!dictionary)
        return -1;
    const int count = dictionary->getRecordsCount();
    for (int i = 0; i < count; ++i) {
        const TCSProRecord *record = dictionary->getRecord(i);
        if (record && record->recordTypeValue == currentRecordType)
            return i;
    }
    return -1;
}

template <class Reader, class Variable>
int TCSProImportCore<Reader, Variable>::getRecordTypeStart()
{
    return recordTypeStart;
}

template <class Reader, class Variable>
int TCSProImportCore<Reader, Variable>::getRecordTypeSize()
{
    return recordTypeLen;
}

template <class Reader, class Variable>
void TCSProImportCore<Reader, Variable>::openRead(QString path)
{
    // A previous reader is not released: earlier fields still point at its items.
    dictionary = new Reader;
    if (presetDecimalMode != 0) {
        dictionary->setDecimalMode(presetDecimalMode);
        dictionary->setDecimalAnswer(presetDecimalAnswer);
    }
    try {
        dictionary->loadFromFile(path);
    } catch (...) {
        // The notes gathered up to the error are handed out with it.
        addReadNotes(dictionary->getReadNotes());
        throw;
    }
    addReadNotes(dictionary->getReadNotes());
    recordTypeStart = dictionary->recordTypeStart;
    recordTypeLen = dictionary->recordTypeLen;

    if (!groups)
        groups = new QStringList;
    groups->clear();
    const int records = dictionary->getRecordsCount();
    for (int i = 0; i < records; ++i) {
        const TCSProRecord *record = dictionary->getRecord(i);
        if (record)
            groups->append(record->name + EQUALCHR + record->recordTypeValue);
    }

    notRead = false;
    copyDataFromDictionary();
}

template <class Reader, class Variable>
void TCSProImportCore<Reader, Variable>::copyDataFromDictionary()
{
    if (!dictionary)
        return;
    const int count = dictionary->getItemsCount();
    for (int i = 0; i < count; ++i) {
        TCSProItem *item = dictionary->getItem(i);
        if (!item)
            continue;
        auto *field = new Variable(this, item);
        fillFromItem(field, item);
        addField(field);
    }
}

template <class Reader, class Variable>
void TCSProImportCore<Reader, Variable>::fillFromItem(Variable *field, TCSProItem *item)
{
    if (isMultiple() && item->record)
        field->setRecordName(item->record->name);
    kxcsproimport::setTypeAndDecimals(field, item);
    kxcsproimport::setIdentity(field, item);

    const bool text = item->isAlpha == 1;
    if (!text) {
        field->setMinimum(QStringLiteral("0"));
        field->setMaximum(StringOfChar('9', kxcsproimport::boundDigits(item->len)));
    }
    if (!item->getHasValueSet()) {
        if (!text && item->decimal > 0)
            kxcsproimport::setDecimalMaximum<TCSProImportCore>(field, item);
        return;
    }
    kxcsproimport::setFromValueSets(field, item);
}

template <class Reader, class Variable>
void TCSProImportCore<Reader, Variable>::getVarMissingValue(TGenericField *field)
{
    auto *variable = dynamic_cast<TCSProVariable *>(field);
    if (variable && variable->getItem())
        variable->setMissingCode(variable->getItem()->missingCode);
}

template <class Reader, class Variable>
void TCSProImportCore<Reader, Variable>::getNotApplicable(TGenericField *field)
{
    auto *variable = dynamic_cast<TCSProVariable *>(field);
    if (variable && variable->getItem())
        variable->setNotApplicableCode(variable->getItem()->notApplCode);
}

template <class Reader, class Variable>
QString TCSProImportCore<Reader, Variable>::StringOfChar(char c, int n)
{
    if (n <= 0)
        return QString();
    return QString(n, QLatin1Char(c));
}

#endif // CSPROIMPORTCORE_P_H

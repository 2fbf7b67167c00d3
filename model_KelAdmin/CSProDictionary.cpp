#include "CSProDictionary.h"
#include "KxText_p.h"

#include "KxConstants.h"
#include "KxErrorManager.h"

#include <QPair>
#include <QRegularExpression>
#include <QVector>

#include <algorithm>
#include <stdexcept>

// ---------------------------------------------------------------- TCSProRecord

TCSProRecord::TCSProRecord() = default;

void TCSProRecord::addItem(TCSProItem *)
{
}

int TCSProRecord::getCount()
{
    return 1;
}

TCSProItem *TCSProRecord::getItem(int)
{
    return nullptr;
}

// ------------------------------------------------------------------ TCSProItem

TCSProItem::TCSProItem()
    : valueSets(new QList<TCSProValueSet *>)
{
}

TCSProItem::~TCSProItem()
{
    delete valueSets;
}

int TCSProItem::getCount()
{
    count = valueSets ? valueSets->size() : 0;
    return count;
}

bool TCSProItem::getHasValueSet()
{
    if (!valueSets)
        return false;
    count = valueSets->size();
    return count != 0;
}

TCSProValueSet *TCSProItem::getValueSet(int i)
{
    return valueSets->at(i);
}

void TCSProItem::addValueSet(TCSProValueSet *valueSet)
{
    if (!valueSets)
        valueSets = new QList<TCSProValueSet *>;
    count = valueSets->size();
    if (count == 0)
        valueSets->append(valueSet);
}

// -------------------------------------------------------------- TCSProValueSet

TCSProValueSet::TCSProValueSet()
    : items(new QList<TValueSetItem *>)
{
}

TCSProValueSet::~TCSProValueSet()
{
    delete items;
}

void TCSProValueSet::addItem(TValueSetItem *item)
{
    items->append(item);
}

int TCSProValueSet::getCount()
{
    return items->size();
}

TValueSetItem *TCSProValueSet::getValueSetItem(int i)
{
    return items->at(i);
}

void TCSProValueSet::setValueSetItem(int index, TValueSetItem *item)
{
    try {
        if (index < 0 || index > items->size())
            throw std::out_of_range("setValueSetItem");
        items->insert(index, item);
    } catch (...) {
        throw new KxErrorManager(EM_CSProValueSet, 211, QString(QChar(index)));
    }
}

namespace {

bool isBase10Int(const QString &code)
{
    bool ok = false;
    kxtext::toInt(code, &ok);
    return ok;
}

// The walks below raise this for a null entry; the caller turns it into error 101.
TValueSetItem *entryAt(const QList<TValueSetItem *> *items, int i)
{
    TValueSetItem *entry = items->at(i);
    if (!entry)
        throw std::invalid_argument("null value-set entry");
    return entry;
}

} // namespace

void TCSProValueSet::sortItems()
{
    try {
        if (isNumeric) {
            // The numeric comparator is an ordering only when every code is an
            // integer (validateItems(1) has been passed). Then each code is
            // converted once and the sort compares the numbers, which answers
            // exactly as CompareCodesNumeric does. For any other content a merge
            // sort is used so that a comparator answering true both ways cannot
            // drive the sort outside the list.
            QVector<QPair<int, TValueSetItem *>> keyed;
            keyed.reserve(items->size());
            bool ordering = true;
            for (TValueSetItem *e : qAsConst(*items)) {
                bool ok = false;
                const int code = e ? kxtext::toInt(e->code, &ok) : 0;
                ordering = ordering && ok;
                keyed.append(qMakePair(code, e));
            }
            if (ordering) {
                std::sort(keyed.begin(), keyed.end(),
                          [](const QPair<int, TValueSetItem *> &a, const QPair<int, TValueSetItem *> &b) {
                              return a.first < b.first;
                          });
                for (int i = 0; i < keyed.size(); ++i)
                    (*items)[i] = keyed.at(i).second;
            } else {
                std::stable_sort(items->begin(), items->end(),
                                 [](TValueSetItem *a, TValueSetItem *b) { return CompareCodesNumeric(a, b); });
            }
        } else {
            std::sort(items->begin(), items->end(),
                      [](TValueSetItem *a, TValueSetItem *b) { return CompareCodes(a, b); });
        }
    } catch (...) {
        throw new KxErrorManager(EM_CSProValueSet, 101);
    }
}

bool TCSProValueSet::validateItems(int mode)
{
    if (isNumeric == 0 || items->isEmpty())
        return true;
    try {
        bool result = true;
        for (int i = 0; i < items->size(); ++i) {
            const TValueSetItem *entry = entryAt(items, i);
            if (mode == 1) {
                if (!isBase10Int(entry->code))
                    result = false;
            } else if (mode == 0) {
                if (IsDecimal(entry->code))
                    result = false;
            }
        }
        return result;
    } catch (...) {
        throw new KxErrorManager(EM_CSProValueSet, 101);
    }
}

void TCSProValueSet::itemsAsNumberZero()
{
    if (isNumeric == 0)
        return;
    try {
        for (int i = 0; i < items->size(); ++i) {
            TValueSetItem *entry = entryAt(items, i);
            if (!isBase10Int(entry->code))
                entry->code = QStringLiteral("0");
        }
    } catch (...) {
        throw new KxErrorManager(EM_CSProValueSet, 101);
    }
}

void TCSProValueSet::itemsAsInteger()
{
    if (isNumeric == 0)
        return;
    try {
        for (int i = 0; i < items->size(); ++i) {
            TValueSetItem *entry = entryAt(items, i);
            if (IsDecimal(entry->code))
                entry->code = QString::number(entry->code.toFloat(), 'f', 0);
        }
    } catch (...) {
        throw new KxErrorManager(EM_CSProValueSet, 101);
    }
}

// --------------------------------------------------------------- TValueSetItem

namespace {
// Every entry starts with this code; sharing one string spares an allocation per entry.
const QString InitialCode{QChar(3)};
} // namespace

TValueSetItem::TValueSetItem()
    : code(InitialCode)
{
}

TValueSetItem::~TValueSetItem() = default;

// -------------------------------------------------------------- free functions

bool IsNumeric2(QString s)
{
    return isBase10Int(s);
}

bool IsDecimal(const QString &s)
{
    static const QRegularExpression decimal(QStringLiteral("^\\d*\\.\\d*$"));
    // Without a point the pattern cannot match: most codes skip the regex.
    if (!s.contains(QLatin1Char('.')))
        return false;
    return decimal.match(s).hasMatch();
}

bool CompareCodes(void *a, void *b)
{
    if (!a || !b)
        throw std::invalid_argument("Null pointer passed to CompareCodes");
    return static_cast<TValueSetItem *>(a)->code < static_cast<TValueSetItem *>(b)->code;
}

bool CompareCodesNumeric(void *a, void *b)
{
    if (!a || !b)
        return true;
    bool okA = false;
    bool okB = false;
    const int first = static_cast<TValueSetItem *>(a)->code.toInt(&okA, 10);
    const int second = static_cast<TValueSetItem *>(b)->code.toInt(&okB, 10);
    if (okA && okB)
        return double(second) > double(first);
    return true;
}

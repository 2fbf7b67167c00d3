#include "CSProLayout_p.h"

#include <QHash>

#include <algorithm>
#include <limits>

namespace KxCodebook {
namespace detail {

void fillLinkedValueSets(QVector<Variable> *variables)
{
    QHash<QString, QVector<Value>> firstByLink;
    for (Variable &v : *variables) {
        for (ValueSet &set : v.valueSets) {
            if (set.link.isEmpty())
                continue;
            const auto found = firstByLink.constFind(set.link);
            if (found == firstByLink.constEnd())
                firstByLink.insert(set.link, set.values);
            else if (set.values.isEmpty() && !found->isEmpty()) {
                set.values = *found;
                set.linkFilled = true;
            }
        }
    }
}

MissingValue missingValueOf(const Value &value, const Code &code)
{
    MissingValue m;
    m.from = code.from;
    m.to = code.to;
    m.isRange = code.isRange;
    m.special = value.special;
    m.label = value.labels.primary();
    return m;
}

QVector<MissingValue> missingValuesOf(const ValueSet &set)
{
    QVector<MissingValue> missing;
    for (const Value &value : set.values) {
        if (value.special == Special::None)
            continue;
        for (const Code &code : value.codes)
            missing.append(missingValueOf(value, code));
    }
    return missing;
}

namespace {

// The last column of \a v, in 64 bits: starts and widths come from the file.
qint64 lastColumn(const Variable &v)
{
    return qint64(v.start) + qint64(v.width) * qint64(std::max(v.occurrences, 1)) - 1;
}

int clampToInt(qint64 n)
{
    return int(std::min<qint64>(std::max<qint64>(n, 0), std::numeric_limits<int>::max()));
}

} // namespace

void computeRecordLengths(QVector<Record> *records, const QVector<Variable> &variables,
                          int recordTypeStart, int recordTypeLength)
{
    qint64 common = recordTypeLength > 0 ? qint64(recordTypeStart) + recordTypeLength - 1 : 0;
    QHash<QString, qint64> ends;
    for (const Variable &v : variables) {
        if (v.isId)
            common = std::max(common, lastColumn(v));
        else if (!v.isSubitem && v.storage != Storage::Binary) {
            qint64 &end = ends[v.record];
            end = std::max(end, lastColumn(v));
        }
    }
    for (Record &r : *records)
        r.length = clampToInt(std::max(common, ends.value(r.name)));
}

} // namespace detail
} // namespace KxCodebook

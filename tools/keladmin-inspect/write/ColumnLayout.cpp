#include "ColumnLayout.h"

#include "TextOutput.h"

#include <QHash>
#include <QSet>
#include <QVector>

#include <algorithm>
#include <functional>
#include <queue>
#include <utility>
#include <vector>

namespace kxinspect {

bool hasColumnLayout(const InspectReport &report)
{
    return report.kind == InspectReport::Kind::Dictionary
        && (report.source.format == QLatin1String("cspro") || report.source.format == QLatin1String("cspro8"));
}

namespace {

//! Why a field has no columns to draw, or an empty text.
QString whyNotDrawn(const FieldRow &f)
{
    if (f.size < 1)
        return QStringLiteral("%1: length %2").arg(printable(f.name), QString::number(f.size));
    if (f.start < 1)
        return QStringLiteral("%1: start %2, before column 1").arg(printable(f.name), QString::number(f.start));
    if (qint64(f.start) + f.size - 1 > MaxDrawnColumn)
        return QStringLiteral("%1: ends after column %2").arg(printable(f.name), QString::number(MaxDrawnColumn));
    return QString();
}

ColumnBox boxOfField(const FieldRow &f)
{
    ColumnBox box;
    box.kind = f.subItem ? BoxKind::SubItem : f.identification ? BoxKind::IdentificationItem : BoxKind::Item;
    box.name = f.name;
    box.label = f.label;
    box.start = f.start;
    box.length = f.size;
    box.changed = f.changed;
    return box;
}

bool byStart(const ColumnBox &a, const ColumnBox &b)
{
    return a.start < b.start;
}

/*! Sorts the boxes by their start and gives each the first row where it
 * overlaps nothing; returns the rows used. The rows whose last box ends
 * before a box starts are free for it; of those it takes the lowest, so that
 * n boxes cost O(n log n) however many overlap. */
int assignLanes(QList<ColumnBox> &boxes)
{
    std::stable_sort(boxes.begin(), boxes.end(), byStart);
    using LaneEnd = std::pair<qint64, int>;  // (last column, row)
    std::priority_queue<LaneEnd, std::vector<LaneEnd>, std::greater<LaneEnd>> busy;
    std::priority_queue<int, std::vector<int>, std::greater<int>> free;
    int lanes = 0;
    for (ColumnBox &box : boxes) {
        while (!busy.empty() && busy.top().first < box.start) {
            free.push(busy.top().second);
            busy.pop();
        }
        if (free.empty()) {
            box.lane = lanes++;
        } else {
            box.lane = free.top();
            free.pop();
        }
        busy.push({box.end(), box.lane});
    }
    return lanes;
}

//! How many boxes cover each column, index 1 to end (every drawn box ends by MaxDrawnColumn).
QVector<int> coverageOf(const QList<ColumnBox> &boxes, qint64 end)
{
    QVector<int> covering(int(end) + 2, 0);
    for (const ColumnBox &box : boxes) {
        covering[int(box.start)] += 1;
        covering[int(box.end()) + 1] -= 1;
    }
    for (int c = 1; c < covering.size(); ++c)
        covering[c] += covering[c - 1];
    return covering;
}

ColumnBox markBox(BoxKind kind, qint64 first, qint64 last)
{
    ColumnBox mark;
    mark.kind = kind;
    mark.start = first;
    mark.length = last - first + 1;
    return mark;
}

/*! Labels every overlap of \a marks (disjoint, in column order) with the
 * names of the boxes that reach into its columns, each name once, in the
 * boxes' order: each box is looked up among the marks by binary search. */
void nameOverlaps(QList<ColumnBox> &marks, const QList<ColumnBox> &boxes)
{
    QVector<QStringList> names(marks.size());
    QVector<QSet<QString>> seen(marks.size());
    const auto endsBefore = [](const ColumnBox &mark, qint64 column) { return mark.end() < column; };
    for (const ColumnBox &box : boxes) {
        auto it = std::lower_bound(marks.cbegin(), marks.cend(), box.start, endsBefore);
        for (; it != marks.cend() && it->start <= box.end(); ++it) {
            const int m = int(it - marks.cbegin());
            if (it->kind == BoxKind::Overlap && !seen[m].contains(box.name)) {
                seen[m].insert(box.name);
                names[m].append(box.name);
            }
        }
    }
    for (int m = 0; m < marks.size(); ++m) {
        if (marks[m].kind == BoxKind::Overlap)
            marks[m].label = names.at(m).join(QStringLiteral(", "));
    }
}

/*! The runs of columns from 1 to \a end that no box covers (gaps) or that
 * two boxes or more cover (overlaps); an overlap's label names its boxes. */
QList<ColumnBox> marksOf(const QList<ColumnBox> &boxes, qint64 end)
{
    const QVector<int> covering = coverageOf(boxes, end);
    auto kindAt = [&covering](qint64 c) { return covering.at(int(c)) == 0 ? 0 : covering.at(int(c)) == 1 ? 1 : 2; };
    QList<ColumnBox> marks;
    qint64 first = 1;
    for (qint64 c = 1; c <= end; ++c) {
        if (c < end && kindAt(c + 1) == kindAt(c))
            continue;
        if (kindAt(c) != 1)
            marks.append(markBox(kindAt(c) == 0 ? BoxKind::Gap : BoxKind::Overlap, first, c));
        first = c + 1;
    }
    nameOverlaps(marks, boxes);
    return marks;
}

//! The record-type code's columns as a box, when the dictionary has a record type.
void addRecordTypeBox(const SourceDescription &source, const QString &code, RecordDrawing &drawing)
{
    if (source.recordTypeLength < 1 || source.recordTypeStart < 1
        || qint64(source.recordTypeStart) + source.recordTypeLength - 1 > MaxDrawnColumn)
        return;
    ColumnBox box;
    box.kind = BoxKind::RecordType;
    box.name = code;
    box.start = source.recordTypeStart;
    box.length = source.recordTypeLength;
    drawing.boxes.append(box);
    drawing.end = qMax(drawing.end, box.end());
}

void addFieldBox(const FieldRow &f, RecordDrawing &drawing)
{
    const QString reason = whyNotDrawn(f);
    if (!reason.isEmpty()) {
        drawing.notDrawn.append(reason);
        return;
    }
    const ColumnBox box = boxOfField(f);
    if (box.kind == BoxKind::SubItem)
        drawing.subItems.append(box);
    else
        drawing.boxes.append(box);
    drawing.end = qMax(drawing.end, box.end());
}

//! The drawing of record \a name from the fields at \a fieldIndexes of the report's fields, in that order.
RecordDrawing drawingOf(const InspectReport &report, const QString &name, const QString &code,
                        const QVector<int> &fieldIndexes)
{
    RecordDrawing drawing;
    drawing.name = name;
    drawing.recordType = code;
    addRecordTypeBox(report.source, code, drawing);
    for (int i : fieldIndexes)
        addFieldBox(report.fields.at(i), drawing);
    drawing.itemLanes = assignLanes(drawing.boxes);
    drawing.subItemLanes = assignLanes(drawing.subItems);
    drawing.marks = marksOf(drawing.boxes, drawing.end);
    return drawing;
}

} // namespace

QList<RecordDrawing> recordDrawingsOf(const InspectReport &report)
{
    QList<RecordDrawing> drawings;
    if (!hasColumnLayout(report))
        return drawings;
    // The fields sorted out by record once, in their order: a dictionary of
    // many records is not read again for each. The identification fields
    // belong to every record's line; the others to the record they were
    // read into (or their group).
    QVector<int> idFields;
    QHash<QString, QVector<int>> recordFields;
    QVector<int> everyField;
    for (int i = 0; i < report.fields.size(); ++i) {
        const FieldRow &f = report.fields.at(i);
        everyField << i;
        if (f.identification)
            idFields << i;
        else
            recordFields[f.record.isEmpty() ? f.group : f.record] << i;
    }
    for (const GroupRow &g : report.groups) {
        const QVector<int> own = recordFields.value(g.name);
        QVector<int> fields(idFields.size() + own.size());
        std::merge(idFields.cbegin(), idFields.cend(), own.cbegin(), own.cend(), fields.begin());
        drawings.append(drawingOf(report, g.name, g.recordType, fields));
    }
    if (report.groups.isEmpty() && !report.fields.isEmpty())
        drawings.append(drawingOf(report, QString(), QString(), everyField));
    return drawings;
}

namespace {

//! The boxes of \a boxes that lie on columns \a first to \a last, cut to them.
QList<ColumnBox> boxesWithin(const QList<ColumnBox> &boxes, qint64 first, qint64 last)
{
    QList<ColumnBox> within;
    for (ColumnBox box : boxes) {
        if (box.end() < first || box.start > last)
            continue;
        const qint64 end = qMin(box.end(), last);
        box.start = qMax(box.start, first);
        box.length = end - box.start + 1;
        within << box;
    }
    return within;
}

} // namespace

QList<RecordDrawing> wrappedDrawings(const RecordDrawing &drawing, qint64 columns)
{
    QList<RecordDrawing> rulers;
    columns = qMax<qint64>(columns, 1);
    for (qint64 first = drawing.first; first <= drawing.end; first += columns) {
        RecordDrawing ruler = drawing;
        ruler.first = first;
        ruler.end = qMin(drawing.end, first + columns - 1);
        ruler.boxes = boxesWithin(drawing.boxes, ruler.first, ruler.end);
        ruler.subItems = boxesWithin(drawing.subItems, ruler.first, ruler.end);
        ruler.marks = boxesWithin(drawing.marks, ruler.first, ruler.end);
        if (first != drawing.first)
            ruler.notDrawn.clear();
        rulers << ruler;
    }
    return rulers;
}

} // namespace kxinspect

#include "HtmlWriter.h"

#include "TextOutput.h"

#include <QSaveFile>
#include <QTextStream>
#include <QVector>

#include <algorithm>

namespace kxinspect {

QString htmlText(const QString &text)
{
    const QString shown = printable(text);
    QString out;
    out.reserve(shown.size());
    for (const QChar c : shown) {
        switch (c.unicode()) {
        case '&': out += QLatin1String("&amp;"); break;
        case '<': out += QLatin1String("&lt;"); break;
        case '>': out += QLatin1String("&gt;"); break;
        case '"': out += QLatin1String("&quot;"); break;
        case '\'': out += QLatin1String("&#39;"); break;
        default: out += c;
        }
    }
    return out;
}

bool hasColumnLayout(const InspectReport &report)
{
    return report.kind == InspectReport::Kind::Dictionary
        && (report.source.format == QLatin1String("cspro") || report.source.format == QLatin1String("cspro8"));
}

// ------------------------------------------------------------------ the layout of a record

namespace {

//! The identification items belong to every record's line; the others to the record they were read into.
bool belongsTo(const FieldRow &f, const QString &record)
{
    if (f.identification)
        return true;
    return (f.record.isEmpty() ? f.group : f.record) == record;
}

//! Why a field has no columns to draw, or an empty text.
QString whyNotDrawn(const FieldRow &f)
{
    if (f.size < 1)
        return QStringLiteral("%1: length %2").arg(printable(f.name)).arg(f.size);
    if (f.start < 1)
        return QStringLiteral("%1: start %2, before column 1").arg(printable(f.name)).arg(f.start);
    if (qint64(f.start) + f.size - 1 > MaxDrawnColumn)
        return QStringLiteral("%1: ends after column %2").arg(printable(f.name)).arg(MaxDrawnColumn);
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
    return box;
}

bool byStart(const ColumnBox &a, const ColumnBox &b)
{
    return a.start < b.start;
}

//! Sorts the boxes by their start and gives each the first row where it overlaps nothing; returns the rows used.
int assignLanes(QList<ColumnBox> &boxes)
{
    std::stable_sort(boxes.begin(), boxes.end(), byStart);
    QVector<qint64> laneEnds;
    for (ColumnBox &box : boxes) {
        int lane = 0;
        while (lane < laneEnds.size() && laneEnds.at(lane) >= box.start)
            ++lane;
        if (lane == laneEnds.size())
            laneEnds.append(0);
        laneEnds[lane] = box.end();
        box.lane = lane;
    }
    return laneEnds.size();
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

//! The names of the boxes that reach into \a mark's columns.
QString namesOver(const ColumnBox &mark, const QList<ColumnBox> &boxes)
{
    QStringList names;
    for (const ColumnBox &box : boxes) {
        if (box.start <= mark.end() && box.end() >= mark.start && !names.contains(box.name))
            names.append(box.name);
    }
    return names.join(QStringLiteral(", "));
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
    for (ColumnBox &mark : marks) {
        if (mark.kind == BoxKind::Overlap)
            mark.label = namesOver(mark, boxes);
    }
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

RecordDrawing drawingOf(const InspectReport &report, const QString &name, const QString &code, bool everyField)
{
    RecordDrawing drawing;
    drawing.name = name;
    drawing.recordType = code;
    addRecordTypeBox(report.source, code, drawing);
    for (const FieldRow &f : report.fields) {
        if (everyField || belongsTo(f, name))
            addFieldBox(f, drawing);
    }
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
    for (const GroupRow &g : report.groups)
        drawings.append(drawingOf(report, g.name, g.recordType, false));
    if (report.groups.isEmpty() && !report.fields.isEmpty())
        drawings.append(drawingOf(report, QString(), QString(), true));
    return drawings;
}

// ------------------------------------------------------------------ drawing in SVG

namespace {

constexpr int LeftMargin = 84;  // room for the row names
constexpr int RightMargin = 24;
constexpr int NumberBaseline = 13;
constexpr int RulerTop = 18;
constexpr int RulerHeight = 14;
constexpr int ItemsTop = 40;
constexpr int LaneGap = 4;
constexpr int MinBoxHeight = 24;
constexpr int MaxBoxHeight = 100;
constexpr int MinVerticalWidth = 12; // a column narrower than a line of text gets no name
constexpr int RowGap = 10;
constexpr int BottomMargin = 6;
constexpr double CharWidth = 6.6; // 11px of a monospace font whose advance is 0.6 em
constexpr int WidestDrawing = 1100;

//! Where columns and rows of one record's drawing lie, in pixels.
struct Geometry
{
    int scale = 16; //!< pixels per column
    qint64 end = 0;
    int itemLanes = 1;
    int subItemLanes = 0;
    int boxHeight = MinBoxHeight;

    qint64 x(qint64 column) const { return LeftMargin + (column - 1) * scale; }
    int itemY(int lane) const { return ItemsTop + lane * (boxHeight + LaneGap); }
    int subItemY(int lane) const { return itemY(itemLanes) + RowGap + lane * (boxHeight + LaneGap); }
    int height() const
    {
        return (subItemLanes > 0 ? subItemY(subItemLanes) : itemY(itemLanes)) + BottomMargin;
    }
    qint64 width() const { return LeftMargin + end * scale + RightMargin; }
};

//! One scale for the whole page, so that the same column lies at the same place on every ruler.
int pageScale(const QList<RecordDrawing> &drawings)
{
    qint64 widest = 1;
    for (const RecordDrawing &d : drawings)
        widest = qMax(widest, d.end);
    return int(qBound<qint64>(8, WidestDrawing / widest, 24));
}

QString num(qint64 n)
{
    return QString::number(n);
}

//! Columns from \a first to \a last in words, for the tooltips.
QString columnsText(qint64 first, qint64 length)
{
    if (length == 1)
        return QStringLiteral("column %1").arg(first);
    return QStringLiteral("columns %1\u2013%2 (%3)").arg(first).arg(first + length - 1).arg(length);
}

//! \a name whole when it fits \a room pixels, else cut with an ellipsis; empty when not even that fits.
QString fittedName(const QString &name, qint64 room)
{
    const QString shown = printable(name);
    const int chars = int((room - 4) / CharWidth);
    if (shown.size() <= chars)
        return shown;
    if (chars < 2)
        return QString();
    return shown.left(chars - 1) + QChar(0x2026);
}

bool fitsAcross(const QString &name, qint64 width)
{
    return printable(name).size() * CharWidth + 4 <= width;
}

//! The height a box needs for its name: across when it fits, else written upwards, up to MaxBoxHeight.
int heightForName(const ColumnBox &box, int scale)
{
    const qint64 width = box.length * scale;
    if (fitsAcross(box.name, width) || width < MinVerticalWidth)
        return MinBoxHeight;
    return qMin(MaxBoxHeight, int(printable(box.name).size() * CharWidth) + 8);
}

//! One height for every box of a drawing: the tallest its names need.
int boxHeightOf(const RecordDrawing &d, int scale)
{
    int height = MinBoxHeight;
    for (const ColumnBox &box : d.boxes + d.subItems)
        height = qMax(height, heightForName(box, scale));
    return height;
}

//! Column 1, the end and every step-th column, save one whose number would touch the end's.
bool numbered(qint64 column, const Geometry &g, int step)
{
    if (column == 1 || column == g.end)
        return true;
    const double endNumberWidth = num(g.end).size() * CharWidth + 4;
    return column % step == 0 && (g.end - column) * g.scale >= endNumberWidth;
}

//! The ruler: a bar with a tick between columns, the numbered columns marked and numbered above.
QString rulerSvg(const Geometry &g)
{
    const int step = g.scale >= 14 ? 5 : 10;
    QString svg = QStringLiteral("<rect class=\"ruler\" x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\"/>")
                      .arg(num(g.x(1)), num(RulerTop), num(g.end * g.scale), num(RulerHeight));
    for (qint64 c = 1; c <= g.end; ++c) {
        if (numbered(c, g, step)) {
            svg += QStringLiteral("<rect class=\"ruler-mark\" x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\"/>")
                       .arg(num(g.x(c)), num(RulerTop), num(g.scale), num(RulerHeight));
            svg += QStringLiteral("<text class=\"tick\" x=\"%1\" y=\"%2\">%3</text>")
                       .arg(num(g.x(c) + g.scale / 2), num(NumberBaseline), num(c));
        }
    }
    for (qint64 c = 2; c <= g.end; ++c)
        svg += QStringLiteral("<line class=\"tick\" x1=\"%1\" y1=\"%2\" x2=\"%1\" y2=\"%3\"/>")
                   .arg(num(g.x(c)), num(RulerTop + RulerHeight - 5), num(RulerTop + RulerHeight));
    return svg;
}

QString rowNamesSvg(const Geometry &g)
{
    const int middle = g.boxHeight / 2 + 4;
    QString svg = QStringLiteral("<text class=\"row\" x=\"%1\" y=\"%2\">items</text>")
                      .arg(num(LeftMargin - 8), num(g.itemY(0) + middle));
    if (g.subItemLanes > 0)
        svg += QStringLiteral("<text class=\"row\" x=\"%1\" y=\"%2\">subitems</text>")
                   .arg(num(LeftMargin - 8), num(g.subItemY(0) + middle));
    return svg;
}

QString kindClass(BoxKind kind)
{
    switch (kind) {
    case BoxKind::Item: return QStringLiteral("item");
    case BoxKind::IdentificationItem: return QStringLiteral("id");
    case BoxKind::SubItem: return QStringLiteral("subitem");
    case BoxKind::RecordType: return QStringLiteral("rectype");
    case BoxKind::Gap: return QStringLiteral("gap");
    case BoxKind::Overlap: return QStringLiteral("overlap");
    }
    return QString();
}

QString tooltipOf(const ColumnBox &box)
{
    const QString where = columnsText(box.start, box.length);
    switch (box.kind) {
    case BoxKind::RecordType: return QStringLiteral("record-type code %1 (%2)").arg(printable(box.name), where);
    case BoxKind::Gap: return QStringLiteral("gap: %1, no item").arg(where);
    case BoxKind::Overlap: return QStringLiteral("overlap: %1: %2").arg(where, printable(box.label));
    default: break;
    }
    QString text = QStringLiteral("%1: %2 (%3)").arg(printable(box.name), printable(box.label), where);
    if (box.kind == BoxKind::IdentificationItem)
        text += QStringLiteral(", identification item");
    else if (box.kind == BoxKind::SubItem)
        text += QStringLiteral(", subitem");
    return text;
}

/*! The name in its box: across when it fits, else written upwards from the
 * bottom when the box is wide enough for a line, cut to the box's height. */
QString nameSvg(const QString &name, const Geometry &g, qint64 x, qint64 width, int y)
{
    const qint64 middle = x + width / 2;
    if (fitsAcross(name, width))
        return QStringLiteral("<text class=\"name\" x=\"%1\" y=\"%2\">%3</text>")
            .arg(num(middle), num(y + g.boxHeight / 2 + 4), htmlText(printable(name)));
    const QString text = fittedName(name, g.boxHeight);
    if (width < MinVerticalWidth || text.isEmpty())
        return QString();
    const qint64 baseX = middle + 4;
    const int baseY = y + g.boxHeight - 4;
    return QStringLiteral("<text class=\"upwards\" x=\"%1\" y=\"%2\" transform=\"rotate(-90 %1 %2)\">%3</text>")
        .arg(num(baseX), num(baseY), htmlText(text));
}

//! A box with its tooltip and, where it has room, its name; \a y is its top.
QString boxSvg(const ColumnBox &box, const Geometry &g, int y)
{
    const qint64 width = box.length * g.scale;
    QString svg = QStringLiteral("<g><title>%1</title>").arg(htmlText(tooltipOf(box)));
    svg += QStringLiteral("<rect class=\"%1\" data-name=\"%2\" data-start=\"%3\" data-len=\"%4\" x=\"%5\" y=\"%6\" "
                          "width=\"%7\" height=\"%8\"/>")
               .arg(kindClass(box.kind), htmlText(box.name), num(box.start), num(box.length), num(g.x(box.start)),
                    num(y), num(width), num(g.boxHeight));
    svg += nameSvg(box.kind == BoxKind::Gap ? QStringLiteral("gap") : box.name, g, g.x(box.start), width, y);
    return svg + QStringLiteral("</g>");
}

//! An overlap spans every row of items; a gap sits on the first row, where no item is.
QString markSvg(const ColumnBox &mark, const Geometry &g)
{
    if (mark.kind == BoxKind::Gap)
        return boxSvg(mark, g, g.itemY(0));
    const int top = g.itemY(0) - 2;
    const int height = g.itemY(g.itemLanes - 1) + g.boxHeight + 2 - top;
    return QStringLiteral("<g><title>%1</title><rect class=\"overlap\" data-start=\"%2\" data-len=\"%3\" x=\"%4\" "
                          "y=\"%5\" width=\"%6\" height=\"%7\"/></g>")
        .arg(htmlText(tooltipOf(mark)), num(mark.start), num(mark.length), num(g.x(mark.start)), num(top),
             num(mark.length * g.scale), num(height));
}

//! The record-type code's columns, shaded from the ruler down to the last row.
QString recordTypeBandSvg(const RecordDrawing &d, const Geometry &g)
{
    for (const ColumnBox &box : d.boxes) {
        if (box.kind == BoxKind::RecordType)
            return QStringLiteral("<rect class=\"rectype-band\" data-start=\"%1\" data-len=\"%2\" x=\"%3\" y=\"%4\" "
                                  "width=\"%5\" height=\"%6\"/>")
                .arg(num(box.start), num(box.length), num(g.x(box.start)), num(RulerTop),
                     num(box.length * g.scale), num(g.height() - RulerTop));
    }
    return QString();
}

QString drawingSvg(const RecordDrawing &d, int scale)
{
    Geometry g;
    g.scale = scale;
    g.end = d.end;
    g.itemLanes = qMax(1, d.itemLanes);
    g.subItemLanes = d.subItemLanes;
    g.boxHeight = boxHeightOf(d, scale);
    QString svg = QStringLiteral("<svg class=\"record\" data-record=\"%1\" data-scale=\"%2\" data-left=\"%3\" "
                                 "data-end=\"%4\" width=\"%5\" height=\"%6\" viewBox=\"0 0 %5 %6\">")
                      .arg(htmlText(d.name), num(scale), num(LeftMargin), num(d.end), num(g.width()),
                           num(g.height()));
    svg += recordTypeBandSvg(d, g) + rulerSvg(g) + rowNamesSvg(g);
    for (const ColumnBox &box : d.boxes)
        svg += boxSvg(box, g, g.itemY(box.lane));
    for (const ColumnBox &box : d.subItems)
        svg += boxSvg(box, g, g.subItemY(box.lane));
    for (const ColumnBox &mark : d.marks)
        svg += markSvg(mark, g);
    return svg + QStringLiteral("</svg>");
}

} // namespace

// ------------------------------------------------------------------ the page

namespace {

const char *const PageStyle =
    "body { font-family: 'Liberation Sans', 'DejaVu Sans', sans-serif; font-size: 14px; margin: 24px;\n"
    "       color: #1d1d1d; }\n"
    "h1 { font-size: 22px; margin: 0 0 12px 0; }\n"
    "h2 { font-size: 18px; margin: 28px 0 8px 0; border-bottom: 1px solid #c8c8c8; }\n"
    "h3 { font-size: 15px; margin: 18px 0 4px 0; }\n"
    "table { border-collapse: collapse; }\n"
    "th, td { border: 1px solid #c8c8c8; padding: 3px 6px; text-align: left; vertical-align: top; }\n"
    "th { background: #e8eef5; }\n"
    "table.summary th { width: 11em; }\n"
    "td.num { text-align: right; }\n"
    ".mono, td.name { font-family: 'Liberation Mono', 'DejaVu Sans Mono', monospace; }\n"
    "ul.values { margin: 0; padding: 0; list-style: none; }\n"
    ".drawing { overflow-x: auto; }\n"
    "svg text { font-family: 'Liberation Mono', 'DejaVu Sans Mono', monospace; font-size: 11px; fill: #1d1d1d; }\n"
    "svg text.tick, svg text.name { text-anchor: middle; }\n"
    "svg text.upwards { text-anchor: start; }\n"
    "svg text.row { text-anchor: end; font-family: 'Liberation Sans', 'DejaVu Sans', sans-serif; fill: #555555; }\n"
    "svg line.tick { stroke: #555555; stroke-width: 1; }\n"
    "rect.ruler { fill: #f4f4f4; stroke: #9a9a9a; }\n"
    "rect.ruler-mark { fill: #c9d3de; }\n"
    "rect.item { fill: #dbe9f6; stroke: #3b6ea5; }\n"
    "rect.id { fill: #e4dcf2; stroke: #6a4fa0; }\n"
    "rect.subitem { fill: #d9efd7; stroke: #3c8a3a; }\n"
    "rect.rectype { fill: #fbd38d; stroke: #b86e00; }\n"
    "rect.rectype-band { fill: #fff1dc; }\n"
    "rect.gap { fill: #fffbd0; stroke: #a08800; stroke-dasharray: 4 2; }\n"
    "rect.overlap { fill: #e0202033; stroke: #c00000; stroke-width: 2; stroke-dasharray: 5 3; }\n"
    ".legend { margin: 8px 0 4px 0; }\n"
    ".legend span { display: inline-block; margin: 2px 18px 2px 0; }\n"
    ".legend svg { vertical-align: middle; margin-right: 4px; }\n"
    ".note { color: #555555; }\n";

//! The file's name without its folders, for the title.
QString baseName(const QString &path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

QString row(const QString &header, const QString &html)
{
    return QStringLiteral("<tr><th>%1</th><td>%2</td></tr>\n").arg(header, html);
}

QString groupsHtml(const QList<GroupRow> &groups)
{
    QString html = num(groups.size());
    for (const GroupRow &g : groups)
        html += QStringLiteral("<br/><span class=\"mono\">%1</span> (%2 %3)")
                    .arg(htmlText(g.entry), num(g.fieldCount), g.fieldCount == 1 ? "field" : "fields");
    return html;
}

QString summaryHtml(const InspectReport &report)
{
    const SourceDescription &s = report.source;
    QString type = htmlText(s.providerType);
    if (s.descriptionType != s.providerType)
        type += QStringLiteral(" (description type: %1)")
                    .arg(s.descriptionType.isEmpty() ? QStringLiteral("none") : htmlText(s.descriptionType));
    QString html = QStringLiteral("<h2>Summary</h2>\n<table class=\"summary\">\n");
    html += row(QStringLiteral("File"), QStringLiteral("<span class=\"mono\">%1</span>").arg(htmlText(s.file)));
    html += row(QStringLiteral("Format"), htmlText(s.format) + (s.formatDetected ? " (detected)" : " (forced)"));
    html += row(QStringLiteral("Provider id"),
                QStringLiteral("<span class=\"mono\">%1</span>").arg(htmlText(s.providerId)));
    html += row(QStringLiteral("Provider type"), type);
    html += row(QStringLiteral("Record type"),
                QStringLiteral("start %1, length %2").arg(s.recordTypeStart).arg(s.recordTypeLength));
    html += row(QStringLiteral("Groups"), groupsHtml(report.groups));
    html += row(QStringLiteral("Fields"), num(report.fields.size()));
    html += row(QStringLiteral("Notes"), num(report.notes.size()));
    return html + QStringLiteral("</table>\n");
}

QString swatch(const QString &cssClass, const QString &text)
{
    return QStringLiteral("<span><svg width=\"30\" height=\"16\"><rect class=\"%1\" x=\"1\" y=\"1\" width=\"28\" "
                          "height=\"14\"/></svg>%2</span>\n")
        .arg(cssClass, text);
}

QString legendHtml(const InspectReport &report)
{
    QString html = QStringLiteral("<div class=\"legend\">\n");
    html += swatch(QStringLiteral("item"), QStringLiteral("item, from its start column over its length"));
    html += swatch(QStringLiteral("id"), QStringLiteral("identification item (record Common): on every record's "
                                                         "line, so drawn on every record's ruler"));
    html += swatch(QStringLiteral("subitem"), QStringLiteral("subitem, on the second row over its parent"));
    html += swatch(QStringLiteral("rectype"), QStringLiteral("record-type code (columns shaded down the drawing)"));
    html += swatch(QStringLiteral("overlap"), QStringLiteral("overlap of items that are not subitems"));
    html += swatch(QStringLiteral("gap"), QStringLiteral("gap: columns no item covers"));
    html += QStringLiteral("</div>\n<p class=\"note\">Columns are the dictionary's 1-based start columns. A name "
                           "that does not fit its box is cut with \u2026 or left out; hover over a box for the "
                           "name, the label and the columns.</p>\n");
    if (report.source.format == QLatin1String("cspro8"))
        html += QStringLiteral("<p class=\"note\">CSPro 8 JSON dictionaries: the reading takes no subitem over (a "
                               "\"subitems\" list is skipped and no item is marked as a subitem), so subitems are "
                               "not drawn, and an item written over another item's columns shows as an "
                               "overlap.</p>\n");
    return html;
}

QString recordHeading(const RecordDrawing &d)
{
    if (d.name.isEmpty())
        return QStringLiteral("<h3>All items: columns 1\u2013%1</h3>\n").arg(d.end);
    QString heading = QStringLiteral("<h3>Record <span class=\"mono\">%1</span>").arg(htmlText(d.name));
    if (!d.recordType.isEmpty())
        heading += QStringLiteral(", record type <span class=\"mono\">%1</span>").arg(htmlText(d.recordType));
    return heading + QStringLiteral(": columns 1\u2013%1</h3>\n").arg(d.end);
}

QString drawingsHtml(const InspectReport &report)
{
    const QList<RecordDrawing> drawings = recordDrawingsOf(report);
    const int scale = pageScale(drawings);
    QString html = QStringLiteral("<h2>Records</h2>\n") + legendHtml(report);
    for (const RecordDrawing &d : drawings) {
        html += recordHeading(d);
        html += QStringLiteral("<div class=\"drawing\">%1</div>\n").arg(drawingSvg(d, scale));
        if (!d.notDrawn.isEmpty())
            html += QStringLiteral("<p class=\"note\">Not drawn: %1.</p>\n")
                        .arg(htmlText(d.notDrawn.join(QStringLiteral("; "))));
    }
    return html;
}

QString cell(const QString &text, const char *cssClass = nullptr)
{
    if (cssClass)
        return QStringLiteral("<td class=\"%1\">%2</td>").arg(QLatin1String(cssClass), htmlText(text));
    return QStringLiteral("<td>%1</td>").arg(htmlText(text));
}

QString headerRow(const QStringList &headers)
{
    QString html = QStringLiteral("<tr>");
    for (const QString &h : headers)
        html += QStringLiteral("<th>%1</th>").arg(htmlText(h));
    return html + QStringLiteral("</tr>\n");
}

//! SPSS and Stata fields have no columns: their variables in file order instead of a ruler.
QString variablesHtml(const InspectReport &report)
{
    QString html = QStringLiteral("<h2>Variables</h2>\n<table class=\"variables\">\n");
    html += headerRow({"#", "Name", "Type", "Width", "Decimals", "Label"});
    for (int i = 0; i < report.fields.size(); ++i) {
        const FieldRow &f = report.fields.at(i);
        html += QStringLiteral("<tr>") + cell(num(i + 1), "num") + cell(f.name, "name") + cell(f.type)
            + cell(num(f.size), "num") + cell(num(f.decimals), "num") + cell(f.label) + QStringLiteral("</tr>\n");
    }
    return html + QStringLiteral("</table>\n");
}

QString valueLabelsHtml(const QList<ValueLabel> &labels)
{
    if (labels.isEmpty())
        return QStringLiteral("<td></td>");
    QString html = QStringLiteral("<td><ul class=\"values\">");
    for (const ValueLabel &vl : labels)
        html += QStringLiteral("<li><span class=\"mono\">%1</span> = %2</li>")
                    .arg(htmlText(vl.code), htmlText(vl.label));
    return html + QStringLiteral("</ul></td>");
}

QString fieldsHtml(const QList<FieldRow> &fields)
{
    QString html = QStringLiteral("<h2>Fields</h2>\n<table class=\"fields\">\n");
    html += headerRow({"Name", "Label", "Type", "Start", "Size", "Dec", "Min", "Max", "Missing", "Not applicable",
                       "Group", "Value labels"});
    for (const FieldRow &f : fields) {
        html += QStringLiteral("<tr>") + cell(f.name, "name") + cell(f.label) + cell(f.type)
            + cell(num(f.start), "num") + cell(num(f.size), "num") + cell(num(f.decimals), "num") + cell(f.minimum)
            + cell(f.maximum) + cell(f.missingCode) + cell(f.notApplicableCode) + cell(f.group)
            + valueLabelsHtml(f.valueLabels) + QStringLiteral("</tr>\n");
    }
    return html + QStringLiteral("</table>\n");
}

QString notesHtml(const QList<NoteRow> &notes)
{
    QString html = QStringLiteral("<h2>Reading notes</h2>\n<table class=\"notes\">\n");
    html += headerRow({"Line", "Subject", "Kind", "Text"});
    for (const NoteRow &n : notes)
        html += QStringLiteral("<tr>") + cell(n.line > 0 ? num(n.line) : QStringLiteral("-"), "num")
            + cell(n.subject, "name") + cell(n.kind) + cell(n.text) + QStringLiteral("</tr>\n");
    return html + QStringLiteral("</table>\n");
}

QString lookupHtml(const LookupResult &lookup)
{
    QString html = QStringLiteral("<h2>Summary</h2>\n<table class=\"summary\">\n");
    html += row(QStringLiteral("Lookup file"), htmlText(lookup.file));
    html += row(QStringLiteral("Separator"), htmlText(lookup.separator));
    html += row(QStringLiteral("Entries"), num(lookup.entries));
    html += row(QStringLiteral("Messages"), num(lookup.messages.size()));
    html += QStringLiteral("</table>\n<h2>Label frequencies</h2>\n<table class=\"frequencies\">\n");
    html += headerRow({"Count", "Label"});
    for (const auto &f : lookup.labelFrequencies)
        html += QStringLiteral("<tr>") + cell(num(f.second), "num") + cell(f.first) + QStringLiteral("</tr>\n");
    return html + QStringLiteral("</table>\n");
}

QString dictionaryHtml(const InspectReport &report)
{
    QString html = summaryHtml(report);
    html += hasColumnLayout(report) ? drawingsHtml(report) : variablesHtml(report);
    return html + fieldsHtml(report.fields);
}

} // namespace

QString htmlOfReport(const InspectReport &report, const WriteSettings &settings)
{
    const bool lookup = report.kind == InspectReport::Kind::Lookup;
    const QString file = lookup ? report.lookup.file : report.source.file;
    const QString title = QStringLiteral("Codebook of %1").arg(baseName(file));
    QString html = QStringLiteral("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\"/>\n");
    html += QStringLiteral("<title>%1</title>\n<style>\n%2</style>\n</head>\n<body>\n<h1>%1</h1>\n")
                .arg(htmlText(title), QLatin1String(PageStyle));
    html += lookup ? lookupHtml(report.lookup) : dictionaryHtml(report);
    if (settings.notes && !report.notes.isEmpty())
        html += notesHtml(report.notes);
    return html + QStringLiteral("</body>\n</html>\n");
}

void writeHtmlReport(const InspectReport &report, const WriteSettings &settings, QTextStream &out)
{
    out << htmlOfReport(report, settings);
    out.flush();
}

QString writeHtmlFile(const InspectReport &report, const WriteSettings &settings, const QString &path)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return QStringLiteral("cannot be written: %1").arg(file.errorString());
    file.write(htmlOfReport(report, settings).toUtf8());
    if (!file.commit())
        return QStringLiteral("cannot be written: %1").arg(file.errorString());
    return QString();
}

} // namespace kxinspect

#include "SvgDrawing.h"

#include "TextOutput.h"

#include <QVector>

#include <algorithm>

namespace kxinspect {

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
    qint64 first = 1; //!< the ruler's first column
    qint64 end = 0;
    int itemLanes = 1;
    int subItemLanes = 0;
    int boxHeight = MinBoxHeight;

    qint64 x(qint64 column) const { return LeftMargin + (column - first) * scale; }
    int itemY(int lane) const { return ItemsTop + lane * (boxHeight + LaneGap); }
    int subItemY(int lane) const { return itemY(itemLanes) + RowGap + lane * (boxHeight + LaneGap); }
    int height() const
    {
        return (subItemLanes > 0 ? subItemY(subItemLanes) : itemY(itemLanes)) + BottomMargin;
    }
    qint64 columns() const { return end - first + 1; }
    qint64 width() const { return LeftMargin + columns() * scale + RightMargin; }
};

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

//! The first column, the end and every step-th column, save one whose number would touch the first's or the end's.
bool numbered(qint64 column, const Geometry &g, int step)
{
    if (column == g.first || column == g.end)
        return true;
    const double endNumberWidth = num(g.end).size() * CharWidth + 4;
    const double firstNumberWidth = num(g.first).size() * CharWidth + 4;
    return column % step == 0 && (g.end - column) * g.scale >= endNumberWidth
        && (g.first == 1 || (column - g.first) * g.scale >= firstNumberWidth);
}

//! The ruler: a bar with a tick between columns, the numbered columns marked and numbered above.
QString rulerSvg(const Geometry &g)
{
    const int step = g.scale >= 14 ? 5 : 10;
    QString svg = QStringLiteral("<rect class=\"ruler\" x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\"/>")
                      .arg(num(g.x(g.first)), num(RulerTop), num(g.columns() * g.scale), num(RulerHeight));
    for (qint64 c = g.first; c <= g.end; ++c) {
        if (numbered(c, g, step)) {
            svg += QStringLiteral("<rect class=\"ruler-mark\" x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\"/>")
                       .arg(num(g.x(c)), num(RulerTop), num(g.scale), num(RulerHeight));
            svg += QStringLiteral("<text class=\"tick\" x=\"%1\" y=\"%2\">%3</text>")
                       .arg(num(g.x(c) + g.scale / 2), num(NumberBaseline), num(c));
        }
    }
    for (qint64 c = g.first + 1; c <= g.end; ++c)
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
               .arg(kindClass(box.kind) + (box.changed ? QStringLiteral(" changed") : QString()), htmlText(box.name),
                    num(box.start), num(box.length), num(g.x(box.start)),
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

} // namespace

//! One scale for the whole page, so that the same column lies at the same place on every ruler.
int pageScale(const QList<RecordDrawing> &drawings)
{
    qint64 widest = 1;
    for (const RecordDrawing &d : drawings)
        widest = qMax(widest, d.end);
    return int(qBound<qint64>(8, WidestDrawing / widest, 24));
}

QString drawingSvg(const RecordDrawing &d, int scale)
{
    Geometry g;
    g.scale = scale;
    g.first = d.first;
    g.end = d.end;
    g.itemLanes = qMax(1, d.itemLanes);
    g.subItemLanes = d.subItemLanes;
    g.boxHeight = boxHeightOf(d, scale);
    QString svg = QStringLiteral("<svg class=\"record\" data-record=\"%1\" data-scale=\"%2\" data-left=\"%3\" "
                                 "%7data-end=\"%4\" width=\"%5\" height=\"%6\" viewBox=\"0 0 %5 %6\">")
                      .arg(htmlText(d.name), num(scale), num(LeftMargin), num(d.end), num(g.width()),
                           num(g.height()),
                           d.first == 1 ? QString() : QStringLiteral("data-first=\"%1\" ").arg(d.first));
    svg += recordTypeBandSvg(d, g) + rulerSvg(g) + rowNamesSvg(g);
    for (const ColumnBox &box : d.boxes)
        svg += boxSvg(box, g, g.itemY(box.lane));
    for (const ColumnBox &box : d.subItems)
        svg += boxSvg(box, g, g.subItemY(box.lane));
    for (const ColumnBox &mark : d.marks)
        svg += markSvg(mark, g);
    return svg + QStringLiteral("</svg>");
}

} // namespace kxinspect

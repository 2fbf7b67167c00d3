#include "HtmlWriter.h"

#include "CodebookPage.h"
#include "ColumnLayout.h"
#include "FileOutput.h"
#include "SvgDrawing.h"
#include "TextOutput.h"

#include <QIODevice>
#include <QTextStream>

#include <functional>

namespace kxinspect {

namespace {

QString num(qint64 n)
{
    return QString::number(n);
}

} // namespace

// ------------------------------------------------------------------ the page

namespace {

const char *const PageStyleText =
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
    ".note { color: #555555; }\n"
    "rect.changed { stroke: #c00000; stroke-width: 3; }\n"
    "section.record { margin-top: 10px; }\n"
    "p.record-facts { margin: 0 0 6px 0; color: #555555; }\n"
    "tr.differs td { background: #fff4e5; }\n"
    "div.differs { color: #8a4b00; }\n"
    "div.differs span.kind { font-family: 'Liberation Mono', 'DejaVu Sans Mono', monospace; }\n"
    "span.special, span.language { color: #555555; font-size: 12px; }\n"
    "div.set { font-weight: bold; }\n"
    "@page { size: A4; margin: 12mm; }\n"
    "@media print {\n"
    "  body { margin: 0; font-size: 11px; }\n"
    "  .drawing { overflow: visible; break-inside: avoid; }\n"
    "  svg.record:not(.codebook) { max-width: 100%; height: auto; }\n"
    "  section.record { break-before: page; }\n"
    "  thead { display: table-header-group; }\n"
    "  tr { break-inside: avoid; }\n"
    "}\n";

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

/* The page's long parts go to a PagePieces as they are made, a record's
 * drawing or a table row at a time, so that a page is never held whole on
 * its way to a file. */
class PagePieces
{
public:
    using Sink = std::function<void(const QString &)>;
    explicit PagePieces(Sink sink) : m_sink(std::move(sink)) {}

    PagePieces &operator<<(const QString &piece)
    {
        m_sink(piece);
        return *this;
    }

private:
    Sink m_sink;
};

void writeDrawings(const InspectReport &report, PagePieces &page)
{
    const QList<RecordDrawing> drawings = recordDrawingsOf(report);
    const int scale = pageScale(drawings);
    page << QStringLiteral("<h2>Records</h2>\n") << legendHtml(report);
    for (const RecordDrawing &d : drawings) {
        page << recordHeading(d);
        page << QStringLiteral("<div class=\"drawing\">%1</div>\n").arg(drawingSvg(d, scale));
        if (!d.notDrawn.isEmpty())
            page << QStringLiteral("<p class=\"note\">Not drawn: %1.</p>\n")
                        .arg(htmlText(d.notDrawn.join(QStringLiteral("; "))));
    }
}

QString cell(const QString &text, const char *cssClass = nullptr)
{
    if (cssClass)
        return QStringLiteral("<td class=\"%1\">%2</td>").arg(QLatin1String(cssClass), htmlText(text));
    return QStringLiteral("<td>%1</td>").arg(htmlText(text));
}

//! A table's header row, repeated on each printed page.
QString headerRow(const QStringList &headers)
{
    QString html = QStringLiteral("<thead><tr>");
    for (const QString &h : headers)
        html += QStringLiteral("<th>%1</th>").arg(htmlText(h));
    return html + QStringLiteral("</tr></thead>\n");
}

//! SPSS and Stata fields have no columns: their variables in file order instead of a ruler.
void writeVariables(const InspectReport &report, PagePieces &page)
{
    page << QStringLiteral("<h2>Variables</h2>\n<table class=\"variables\">\n");
    page << headerRow({"#", "Name", "Type", "Width", "Decimals", "Label"});
    for (int i = 0; i < report.fields.size(); ++i) {
        const FieldRow &f = report.fields.at(i);
        page << QStringLiteral("<tr>") + cell(num(i + 1), "num") + cell(f.name, "name") + cell(f.type)
                    + cell(num(f.size), "num") + cell(num(f.decimals), "num") + cell(f.label)
                    + QStringLiteral("</tr>\n");
    }
    page << QStringLiteral("</table>\n");
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

void writeFields(const QList<FieldRow> &fields, PagePieces &page)
{
    page << QStringLiteral("<h2>Fields</h2>\n<table class=\"fields\">\n");
    page << headerRow({"Name", "Label", "Type", "Start", "Size", "Dec", "Min", "Max", "Missing", "Not applicable",
                       "Group", "Value labels"});
    for (const FieldRow &f : fields) {
        page << QStringLiteral("<tr>") + cell(f.name, "name") + cell(f.label) + cell(f.type)
                    + cell(num(f.start), "num") + cell(num(f.size), "num") + cell(num(f.decimals), "num")
                    + cell(f.minimum) + cell(f.maximum) + cell(f.missingCode) + cell(f.notApplicableCode)
                    + cell(f.group) + valueLabelsHtml(valueLabelsOf(f)) + QStringLiteral("</tr>\n");
    }
    page << QStringLiteral("</table>\n");
}

void writeNotes(const QList<NoteRow> &notes, PagePieces &page)
{
    page << QStringLiteral("<h2>Reading notes</h2>\n<table class=\"notes\">\n");
    page << headerRow({"Line", "Subject", "Kind", "Text"});
    for (const NoteRow &n : notes)
        page << QStringLiteral("<tr>") + cell(n.line > 0 ? num(n.line) : QStringLiteral("-"), "num")
                    + cell(n.subject, "name") + cell(n.kind) + cell(n.text) + QStringLiteral("</tr>\n");
    page << QStringLiteral("</table>\n");
}

void writeLookup(const LookupResult &lookup, PagePieces &page)
{
    QString html = QStringLiteral("<h2>Summary</h2>\n<table class=\"summary\">\n");
    html += row(QStringLiteral("Lookup file"), htmlText(lookup.file));
    html += row(QStringLiteral("Separator"), htmlText(lookup.separator));
    html += row(QStringLiteral("Entries"), num(lookup.entries));
    html += row(QStringLiteral("Messages"), num(lookup.messages.size()));
    html += QStringLiteral("</table>\n<h2>Label frequencies</h2>\n<table class=\"frequencies\">\n");
    page << html << headerRow({"Count", "Label"});
    for (const auto &f : lookup.labelFrequencies)
        page << QStringLiteral("<tr>") + cell(num(f.second), "num") + cell(f.first) + QStringLiteral("</tr>\n");
    page << QStringLiteral("</table>\n");
}

void writeDictionary(const InspectReport &report, PagePieces &page)
{
    page << summaryHtml(report);
    if (!report.codebook.isNull())
        writeCodebookSection(report.codebook, report.notes, [&page](const QString &piece) { page << piece; });
    else if (!report.codebookProblem.isEmpty())
        page << QStringLiteral("<p class=\"note\">The codebook, the dictionary as CSPro reads it, is not shown: "
                               "%1</p>\n")
                    .arg(htmlText(report.codebookProblem));
    if (hasColumnLayout(report))
        writeDrawings(report, page);
    else
        writeVariables(report, page);
    writeFields(report.fields, page);
}

void writePage(const InspectReport &report, const WriteSettings &settings, PagePieces &page)
{
    const bool lookup = report.kind == InspectReport::Kind::Lookup;
    const QString file = lookup ? report.lookup.file : report.source.file;
    const QString title = QStringLiteral("Codebook of %1").arg(baseName(file));
    page << QStringLiteral("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\"/>\n");
    page << QStringLiteral("<title>%1</title>\n<style>\n%2</style>\n</head>\n<body>\n<h1>%1</h1>\n")
                .arg(htmlText(title), QLatin1String(PageStyleText));
    if (lookup)
        writeLookup(report.lookup, page);
    else
        writeDictionary(report, page);
    if (settings.notes && !report.notes.isEmpty())
        writeNotes(report.notes, page);
    page << QStringLiteral("</body>\n</html>\n");
}

} // namespace

QString htmlOfReport(const InspectReport &report, const WriteSettings &settings)
{
    QString html;
    PagePieces page([&html](const QString &piece) { html += piece; });
    writePage(report, settings, page);
    return html;
}

void writeHtmlReport(const InspectReport &report, const WriteSettings &settings, QTextStream &out)
{
    PagePieces page([&out](const QString &piece) { out << piece; });
    writePage(report, settings, page);
    out.flush();
}

QString writeHtmlFile(const InspectReport &report, const WriteSettings &settings, const QString &path)
{
    return writeFileWhole(path, [&](QIODevice *file) {
        // Pieces are gathered into writes of 64 KiB or more; the first refused write ends the writing.
        QByteArray pending;
        bool written = true;
        const auto send = [&] {
            written = written && file->write(pending) == pending.size();
            pending.clear();
        };
        PagePieces page([&](const QString &piece) {
            if (!written)
                return;
            pending += piece.toUtf8();
            if (pending.size() >= 1 << 16)
                send();
        });
        writePage(report, settings, page);
        send();
        return written;
    });
}

const char *pageStyle()
{
    return PageStyleText;
}

} // namespace kxinspect

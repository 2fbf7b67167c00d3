#include "DiffPage.h"

#include "CodebookPage.h"
#include "ColumnLayout.h"
#include "HtmlWriter.h"
#include "SvgDrawing.h"
#include "TextOutput.h"

#include <QSet>

namespace kxinspect {

using namespace KxCodebook;

namespace {

const char *const DiffStyle =
    "div.side { display: flex; flex-direction: column; gap: 6px; margin-bottom: 18px; }\n"
    "p.side { margin: 4px 0 0 0; font-weight: bold; }\n";

//! The variables of \a codebook that some change concerns, by name.
QSet<QString> changedNames(const Comparison &comparison, bool oldSide)
{
    QSet<QString> names;
    for (const Change &c : comparison.changes) {
        if (c.variable.isEmpty())
            continue;
        // A renamed variable carries its old name in oldValue.
        names.insert(oldSide && c.kind == ChangeKind::VariableRenamed ? c.oldValue : c.variable);
    }
    return names;
}

QString cell(const QString &text)
{
    return QStringLiteral("<td>%1</td>").arg(htmlText(text));
}

QString changesTable(const Comparison &comparison)
{
    if (comparison.changes.isEmpty())
        return QStringLiteral("<p>No change.</p>\n");
    QString html = QStringLiteral("<table><thead><tr><th>Record</th><th>Variable</th><th>Value set</th>"
                                  "<th>Value</th><th>Change</th><th>Old</th><th>New</th><th>Detail</th></tr>"
                                  "</thead><tbody>\n");
    for (const Change &c : comparison.changes)
        html += QStringLiteral("<tr>") + cell(c.record) + cell(c.variable) + cell(c.valueSet) + cell(c.value)
              + cell(changeKindName(c.kind) + (c.language.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(c.language)))
              + cell(c.oldValue) + cell(c.newValue) + cell(c.detail) + QStringLiteral("</tr>\n");
    return html + QStringLiteral("</tbody></table>\n");
}

//! The drawing of record \a name in \a drawings, or none.
const RecordDrawing *drawingNamed(const QList<RecordDrawing> &drawings, const QString &name)
{
    for (const RecordDrawing &d : drawings) {
        if (d.name == name)
            return &d;
    }
    return nullptr;
}

QString sideHtml(const char *side, const RecordDrawing *drawing, int scale)
{
    QString html = QStringLiteral("<p class=\"side\">%1</p>").arg(QLatin1String(side));
    html += drawing ? drawingSvg(*drawing, scale) : QStringLiteral("<p>(no such record)</p>");
    return html;
}

QString rulersHtml(const DiffReport &report)
{
    const QList<RecordDrawing> before =
        recordDrawingsOf(codebookLayout(report.oldCodebook, changedNames(report.comparison, true)));
    const QList<RecordDrawing> after =
        recordDrawingsOf(codebookLayout(report.newCodebook, changedNames(report.comparison, false)));
    if (before.isEmpty() && after.isEmpty())
        return QString();
    const int scale = pageScale(before + after);
    QStringList names;
    for (const RecordDrawing &d : after)
        names << d.name;
    for (const RecordDrawing &d : before) {
        if (!names.contains(d.name))
            names << d.name;
    }
    QString html = QStringLiteral("<h2>Records</h2>\n");
    for (const QString &name : names) {
        html += QStringLiteral("<h3>Record <span class=\"mono\">%1</span></h3>\n<div class=\"side\">").arg(htmlText(name));
        html += sideHtml("Old", drawingNamed(before, name), scale) + sideHtml("New", drawingNamed(after, name), scale);
        html += QStringLiteral("</div>\n");
    }
    return html;
}

} // namespace

QString diffPage(const DiffReport &report)
{
    const QString title = QStringLiteral("Comparison of %1 and %2").arg(report.oldFile, report.newFile);
    QString html = QStringLiteral("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\"/>\n"
                                  "<title>%1</title>\n<style>\n%2%3</style>\n</head>\n<body>\n<h1>%1</h1>\n")
                       .arg(htmlText(title), QLatin1String(pageStyle()), QLatin1String(DiffStyle));
    html += QStringLiteral("<table class=\"summary\"><tbody>");
    html += QStringLiteral("<tr><th>Old</th><td class=\"mono\">%1</td></tr>").arg(htmlText(report.oldFile));
    html += QStringLiteral("<tr><th>New</th><td class=\"mono\">%1</td></tr>").arg(htmlText(report.newFile));
    html += QStringLiteral("<tr><th>Changes</th><td>%1</td></tr>").arg(report.comparison.changes.size());
    if (!report.comparison.positionsCompared)
        html += QStringLiteral("<tr><th>Positions</th><td>not compared: one file has no columns</td></tr>");
    html += QStringLiteral("</tbody></table>\n<h2>Changes</h2>\n") + changesTable(report.comparison);
    html += rulersHtml(report);
    return html + QStringLiteral("</body>\n</html>\n");
}

} // namespace kxinspect

#include "CodebookPage.h"

#include "ColumnLayout.h"
#include "SvgDrawing.h"
#include "TextOutput.h"

#include <QHash>


namespace kxinspect {

using namespace KxCodebook;

namespace {

// Room the drawing keeps left and right of the columns (SvgDrawing's margins).
constexpr int DrawingMargins = 108;

QString num(qint64 n)
{
    return QString::number(n);
}

//! The notes of one reading, by the subject they are about.
class NotesBySubject
{
public:
    explicit NotesBySubject(const QList<NoteRow> &notes)
    {
        for (const NoteRow &n : notes)
            bySubject[n.subject.toUpper()].append(n);
    }

    QList<NoteRow> about(const QStringList &subjects) const
    {
        QList<NoteRow> found;
        for (const QString &s : subjects) {
            if (!s.isEmpty())
                found += bySubject.value(s.toUpper());
        }
        return found;
    }

private:
    QHash<QString, QList<NoteRow>> bySubject;
};

QStringList subjectsOf(const Variable &v)
{
    QStringList subjects{v.name};
    for (const ValueSet &set : v.valueSets)
        subjects << set.name;
    return subjects;
}

QString notesHtml(const QList<NoteRow> &notes)
{
    QString html;
    for (const NoteRow &n : notes)
        html += QStringLiteral("<div class=\"differs\"><span class=\"kind\">%1</span>: %2</div>")
                    .arg(htmlText(n.kind), htmlText(n.text));
    return html;
}

//! The labels in every language: the primary, then each other language's that differs.
QString labelsHtml(const Labels &labels, const QVector<Language> &languages)
{
    QString html = htmlText(labels.primary());
    for (int i = 1; i < labels.texts.size() && i < languages.size(); ++i) {
        if (labels.texts.at(i).isEmpty() || labels.texts.at(i) == labels.primary())
            continue;
        html += QStringLiteral("<br/><span class=\"language\">%1:</span> %2")
                    .arg(htmlText(languages.at(i).name), htmlText(labels.texts.at(i)));
    }
    return html;
}

QString codeHtml(const Code &code)
{
    if (!code.isRange)
        return htmlText(code.from);
    return htmlText(code.from) + QStringLiteral("\u2013") + htmlText(code.to);
}

QString valuesHtml(const Variable &v, const QVector<Language> &languages)
{
    QString html;
    for (const ValueSet &set : v.valueSets) {
        if (v.valueSets.size() > 1 || set.linkFilled)
            html += QStringLiteral("<div class=\"set\">%1%2</div>")
                        .arg(htmlText(set.name),
                             set.linkFilled ? QStringLiteral(" (values of its link %1)").arg(htmlText(set.link))
                                            : QString());
        html += QStringLiteral("<ul class=\"values\">");
        for (const Value &value : set.values) {
            QStringList codes;
            for (const Code &code : value.codes)
                codes << codeHtml(code);
            html += QStringLiteral("<li><span class=\"mono\">%1</span> = %2%3</li>")
                        .arg(codes.join(QStringLiteral(", ")), labelsHtml(value.labels, languages),
                             value.special == Special::None
                                 ? QString()
                                 : QStringLiteral(" <span class=\"special\">%1</span>").arg(specialName(value.special)));
        }
        html += QStringLiteral("</ul>");
    }
    return html;
}

QString missingHtml(const Variable &v)
{
    QStringList missing;
    for (const MissingValue &m : v.missing) {
        QString code = m.isRange ? m.from + QStringLiteral("\u2013") + m.to : m.from;
        if (code.trimmed().isEmpty())
            code = QStringLiteral("blank");
        missing << htmlText(code) + (m.special == Special::None ? QString()
                                                                : QStringLiteral(" (%1)").arg(specialName(m.special)));
    }
    return missing.join(QStringLiteral("<br/>"));
}

QString typeText(const Variable &v)
{
    QString type = v.contentType.isEmpty() ? QStringLiteral("numeric") : v.contentType;
    if (v.decimals > 0)
        type += QStringLiteral(", %1 decimals%2").arg(v.decimals).arg(v.decimalMark ? QStringLiteral(" with mark")
                                                                                    : QString());
    return type;
}

QString variableRow(const Variable &v, const QVector<Language> &languages, const QList<NoteRow> &notes)
{
    QString name = QStringLiteral("<span class=\"mono\">%1</span>").arg(htmlText(v.name));
    if (v.isSubitem)
        name += QStringLiteral("<br/><span class=\"note\">subitem of %1</span>").arg(htmlText(v.parent));
    const QString cells =
        QStringLiteral("<td>%1</td><td>%2</td><td class=\"num\">%3</td><td class=\"num\">%4</td>"
                       "<td class=\"num\">%5</td><td>%6</td><td>%7</td><td>%8</td><td>%9</td>")
            .arg(name, labelsHtml(v.labels, languages), num(v.start), num(v.width), num(v.occurrences),
                 htmlText(typeText(v)), valuesHtml(v, languages), missingHtml(v), notesHtml(notes));
    return QStringLiteral("<tr%1>%2</tr>\n")
        .arg(notes.isEmpty() ? QString() : QStringLiteral(" class=\"differs\""), cells);
}

const char *const VariableHeader =
    "<thead><tr><th>Name</th><th>Label</th><th>Start</th><th>Width</th><th>Occ.</th><th>Type</th>"
    "<th>Values</th><th>Missing</th><th>Where the front end differs</th></tr></thead>\n";

void writeVariables(const QVector<Variable> &variables, const QVector<Language> &languages,
                    const NotesBySubject &notes, const std::function<void(const QString &)> &sink)
{
    sink(QStringLiteral("<table class=\"codebook\">\n") + QLatin1String(VariableHeader) + QStringLiteral("<tbody>\n"));
    for (const Variable &v : variables)
        sink(variableRow(v, languages, notes.about(subjectsOf(v))));
    sink(QStringLiteral("</tbody></table>\n"));
}

QString recordHeading(const Record &r, const QVector<Language> &languages)
{
    QString heading = QStringLiteral("<h3>Record <span class=\"mono\">%1</span>").arg(htmlText(r.name));
    if (!r.labels.isEmpty())
        heading += QStringLiteral(": %1").arg(labelsHtml(r.labels, languages));
    heading += QStringLiteral("</h3>\n<p class=\"record-facts\">");
    QStringList facts;
    facts << (r.typeValue.isEmpty() ? QStringLiteral("no record-type code")
                                    : QStringLiteral("record type <span class=\"mono\">%1</span>").arg(htmlText(r.typeValue)));
    facts << QStringLiteral("level %1").arg(r.level);
    facts << (r.required ? QStringLiteral("required") : QStringLiteral("optional"));
    facts << QStringLiteral("at most %1 a case").arg(r.maxOccurrences);
    facts << QStringLiteral("length %1").arg(r.length);
    return heading + facts.join(QStringLiteral(", ")) + QStringLiteral("</p>\n");
}

QString dictionaryTable(const Codebook &codebook, const NotesBySubject &notes)
{
    const QVector<Language> languages = codebook.languages();
    QString html = QStringLiteral("<table class=\"summary\"><tbody>\n");
    const auto row = [&html](const QString &header, const QString &cell) {
        html += QStringLiteral("<tr><th>%1</th><td>%2</td></tr>\n").arg(header, cell);
    };
    row(QStringLiteral("Dictionary"), QStringLiteral("<span class=\"mono\">%1</span>").arg(htmlText(codebook.name())));
    row(QStringLiteral("Title"), labelsHtml(codebook.labels(), languages));
    if (languages.size() > 1) {
        QStringList names;
        for (const Language &l : languages)
            names << htmlText(l.label.isEmpty() ? l.name : QStringLiteral("%1 (%2)").arg(l.name, l.label));
        row(QStringLiteral("Languages"), names.join(QStringLiteral(", ")));
    }
    row(QStringLiteral("Record type"),
        codebook.recordTypeLength() > 0
            ? QStringLiteral("columns %1\u2013%2")
                  .arg(codebook.recordTypeStart())
                  .arg(qint64(codebook.recordTypeStart()) + codebook.recordTypeLength() - 1)
            : QStringLiteral("none"));
    row(QStringLiteral("Positions"), codebook.relativePositions() ? QStringLiteral("relative") : QStringLiteral("absolute"));
    const QList<NoteRow> about = notes.about({codebook.name()});
    if (!about.isEmpty())
        row(QStringLiteral("Where the front end differs"), notesHtml(about));
    return html + QStringLiteral("</tbody></table>\n");
}

//! Pixels per column: one scale for the page, so that a record's rulers line up.
int rulerScale(const QList<RecordDrawing> &drawings)
{
    qint64 widest = 1;
    for (const RecordDrawing &d : drawings)
        widest = qMax(widest, d.end);
    return int(qBound<qint64>(8, (MaxRulerWidth - DrawingMargins) / widest, 16));
}

void writeRulers(const RecordDrawing &drawing, int scale, const std::function<void(const QString &)> &sink)
{
    const qint64 columns = (MaxRulerWidth - DrawingMargins) / scale;
    for (const RecordDrawing &ruler : wrappedDrawings(drawing, columns)) {
        // Told apart from the front end's drawings further down.
        QString svg = drawingSvg(ruler, scale);
        svg.replace(0, int(qstrlen("<svg class=\"record\"")), QStringLiteral("<svg class=\"record codebook\""));
        sink(QStringLiteral("<div class=\"drawing\">%1</div>\n").arg(svg));
    }
}

} // namespace

InspectReport codebookLayout(const Codebook &codebook, const QSet<QString> &marked)
{
    InspectReport report;
    report.source.format = formatName(codebook.format());
    report.source.recordTypeStart = codebook.recordTypeStart();
    report.source.recordTypeLength = codebook.recordTypeLength();
    for (const Record &r : codebook.records()) {
        GroupRow group;
        group.name = r.name;
        group.recordType = r.typeValue;
        group.entry = r.name + QLatin1Char('=') + r.typeValue;
        report.groups << group;
    }
    for (const Variable &v : codebook.variables()) {
        FieldRow f;
        f.name = v.occurrences > 1 ? QStringLiteral("%1 \u00d7%2").arg(v.name, QString::number(v.occurrences)) : v.name;
        f.label = v.labels.primary();
        f.start = v.start;
        f.size = v.isSubitem ? v.width : v.span();
        f.record = v.record;
        f.group = v.record;
        f.identification = v.isId;
        f.subItem = v.isSubitem;
        f.changed = marked.contains(v.name);
        report.fields << f;
    }
    return report;
}

void writeCodebookSection(const Codebook &codebook, const QList<NoteRow> &noteRows,
                          const std::function<void(const QString &)> &sink)
{
    const NotesBySubject notes(noteRows);
    const QVector<Language> languages = codebook.languages();
    const QVector<Variable> variables = codebook.variables();
    QSet<QString> marked;
    for (const Variable &v : variables) {
        if (!notes.about(subjectsOf(v)).isEmpty())
            marked.insert(v.name);
    }
    sink(QStringLiteral("<h2>Codebook</h2>\n<p class=\"note\">The dictionary as CSPro reads it. Where the front "
                        "end's reading (the fields further down) differs, the variable is marked and its note "
                        "given; a box drawn in red on a ruler is such a variable.</p>\n"));
    sink(dictionaryTable(codebook, notes));

    const QList<RecordDrawing> drawings = recordDrawingsOf(codebookLayout(codebook, marked));
    const int scale = rulerScale(drawings);
    // Sorted out once, by record: a dictionary of many records is not read again for each.
    QVector<Variable> ids;
    QHash<QString, QVector<Variable>> byRecord;
    for (const Variable &v : variables)
        (v.isId ? ids : byRecord[v.record]).append(v);
    QHash<QString, QList<int>> drawingsByRecord;
    for (int i = 0; i < drawings.size(); ++i)
        drawingsByRecord[drawings.at(i).name].append(i);
    if (!ids.isEmpty()) {
        sink(QStringLiteral("<section class=\"record\">\n<h3>Identification items</h3>\n<p class=\"record-facts\">On "
                            "every record's line; drawn on each record's ruler.</p>\n"));
        writeVariables(ids, languages, notes, sink);
        sink(QStringLiteral("</section>\n"));
    }
    for (const Record &r : codebook.records()) {
        sink(QStringLiteral("<section class=\"record\">\n") + recordHeading(r, languages));
        const QList<NoteRow> about = notes.about({r.name});
        if (!about.isEmpty())
            sink(notesHtml(about));
        for (int i : drawingsByRecord.value(r.name))
            writeRulers(drawings.at(i), scale, sink);
        writeVariables(byRecord.value(r.name), languages, notes, sink);
        sink(QStringLiteral("</section>\n"));
    }
}

} // namespace kxinspect

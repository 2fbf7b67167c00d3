#include "DiffWriters.h"

#include "TableWriter.h"
#include "TextOutput.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTextStream>

namespace kxinspect {

using namespace KxCodebook;

namespace {

QJsonValue textOrNull(const QString &text)
{
    return text.isEmpty() ? QJsonValue() : QJsonValue(text);
}

//! What a change concerns, for the table's subject column.
QString subjectOf(const Change &c)
{
    QString subject = c.variable;
    if (!c.valueSet.isEmpty())
        subject += (subject.isEmpty() ? QString() : QStringLiteral(" ")) + c.valueSet;
    if (!c.value.isEmpty())
        subject += QStringLiteral(" [%1]").arg(c.value);
    if (!c.language.isEmpty())
        subject += QStringLiteral(" (%1)").arg(c.language);
    return subject;
}

QJsonObject jsonOfFile(const QString &file, const Codebook &codebook)
{
    return QJsonObject{{QStringLiteral("file"), file},
                       {QStringLiteral("format"), formatName(codebook.format())},
                       {QStringLiteral("variables"), codebook.variables().size()}};
}

QJsonObject jsonOfChange(const Change &c)
{
    return QJsonObject{{QStringLiteral("kind"), changeKindName(c.kind)},
                       {QStringLiteral("severity"), changeSeverity(c.kind)},
                       {QStringLiteral("record"), textOrNull(c.record)},
                       {QStringLiteral("variable"), textOrNull(c.variable)},
                       {QStringLiteral("valueSet"), textOrNull(c.valueSet)},
                       {QStringLiteral("value"), textOrNull(c.value)},
                       {QStringLiteral("language"), textOrNull(c.language)},
                       {QStringLiteral("old"), textOrNull(c.oldValue)},
                       {QStringLiteral("new"), textOrNull(c.newValue)},
                       {QStringLiteral("detail"), textOrNull(c.detail)}};
}

} // namespace

void writeDiffTable(const DiffReport &report, const WriteSettings &settings, QTextStream &out)
{
    const auto line = [&out](const char *key, const QString &value) {
        out << QString::fromLatin1(key).leftJustified(19) << printable(value) << "\n";
    };
    line("Old:", QStringLiteral("%1 (%2)").arg(report.oldFile, formatName(report.oldCodebook.format())));
    line("New:", QStringLiteral("%1 (%2)").arg(report.newFile, formatName(report.newCodebook.format())));
    line("Changes:", QString::number(report.comparison.changes.size()));
    if (!report.comparison.positionsCompared)
        line("Positions:", QStringLiteral("not compared: one file has no columns"));
    if (report.ignoreLabels)
        line("Labels:", QStringLiteral("not compared (--ignore-labels)"));
    if (report.comparison.changes.isEmpty())
        return;
    QList<QStringList> rows;
    for (const Change &c : report.comparison.changes)
        rows << QStringList{c.record.isEmpty() ? QStringLiteral("-") : printable(c.record), printable(subjectOf(c)),
                            changeKindName(c.kind),
                            labelCell(c.oldValue, settings.wideLabels), labelCell(c.newValue, settings.wideLabels),
                            printable(c.detail)};
    out << "\n";
    writeTable(out, {"RECORD", "SUBJECT", "CHANGE", "OLD", "NEW", "DETAIL"}, rows);
}

QJsonObject jsonOfDiff(const DiffReport &report)
{
    QJsonArray changes;
    for (const Change &c : report.comparison.changes)
        changes.append(jsonOfChange(c));
    return QJsonObject{{QStringLiteral("schemaVersion"), DiffSchemaVersion},
                       {QStringLiteral("kind"), QStringLiteral("comparison")},
                       {QStringLiteral("old"), jsonOfFile(report.oldFile, report.oldCodebook)},
                       {QStringLiteral("new"), jsonOfFile(report.newFile, report.newCodebook)},
                       {QStringLiteral("positionsCompared"), report.comparison.positionsCompared},
                       {QStringLiteral("labelsCompared"), !report.ignoreLabels},
                       {QStringLiteral("changes"), changes}};
}

void writeDiffJson(const DiffReport &report, QTextStream &out)
{
    out << QString::fromUtf8(QJsonDocument(jsonOfDiff(report)).toJson(QJsonDocument::Indented));
    out.flush();
}

} // namespace kxinspect

#include "CsvWriter.h"

#include <QTextStream>

namespace kxinspect {

const char *const CsvRecordEnd = "\r\n";

QString csvField(const QString &text)
{
    const bool quoted = text.contains(QLatin1Char(',')) || text.contains(QLatin1Char('"'))
        || text.contains(QLatin1Char('\r')) || text.contains(QLatin1Char('\n'));
    if (!quoted)
        return text;
    QString doubled = text;
    doubled.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + doubled + QLatin1Char('"');
}

QString csvRecord(const QStringList &cells)
{
    QStringList fields;
    fields.reserve(cells.size());
    for (const QString &cell : cells)
        fields << csvField(cell);
    return fields.join(QLatin1Char(',')) + QLatin1String(CsvRecordEnd);
}

namespace {

//! The value labels as the table shows them, whole: "code=label" entries joined by "; ".
QString valueLabelsCell(const QList<ValueLabel> &labels)
{
    QStringList entries;
    entries.reserve(labels.size());
    for (const ValueLabel &vl : labels)
        entries << vl.code + QLatin1Char('=') + vl.label;
    return entries.join(QStringLiteral("; "));
}

QStringList fieldCells(const FieldRow &f)
{
    return {f.name,
            f.label,
            f.type,
            QString::number(f.start),
            QString::number(f.size),
            QString::number(f.decimals),
            f.minimum,
            f.maximum,
            f.missingCode,
            f.notApplicableCode,
            f.group,
            valueLabelsCell(f.valueLabels)};
}

void writeDictionary(const QList<FieldRow> &fields, QTextStream &out)
{
    out << csvRecord({"NAME", "LABEL", "TYPE", "START", "SIZE", "DEC", "MIN", "MAX", "MISSING", "NOTAPPL", "GROUP",
                      "VALUE LABELS"});
    for (const FieldRow &f : fields)
        out << csvRecord(fieldCells(f));
}

void writeLookup(const LookupResult &lookup, QTextStream &out)
{
    out << csvRecord({"COUNT", "LABEL"});
    for (const auto &f : lookup.labelFrequencies)
        out << csvRecord({QString::number(f.second), f.first});
}

} // namespace

void writeCsvReport(const InspectReport &report, QTextStream &out)
{
    if (report.kind == InspectReport::Kind::Lookup)
        writeLookup(report.lookup, out);
    else
        writeDictionary(report.fields, out);
    out.flush();
}

} // namespace kxinspect

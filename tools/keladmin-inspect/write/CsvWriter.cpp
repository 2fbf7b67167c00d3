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

/*! A word on a name that a spreadsheet would not show as it is: the front
 * end names a repeated CSPro item's occurrences NAME_ and the occurrence
 * number as one character (U+0001 for the first), which spreadsheets drop,
 * so that six occurrences look like one name. Empty for other names. */
QString nameNote(const QString &name)
{
    const int underscore = name.size() - 2;
    if (underscore > 0 && name.at(underscore) == QLatin1Char('_') && name.at(underscore + 1).unicode() < 0x20)
        return QStringLiteral("occurrence %1 of %2: the name ends with the character U+%3, as the front end "
                              "numbers occurrences; --codebook lists the item once with its occurrences")
            .arg(name.at(underscore + 1).unicode())
            .arg(name.left(underscore))
            .arg(name.at(underscore + 1).unicode(), 4, 16, QLatin1Char('0'));
    for (const QChar c : name) {
        if (c.unicode() < 0x20 || c.unicode() == 0x7f)
            return QStringLiteral("the name holds control characters");
    }
    return QString();
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
            valueLabelsCell(valueLabelsOf(f)),
            nameNote(f.name)};
}

void writeDictionary(const QList<FieldRow> &fields, QTextStream &out)
{
    out << csvRecord({"NAME", "LABEL", "TYPE", "START", "SIZE", "DEC", "MIN", "MAX", "MISSING", "NOTAPPL", "GROUP",
                      "VALUE LABELS", "NAME NOTE"});
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

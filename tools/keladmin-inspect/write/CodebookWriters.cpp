#include "CodebookWriters.h"

#include "CsvWriter.h"
#include "TableWriter.h"
#include "TextOutput.h"

#include <KxCodebookJson.h>

#include <QFileDevice>
#include <QJsonDocument>
#include <QTextStream>

namespace kxinspect {

using namespace KxCodebook;

namespace {

QString numberOrDash(qint64 n)
{
    return n > 0 ? QString::number(n) : QStringLiteral("-");
}

QString codeText(const QString &from, const QString &to, bool isRange)
{
    return isRange ? from + QLatin1Char(':') + to : from;
}

void appendCodes(QString &out, const QVector<Code> &codes)
{
    for (int i = 0; i < codes.size(); ++i) {
        const Code &c = codes.at(i);
        if (i > 0)
            out += QLatin1Char(' ');
        out += c.from;
        if (c.isRange)
            out += QLatin1Char(':') + c.to;
    }
}

QString languagesText(const QVector<Language> &languages)
{
    QStringList parts;
    for (const Language &l : languages) {
        if (!l.name.isEmpty())
            parts << (l.label.isEmpty() ? l.name : QStringLiteral("%1 (%2)").arg(l.name, l.label));
    }
    return parts.isEmpty() ? QStringLiteral("one, unnamed") : parts.join(QStringLiteral(", "));
}

void writeHeader(const Codebook &c, QTextStream &out)
{
    const auto line = [&out](const char *key, const QString &value) {
        out << QString::fromLatin1(key).leftJustified(19) << printable(value) << "\n";
    };
    line("File:", c.fileName());
    line("Format:", formatName(c.format()));
    line("Format version:", c.formatVersion().isEmpty() ? QStringLiteral("unknown") : c.formatVersion());
    line("Encoding:", c.encoding().isEmpty() ? QStringLiteral("unknown") : c.encoding());
    if (!c.name().isEmpty())
        line("Name:", c.name());
    line("Label:", c.labels().primary());
    line("Languages:", languagesText(c.languages()));
    line("Rows:", c.rowCount() >= 0 ? QString::number(c.rowCount()) : QStringLiteral("not said"));
    if (c.created().isValid())
        line("Created:", c.created().toString(Qt::ISODate));
    if (c.format() == Format::CSProText || c.format() == Format::CSProJson) {
        line("Record type:", c.recordTypeLength() > 0
                                 ? QStringLiteral("start %1, length %2").arg(c.recordTypeStart()).arg(c.recordTypeLength())
                                 : QStringLiteral("none"));
        line("Positions:", c.relativePositions() ? QStringLiteral("relative") : QStringLiteral("absolute"));
        line("Levels:", QString::number(c.levels().size()));
        line("Records:", QString::number(c.records().size()));
    }
    line("Variables:", QString::number(c.variables().size()));
}

void writeRecords(const Codebook &c, bool wide, QTextStream &out)
{
    if (c.records().isEmpty())
        return;
    QList<QStringList> rows;
    for (const Record &r : c.records())
        rows << QStringList{printable(r.name), printable(r.typeValue), QString::number(r.level),
                            r.required ? QStringLiteral("yes") : QStringLiteral("no"),
                            QString::number(r.maxOccurrences), QString::number(r.length),
                            labelCell(r.labels.primary(), wide)};
    out << "\n";
    writeTable(out, {"RECORD", "TYPE", "LEVEL", "REQUIRED", "MAX", "LENGTH", "LABEL"}, rows);
}

QString storageCell(const Variable &v)
{
    return v.contentType.isEmpty() ? storageName(v.storage) : v.contentType;
}

QString recordCell(const Variable &v)
{
    if (v.isId)
        return QStringLiteral("(id, level %1)").arg(v.level);
    return v.record;
}

QStringList variableCells(const Variable &v)
{
    return {v.name, recordCell(v), numberOrDash(v.start), QString::number(v.width),
            QString::number(v.occurrences), storageCell(v), QString::number(v.decimals), v.format};
}

} // namespace

int codebookSchemaVersion()
{
    return CodebookJsonSchemaVersion;
}

QString codebookValuesCell(const Variable &v, int enough)
{
    QString cell;
    for (const ValueSet &set : v.valueSets) {
        for (const Value &value : set.values) {
            if (enough >= 0 && cell.size() > enough)
                return cell;
            if (!cell.isEmpty())
                cell += QLatin1String("; ");
            appendCodes(cell, value.codes);
            cell += QLatin1Char('=') + value.labels.primary();
            if (value.special != Special::None)
                cell += QLatin1String(" [") + specialName(value.special) + QLatin1Char(']');
        }
    }
    return cell;
}

QString codebookMissingCell(const Variable &v)
{
    QStringList entries;
    for (const MissingValue &m : v.missing) {
        QString entry = codeText(m.from, m.to, m.isRange);
        if (m.special != Special::None)
            entry += QStringLiteral(" [%1]").arg(specialName(m.special));
        if (!m.label.isEmpty())
            entry += QLatin1Char('=') + m.label;
        entries << entry;
    }
    return entries.join(QStringLiteral("; "));
}

void writeCodebookTable(const Codebook &codebook, const WriteSettings &settings, QTextStream &out)
{
    writeHeader(codebook, out);
    writeRecords(codebook, settings.wideLabels, out);
    QList<QStringList> rows;
    for (const Variable &v : codebook.variables()) {
        QStringList cells;
        for (const QString &cell : variableCells(v))
            cells << printable(cell);
        cells << labelCell(v.labels.primary(), settings.wideLabels)
              << labelCell(codebookValuesCell(v, settings.wideLabels ? -1 : MaxTableLabel), settings.wideLabels)
              << labelCell(codebookMissingCell(v), settings.wideLabels);
        rows << cells;
    }
    out << "\n";
    writeTable(out, {"NAME", "RECORD", "START", "WIDTH", "OCC", "STORAGE", "DEC", "FORMAT", "LABEL", "VALUES",
                     "MISSING"},
               rows);
}

void writeCodebookJson(const Codebook &codebook, QTextStream &out)
{
    // Streamed to the stream's device: a large codebook's JSON is never held
    // whole. A failed write stays in the device's error, for the caller.
    if (!out.device()) {  // a stream on a string
        out << QString::fromUtf8(QJsonDocument(toJson(codebook)).toJson(QJsonDocument::Indented));
        return;
    }
    out.flush();
    writeJson(codebook, out.device());
    if (auto *file = qobject_cast<QFileDevice *>(out.device()))
        file->flush();
}

void writeCodebookCsv(const Codebook &codebook, QTextStream &out)
{
    QStringList header{"NAME", "RECORD", "START", "WIDTH", "OCCURRENCES", "STORAGE", "DECIMALS", "FORMAT", "LABEL"};
    const QVector<Language> languages = codebook.languages();
    for (int i = 1; i < languages.size(); ++i)
        header << QStringLiteral("LABEL:") + languages.at(i).name;
    header << QStringLiteral("VALUES") << QStringLiteral("MISSING");
    out << csvRecord(header);
    for (const Variable &v : codebook.variables()) {
        QStringList cells = variableCells(v);
        cells << v.labels.primary();
        for (int i = 1; i < languages.size(); ++i)
            cells << v.labels.text(i);
        cells << codebookValuesCell(v) << codebookMissingCell(v);
        out << csvRecord(cells);
    }
    out.flush();
}

} // namespace kxinspect

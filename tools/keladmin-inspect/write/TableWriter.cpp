#include "TableWriter.h"

#include "TextOutput.h"

#include <QMap>
#include <QTextStream>
#include <QVector>

namespace kxinspect {

namespace {

//! Characters at the start of \a label that a cut cell keeps as they are, or -1 when one of them needs an escape.
int plainCutLength(const QString &label)
{
    const QString head = label.left(MaxTableLabel);
    if (printable(head).size() != head.size())
        return -1;
    const int keep = MaxTableLabel - 1;
    const bool pairAtCut = label.at(keep - 1).isHighSurrogate() && label.at(keep).isLowSurrogate();
    return pairAtCut ? keep - 1 : keep;
}

} // namespace

QString labelCell(const QString &label, bool wide)
{
    if (wide)
        return printable(label);
    if (label.size() <= MaxTableLabel) {
        const QString whole = printable(label);
        if (whole.size() <= MaxTableLabel)
            return whole;
    } else {
        // An escape is never shorter than its character, so a label whose
        // first characters need none is cut where it stands.
        const int plain = plainCutLength(label);
        if (plain >= 0)
            return label.left(plain) + QChar(0x2026);
    }
    // Whole characters and escapes only, as many as leave room for the ellipsis.
    QString cut;
    for (int i = 0; i < label.size();) {
        const bool pair = label.at(i).isHighSurrogate() && i + 1 < label.size() && label.at(i + 1).isLowSurrogate();
        const QString piece = printable(label.mid(i, pair ? 2 : 1));
        if (cut.size() + piece.size() > MaxTableLabel - 1)
            break;
        cut += piece;
        i += pair ? 2 : 1;
    }
    return cut + QChar(0x2026);
}

void writeTable(QTextStream &out, const QStringList &header, const QList<QStringList> &rows)
{
    QVector<int> width(header.size(), 0);
    for (int c = 0; c < header.size(); ++c)
        width[c] = header.at(c).size();
    for (const QStringList &row : rows)
        for (int c = 0; c < row.size() && c < width.size(); ++c)
            width[c] = qMax(width[c], row.at(c).size());
    QString line;
    auto writeRow = [&](const QStringList &row) {
        line.clear(); // keeps its room from row to row
        for (int c = 0; c < row.size(); ++c) {
            line += row.at(c);
            if (c + 1 < row.size())
                line.resize(line.size() + width[c] - row.at(c).size() + 2, QLatin1Char(' '));
        }
        int first = 0;
        int end = line.size();
        while (first < end && line.at(first).isSpace())
            ++first;
        while (end > first && line.at(end - 1).isSpace())
            --end;
        out << QStringRef(&line, first, end - first) << "\n";  // trimmed, without a copy
    };
    writeRow(header);
    for (const QStringList &row : rows)
        writeRow(row);
    out.flush();
}

namespace {

QString orUnknown(const QString &text)
{
    return text.isEmpty() ? QStringLiteral("unknown") : printable(text);
}

//! What an SPSS or Stata file says about itself, under the record type.
void writeFileMetadata(const FileMetadata &m, QTextStream &out)
{
    out << "Rows:              " << (m.rowCount < 0 ? QStringLiteral("unknown") : QString::number(m.rowCount)) << "\n";
    out << "Format version:    " << (m.formatVersion > 0 ? QString::number(m.formatVersion) : QStringLiteral("unknown"))
        << "\n";
    out << "Encoding:          " << orUnknown(m.encoding) << "\n";
    out << "Byte order:        " << orUnknown(m.byteOrder) << "\n";
    out << "Created:           " << orUnknown(m.creationTime) << "\n";
    out << "File label:        " << (m.label.isEmpty() ? QStringLiteral("none") : labelCell(m.label, false)) << "\n";
}

void writeSourceHeader(const InspectReport &report, QTextStream &out)
{
    const SourceDescription &s = report.source;
    out << "File:              " << printable(s.file) << "\n";
    out << "Format:            " << s.format << (s.formatDetected ? " (detected)" : " (forced)") << "\n";
    out << "Provider id:       " << printable(s.providerId) << "\n";
    out << "Provider type:     " << s.providerType;
    if (s.descriptionType != s.providerType)
        out << " (description type: " << (s.descriptionType.isEmpty() ? QStringLiteral("none") : s.descriptionType)
            << ")";
    out << "\n";
    out << "Record type:       start " << s.recordTypeStart << ", length " << s.recordTypeLength << "\n";
    if (s.metadata.present)
        writeFileMetadata(s.metadata, out);
    out << "Groups:            " << report.groups.size() << "\n";
    for (const GroupRow &g : report.groups)
        out << "  " << printable(g.entry) << "  (" << g.fieldCount << (g.fieldCount == 1 ? " field" : " fields")
            << ")\n";
    out << "Fields:            " << report.fields.size() << "\n\n";
}

QStringList fieldCells(const FieldRow &f, bool wide)
{
    QStringList labels;
    for (const ValueLabel &vl : valueLabelsOf(f))
        labels << printable(vl.code) + QLatin1Char('=') + labelCell(vl.label, wide);
    return {printable(f.name),
            labelCell(f.label, wide),
            f.type,
            QString::number(f.start),
            QString::number(f.size),
            QString::number(f.decimals),
            printable(f.minimum),
            printable(f.maximum),
            printable(f.missingCode),
            printable(f.notApplicableCode),
            printable(f.group),
            labels.join(QStringLiteral("; "))};
}

void writeDictionary(const InspectReport &report, bool wide, QTextStream &out)
{
    writeSourceHeader(report, out);
    QList<QStringList> rows;
    for (const FieldRow &f : report.fields)
        rows << fieldCells(f, wide);
    writeTable(out,
               {"NAME", "LABEL", "TYPE", "START", "SIZE", "DEC", "MIN", "MAX", "MISSING", "NOTAPPL", "GROUP",
                "VALUE LABELS"},
               rows);
}

//! The messages up to the library's 'too many' message, which takes the place of message maxMessages + 1.
void writeMessages(const LookupResult &lookup, QTextStream &out)
{
    const int total = lookup.messages.size();
    out << "Messages:          " << total << "\n";
    const int shown = total > lookup.maxMessages ? lookup.maxMessages + 1 : total;
    for (int i = 0; i < shown; ++i)
        out << "  " << printable(lookup.messages.at(i)) << "\n";
    const int hidden = total - shown;
    if (hidden > 0)
        out << "  (" << hidden << (hidden == 1 ? " more message" : " more messages") << " not shown)\n";
}

void writeLookup(const LookupResult &lookup, bool wide, QTextStream &out)
{
    out << "Lookup file:       " << printable(lookup.file) << "\n";
    out << "Separator:         " << lookup.separator << "\n";
    out << "Checks:            " << (lookup.checks ? "on" : "off") << "\n";
    out << "Lines:             " << lookup.lines << "\n";
    out << "Entries:           " << lookup.entries << "\n";
    writeMessages(lookup, out);
    out << "Label frequencies: " << lookup.labelFrequencies.size() << "\n\n";
    QList<QStringList> rows;
    for (const auto &f : lookup.labelFrequencies)
        rows << QStringList{QString::number(f.second), labelCell(f.first, wide)};
    writeTable(out, {"COUNT", "LABEL"}, rows);
}

void writeNoteCountsByKind(const QList<NoteRow> &notes, QTextStream &out)
{
    QMap<QString, int> counts;
    int width = 0;
    for (const NoteRow &n : notes) {
        ++counts[printable(n.kind)];
        width = qMax(width, printable(n.kind).size());
    }
    out << "\nNotes by kind:\n";
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        out << "  " << it.key().leftJustified(width) << "  " << it.value() << "\n";
}

//! The notes as a table (line, subject, kind, text), then their count by kind.
void writeNotes(const QList<NoteRow> &notes, QTextStream &out)
{
    out << "\nNotes:             " << notes.size() << "\n\n";
    QList<QStringList> rows;
    for (const NoteRow &n : notes)
        rows << QStringList{n.line > 0 ? QString::number(n.line) : QStringLiteral("-"), printable(n.subject),
                            printable(n.kind), printable(n.text)};
    writeTable(out, {"LINE", "SUBJECT", "KIND", "TEXT"}, rows);
    writeNoteCountsByKind(notes, out);
    out.flush();
}

} // namespace

void writeTableReport(const InspectReport &report, const WriteSettings &settings, QTextStream &out)
{
    if (report.kind == InspectReport::Kind::Lookup)
        writeLookup(report.lookup, settings.wideLabels, out);
    else
        writeDictionary(report, settings.wideLabels, out);
    if (settings.notes && !report.notes.isEmpty())
        writeNotes(report.notes, out);
}

} // namespace kxinspect

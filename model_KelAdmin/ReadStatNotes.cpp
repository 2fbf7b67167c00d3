#include "ReadStatNotes_p.h"

#include <cmath>

namespace kxreadstat {

namespace {

QString utf8(const char *text)
{
    return QString::fromUtf8(text ? text : "");
}

QString utf8(const QByteArray &text)
{
    return QString::fromUtf8(text);
}

bool hasNonAscii(const char *text)
{
    if (!text)
        return false;
    for (const char *p = text; *p; ++p) {
        if (static_cast<unsigned char>(*p) >= 0x80)
            return true;
    }
    return false;
}

//! A number as the file gives it: as many digits as a double holds, no trailing zeros.
QString numberText(double v)
{
    return QString::number(v, 'g', 15);
}

//! "a", "a and b", "a, b and c".
QString listText(const QStringList &items)
{
    if (items.size() <= 1)
        return items.value(0);
    return QStringList(items.mid(0, items.size() - 1)).join(QStringLiteral(", ")) + QStringLiteral(" and ")
           + items.last();
}

//! The entry's value as the file gives it, before any rule of the reading.
QString fileValueText(const ValueLabelEntry &entry)
{
    if (entry.missingTag == '.')
        return QStringLiteral(".");
    if (entry.missingTag)
        return QStringLiteral(".") + QLatin1Char(entry.missingTag);
    if (entry.hasString)
        return QLatin1Char('\'') + utf8(entry.stringValue) + QLatin1Char('\'');
    if (entry.fromDouble)
        return numberText(entry.fileDouble);
    return QString::number(entry.intValue);
}

QString missingValueText(char tag)
{
    if (tag == '.')
        return QStringLiteral("the system-missing value");
    return QStringLiteral("the missing value .") + QLatin1Char(tag);
}

//! One end of a user-missing range: LOWEST and HIGHEST for SPSS's open ends.
QString missingBoundText(const readstat_value_t &value)
{
    if (readstat_value_type(value) == READSTAT_TYPE_STRING)
        return QLatin1Char('\'') + utf8(readstat_string_value(value)) + QLatin1Char('\'');
    const double v = readstat_double_value(value);
    if (std::isinf(v))
        return v < 0 ? QStringLiteral("LOWEST") : QStringLiteral("HIGHEST");
    return numberText(v);
}

struct FormatWidth
{
    bool present = false;
    int letters = 0;
    qint64 width = 0;
};

//! The width a format text states: the digits after its leading letters (F10.2 → 10, COMMA9.2 → 9).
FormatWidth formatWidth(const char *format)
{
    FormatWidth result;
    if (!format)
        return result;
    const char *p = format;
    while (*p && (*p < '0' || *p > '9') && *p != '.')
        ++p;
    result.letters = int(p - format);
    for (; *p >= '0' && *p <= '9'; ++p) {
        result.present = true;
        // Saturates far above any real width; the note names it as the file has it.
        result.width = qMin<qint64>(result.width * 10 + (*p - '0'), 1000000000);
    }
    return result;
}

} // namespace

TReadNote labelSetMissingNote(const QString &variable, const char *labelSet)
{
    return TReadNote(0, variable, QLatin1String(TReadNoteKind::LabelSetMissing),
                     QStringLiteral("Variable %1 names the label set %2, of which the file holds no value labels; "
                                    "the field got none.")
                         .arg(variable, utf8(labelSet)));
}

TReadNote labelSetUnusedNote(const QByteArray &labelSet, int labels)
{
    const QString count =
        labels == 1 ? QStringLiteral("1 value label") : QString::number(labels) + QStringLiteral(" value labels");
    return TReadNote(0, utf8(labelSet), QLatin1String(TReadNoteKind::LabelSetUnused),
                     QStringLiteral("Label set %1 holds %2, but no variable names it, so no field got its "
                                    "labels.")
                         .arg(utf8(labelSet), count));
}

void addTextNotes(TReadNotes *notes, const QString &variable, const char *name, const char *label,
                  TextKind labelKind)
{
    if (hasNonAscii(name)) {
        notes->append(TReadNote(0, variable, QLatin1String(TReadNoteKind::TextNotAscii),
                                QStringLiteral("The variable name '%1' is UTF-8 in the file; read byte by byte as "
                                               "Latin-1 it became '%2'.")
                                    .arg(utf8(name), variable)));
    }
    if (labelKind != TextKind::Utf8 && hasNonAscii(label)) {
        notes->append(TReadNote(0, variable, QLatin1String(TReadNoteKind::TextNotAscii),
                                QStringLiteral("Variable %1 has the label '%2' in UTF-8; read byte by byte as "
                                               "Latin-1 it became '%3'.")
                                    .arg(variable, utf8(label), toText(label, labelKind))));
    }
}

void addLabelTextNotes(TReadNotes *notes, const char *labelSet, const QList<ValueLabelEntry> &entries,
                       TextKind kind)
{
    for (const ValueLabelEntry &entry : entries) {
        if (!hasNonAscii(entry.label.constData()))
            continue;
        notes->append(TReadNote(0, utf8(labelSet), QLatin1String(TReadNoteKind::TextNotAscii),
                                QStringLiteral("Label set %1 has the label '%2' in UTF-8 for the value %3; read byte "
                                               "by byte as Latin-1 it became '%4'.")
                                    .arg(utf8(labelSet), utf8(entry.label), fileValueText(entry),
                                         toText(entry.label.constData(), kind))));
    }
}

void addFormatNotes(TReadNotes *notes, const QString &variable, const char *format, int keptWidth, bool numeric,
                    const VariableRules &rules)
{
    const FormatWidth width = formatWidth(format);
    if (rules.widthFromFormat && width.present && width.width != keptWidth) {
        const bool firstDigit = width.letters == 1;
        const QString text =
            firstDigit ? QStringLiteral("Variable %1 has the format %2 of width %3; the reading kept its first "
                                        "digit, %4.")
                       : QStringLiteral("Variable %1 has the format %2 of width %3; the reading kept the width %4, "
                                        "as the format's second character is not a digit.");
        notes->append(TReadNote(0, variable,
                                QLatin1String(firstDigit ? TReadNoteKind::WidthFirstDigit
                                                         : TReadNoteKind::WidthNotRead),
                                text.arg(variable, utf8(format), QString::number(width.width),
                                         QString::number(keptWidth))));
    }
    const int decimals = formatDecimals(format);
    if (numeric && decimals > 0) {
        notes->append(TReadNote(0, variable, QLatin1String(TReadNoteKind::DecimalsNotRead),
                                QStringLiteral("Variable %1 has the format %2 with %3 decimals; the reading kept no "
                                               "number of decimals.")
                                    .arg(variable, utf8(format), QString::number(decimals))));
    }
}

void addUserMissingNote(TReadNotes *notes, const QString &variable, const readstat_variable_t *record)
{
    const int count = readstat_variable_get_missing_ranges_count(record);
    if (count <= 0)
        return;
    QStringList items;
    for (int i = 0; i < count; ++i) {
        const QString lo = missingBoundText(readstat_variable_get_missing_range_lo(record, i));
        const QString hi = missingBoundText(readstat_variable_get_missing_range_hi(record, i));
        items.append(lo == hi ? lo : lo + QStringLiteral(" to ") + hi);
    }
    notes->append(TReadNote(0, variable, QLatin1String(TReadNoteKind::UserMissingNotRead),
                            QStringLiteral("Variable %1 declares the user-missing values %2; the reading kept none "
                                           "of them.")
                                .arg(variable, listText(items))));
}

EntryNotes::EntryNotes(TReadNotes *notes, const QString &variable, const char *labelSet, int decimals, bool cuts,
                       const QString &cutBy)
    : notes(notes)
    , variable(variable)
    , labelSet(labelSet)
    , decimals(decimals)
    , cuts(cuts)
    , cutBy(cutBy)
{
}

void EntryNotes::add(const ValueLabelEntry &entry, const QString &kept, bool skipped)
{
    const bool wasCut = entry.fromDouble && entry.doubleValue == -1.0;
    const bool changedByCut = wasCut && double(entry.intValue) != entry.fileDouble;
    // Most entries lose nothing: their texts are made only for a note.
    if (!skipped && !entry.missingTag && !changedByCut)
        return;
    const QString file = fileValueText(entry);
    const QString label = utf8(entry.label);
    if (skipped) {
        const QString text =
            wasCut && entry.fileDouble != -1.0
                ? QStringLiteral("Variable %1 has the label '%2' for the value %3 in label set %4; the reading cut "
                                 "it to -1 and left it out of the value labels.")
                : QStringLiteral("Variable %1 has the label '%2' for the value %3 in label set %4; the reading left "
                                 "it out of the value labels.");
        notes->append(TReadNote(0, variable, QLatin1String(TReadNoteKind::LabelMinusOneDropped),
                                text.arg(variable, label, file, utf8(labelSet))));
    } else if (entry.missingTag) {
        notes->append(TReadNote(0, variable, QLatin1String(TReadNoteKind::MissingLabelAsCode),
                                QStringLiteral("Variable %1 has the label '%2' for %3 in label set %4; the reading "
                                               "kept it as the ordinary code %5.")
                                    .arg(variable, label, missingValueText(entry.missingTag), utf8(labelSet), kept)));
    } else if (cuts) {
        notes->append(TReadNote(0, variable, QLatin1String(TReadNoteKind::LabelValueTruncated),
                                QStringLiteral("Variable %1 has the label '%2' for the value %3 in label set %4; as "
                                               "the variable has no decimals, the reading cut the value to %5.")
                                    .arg(variable, label, file, utf8(labelSet), kept)));
    } else {
        changedByEarlierCut.append(file + QStringLiteral(" as ") + kept);
    }
}

void EntryNotes::finish()
{
    if (changedByEarlierCut.isEmpty())
        return;
    notes->append(TReadNote(0, utf8(labelSet), QLatin1String(TReadNoteKind::LabelSetTruncated),
                            QStringLiteral("Label set %1 was cut to integers in place by the earlier variable %2, "
                                           "which has no decimals; variable %3, with %4 decimals, reads %5.")
                                .arg(utf8(labelSet), cutBy, variable, QString::number(decimals),
                                     listText(changedByEarlierCut))));
}

} // namespace kxreadstat

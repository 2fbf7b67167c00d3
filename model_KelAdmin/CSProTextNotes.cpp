#include "CSProTextNotes_p.h"

#include "CSPro.h"
#include "KxConstants.h"
#include "ReadNote.h"

namespace {

// The special values CSPro knows; a Name line naming one marks its code.
bool isCSProSpecialValue(const QString &keyword)
{
    return keyword == QLatin1String("MISSING") || keyword == QLatin1String("NOTAPPL")
        || keyword == QLatin1String("DEFAULT") || keyword == QLatin1String("REFUSED");
}

QString answerText(int answer)
{
    switch (answer) {
    case QMessageBox::Yes:
        return QStringLiteral("Yes");
    case QMessageBox::YesToAll:
        return QStringLiteral("Yes to All");
    case QMessageBox::No:
        return QStringLiteral("No");
    case QMessageBox::NoToAll:
        return QStringLiteral("No to All");
    default:
        return QStringLiteral("with no button");
    }
}

} // namespace

int TCSProTextNotes::fileLineOf(const QString &sectionLine)
{
    if (!lines || sectionLine.isNull())
        return 0;
    // From the cursor to the section's end, then from the section's start:
    // notes in file order cost one pass over the section in all.
    const int first = sectionHeaderIndex + 1;
    const int from = qMax(first, cursor);
    for (int pass = 0; pass < 2; ++pass) {
        const int begin = pass == 0 ? from : first;
        for (int i = begin; i < lines->size() && (pass == 0 || i < from); ++i) {
            const QString &raw = lines->at(i);
            if (raw.startsWith(QLatin1Char('[')))
                break;
            if (raw.trimmed() == sectionLine) {
                cursor = i + 1;
                return i + 1;
            }
        }
    }
    return 0;
}

QString TCSProTextNotes::sectionSubject(const QStringList &section) const
{
    for (const QString &line : section) {
        if (line.startsWith(QLatin1String("Name=")))
            return line.mid(5);
    }
    if (lines && sectionHeaderIndex >= 0 && sectionHeaderIndex < lines->size())
        return lines->at(sectionHeaderIndex).trimmed();
    return QString();
}

QString TCSProTextNotes::readCommandLine(const QStringList &section, const QString &command) const
{
    for (const QString &line : section) {
        if (line.contains(command))
            return line;
    }
    return QString();
}

void TCSProTextNotes::noteCommandFromOtherLine(const QStringList &section, const QString &command,
                                      const QString &usedLine, const QString &usedValue, const int *intDefault)
{
    if (!lines)
        return;
    const QString prefix = command + EQUALCHR;
    const QString *own = nullptr;
    for (const QString &line : section) {
        if (line.startsWith(prefix)) {
            own = &line;
            break;
        }
    }
    // What the reading kept, and what the command's own line says.
    QString kept = usedValue;
    QString said = own ? own->mid(prefix.size()) : QString();
    if (intDefault) {
        auto asInt = [intDefault](const QString &text) {
            bool ok = false;
            const int value = text.toInt(&ok, 10);
            return ok ? value : *intDefault;
        };
        kept = QString::number(asInt(usedValue));
        said = QString::number(own ? asInt(said) : *intDefault);
    } else if (!own) {
        return; // the reading found a value where the file gives none of its own
    }
    if (kept == said)
        return;
    QString text;
    if (own && *own == usedLine)
        text = QStringLiteral("%1: its line '%2' holds a second '=', so the reading kept '%3' instead of '%4'.")
                   .arg(command, usedLine, kept, said);
    else if (own)
        text = QStringLiteral("%1 was read from the line '%2', which gave '%3'; its own line '%4' says '%5'.")
                   .arg(command, usedLine, kept, *own, said);
    else
        text = QStringLiteral("%1 was read from the line '%2', which gave '%3'; without a line '%4' of its "
                              "own it would be %5.")
                   .arg(command, usedLine, kept, prefix, said);
    q.addReadNote(fileLineOf(usedLine), sectionSubject(section), TReadNoteKind::KeyFromOtherLine, text);
}

void TCSProTextNotes::noteSpecialValue(const QString &line, const TValueSetItem *entry, const TCSProValueSet *valueSet)
{
    if (!lines)
        return;
    const QString rest = line.mid(5);
    const QString keyword = rest.left(rest.indexOf(COMMACHR)).trimmed().toUpper();
    if (!isCSProSpecialValue(keyword))
        return;
    QString lost;
    if (keyword == QLatin1String("MISSING"))
        lost = QStringLiteral(", and the item gets no missing code");
    else if (keyword == QLatin1String("NOTAPPL"))
        lost = QStringLiteral(", and the item gets no not-applicable code");
    q.addReadNote(fileLineOf(line), valueSet->name, TReadNoteKind::SpecialNotRead,
                QStringLiteral("The line '%1' makes the code '%2' the special value %3 in CSPro; the reading "
                               "kept %2 as an ordinary code%4.")
                    .arg(line, entry->code, keyword, lost));
}

int TCSProTextNotes::fileLineOfCode(const QStringList &section, const QString &code)
{
    for (const QString &line : section) {
        if (isCSProValueLine(line) && line.midRef(6).contains(code))
            return fileLineOf(line);
    }
    return 0;
}

void TCSProTextNotes::noteDroppedValueSet(const TCSProValueSet *valueSet, const QString &why, int line)
{
    if (!lines)
        return;
    q.addReadNote(line, valueSet->name, TReadNoteKind::ValueSetDropped,
                QStringLiteral("Value set %1 dropped: %2.").arg(valueSet->name, why));
}

void TCSProTextNotes::noteDecimalCodes(const QStringList &section, const TCSProValueSet *valueSet, bool converted)
{
    if (!lines)
        return;
    // The codes the decimal answer concerns: those that are not integers.
    QStringList codes;
    for (const TValueSetItem *entry : qAsConst(*valueSet->items)) {
        if (entry && !IsNumeric2(entry->code))
            codes.append(entry->code);
    }
    if (codes.isEmpty())
        return;
    const int line = fileLineOfCode(section, codes.first());
    const QString answer = answerText(q.decimalAnswer);
    if (converted) {
        q.addReadNote(line, valueSet->name, TReadNoteKind::ValueCodesChanged,
                    QStringLiteral("Value set %1: the codes %2 are not whole numbers; the decimal prompt was "
                                   "answered %3, so the reading turned them into 0.")
                        .arg(valueSet->name, codes.join(QStringLiteral(", ")), answer));
        return;
    }
    noteDroppedValueSet(valueSet,
                        QStringLiteral("the codes %1 are not whole numbers and the decimal prompt was answered %2")
                            .arg(codes.join(QStringLiteral(", ")), answer),
                        line);
}

void TCSProTextNotes::noteNotIntegerCode(const QStringList &section, const TCSProValueSet *valueSet)
{
    if (!lines)
        return;
    for (const TValueSetItem *entry : qAsConst(*valueSet->items)) {
        if (!entry || IsNumeric2(entry->code))
            continue;
        QString valueLine;
        for (const QString &line : section) {
            if (isCSProValueLine(line) && line.midRef(6).contains(entry->code)) {
                valueLine = line;
                break;
            }
        }
        const QString why = entry->code.contains(SPACECHR)
            ? QStringLiteral("the value line '%1' lists several codes").arg(valueLine)
            : QStringLiteral("the code '%1' of the value line '%2' is not a whole number").arg(entry->code, valueLine);
        noteDroppedValueSet(valueSet, why, fileLineOf(valueLine));
        return;
    }
}

void TCSProTextNotes::noteLinkLine(const QString &linkLine, const TCSProValueSet *valueSet)
{
    if (lines && !linkLine.isEmpty())
        q.noteLinkedValueSet(fileLineOf(linkLine), linkLine.mid(5).trimmed(), valueSet);
}

void TCSProTextNotes::noteFirstItemCopies(const TCSProValueSet *valueSet)
{
    if (!lines || firstItemCopies < 2 || q.items->size() < firstItemCopies
        || q.currentItem != q.items->at(firstItemCopies - 1))
        return;
    q.addReadNote(sectionHeaderIndex + 1, firstItemName, TReadNoteKind::OccurrenceValueSet,
                QStringLiteral("Item %1 is the dictionary's first item and has %2 occurrences; only its last "
                               "copy gets value set %3, the other %4 copies get none.")
                    .arg(firstItemName)
                    .arg(firstItemCopies)
                    .arg(valueSet->name)
                    .arg(firstItemCopies - 1));
}

void TCSProTextNotes::noteUndecodableLine(int line, const QString &text)
{
    q.addReadNote(line, text.trimmed(), TReadNoteKind::UndecodableText,
                QStringLiteral("Line %1 holds bytes that are not valid text; the reading kept a replacement "
                               "character (U+FFFD) in their place: '%2'.")
                    .arg(line)
                    .arg(text.trimmed()));
}

void TCSProTextNotes::noteLimit(int line, const QString &subject, const QString &text)
{
    if (lines)
        q.addReadNote(line, subject, TReadNoteKind::LimitReached, text);
}

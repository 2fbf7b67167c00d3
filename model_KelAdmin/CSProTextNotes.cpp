#include "CSProTextNotes_p.h"

#include "CSPro.h"
#include "CSProCodeNotes_p.h"
#include "KxConstants.h"
#include "ReadNote.h"

#include <QFile>

#include <algorithm>
#include <cstring>

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
                kxtext::format(QStringLiteral("Item %1 is the dictionary's first item and has %2 occurrences; only its "
                                              "last copy gets value set %3, the other %4 copies get none."),
                               firstItemName, firstItemCopies, valueSet->name, firstItemCopies - 1));
}

void TCSProTextNotes::noteUndecodableLine(int line, const QString &text)
{
    q.addReadNote(line, text.trimmed(), TReadNoteKind::UndecodableText,
                kxtext::format(QStringLiteral("Line %1 holds bytes that are not valid text; the reading kept a "
                                              "replacement character (U+FFFD) in their place: '%2'."),
                               line, text.trimmed()));
}

void TCSProTextNotes::noteCarriageReturns(QFile &file, const QStringList &linesRead)
{
    // The bytes are mapped, not read again: a file without a lone carriage
    // return costs one pass of memchr.
    const qint64 size = file.size();
    const uchar *bytes = size > 0 ? file.map(0, size) : nullptr;
    if (!bytes)
        return;
    const char *begin = reinterpret_cast<const char *>(bytes);
    const char *end = begin + size;
    const char *counted = begin;
    int line = 1;
    int lastNoted = 0;
    for (const char *cr = begin; (cr = static_cast<const char *>(memchr(cr, '\r', size_t(end - cr)))); ++cr) {
        if (cr + 1 < end && cr[1] == '\n')
            continue;
        line += int(std::count(counted, cr, '\n'));
        counted = cr;
        if (line == lastNoted || line > linesRead.size())
            continue;
        lastNoted = line;
        const QString text = linesRead.at(line - 1).trimmed();
        q.addReadNote(line, text, TReadNoteKind::CarriageReturnDropped,
                      kxtext::format(QStringLiteral("Line %1 holds a carriage return that does not end it; the reading "
                                                    "drops it: '%2'."),
                                     line, text));
    }
    file.unmap(const_cast<uchar *>(bytes));
}

void TCSProTextNotes::noteLimit(int line, const QString &subject, const QString &text)
{
    if (lines)
        q.addReadNote(line, subject, TReadNoteKind::LimitReached, text);
}

// ---- Where the file's meaning and the reading part without an error -------

namespace {

QString quoted(const QString &text)
{
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

bool isQuote(QChar c)
{
    return c == QLatin1Char('\'') || c == QLatin1Char('"');
}

} // namespace

QString TCSProTextNotes::ownCommandLine(const QStringList &section, const QString &command) const
{
    const QString prefix = command + EQUALCHR;
    for (const QString &line : section) {
        if (line.startsWith(prefix))
            return line;
    }
    return QString();
}

void TCSProTextNotes::sawSkippedHeader(const QString &header)
{
    const QString word = header.mid(1, header.indexOf(QLatin1Char(']')) - 1).toUpper();
    if (word == QLatin1String("LEVEL"))
        ++levels;
    else if (word == QLatin1String("IDITEMS"))
        inIdItems = true;
}

void TCSProTextNotes::noteDictionary(const QStringList &section)
{
    if (!lines || q.recordTypeLen > 0)
        return;
    const QString line = ownCommandLine(section, CMD_RECTYPELEN);
    q.addReadNote(fileLineOf(line), q.name, TReadNoteKind::GroupNotSet,
                  QStringLiteral("The line '%1' gives the dictionary no record type: CSPro still knows the record "
                                 "of every item, but the reading gives no field a group, the identification items "
                                 "included.")
                      .arg(line));
}

void TCSProTextNotes::noteItem(const QStringList &section, const TCSProItem &item)
{
    if (!lines)
        return;
    noteLanguageLabel(section, item);
    noteNumbers(section, item);
    noteSubitem(item);
    noteIdItem(item);
    if (item.isAlpha == 0 && item.decimal == 0 && item.len > 9) {
        const QString line = ownCommandLine(section, CMD_LEN);
        q.addReadNote(fileLineOf(line), item.name, TReadNoteKind::WideIntegerAsReal,
                      kxtext::format(QStringLiteral("Item %1 is a whole number of %2 digits ('%3'); the reading types "
                                                    "it REAL (field type 2, decimals 0), as every numeric item longer "
                                                    "than 9 digits."),
                                     item.name, item.len, line));
    }
}

void TCSProTextNotes::noteLanguageLabel(const QStringList &section, const TCSProItem &item)
{
    if (!item.label.contains(QLatin1Char('|')))
        return;
    const QString line = ownCommandLine(section, CMD_LABEL);
    q.addReadNote(fileLineOf(line), item.name, TReadNoteKind::LanguageLabelsJoined,
                  QStringLiteral("The label '%1' holds one label per language, separated by '|': CSPro's label is "
                                 "'%2'; the reading kept the whole text.")
                      .arg(item.label, item.label.section(QLatin1Char('|'), 0, 0)));
}

void TCSProTextNotes::noteNumbers(const QStringList &section, const TCSProItem &item)
{
    struct Command
    {
        const QString &name;
        int kept;
        int fallback;
    };
    const Command commands[] = {{CMD_START, item.start, 1},
                                {CMD_LEN, item.len, 0},
                                {CMD_OCCURS, item.occurrences, 1},
                                {CMD_DECIMAL, item.decimal, 0}};
    for (const QString &line : section) {
        for (const Command &command : commands) {
            const int n = command.name.size();
            if (line.size() <= n || line.at(n) != EQUALCHR.at(0) || !line.startsWith(command.name))
                continue;
            bool ok = false;
            const int number = line.midRef(n + 1).toInt(&ok, 10);
            if (ok && number > 0)
                break;
            // A value read from another line has its note already.
            if (readCommandLine(section, command.name) != line)
                break;
            QString what;
            if (!ok)
                what = QStringLiteral("is no whole number the reading can hold, so it kept the default %1")
                           .arg(command.fallback);
            else if (number < 0)
                what = QStringLiteral("is negative, and the reading kept %1").arg(command.kept);
            else if (command.name == CMD_OCCURS)
                what = QStringLiteral("leaves the item no occurrence, and the reading gives it no field");
            if (!what.isEmpty())
                q.addReadNote(fileLineOf(line), item.name, TReadNoteKind::NumberOutOfRange,
                              QStringLiteral("Item %1: '%2' %3.").arg(item.name, line, what));
            break;
        }
    }
}

void TCSProTextNotes::noteOccurrenceNames(const QStringList &section, const TCSProItem &item)
{
    if (!lines)
        return;
    const QString line = ownCommandLine(section, CMD_OCCURS);
    q.addReadNote(fileLineOf(line), item.name, TReadNoteKind::OccurrenceNameControl,
                  kxtext::format(QStringLiteral("Item %1 has %2 occurrences; the reading names their fields %1_ "
                                                "followed by the character of code 1 to %2 (U+0001 to U+%3), not %1_1 "
                                                "to %1_%2."),
                                 item.name, item.occurrences,
                                 QString::number(item.occurrences, 16).toUpper().rightJustified(4, QLatin1Char('0'))));
}

void TCSProTextNotes::noteSubitem(const TCSProItem &item)
{
    if (item.isSubItem == 0) {
        parentName = item.name;
        parentOccurrences = item.occurrences;
        parentLength = item.len;
        return;
    }
    if (parentOccurrences < 2 || item.occurrences != 1)
        return;
    const qint64 lastStart = qint64(item.start) + qint64(parentOccurrences - 1) * parentLength;
    q.addReadNote(sectionHeaderIndex + 1, item.name, TReadNoteKind::SubitemOccurrencesOnce,
                  kxtext::format(QStringLiteral("Subitem %1 lies in item %2, which has %3 occurrences: CSPro gives it "
                                                "once per occurrence, at columns %4 to %5 every %6 columns; the "
                                                "reading gives it once, at column %4."),
                                 item.name, parentName, parentOccurrences, item.start, lastStart, parentLength));
}

void TCSProTextNotes::noteIdItem(const TCSProItem &item)
{
    if (!inIdItems || q.currentRecord == q.commonRecord)
        return;
    q.addReadNote(sectionHeaderIndex + 1, item.name, TReadNoteKind::IdItemInRecordGroup,
                  kxtext::format(QStringLiteral("Item %1 is an identification item of level %2; the reading puts it in "
                                                "record %3, the record read before it, and so in that record's group."),
                                 item.name, levels, q.currentRecord->name));
}

void TCSProTextNotes::noteAttachedValueSet(const QStringList &section, const TCSProValueSet *valueSet)
{
    if (!lines)
        return;
    QStringList ranges, quotes, languages;
    QString rangeLine, quoteLine, languageLine;
    // Views into the lines: a value set read as CSPro means it costs no copy.
    for (const QString &line : section) {
        if (!isCSProValueLine(line))
            continue;
        const QStringRef rest = line.midRef(6);
        const int semicolon = rest.indexOf(QLatin1Char(';'));
        const QStringRef code = (semicolon >= 0 ? rest.left(semicolon) : rest).trimmed();
        if (code.contains(COLONCHR)) {
            ranges << code.toString();
            rangeLine = rangeLine.isNull() ? line : rangeLine;
        }
        if (code.size() >= 2 && isQuote(code.at(0)) && code.back() == code.at(0)) {
            const QStringRef kept = code.at(0) == QLatin1Char('\'') ? code.mid(1) : code;
            quotes << QStringLiteral("%1 as %2").arg(code, kept);
            quoteLine = quoteLine.isNull() ? line : quoteLine;
        }
        if (semicolon >= 0 && rest.indexOf(QLatin1Char('|'), semicolon) > 0) {
            languages << quoted(rest.mid(semicolon + 1).toString());
            languageLine = languageLine.isNull() ? line : languageLine;
        }
    }
    const QString name = valueSet->name;
    if (!ranges.isEmpty())
        q.addReadNote(fileLineOf(rangeLine), name, TReadNoteKind::RangeSplit,
                      QStringLiteral("Value set %1: the ranges %2 are kept as their two bound codes, and the codes "
                                     "between the bounds get no label.")
                          .arg(name, listedForNote(ranges)));
    if (!quotes.isEmpty())
        q.addReadNote(fileLineOf(quoteLine), name, TReadNoteKind::QuotedCodeBent,
                      QStringLiteral("Value set %1: CSPro removes the quotes of a quoted code; the reading kept %2.")
                          .arg(name, listedForNote(quotes)));
    const QString padded = valueSet->isNumeric ? QString() : paddedCodesNote(*valueSet);
    if (!padded.isEmpty())
        q.addReadNote(sectionHeaderIndex + 1, name, TReadNoteKind::PaddedCodeSplit, padded);
    if (!languages.isEmpty())
        q.addReadNote(fileLineOf(languageLine), name, TReadNoteKind::LanguageLabelsJoined,
                      QStringLiteral("Value set %1: the labels %2 hold one label per language, separated by '|'; "
                                     "CSPro's label is the first, and the reading kept the whole text.")
                          .arg(name, listedForNote(languages)));
    const bool integerField = valueSet->isNumeric && q.currentItem->decimal == 0 && q.currentItem->len <= 9;
    const QString rounded = integerField ? roundedCodesNote(*valueSet) : QString();
    if (!rounded.isEmpty())
        q.addReadNote(sectionHeaderIndex + 1, name, TReadNoteKind::CodeRounded, rounded);
}

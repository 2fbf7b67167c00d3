#include "CSPro.h"
#include "KxText_p.h"

#include "KxConstants.h"
#include "KxErrorManager.h"
#include "KxTrace_p.h"
#include "KxWidgets_p.h"
#include "ReadNote.h"

#include <QFile>
#include <QSet>
#include <QTextStream>

#include <limits>
#include <memory>
#include <stdexcept>

namespace {

const QString COMMON_NAME = QStringLiteral("Common");
const QString COMMON_TYPE_VALUE = QStringLiteral("_COMMON_");
const QString CMD_VERSION = QStringLiteral("Version");

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

bool isValueLine(const QString &line)
{
    return kxtext::startsWithNoCase(line, QLatin1String("VALUE="));
}

// Clears the lines the notes refer to when a load ends, also by an exception.
class NoteLinesScope
{
public:
    explicit NoteLinesScope(const QStringList **lines) : lines(lines) {}
    ~NoteLinesScope() { *lines = nullptr; }
    NoteLinesScope(const NoteLinesScope &) = delete;
    NoteLinesScope &operator=(const NoteLinesScope &) = delete;

private:
    const QStringList **lines;
};

// Frees a value set that was not attached to any item, with its entries.
void discardValueSet(TCSProValueSet *valueSet)
{
    qDeleteAll(*valueSet->items);
    delete valueSet;
}

TCSProRecord *newCommonRecord()
{
    auto *record = new TCSProRecord;
    record->name = COMMON_NAME;
    record->recordTypeValue = COMMON_TYPE_VALUE;
    return record;
}

} // namespace

TCSPro::TCSPro()
    : commonRecord(newCommonRecord())
    , records(new QList<TCSProRecord *>)
    , recordsByValue(new QMap<QString, TCSProRecord *>)
    , items(new QList<TCSProItem *>)
{
    currentRecord = commonRecord;
}

TCSPro::~TCSPro()
{
    // Records, items and value sets stay alive: importers keep pointers to
    // them. Only the dialog and the list containers go.
    if (messageBox)
        kxwidgets::api()->deleteBox(messageBox);
    delete records;
    delete recordsByValue;
    delete items;
}

void TCSPro::releaseModel()
{
    QSet<TCSProValueSet *> valueSets;
    for (TCSProItem *item : qAsConst(*items)) {
        if (item->valueSets) {
            for (TCSProValueSet *set : qAsConst(*item->valueSets))
                valueSets.insert(set);
        }
    }
    for (TCSProValueSet *set : qAsConst(valueSets)) {
        qDeleteAll(*set->items);
        delete set;
    }
    qDeleteAll(*items);
    items->clear();
    qDeleteAll(*records);
    records->clear();
    recordsByValue->clear();
    delete commonRecord;
    commonRecord = newCommonRecord();
    currentRecord = commonRecord;
    currentItem = nullptr;
}

void TCSPro::loadFromFile(QString path)
{
    readNotes.clear();
    linkedValueSets.clear();
    QStringList lines;
    QFile file(path);
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        // QTextStream drops a byte-order mark; text mode folds CRLF to LF.
        QTextStream in(&file);
        while (!in.atEnd()) {
            lines.append(in.readLine());
            if (lines.constLast().contains(QChar::ReplacementCharacter))
                noteUndecodableLine(lines.size(), lines.constLast());
        }
    }
    loadFromStr(&lines);
}

void TCSPro::addReadNote(int line, const QString &subject, const char *kind, const QString &text)
{
    if (readNotes.size() > MaxReadNotes)
        return;
    if (readNotes.size() == MaxReadNotes) {
        readNotes.append(TReadNote(0, QString(), QString::fromLatin1(TReadNoteKind::LimitReached),
                                   QStringLiteral("The reading wrote more than %1 notes; the rest are not kept.")
                                       .arg(MaxReadNotes)));
        return;
    }
    readNotes.append(TReadNote(line, subject, QString::fromLatin1(kind), text));
}

void TCSPro::loadFromStr(QStringList *lines)
{
    if (!lines)
        return;
    noteLines = lines;
    NoteLinesScope scope(&noteLines);
    qint64 characters = 0;
    for (const QString &line : qAsConst(*lines))
        characters += line.size() + 1;
    startCopyBudget(characters);
    int i = 0;
    try {
        for (i = 0; i < lines->size(); ++i) {
            const QString line = lines->at(i).trimmed();
            if (line.isEmpty() || line.at(0) != QLatin1Char('['))
                continue;
            switch (getItemType(line)) {
            case 1:
                processDictionary(lines, i);
                break;
            case 2:
                processRecord(lines, i);
                break;
            case 3:
                processItem(lines, i);
                break;
            case 4:
                processValueSet(lines, i);
                break;
            default:
                break;
            }
        }
    } catch (KxErrorManager *e) {
        delete e;
        throw new KxErrorManager(EM_CSPro, 242, QString(QChar(i)));
    } catch (...) {
        throw new KxErrorManager(EM_CSPro, 242, QString(QChar(i)));
    }
}

void TCSPro::loadFromCSDB(QString)
{
    QStringList none;
    loadFromStr(&none);
}

int TCSPro::getItemsCount()
{
    return items->size();
}

TCSProItem *TCSPro::getItem(int i)
{
    return items->at(i);
}

int TCSPro::getRecordsCount()
{
    recordsCount = records->size();
    return recordsCount;
}

TCSProRecord *TCSPro::getRecord(int i)
{
    return records->at(i);
}

QList<TCSProItem *> *TCSPro::getItemsList()
{
    return items;
}

TCSProRecord *TCSPro::findRecordByValue(QString value)
{
    return recordsByValue->value(value, nullptr);
}

int TCSPro::getItemType(QString header)
{
    QString word = header.mid(1);
    word = word.left(word.indexOf(QLatin1Char(']'))).toUpper();
    if (word == TYPE_DICTIONARY)
        return 1;
    if (word == TYPE_RECORD)
        return 2;
    if (word == TYPE_ITEM)
        return 3;
    if (word == TYPE_VALUESET)
        return 4;
    return 0;
}

QStringList *TCSPro::getSection(QStringList *lines, int &index)
{
    auto *section = new QStringList;
    noteSectionHeader = index;
    noteCursor = index + 1;
    int end = index + 1;
    while (end < lines->size() && !lines->at(end).startsWith(QLatin1Char('[')))
        ++end;
    section->reserve(end - index - 1);
    for (int i = index + 1; i < end; ++i) {
        const QString line = lines->at(i).trimmed();
        if (!line.isEmpty())
            section->append(line);
    }
    index = end - 1;
    return section;
}

QString TCSPro::processLine(QStringList section, QString command, QString def)
{
    return readCommand(section, command, def, nullptr);
}

int TCSPro::processLineToInt(QStringList section, QString command, int def)
{
    // A missing command, a line with a second "=" and a value that is not a
    // base-10 int all give the default.
    bool ok = false;
    const int value = kxtext::toInt(readCommand(section, command, QString(), &def), &ok);
    return ok ? value : def;
}

QString TCSPro::readCommand(const QStringList &section, const QString &command, const QString &def,
                            const int *intDefault)
{
    for (const QString &line : section) {
        if (!kxtext::contains(line, command))
            continue;
        // Only the first line containing the command counts, and only when
        // it splits at "=" into exactly two parts.
        const int equal = line.indexOf(EQUALCHR);
        const bool twoParts = equal >= 0 && line.indexOf(EQUALCHR, equal + 1) < 0;
        const QString value = twoParts ? line.mid(equal + 1) : def;
        if (!twoParts || equal != command.size() || !line.startsWith(command))
            noteCommandFromOtherLine(section, command, line, value, intDefault);
        return value;
    }
    return def;
}

void TCSPro::processDictionary(QStringList *lines, int &index)
{
    std::unique_ptr<QStringList> section(getSection(lines, index));
    version = processLine(*section, CMD_VERSION, QString());
    label = processLine(*section, CMD_LABEL, QString());
    name = processLine(*section, CMD_NAME, QString());
    recordTypeStart = processLineToInt(*section, CMD_RECTYPESTART, 1);
    recordTypeLen = processLineToInt(*section, CMD_RECTYPELEN, 1);
    positions = processLine(*section, CMD_POSITIONS, QString());
    zeroFill = processLine(*section, CMD_ZEROFILL, QString());
    decimalChar = processLine(*section, CMD_DECCHAR, QString());
}

void TCSPro::processRecord(QStringList *lines, int &index)
{
    std::unique_ptr<QStringList> section(getSection(lines, index));
    auto *record = new TCSProRecord;
    record->label = processLine(*section, CMD_LABEL, QString());
    record->name = processLine(*section, CMD_NAME, QString());
    record->recordTypeValue = processLine(*section, CMD_RECTYPEVALUE, QString());
    record->required = processLine(*section, CMD_REQUIRED, QString());
    record->maxRecords = processLineToInt(*section, CMD_MAXRECS, 100);
    record->recordLen = processLineToInt(*section, CMD_RECLEN, 0);
    // Strip the quotes of a value written as 'H', whatever the text is.
    record->recordTypeValue.chop(1);
    record->recordTypeValue.remove(0, 1);

    records->append(record);
    recordsByValue->insert(record->recordTypeValue, record);
    currentRecord = record;
}

void TCSPro::processItem(QStringList *lines, int &index)
{
    std::unique_ptr<QStringList> section(getSection(lines, index));
    std::unique_ptr<TCSProItem> item(new TCSProItem);
    readItemCommands(*section, item.get());

    if (item->occurrences == 1) {
        TCSProItem *stored = item.release();
        stored->record = currentRecord;
        currentRecord->addItem(stored);
        items->append(stored);
        currentItem = stored;
        return;
    }
    if (item->occurrences <= 0)
        return;
    storeOccurrenceCopies(*section, *item);
}

void TCSPro::readItemCommands(const QStringList &section, TCSProItem *item)
{
    item->label = processLine(section, CMD_LABEL, QString());
    item->name = processLine(section, CMD_NAME, QString());
    item->start = processLineToInt(section, CMD_START, 1);
    item->len = processLineToInt(section, CMD_LEN, 0);

    lastItemNumeric = true;
    const QString dataType = processLine(section, CMD_DATATYPE, QString());
    if (!dataType.isEmpty() && dataType.toUpper() == QLatin1String("ALPHA")) {
        item->isAlpha = 1;
        lastItemNumeric = false;
    }
    const QString itemType = processLine(section, CMD_ITEMTYPE, QString());
    if (!itemType.isEmpty() && itemType.toUpper() == QLatin1String("SUBITEM"))
        item->isSubItem = 1;

    item->occurrences = processLineToInt(section, CMD_OCCURS, 1);
    item->decimal = processLineToInt(section, CMD_DECIMAL, 0);
    if (processLine(section, CMD_DECCHAR, QString()).toUpper() == AXYES)
        item->decimalChar = true;
    if (processLine(section, CMD_ZEROFILL, QString()).toUpper() == AXYES)
        item->zeroFill = true;
}

void TCSPro::checkOccurrences(const QStringList &section, const TCSProItem &item)
{
    // Counts and positions come from the file: an occurrence count above
    // what CSPro allows, or a last start outside int, is a corrupt item and
    // fails the load (error 242) before anything of it is stored.
    const int occurrences = item.occurrences;
    const int line = fileLineOf(readCommandLine(section, CMD_OCCURS));
    if (occurrences > MaxOccurrences) {
        noteLimit(line, item.name,
                  QStringLiteral("Item %1 has %2 occurrences, more than the %3 that are expanded; the reading "
                                 "stops here with error 242.")
                      .arg(item.name)
                      .arg(occurrences)
                      .arg(MaxOccurrences));
        throw std::length_error("occurrence count out of range");
    }
    if (qint64(items->size()) + occurrences > qint64(MaxExpandedItems)) {
        noteLimit(line, item.name,
                  QStringLiteral("Item %1 with %2 occurrences would make more than %3 items; the reading stops "
                                 "here with error 242.")
                      .arg(item.name)
                      .arg(occurrences)
                      .arg(MaxExpandedItems));
        throw std::length_error("too many items after expansion");
    }
    if (copiesMade + occurrences > copyBudget) {
        noteLimit(line, item.name,
                  QStringLiteral("Item %1 with %2 occurrences would pass the %3 copies of repeated items that "
                                 "this dictionary may expand to (%4 and one for every %5 characters of the "
                                 "file); the reading stops here with error 242.")
                      .arg(item.name)
                      .arg(occurrences)
                      .arg(copyBudget)
                      .arg(MinCopyBudget)
                      .arg(FileBytesPerCopy));
        throw std::length_error("too many copies of repeated items");
    }
    const qint64 lastStart = qint64(item.start) + qint64(occurrences - 1) * qint64(item.len);
    if (lastStart > std::numeric_limits<int>::max() || lastStart < std::numeric_limits<int>::min())
        throw std::overflow_error("occurrence start out of range");
}

void TCSPro::storeOccurrenceCopies(const QStringList &section, const TCSProItem &item)
{
    checkOccurrences(section, item);
    const int occurrences = item.occurrences;
    const int copiesIndex = items->size();
    if (copiesIndex == 0) {
        firstItemCopies = occurrences;
        firstItemName = item.name;
    }
    copiesMade += occurrences;
    for (int k = 1; k <= occurrences; ++k) {
        auto *copy = new TCSProItem;
        copy->label = item.label;
        // The occurrence number is appended as the character with that code.
        copy->name = item.name + UNDERSCORE + QChar(k);
        copy->start = int(qint64(item.start) + qint64(k - 1) * qint64(item.len));
        copy->occurrences = 1;
        copy->isAlpha = item.isAlpha;
        copy->decimal = item.decimal;
        copy->isSubItem = item.isSubItem;
        copy->len = item.len;
        copy->decimalChar = item.decimalChar;
        copy->index = copiesIndex;
        copy->record = currentRecord;
        items->append(copy);
        currentItem = copy;
    }
}

void TCSPro::processValueSet(QStringList *lines, int &index)
{
    std::unique_ptr<QStringList> section(getSection(lines, index));
    auto *valueSet = new TCSProValueSet;
    valueSet->label = processLine(*section, CMD_LABEL, QString());
    valueSet->name = processLine(*section, CMD_NAME, QString());
    valueSet->isNumeric = lastItemNumeric ? 1 : 0;

    const QString linkLine = readValueLines(*section, valueSet);
    noteLinkLine(linkLine, valueSet);

    if (!valueSet->validateItems(0) && !decideDecimalCodes(*section, valueSet)) {
        discardValueSet(valueSet);
        return;
    }
    if (!currentItem) {
        noteDroppedValueSet(valueSet, QStringLiteral("no item comes before it"), noteSectionHeader + 1);
        discardValueSet(valueSet);
        return;
    }
    if (!valueSet->validateItems(1)) {
        noteNotIntegerCode(*section, valueSet);
        discardValueSet(valueSet);
        return;
    }
    valueSet->sortItems();
    attachValueSet(valueSet);
}

QString TCSPro::readValueLines(const QStringList &section, TCSProValueSet *valueSet)
{
    QString linkLine;
    TValueSetItem *pending = nullptr;
    auto closePending = [&]() {
        if (!pending)
            return;
        if (pending->special) {
            delete pending;
        } else {
            if (pending->code.contains(SPACECHR) && pending->code.contains(COLONCHR))
                processOtherRanges(valueSet, pending);
            valueSet->addItem(pending);
        }
        pending = nullptr;
    };

    // The section's lines are trimmed already.
    for (const QString &line : section) {
        if (isValueLine(line)) {
            closePending();
            pending = readValueLine(line, valueSet);
        } else if (pending && kxtext::startsWithNoCase(line, QLatin1String("NAME="))) {
            readSpecialValue(line, pending, valueSet);
        } else if (kxtext::startsWithNoCase(line, QLatin1String("LINK="))) {
            linkLine = line;
        }
    }
    closePending();
    return linkLine;
}

TValueSetItem *TCSPro::readValueLine(const QString &line, TCSProValueSet *valueSet)
{
    auto *pending = new TValueSetItem;
    pending->special = false;
    // Views into the line: only the code and the label become strings.
    QStringRef rest = line.midRef(6);
    int semicolon = rest.indexOf(QLatin1Char(';'));
    const int colon = rest.indexOf(QLatin1Char(':'));
    if (colon > 0 && (semicolon < 0 || colon < semicolon)) {
        // A range: its low bound becomes an entry of its own, with the
        // label of the line; the pending entry keeps the high bound.
        const QString lowLabel = semicolon >= 0 ? rest.mid(semicolon + 1).toString() : QString();
        const QString low = rest.left(colon).toString();
        const QStringList pieces = low.contains(SPACECHR) ? low.split(SPACECHR, Qt::SkipEmptyParts)
                                                          : QStringList{low};
        for (const QString &piece : pieces) {
            auto *entry = new TValueSetItem;
            entry->code = piece;
            entry->name = lowLabel;
            valueSet->addItem(entry);
        }
        rest = rest.mid(colon + 1);
        semicolon = rest.indexOf(QLatin1Char(';'));
    }
    pending->code = (semicolon >= 0 ? rest.left(semicolon) : rest).toString();
    pending->name = semicolon >= 0 ? rest.mid(semicolon + 1).toString() : QString();
    // Only the opening apostrophe is removed; a closing one stays.
    if (pending->code.startsWith(QLatin1Char('\'')))
        pending->code.remove(0, 1);
    return pending;
}

void TCSPro::readSpecialValue(const QString &line, TValueSetItem *pending, const TCSProValueSet *valueSet)
{
    const QString rest = line.mid(5);
    const int comma = rest.indexOf(COMMACHR);
    if (comma <= 0) {
        pending->type = 0;
        return;
    }
    // The keyword loses its last character and the flag keeps the
    // comma, so 'MISSING,Special' matches neither word.
    const QString keyword = rest.left(comma - 1).toUpper();
    const QString flag = rest.mid(comma).toUpper();
    pending->special = (flag == QLatin1String("SPECIAL"));
    if (keyword == QLatin1String("MISSING")) {
        pending->type = 1;
        pending->special = true;
        if (currentItem)
            currentItem->missingCode = pending->code;
    } else if (keyword == QLatin1String("NOTAPPL")) {
        pending->type = 2;
        pending->special = true;
        if (currentItem)
            currentItem->notApplCode = pending->code;
    } else {
        pending->type = 0;
        noteSpecialValue(line, pending, valueSet);
    }
}

bool TCSPro::decideDecimalCodes(const QStringList &section, TCSProValueSet *valueSet)
{
    showMessageBoxDecimal(tr("<b>A decimal number was found</b>"),
                          tr("Would you like to convert it to an integer number?"), tr("Caution"),
                          QMessageBox::Warning);
    switch (decimalAnswer) {
    case QMessageBox::Yes:
        noteDecimalCodes(section, valueSet, true);
        valueSet->itemsAsNumberZero();
        return true;
    case QMessageBox::YesToAll:
        decimalMode = 1;
        noteDecimalCodes(section, valueSet, true);
        valueSet->itemsAsNumberZero();
        return true;
    case QMessageBox::NoToAll:
        decimalMode = 2;
        noteDecimalCodes(section, valueSet, false);
        return false;
    default:
        noteDecimalCodes(section, valueSet, false);
        return false;
    }
}

void TCSPro::attachValueSet(TCSProValueSet *valueSet)
{
    bool attached = false;
    if (currentItem->index == 0) {
        currentItem->addValueSet(valueSet);
        attached = currentItem->valueSets->contains(valueSet);
        if (attached)
            noteFirstItemCopies(valueSet);
    } else {
        // All occurrence copies of the item share the one value set.
        for (int i = items->size() - 1; i >= 0; --i) {
            TCSProItem *item = items->at(i);
            if (item->index != currentItem->index)
                break;
            item->addValueSet(valueSet);
            attached = attached || item->valueSets->contains(valueSet);
        }
    }
    if (attached)
        return;
    const TCSProValueSet *kept = currentItem->getHasValueSet() ? currentItem->valueSets->first() : nullptr;
    noteDroppedValueSet(valueSet,
                        QStringLiteral("its item already has the value set %1, and only the first is kept")
                            .arg(kept ? kept->name : QString()),
                        noteSectionHeader + 1);
    discardValueSet(valueSet);
}

// ---- Reading notes -------------------------------------------------------

int TCSPro::fileLineOf(const QString &sectionLine)
{
    if (!noteLines || sectionLine.isNull())
        return 0;
    // From the cursor to the section's end, then from the section's start:
    // notes in file order cost one pass over the section in all.
    const int first = noteSectionHeader + 1;
    const int from = qMax(first, noteCursor);
    for (int pass = 0; pass < 2; ++pass) {
        const int begin = pass == 0 ? from : first;
        for (int i = begin; i < noteLines->size() && (pass == 0 || i < from); ++i) {
            const QString &raw = noteLines->at(i);
            if (raw.startsWith(QLatin1Char('[')))
                break;
            if (raw.trimmed() == sectionLine) {
                noteCursor = i + 1;
                return i + 1;
            }
        }
    }
    return 0;
}

QString TCSPro::sectionSubject(const QStringList &section) const
{
    for (const QString &line : section) {
        if (line.startsWith(QLatin1String("Name=")))
            return line.mid(5);
    }
    if (noteLines && noteSectionHeader >= 0 && noteSectionHeader < noteLines->size())
        return noteLines->at(noteSectionHeader).trimmed();
    return QString();
}

QString TCSPro::readCommandLine(const QStringList &section, const QString &command) const
{
    for (const QString &line : section) {
        if (line.contains(command))
            return line;
    }
    return QString();
}

void TCSPro::noteCommandFromOtherLine(const QStringList &section, const QString &command,
                                      const QString &usedLine, const QString &usedValue, const int *intDefault)
{
    if (!noteLines)
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
    addReadNote(fileLineOf(usedLine), sectionSubject(section), TReadNoteKind::KeyFromOtherLine, text);
}

void TCSPro::noteSpecialValue(const QString &line, const TValueSetItem *entry, const TCSProValueSet *valueSet)
{
    if (!noteLines)
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
    addReadNote(fileLineOf(line), valueSet->name, TReadNoteKind::SpecialNotRead,
                QStringLiteral("The line '%1' makes the code '%2' the special value %3 in CSPro; the reading "
                               "kept %2 as an ordinary code%4.")
                    .arg(line, entry->code, keyword, lost));
}

int TCSPro::fileLineOfCode(const QStringList &section, const QString &code)
{
    for (const QString &line : section) {
        if (isValueLine(line) && line.midRef(6).contains(code))
            return fileLineOf(line);
    }
    return 0;
}

void TCSPro::noteDroppedValueSet(const TCSProValueSet *valueSet, const QString &why, int line)
{
    if (!noteLines)
        return;
    addReadNote(line, valueSet->name, TReadNoteKind::ValueSetDropped,
                QStringLiteral("Value set %1 dropped: %2.").arg(valueSet->name, why));
}

void TCSPro::noteDecimalCodes(const QStringList &section, const TCSProValueSet *valueSet, bool converted)
{
    if (!noteLines)
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
    const QString answer = answerText(decimalAnswer);
    if (converted) {
        addReadNote(line, valueSet->name, TReadNoteKind::ValueCodesChanged,
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

void TCSPro::noteNotIntegerCode(const QStringList &section, const TCSProValueSet *valueSet)
{
    if (!noteLines)
        return;
    for (const TValueSetItem *entry : qAsConst(*valueSet->items)) {
        if (!entry || IsNumeric2(entry->code))
            continue;
        QString valueLine;
        for (const QString &line : section) {
            if (isValueLine(line) && line.midRef(6).contains(entry->code)) {
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

void TCSPro::noteLinkLine(const QString &linkLine, const TCSProValueSet *valueSet)
{
    if (noteLines && !linkLine.isEmpty())
        noteLinkedValueSet(fileLineOf(linkLine), linkLine.mid(5).trimmed(), valueSet);
}

void TCSPro::noteLinkedValueSet(int line, const QString &link, const TCSProValueSet *valueSet)
{
    if (!valueSet->items->isEmpty()) {
        if (!linkedValueSets.contains(link))
            linkedValueSets.insert(link, valueSet->name);
        return;
    }
    const auto first = linkedValueSets.constFind(link);
    if (first == linkedValueSets.constEnd())
        return;
    addReadNote(line, valueSet->name, TReadNoteKind::LinkedValueSetEmpty,
                QStringLiteral("Value set %1 has no values of its own: CSPro fills it from value set %2, which "
                               "has the same link %3; the reading leaves it empty.")
                    .arg(valueSet->name, first.value(), link));
}

void TCSPro::noteFirstItemCopies(const TCSProValueSet *valueSet)
{
    if (!noteLines || firstItemCopies < 2 || items->size() < firstItemCopies
        || currentItem != items->at(firstItemCopies - 1))
        return;
    addReadNote(noteSectionHeader + 1, firstItemName, TReadNoteKind::OccurrenceValueSet,
                QStringLiteral("Item %1 is the dictionary's first item and has %2 occurrences; only its last "
                               "copy gets value set %3, the other %4 copies get none.")
                    .arg(firstItemName)
                    .arg(firstItemCopies)
                    .arg(valueSet->name)
                    .arg(firstItemCopies - 1));
}

void TCSPro::noteUndecodableLine(int line, const QString &text)
{
    addReadNote(line, text.trimmed(), TReadNoteKind::UndecodableText,
                QStringLiteral("Line %1 holds bytes that are not valid text; the reading kept a replacement "
                               "character (U+FFFD) in their place: '%2'.")
                    .arg(line)
                    .arg(text.trimmed()));
}

void TCSPro::noteLimit(int line, const QString &subject, const QString &text)
{
    if (noteLines)
        addReadNote(line, subject, TReadNoteKind::LimitReached, text);
}

void TCSPro::processOtherRanges(TCSProValueSet *valueSet, TValueSetItem *item)
{
    // A fixed debug line: the front end relies on it.
    KX_TRACE() << "PROCESAR OTROS RANGOS";
    QString text = item->code;
    const int n = text.length();
    for (int p = 0; p < n; ++p) {
        // The character before each colon goes with it ('1:5 7:9' gives ' 5  9').
        if (p < text.length() && text.at(p) == QLatin1Char(':'))
            text = text.left(qMax(0, p - 1)) + SPACECHR + text.mid(p + 1);
    }
    text = text.trimmed();

    auto append = [&](const QString &code) {
        auto *entry = new TValueSetItem;
        entry->code = code;
        entry->name = item->name;
        entry->type = 0;
        entry->special = false;
        valueSet->addItem(entry);
    };
    while (!text.isEmpty()) {
        const int blank = text.indexOf(SPACECHR);
        if (blank <= 0) {
            // The last piece (no blank left) is appended once and ends the walk.
            append(text);
            break;
        }
        append(text.left(blank));
        text = text.mid(blank).trimmed();
    }
}

QMessageBox *TCSPro::getMessageBox()
{
    if (!messageBox) {
        // Widgets need a QApplication; without one no dialog can be shown.
        if (!kxwidgets::guiApplicationRunning() || !kxwidgets::api())
            return nullptr;
        messageBox = kxwidgets::api()->newPromptBox();
    }
    return messageBox;
}

int TCSPro::execMessageBox(const QString &text, const QString &informative, const QString &title,
                           QMessageBox::Icon icon)
{
    QMessageBox *box = getMessageBox();
    if (!box)
        return QMessageBox::NoButton; // headless: the caller treats it as No
    return kxwidgets::api()->execPrompt(box, text, informative, title, icon);
}

int TCSPro::showMessageBox(QString text, QString informative, QString title, QMessageBox::Icon icon)
{
    return execMessageBox(text, informative, title, icon);
}

void TCSPro::showMessageBoxDecimal(QString text, QString informative, QString title, QMessageBox::Icon icon)
{
    if (decimalMode == 0 || decimalMode == 3)
        decimalAnswer = execMessageBox(text, informative, title, icon);
}

void TCSPro::showMessageBoxUndefined(QString text, QString informative, QString title, QMessageBox::Icon icon)
{
    if (undefinedMode == 0 || undefinedMode == 3)
        undefinedAnswer = execMessageBox(text, informative, title, icon);
}

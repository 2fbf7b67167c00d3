#include "CSPro.h"
#include "CSProTextNotes_p.h"
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

// Gives the notes the lines of a load, and takes them back when the load
// ends, also by an exception.
class NoteLinesScope
{
public:
    NoteLinesScope(TCSProTextNotes *notes, const QStringList *lines) : notes(notes) { notes->startLoad(lines); }
    ~NoteLinesScope() { notes->endLoad(); }
    NoteLinesScope(const NoteLinesScope &) = delete;
    NoteLinesScope &operator=(const NoteLinesScope &) = delete;

private:
    TCSProTextNotes *notes;
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
    , notes(new TCSProTextNotes(*this))
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
                notes->noteUndecodableLine(lines.size(), lines.constLast());
        }
        notes->noteCarriageReturns(file, lines);
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
    NoteLinesScope scope(notes.data(), lines);
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
                notes->sawSkippedHeader(line);
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
    notes->startSection(index);
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
            notes->noteCommandFromOtherLine(section, command, line, value, intDefault);
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
    notes->noteDictionary(*section);
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
    notes->startRecord();
}

void TCSPro::processItem(QStringList *lines, int &index)
{
    std::unique_ptr<QStringList> section(getSection(lines, index));
    std::unique_ptr<TCSProItem> item(new TCSProItem);
    readItemCommands(*section, item.get());
    notes->noteItem(*section, *item);

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
    const int line = notes->fileLineOf(notes->readCommandLine(section, CMD_OCCURS));
    if (occurrences > MaxOccurrences) {
        notes->noteLimit(line, item.name,
                  kxtext::format(QStringLiteral("Item %1 has %2 occurrences, more than the %3 that are expanded; the "
                                                "reading stops here with error 242."),
                                 item.name, occurrences, MaxOccurrences));
        throw std::length_error("occurrence count out of range");
    }
    if (qint64(items->size()) + occurrences > qint64(MaxExpandedItems)) {
        notes->noteLimit(line, item.name,
                  kxtext::format(QStringLiteral("Item %1 with %2 occurrences would make more than %3 items; the "
                                                "reading stops here with error 242."),
                                 item.name, occurrences, MaxExpandedItems));
        throw std::length_error("too many items after expansion");
    }
    if (copiesMade + occurrences > copyBudget) {
        notes->noteLimit(line, item.name,
                  kxtext::format(QStringLiteral("Item %1 with %2 occurrences would pass the %3 copies of repeated "
                                                "items that this dictionary may expand to (%4 and one for every %5 "
                                                "characters of the file); the reading stops here with error 242."),
                                 item.name, occurrences, copyBudget, MinCopyBudget, FileBytesPerCopy));
        throw std::length_error("too many copies of repeated items");
    }
    const qint64 lastStart = qint64(item.start) + qint64(occurrences - 1) * qint64(item.len);
    if (lastStart > std::numeric_limits<int>::max() || lastStart < std::numeric_limits<int>::min())
        throw std::overflow_error("occurrence start out of range");
}

void TCSPro::storeOccurrenceCopies(const QStringList &section, const TCSProItem &item)
{
    checkOccurrences(section, item);
    notes->noteOccurrenceNames(section, item);
    const int occurrences = item.occurrences;
    const int copiesIndex = items->size();
    if (copiesIndex == 0) {
        notes->rememberFirstItem(occurrences, item.name);
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
    notes->noteLinkLine(linkLine, valueSet);

    if (!valueSet->validateItems(0) && !decideDecimalCodes(*section, valueSet)) {
        discardValueSet(valueSet);
        return;
    }
    if (!currentItem) {
        notes->noteDroppedValueSet(valueSet, QStringLiteral("no item comes before it"), notes->sectionHeader() + 1);
        discardValueSet(valueSet);
        return;
    }
    if (!valueSet->validateItems(1)) {
        notes->noteNotIntegerCode(*section, valueSet);
        discardValueSet(valueSet);
        return;
    }
    valueSet->sortItems();
    if (attachValueSet(valueSet))
        notes->noteAttachedValueSet(*section, valueSet);
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
        if (isCSProValueLine(line)) {
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
        notes->noteSpecialValue(line, pending, valueSet);
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
        notes->noteSpecialValue(line, pending, valueSet);
    }
}

bool TCSPro::decideDecimalCodes(const QStringList &section, TCSProValueSet *valueSet)
{
    showMessageBoxDecimal(tr("<b>A decimal number was found</b>"),
                          tr("Would you like to convert it to an integer number?"), tr("Caution"),
                          QMessageBox::Warning);
    switch (decimalAnswer) {
    case QMessageBox::Yes:
        notes->noteDecimalCodes(section, valueSet, true);
        valueSet->itemsAsNumberZero();
        return true;
    case QMessageBox::YesToAll:
        decimalMode = 1;
        notes->noteDecimalCodes(section, valueSet, true);
        valueSet->itemsAsNumberZero();
        return true;
    case QMessageBox::NoToAll:
        decimalMode = 2;
        notes->noteDecimalCodes(section, valueSet, false);
        return false;
    default:
        notes->noteDecimalCodes(section, valueSet, false);
        return false;
    }
}

bool TCSPro::attachValueSet(TCSProValueSet *valueSet)
{
    bool attached = false;
    if (currentItem->index == 0) {
        currentItem->addValueSet(valueSet);
        attached = currentItem->valueSets->contains(valueSet);
        if (attached)
            notes->noteFirstItemCopies(valueSet);
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
        return true;
    const TCSProValueSet *kept = currentItem->getHasValueSet() ? currentItem->valueSets->first() : nullptr;
    notes->noteDroppedValueSet(valueSet,
                        QStringLiteral("its item already has the value set %1, and only the first is kept")
                            .arg(kept ? kept->name : QString()),
                        notes->sectionHeader() + 1);
    discardValueSet(valueSet);
    return false;
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

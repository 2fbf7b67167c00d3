#ifndef CSPROTEXTNOTES_P_H
#define CSPROTEXTNOTES_P_H

// The reading notes of the CSPro text reader: the steps that find, for a
// place where the reading drops or bends what the dictionary says, the file
// line and the words of its note. TCSPro hands this work to them; they only
// write notes and never change what is read. Not part of the public API.

#include "KxText_p.h"

#include <QString>
#include <QStringList>

class QFile;
class TCSPro;
class TCSProItem;
class TCSProValueSet;
class TValueSetItem;

inline bool isCSProValueLine(const QString &line)
{
    return kxtext::startsWithNoCase(line, QLatin1String("VALUE="));
}

class TCSProTextNotes
{
public:
    explicit TCSProTextNotes(TCSPro &reader) : q(reader) {}

    //! The file's lines for the load that starts; notes are written only while a load runs.
    void startLoad(const QStringList *fileLines)
    {
        lines = fileLines;
        inIdItems = false;
        levels = 0;
        parentOccurrences = 1;
    }
    void endLoad() { lines = nullptr; }
    //! A section starts at line index \a header of the file's lines.
    void startSection(int header)
    {
        sectionHeaderIndex = header;
        cursor = header + 1;
    }
    //! The index of the current section's header line.
    int sectionHeader() const { return sectionHeaderIndex; }
    //! The dictionary's first item, with the copies its occurrences made.
    void rememberFirstItem(int copies, const QString &name)
    {
        firstItemCopies = copies;
        firstItemName = name;
    }

    // Where things are: 1-based file lines of a section's trimmed lines.
    int fileLineOf(const QString &sectionLine);
    QString sectionSubject(const QStringList &section) const;
    QString readCommandLine(const QStringList &section, const QString &command) const;
    int fileLineOfCode(const QStringList &section, const QString &code);

    // One step per kind of note.
    void noteCommandFromOtherLine(const QStringList &section, const QString &command, const QString &usedLine,
                                  const QString &usedValue, const int *intDefault);
    void noteSpecialValue(const QString &line, const TValueSetItem *entry, const TCSProValueSet *valueSet);
    void noteDroppedValueSet(const TCSProValueSet *valueSet, const QString &why, int line);
    void noteDecimalCodes(const QStringList &section, const TCSProValueSet *valueSet, bool converted);
    void noteNotIntegerCode(const QStringList &section, const TCSProValueSet *valueSet);
    void noteLinkLine(const QString &linkLine, const TCSProValueSet *valueSet);
    void noteFirstItemCopies(const TCSProValueSet *valueSet);
    void noteUndecodableLine(int line, const QString &text);
    //! Text mode drops a carriage return that does not end a line: one note per such line of \a file.
    void noteCarriageReturns(QFile &file, const QStringList &linesRead);
    void noteLimit(int line, const QString &subject, const QString &text);

    // Where the file's meaning and the reading part without an error.
    //! A header the section loop skips: [Level] and [IdItems] tell whose identification items follow.
    void sawSkippedHeader(const QString &header);
    //! A [Record] starts: the identification items of its level are over.
    void startRecord() { inIdItems = false; }
    void noteDictionary(const QStringList &section);
    void noteItem(const QStringList &section, const TCSProItem &item);
    //! The copies of a repeated item are made: their names.
    void noteOccurrenceNames(const QStringList &section, const TCSProItem &item);
    void noteAttachedValueSet(const QStringList &section, const TCSProValueSet *valueSet);

private:
    TCSPro &q;
    const QStringList *lines = nullptr;
    int sectionHeaderIndex = -1;
    // Where fileLineOf() looks first: notes mostly come in file order.
    int cursor = 0;
    // The copies of the dictionary's first item when it repeats all carry index 0.
    int firstItemCopies = 0;
    QString firstItemName;
    // Identification items after a later level's [IdItems] land in the record read before them.
    bool inIdItems = false;
    int levels = 0;
    // The last item that is not a subitem: the parent of the subitems after it.
    QString parentName;
    int parentOccurrences = 1;
    int parentLength = 0;

    QString ownCommandLine(const QStringList &section, const QString &command) const;
    void noteLanguageLabel(const QStringList &section, const TCSProItem &item);
    void noteNumbers(const QStringList &section, const TCSProItem &item);
    void noteSubitem(const TCSProItem &item);
    void noteIdItem(const TCSProItem &item);
};

#endif // CSPROTEXTNOTES_P_H

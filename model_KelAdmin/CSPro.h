#ifndef CSPRO_H
#define CSPRO_H

#include "model_kelAdmin_export.h"

#include "CSProDictionary.h"
#include "ReadNote.h"

class TCSProTextNotes;

#include <QHash>
#include <QList>
#include <QMap>
#include <QMessageBox>
#include <QObject>
#include <QScopedPointer>
#include <QString>
#include <QStringList>

/*! \brief Reader of a CSPro data dictionary in its text form, and root of the
 * dictionary model it builds.
 *
 * Owns the records, items and value sets it creates and never deletes them:
 * importers keep pointers to the items. Occurrences are expanded into one
 * item per occurrence. A value set with decimal codes triggers a modal
 * prompt unless a 'to all' answer is remembered (decimalMode 1 or 2 with
 * decimalAnswer); headless programs preset that choice before loading.
 */
class MODEL_KELADMIN_EXPORT TCSPro : public QObject
{
    Q_OBJECT
public:
    TCSPro();
    ~TCSPro() override;

    /*! Deletes the records, items, value sets and value-set entries this
     * reader built (a value set shared by occurrence copies once) and empties
     * its lists. Neither the destructor nor any reading does this, as the
     * importers' fields point at the items: call it only when nothing points
     * into the model any more. The reader is then as new and may read again. */
    void releaseModel();

    //! Reads the text dictionary at \a path; an unreadable file leaves the model empty.
    virtual void loadFromFile(QString path);
    //! The section loop; any failure becomes error 242 with the line index as one character.
    void loadFromStr(QStringList *lines);
    //! Kept in the interface; reads nothing.
    void loadFromCSDB(QString path);

    //! The number of items, occurrence copies counted.
    int getItemsCount();
    //! No bounds check.
    TCSProItem *getItem(int i);
    //! The number of records (the common record not counted); also kept in recordsCount.
    int getRecordsCount();
    //! No bounds check.
    TCSProRecord *getRecord(int i);
    //! The item list itself, not a copy.
    QList<TCSProItem *> *getItemsList();
    //! Exact look-up by record type value; null when absent.
    TCSProRecord *findRecordByValue(QString value);

    //! 1 [Dictionary], 2 [Record], 3 [Item], 4 [ValueSet] (any case), else 0.
    int getItemType(QString header);
    //! The trimmed, non-empty lines after the header at \a index; the caller owns the list.
    QStringList *getSection(QStringList *lines, int &index);
    /*! Value of the first line that contains \a command anywhere; \a def when
     * there is none or when that line does not split into exactly two at "=". */
    QString processLine(QStringList section, QString command, QString def);
    //! processLine() read as a base-10 int; \a def when there is no value or it is no number.
    int processLineToInt(QStringList section, QString command, int def);

    //! Reads the [Dictionary] section after line \a index; \a index is left on its last line.
    void processDictionary(QStringList *lines, int &index);
    //! Reads a [Record] section after line \a index, which becomes the current record.
    void processRecord(QStringList *lines, int &index);
    //! Reads an [Item] section after line \a index, expanding occurrences into copies.
    void processItem(QStringList *lines, int &index);
    //! Reads a [ValueSet] section after line \a index and attaches it to the current item when its codes pass the checks.
    void processValueSet(QStringList *lines, int &index);
    //! Appends one entry per blank-separated code of \a item's code (see the .cpp).
    void processOtherRanges(TCSProValueSet *valueSet, TValueSetItem *item);

    //! Always shows the dialog; returns the button pressed.
    int showMessageBox(QString text, QString informative, QString title, QMessageBox::Icon icon);
    //! Shows the dialog only while decimalMode is 0 or 3; the answer goes to decimalAnswer.
    void showMessageBoxDecimal(QString text, QString informative, QString title, QMessageBox::Icon icon);
    //! Shows the dialog only while undefinedMode is 0 or 3; the answer goes to undefinedAnswer.
    void showMessageBoxUndefined(QString text, QString informative, QString title, QMessageBox::Icon icon);

    //! The prompt dialog, created on first use (needs a QApplication then).
    QMessageBox *getMessageBox();

    //! The 1-based start column of the record-type code in a data line.
    //!@{
    int getRecordTypeStart() const { return recordTypeStart; }
    void setRecordTypeStart(int v) { recordTypeStart = v; }
    //!@}
    //! The width of the record-type code; 0 when the dictionary has none.
    //!@{
    int getRecordTypeLen() const { return recordTypeLen; }
    void setRecordTypeLen(int v) { recordTypeLen = v; }
    //!@}
    //! Sets the cached record count.
    void setRecordsCount(int v) { recordsCount = v; }
    //! The remembered answer to the decimal prompt: 0 ask, 1 convert all, 2 keep none, 3 ask.
    //!@{
    int getDecimalMode() const { return decimalMode; }
    void setDecimalMode(int v) { decimalMode = v; }
    //!@}
    //! The remembered answer to the 'undefined' prompt, as for decimalMode.
    //!@{
    int getUndefinedMode() const { return undefinedMode; }
    void setUndefinedMode(int v) { undefinedMode = v; }
    //!@}
    //! The last button pressed in the decimal prompt (a QMessageBox::StandardButton value).
    //!@{
    int getDecimalAnswer() const { return decimalAnswer; }
    void setDecimalAnswer(int v) { decimalAnswer = v; }
    //!@}
    //! The last button pressed in the 'undefined' prompt.
    //!@{
    int getUndefinedAnswer() const { return undefinedAnswer; }
    void setUndefinedAnswer(int v) { undefinedAnswer = v; }
    //!@}
    //! The dictionary's version text.
    //!@{
    QString getVersion() const { return version; }
    void setVersion(const QString &v) { version = v; }
    //!@}
    //! The dictionary's label.
    //!@{
    QString getLabel() const { return label; }
    void setLabel(const QString &v) { label = v; }
    //!@}
    //! The dictionary's name.
    //!@{
    QString getName() const { return name; }
    void setName(const QString &v) { name = v; }
    //!@}
    //! The dictionary's "Positions" setting, as written.
    //!@{
    QString getPositions() const { return positions; }
    void setPositions(const QString &v) { positions = v; }
    //!@}
    //! The dictionary's "ZeroFill" setting, as written.
    //!@{
    QString getZeroFill() const { return zeroFill; }
    void setZeroFill(const QString &v) { zeroFill = v; }
    //!@}
    //! The dictionary's "DecimalChar" setting, as written.
    //!@{
    QString getDecimalChar() const { return decimalChar; }
    void setDecimalChar(const QString &v) { decimalChar = v; }
    //!@}
    //! The record of the identification items: name "Common", type value "_COMMON_".
    //!@{
    TCSProRecord *getCommonRecord() const { return commonRecord; }
    void setCommonRecord(TCSProRecord *v) { commonRecord = v; }
    //!@}
    //! The records in file order; the common record is not among them.
    //!@{
    QList<TCSProRecord *> *getRecords() const { return records; }
    void setRecords(QList<TCSProRecord *> *v) { records = v; }
    //!@}
    //! Record-type value to record; a later record with the same value takes the place of an earlier one.
    //!@{
    QMap<QString, TCSProRecord *> *getRecordsByValue() const { return recordsByValue; }
    void setRecordsByValue(QMap<QString, TCSProRecord *> *v) { recordsByValue = v; }
    //!@}
    //! Every item in file order, occurrences expanded into copies.
    //!@{
    QList<TCSProItem *> *getItems() const { return items; }
    void setItems(QList<TCSProItem *> *v) { items = v; }
    //!@}
    //! The last item stored; value sets attach to it.
    //!@{
    TCSProItem *getCurrentItem() const { return currentItem; }
    void setCurrentItem(TCSProItem *v) { currentItem = v; }
    //!@}
    //! The record that new items belong to.
    //!@{
    TCSProRecord *getCurrentRecord() const { return currentRecord; }
    void setCurrentRecord(TCSProRecord *v) { currentRecord = v; }
    //!@}
    //! False while the last item read is alpha; a value set takes its kind from it.
    //!@{
    bool getLastItemNumeric() const { return lastItemNumeric; }
    void setLastItemNumeric(bool v) { lastItemNumeric = v; }
    //!@}

    //! Largest occurrence count expanded (CSPro itself allows 9999).
    static constexpr int MaxOccurrences = 9999;
    /*! Largest number of items after expansion: occurrences turn a few bytes
     * of a hostile file into thousands of items each. */
    static constexpr int MaxExpandedItems = 250000;
    /*! Copies of repeated items one dictionary may expand to: MinCopyBudget,
     * and one more for every FileBytesPerCopy bytes (characters of the text
     * form) of the file. Every copy becomes a field of about 2.7 KB, so a few
     * bytes of a hostile file must not ask for hundreds of megabytes; real
     * dictionaries expand to a few thousand copies. */
    static constexpr int MinCopyBudget = 10000;
    //! See MinCopyBudget.
    static constexpr int FileBytesPerCopy = 100;
    /*! Most reading notes kept from one load: a hostile file could turn every
     * line into a note. Past it, one "limit-reached" note says so. */
    static constexpr int MaxReadNotes = 10000;

    int recordTypeStart = 0;  //!< see getRecordTypeStart()
    int recordTypeLen = 0;  //!< see getRecordTypeLen()
    //! Spare lists, not filled by the readers.
    QList<TCSProItem *> itemsList;
    QList<TCSProRecord *> recordsList;  //!< A spare list, not filled by the readers.
    //! Created on first use so that reading needs no QApplication.
    QMessageBox *messageBox = nullptr;
    int recordsCount = 0;  //!< The number of records, as last counted by getRecordsCount().
    //! Remembered 'to all' choice: 0 ask, 1 convert all, 2 keep none, 3 ask.
    int decimalMode = 0;
    int undefinedMode = 0;  //!< see getUndefinedMode()
    //! Last button pressed (a QMessageBox::StandardButton value).
    int decimalAnswer = QMessageBox::NoButton;
    int undefinedAnswer = QMessageBox::NoButton;  //!< see getUndefinedAnswer()
    QString version;  //!< see getVersion()
    QString label;  //!< see getLabel()
    QString name;  //!< see getName()
    QString positions;  //!< see getPositions()
    QString zeroFill;  //!< see getZeroFill()
    QString decimalChar;  //!< see getDecimalChar()
    //! Record of the identification items: name "Common", type value "_COMMON_".
    TCSProRecord *commonRecord;
    QList<TCSProRecord *> *records;  //!< see getRecords()
    QMap<QString, TCSProRecord *> *recordsByValue;  //!< see getRecordsByValue()
    QList<TCSProItem *> *items;  //!< see getItems()
    TCSProItem *currentItem = nullptr;  //!< see getCurrentItem()
    TCSProRecord *currentRecord;  //!< see getCurrentRecord()
    bool lastItemNumeric = true;  //!< see getLastItemNumeric()

    /*! The reading notes of the last loadFromFile(), in the order they arose:
     * every place where the dictionary says more than the model keeps. */
    TReadNotes getReadNotes() const { return readNotes; }

protected:
    //! Notes one place where the reading dropped or bent what the file says.
    void addReadNote(int line, const QString &subject, const char *kind, const QString &text);
    /*! Remembers the first value set with values of its own for each link
     * id, and notes a later set with the same link and no values. */
    void noteLinkedValueSet(int line, const QString &link, const TCSProValueSet *valueSet);
    //! The notes gathered since loadFromFile() started.
    TReadNotes readNotes;
    //! Link id to the name of the first value set with that link and values of its own.
    QHash<QString, QString> linkedValueSets;
    //! The copies of repeated items this load may make (see MinCopyBudget).
    qint64 copyBudget = MinCopyBudget;
    //! The copies of repeated items this load has made.
    qint64 copiesMade = 0;
    //! Sets copyBudget for a file of \a fileBytes bytes, no copy made yet.
    void startCopyBudget(qint64 fileBytes)
    {
        copyBudget = MinCopyBudget + fileBytes / FileBytesPerCopy;
        copiesMade = 0;
    }

private:
    friend class TCSProTextNotes;

    // The steps of the [Item] and [ValueSet] sections.
    void readItemCommands(const QStringList &section, TCSProItem *item);
    void storeOccurrenceCopies(const QStringList &section, const TCSProItem &item);
    void checkOccurrences(const QStringList &section, const TCSProItem &item);
    QString readValueLines(const QStringList &section, TCSProValueSet *valueSet);
    TValueSetItem *readValueLine(const QString &line, TCSProValueSet *valueSet);
    void readSpecialValue(const QString &line, TValueSetItem *pending, const TCSProValueSet *valueSet);
    bool decideDecimalCodes(const QStringList &section, TCSProValueSet *valueSet);
    // True when the value set was attached; a dropped one is deleted.
    bool attachValueSet(TCSProValueSet *valueSet);
    QString readCommand(const QStringList &section, const QString &command, const QString &def,
                        const int *intDefault);

    // The reading notes of the text form (CSProTextNotes_p.h).
    QScopedPointer<TCSProTextNotes> notes;

    int execMessageBox(const QString &text, const QString &informative, const QString &title,
                       QMessageBox::Icon icon);
};

#endif // CSPRO_H

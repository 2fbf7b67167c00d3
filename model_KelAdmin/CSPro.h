#ifndef CSPRO_H
#define CSPRO_H

#include "model_kelAdmin_export.h"

#include "CSProDictionary.h"

#include <QList>
#include <QMap>
#include <QMessageBox>
#include <QObject>
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

    //! Reads the text dictionary at \a path; an unreadable file leaves the model empty.
    virtual void loadFromFile(QString path);
    //! The section loop; any failure becomes error 242 with the line index as one character.
    void loadFromStr(QStringList *lines);
    //! Kept in the interface; reads nothing.
    void loadFromCSDB(QString path);

    int getItemsCount();
    //! No bounds check.
    TCSProItem *getItem(int i);
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
    int processLineToInt(QStringList section, QString command, int def);

    void processDictionary(QStringList *lines, int &index);
    void processRecord(QStringList *lines, int &index);
    void processItem(QStringList *lines, int &index);
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

    int getRecordTypeStart() const { return recordTypeStart; }
    void setRecordTypeStart(int v) { recordTypeStart = v; }
    int getRecordTypeLen() const { return recordTypeLen; }
    void setRecordTypeLen(int v) { recordTypeLen = v; }
    void setRecordsCount(int v) { recordsCount = v; }
    int getDecimalMode() const { return decimalMode; }
    void setDecimalMode(int v) { decimalMode = v; }
    int getUndefinedMode() const { return undefinedMode; }
    void setUndefinedMode(int v) { undefinedMode = v; }
    int getDecimalAnswer() const { return decimalAnswer; }
    void setDecimalAnswer(int v) { decimalAnswer = v; }
    int getUndefinedAnswer() const { return undefinedAnswer; }
    void setUndefinedAnswer(int v) { undefinedAnswer = v; }
    QString getVersion() const { return version; }
    void setVersion(const QString &v) { version = v; }
    QString getLabel() const { return label; }
    void setLabel(const QString &v) { label = v; }
    QString getName() const { return name; }
    void setName(const QString &v) { name = v; }
    QString getPositions() const { return positions; }
    void setPositions(const QString &v) { positions = v; }
    QString getZeroFill() const { return zeroFill; }
    void setZeroFill(const QString &v) { zeroFill = v; }
    QString getDecimalChar() const { return decimalChar; }
    void setDecimalChar(const QString &v) { decimalChar = v; }
    TCSProRecord *getCommonRecord() const { return commonRecord; }
    void setCommonRecord(TCSProRecord *v) { commonRecord = v; }
    QList<TCSProRecord *> *getRecords() const { return records; }
    void setRecords(QList<TCSProRecord *> *v) { records = v; }
    QMap<QString, TCSProRecord *> *getRecordsByValue() const { return recordsByValue; }
    void setRecordsByValue(QMap<QString, TCSProRecord *> *v) { recordsByValue = v; }
    QList<TCSProItem *> *getItems() const { return items; }
    void setItems(QList<TCSProItem *> *v) { items = v; }
    TCSProItem *getCurrentItem() const { return currentItem; }
    void setCurrentItem(TCSProItem *v) { currentItem = v; }
    TCSProRecord *getCurrentRecord() const { return currentRecord; }
    void setCurrentRecord(TCSProRecord *v) { currentRecord = v; }
    bool getLastItemNumeric() const { return lastItemNumeric; }
    void setLastItemNumeric(bool v) { lastItemNumeric = v; }

    //! Largest occurrence count expanded (CSPro itself allows 9999).
    static constexpr int MaxOccurrences = 9999;
    /*! Largest number of items after expansion: occurrences turn a few bytes
     * of a hostile file into thousands of items each. */
    static constexpr int MaxExpandedItems = 250000;

    int recordTypeStart = 0;
    int recordTypeLen = 0;
    //! Spare lists, not filled by the readers.
    QList<TCSProItem *> itemsList;
    QList<TCSProRecord *> recordsList;
    //! Created on first use so that reading needs no QApplication.
    QMessageBox *messageBox = nullptr;
    int recordsCount = 0;
    //! Remembered 'to all' choice: 0 ask, 1 convert all, 2 keep none, 3 ask.
    int decimalMode = 0;
    int undefinedMode = 0;
    //! Last button pressed (a QMessageBox::StandardButton value).
    int decimalAnswer = QMessageBox::NoButton;
    int undefinedAnswer = QMessageBox::NoButton;
    QString version;
    QString label;
    QString name;
    QString positions;
    QString zeroFill;
    QString decimalChar;
    //! Record of the identification items: name "Common", type value "_COMMON_".
    TCSProRecord *commonRecord;
    QList<TCSProRecord *> *records;
    QMap<QString, TCSProRecord *> *recordsByValue;
    QList<TCSProItem *> *items;
    TCSProItem *currentItem = nullptr;
    TCSProRecord *currentRecord;
    bool lastItemNumeric = true;

private:
    int execMessageBox(const QString &text, const QString &informative, const QString &title,
                       QMessageBox::Icon icon);
};

#endif // CSPRO_H

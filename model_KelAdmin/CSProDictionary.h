#ifndef CSPRODICTIONARY_H
#define CSPRODICTIONARY_H

#include "model_kelAdmin_export.h"

#include <QList>
#include <QObject>
#include <QString>

class TCSProItem;
class TCSProValueSet;
class TValueSetItem;

/*! \brief A record type of a CSPro data file.
 *
 * A record does not hold its items: addItem() does nothing, getCount() is
 * always 1 and getItem() always null. Each item points at its record instead.
 */
class MODEL_KELADMIN_EXPORT TCSProRecord
{
public:
    TCSProRecord();

    //! Does nothing: each item points at its record instead.
    void addItem(TCSProItem *item);
    //! Always 1.
    int getCount();
    //! Always null.
    TCSProItem *getItem(int i);

    //! The record's label.
    //!@{
    QString getLabel() const { return label; }
    void setLabel(const QString &v) { label = v; }
    //!@}
    //! The record's name.
    //!@{
    QString getName() const { return name; }
    void setName(const QString &v) { name = v; }
    //!@}
    //! The code that marks a data line as this record, without the quotes the text form writes around it.
    //!@{
    QString getRecordTypeValue() const { return recordTypeValue; }
    void setRecordTypeValue(const QString &v) { recordTypeValue = v; }
    //!@}
    //! Whether a case must hold the record, as text ("Yes" as written in the text form; "YES" or "NO" from JSON).
    //!@{
    QString getRequired() const { return required; }
    void setRequired(const QString &v) { required = v; }
    //!@}
    //! The most records of this type in one case.
    //!@{
    int getMaxRecords() const { return maxRecords; }
    void setMaxRecords(int v) { maxRecords = v; }
    //!@}
    //! The record's length in columns; 0 when the dictionary does not give it.
    //!@{
    int getRecordLen() const { return recordLen; }
    void setRecordLen(int v) { recordLen = v; }
    //!@}

    QString label;  //!< see getLabel()
    QString name;  //!< see getName()
    QString recordTypeValue;  //!< see getRecordTypeValue()
    QString required;  //!< see getRequired()
    int maxRecords = 100;  //!< see getMaxRecords()
    int recordLen = 0;  //!< see getRecordLen()
};

/*! \brief One variable of a CSPro dictionary: position, length and type.
 *
 * Holds at most one value set (the first one added). Value sets are not
 * owned: the occurrence copies of an item share one value-set object.
 */
class MODEL_KELADMIN_EXPORT TCSProItem : public QObject
{
public:
    TCSProItem();
    ~TCSProItem() override;

    //! Number of value sets; also stored in count.
    int getCount();
    //! False when there is no list, else whether it holds a value set.
    bool getHasValueSet();
    //! The i-th value set; no bounds check.
    TCSProValueSet *getValueSet(int i);
    //! Keeps only the first value set: a later one is silently ignored.
    void addValueSet(TCSProValueSet *valueSet);

    //! The item's label.
    //!@{
    QString getLabel() const { return label; }
    void setLabel(const QString &v) { label = v; }
    //!@}
    //! The code of the special value MISSING; empty when none was read.
    //!@{
    QString getMissingCode() const { return missingCode; }
    void setMissingCode(const QString &v) { missingCode = v; }
    //!@}
    //! The item's name; occurrence copies carry the occurrence after "_".
    //!@{
    QString getName() const { return name; }
    void setName(const QString &v) { name = v; }
    //!@}
    //! The code of the special value NOTAPPL; empty when none was read.
    //!@{
    QString getNotApplCode() const { return notApplCode; }
    void setNotApplCode(const QString &v) { notApplCode = v; }
    //!@}
    //! Sets the value-set count kept in count.
    void setCount(int v) { count = v; }
    //! 1 for an alpha (text) item, 0 for a numeric one.
    //!@{
    int getIsAlpha() const { return isAlpha; }
    void setIsAlpha(int v) { isAlpha = v; }
    //!@}
    //! The number of decimals of a numeric item.
    //!@{
    int getDecimal() const { return decimal; }
    void setDecimal(int v) { decimal = v; }
    //!@}
    //! 1 for a subitem: it lies inside its parent's columns.
    //!@{
    int getIsSubItem() const { return isSubItem; }
    void setIsSubItem(int v) { isSubItem = v; }
    //!@}
    //! The width in columns of one occurrence.
    //!@{
    int getLen() const { return len; }
    void setLen(int v) { len = v; }
    //!@}
    //! The occurrence count as read; every stored item has 1, repeated items being expanded into copies.
    //!@{
    int getOccurrences() const { return occurrences; }
    void setOccurrences(int v) { occurrences = v; }
    //!@}
    //! The 1-based start column, as the dictionary writes it.
    //!@{
    int getStart() const { return start; }
    void setStart(int v) { start = v; }
    //!@}
    //! Whether the data holds the decimal character of this item.
    //!@{
    bool getDecimalChar() const { return decimalChar; }
    void setDecimalChar(bool v) { decimalChar = v; }
    //!@}
    //! Whether numbers are written with leading zeros.
    //!@{
    bool getZeroFill() const { return zeroFill; }
    void setZeroFill(bool v) { zeroFill = v; }
    //!@}
    //! For occurrence copies: the item-list length before the copies were added; 0 marks an ordinary item.
    //!@{
    int getIndex() const { return index; }
    void setIndex(int v) { index = v; }
    //!@}
    //! The record the item belongs to; not owned.
    //!@{
    TCSProRecord *getRecord() const { return record; }
    void setRecord(TCSProRecord *v) { record = v; }
    //!@}
    //! The value sets, at most one; not owned.
    //!@{
    QList<TCSProValueSet *> *getValueSets() const { return valueSets; }
    void setValueSets(QList<TCSProValueSet *> *v) { valueSets = v; }
    //!@}

    QString label;  //!< see getLabel()
    QString missingCode;  //!< see getMissingCode()
    QString name;  //!< see getName()
    QString notApplCode;  //!< see getNotApplCode()
    int count = 0;  //!< The number of value sets, as last counted by getCount().
    int isAlpha = 0;  //!< see getIsAlpha()
    int decimal = 0;  //!< see getDecimal()
    int isSubItem = 0;  //!< see getIsSubItem()
    int len = 0;  //!< see getLen()
    int occurrences = 1;  //!< see getOccurrences()
    int start = 1;  //!< see getStart()
    bool decimalChar = false;  //!< see getDecimalChar()
    bool zeroFill = false;  //!< see getZeroFill()
    //! For occurrence copies: the item-list length before the copies were added.
    int index = 0;
    TCSProRecord *record = nullptr;  //!< see getRecord()
    QList<TCSProValueSet *> *valueSets;  //!< see getValueSets()
};

/*! \brief The coded answers of an item, with the checks and repairs the
 * readers apply to codes before attaching the set to its item.
 *
 * The entries are not owned: the destructor drops the list only.
 */
class MODEL_KELADMIN_EXPORT TCSProValueSet : public QObject
{
    Q_OBJECT
public:
    TCSProValueSet();
    ~TCSProValueSet() override;

    //! Appends \a item to the entries; the set does not own it.
    void addItem(TValueSetItem *item);
    //! The number of entries.
    int getCount();
    //! The i-th entry; no bounds check.
    TValueSetItem *getValueSetItem(int i);
    //! Inserts \a item before position \a index (does not replace); error 211 when that fails.
    void setValueSetItem(int index, TValueSetItem *item);

    //! Numeric sets by CompareCodesNumeric, others by CompareCodes. Error 101 on failure.
    void sortItems();
    /*! Mode 1: every code an integer; mode 0: no code decimal; other modes
     * accept anything. Always true for a non-numeric or empty set. */
    bool validateItems(int mode);
    //! Codes that are not integers become "0" (numeric sets only).
    void itemsAsNumberZero();
    //! Decimal codes are rounded to a whole number (numeric sets only).
    void itemsAsInteger();

    //! The value set's label.
    //!@{
    QString getLabel() const { return label; }
    void setLabel(const QString &v) { label = v; }
    //!@}
    //! The value set's name.
    //!@{
    QString getName() const { return name; }
    void setName(const QString &v) { name = v; }
    //!@}
    //! A free note; the readers leave it empty.
    //!@{
    QString getNote() const { return note; }
    void setNote(const QString &v) { note = v; }
    //!@}
    //! 1 when the set belongs to a numeric item: its codes are checked and sorted as numbers.
    //!@{
    int getIsNumeric() const { return isNumeric; }
    void setIsNumeric(int v) { isNumeric = v; }
    //!@}
    //! The entries in order; not owned.
    //!@{
    QList<TValueSetItem *> *getItems() const { return items; }
    void setItems(QList<TValueSetItem *> *v) { items = v; }
    //!@}

    QString label;  //!< see getLabel()
    QString name;  //!< see getName()
    QString note;  //!< see getNote()
    int isNumeric = 1;  //!< see getIsNumeric()
    QList<TValueSetItem *> *items;  //!< see getItems()
};

/*! \brief One code of a value set with its label (kept in name). */
class MODEL_KELADMIN_EXPORT TValueSetItem : public QObject
{
public:
    TValueSetItem();
    ~TValueSetItem() override;

    //! The label of the code.
    //!@{
    QString getName() const { return name; }
    void setName(const QString &v) { name = v; }
    //!@}
    //! The code as written (a range bound, a number or an alpha code).
    //!@{
    QString getCode() const { return code; }
    void setCode(const QString &v) { code = v; }
    //!@}
    //! The kind of entry: 0 ordinary, 1 MISSING, 2 NOTAPPL.
    //!@{
    int getType() const { return type; }
    void setType(int v) { type = v; }
    //!@}
    //! Whether the entry is a special value; a special entry is not added to its set by the text reader.
    //!@{
    bool getSpecial() const { return special; }
    void setSpecial(bool v) { special = v; }
    //!@}

    QString name;  //!< see getName()
    //! Starts as the control character U+0003, so an unset code is never numeric.
    QString code;
    //! 0 ordinary, 1 MISSING, 2 NOTAPPL.
    int type = 0;
    bool special = false;  //!< see getSpecial()
};

//! True when \a s converts to a base-10 int (blanks around and a sign allowed).
MODEL_KELADMIN_EXPORT bool IsNumeric2(QString s);
//! True when \a s is digits, a point, digits ("1.5", "1.", ".5", ".").
MODEL_KELADMIN_EXPORT bool IsDecimal(const QString &s);
/*! Text order of two TValueSetItem codes; throws std::invalid_argument on a
 * null entry. */
MODEL_KELADMIN_EXPORT bool CompareCodes(void *a, void *b);
/*! Numeric order of two TValueSetItem codes. True for a null entry and
 * whenever one code is not an integer, so it is only an ordering on sets
 * whose codes are all integers. */
MODEL_KELADMIN_EXPORT bool CompareCodesNumeric(void *a, void *b);

#endif // CSPRODICTIONARY_H

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

    void addItem(TCSProItem *item);
    int getCount();
    TCSProItem *getItem(int i);

    QString getLabel() const { return label; }
    void setLabel(const QString &v) { label = v; }
    QString getName() const { return name; }
    void setName(const QString &v) { name = v; }
    QString getRecordTypeValue() const { return recordTypeValue; }
    void setRecordTypeValue(const QString &v) { recordTypeValue = v; }
    QString getRequired() const { return required; }
    void setRequired(const QString &v) { required = v; }
    int getMaxRecords() const { return maxRecords; }
    void setMaxRecords(int v) { maxRecords = v; }
    int getRecordLen() const { return recordLen; }
    void setRecordLen(int v) { recordLen = v; }

    QString label;
    QString name;
    QString recordTypeValue;
    QString required;
    int maxRecords = 100;
    int recordLen = 0;
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

    QString getLabel() const { return label; }
    void setLabel(const QString &v) { label = v; }
    QString getMissingCode() const { return missingCode; }
    void setMissingCode(const QString &v) { missingCode = v; }
    QString getName() const { return name; }
    void setName(const QString &v) { name = v; }
    QString getNotApplCode() const { return notApplCode; }
    void setNotApplCode(const QString &v) { notApplCode = v; }
    void setCount(int v) { count = v; }
    int getIsAlpha() const { return isAlpha; }
    void setIsAlpha(int v) { isAlpha = v; }
    int getDecimal() const { return decimal; }
    void setDecimal(int v) { decimal = v; }
    int getIsSubItem() const { return isSubItem; }
    void setIsSubItem(int v) { isSubItem = v; }
    int getLen() const { return len; }
    void setLen(int v) { len = v; }
    int getOccurrences() const { return occurrences; }
    void setOccurrences(int v) { occurrences = v; }
    int getStart() const { return start; }
    void setStart(int v) { start = v; }
    bool getDecimalChar() const { return decimalChar; }
    void setDecimalChar(bool v) { decimalChar = v; }
    bool getZeroFill() const { return zeroFill; }
    void setZeroFill(bool v) { zeroFill = v; }
    int getIndex() const { return index; }
    void setIndex(int v) { index = v; }
    TCSProRecord *getRecord() const { return record; }
    void setRecord(TCSProRecord *v) { record = v; }
    QList<TCSProValueSet *> *getValueSets() const { return valueSets; }
    void setValueSets(QList<TCSProValueSet *> *v) { valueSets = v; }

    QString label;
    QString missingCode;
    QString name;
    QString notApplCode;
    int count = 0;
    int isAlpha = 0;
    int decimal = 0;
    int isSubItem = 0;
    int len = 0;
    int occurrences = 1;
    int start = 1;
    bool decimalChar = false;
    bool zeroFill = false;
    //! For occurrence copies: the item-list length before the copies were added.
    int index = 0;
    TCSProRecord *record = nullptr;
    QList<TCSProValueSet *> *valueSets;
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

    void addItem(TValueSetItem *item);
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

    QString getLabel() const { return label; }
    void setLabel(const QString &v) { label = v; }
    QString getName() const { return name; }
    void setName(const QString &v) { name = v; }
    QString getNote() const { return note; }
    void setNote(const QString &v) { note = v; }
    int getIsNumeric() const { return isNumeric; }
    void setIsNumeric(int v) { isNumeric = v; }
    QList<TValueSetItem *> *getItems() const { return items; }
    void setItems(QList<TValueSetItem *> *v) { items = v; }

    QString label;
    QString name;
    QString note;
    int isNumeric = 1;
    QList<TValueSetItem *> *items;
};

/*! \brief One code of a value set with its label (kept in name). */
class MODEL_KELADMIN_EXPORT TValueSetItem : public QObject
{
public:
    TValueSetItem();
    ~TValueSetItem() override;

    QString getName() const { return name; }
    void setName(const QString &v) { name = v; }
    QString getCode() const { return code; }
    void setCode(const QString &v) { code = v; }
    int getType() const { return type; }
    void setType(int v) { type = v; }
    bool getSpecial() const { return special; }
    void setSpecial(bool v) { special = v; }

    QString name;
    //! Starts as the control character U+0003, so an unset code is never numeric.
    QString code;
    //! 0 ordinary, 1 MISSING, 2 NOTAPPL.
    int type = 0;
    bool special = false;
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

#ifndef CSPROJSON_H
#define CSPROJSON_H

#include "model_kelAdmin_export.h"

#include "CSPro.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>

/*! \brief Reader of a CSPro 8 dictionary in its JSON form.
 *
 * Shares the members and the text-form operations of TCSPro; only loading
 * differs. Reading is silent: an unreadable or malformed file leaves what was
 * read so far, and values of the wrong JSON type fall back to defaults.
 * Ranges stay one entry "low:high"; entries are neither sorted nor validated.
 */
class MODEL_KELADMIN_EXPORT TCSProJson : public TCSPro
{
    Q_OBJECT
public:
    TCSProJson();
    ~TCSProJson() override;

    //! Reads \a path as JSON when its first non-blank character is "{"; otherwise does nothing.
    void loadFromFile(QString path) override;
    //! Parses \a path as a JSON dictionary and fills the model.
    void loadFromJson(QString path);

protected:
    //! The "text" of the first element of "labels", else empty.
    QString readLabel(const QJsonObject &object);
    //! Creates one item of \a record; advances \a position past it.
    void readItem(const QJsonObject &jsonItem, TCSProRecord *record, int &position, bool relativePositions,
                  bool defaultDecimalMark, bool defaultZeroFill);
    //! Attaches the first value set of \a jsonItem to \a item.
    void readValueSet(TCSProItem *item, const QJsonObject &jsonItem);

public:
    /*! Value-set entries read for the copies of repeated items before later
     * copies share the value set of their first copy: the same bound as the
     * items, so that a few bytes of "occurrences" cannot fill the memory. */
    static constexpr int MaxValueSetEntries = 250000;

private:
    struct ItemDefaults
    {
        bool relativePositions = true;
        bool decimalMark = false;
        bool zeroFill = false;
    };
    ItemDefaults readDictionaryMembers(const QJsonObject &dictionary);
    void readIdItems(const QJsonArray &levels, const ItemDefaults &defaults);
    void readRecord(const QJsonObject &jsonRecord, const ItemDefaults &defaults);
    void readRepeatedItem(const QJsonObject &item, TCSProRecord *record, int &position, int count,
                          const ItemDefaults &defaults);
    void readCopyValueSet(TCSProItem *copy, const QJsonObject &item, bool first, TCSProValueSet *firstValueSet);
    //! False, with a limit-reached note, when copy \a copy of \a itemName would pass a bound on copies or items.
    bool mayMakeCopy(const QString &itemName, int copy);
    // withNotes is false for the copies after the first: one note per JSON object.
    void readValueSet(TCSProItem *item, const QJsonObject &jsonItem, bool withNotes);
    TValueSetItem *readValue(const QJsonObject &jsonValue, const QString &valueSetName, bool withNotes);

    void noteItem(const QJsonObject &item, int start, const QJsonValue &occurrences);
    void noteOccurrenceLabels(const QString &what, const QString &subject, const QJsonObject &occurrences);
    void noteLink(const QJsonObject &jsonValueSet, const TCSProValueSet *valueSet);
    void noteFurtherValueSets(const QJsonObject &jsonItem, const QJsonArray &sets, const QString &kept);
    void noteNoRecordType();
    void noteStartsFromColumnOne(const QString &subject, const QString &what, int cspro);
    void noteItemShape(const QJsonObject &jsonItem, const TCSProItem &item, const QString &itemName);
    void noteNumber(const QJsonObject &object, const QString &key, const QString &itemName, int kept);
    void noteSubitem(const QJsonObject &jsonItem, const QString &itemName);
    void noteCodes(const TCSProItem &item);
    //! Notes \a jsonItem when CSPro skips it as malformed.
    void noteMalformedItem(const QJsonObject &jsonItem, bool isId, bool relativePositions);
    void noteMalformedRecord(const QJsonObject &jsonRecord);
    void noteValueCodes(const QJsonObject &jsonValue, const QString &valueSetName);
    //! The first column after the record type and every identification item, where CSPro lays out record items.
    int firstColumnAfterIds() const;

    // Which keys that only notes need the file holds anywhere.
    struct NoteKeys
    {
        bool decimals = true;
        bool subitem = true;
        bool special = true;
        bool link = true;
    } noteKeys;
    qint64 valueSetEntries = 0;
    bool valueSetBudgetNoted = false;
    // The last item that is not a subitem: the parent of the subitems after it.
    QString parentName;
    bool parentKept = false;  // CSPro kept the parent: its subitems may be kept too
    int parentOccurrences = 1;
    int parentLength = 0;
    int firstRecordColumn = 1;  // firstColumnAfterIds(), once the identification items are read
};

#endif // CSPROJSON_H

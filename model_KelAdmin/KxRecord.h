#ifndef KXRECORD_H
#define KXRECORD_H

#include "model_kelAdmin_export.h"

#include <QList>
#include <QString>
#include <QStringList>

class TCSProRecord;
class TKxRecord;

/*! \brief The lines of one questionnaire, answered by record-type code.
 *
 * The fields are public and set by the application. The lines are not
 * owned; status holds the outcome of the last check (4 duplicate record,
 * 6 missing record).
 */
class MODEL_KELADMIN_EXPORT TQuestIndex
{
public:
    TQuestIndex();
    virtual ~TQuestIndex();

    int countLines() const;
    //! The record-type code of line i; empty at or beyond the last line.
    QString getRecordValue(int i) const;
    //! Number of lines whose record-type code equals \a code exactly.
    int countRecords(const QString &code) const;
    //! \a code when a line carries it, else the empty text.
    QString getRecordString(const QString &code) const;
    //! \a code when at least n + 1 lines carry it, else the empty text.
    QString getRecordString(const QString &code, int n) const;

    int getRecordTypeStart() const { return recordTypeStart; }
    void setRecordTypeStart(int v) { recordTypeStart = v; }
    int getRecordTypeLength() const { return recordTypeLength; }
    void setRecordTypeLength(int v) { recordTypeLength = v; }
    int getStatus() const { return status; }
    void setStatus(int v) { status = v; }
    QString getKeyText() const { return keyText; }
    void setKeyText(const QString &v) { keyText = v; }
    QString getAssembledText() const { return assembledText; }
    void setAssembledText(const QString &v) { assembledText = v; }
    QStringList *getLines() const { return lines; }
    void setLines(QStringList *v) { lines = v; }

    int recordTypeStart = 0;
    int recordTypeLength = 0;
    int status = 0;
    QString keyText;
    QString assembledText;
    QStringList *lines = nullptr;
};

/*! \brief A registration of another record against a record node. */
class MODEL_KELADMIN_EXPORT TKxRecordReference
{
public:
    TKxRecordReference() = default;
    TKxRecordReference(TKxRecord *record, const QString &recordTypeCode);
    virtual ~TKxRecordReference();

    TKxRecord *getRecord() const { return record; }
    void setRecord(TKxRecord *v) { record = v; }
    QString getRecordTypeCode() const { return recordTypeCode; }
    void setRecordTypeCode(const QString &v) { recordTypeCode = v; }

private:
    TKxRecord *record = nullptr;
    QString recordTypeCode;
};

/*! \brief One node of the record hierarchy (first-child / next-brother tree).
 *
 * A node does not own its relatives: links are cleared on destruction but
 * nothing they point at is freed.
 */
class MODEL_KELADMIN_EXPORT TKxRecord
{
public:
    TKxRecord();
    virtual ~TKxRecord();
    TKxRecord(const TKxRecord &) = delete;
    TKxRecord &operator=(const TKxRecord &) = delete;

    //! "name (label)", or the name alone when there is no label.
    QString nodeCaption() const;
    void addChild(TKxRecord *child);
    void addBrother(TKxRecord *brother);
    //! Inserts \a child before the child \a before; at the end when \a before is null.
    void insertChild(TKxRecord *before, TKxRecord *child);
    //! Unlinks the direct child called \a name; frees nothing. The flag is ignored.
    void deleteChild(QString name, bool freeNode = false);
    //! Depth-first search by name; "Common" also finds a node called "COMMON".
    TKxRecord *retrieveRecord(QString name);
    TKxRecord *preOrderNext() const;
    TKxRecord *preOrderNextBrother() const;

    //! Key extraction is left to the application: both give the empty text.
    QString getKeyValue(QString line) const;
    QString getParentKeyValue(QString line) const;

    void addRecordReferenceToList(TKxRecordReference *reference);
    void removeRecordReferenceFromList(TKxRecordReference *reference);

    //! Checks the questionnaire from this node as the root of the tree.
    QString checkQuestionnaire(TQuestIndex *q);
    //! Checks this node, its children and its later brothers under \a parentKey.
    QString checkQuestionnaire(TQuestIndex *q, QString parentKey);
    //! The uniqueness test: sets status 4 on a duplicate; always the empty text.
    QString assembleRecord(TQuestIndex *q);
    //! The assembled text of the index, whatever the key.
    QString assembleRecord(TQuestIndex *q, QString key);

    //! The code this node looks for in the questionnaire: its record's type value.
    QString recordTypeCode() const;

    QString getName() const { return name; }
    void setName(const QString &v) { name = v; }
    QString getLabel() const { return label; }
    void setLabel(const QString &v) { label = v; }
    QString getKeyFields() const { return keyFields; }
    void setKeyFields(const QString &v) { keyFields = v; }
    QString getParentKeyFields() const { return parentKeyFields; }
    void setParentKeyFields(const QString &v) { parentKeyFields = v; }
    QString getDescription() const { return description; }
    void setDescription(const QString &v) { description = v; }
    int getLevel() const { return level; }
    void setLevel(int v) { level = v; }
    int getMaxOccurrences() const { return maxOccurrences; }
    void setMaxOccurrences(int v) { maxOccurrences = v; }
    int getKeyStart() const { return keyStart; }
    void setKeyStart(int v) { keyStart = v; }
    int getKeyLength() const { return keyLength; }
    void setKeyLength(int v) { keyLength = v; }
    bool getRequired() const { return required; }
    void setRequired(bool v) { required = v; }
    bool getRepeating() const { return repeating; }
    void setRepeating(bool v) { repeating = v; }
    bool getSelected() const { return selected; }
    void setSelected(bool v) { selected = v; }
    bool getExpanded() const { return expanded; }
    void setExpanded(bool v) { expanded = v; }
    bool getChecked() const { return checked; }
    void setChecked(bool v) { checked = v; }
    TKxRecord *getFirstChild() const { return firstChild; }
    void setFirstChild(TKxRecord *v) { firstChild = v; }
    TKxRecord *getParent() const { return parent; }
    void setParent(TKxRecord *v) { parent = v; }
    TKxRecord *getNextBrother() const { return nextBrother; }
    void setNextBrother(TKxRecord *v) { nextBrother = v; }
    QList<TKxRecordReference *> *getRecordReferences() const { return recordReferences; }
    TCSProRecord *getRecordInfo() const { return recordInfo; }
    void setRecordInfo(TCSProRecord *v) { recordInfo = v; }

private:
    //! This node's own lines under \a parentKey with their subtrees; false when an assembly came back empty.
    bool checkOwnLines(TQuestIndex *q, const QString &parentKey, QString *result);

    QString name;
    QString label;
    // Carried for the application; nothing in the library reads them.
    QString keyFields;
    QString parentKeyFields;
    QString description;
    int level = -1;
    int maxOccurrences = 0;
    int keyStart = 0;
    int keyLength = 0;
    bool required = false;
    bool repeating = false;
    bool selected = false;
    bool expanded = false;
    bool checked = false;

    TKxRecord *firstChild = nullptr;
    TKxRecord *parent = nullptr;
    TKxRecord *nextBrother = nullptr;
    QList<TKxRecordReference *> *recordReferences = nullptr;
    // The record description is the CSPro dictionary record: its
    // recordTypeValue is the code searched for in the questionnaire lines.
    TCSProRecord *recordInfo = nullptr;
};

#endif // KXRECORD_H

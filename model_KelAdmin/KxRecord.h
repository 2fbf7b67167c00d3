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
    //! An empty index: no lines, record type at 0 with width 0, status 0.
    TQuestIndex();
    //! Clears the line pointer; the lines are not released.
    virtual ~TQuestIndex();

    //! The number of lines; 0 without a line list.
    int countLines() const;
    //! The record-type code of line i; empty at or beyond the last line.
    QString getRecordValue(int i) const;
    //! Number of lines whose record-type code equals \a code exactly.
    int countRecords(const QString &code) const;
    //! \a code when a line carries it, else the empty text.
    QString getRecordString(const QString &code) const;
    //! \a code when at least n + 1 lines carry it, else the empty text.
    QString getRecordString(const QString &code, int n) const;

    //! The start of the record-type code in a line (counted from 0, as QString::mid does).
    //!@{
    int getRecordTypeStart() const { return recordTypeStart; }
    void setRecordTypeStart(int v) { recordTypeStart = v; }
    //!@}
    //! The width of the record-type code in a line.
    //!@{
    int getRecordTypeLength() const { return recordTypeLength; }
    void setRecordTypeLength(int v) { recordTypeLength = v; }
    //!@}
    //! The outcome of the checks: 4 duplicate record, 6 missing record; 0 at first.
    //!@{
    int getStatus() const { return status; }
    void setStatus(int v) { status = v; }
    //!@}
    //! The key text of the questionnaire; carried for the application.
    //!@{
    QString getKeyText() const { return keyText; }
    void setKeyText(const QString &v) { keyText = v; }
    //!@}
    //! The text that assembleRecord(q, key) returns.
    //!@{
    QString getAssembledText() const { return assembledText; }
    void setAssembledText(const QString &v) { assembledText = v; }
    //!@}
    //! The questionnaire's lines in file order; not owned.
    //!@{
    QStringList *getLines() const { return lines; }
    void setLines(QStringList *v) { lines = v; }
    //!@}

    int recordTypeStart = 0;      //!< see getRecordTypeStart()
    int recordTypeLength = 0;     //!< see getRecordTypeLength()
    int status = 0;               //!< see getStatus()
    QString keyText;              //!< see getKeyText()
    QString assembledText;        //!< see getAssembledText()
    QStringList *lines = nullptr; //!< see getLines()
};

/*! \brief A registration of another record against a record node. */
class MODEL_KELADMIN_EXPORT TKxRecordReference
{
public:
    //! A reference to no record.
    TKxRecordReference() = default;
    //! A reference to \a record under \a recordTypeCode; the record is not owned.
    TKxRecordReference(TKxRecord *record, const QString &recordTypeCode);
    //! Releases the code; the record is not touched.
    virtual ~TKxRecordReference();

    //! The record node the reference points at; not owned.
    //!@{
    TKxRecord *getRecord() const { return record; }
    void setRecord(TKxRecord *v) { record = v; }
    //!@}
    //! The record-type code the reference was registered with.
    //!@{
    QString getRecordTypeCode() const { return recordTypeCode; }
    void setRecordTypeCode(const QString &v) { recordTypeCode = v; }
    //!@}

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
    //! A node with no name, no relatives and level -1.
    TKxRecord();
    //! Clears the links and frees its own texts and reference list; the relatives are not touched.
    virtual ~TKxRecord();
    TKxRecord(const TKxRecord &) = delete;
    TKxRecord &operator=(const TKxRecord &) = delete;

    //! "name (label)", or the name alone when there is no label.
    QString nodeCaption() const;
    //! Appends \a child as the last child and makes this node its parent.
    void addChild(TKxRecord *child);
    //! Appends \a brother after the last sibling of this node, with that sibling's parent.
    void addBrother(TKxRecord *brother);
    //! Inserts \a child before the child \a before; at the end when \a before is null.
    void insertChild(TKxRecord *before, TKxRecord *child);
    //! Unlinks the direct child called \a name; frees nothing. The flag is ignored.
    void deleteChild(QString name, bool freeNode = false);
    //! Depth-first search by name; "Common" also finds a node called "COMMON".
    TKxRecord *retrieveRecord(QString name);
    //! The next node in pre-order: the first child, else preOrderNextBrother(); null at the end.
    TKxRecord *preOrderNext() const;
    //! The next sibling of this node or of its nearest ancestor that has one; null when none.
    TKxRecord *preOrderNextBrother() const;

    //! Key extraction is left to the application: both give the empty text.
    QString getKeyValue(QString line) const;
    //! Key extraction is left to the application: the empty text.
    QString getParentKeyValue(QString line) const;

    //! Registers \a reference (not owned), creating the reference list on first use.
    void addRecordReferenceToList(TKxRecordReference *reference);
    //! Removes \a reference from the list; it is not deleted.
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

    //! The record name, the key of retrieveRecord() (case-sensitive).
    //!@{
    QString getName() const { return name; }
    void setName(const QString &v) { name = v; }
    //!@}
    //! The display label.
    //!@{
    QString getLabel() const { return label; }
    void setLabel(const QString &v) { label = v; }
    //!@}
    //! Key fields of the record; carried for the application.
    //!@{
    QString getKeyFields() const { return keyFields; }
    void setKeyFields(const QString &v) { keyFields = v; }
    //!@}
    //! Key fields of the parent record; carried for the application.
    //!@{
    QString getParentKeyFields() const { return parentKeyFields; }
    void setParentKeyFields(const QString &v) { parentKeyFields = v; }
    //!@}
    //! A description; carried for the application.
    //!@{
    QString getDescription() const { return description; }
    void setDescription(const QString &v) { description = v; }
    //!@}
    //! The level in the hierarchy; -1 until set. Carried for the application.
    //!@{
    int getLevel() const { return level; }
    void setLevel(int v) { level = v; }
    //!@}
    //! The most lines of this record per questionnaire; carried for the application.
    //!@{
    int getMaxOccurrences() const { return maxOccurrences; }
    void setMaxOccurrences(int v) { maxOccurrences = v; }
    //!@}
    //! The start of the key in a line; carried for the application.
    //!@{
    int getKeyStart() const { return keyStart; }
    void setKeyStart(int v) { keyStart = v; }
    //!@}
    //! The width of the key in a line; carried for the application.
    //!@{
    int getKeyLength() const { return keyLength; }
    void setKeyLength(int v) { keyLength = v; }
    //!@}
    //! Whether the record must be present; carried for the application.
    //!@{
    bool getRequired() const { return required; }
    void setRequired(bool v) { required = v; }
    //!@}
    //! Whether the record may repeat; carried for the application.
    //!@{
    bool getRepeating() const { return repeating; }
    void setRepeating(bool v) { repeating = v; }
    //!@}
    //! Selection state in the front end's tree; carried for the application.
    //!@{
    bool getSelected() const { return selected; }
    void setSelected(bool v) { selected = v; }
    //!@}
    //! Expansion state in the front end's tree; carried for the application.
    //!@{
    bool getExpanded() const { return expanded; }
    void setExpanded(bool v) { expanded = v; }
    //!@}
    //! Check state in the front end's tree; carried for the application.
    //!@{
    bool getChecked() const { return checked; }
    void setChecked(bool v) { checked = v; }
    //!@}
    //! The first child; not owned.
    //!@{
    TKxRecord *getFirstChild() const { return firstChild; }
    void setFirstChild(TKxRecord *v) { firstChild = v; }
    //!@}
    //! The parent node; not owned.
    //!@{
    TKxRecord *getParent() const { return parent; }
    void setParent(TKxRecord *v) { parent = v; }
    //!@}
    //! The next sibling; not owned.
    //!@{
    TKxRecord *getNextBrother() const { return nextBrother; }
    void setNextBrother(TKxRecord *v) { nextBrother = v; }
    //!@}
    //! The references registered with addRecordReferenceToList(); null until the first one.
    QList<TKxRecordReference *> *getRecordReferences() const { return recordReferences; }
    //! The CSPro record this node stands for (its type value is recordTypeCode()); not owned.
    //!@{
    TCSProRecord *getRecordInfo() const { return recordInfo; }
    void setRecordInfo(TCSProRecord *v) { recordInfo = v; }
    //!@}

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

#ifndef CSPROIMPORTCORE_H
#define CSPROIMPORTCORE_H

#include "model_kelAdmin_export.h"

#include "DataImport.h"
#include "GenericField.h"

#include <QString>
#include <QStringList>

class TCSProItem;

/*! \brief The answer given in advance to the decimal prompt of CSPro text
 * dictionaries (a numeric value set holding a code such as 0.5).
 */
enum class TDecimalChoice {
    Ask,      //!< show the prompt (needs a QApplication and someone to answer it)
    YesToAll, //!< turn every decimal code into "0" and keep the value sets
    NoToAll   //!< drop every value set that holds a decimal code
};

/*! \brief One CSPro dictionary item as a generic field.
 *
 * Missing and not-applicable values are those of the dictionary item, which
 * the field points at without owning it.
 */
class MODEL_KELADMIN_EXPORT TCSProVariable : public TGenericField
{
public:
    explicit TCSProVariable(TDataImport *owner, TCSProItem *item = nullptr);
    ~TCSProVariable() override;

    //! True when missingFlag is set or the value is exactly the item's missing code.
    bool isMissing() override;
    //! True when the value is exactly the item's not-applicable code.
    bool isNotApplicable() override;
    bool isBlank() override;
    //! The name of the item's record in a multi-record dictionary, else empty.
    QString getGroup() override;

    /*! Like TGenericField::setAsString, but missingFlag is left as it is and
     * implied decimals follow the item's decimal character. */
    void setAsString(QString text);

    QString getRecordName() const { return recordName; }
    void setRecordName(const QString &v) { recordName = v; }
    bool getCopiedFlag() const { return copiedFlag; }
    void setCopiedFlag(bool v) { copiedFlag = v; }
    TCSProItem *getItem() const { return item; }
    void setItem(TCSProItem *v) { item = v; }

protected:
    QString recordName;
    bool copiedFlag = false;
    TCSProItem *item = nullptr;
};

/*! \brief The import steps shared by the CSPro text and JSON importers.
 *
 * \a Reader is the dictionary reader (TCSPro or TCSProJson), \a Variable the
 * field class made for each item. The reader, the group list and the fields
 * are not released by the importer: the fields point into the dictionary.
 */
template <class Reader, class Variable>
class MODEL_KELADMIN_EXPORT TCSProImportCore : public TDataImport
{
public:
    //! Base state only: no debug line, no group list until a dictionary is read.
    TCSProImportCore();
    //! Writes the constructor's debug line and allocates the group list.
    explicit TCSProImportCore(QString sourceName);
    ~TCSProImportCore() override;

    //! "CSPRO" for the text form, "CSPRO8" for the JSON form.
    QString getDataProviderType() override;
    //! The field names after openFile(), with the importer's debug line.
    QStringList *selectLayoutSource() override;

    //! The type name, "_" and the description's path.
    QString getDataProviderId() override;
    //! Reads the whole dictionary at sourceName; errors of the reader pass through.
    bool openFile() override;
    bool isMultiple() override;
    int getGroupCount() override;
    //! The i-th "name=value" entry; empty outside 0 .. count - 1.
    QString getGroupName(int i) override;
    //! The first entry containing getGroupName(i) as a substring: the whole entry.
    QString getGroupValue(int i) override;
    //! The last record whose type value is \a value; -1 when none.
    int getRecordTypeIndex(QString value) override;
    //! The first record whose type value is currentRecordType; -1 when none.
    int getRecordTypeIndex();
    int getRecordTypeStart() override;
    int getRecordTypeSize() override;

    //! Loads \a path into a new reader and turns its items into fields.
    void openRead(QString path);
    //! One field per dictionary item, in the dictionary's order.
    void copyDataFromDictionary();
    void getVarMissingValue(TGenericField *field);
    void getNotApplicable(TGenericField *field);
    //! \a n copies of \a c; empty when n <= 0.
    static QString StringOfChar(char c, int n);

    /*! Presets the reader's remembered 'to all' answer of the decimal prompt
     * (mode 1 with QMessageBox::YesToAll, 2 with NoToAll) for every later
     * openFile(), so that a program without a display is never prompted.
     * Mode 0 (the default) leaves the reader to ask. */
    void setDecimalChoice(int mode, int answer)
    {
        presetDecimalMode = mode;
        presetDecimalAnswer = answer;
    }
    //! The same choice in one value: Ask is mode 0, YesToAll mode 1, NoToAll mode 2.
    void setDecimalChoice(TDecimalChoice choice);
    int getPresetDecimalMode() const { return presetDecimalMode; }
    int getPresetDecimalAnswer() const { return presetDecimalAnswer; }

    QStringList *getGroups() const { return groups; }
    void setGroups(QStringList *v) { groups = v; }
    bool getNotRead() const { return notRead; }
    void setNotRead(bool v) { notRead = v; }
    void setRecordTypeStart(int v) { recordTypeStart = v; }
    int getRecordTypeLen() const { return recordTypeLen; }
    void setRecordTypeLen(int v) { recordTypeLen = v; }
    Reader *getDictionaryReader() const { return dictionary; }
    void setDictionaryReader(Reader *v) { dictionary = v; }
    QString getCurrentRecordType() const { return currentRecordType; }
    void setCurrentRecordType(const QString &v) { currentRecordType = v; }

protected:
    QStringList *groups = nullptr;
    bool notRead = true;
    int recordTypeStart = 0;
    int recordTypeLen = 0;
    Reader *dictionary = nullptr;
    QString currentRecordType;
    int presetDecimalMode = 0;
    int presetDecimalAnswer = 0;

private:
    void fillFromItem(Variable *field, TCSProItem *item);
};

#endif // CSPROIMPORTCORE_H

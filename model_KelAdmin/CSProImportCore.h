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
    //! True when the dictionary gives the record type a width (getRecordTypeSize() > 0).
    bool isMultiple() override;
    //! The number of records of the last dictionary read, one group each; 0 before any.
    int getGroupCount() override;
    //! The i-th "name=value" entry; empty outside 0 .. count - 1.
    QString getGroupName(int i) override;
    //! The first entry containing getGroupName(i) as a substring: the whole entry.
    QString getGroupValue(int i) override;
    //! The last record whose type value is \a value; -1 when none.
    int getRecordTypeIndex(QString value) override;
    //! The first record whose type value is currentRecordType; -1 when none.
    int getRecordTypeIndex();
    //! The dictionary's record type start: where the record type value begins in a data line.
    int getRecordTypeStart() override;
    //! The dictionary's record type length; 0 when the dictionary gives none.
    int getRecordTypeSize() override;

    //! Loads \a path into a new reader and turns its items into fields.
    void openRead(QString path);
    //! One field per dictionary item, in the dictionary's order.
    void copyDataFromDictionary();
    /*! Sets \a field's missing code again from its dictionary item; does
     * nothing unless \a field is a TCSProVariable with an item. */
    void getVarMissingValue(TGenericField *field);
    /*! Sets \a field's not-applicable code again from its dictionary item;
     * does nothing unless \a field is a TCSProVariable with an item. */
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

    // Each member of this template carries its own comment: grouped comments
    // do not reach the documentation of the two instantiated classes.

    //! The mode preset by setDecimalChoice(): 0, 1 or 2.
    int getPresetDecimalMode() const { return presetDecimalMode; }
    //! The QMessageBox button preset by setDecimalChoice().
    int getPresetDecimalAnswer() const { return presetDecimalAnswer; }

    /*! One "name=value" entry per record, in the dictionary's order: the
     * record name and its type value. Null until the first reading when the
     * importer was made without a path; the importer never frees it. */
    QStringList *getGroups() const { return groups; }
    //! Puts \a v in place of the group list; the old list is not freed and the next reading refills the new one.
    void setGroups(QStringList *v) { groups = v; }
    //! True until a dictionary has been read.
    bool getNotRead() const { return notRead; }
    //! Sets the flag that getNotRead() returns; each reading clears it.
    void setNotRead(bool v) { notRead = v; }
    //! Replaces the record type start until the next reading copies the dictionary's.
    void setRecordTypeStart(int v) { recordTypeStart = v; }
    //! The record type length that getRecordTypeSize() returns.
    int getRecordTypeLen() const { return recordTypeLen; }
    //! Replaces the record type length until the next reading copies the dictionary's.
    void setRecordTypeLen(int v) { recordTypeLen = v; }
    /*! The reader of the last openRead(); null before. The importer never
     * frees a reader: the fields point at its items. */
    Reader *getDictionaryReader() const { return dictionary; }
    //! Puts \a v in place of the reader, which the record type look-ups then search; the old one is not freed.
    void setDictionaryReader(Reader *v) { dictionary = v; }
    /*! The record type value that getRecordTypeIndex() without an argument
     * looks for. The importer never sets it: whoever reads the data record
     * by record does. */
    QString getCurrentRecordType() const { return currentRecordType; }
    //! Sets the record type value that getRecordTypeIndex() without an argument looks for.
    void setCurrentRecordType(const QString &v) { currentRecordType = v; }

protected:
    QStringList *groups = nullptr;   //!< see getGroups()
    bool notRead = true;             //!< see getNotRead()
    int recordTypeStart = 0;         //!< see getRecordTypeStart()
    int recordTypeLen = 0;           //!< see getRecordTypeLen()
    Reader *dictionary = nullptr;    //!< see getDictionaryReader()
    QString currentRecordType;       //!< see getCurrentRecordType()
    int presetDecimalMode = 0;       //!< see getPresetDecimalMode()
    int presetDecimalAnswer = 0;     //!< see getPresetDecimalAnswer()

private:
    //! Type, decimals, position, codes, bounds and value labels of \a field, taken from \a item.
    void fillFromItem(Variable *field, TCSProItem *item);
};

#endif // CSPROIMPORTCORE_H

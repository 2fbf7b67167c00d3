#ifndef KXDATAPROVIDER_H
#define KXDATAPROVIDER_H

#include "model_kelAdmin_export.h"

#include <QList>
#include <QString>
#include <QStringList>

class TDataImport;
class TGenericField;
class TKxRecord;
class TKxSourceField;

/*! \brief The description of one data source: identity and type, layout and
 * data paths, record-type layout, source fields and record nodes.
 *
 * Filled from an opened importer by genericGetFieldsFrom(). The importer,
 * the source fields and the record nodes are not owned.
 */
class MODEL_KELADMIN_EXPORT TKxDataProvider
{
public:
    TKxDataProvider();
    virtual ~TKxDataProvider();
    TKxDataProvider(const TKxDataProvider &) = delete;
    TKxDataProvider &operator=(const TKxDataProvider &) = delete;

    QString getDataProviderId() const { return dataProviderId; }
    void setDataProviderId(QString v) { dataProviderId = v; }
    QString getDataProviderLabel() const { return dataProviderLabel; }
    void setDataProviderLabel(QString v) { dataProviderLabel = v; }
    QString getDataProviderType() const { return dataProviderType; }
    int getDataProviderTypeIndex() const { return dataProviderTypeIndex; }
    //! Takes over only a name at position 1 or later of providerTypeNames ("CSPRO", "CSV").
    void setDataProviderType(QString type);

    QString getLayoutFileName() const { return layoutFileName; }
    void setLayoutFileName(QString v) { layoutFileName = v; }
    QString getDataFileName() const { return dataFileName; }
    void setDataFileName(QString v) { dataFileName = v; }
    int getRecordTypeStart() const { return recordTypeStart; }
    void setRecordTypeStart(int v) { recordTypeStart = v; }
    int getRecordTypeSize() const { return recordTypeSize; }
    void setRecordTypeSize(int v) { recordTypeSize = v; }
    int getReferences() const { return references; }
    void setReferences(int v) { references = v; }
    //! Number of record types, kept for callers.
    int getRecordTypes() const { return recordTypes; }
    void setRecordTypes(int v) { recordTypes = v; }
    //! Record-type names kept for callers; nothing in the library fills it.
    QStringList getRecordTypeList() const { return recordTypeList; }
    void setRecordTypeList(const QStringList &v) { recordTypeList = v; }
    TDataImport *getImportData() const { return importData; }
    void setImportData(TDataImport *v) { importData = v; }

    QString getCurrentLine() const { return currentLine; }
    void setCurrentLine(const QString &v) { currentLine = v; }
    QString getRecordTypeText() const { return recordType; }
    void setRecordTypeText(const QString &v) { recordType = v; }
    TKxRecord *getRecordTree() const { return record; }
    void setRecordTree(TKxRecord *v) { record = v; }
    QList<TKxSourceField *> *getSourceFields() const { return sourceFields; }
    QStringList *getCsvColumns() const { return csvColumns; }
    QStringList *getProviderTypeNames() const { return providerTypeNames; }

    //! First source field called \a name (case-sensitive); null when none.
    TKxSourceField *getField(QString name) const;
    QString getFieldName(QString name) const;
    //! First field called \a name whose group is empty or \a recordName, ignoring case.
    TKxSourceField *getFieldFromRecord(QString name, QString recordName) const;
    //! The record node called \a name in the record tree.
    TKxRecord *getRecord(QString name) const;
    //! The record-type code cut out of currentLine; empty when the line is too short.
    QString getRecordTypeValue() const;
    //! Sets recordType to the single character U+00FF and returns it.
    QString getRecordType();
    /*! Asks the registry for the importer of this provider's type: null when
     * the type is not registered; throws error 106 before the registry exists. */
    TGenericField *findField(QString name, QString otherName);
    //! Resets the global error number; true when a data file is named.
    bool openDataProvider();
    bool closeDataProvider();
    //! Fills this description from an opened importer.
    bool genericGetFieldsFrom(TDataImport *importer);

private:
    TDataImport *importData = nullptr;
    QString currentLine;
    QString recordType;
    TKxRecord *record = nullptr;
    QList<TKxSourceField *> *sourceFields = nullptr;
    QString dataProviderId;
    QString dataProviderLabel;
    int dataProviderTypeIndex = 0;
    QString dataProviderType;
    int recordTypeStart = 0;
    int recordTypeSize = 0;
    QString layoutFileName;
    QString dataFileName;
    int references = 0;
    int recordTypes = 0;
    QStringList recordTypeList;
    QStringList *csvColumns;
    QStringList *providerTypeNames;
};

#endif // KXDATAPROVIDER_H

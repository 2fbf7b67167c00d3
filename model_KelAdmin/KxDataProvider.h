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
    //! An empty description: no fields, no record tree, the type names "NONE", "CSPRO", "CSV".
    TKxDataProvider();
    //! Releases the field list container (not the fields), the column and type-name lists.
    virtual ~TKxDataProvider();
    TKxDataProvider(const TKxDataProvider &) = delete;
    TKxDataProvider &operator=(const TKxDataProvider &) = delete;

    //! The id of the data source: the importer's type name, "_" and the description's path.
    //!@{
    QString getDataProviderId() const { return dataProviderId; }
    void setDataProviderId(QString v) { dataProviderId = v; }
    //!@}
    //! A label for the user; nothing in the library fills it.
    //!@{
    QString getDataProviderLabel() const { return dataProviderLabel; }
    void setDataProviderLabel(QString v) { dataProviderLabel = v; }
    //!@}
    //! The description type accepted by setDataProviderType() ("CSPRO" or "CSV"); empty otherwise.
    QString getDataProviderType() const { return dataProviderType; }
    //! The position of getDataProviderType() in the provider type names; 0 at first.
    int getDataProviderTypeIndex() const { return dataProviderTypeIndex; }
    //! Takes over only a name at position 1 or later of providerTypeNames ("CSPRO", "CSV").
    void setDataProviderType(QString type);

    //! The path of the layout (description) file.
    //!@{
    QString getLayoutFileName() const { return layoutFileName; }
    void setLayoutFileName(QString v) { layoutFileName = v; }
    //!@}
    //! The path of the data file.
    //!@{
    QString getDataFileName() const { return dataFileName; }
    void setDataFileName(QString v) { dataFileName = v; }
    //!@}
    //! The start of the record-type code in a data line.
    //!@{
    int getRecordTypeStart() const { return recordTypeStart; }
    void setRecordTypeStart(int v) { recordTypeStart = v; }
    //!@}
    //! The width of the record-type code in a data line.
    //!@{
    int getRecordTypeSize() const { return recordTypeSize; }
    void setRecordTypeSize(int v) { recordTypeSize = v; }
    //!@}
    //! A count kept for callers; nothing in the library reads it.
    //!@{
    int getReferences() const { return references; }
    void setReferences(int v) { references = v; }
    //!@}
    //! Number of record types, kept for callers.
    int getRecordTypes() const { return recordTypes; }
    //! The number of record types, kept for callers.
    void setRecordTypes(int v) { recordTypes = v; }
    //! Record-type names kept for callers; nothing in the library fills it.
    QStringList getRecordTypeList() const { return recordTypeList; }
    //! Record-type names kept for callers; nothing in the library fills them.
    void setRecordTypeList(const QStringList &v) { recordTypeList = v; }
    //! The importer the description came from; not owned.
    //!@{
    TDataImport *getImportData() const { return importData; }
    void setImportData(TDataImport *v) { importData = v; }
    //!@}

    //! The data line being examined (see getRecordTypeValue()).
    //!@{
    QString getCurrentLine() const { return currentLine; }
    void setCurrentLine(const QString &v) { currentLine = v; }
    //!@}
    //! The current record type text.
    //!@{
    QString getRecordTypeText() const { return recordType; }
    void setRecordTypeText(const QString &v) { recordType = v; }
    //!@}
    //! The record hierarchy: a new empty node per genericGetFieldsFrom(); not owned, never released.
    //!@{
    TKxRecord *getRecordTree() const { return record; }
    void setRecordTree(TKxRecord *v) { record = v; }
    //!@}
    //! The source fields; null until filled. The list belongs to the provider, the fields to the caller.
    QList<TKxSourceField *> *getSourceFields() const { return sourceFields; }
    //! The column names passed to delimited importers.
    QStringList *getCsvColumns() const { return csvColumns; }
    //! The description type names "NONE", "CSPRO", "CSV", in that order.
    QStringList *getProviderTypeNames() const { return providerTypeNames; }

    //! First source field called \a name (case-sensitive); null when none.
    TKxSourceField *getField(QString name) const;
    //! The name of the first source field called \a name; empty when none.
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
    //! Always true; nothing to close.
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

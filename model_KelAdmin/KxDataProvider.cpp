#include "KxDataProvider.h"

#include "DataImport.h"
#include "GenericField.h"
#include "KxErrorManager.h"
#include "KxRecord.h"
#include "KxSourceField.h"
#include "LoaderManager.h"

TKxDataProvider::TKxDataProvider()
    : csvColumns(new QStringList)
    , providerTypeNames(new QStringList{QStringLiteral("NONE"), QStringLiteral("CSPRO"), QStringLiteral("CSV")})
{
}

// The source fields, the record nodes and the importer are not owned; only
// the list containers of this description are released.
TKxDataProvider::~TKxDataProvider()
{
    delete sourceFields;
    delete csvColumns;
    delete providerTypeNames;
}

void TKxDataProvider::setDataProviderType(QString type)
{
    const int i = providerTypeNames->indexOf(type);
    if (i > 0) {
        dataProviderTypeIndex = i;
        dataProviderType = type;
    }
}

TKxSourceField *TKxDataProvider::getField(QString name) const
{
    if (!sourceFields)
        return nullptr;
    for (TKxSourceField *field : qAsConst(*sourceFields)) {
        if (field && field->getFieldName() == name)
            return field;
    }
    return nullptr;
}

QString TKxDataProvider::getFieldName(QString name) const
{
    const TKxSourceField *field = getField(name);
    return field ? field->getFieldName() : QString();
}

TKxSourceField *TKxDataProvider::getFieldFromRecord(QString name, QString recordName) const
{
    if (!sourceFields)
        return nullptr;
    const QString wanted = recordName.toUpper();
    for (TKxSourceField *field : qAsConst(*sourceFields)) {
        if (!field || field->getFieldName() != name)
            continue;
        const QString group = field->getGroup();
        if (group.isEmpty() || group.toUpper() == wanted)
            return field;
    }
    return nullptr;
}

TKxRecord *TKxDataProvider::getRecord(QString name) const
{
    return record ? record->retrieveRecord(name) : nullptr;
}

QString TKxDataProvider::getRecordTypeValue() const
{
    if (currentLine.isEmpty() || qint64(currentLine.length()) < qint64(recordTypeStart) + recordTypeSize - 1)
        return QString();
    return currentLine.mid(recordTypeStart, recordTypeSize);
}

QString TKxDataProvider::getRecordType()
{
    recordType = QString(QChar(0x00FF));
    return recordType;
}

TGenericField *TKxDataProvider::findField(QString name, QString otherName)
{
    if (!IsTypeRegister(dataProviderType))
        return nullptr;
    TDataImport *importer = GetDataClassLoader(dataProviderType);
    if (!importer)
        return nullptr;
    TGenericField *field = importer->fieldByName(name);
    return field ? field : importer->fieldByName(otherName);
}

bool TKxDataProvider::openDataProvider()
{
    _ErrorNumber = 0;
    return !dataFileName.isEmpty();
}

bool TKxDataProvider::closeDataProvider()
{
    return true;
}

bool TKxDataProvider::genericGetFieldsFrom(TDataImport *importer)
{
    if (!importer)
        return false;
    dataProviderId = importer->getDataProviderId();
    // Only the types this provider knows ("CSPRO", "CSV") are taken over.
    setDataProviderType(importer->getDataProviderType());
    importData = importer;

    // The old list goes, the source fields in it stay with whoever holds them.
    delete sourceFields;
    sourceFields = new QList<TKxSourceField *>;
    if (dataProviderType == QLatin1String("CSV"))
        importer->getDictionary(sourceFields, csvColumns);
    else
        importer->TDataImport::getDictionary(sourceFields);

    recordTypeStart = importer->getRecordTypeStart();
    recordTypeSize = importer->getRecordTypeSize();

    // A previous tree is not released: its nodes may still be in use.
    record = new TKxRecord;

    const QString layout = importer->getSourceName();
    if (layoutFileName != layout)
        layoutFileName = layout;
    const QString data = importer->getDataSourceName();
    if (dataFileName != data)
        dataFileName = data;
    return true;
}

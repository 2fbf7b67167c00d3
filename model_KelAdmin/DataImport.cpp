#include "DataImport.h"

#include "GenericField.h"
#include "KxSourceField.h"
#include "KxTrace_p.h"

#include <QDir>
#include <QFileInfo>

TDataImport::TDataImport()
    : fields(new QList<TGenericField *>)
{
}

TDataImport::TDataImport(QString sourceName)
    : sourceName(sourceName)
    , fields(new QList<TGenericField *>)
{
}

// Neither the heap field list nor the fields are released: source fields made
// from them stay in use after the importer is gone.
TDataImport::~TDataImport() = default;

bool TDataImport::openFile()
{
    return false;
}

void TDataImport::getDictionary(QList<TKxSourceField *> *, QStringList *)
{
}

QStringList *TDataImport::selectLayoutSource()
{
    // A fixed debug line: the front end relies on it.
    KX_TRACE() << "DataImport - selectLayoutSource";
    auto *names = new QStringList;
    openFile();
    for (TGenericField *field : qAsConst(*fields))
        names->append(field->getName());
    return names;
}

bool TDataImport::isMultiple()
{
    return false;
}

int TDataImport::getGroupCount()
{
    return 0;
}

QString TDataImport::getGroupName(int)
{
    return QString();
}

QString TDataImport::getGroupValue(int)
{
    return QString();
}

int TDataImport::getRecordTypeIndex(QString)
{
    return -1;
}

QString TDataImport::getRecordTypeCurrent()
{
    return QString();
}

QStringList *TDataImport::getLayoutSource()
{
    return new QStringList;
}

int TDataImport::getRecordTypeStart()
{
    return 0;
}

int TDataImport::getRecordTypeSize()
{
    return 0;
}

void TDataImport::registerIOFormat()
{
}

void TDataImport::openDataImport()
{
    fields = new QList<TGenericField *>;
    fieldIndex.clear();
    readNotes.clear();
}

bool TDataImport::closeDataImport()
{
    return true;
}

void TDataImport::initDataImport()
{
    getDataProviderType();
}

void TDataImport::addField(TGenericField *field)
{
    fields->append(field);
    fieldIndex.insert(field->getName(), field);
}

TGenericField *TDataImport::fieldByName(QString name)
{
    return fieldIndex.value(name, nullptr);
}

TGenericField *TDataImport::getField(int i)
{
    if (i < 0 || i >= fields->count())
        return nullptr;
    return fields->at(i);
}

int TDataImport::getFieldCount() const
{
    return fields->count();
}

void TDataImport::setSourceName(QString path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    sourceName = QFileInfo(absolute).isFile() ? absolute : QString();
}

QString TDataImport::getSourceName() const
{
    return sourceName;
}

void TDataImport::setDataSourceName(QString path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    if (QFileInfo(absolute).isFile()) {
        dataSourceName = absolute;
        return;
    }
    // The folder and the file name are joined without a separator; the front
    // end relies on this exact candidate.
    const QString candidate = QFileInfo(sourceName).absolutePath() + QFileInfo(path).fileName();
    dataSourceName = QFileInfo(candidate).isFile() ? candidate : absolute;
}

QString TDataImport::getDataSourceName() const
{
    return dataSourceName;
}

void TDataImport::getDictionary(QList<TKxSourceField *> *out)
{
    QString typeName;
    for (TGenericField *field : qAsConst(*fields)) {
        switch (field->getFieldType()) {
        case 1: typeName = QStringLiteral("INTEGER"); break;
        case 2: typeName = QStringLiteral("REAL"); break;
        case 3: typeName = QStringLiteral("STRING"); break;
        default: break; // carries the previous field's type name over
        }

        auto *sourceField = new TKxSourceField;
        sourceField->setFieldName(field->getName());
        sourceField->setLabel(field->getLabel());
        bool ok = false;
        const int decimals = field->getDecimals().toInt(&ok, 10);
        sourceField->setDecimals(ok ? decimals : 0);
        sourceField->setStart(field->getStart());
        sourceField->setFieldType(typeName);
        sourceField->setSize(field->getSize());
        sourceField->setDataProviderId(getDataProviderId());
        sourceField->setDataProviderType(getDataProviderType());
        sourceField->setGroup(field->getGroup());

        // Fixed debug lines, to the blank lines below: the front end relies on them.
        KX_TRACE() << "getDictionary FIELDS";
        KX_TRACE() << "mySF->fieldName" << sourceField->getFieldName();
        KX_TRACE() << "mySF->FieldType" << sourceField->getFieldType();
        KX_TRACE() << "mySF->DataProviderType" << sourceField->getDataProviderType();

        sourceField->setValueLabels(field->getValueLabels());
        sourceField->setMinimum(field->getMinimum());
        sourceField->setMaximum(field->getMaximum());
        sourceField->setNotApplicableCode(field->getNotApplicableCode());
        sourceField->setMissingCode(field->getMissingCode());

        KX_TRACE() << "\n\n\n";
        out->append(sourceField);
    }
}

#include "ConfigModel.h"

#include "KxEntity.h"

ConfigEntities::ConfigEntities()
    : variables(new QStringList)
{
}

Config::Config()
    : dataBase(new ConfigDb)
    , options(new ConfigOptions)
    , entities(new QList<ConfigEntities *>)
{
}

ConfigToolsSplit::ConfigToolsSplit()
    : entitySelect(new TKxEntity)
    , entitySampling(new TKxEntity)
    , entityRestartSampling(new TKxEntity)
{
}

Datasource::Datasource()
    : metadataDataSource(new MetadataDataSource)
{
}

MetadataDictionary::MetadataDictionary()
    : datasource(new Datasource)
    , lookUp(new QList<LookupDictionary *>)
{
}

Dictionary::Dictionary()
    : root(new TKxEntity)
    , metadataDictionary(new MetadataDictionary)
{
}

DtoReportRunCreation::DtoReportRunCreation(QObject *parent)
    : QObject(parent)
    , m_titleReport(tr("Kelvo Lookup Checking"))
    , m_idLabel(tr("Lookup Identification"))
    , m_labelLabel(tr("Lookup Label"))
    , m_dataFileLabel(tr("Lookup File"))
{
}

// Releases the three shared engine objects.
DtoReportRunCreation::~DtoReportRunCreation() = default;

#ifndef CONFIGMODEL_H
#define CONFIGMODEL_H

#include "model_kelAdmin_export.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <utility>

class TKxEntity;
// The database engine's types; this model only holds shared pointers to them.
class TKelDataset;
class TKelDictionary;
class TKelDatabaseCreationInfo;

/*
 * Settings of one run of the administration tool. Pointer members that a
 * constructor fills with new objects are never freed by these classes: the
 * application releases them.
 */

//! The database to create and where it comes from.
class MODEL_KELADMIN_EXPORT ConfigDb
{
public:
    //! The name of the database to create.
    //!@{
    QString getName() const { return name; }
    void setName(const QString &value) { name = value; }
    //!@}
    //! The folder the database is written to.
    //!@{
    QString getFolder() const { return folder; }
    void setFolder(const QString &value) { folder = value; }
    //!@}
    //! The description file the database is built from.
    //!@{
    QString getSourceFile() const { return sourceFile; }
    void setSourceFile(const QString &value) { sourceFile = value; }
    //!@}
    //! The label of the database.
    //!@{
    QString getLabel() const { return label; }
    void setLabel(const QString &value) { label = value; }
    //!@}
    //! The author of the database.
    //!@{
    QString getAuthor() const { return author; }
    void setAuthor(const QString &value) { author = value; }
    //!@}
    //! The database's own protection setting, stored as entered.
    QString getPassword() const { return password; }
    //! The database's own protection setting, stored as entered.
    void setPassword(const QString &value) { password = value; }
    //! The project name.
    //!@{
    QString getProject() const { return project; }
    void setProject(const QString &value) { project = value; }
    //!@}
    //! How the database is generated.
    //!@{
    QString getGenerationType() const { return generationType; }
    void setGenerationType(const QString &value) { generationType = value; }
    //!@}
    //! The file filter; the getter returns a reference to the stored text.
    //!@{
    QString &getFileFilter() { return fileFilter; }
    void setFileFilter(const QString &value) { fileFilter = value; }
    //!@}
    //! The selection filter; the getter returns a reference to the stored text.
    //!@{
    QString &getSelectFilter() { return selectFilter; }
    void setSelectFilter(const QString &value) { selectFilter = value; }
    //!@}
    //! The filter; the getter returns a reference to the stored text.
    //!@{
    QString &getFilter() { return filter; }
    void setFilter(const QString &value) { filter = value; }
    //!@}

private:
    QString name;
    QString folder;
    QString sourceFile;
    QString label;
    QString author;
    QString password;
    QString project;
    QString generationType;
    QString fileFilter;
    QString selectFilter;
    QString filter;
};

//! The options of a database-creation run.
class MODEL_KELADMIN_EXPORT ConfigOptions
{
public:
    //! Whether not-applicable and missing codes are created inside the ranges.
    //!@{
    bool getCreateNotAppMissingInRange() const { return createNotAppMissingInRange; }
    void setCreateNotAppMissingInRange(bool value) { createNotAppMissingInRange = value; }
    //!@}
    //! Whether no ranges are created.
    //!@{
    bool getCreateNoRanges() const { return createNoRanges; }
    void setCreateNoRanges(bool value) { createNoRanges = value; }
    //!@}

private:
    bool createNotAppMissingInRange = false;
    bool createNoRanges = false;
};

//! The choices for one entity of the database to create.
class MODEL_KELADMIN_EXPORT ConfigEntities
{
public:
    ConfigEntities();

    //! The entity name.
    //!@{
    QString getName() const { return name; }
    void setName(const QString &value) { name = value; }
    //!@}
    //! The record type of the entity.
    //!@{
    QString getRecType() const { return recType; }
    void setRecType(const QString &value) { recType = value; }
    //!@}
    //! Whether all variables are taken; not set by the constructor.
    //!@{
    bool getAllVariables() const { return allVariables; }
    void setAllVariables(bool value) { allVariables = value; }
    //!@}
    //! Whether the sequence is checked; not set by the constructor.
    //!@{
    bool getCheckSequence() const { return checkSequence; }
    void setCheckSequence(bool value) { checkSequence = value; }
    //!@}
    //! Whether statistical disclosure control is created.
    //!@{
    bool getCreateSDC() const { return createSDC; }
    void setCreateSDC(bool value) { createSDC = value; }
    //!@}
    //! The delete check option.
    //!@{
    bool getCheckDelete() const { return checkDelete; }
    void setCheckDelete(bool value) { checkDelete = value; }
    //!@}
    //! Whether the entity's areas can be selected.
    //!@{
    bool getCheckSelectable() const { return checkSelectable; }
    void setCheckSelectable(bool value) { checkSelectable = value; }
    //!@}
    //! The names of the chosen variables; addVariables() appends one.
    //!@{
    QStringList *getVariables() const { return variables; }
    void setVariables(QStringList *value) { variables = value; }
    //!@}
    //! Appends a variable name.
    void addVariables(QString variableName) { variables->append(variableName); }

private:
    QString name;
    QString recType;
    // Set by the caller; zeroed here.
    bool allVariables = false;
    bool checkSequence = false;
    bool createSDC = false;
    bool checkDelete = false;
    bool checkSelectable = false;
    QStringList *variables;
};

//! What database to create and from which source.
class MODEL_KELADMIN_EXPORT Config
{
public:
    Config();

    //! The database to create.
    //!@{
    ConfigDb *getDataBase() const { return dataBase; }
    void setDataBase(ConfigDb *value) { dataBase = value; }
    //!@}
    //! The creation options.
    //!@{
    ConfigOptions *getOptions() const { return options; }
    void setOptions(ConfigOptions *value) { options = value; }
    //!@}
    //! The choices for each entity; addEntities() appends one.
    //!@{
    QList<ConfigEntities *> *getEntities() const { return entities; }
    void setEntities(QList<ConfigEntities *> *value) { entities = value; }
    void addEntities(ConfigEntities *value) { entities->append(value); }
    //!@}
    //! The path of the configuration file.
    //!@{
    QString getPath() const { return path; }
    void setPath(QString value) { path = value; }
    //!@}

private:
    ConfigDb *dataBase;
    ConfigOptions *options;
    QList<ConfigEntities *> *entities;
    QString path;
};

//! How to split or sample a database.
class MODEL_KELADMIN_EXPORT ConfigToolsSplit
{
public:
    ConfigToolsSplit();

    //! The file to split or sample.
    //!@{
    QString getFileName() const { return fileName; }
    void setFileName(const QString &value) { fileName = value; }
    //!@}
    //! The output folder.
    //!@{
    QString getFolder() const { return folder; }
    void setFolder(const QString &value) { folder = value; }
    //!@}
    //! The download option.
    //!@{
    bool getOptionDownload() const { return optionDownload; }
    void setOptionDownload(bool value) { optionDownload = value; }
    //!@}
    //! The entity to select by.
    //!@{
    TKxEntity *getEntitySelect() const { return entitySelect; }
    void setEntitySelect(TKxEntity *value) { entitySelect = value; }
    //!@}
    //! Whether to sample.
    //!@{
    bool getOptionSampling() const { return optionSampling; }
    void setOptionSampling(bool value) { optionSampling = value; }
    //!@}
    //! The sampling factor.
    //!@{
    double getFactor() const { return factor; }
    void setFactor(double value) { factor = value; }
    //!@}
    //! Whether every x-th element is taken.
    //!@{
    bool getRadioOutEveryX() const { return radioOutEveryX; }
    void setRadioOutEveryX(bool value) { radioOutEveryX = value; }
    //!@}
    //! Whether sampling restarts.
    //!@{
    bool getChkRestartSampling() const { return chkRestartSampling; }
    void setChkRestartSampling(bool value) { chkRestartSampling = value; }
    //!@}
    //! The entity sampled.
    //!@{
    TKxEntity *getEntitySampling() const { return entitySampling; }
    void setEntitySampling(TKxEntity *value) { entitySampling = value; }
    //!@}
    //! The entity at which sampling restarts.
    //!@{
    TKxEntity *getEntityRestartSampling() const { return entityRestartSampling; }
    void setEntityRestartSampling(TKxEntity *value) { entityRestartSampling = value; }
    //!@}
    //! The multidisciplinary-entities option.
    //!@{
    bool getChkMultidiciplinaryEntities() const { return chkMultidiciplinaryEntities; }
    void setChkMultidiciplinaryEntities(bool value) { chkMultidiciplinaryEntities = value; }
    //!@}

private:
    QString fileName;
    QString folder;
    bool optionDownload = false;
    TKxEntity *entitySelect;
    bool optionSampling = false;
    double factor = 0;
    bool radioOutEveryX = false;
    bool chkRestartSampling = false;
    TKxEntity *entitySampling;
    TKxEntity *entityRestartSampling;
    bool chkMultidiciplinaryEntities = false;
};

//! Addresses of the primary and secondary database.
class MODEL_KELADMIN_EXPORT ConfigToolsExtend
{
public:
    //! The address of the primary database.
    //!@{
    QString getUrlPrimaryBd() const { return urlPrimaryBd; }
    void setUrlPrimaryBd(const QString &value) { urlPrimaryBd = value; }
    //!@}
    //! The address of the secondary database.
    //!@{
    QString getUrlSecondaryBd() const { return urlSecondaryBd; }
    void setUrlSecondaryBd(const QString &value) { urlSecondaryBd = value; }
    //!@}

private:
    QString urlPrimaryBd;
    QString urlSecondaryBd;
};

//! The hierarchy file to convert and the JSON file to write.
class MODEL_KELADMIN_EXPORT ConfigWipxToJson
{
public:
    //! The hierarchy file to convert.
    //!@{
    QString getInputFile() const { return inputFile; }
    void setInputFile(const QString &value) { inputFile = value; }
    //!@}
    //! The JSON file to write.
    //!@{
    QString getOutputFile() const { return outputFile; }
    void setOutputFile(const QString &value) { outputFile = value; }
    //!@}

private:
    QString inputFile;
    QString outputFile;
};

//! One lookup file of a dictionary.
class MODEL_KELADMIN_EXPORT LookupDictionary
{
public:
    //! The lookup name.
    //!@{
    QString getName() const { return name; }
    void setName(const QString &value) { name = value; }
    //!@}
    //! The lookup label.
    //!@{
    QString getLabel() const { return label; }
    void setLabel(const QString &value) { label = value; }
    //!@}
    //! The lookup file.
    //!@{
    QString getFile() const { return file; }
    void setFile(const QString &value) { file = value; }
    //!@}
    //! The separator of the lookup file.
    //!@{
    QString getSeparator() const { return separator; }
    void setSeparator(const QString &value) { separator = value; }
    //!@}

private:
    QString name;
    QString label;
    QString file;
    QString separator;
};

//! The layout of a delimited data source.
class MODEL_KELADMIN_EXPORT MetadataDataSource
{
public:
    //! Whether the delimited file starts with a header line.
    //!@{
    bool getCsvHasHeader() const { return csvHasHeader; }
    void setCsvHasHeader(bool value) { csvHasHeader = value; }
    //!@}
    //! The separator of the delimited file.
    //!@{
    QString getCsvSeparator() const { return csvSeparator; }
    void setCsvSeparator(QString value) { csvSeparator = value; }
    //!@}
    //! The column names of the delimited file; addCsvFields() appends one.
    //!@{
    QStringList getCsvFields() const { return csvFields; }
    void setCsvFields(const QStringList &value) { csvFields = value; }
    void addCsvFields(QString value) { csvFields.append(value); }
    //!@}

private:
    bool csvHasHeader = false;
    QString csvSeparator;
    QStringList csvFields;
};

//! The data source of a dictionary: its type, its file and its metadata.
class MODEL_KELADMIN_EXPORT Datasource
{
public:
    Datasource();

    //! The type of the data source.
    //!@{
    QString getType() const { return type; }
    void setType(const QString &value) { type = value; }
    //!@}
    //! The data file.
    //!@{
    QString getFile() const { return file; }
    void setFile(const QString &value) { file = value; }
    //!@}
    //! The data source's metadata.
    //!@{
    MetadataDataSource *getMetadataDataSource() const { return metadataDataSource; }
    void setMetadataDataSource(MetadataDataSource *value) { metadataDataSource = value; }
    //!@}

private:
    QString type;
    QString file;
    MetadataDataSource *metadataDataSource;
};

//! The metadata of a dictionary: its data source and its lookup files.
class MODEL_KELADMIN_EXPORT MetadataDictionary
{
public:
    MetadataDictionary();

    //! The data source of the dictionary.
    //!@{
    Datasource *getDatasource() const { return datasource; }
    void setDatasource(Datasource *value) { datasource = value; }
    //!@}
    //! The lookup files; addLookUp() appends one.
    //!@{
    QList<LookupDictionary *> *getLookUp() const { return lookUp; }
    void setLookUp(QList<LookupDictionary *> *value) { lookUp = value; }
    void addLookUp(LookupDictionary *value) { lookUp->append(value); }
    //!@}

private:
    Datasource *datasource;
    QList<LookupDictionary *> *lookUp;
};

//! The dictionary with its data source and lookup files.
class MODEL_KELADMIN_EXPORT Dictionary
{
public:
    Dictionary();

    //! The root entity.
    //!@{
    TKxEntity *getRoot() const { return root; }
    void setRoot(TKxEntity *value) { root = value; }
    //!@}
    //! The dictionary's metadata.
    //!@{
    MetadataDictionary *getMetadataDictionary() const { return metadataDictionary; }
    void setMetadataDictionary(MetadataDictionary *value) { metadataDictionary = value; }
    //!@}

private:
    TKxEntity *root;
    MetadataDictionary *metadataDictionary;
};

//! The result shown after a lookup-checking run.
class MODEL_KELADMIN_EXPORT DtoReportRunCreation : public QObject
{
    Q_OBJECT

public:
    //! The four captions translated, the three values empty, no engine objects.
    explicit DtoReportRunCreation(QObject *parent = nullptr);
    ~DtoReportRunCreation() override;

    //! The report title.
    //!@{
    QString titleReport() const { return m_titleReport; }
    void setTitleReport(const QString &value) { m_titleReport = value; }
    //!@}
    //! The caption of the identification.
    //!@{
    QString idLabel() const { return m_idLabel; }
    void setIdLabel(const QString &value) { m_idLabel = value; }
    //!@}
    //! The caption of the label.
    //!@{
    QString labelLabel() const { return m_labelLabel; }
    void setLabelLabel(const QString &value) { m_labelLabel = value; }
    //!@}
    //! The caption of the file.
    //!@{
    QString dataFileLabel() const { return m_dataFileLabel; }
    void setDataFileLabel(const QString &value) { m_dataFileLabel = value; }
    //!@}
    //! The lookup identification.
    //!@{
    QString idValue() const { return m_idValue; }
    void setIdValue(const QString &value) { m_idValue = value; }
    //!@}
    //! The lookup label.
    //!@{
    QString labelValue() const { return m_labelValue; }
    void setLabelValue(const QString &value) { m_labelValue = value; }
    //!@}
    //! The lookup file.
    //!@{
    QString dataFileValue() const { return m_dataFileValue; }
    void setDataFileValue(const QString &value) { m_dataFileValue = value; }
    //!@}
    //! The caller's message list; not owned.
    QStringList *errorMessages() const { return m_errorMessages; }
    //! The messages of the run; not owned.
    void setErrorMessages(QStringList *value) { m_errorMessages = value; }

    //! The report dataset of the engine.
    //!@{
    std::shared_ptr<TKelDataset> getReport() const { return report; }
    void setReport(std::shared_ptr<TKelDataset> value) { report = std::move(value); }
    //!@}
    //! The engine's dictionary.
    //!@{
    std::shared_ptr<TKelDictionary> getDic() const { return dic; }
    void setDic(std::shared_ptr<TKelDictionary> value) { dic = std::move(value); }
    //!@}
    //! The engine's database creation information.
    //!@{
    std::shared_ptr<TKelDatabaseCreationInfo> getInfo() const { return info; }
    void setInfo(std::shared_ptr<TKelDatabaseCreationInfo> value) { info = std::move(value); }
    //!@}

private:
    QString m_titleReport;
    QString m_idLabel;
    QString m_labelLabel;
    QString m_dataFileLabel;
    QString m_idValue;
    QString m_labelValue;
    QString m_dataFileValue;
    QStringList *m_errorMessages = nullptr;
    std::shared_ptr<TKelDataset> report;
    std::shared_ptr<TKelDictionary> dic;
    std::shared_ptr<TKelDatabaseCreationInfo> info;
};

#endif // CONFIGMODEL_H

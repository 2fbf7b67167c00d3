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
    QString getName() const { return name; }
    void setName(const QString &value) { name = value; }
    QString getFolder() const { return folder; }
    void setFolder(const QString &value) { folder = value; }
    QString getSourceFile() const { return sourceFile; }
    void setSourceFile(const QString &value) { sourceFile = value; }
    QString getLabel() const { return label; }
    void setLabel(const QString &value) { label = value; }
    QString getAuthor() const { return author; }
    void setAuthor(const QString &value) { author = value; }
    //! The database's own protection setting, stored as entered.
    QString getPassword() const { return password; }
    void setPassword(const QString &value) { password = value; }
    QString getProject() const { return project; }
    void setProject(const QString &value) { project = value; }
    QString getGenerationType() const { return generationType; }
    void setGenerationType(const QString &value) { generationType = value; }
    QString &getFileFilter() { return fileFilter; }
    void setFileFilter(const QString &value) { fileFilter = value; }
    QString &getSelectFilter() { return selectFilter; }
    void setSelectFilter(const QString &value) { selectFilter = value; }
    QString &getFilter() { return filter; }
    void setFilter(const QString &value) { filter = value; }

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

class MODEL_KELADMIN_EXPORT ConfigOptions
{
public:
    bool getCreateNotAppMissingInRange() const { return createNotAppMissingInRange; }
    void setCreateNotAppMissingInRange(bool value) { createNotAppMissingInRange = value; }
    bool getCreateNoRanges() const { return createNoRanges; }
    void setCreateNoRanges(bool value) { createNoRanges = value; }

private:
    bool createNotAppMissingInRange = false;
    bool createNoRanges = false;
};

//! The choices for one entity of the database to create.
class MODEL_KELADMIN_EXPORT ConfigEntities
{
public:
    ConfigEntities();

    QString getName() const { return name; }
    void setName(const QString &value) { name = value; }
    QString getRecType() const { return recType; }
    void setRecType(const QString &value) { recType = value; }
    bool getAllVariables() const { return allVariables; }
    void setAllVariables(bool value) { allVariables = value; }
    bool getCheckSequence() const { return checkSequence; }
    void setCheckSequence(bool value) { checkSequence = value; }
    bool getCreateSDC() const { return createSDC; }
    void setCreateSDC(bool value) { createSDC = value; }
    bool getCheckDelete() const { return checkDelete; }
    void setCheckDelete(bool value) { checkDelete = value; }
    bool getCheckSelectable() const { return checkSelectable; }
    void setCheckSelectable(bool value) { checkSelectable = value; }
    QStringList *getVariables() const { return variables; }
    void setVariables(QStringList *value) { variables = value; }
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

    ConfigDb *getDataBase() const { return dataBase; }
    void setDataBase(ConfigDb *value) { dataBase = value; }
    ConfigOptions *getOptions() const { return options; }
    void setOptions(ConfigOptions *value) { options = value; }
    QList<ConfigEntities *> *getEntities() const { return entities; }
    void setEntities(QList<ConfigEntities *> *value) { entities = value; }
    void addEntities(ConfigEntities *value) { entities->append(value); }
    QString getPath() const { return path; }
    void setPath(QString value) { path = value; }

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

    QString getFileName() const { return fileName; }
    void setFileName(const QString &value) { fileName = value; }
    QString getFolder() const { return folder; }
    void setFolder(const QString &value) { folder = value; }
    bool getOptionDownload() const { return optionDownload; }
    void setOptionDownload(bool value) { optionDownload = value; }
    TKxEntity *getEntitySelect() const { return entitySelect; }
    void setEntitySelect(TKxEntity *value) { entitySelect = value; }
    bool getOptionSampling() const { return optionSampling; }
    void setOptionSampling(bool value) { optionSampling = value; }
    double getFactor() const { return factor; }
    void setFactor(double value) { factor = value; }
    bool getRadioOutEveryX() const { return radioOutEveryX; }
    void setRadioOutEveryX(bool value) { radioOutEveryX = value; }
    bool getChkRestartSampling() const { return chkRestartSampling; }
    void setChkRestartSampling(bool value) { chkRestartSampling = value; }
    TKxEntity *getEntitySampling() const { return entitySampling; }
    void setEntitySampling(TKxEntity *value) { entitySampling = value; }
    TKxEntity *getEntityRestartSampling() const { return entityRestartSampling; }
    void setEntityRestartSampling(TKxEntity *value) { entityRestartSampling = value; }
    bool getChkMultidiciplinaryEntities() const { return chkMultidiciplinaryEntities; }
    void setChkMultidiciplinaryEntities(bool value) { chkMultidiciplinaryEntities = value; }

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
    QString getUrlPrimaryBd() const { return urlPrimaryBd; }
    void setUrlPrimaryBd(const QString &value) { urlPrimaryBd = value; }
    QString getUrlSecondaryBd() const { return urlSecondaryBd; }
    void setUrlSecondaryBd(const QString &value) { urlSecondaryBd = value; }

private:
    QString urlPrimaryBd;
    QString urlSecondaryBd;
};

//! The hierarchy file to convert and the JSON file to write.
class MODEL_KELADMIN_EXPORT ConfigWipxToJson
{
public:
    QString getInputFile() const { return inputFile; }
    void setInputFile(const QString &value) { inputFile = value; }
    QString getOutputFile() const { return outputFile; }
    void setOutputFile(const QString &value) { outputFile = value; }

private:
    QString inputFile;
    QString outputFile;
};

//! One lookup file of a dictionary.
class MODEL_KELADMIN_EXPORT LookupDictionary
{
public:
    QString getName() const { return name; }
    void setName(const QString &value) { name = value; }
    QString getLabel() const { return label; }
    void setLabel(const QString &value) { label = value; }
    QString getFile() const { return file; }
    void setFile(const QString &value) { file = value; }
    QString getSeparator() const { return separator; }
    void setSeparator(const QString &value) { separator = value; }

private:
    QString name;
    QString label;
    QString file;
    QString separator;
};

class MODEL_KELADMIN_EXPORT MetadataDataSource
{
public:
    bool getCsvHasHeader() const { return csvHasHeader; }
    void setCsvHasHeader(bool value) { csvHasHeader = value; }
    QString getCsvSeparator() const { return csvSeparator; }
    void setCsvSeparator(QString value) { csvSeparator = value; }
    QStringList getCsvFields() const { return csvFields; }
    void setCsvFields(const QStringList &value) { csvFields = value; }
    void addCsvFields(QString value) { csvFields.append(value); }

private:
    bool csvHasHeader = false;
    QString csvSeparator;
    QStringList csvFields;
};

class MODEL_KELADMIN_EXPORT Datasource
{
public:
    Datasource();

    QString getType() const { return type; }
    void setType(const QString &value) { type = value; }
    QString getFile() const { return file; }
    void setFile(const QString &value) { file = value; }
    MetadataDataSource *getMetadataDataSource() const { return metadataDataSource; }
    void setMetadataDataSource(MetadataDataSource *value) { metadataDataSource = value; }

private:
    QString type;
    QString file;
    MetadataDataSource *metadataDataSource;
};

class MODEL_KELADMIN_EXPORT MetadataDictionary
{
public:
    MetadataDictionary();

    Datasource *getDatasource() const { return datasource; }
    void setDatasource(Datasource *value) { datasource = value; }
    QList<LookupDictionary *> *getLookUp() const { return lookUp; }
    void setLookUp(QList<LookupDictionary *> *value) { lookUp = value; }
    void addLookUp(LookupDictionary *value) { lookUp->append(value); }

private:
    Datasource *datasource;
    QList<LookupDictionary *> *lookUp;
};

//! The dictionary with its data source and lookup files.
class MODEL_KELADMIN_EXPORT Dictionary
{
public:
    Dictionary();

    TKxEntity *getRoot() const { return root; }
    void setRoot(TKxEntity *value) { root = value; }
    MetadataDictionary *getMetadataDictionary() const { return metadataDictionary; }
    void setMetadataDictionary(MetadataDictionary *value) { metadataDictionary = value; }

private:
    TKxEntity *root;
    MetadataDictionary *metadataDictionary;
};

//! The result shown after a lookup-checking run.
class MODEL_KELADMIN_EXPORT DtoReportRunCreation : public QObject
{
    Q_OBJECT

public:
    explicit DtoReportRunCreation(QObject *parent = nullptr);
    ~DtoReportRunCreation() override;

    QString titleReport() const { return m_titleReport; }
    void setTitleReport(const QString &value) { m_titleReport = value; }
    QString idLabel() const { return m_idLabel; }
    void setIdLabel(const QString &value) { m_idLabel = value; }
    QString labelLabel() const { return m_labelLabel; }
    void setLabelLabel(const QString &value) { m_labelLabel = value; }
    QString dataFileLabel() const { return m_dataFileLabel; }
    void setDataFileLabel(const QString &value) { m_dataFileLabel = value; }
    QString idValue() const { return m_idValue; }
    void setIdValue(const QString &value) { m_idValue = value; }
    QString labelValue() const { return m_labelValue; }
    void setLabelValue(const QString &value) { m_labelValue = value; }
    QString dataFileValue() const { return m_dataFileValue; }
    void setDataFileValue(const QString &value) { m_dataFileValue = value; }
    //! The caller's message list; not owned.
    QStringList *errorMessages() const { return m_errorMessages; }
    void setErrorMessages(QStringList *value) { m_errorMessages = value; }

    std::shared_ptr<TKelDataset> getReport() const { return report; }
    void setReport(std::shared_ptr<TKelDataset> value) { report = std::move(value); }
    std::shared_ptr<TKelDictionary> getDic() const { return dic; }
    void setDic(std::shared_ptr<TKelDictionary> value) { dic = std::move(value); }
    std::shared_ptr<TKelDatabaseCreationInfo> getInfo() const { return info; }
    void setInfo(std::shared_ptr<TKelDatabaseCreationInfo> value) { info = std::move(value); }

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

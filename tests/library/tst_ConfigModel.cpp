#include "model_KelAdmin.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <memory>

// Stand-ins for the database engine's types; the model only holds them.
class TKelDataset
{
};
class TKelDictionary
{
};
class TKelDatabaseCreationInfo
{
};

// ---- Config ---------------------------------------------------------------

TEST(Config, DefaultHoldsEmptyDatabaseSettingsAndFalseOptions)
{
    Config config;
    ConfigDb *db = config.getDataBase();
    ASSERT_NE(db, nullptr);
    const QString strings[] = {db->getName(), db->getFolder(), db->getSourceFile(), db->getLabel(),
                               db->getAuthor(), db->getPassword(), db->getProject(), db->getGenerationType(),
                               db->getFileFilter(), db->getSelectFilter(), db->getFilter()};
    for (const QString &s : strings)
        EXPECT_TRUE(s.isEmpty());
    ASSERT_NE(config.getOptions(), nullptr);
    EXPECT_FALSE(config.getOptions()->getCreateNotAppMissingInRange());
    EXPECT_FALSE(config.getOptions()->getCreateNoRanges());
    ASSERT_NE(config.getEntities(), nullptr);
    EXPECT_TRUE(config.getEntities()->isEmpty());
    EXPECT_TRUE(config.getPath().isEmpty());
}

TEST(Config, EntitiesAreAppended)
{
    Config config;
    ConfigEntities entities;
    config.addEntities(&entities);
    ASSERT_EQ(config.getEntities()->size(), 1);
    EXPECT_EQ(config.getEntities()->at(0), &entities);
    config.setPath(QStringLiteral("/tmp/run.lsd.json"));
    EXPECT_EQ(config.getPath(), QStringLiteral("/tmp/run.lsd.json"));
}

TEST(ConfigDb, FilterGettersReturnTheStoredStringByReference)
{
    ConfigDb db;
    db.getFileFilter() = QStringLiteral("*.dat");
    db.getSelectFilter() += QStringLiteral("REGION=1");
    db.getFilter().append(QStringLiteral("AGE>15"));
    EXPECT_EQ(db.getFileFilter(), QStringLiteral("*.dat"));
    EXPECT_EQ(db.getSelectFilter(), QStringLiteral("REGION=1"));
    EXPECT_EQ(db.getFilter(), QStringLiteral("AGE>15"));
    EXPECT_EQ(&db.getFilter(), &db.getFilter());
}

TEST(ConfigDb, PasswordIsStoredAsEntered)
{
    ConfigDb db;
    db.setPassword(QStringLiteral(" s3cret "));
    EXPECT_EQ(db.getPassword(), QStringLiteral(" s3cret "));
}

TEST(ConfigEntities, DefaultsAndVariableNames)
{
    ConfigEntities e;
    EXPECT_TRUE(e.getName().isEmpty());
    EXPECT_TRUE(e.getRecType().isEmpty());
    EXPECT_FALSE(e.getCreateSDC());
    EXPECT_FALSE(e.getCheckDelete());
    EXPECT_FALSE(e.getCheckSelectable());
    ASSERT_NE(e.getVariables(), nullptr);
    EXPECT_TRUE(e.getVariables()->isEmpty());
    e.addVariables(QStringLiteral("AGE"));
    e.addVariables(QStringLiteral("SEX"));
    EXPECT_EQ(*e.getVariables(), QStringList({QStringLiteral("AGE"), QStringLiteral("SEX")}));
}

// ---- Tools ----------------------------------------------------------------

TEST(ConfigToolsSplit, DefaultHoldsThreeDistinctDefaultEntities)
{
    ConfigToolsSplit split;
    TKxEntity *select = split.getEntitySelect();
    TKxEntity *sampling = split.getEntitySampling();
    TKxEntity *restart = split.getEntityRestartSampling();
    ASSERT_NE(select, nullptr);
    ASSERT_NE(sampling, nullptr);
    ASSERT_NE(restart, nullptr);
    EXPECT_NE(select, sampling);
    EXPECT_NE(select, restart);
    EXPECT_NE(sampling, restart);
    EXPECT_TRUE(select->getName().isEmpty());
    EXPECT_TRUE(sampling->getName().isEmpty());
    EXPECT_TRUE(restart->getName().isEmpty());
}

TEST(ConfigToolsSplit, OtherDefaultsAndTheMultidisciplinaryFlag)
{
    ConfigToolsSplit split;
    EXPECT_TRUE(split.getFileName().isEmpty());
    EXPECT_TRUE(split.getFolder().isEmpty());
    EXPECT_FALSE(split.getOptionDownload());
    EXPECT_FALSE(split.getOptionSampling());
    EXPECT_EQ(split.getFactor(), 0.0);
    EXPECT_FALSE(split.getRadioOutEveryX());
    EXPECT_FALSE(split.getChkRestartSampling());
    EXPECT_FALSE(split.getChkMultidiciplinaryEntities());
    split.setChkMultidiciplinaryEntities(true);
    EXPECT_TRUE(split.getChkMultidiciplinaryEntities());
}

TEST(ConfigToolsExtendAndWipx, StringsStartEmpty)
{
    ConfigToolsExtend extend;
    EXPECT_TRUE(extend.getUrlPrimaryBd().isEmpty());
    EXPECT_TRUE(extend.getUrlSecondaryBd().isEmpty());
    extend.setUrlPrimaryBd(QStringLiteral("https://primary"));
    EXPECT_EQ(extend.getUrlPrimaryBd(), QStringLiteral("https://primary"));

    ConfigWipxToJson wipx;
    EXPECT_TRUE(wipx.getInputFile().isEmpty());
    EXPECT_TRUE(wipx.getOutputFile().isEmpty());
    wipx.setInputFile(QStringLiteral("h.wip.json"));
    wipx.setOutputFile(QStringLiteral("h.json"));
    EXPECT_EQ(wipx.getInputFile(), QStringLiteral("h.wip.json"));
    EXPECT_EQ(wipx.getOutputFile(), QStringLiteral("h.json"));
}

// ---- Dictionary -----------------------------------------------------------

TEST(Dictionary, DefaultHoldsRootEntityDataSourceAndEmptyLookups)
{
    Dictionary dictionary;
    ASSERT_NE(dictionary.getRoot(), nullptr);
    EXPECT_TRUE(dictionary.getRoot()->getName().isEmpty());
    MetadataDictionary *meta = dictionary.getMetadataDictionary();
    ASSERT_NE(meta, nullptr);
    ASSERT_NE(meta->getDatasource(), nullptr);
    EXPECT_TRUE(meta->getDatasource()->getType().isEmpty());
    EXPECT_TRUE(meta->getDatasource()->getFile().isEmpty());
    ASSERT_NE(meta->getDatasource()->getMetadataDataSource(), nullptr);
    ASSERT_NE(meta->getLookUp(), nullptr);
    EXPECT_TRUE(meta->getLookUp()->isEmpty());
}

TEST(MetadataDictionary, LookupsAreAppended)
{
    MetadataDictionary meta;
    LookupDictionary lookup;
    EXPECT_TRUE(lookup.getName().isEmpty());
    EXPECT_TRUE(lookup.getSeparator().isEmpty());
    lookup.setName(QStringLiteral("REG"));
    lookup.setLabel(QStringLiteral("Regions"));
    lookup.setFile(QStringLiteral("reg.txt"));
    lookup.setSeparator(QStringLiteral(";"));
    meta.addLookUp(&lookup);
    ASSERT_EQ(meta.getLookUp()->size(), 1);
    EXPECT_EQ(meta.getLookUp()->at(0)->getFile(), QStringLiteral("reg.txt"));
}

TEST(MetadataDataSource, CsvFieldsAreHeldByValue)
{
    MetadataDataSource source;
    EXPECT_FALSE(source.getCsvHasHeader());
    EXPECT_TRUE(source.getCsvSeparator().isEmpty());
    EXPECT_TRUE(source.getCsvFields().isEmpty());
    source.addCsvFields(QStringLiteral("A"));
    QStringList copy = source.getCsvFields();
    copy.append(QStringLiteral("B"));
    EXPECT_EQ(source.getCsvFields(), QStringList({QStringLiteral("A")}));
    source.setCsvFields({QStringLiteral("X"), QStringLiteral("Y")});
    EXPECT_EQ(source.getCsvFields(), QStringList({QStringLiteral("X"), QStringLiteral("Y")}));
    source.setCsvSeparator(QStringLiteral(","));
    EXPECT_EQ(source.getCsvSeparator(), QStringLiteral(","));
}

// ---- DtoReportRunCreation -------------------------------------------------

TEST(DtoReportRunCreation, DefaultShowsTheFourLabelsAndThreeEmptyValues)
{
    DtoReportRunCreation dto;
    EXPECT_EQ(dto.titleReport(), QStringLiteral("Kelvo Lookup Checking"));
    EXPECT_EQ(dto.idLabel(), QStringLiteral("Lookup Identification"));
    EXPECT_EQ(dto.labelLabel(), QStringLiteral("Lookup Label"));
    EXPECT_EQ(dto.dataFileLabel(), QStringLiteral("Lookup File"));
    EXPECT_TRUE(dto.idValue().isEmpty());
    EXPECT_TRUE(dto.labelValue().isEmpty());
    EXPECT_TRUE(dto.dataFileValue().isEmpty());
    EXPECT_EQ(dto.errorMessages(), nullptr);
    EXPECT_EQ(dto.getReport(), nullptr);
    EXPECT_EQ(dto.getDic(), nullptr);
    EXPECT_EQ(dto.getInfo(), nullptr);
}

TEST(DtoReportRunCreation, IsAQObjectWithItsOwnMetaObject)
{
    QObject parent;
    auto *dto = new DtoReportRunCreation(&parent);
    EXPECT_STREQ(dto->metaObject()->className(), "DtoReportRunCreation");
    EXPECT_EQ(qobject_cast<DtoReportRunCreation *>(static_cast<QObject *>(dto)), dto);
    EXPECT_EQ(dto->parent(), &parent);
}

TEST(DtoReportRunCreation, SettersUseTheNamesWithoutGet)
{
    DtoReportRunCreation dto;
    QStringList messages{QStringLiteral("2_Key [01] already exists")};
    dto.setTitleReport(QStringLiteral("T"));
    dto.setIdLabel(QStringLiteral("I"));
    dto.setLabelLabel(QStringLiteral("L"));
    dto.setDataFileLabel(QStringLiteral("D"));
    dto.setIdValue(QStringLiteral("REG"));
    dto.setLabelValue(QStringLiteral("Regions"));
    dto.setDataFileValue(QStringLiteral("reg.txt"));
    dto.setErrorMessages(&messages);
    EXPECT_EQ(dto.titleReport(), QStringLiteral("T"));
    EXPECT_EQ(dto.idLabel(), QStringLiteral("I"));
    EXPECT_EQ(dto.labelLabel(), QStringLiteral("L"));
    EXPECT_EQ(dto.dataFileLabel(), QStringLiteral("D"));
    EXPECT_EQ(dto.idValue(), QStringLiteral("REG"));
    EXPECT_EQ(dto.labelValue(), QStringLiteral("Regions"));
    EXPECT_EQ(dto.dataFileValue(), QStringLiteral("reg.txt"));
    EXPECT_EQ(dto.errorMessages(), &messages);
}

TEST(DtoReportRunCreation, HoldsAndReleasesTheEngineObjects)
{
    auto report = std::make_shared<TKelDataset>();
    auto dic = std::make_shared<TKelDictionary>();
    auto info = std::make_shared<TKelDatabaseCreationInfo>();
    std::weak_ptr<TKelDataset> watch = report;
    {
        DtoReportRunCreation dto;
        dto.setReport(report);
        dto.setDic(dic);
        dto.setInfo(info);
        EXPECT_EQ(dto.getReport(), report);
        EXPECT_EQ(dto.getDic(), dic);
        EXPECT_EQ(dto.getInfo(), info);
        report.reset();
        EXPECT_FALSE(watch.expired());
    }
    EXPECT_TRUE(watch.expired());
    EXPECT_EQ(dic.use_count(), 1);
    EXPECT_EQ(info.use_count(), 1);
}

TEST(DtoReportRunCreation, MessagesListIsNotOwned)
{
    auto *messages = new QStringList{QStringLiteral("x")};
    {
        DtoReportRunCreation dto;
        dto.setErrorMessages(messages);
    }
    EXPECT_EQ(messages->size(), 1);
    delete messages;
}

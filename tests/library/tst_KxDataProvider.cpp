#include "model_KelAdmin.h"
#include "TestSupport.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class PlainField : public TGenericField
{
public:
    PlainField(TDataImport *owner, const QString &n, int type, int s, int sz, const QString &group = QString())
        : TGenericField(owner)
        , groupName(group)
    {
        name = n;
        fieldType = type;
        start = s;
        size = sz;
    }
    bool isMissing() override { return false; }
    bool isNotApplicable() override { return false; }
    bool isBlank() override { return false; }
    QString getGroup() override { return groupName; }

private:
    QString groupName;
};

// An importer of any type name, with two fields and a record-type layout.
class StubImport : public TDataImport
{
public:
    explicit StubImport(const QString &type)
        : type(type)
    {
    }
    QString getDataProviderId() override { return type + QStringLiteral("_stub"); }
    QString getDataProviderType() override { return type; }
    bool openFile() override
    {
        openDataImport();
        addField(new PlainField(this, "AGE", 1, 3, 2, "PERSON"));
        addField(new PlainField(this, "NAME", 3, 5, 4, "PERSON"));
        return true;
    }
    void getDictionary(QList<TKxSourceField *> *out, QStringList *columns) override
    {
        delimitedCalls++;
        delimitedColumns = columns;
        auto *f = new TKxSourceField;
        f->setFieldName("COLUMN1");
        out->append(f);
    }
    int getRecordTypeStart() override { return 7; }
    int getRecordTypeSize() override { return 2; }

    QString type;
    int delimitedCalls = 0;
    QStringList *delimitedColumns = nullptr;
};

} // namespace

TEST(KxDataProvider, FreshProviderIsEmpty)
{
    TKxDataProvider p;
    EXPECT_EQ(p.getSourceFields(), nullptr);
    EXPECT_EQ(p.getRecordTree(), nullptr);
    EXPECT_EQ(p.getImportData(), nullptr);
    EXPECT_EQ(p.getDataProviderTypeIndex(), 0);
    EXPECT_TRUE(p.getDataProviderType().isEmpty());
    EXPECT_EQ(*p.getProviderTypeNames(), QStringList({"NONE", "CSPRO", "CSV"}));
    EXPECT_EQ(p.getField("AGE"), nullptr);
    EXPECT_EQ(p.getFieldName("AGE"), QString());
    EXPECT_EQ(p.getFieldFromRecord("AGE", "PERSON"), nullptr);
    EXPECT_EQ(p.getRecord("H"), nullptr);
}

TEST(KxDataProvider, SetDataProviderTypeTakesOnlyCSProAndCSV)
{
    TKxDataProvider p;
    p.setDataProviderType("CSPRO");
    EXPECT_EQ(p.getDataProviderType(), QStringLiteral("CSPRO"));
    EXPECT_EQ(p.getDataProviderTypeIndex(), 1);
    p.setDataProviderType("CSV");
    EXPECT_EQ(p.getDataProviderType(), QStringLiteral("CSV"));
    EXPECT_EQ(p.getDataProviderTypeIndex(), 2);
    for (const char *rejected : {"NONE", "CSPRO8", "SPSS", "SSPS", "STATA", "csv"}) {
        p.setDataProviderType(rejected);
        EXPECT_EQ(p.getDataProviderType(), QStringLiteral("CSV")) << rejected;
        EXPECT_EQ(p.getDataProviderTypeIndex(), 2) << rejected;
    }
}

TEST(KxDataProvider, GenericGetFieldsFromStataImporterKeepsTheTypeButFillsTheFields)
{
    StubImport stata("STATA");
    stata.openFile();
    TKxDataProvider p;
    p.setDataProviderType("CSPRO");
    EXPECT_TRUE(p.genericGetFieldsFrom(&stata));
    EXPECT_EQ(p.getDataProviderType(), QStringLiteral("CSPRO"));
    EXPECT_EQ(p.getDataProviderTypeIndex(), 1);
    EXPECT_EQ(p.getDataProviderId(), QStringLiteral("STATA_stub"));
    ASSERT_NE(p.getSourceFields(), nullptr);
    ASSERT_EQ(p.getSourceFields()->count(), 2);
    EXPECT_EQ(p.getSourceFields()->at(0)->getFieldName(), QStringLiteral("AGE"));
    EXPECT_EQ(p.getSourceFields()->at(1)->getFieldName(), QStringLiteral("NAME"));
    EXPECT_EQ(stata.delimitedCalls, 0);
    qDeleteAll(*p.getSourceFields());
}

TEST(KxDataProvider, GenericGetFieldsFromFreshProviderWithSpssImporterLeavesTypeEmpty)
{
    StubImport spss("SPSS");
    spss.openFile();
    TKxDataProvider p;
    p.genericGetFieldsFrom(&spss);
    EXPECT_TRUE(p.getDataProviderType().isEmpty());
    EXPECT_EQ(p.getDataProviderTypeIndex(), 0);
    EXPECT_EQ(p.getSourceFields()->count(), 2);
    qDeleteAll(*p.getSourceFields());
}

TEST(KxDataProvider, GenericGetFieldsFromCopiesIdentityLayoutAndMakesARecord)
{
    QTemporaryDir dir;
    const QString layout = kxtest::writeFile(dir, "layout.dcf", "x");
    const QString data = kxtest::writeFile(dir, "data.dat", "x");
    StubImport cspro("CSPRO");
    cspro.setSourceName(layout);
    cspro.setDataSourceName(data);
    cspro.openFile();
    TKxDataProvider p;
    p.genericGetFieldsFrom(&cspro);
    EXPECT_EQ(p.getDataProviderType(), QStringLiteral("CSPRO"));
    EXPECT_EQ(p.getDataProviderTypeIndex(), 1);
    EXPECT_EQ(p.getImportData(), &cspro);
    EXPECT_EQ(p.getRecordTypeStart(), 7);
    EXPECT_EQ(p.getRecordTypeSize(), 2);
    EXPECT_EQ(p.getLayoutFileName(), QFileInfo(layout).absoluteFilePath());
    EXPECT_EQ(p.getDataFileName(), QFileInfo(data).absoluteFilePath());
    ASSERT_NE(p.getRecordTree(), nullptr);
    EXPECT_TRUE(p.getRecordTree()->getName().isEmpty());
    EXPECT_EQ(p.getRecordTree()->getFirstChild(), nullptr);

    // A second call starts a new field list and a new record node.
    TKxRecord *firstTree = p.getRecordTree();
    QList<TKxSourceField *> firstFields = *p.getSourceFields();
    p.genericGetFieldsFrom(&cspro);
    EXPECT_NE(p.getRecordTree(), firstTree);
    EXPECT_EQ(p.getSourceFields()->count(), 2);
    EXPECT_NE(p.getSourceFields()->at(0), firstFields.at(0));
    qDeleteAll(firstFields);
    qDeleteAll(*p.getSourceFields());
    delete firstTree;
    delete p.getRecordTree();
}

TEST(KxDataProvider, GenericGetFieldsFromWithoutAnImporterFillsNothing)
{
    TKxDataProvider p;
    p.setDataProviderType("CSPRO");
    EXPECT_FALSE(p.genericGetFieldsFrom(nullptr));
    EXPECT_EQ(p.getSourceFields(), nullptr);
    EXPECT_EQ(p.getRecordTree(), nullptr);
    EXPECT_EQ(p.getImportData(), nullptr);
    EXPECT_EQ(p.getDataProviderType(), QStringLiteral("CSPRO"));
}

TEST(KxDataProvider, GenericGetFieldsFromCsvImporterUsesTheDelimitedDictionary)
{
    // The importer's type is taken over first; "CSV" then picks the delimited form.
    StubImport csv("CSV");
    csv.openFile();
    TKxDataProvider p;
    p.genericGetFieldsFrom(&csv);
    EXPECT_EQ(p.getDataProviderType(), QStringLiteral("CSV"));
    EXPECT_EQ(csv.delimitedCalls, 1);
    EXPECT_EQ(csv.delimitedColumns, p.getCsvColumns());
    ASSERT_EQ(p.getSourceFields()->count(), 1);
    EXPECT_EQ(p.getSourceFields()->at(0)->getFieldName(), QStringLiteral("COLUMN1"));
    qDeleteAll(*p.getSourceFields());
}

TEST(KxDataProvider, GenericGetFieldsFromCSProImporterCarriesTheGroups)
{
    StubImport cspro("CSPRO");
    cspro.openFile();
    TKxDataProvider p;
    p.genericGetFieldsFrom(&cspro);
    TKxSourceField *age = p.getField("AGE");
    ASSERT_NE(age, nullptr);
    EXPECT_EQ(age->getGroup(), QStringLiteral("PERSON"));
    EXPECT_EQ(age->getFieldType(), QStringLiteral("INTEGER"));
    EXPECT_EQ(age->getDataProviderType(), QStringLiteral("CSPRO"));
    EXPECT_EQ(p.getFieldFromRecord("AGE", "person"), age);
    qDeleteAll(*p.getSourceFields());
}

TEST(KxDataProvider, GetFieldIsCaseSensitiveAndFindsTheFirst)
{
    StubImport cspro("CSPRO");
    cspro.openFile();
    cspro.addField(new PlainField(&cspro, "AGE", 2, 9, 3, "HOUSE"));
    TKxDataProvider p;
    p.genericGetFieldsFrom(&cspro);
    ASSERT_NE(p.getField("AGE"), nullptr);
    EXPECT_EQ(p.getField("AGE"), p.getSourceFields()->at(0));
    EXPECT_EQ(p.getField("age"), nullptr);
    EXPECT_EQ(p.getFieldName("NAME"), QStringLiteral("NAME"));
    EXPECT_EQ(p.getFieldName("name"), QString());
    qDeleteAll(*p.getSourceFields());
}

TEST(KxDataProvider, GetFieldFromRecordMatchesGroupIgnoringCase)
{
    StubImport cspro("CSPRO");
    cspro.openDataImport();
    cspro.addField(new PlainField(&cspro, "AGE", 1, 1, 2, "PERSON"));
    TKxDataProvider p;
    p.genericGetFieldsFrom(&cspro);
    EXPECT_EQ(p.getFieldFromRecord("AGE", "person"), p.getSourceFields()->at(0));
    EXPECT_EQ(p.getFieldFromRecord("AGE", "Person"), p.getSourceFields()->at(0));
    EXPECT_EQ(p.getFieldFromRecord("AGE", "HOUSE"), nullptr);
    EXPECT_EQ(p.getFieldFromRecord("age", "PERSON"), nullptr);
    qDeleteAll(*p.getSourceFields());
}

TEST(KxDataProvider, GetFieldFromRecordTakesAFieldWithoutGroupForAnyRecord)
{
    StubImport cspro("CSPRO");
    cspro.openDataImport();
    cspro.addField(new PlainField(&cspro, "ID", 1, 1, 2, "HOUSE"));
    cspro.addField(new PlainField(&cspro, "ID", 1, 1, 2, QString()));
    cspro.addField(new PlainField(&cspro, "ID", 1, 1, 2, "PERSON"));
    TKxDataProvider p;
    p.genericGetFieldsFrom(&cspro);
    EXPECT_EQ(p.getFieldFromRecord("ID", "house"), p.getSourceFields()->at(0));
    EXPECT_EQ(p.getFieldFromRecord("ID", "person"), p.getSourceFields()->at(1));
    EXPECT_EQ(p.getFieldFromRecord("ID", "anything"), p.getSourceFields()->at(1));
    qDeleteAll(*p.getSourceFields());
}

TEST(KxDataProvider, NullEntriesOfTheFieldListAreNoFields)
{
    // The list is the provider's but open to callers; an empty slot in it is
    // passed over by the look-ups.
    StubImport cspro("CSPRO");
    cspro.openFile();
    TKxDataProvider p;
    p.genericGetFieldsFrom(&cspro);
    TKxSourceField *age = p.getField("AGE");
    p.getSourceFields()->prepend(nullptr);
    EXPECT_EQ(p.getField("AGE"), age);
    EXPECT_EQ(p.getFieldFromRecord("AGE", "PERSON"), age);
    EXPECT_EQ(p.getField("NONE"), nullptr);
    EXPECT_EQ(p.getFieldFromRecord("NONE", "PERSON"), nullptr);
    qDeleteAll(*p.getSourceFields());
}

TEST(KxDataProvider, GetRecordSearchesTheRecordTree)
{
    StubImport cspro("CSPRO");
    TKxDataProvider p;
    p.genericGetFieldsFrom(&cspro);
    TKxRecord *root = p.getRecordTree();
    root->setName("COMMON");
    TKxRecord child;
    child.setName("PERSON");
    root->addChild(&child);
    EXPECT_EQ(p.getRecord("PERSON"), &child);
    EXPECT_EQ(p.getRecord("Common"), root);
    EXPECT_EQ(p.getRecord("HOUSE"), nullptr);
    root->setFirstChild(nullptr);
    delete root;
}

TEST(KxDataProvider, RecordTypeValueIsCutFromTheCurrentLine)
{
    TKxDataProvider p;
    p.setRecordTypeStart(2);
    p.setRecordTypeSize(3);
    p.setCurrentLine("01ABC999");
    EXPECT_EQ(p.getRecordTypeValue(), QStringLiteral("ABC"));
    // Length 4 reaches start + size - 1 = 4: the cut is taken, shortened by mid.
    p.setCurrentLine("01AB");
    EXPECT_EQ(p.getRecordTypeValue(), QStringLiteral("AB"));
    p.setCurrentLine("01A");
    EXPECT_EQ(p.getRecordTypeValue(), QString());
    p.setCurrentLine(QString());
    EXPECT_EQ(p.getRecordTypeValue(), QString());
}

TEST(KxDataProvider, GetRecordTypeSetsTheCharacterFF)
{
    TKxDataProvider p;
    p.getRecordType();
    EXPECT_EQ(p.getRecordTypeText(), QString(QChar(0x00FF)));
}

TEST(KxDataProvider, FindFieldBeforeTheRegistryExistsThrows106)
{
    _pLoaderManager = nullptr;
    TKxDataProvider p;
    p.setDataProviderType("CSPRO");
    int number = 0;
    EXPECT_TRUE(kxtest::catchKxError([&] { p.findField("AGE", "PERSON"); }, &number));
    EXPECT_EQ(number, 106);
}

TEST(KxDataProvider, FindFieldAfterInitDataClassLoaderIsNull)
{
    TLoaderManager::InitDataClassLoader();
    TKxDataProvider p;
    p.setDataProviderType("CSPRO");
    EXPECT_EQ(p.findField("AGE", "PERSON"), nullptr);
    p.setDataProviderType("CSV");
    EXPECT_EQ(p.findField("AGE", QString()), nullptr);
}

TEST(KxDataProvider, FindFieldOfARegisteredTypeMeetsError107OfTheRegistry)
{
    // Once a type is listed in the registry, findField asks GetDataClassLoader
    // for the importer, which fails with 107 for every type and leaves a new,
    // empty registry behind.
    TLoaderManager::InitDataClassLoader();
    _pLoaderManager->getTypeNames()->append(QStringLiteral("CSPRO"));
    TKxDataProvider p;
    p.setDataProviderType("CSPRO");
    int number = 0;
    QString text;
    EXPECT_TRUE(kxtest::catchKxError([&] { p.findField("AGE", "PERSON"); }, &number, nullptr, &text));
    EXPECT_EQ(number, 107);
    EXPECT_EQ(text, QStringLiteral("CSPRO"));
    EXPECT_TRUE(_pLoaderManager->getTypeNames()->isEmpty());
    EXPECT_EQ(p.findField("AGE", "PERSON"), nullptr);
}

TEST(KxDataProvider, OpenDataProviderResetsTheErrorNumberAndNeedsADataFile)
{
    TKxDataProvider p;
    _ErrorNumber = 42;
    EXPECT_FALSE(p.openDataProvider());
    EXPECT_EQ(_ErrorNumber, 0);
    p.setDataFileName("/no/such/file.dat");
    _ErrorNumber = 7;
    EXPECT_TRUE(p.openDataProvider());
    EXPECT_EQ(_ErrorNumber, 0);
    EXPECT_TRUE(p.closeDataProvider());
}

TEST(KxDataProvider, PlainAccessors)
{
    TKxDataProvider p;
    p.setDataProviderId("id");
    p.setDataProviderLabel("label");
    p.setLayoutFileName("a.dcf");
    p.setReferences(3);
    p.setRecordTypes(4);
    EXPECT_EQ(p.getDataProviderId(), QStringLiteral("id"));
    EXPECT_EQ(p.getDataProviderLabel(), QStringLiteral("label"));
    EXPECT_EQ(p.getLayoutFileName(), QStringLiteral("a.dcf"));
    EXPECT_EQ(p.getReferences(), 3);
    EXPECT_EQ(p.getRecordTypes(), 4);
}

// The source-field rules, on fields as the provider hands them out.
TEST(KxDataProvider, SourceFieldStart1Size3CutsBCDAndFromABCutsB)
{
    StubImport cspro("CSPRO");
    cspro.openDataImport();
    cspro.addField(new PlainField(&cspro, "F", 3, 1, 3));
    TKxDataProvider p;
    p.genericGetFieldsFrom(&cspro);
    TKxSourceField *f = p.getField("F");
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(f->getStringValue("ABCDE"), QStringLiteral("BCD"));
    EXPECT_EQ(f->getStringValue("AB"), QStringLiteral("B"));
    qDeleteAll(*p.getSourceFields());
}

TEST(KxDataProvider, SourceFieldsOfAnSpssImporterKeepNoProviderType)
{
    StubImport spss("SPSS");
    spss.openFile();
    TKxDataProvider p;
    p.genericGetFieldsFrom(&spss);
    EXPECT_TRUE(p.getSourceFields()->at(0)->getDataProviderType().isEmpty());
    qDeleteAll(*p.getSourceFields());
}

TEST(KxDataProvider, SourceFieldsOfAnSspsImporterTakeIndex3)
{
    StubImport ssps("SSPS");
    ssps.openFile();
    TKxDataProvider p;
    p.genericGetFieldsFrom(&ssps);
    EXPECT_EQ(p.getSourceFields()->at(0)->getDataProviderType(), QStringLiteral("SSPS"));
    EXPECT_EQ(p.getSourceFields()->at(0)->getDataProviderTypeIndex(), 3);
    // The provider itself knows no "SSPS".
    EXPECT_TRUE(p.getDataProviderType().isEmpty());
    qDeleteAll(*p.getSourceFields());
}

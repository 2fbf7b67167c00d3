#include "model_KelAdmin.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include <memory>

namespace {

class PlainField : public TGenericField
{
public:
    PlainField(const QString &fieldName, int type)
        : TGenericField(nullptr)
    {
        setName(fieldName);
        setFieldType(type);
    }
    bool isMissing() override { return false; }
    bool isNotApplicable() override { return false; }
    bool isBlank() override { return false; }
    QString getGroup() override { return group; }
    QString group;
};

class TestImport : public TDataImport
{
public:
    using TDataImport::TDataImport;
    using TDataImport::getDictionary;
    QString getDataProviderId() override { return QStringLiteral("TEST_") + getSourceName(); }
    QString getDataProviderType() override { return providerType; }
    bool openFile() override
    {
        ++openCount;
        openDataImport();
        addField(new PlainField(QStringLiteral("A"), 1));
        addField(new PlainField(QStringLiteral("B"), 3));
        return true;
    }
    QString providerType = QStringLiteral("CSPRO");
    int openCount = 0;
};

// Switches the working directory for the life of the object.
class WorkingDirectory
{
public:
    explicit WorkingDirectory(const QString &path)
        : previous(QDir::currentPath())
    {
        QDir::setCurrent(path);
    }
    ~WorkingDirectory() { QDir::setCurrent(previous); }

private:
    QString previous;
};

} // namespace

TEST(DataImport, ConstructorStoresTheNameUnresolved)
{
    TestImport a;
    EXPECT_TRUE(a.getSourceName().isEmpty());
    EXPECT_EQ(a.getFieldCount(), 0);
    TestImport b(QStringLiteral("relative/missing.dcf"));
    EXPECT_EQ(b.getSourceName(), QStringLiteral("relative/missing.dcf"));
}

TEST(DataImport, SetSourceNameOfAMissingFileLeavesItEmpty)
{
    TestImport i(QStringLiteral("before"));
    i.setSourceName(QStringLiteral("/no/such/folder/x.dcf"));
    EXPECT_TRUE(i.getSourceName().isEmpty());
}

TEST(DataImport, SetSourceNameMakesAnExistingPathAbsolute)
{
    QTemporaryDir dir;
    kxtest::writeFile(dir, QStringLiteral("d.dcf"), "x");
    WorkingDirectory cwd(dir.path());
    TestImport i;
    i.setSourceName(QStringLiteral("d.dcf"));
    EXPECT_EQ(i.getSourceName(), QDir(dir.path()).absoluteFilePath(QStringLiteral("d.dcf")));
}

TEST(DataImport, DataSourceThatExistsIsTakenAbsolute)
{
    QTemporaryDir dir;
    kxtest::writeFile(dir, QStringLiteral("x.dat"), "x");
    WorkingDirectory cwd(dir.path());
    TestImport i;
    i.setDataSourceName(QStringLiteral("x.dat"));
    EXPECT_EQ(i.getDataSourceName(), QDir(dir.path()).absoluteFilePath(QStringLiteral("x.dat")));
}

TEST(DataImport, DataSourceInTheDescriptionFolderIsJoinedWithoutSeparator)
{
    QTemporaryDir descriptionDir;
    QTemporaryDir workDir;
    kxtest::writeFile(descriptionDir, QStringLiteral("census.dcf"), "x");
    kxtest::writeFile(descriptionDir, QStringLiteral("x.dat"), "x");
    WorkingDirectory cwd(workDir.path());
    TestImport i;
    i.setSourceName(descriptionDir.filePath(QStringLiteral("census.dcf")));
    i.setDataSourceName(QStringLiteral("x.dat"));
    // The folder path with x.dat appended directly does not exist, so the
    // working-directory path is kept.
    EXPECT_EQ(i.getDataSourceName(), QDir(workDir.path()).absoluteFilePath(QStringLiteral("x.dat")));
}

TEST(DataImport, JoinedCandidateIsUsedWhenThatFileExists)
{
    QTemporaryDir parent;
    QDir(parent.path()).mkdir(QStringLiteral("desc"));
    QTemporaryDir workDir;
    kxtest::writeFile(parent, QStringLiteral("desc/census.dcf"), "x");
    // The folder ".../desc" joined directly with "x.dat" names ".../descx.dat".
    kxtest::writeFile(parent, QStringLiteral("descx.dat"), "x");
    WorkingDirectory cwd(workDir.path());
    TestImport i;
    i.setSourceName(parent.filePath(QStringLiteral("desc/census.dcf")));
    i.setDataSourceName(QStringLiteral("x.dat"));
    EXPECT_EQ(i.getDataSourceName(), QDir(parent.path()).absoluteFilePath(QStringLiteral("descx.dat")));
}

TEST(DataImport, SameNameTwiceIndexesTheLaterAndListsBoth)
{
    TestImport i;
    auto *first = new PlainField(QStringLiteral("AGE"), 1);
    auto *second = new PlainField(QStringLiteral("AGE"), 2);
    i.addField(first);
    i.addField(second);
    EXPECT_EQ(i.fieldByName(QStringLiteral("AGE")), second);
    EXPECT_EQ(i.getField(0), first);
    EXPECT_EQ(i.getField(1), second);
    delete first;
    delete second;
}

TEST(DataImport, FieldByNameIsCaseSensitive)
{
    TestImport i;
    PlainField f(QStringLiteral("AGE"), 1);
    i.addField(&f);
    EXPECT_EQ(i.fieldByName(QStringLiteral("age")), nullptr);
    EXPECT_EQ(i.fieldByName(QStringLiteral("AGE")), &f);
}

TEST(DataImport, GetFieldOutsideTheListIsNull)
{
    TestImport i;
    PlainField f(QStringLiteral("A"), 1);
    i.addField(&f);
    EXPECT_EQ(i.getField(1), nullptr);
    EXPECT_EQ(i.getField(-1), nullptr);
    EXPECT_EQ(i.getField(1000), nullptr);
}

TEST(DataImport, OpenDataImportStartsANewListWithoutDeletingFields)
{
    TestImport i;
    PlainField f(QStringLiteral("A"), 1);
    i.addField(&f);
    QList<TGenericField *> *old = i.getFields();
    i.openDataImport();
    EXPECT_EQ(i.getFieldCount(), 0);
    EXPECT_EQ(i.fieldByName(QStringLiteral("A")), nullptr);
    EXPECT_NE(i.getFields(), old);
    ASSERT_EQ(old->size(), 1);
    EXPECT_EQ(old->at(0)->getName(), QStringLiteral("A"));
    delete old;
}

TEST(DataImport, BaseVirtualsGiveNeutralAnswers)
{
    struct Bare : TDataImport
    {
        QString getDataProviderId() override { return QString(); }
        QString getDataProviderType() override { return QString(); }
    } bare;
    EXPECT_FALSE(bare.openFile());
    EXPECT_FALSE(bare.isMultiple());
    EXPECT_EQ(bare.getGroupCount(), 0);
    EXPECT_TRUE(bare.getGroupName(0).isEmpty());
    EXPECT_TRUE(bare.getGroupValue(0).isEmpty());
    EXPECT_EQ(bare.getRecordTypeIndex(QStringLiteral("H")), -1);
    EXPECT_TRUE(bare.getRecordTypeCurrent().isEmpty());
    EXPECT_EQ(bare.getRecordTypeStart(), 0);
    EXPECT_EQ(bare.getRecordTypeSize(), 0);
    EXPECT_TRUE(bare.closeDataImport());
    std::unique_ptr<QStringList> layout(bare.getLayoutSource());
    ASSERT_TRUE(layout);
    EXPECT_TRUE(layout->isEmpty());
    QList<TKxSourceField *> out;
    QStringList columns;
    bare.getDictionary(&out, &columns);
    EXPECT_TRUE(out.isEmpty());
}

TEST(DataImport, SelectLayoutSourceOpensAndListsNames)
{
    TestImport i;
    kxtest::MessageCollector log;
    std::unique_ptr<QStringList> names(i.selectLayoutSource());
    EXPECT_EQ(i.openCount, 1);
    EXPECT_EQ(*names, (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
    EXPECT_TRUE(log.contains(QStringLiteral("DataImport - selectLayoutSource")));
}

TEST(DataImport, TypeZeroAfterARealFieldIsDescribedAsReal)
{
    TestImport i;
    PlainField real(QStringLiteral("R"), 2);
    PlainField untyped(QStringLiteral("U"), 0);
    i.addField(&real);
    i.addField(&untyped);
    QList<TKxSourceField *> out;
    i.getDictionary(&out);
    ASSERT_EQ(out.size(), 2);
    EXPECT_EQ(out.at(1)->getFieldType(), QStringLiteral("REAL"));
    qDeleteAll(out);
}

TEST(DataImport, UntypedFirstFieldHasAnEmptyTypeName)
{
    TestImport i;
    PlainField untyped(QStringLiteral("U"), 0);
    PlainField text(QStringLiteral("T"), 3);
    PlainField integer(QStringLiteral("I"), 1);
    i.addField(&untyped);
    i.addField(&text);
    i.addField(&integer);
    QList<TKxSourceField *> out;
    i.getDictionary(&out);
    ASSERT_EQ(out.size(), 3);
    EXPECT_TRUE(out.at(0)->getFieldType().isEmpty());
    EXPECT_EQ(out.at(1)->getFieldType(), QStringLiteral("STRING"));
    EXPECT_EQ(out.at(2)->getFieldType(), QStringLiteral("INTEGER"));
    // The type name does not set the index.
    EXPECT_EQ(out.at(1)->getFieldTypeIndex(), 0);
    qDeleteAll(out);
}

TEST(DataImport, GetDictionaryCopiesEveryMember)
{
    TestImport i(QStringLiteral("/data/census.dcf"));
    PlainField f(QStringLiteral("AGE"), 1);
    f.setLabel(QStringLiteral("Age in years"));
    f.setDecimals(QStringLiteral("2"));
    f.setStart(12);
    f.setSize(3);
    f.setValueLabels(QStringLiteral("1 One\t"));
    f.setMinimum(QStringLiteral("0"));
    f.setMaximum(QStringLiteral("999"));
    f.setNotApplicableCode(QStringLiteral("998"));
    f.setMissingCode(QStringLiteral("999"));
    f.group = QStringLiteral("PERSON");
    i.addField(&f);

    QList<TKxSourceField *> out;
    i.getDictionary(&out);
    ASSERT_EQ(out.size(), 1);
    const TKxSourceField *s = out.at(0);
    EXPECT_EQ(s->getFieldName(), QStringLiteral("AGE"));
    EXPECT_EQ(s->getLabel(), QStringLiteral("Age in years"));
    EXPECT_EQ(s->getDecimals(), 2);
    EXPECT_EQ(s->getStart(), 12);
    EXPECT_EQ(s->getSize(), 3);
    EXPECT_EQ(s->getDataProviderId(), QStringLiteral("TEST_/data/census.dcf"));
    EXPECT_EQ(s->getDataProviderType(), QStringLiteral("CSPRO"));
    EXPECT_EQ(s->getDataProviderTypeIndex(), 1);
    EXPECT_EQ(s->getGroup(), QStringLiteral("PERSON"));
    EXPECT_EQ(s->getValueLabels(), QStringLiteral("1 One\t"));
    EXPECT_EQ(s->getMinimum(), QStringLiteral("0"));
    EXPECT_EQ(s->getMaximum(), QStringLiteral("999"));
    EXPECT_EQ(s->getNotApplicableCode(), QStringLiteral("998"));
    EXPECT_EQ(s->getMissingCode(), QStringLiteral("999"));
    qDeleteAll(out);
}

TEST(DataImport, GetDictionaryUnparsableDecimalsGiveZeroAndUnknownProviderTypeIsNotTaken)
{
    TestImport i;
    i.providerType = QStringLiteral("SPSS");
    PlainField f(QStringLiteral("X"), 2);
    f.setDecimals(QStringLiteral("two"));
    i.addField(&f);
    QList<TKxSourceField *> out;
    i.getDictionary(&out);
    ASSERT_EQ(out.size(), 1);
    EXPECT_EQ(out.at(0)->getDecimals(), 0);
    EXPECT_TRUE(out.at(0)->getDataProviderType().isEmpty());
    qDeleteAll(out);
}

TEST(DataImport, GetDictionaryWritesItsDebugLinesPerField)
{
    TestImport i;
    PlainField f(QStringLiteral("AGE"), 1);
    i.addField(&f);
    QList<TKxSourceField *> out;
    kxtest::MessageCollector log;
    i.getDictionary(&out);
    EXPECT_EQ(log.messages(), (QStringList{QStringLiteral("getDictionary FIELDS"),
                                           QStringLiteral("mySF->fieldName \"AGE\""),
                                           QStringLiteral("mySF->FieldType \"INTEGER\""),
                                           QStringLiteral("mySF->DataProviderType \"CSPRO\""),
                                           QStringLiteral("\n\n\n")}));
    qDeleteAll(out);
}

// Every importer reads a sample alike with the debug output on and off, and
// with it off no trace line reaches a message handler.
TEST(DataImport, ImportersReadTheSamplesAlikeWithDebugOutputOff)
{
    const auto fieldNames = [](const QString &sample, bool debugOff, QStringList *messages) {
        const QString path = kxtest::samplePath(sample);
        std::unique_ptr<TDataImport> importer;
        if (sample.endsWith(QLatin1String(".dcf"))) {
            auto *cspro = new TCSProDataImport(path);
            cspro->setDecimalChoice(TDecimalChoice::NoToAll);
            importer.reset(cspro);
        } else if (sample.endsWith(QLatin1String(".json"))) {
            importer.reset(new TCSProJsonDataImport(path));
        } else if (sample.endsWith(QLatin1String(".sav"))) {
            importer.reset(new TSPSSDataImport(path));
        } else {
            importer.reset(new TSTATADataImport(path));
        }
        kxtest::MessageCollector log;
        std::unique_ptr<kxtest::DebugOutputOff> off(debugOff ? new kxtest::DebugOutputOff : nullptr);
        importer->openFile();
        TKxDataProvider provider;
        provider.genericGetFieldsFrom(importer.get());
        QStringList names;
        for (TKxSourceField *field : *provider.getSourceFields())
            names << field->getFieldName();
        *messages = log.messages();
        qDeleteAll(*provider.getSourceFields());
        qDeleteAll(*importer->getFields());
        return names;
    };
    // census.dcf: 35 fields; census.json: 35 (its two subitems, "subitem":
    // true, are read as items); census.sav: 15; census.dta: 16.
    const QList<QPair<QString, int>> samples = {{QStringLiteral("census.dcf"), 35}, {QStringLiteral("census.json"), 35},
                                                {QStringLiteral("census.sav"), 15}, {QStringLiteral("census.dta"), 16}};
    for (const auto &sample : samples) {
        QStringList withLines;
        QStringList withoutLines;
        const QStringList on = fieldNames(sample.first, false, &withLines);
        const QStringList off = fieldNames(sample.first, true, &withoutLines);
        EXPECT_EQ(on.size(), sample.second) << sample.first.toStdString();
        EXPECT_EQ(off, on) << sample.first.toStdString();
        EXPECT_TRUE(withLines.contains(QStringLiteral("getDictionary FIELDS"))) << sample.first.toStdString();
        EXPECT_TRUE(withoutLines.isEmpty()) << sample.first.toStdString() << ": "
                                            << withoutLines.join(QLatin1Char('|')).toStdString();
    }
}

TEST(DataImport, EmptyFieldListLeavesOutUnchanged)
{
    TestImport i;
    QList<TKxSourceField *> out;
    auto *existing = new TKxSourceField;
    out.append(existing);
    i.getDictionary(&out);
    ASSERT_EQ(out.size(), 1);
    EXPECT_EQ(out.at(0), existing);
    delete existing;
}

TEST(DataImport, InitDataImportAsksForTheProviderType)
{
    struct Counting : TDataImport
    {
        QString getDataProviderId() override { return QString(); }
        QString getDataProviderType() override
        {
            ++asked;
            return QString();
        }
        int asked = 0;
    } c;
    c.initDataImport();
    EXPECT_EQ(c.asked, 1);
    c.registerIOFormat();
    EXPECT_EQ(c.asked, 1);
}

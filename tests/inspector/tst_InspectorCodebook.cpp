// --codebook: the file read by the codebook library, as its own format means
// it, printed as a table, JSON and CSV. The expected values are those of the
// samples' own text.
#include "InspectorRun.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>

using namespace kxinspecttest;
using kxtest::samplePath;
using kxtest::writeFile;

namespace {

QJsonObject variableNamed(const QJsonObject &root, const QString &name)
{
    for (const QJsonValue &v : root.value(QStringLiteral("variables")).toArray()) {
        if (v.toObject().value(QStringLiteral("name")).toString() == name)
            return v.toObject();
    }
    ADD_FAILURE() << "no variable " << name.toStdString();
    return QJsonObject();
}

TEST_F(Inspector, CodebookTableOfTheCSProSampleSaysWhatTheDictionarySays)
{
    const Outcome r = runInspector({QStringLiteral("--codebook"), samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    const QStringList lines = r.outLines();
    // [Dictionary]: Version=CSPro 7.7, Name=CENSUS2023_DICT, RecordTypeStart=1, RecordTypeLen=1, Positions=Relative.
    for (const char *line : {"Format:            cspro", "Format version:    CSPro 7.7",
                             "Name:              CENSUS2023_DICT",
                             "Label:             2023 Population and Housing Census",
                             "Record type:       start 1, length 1", "Positions:         relative",
                             "Records:           3", "Variables:         30"})
        EXPECT_TRUE(lines.contains(QString::fromUtf8(line))) << line;
    // ROOMS: Start=14, Len=2, Value=1:20;Rooms and Value=99;Not reported with Name=MISSING,Special.
    const QStringList rooms = lines.filter(QRegularExpression(QStringLiteral("^ROOMS ")));
    ASSERT_EQ(rooms.size(), 1);
    EXPECT_TRUE(rooms.first().contains(QStringLiteral("1:20=Rooms; 99=Not reported [MISSING]")))
        << rooms.first().toStdString();
    EXPECT_TRUE(rooms.first().contains(QRegularExpression(QStringLiteral("^ROOMS +HOUSING +14 +2 +1 +numeric"))))
        << rooms.first().toStdString();
}

TEST_F(Inspector, CodebookJsonCarriesRangesSpecialsAndQuotedCodesAsWritten)
{
    const Outcome r = runInspector({QStringLiteral("--codebook"), QStringLiteral("--json"),
                                    samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(root.value(QStringLiteral("kind")).toString(), QStringLiteral("codebook"));
    EXPECT_EQ(root.value(QStringLiteral("schemaVersion")).toInt(), 1);
    EXPECT_EQ(root.value(QStringLiteral("rowCount")), QJsonValue());
    EXPECT_EQ(root.value(QStringLiteral("records")).toArray().size(), 3);

    const QJsonObject rooms = variableNamed(root, QStringLiteral("ROOMS"));
    EXPECT_EQ(rooms.value(QStringLiteral("start")).toInt(), 14);
    EXPECT_EQ(rooms.value(QStringLiteral("width")).toInt(), 2);
    EXPECT_EQ(rooms.value(QStringLiteral("record")).toString(), QStringLiteral("HOUSING"));
    const QJsonArray values =
        rooms.value(QStringLiteral("valueSets")).toArray().at(0).toObject().value(QStringLiteral("values")).toArray();
    ASSERT_EQ(values.size(), 2);
    const QJsonObject range = values.at(0).toObject().value(QStringLiteral("codes")).toArray().at(0).toObject();
    EXPECT_EQ(range.value(QStringLiteral("from")).toString(), QStringLiteral("1"));
    EXPECT_EQ(range.value(QStringLiteral("to")).toString(), QStringLiteral("20"));
    EXPECT_EQ(values.at(1).toObject().value(QStringLiteral("special")).toString(), QStringLiteral("MISSING"));
    const QJsonArray missing = rooms.value(QStringLiteral("missing")).toArray();
    ASSERT_EQ(missing.size(), 1);
    EXPECT_EQ(missing.at(0).toObject().value(QStringLiteral("from")).toString(), QStringLiteral("99"));

    // WALLS: DataType=Alpha, Value='A';Brick or concrete blocks: the code is A, without its quotes.
    const QJsonObject walls = variableNamed(root, QStringLiteral("WALLS"));
    EXPECT_EQ(walls.value(QStringLiteral("storage")).toString(), QStringLiteral("text"));
    const QJsonObject first = walls.value(QStringLiteral("valueSets"))
                                  .toArray().at(0).toObject().value(QStringLiteral("values"))
                                  .toArray().at(0).toObject();
    EXPECT_EQ(first.value(QStringLiteral("codes")).toArray().at(0).toObject().value(QStringLiteral("from")).toString(),
              QStringLiteral("A"));
    EXPECT_EQ(first.value(QStringLiteral("labels")).toArray().at(0).toString(),
              QStringLiteral("Brick or concrete blocks"));

    // PROVINCE is an identification item: no record.
    const QJsonObject province = variableNamed(root, QStringLiteral("PROVINCE"));
    EXPECT_TRUE(province.value(QStringLiteral("isId")).toBool());
    EXPECT_EQ(province.value(QStringLiteral("record")), QJsonValue());
}

TEST_F(Inspector, CodebookOfTheSpssSampleHasItsRowsAndWholeFormats)
{
    const Outcome r = runInspector({QStringLiteral("--codebook"), QStringLiteral("--json"),
                                    samplePath(QStringLiteral("census.sav"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    // samples/census.sav: 12 rows, 15 variables (samples/README.md).
    EXPECT_EQ(root.value(QStringLiteral("format")).toString(), QStringLiteral("spss"));
    EXPECT_EQ(root.value(QStringLiteral("rowCount")).toInt(), 12);
    EXPECT_EQ(root.value(QStringLiteral("variables")).toArray().size(), 15);
    EXPECT_EQ(root.value(QStringLiteral("records")).toArray().size(), 0);
    // A string of format A24: the whole format, width 24 (not its first digit).
    bool found = false;
    for (const QJsonValue &v : root.value(QStringLiteral("variables")).toArray()) {
        if (v.toObject().value(QStringLiteral("format")).toString() == QLatin1String("A24")) {
            found = true;
            EXPECT_EQ(v.toObject().value(QStringLiteral("width")).toInt(), 24);
            EXPECT_EQ(v.toObject().value(QStringLiteral("storage")).toString(), QStringLiteral("text"));
        }
    }
    EXPECT_TRUE(found);
}

TEST_F(Inspector, CodebookCsvHasOneRowPerVariableAndALabelColumnPerLanguage)
{
    const QByteArray dictionary = "[Dictionary]\nVersion=CSPro 7.7\nName=D\nRecordTypeStart=0\nRecordTypeLen=0\n"
                                  "Positions=Absolute\n[Languages]\nEN=English\nFR=Fran\xc3\xa7" "ais\n"
                                  "[Level]\nName=L\n[IdItems]\n[Item]\nLabel=Sex|Sexe\nName=SEX\nStart=1\nLen=1\n"
                                  "[Record]\nName=R\nRecordTypeValue=''\n[Item]\nLabel=Age|\nName=AGE\nStart=2\nLen=2\n";
    const QString path = writeFile(dir, QStringLiteral("two-languages.dcf"), dictionary);
    const Outcome r = runInspector({QStringLiteral("--codebook"), QStringLiteral("--csv"), path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QStringList records = csvRecordsOf(r.out);
    ASSERT_EQ(records.size(), 1 + 2);
    EXPECT_EQ(records.at(0), QStringLiteral("NAME,RECORD,START,WIDTH,OCCURRENCES,STORAGE,DECIMALS,FORMAT,LABEL,"
                                            "LABEL:FR,VALUES,MISSING"));
    EXPECT_EQ(records.at(1), QStringLiteral("SEX,\"(id, level 1)\",1,1,1,numeric,0,,Sex,Sexe,,"));
    // An empty second segment means the primary label.
    EXPECT_EQ(records.at(2), QStringLiteral("AGE,R,2,2,1,numeric,0,,Age,Age,,"));
}

struct CodebookUsageCase
{
    const char *name;
    QStringList args;
    const char *problem;
};

TEST_F(Inspector, CodebookRejectsTheOptionsOfTheFrontEndsReading)
{
    const CodebookUsageCase cases[] = {
        {"Lookup", {"--codebook", "--lookup", "a.txt", "--separator", "tab"},
         "keladmin-inspect: --codebook applies to dictionaries, not to --lookup"},
        {"Decimal", {"--codebook", "--decimal", "yes-to-all", "a.dcf"},
         "keladmin-inspect: --decimal, --no-notes, --fail-on-notes and --html apply to the front end's reading, "
         "not to --codebook"},
        {"FailOnNotes", {"--codebook", "--fail-on-notes", "a.dcf"},
         "keladmin-inspect: --decimal, --no-notes, --fail-on-notes and --html apply to the front end's reading, "
         "not to --codebook"},
    };
    for (const CodebookUsageCase &c : cases) {
        const Outcome r = runInspector(c.args);
        ASSERT_TRUE(r.finished) << c.name;
        EXPECT_EQ(r.exitCode, 2) << c.name;
        ASSERT_FALSE(r.errLines().isEmpty()) << c.name;
        EXPECT_EQ(r.errLines().first(), QString::fromUtf8(c.problem)) << c.name;
    }
}

TEST_F(Inspector, CodebookOfAFileThatCannotBeReadIsOneLineAndStatusOne)
{
    const Outcome missing = runInspector({QStringLiteral("--codebook"), QStringLiteral("absent.dcf")}, dir.path());
    ASSERT_TRUE(missing.finished);
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_TRUE(missing.out.isEmpty());
    EXPECT_EQ(missing.errLines(), QStringList{"keladmin-inspect: absent.dcf: no such file"});

    writeFile(dir, QStringLiteral("table.csv"), "a,b\n1,2\n");
    const Outcome unknown = runInspector({QStringLiteral("--codebook"), QStringLiteral("table.csv")}, dir.path());
    ASSERT_TRUE(unknown.finished);
    EXPECT_EQ(unknown.exitCode, 1);
    ASSERT_EQ(unknown.errLines().size(), 1);
    EXPECT_TRUE(unknown.errLines().first().startsWith(
        QStringLiteral("keladmin-inspect: table.csv: format not recognised")))
        << unknown.err.toStdString();
}

} // namespace

// The bundled samples read end to end: fields, notes, what SPSS and Stata files say about themselves.
#include "InspectorRun.h"

#include "FixtureReadStat.h"
#include "TestSupport.h"
#include "model_KelAdmin.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <readstat.h>

using namespace kxinspecttest;
using kxtest::writeFile;
using kxtest::samplePath;

namespace {

// ------------------------------------------------------------------ CSPro text sample

TEST_F(Inspector, CSProTextSampleTableShowsIdentityRecordTypesGroupsAndFields)
{
    const QString path = samplePath(QStringLiteral("census.dcf"));
    const Outcome r = runInspector({path});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    const QStringList lines = r.outLines();
    EXPECT_TRUE(lines.contains(QStringLiteral("Format:            cspro (detected)")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Provider id:       CSPRO_") + path));
    EXPECT_TRUE(lines.contains(QStringLiteral("Provider type:     CSPRO")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Record type:       start 1, length 1")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Groups:            3")));
    EXPECT_TRUE(lines.contains(QStringLiteral("  HOUSING=H  (14 fields)")));
    EXPECT_TRUE(lines.contains(QStringLiteral("  PERSON=P  (12 fields)")));
    EXPECT_TRUE(lines.contains(QStringLiteral("  DEATH=D  (4 fields)")));
    EXPECT_TRUE(lines.contains(QStringLiteral("Fields:            35")));
    // Header row, then one row per field; occurrence names show their control character escaped.
    const int header = lines.indexOf(QRegularExpression(QStringLiteral("^NAME +LABEL +TYPE +START +SIZE +DEC +MIN +MAX "
                                                                        "+MISSING +NOTAPPL +GROUP +VALUE LABELS$")));
    ASSERT_GE(header, 0);
    // The field rows end where the reading notes begin.
    const int notes = lines.indexOf(QRegularExpression(QStringLiteral("Notes: +[0-9]+")));
    ASSERT_GT(notes, header);
    EXPECT_EQ(lines.mid(header + 1, notes - header - 1).filter(QRegularExpression(QStringLiteral("\\S"))).size(), 35);
    EXPECT_TRUE(lines.at(header + 1).startsWith(QStringLiteral("PROVINCE ")));
    EXPECT_TRUE(lines.at(header + 1).endsWith(QStringLiteral("1=North; 2=South; 3=East; 4=West; 5=Capital district")));
    const QStringList assets = lines.filter(QRegularExpression(QStringLiteral("^ASSET_\\\\u000[1-6] ")));
    EXPECT_EQ(assets.size(), 6);
}

TEST_F(Inspector, CSProTextSampleAsJson)
{
    const QString path = samplePath(QStringLiteral("census.dcf"));
    const Outcome r = runInspector({QStringLiteral("--json"), path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(str(root, "file"), path);
    EXPECT_EQ(str(root, "format"), QStringLiteral("cspro"));
    EXPECT_EQ(str(root, "providerId"), QStringLiteral("CSPRO_") + path);
    EXPECT_EQ(str(root, "providerType"), QStringLiteral("CSPRO"));
    // The data provider takes over the type "CSPRO".
    EXPECT_EQ(str(root, "descriptionType"), QStringLiteral("CSPRO"));
    EXPECT_EQ(num(root, "recordTypeStart"), 1);
    EXPECT_EQ(num(root, "recordTypeLength"), 1);
    const QJsonArray groups = root.value(QStringLiteral("groups")).toArray();
    ASSERT_EQ(groups.size(), 3);
    EXPECT_EQ(str(groups.at(0).toObject(), "name"), QStringLiteral("HOUSING"));
    EXPECT_EQ(str(groups.at(0).toObject(), "recordType"), QStringLiteral("H"));
    EXPECT_EQ(str(groups.at(2).toObject(), "name"), QStringLiteral("DEATH"));
    EXPECT_EQ(str(groups.at(2).toObject(), "recordType"), QStringLiteral("D"));
    EXPECT_EQ(root.value(QStringLiteral("fields")).toArray().size(), 35);

    // Identification items belong to the record "Common".
    EXPECT_EQ(str(fieldNamed(root, "PROVINCE"), "group"), QStringLiteral("Common"));

    // Six occurrences named with the occurrence number as one character, one column apart.
    for (int k = 1; k <= 6; ++k) {
        const QJsonObject asset = fieldNamed(root, QStringLiteral("ASSET_") + QChar(k));
        EXPECT_EQ(num(asset, "start"), 18 + k);
        EXPECT_EQ(num(asset, "size"), 1);
        EXPECT_EQ(str(asset, "group"), QStringLiteral("HOUSING"));
        EXPECT_EQ(codesOf(asset), (QStringList{"1", "2"}));
    }

    // A range is stored as its two bound codes; bounds come from the codes.
    const QJsonObject age = fieldNamed(root, "AGE");
    EXPECT_EQ(str(age, "type"), QStringLiteral("INTEGER"));
    EXPECT_EQ(codesOf(age), (QStringList{"0", "97", "98", "999"}));
    EXPECT_EQ(str(age, "minimum"), QStringLiteral("0"));
    EXPECT_EQ(str(age, "maximum"), QStringLiteral("999"));
    EXPECT_EQ(str(age, "group"), QStringLiteral("PERSON"));
    const QJsonObject rooms = fieldNamed(root, "ROOMS");
    EXPECT_EQ(codesOf(rooms), (QStringList{"1", "20", "99"}));
    EXPECT_EQ(str(rooms, "minimum"), QStringLiteral("1"));
    EXPECT_EQ(str(rooms, "maximum"), QStringLiteral("99"));

    // The usual "Name=MISSING,Special" line leaves the entry ordinary: no missing code.
    const QJsonObject dwelling = fieldNamed(root, "DWELLING");
    EXPECT_EQ(str(dwelling, "missingCode"), QString());
    EXPECT_TRUE(codesOf(dwelling).contains(QStringLiteral("9")));
    EXPECT_EQ(str(fieldNamed(root, "SCHOOL"), "notApplicableCode"), QString());

    // Alpha codes keep their closing apostrophe; a text item with values gets minimum "0".
    const QJsonObject walls = fieldNamed(root, "WALLS");
    EXPECT_EQ(str(walls, "type"), QStringLiteral("STRING"));
    EXPECT_EQ(codesOf(walls), (QStringList{"A'", "B'", "C'", "X'"}));
    EXPECT_EQ(str(walls, "minimum"), QStringLiteral("0"));
    EXPECT_EQ(str(walls, "maximum"), QString());
    const QJsonObject address = fieldNamed(root, "ADDRESS");
    EXPECT_EQ(str(address, "minimum"), QString());
    EXPECT_EQ(str(address, "maximum"), QString());

    // Implied decimals: length 7 with 2 decimals gives five nines.
    const QJsonObject rent = fieldNamed(root, "RENT");
    EXPECT_EQ(str(rent, "type"), QStringLiteral("REAL"));
    EXPECT_EQ(num(rent, "decimals"), 2);
    EXPECT_EQ(str(rent, "maximum"), QStringLiteral("99999"));
    EXPECT_EQ(str(fieldNamed(root, "INCOME"), "maximum"), QStringLiteral("999999"));

    // Subitems are read like items and overlap their parent.
    const QJsonObject year = fieldNamed(root, "BIRTHYEAR");
    EXPECT_EQ(num(year, "start"), 20);
    EXPECT_EQ(num(year, "size"), 4);
}

TEST_F(Inspector, DecimalValueSetIsDroppedByDefault)
{
    const Outcome r = runInspector({QStringLiteral("--json"), samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0);
    const QJsonObject land = fieldNamed(jsonOf(r), "LANDAREA");
    EXPECT_TRUE(codesOf(land).isEmpty());
    // No value set, a decimal character present: length minus one nines.
    EXPECT_EQ(str(land, "maximum"), QStringLiteral("9999"));
    EXPECT_EQ(num(land, "decimals"), 1);
}

TEST_F(Inspector, DecimalYesToAllTurnsDecimalCodesIntoZeroAndKeepsTheValueSet)
{
    const Outcome r = runInspector(
        {QStringLiteral("--decimal"), QStringLiteral("yes-to-all"), QStringLiteral("--json"),
         samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject land = fieldNamed(jsonOf(r), "LANDAREA");
    EXPECT_EQ(codesOf(land), (QStringList{"0", "1", "999"}));
    EXPECT_EQ(labelsOf(land).at(0), QStringLiteral("Under one hectare"));
    EXPECT_EQ(str(land, "minimum"), QStringLiteral("0"));
    EXPECT_EQ(str(land, "maximum"), QStringLiteral("999"));
}

TEST_F(Inspector, DecimalNoToAllDropsTheValueSet)
{
    const Outcome r = runInspector(
        {QStringLiteral("--decimal"), QStringLiteral("no-to-all"), QStringLiteral("--json"),
         samplePath(QStringLiteral("census.dcf"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0);
    EXPECT_TRUE(codesOf(fieldNamed(jsonOf(r), "LANDAREA")).isEmpty());
    EXPECT_TRUE(r.err.isEmpty());
}

TEST_F(Inspector, DecimalAskWithoutDisplayDoesNotWaitAndAnswersNoToAll)
{
    const QString path = samplePath(QStringLiteral("census.dcf"));
    const Outcome r = runInspector({QStringLiteral("--decimal"), QStringLiteral("ask"), QStringLiteral("--json"), path});
    ASSERT_TRUE(r.finished) << "the inspector waited for a dialog";
    ASSERT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.errLines(), QStringList{QStringLiteral("keladmin-inspect: ") + path
                                        + QStringLiteral(": note: no display, the decimal prompt is answered "
                                                         "no-to-all")});
    EXPECT_TRUE(codesOf(fieldNamed(jsonOf(r), "LANDAREA")).isEmpty());
}

TEST_F(Inspector, DecimalAskOnTheOffscreenOrMinimalPlatformCountsAsNoDisplay)
{
    const QString path = samplePath(QStringLiteral("census.dcf"));
    const QList<QPair<QString, QString>> displays[] = {
        {{QStringLiteral("DISPLAY"), QStringLiteral(":99")}, {QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen")}},
        {{QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("wayland-0")},
         {QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("minimal")}}};
    for (const auto &environment : displays) {
        const Outcome r = runInspector({QStringLiteral("--decimal"), QStringLiteral("ask"), path}, QString(), environment);
        ASSERT_TRUE(r.finished) << "the inspector waited for a dialog";
        EXPECT_EQ(r.exitCode, 0);
        EXPECT_EQ(r.errLines(), QStringList{QStringLiteral("keladmin-inspect: ") + path
                                            + QStringLiteral(": note: no display, the decimal prompt is answered "
                                                             "no-to-all")});
    }
}

TEST_F(Inspector, FormatIsDetectedAfterAByteOrderMarkAndBlankLines)
{
    writeFile(dir, QStringLiteral("bom.txt"), "\xEF\xBB\xBF\n\n[Dictionary]\nName=D\n[Item]\nName=A\nStart=1\nLen=2\n");
    const Outcome r = runInspector({QStringLiteral("--json"), dir.filePath(QStringLiteral("bom.txt"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(str(root, "format"), QStringLiteral("cspro"));
    EXPECT_TRUE(root.value(QStringLiteral("formatDetected")).toBool());
    EXPECT_EQ(str(fieldNamed(root, "A"), "maximum"), QStringLiteral("99"));
}

TEST_F(Inspector, ForcedFormatIsReportedAsForced)
{
    const Outcome r = runInspector({QStringLiteral("--format"), QStringLiteral("cspro8"),
                                samplePath(QStringLiteral("census.json"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.outLines().contains(QStringLiteral("Format:            cspro8 (forced)")));
}

// ------------------------------------------------------------------ CSPro 8 JSON sample

TEST_F(Inspector, CSProJsonSampleAsJson)
{
    const QString path = samplePath(QStringLiteral("census.json"));
    const Outcome r = runInspector({QStringLiteral("--json"), path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(str(root, "format"), QStringLiteral("cspro8"));
    EXPECT_EQ(str(root, "providerId"), QStringLiteral("CSPRO8_") + path);
    EXPECT_EQ(str(root, "providerType"), QStringLiteral("CSPRO8"));
    // The data provider does not take over "CSPRO8".
    EXPECT_EQ(str(root, "descriptionType"), QString());
    EXPECT_EQ(num(root, "recordTypeStart"), 1);
    EXPECT_EQ(num(root, "recordTypeLength"), 1);
    EXPECT_EQ(root.value(QStringLiteral("groups")).toArray().size(), 3);
    // The subitems ("subitem": true) are read as items: 35 fields, as from the text form.
    EXPECT_EQ(root.value(QStringLiteral("fields")).toArray().size(), 35);

    // Relative positions and no record-item starts: HOUSING's items are laid
    // out from column 1 (DWELLING 1, ROOMS 2-3, WALLS 4, WATER 5-6), so the
    // six ASSET copies sit at 7 to 12.
    for (int k = 1; k <= 6; ++k) {
        const QJsonObject asset = fieldNamed(root, QStringLiteral("ASSET_%1").arg(k));
        EXPECT_EQ(num(asset, "start"), 6 + k);
        EXPECT_EQ(codesOf(asset), (QStringList{"1", "2"}));
    }
    // A range stays one entry "low:high", which reads as the number 0.
    const QJsonObject rooms = fieldNamed(root, "ROOMS");
    EXPECT_EQ(codesOf(rooms), (QStringList{"0", "99"}));
    EXPECT_EQ(str(rooms, "minimum"), QStringLiteral("0"));
    EXPECT_EQ(str(rooms, "maximum"), QStringLiteral("99"));
    // No number of decimals is read from JSON.
    const QJsonObject rent = fieldNamed(root, "RENT");
    EXPECT_EQ(str(rent, "type"), QStringLiteral("INTEGER"));
    EXPECT_EQ(num(rent, "decimals"), 0);
    EXPECT_EQ(str(rent, "maximum"), QStringLiteral("9999999"));
    // Alpha codes are kept as written.
    EXPECT_EQ(codesOf(fieldNamed(root, "WALLS")), (QStringList{"A", "B", "C", "X"}));
}

// ------------------------------------------------------------------ SPSS and Stata samples

TEST_F(Inspector, SpssSampleAsJson)
{
    const QString path = samplePath(QStringLiteral("census.sav"));
    const Outcome r = runInspector({QStringLiteral("--json"), path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(str(root, "format"), QStringLiteral("spss"));
    EXPECT_EQ(str(root, "providerId"), QStringLiteral("SPSS_") + path);
    EXPECT_EQ(str(root, "providerType"), QStringLiteral("SPSS"));
    EXPECT_EQ(str(root, "descriptionType"), QString());
    EXPECT_EQ(num(root, "recordTypeStart"), 0);
    EXPECT_EQ(num(root, "recordTypeLength"), 0);
    EXPECT_TRUE(root.value(QStringLiteral("groups")).toArray().isEmpty());
    EXPECT_EQ(root.value(QStringLiteral("fields")).toArray().size(), 15);

    const QJsonObject sex = fieldNamed(root, "sex");
    EXPECT_EQ(str(sex, "label"), QStringLiteral("Sex"));
    EXPECT_EQ(str(sex, "type"), QStringLiteral("INTEGER"));
    EXPECT_EQ(codesOf(sex), (QStringList{"1", "2"}));
    EXPECT_EQ(labelsOf(sex), (QStringList{"Male", "Female"}));
    EXPECT_EQ(str(sex, "minimum"), QStringLiteral("1"));
    EXPECT_EQ(str(sex, "maximum"), QStringLiteral("2"));
    // Unlabelled: "0" and the width's nines; the width is the digit after the format letter.
    const QJsonObject district = fieldNamed(root, "district");
    EXPECT_EQ(num(district, "size"), 2);
    EXPECT_EQ(str(district, "minimum"), QStringLiteral("0"));
    EXPECT_EQ(str(district, "maximum"), QStringLiteral("99"));
    EXPECT_EQ(str(fieldNamed(root, "income"), "type"), QStringLiteral("REAL"));
    // A24 has the width 2; strings get no bounds, and their value labels carry the string values.
    const QJsonObject fullname = fieldNamed(root, "fullname");
    EXPECT_EQ(str(fullname, "type"), QStringLiteral("STRING"));
    EXPECT_EQ(num(fullname, "size"), 2);
    EXPECT_EQ(str(fullname, "minimum"), QString());
    EXPECT_EQ(str(fullname, "maximum"), QString());
    const QJsonObject occup = fieldNamed(root, "occup");
    EXPECT_EQ(codesOf(occup), (QStringList{"1120", "6111", "7115", "9999"}));
    EXPECT_EQ(labelsOf(occup).at(2), QStringLiteral("Carpenters and joiners"));
}

TEST_F(Inspector, StataSampleAsJson)
{
    const QString path = samplePath(QStringLiteral("census.dta"));
    const Outcome r = runInspector({QStringLiteral("--json"), path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    EXPECT_EQ(str(root, "format"), QStringLiteral("stata"));
    EXPECT_EQ(str(root, "providerId"), QStringLiteral("STATA_") + path);
    EXPECT_EQ(str(root, "providerType"), QStringLiteral("STATA"));
    EXPECT_EQ(str(root, "descriptionType"), QString());
    EXPECT_EQ(root.value(QStringLiteral("fields")).toArray().size(), 16);

    const QJsonObject marital = fieldNamed(root, "marital");
    EXPECT_EQ(str(marital, "type"), QStringLiteral("INTEGER"));
    EXPECT_EQ(codesOf(marital), (QStringList{"1", "2", "3", "4", "5", "9"}));
    EXPECT_EQ(str(marital, "minimum"), QStringLiteral("1"));
    EXPECT_EQ(str(marital, "maximum"), QStringLiteral("9"));
    // Float and double are real whatever their decimals.
    EXPECT_EQ(str(fieldNamed(root, "pweight"), "type"), QStringLiteral("REAL"));
    EXPECT_EQ(str(fieldNamed(root, "income"), "type"), QStringLiteral("REAL"));
    // Strings get "0" and as many nines as their storage width.
    const QJsonObject occup = fieldNamed(root, "occup");
    EXPECT_EQ(str(occup, "type"), QStringLiteral("STRING"));
    EXPECT_EQ(str(occup, "minimum"), QStringLiteral("0"));
    EXPECT_GT(num(occup, "size"), 0);
    EXPECT_EQ(str(occup, "maximum"), QString(num(occup, "size"), QLatin1Char('9')));
}

// ------------------------------------------------------------------ reading notes

TEST_F(Inspector, JsonCarriesAnEmptyNotesArrayWhenTheReadingWroteNone)
{
    const QString path = writeFile(dir, QStringLiteral("plain.dcf"), PlainDictionary);
    const Outcome r = runInspector({QStringLiteral("--json"), path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject root = jsonOf(r);
    ASSERT_TRUE(root.value(QStringLiteral("notes")).isArray());
    EXPECT_TRUE(root.value(QStringLiteral("notes")).toArray().isEmpty());
}

TEST_F(Inspector, FailOnNotesExitsZeroWhenTheReadingWroteNone)
{
    const QString path = writeFile(dir, QStringLiteral("plain.dcf"), PlainDictionary);
    const Outcome r = runInspector({QStringLiteral("--fail-on-notes"), path});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    // No notes, no Notes section: the table ends with the field rows.
    EXPECT_FALSE(r.out.contains(QStringLiteral("Notes")));
    EXPECT_TRUE(r.outLines().at(r.outLines().size() - 2).startsWith(QStringLiteral("AGE ")));
}

TEST_F(Inspector, NoNotesLeavesTheNotesKeyOut)
{
    const QString path = writeFile(dir, QStringLiteral("plain.dcf"), PlainDictionary);
    const Outcome r = runInspector({QStringLiteral("--json"), QStringLiteral("--no-notes"), path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0);
    EXPECT_FALSE(jsonOf(r).contains(QStringLiteral("notes")));
}

TEST_F(Inspector, LookupJsonCarriesAnEmptyNotesArray)
{
    const Outcome r = runInspector({QStringLiteral("--lookup"), samplePath(QStringLiteral("areas.txt")),
                                    QStringLiteral("--separator"), QStringLiteral("tab"), QStringLiteral("--json"),
                                    QStringLiteral("--fail-on-notes")});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(jsonOf(r).value(QStringLiteral("notes")).toArray().isEmpty());
}

// ------------------------------------------------------------------ long labels

TEST_F(Inspector, TableCutsLongLabelsAndStaysSmallWhileJsonKeepsThemWhole)
{
    const int size = 20 * 1024 * 1024;
    QByteArray dictionary = "[Dictionary]\nName=D\n[Item]\nName=A\nLabel=";
    dictionary += QByteArray(size, 'x');
    dictionary += "\nStart=1\nLen=2\n[Item]\nName=B\nLabel=Short\nStart=3\nLen=1\n";
    const QString path = writeFile(dir, QStringLiteral("long.dcf"), dictionary);

    const Outcome table = runInspector({path});
    ASSERT_TRUE(table.finished);
    ASSERT_EQ(table.exitCode, 0) << table.err.toStdString();
    EXPECT_LT(table.out.size(), 4096);
    // 59 characters of the label and the ellipsis: 60 in all.
    const QString cut = QString(59, QLatin1Char('x')) + QChar(0x2026);
    EXPECT_TRUE(table.outLines().filter(QRegularExpression(QStringLiteral("^A +") + cut + QStringLiteral("  INTEGER")))
                    .size() == 1)
        << table.out.left(2000).toStdString();

    const Outcome json = runInspector({QStringLiteral("--json"), path});
    ASSERT_TRUE(json.finished);
    ASSERT_EQ(json.exitCode, 0);
    EXPECT_EQ(str(fieldNamed(jsonOf(json), "A"), "label").size(), size);
}

TEST_F(Inspector, WideKeepsLabelsWhole)
{
    const QString label = QString(100, QLatin1Char('y'));
    const QString path = writeFile(dir, QStringLiteral("wide.dcf"),
                                   "[Dictionary]\nName=D\n[Item]\nName=A\nLabel=" + label.toLatin1()
                                       + "\nStart=1\nLen=2\n");
    const Outcome r = runInspector({QStringLiteral("--wide"), path});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.outLines().filter(QRegularExpression(QStringLiteral("^A +") + label + QStringLiteral("  INTEGER"))).size(),
              1)
        << r.out.toStdString();
    EXPECT_FALSE(r.out.contains(QChar(0x2026)));
}

// ------------------------------------------------------------------ what SPSS and Stata files say about themselves

// samples/census.sav, as scripts/make-samples.sh writes it through ReadStat's writer: 12 rows (f.rows), an
// uncompressed system file ("$FL2": version 2), the character code 65001 that ReadStat's writer always states
// (UTF-8), written on a little-endian machine (layout code 2 in its byte order), header date "21 Nov 26" and
// time "09:13:27", no file label.
TEST_F(Inspector, SpssSampleHeaderSaysWhatTheFileSaysAboutItself)
{
    const Outcome r = runInspector({samplePath(QStringLiteral("census.sav"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QStringList lines = r.outLines();
    const int record = lines.indexOf(QStringLiteral("Record type:       start 0, length 0"));
    ASSERT_GE(record, 0) << r.out.toStdString();
    EXPECT_EQ(lines.mid(record + 1, 7), (QStringList{"Rows:              12", "Format version:    2",
                                                      "Encoding:          UTF-8", "Byte order:        little-endian",
                                                      "Created:           2026-11-21T09:13:27",
                                                      "File label:        none", "Groups:            0"}));
}

TEST_F(Inspector, SpssSampleJsonCarriesTheFileMetadata)
{
    const Outcome r = runInspector({QStringLiteral("--json"), samplePath(QStringLiteral("census.sav"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonObject meta = jsonOf(r).value(QStringLiteral("fileMetadata")).toObject();
    EXPECT_EQ(meta.keys(),
              (QStringList{"byteOrder", "creationTime", "encoding", "formatVersion", "label", "rowCount"}));
    EXPECT_EQ(num(meta, "rowCount"), 12);
    EXPECT_EQ(num(meta, "formatVersion"), 2);
    EXPECT_EQ(str(meta, "encoding"), QStringLiteral("UTF-8"));
    EXPECT_EQ(str(meta, "byteOrder"), QStringLiteral("little-endian"));
    EXPECT_EQ(str(meta, "creationTime"), QStringLiteral("2026-11-21T09:13:27"));
    ASSERT_TRUE(meta.value(QStringLiteral("label")).isString());
    EXPECT_EQ(str(meta, "label"), QString());
}

// samples/census.dta: format 118 (f.dtaVersion), 12 rows, <byteorder>LSF</byteorder> (little-endian),
// <timestamp> "21 Nov 2026 09:13" (minutes only), no data label; Stata files state no encoding.
TEST_F(Inspector, StataSampleHeaderAndJsonSayWhatTheFileSaysAboutItself)
{
    const QString path = samplePath(QStringLiteral("census.dta"));
    const Outcome table = runInspector({path});
    ASSERT_TRUE(table.finished);
    ASSERT_EQ(table.exitCode, 0) << table.err.toStdString();
    const QStringList lines = table.outLines();
    const int rows = lines.indexOf(QStringLiteral("Rows:              12"));
    ASSERT_GE(rows, 0) << table.out.toStdString();
    EXPECT_EQ(lines.mid(rows + 1, 5), (QStringList{"Format version:    118", "Encoding:          unknown",
                                                    "Byte order:        little-endian",
                                                    "Created:           2026-11-21T09:13:00", "File label:        none"}));

    const Outcome json = runInspector({QStringLiteral("--json"), path});
    ASSERT_TRUE(json.finished);
    const QJsonObject meta = jsonOf(json).value(QStringLiteral("fileMetadata")).toObject();
    EXPECT_EQ(num(meta, "rowCount"), 12);
    EXPECT_EQ(num(meta, "formatVersion"), 118);
    EXPECT_TRUE(meta.value(QStringLiteral("encoding")).isNull());
    EXPECT_EQ(str(meta, "byteOrder"), QStringLiteral("little-endian"));
    EXPECT_EQ(str(meta, "creationTime"), QStringLiteral("2026-11-21T09:13:00"));
}

TEST_F(Inspector, CSProDictionariesHaveNoFileMetadata)
{
    for (const char *sample : {"census.dcf", "census.json"}) {
        const Outcome table = runInspector({samplePath(QLatin1String(sample))});
        const Outcome json = runInspector({QStringLiteral("--json"), samplePath(QLatin1String(sample))});
        ASSERT_TRUE(table.finished && json.finished);
        EXPECT_TRUE(table.outLines().filter(QRegularExpression(QStringLiteral("^(Rows|Created):"))).isEmpty())
            << sample;
        EXPECT_FALSE(jsonOf(json).contains(QStringLiteral("fileMetadata"))) << sample;
    }
}

} // namespace

TEST_F(Inspector, FailOnNotesExitsThreeOnTheNotesSampleAfterPrintingEverything)
{
    const Outcome r = runInspector({QStringLiteral("--fail-on-notes"), samplePath(QStringLiteral("labour-notes.dcf"))});
    ASSERT_TRUE(r.finished);
    EXPECT_EQ(r.exitCode, 3) << r.err.toStdString();
    const QStringList lines = r.outLines();
    EXPECT_TRUE(lines.contains(QStringLiteral("Notes:             6")));
    // The count by kind closes the table: the six notes of the sample's file.
    const int byKind = lines.indexOf(QStringLiteral("Notes by kind:"));
    ASSERT_GE(byKind, 0);
    EXPECT_EQ(lines.mid(byKind + 1).filter(QRegularExpression(QStringLiteral("\\S"))),
              QStringList({QStringLiteral("  key-from-other-line     1"), QStringLiteral("  linked-value-set-empty  1"),
                           QStringLiteral("  range-split             1"), QStringLiteral("  special-not-read        1"),
                           QStringLiteral("  value-set-dropped       2")}));
}

TEST_F(Inspector, JsonNotesOfTheNotesSampleHaveExactlyTheFourKeys)
{
    const Outcome r = runInspector({QStringLiteral("--json"), samplePath(QStringLiteral("labour-notes.dcf"))});
    ASSERT_TRUE(r.finished);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonArray notes = jsonOf(r).value(QStringLiteral("notes")).toArray();
    ASSERT_EQ(notes.size(), 6);
    const QStringList keys{QStringLiteral("kind"), QStringLiteral("line"), QStringLiteral("subject"),
                           QStringLiteral("text")};
    for (const QJsonValue &note : notes)
        EXPECT_EQ(note.toObject().keys(), keys);
    const QJsonObject first = notes.at(0).toObject();
    EXPECT_EQ(first.value(QStringLiteral("line")).toInt(), 32);
    EXPECT_EQ(first.value(QStringLiteral("subject")).toString(), QStringLiteral("PNAME"));
    EXPECT_EQ(first.value(QStringLiteral("kind")).toString(), QStringLiteral("key-from-other-line"));
}

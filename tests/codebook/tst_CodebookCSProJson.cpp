#include "CodebookTestSupport.h"

#include <KxCodebookJson.h>

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

using namespace KxCodebook;

namespace {

// samples/census.json: the JSON form of samples/census.dcf, as CSPro 8 writes it
// (relative positions, no starts of record items).
QString censusJsonPath()
{
    return cbtest::samplePath("census.json");
}

Codebook readCensus()
{
    Error error;
    const Codebook book = Codebook::fromFile(censusJsonPath(), &error);
    EXPECT_TRUE(error.ok()) << error.message.toStdString();
    return book;
}

// A dictionary with one level (id ITEM_ID at column 2), one record REC (type
// "R" at column 1) holding \a items, and the given languages.
QByteArray withItems(const QByteArray &items, const QByteArray &languages = QByteArray())
{
    return R"({"software": "CSPro", "version": 8.0, "fileType": "dictionary", "name": "D",
               "recordType": {"start": 1, "length": 1}, "relativePositions": false,)"
        + (languages.isEmpty() ? QByteArray() : R"("languages": )" + languages + ",")
        + R"("levels": [{"name": "L", "ids": {"items": [
                {"name": "ITEM_ID", "contentType": "numeric", "start": 2, "length": 1}]},
              "records": [{"name": "REC", "recordType": "R",
                           "occurrences": {"required": true, "maximum": 1},
                           "items": [)" + items + "]}]}]}";
}

// A dictionary whose header is \a header followed by one empty level.
QByteArray withHeader(const QByteArray &header)
{
    return "{" + header + R"(, "levels": [{"name": "L", "ids": {"items": []}, "records": []}]})";
}

Error readError(const QByteArray &json)
{
    Error error;
    const Codebook book = Codebook::fromData(json, Format::CSProJson, &error);
    EXPECT_TRUE(book.isNull());
    return error;
}

QStringList names(const QVector<Variable> &variables)
{
    QStringList result;
    for (const Variable &v : variables)
        result << v.name;
    return result;
}

// "1" for a code, "1:20" for a range, codes of one value joined by a space.
QString codesText(const Value &value)
{
    QStringList parts;
    for (const Code &c : value.codes)
        parts << (c.isRange ? c.from + QLatin1Char(':') + c.to : c.from);
    return parts.join(QLatin1Char(' '));
}

// One value as "codes;label", with ",SPECIAL" after a special one.
QStringList valuesText(const ValueSet &set)
{
    QStringList result;
    for (const Value &v : set.values) {
        QString text = codesText(v) + QLatin1Char(';') + v.labels.primary();
        if (v.special != Special::None)
            text += QLatin1Char(',') + specialName(v.special);
        result << text;
    }
    return result;
}

QStringList missingText(const Variable &variable)
{
    QStringList result;
    for (const MissingValue &m : variable.missing) {
        result << (m.isRange ? m.from + QLatin1Char(':') + m.to : m.from) + QLatin1Char(',')
                + specialName(m.special) + QLatin1Char(',') + m.label;
    }
    return result;
}

} // namespace

// --- The census dictionary -------------------------------------------------

TEST(CSProJsonCensus, ReadsTheDictionaryAsCensusDcfDescribesIt)
{
    const Codebook book = readCensus();
    ASSERT_FALSE(book.isNull());
    EXPECT_EQ(book.format(), Format::CSProJson);
    EXPECT_EQ(book.fileName(), censusJsonPath());
    EXPECT_EQ(book.encoding(), QStringLiteral("UTF-8"));
    EXPECT_EQ(book.formatVersion(), QStringLiteral("8"));  // "version": 8.0
    EXPECT_EQ(book.name(), QStringLiteral("CENSUS2023_DICT"));
    EXPECT_EQ(book.labels().primary(), QStringLiteral("2023 Population and Housing Census"));
    EXPECT_EQ(book.recordTypeStart(), 1);
    EXPECT_EQ(book.recordTypeLength(), 1);
    EXPECT_TRUE(book.relativePositions());  // "relativePositions": true (census.dcf: Positions=Relative)
    ASSERT_EQ(book.languages().size(), 1);
    EXPECT_EQ(book.languages().at(0).name, QString());
    ASSERT_EQ(book.levels().size(), 1);
    EXPECT_EQ(book.levels().at(0).name, QStringLiteral("HOUSEHOLD_LEVEL"));
    EXPECT_EQ(book.levels().at(0).labels.primary(), QStringLiteral("Household questionnaire"));
}

TEST(CSProJsonCensus, RecordsMatchCensusDcf)
{
    const QVector<Record> records = readCensus().records();
    ASSERT_EQ(records.size(), 3);
    struct Expected { const char *name; const char *label; const char *type; bool required; int max; int length; };
    // RecordLen= of census.dcf (68, 41, 19) is what CSPro computes from the items.
    const Expected expected[] = {
        {"HOUSING", "Housing record", "H", true, 1, 68},
        {"PERSON", "Person record", "P", false, 30, 41},
        {"DEATH", "Deaths in the last 12 months", "D", false, 10, 19},
    };
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(expected[i].name);
        const Record &r = records.at(i);
        EXPECT_EQ(r.name, QString::fromUtf8(expected[i].name));
        EXPECT_EQ(r.labels.primary(), QString::fromUtf8(expected[i].label));
        EXPECT_EQ(r.level, 1);
        EXPECT_EQ(r.typeValue, QString::fromUtf8(expected[i].type));
        EXPECT_EQ(r.required, expected[i].required);
        EXPECT_EQ(r.maxOccurrences, expected[i].max);
        EXPECT_EQ(r.length, expected[i].length);
        EXPECT_TRUE(r.occurrenceLabels.isEmpty());
    }
}

TEST(CSProJsonCensus, EveryItemMatchesCensusDcf)
{
    const QVector<Variable> variables = readCensus().variables();
    struct Expected {
        const char *name; const char *label; const char *record; int start; int width; int occurrences;
        const char *parent; Storage storage; int decimals; bool decimalMark; bool zeroFill;
    };
    const Storage N = Storage::Numeric;
    const Storage A = Storage::Text;
    // From census.dcf: an item without ZeroFill=/DecimalChar= has them No (they
    // do not inherit the dictionary's ZeroFill=Yes); alpha items have neither.
    const Expected expected[] = {
        {"PROVINCE", "Province", "", 2, 2, 1, "", N, 0, false, true},
        {"DISTRICT", "District", "", 4, 2, 1, "", N, 0, false, true},
        {"URBRUR", "Urban or rural area", "", 6, 1, 1, "", N, 0, false, false},
        {"EA", "Enumeration area", "", 7, 3, 1, "", N, 0, false, true},
        {"HHNUM", "Household number", "", 10, 3, 1, "", N, 0, false, true},
        {"DWELLING", "Type of dwelling", "HOUSING", 13, 1, 1, "", N, 0, false, false},
        {"ROOMS", "Number of rooms", "HOUSING", 14, 2, 1, "", N, 0, false, true},
        {"WALLS", "Main material of the outer walls", "HOUSING", 16, 1, 1, "", A, 0, false, false},
        {"WATER", "Main source of drinking water", "HOUSING", 17, 2, 1, "", N, 0, false, false},
        {"ASSET", "Household owns the item", "HOUSING", 19, 1, 6, "", N, 0, false, false},
        {"LANDAREA", "Agricultural land in hectares", "HOUSING", 25, 5, 1, "", N, 1, true, false},
        {"RENT", "Monthly rent paid", "HOUSING", 30, 7, 1, "", N, 2, false, false},
        {"HHSIZE", "Persons in the household", "HOUSING", 37, 2, 1, "", N, 0, false, true},
        {"ADDRESS", "Street address", "HOUSING", 39, 30, 1, "", A, 0, false, false},
        {"PLINE", "Person line number", "PERSON", 13, 2, 1, "", N, 0, false, true},
        {"RELATION", "Relationship to head of household", "PERSON", 15, 1, 1, "", N, 0, false, false},
        {"SEX", "Sex", "PERSON", 16, 1, 1, "", N, 0, false, false},
        {"AGE", "Age in completed years", "PERSON", 17, 3, 1, "", N, 0, false, false},
        {"BIRTHDATE", "Date of birth", "PERSON", 20, 6, 1, "", N, 0, false, false},
        {"BIRTHYEAR", "Year of birth", "PERSON", 20, 4, 1, "BIRTHDATE", N, 0, false, false},
        {"BIRTHMONTH", "Month of birth", "PERSON", 24, 2, 1, "BIRTHDATE", N, 0, false, false},
        {"MARITAL", "Marital status", "PERSON", 26, 1, 1, "", N, 0, false, false},
        {"SCHOOL", "School attendance", "PERSON", 27, 1, 1, "", N, 0, false, false},
        {"OCCUP", "Occupation (ISCO-08 unit group)", "PERSON", 28, 4, 1, "", A, 0, false, false},
        {"INCOME", "Monthly income from work", "PERSON", 32, 8, 1, "", N, 2, false, false},
        {"CHILDREN", "Children ever born", "PERSON", 40, 2, 1, "", N, 0, false, false},
        {"DLINE", "Line of the deceased", "DEATH", 13, 2, 1, "", N, 0, false, true},
        {"DSEX", "Sex of the deceased", "DEATH", 15, 1, 1, "", N, 0, false, false},
        {"DAGE", "Age at death", "DEATH", 16, 3, 1, "", N, 0, false, false},
        {"DCAUSE", "Cause of death", "DEATH", 19, 1, 1, "", N, 0, false, false},
    };
    const int count = int(sizeof(expected) / sizeof(expected[0]));
    ASSERT_EQ(variables.size(), count);
    for (int i = 0; i < count; ++i) {
        const Expected &e = expected[i];
        const Variable &v = variables.at(i);
        SCOPED_TRACE(e.name);
        EXPECT_EQ(v.name, QString::fromUtf8(e.name));
        EXPECT_EQ(v.labels.primary(), QString::fromUtf8(e.label));
        EXPECT_EQ(v.record, QString::fromUtf8(e.record));
        EXPECT_EQ(v.isId, v.record.isEmpty());
        EXPECT_EQ(v.level, 1);
        EXPECT_EQ(v.start, e.start);
        EXPECT_EQ(v.width, e.width);
        EXPECT_EQ(v.occurrences, e.occurrences);
        EXPECT_EQ(v.isSubitem, *e.parent != '\0');
        EXPECT_EQ(v.parent, QString::fromUtf8(e.parent));
        EXPECT_EQ(v.storage, e.storage);
        EXPECT_EQ(v.contentType, e.storage == A ? QStringLiteral("alpha") : QStringLiteral("numeric"));
        EXPECT_EQ(v.decimals, e.decimals);
        EXPECT_EQ(v.decimalMark, e.decimalMark);
        EXPECT_EQ(v.zeroFill, e.zeroFill);
    }
}

TEST(CSProJsonCensus, OccurrenceLabelsOfAsset)
{
    const Variable asset = cbtest::variable(readCensus(), QStringLiteral("ASSET"));
    const QStringList expected = {QStringLiteral("Radio"), QStringLiteral("Television"),
                                  QStringLiteral("Refrigerator"), QStringLiteral("Mobile telephone"),
                                  QStringLiteral("Bicycle"), QStringLiteral("Car or truck")};
    ASSERT_EQ(asset.occurrenceLabels.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(asset.occurrenceLabels.at(i).occurrence, i + 1);
        EXPECT_EQ(asset.occurrenceLabels.at(i).labels.primary(), expected.at(i));
    }
}

TEST(CSProJsonCensus, ValueSetsMatchCensusDcf)
{
    const Codebook book = readCensus();
    struct Expected { const char *item; const char *set; const char *label; QStringList values; };
    const Expected expected[] = {
        {"PROVINCE", "PROVINCE_VS1", "Province",
         {"1;North", "2;South", "3;East", "4;West", "5;Capital district"}},
        {"URBRUR", "URBRUR_VS1", "Urban or rural area", {"1;Urban", "2;Rural"}},
        {"DWELLING", "DWELLING_VS1", "Type of dwelling",
         {"1;Detached house", "2;Semi-detached house", "3;Apartment or flat", "4;Traditional dwelling",
          "5;Improvised housing unit", "9;Not reported,MISSING"}},
        {"ROOMS", "ROOMS_VS1", "Number of rooms", {"1:20;Rooms", "99;Not reported,MISSING"}},
        {"WALLS", "WALLS_VS1", "Main material of the outer walls",
         {"A;Brick or concrete blocks", "B;Wood or timber", "C;Mud or earth", "X;Other material"}},
        {"WATER", "WATER_VS1", "Main source of drinking water",
         {"11;Piped into dwelling", "12;Piped into yard or plot", "21;Public tap or standpipe",
          "31;Protected well", "32;Unprotected well", "41;River, lake or pond", "96;Other source"}},
        {"ASSET", "ASSET_VS1", "Yes or no", {"1;Yes", "2;No"}},
        {"LANDAREA", "LANDAREA_VS1", "Agricultural land in hectares",
         {"0.5;Under one hectare", "1:999;One hectare or more"}},
        {"PLINE", "PLINE_VS1", "Person line number", {"1:30;Line"}},
        {"RELATION", "RELATION_VS1", "Relationship to head of household",
         {"1;Head", "2;Spouse or partner", "3;Son or daughter", "4;Parent", "5;Other relative",
          "6;Non-relative", "9;Not reported,MISSING"}},
        {"SEX", "SEX_VS1", "Sex", {"1;Male", "2;Female"}},
        {"AGE", "AGE_VS1", "Age in completed years",
         {"0:97;Years", "98;98 years or more", "999;Not reported,MISSING"}},
        {"BIRTHMONTH", "BIRTHMONTH_VS1", "Month of birth", {"1:12;Month", "99;Not reported,MISSING"}},
        {"MARITAL", "MARITAL_VS1", "Marital status",
         {"1;Never married", "2;Married", "3;Consensual union", "4;Separated or divorced", "5;Widowed",
          "9;Not reported,MISSING"}},
        // NOTAPPL 8 has the width of the 1-column item, so it stays a real code.
        {"SCHOOL", "SCHOOL_VS1", "School attendance",
         {"1;Attending", "2;Attended in the past", "3;Never attended", "8;Not applicable,NOTAPPL",
          "9;Not reported,MISSING"}},
        {"OCCUP", "OCCUP_VS1", "Occupation (ISCO-08 unit group)",
         {"1120;Managing directors and chief executives", "2341;Primary school teachers",
          "6111;Field crop and vegetable growers", "7115;Carpenters and joiners", "9999;Not stated"}},
        {"CHILDREN", "CHILDREN_VS1", "Children ever born",
         {"0:30;Children", "98;Not applicable,NOTAPPL", "99;Not reported,MISSING"}},
        {"DSEX", "DSEX_VS1", "Sex", {"1;Male", "2;Female"}},
        {"DAGE", "DAGE_VS1", "Age at death", {"0:97;Years", "98;98 years or more", "999;Not reported,MISSING"}},
        {"DCAUSE", "DCAUSE_VS1", "Cause of death",
         {"1;Illness", "2;Accident", "3;Violence", "4;Pregnancy or childbirth", "9;Not known,MISSING"}},
    };
    QStringList withSets;
    for (const Expected &e : expected) {
        SCOPED_TRACE(e.item);
        withSets << QString::fromUtf8(e.item);
        const Variable v = cbtest::variable(book, QString::fromUtf8(e.item));
        ASSERT_EQ(v.valueSets.size(), 1);
        EXPECT_EQ(v.valueSets.at(0).name, QString::fromUtf8(e.set));
        EXPECT_EQ(v.valueSets.at(0).labels.primary(), QString::fromUtf8(e.label));
        EXPECT_TRUE(v.valueSets.at(0).link.isEmpty());
        EXPECT_EQ(valuesText(v.valueSets.at(0)), e.values);
    }
    for (const Variable &v : book.variables()) {
        if (!withSets.contains(v.name)) {
            EXPECT_TRUE(v.valueSets.isEmpty()) << v.name.toStdString();
        }
    }
}

TEST(CSProJsonCensus, SpecialValuesBecomeMissingValues)
{
    const Codebook book = readCensus();
    EXPECT_EQ(missingText(cbtest::variable(book, QStringLiteral("DWELLING"))),
              QStringList{QStringLiteral("9,MISSING,Not reported")});
    EXPECT_EQ(missingText(cbtest::variable(book, QStringLiteral("SCHOOL"))),
              (QStringList{QStringLiteral("8,NOTAPPL,Not applicable"), QStringLiteral("9,MISSING,Not reported")}));
    EXPECT_EQ(missingText(cbtest::variable(book, QStringLiteral("CHILDREN"))),
              (QStringList{QStringLiteral("98,NOTAPPL,Not applicable"), QStringLiteral("99,MISSING,Not reported")}));
    EXPECT_TRUE(cbtest::variable(book, QStringLiteral("SEX")).missing.isEmpty());
    EXPECT_TRUE(cbtest::variable(book, QStringLiteral("OCCUP")).missing.isEmpty());
}

// --- Positions ---------------------------------------------------------------

TEST(CSProJsonPositions, RelativeStartsFollowTheIdsOfAllLevels)
{
    // Columns: PROV 1-2, record type 3, HH 4-6 (level 1 ids), LINE 7-8 (level 2 id).
    // Every record's items start after the last of them: column 9.
    const Codebook book = cbtest::readJson(R"({
      "software": "CSPro", "version": 8.0, "fileType": "dictionary", "name": "REL",
      "recordType": {"start": 3, "length": 1}, "relativePositions": true,
      "levels": [
        {"name": "HOUSEHOLD", "ids": {"items": [
            {"name": "PROV", "contentType": "numeric", "start": 1, "length": 2},
            {"name": "HH", "contentType": "numeric", "start": 4, "length": 3}]},
         "records": [
           {"name": "HOUSE", "recordType": "H", "occurrences": {"required": true, "maximum": 1}, "items": [
              {"name": "ROOMS", "contentType": "numeric", "length": 2},
              {"name": "ASSET", "occurrences": {"maximum": 3}, "contentType": "numeric", "length": 1},
              {"name": "DATE", "contentType": "alpha", "length": 8},
              {"name": "DAY", "contentType": "numeric", "subitem": true, "subitemOffset": 0, "length": 2},
              {"name": "MONTH", "contentType": "numeric", "subitem": true, "subitemOffset": 2, "length": 2},
              {"name": "YEAR", "contentType": "numeric", "subitem": true, "subitemOffset": 4, "length": 4},
              {"name": "OWNER", "contentType": "alpha", "length": 10}]},
           {"name": "PLOT", "recordType": "L", "occurrences": {"required": false, "maximum": 5}, "items": [
              {"name": "AREA", "contentType": "numeric", "length": 4, "decimals": 1, "decimalMark": true}]}]},
        {"name": "PERSONS", "ids": {"items": [
            {"name": "LINE", "contentType": "numeric", "start": 7, "length": 2}]},
         "records": [
           {"name": "PERSON", "recordType": "P", "occurrences": {"required": false, "maximum": 30}, "items": [
              {"name": "SEX", "contentType": "numeric", "length": 1},
              {"name": "WORK", "occurrences": {"maximum": 2}, "contentType": "numeric", "length": 2},
              {"name": "INCOME", "contentType": "numeric", "start": 40, "length": 5}]}]}]})");
    const QVector<Variable> v = book.variables();
    EXPECT_EQ(names(v), (QStringList{"PROV", "HH", "ROOMS", "ASSET", "DATE", "DAY", "MONTH", "YEAR", "OWNER",
                                     "AREA", "LINE", "SEX", "WORK", "INCOME"}));
    ASSERT_EQ(v.size(), 14);
    // HOUSE: ROOMS 9-10; ASSET 11, 3 occurrences of 1 column: 11-13; DATE 14-21;
    // its subitems at 14+0, 14+2, 14+4 take no columns; OWNER 22-31.
    EXPECT_EQ(v.at(2).start, 9);
    EXPECT_EQ(v.at(3).start, 11);
    EXPECT_EQ(v.at(4).start, 14);
    EXPECT_EQ(v.at(5).start, 14);
    EXPECT_EQ(v.at(6).start, 16);
    EXPECT_EQ(v.at(7).start, 18);
    EXPECT_EQ(v.at(8).start, 22);
    EXPECT_EQ(v.at(5).parent, QStringLiteral("DATE"));
    EXPECT_EQ(v.at(7).parent, QStringLiteral("DATE"));
    // PLOT starts again at 9.
    EXPECT_EQ(v.at(9).start, 9);
    // PERSON (level 2): SEX 9; WORK 10, 2 occurrences of 2 columns: 10-13; INCOME gives its own start 40.
    EXPECT_EQ(v.at(10).level, 2);
    EXPECT_TRUE(v.at(10).isId);
    EXPECT_EQ(v.at(11).start, 9);
    EXPECT_EQ(v.at(11).level, 2);
    EXPECT_EQ(v.at(12).start, 10);
    EXPECT_EQ(v.at(13).start, 40);
    // Record lengths: HOUSE ends with OWNER at 31, PLOT with AREA at 9+4-1 = 12,
    // PERSON with INCOME at 40+5-1 = 44.
    const QVector<Record> records = book.records();
    ASSERT_EQ(records.size(), 3);
    EXPECT_EQ(records.at(0).length, 31);
    EXPECT_EQ(records.at(1).length, 12);
    EXPECT_EQ(records.at(2).length, 44);
    EXPECT_EQ(records.at(2).level, 2);
}

// census.dcf leaves no gaps: every record's items follow one another from
// column 13, after HHNUM (10-12). census.json, its relative form, gives no
// record item a start: the computed starts are census.dcf's Start= values.
TEST(CSProJsonPositions, TheCensusInRelativeFormHasTheStartsOfTheTextForm)
{
    QFile file(censusJsonPath());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray json = file.readAll();
    // Only the record type and the five identification items carry a start.
    EXPECT_EQ(json.count("\"start\""), 6);

    const QVector<Variable> fromJson = readCensus().variables();
    const QVector<Variable> fromText = Codebook::fromFile(cbtest::samplePath("census.dcf")).variables();
    ASSERT_EQ(fromJson.size(), 30);
    ASSERT_EQ(fromJson.size(), fromText.size());
    for (int i = 0; i < fromJson.size(); ++i) {
        EXPECT_EQ(fromJson.at(i).name, fromText.at(i).name);
        EXPECT_EQ(fromJson.at(i).start, fromText.at(i).start) << fromJson.at(i).name.toStdString();
    }
}

TEST(CSProJsonPositions, ItemsWithoutAStartAreSkippedWhereStartsAreNotComputed)
{
    // Absolute dictionary: NO_START cannot be placed. A subitem before any item has no parent.
    const Codebook book = cbtest::readJson(withItems(R"(
        {"name": "ORPHAN", "contentType": "numeric", "subitem": true, "start": 3, "length": 1},
        {"name": "NO_START", "contentType": "numeric", "length": 2},
        {"name": "KEPT", "contentType": "numeric", "start": 3, "length": 2})"));
    EXPECT_EQ(names(book.variables()), (QStringList{"ITEM_ID", "KEPT"}));
}

TEST(CSProJsonPositions, SubitemsOfASkippedItemAreSkipped)
{
    const Codebook book = cbtest::readJson(withItems(R"(
        {"name": "GOOD", "contentType": "alpha", "start": 3, "length": 4},
        {"name": "BAD", "contentType": "video", "start": 7, "length": 4},
        {"name": "BAD_SUB", "contentType": "numeric", "subitem": true, "start": 7, "length": 2})"));
    EXPECT_EQ(names(book.variables()), (QStringList{"ITEM_ID", "GOOD"}));
}

// --- Values ------------------------------------------------------------------

TEST(CSProJsonValues, EveryPairOfAValueIsACode)
{
    const Codebook book = cbtest::readJson(withItems(R"(
        {"name": "HOURS", "contentType": "numeric", "start": 3, "length": 2, "valueSets": [
          {"name": "HOURS_VS1", "values": [
            {"labels": [{"text": "Part time"}],
             "pairs": [{"value": "0"}, {"range": ["1", "14"]}, {"range": ["15", "19"]}, {"value": "99"}]}]}]})"));
    const Variable v = cbtest::variable(book, QStringLiteral("HOURS"));
    ASSERT_EQ(v.valueSets.size(), 1);
    ASSERT_EQ(v.valueSets.at(0).values.size(), 1);
    const QVector<Code> codes = v.valueSets.at(0).values.at(0).codes;
    ASSERT_EQ(codes.size(), 4);
    EXPECT_EQ(codes.at(0).from, QStringLiteral("0"));
    EXPECT_FALSE(codes.at(0).isRange);
    EXPECT_TRUE(codes.at(1).isRange);
    EXPECT_EQ(codes.at(1).from, QStringLiteral("1"));
    EXPECT_EQ(codes.at(1).to, QStringLiteral("14"));
    EXPECT_EQ(codes.at(2).from, QStringLiteral("15"));
    EXPECT_EQ(codes.at(2).to, QStringLiteral("19"));
    EXPECT_EQ(codes.at(3).from, QStringLiteral("99"));
    EXPECT_EQ(v.valueSets.at(0).values.at(0).labels.primary(), QStringLiteral("Part time"));
}

TEST(CSProJsonValues, NumberCodesBecomeText)
{
    const Codebook book = cbtest::readJson(withItems(R"(
        {"name": "SIZE", "contentType": "numeric", "start": 3, "length": 4, "decimals": 1, "decimalMark": true,
         "valueSets": [{"name": "SIZE_VS1", "values": [
            {"labels": [{"text": "Five"}], "pairs": [{"value": 5}]},
            {"labels": [{"text": "Small"}], "pairs": [{"range": [0.5, 12.5]}]},
            {"labels": [{"text": "Large"}], "pairs": [{"value": 1234567}]}]}]})"));
    const ValueSet set = cbtest::variable(book, QStringLiteral("SIZE")).valueSets.value(0);
    EXPECT_EQ(valuesText(set), (QStringList{"5;Five", "0.5:12.5;Small", "1234567;Large"}));
}

TEST(CSProJsonValues, ARangeWithoutExactlyTwoEntriesSkipsItsValue)
{
    const Codebook book = cbtest::readJson(withItems(R"(
        {"name": "AGE", "contentType": "numeric", "start": 3, "length": 3, "valueSets": [{"name": "AGE_VS1", "values": [
            {"labels": [{"text": "Child"}], "pairs": [{"range": ["0", "14"]}]},
            {"labels": [{"text": "Three ends"}], "pairs": [{"value": "15"}, {"range": ["15", "64", "70"]}]},
            {"labels": [{"text": "One end"}], "pairs": [{"range": ["65"]}]},
            {"labels": [{"text": "No pairs"}], "pairs": []},
            {"labels": [{"text": "Old"}], "pairs": [{"range": ["65", "120"]}]}]}]})"));
    const ValueSet set = cbtest::variable(book, QStringLiteral("AGE")).valueSets.value(0);
    EXPECT_EQ(valuesText(set), (QStringList{"0:14;Child", "65:120;Old"}));
}

TEST(CSProJsonValues, AlphaCodesLoseTrailingBlanksNumericCodesAllBlanks)
{
    const Codebook book = cbtest::readJson(withItems(R"(
        {"name": "CODE", "contentType": "alpha", "start": 3, "length": 3, "valueSets": [{"name": "CODE_VS1", "values": [
            {"labels": [{"text": "A"}], "pairs": [{"value": "A  "}]},
            {"labels": [{"text": "B"}], "pairs": [{"value": " B "}]}]}]},
        {"name": "NUM", "contentType": "numeric", "start": 6, "length": 3, "valueSets": [{"name": "NUM_VS1", "values": [
            {"labels": [{"text": "Seven"}], "pairs": [{"value": " 7 "}]}]}]})"));
    EXPECT_EQ(valuesText(cbtest::variable(book, QStringLiteral("CODE")).valueSets.value(0)),
              (QStringList{"A;A", " B;B"}));
    EXPECT_EQ(valuesText(cbtest::variable(book, QStringLiteral("NUM")).valueSets.value(0)),
              (QStringList{"7;Seven"}));
}

TEST(CSProJsonValues, ANotApplCodeOfAnotherWidthIsBlank)
{
    // Width 2: "" and "8" (1 character) stand for a blank field; "98" is a real code.
    const Codebook book = cbtest::readJson(withItems(R"(
        {"name": "A", "contentType": "numeric", "start": 3, "length": 2, "valueSets": [{"name": "A_VS1", "values": [
            {"labels": [{"text": "Blank"}], "special": "NOTAPPL", "pairs": [{"value": ""}]}]}]},
        {"name": "B", "contentType": "numeric", "start": 5, "length": 2, "valueSets": [{"name": "B_VS1", "values": [
            {"labels": [{"text": "Short"}], "special": "notappl", "pairs": [{"value": "8"}]}]}]},
        {"name": "C", "contentType": "numeric", "start": 7, "length": 2, "valueSets": [{"name": "C_VS1", "values": [
            {"labels": [{"text": "Same width"}], "special": "NOTAPPL", "pairs": [{"value": "98"}]}]}]})"));
    EXPECT_EQ(missingText(cbtest::variable(book, QStringLiteral("A"))), QStringList{",NOTAPPL,Blank"});
    EXPECT_EQ(missingText(cbtest::variable(book, QStringLiteral("B"))), QStringList{",NOTAPPL,Short"});
    EXPECT_EQ(missingText(cbtest::variable(book, QStringLiteral("C"))), QStringList{"98,NOTAPPL,Same width"});
}

TEST(CSProJsonValues, EachCodeOfASpecialValueIsAMissingValue)
{
    const Codebook book = cbtest::readJson(withItems(R"(
        {"name": "INC", "contentType": "numeric", "start": 3, "length": 3, "valueSets": [
          {"name": "INC_VS1", "values": [
            {"labels": [{"text": "Refused"}], "special": "REFUSED", "pairs": [{"value": "997"}]},
            {"labels": [{"text": "Income"}], "pairs": [{"range": ["0", "900"]}]},
            {"labels": [{"text": "Unknown"}], "special": "MISSING",
             "pairs": [{"value": "998"}, {"range": ["990", "996"]}]},
            {"labels": [{"text": "Other"}], "special": "UNHEARD_OF", "pairs": [{"value": "999"}]}]},
          {"name": "INC_VS2", "values": [
            {"labels": [{"text": "Default"}], "special": "DEFAULT", "pairs": [{"value": "000"}]}]}]})"));
    const Variable v = cbtest::variable(book, QStringLiteral("INC"));
    EXPECT_EQ(missingText(v), (QStringList{"997,REFUSED,Refused", "998,MISSING,Unknown", "990:996,MISSING,Unknown",
                                           "000,DEFAULT,Default"}));
    ASSERT_EQ(v.missing.size(), 4);
    EXPECT_TRUE(v.missing.at(2).isRange);
    EXPECT_FALSE(v.missing.at(1).isRange);
    // An unknown special name leaves the value an ordinary one.
    EXPECT_EQ(v.valueSets.value(0).values.value(3).special, Special::None);
}

TEST(CSProJsonValues, NotesAndImagesAreKept)
{
    const Codebook book = cbtest::readJson(withItems(R"(
        {"name": "ROOF", "labels": [{"text": "Roof"}], "note": "Ask the respondent.", "contentType": "numeric",
         "start": 3, "length": 1, "valueSets": [{"name": "ROOF_VS1", "values": [
            {"labels": [{"text": "Tin"}], "note": "Corrugated iron too", "image": "images/tin.jpg",
             "textColor": "#ff0000", "pairs": [{"value": "1"}]},
            {"labels": [{"text": "Thatch"}], "pairs": [{"value": "2"}]}]}]})"));
    const Variable roof = cbtest::variable(book, QStringLiteral("ROOF"));
    EXPECT_EQ(roof.note, QStringLiteral("Ask the respondent."));
    const QVector<Value> values = roof.valueSets.value(0).values;
    ASSERT_EQ(values.size(), 2);
    EXPECT_EQ(values.at(0).note, QStringLiteral("Corrugated iron too"));
    EXPECT_EQ(values.at(0).image, QStringLiteral("images/tin.jpg"));
    EXPECT_TRUE(values.at(1).note.isEmpty());
    EXPECT_TRUE(values.at(1).image.isEmpty());
}

TEST(CSProJsonValues, ALinkedValueSetWithoutValuesIsFilled)
{
    const Codebook book = cbtest::readJson(withItems(R"(
        {"name": "SEX1", "contentType": "numeric", "start": 3, "length": 1, "valueSets": [
          {"name": "SEX1_VS1", "link": 7, "values": [
            {"labels": [{"text": "Male"}], "pairs": [{"value": "1"}]},
            {"labels": [{"text": "Not stated"}], "special": "MISSING", "pairs": [{"value": "9"}]}]}]},
        {"name": "SEX2", "contentType": "numeric", "start": 4, "length": 1, "valueSets": [
          {"name": "SEX2_VS1", "link": "7"}]})"));
    const ValueSet first = cbtest::variable(book, QStringLiteral("SEX1")).valueSets.value(0);
    const Variable second = cbtest::variable(book, QStringLiteral("SEX2"));
    EXPECT_EQ(first.link, QStringLiteral("7"));
    EXPECT_FALSE(first.linkFilled);
    ASSERT_EQ(second.valueSets.size(), 1);
    EXPECT_EQ(second.valueSets.at(0).link, QStringLiteral("7"));
    EXPECT_TRUE(second.valueSets.at(0).linkFilled);
    EXPECT_EQ(valuesText(second.valueSets.at(0)), (QStringList{"1;Male", "9;Not stated,MISSING"}));
    EXPECT_EQ(missingText(second), QStringList{"9,MISSING,Not stated"});
}

namespace {

enum class OwnSet { None, Before, After };

// An item SOURCE whose set (link "9") has \a specials MISSING codes 1..specials,
// then \a linked items that each carry the linked set and, before or after it,
// a set of their own with the MISSING code 0.
QByteArray manyLinkedItems(int specials, int linked, OwnSet ownSet)
{
    QByteArray values;
    for (int i = 1; i <= specials; ++i) {
        values += (i > 1 ? ", " : "") + QByteArray(R"({"special": "MISSING", "pairs": [{"value": ")")
            + QByteArray::number(i) + R"("}]})";
    }
    QByteArray items = R"({"name": "SOURCE", "contentType": "numeric", "start": 3, "length": 4,
                           "valueSets": [{"name": "SOURCE_VS", "link": "9", "values": [)" + values + "]}]}";
    const QByteArray own = R"({"name": "OWN", "values": [{"special": "MISSING", "pairs": [{"value": "0"}]}]})";
    const QByteArray link = R"({"name": "LINKED", "link": "9"})";
    const QByteArray sets = ownSet == OwnSet::Before ? own + ", " + link
        : ownSet == OwnSet::After ? link + ", " + own : link;
    for (int i = 0; i < linked; ++i) {
        items += R"(, {"name": "L)" + QByteArray::number(i)
            + R"(", "contentType": "numeric", "start": 3, "length": 4, "valueSets": [)" + sets + "]}";
    }
    return withItems(items);
}

} // namespace

TEST(CSProJsonValues, VariablesWithOnlyALinkedSetShareItsMissingValues)
{
    // 2,000 items x 1,000 missing values: shared, not copied, so within bounds.
    const Codebook book = cbtest::readJson(manyLinkedItems(1000, 2000, OwnSet::None));
    ASSERT_EQ(book.variables().size(), 1 + 1 + 2000);
    const Variable last = book.variables().last();
    EXPECT_EQ(last.name, QStringLiteral("L1999"));
    ASSERT_EQ(last.missing.size(), 1000);
    EXPECT_EQ(last.missing.at(999).from, QStringLiteral("1000"));
}

TEST(CSProJsonValues, CopyingLinkedMissingValuesIsBounded)
{
    // Each of 1,100 items needs its own list: code 0 and a copy of the 1,000
    // linked codes, 1,100,000 copies in all, past the bound of 1,000,000.
    for (OwnSet own : {OwnSet::Before, OwnSet::After}) {
        Error error;
        EXPECT_TRUE(Codebook::fromData(manyLinkedItems(1000, 1100, own), Format::CSProJson, &error).isNull());
        EXPECT_EQ(error.kind, Error::LimitReached);
    }
    // 900 items stay within it; the missing values follow the order of the sets.
    const Variable before = cbtest::readJson(manyLinkedItems(1000, 900, OwnSet::Before)).variables().last();
    ASSERT_EQ(before.missing.size(), 1001);
    EXPECT_EQ(before.missing.at(0).from, QStringLiteral("0"));
    EXPECT_EQ(before.missing.at(1000).from, QStringLiteral("1000"));
    const Variable after = cbtest::readJson(manyLinkedItems(1000, 900, OwnSet::After)).variables().last();
    ASSERT_EQ(after.missing.size(), 1001);
    EXPECT_EQ(after.missing.at(0).from, QStringLiteral("1"));
    EXPECT_EQ(after.missing.at(1000).from, QStringLiteral("0"));
}

// --- Items -------------------------------------------------------------------

TEST(CSProJsonItems, BinaryItemsTakeOneColumnAndNoValueSets)
{
    const Codebook book = cbtest::readJson(withItems(R"(
        {"name": "PHOTO", "contentType": "image", "start": 3, "length": 50,
         "valueSets": [{"name": "PHOTO_VS1", "values": [{"labels": [{"text": "x"}], "pairs": [{"value": "1"}]}]}]},
        {"name": "VOICE", "contentType": "Audio", "start": 4})"));
    const Variable photo = cbtest::variable(book, QStringLiteral("PHOTO"));
    EXPECT_EQ(photo.storage, Storage::Binary);
    EXPECT_EQ(photo.contentType, QStringLiteral("image"));
    EXPECT_EQ(photo.width, 1);
    EXPECT_TRUE(photo.valueSets.isEmpty());
    const Variable voice = cbtest::variable(book, QStringLiteral("VOICE"));
    EXPECT_EQ(voice.storage, Storage::Binary);
    EXPECT_EQ(voice.contentType, QStringLiteral("audio"));
}

TEST(CSProJsonItems, ContentTypeZeroFillAndDecimalMark)
{
    const Codebook book = cbtest::readJson(R"({
      "fileType": "dictionary", "name": "D", "recordType": {"start": 0, "length": 0},
      "defaults": {"decimalMark": true, "zeroFill": true}, "relativePositions": false,
      "levels": [{"name": "L", "ids": {"items": [{"name": "ID", "start": 1, "length": 1}]},
        "records": [{"name": "R", "occurrences": {"required": true, "maximum": 1}, "items": [
          {"name": "PLAIN", "start": 2, "length": 2},
          {"name": "NOFILL", "contentType": "numeric", "start": 4, "length": 2, "zeroFill": false},
          {"name": "TEXT", "contentType": "ALPHA", "start": 6, "length": 2, "zeroFill": true, "decimals": 2},
          {"name": "MARKED", "contentType": "numeric", "start": 8, "length": 5, "decimals": 2, "decimalMark": false},
          {"name": "WHOLE", "contentType": "numeric", "start": 13, "length": 5, "decimals": 0,
           "decimalMark": true}]}]}]})");
    // No contentType: numeric. No zeroFill: the dictionary's default (true).
    const Variable plain = cbtest::variable(book, QStringLiteral("PLAIN"));
    EXPECT_EQ(plain.storage, Storage::Numeric);
    EXPECT_EQ(plain.contentType, QStringLiteral("numeric"));
    EXPECT_TRUE(plain.zeroFill);
    EXPECT_FALSE(cbtest::variable(book, QStringLiteral("NOFILL")).zeroFill);
    // Alpha items have neither zero fill nor decimals.
    const Variable text = cbtest::variable(book, QStringLiteral("TEXT"));
    EXPECT_EQ(text.storage, Storage::Text);
    EXPECT_EQ(text.contentType, QStringLiteral("alpha"));
    EXPECT_FALSE(text.zeroFill);
    EXPECT_EQ(text.decimals, 0);
    const Variable marked = cbtest::variable(book, QStringLiteral("MARKED"));
    EXPECT_EQ(marked.decimals, 2);
    EXPECT_FALSE(marked.decimalMark);
    // decimalMark counts only with decimals.
    EXPECT_FALSE(cbtest::variable(book, QStringLiteral("WHOLE")).decimalMark);
    EXPECT_EQ(book.recordTypeStart(), 0);
    EXPECT_EQ(book.recordTypeLength(), 0);
    EXPECT_EQ(book.records().value(0).typeValue, QString());  // recordType omitted
}

TEST(CSProJsonItems, HostileNumbersSkipTheItem)
{
    const Codebook book = cbtest::readJson(withItems(R"(
        {"name": "HUGE_START", "contentType": "numeric", "start": 1e308, "length": 1},
        {"name": "FRACTION_LENGTH", "contentType": "numeric", "start": 3, "length": 3.7},
        {"name": "NEGATIVE_OCCURRENCES", "occurrences": {"maximum": -5}, "contentType": "numeric", "start": 3,
         "length": 1},
        {"name": "INT_OVERFLOW_START", "contentType": "numeric", "start": 2147483648, "length": 1},
        {"name": "INT_OVERFLOW_LENGTH", "contentType": "alpha", "start": 3, "length": 2147483648},
        {"name": "HUGE_OCCURRENCES", "occurrences": {"maximum": 1e308}, "contentType": "numeric", "start": 3,
         "length": 1},
        {"name": "TOO_MANY_OCCURRENCES", "occurrences": {"maximum": 10000}, "contentType": "numeric", "start": 3,
         "length": 1},
        {"name": "ZERO_LENGTH", "contentType": "numeric", "start": 3, "length": 0},
        {"name": "ZERO_START", "contentType": "numeric", "start": 0, "length": 1},
        {"name": "TEXT_START", "contentType": "numeric", "start": "3", "length": 1},
        {"name": "MANY_DECIMALS", "contentType": "numeric", "start": 3, "length": 20, "decimals": 16},
        {"name": "NEGATIVE_DECIMALS", "contentType": "numeric", "start": 3, "length": 5, "decimals": -1},
        {"name": "KEPT", "occurrences": {"maximum": 9999}, "contentType": "numeric", "start": 3, "length": 100000,
         "decimals": 15})"));
    EXPECT_EQ(names(book.variables()), (QStringList{"ITEM_ID", "KEPT"}));
    const Variable kept = cbtest::variable(book, QStringLiteral("KEPT"));
    EXPECT_EQ(kept.occurrences, 9999);
    EXPECT_EQ(kept.width, 100000);
    EXPECT_EQ(kept.decimals, 15);
    EXPECT_EQ(book.records().value(0).length, 3 + 100000 * 9999 - 1);
}

TEST(CSProJsonItems, HostileRecordOccurrencesSkipTheRecord)
{
    const Codebook book = cbtest::readJson(R"({
      "fileType": "dictionary", "recordType": {"start": 1, "length": 1}, "relativePositions": false,
      "levels": [{"name": "L", "ids": {"items": []}, "records": [
        {"name": "NEGATIVE", "occurrences": {"required": true, "maximum": -5}, "items": []},
        {"name": "FRACTION", "occurrences": {"required": true, "maximum": 3.7}, "items": []},
        {"name": "HUGE", "occurrences": {"required": true, "maximum": 2147483648}, "items": []},
        {"name": "NO_REQUIRED", "occurrences": {"maximum": 2}, "items": []},
        {"name": "NO_OCCURRENCES", "items": []},
        {"name": "KEPT", "occurrences": {"required": false, "maximum": 9999}, "items": []}]}]})");
    const QVector<Record> records = book.records();
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records.at(0).name, QStringLiteral("KEPT"));
    EXPECT_FALSE(records.at(0).required);
    EXPECT_EQ(records.at(0).maxOccurrences, 9999);
}

TEST(CSProJsonItems, HostileComputedStartsSkipTheItem)
{
    // Relative: the first item starts at 2, after the record type. BIG takes
    // 100000 x 9999 = 999,900,000 columns, so NEXT starts at 999,900,002.
    // OFFSET, NEXT's subitem, has an offset no column can have.
    QByteArray items = R"({"name": "BIG", "occurrences": {"maximum": 9999}, "contentType": "alpha", "length": 100000})";
    items += R"(, {"name": "NEXT", "contentType": "alpha", "length": 1})";
    items += R"(, {"name": "OFFSET", "contentType": "alpha", "subitem": true, "subitemOffset": 1e308, "length": 1})";
    const QByteArray head = R"({
      "fileType": "dictionary", "recordType": {"start": 1, "length": 1}, "relativePositions": true,
      "levels": [{"name": "L", "ids": {"items": []}, "records": [
        {"name": "R", "occurrences": {"required": true, "maximum": 1}, "items": [)";
    const Codebook book = cbtest::readJson(head + items + "]}]}]}");
    EXPECT_EQ(names(book.variables()), (QStringList{"BIG", "NEXT"}));
    EXPECT_EQ(book.variables().value(1).start, 999900002);

    // Repeated: the second BIG starts at 999,900,003; every later item would
    // start at 1,999,800,003, past the last column accepted (1,000,000,000).
    QByteArray repeated = items;
    for (int i = 0; i < 20; ++i)
        repeated += ", " + items;
    const Codebook many = cbtest::readJson(head + repeated + "]}]}]}");
    EXPECT_EQ(names(many.variables()), (QStringList{"BIG", "NEXT", "BIG"}));
    EXPECT_EQ(many.variables().value(2).start, 999900003);
}

// --- Labels and languages ----------------------------------------------------

TEST(CSProJsonLabels, AMissingTranslationFallsBackToThePrimary)
{
    const Codebook book = cbtest::readJson(withItems(R"(
        {"name": "SEX", "labels": [{"text": "Sex", "language": "EN"}, {"text": "Jinsia", "language": "sw"}],
         "contentType": "numeric", "start": 3, "length": 1})",
        R"([{"name": "EN", "label": "English"}, {"name": "FR", "label": "French"},
            {"name": "SW", "label": "Swahili"}])"));
    const QVector<Language> languages = book.languages();
    ASSERT_EQ(languages.size(), 3);
    EXPECT_EQ(languages.at(1).name, QStringLiteral("FR"));
    EXPECT_EQ(languages.at(1).label, QStringLiteral("French"));
    const Labels labels = cbtest::variable(book, QStringLiteral("SEX")).labels;
    EXPECT_EQ(labels.texts, (QStringList{"Sex", "", "Jinsia"}));
    EXPECT_EQ(labels.text(1), QStringLiteral("Sex"));
    EXPECT_EQ(labels.text(2), QStringLiteral("Jinsia"));
}

TEST(CSProJsonLabels, AnUnknownLanguageIsDiscardedUnlessItComesFirst)
{
    const Codebook book = cbtest::readJson(withItems(R"(
        {"name": "FIRST", "labels": [{"text": "Geschlecht", "language": "DE"}, {"text": "Sexe", "language": "FR"}],
         "contentType": "numeric", "start": 3, "length": 1},
        {"name": "LATER", "labels": [{"text": "Sex", "language": "EN"}, {"text": "Geschlecht", "language": "DE"}],
         "contentType": "numeric", "start": 4, "length": 1},
        {"name": "ONLY_FRENCH", "labels": [{"text": "Sexe", "language": "FR"}],
         "contentType": "numeric", "start": 5, "length": 1},
        {"name": "FRENCH_FIRST",
         "labels": [{"text": "Sexe", "language": "FR"}, {"text": "Geschlecht", "language": "DE"}],
         "contentType": "numeric", "start": 6, "length": 1})",
        R"([{"name": "EN", "label": "English"}, {"name": "FR", "label": "French"}])"));
    EXPECT_EQ(cbtest::variable(book, QStringLiteral("FIRST")).labels.texts, (QStringList{"Geschlecht", "Sexe"}));
    EXPECT_EQ(cbtest::variable(book, QStringLiteral("LATER")).labels.texts, QStringList{"Sex"});
    // A label in the second language only is also the primary one.
    EXPECT_EQ(cbtest::variable(book, QStringLiteral("ONLY_FRENCH")).labels.texts, (QStringList{"Sexe", "Sexe"}));
    EXPECT_EQ(cbtest::variable(book, QStringLiteral("FRENCH_FIRST")).labels.texts, (QStringList{"Sexe", "Sexe"}));
}

TEST(CSProJsonLabels, WithoutLanguagesThereIsOneUnnamedLanguage)
{
    const Codebook book = cbtest::readJson(withItems(R"(
        {"name": "SEX", "labels": [{"text": "Sex"}], "contentType": "numeric", "start": 3, "length": 1})"));
    ASSERT_EQ(book.languages().size(), 1);
    EXPECT_TRUE(book.languages().at(0).name.isEmpty());
    EXPECT_TRUE(book.languages().at(0).label.isEmpty());
    EXPECT_EQ(cbtest::variable(book, QStringLiteral("SEX")).labels.texts, QStringList{"Sex"});
}

// --- Header and errors -------------------------------------------------------

TEST(CSProJsonHeader, VersionIsWrittenAsTheFileGivesTheNumber)
{
    const QByteArray rest = R"("recordType": {"start": 1, "length": 1}, "relativePositions": true)";
    EXPECT_EQ(cbtest::readJson(withHeader(R"("version": 8, )" + rest)).formatVersion(), QStringLiteral("8"));
    EXPECT_EQ(cbtest::readJson(withHeader(R"("version": 8.1, )" + rest)).formatVersion(), QStringLiteral("8.1"));
    EXPECT_EQ(cbtest::readJson(withHeader(R"("version": "8.0", )" + rest)).formatVersion(), QStringLiteral("8.0"));
    const Codebook book = cbtest::readJson(withHeader(rest));
    EXPECT_TRUE(book.formatVersion().isEmpty());
    EXPECT_TRUE(book.relativePositions());
    EXPECT_EQ(book.levels().size(), 1);
}

TEST(CSProJsonHeader, AByteOrderMarkIsAccepted)
{
    const Codebook book = cbtest::readJson("\xEF\xBB\xBF" + withHeader(
        R"("name": "BOM", "recordType": {"start": 1, "length": 1}, "relativePositions": false)"));
    EXPECT_EQ(book.name(), QStringLiteral("BOM"));
}

TEST(CSProJsonErrors, AFileTypeOtherThanDictionaryIsAnError)
{
    const Error error = readError(withHeader(
        R"("fileType": "data", "recordType": {"start": 1, "length": 1}, "relativePositions": false)"));
    EXPECT_EQ(error.kind, Error::Malformed);
    EXPECT_TRUE(error.message.contains(QStringLiteral("fileType"))) << error.message.toStdString();
    EXPECT_TRUE(error.message.contains(QStringLiteral("\"data\""))) << error.message.toStdString();
}

TEST(CSProJsonErrors, RelativePositionsMustBeGiven)
{
    const Error missing = readError(withHeader(R"("recordType": {"start": 1, "length": 1})"));
    EXPECT_EQ(missing.kind, Error::Malformed);
    EXPECT_TRUE(missing.message.contains(QStringLiteral("relativePositions"))) << missing.message.toStdString();
    const Error text = readError(withHeader(R"("recordType": {"start": 1, "length": 1}, "relativePositions": "yes")"));
    EXPECT_EQ(text.kind, Error::Malformed);
}

TEST(CSProJsonErrors, TheRecordTypeMustBeGivenInWholeNumbers)
{
    const Error missing = readError(withHeader(R"("relativePositions": false)"));
    EXPECT_EQ(missing.kind, Error::Malformed);
    EXPECT_TRUE(missing.message.contains(QStringLiteral("recordType"))) << missing.message.toStdString();
    for (const char *bad : {"3.7", "-5", "1e308", "2147483648", "\"1\""}) {
        SCOPED_TRACE(bad);
        const Error start = readError(withHeader(R"("recordType": {"start": )" + QByteArray(bad)
                                                 + R"(, "length": 1}, "relativePositions": false)"));
        EXPECT_EQ(start.kind, Error::Malformed);
        EXPECT_TRUE(start.message.contains(QStringLiteral("start"))) << start.message.toStdString();
        const Error length = readError(withHeader(R"("recordType": {"start": 1, "length": )" + QByteArray(bad)
                                                  + R"(}, "relativePositions": false)"));
        EXPECT_EQ(length.kind, Error::Malformed);
        EXPECT_TRUE(length.message.contains(QStringLiteral("length"))) << length.message.toStdString();
    }
    const Error fraction =
        readError(withHeader(R"("recordType": {"start": 3.7, "length": 1}, "relativePositions": false)"));
    EXPECT_TRUE(fraction.message.contains(QStringLiteral("3.7"))) << fraction.message.toStdString();
}

TEST(CSProJsonErrors, InvalidJsonGivesTheLineAndColumn)
{
    // The comma after "D" is missing: the parser stops at "recordType" on line 3.
    const Error error = readError("{\n  \"name\": \"D\"\n  \"recordType\": {}\n}\n");
    EXPECT_EQ(error.kind, Error::Malformed);
    EXPECT_EQ(error.line, 3);
    EXPECT_TRUE(error.message.contains(QStringLiteral("line 3, column "))) << error.message.toStdString();
}

TEST(CSProJsonErrors, EmptyInputAndNonObjectsAreErrors)
{
    EXPECT_EQ(readError(QByteArray()).kind, Error::Malformed);
    EXPECT_EQ(readError("[1, 2]").kind, Error::Malformed);
    EXPECT_EQ(readError("{\"name\": ").line, 1);
}

TEST(CSProJsonErrors, TheFileNameIsInTheMessage)
{
    cbtest::TempFiles files;
    const QString path = files.write(QStringLiteral("broken.dcf"), "{\"fileType\": \"dictionary\"}");
    Error error;
    EXPECT_TRUE(Codebook::fromFile(path, &error, Format::CSProJson).isNull());
    EXPECT_EQ(error.kind, Error::Malformed);
    EXPECT_TRUE(error.message.startsWith(path)) << error.message.toStdString();
}

// The text form and the JSON form CSPro's converter writes of it describe
// one dictionary: everything but the file, its format, version and encoding
// is the same.
TEST(CSProJsonCensus, GivesTheSameCodebookAsTheTextForm)
{
    QJsonObject fromJson = toJson(Codebook::fromFile(cbtest::samplePath("census.json")));
    QJsonObject fromText = toJson(Codebook::fromFile(cbtest::samplePath("census.dcf")));
    for (const char *key : {"file", "format", "formatVersion", "encoding"}) {
        fromJson.remove(QLatin1String(key));
        fromText.remove(QLatin1String(key));
    }
    ASSERT_FALSE(fromText.value(QStringLiteral("variables")).toArray().isEmpty());
    const QJsonArray jsonVariables = fromJson.value(QStringLiteral("variables")).toArray();
    const QJsonArray textVariables = fromText.value(QStringLiteral("variables")).toArray();
    ASSERT_EQ(jsonVariables.size(), textVariables.size());
    for (int i = 0; i < jsonVariables.size(); ++i)
        EXPECT_EQ(jsonVariables.at(i), textVariables.at(i))
            << QJsonDocument(jsonVariables.at(i).toObject()).toJson().toStdString() << "\nagainst\n"
            << QJsonDocument(textVariables.at(i).toObject()).toJson().toStdString();
    EXPECT_EQ(fromJson, fromText);
}

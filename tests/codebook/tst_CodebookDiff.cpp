#include "CodebookTestSupport.h"

#include <KxCodebookDiff.h>

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QStringList>

#include <algorithm>
#include <iostream>
#include <string>

using namespace KxCodebook;

namespace {

QString s(const char *utf8) { return QString::fromUtf8(utf8); }

// One change on one line: its kind, then each field that is not empty.
QString describe(const Change &c)
{
    QString text = changeKindName(c.kind);
    auto field = [&text](const char *name, const QString &value) {
        if (!value.isEmpty())
            text += QLatin1Char(' ') + QLatin1String(name) + QStringLiteral("='") + value + QLatin1Char('\'');
    };
    field("record", c.record);
    field("variable", c.variable);
    field("set", c.valueSet);
    field("value", c.value);
    field("language", c.language);
    field("old", c.oldValue);
    field("new", c.newValue);
    field("detail", c.detail);
    return text;
}

// The changes one to a line, so that a failure shows the difference line by line.
std::string described(const Comparison &comparison)
{
    QStringList lines;
    for (const Change &c : comparison.changes)
        lines << describe(c);
    return lines.join(QLatin1Char('\n')).toStdString();
}

std::string lines(std::initializer_list<const char *> rows)
{
    QStringList result;
    for (const char *row : rows)
        result << s(row);
    return result.join(QLatin1Char('\n')).toStdString();
}

Codebook readSample(const char *name)
{
    Error error;
    const Codebook book = Codebook::fromFile(cbtest::samplePath(name), &error);
    EXPECT_TRUE(error.ok()) << name << ": " << error.message.toStdString();
    return book;
}

// A CSPro text dictionary in absolute positions: record type in column 1,
// the identification item ID in column 2, then \a body (its records).
QByteArray textDictionary(const QByteArray &body, const QByteArray &languages = QByteArray())
{
    return "[Dictionary]\nVersion=CSPro 7.7\nLabel=Test\nName=TEST_DICT\nRecordTypeStart=1\nRecordTypeLen=1\n"
           "Positions=Absolute\n\n"
        + languages
        + "[Level]\nLabel=Level\nName=LEVEL\n\n[IdItems]\n\n[Item]\nLabel=Identifier\nName=ID\nStart=2\nLen=1\n\n"
        + body;
}

// One record PERSON ('P') holding \a items.
QByteArray personRecord(const QByteArray &items)
{
    return "[Record]\nLabel=Person\nName=PERSON\nRecordTypeValue='P'\n\n" + items;
}

QByteArray item(const char *name, const char *label, int start, int width, const QByteArray &more = QByteArray())
{
    return "[Item]\nLabel=" + QByteArray(label) + "\nName=" + name + "\nStart=" + QByteArray::number(start)
        + "\nLen=" + QByteArray::number(width) + "\n" + more + "\n";
}

Comparison compareTexts(const QByteArray &before, const QByteArray &after,
                        const CompareOptions &options = CompareOptions())
{
    return compare(cbtest::readText(before), cbtest::readText(after), options);
}

int countOf(const Comparison &comparison, ChangeKind kind)
{
    return int(std::count_if(comparison.changes.cbegin(), comparison.changes.cend(),
                             [kind](const Change &c) { return c.kind == kind; }));
}

} // namespace

// ---------------------------------------------------------------------------
// Kind names and severities
// ---------------------------------------------------------------------------

TEST(DiffKinds, NamesAndSeverities)
{
    struct Row { ChangeKind kind; const char *name; int severity; };
    const Row rows[] = {
        {ChangeKind::RecordAdded, "record-added", 3},
        {ChangeKind::RecordRemoved, "record-removed", 3},
        {ChangeKind::RecordTypeChanged, "record-type-changed", 3},
        {ChangeKind::RecordLengthChanged, "record-length-changed", 3},
        {ChangeKind::VariableAdded, "variable-added", 3},
        {ChangeKind::VariableRemoved, "variable-removed", 3},
        {ChangeKind::VariableRenamed, "variable-renamed", 3},
        {ChangeKind::VariableMoved, "variable-moved", 3},
        {ChangeKind::VariableResized, "variable-resized", 3},
        {ChangeKind::OccurrencesChanged, "occurrences-changed", 3},
        {ChangeKind::RecordChanged, "record-changed", 3},
        {ChangeKind::TypeChanged, "type-changed", 2},
        {ChangeKind::DecimalsChanged, "decimals-changed", 2},
        {ChangeKind::FormatChanged, "format-changed", 2},
        {ChangeKind::MissingChanged, "missing-changed", 2},
        {ChangeKind::ValueSetAdded, "value-set-added", 2},
        {ChangeKind::ValueSetRemoved, "value-set-removed", 2},
        {ChangeKind::ValueAdded, "value-added", 2},
        {ChangeKind::ValueRemoved, "value-removed", 2},
        {ChangeKind::ValueRangeChanged, "value-range-changed", 2},
        {ChangeKind::ValueRelabelled, "value-relabelled", 1},
        {ChangeKind::LabelChanged, "label-changed", 1},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(changeKindName(row.kind), s(row.name));
        EXPECT_EQ(changeSeverity(row.kind), row.severity);
    }
}

// ---------------------------------------------------------------------------
// samples/census.dcf against its next round, samples/census-round2.dcf
// ---------------------------------------------------------------------------

// Every line below is one edit of census-round2.dcf (listed in its comment
// block), in the order compare() gives: identification items first, then
// the records of census-round2.dcf (HOUSING, PERSON, ABROAD, DEATH), in each
// layout (3), content (2) and wording (1), then file order.
TEST(DiffCensus, RoundTwoGivesEveryChangeInOrder)
{
    const Comparison comparison = compare(readSample("census.dcf"), readSample("census-round2.dcf"));
    EXPECT_TRUE(comparison.positionsCompared);
    EXPECT_EQ(described(comparison), lines({
        // Label=Enumeration area -> Label=Enumeration area code
        "label-changed variable='EA' old='Enumeration area' new='Enumeration area code'",
        // HOUSING, layout: ASSET Occurrences=6 -> 5; LANDAREA Start=25 Len=5 ->
        // LANDHA Start=24 Len=6, same Label= (no variable at 24/6 to match by place)
        "occurrences-changed record='HOUSING' variable='ASSET' old='6' new='5'",
        "variable-renamed record='HOUSING' variable='LANDHA' old='LANDAREA' new='LANDHA' detail='same label'",
        "variable-moved record='HOUSING' variable='LANDHA' old='25' new='24'",
        "variable-resized record='HOUSING' variable='LANDHA' old='5' new='6'",
        // HOUSING, content: Value=1:20;Rooms -> Value=1:30;Rooms; Value='D';Stone
        // added; WATER gains DataType=Alpha; RENT loses Decimal=2; HHSIZE gains
        // [ValueSet] Label=Persons in the household
        "value-range-changed record='HOUSING' variable='ROOMS' set='ROOMS_VS1' value='1:30' old='1:20' new='1:30'",
        "value-added record='HOUSING' variable='WALLS' set='WALLS_VS1' value='D' new='Stone'",
        "type-changed record='HOUSING' variable='WATER' old='numeric' new='alpha'",
        "decimals-changed record='HOUSING' variable='RENT' old='2' new='0'",
        "value-set-added record='HOUSING' variable='HHSIZE' set='HHSIZE_VS1' new='Persons in the household'",
        // HOUSING, wording: Value=5;Improvised housing unit -> Makeshift or improvised shelter
        "value-relabelled record='HOUSING' variable='DWELLING' set='DWELLING_VS1' value='5' "
        "old='Improvised housing unit' new='Makeshift or improvised shelter'",
        // PERSON, layout: the subitem BIRTHMONTH gone (it sat after BIRTHYEAR);
        // Name=MARITAL -> MARSTAT with Start=26 Len=1 unchanged
        "variable-removed record='PERSON' variable='BIRTHMONTH' old='Month of birth'",
        "variable-renamed record='PERSON' variable='MARSTAT' old='MARITAL' new='MARSTAT' "
        "detail='same record, start and width'",
        // PERSON, content: SCHOOL's Value=8 loses Name=NOTAPPL,Special (9 keeps
        // MISSING); OCCUP's Value='7115';Carpenters and joiners removed
        "missing-changed record='PERSON' variable='SCHOOL' old='8 (NOTAPPL), 9 (MISSING)' new='9 (MISSING)'",
        "value-removed record='PERSON' variable='OCCUP' set='OCCUP_VS1' value='7115' old='Carpenters and joiners'",
        // the new record ABROAD, placed before DEATH, with its item ACOUNTRY
        "record-added record='ABROAD' new='Household members living abroad'",
        "variable-added record='ABROAD' variable='ACOUNTRY' new='Country of residence'",
        // DEATH: RecordTypeValue='D' -> 'M'; DPLACE (Start=20 Len=1) added after
        // DCAUSE (column 19), so the record ends at 20 instead of 19
        "record-type-changed record='DEATH' old='D' new='M'",
        "record-length-changed record='DEATH' old='19' new='20'",
        "variable-added record='DEATH' variable='DPLACE' new='Place of death'",
    }));
}

TEST(DiffCensus, RoundTwoWithoutLabels)
{
    CompareOptions options;
    options.ignoreLabels = true;
    const Comparison comparison =
        compare(readSample("census.dcf"), readSample("census-round2.dcf"), options);
    // No label changes, no relabelled value, and LANDHA, found only by its
    // label, is a new variable: LANDAREA is removed just before it. The range
    // of ROOMS is still matched by its label.
    EXPECT_EQ(described(comparison), lines({
        "occurrences-changed record='HOUSING' variable='ASSET' old='6' new='5'",
        "variable-removed record='HOUSING' variable='LANDAREA' old='Agricultural land in hectares'",
        "variable-added record='HOUSING' variable='LANDHA' new='Agricultural land in hectares'",
        "value-range-changed record='HOUSING' variable='ROOMS' set='ROOMS_VS1' value='1:30' old='1:20' new='1:30'",
        "value-added record='HOUSING' variable='WALLS' set='WALLS_VS1' value='D' new='Stone'",
        "type-changed record='HOUSING' variable='WATER' old='numeric' new='alpha'",
        "decimals-changed record='HOUSING' variable='RENT' old='2' new='0'",
        "value-set-added record='HOUSING' variable='HHSIZE' set='HHSIZE_VS1' new='Persons in the household'",
        "variable-removed record='PERSON' variable='BIRTHMONTH' old='Month of birth'",
        "variable-renamed record='PERSON' variable='MARSTAT' old='MARITAL' new='MARSTAT' "
        "detail='same record, start and width'",
        "missing-changed record='PERSON' variable='SCHOOL' old='8 (NOTAPPL), 9 (MISSING)' new='9 (MISSING)'",
        "value-removed record='PERSON' variable='OCCUP' set='OCCUP_VS1' value='7115' old='Carpenters and joiners'",
        "record-added record='ABROAD' new='Household members living abroad'",
        "variable-added record='ABROAD' variable='ACOUNTRY' new='Country of residence'",
        "record-type-changed record='DEATH' old='D' new='M'",
        "record-length-changed record='DEATH' old='19' new='20'",
        "variable-added record='DEATH' variable='DPLACE' new='Place of death'",
    }));
}

TEST(DiffCensus, BackwardsEveryAdditionIsARemoval)
{
    const Comparison comparison = compare(readSample("census-round2.dcf"), readSample("census.dcf"));
    // census.dcf's order of records; ABROAD only in the old side comes last.
    EXPECT_EQ(countOf(comparison, ChangeKind::RecordRemoved), 1);
    EXPECT_EQ(countOf(comparison, ChangeKind::RecordAdded), 0);
    ASSERT_FALSE(comparison.changes.isEmpty());
    EXPECT_EQ(describe(comparison.changes.constLast()),
              s("variable-removed record='ABROAD' variable='ACOUNTRY' old='Country of residence'"));
    EXPECT_EQ(describe(comparison.changes.at(comparison.changes.size() - 2)),
              s("record-removed record='ABROAD' old='Household members living abroad'"));
    EXPECT_EQ(countOf(comparison, ChangeKind::VariableRemoved), 2);  // DPLACE, ACOUNTRY
    EXPECT_EQ(countOf(comparison, ChangeKind::VariableAdded), 1);    // BIRTHMONTH
}

TEST(DiffCensus, SameDictionaryHasNoChange)
{
    const Comparison comparison = compare(readSample("census.dcf"), readSample("census.dcf"));
    EXPECT_TRUE(comparison.isEmpty()) << described(comparison);
    EXPECT_TRUE(comparison.positionsCompared);
}

// samples/census.json is census.dcf as CSPro 8's converter writes it
// (relative positions without starts, trimmed codes, string link ids).
TEST(DiffCensus, TextAndItsJsonFormHaveNoChange)
{
    const Comparison comparison = compare(readSample("census.dcf"), readSample("census.json"));
    EXPECT_TRUE(comparison.isEmpty()) << described(comparison);
    const Comparison backwards = compare(readSample("census.json"), readSample("census.dcf"));
    EXPECT_TRUE(backwards.isEmpty()) << described(backwards);
}

// ---------------------------------------------------------------------------
// What CSPro's text -> JSON converter changes is no change
// ---------------------------------------------------------------------------

// The text form: CRLF line ends, Windows-1252 ("R\xE9gion" is "Région"),
// alpha codes padded inside their quotes, a language segment left empty,
// linked value sets with Link=1 (the second without values of its own).
static const char FormsText[] =
    "[Dictionary]\r\nVersion=CSPro 7.7\r\nLabel=Forms\r\nName=FORMS_DICT\r\nRecordTypeStart=1\r\n"
    "RecordTypeLen=1\r\nPositions=Absolute\r\n\r\n"
    "[Languages]\r\nEN=English\r\nFR=Fran\xE7" "ais\r\n\r\n"
    "[Level]\r\nLabel=Household|M\xE9nage\r\nName=LEVEL\r\n\r\n[IdItems]\r\n\r\n"
    "[Item]\r\nLabel=R\xE9gion|\r\nName=REGION\r\nStart=2\r\nLen=2\r\n\r\n"
    "[Record]\r\nLabel=Person|Personne\r\nName=PERSON\r\nRecordTypeValue='P'\r\n\r\n"
    "[Item]\r\nLabel=Answer|R\xE9ponse\r\nName=ANSWER\r\nStart=4\r\nLen=3\r\nDataType=Alpha\r\n\r\n"
    "[ValueSet]\r\nLabel=Answer|R\xE9ponse\r\nName=ANSWER_VS1\r\nLink=1\r\n"
    "Value='Y  ';Yes|Oui\r\nValue='N  ';No|Non\r\nValue='DK ';Don\x92t know|\r\n\r\n"
    "[Item]\r\nLabel=Second answer|Seconde r\xE9ponse\r\nName=ANSWER2\r\nStart=7\r\nLen=3\r\nDataType=Alpha\r\n\r\n"
    "[ValueSet]\r\nLabel=Answer|R\xE9ponse\r\nName=ANSWER2_VS1\r\nLink=1\r\n\r\n"
    "[Item]\r\nLabel=Age|\xC2ge\r\nName=AGE\r\nStart=10\r\nLen=2\r\n\r\n"
    "[ValueSet]\r\nLabel=Age|\xC2ge\r\nName=AGE_VS1\r\nValue=0:97;Years|Ans\r\nValue= 98 ;Unknown|Inconnu\r\n"
    "Name=MISSING,Special\r\nValue=' ';Not applicable|\r\nName=NOTAPPL,Special\r\n";

// The same dictionary as JSON: UTF-8, LF, keys in another order, codes
// trimmed, a language entry only where it differs, other link ids.
static const char FormsJson[] = R"({
  "fileType": "dictionary", "version": 8.0, "software": "CSPro",
  "relativePositions": false, "recordType": {"length": 1, "start": 1},
  "labels": [{"text": "Forms"}], "name": "FORMS_DICT",
  "languages": [{"label": "English", "name": "EN"}, {"label": "Français", "name": "FR"}],
  "levels": [{
    "labels": [{"text": "Household"}, {"language": "FR", "text": "Ménage"}], "name": "LEVEL",
    "ids": {"items": [{"start": 2, "name": "REGION", "length": 2, "labels": [{"text": "Région"}],
                       "contentType": "numeric"}]},
    "records": [{
      "occurrences": {"maximum": 1, "required": true}, "recordType": "P", "name": "PERSON",
      "labels": [{"text": "Person"}, {"text": "Personne", "language": "FR"}],
      "items": [
        {"valueSets": [{"values": [
            {"pairs": [{"value": "Y"}], "labels": [{"text": "Yes"}, {"text": "Oui", "language": "FR"}]},
            {"pairs": [{"value": "N"}], "labels": [{"text": "No"}, {"text": "Non", "language": "FR"}]},
            {"pairs": [{"value": "DK"}], "labels": [{"text": "Don’t know"}]}],
           "link": "12", "name": "ANSWER_VS1", "labels": [{"text": "Answer"}, {"text": "Réponse", "language": "FR"}]}],
         "length": 3, "start": 4, "contentType": "alpha", "name": "ANSWER",
         "labels": [{"text": "Answer"}, {"text": "Réponse", "language": "FR"}]},
        {"valueSets": [{"link": "12", "name": "ANSWER2_VS1",
                        "labels": [{"text": "Answer"}, {"text": "Réponse", "language": "FR"}]}],
         "length": 3, "start": 7, "contentType": "alpha", "name": "ANSWER2",
         "labels": [{"text": "Second answer"}, {"text": "Seconde réponse", "language": "FR"}]},
        {"name": "AGE", "start": 10, "length": 2, "contentType": "numeric", "zeroFill": false,
         "labels": [{"text": "Age"}, {"text": "Âge", "language": "FR"}],
         "valueSets": [{"name": "AGE_VS1", "labels": [{"text": "Age"}, {"text": "Âge", "language": "FR"}],
           "values": [
             {"labels": [{"text": "Years"}, {"text": "Ans", "language": "FR"}], "pairs": [{"range": ["0", "97"]}]},
             {"special": "MISSING", "pairs": [{"value": "98"}],
              "labels": [{"text": "Unknown"}, {"text": "Inconnu", "language": "FR"}]},
             {"pairs": [{"value": ""}], "special": "NOTAPPL", "labels": [{"text": "Not applicable"}]}]}]}
      ]}]}]
})";

TEST(DiffForms, TextAndJsonOfOneDictionaryHaveNoChange)
{
    const Codebook text = cbtest::readText(QByteArray(FormsText));
    const Codebook json = cbtest::readJson(QByteArray(FormsJson));
    ASSERT_EQ(text.encoding(), s("windows-1252"));  // the inputs differ as intended
    ASSERT_EQ(cbtest::variable(text, s("REGION")).labels.primary(), s("Région"));
    const Comparison comparison = compare(text, json);
    EXPECT_TRUE(comparison.isEmpty()) << described(comparison);
    const Comparison backwards = compare(json, text);
    EXPECT_TRUE(backwards.isEmpty()) << described(backwards);
}

// The same pair with one French label changed on the JSON side: the
// comparison above would have seen a difference.
TEST(DiffForms, ALanguageOfItsOwnIsCompared)
{
    QByteArray json(FormsJson);
    json.replace(R"({"text": "Seconde réponse", "language": "FR"})", R"({"text": "Autre réponse", "language": "FR"})");
    const Comparison comparison = compare(cbtest::readText(QByteArray(FormsText)), cbtest::readJson(json));
    EXPECT_EQ(described(comparison), lines({
        "label-changed record='PERSON' variable='ANSWER2' language='FR' old='Seconde réponse' new='Autre réponse'",
    }));
}

// ---------------------------------------------------------------------------
// Labels and languages
// ---------------------------------------------------------------------------

static const char TwoLanguages[] = "[Languages]\nEN=English\nFR=French\n\n";

TEST(DiffLabels, AnEmptySegmentIsThePrimaryLabel)
{
    const QByteArray before = textDictionary(personRecord(item("SEX", "Sex|", 3, 1)), TwoLanguages);
    const QByteArray after = textDictionary(personRecord(item("SEX", "Sex|Sex", 3, 1)), TwoLanguages);
    const Comparison comparison = compareTexts(before, after);
    EXPECT_TRUE(comparison.isEmpty()) << described(comparison);
}

TEST(DiffLabels, PrimaryAndOtherLanguages)
{
    const QByteArray before = textDictionary(personRecord(item("SEX", "Sex|", 3, 1)
                                                          + item("AGE", "Age|Age", 4, 2)
                                                          + item("EDU", "School|", 6, 1)),
                                             TwoLanguages);
    const QByteArray after = textDictionary(personRecord(item("SEX", "Gender|", 3, 1)
                                                         + item("AGE", "Age|\xC3\x82ge", 4, 2)
                                                         + item("EDU", "School|\xC3\x89" "cole", 6, 1)),
                                            TwoLanguages);
    // SEX: the primary label changed, French follows it on both sides (one
    // change). AGE: French only. EDU: French had none of its own (the
    // primary "School"), now has one.
    EXPECT_EQ(described(compareTexts(before, after)), lines({
        "label-changed record='PERSON' variable='SEX' old='Sex' new='Gender'",
        "label-changed record='PERSON' variable='AGE' language='FR' old='Age' new='Âge'",
        "label-changed record='PERSON' variable='EDU' language='FR' old='School' new='École'",
    }));
}

TEST(DiffLabels, RecordAndValueSetLabels)
{
    const QByteArray before = textDictionary(
        "[Record]\nLabel=Person\nName=PERSON\nRecordTypeValue='P'\n\n"
        + item("SEX", "Sex", 3, 1, "\n[ValueSet]\nLabel=Sex\nName=SEX_VS1\nValue=1;Male\nValue=2;Female\n"));
    const QByteArray after = textDictionary(
        "[Record]\nLabel=Person record\nName=PERSON\nRecordTypeValue='P'\n\n"
        + item("SEX", "Sex", 3, 1, "\n[ValueSet]\nLabel=Sex of the person\nName=SEX_VS1\nValue=1;Male\nValue=2;Woman\n"));
    EXPECT_EQ(described(compareTexts(before, after)), lines({
        "label-changed record='PERSON' old='Person' new='Person record'",
        "label-changed record='PERSON' variable='SEX' set='SEX_VS1' old='Sex' new='Sex of the person'",
        "value-relabelled record='PERSON' variable='SEX' set='SEX_VS1' value='2' old='Female' new='Woman'",
    }));
    CompareOptions options;
    options.ignoreLabels = true;
    const Comparison layoutOnly = compareTexts(before, after, options);
    EXPECT_TRUE(layoutOnly.isEmpty()) << described(layoutOnly);
}

// ---------------------------------------------------------------------------
// Value sets and values
// ---------------------------------------------------------------------------

TEST(DiffValues, CodesRangesAndSets)
{
    const QByteArray before = textDictionary(personRecord(
        item("AGE", "Age", 3, 3, "\n[ValueSet]\nLabel=Age\nName=AGE_VS1\n"
                                 "Value=0:17;Minor\nValue=18:64;Working age\nValue=65:120;Older\n"
                                 "Value=998 999;Unknown\n"
                                 "\n[ValueSet]\nLabel=Age groups\nName=AGE_VS2\nValue=0:14;Child\n")
        + item("SEX", "Sex", 6, 1, "\n[ValueSet]\nLabel=Sex\nName=SEX_VS1\nValue=1;Male\nValue=2;Female\n")));
    const QByteArray after = textDictionary(personRecord(
        item("AGE", "Age", 3, 3, "\n[ValueSet]\nLabel=Age\nName=AGE_V\n"
                                 "Value=0:17;Minor\nValue=18:66;Working age\nValue=67:120;Retired\n"
                                 "Value=999;Unknown\nValue=997;Refused\n")
        + item("SEX", "Sex", 6, 1, "\n[ValueSet]\nLabel=Sex\nName=SEX_VS1\nValue=1;Male\nValue=2;Female\n"
                                   "\n[ValueSet]\nLabel=Sex (short)\nName=SEX_VS2\nValue=1;M\nValue=2;F\n")));
    // AGE: the set keeps its place (another name is no change); 0:17 is on
    // both sides; 18:64 -> 18:66 by the label "Working age"; 65:120 "Older"
    // and 67:120 "Retired" share no label; code 998 gone, 997 new; the second
    // set gone. SEX: a second set.
    EXPECT_EQ(described(compareTexts(before, after)), lines({
        "value-added record='PERSON' variable='AGE' set='AGE_V' value='997' new='Refused'",
        "value-removed record='PERSON' variable='AGE' set='AGE_V' value='998' old='Unknown'",
        "value-range-changed record='PERSON' variable='AGE' set='AGE_V' value='18:66' old='18:64' new='18:66'",
        "value-added record='PERSON' variable='AGE' set='AGE_V' value='67:120' new='Retired'",
        "value-removed record='PERSON' variable='AGE' set='AGE_V' value='65:120' old='Older'",
        "value-set-removed record='PERSON' variable='AGE' set='AGE_VS2' old='Age groups'",
        "value-set-added record='PERSON' variable='SEX' set='SEX_VS2' new='Sex (short)'",
    }));
}

TEST(DiffValues, ASameRangeWithAnotherLabelIsRelabelled)
{
    const QByteArray before = textDictionary(personRecord(
        item("AGE", "Age", 3, 2, "\n[ValueSet]\nLabel=Age\nName=AGE_VS1\nValue=0:14;Child\n")));
    const QByteArray after = textDictionary(personRecord(
        item("AGE", "Age", 3, 2, "\n[ValueSet]\nLabel=Age\nName=AGE_VS1\nValue=0:14;Children\n")));
    EXPECT_EQ(described(compareTexts(before, after)), lines({
        "value-relabelled record='PERSON' variable='AGE' set='AGE_VS1' value='0:14' old='Child' new='Children'",
    }));
}

// Codes are compared as CSPro 8 writes them: alpha right-trimmed, numeric
// trimmed. Built by hand, since the readers trim already.
TEST(DiffValues, PaddedCodesAreTheSameCodes)
{
    auto book = [](const char *alpha, const char *number) {
        Variable name;
        name.name = s("NAME");
        name.storage = Storage::Text;
        Variable count;
        count.name = s("COUNT");
        ValueSet alphaSet, numberSet;
        Value a, n;
        a.codes << Code{s(alpha), QString(), false};
        n.codes << Code{s(number), QString(), false};
        a.labels = n.labels = Labels::of(s("One"));
        alphaSet.values << a;
        numberSet.values << n;
        name.valueSets << alphaSet;
        count.valueSets << numberSet;
        Codebook b;
        b.setVariables({name, count});
        return b;
    };
    const Comparison same = compare(book("A", "1"), book("A   ", " 1 "));
    EXPECT_TRUE(same.isEmpty()) << described(same);
    // A leading blank of an alpha code is part of it.
    EXPECT_EQ(described(compare(book("A", "1"), book(" A", "1"))), lines({
        "value-added variable='NAME' value=' A' new='One'",
        "value-removed variable='NAME' value='A' old='One'",
    }));
}

// ---------------------------------------------------------------------------
// Variables: types, decimals, formats, missing values, records
// ---------------------------------------------------------------------------

TEST(DiffVariables, SpssFormatsAndMissingValues)
{
    auto book = [](const char *format, QVector<MissingValue> missing) {
        Variable income;
        income.name = s("INCOME");
        income.labels = Labels::of(s("Income"));
        income.format = s(format);
        income.width = 8;
        income.decimals = 2;
        income.missing = std::move(missing);
        Codebook b;
        b.setFormat(Format::Spss);
        b.setVariables({income});
        return b;
    };
    const MissingValue nine{s("9"), QString(), false, Special::None, s("Not stated")};
    const MissingValue range{s("-9"), s("-1"), true, Special::None, QString()};
    const MissingValue refused{s("8"), QString(), false, Special::Refused, QString()};
    // The same values in another order, other labels: no change.
    const Comparison reordered = compare(book("F8.2", {nine, range}), book("F8.2", {range, nine}));
    EXPECT_TRUE(reordered.isEmpty()) << described(reordered);
    EXPECT_FALSE(reordered.positionsCompared);
    EXPECT_EQ(described(compare(book("F8.2", {nine, range}), book("DOLLAR8.2", {range, refused}))), lines({
        "format-changed variable='INCOME' old='F8.2' new='DOLLAR8.2'",
        "missing-changed variable='INCOME' old='9, -9:-1' new='-9:-1, 8 (REFUSED)'",
    }));
}

TEST(DiffVariables, RecordTypeDecimalsAndOccurrences)
{
    const QByteArray before = textDictionary(
        personRecord(item("AGE", "Age", 3, 3) + item("INCOME", "Income", 6, 8, "Decimal=2\n")
                     + item("CHILD", "Children", 14, 2, "Occurrences=3\n"))
        + "[Record]\nLabel=Deaths\nName=DEATH\nRecordTypeValue='D'\n\n" + item("DAGE", "Age at death", 3, 3));
    const QByteArray after = textDictionary(
        personRecord(item("AGE", "Age", 3, 3, "DataType=Alpha\n") + item("INCOME", "Income", 6, 8, "Decimal=1\n")
                     + item("DAGE", "Age at death", 14, 3) + item("CHILD", "Children", 17, 2, "Occurrences=4\n")));
    // DAGE moves from DEATH (gone) to PERSON; PERSON grows from 19 to 24 columns.
    EXPECT_EQ(described(compareTexts(before, after)), lines({
        "record-length-changed record='PERSON' old='19' new='24'",
        "variable-moved record='PERSON' variable='DAGE' old='3' new='14'",
        "record-changed record='PERSON' variable='DAGE' old='DEATH' new='PERSON'",
        "variable-moved record='PERSON' variable='CHILD' old='14' new='17'",
        "occurrences-changed record='PERSON' variable='CHILD' old='3' new='4'",
        "type-changed record='PERSON' variable='AGE' old='numeric' new='alpha'",
        "decimals-changed record='PERSON' variable='INCOME' old='2' new='1'",
        "record-removed record='DEATH' old='Deaths'",
    }));
}

// ---------------------------------------------------------------------------
// Matching: names, places, labels, repeated names
// ---------------------------------------------------------------------------

TEST(DiffMatching, ByNameThenPlaceThenLabel)
{
    const QByteArray before = textDictionary(personRecord(
        item("SEX", "Sex", 3, 1) + item("AGE", "Age", 4, 3) + item("EDU", "Education", 7, 1)
        + item("WORK", "Works", 8, 1) + item("OLD", "Dropped", 9, 1)));
    const QByteArray after = textDictionary(personRecord(
        item("SEX", "Sex", 3, 1) + item("AGE_YEARS", "Age in years", 4, 3) + item("WORKS", "Works", 7, 1)
        + item("SCHOOL", "Education", 10, 2) + item("NEW", "Added", 12, 1)));
    // AGE_YEARS sits where AGE sat. WORKS sits where EDU sat: place comes
    // before label, so it is EDU renamed (and relabelled), and SCHOOL, with
    // EDU's label, finds no partner left with it; WORK keeps its label
    // "Works" but WORKS was taken. No partner: OLD, WORK, SCHOOL, NEW.
    EXPECT_EQ(described(compareTexts(before, after)), lines({
        "record-length-changed record='PERSON' old='9' new='12'",
        "variable-renamed record='PERSON' variable='AGE_YEARS' old='AGE' new='AGE_YEARS' "
        "detail='same record, start and width'",
        "variable-renamed record='PERSON' variable='WORKS' old='EDU' new='WORKS' detail='same record, start and width'",
        "variable-removed record='PERSON' variable='WORK' old='Works'",
        "variable-removed record='PERSON' variable='OLD' old='Dropped'",
        "variable-added record='PERSON' variable='SCHOOL' new='Education'",
        "variable-added record='PERSON' variable='NEW' new='Added'",
        "label-changed record='PERSON' variable='AGE_YEARS' old='Age' new='Age in years'",
        "label-changed record='PERSON' variable='WORKS' old='Education' new='Works'",
    }));
}

TEST(DiffMatching, ALabelMustBeUniqueOnBothSides)
{
    const QByteArray before = textDictionary(personRecord(
        item("A1", "Same", 3, 1) + item("A2", "Same", 4, 1) + item("B1", "Once", 5, 1)));
    const QByteArray after = textDictionary(personRecord(
        item("C1", "Same", 13, 1) + item("D1", "Once", 14, 1) + item("D2", "Once", 15, 1)));
    // "Same" twice on the old side, "Once" twice on the new: no label rule.
    const Comparison comparison = compareTexts(before, after);
    EXPECT_EQ(countOf(comparison, ChangeKind::VariableRenamed), 0) << described(comparison);
    EXPECT_EQ(countOf(comparison, ChangeKind::VariableRemoved), 3);
    EXPECT_EQ(countOf(comparison, ChangeKind::VariableAdded), 3);
}

TEST(DiffMatching, RepeatedNames)
{
    const QByteArray before = textDictionary(personRecord(
        item("DUP", "First", 3, 1) + item("DUP", "Second", 4, 1) + item("DUP", "Third", 5, 1)));
    // The first DUP by name; the second by its place (4/1), the third by its label.
    const QByteArray after = textDictionary(personRecord(
        item("DUP", "First", 3, 1) + item("X", "Second", 4, 1) + item("Y", "Third", 9, 1)));
    EXPECT_EQ(described(compareTexts(before, after)), lines({
        "record-length-changed record='PERSON' old='5' new='9'",
        "variable-renamed record='PERSON' variable='X' old='DUP' new='X' detail='same record, start and width'",
        "variable-renamed record='PERSON' variable='Y' old='DUP' new='Y' detail='same label'",
        "variable-moved record='PERSON' variable='Y' old='5' new='9'",
    }));
    // Repeated on both sides in the same places: nothing changed.
    const Comparison same = compareTexts(before, before);
    EXPECT_TRUE(same.isEmpty()) << described(same);
}

// ---------------------------------------------------------------------------
// One side empty, one side without columns
// ---------------------------------------------------------------------------

TEST(DiffEmpty, ADictionaryWithoutItems)
{
    const QByteArray empty = "[Dictionary]\nVersion=CSPro 7.7\nLabel=Empty\nName=EMPTY_DICT\nRecordTypeStart=1\n"
                             "RecordTypeLen=1\nPositions=Absolute\n\n[Level]\nLabel=Level\nName=LEVEL\n\n[IdItems]\n";
    const QByteArray full = textDictionary(personRecord(item("SEX", "Sex", 3, 1) + item("AGE", "Age", 4, 3)));
    EXPECT_EQ(described(compareTexts(empty, full)), lines({
        "variable-added variable='ID' new='Identifier'",
        "record-added record='PERSON' new='Person'",
        "variable-added record='PERSON' variable='SEX' new='Sex'",
        "variable-added record='PERSON' variable='AGE' new='Age'",
    }));
    EXPECT_EQ(described(compareTexts(full, empty)), lines({
        "variable-removed variable='ID' old='Identifier'",
        "record-removed record='PERSON' old='Person'",
        "variable-removed record='PERSON' variable='SEX' old='Sex'",
        "variable-removed record='PERSON' variable='AGE' old='Age'",
    }));
    EXPECT_TRUE(compare(Codebook(), Codebook()).isEmpty());
}

// An SPSS file has no columns and no records: starts and record names are
// not compared, the variables are still matched by name and label.
TEST(DiffFormats, CSProAgainstSpss)
{
    const Codebook cspro = cbtest::readText(textDictionary(personRecord(
        item("SEX", "Sex", 16, 1) + item("AGE", "Age", 17, 3) + item("EDU", "Education", 20, 1))));
    auto spssVariable = [](const char *name, const char *label, int width) {
        Variable v;
        v.name = s(name);
        v.labels = Labels::of(s(label));
        v.width = width;
        v.format = QStringLiteral("F%1.0").arg(width);
        return v;
    };
    Codebook spss;
    spss.setFormat(Format::Spss);
    spss.setVariables({spssVariable("ID", "Identifier", 1), spssVariable("AGE", "Age", 3),
                       spssVariable("GENDER", "Sex", 1), spssVariable("EDU", "Education", 2)});
    const Comparison comparison = compare(cspro, spss);
    EXPECT_FALSE(comparison.positionsCompared);
    EXPECT_EQ(described(comparison), lines({
        "variable-renamed variable='GENDER' old='SEX' new='GENDER' detail='same label'",
        "variable-resized variable='EDU' old='1' new='2'",
        "record-removed record='PERSON' old='Person'",
    }));

    // Between two CSPro dictionaries the same starts do count.
    const Codebook shifted = cbtest::readText(textDictionary(personRecord(
        item("SEX", "Sex", 6, 1) + item("AGE", "Age", 7, 3) + item("EDU", "Education", 10, 1))));
    const Comparison both = compare(cspro, shifted);
    EXPECT_TRUE(both.positionsCompared);
    EXPECT_EQ(countOf(both, ChangeKind::VariableMoved), 3) << described(both);
}

// ---------------------------------------------------------------------------
// Hostile sizes: matching stays linear
// ---------------------------------------------------------------------------

namespace {

constexpr int Many = 100000;

// A dictionary of one record REC ('R') holding \a count items named
// \a prefix and a number, labelled "Item <number>", item n at column
// 3 + n * width, \a width columns wide.
QByteArray manyItems(int count, const char *prefix, int width)
{
    QByteArray text = textDictionary("[Record]\nLabel=Record\nName=REC\nRecordTypeValue='R'\n\n");
    text.reserve(text.size() + count * 64);
    for (int i = 0; i < count; ++i) {
        const QByteArray n = QByteArray::number(i);
        text += "[Item]\nLabel=Item " + n + "\nName=" + prefix + n + "\nStart=" + QByteArray::number(3 + i * width)
            + "\nLen=" + QByteArray::number(width) + "\n\n";
    }
    return text;
}

struct Timed
{
    Comparison comparison;
    qint64 readMs = 0;
    qint64 compareMs = 0;
};

Timed readAndCompare(const QByteArray &before, const QByteArray &after)
{
    Timed timed;
    QElapsedTimer timer;
    timer.start();
    const Codebook old = cbtest::readText(before);
    const Codebook young = cbtest::readText(after);
    timed.readMs = timer.restart();
    timed.comparison = compare(old, young);
    timed.compareMs = timer.elapsed();
    return timed;
}

void report(const char *what, const Timed &timed)
{
    std::cout << "[ timing   ] " << what << ": reading both " << timed.readMs << " ms, comparing "
              << timed.compareMs << " ms\n";
}

} // namespace

TEST(DiffHostile, EveryNameDiffersAllMatchedByPlace)
{
    const Timed timed = readAndCompare(manyItems(Many, "OLD", 1), manyItems(Many, "NEW", 1));
    report("100,000 renames by place", timed);
    const QVector<Change> &changes = timed.comparison.changes;
    ASSERT_EQ(changes.size(), Many);
    EXPECT_EQ(countOf(timed.comparison, ChangeKind::VariableRenamed), Many);
    EXPECT_EQ(describe(changes.constFirst()),
              s("variable-renamed record='REC' variable='NEW0' old='OLD0' new='NEW0' detail='same record, start and width'"));
    EXPECT_EQ(describe(changes.constLast()), s("variable-renamed record='REC' variable='NEW99999' old='OLD99999' "
                                               "new='NEW99999' detail='same record, start and width'"));
    EXPECT_LT(timed.compareMs, 5000);
    EXPECT_LE(timed.compareMs, timed.readMs);
}

TEST(DiffHostile, EveryNameAndPlaceDiffersAllMatchedByLabel)
{
    // New items are two columns wide: item n starts at 3 + 2n instead of 3 + n.
    const Timed timed = readAndCompare(manyItems(Many, "OLD", 1), manyItems(Many, "NEW", 2));
    report("100,000 renames by label", timed);
    EXPECT_EQ(countOf(timed.comparison, ChangeKind::VariableRenamed), Many);
    EXPECT_EQ(countOf(timed.comparison, ChangeKind::VariableResized), Many);
    EXPECT_EQ(countOf(timed.comparison, ChangeKind::VariableMoved), Many - 1);  // item 0 starts at 3 on both
    EXPECT_EQ(countOf(timed.comparison, ChangeKind::RecordLengthChanged), 1);
    EXPECT_EQ(timed.comparison.changes.size(), 3 * Many);
    // Three changes a variable: only the generous bound (the time is reported).
    EXPECT_LT(timed.compareMs, 5000);
}

// Built by hand: 100,000 variables named DUP on the old side, all in one place
// with one label; on the new side the first is DUP, the others all named apart
// in that same place with that same label.
TEST(DiffHostile, RepeatedNamesPlacesAndLabels)
{
    auto book = [](bool renamed) {
        Record record;
        record.name = s("REC");
        QVector<Variable> variables(Many);
        for (int i = 0; i < Many; ++i) {
            Variable &v = variables[i];
            v.name = renamed && i > 0 ? QStringLiteral("N%1").arg(i) : s("DUP");
            v.record = s("REC");
            v.labels = Labels::of(s("Same"));
            v.start = 3;
            v.width = 1;
        }
        Codebook b;
        b.setFormat(Format::CSProText);
        b.setRecords({record});
        b.setVariables(variables);
        return b;
    };
    QElapsedTimer timer;
    timer.start();
    const Comparison comparison = compare(book(false), book(true));
    const qint64 ms = timer.elapsed();
    std::cout << "[ timing   ] 100,000 repeated names in one place: comparing " << ms << " ms\n";
    ASSERT_EQ(comparison.changes.size(), Many - 1);
    EXPECT_EQ(countOf(comparison, ChangeKind::VariableRenamed), Many - 1);
    EXPECT_EQ(describe(comparison.changes.constFirst()),
              s("variable-renamed record='REC' variable='N1' old='DUP' new='N1' detail='same record, start and width'"));
    EXPECT_LT(ms, 5000);

    // Backwards: the repeated names are on the new side.
    timer.restart();
    const Comparison backwards = compare(book(true), book(false));
    EXPECT_EQ(countOf(backwards, ChangeKind::VariableRenamed), Many - 1);
    EXPECT_EQ(backwards.changes.size(), Many - 1);
    EXPECT_LT(timer.elapsed(), 5000);
}

#include "CodebookTestSupport.h"

#include <QFile>
#include <QStringList>

#include <gtest/gtest.h>

#include <vector>

using namespace KxCodebook;
using cbtest::readText;
using cbtest::variable;

namespace {

// A dictionary up to an open [Item] of record R: what a test appends starts
// on line 16.
const char kHeader[] =
    "[Dictionary]\n"          //  1
    "Name=D\n"                //  2
    "RecordTypeStart=1\n"     //  3
    "RecordTypeLen=1\n"       //  4
    "[Level]\n"               //  5
    "Name=L\n"                //  6
    "[IdItems]\n"             //  7
    "[Item]\n"                //  8
    "Name=ID\n"               //  9
    "Start=2\n"               // 10
    "Len=2\n"                 // 11
    "[Record]\n"              // 12
    "Name=R\n"                // 13
    "RecordTypeValue='R'\n"   // 14
    "[Item]\n";               // 15
constexpr int kFirstLine = 16;

QByteArray withItem(const char *lines)
{
    return QByteArray(kHeader) + lines;
}

QString code(const QString &text)
{
    return text.isEmpty() || text.contains(QLatin1Char(' ')) ? QLatin1Char('\'') + text + QLatin1Char('\'') : text;
}

// "1:5 7=Label|Libellé [MISSING]": the codes, the labels per language, the special.
QString describe(const Value &value)
{
    QStringList codes;
    for (const Code &c : value.codes)
        codes << (c.isRange ? code(c.from) + QLatin1Char(':') + code(c.to) : code(c.from));
    QString text = codes.join(QLatin1Char(' ')) + QLatin1Char('=') + value.labels.texts.join(QLatin1Char('|'));
    if (value.special != Special::None)
        text += QStringLiteral(" [%1]").arg(specialName(value.special));
    return text;
}

QStringList valuesOf(const Variable &v, int set = 0)
{
    QStringList out;
    if (set >= v.valueSets.size()) {
        ADD_FAILURE() << "no value set " << set << " in " << v.name.toStdString();
        return out;
    }
    for (const Value &value : v.valueSets.at(set).values)
        out << describe(value);
    return out;
}

// "99:100 MISSING Not reported"
QStringList missingOf(const Variable &v)
{
    QStringList out;
    for (const MissingValue &m : v.missing)
        out << QStringLiteral("%1 %2 %3")
                   .arg(m.isRange ? code(m.from) + QLatin1Char(':') + code(m.to) : code(m.from),
                        specialName(m.special), m.label);
    return out;
}

QStringList list(const std::vector<const char *> &texts)
{
    QStringList out;
    for (const char *t : texts)
        out << QString::fromUtf8(t);
    return out;
}

QStringList occurrenceLabelsOf(const QVector<OccurrenceLabel> &labels)
{
    QStringList out;
    for (const OccurrenceLabel &l : labels)
        out << QStringLiteral("%1=%2").arg(l.occurrence).arg(l.labels.texts.join(QLatin1Char('|')));
    return out;
}

Error readError(const QByteArray &text)
{
    Error error;
    const Codebook book = Codebook::fromData(text, Format::CSProText, &error);
    EXPECT_TRUE(book.isNull());
    EXPECT_FALSE(error.ok());
    return error;
}

QString s(const char *utf8) { return QString::fromUtf8(utf8); }

} // namespace

// ---------------------------------------------------------------------------
// samples/census.dcf, field by field
// ---------------------------------------------------------------------------

TEST(CSProTextCensus, Dictionary)
{
    Error error;
    const Codebook book = Codebook::fromFile(cbtest::samplePath("census.dcf"), &error);
    ASSERT_TRUE(error.ok()) << error.message.toStdString();
    EXPECT_EQ(book.format(), Format::CSProText);
    EXPECT_EQ(book.fileName(), cbtest::samplePath("census.dcf"));
    EXPECT_EQ(book.encoding(), s("UTF-8"));  // plain ASCII is valid UTF-8
    EXPECT_EQ(book.name(), s("CENSUS2023_DICT"));
    EXPECT_EQ(book.labels().texts, list({"2023 Population and Housing Census"}));
    EXPECT_EQ(book.formatVersion(), s("CSPro 7.7"));
    EXPECT_EQ(book.recordTypeStart(), 1);
    EXPECT_EQ(book.recordTypeLength(), 1);
    EXPECT_TRUE(book.relativePositions());  // Positions=Relative
    EXPECT_EQ(book.rowCount(), -1);
    ASSERT_EQ(book.languages().size(), 1);
    EXPECT_TRUE(book.languages().at(0).name.isEmpty());
    EXPECT_TRUE(book.languages().at(0).label.isEmpty());
    ASSERT_EQ(book.levels().size(), 1);
    EXPECT_EQ(book.levels().at(0).name, s("HOUSEHOLD_LEVEL"));
    EXPECT_EQ(book.levels().at(0).labels.texts, list({"Household questionnaire"}));
}

TEST(CSProTextCensus, Records)
{
    const Codebook book = Codebook::fromFile(cbtest::samplePath("census.dcf"));
    const QVector<Record> records = book.records();
    ASSERT_EQ(records.size(), 3);
    // Record lengths, from the Start/Len/Occurrences lines of the file:
    //  record type 1..1; ID items PROVINCE 2..3, DISTRICT 4..5, URBRUR 6,
    //  EA 7..9, HHNUM 10..12: every record is at least 12 long.
    //  HOUSING: ASSET 19 + 1×6 - 1 = 24, LANDAREA 25..29, RENT 30..36,
    //    HHSIZE 37..38, ADDRESS 39 + 30 - 1 = 68          -> 68
    //  PERSON: BIRTHDATE 20..25 (its subitems do not count), OCCUP 28..31,
    //    INCOME 32..39, CHILDREN 40 + 2 - 1 = 41          -> 41
    //  DEATH: DLINE 13..14, DSEX 15, DAGE 16..18, DCAUSE 19 -> 19
    struct Row { const char *name, *label, *type; bool required; int max, length; };
    const Row rows[] = {
        {"HOUSING", "Housing record", "H", true, 1, 68},
        {"PERSON", "Person record", "P", false, 30, 41},
        {"DEATH", "Deaths in the last 12 months", "D", false, 10, 19},
    };
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(rows[i].name);
        const Record &r = records.at(i);
        EXPECT_EQ(r.name, s(rows[i].name));
        EXPECT_EQ(r.labels.texts, list({rows[i].label}));
        EXPECT_EQ(r.level, 1);
        EXPECT_EQ(r.typeValue, s(rows[i].type));
        EXPECT_EQ(r.required, rows[i].required);
        EXPECT_EQ(r.maxOccurrences, rows[i].max);
        EXPECT_EQ(r.length, rows[i].length);
        EXPECT_TRUE(r.occurrenceLabels.isEmpty());
    }
}

TEST(CSProTextCensus, Items)
{
    const Codebook book = Codebook::fromFile(cbtest::samplePath("census.dcf"));
    struct Row
    {
        const char *name, *record;
        int start, width, occurrences;
        const char *parent;  // nullptr: not a subitem
        Storage storage;
        int decimals;
        bool decimalMark, zeroFill;
        const char *label;
    };
    const Storage N = Storage::Numeric, A = Storage::Text;
    const Row rows[] = {
        {"PROVINCE", "", 2, 2, 1, nullptr, N, 0, false, true, "Province"},
        {"DISTRICT", "", 4, 2, 1, nullptr, N, 0, false, true, "District"},
        {"URBRUR", "", 6, 1, 1, nullptr, N, 0, false, false, "Urban or rural area"},
        {"EA", "", 7, 3, 1, nullptr, N, 0, false, true, "Enumeration area"},
        {"HHNUM", "", 10, 3, 1, nullptr, N, 0, false, true, "Household number"},
        {"DWELLING", "HOUSING", 13, 1, 1, nullptr, N, 0, false, false, "Type of dwelling"},
        {"ROOMS", "HOUSING", 14, 2, 1, nullptr, N, 0, false, true, "Number of rooms"},
        {"WALLS", "HOUSING", 16, 1, 1, nullptr, A, 0, false, false, "Main material of the outer walls"},
        {"WATER", "HOUSING", 17, 2, 1, nullptr, N, 0, false, false, "Main source of drinking water"},
        {"ASSET", "HOUSING", 19, 1, 6, nullptr, N, 0, false, false, "Household owns the item"},
        {"LANDAREA", "HOUSING", 25, 5, 1, nullptr, N, 1, true, false, "Agricultural land in hectares"},
        {"RENT", "HOUSING", 30, 7, 1, nullptr, N, 2, false, false, "Monthly rent paid"},
        {"HHSIZE", "HOUSING", 37, 2, 1, nullptr, N, 0, false, true, "Persons in the household"},
        {"ADDRESS", "HOUSING", 39, 30, 1, nullptr, A, 0, false, false, "Street address"},
        {"PLINE", "PERSON", 13, 2, 1, nullptr, N, 0, false, true, "Person line number"},
        {"RELATION", "PERSON", 15, 1, 1, nullptr, N, 0, false, false, "Relationship to head of household"},
        {"SEX", "PERSON", 16, 1, 1, nullptr, N, 0, false, false, "Sex"},
        {"AGE", "PERSON", 17, 3, 1, nullptr, N, 0, false, false, "Age in completed years"},
        {"BIRTHDATE", "PERSON", 20, 6, 1, nullptr, N, 0, false, false, "Date of birth"},
        {"BIRTHYEAR", "PERSON", 20, 4, 1, "BIRTHDATE", N, 0, false, false, "Year of birth"},
        {"BIRTHMONTH", "PERSON", 24, 2, 1, "BIRTHDATE", N, 0, false, false, "Month of birth"},
        {"MARITAL", "PERSON", 26, 1, 1, nullptr, N, 0, false, false, "Marital status"},
        {"SCHOOL", "PERSON", 27, 1, 1, nullptr, N, 0, false, false, "School attendance"},
        {"OCCUP", "PERSON", 28, 4, 1, nullptr, A, 0, false, false, "Occupation (ISCO-08 unit group)"},
        {"INCOME", "PERSON", 32, 8, 1, nullptr, N, 2, false, false, "Monthly income from work"},
        {"CHILDREN", "PERSON", 40, 2, 1, nullptr, N, 0, false, false, "Children ever born"},
        {"DLINE", "DEATH", 13, 2, 1, nullptr, N, 0, false, true, "Line of the deceased"},
        {"DSEX", "DEATH", 15, 1, 1, nullptr, N, 0, false, false, "Sex of the deceased"},
        {"DAGE", "DEATH", 16, 3, 1, nullptr, N, 0, false, false, "Age at death"},
        {"DCAUSE", "DEATH", 19, 1, 1, nullptr, N, 0, false, false, "Cause of death"},
    };
    const QVector<Variable> vars = book.variables();
    ASSERT_EQ(vars.size(), int(sizeof(rows) / sizeof(rows[0])));
    for (int i = 0; i < vars.size(); ++i) {
        const Row &row = rows[i];
        const Variable &v = vars.at(i);
        SCOPED_TRACE(row.name);
        EXPECT_EQ(v.name, s(row.name));
        EXPECT_EQ(v.labels.texts, list({row.label}));
        EXPECT_EQ(v.record, s(row.record));
        EXPECT_EQ(v.isId, QByteArray(row.record).isEmpty());
        EXPECT_EQ(v.level, 1);
        EXPECT_EQ(v.start, row.start);
        EXPECT_EQ(v.width, row.width);
        EXPECT_EQ(v.occurrences, row.occurrences);
        EXPECT_EQ(v.isSubitem, row.parent != nullptr);
        EXPECT_EQ(v.parent, row.parent ? s(row.parent) : QString());
        EXPECT_EQ(v.storage, row.storage);
        EXPECT_EQ(v.contentType, row.storage == N ? s("numeric") : s("alpha"));
        EXPECT_EQ(v.decimals, row.decimals);
        EXPECT_EQ(v.decimalMark, row.decimalMark);
        EXPECT_EQ(v.zeroFill, row.zeroFill);
        EXPECT_TRUE(v.note.isEmpty());
        if (row.occurrences == 1) {
            EXPECT_TRUE(v.occurrenceLabels.isEmpty());
        }
    }
    EXPECT_EQ(occurrenceLabelsOf(variable(book, s("ASSET")).occurrenceLabels),
              list({"1=Radio", "2=Television", "3=Refrigerator", "4=Mobile telephone", "5=Bicycle",
                    "6=Car or truck"}));
}

TEST(CSProTextCensus, ValueSets)
{
    const Codebook book = Codebook::fromFile(cbtest::samplePath("census.dcf"));
    struct Row
    {
        const char *variable, *set, *label;
        std::vector<const char *> values;
    };
    const std::vector<Row> rows = {
        {"PROVINCE", "PROVINCE_VS1", "Province",
         {"1=North", "2=South", "3=East", "4=West", "5=Capital district"}},
        {"URBRUR", "URBRUR_VS1", "Urban or rural area", {"1=Urban", "2=Rural"}},
        {"DWELLING", "DWELLING_VS1", "Type of dwelling",
         {"1=Detached house", "2=Semi-detached house", "3=Apartment or flat", "4=Traditional dwelling",
          "5=Improvised housing unit", "9=Not reported [MISSING]"}},
        {"ROOMS", "ROOMS_VS1", "Number of rooms", {"1:20=Rooms", "99=Not reported [MISSING]"}},
        {"WALLS", "WALLS_VS1", "Main material of the outer walls",
         {"A=Brick or concrete blocks", "B=Wood or timber", "C=Mud or earth", "X=Other material"}},
        {"WATER", "WATER_VS1", "Main source of drinking water",
         {"11=Piped into dwelling", "12=Piped into yard or plot", "21=Public tap or standpipe",
          "31=Protected well", "32=Unprotected well", "41=River, lake or pond", "96=Other source"}},
        {"ASSET", "ASSET_VS1", "Yes or no", {"1=Yes", "2=No"}},
        {"LANDAREA", "LANDAREA_VS1", "Agricultural land in hectares",
         {"0.5=Under one hectare", "1:999=One hectare or more"}},
        {"PLINE", "PLINE_VS1", "Person line number", {"1:30=Line"}},
        {"RELATION", "RELATION_VS1", "Relationship to head of household",
         {"1=Head", "2=Spouse or partner", "3=Son or daughter", "4=Parent", "5=Other relative", "6=Non-relative",
          "9=Not reported [MISSING]"}},
        {"SEX", "SEX_VS1", "Sex", {"1=Male", "2=Female"}},
        {"AGE", "AGE_VS1", "Age in completed years",
         {"0:97=Years", "98=98 years or more", "999=Not reported [MISSING]"}},
        {"BIRTHMONTH", "BIRTHMONTH_VS1", "Month of birth", {"1:12=Month", "99=Not reported [MISSING]"}},
        {"MARITAL", "MARITAL_VS1", "Marital status",
         {"1=Never married", "2=Married", "3=Consensual union", "4=Separated or divorced", "5=Widowed",
          "9=Not reported [MISSING]"}},
        // 8 is as long as the 1-column item: a real code, not a blank field.
        {"SCHOOL", "SCHOOL_VS1", "School attendance",
         {"1=Attending", "2=Attended in the past", "3=Never attended", "8=Not applicable [NOTAPPL]",
          "9=Not reported [MISSING]"}},
        {"OCCUP", "OCCUP_VS1", "Occupation (ISCO-08 unit group)",
         {"1120=Managing directors and chief executives", "2341=Primary school teachers",
          "6111=Field crop and vegetable growers", "7115=Carpenters and joiners", "9999=Not stated"}},
        {"CHILDREN", "CHILDREN_VS1", "Children ever born",
         {"0:30=Children", "98=Not applicable [NOTAPPL]", "99=Not reported [MISSING]"}},
        {"DSEX", "DSEX_VS1", "Sex", {"1=Male", "2=Female"}},
        {"DAGE", "DAGE_VS1", "Age at death", {"0:97=Years", "98=98 years or more", "999=Not reported [MISSING]"}},
        {"DCAUSE", "DCAUSE_VS1", "Cause of death",
         {"1=Illness", "2=Accident", "3=Violence", "4=Pregnancy or childbirth", "9=Not known [MISSING]"}},
    };
    QStringList withSets;
    for (const Row &row : rows) {
        SCOPED_TRACE(row.variable);
        withSets << s(row.variable);
        const Variable v = variable(book, s(row.variable));
        ASSERT_EQ(v.valueSets.size(), 1);
        const ValueSet &set = v.valueSets.at(0);
        EXPECT_EQ(set.name, s(row.set));
        EXPECT_EQ(set.labels.texts, list({row.label}));
        EXPECT_TRUE(set.link.isEmpty());
        EXPECT_FALSE(set.linkFilled);
        EXPECT_EQ(valuesOf(v), list(row.values));
        for (const Value &value : set.values) {
            EXPECT_TRUE(value.note.isEmpty());
            EXPECT_TRUE(value.image.isEmpty());
        }
    }
    for (const Variable &v : book.variables()) {
        if (!withSets.contains(v.name)) {
            EXPECT_TRUE(v.valueSets.isEmpty()) << v.name.toStdString();
        }
    }
}

TEST(CSProTextCensus, MissingValues)
{
    const Codebook book = Codebook::fromFile(cbtest::samplePath("census.dcf"));
    struct Row
    {
        const char *variable;
        std::vector<const char *> missing;
    };
    const std::vector<Row> rows = {
        {"DWELLING", {"9 MISSING Not reported"}},
        {"ROOMS", {"99 MISSING Not reported"}},
        {"RELATION", {"9 MISSING Not reported"}},
        {"AGE", {"999 MISSING Not reported"}},
        {"BIRTHMONTH", {"99 MISSING Not reported"}},
        {"MARITAL", {"9 MISSING Not reported"}},
        {"SCHOOL", {"8 NOTAPPL Not applicable", "9 MISSING Not reported"}},
        {"CHILDREN", {"98 NOTAPPL Not applicable", "99 MISSING Not reported"}},
        {"DAGE", {"999 MISSING Not reported"}},
        {"DCAUSE", {"9 MISSING Not known"}},
    };
    QStringList withMissing;
    for (const Row &row : rows) {
        withMissing << s(row.variable);
        EXPECT_EQ(missingOf(variable(book, s(row.variable))), list(row.missing)) << row.variable;
    }
    for (const Variable &v : book.variables()) {
        if (!withMissing.contains(v.name)) {
            EXPECT_TRUE(v.missing.isEmpty()) << v.name.toStdString();
        }
    }
}

// ---------------------------------------------------------------------------
// samples/languages.dcf: two languages, CRLF, UTF-8 without a BOM
// ---------------------------------------------------------------------------

TEST(CSProTextLanguagesSample, Dictionary)
{
    QFile file(cbtest::samplePath("languages.dcf"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_FALSE(bytes.startsWith("\xEF\xBB\xBF"));
    EXPECT_TRUE(bytes.contains("\r\n"));

    Error error;
    const Codebook book = Codebook::fromFile(cbtest::samplePath("languages.dcf"), &error);
    ASSERT_TRUE(error.ok()) << error.message.toStdString();
    EXPECT_EQ(book.format(), Format::CSProText);
    EXPECT_EQ(book.encoding(), s("UTF-8"));
    EXPECT_EQ(book.name(), s("HHSURVEY_DICT"));
    EXPECT_EQ(book.labels().texts, list({"Household survey 2024", "Enquête auprès des ménages 2024"}));
    EXPECT_EQ(book.formatVersion(), s("CSPro 7.7"));
    EXPECT_EQ(book.recordTypeStart(), 1);
    EXPECT_EQ(book.recordTypeLength(), 1);
    EXPECT_TRUE(book.relativePositions());
    ASSERT_EQ(book.languages().size(), 2);
    EXPECT_EQ(book.languages().at(0).name, s("EN"));
    EXPECT_EQ(book.languages().at(0).label, s("English"));
    EXPECT_EQ(book.languages().at(1).name, s("FR"));
    EXPECT_EQ(book.languages().at(1).label, s("Français"));
    ASSERT_EQ(book.levels().size(), 1);
    EXPECT_EQ(book.levels().at(0).name, s("HH_LEVEL"));
    EXPECT_EQ(book.levels().at(0).labels.texts, list({"Household", "Ménage"}));

    // Lengths: record type 1, CLUSTER 2..4, HHNO 5..6; HOUSEHOLD: REGION
    // 7 + 3 - 1 = 9; PERSON: ACTIVITY_YR 12 + 1 - 1 = 12.
    const QVector<Record> records = book.records();
    ASSERT_EQ(records.size(), 2);
    EXPECT_EQ(records.at(0).name, s("HOUSEHOLD"));
    EXPECT_EQ(records.at(0).labels.texts, list({"Household record", "Fiche ménage"}));
    EXPECT_EQ(records.at(0).typeValue, s("H"));
    EXPECT_TRUE(records.at(0).required);
    EXPECT_EQ(records.at(0).maxOccurrences, 1);
    EXPECT_EQ(records.at(0).length, 9);
    EXPECT_EQ(records.at(1).name, s("PERSON"));
    EXPECT_EQ(records.at(1).labels.texts, list({"Person record", "Fiche individuelle"}));
    EXPECT_EQ(records.at(1).typeValue, s("P"));
    EXPECT_FALSE(records.at(1).required);
    EXPECT_EQ(records.at(1).maxOccurrences, 25);
    EXPECT_EQ(records.at(1).length, 12);
}

TEST(CSProTextLanguagesSample, Items)
{
    const Codebook book = Codebook::fromFile(cbtest::samplePath("languages.dcf"));
    struct Row
    {
        const char *name, *record;
        int start, width;
        Storage storage;
        bool zeroFill;
        std::vector<const char *> labels;
    };
    const std::vector<Row> rows = {
        {"CLUSTER", "", 2, 3, Storage::Numeric, true, {"Cluster", "Grappe"}},
        {"HHNO", "", 5, 2, Storage::Numeric, true, {"Household number", "Numéro du ménage"}},
        {"REGION", "HOUSEHOLD", 7, 3, Storage::Text, false, {"Region", ""}},
        {"LINE", "PERSON", 7, 2, Storage::Numeric, true, {"Line number", "Numéro de ligne"}},
        {"AGE", "PERSON", 9, 2, Storage::Numeric, false, {"Age in completed years", "Âge en années révolues"}},
        {"ACTIVITY", "PERSON", 11, 1, Storage::Numeric, false, {"Activity last week", "Activité la semaine dernière"}},
        {"ACTIVITY_YR", "PERSON", 12, 1, Storage::Numeric, false, {"Activity a year ago", "Activité il y a un an"}},
    };
    const QVector<Variable> vars = book.variables();
    ASSERT_EQ(vars.size(), int(rows.size()));
    for (int i = 0; i < vars.size(); ++i) {
        const Row &row = rows.at(i);
        const Variable &v = vars.at(i);
        SCOPED_TRACE(row.name);
        EXPECT_EQ(v.name, s(row.name));
        EXPECT_EQ(v.record, s(row.record));
        EXPECT_EQ(v.isId, QByteArray(row.record).isEmpty());
        EXPECT_EQ(v.start, row.start);  // as written, in relative mode too
        EXPECT_EQ(v.width, row.width);
        EXPECT_EQ(v.occurrences, 1);
        EXPECT_EQ(v.storage, row.storage);
        EXPECT_EQ(v.zeroFill, row.zeroFill);  // the dictionary's ZeroFill=Yes is no item's
        EXPECT_FALSE(v.decimalMark);
        EXPECT_EQ(v.labels.texts, list(row.labels));
    }
    // An empty second segment falls back to the primary label.
    EXPECT_EQ(variable(book, s("REGION")).labels.text(1), s("Region"));
    EXPECT_EQ(variable(book, s("AGE")).note, s("Ask for the age at the last birthday."));
}

TEST(CSProTextLanguagesSample, ValueSetsAndMissingValues)
{
    const Codebook book = Codebook::fromFile(cbtest::samplePath("languages.dcf"));

    const Variable region = variable(book, s("REGION"));
    ASSERT_EQ(region.valueSets.size(), 1);
    EXPECT_EQ(region.valueSets.at(0).name, s("REGION_VS1"));
    EXPECT_EQ(region.valueSets.at(0).labels.texts, list({"Region", "Région"}));
    // 'N  ' is right-trimmed, as CSPro 8 writes alpha codes.
    EXPECT_EQ(valuesOf(region), list({"N=North|Nord", "S=South|Sud", "CAP=Capital|Capitale"}));
    EXPECT_TRUE(region.missing.isEmpty());

    const Variable age = variable(book, s("AGE"));
    ASSERT_EQ(age.valueSets.size(), 1);
    EXPECT_EQ(age.valueSets.at(0).labels.texts, list({"Age groups", "Groupes d'âge"}));
    // The NOTAPPL code ' ' is shorter than the 2-column item: a blank field.
    EXPECT_EQ(valuesOf(age), list({"0:17=Child|Enfant", "18:59 60 61:64=Adult|Adulte",
                                   "65:96=Older person|Personne âgée", "97=97 years or more|97 ans ou plus",
                                   "98=Refused|Refus [REFUSED]", "99=Don't know|Ne sait pas [MISSING]",
                                   "''=Not applicable|Sans objet [NOTAPPL]"}));
    EXPECT_EQ(missingOf(age), list({"98 REFUSED Refused", "99 MISSING Don't know", "'' NOTAPPL Not applicable"}));

    const Variable activity = variable(book, s("ACTIVITY"));
    ASSERT_EQ(activity.valueSets.size(), 1);
    EXPECT_EQ(activity.valueSets.at(0).link, s("1"));
    EXPECT_FALSE(activity.valueSets.at(0).linkFilled);
    const QStringList activityValues = list({"1=Working|Travaille", "2=Looking for work|Cherche du travail",
                                             "3=Not working|Ne travaille pas", "9=Not stated| [MISSING]"});
    EXPECT_EQ(valuesOf(activity), activityValues);
    EXPECT_EQ(activity.valueSets.at(0).values.last().labels.text(1), s("Not stated"));
    EXPECT_EQ(missingOf(activity), list({"9 MISSING Not stated"}));

    // The second set with Link=1 has no values of its own and gets the first one's.
    const Variable year = variable(book, s("ACTIVITY_YR"));
    ASSERT_EQ(year.valueSets.size(), 1);
    EXPECT_EQ(year.valueSets.at(0).name, s("ACTIVITY_YR_VS1"));
    EXPECT_EQ(year.valueSets.at(0).link, s("1"));
    EXPECT_TRUE(year.valueSets.at(0).linkFilled);
    EXPECT_EQ(valuesOf(year), activityValues);
    EXPECT_EQ(missingOf(year), list({"9 MISSING Not stated"}));

    for (const char *name : {"CLUSTER", "HHNO", "LINE"})
        EXPECT_TRUE(variable(book, s(name)).valueSets.isEmpty()) << name;
}

// ---------------------------------------------------------------------------
// The line grammar
// ---------------------------------------------------------------------------

TEST(CSProTextLines, ContinuationJoinsTheNextLine)
{
    const Codebook book = readText(withItem("Name=X\n"
                                            "Label=Age in &\n"
                                            "completed &\n"
                                            "years\n"
                                            "Start=4\n"
                                            "Len=2\n"
                                            "[ValueSet]\n"
                                            "Value=1;Fish & chips\n"
                                            "Value=2;A&\n"
                                            "B\n"));
    const Variable x = variable(book, s("X"));
    EXPECT_EQ(x.labels.texts, list({"Age in completed years"}));
    // '&' inside a line is text; a line ending in '&' continues (the
    // ambiguity CSPro has too).
    EXPECT_EQ(valuesOf(x), list({"1=Fish & chips", "2=AB"}));
}

TEST(CSProTextLines, AContinuedLineCountsFromItsFirstLine)
{
    const Error error = readError(withItem("Name=X\n"
                                           "Start=&\n"
                                           "x\n"));
    EXPECT_EQ(error.kind, Error::Malformed);
    EXPECT_EQ(error.line, kFirstLine + 1);
    EXPECT_TRUE(error.message.contains(s("Start=x on line 17"))) << error.message.toStdString();
}

TEST(CSProTextLines, CommentsAndBlankLinesAreSkipped)
{
    const Codebook book = readText(withItem(".a comment\n"
                                            "\n"
                                            "   \t \n"
                                            "Name=X\n"
                                            "   .an indented comment\n"
                                            "Start=4\n"
                                            "Len=2\n"));
    const Variable x = variable(book, s("X"));
    EXPECT_EQ(x.start, 4);
    EXPECT_EQ(x.width, 2);
}

TEST(CSProTextLines, SplitsAtTheFirstEqualsAndTrims)
{
    const Codebook book = readText(withItem("  Name   =   X  \n"
                                            "Label=a=b = c\n"
                                            "Start=4\n"
                                            "Len=2\n"
                                            "[ValueSet]\n"
                                            "Value=1;x=1\n"));
    const Variable x = variable(book, s("X"));
    EXPECT_EQ(x.labels.texts, list({"a=b = c"}));
    EXPECT_EQ(valuesOf(x), list({"1=x=1"}));
}

TEST(CSProTextLines, CommandsAreCaseInsensitive)
{
    const Codebook book = readText("[DICTIONARY]\n"
                                   "NAME=D\n"
                                   "version=CSPro 7.7\n"
                                   "POSITIONS=relative\n"
                                   "[level]\n"
                                   "name=L\n"
                                   "[iditems]\n"
                                   "[ITEM]\n"
                                   "NAME=ID\n"
                                   "start=1\n"
                                   "LEN=2\n"
                                   "[record]\n"
                                   "name=R\n"
                                   "recordtypevalue='r'\n"
                                   "REQUIRED=no\n"
                                   "[item]\n"
                                   "name=X\n"
                                   "START=3\n"
                                   "len=1\n"
                                   "datatype=ALPHA\n"
                                   "itemtype=subitem\n"
                                   "[VALUESET]\n"
                                   "value='a';A\n"
                                   "name=missing,special\n");
    EXPECT_EQ(book.formatVersion(), s("CSPro 7.7"));
    EXPECT_TRUE(book.relativePositions());
    ASSERT_EQ(book.records().size(), 1);
    EXPECT_EQ(book.records().at(0).typeValue, s("r"));  // values keep their case
    EXPECT_FALSE(book.records().at(0).required);
    const Variable x = variable(book, s("X"));
    EXPECT_EQ(x.storage, Storage::Text);
    EXPECT_EQ(x.contentType, s("alpha"));
    EXPECT_TRUE(x.isSubitem);
    EXPECT_EQ(valuesOf(x), list({"a=A [MISSING]"}));
}

TEST(CSProTextLines, LfAndCrlfMix)
{
    const Codebook book = readText(QByteArray(kHeader).replace("\n", "\r\n") + "Name=X\nStart=4\r\nLen=2\r\n");
    const Variable x = variable(book, s("X"));
    EXPECT_EQ(x.name, s("X"));  // no '\r' left in a value
    EXPECT_EQ(x.start, 4);
    EXPECT_EQ(x.width, 2);
    EXPECT_EQ(book.name(), s("D"));
}

TEST(CSProTextLines, NoEditMayComeFirst)
{
    const Codebook book = readText(QByteArray("[NoEdit]\n") + withItem("Name=X\nStart=4\nLen=2\n"));
    EXPECT_EQ(book.name(), s("D"));
    EXPECT_EQ(book.variables().size(), 2);
}

TEST(CSProTextLines, KeysCSProAcceptsAreRead)
{
    // Every key Pre80SpecFile.cpp accepts, in its section.
    const Codebook book = readText("[Dictionary]\n"
                                   "Version=CSPro 7.7\n"
                                   "Label=D\n"
                                   "Name=D\n"
                                   "Note=A dictionary note\n"
                                   "Alias=DD\n"
                                   "RecordTypeStart=1\n"
                                   "RecordTypeLen=1\n"
                                   "Positions=Absolute\n"
                                   "ZeroFill=Yes\n"
                                   "DecimalChar=Yes\n"
                                   "SecurityOptions=0A1B2C\n"
                                   "ValueSetImages=Yes\n"
                                   "[Level]\n"
                                   "Label=L\n"
                                   "Name=L\n"
                                   "Note=A level note\n"
                                   "Alias=LL\n"
                                   "[IdItems]\n"
                                   "[Item]\n"
                                   "Label=Id\n"
                                   "Name=ID\n"
                                   "Start=2\n"
                                   "Len=2\n"
                                   "[Record]\n"
                                   "Label=R\n"
                                   "Name=R\n"
                                   "Note=A record note\n"
                                   "Alias=RR\n"
                                   "RecordTypeValue='R'\n"
                                   "Required=Yes\n"
                                   "MaxRecords=2\n"
                                   "RecordLen=999\n"
                                   "OccurrenceLabel=1,First\n"
                                   "OccurenceLabel=2,Second\n"
                                   "[Item]\n"
                                   "Label=X\n"
                                   "Name=X\n"
                                   "Note=An item note\n"
                                   "Alias=XX\n"
                                   "Start=4\n"
                                   "Len=8\n"
                                   "DataType=Numeric\n"
                                   "ItemType=Item\n"
                                   "Occurrences=1\n"
                                   "Decimal=0\n"
                                   "DecimalChar=No\n"
                                   "ZeroFill=No\n"
                                   "CaptureType=Date\n"
                                   "CaptureDateFormat=YYYYMMDD\n"
                                   "[ValueSet]\n"
                                   "Label=X\n"
                                   "Name=X_VS1\n"
                                   "Note=A value set note\n"
                                   "Alias=XV\n"
                                   "Link=7\n"
                                   "Value=1;One\n"
                                   "Label=Uno\n"
                                   "Note=A value note\n"
                                   "Image=images\\one.png\n"
                                   "TextColor=255\n"
                                   "[Relation]\n"
                                   "Name=REL\n"
                                   "Label=Relation\n"
                                   "Note=A relation note\n"
                                   "Alias=RL\n"
                                   "Primary=R\n"
                                   "PrimaryLink=ID\n"
                                   "Secondary=R\n"
                                   "SecondaryLink=ID\n");
    EXPECT_EQ(book.name(), s("D"));
    ASSERT_EQ(book.records().size(), 1);
    EXPECT_EQ(book.records().at(0).length, 11);  // 4 + 8 - 1; RecordLen=999 is not read
    EXPECT_EQ(occurrenceLabelsOf(book.records().at(0).occurrenceLabels), list({"1=First", "2=Second"}));
    const Variable x = variable(book, s("X"));
    EXPECT_EQ(x.note, s("An item note"));
    ASSERT_EQ(x.valueSets.size(), 1);
    EXPECT_EQ(x.valueSets.at(0).link, s("7"));
    ASSERT_EQ(x.valueSets.at(0).values.size(), 1);
    const Value &one = x.valueSets.at(0).values.at(0);
    EXPECT_EQ(one.labels.texts, list({"Uno"}));  // a Label= line after a value replaces its label
    EXPECT_EQ(one.note, s("A value note"));
    EXPECT_EQ(one.image, s("images\\one.png"));
}

TEST(CSProTextLines, NotesFollowCSProsRules)
{
    const Codebook book = readText(withItem("Name=X\n"
                                            "Note=First line\\r\\n\n"
                                            "Note=~second part\n"
                                            "Note=third\n"
                                            "Start=4\n"
                                            "Len=2\n"
                                            "[ValueSet]\n"
                                            "Value=1;One\n"
                                            "Note=About\n"
                                            "Note=one\n"));
    const Variable x = variable(book, s("X"));
    // A literal \r\n is a newline; a part without one is followed by a space;
    // a leading '~' is a space. The spaces the rules add at the end go.
    EXPECT_EQ(x.note, s("First line\n second part third"));
    EXPECT_EQ(x.valueSets.at(0).values.at(0).note, s("About one"));
}

// ---------------------------------------------------------------------------
// Labels and languages
// ---------------------------------------------------------------------------

TEST(CSProTextLabels, SegmentsFollowTheLanguages)
{
    const Codebook book = readText("[Dictionary]\n"
                                   "Name=D\n"
                                   "Label=Survey|Enquête|Utafiti\n"
                                   "[Languages]\n"
                                   "EN=English\n"
                                   "FR=Français\n"
                                   "SW=Kiswahili\n"
                                   "[Level]\n"
                                   "Name=L\n"
                                   "Label=Household||Kaya\n"
                                   "[IdItems]\n"
                                   "[Item]\n"
                                   "Name=ID\n"
                                   "Label=|Identifiant\n"
                                   "Start=1\n"
                                   "Len=2\n"
                                   "[ValueSet]\n"
                                   "Name=ID_VS\n"
                                   "Label=Id|\n"
                                   "Value=1;One|Un|Moja\n"
                                   "Value=2;Two\n"
                                   "Value=3\n"
                                   "Value=4;\n");
    ASSERT_EQ(book.languages().size(), 3);
    EXPECT_EQ(book.languages().at(2).name, s("SW"));
    EXPECT_EQ(book.languages().at(2).label, s("Kiswahili"));
    EXPECT_EQ(book.labels().texts, list({"Survey", "Enquête", "Utafiti"}));
    const Labels level = book.levels().at(0).labels;
    EXPECT_EQ(level.texts, list({"Household", "", "Kaya"}));
    EXPECT_EQ(level.text(1), s("Household"));
    EXPECT_EQ(level.text(2), s("Kaya"));
    const Variable id = variable(book, s("ID"));
    EXPECT_EQ(id.labels.texts, list({"", "Identifiant"}));
    EXPECT_EQ(id.valueSets.at(0).labels.texts, list({"Id", ""}));
    // No ';': no label; an empty one after ';'.
    EXPECT_EQ(valuesOf(id), list({"1=One|Un|Moja", "2=Two", "3=", "4="}));
    EXPECT_TRUE(id.valueSets.at(0).values.at(2).labels.isEmpty());
    EXPECT_TRUE(id.valueSets.at(0).values.at(3).labels.isEmpty());
}

TEST(CSProTextLabels, WithoutLanguagesOneUnnamedLanguage)
{
    const Codebook book = readText(withItem("Name=X\nStart=4\nLen=2\n"));
    ASSERT_EQ(book.languages().size(), 1);
    EXPECT_TRUE(book.languages().at(0).name.isEmpty());
    EXPECT_TRUE(book.languages().at(0).label.isEmpty());
}

TEST(CSProTextLabels, LanguagesAfterALevelAreOutOfPlace)
{
    const Error error = readError(withItem("Name=X\nStart=4\nLen=2\n"
                                           "[Languages]\n"
                                           "EN=English\n"));
    EXPECT_EQ(error.kind, Error::Malformed);
    EXPECT_EQ(error.line, kFirstLine + 3);
}

// ---------------------------------------------------------------------------
// Value lines
// ---------------------------------------------------------------------------

TEST(CSProTextValues, QuotedCodesKeepInnerSpacesAndLoseTheirPadding)
{
    const Codebook book = readText(withItem("Name=X\n"
                                            "Start=4\n"
                                            "Len=5\n"
                                            "DataType=Alpha\n"
                                            "[ValueSet]\n"
                                            "Value='A B  ';Inner space\n"
                                            "Value=\"C    \";Double quotes\n"
                                            "Value='  D  ';Leading spaces\n"
                                            "Value='E' 'F G';Two codes\n"
                                            "Value='     ';Blank\n"
                                            "Value=\"it's\";Apostrophe\n"));
    const Variable x = variable(book, s("X"));
    ASSERT_EQ(x.valueSets.size(), 1);
    const QVector<Value> values = x.valueSets.at(0).values;
    ASSERT_EQ(values.size(), 6);
    EXPECT_EQ(values.at(0).codes.at(0).from, s("A B"));
    EXPECT_EQ(values.at(1).codes.at(0).from, s("C"));
    EXPECT_EQ(values.at(2).codes.at(0).from, s("  D"));  // alpha codes are right-trimmed only
    ASSERT_EQ(values.at(3).codes.size(), 2);
    EXPECT_EQ(values.at(3).codes.at(0).from, s("E"));
    EXPECT_EQ(values.at(3).codes.at(1).from, s("F G"));
    EXPECT_EQ(values.at(4).codes.at(0).from, QString());
    EXPECT_EQ(values.at(5).codes.at(0).from, s("it's"));
}

TEST(CSProTextValues, SeveralPairsAndRanges)
{
    const Codebook book = readText(withItem("Name=X\n"
                                            "Start=4\n"
                                            "Len=3\n"
                                            "[ValueSet]\n"
                                            "Value=0 1:14 15:19 50:98;Mixed\n"
                                            "Value=1:7 10 11 12 13 99;Other reasons\n"
                                            "Value=100: 200;Space after the colon\n"
                                            "Value=300 :400;Space before the colon\n"
                                            "Value=-99;Don't know\n"
                                            "Value=  5  ;Padded\n"
                                            "Value=0.5:24.0;Decimals\n"
                                            "Value=600:;No upper end\n"
                                            "Value=1;a;b\n"));
    const Variable x = variable(book, s("X"));
    EXPECT_EQ(valuesOf(x), list({"0 1:14 15:19 50:98=Mixed", "1:7 10 11 12 13 99=Other reasons",
                                 "100:200=Space after the colon", "300 400=Space before the colon",
                                 "-99=Don't know", "5=Padded", "0.5:24.0=Decimals", "600=No upper end",
                                 "1=a;b"}));
    const Code range = x.valueSets.at(0).values.at(0).codes.at(1);
    EXPECT_TRUE(range.isRange);
    EXPECT_EQ(range.from, s("1"));
    EXPECT_EQ(range.to, s("14"));
    const Code single = x.valueSets.at(0).values.at(0).codes.at(0);
    EXPECT_FALSE(single.isRange);
    EXPECT_TRUE(single.to.isEmpty());
}

TEST(CSProTextValues, DecimalCommaCodesAreKeptAsWritten)
{
    const Codebook book = readText(withItem("Name=X\n"
                                            "Start=4\n"
                                            "Len=6\n"
                                            "Decimal=2\n"
                                            "DecimalChar=Yes\n"
                                            "[ValueSet]\n"
                                            "Value=0,00:100,00;%\n"
                                            "Value=0,5;Half\n"));
    const Variable x = variable(book, s("X"));
    EXPECT_EQ(valuesOf(x), list({"0,00:100,00=%", "0,5=Half"}));
    EXPECT_EQ(x.decimals, 2);
    EXPECT_TRUE(x.decimalMark);
}

TEST(CSProTextValues, SpecialsOfEachKind)
{
    const Codebook book = readText(withItem("Name=X\n"
                                            "Start=4\n"
                                            "Len=2\n"
                                            "[ValueSet]\n"
                                            "Value=1:10;Valid\n"
                                            "Value=97;Refused\n"
                                            "Name=REFUSED,Special\n"
                                            "Value=98;Default\n"
                                            "Name=default,Special\n"
                                            "Value=99 96;Missing\n"
                                            "Name=Missing,Special\n"
                                            "Value=95;Not applicable\n"
                                            "Name=NOTAPPL,Special\n"
                                            "Value=94;Unknown special\n"
                                            "Name=SOMETHING,Special\n"
                                            "Value=80:89;Missing range\n"
                                            "Name=MISSING\n"));
    const Variable x = variable(book, s("X"));
    EXPECT_EQ(valuesOf(x), list({"1:10=Valid", "97=Refused [REFUSED]", "98=Default [DEFAULT]",
                                 "99 96=Missing [MISSING]", "95=Not applicable [NOTAPPL]", "94=Unknown special",
                                 "80:89=Missing range [MISSING]"}));
    // One missing value per code or range, in value-set order.
    EXPECT_EQ(missingOf(x), list({"97 REFUSED Refused", "98 DEFAULT Default", "99 MISSING Missing",
                                  "96 MISSING Missing", "95 NOTAPPL Not applicable", "80:89 MISSING Missing range"}));
    const MissingValue range = x.missing.last();
    EXPECT_TRUE(range.isRange);
    EXPECT_EQ(range.from, s("80"));
    EXPECT_EQ(range.to, s("89"));
    EXPECT_EQ(range.special, Special::Missing);
}

TEST(CSProTextValues, ANotApplCodeOfAnotherLengthIsABlankField)
{
    const Codebook book = readText(withItem("Name=X\n"
                                            "Start=4\n"
                                            "Len=2\n"
                                            "[ValueSet]\n"
                                            "Value=' ';Blank, shorter than the item\n"
                                            "Name=NOTAPPL,Special\n"
                                            "Value=8;One digit on a two-digit item\n"
                                            "Name=NOTAPPL,Special\n"
                                            "Value=98;As long as the item\n"
                                            "Name=NOTAPPL,Special\n"
                                            "Value=' ';Blank but no special\n"
                                            "[Item]\n"
                                            "Name=Y\n"
                                            "Start=6\n"
                                            "Len=1\n"
                                            "[ValueSet]\n"
                                            "Value=8;Same length\n"
                                            "Name=NOTAPPL,Special\n"));
    EXPECT_EQ(valuesOf(variable(book, s("X"))),
              list({"''=Blank, shorter than the item [NOTAPPL]", "''=One digit on a two-digit item [NOTAPPL]",
                    "98=As long as the item [NOTAPPL]", "''=Blank but no special"}));
    EXPECT_EQ(valuesOf(variable(book, s("Y"))), list({"8=Same length [NOTAPPL]"}));
}

TEST(CSProTextValues, LinkedSetsAreFilled)
{
    const Codebook book = readText(withItem("Name=X\n"
                                            "Start=4\n"
                                            "Len=1\n"
                                            "[ValueSet]\n"
                                            "Name=X_VS1\n"
                                            "Link=12\n"
                                            "Value=1;Yes\n"
                                            "Value=9;Unknown\n"
                                            "Name=MISSING,Special\n"
                                            "[Item]\n"
                                            "Name=Y\n"
                                            "Start=5\n"
                                            "Len=1\n"
                                            "[ValueSet]\n"
                                            "Name=Y_VS1\n"
                                            "Link=12\n"
                                            "[ValueSet]\n"
                                            "Name=Y_VS2\n"
                                            "Link=13\n"));
    const Variable x = variable(book, s("X"));
    const Variable y = variable(book, s("Y"));
    EXPECT_FALSE(x.valueSets.at(0).linkFilled);
    ASSERT_EQ(y.valueSets.size(), 2);
    EXPECT_EQ(y.valueSets.at(0).name, s("Y_VS1"));
    EXPECT_TRUE(y.valueSets.at(0).linkFilled);
    EXPECT_EQ(valuesOf(y, 0), list({"1=Yes", "9=Unknown [MISSING]"}));
    EXPECT_EQ(missingOf(y), list({"9 MISSING Unknown"}));
    // A link nobody carries values for stays empty.
    EXPECT_TRUE(y.valueSets.at(1).values.isEmpty());
    EXPECT_FALSE(y.valueSets.at(1).linkFilled);
}

TEST(CSProTextValues, TheSameLineIsSettledForEachItem)
{
    // Identical value lines share their codes while reading; each item still
    // settles them its own way.
    const Codebook book = readText(withItem("Name=A\n"
                                            "Start=4\n"
                                            "Len=2\n"
                                            "DataType=Alpha\n"
                                            "[ValueSet]\n"
                                            "Value=' 1';One\n"
                                            "Value=' ';Blank\n"
                                            "Name=NOTAPPL,Special\n"
                                            "[Item]\n"
                                            "Name=N\n"
                                            "Start=6\n"
                                            "Len=2\n"
                                            "[ValueSet]\n"
                                            "Value=' 1';One\n"
                                            "Value=' ';Blank\n"
                                            "Name=NOTAPPL,Special\n"
                                            "[Item]\n"
                                            "Name=B\n"
                                            "Start=8\n"
                                            "Len=2\n"
                                            "DataType=Alpha\n"
                                            "[ValueSet]\n"
                                            "Value=' 1';One\n"));
    EXPECT_EQ(valuesOf(variable(book, s("A"))), list({"' 1'=One", "''=Blank [NOTAPPL]"}));
    EXPECT_EQ(valuesOf(variable(book, s("N"))), list({"1=One", "''=Blank [NOTAPPL]"}));
    EXPECT_EQ(valuesOf(variable(book, s("B"))), list({"' 1'=One"}));
}

TEST(CSProTextValues, AValueWithoutCodesIsKept)
{
    // '' is no pair for CSPro's reader; the value stays, without codes.
    const Codebook book = readText(withItem("Name=X\n"
                                            "Start=4\n"
                                            "Len=1\n"
                                            "[ValueSet]\n"
                                            "Value='';Nothing\n"
                                            "Value=1;One\n"));
    const Variable x = variable(book, s("X"));
    ASSERT_EQ(x.valueSets.at(0).values.size(), 2);
    EXPECT_TRUE(x.valueSets.at(0).values.at(0).codes.isEmpty());
    EXPECT_EQ(x.valueSets.at(0).values.at(0).labels.texts, list({"Nothing"}));
}

// ---------------------------------------------------------------------------
// Items, records and levels
// ---------------------------------------------------------------------------

TEST(CSProTextItems, OccurrenceLabels)
{
    const Codebook book = readText(withItem("Name=X\n"
                                            "Start=4\n"
                                            "Len=1\n"
                                            "OccurrenceLabel=4,Fourth\n"  // before Occurrences=: settled at the end
                                            "Occurrences=3\n"
                                            "OccurrenceLabel=2:Second|Deuxième\n"
                                            "OccurrenceLabel=1,First\n"
                                            "OccurenceLabel=3,Third\n"
                                            "OccurrenceLabel=0,Zero\n"
                                            "OccurrenceLabel=-1,Minus one\n"
                                            "OccurrenceLabel=,No number\n"
                                            "OccurrenceLabel=No separator\n"
                                            "OccurrenceLabel=3,Third again\n"
                                            "OccurrenceLabel=2,\n"
                                            "[Item]\n"
                                            "Name=Y\n"
                                            "Start=7\n"
                                            "Len=1\n"
                                            "OccurrenceLabel=1,Single\n"));
    const Variable x = variable(book, s("X"));
    EXPECT_EQ(x.occurrences, 3);
    // A later label replaces an earlier one; a blank one drops the occurrence.
    EXPECT_EQ(occurrenceLabelsOf(x.occurrenceLabels), list({"1=First", "3=Third again"}));
    // CSPro keeps occurrence labels only for more than one occurrence.
    EXPECT_TRUE(variable(book, s("Y")).occurrenceLabels.isEmpty());
}

TEST(CSProTextItems, RecordOccurrenceLabels)
{
    const Codebook book = readText("[Dictionary]\n"
                                   "Name=D\n"
                                   "[Level]\n"
                                   "Name=L\n"
                                   "[IdItems]\n"
                                   "[Item]\n"
                                   "Name=ID\n"
                                   "Start=1\n"
                                   "Len=1\n"
                                   "[Record]\n"
                                   "Name=R\n"
                                   "MaxRecords=2\n"
                                   "OccurrenceLabel=1,Mother\n"
                                   "OccurrenceLabel=2,Father\n"
                                   "OccurrenceLabel=3,Nobody\n"
                                   "[Record]\n"
                                   "Name=S\n"
                                   "OccurrenceLabel=1,Only\n");
    ASSERT_EQ(book.records().size(), 2);
    EXPECT_EQ(occurrenceLabelsOf(book.records().at(0).occurrenceLabels), list({"1=Mother", "2=Father"}));
    EXPECT_EQ(book.records().at(1).maxOccurrences, 1);
    EXPECT_TRUE(book.records().at(1).occurrenceLabels.isEmpty());
    EXPECT_TRUE(book.records().at(1).required);
    EXPECT_TRUE(book.records().at(1).typeValue.isEmpty());
}

TEST(CSProTextItems, SubitemsBelongToTheNearestItemOfTheirRecord)
{
    const Codebook book = readText(withItem("Name=DATE\n"
                                            "Start=4\n"
                                            "Len=8\n"
                                            "DataType=Alpha\n"
                                            "[Item]\n"
                                            "Name=DAY\n"
                                            "ItemType=SubItem\n"
                                            "Start=4\n"
                                            "Len=2\n"
                                            "[Item]\n"
                                            "Name=YEAR\n"
                                            "ItemType=SubItem\n"
                                            "Start=8\n"
                                            "Len=4\n"
                                            "[Item]\n"
                                            "Name=CODE\n"
                                            "ItemType=Item\n"
                                            "Start=12\n"
                                            "Len=3\n"
                                            "[Item]\n"
                                            "Name=CODE1\n"
                                            "ItemType=SubItem\n"
                                            "Start=12\n"
                                            "Len=1\n"
                                            "[Record]\n"
                                            "Name=S\n"
                                            "[Item]\n"
                                            "Name=ORPHAN\n"
                                            "ItemType=SubItem\n"
                                            "Start=4\n"
                                            "Len=1\n"));
    const Variable day = variable(book, s("DAY"));
    EXPECT_TRUE(day.isSubitem);
    EXPECT_EQ(day.parent, s("DATE"));
    EXPECT_EQ(day.storage, Storage::Numeric);  // numeric inside an alpha parent
    EXPECT_EQ(variable(book, s("YEAR")).parent, s("DATE"));
    EXPECT_FALSE(variable(book, s("CODE")).isSubitem);
    EXPECT_EQ(variable(book, s("CODE1")).parent, s("CODE"));
    // The parent is looked for in the same record only.
    const Variable orphan = variable(book, s("ORPHAN"));
    EXPECT_TRUE(orphan.isSubitem);
    EXPECT_TRUE(orphan.parent.isEmpty());
    EXPECT_EQ(orphan.record, s("S"));
    // Subitems take no columns of their own.
    EXPECT_EQ(book.records().at(0).length, 14);
    EXPECT_EQ(book.records().at(1).length, 3);
}

TEST(CSProTextItems, ItemLevelZeroFillAndDecimalCharDefaultToNo)
{
    const Codebook book = readText("[Dictionary]\n"
                                   "Name=D\n"
                                   "ZeroFill=Yes\n"
                                   "DecimalChar=Yes\n"
                                   "[Level]\n"
                                   "Name=L\n"
                                   "[IdItems]\n"
                                   "[Item]\n"
                                   "Name=ID\n"
                                   "Start=1\n"
                                   "Len=2\n"
                                   "[Record]\n"
                                   "Name=R\n"
                                   "[Item]\n"
                                   "Name=PLAIN\n"
                                   "Start=3\n"
                                   "Len=4\n"
                                   "Decimal=1\n"
                                   "[Item]\n"
                                   "Name=MARKED\n"
                                   "Start=7\n"
                                   "Len=4\n"
                                   "Decimal=1\n"
                                   "DecimalChar=Yes\n"
                                   "ZeroFill=Yes\n"
                                   "[Item]\n"
                                   "Name=NODECIMALS\n"
                                   "Start=11\n"
                                   "Len=4\n"
                                   "DecimalChar=Yes\n"
                                   "[Item]\n"
                                   "Name=TEXT\n"
                                   "Start=15\n"
                                   "Len=4\n"
                                   "DataType=Alpha\n"
                                   "Decimal=2\n"
                                   "DecimalChar=Yes\n"
                                   "ZeroFill=Yes\n");
    const Variable plain = variable(book, s("PLAIN"));
    EXPECT_FALSE(plain.zeroFill);
    EXPECT_FALSE(plain.decimalMark);
    EXPECT_EQ(plain.decimals, 1);
    const Variable marked = variable(book, s("MARKED"));
    EXPECT_TRUE(marked.zeroFill);
    EXPECT_TRUE(marked.decimalMark);
    // CSPro reads the decimal mark only with decimals, and both flags and
    // decimals only for numeric items.
    EXPECT_FALSE(variable(book, s("NODECIMALS")).decimalMark);
    const Variable text = variable(book, s("TEXT"));
    EXPECT_EQ(text.decimals, 0);
    EXPECT_FALSE(text.decimalMark);
    EXPECT_FALSE(text.zeroFill);
}

TEST(CSProTextItems, DataTypes)
{
    const Codebook book = readText(withItem("Name=N\nStart=4\nLen=2\nDataType=Numeric\n"
                                            "[Item]\nName=A\nStart=6\nLen=2\nDataType=Alpha\n"
                                            "[Item]\nName=AU\nDataType=Audio\n"
                                            "[Item]\nName=DO\nDataType=document\n"
                                            "[Item]\nName=GE\nDataType=Geometry\n"
                                            "[Item]\nName=IM\nDataType=Image\nLen=5\n"
                                            "[Item]\nName=DEFAULT\nStart=8\nLen=1\n"));
    struct Row { const char *name; Storage storage; const char *type; };
    const Row rows[] = {{"N", Storage::Numeric, "numeric"}, {"A", Storage::Text, "alpha"},
                        {"AU", Storage::Binary, "audio"},   {"DO", Storage::Binary, "document"},
                        {"GE", Storage::Binary, "geometry"}, {"IM", Storage::Binary, "image"},
                        {"DEFAULT", Storage::Numeric, "numeric"}};
    for (const Row &row : rows) {
        const Variable v = variable(book, s(row.name));
        EXPECT_EQ(v.storage, row.storage) << row.name;
        EXPECT_EQ(v.contentType, s(row.type)) << row.name;
        if (row.storage == Storage::Binary) {
            EXPECT_EQ(v.width, 1) << row.name;  // binary items have length 1, as CSPro 8 reads them
        }
    }
    EXPECT_EQ(book.records().at(0).length, 8);  // binary items take no columns
}

TEST(CSProTextItems, IdItemsLevelsAndRecords)
{
    const Codebook book = readText("[Dictionary]\n"
                                   "Name=D\n"
                                   "RecordTypeStart=1\n"
                                   "RecordTypeLen=1\n"
                                   "Positions=Relative\n"
                                   "[Level]\n"
                                   "Name=HH\n"
                                   "Label=Household\n"
                                   "[IdItems]\n"
                                   "[Item]\n"
                                   "Name=HHID\n"
                                   "Start=2\n"
                                   "Len=3\n"
                                   "[Record]\n"
                                   "Name=HOUSE\n"
                                   "RecordTypeValue='1'\n"
                                   "[Item]\n"
                                   "Name=ROOMS\n"
                                   "Start=6\n"
                                   "Len=2\n"
                                   "[Level]\n"
                                   "Name=PERSONS\n"
                                   "[IdItems]\n"
                                   "[Item]\n"
                                   "Name=PID\n"
                                   "Start=5\n"
                                   "Len=1\n"
                                   "[Record]\n"
                                   "Name=PERSON\n"
                                   "RecordTypeValue=' 2'\n"
                                   "[Item]\n"
                                   "Name=AGE\n"
                                   "Start=6\n"
                                   "Len=3\n"
                                   "[Relation]\n"
                                   "Name=REL\n"
                                   "Primary=PERSON\n");
    EXPECT_TRUE(book.relativePositions());
    ASSERT_EQ(book.levels().size(), 2);
    EXPECT_EQ(book.levels().at(1).name, s("PERSONS"));
    struct Row { const char *name, *record; bool id; int level; };
    const Row rows[] = {{"HHID", "", true, 1}, {"ROOMS", "HOUSE", false, 1},
                        {"PID", "", true, 2},  {"AGE", "PERSON", false, 2}};
    ASSERT_EQ(book.variables().size(), 4);
    for (int i = 0; i < 4; ++i) {
        const Variable &v = book.variables().at(i);
        EXPECT_EQ(v.name, s(rows[i].name));
        EXPECT_EQ(v.record, s(rows[i].record)) << rows[i].name;
        EXPECT_EQ(v.isId, rows[i].id) << rows[i].name;
        EXPECT_EQ(v.level, rows[i].level) << rows[i].name;
    }
    ASSERT_EQ(book.records().size(), 2);
    EXPECT_EQ(book.records().at(0).level, 1);
    EXPECT_EQ(book.records().at(1).level, 2);
    EXPECT_EQ(book.records().at(1).typeValue, s(" 2"));  // quotes removed, spaces kept
    // Every record leaves room for the IDs of all levels (PID ends at 5).
    EXPECT_EQ(book.records().at(0).length, 7);
    EXPECT_EQ(book.records().at(1).length, 8);
}

// ---------------------------------------------------------------------------
// Encodings
// ---------------------------------------------------------------------------

TEST(CSProTextEncoding, Utf8WithoutBom)
{
    const Codebook book = readText("[Dictionary]\nName=D\nLabel=Enqu\xC3\xAAte \xE2\x82\xAC\n");
    EXPECT_EQ(book.encoding(), s("UTF-8"));
    EXPECT_EQ(book.labels().primary(), s("Enquête €"));
}

TEST(CSProTextEncoding, Utf8WithBom)
{
    const Codebook book = readText("\xEF\xBB\xBF[Dictionary]\r\nName=D\r\nLabel=Fran\xC3\xA7" "ais\r\n");
    EXPECT_EQ(book.encoding(), s("UTF-8"));
    EXPECT_EQ(book.name(), s("D"));
    EXPECT_EQ(book.labels().primary(), s("Français"));
}

TEST(CSProTextEncoding, Windows1252WhenNotUtf8)
{
    const Codebook book = readText(withItem("Name=X\nLabel=Caf\xE9 \x80 \x93quoted\x94\nStart=4\nLen=2\n"));
    EXPECT_EQ(book.encoding(), s("windows-1252"));
    EXPECT_EQ(variable(book, s("X")).labels.primary(), s("Café € “quoted”"));
}

TEST(CSProTextEncoding, Utf16LittleEndianWithBom)
{
    const QString text = QString::fromUtf8(withItem("Name=X\r\nLabel=Âge \xE2\x82\xAC\r\nStart=4\r\nLen=2\r\n"));
    QByteArray bytes("\xFF\xFE");
    for (const QChar c : text) {
        bytes.append(char(c.unicode() & 0xFF));
        bytes.append(char(c.unicode() >> 8));
    }
    const Codebook book = readText(bytes);
    EXPECT_EQ(book.encoding(), s("UTF-16LE"));
    EXPECT_EQ(book.name(), s("D"));
    EXPECT_EQ(variable(book, s("X")).labels.primary(), s("Âge €"));
}

TEST(CSProTextEncoding, DoubleEncodedTextPassesThrough)
{
    // "CÔte" encoded twice: valid UTF-8 of "CÃ”te", read as it stands.
    const Codebook book = readText("[Dictionary]\nName=D\nLabel=C\xC3\x83\xE2\x80\x9Dte\n");
    EXPECT_EQ(book.encoding(), s("UTF-8"));
    EXPECT_EQ(book.labels().primary(), s("CÃ”te"));
}

TEST(CSProTextEncoding, InvalidUtf8SequencesFallBackToWindows1252)
{
    // A lead byte without its continuation, an overlong form, a surrogate.
    for (const QByteArray &bad : {QByteArray("\xC3("), QByteArray("\xC0\xAF"), QByteArray("\xED\xA0\x80")}) {
        const Codebook book = readText(QByteArray("[Dictionary]\nName=D\nLabel=") + bad + "\n");
        EXPECT_EQ(book.encoding(), s("windows-1252")) << bad.toHex().constData();
    }
}

// ---------------------------------------------------------------------------
// Errors
// ---------------------------------------------------------------------------

TEST(CSProTextErrors, HostileNumbersNameTheKeyTheTextAndTheLine)
{
    struct Row { const char *line; const char *shown; };
    const Row rows[] = {
        {"Start=2147483648", "Start=2147483648"},
        {"Start=-5", "Start=-5"},
        {"Start=", "Start="},
        {"Start=0", "Start=0"},
        {"Start=1 2", "Start=1 2"},
        {"Start=99999999999999999999999999", "Start=99999999999999999999999999"},
        {"Len=1e308", "Len=1e308"},
        {"Len=0", "Len=0"},
        {"Len=100001", "Len=100001"},
        {"Occurrences=3.7", "Occurrences=3.7"},
        {"Occurrences=0", "Occurrences=0"},
        {"Occurrences=10000", "Occurrences=10000"},
        {"Decimal=16", "Decimal=16"},
        {"Decimal=-1", "Decimal=-1"},
        {"Decimal=two", "Decimal=two"},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.line);
        const Error error = readError(withItem("Name=X\n") + row.line + "\nStart=4\nLen=2\n");
        EXPECT_EQ(error.kind, Error::Malformed);
        EXPECT_EQ(error.line, kFirstLine + 1);
        EXPECT_TRUE(error.message.startsWith(s(row.shown) + s(" on line 17 is not ")))
            << error.message.toStdString();
    }
    const Error start = readError(withItem("Name=X\nStart=-5\n"));
    EXPECT_EQ(start.message, s("Start=-5 on line 17 is not a column number"));
}

TEST(CSProTextErrors, HostileRecordAndDictionaryNumbers)
{
    Error error = readError(withItem("Name=X\nStart=4\nLen=2\n[Record]\nName=S\nMaxRecords=10000\n"));
    EXPECT_EQ(error.line, kFirstLine + 5);
    EXPECT_TRUE(error.message.startsWith(s("MaxRecords=10000 on line 21 is not "))) << error.message.toStdString();
    error = readError(withItem("Name=X\nStart=4\nLen=2\n[Record]\nName=S\nMaxRecords=0\n"));
    EXPECT_EQ(error.line, kFirstLine + 5);
    error = readError("[Dictionary]\nName=D\nRecordTypeStart=x\n");
    EXPECT_EQ(error.kind, Error::Malformed);
    EXPECT_EQ(error.line, 3);
    EXPECT_TRUE(error.message.startsWith(s("RecordTypeStart=x on line 3 is not "))) << error.message.toStdString();
    error = readError("[Dictionary]\nName=D\nRecordTypeLen=-1\n");
    EXPECT_EQ(error.line, 3);
}

TEST(CSProTextErrors, UnknownCommandNamesItsLine)
{
    Error error = readError(withItem("Name=X\nColour=red\nStart=4\nLen=2\n"));
    EXPECT_EQ(error.kind, Error::Malformed);
    EXPECT_EQ(error.line, kFirstLine + 1);
    EXPECT_EQ(error.message, s("Unknown command 'Colour' on line 17"));

    // A key of another section is unknown where it stands.
    error = readError(withItem("Name=X\nStart=4\nLen=2\n[Record]\nName=S\nStart=4\n"));
    EXPECT_EQ(error.message, s("Unknown command 'Start' on line 21"));
    error = readError(withItem("Name=X\nStart=4\nLen=2\n[ValueSet]\nValue=1;One\nLink=1\n"));
    EXPECT_EQ(error.message, s("Unknown command 'Link' on line 21"));

    error = readError(withItem("Name=X\nStart=4\nLen=2\n=no command\n"));
    EXPECT_EQ(error.message, s("Unknown command '' on line 19"));

    error = readError(withItem("Name=X\nStart=4\nLen=2\n[Section]\n"));
    EXPECT_EQ(error.message, s("Unknown command '[Section]' on line 19"));
    EXPECT_EQ(error.line, 19);

    // A hostile command is cut short in the message.
    error = readError(withItem(QByteArray(5000, 'Z').append("=1\n").constData()));
    EXPECT_LT(error.message.size(), 120);
    EXPECT_EQ(error.line, kFirstLine);
}

TEST(CSProTextErrors, SectionsOutOfPlace)
{
    // An item in a level before [IdItems] or a record.
    Error error = readError("[Dictionary]\nName=D\n[Level]\nName=L\n[Item]\nName=X\n");
    EXPECT_EQ(error.kind, Error::Malformed);
    EXPECT_EQ(error.line, 5);
    EXPECT_TRUE(error.message.contains(s("[Item]"))) << error.message.toStdString();
    // A record before any level, a value set outside an item.
    error = readError("[Dictionary]\nName=D\n[Record]\nName=R\n");
    EXPECT_EQ(error.line, 3);
    error = readError("[Dictionary]\nName=D\n[Level]\nName=L\n[ValueSet]\n");
    EXPECT_EQ(error.line, 5);
    // After the relations no level section continues.
    error = readError(withItem("Name=X\nStart=4\nLen=2\n[Relation]\nName=REL\n[Record]\n"));
    EXPECT_EQ(error.line, kFirstLine + 5);
}

TEST(CSProTextErrors, NoDictionarySection)
{
    Error error = readError(QByteArray());
    EXPECT_EQ(error.kind, Error::Malformed);
    EXPECT_EQ(error.line, 0);
    error = readError("\n  \n.only a comment\n");
    EXPECT_EQ(error.kind, Error::Malformed);
    error = readError("\n[Level]\nName=L\n");
    EXPECT_EQ(error.kind, Error::Malformed);
    EXPECT_EQ(error.line, 2);
    EXPECT_TRUE(error.message.contains(s("[Dictionary]"))) << error.message.toStdString();
    error = readError("Name=D\n[Dictionary]\n");
    EXPECT_EQ(error.line, 1);
    error = readError("[NoEdit]\n");
    EXPECT_EQ(error.kind, Error::Malformed);
    error = readError("{\"software\": \"CSPro\"}");
    EXPECT_EQ(error.kind, Error::Malformed);
}

TEST(CSProTextErrors, ItemsWithoutStartOrLen)
{
    Error error = readError(withItem("Name=X\nLen=2\n[Item]\nName=Y\nStart=6\nLen=1\n"));
    EXPECT_EQ(error.kind, Error::Malformed);
    EXPECT_EQ(error.line, kFirstLine - 1);  // the item's [Item] line
    EXPECT_TRUE(error.message.contains(s("Start="))) << error.message.toStdString();
    error = readError(withItem("Name=X\nStart=4\n"));
    EXPECT_EQ(error.line, kFirstLine - 1);
    EXPECT_TRUE(error.message.contains(s("Len="))) << error.message.toStdString();
}

TEST(CSProTextErrors, UnknownDataType)
{
    const Error error = readError(withItem("Name=X\nStart=4\nLen=2\nDataType=Decimal\n"));
    EXPECT_EQ(error.line, kFirstLine + 3);
    EXPECT_TRUE(error.message.startsWith(s("DataType=Decimal on line 19"))) << error.message.toStdString();
}

TEST(CSProTextErrors, LinkedSetsShareTheirMissingValues)
{
    // One set of 5000 missing codes, linked by 2000 items: 10 million
    // missing values if each item had its own copy.
    QByteArray text = withItem("Name=X\nStart=4\nLen=5\n[ValueSet]\nLink=7\nValue=");
    for (int i = 0; i < 5000; ++i)
        text += QByteArray::number(i) + ' ';
    text += ";Missing\nName=MISSING,Special\n";
    for (int i = 0; i < 2000; ++i)
        text += "[Item]\nName=I" + QByteArray::number(i) + "\nStart=4\nLen=5\n[ValueSet]\nLink=7\n";
    const Codebook book = readText(text);
    ASSERT_EQ(book.variables().size(), 2002);
    EXPECT_EQ(book.variables().last().missing.size(), 5000);
    EXPECT_TRUE(book.variables().last().valueSets.at(0).linkFilled);

    // Many linked sets on one item would repeat them: refused.
    text = withItem("Name=X\nStart=4\nLen=5\n[ValueSet]\nLink=7\nValue=");
    for (int i = 0; i < 5000; ++i)
        text += QByteArray::number(i) + ' ';
    text += ";Missing\nName=MISSING,Special\n";
    for (int i = 0; i < 2000; ++i)
        text += "[ValueSet]\nLink=7\n";
    const Error error = readError(text);
    EXPECT_EQ(error.kind, Error::LimitReached);
}

TEST(CSProTextErrors, AContinuationCutByTheEndOfTheFileIsDropped)
{
    // CSPro loses such a line; the dictionary before it stays.
    const Codebook book = readText(withItem("Name=X\nStart=4\nLen=2\nLabel=cut &"));
    EXPECT_TRUE(variable(book, s("X")).labels.isEmpty());
}

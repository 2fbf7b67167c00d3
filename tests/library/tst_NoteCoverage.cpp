// The reading notes account for every difference between the importer's
// fields and the codebook, CSPro's own meaning of a dictionary: each kind of
// difference on a minimal dictionary (its note stated from the input, and
// without that note the check finds the difference unaccounted), and every
// bundled sample.

#include "NoteCoverage.h"
#include "TestSupport.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using kxtest::checkNoteCoverage;
using kxtest::CoverageReport;
using kxtest::describeNotes;

namespace {

struct Dictionary
{
    QByteArray bytes;
    int firstItemLine = 0;  //!< the line of the first of the record's lines
};

/*! A text dictionary of one level: the identification item HHNO (columns
 * 2-4) and the record PERSON (type 'P' in column 1), whose lines are \a
 * recordLines. \a dictionaryLines replace the [Dictionary] keys after Name. */
Dictionary textDictionary(const QStringList &recordLines,
                          const QStringList &dictionaryLines = {QStringLiteral("RecordTypeStart=1"),
                                                                QStringLiteral("RecordTypeLen=1"),
                                                                QStringLiteral("Positions=Absolute")},
                          const QStringList &afterDictionary = {})
{
    QStringList lines{QStringLiteral("[Dictionary]"), QStringLiteral("Name=TEST")};
    lines << dictionaryLines << afterDictionary;
    lines << QStringLiteral("[Level]") << QStringLiteral("Name=HH") << QStringLiteral("[IdItems]")
          << QStringLiteral("[Item]") << QStringLiteral("Name=HHNO") << QStringLiteral("Start=2")
          << QStringLiteral("Len=3") << QStringLiteral("[Record]") << QStringLiteral("Name=PERSON")
          << QStringLiteral("RecordTypeValue='P'");
    Dictionary d;
    d.firstItemLine = lines.size() + 1;
    lines << recordLines;
    d.bytes = lines.join(QLatin1Char('\n')).toUtf8() + '\n';
    return d;
}

//! A CSPro 8 JSON dictionary with the record type in column 1, HHNO in 2-4 and the record PERSON of \a items.
QByteArray jsonDictionary(const QByteArray &items, const QByteArray &recordType = R"({"start":1,"length":1})",
                          bool relative = false)
{
    return R"({"software":"CSPro","version":8.0,"fileType":"dictionary","name":"TEST","recordType":)" + recordType
        + R"(,"relativePositions":)" + (relative ? "true" : "false")
        + R"(,"levels":[{"name":"HH","ids":{"items":[{"name":"HHNO","contentType":"numeric","start":2,"length":3}]},
        "records":[{"name":"PERSON","recordType":"P","occurrences":{"required":true,"maximum":1},"items":[)"
        + items + "]}]}]}";
}

class NoteCoverage : public ::testing::Test
{
protected:
    QTemporaryDir dir;

    CoverageReport coverageOf(const QByteArray &bytes, const char *suffix)
    {
        const QString path = kxtest::writeFile(dir, QStringLiteral("dictionary") + QLatin1String(suffix), bytes);
        return checkNoteCoverage(path);
    }

    /*! The dictionary is compared, every difference is accounted for, the
     * notes hold \a expected, and without the notes of its kind a difference
     * in \a aspect is left unaccounted: the note is what accounts for it. */
    void expectAccountedBy(const CoverageReport &report, const TReadNote &expected, const QString &aspect,
                           const QStringList &alsoWithout = {})
    {
        ASSERT_TRUE(report.compared) << report.why.toStdString();
        EXPECT_TRUE(report.unaccounted.isEmpty()) << report.describeUnaccounted().toStdString();
        EXPECT_TRUE(report.notes.contains(expected))
            << "expected " << describeNotes({expected}) << "got\n" << describeNotes(report.notes);
        TReadNotes others;
        for (const TReadNote &note : report.notes) {
            if (note.getKind() != expected.getKind() && !alsoWithout.contains(note.getKind()))
                others << note;
        }
        bool needed = false;
        for (const kxtest::ReadingDifference &d : report.differences)
            needed = needed || (d.aspect == aspect && !kxtest::isAccountedFor(d, others));
        EXPECT_TRUE(needed) << "no difference in " << aspect.toStdString() << " needs the note";
    }
};

TReadNote note(int line, const char *subject, const char *kind, const QString &text)
{
    return TReadNote(line, QString::fromUtf8(subject), QString::fromLatin1(kind), text);
}

// ---- CSPro text -----------------------------------------------------------

TEST_F(NoteCoverage, TextDictionaryCarriedOverWholeHasNoDifference)
{
    const Dictionary d = textDictionary({"[Item]", "Name=AGE", "Start=5", "Len=2", "[ValueSet]", "Name=AGE_VS1",
                                         "Value=1;One", "Value=2;Two"});
    const CoverageReport report = coverageOf(d.bytes, ".dcf");
    ASSERT_TRUE(report.compared) << report.why.toStdString();
    EXPECT_TRUE(report.differences.isEmpty()) << report.describeUnaccounted().toStdString();
    EXPECT_TRUE(report.notes.isEmpty()) << describeNotes(report.notes);
}

TEST_F(NoteCoverage, LabelsPerLanguage)
{
    const Dictionary d = textDictionary({"[Item]", "Label=Age|Âge", "Name=AGE", "Start=5", "Len=2", "[ValueSet]",
                                         "Name=AGE_VS1", "Value=1;One|Un"},
                                        {"RecordTypeStart=1", "RecordTypeLen=1", "Positions=Absolute"},
                                        {"[Languages]", "EN=English", "FR=French"});
    const CoverageReport report = coverageOf(d.bytes, ".dcf");
    expectAccountedBy(report,
                      note(d.firstItemLine + 1, "AGE", "language-labels-joined",
                           QStringLiteral("The label 'Age|Âge' holds one label per language, separated by '|': "
                                          "CSPro's label is 'Age'; the reading kept the whole text.")),
                      QStringLiteral("label"));
    expectAccountedBy(report,
                      note(d.firstItemLine + 7, "AGE_VS1", "language-labels-joined",
                           QStringLiteral("Value set AGE_VS1: the labels 'One|Un' hold one label per language, "
                                          "separated by '|'; CSPro's label is the first, and the reading kept the "
                                          "whole text.")),
                      QStringLiteral("value"));
}

TEST_F(NoteCoverage, QuotedAlphaCodeKeepsItsClosingQuote)
{
    const Dictionary d = textDictionary({"[Item]", "Name=ANSWER", "Start=5", "Len=3", "DataType=Alpha", "[ValueSet]",
                                         "Name=ANSWER_VS1", "Value='YES';Yes"});
    expectAccountedBy(coverageOf(d.bytes, ".dcf"),
                      note(d.firstItemLine + 7, "ANSWER_VS1", "quoted-code-bent",
                           QStringLiteral("Value set ANSWER_VS1: CSPro removes the quotes of a quoted code; the "
                                          "reading kept 'YES' as YES'.")),
                      QStringLiteral("value"));
}

TEST_F(NoteCoverage, PaddedAlphaCodeRunsIntoItsLabel)
{
    // A padded code is a quoted one too: both notes concern it.
    const Dictionary d = textDictionary({"[Item]", "Name=ANSWER", "Start=5", "Len=3", "DataType=Alpha", "[ValueSet]",
                                         "Name=ANSWER_VS1", "Value='N  ';No"});
    const CoverageReport report = coverageOf(d.bytes, ".dcf");
    expectAccountedBy(report,
                      note(d.firstItemLine + 5, "ANSWER_VS1", "padded-code-split",
                           QStringLiteral("Value set ANSWER_VS1: the codes \"N  '\" hold blanks, so in the field's "
                                          "value labels, a code and its label parted by a blank, they run into their "
                                          "labels.")),
                      QStringLiteral("value"), {QStringLiteral("quoted-code-bent")});
    EXPECT_TRUE(report.notes.contains(note(d.firstItemLine + 7, "ANSWER_VS1", "quoted-code-bent",
                                           QStringLiteral("Value set ANSWER_VS1: CSPro removes the quotes of a "
                                                          "quoted code; the reading kept 'N  ' as N  '."))))
        << describeNotes(report.notes);
}

TEST_F(NoteCoverage, RangeKeptAsItsBounds)
{
    const Dictionary d = textDictionary({"[Item]", "Name=AGE", "Start=5", "Len=2", "[ValueSet]", "Name=AGE_VS1",
                                         "Value=1:18;District"});
    expectAccountedBy(coverageOf(d.bytes, ".dcf"),
                      note(d.firstItemLine + 6, "AGE_VS1", "range-split",
                           QStringLiteral("Value set AGE_VS1: the ranges 1:18 are kept as their two bound codes, and "
                                          "the codes between the bounds get no label.")),
                      QStringLiteral("value"));
}

TEST_F(NoteCoverage, WideWholeNumberTypedReal)
{
    const Dictionary d = textDictionary({"[Item]", "Name=PHONE", "Start=5", "Len=12"});
    expectAccountedBy(coverageOf(d.bytes, ".dcf"),
                      note(d.firstItemLine + 3, "PHONE", "wide-integer-as-real",
                           QStringLiteral("Item PHONE is a whole number of 12 digits ('Len=12'); the reading types "
                                          "it REAL (field type 2, decimals 0), as every numeric item longer than 9 "
                                          "digits.")),
                      QStringLiteral("type"));
}

TEST_F(NoteCoverage, ANameHoldingAPlaceholderIsQuotedAsItStands)
{
    // "%2" in the name is the file's text, not a place for the note's next value.
    const Dictionary d = textDictionary({"[Item]", "Name=PHONE%2", "Start=5", "Len=12"});
    const CoverageReport report = coverageOf(d.bytes, ".dcf");
    EXPECT_TRUE(report.notes.contains(
        note(d.firstItemLine + 3, "PHONE%2", "wide-integer-as-real",
             QStringLiteral("Item PHONE%2 is a whole number of 12 digits ('Len=12'); the reading types it REAL "
                            "(field type 2, decimals 0), as every numeric item longer than 9 digits."))))
        << describeNotes(report.notes);
}

TEST_F(NoteCoverage, NoRecordTypeGivesNoGroup)
{
    const Dictionary d = textDictionary({"[Item]", "Name=AGE", "Start=5", "Len=2"},
                                        {"RecordTypeStart=0", "RecordTypeLen=0", "Positions=Absolute"});
    expectAccountedBy(coverageOf(d.bytes, ".dcf"),
                      note(4, "TEST", "group-not-set",
                           QStringLiteral("The line 'RecordTypeLen=0' gives the dictionary no record type: CSPro "
                                          "still knows the record of every item, but the reading gives no field a "
                                          "group, the identification items included.")),
                      QStringLiteral("group"));
}

TEST_F(NoteCoverage, CodeOfSevenDigitsWrittenWithSix)
{
    const Dictionary d = textDictionary({"[Item]", "Name=INCOME", "Start=5", "Len=8", "[ValueSet]",
                                         "Name=INCOME_VS1", "Value=99999999;Not stated"});
    expectAccountedBy(coverageOf(d.bytes, ".dcf"),
                      note(d.firstItemLine + 4, "INCOME_VS1", "code-rounded",
                           QStringLiteral("Value set INCOME_VS1: the field is an integer, whose value labels write "
                                          "codes with 6 significant digits: the reading kept 99999999 as 1e+08.")),
                      QStringLiteral("value"));
}

TEST_F(NoteCoverage, OccurrencesNamedWithAControlCharacter)
{
    const Dictionary d = textDictionary({"[Item]", "Name=ASSET", "Start=5", "Len=1", "Occurrences=3"});
    expectAccountedBy(coverageOf(d.bytes, ".dcf"),
                      note(d.firstItemLine + 4, "ASSET", "occurrence-name-control",
                           QStringLiteral("Item ASSET has 3 occurrences; the reading names their fields ASSET_ "
                                          "followed by the character of code 1 to 3 (U+0001 to U+0003), not ASSET_1 "
                                          "to ASSET_3.")),
                      QStringLiteral("name"));
}

TEST_F(NoteCoverage, SubitemOfARepeatedItemGivenOnce)
{
    // DATE repeats twice at 5-12 and 13-20; its subitem YEAR is at 5 and 13.
    const Dictionary d = textDictionary({"[Item]", "Name=DATE", "Start=5", "Len=8", "DataType=Alpha",
                                         "Occurrences=2", "[Item]", "Name=YEAR", "Start=5", "Len=4",
                                         "ItemType=SubItem"});
    expectAccountedBy(coverageOf(d.bytes, ".dcf"),
                      note(d.firstItemLine + 6, "YEAR", "subitem-occurrences-once",
                           QStringLiteral("Subitem YEAR lies in item DATE, which has 2 occurrences: CSPro gives it "
                                          "once per occurrence, at columns 5 to 13 every 8 columns; the reading gives "
                                          "it once, at column 5.")),
                      QStringLiteral("absent"));
}

TEST_F(NoteCoverage, IdentificationItemOfTheSecondLevelInTheRecordBeforeIt)
{
    Dictionary d = textDictionary({"[Item]", "Name=AGE", "Start=6", "Len=2", "[Level]", "Name=PERSONS", "[IdItems]",
                                   "[Item]", "Name=LINE", "Start=5", "Len=1", "[Record]", "Name=DETAIL",
                                   "RecordTypeValue='D'", "[Item]", "Name=SEX", "Start=6", "Len=1"});
    expectAccountedBy(coverageOf(d.bytes, ".dcf"),
                      note(d.firstItemLine + 7, "LINE", "id-item-in-record-group",
                           QStringLiteral("Item LINE is an identification item of level 2; the reading puts it in "
                                          "record PERSON, the record read before it, and so in that record's "
                                          "group.")),
                      QStringLiteral("group"));
}

TEST_F(NoteCoverage, CarriageReturnInsideALine)
{
    Dictionary d = textDictionary({"[Item]", "Label=Month\rof birth", "Name=MONTH", "Start=5", "Len=2"});
    expectAccountedBy(coverageOf(d.bytes, ".dcf"),
                      note(d.firstItemLine + 1, "Label=Monthof birth", "carriage-return-dropped",
                           QStringLiteral("Line %1 holds a carriage return that does not end it; the reading drops "
                                          "it: 'Label=Monthof birth'.")
                               .arg(d.firstItemLine + 1)),
                      QStringLiteral("label"));
}

TEST_F(NoteCoverage, SpecialValueWithoutItsFlag)
{
    const Dictionary d = textDictionary({"[Item]", "Name=AGE", "Start=5", "Len=2", "[ValueSet]", "Name=AGE_VS1",
                                         "Value=1;One", "Value=99;Unknown", "Name=MISSING"});
    expectAccountedBy(coverageOf(d.bytes, ".dcf"),
                      note(d.firstItemLine + 8, "AGE_VS1", "special-not-read",
                           QStringLiteral("The line 'Name=MISSING' makes the code '99' the special value MISSING in "
                                          "CSPro; the reading kept 99 as an ordinary code, and the item gets no "
                                          "missing code.")),
                      QStringLiteral("missing"));
}

TEST_F(NoteCoverage, NumbersOutOfRangeAreNotedThoughCSProRefusesTheFile)
{
    // CSPro refuses such a dictionary, so there is no codebook to compare
    // with; the reading goes on with the default or the negative value.
    const Dictionary d = textDictionary({"[Item]", "Name=BIG", "Start=2147483648", "Len=-5"});
    const CoverageReport report = coverageOf(d.bytes, ".dcf");
    EXPECT_FALSE(report.compared);
    EXPECT_TRUE(report.why.startsWith(QStringLiteral("the codebook cannot be read"))) << report.why.toStdString();
    EXPECT_TRUE(report.notes.contains(note(d.firstItemLine + 2, "BIG", "number-out-of-range",
                                           QStringLiteral("Item BIG: 'Start=2147483648' is no whole number the "
                                                          "reading can hold, so it kept the default 1."))))
        << describeNotes(report.notes);
    EXPECT_TRUE(report.notes.contains(note(d.firstItemLine + 3, "BIG", "number-out-of-range",
                                           QStringLiteral("Item BIG: 'Len=-5' is negative, and the reading kept "
                                                          "-5."))))
        << describeNotes(report.notes);
}

// ---- CSPro JSON -----------------------------------------------------------

TEST_F(NoteCoverage, JsonDictionaryCarriedOverWholeHasNoDifference)
{
    const CoverageReport report = coverageOf(jsonDictionary(R"({"name":"AGE","contentType":"numeric","start":5,
        "length":2,"valueSets":[{"name":"AGE_VS1","values":[{"labels":[{"text":"One"}],"pairs":[{"value":"1"}]}]}]})"),
                                             ".json");
    ASSERT_TRUE(report.compared) << report.why.toStdString();
    EXPECT_TRUE(report.differences.isEmpty()) << report.describeUnaccounted().toStdString();
    EXPECT_TRUE(report.notes.isEmpty()) << describeNotes(report.notes);
}

TEST_F(NoteCoverage, JsonRelativeRecordItemsPlacedFromColumnOne)
{
    // The record type takes column 1, HHNO 2-4: CSPro starts AGE at 5.
    expectAccountedBy(coverageOf(jsonDictionary(R"({"name":"AGE","contentType":"numeric","length":2})",
                                                R"({"start":1,"length":1})", true),
                                 ".json"),
                      note(0, "PERSON", "start-not-relative",
                           QStringLiteral("Record PERSON: its items give no \"start\" and the dictionary uses "
                                          "relative positions: CSPro lays them out from column 5, after the record "
                                          "type and the identification items; the reading lays them out from column "
                                          "1.")),
                      QStringLiteral("start"));
}

TEST_F(NoteCoverage, JsonValueWithSeveralPairs)
{
    expectAccountedBy(coverageOf(jsonDictionary(R"({"name":"AGE","contentType":"numeric","start":5,"length":2,
        "valueSets":[{"name":"AGE_VS1","values":[{"labels":[{"text":"Old"}],"pairs":[{"value":"80"},{"value":"90"}]}]}]})"),
                                 ".json"),
                      note(0, "AGE_VS1", "first-pair-only",
                           QStringLiteral("Value set AGE_VS1: the value 'Old' has 2 pairs, and the reading kept the "
                                          "first.")),
                      QStringLiteral("value"));
}

TEST_F(NoteCoverage, JsonImageItemReadAsANumber)
{
    expectAccountedBy(coverageOf(jsonDictionary(R"({"name":"PHOTO","contentType":"image","start":5})"), ".json"),
                      note(0, "PHOTO", "binary-item-as-number",
                           QStringLiteral("Item PHOTO holds image content, which takes no columns of the data file; "
                                          "the reading made it a numeric field of length 0 at column 5.")),
                      QStringLiteral("type"));
}

TEST_F(NoteCoverage, JsonNoRecordTypeGivesNoGroup)
{
    expectAccountedBy(coverageOf(jsonDictionary(R"({"name":"AGE","contentType":"numeric","start":5,"length":2})",
                                                R"({"start":0,"length":0})"),
                                 ".json"),
                      note(0, "TEST", "group-not-set",
                           QStringLiteral("The dictionary gives the record type no length: CSPro still knows the "
                                          "record of every item, but the reading gives no field a group, the "
                                          "identification items included.")),
                      QStringLiteral("group"));
}

TEST_F(NoteCoverage, JsonWideWholeNumberTypedReal)
{
    expectAccountedBy(coverageOf(jsonDictionary(R"({"name":"PHONE","contentType":"numeric","start":5,"length":12})"),
                                 ".json"),
                      note(0, "PHONE", "wide-integer-as-real",
                           QStringLiteral("Item PHONE is a whole number of 12 digits; the reading types it REAL "
                                          "(field type 2, decimals 0), as every numeric item longer than 9 digits.")),
                      QStringLiteral("type"));
}

TEST_F(NoteCoverage, JsonItemOfAnUnknownContentTypeKept)
{
    expectAccountedBy(coverageOf(jsonDictionary(R"({"name":"AGE","contentType":"number","start":5,"length":2})"),
                                 ".json"),
                      note(0, "AGE", "malformed-item-kept",
                           QStringLiteral("CSPro skips item AGE as malformed: its content type 'number' is none of "
                                          "CSPro's; the reading keeps it.")),
                      QStringLiteral("extra"));
}

TEST_F(NoteCoverage, JsonRecordWithoutItsOccurrencesKept)
{
    QByteArray json = jsonDictionary(R"({"name":"AGE","contentType":"numeric","start":5,"length":2})");
    json.replace(R"("occurrences":{"required":true,"maximum":1},)", "");
    expectAccountedBy(coverageOf(json, ".json"),
                      note(0, "PERSON", "malformed-item-kept",
                           QStringLiteral("CSPro skips record PERSON and its items as malformed: its \"occurrences\" "
                                          "give no \"required\", its \"occurrences\" give no \"maximum\" from 1 to "
                                          "9999; the reading keeps them.")),
                      QStringLiteral("extra"));
}

TEST_F(NoteCoverage, JsonValueWithoutACodeKept)
{
    expectAccountedBy(coverageOf(jsonDictionary(R"({"name":"AGE","contentType":"numeric","start":5,"length":2,
        "valueSets":[{"name":"AGE_VS1","values":[{"labels":[{"text":"One"}],"pairs":[{"value":"1"}]},
                                                 {"labels":[{"text":"Two"}],"pairs":[{"code":"2"}]}]}]})"),
                                 ".json"),
                      note(0, "AGE_VS1", "malformed-value-kept",
                           QStringLiteral("Value set AGE_VS1: CSPro skips the value 'Two' as malformed (a pair with "
                                          "neither a \"value\" nor a \"range\" of two codes); the reading keeps "
                                          "it.")),
                      QStringLiteral("value"));
}

TEST_F(NoteCoverage, JsonCodeWrittenAsANumber)
{
    expectAccountedBy(coverageOf(jsonDictionary(R"({"name":"AGE","contentType":"numeric","start":5,"length":2,
        "valueSets":[{"name":"AGE_VS1","values":[{"labels":[{"text":"Seven"}],"pairs":[{"value":7}]}]}]})"),
                                 ".json"),
                      note(0, "AGE_VS1", "numeric-code-not-read",
                           QStringLiteral("Value set AGE_VS1: the value 'Seven' writes its code as a JSON number, "
                                          "which CSPro reads as text; the reading makes it an empty code.")),
                      QStringLiteral("value"));
}

TEST_F(NoteCoverage, JsonSubitemOfARepeatedItemGivenOnce)
{
    expectAccountedBy(coverageOf(jsonDictionary(R"({"name":"DATE","contentType":"alpha","start":5,"length":8,
        "occurrences":{"maximum":2}},{"name":"YEAR","contentType":"numeric","subitem":true,"start":5,"length":4})"),
                                 ".json"),
                      note(0, "YEAR", "subitem-occurrences-once",
                           QStringLiteral("Subitem YEAR lies in item DATE, which has 2 occurrences: CSPro gives it "
                                          "once per occurrence, every 8 columns; the reading gives it once.")),
                      QStringLiteral("absent"));
}

TEST_F(NoteCoverage, JsonPaddedAndLongCodes)
{
    const CoverageReport report = coverageOf(
        jsonDictionary(R"({"name":"ANSWER","contentType":"alpha","start":5,"length":3,"valueSets":[{"name":"ANSWER_VS1",
            "values":[{"labels":[{"text":"Yes"}],"pairs":[{"value":"Y Y"}]}]}]},
            {"name":"INCOME","contentType":"numeric","start":8,"length":8,"valueSets":[{"name":"INCOME_VS1",
            "values":[{"labels":[{"text":"Not stated"}],"pairs":[{"value":"99999999"}]}]}]})"),
        ".json");
    expectAccountedBy(report,
                      note(0, "ANSWER_VS1", "padded-code-split",
                           QStringLiteral("Value set ANSWER_VS1: the codes \"Y Y\" hold blanks, so in the field's "
                                          "value labels, a code and its label parted by a blank, they run into their "
                                          "labels.")),
                      QStringLiteral("value"));
    expectAccountedBy(report,
                      note(0, "INCOME_VS1", "code-rounded",
                           QStringLiteral("Value set INCOME_VS1: the field is an integer, whose value labels write "
                                          "codes with 6 significant digits: the reading kept 99999999 as 1e+08.")),
                      QStringLiteral("value"));
}

TEST_F(NoteCoverage, JsonPaddedCodesListedAsTheTextReaderListsThem)
{
    // Seven padded codes: the note names five and counts the rest, as for a text dictionary.
    QByteArray values;
    for (char c = 'A'; c <= 'G'; ++c)
        values += QByteArray(values.isEmpty() ? "" : ",") + R"({"labels":[{"text":"L"}],"pairs":[{"value":")" + c
            + " " + c + R"("}]})";
    const CoverageReport report = coverageOf(
        jsonDictionary(R"({"name":"ANSWER","contentType":"alpha","start":5,"length":3,"valueSets":[{"name":"ANSWER_VS1",
            "values":[)" + values + "]}]}"),
        ".json");
    EXPECT_TRUE(report.notes.contains(
        note(0, "ANSWER_VS1", "padded-code-split",
             QStringLiteral("Value set ANSWER_VS1: the codes \"A A\", \"B B\", \"C C\", \"D D\", \"E E\", and 2 more "
                            "hold blanks, so in the field's value labels, a code and its label parted by a blank, "
                            "they run into their labels."))))
        << describeNotes(report.notes);
}

TEST_F(NoteCoverage, JsonNumberOutOfRangeNoted)
{
    const CoverageReport report = coverageOf(
        jsonDictionary(R"({"name":"AGE","contentType":"numeric","start":5,"length":-5})"), ".json");
    EXPECT_TRUE(report.notes.contains(note(0, "AGE", "number-out-of-range",
                                           QStringLiteral("Item AGE: \"length\" is -5, no whole number from 0 to "
                                                          "2147483647; the reading kept -5."))))
        << describeNotes(report.notes);
    EXPECT_TRUE(report.unaccounted.isEmpty()) << report.describeUnaccounted().toStdString();
    // A start that is no whole number: the item is the record's first, so the reading places it at column 1.
    const CoverageReport fraction = coverageOf(
        jsonDictionary(R"({"name":"AGE","contentType":"numeric","start":3.7,"length":2})"), ".json");
    EXPECT_TRUE(fraction.notes.contains(note(0, "AGE", "number-out-of-range",
                                             QStringLiteral("Item AGE: \"start\" is 3.7, no whole number from 0 to "
                                                            "2147483647; the reading kept 1."))))
        << describeNotes(fraction.notes);
}

// ---- The samples ----------------------------------------------------------

class SampleCoverage : public ::testing::TestWithParam<const char *>
{
};

TEST_P(SampleCoverage, EveryDifferenceHasItsNote)
{
    const CoverageReport report = checkNoteCoverage(kxtest::samplePath(QString::fromLatin1(GetParam())));
    ASSERT_TRUE(report.compared) << report.why.toStdString();
    // Each sample shows several of the differences the notes account for.
    EXPECT_FALSE(report.differences.isEmpty());
    EXPECT_TRUE(report.unaccounted.isEmpty()) << report.describeUnaccounted().toStdString();
}

INSTANTIATE_TEST_SUITE_P(Samples, SampleCoverage,
                         ::testing::Values("census.dcf", "census.json", "census-round2.dcf", "languages.dcf",
                                           "labour-notes.dcf"));

} // namespace

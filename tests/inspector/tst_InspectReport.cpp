// Calls the inspector's writers on reports filled by hand (the HTML page's
// drawing and the CSV quoting among them), and the helpers that turn a JSON
// parser's offset into a line and a column.
#include <gtest/gtest.h>

#ifdef KX_HAVE_INSPECT

#include "CodebookWriters.h"
#include "CsvWriter.h"
#include "ColumnLayout.h"
#include "HtmlWriter.h"
#include "InspectReport.h"
#include "JsonWriter.h"
#include "ReadFailure.h"
#include "TableWriter.h"
#include "TextOutput.h"
#include "TestSupport.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QTextStream>
#include <QElapsedTimer>
#include <QXmlStreamReader>

using namespace kxinspect;

namespace {

InspectReport dictionaryReport()
{
    InspectReport report;
    report.kind = InspectReport::Kind::Dictionary;
    report.source.file = QStringLiteral("/data/survey.dcf");
    report.source.format = QStringLiteral("cspro");
    report.source.formatDetected = true;
    report.source.providerId = QStringLiteral("CSPRO_/data/survey.dcf");
    report.source.providerType = QStringLiteral("CSPRO");
    report.source.descriptionType = QStringLiteral("CSPRO");
    report.source.recordTypeStart = 1;
    report.source.recordTypeLength = 1;
    report.groups.append({QStringLiteral("PERSON=P"), QStringLiteral("PERSON"), QStringLiteral("P"), 1});
    FieldRow age;
    age.name = QStringLiteral("AGE");
    age.label = QStringLiteral("Age in years");
    age.type = QStringLiteral("INTEGER");
    age.start = 2;
    age.size = 2;
    age.minimum = QStringLiteral("0");
    age.maximum = QStringLiteral("99");
    age.group = QStringLiteral("PERSON");
    age.valueLabels.append({QStringLiteral("99"), QStringLiteral("Not stated")});
    report.fields.append(age);
    return report;
}

//! Two notes of one kind and one of another, the last without a line.
QList<NoteRow> threeNotes()
{
    return {{12, QStringLiteral("AGE_VS2"), QStringLiteral("value-set-dropped"),
             QStringLiteral("value set AGE_VS2 dropped: the value line 'Value=0 1:14 15:19' lists several codes")},
            {30, QStringLiteral("SEX_VS1"), QStringLiteral("value-set-dropped"),
             QStringLiteral("value set SEX_VS1 dropped: the decimal prompt was answered No to All")},
            {0, QStringLiteral("income"), QStringLiteral("width-first-digit"),
             QStringLiteral("format F10.2 read with the width 1")}};
}

QString tableOf(const InspectReport &report, const WriteSettings &settings = WriteSettings())
{
    QString text;
    QTextStream out(&text);
    writeTableReport(report, settings, out);
    out.flush();
    return text;
}

QStringList linesOf(const QString &text)
{
    return text.split(QLatin1Char('\n'));
}

QJsonObject jsonDocumentOf(const InspectReport &report, const WriteSettings &settings = WriteSettings())
{
    QString text;
    QTextStream out(&text);
    writeJsonReport(report, settings, out);
    out.flush();
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8(), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();
    return document.object();
}

// ------------------------------------------------------------------ notes in the table

TEST(InspectTableWriter, EndsWithTheNotesAndTheirCountByKind)
{
    InspectReport report = dictionaryReport();
    report.notes = threeNotes();
    const QStringList lines = linesOf(tableOf(report));
    const int notes = lines.indexOf(QStringLiteral("Notes:             3"));
    ASSERT_GT(notes, 0) << tableOf(report).toStdString();
    // After the field table: a blank line, the count, a blank line, the notes table, the counts by kind.
    EXPECT_TRUE(lines.at(notes - 2).startsWith(QStringLiteral("AGE ")));
    EXPECT_EQ(lines.at(notes - 1), QString());
    EXPECT_EQ(lines.mid(notes + 1),
              (QStringList{
                  "",
                  "LINE  SUBJECT  KIND               TEXT",
                  "12    AGE_VS2  value-set-dropped  value set AGE_VS2 dropped: the value line 'Value=0 1:14 15:19' "
                  "lists several codes",
                  "30    SEX_VS1  value-set-dropped  value set SEX_VS1 dropped: the decimal prompt was answered No to All",
                  "-     income   width-first-digit  format F10.2 read with the width 1",
                  "",
                  "Notes by kind:",
                  "  value-set-dropped  2",
                  "  width-first-digit  1",
                  ""}));
}

TEST(InspectTableWriter, HasNoNotesSectionWithoutNotes)
{
    const QString text = tableOf(dictionaryReport());
    EXPECT_FALSE(text.contains(QStringLiteral("Notes")));
    // The table ends with the last field row.
    EXPECT_TRUE(text.endsWith(QStringLiteral("99=Not stated\n"))) << text.toStdString();
}

TEST(InspectTableWriter, LeavesTheNotesOutWhenAsked)
{
    InspectReport report = dictionaryReport();
    report.notes = threeNotes();
    WriteSettings settings;
    settings.notes = false;
    EXPECT_EQ(tableOf(report, settings), tableOf(dictionaryReport()));
}

TEST(InspectTableWriter, ShowsControlCharactersOfNotesEscaped)
{
    InspectReport report = dictionaryReport();
    report.notes = {{3, QStringLiteral("ASSET") + QChar(1), QStringLiteral("limit-reached"),
                     QStringLiteral("text with a\ttab")}};
    const QStringList lines = linesOf(tableOf(report));
    EXPECT_TRUE(lines.contains(QStringLiteral("3     ASSET\\u0001  limit-reached  text with a\\u0009tab")))
        << tableOf(report).toStdString();
}

// ------------------------------------------------------------------ notes in JSON

TEST(InspectJsonWriter, CarriesTheNotesWithExactlyLineSubjectKindAndText)
{
    InspectReport report = dictionaryReport();
    report.notes = threeNotes();
    const QJsonArray notes = jsonDocumentOf(report).value(QStringLiteral("notes")).toArray();
    ASSERT_EQ(notes.size(), 3);
    for (const QJsonValue &note : notes)
        EXPECT_EQ(note.toObject().keys(), (QStringList{"kind", "line", "subject", "text"}));
    const QJsonObject first = notes.at(0).toObject();
    EXPECT_EQ(first.value(QStringLiteral("line")).toInt(), 12);
    EXPECT_EQ(first.value(QStringLiteral("subject")).toString(), QStringLiteral("AGE_VS2"));
    EXPECT_EQ(first.value(QStringLiteral("kind")).toString(), QStringLiteral("value-set-dropped"));
    EXPECT_EQ(first.value(QStringLiteral("text")).toString(),
              QStringLiteral("value set AGE_VS2 dropped: the value line 'Value=0 1:14 15:19' lists several codes"));
    // No line: 0, a number as the others.
    EXPECT_TRUE(notes.at(2).toObject().value(QStringLiteral("line")).isDouble());
    EXPECT_EQ(notes.at(2).toObject().value(QStringLiteral("line")).toInt(-1), 0);
}

TEST(InspectJsonWriter, CarriesAnEmptyNotesArrayWithoutNotes)
{
    const QJsonObject root = jsonDocumentOf(dictionaryReport());
    ASSERT_TRUE(root.value(QStringLiteral("notes")).isArray());
    EXPECT_TRUE(root.value(QStringLiteral("notes")).toArray().isEmpty());
}

TEST(InspectJsonWriter, LeavesTheNotesKeyOutWhenAsked)
{
    InspectReport report = dictionaryReport();
    report.notes = threeNotes();
    WriteSettings settings;
    settings.notes = false;
    EXPECT_FALSE(jsonDocumentOf(report, settings).contains(QStringLiteral("notes")));
}

TEST(InspectJsonWriter, KeepsLongLabelsWholeEvenWhenTheTableCutsThem)
{
    InspectReport report = dictionaryReport();
    report.fields[0].label = QString(500, QLatin1Char('l'));
    const QJsonArray fields = jsonDocumentOf(report).value(QStringLiteral("fields")).toArray();
    EXPECT_EQ(fields.at(0).toObject().value(QStringLiteral("label")).toString(), report.fields[0].label);
}

// ------------------------------------------------------------------ lookup messages

InspectReport lookupReport(int maxMessages, int messageCount)
{
    InspectReport report;
    report.kind = InspectReport::Kind::Lookup;
    report.lookup.file = QStringLiteral("/data/areas.txt");
    report.lookup.separator = QStringLiteral("tab");
    report.lookup.checks = true;
    report.lookup.maxMessages = maxMessages;
    for (int i = 0; i < messageCount; ++i)
        report.lookup.messages << QStringLiteral("%1_message %1").arg(i + 1);
    report.lookup.labelFrequencies.append({QStringLiteral("North"), 1});
    return report;
}

TEST(InspectTableWriter, ShowsLookupMessagesUpToTheCapAndCountsTheRest)
{
    // Five messages with a maximum of 2: the third is the cap's place.
    const QStringList lines = linesOf(tableOf(lookupReport(2, 5)));
    const int count = lines.indexOf(QStringLiteral("Messages:          5"));
    ASSERT_GE(count, 0);
    EXPECT_EQ(lines.mid(count + 1, 5), (QStringList{"  1_message 1", "  2_message 2", "  3_message 3",
                                                    "  (2 more messages not shown)", "Label frequencies: 1"}));
}

TEST(InspectTableWriter, ShowsEveryLookupMessageBelowTheMaximum)
{
    const QStringList lines = linesOf(tableOf(lookupReport(3, 3)));
    const int count = lines.indexOf(QStringLiteral("Messages:          3"));
    ASSERT_GE(count, 0);
    EXPECT_EQ(lines.mid(count + 1, 4),
              (QStringList{"  1_message 1", "  2_message 2", "  3_message 3", "Label frequencies: 1"}));
}

TEST(InspectJsonWriter, CarriesEveryLookupMessage)
{
    const QJsonObject root = jsonDocumentOf(lookupReport(0, 4));
    EXPECT_EQ(root.value(QStringLiteral("messages")).toVariant().toStringList(),
              (QStringList{"1_message 1", "2_message 2", "3_message 3", "4_message 4"}));
    EXPECT_TRUE(root.value(QStringLiteral("notes")).toArray().isEmpty());
}

// ------------------------------------------------------------------ JSON schema version

TEST(InspectJsonWriter, CarriesSchemaVersionOneInDictionaryAndLookupDocuments)
{
    WriteSettings noNotes;
    noNotes.notes = false;
    for (const QJsonObject &root : {jsonDocumentOf(dictionaryReport()), jsonDocumentOf(dictionaryReport(), noNotes),
                                    jsonDocumentOf(lookupReport(0, 1))}) {
        ASSERT_TRUE(root.value(QStringLiteral("schemaVersion")).isDouble());
        EXPECT_EQ(root.value(QStringLiteral("schemaVersion")).toInt(-1), 1);
    }
}

// ------------------------------------------------------------------ SPSS and Stata file metadata

InspectReport spssReport(const FileMetadata &metadata)
{
    InspectReport report = dictionaryReport();
    report.source.format = QStringLiteral("spss");
    report.source.providerType = QStringLiteral("SPSS");
    report.source.metadata = metadata;
    report.groups.clear();
    return report;
}

FileMetadata fullMetadata()
{
    FileMetadata m;
    m.present = true;
    m.rowCount = 1200;
    m.formatVersion = 3;
    m.encoding = QStringLiteral("UTF-8");
    m.byteOrder = QStringLiteral("big-endian");
    m.creationTime = QStringLiteral("2023-03-01T09:30:15");
    m.label = QStringLiteral("Census ") + QChar(1) + QStringLiteral(" extract");
    return m;
}

TEST(InspectTableWriter, ShowsTheFileMetadataBelowTheRecordType)
{
    const QStringList lines = linesOf(tableOf(spssReport(fullMetadata())));
    const int record = lines.indexOf(QStringLiteral("Record type:       start 1, length 1"));
    ASSERT_GE(record, 0);
    EXPECT_EQ(lines.mid(record + 1, 7),
              (QStringList{"Rows:              1200", "Format version:    3", "Encoding:          UTF-8",
                           "Byte order:        big-endian", "Created:           2023-03-01T09:30:15",
                           "File label:        Census \\u0001 extract", "Groups:            0"}));
}

TEST(InspectTableWriter, SaysUnknownWhereTheFileIsSilent)
{
    FileMetadata m;
    m.present = true;
    const QStringList lines = linesOf(tableOf(spssReport(m)));
    const int rows = lines.indexOf(QStringLiteral("Rows:              unknown"));
    ASSERT_GE(rows, 0) << tableOf(spssReport(m)).toStdString();
    EXPECT_EQ(lines.mid(rows + 1, 5),
              (QStringList{"Format version:    unknown", "Encoding:          unknown", "Byte order:        unknown",
                           "Created:           unknown", "File label:        none"}));
}

TEST(InspectTableWriter, CutsALongFileLabelUnlessWide)
{
    FileMetadata m = fullMetadata();
    m.label = QString(80, QLatin1Char('f'));
    EXPECT_TRUE(linesOf(tableOf(spssReport(m)))
                    .contains(QStringLiteral("File label:        ") + QString(59, QLatin1Char('f')) + QChar(0x2026)));
}

TEST(InspectTableWriter, HasNoFileMetadataLinesForCSPro)
{
    EXPECT_FALSE(tableOf(dictionaryReport()).contains(QStringLiteral("Rows:")));
}

TEST(InspectJsonWriter, CarriesTheFileMetadataWithNullWhereTheFileIsSilent)
{
    const QJsonObject full = jsonDocumentOf(spssReport(fullMetadata())).value(QStringLiteral("fileMetadata")).toObject();
    EXPECT_EQ(full.value(QStringLiteral("rowCount")).toInt(), 1200);
    EXPECT_EQ(full.value(QStringLiteral("formatVersion")).toInt(), 3);
    EXPECT_EQ(full.value(QStringLiteral("encoding")).toString(), QStringLiteral("UTF-8"));
    EXPECT_EQ(full.value(QStringLiteral("byteOrder")).toString(), QStringLiteral("big-endian"));
    EXPECT_EQ(full.value(QStringLiteral("creationTime")).toString(), QStringLiteral("2023-03-01T09:30:15"));
    EXPECT_EQ(full.value(QStringLiteral("label")).toString(), fullMetadata().label);

    FileMetadata silent;
    silent.present = true;
    const QJsonObject none = jsonDocumentOf(spssReport(silent)).value(QStringLiteral("fileMetadata")).toObject();
    for (const char *key : {"rowCount", "formatVersion", "encoding", "byteOrder", "creationTime"})
        EXPECT_TRUE(none.value(QLatin1String(key)).isNull()) << key;
    EXPECT_TRUE(none.value(QStringLiteral("label")).isString());
    EXPECT_FALSE(jsonDocumentOf(dictionaryReport()).contains(QStringLiteral("fileMetadata")));
}

// ------------------------------------------------------------------ CSV

QString csvOf(const InspectReport &report)
{
    QString text;
    QTextStream out(&text);
    writeCsvReport(report, out);
    out.flush();
    return text;
}

struct CsvFieldCase
{
    const char *name;
    QString text;
    QString field;
};

void PrintTo(const CsvFieldCase &c, std::ostream *os)
{
    *os << c.name;
}

class InspectCsvField : public ::testing::TestWithParam<CsvFieldCase>
{
};

TEST_P(InspectCsvField, IsQuotedExactlyWhenRfc4180AsksIt)
{
    EXPECT_EQ(csvField(GetParam().text), GetParam().field);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, InspectCsvField,
    ::testing::Values(
        CsvFieldCase{"Plain", "Age in years", "Age in years"},
        CsvFieldCase{"Empty", "", ""},
        CsvFieldCase{"BlanksAtBothEndsKept", "  a b  ", "  a b  "},
        CsvFieldCase{"Comma", "Yes, always", "\"Yes, always\""},
        CsvFieldCase{"QuoteDoubled", "say \"hi\"", "\"say \"\"hi\"\"\""},
        CsvFieldCase{"OnlyAQuote", "\"", "\"\"\"\""},
        CsvFieldCase{"LineFeed", "two\nlines", "\"two\nlines\""},
        CsvFieldCase{"CarriageReturn", "a\rb", "\"a\rb\""},
        CsvFieldCase{"CrLf", "a\r\nb", "\"a\r\nb\""},
        // Other control characters are kept as they are and need no quotes.
        CsvFieldCase{"ControlCharactersKept", QStringLiteral("ASSET_") + QChar(1) + QChar(0x1f) + QChar(0x7f),
                     QStringLiteral("ASSET_") + QChar(1) + QChar(0x1f) + QChar(0x7f)},
        CsvFieldCase{"TabKept", "a\tb", "a\tb"},
        CsvFieldCase{"NulKept", QString(QChar(0)) + QStringLiteral("x"), QString(QChar(0)) + QStringLiteral("x")},
        CsvFieldCase{"SemicolonAndEqualsNeedNoQuotes", "1=a; 2=b", "1=a; 2=b"},
        CsvFieldCase{"NonAscii", QStringLiteral("Île-de-France 漢 \U0001F600"),
                     QStringLiteral("Île-de-France 漢 \U0001F600")}),
    [](const ::testing::TestParamInfo<CsvFieldCase> &info) { return std::string(info.param.name); });

TEST(InspectCsvWriter, WritesTheHeaderAndOneRowPerFieldEndedByCrLf)
{
    EXPECT_EQ(csvOf(dictionaryReport()),
              QStringLiteral("NAME,LABEL,TYPE,START,SIZE,DEC,MIN,MAX,MISSING,NOTAPPL,GROUP,VALUE LABELS,NAME NOTE\r\n"
                             "AGE,Age in years,INTEGER,2,2,0,0,99,,,PERSON,99=Not stated,\r\n"));
}

TEST(InspectCsvWriter, QuotesHostileCellsAndKeepsTheirCharacters)
{
    InspectReport report = dictionaryReport();
    FieldRow &f = report.fields[0];
    f.name = QStringLiteral("ASSET_") + QChar(1);
    f.label = QStringLiteral("Rooms, \"main\"\r\nand other");
    f.missingCode = QStringLiteral("9");
    f.notApplicableCode = QStringLiteral("8");
    f.valueLabels = {{QStringLiteral("1"), QStringLiteral("a, b")}, {QStringLiteral("2"), QStringLiteral("c\nd")}};
    const QStringList rows = csvOf(report).split(QStringLiteral("\r\n"));
    ASSERT_EQ(rows.size(), 4); // header, the row (its label holds one CR LF), and the empty rest
    EXPECT_EQ(rows.at(1) + QStringLiteral("\r\n") + rows.at(2),
              QStringLiteral("ASSET_") + QChar(1)
                  + QStringLiteral(",\"Rooms, \"\"main\"\"\r\nand other\",INTEGER,2,2,0,0,99,9,8,PERSON,"
                                   "\"1=a, b; 2=c\nd\",\"occurrence 1 of ASSET: the name ends with the character "
                                   "U+0001, as the front end numbers occurrences; --codebook lists the item once "
                                   "with its occurrences\""));
    EXPECT_EQ(rows.at(3), QString());
}

TEST(InspectCsvWriter, LeavesEmptyCellsEmpty)
{
    InspectReport report = dictionaryReport();
    FieldRow empty;
    empty.name = QStringLiteral("X");
    empty.type = QStringLiteral("STRING");
    empty.start = 0;
    empty.size = 0;
    report.fields = {empty};
    EXPECT_TRUE(csvOf(report).endsWith(QStringLiteral("\r\nX,,STRING,0,0,0,,,,,,,\r\n"))) << csvOf(report).toStdString();
}

TEST(InspectCsvWriter, NeverCutsLabels)
{
    InspectReport report = dictionaryReport();
    const QString label(500, QLatin1Char('l'));
    report.fields[0].label = label;
    report.fields[0].valueLabels = {{QStringLiteral("1"), label}};
    const QString csv = csvOf(report);
    EXPECT_TRUE(csv.contains(QStringLiteral(",") + label + QStringLiteral(",INTEGER,")));
    EXPECT_TRUE(csv.endsWith(QStringLiteral(",1=") + label + QStringLiteral(",\r\n")));
    EXPECT_FALSE(csv.contains(QChar(0x2026)));
}

TEST(InspectCsvWriter, LeavesTheNotesOut)
{
    InspectReport report = dictionaryReport();
    report.notes = threeNotes();
    EXPECT_EQ(csvOf(report), csvOf(dictionaryReport()));
}

TEST(InspectCsvWriter, WritesALookupsLabelCounts)
{
    InspectReport report = lookupReport(0, 3);
    report.lookup.labelFrequencies.append({QStringLiteral("Harbour, old town"), 2});
    EXPECT_EQ(csvOf(report), QStringLiteral("COUNT,LABEL\r\n1,North\r\n2,\"Harbour, old town\"\r\n"));
}

TEST(InspectCsvWriter, WritesOnlyTheHeaderWithoutFields)
{
    InspectReport report = dictionaryReport();
    report.fields.clear();
    EXPECT_EQ(csvOf(report),
              QStringLiteral("NAME,LABEL,TYPE,START,SIZE,DEC,MIN,MAX,MISSING,NOTAPPL,GROUP,VALUE LABELS,NAME NOTE\r\n"));
}

// ------------------------------------------------------------------ label cells

const QChar Ellipsis(0x2026);

TEST(InspectLabelCell, KeepsALabelOfSixtyCharacters)
{
    const QString label(60, QLatin1Char('a'));
    EXPECT_EQ(labelCell(label, false), label);
}

TEST(InspectLabelCell, CutsALabelOfSixtyOneCharactersToFiftyNineAndTheEllipsis)
{
    const QString cell = labelCell(QString(61, QLatin1Char('a')), false);
    EXPECT_EQ(cell.size(), 60);
    EXPECT_EQ(cell, QString(59, QLatin1Char('a')) + Ellipsis);
}

TEST(InspectLabelCell, WideKeepsEveryCharacter)
{
    const QString label(200, QLatin1Char('a'));
    EXPECT_EQ(labelCell(label, true), label);
}

TEST(InspectLabelCell, NeverSplitsAnEscape)
{
    // 57 letters, then a tab whose escape \u0009 (6 characters) would end past the 59th.
    const QString label = QString(57, QLatin1Char('a')) + QLatin1Char('\t') + QString(10, QLatin1Char('b'));
    EXPECT_EQ(labelCell(label, false), QString(57, QLatin1Char('a')) + Ellipsis);
}

TEST(InspectLabelCell, CountsEscapesInTheWidth)
{
    // 55 characters printed as 60: whole. One more would make 61: cut.
    const QString fits = QString(54, QLatin1Char('a')) + QLatin1Char('\t');
    EXPECT_EQ(labelCell(fits, false), QString(54, QLatin1Char('a')) + QStringLiteral("\\u0009"));
    const QString over = fits + QLatin1Char('z');
    EXPECT_EQ(labelCell(over, false), QString(54, QLatin1Char('a')) + Ellipsis);
}

TEST(InspectLabelCell, NeverSplitsASurrogatePair)
{
    // 58 letters and U+1F600 (two UTF-16 units) would be 60 units before the ellipsis.
    const QString smile = QString::fromUcs4(U"\U0001F600");
    const QString label = QString(58, QLatin1Char('a')) + smile + QStringLiteral("tail");
    EXPECT_EQ(labelCell(label, false), QString(58, QLatin1Char('a')) + Ellipsis);
}

TEST(InspectLabelCell, KeepsASurrogatePairThatEndsAtTheCut)
{
    // 57 letters and U+1F600 fill the 59 units before the ellipsis exactly.
    const QString smile = QString::fromUcs4(U"\U0001F600");
    const QString label = QString(57, QLatin1Char('a')) + smile + QStringLiteral("tail");
    EXPECT_EQ(labelCell(label, false), QString(57, QLatin1Char('a')) + smile + Ellipsis);
}

TEST(InspectLabelCell, EscapesAControlCharacterBeforeTheCut)
{
    const QString label = QLatin1Char('\t') + QString(70, QLatin1Char('a'));
    EXPECT_EQ(labelCell(label, false), QStringLiteral("\\u0009") + QString(53, QLatin1Char('a')) + Ellipsis);
}

//! A variable with 30 codes "1=Label 1" to "30=Label 30".
KxCodebook::Variable variableWithThirtyValues()
{
    KxCodebook::ValueSet set;
    for (int code = 1; code <= 30; ++code) {
        KxCodebook::Value value;
        KxCodebook::Code c;
        c.from = QString::number(code);
        value.codes << c;
        value.labels.texts << QStringLiteral("Label %1").arg(code);
        set.values << value;
    }
    KxCodebook::Variable v;
    v.valueSets << set;
    return v;
}

TEST(InspectCodebookValuesCell, JoinsEveryEntry)
{
    const QString cell = codebookValuesCell(variableWithThirtyValues());
    EXPECT_TRUE(cell.startsWith(QStringLiteral("1=Label 1; 2=Label 2; 3=Label 3; ")));
    EXPECT_TRUE(cell.endsWith(QStringLiteral("; 30=Label 30")));
    EXPECT_EQ(cell.count(QStringLiteral("; ")), 29);
}

TEST(InspectCodebookValuesCell, StopsOnceLongerThanEnoughAndCutsAlike)
{
    const KxCodebook::Variable v = variableWithThirtyValues();
    const QString whole = codebookValuesCell(v);
    const QString start = codebookValuesCell(v, MaxTableLabel);
    EXPECT_GT(start.size(), MaxTableLabel);
    EXPECT_LT(start.size(), whole.size());
    EXPECT_TRUE(whole.startsWith(start));
    EXPECT_EQ(labelCell(start, false), labelCell(whole, false));
    EXPECT_EQ(labelCell(start, false), whole.left(MaxTableLabel - 1) + Ellipsis);
}

TEST(InspectTableWriter, CutsFieldAndValueLabelsButNotNames)
{
    InspectReport report = dictionaryReport();
    const QString longName = QString(70, QLatin1Char('N'));
    report.fields[0].name = longName;
    report.fields[0].label = QString(80, QLatin1Char('l'));
    report.fields[0].valueLabels = {{QStringLiteral("1"), QString(90, QLatin1Char('v'))}};
    const QString text = tableOf(report);
    const QStringList rows = linesOf(text).filter(QRegularExpression(QStringLiteral("^N{70} ")));
    ASSERT_EQ(rows.size(), 1) << text.toStdString();
    EXPECT_TRUE(rows.at(0).contains(QString(59, QLatin1Char('l')) + Ellipsis + QStringLiteral("  INTEGER")));
    EXPECT_TRUE(rows.at(0).endsWith(QStringLiteral("1=") + QString(59, QLatin1Char('v')) + Ellipsis));
    WriteSettings wide;
    wide.wideLabels = true;
    EXPECT_TRUE(tableOf(report, wide).contains(QString(90, QLatin1Char('v'))));
}

// ------------------------------------------------------------------ JSON parse positions

TEST(InspectTextOutput, EscapesControlCharactersOnlyAndKeepsOtherCharacters)
{
    // C0 controls, DEL and the C1 controls U+0080 to U+009F are escaped; from U+00A0 on, text stays.
    const QString text = QStringLiteral("a\tb") + QChar(0x7f) + QChar(0x85) + QChar(0x9f) + QChar(0xa0)
        + QStringLiteral("\u00e9\u4e2d");
    EXPECT_EQ(printable(text), QStringLiteral("a\\u0009b\\u007f\\u0085\\u009f") + QChar(0xa0)
                                   + QStringLiteral("\u00e9\u4e2d"));
}

TEST(InspectTextOutput, OneLineJoinsTheNonBlankLinesTrimmed)
{
    EXPECT_EQ(oneLine(QStringLiteral("  first \r\n   \n\tsecond\r\r\nthird  ")),
              QStringLiteral("first; second; third"));
    EXPECT_EQ(oneLine(QStringLiteral(" \n \r\n")), QString());
}

TEST(InspectReadFailure, OffsetZeroIsLineOneColumnOne)
{
    const TextPosition at = positionOfOffset("abc", 0);
    EXPECT_EQ(at.line, 1);
    EXPECT_EQ(at.column, 1);
}

TEST(InspectReadFailure, OffsetAfterALineEndIsTheNextLinesFirstColumn)
{
    const TextPosition at = positionOfOffset("ab\ncd", 3);
    EXPECT_EQ(at.line, 2);
    EXPECT_EQ(at.column, 1);
    const TextPosition d = positionOfOffset("ab\ncd", 4);
    EXPECT_EQ(d.line, 2);
    EXPECT_EQ(d.column, 2);
}

TEST(InspectReadFailure, ColumnsCountCharactersNotBytes)
{
    // "é" is two bytes in UTF-8: the x after "é" is the second character.
    const QByteArray text = QStringLiteral("\u00e9x").toUtf8();
    ASSERT_EQ(text.size(), 3);
    EXPECT_EQ(positionOfOffset(text, 2).column, 2);
}

TEST(InspectReadFailure, OffsetPastTheEndIsTheEnd)
{
    const TextPosition at = positionOfOffset("a\nbc", 99);
    EXPECT_EQ(at.line, 2);
    EXPECT_EQ(at.column, 3);
}

TEST(InspectReadFailure, AValidObjectHasNoProblem)
{
    EXPECT_EQ(jsonProblem("{\"name\": \"D\"}"), QString());
}

TEST(InspectReadFailure, AnOpenObjectIsReportedWithItsEnd)
{
    // Two lines; the text stops after the 9th character of line 2.
    EXPECT_EQ(jsonProblem("{\n\"a\": [1]"), QStringLiteral("invalid JSON: unterminated object at line 2, column 9"));
}

// ------------------------------------------------------------------ HTML page

/*! Two records, A and B, with the record-type code in column 1 and one
 * identification item ID in columns 2-3. Record A: X in 4-6 with its subitem
 * XS in 5-6, Y in 6-7 (over X's last column, not a subitem), nothing in 8-9,
 * Z in 10-11. Record B: W in 4. */
InspectReport columnsReport()
{
    InspectReport report;
    report.kind = InspectReport::Kind::Dictionary;
    report.source.file = QStringLiteral("/data/two.dcf");
    report.source.format = QStringLiteral("cspro");
    report.source.providerType = QStringLiteral("CSPRO");
    report.source.descriptionType = QStringLiteral("CSPRO");
    report.source.recordTypeStart = 1;
    report.source.recordTypeLength = 1;
    report.groups.append({QStringLiteral("A=a"), QStringLiteral("A"), QStringLiteral("a"), 4});
    report.groups.append({QStringLiteral("B=b"), QStringLiteral("B"), QStringLiteral("b"), 1});
    auto add = [&report](const char *name, int start, int size, const char *record) {
        FieldRow f;
        f.name = QLatin1String(name);
        f.label = QStringLiteral("Label of %1").arg(f.name);
        f.type = QStringLiteral("INTEGER");
        f.start = start;
        f.size = size;
        f.group = QLatin1String(record);
        f.record = QLatin1String(record);
        report.fields.append(f);
        return report.fields.size() - 1;
    };
    report.fields[add("ID", 2, 2, "Common")].identification = true;
    add("X", 4, 3, "A");
    report.fields[add("XS", 5, 2, "A")].subItem = true;
    add("Y", 6, 2, "A");
    add("Z", 10, 2, "A");
    add("W", 4, 1, "B");
    return report;
}

struct Element
{
    QString name;
    QXmlStreamAttributes attributes;
    QString svgRecord; //!< data-record of the drawing the element is in
    QString attr(const char *key) const { return attributes.value(QLatin1String(key)).toString(); }
    int num(const char *key) const { return attr(key).toInt(); }
};

//! Every element of the page, read as XML (the page is written well-formed); fails the test when it is not.
QList<Element> elementsOf(const QString &page)
{
    QList<Element> out;
    QXmlStreamReader xml(page);
    QString svgRecord;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            Element e{xml.name().toString(), xml.attributes(), svgRecord};
            if (e.name == QLatin1String("svg") && e.attr("class") == QLatin1String("record"))
                svgRecord = e.svgRecord = e.attr("data-record");
            out.append(e);
        } else if (xml.isEndElement() && xml.name() == QLatin1String("svg")) {
            svgRecord.clear();
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString() << " at line " << xml.lineNumber();
    return out;
}

QList<Element> rectsOf(const QList<Element> &elements, const QString &record, const QString &cssClass)
{
    QList<Element> out;
    for (const Element &e : elements) {
        if (e.name == QLatin1String("rect") && e.svgRecord == record && e.attr("class") == cssClass)
            out.append(e);
    }
    return out;
}

Element svgOf(const QList<Element> &elements, const QString &record)
{
    for (const Element &e : elements) {
        if (e.name == QLatin1String("svg") && e.attr("class") == QLatin1String("record")
            && e.attr("data-record") == record)
            return e;
    }
    ADD_FAILURE() << "no drawing of " << record.toStdString();
    return Element();
}

//! The rect of \a cssClass in \a record's drawing that starts at \a start; fails when there is not exactly one.
Element rectAt(const QList<Element> &elements, const QString &record, const QString &cssClass, int start)
{
    QList<Element> found;
    for (const Element &e : rectsOf(elements, record, cssClass)) {
        if (e.num("data-start") == start)
            found.append(e);
    }
    EXPECT_EQ(found.size(), 1) << cssClass.toStdString() << " at " << start << " in " << record.toStdString();
    return found.value(0);
}

//! The rect lies at its column: x = left + (start - 1) * scale, width = length * scale.
void expectAtColumns(const Element &rect, const Element &svg, int start, int length)
{
    const int scale = svg.num("data-scale");
    const int left = svg.num("data-left");
    ASSERT_GT(scale, 0);
    EXPECT_EQ(rect.num("data-start"), start);
    EXPECT_EQ(rect.num("data-len"), length);
    EXPECT_EQ(rect.num("x"), left + (start - 1) * scale) << rect.attr("data-name").toStdString();
    EXPECT_EQ(rect.num("width"), length * scale) << rect.attr("data-name").toStdString();
}

QString pageOf(const InspectReport &report, const WriteSettings &settings = WriteSettings())
{
    QString text;
    QTextStream out(&text);
    writeHtmlReport(report, settings, out);
    out.flush();
    return text;
}

TEST(InspectHtmlLayout, PlacesItemsSubitemsOverlapsAndGapsOfARecord)
{
    const QList<RecordDrawing> drawings = recordDrawingsOf(columnsReport());
    ASSERT_EQ(drawings.size(), 2);
    const RecordDrawing &a = drawings.at(0);
    EXPECT_EQ(a.name, QStringLiteral("A"));
    EXPECT_EQ(a.recordType, QStringLiteral("a"));
    EXPECT_EQ(a.end, 11); // Z ends in column 11
    // Sorted by start: the code, ID, X, Y; Y shares column 6 with X, so it goes to a second row.
    ASSERT_EQ(a.boxes.size(), 5);
    const QList<QPair<BoxKind, QString>> kinds = {{BoxKind::RecordType, "a"},
                                                  {BoxKind::IdentificationItem, "ID"},
                                                  {BoxKind::Item, "X"},
                                                  {BoxKind::Item, "Y"},
                                                  {BoxKind::Item, "Z"}};
    const QList<int> starts = {1, 2, 4, 6, 10};
    const QList<int> lanes = {0, 0, 0, 1, 0};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(a.boxes.at(i).kind, kinds.at(i).first) << i;
        EXPECT_EQ(a.boxes.at(i).name, kinds.at(i).second) << i;
        EXPECT_EQ(a.boxes.at(i).start, starts.at(i)) << i;
        EXPECT_EQ(a.boxes.at(i).lane, lanes.at(i)) << i;
    }
    EXPECT_EQ(a.itemLanes, 2);
    ASSERT_EQ(a.subItems.size(), 1);
    EXPECT_EQ(a.subItems.at(0).name, QStringLiteral("XS"));
    EXPECT_EQ(a.subItemLanes, 1);
    // The subitem XS lies inside X and is no overlap; Y over X is; 8-9 is a gap.
    ASSERT_EQ(a.marks.size(), 2);
    EXPECT_EQ(a.marks.at(0).kind, BoxKind::Overlap);
    EXPECT_EQ(a.marks.at(0).start, 6);
    EXPECT_EQ(a.marks.at(0).length, 1);
    EXPECT_EQ(a.marks.at(0).label, QStringLiteral("X, Y"));
    EXPECT_EQ(a.marks.at(1).kind, BoxKind::Gap);
    EXPECT_EQ(a.marks.at(1).start, 8);
    EXPECT_EQ(a.marks.at(1).length, 2);
}

TEST(InspectHtmlLayout, DrawsTheIdentificationItemsOnEveryRecord)
{
    const QList<RecordDrawing> drawings = recordDrawingsOf(columnsReport());
    ASSERT_EQ(drawings.size(), 2);
    const RecordDrawing &b = drawings.at(1);
    EXPECT_EQ(b.name, QStringLiteral("B"));
    EXPECT_EQ(b.end, 4);
    ASSERT_EQ(b.boxes.size(), 3);
    EXPECT_EQ(b.boxes.at(1).kind, BoxKind::IdentificationItem);
    EXPECT_EQ(b.boxes.at(1).name, QStringLiteral("ID"));
    EXPECT_EQ(b.boxes.at(2).name, QStringLiteral("W"));
    EXPECT_TRUE(b.marks.isEmpty());
}

TEST(InspectHtmlLayout, WrapsALongRecordOntoRulersThatFollowOneAnother)
{
    RecordDrawing long250;
    long250.name = QStringLiteral("L");
    long250.end = 250;
    ColumnBox across;
    across.name = QStringLiteral("ACROSS");
    across.start = 95;
    across.length = 11; // 95-105: on the first ruler and the second
    ColumnBox last;
    last.name = QStringLiteral("LAST");
    last.start = 240;
    last.length = 11;
    long250.boxes << across << last;
    const QList<RecordDrawing> rulers = wrappedDrawings(long250, 100);
    ASSERT_EQ(rulers.size(), 3);
    const QList<QPair<qint64, qint64>> columns = {{1, 100}, {101, 200}, {201, 250}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(rulers.at(i).first, columns.at(i).first) << i;
        EXPECT_EQ(rulers.at(i).end, columns.at(i).second) << i;
    }
    ASSERT_EQ(rulers.at(0).boxes.size(), 1);
    EXPECT_EQ(rulers.at(0).boxes.at(0).start, 95);
    EXPECT_EQ(rulers.at(0).boxes.at(0).length, 6);
    ASSERT_EQ(rulers.at(1).boxes.size(), 1);
    EXPECT_EQ(rulers.at(1).boxes.at(0).start, 101);
    EXPECT_EQ(rulers.at(1).boxes.at(0).length, 5);
    ASSERT_EQ(rulers.at(2).boxes.size(), 1);
    EXPECT_EQ(rulers.at(2).boxes.at(0).name, QStringLiteral("LAST"));
    EXPECT_EQ(rulers.at(2).boxes.at(0).length, 11);
}

TEST(InspectHtmlPage, ShowsTheCodebookWithTheDifferencesMarked)
{
    // samples/languages.dcf: [Languages] EN and FR, CLUSTER's label
    // 'Cluster|Grappe' (line 22), REGION_VS1's quoted codes, PLINE's range.
    InspectReport report;
    report.kind = InspectReport::Kind::Dictionary;
    report.source.format = QStringLiteral("cspro");
    report.codebook = KxCodebook::Codebook::fromFile(kxtest::samplePath(QStringLiteral("languages.dcf")));
    ASSERT_FALSE(report.codebook.isNull());
    report.notes << NoteRow{22, QStringLiteral("CLUSTER"), QStringLiteral("language-labels-joined"),
                            QStringLiteral("The label holds one label per language.")};
    const QString page = pageOf(report);
    EXPECT_TRUE(page.contains(QStringLiteral("<h2>Codebook</h2>")));
    // The label in each language, the first as the label and the second marked with its language.
    EXPECT_TRUE(page.contains(QStringLiteral("<td>Cluster<br/><span class=\"language\">FR:</span> Grappe</td>")));
    // The row of CLUSTER is marked, with its note.
    const int cluster = page.indexOf(QStringLiteral("<span class=\"mono\">CLUSTER</span>"));
    ASSERT_GE(cluster, 0);
    const int rowStart = page.lastIndexOf(QStringLiteral("<tr"), cluster);
    EXPECT_TRUE(page.midRef(rowStart, 30).startsWith(QStringLiteral("<tr class=\"differs\">")));
    EXPECT_GT(page.indexOf(QStringLiteral("language-labels-joined</span>: The label holds one label per language."), cluster), cluster);
    // One section a record, each with its ruler, and table headers that repeat in print.
    EXPECT_EQ(page.count(QStringLiteral("<section class=\"record\">")), 1 + report.codebook.records().size());
    EXPECT_EQ(page.count(QStringLiteral("<svg class=\"record codebook\"")), report.codebook.records().size());
    EXPECT_TRUE(page.contains(QStringLiteral("<thead><tr><th>Name</th><th>Label</th><th>Start</th>")));
    EXPECT_TRUE(page.contains(QStringLiteral("section.record { break-before: page; }")));
    // The page stays well-formed XML.
    QXmlStreamReader xml(page);
    while (!xml.atEnd())
        xml.readNext();
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
}

TEST(InspectHtmlLayout, ListsFieldsWithoutColumnsInsteadOfDrawingThem)
{
    InspectReport report = columnsReport();
    report.fields[1].start = 0;          // X before column 1
    report.fields[4].size = 0;           // Z of length 0
    report.fields[5].start = 2000000000; // W far past the last drawn column
    const QList<RecordDrawing> drawings = recordDrawingsOf(report);
    ASSERT_EQ(drawings.size(), 2);
    EXPECT_EQ(drawings.at(0).notDrawn,
              (QStringList{QStringLiteral("X: start 0, before column 1"), QStringLiteral("Z: length 0")}));
    EXPECT_EQ(drawings.at(1).notDrawn, QStringList{QStringLiteral("W: ends after column 5000")});
    EXPECT_EQ(drawings.at(1).end, 3); // the code and ID only
}

TEST(InspectHtmlLayout, ANameHoldingAPlaceholderIsNamedAsItStands)
{
    InspectReport report = columnsReport();
    report.fields[1].name = QStringLiteral("A%2");
    report.fields[1].size = 0;
    const QList<RecordDrawing> drawings = recordDrawingsOf(report);
    QStringList notDrawn;
    for (const RecordDrawing &d : drawings)
        notDrawn += d.notDrawn;
    EXPECT_TRUE(notDrawn.contains(QStringLiteral("A%2: length 0"))) << notDrawn.join(QLatin1String(" | ")).toStdString();
}

// 100,000 items on the same column: each needs a row of its own, and the
// one overlap names them all. Drawing them is O(n log n): well within a
// generous bound even in a sanitizer build (about 1 s for the whole page in
// a Release build, bench/README.md).
TEST(InspectHtmlLayout, OneHundredThousandItemsOnOneColumnAreDrawnInLinearithmicTime)
{
    InspectReport report;
    report.source.format = QStringLiteral("cspro");
    const int items = 100000;
    report.fields.reserve(items);
    for (int i = 0; i < items; ++i) {
        FieldRow f;
        f.name = QStringLiteral("I%1").arg(i);
        f.start = 1;
        f.size = 1;
        report.fields.append(f);
    }
    QElapsedTimer timer;
    timer.start();
    const QList<RecordDrawing> drawings = recordDrawingsOf(report);
    const QString page = htmlOfReport(report);
    EXPECT_LT(timer.elapsed(), 60000);
    ASSERT_EQ(drawings.size(), 1);
    EXPECT_EQ(drawings.at(0).itemLanes, items);
    EXPECT_EQ(drawings.at(0).boxes.last().lane, items - 1);
    ASSERT_EQ(drawings.at(0).marks.size(), 1);
    EXPECT_EQ(drawings.at(0).marks.at(0).kind, BoxKind::Overlap);
    EXPECT_EQ(drawings.at(0).marks.at(0).label.count(QLatin1Char(',')), items - 1);
    EXPECT_TRUE(page.contains(QLatin1String("data-name=\"I99999\"")));
}

// 40,000 records of one item each, and an identification item: every
// record's drawing holds its own item and the identification item, found
// without reading all fields again for each record (that took 15 s for
// half as many on a page).
TEST(InspectHtmlLayout, FortyThousandRecordsAreSortedOutOnce)
{
    InspectReport report;
    report.source.format = QStringLiteral("cspro");
    const int records = 40000;
    report.fields.reserve(records + 1);
    for (int i = 0; i < records; ++i) {
        GroupRow g;
        g.name = QStringLiteral("R%1").arg(i);
        report.groups.append(g);
        FieldRow f;
        f.name = QStringLiteral("I%1").arg(i);
        f.group = g.name;
        f.start = 3;
        f.size = 2;
        report.fields.append(f);
    }
    FieldRow id;
    id.name = QStringLiteral("ID");
    id.identification = true;
    id.start = 1;
    id.size = 2;
    report.fields.append(id);
    QElapsedTimer timer;
    timer.start();
    const QList<RecordDrawing> drawings = recordDrawingsOf(report);
    EXPECT_LT(timer.elapsed(), 10000);
    ASSERT_EQ(drawings.size(), records);
    for (int i : {0, records / 2, records - 1}) {
        const RecordDrawing &d = drawings.at(i);
        EXPECT_EQ(d.name, QStringLiteral("R%1").arg(i));
        ASSERT_EQ(d.boxes.size(), 2);
        EXPECT_EQ(d.boxes.at(0).name, QStringLiteral("ID"));  // in column order: 1-2, then 3-4
        EXPECT_EQ(d.boxes.at(1).name, QStringLiteral("I%1").arg(i));
        EXPECT_EQ(d.end, 4);
    }
}

TEST(InspectHtmlLayout, SpssAndStataHaveNoDrawing)
{
    InspectReport report = columnsReport();
    report.source.format = QStringLiteral("spss");
    EXPECT_TRUE(recordDrawingsOf(report).isEmpty());
    report.source.format = QStringLiteral("stata");
    EXPECT_TRUE(recordDrawingsOf(report).isEmpty());
}

TEST(InspectHtmlWriter, DrawsEachBoxAtItsStartAndWidth)
{
    const QList<Element> page = elementsOf(pageOf(columnsReport()));
    const Element svgA = svgOf(page, QStringLiteral("A"));
    EXPECT_EQ(svgA.num("data-end"), 11);
    expectAtColumns(rectAt(page, "A", "id", 2), svgA, 2, 2);
    expectAtColumns(rectAt(page, "A", "item", 4), svgA, 4, 3);
    expectAtColumns(rectAt(page, "A", "item", 6), svgA, 6, 2);
    expectAtColumns(rectAt(page, "A", "item", 10), svgA, 10, 2);
    expectAtColumns(rectAt(page, "A", "subitem", 5), svgA, 5, 2);
    expectAtColumns(rectAt(page, "A", "overlap", 6), svgA, 6, 1);
    expectAtColumns(rectAt(page, "A", "gap", 8), svgA, 8, 2);
    EXPECT_EQ(rectAt(page, "A", "item", 4).attr("data-name"), QStringLiteral("X"));
    EXPECT_EQ(rectsOf(page, "A", "item").size(), 3);
    EXPECT_EQ(rectsOf(page, "A", "overlap").size(), 1);
    EXPECT_EQ(rectsOf(page, "A", "gap").size(), 1);
    // The identification item on B's ruler too, at the same columns.
    const Element svgB = svgOf(page, QStringLiteral("B"));
    expectAtColumns(rectAt(page, "B", "id", 2), svgB, 2, 2);
    expectAtColumns(rectAt(page, "B", "item", 4), svgB, 4, 1);
    EXPECT_TRUE(rectsOf(page, "B", "gap").isEmpty());
}

TEST(InspectHtmlWriter, PutsSubitemsOnASecondRowBelowEveryItem)
{
    const QList<Element> page = elementsOf(pageOf(columnsReport()));
    const Element sub = rectAt(page, "A", "subitem", 5);
    for (const char *cssClass : {"item", "id", "rectype"})
        for (const Element &box : rectsOf(page, "A", QLatin1String(cssClass)))
            EXPECT_GE(sub.num("y"), box.num("y") + box.num("height")) << box.attr("data-name").toStdString();
    // Y, which overlaps X without being a subitem, is on a row of items below X.
    EXPECT_GT(rectAt(page, "A", "item", 6).num("y"), rectAt(page, "A", "item", 4).num("y"));
}

TEST(InspectHtmlWriter, ShadesTheRecordTypeColumnsFromTheRulerDown)
{
    const QList<Element> page = elementsOf(pageOf(columnsReport()));
    const Element svg = svgOf(page, QStringLiteral("A"));
    const Element code = rectAt(page, "A", "rectype", 1);
    expectAtColumns(code, svg, 1, 1);
    EXPECT_EQ(code.attr("data-name"), QStringLiteral("a"));
    const Element band = rectAt(page, "A", "rectype-band", 1);
    expectAtColumns(band, svg, 1, 1);
    const QList<Element> ruler = rectsOf(page, "A", "ruler");
    ASSERT_EQ(ruler.size(), 1);
    EXPECT_LE(band.num("y"), ruler.at(0).num("y"));
    EXPECT_GE(band.num("y") + band.num("height"), rectAt(page, "A", "subitem", 5).num("y") + code.num("height"));
    // A dictionary without a record type has neither.
    InspectReport report = columnsReport();
    report.source.recordTypeLength = 0;
    const QList<Element> plain = elementsOf(pageOf(report));
    EXPECT_TRUE(rectsOf(plain, "A", "rectype").isEmpty());
    EXPECT_TRUE(rectsOf(plain, "A", "rectype-band").isEmpty());
}

TEST(InspectHtmlLayout, OverlapNamesEachNameOnce)
{
    // A hostile dictionary may give two items one name: Y renamed X overlaps X in column 6.
    InspectReport report = columnsReport();
    report.fields[3].name = QStringLiteral("X");
    const RecordDrawing a = recordDrawingsOf(report).at(0);
    ASSERT_EQ(a.marks.size(), 2);
    EXPECT_EQ(a.marks.at(0).kind, BoxKind::Overlap);
    EXPECT_EQ(a.marks.at(0).label, QStringLiteral("X"));
}

TEST(InspectHtmlLayout, DrawsNoRecordTypeCodeOutsideTheDrawnColumns)
{
    InspectReport report = columnsReport();
    report.source.recordTypeStart = 0; // before column 1
    EXPECT_EQ(recordDrawingsOf(report).at(0).boxes.at(0).kind, BoxKind::IdentificationItem);
    report.source.recordTypeStart = 5000; // its one column is the last drawn column
    EXPECT_EQ(recordDrawingsOf(report).at(0).boxes.last().kind, BoxKind::RecordType);
    report.source.recordTypeLength = 2; // now it ends past it
    const QList<RecordDrawing> drawings = recordDrawingsOf(report);
    for (const ColumnBox &box : drawings.at(0).boxes)
        EXPECT_NE(box.kind, BoxKind::RecordType);
}

TEST(InspectHtmlLayout, FieldWithoutARecordIsDrawnInTheRecordOfItsGroup)
{
    InspectReport report = columnsReport();
    report.fields[5].record.clear(); // W, of group B
    const QList<RecordDrawing> drawings = recordDrawingsOf(report);
    ASSERT_EQ(drawings.size(), 2);
    EXPECT_EQ(drawings.at(1).boxes.last().name, QStringLiteral("W"));
    for (const ColumnBox &box : drawings.at(0).boxes)
        EXPECT_NE(box.name, QStringLiteral("W"));
}

TEST(InspectHtmlWriter, NumbersTheRulerFromOneToTheRecordsEnd)
{
    const QList<Element> page = elementsOf(pageOf(columnsReport()));
    int ticks = 0;
    for (const Element &e : page)
        ticks += e.name == QLatin1String("text") && e.svgRecord == QLatin1String("A")
                 && e.attr("class") == QLatin1String("tick");
    // Columns 1, 5, 10 and the end, 11: eleven columns are drawn at the largest scale, where
    // numbers stand every 5 columns and 10 and 11 are far enough apart.
    EXPECT_EQ(ticks, 4);
    const QString text = pageOf(columnsReport());
    for (const char *number : {">1</text>", ">5</text>", ">10</text>", ">11</text>"})
        EXPECT_TRUE(text.contains(QLatin1String(number))) << number;
}

TEST(InspectHtmlWriter, EscapesNamesAndLabelsInTextAndAttributes)
{
    InspectReport report = columnsReport();
    report.fields[1].name = QStringLiteral("A&\"B");
    report.fields[1].label = QStringLiteral("<script>alert(1)</script>");
    report.fields[1].valueLabels = {{QStringLiteral("<b>"), QStringLiteral("<script>alert(2)</script>")}};
    report.fields[4].name = QStringLiteral("ASSET_") + QChar(1);
    report.groups[0].entry = QStringLiteral("A=<i>");
    const QString text = pageOf(report);
    EXPECT_FALSE(text.contains(QLatin1String("<script"), Qt::CaseInsensitive));
    EXPECT_TRUE(text.contains(QLatin1String("&lt;script&gt;alert(1)&lt;/script&gt;")));
    EXPECT_TRUE(text.contains(QLatin1String("&lt;script&gt;alert(2)&lt;/script&gt;")));
    EXPECT_TRUE(text.contains(QLatin1String("data-name=\"A&amp;&quot;B\"")));
    EXPECT_FALSE(text.contains(QLatin1String("A&\"B")));
    EXPECT_FALSE(text.contains(QLatin1String("<i>")));
    // The control character as the table shows it, never raw.
    EXPECT_TRUE(text.contains(QLatin1String("ASSET_\\u0001")));
    EXPECT_FALSE(text.contains(QChar(1)));
    // Read back as XML, the attribute holds the name as read.
    const QList<Element> page = elementsOf(text);
    EXPECT_EQ(rectAt(page, "A", "item", 4).attr("data-name"), QStringLiteral("A&\"B"));
}

TEST(InspectHtmlWriter, IsSelfContained)
{
    const QString text = pageOf(columnsReport());
    EXPECT_TRUE(text.startsWith(QLatin1String("<!DOCTYPE html>")));
    EXPECT_TRUE(text.contains(QLatin1String("<style>")));
    for (const Element &e : elementsOf(text)) {
        EXPECT_NE(e.name, QLatin1String("script"));
        EXPECT_NE(e.name, QLatin1String("link"));
        EXPECT_NE(e.name, QLatin1String("img"));
        EXPECT_FALSE(e.attributes.hasAttribute(QLatin1String("src")));
        EXPECT_FALSE(e.attributes.hasAttribute(QLatin1String("href")));
    }
    EXPECT_FALSE(text.contains(QLatin1String("url(")));
    EXPECT_FALSE(text.contains(QLatin1String("@import")));
}

TEST(InspectHtmlWriter, SpssAndStataGetAVariableTableInsteadOfADrawing)
{
    InspectReport report = columnsReport();
    report.source.format = QStringLiteral("stata");
    report.groups.clear();
    const QList<Element> page = elementsOf(pageOf(report));
    int variableTables = 0, drawings = 0;
    for (const Element &e : page) {
        variableTables += e.name == QLatin1String("table") && e.attr("class") == QLatin1String("variables");
        drawings += e.name == QLatin1String("svg") && e.attr("class") == QLatin1String("record");
    }
    EXPECT_EQ(variableTables, 1);
    EXPECT_EQ(drawings, 0);
    const QString text = pageOf(report);
    // One row per variable in file order: number, name, type, width.
    EXPECT_TRUE(text.contains(QLatin1String("<tr><td class=\"num\">2</td><td class=\"name\">X</td><td>INTEGER</td>"
                                            "<td class=\"num\">3</td>")))
        << text.toStdString();
}

TEST(InspectHtmlWriter, LookupPageSummarisesTheFileAndListsTheLabelCounts)
{
    InspectReport report;
    report.kind = InspectReport::Kind::Lookup;
    report.lookup.file = QStringLiteral("/data/areas<1>.txt");
    report.lookup.separator = QStringLiteral("tab");
    report.lookup.entries = 3;
    report.lookup.messages = QStringList{QStringLiteral("Key [01] already exists")};
    report.lookup.labelFrequencies = {{QStringLiteral("Central"), 2}, {QStringLiteral("Harbour"), 1}};
    const QString text = pageOf(report);
    EXPECT_TRUE(text.contains(QLatin1String("/data/areas&lt;1&gt;.txt"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QLatin1String("<h2>Label frequencies</h2>")));
    EXPECT_TRUE(text.contains(QLatin1String("<tr><td class=\"num\">2</td><td>Central</td></tr>")))
        << text.toStdString();
    EXPECT_TRUE(text.contains(QLatin1String("<tr><td class=\"num\">1</td><td>Harbour</td></tr>")));
    EXPECT_FALSE(text.contains(QLatin1String("<h2>Records</h2>")));
}

TEST(InspectHtmlWriter, EndsWithTheReadingNotesUnlessLeftOut)
{
    InspectReport report = columnsReport();
    report.notes = threeNotes();
    const QString text = pageOf(report);
    EXPECT_TRUE(text.contains(QLatin1String("<h2>Reading notes</h2>")));
    EXPECT_TRUE(text.contains(QLatin1String("<td class=\"num\">12</td><td class=\"name\">AGE_VS2</td>"
                                            "<td>value-set-dropped</td>")));
    EXPECT_TRUE(text.contains(QLatin1String("<td class=\"num\">-</td><td class=\"name\">income</td>")));
    WriteSettings settings;
    settings.notes = false;
    EXPECT_FALSE(pageOf(report, settings).contains(QLatin1String("Reading notes")));
    EXPECT_FALSE(pageOf(columnsReport()).contains(QLatin1String("Reading notes")));
}

TEST(InspectHtmlWriter, SaysThatJsonDictionariesGiveNoSubitems)
{
    InspectReport report = columnsReport();
    EXPECT_FALSE(pageOf(report).contains(QLatin1String("CSPro 8 JSON dictionaries")));
    report.source.format = QStringLiteral("cspro8");
    EXPECT_TRUE(pageOf(report).contains(QLatin1String("CSPro 8 JSON dictionaries")));
}

TEST(InspectHtmlWriter, SaysBelowTheDrawingWhichFieldsItCouldNotDraw)
{
    InspectReport report = columnsReport();
    report.fields[1].start = 0; // X before column 1
    report.fields[4].size = 0;  // Z of length 0
    const QString text = pageOf(report);
    EXPECT_TRUE(text.contains(QLatin1String("<p class=\"note\">Not drawn: X: start 0, before column 1; Z: length 0.</p>")))
        << text.toStdString();
    EXPECT_EQ(text.count(QLatin1String("Not drawn:")), 1); // record B draws every field it has
}

//! A record whose last item ends in column \a end, plus \a extra fields of record A.
InspectReport recordEndingAt(int end, const QList<FieldRow> &extra = {})
{
    InspectReport report = columnsReport();
    report.groups.removeLast();
    report.fields.removeLast();
    report.fields[4].start = end - 1; // Z, two columns wide, ends the record
    report.fields.append(extra);
    return report;
}

FieldRow fieldOfA(const QString &name, int start, int size)
{
    FieldRow f;
    f.name = name;
    f.label = name;
    f.type = QStringLiteral("INTEGER");
    f.start = start;
    f.size = size;
    f.group = f.record = QStringLiteral("A");
    return f;
}

QStringList textsOf(const QString &page, const QString &cssClass)
{
    QStringList texts;
    QXmlStreamReader xml(page);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("text")
            && xml.attributes().value(QLatin1String("class")) == cssClass)
            texts << xml.readElementText();
    }
    return texts;
}

TEST(InspectHtmlWriter, NumbersALongRecordEveryTenColumns)
{
    // 200 columns do not fit 1,100 pixels at 16 a column: the page falls to its smallest scale, 8,
    // where numbers stand every 10 columns; 190 is far enough from the end's 200 to be written.
    QStringList expected{QStringLiteral("1")};
    for (int c = 10; c <= 200; c += 10)
        expected << QString::number(c);
    const QString text = pageOf(recordEndingAt(200));
    EXPECT_EQ(svgOf(elementsOf(text), QStringLiteral("A")).num("data-scale"), 8);
    EXPECT_EQ(textsOf(text, QStringLiteral("tick")), expected);
}

TEST(InspectHtmlWriter, WritesALongNameUpwardsCutWithAnEllipsisAndLeavesItOutOfATooNarrowBox)
{
    // At 24 pixels a column (11 columns), a one-column box is too narrow for its name across and
    // wide enough for a line upwards; the boxes grow to their tallest, 100 pixels, where 14
    // characters of 6.6 pixels fit: the name's first 13 and the ellipsis.
    const QString longName = QStringLiteral("HOUSEHOLD_HEAD_EDUCATION");
    InspectReport report = columnsReport();
    report.fields[5] = fieldOfA(longName, 8, 1);
    const QString page = pageOf(report);
    EXPECT_EQ(textsOf(page, QStringLiteral("upwards")), QStringList{longName.left(13) + QChar(0x2026)});
    EXPECT_EQ(rectAt(elementsOf(page), "A", "item", 8).num("height"), 100);
    EXPECT_FALSE(textsOf(page, QStringLiteral("name")).contains(longName));

    // At 8 pixels a column (200 columns), a one-column box has no room for a line of text.
    const QString narrow = pageOf(recordEndingAt(200, {fieldOfA(longName, 50, 1)}));
    EXPECT_EQ(rectAt(elementsOf(narrow), "A", "item", 50).attr("data-name"), longName);
    for (const QString &shown : textsOf(narrow, QStringLiteral("upwards")) + textsOf(narrow, QStringLiteral("name")))
        EXPECT_FALSE(shown.startsWith(QLatin1String("HO"))) << shown.toStdString();
}

TEST(InspectHtmlWriter, HeadsARecordWithoutACodeByItsNameAlone)
{
    InspectReport report = columnsReport();
    report.groups[1].recordType.clear();
    const QString text = pageOf(report);
    EXPECT_TRUE(text.contains(QStringLiteral("<h3>Record <span class=\"mono\">B</span>: columns 1\u20134</h3>")))
        << text.toStdString();
    EXPECT_TRUE(
        text.contains(QStringLiteral("<h3>Record <span class=\"mono\">A</span>, record type <span class=\"mono\">a"
                                     "</span>: columns 1\u201311</h3>")));
}

TEST(InspectHtmlWriter, DrawsNothingForADictionaryWithoutFields)
{
    InspectReport report = columnsReport();
    report.groups.clear();
    report.fields.clear();
    EXPECT_TRUE(recordDrawingsOf(report).isEmpty());
    const QString text = pageOf(report);
    EXPECT_TRUE(text.contains(QLatin1String("<h2>Records</h2>")));
    EXPECT_FALSE(text.contains(QLatin1String("<svg class=\"record\"")));
}

TEST(InspectHtmlWriter, SummaryNamesADescriptionTypeThatDiffersFromTheProviderType)
{
    InspectReport report = columnsReport();
    const auto providerRow = [](const char *cell) {
        return QStringLiteral("<tr><th>Provider type</th><td>%1</td></tr>").arg(QLatin1String(cell));
    };
    EXPECT_TRUE(pageOf(report).contains(providerRow("CSPRO"))) << pageOf(report).toStdString();
    report.source.descriptionType = QStringLiteral("SPSS");
    EXPECT_TRUE(pageOf(report).contains(providerRow("CSPRO (description type: SPSS)")));
    report.source.descriptionType.clear();
    EXPECT_TRUE(pageOf(report).contains(providerRow("CSPRO (description type: none)")));
}

TEST(InspectHtmlWriter, FileHoldsThePageWholeInUtf8)
{
    // Written in pieces of 64 KiB or more: a page of some 2,000 rows crosses several.
    InspectReport report = columnsReport();
    const FieldRow first = report.fields.at(0);
    for (int i = 0; i < 2000; ++i) {
        FieldRow f = first;
        f.name = QStringLiteral("F%1").arg(i);
        f.label = QStringLiteral("Étiquette n° %1 €").arg(i) + QString::fromUcs4(U"\U0001F600");
        report.fields << f;
    }
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("page.html"));
    ASSERT_EQ(writeHtmlFile(report, WriteSettings(), path), QString());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray written = file.readAll();
    const QByteArray expected = htmlOfReport(report).toUtf8();
    EXPECT_GT(expected.size(), 3 << 16);
    EXPECT_EQ(written.size(), expected.size());
    EXPECT_TRUE(written == expected);
}

TEST(InspectHtmlWriter, FileThatCannotBeWrittenIsSaidSo)
{
    const QString problem = writeHtmlFile(columnsReport(), WriteSettings(), QStringLiteral("/nonexistent-dir/x.html"));
    EXPECT_TRUE(problem.startsWith(QLatin1String("cannot be written: "))) << problem.toStdString();
}

// ------------------------------------------------------------------ the JSON document, streamed

// The report's long arrays are written one element at a time; the document
// must be byte for byte the one Qt makes of jsonOfReport().
QByteArray qtJsonOf(const InspectReport &report, const WriteSettings &settings)
{
    return QJsonDocument(jsonOfReport(report, settings)).toJson(QJsonDocument::Indented);
}

QByteArray streamedJsonOf(const InspectReport &report, const WriteSettings &settings, bool toDevice)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QString text;
    buffer.open(QIODevice::WriteOnly);
    QTextStream out(&text);
    if (toDevice)
        out.setDevice(&buffer);
    out.setCodec("UTF-8");
    writeJsonReport(report, settings, out);
    out.flush();
    return toDevice ? bytes : text.toUtf8();
}

TEST(InspectJsonWriter, StreamsTheDocumentQtMakes)
{
    InspectReport withNotes = dictionaryReport();
    withNotes.notes = threeNotes();
    withNotes.fields[0].label = QStringLiteral("quote \" back\\slash \n line \x01 é €");
    InspectReport noFields = dictionaryReport();
    noFields.fields.clear();
    InspectReport manyFields = dictionaryReport();
    for (int i = 0; i < 2000; ++i)  // past the writer's 64 KiB of pending bytes
        manyFields.fields << manyFields.fields.at(i % 2);
    // Value labels kept as the importer's text, split as they are written;
    // a field with a value label of tricky texts.
    InspectReport asText = dictionaryReport();
    for (FieldRow &f : asText.fields) {
        for (const ValueLabel &vl : f.valueLabels)
            f.valueLabelText += vl.code + QLatin1Char(' ') + vl.label + QLatin1Char('\t');
        f.valueLabels.clear();
    }
    asText.fields[0].valueLabelText += QStringLiteral("Q \"quoted\" \\ \x01 \u00e9\u20ac\t");
    // A code without a label, empty entries, a blank label, and a last entry without its tab.
    asText.fields[0].valueLabelText += QStringLiteral("7\t\t\t8 \t9  two blanks\t10 last");
    InspectReport emptyLookup = lookupReport(10, 0);
    emptyLookup.lookup.labelFrequencies.clear();
    WriteSettings noNotes;
    noNotes.notes = false;
    const QList<QPair<InspectReport, WriteSettings>> cases{
        {dictionaryReport(), WriteSettings()}, {withNotes, WriteSettings()}, {withNotes, noNotes},
        {noFields, WriteSettings()},           {manyFields, WriteSettings()}, {lookupReport(2, 5), WriteSettings()},
        {emptyLookup, WriteSettings()},        {lookupReport(0, 3000), noNotes}, {asText, WriteSettings()}};
    for (int i = 0; i < cases.size(); ++i) {
        for (bool toDevice : {true, false}) {
            SCOPED_TRACE(testing::Message() << "case " << i << (toDevice ? ", to a device" : ", to a string"));
            const QByteArray expected = qtJsonOf(cases.at(i).first, cases.at(i).second);
            const QByteArray streamed = streamedJsonOf(cases.at(i).first, cases.at(i).second, toDevice);
            EXPECT_EQ(streamed.size(), expected.size());
            EXPECT_TRUE(streamed == expected) << streamed.left(400).toStdString();
        }
    }
}

} // namespace

#else

TEST(InspectReport, Skipped)
{
    GTEST_SKIP() << "the inspector is not built (KX_BUILD_TOOLS=OFF)";
}

#endif

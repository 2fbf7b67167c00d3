#include "CodebookTestSupport.h"

#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QStringList>

#include <gtest/gtest.h>

#include <readstat.h>

#include <cfloat>
#include <cmath>
#include <functional>
#include <memory>

using namespace KxCodebook;

namespace {

// --- Files written with ReadStat's writer ---------------------------------

struct WriterFree
{
    void operator()(readstat_writer_t *writer) const { readstat_writer_free(writer); }
};
using Writer = std::unique_ptr<readstat_writer_t, WriterFree>;

//! Declares the variables and label sets of a file on the writer.
using Declare = std::function<void(readstat_writer_t *)>;

ssize_t appendBytes(const void *data, size_t length, void *ctx)
{
    static_cast<QByteArray *>(ctx)->append(static_cast<const char *>(data), static_cast<int>(length));
    return static_cast<ssize_t>(length);
}

//! One row: the row number in numbers, "r" in strings, \a ref in long strings.
readstat_error_t insertRow(readstat_writer_t *writer, int row, readstat_string_ref_t *ref)
{
    readstat_error_t rc = readstat_begin_row(writer);
    for (int i = 0; i < writer->variables_count && rc == READSTAT_OK; ++i) {
        const readstat_variable_t *v = readstat_get_variable(writer, i);
        switch (readstat_variable_get_type(v)) {
        case READSTAT_TYPE_STRING: rc = readstat_insert_string_value(writer, v, "r"); break;
        case READSTAT_TYPE_STRING_REF: rc = readstat_insert_string_ref(writer, v, ref); break;
        case READSTAT_TYPE_INT8: rc = readstat_insert_int8_value(writer, v, static_cast<int8_t>(row % 100)); break;
        case READSTAT_TYPE_INT16: rc = readstat_insert_int16_value(writer, v, static_cast<int16_t>(row)); break;
        case READSTAT_TYPE_INT32: rc = readstat_insert_int32_value(writer, v, row); break;
        case READSTAT_TYPE_FLOAT: rc = readstat_insert_float_value(writer, v, static_cast<float>(row)); break;
        case READSTAT_TYPE_DOUBLE: rc = readstat_insert_double_value(writer, v, row); break;
        }
    }
    return rc == READSTAT_OK ? readstat_end_row(writer) : rc;
}

enum class Container { Sav, Zsav, Dta };

struct FileSpec
{
    Container container = Container::Sav;
    int dtaVersion = 118;
    int rows = 0;
    QByteArray fileLabel;
    time_t timestamp = 0;  // 0: the writer's own (the current time)
};

QByteArray writeFile(const FileSpec &fixture, const Declare &declare)
{
    QByteArray bytes;
    Writer writer(readstat_writer_init());
    readstat_writer_t *w = writer.get();
    readstat_set_data_writer(w, appendBytes);
    declare(w);
    readstat_string_ref_t *ref = nullptr;
    for (int i = 0; i < w->variables_count && fixture.rows > 0; ++i) {
        if (readstat_variable_get_type(readstat_get_variable(w, i)) == READSTAT_TYPE_STRING_REF && !ref)
            ref = readstat_add_string_ref(w, "a long string kept apart from the rows");
    }
    if (!fixture.fileLabel.isEmpty())
        readstat_writer_set_file_label(w, fixture.fileLabel.constData());
    if (fixture.timestamp != 0)
        readstat_writer_set_file_timestamp(w, fixture.timestamp);
    readstat_error_t rc = READSTAT_OK;
    if (fixture.container == Container::Dta) {
        readstat_writer_set_file_format_version(w, static_cast<uint8_t>(fixture.dtaVersion));
        rc = readstat_begin_writing_dta(w, &bytes, fixture.rows);
    } else {
        if (fixture.container == Container::Zsav)
            readstat_writer_set_compression(w, READSTAT_COMPRESS_BINARY);
        rc = readstat_begin_writing_sav(w, &bytes, fixture.rows);
    }
    for (int row = 0; row < fixture.rows && rc == READSTAT_OK; ++row)
        rc = insertRow(w, row, ref);
    if (rc == READSTAT_OK)
        rc = readstat_end_writing(w);
    EXPECT_EQ(rc, READSTAT_OK) << readstat_error_message(rc);
    return rc == READSTAT_OK ? bytes : QByteArray();
}

QByteArray writeSav(const Declare &declare)
{
    return writeFile(FileSpec(), declare);
}

QByteArray writeDta(const Declare &declare, int version = 118)
{
    FileSpec fixture;
    fixture.container = Container::Dta;
    fixture.dtaVersion = version;
    return writeFile(fixture, declare);
}

readstat_variable_t *addVariable(readstat_writer_t *w, const char *name, readstat_type_t type, const char *format,
                                 size_t width = 0)
{
    readstat_variable_t *v = readstat_add_variable(w, name, type, width);
    readstat_variable_set_format(v, format);
    return v;
}

// --- Reading --------------------------------------------------------------

Codebook readFile(const QString &path)
{
    Error error;
    const Codebook book = Codebook::fromFile(path, &error);
    EXPECT_TRUE(error.ok()) << error.message.toStdString();
    EXPECT_FALSE(book.isNull());
    return book;
}

//! Writes \a bytes as \a name in \a files and reads it back.
Codebook readBytes(cbtest::TempFiles &files, const QString &name, const QByteArray &bytes)
{
    EXPECT_FALSE(bytes.isEmpty());
    return readFile(files.write(name, bytes));
}

//! Each value as "code=label".
QStringList valueTexts(const Variable &v)
{
    QStringList texts;
    for (const ValueSet &set : v.valueSets) {
        for (const Value &value : set.values)
            texts << value.codes.value(0).from + QLatin1Char('=') + value.labels.primary();
    }
    return texts;
}

//! Each missing value as "from", "from:to" or either with "=label".
QStringList missingTexts(const Variable &v)
{
    QStringList texts;
    for (const MissingValue &m : v.missing) {
        QString text = m.isRange ? m.from + QLatin1Char(':') + m.to : m.from;
        if (!m.label.isEmpty())
            text += QLatin1Char('=') + m.label;
        texts << text;
    }
    return texts;
}

QStringList variableNames(const Codebook &book)
{
    QStringList names;
    for (const Variable &v : book.variables())
        names << v.name;
    return names;
}

//! Whether \a message is "<path>: " followed by one of ReadStat's error texts.
bool namesReadStatError(const QString &message, const QString &path)
{
    for (int code = READSTAT_ERROR_OPEN; code <= READSTAT_ERROR_BAD_TIMESTAMP_VALUE; ++code) {
        const QString text = QString::fromUtf8(readstat_error_message(static_cast<readstat_error_t>(code)));
        if (message.startsWith(path + QStringLiteral(": ") + text))
            return true;
    }
    return false;
}

//! The codebook of an untrusted file read as \a format: read, or an error value that names the file.
void expectCodebookOrError(const QString &path, Format format)
{
    Error error;
    const Codebook book = Codebook::fromFile(path, &error, format);
    if (error.ok()) {
        EXPECT_FALSE(book.isNull());
        return;
    }
    EXPECT_TRUE(book.isNull());
    EXPECT_TRUE(error.kind == Error::Malformed || error.kind == Error::Unreadable
                || error.kind == Error::LimitReached) << error.message.toStdString();
    EXPECT_TRUE(error.message.startsWith(path + QStringLiteral(": "))) << error.message.toStdString();
}

Format sampleFormat(const char *name)
{
    return QByteArray(name).endsWith(".sav") ? Format::Spss : Format::Stata;
}

QByteArray sampleBytes(const char *name)
{
    QFile file(cbtest::samplePath(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return file.readAll();
}

//! One variable of a sample as keladmin-make-samples writes it.
struct Expected
{
    const char *name;
    const char *label;
    const char *format;
    int width;
    int decimals;
    Storage storage;
    int storageWidth;
    const char *labelSet;
};

void expectVariable(const Variable &v, const Expected &e)
{
    SCOPED_TRACE(e.name);
    EXPECT_EQ(v.name, QString::fromUtf8(e.name));
    EXPECT_EQ(v.labels, Labels::of(QString::fromUtf8(e.label)));
    EXPECT_EQ(v.format, QString::fromUtf8(e.format));
    EXPECT_EQ(v.width, e.width);
    EXPECT_EQ(v.decimals, e.decimals);
    EXPECT_EQ(v.storage, e.storage);
    EXPECT_EQ(v.storageWidth, e.storageWidth);
    EXPECT_EQ(v.labelSet, QString::fromUtf8(e.labelSet));
    EXPECT_EQ(v.level, 1);
    EXPECT_EQ(v.record, QString());
    EXPECT_EQ(v.start, 0);
    EXPECT_TRUE(v.missing.isEmpty());
}

const QStringList provinceValues = {"1=North", "2=South", "3=East", "4=West", "5=Capital district"};
const QStringList areaValues = {"1=Urban", "2=Rural"};
const QStringList relationValues = {"1=Head", "2=Spouse", "3=Son or daughter", "4=Parent", "5=Other relative",
                                    "6=Non-relative"};
const QStringList sexValues = {"1=Male", "2=Female"};
const QStringList ageValues = {"98=98 years or more", "999=Not reported"};
const QStringList maritalValues = {"1=Never married", "2=Married", "3=Consensual union", "4=Separated or divorced",
                                   "5=Widowed", "9=Not reported"};
const QStringList schoolValues = {"1=Attending", "2=Attended in the past", "3=Never attended", "8=Not applicable",
                                  "9=Not reported"};
const QStringList yesNoValues = {"1=Yes", "2=No"};

void expectOneUnnamedLevelAndLanguage(const Codebook &book)
{
    ASSERT_EQ(book.levels().size(), 1);
    EXPECT_EQ(book.levels().first().name, QString());
    ASSERT_EQ(book.languages().size(), 1);
    EXPECT_EQ(book.languages().first().name, QString());
    EXPECT_TRUE(book.records().isEmpty());
    EXPECT_EQ(book.recordTypeStart(), 0);
    EXPECT_EQ(book.recordTypeLength(), 0);
}

} // namespace

// --- samples/census.sav -----------------------------------------------------

TEST(SpssCensusSample, FileFactsAreThoseTheSampleWriterGave)
{
    const Codebook book = readFile(cbtest::samplePath("census.sav"));
    EXPECT_EQ(book.format(), Format::Spss);
    EXPECT_EQ(book.fileName(), cbtest::samplePath("census.sav"));
    EXPECT_EQ(book.formatVersion(), QStringLiteral("2"));  // uncompressed: $FL2
    EXPECT_EQ(book.encoding(), QStringLiteral("UTF-8"));    // ReadStat's writer declares code page 65001
    EXPECT_EQ(book.labels(), Labels::of(QString()));       // written without a file label
    EXPECT_EQ(book.rowCount(), 12);
    EXPECT_TRUE(book.created().isValid());                 // the writer stamps the time of writing
    EXPECT_EQ(book.name(), QString());
    expectOneUnnamedLevelAndLanguage(book);
    EXPECT_EQ(variableNames(book),
              QStringList({"province", "district", "urbrur", "hhnum", "pline", "relation", "sex", "age", "marital",
                           "school", "literate", "income", "pweight", "fullname", "occup"}));
}

TEST(SpssCensusSample, VariablesAreReadOneByOne)
{
    const Codebook book = readFile(cbtest::samplePath("census.sav"));
    // SPSS files name no label sets; ReadStat calls the value-label records
    // labels0, labels1, ... in file order, and its writer writes one record per
    // set in the order the sets were added: province, area, relation, sex,
    // age, marital, school, yesno, occup. Numbers take 8 bytes of storage,
    // strings whole blocks of 8.
    const Storage N = Storage::Numeric;
    const Storage T = Storage::Text;
    const Expected expected[] = {
        {"province", "Province", "F1.0", 1, 0, N, 8, "labels0"},
        {"district", "District", "F2.0", 2, 0, N, 8, ""},
        {"urbrur", "Urban or rural area", "F1.0", 1, 0, N, 8, "labels1"},
        {"hhnum", "Household number", "F4.0", 4, 0, N, 8, ""},
        {"pline", "Person line number", "F2.0", 2, 0, N, 8, ""},
        {"relation", "Relationship to head of household", "F1.0", 1, 0, N, 8, "labels2"},
        {"sex", "Sex", "F1.0", 1, 0, N, 8, "labels3"},
        {"age", "Age in completed years", "F3.0", 3, 0, N, 8, "labels4"},
        {"marital", "Marital status", "F1.0", 1, 0, N, 8, "labels5"},
        {"school", "School attendance", "F1.0", 1, 0, N, 8, "labels6"},
        {"literate", "Can read and write", "F1.0", 1, 0, N, 8, "labels7"},
        {"income", "Monthly income from work", "F9.2", 9, 2, N, 8, ""},
        {"pweight", "Person weight", "F8.4", 8, 4, N, 8, ""},
        {"fullname", "Name of person", "A24", 24, 0, T, 24, ""},
        {"occup", "Occupation code", "A4", 4, 0, T, 8, "labels8"},
    };
    const QVector<Variable> variables = book.variables();
    ASSERT_EQ(variables.size(), int(sizeof expected / sizeof expected[0]));
    for (int i = 0; i < variables.size(); ++i) {
        expectVariable(variables.at(i), expected[i]);
        // The writer gives every variable display width 8 when none is set, and no measure.
        EXPECT_EQ(variables.at(i).displayWidth, 8) << expected[i].name;
        EXPECT_EQ(variables.at(i).measure, Measure::Unknown) << expected[i].name;
    }
}

TEST(SpssCensusSample, ValueLabelsFollowTheirSets)
{
    const Codebook book = readFile(cbtest::samplePath("census.sav"));
    EXPECT_EQ(valueTexts(cbtest::variable(book, "province")), provinceValues);
    EXPECT_EQ(valueTexts(cbtest::variable(book, "urbrur")), areaValues);
    EXPECT_EQ(valueTexts(cbtest::variable(book, "relation")), relationValues);
    EXPECT_EQ(valueTexts(cbtest::variable(book, "sex")), sexValues);
    EXPECT_EQ(valueTexts(cbtest::variable(book, "age")), ageValues);
    EXPECT_EQ(valueTexts(cbtest::variable(book, "marital")), maritalValues);
    EXPECT_EQ(valueTexts(cbtest::variable(book, "school")), schoolValues);
    EXPECT_EQ(valueTexts(cbtest::variable(book, "literate")), yesNoValues);
    EXPECT_EQ(valueTexts(cbtest::variable(book, "occup")),
              QStringList({"1120=Legislators and senior officials", "6111=Field crop and vegetable growers",
                           "7115=Carpenters and joiners", "9999=Not stated"}));
    const Variable sex = cbtest::variable(book, "sex");
    ASSERT_EQ(sex.valueSets.size(), 1);
    EXPECT_EQ(sex.valueSets.first().name, QStringLiteral("labels3"));
    for (const char *name : {"district", "hhnum", "pline", "income", "pweight", "fullname"})
        EXPECT_TRUE(cbtest::variable(book, name).valueSets.isEmpty()) << name;
}

// --- samples/census.dta -----------------------------------------------------

TEST(StataCensusSample, FileFactsAreThoseTheSampleWriterGave)
{
    const Codebook book = readFile(cbtest::samplePath("census.dta"));
    EXPECT_EQ(book.format(), Format::Stata);
    EXPECT_EQ(book.formatVersion(), QStringLiteral("118"));
    EXPECT_EQ(book.encoding(), QStringLiteral("UTF-8"));  // format 118 holds UTF-8
    EXPECT_EQ(book.labels(), Labels::of(QString()));
    EXPECT_EQ(book.rowCount(), 12);
    EXPECT_TRUE(book.created().isValid());
    expectOneUnnamedLevelAndLanguage(book);
    EXPECT_EQ(variableNames(book),
              QStringList({"province", "district", "urbrur", "hhnum", "pline", "relation", "sex", "age", "marital",
                           "school", "literate", "income", "pweight", "hhsize", "fullname", "occup"}));
}

TEST(StataCensusSample, VariablesAreReadOneByOne)
{
    const Codebook book = readFile(cbtest::samplePath("census.dta"));
    // Storage: byte 1, int 2, long 4, float 4, double 8, strN N.
    const Storage N = Storage::Numeric;
    const Storage T = Storage::Text;
    const Expected expected[] = {
        {"province", "Province", "%8.0g", 8, 0, N, 1, "province"},
        {"district", "District", "%8.0g", 8, 0, N, 1, ""},
        {"urbrur", "Urban or rural area", "%8.0g", 8, 0, N, 1, "area"},
        {"hhnum", "Household number", "%8.0g", 8, 0, N, 2, ""},
        {"pline", "Person line number", "%8.0g", 8, 0, N, 1, ""},
        {"relation", "Relationship to head of household", "%8.0g", 8, 0, N, 1, "relation"},
        {"sex", "Sex", "%8.0g", 8, 0, N, 1, "sex"},
        {"age", "Age in completed years", "%8.0g", 8, 0, N, 2, "age"},
        {"marital", "Marital status", "%8.0g", 8, 0, N, 1, "marital"},
        {"school", "School attendance", "%8.0g", 8, 0, N, 1, "school"},
        {"literate", "Can read and write", "%8.0g", 8, 0, N, 1, "yesno"},
        {"income", "Monthly income from work", "%10.2f", 10, 2, N, 8, ""},
        {"pweight", "Person weight", "%9.0g", 9, 0, N, 4, ""},
        {"hhsize", "Persons in the household", "%8.0g", 8, 0, N, 4, ""},
        {"fullname", "Name of person", "%24s", 24, 0, T, 24, ""},
        {"occup", "Occupation code", "%4s", 4, 0, T, 4, ""},
    };
    const QVector<Variable> variables = book.variables();
    ASSERT_EQ(variables.size(), int(sizeof expected / sizeof expected[0]));
    for (int i = 0; i < variables.size(); ++i) {
        expectVariable(variables.at(i), expected[i]);
        // No format here is left-aligned (%-) or centred (%~).
        EXPECT_EQ(variables.at(i).alignment, Alignment::Right) << expected[i].name;
    }
    // Stata formats carry a display width for strings only.
    EXPECT_EQ(cbtest::variable(book, "fullname").displayWidth, 24);
    EXPECT_EQ(cbtest::variable(book, "occup").displayWidth, 4);
}

TEST(StataCensusSample, ValueLabelsFollowTheirSets)
{
    const Codebook book = readFile(cbtest::samplePath("census.dta"));
    EXPECT_EQ(valueTexts(cbtest::variable(book, "province")), provinceValues);
    EXPECT_EQ(valueTexts(cbtest::variable(book, "urbrur")), areaValues);
    EXPECT_EQ(valueTexts(cbtest::variable(book, "relation")), relationValues);
    EXPECT_EQ(valueTexts(cbtest::variable(book, "sex")), sexValues);
    EXPECT_EQ(valueTexts(cbtest::variable(book, "age")), ageValues);
    EXPECT_EQ(valueTexts(cbtest::variable(book, "marital")), maritalValues);
    EXPECT_EQ(valueTexts(cbtest::variable(book, "school")), schoolValues);
    EXPECT_EQ(valueTexts(cbtest::variable(book, "literate")), yesNoValues);
    const Variable urbrur = cbtest::variable(book, "urbrur");
    ASSERT_EQ(urbrur.valueSets.size(), 1);
    EXPECT_EQ(urbrur.valueSets.first().name, QStringLiteral("area"));
    for (const char *name : {"district", "hhnum", "pline", "income", "pweight", "hhsize", "fullname", "occup"})
        EXPECT_TRUE(cbtest::variable(book, name).valueSets.isEmpty()) << name;
}

// --- SPSS files written here ------------------------------------------------

TEST(SpssFormats, WidthAndDecimalsComeFromTheWholeFormat)
{
    cbtest::TempFiles files;
    const Codebook book = readBytes(files, "formats.sav", writeSav([](readstat_writer_t *w) {
        addVariable(w, "amount", READSTAT_TYPE_DOUBLE, "F10.2");
        addVariable(w, "name", READSTAT_TYPE_STRING, "A24", 24);
        addVariable(w, "price", READSTAT_TYPE_DOUBLE, "COMMA9.2");
        addVariable(w, "born", READSTAT_TYPE_DOUBLE, "DATE11");
    }));
    const Variable amount = cbtest::variable(book, "amount");
    EXPECT_EQ(amount.format, QStringLiteral("F10.2"));
    EXPECT_EQ(amount.width, 10);
    EXPECT_EQ(amount.decimals, 2);
    EXPECT_EQ(amount.storage, Storage::Numeric);
    const Variable name = cbtest::variable(book, "name");
    EXPECT_EQ(name.format, QStringLiteral("A24"));
    EXPECT_EQ(name.width, 24);
    EXPECT_EQ(name.decimals, 0);
    EXPECT_EQ(name.storage, Storage::Text);
    EXPECT_EQ(name.storageWidth, 24);
    const Variable price = cbtest::variable(book, "price");
    EXPECT_EQ(price.format, QStringLiteral("COMMA9.2"));
    EXPECT_EQ(price.width, 9);
    EXPECT_EQ(price.decimals, 2);
    const Variable born = cbtest::variable(book, "born");
    EXPECT_EQ(born.format, QStringLiteral("DATE11"));
    EXPECT_EQ(born.width, 11);
    EXPECT_EQ(born.decimals, 0);
    EXPECT_EQ(born.storage, Storage::Numeric);
}

TEST(SpssMissingValues, CodesAndRangesWithTheLabelsOfTheirCodes)
{
    cbtest::TempFiles files;
    const Codebook book = readBytes(files, "missing.sav", writeSav([](readstat_writer_t *w) {
        readstat_label_set_t *ages = readstat_add_label_set(w, READSTAT_TYPE_DOUBLE, "ages");
        readstat_label_double_value(ages, 97, "Refused");
        readstat_label_double_value(ages, 99, "Not reported");
        readstat_variable_t *age = addVariable(w, "age", READSTAT_TYPE_DOUBLE, "F3.0");
        readstat_variable_set_label_set(age, ages);
        readstat_variable_add_missing_double_range(age, 97, 98);
        readstat_variable_add_missing_double_value(age, 99);

        readstat_variable_t *low = addVariable(w, "low", READSTAT_TYPE_DOUBLE, "F8.0");
        readstat_variable_add_missing_double_range(low, -HUGE_VAL, -1);
        // -DBL_MAX is also SPSS's system-missing value.
        readstat_variable_t *lowest = addVariable(w, "lowest", READSTAT_TYPE_DOUBLE, "F8.0");
        readstat_variable_add_missing_double_range(lowest, -DBL_MAX, 0);
        readstat_variable_t *high = addVariable(w, "high", READSTAT_TYPE_DOUBLE, "F8.0");
        readstat_variable_add_missing_double_range(high, 1000, DBL_MAX);
        readstat_variable_t *codes = addVariable(w, "codes", READSTAT_TYPE_DOUBLE, "F8.2");
        readstat_variable_add_missing_double_value(codes, -1);
        readstat_variable_add_missing_double_value(codes, 2.5);
        readstat_variable_add_missing_double_value(codes, 1e20);

        readstat_label_set_t *regions = readstat_add_label_set(w, READSTAT_TYPE_STRING, "regions");
        readstat_label_string_value(regions, "N", "North");
        readstat_label_string_value(regions, "X", "Unknown");
        readstat_variable_t *region = addVariable(w, "region", READSTAT_TYPE_STRING, "A8", 8);
        readstat_variable_set_label_set(region, regions);
        readstat_variable_add_missing_string_value(region, "X");
    }));
    // The range is not one code, so it carries no label.
    EXPECT_EQ(missingTexts(cbtest::variable(book, "age")), QStringList({"97:98", "99=Not reported"}));
    EXPECT_EQ(missingTexts(cbtest::variable(book, "low")), QStringList({"LO:-1"}));
    EXPECT_EQ(missingTexts(cbtest::variable(book, "lowest")), QStringList({"LO:0"}));
    EXPECT_EQ(missingTexts(cbtest::variable(book, "high")), QStringList({"1000:HI"}));
    EXPECT_EQ(missingTexts(cbtest::variable(book, "codes")), QStringList({"-1", "2.5", "1e+20"}));
    EXPECT_EQ(missingTexts(cbtest::variable(book, "region")), QStringList({"X=Unknown"}));
    const Variable age = cbtest::variable(book, "age");
    ASSERT_EQ(age.missing.size(), 2);
    EXPECT_TRUE(age.missing.at(0).isRange);
    EXPECT_FALSE(age.missing.at(1).isRange);
    EXPECT_EQ(age.missing.at(1).to, QString());
}

TEST(SpssValueLabels, CodesAreWrittenShortestAndNoLabelIsDropped)
{
    cbtest::TempFiles files;
    const Codebook book = readBytes(files, "labels.sav", writeSav([](readstat_writer_t *w) {
        readstat_label_set_t *set = readstat_add_label_set(w, READSTAT_TYPE_DOUBLE, "money");
        readstat_label_double_value(set, -1, "Refused");
        readstat_label_double_value(set, 1.5, "Low");
        readstat_label_double_value(set, 0.1, "Tenth");
        readstat_label_double_value(set, 123456789012, "Large");
        readstat_label_double_value(set, 1e20, "Huge");
        readstat_variable_set_label_set(addVariable(w, "income", READSTAT_TYPE_DOUBLE, "F10.2"), set);
    }));
    // SPSS keeps the labels in the order they were written.
    EXPECT_EQ(valueTexts(cbtest::variable(book, "income")),
              QStringList({"-1=Refused", "1.5=Low", "0.1=Tenth", "123456789012=Large", "1e+20=Huge"}));
}

TEST(SpssText, NonAsciiLabelsAreReadBackExactly)
{
    cbtest::TempFiles files;
    FileSpec fixture;
    fixture.fileLabel = "Enquête 2023";
    const Codebook book = readBytes(files, "text.sav", writeFile(fixture, [](readstat_writer_t *w) {
        readstat_label_set_t *set = readstat_add_label_set(w, READSTAT_TYPE_DOUBLE, "places");
        readstat_label_double_value(set, 1, "Café");
        readstat_label_double_value(set, 2, "中国");
        readstat_variable_t *v = addVariable(w, "origin", READSTAT_TYPE_DOUBLE, "F1.0");
        readstat_variable_set_label(v, "Région d'origine 中文");
        readstat_variable_set_label_set(v, set);
    }));
    EXPECT_EQ(book.labels(), Labels::of(QStringLiteral("Enquête 2023")));
    const Variable origin = cbtest::variable(book, "origin");
    EXPECT_EQ(origin.labels, Labels::of(QStringLiteral("Région d'origine 中文")));
    EXPECT_EQ(valueTexts(origin), QStringList({QStringLiteral("1=Café"), QStringLiteral("2=中国")}));
}

TEST(SpssDisplay, MeasureAndDisplayWidthAreRead)
{
    cbtest::TempFiles files;
    const Codebook book = readBytes(files, "display.sav", writeSav([](readstat_writer_t *w) {
        readstat_variable_set_measure(addVariable(w, "region", READSTAT_TYPE_DOUBLE, "F1.0"),
                                      READSTAT_MEASURE_NOMINAL);
        readstat_variable_set_measure(addVariable(w, "rank", READSTAT_TYPE_DOUBLE, "F2.0"),
                                      READSTAT_MEASURE_ORDINAL);
        readstat_variable_t *weight = addVariable(w, "weight", READSTAT_TYPE_DOUBLE, "F8.2");
        readstat_variable_set_measure(weight, READSTAT_MEASURE_SCALE);
        readstat_variable_set_display_width(weight, 14);
    }));
    EXPECT_EQ(cbtest::variable(book, "region").measure, Measure::Nominal);
    EXPECT_EQ(cbtest::variable(book, "rank").measure, Measure::Ordinal);
    EXPECT_EQ(cbtest::variable(book, "weight").measure, Measure::Scale);
    EXPECT_EQ(cbtest::variable(book, "weight").displayWidth, 14);
}

TEST(SpssFileFacts, RowsLabelTimeAndVersion)
{
    cbtest::TempFiles files;
    FileSpec fixture;
    fixture.rows = 3;
    fixture.fileLabel = "Household survey";
    fixture.timestamp = 1700000040;  // 2023-11-14 22:14:00 UTC
    const Declare oneVariable = [](readstat_writer_t *w) { addVariable(w, "x", READSTAT_TYPE_DOUBLE, "F8.0"); };
    const Codebook book = readBytes(files, "facts.sav", writeFile(fixture, oneVariable));
    EXPECT_EQ(book.rowCount(), 3);
    EXPECT_EQ(book.labels(), Labels::of(QStringLiteral("Household survey")));
    EXPECT_EQ(book.created(), QDateTime::fromSecsSinceEpoch(1700000040, Qt::UTC));
    EXPECT_EQ(book.created().timeSpec(), Qt::UTC);
    EXPECT_EQ(book.formatVersion(), QStringLiteral("2"));
    EXPECT_EQ(book.encoding(), QStringLiteral("UTF-8"));

    fixture.container = Container::Zsav;  // $FL3
    const Codebook zsav = readBytes(files, "facts.zsav", writeFile(fixture, oneVariable));
    EXPECT_EQ(zsav.format(), Format::Spss);
    EXPECT_EQ(zsav.formatVersion(), QStringLiteral("3"));
    EXPECT_EQ(zsav.rowCount(), 3);
}

TEST(SpssFileFacts, AHeaderDateInAnotherLanguageLeavesTheTimeUnknown)
{
    cbtest::TempFiles files;
    FileSpec fixture;
    fixture.timestamp = 1700000040;
    QByteArray bytes = writeFile(fixture, [](readstat_writer_t *w) { addVariable(w, "x", READSTAT_TYPE_DOUBLE, "F8.0"); });
    // The header's date "dd mmm yy" starts at byte 92; a German SPSS writes "Okt" for October.
    ASSERT_GT(bytes.size(), 101);
    bytes.replace(92, 9, "14 Okt 23");
    const Codebook book = readBytes(files, "german.sav", bytes);
    EXPECT_FALSE(book.created().isValid());
    EXPECT_EQ(variableNames(book), QStringList({"x"}));
}

TEST(SpssRows, TheRowsAreNeverRead)
{
    cbtest::TempFiles files;
    FileSpec fixture;
    fixture.rows = 200;
    QByteArray bytes = writeFile(fixture, [](readstat_writer_t *w) { addVariable(w, "x", READSTAT_TYPE_DOUBLE, "F8.0"); });
    // Uncompressed rows of one number end the file, 8 bytes each: cut half of them off.
    ASSERT_GT(bytes.size(), 800);
    bytes.chop(800);
    const Codebook book = readBytes(files, "cut.sav", bytes);
    EXPECT_EQ(book.rowCount(), 200);
    EXPECT_EQ(variableNames(book), QStringList({"x"}));
}

// --- Stata files written here -----------------------------------------------

TEST(StataFormats, WidthDecimalsAndAlignmentComeFromTheFormat)
{
    cbtest::TempFiles files;
    const Codebook book = readBytes(files, "formats.dta", writeDta([](readstat_writer_t *w) {
        addVariable(w, "share", READSTAT_TYPE_DOUBLE, "%9.2f");
        addVariable(w, "name", READSTAT_TYPE_STRING, "%-24s", 24);
        addVariable(w, "born", READSTAT_TYPE_INT32, "%td");
        addVariable(w, "code", READSTAT_TYPE_STRING, "%~12s", 12);
        addVariable(w, "total", READSTAT_TYPE_DOUBLE, "%10.3gc");
    }));
    const Variable share = cbtest::variable(book, "share");
    EXPECT_EQ(share.format, QStringLiteral("%9.2f"));
    EXPECT_EQ(share.width, 9);
    EXPECT_EQ(share.decimals, 2);
    EXPECT_EQ(share.storage, Storage::Numeric);
    EXPECT_EQ(share.storageWidth, 8);
    EXPECT_EQ(share.alignment, Alignment::Right);
    const Variable name = cbtest::variable(book, "name");
    EXPECT_EQ(name.format, QStringLiteral("%-24s"));
    EXPECT_EQ(name.width, 24);
    EXPECT_EQ(name.decimals, 0);
    EXPECT_EQ(name.storage, Storage::Text);
    EXPECT_EQ(name.storageWidth, 24);  // str24
    EXPECT_EQ(name.displayWidth, 24);
    EXPECT_EQ(name.alignment, Alignment::Left);
    const Variable born = cbtest::variable(book, "born");
    EXPECT_EQ(born.format, QStringLiteral("%td"));
    EXPECT_EQ(born.width, 0);
    EXPECT_EQ(born.decimals, 0);
    EXPECT_EQ(born.storageWidth, 4);
    const Variable code = cbtest::variable(book, "code");
    EXPECT_EQ(code.width, 12);
    EXPECT_EQ(code.storageWidth, 12);
    EXPECT_EQ(code.alignment, Alignment::Center);
    const Variable total = cbtest::variable(book, "total");
    EXPECT_EQ(total.width, 10);
    EXPECT_EQ(total.decimals, 3);
}

TEST(StataMissingValues, LabelledExtendedMissingValuesAreMissingValues)
{
    cbtest::TempFiles files;
    const Codebook book = readBytes(files, "extended.dta", writeDta([](readstat_writer_t *w) {
        readstat_label_set_t *answers = readstat_add_label_set(w, READSTAT_TYPE_INT32, "answers");
        readstat_label_int32_value(answers, -1, "Unknown");
        readstat_label_int32_value(answers, 1, "Yes");
        readstat_label_int32_value(answers, 2, "No");
        readstat_label_tagged_value(answers, 'a', "Refused");
        readstat_label_tagged_value(answers, 'b', "Don't know");
        readstat_variable_set_label_set(addVariable(w, "answer", READSTAT_TYPE_INT8, "%8.0g"), answers);
        addVariable(w, "plain", READSTAT_TYPE_INT8, "%8.0g");
    }));
    const Variable answer = cbtest::variable(book, "answer");
    EXPECT_EQ(answer.labelSet, QStringLiteral("answers"));
    // Stata keeps a set's codes in order, the extended missing values last.
    EXPECT_EQ(valueTexts(answer), QStringList({"-1=Unknown", "1=Yes", "2=No", ".a=Refused", ".b=Don't know"}));
    EXPECT_EQ(missingTexts(answer), QStringList({".a=Refused", ".b=Don't know"}));
    EXPECT_TRUE(cbtest::variable(book, "plain").missing.isEmpty());
}

TEST(StataValueLabels, AVariableNamingASetTheFileLacksKeepsTheName)
{
    cbtest::TempFiles files;
    QByteArray bytes = writeDta([](readstat_writer_t *w) {
        readstat_label_set_t *ghost = readstat_add_label_set(w, READSTAT_TYPE_INT32, "ghost");
        readstat_label_int32_value(ghost, 1, "One");
        readstat_variable_set_label_set(addVariable(w, "x", READSTAT_TYPE_INT8, "%8.0g"), ghost);
    });
    // The set's own name comes last, in the value-label table: rename the table.
    const int table = bytes.lastIndexOf("ghost");
    ASSERT_GT(table, bytes.indexOf("ghost"));
    bytes.replace(table, 5, "ghxst");
    const Variable x = cbtest::variable(readBytes(files, "ghost.dta", bytes), "x");
    EXPECT_EQ(x.labelSet, QStringLiteral("ghost"));
    EXPECT_TRUE(x.valueSets.isEmpty());
}

TEST(StataValueLabels, ASetNameThatFillsItsFieldIsReadToTheFieldsEnd)
{
    // Format 118 keeps label-set names in 129-byte fields; a name of 129
    // bytes leaves no room for the terminating NUL.
    const QByteArray name(129, 'n');
    cbtest::TempFiles files;
    const Codebook book = readBytes(files, "longname.dta", writeDta([&name](readstat_writer_t *w) {
        readstat_label_set_t *set = readstat_add_label_set(w, READSTAT_TYPE_INT32, name.constData());
        readstat_label_int32_value(set, 7, "Seven");
        readstat_variable_set_label_set(addVariable(w, "x", READSTAT_TYPE_INT8, "%8.0g"), set);
    }));
    const Variable x = cbtest::variable(book, "x");
    EXPECT_EQ(x.labelSet, QString::fromLatin1(name));
    EXPECT_EQ(valueTexts(x), QStringList({"7=Seven"}));
}

TEST(StataText, NonAsciiLabelsAreReadBackExactly)
{
    cbtest::TempFiles files;
    FileSpec fixture;
    fixture.container = Container::Dta;
    fixture.fileLabel = "Enquête 2023";
    const Codebook book = readBytes(files, "text.dta", writeFile(fixture, [](readstat_writer_t *w) {
        readstat_label_set_t *set = readstat_add_label_set(w, READSTAT_TYPE_INT32, "places");
        readstat_label_int32_value(set, 1, "Café");
        readstat_label_int32_value(set, 2, "中国");
        readstat_variable_t *v = addVariable(w, "origin", READSTAT_TYPE_INT8, "%8.0g");
        readstat_variable_set_label(v, "Région d'origine 中文");
        readstat_variable_set_label_set(v, set);
    }));
    EXPECT_EQ(book.labels(), Labels::of(QStringLiteral("Enquête 2023")));
    const Variable origin = cbtest::variable(book, "origin");
    EXPECT_EQ(origin.labels, Labels::of(QStringLiteral("Région d'origine 中文")));
    EXPECT_EQ(valueTexts(origin), QStringList({QStringLiteral("1=Café"), QStringLiteral("2=中国")}));
}

TEST(StataFileFacts, RowsLabelTimeAndVersion)
{
    cbtest::TempFiles files;
    FileSpec fixture;
    fixture.container = Container::Dta;
    fixture.rows = 4;
    fixture.fileLabel = "Household survey";
    fixture.timestamp = 1700000040;  // Stata keeps minutes: a whole minute
    const Declare oneVariable = [](readstat_writer_t *w) { addVariable(w, "x", READSTAT_TYPE_INT16, "%8.0g"); };
    const Codebook book = readBytes(files, "facts.dta", writeFile(fixture, oneVariable));
    EXPECT_EQ(book.formatVersion(), QStringLiteral("118"));
    EXPECT_EQ(book.rowCount(), 4);
    EXPECT_EQ(book.labels(), Labels::of(QStringLiteral("Household survey")));
    EXPECT_EQ(book.created(), QDateTime::fromSecsSinceEpoch(1700000040, Qt::UTC));

    // Before format 118 Stata wrote the system's code page; ReadStat takes it for Windows-1252.
    fixture.dtaVersion = 114;
    const Codebook old = readBytes(files, "old.dta", writeFile(fixture, oneVariable));
    EXPECT_EQ(old.format(), Format::Stata);
    EXPECT_EQ(old.formatVersion(), QStringLiteral("114"));
    EXPECT_EQ(old.encoding(), QStringLiteral("WINDOWS-1252"));
    EXPECT_EQ(old.rowCount(), 4);
    EXPECT_EQ(old.labels(), Labels::of(QStringLiteral("Household survey")));
}

TEST(StataValueLabels, OldFormatsNameTheirSetsToo)
{
    cbtest::TempFiles files;
    const Codebook book = readBytes(files, "old.dta", writeDta([](readstat_writer_t *w) {
        readstat_label_set_t *set = readstat_add_label_set(w, READSTAT_TYPE_INT32, "yesno");
        readstat_label_int32_value(set, 1, "Yes");
        readstat_label_int32_value(set, 2, "No");
        readstat_variable_set_label_set(addVariable(w, "flag", READSTAT_TYPE_INT8, "%8.0g"), set);
    }, 114));
    const Variable flag = cbtest::variable(book, "flag");
    EXPECT_EQ(flag.labelSet, QStringLiteral("yesno"));
    EXPECT_EQ(valueTexts(flag), QStringList({"1=Yes", "2=No"}));
}

TEST(StataRows, LongStringsAreNeverRead)
{
    cbtest::TempFiles files;
    FileSpec fixture;
    fixture.container = Container::Dta;
    fixture.rows = 3;
    QByteArray bytes = writeFile(fixture, [](readstat_writer_t *w) {
        addVariable(w, "note", READSTAT_TYPE_STRING_REF, "%20s");
        readstat_label_set_t *set = readstat_add_label_set(w, READSTAT_TYPE_INT32, "yesno");
        readstat_label_int32_value(set, 1, "Yes");
        readstat_variable_set_label_set(addVariable(w, "flag", READSTAT_TYPE_INT8, "%8.0g"), set);
    });
    // Each long string starts with "GSO"; spoil them all, the value labels after them stay.
    ASSERT_GE(bytes.count("GSO"), 1);
    bytes.replace("GSO", "???");
    const Codebook book = readBytes(files, "strl.dta", bytes);
    EXPECT_EQ(cbtest::variable(book, "note").storage, Storage::Text);
    EXPECT_EQ(valueTexts(cbtest::variable(book, "flag")), QStringList({"1=Yes"}));
}

// --- Broken files -------------------------------------------------------------

TEST(ReadStatErrors, ATruncatedFileIsAnErrorNamingReadStatsReason)
{
    cbtest::TempFiles files;
    for (const char *sample : {"census.sav", "census.dta"}) {
        const QString path = files.write(QStringLiteral("cut-") + QString::fromLatin1(sample),
                                         sampleBytes(sample).left(200));
        Error error;
        const Codebook book = Codebook::fromFile(path, &error);
        EXPECT_TRUE(book.isNull()) << sample;
        EXPECT_EQ(error.kind, Error::Malformed) << sample;
        EXPECT_TRUE(namesReadStatError(error.message, path)) << error.message.toStdString();
    }
}

TEST(ReadStatErrors, GarbageAfterAnSpssHeaderIsAnError)
{
    cbtest::TempFiles files;
    QByteArray bytes("$FL2@(#) SPSS DATA FILE");
    quint32 state = 12345;
    while (bytes.size() < 600) {
        state = state * 1103515245u + 12345u;
        bytes.append(static_cast<char>(state >> 24));
    }
    const QString path = files.write(QStringLiteral("garbage.sav"), bytes);
    Error error;
    EXPECT_TRUE(Codebook::fromFile(path, &error).isNull());
    EXPECT_EQ(error.kind, Error::Malformed);
    EXPECT_TRUE(namesReadStatError(error.message, path)) << error.message.toStdString();
}

TEST(ReadStatErrors, AFileReadAsTheOtherFormatIsAnError)
{
    Error error;
    const QString path = cbtest::samplePath("census.sav");
    EXPECT_TRUE(Codebook::fromFile(path, &error, Format::Stata).isNull());
    EXPECT_EQ(error.kind, Error::Malformed);
    EXPECT_TRUE(namesReadStatError(error.message, path)) << error.message.toStdString();
}

TEST(ReadStatErrors, EveryCutOfTheSamplesIsReadOrRefused)
{
    cbtest::TempFiles files;
    for (const char *sample : {"census.sav", "census.dta"}) {
        const QByteArray bytes = sampleBytes(sample);
        const QString path = files.write(QString::fromLatin1(sample), QByteArray());
        for (int length = 0; length < bytes.size(); length += 7) {
            QFile out(path);
            ASSERT_TRUE(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
            out.write(bytes.constData(), length);
            out.close();
            SCOPED_TRACE(length);
            expectCodebookOrError(path, sampleFormat(sample));
        }
    }
}

TEST(ReadStatErrors, SpoiledBytesInTheSamplesAreReadOrRefused)
{
    cbtest::TempFiles files;
    quint32 state = 2023;
    const auto next = [&state](quint32 bound) {
        state = state * 1664525u + 1013904223u;
        return (state >> 8) % bound;
    };
    for (const char *sample : {"census.sav", "census.dta"}) {
        const QByteArray original = sampleBytes(sample);
        ASSERT_FALSE(original.isEmpty());
        const QString path = files.write(QString::fromLatin1(sample), original);
        for (int round = 0; round < 400; ++round) {
            QByteArray bytes = original;
            const int spoiled = 1 + static_cast<int>(next(8));
            for (int i = 0; i < spoiled; ++i)
                bytes[static_cast<int>(next(quint32(bytes.size())))] = static_cast<char>(next(256));
            QFile out(path);
            ASSERT_TRUE(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
            out.write(bytes);
            out.close();
            SCOPED_TRACE(round);
            expectCodebookOrError(path, sampleFormat(sample));
        }
    }
}

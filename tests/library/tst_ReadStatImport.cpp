// The rules the SPSS and Stata importers share, run on both: one typed suite
// over the two importers. A case that holds for one format only stays in
// tst_SPSSDataImport.cpp or tst_STATADataImport.cpp.
#include "model_KelAdmin.h"

#include "FixtureReadStatRecords.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <cstring>

using namespace kxtest;

namespace {

//! What differs between the formats in the shared cases.
template <class Importer>
struct Format;

template <>
struct Format<TSPSSDataImport>
{
    static constexpr const char *type = "SPSS";
    static constexpr const char *suffix = ".sav";
    static constexpr const char *sample = "census.sav";
    static constexpr const char *unknownTypeMessage = "model_KelAdmin/SPSSDataImport:304 unsupported type!\n";

    static int valueLabel(const char *set, readstat_value_t value, const char *label, void *importer)
    {
        return handle_value_label_spss(set, value, label, importer);
    }
    static int variable(readstat_variable_t *variable, const char *set, void *importer)
    {
        return handle_variable_spss(0, variable, set, importer);
    }
    static int metadata(readstat_metadata_t *metadata, void *importer)
    {
        return handle_metadata_spss(metadata, importer);
    }
    // A numeric variable as SPSS writes one: F8.2, real (2), the width its format's second character.
    static readstat_variable_t numericRecord() { return readStatRecord(READSTAT_TYPE_DOUBLE, "v", "F8.2"); }
    static constexpr int numericType = 2;
    static constexpr int numericSize = 8;
    // A long string (strL in Stata, a very long string in SPSS): SPSS's width comes from A9.
    static readstat_variable_t stringRefRecord() { return readStatRecord(READSTAT_TYPE_STRING_REF, "s", "A9"); }
    static ExpectedField stringRefField() { return {"s", "", 3, 9, "", "", ""}; }
};

template <>
struct Format<TSTATADataImport>
{
    static constexpr const char *type = "STATA";
    static constexpr const char *suffix = ".dta";
    static constexpr const char *sample = "census.dta";
    static constexpr const char *unknownTypeMessage = "model_KelAdmin/STATADataImport:282 unsupported type!\n";

    static int valueLabel(const char *set, readstat_value_t value, const char *label, void *importer)
    {
        return handle_value_label_stata(set, value, label, importer);
    }
    static int variable(readstat_variable_t *variable, const char *set, void *importer)
    {
        return handle_variable_stata(0, variable, set, importer);
    }
    static int metadata(readstat_metadata_t *metadata, void *importer)
    {
        return handle_metadata_stata(metadata, importer);
    }
    // A Stata long: integer (1), its storage width of 4 bytes.
    static readstat_variable_t numericRecord() { return readStatRecord(READSTAT_TYPE_INT32, "v", "%12.0g", "", 4); }
    static constexpr int numericType = 1;
    static constexpr int numericSize = 4;
    // A strL has storage width 0, and Stata strings get the bound texts: 0 and no nines.
    static readstat_variable_t stringRefRecord()
    {
        return readStatRecord(READSTAT_TYPE_STRING_REF, "s", "%9s", "", 0);
    }
    static ExpectedField stringRefField() { return {"s", "", 3, 0, "0", "", ""}; }
};

template <class Importer>
class ReadStatImport : public ::testing::Test
{
protected:
    using F = Format<Importer>;

    static QString sample() { return samplePath(QString::fromLatin1(F::sample)); }

    // Stata's importer prints ReadStat's failures on stdout; kept out of the test's output.
    static void openQuietly(Importer &importer)
    {
        testing::internal::CaptureStdout();
        importer.openFile();
        testing::internal::GetCapturedStdout();
    }
};

using Importers = ::testing::Types<TSPSSDataImport, TSTATADataImport>;

class FormatNames
{
public:
    template <class T>
    static std::string GetName(int)
    {
        return Format<T>::type;
    }
};

TYPED_TEST_SUITE(ReadStatImport, Importers, FormatNames);

TYPED_TEST(ReadStatImport, TypeIsTheFormatsNameAndIdIsTypeUnderscoreSourceName)
{
    using F = Format<TypeParam>;
    const QString source = QStringLiteral("/data/survey") + QLatin1String(F::suffix);
    TypeParam importer(source);
    EXPECT_EQ(importer.getDataProviderType(), QLatin1String(F::type));
    EXPECT_EQ(importer.getDataProviderId(), QLatin1String(F::type) + QLatin1Char('_') + source);
}

TYPED_TEST(ReadStatImport, OpenFileReturnsTrueAndSetsOpeningValueToOne)
{
    TypeParam importer(this->sample());
    EXPECT_TRUE(importer.openFile());
    EXPECT_EQ(importer.getOpeningValue(), 1.0);
}

TYPED_TEST(ReadStatImport, StringReferenceValueBecomesTheMarkerMinus88)
{
    using F = Format<TypeParam>;
    TypeParam importer;
    F::valueLabel("set", readStatValue(READSTAT_TYPE_STRING_REF), "Ref", &importer);
    readstat_variable_t v = F::numericRecord();
    F::variable(&v, "set", &importer);
    expectField(importer.getVariables().first(),
                {"v", "", F::numericType, F::numericSize, "-88", "-88", "-88 Ref\t"});
}

TYPED_TEST(ReadStatImport, StringReferenceVariableIsReadAsString)
{
    using F = Format<TypeParam>;
    TypeParam importer;
    readstat_variable_t v = F::stringRefRecord();
    F::variable(&v, nullptr, &importer);
    expectField(importer.getVariables().first(), F::stringRefField());
}

TYPED_TEST(ReadStatImport, MetadataCallbackCopiesRowAndVariableCounts)
{
    using F = Format<TypeParam>;
    TypeParam importer;
    readstat_metadata_t metadata;
    std::memset(&metadata, 0, sizeof metadata);
    metadata.row_count = 1234;
    metadata.var_count = 56;
    EXPECT_EQ(F::metadata(&metadata, &importer), 0);
    EXPECT_EQ(importer.getRowCount(), 1234);
    EXPECT_EQ(importer.getVariableCount(), 56);
}

TYPED_TEST(ReadStatImport, FreshImporterKnowsNothingAboutTheFile)
{
    TypeParam importer;
    EXPECT_EQ(importer.getRowCount(), -1);
    EXPECT_EQ(importer.getFileFormatVersion(), 0);
    EXPECT_TRUE(importer.getFileEncoding().isEmpty());
    EXPECT_TRUE(importer.getByteOrder().isEmpty());
    EXPECT_FALSE(importer.getCreationTime().isValid());
    EXPECT_TRUE(importer.getFileLabel().isEmpty());
}

TYPED_TEST(ReadStatImport, UnreadableFileSaysNothing)
{
    using F = Format<TypeParam>;
    QTemporaryDir dir;
    TypeParam importer(dir.filePath(QStringLiteral("absent") + QLatin1String(F::suffix)));
    this->openQuietly(importer);
    EXPECT_EQ(importer.getRowCount(), -1);
    EXPECT_EQ(importer.getVariableCount(), 0);
    EXPECT_EQ(importer.getFileFormatVersion(), 0);
    EXPECT_TRUE(importer.getFileEncoding().isEmpty());
    EXPECT_TRUE(importer.getByteOrder().isEmpty());
    EXPECT_FALSE(importer.getCreationTime().isValid());
}

TYPED_TEST(ReadStatImport, NothingParsedYetAndAReadFileGiveZeroAndNoText)
{
    TypeParam fresh;
    EXPECT_EQ(fresh.getParseError(), 0);
    EXPECT_TRUE(fresh.getParseErrorText().isEmpty());

    TypeParam importer(this->sample());
    importer.openFile();
    EXPECT_EQ(importer.getParseError(), 0);
    EXPECT_TRUE(importer.getParseErrorText().isEmpty());
}

// ReadStat 1.1.8 delivers value labels only as doubles and strings (SAV) or
// 32-bit integers (DTA), so an unknown type can only be handed to the
// callback directly.
template <class Importer>
class ReadStatImportDeathTest : public ReadStatImport<Importer>
{
};
TYPED_TEST_SUITE(ReadStatImportDeathTest, Importers, FormatNames);

TYPED_TEST(ReadStatImportDeathTest, UnknownValueTypeEndsTheProcessWithStatus1)
{
    using F = Format<TypeParam>;
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    TypeParam importer;
    EXPECT_EXIT(F::valueLabel("set", readStatValue(static_cast<readstat_type_t>(42)), "x", &importer),
                ::testing::ExitedWithCode(1), F::unknownTypeMessage);
}

} // namespace

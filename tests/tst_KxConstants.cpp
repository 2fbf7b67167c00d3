#include "model_KelAdmin.h"

#include <gtest/gtest.h>

TEST(KxConstants, FieldTypeNames)
{
    EXPECT_EQ(SSTRING, QStringLiteral("STRING"));
    EXPECT_EQ(SREAL, QStringLiteral("REAL"));
    EXPECT_EQ(SINTEGER, QStringLiteral("INTEGER"));
}

TEST(KxConstants, ConfigFilterKeepsDoubleExtensionWholeAndEndsInSeparator)
{
    EXPECT_EQ(EXTENSION_LSD_SEARCH, QStringLiteral("Kelvo Config (*.lsd.json);;"));
}

TEST(KxConstants, DictionaryAndHierarchyFilters)
{
    EXPECT_EQ(EXTENSION_KXDB_SEARCH, QStringLiteral("Kelvo Dictionary (*.kxdb);;"));
    EXPECT_EQ(EXTENSION_WIP_SEARCH, QStringLiteral("Kelvo Hierarchy (*.wip.json);;"));
    // Filters are meant to be concatenated into one file-dialog list.
    EXPECT_EQ(EXTENSION_LSD_SEARCH + EXTENSION_KXDB_SEARCH,
              QStringLiteral("Kelvo Config (*.lsd.json);;Kelvo Dictionary (*.kxdb);;"));
}

TEST(KxConstants, Extensions)
{
    EXPECT_EQ(EXTENSION_DAT, QStringLiteral(".dat"));
    EXPECT_EQ(EXTENSION_JSON, QStringLiteral(".json"));
    EXPECT_EQ(EXTENSION_LSD, QStringLiteral(".lsd.json"));
    EXPECT_EQ(EXTENSION_KXDB, QStringLiteral(".kxdb"));
    EXPECT_EQ(EXTENSION_TXT, QStringLiteral(".txt"));
    EXPECT_EQ(EXTENSION_WIP, QStringLiteral(".wip.json"));
}

TEST(KxConstants, EndlineIsCarriageReturnLineFeed)
{
    ASSERT_EQ(ENDLINE.size(), 2);
    EXPECT_EQ(ENDLINE.at(0), QLatin1Char('\r'));
    EXPECT_EQ(ENDLINE.at(1), QLatin1Char('\n'));
}

TEST(KxConstants, LinesWrittenWithEndlineSplitBackWithoutCarriageReturn)
{
    // The library writes ENDLINE for each #\#n token; split on ENDLINE, the
    // text gives its lines back with no carriage return left at their ends.
    const QString written = UtilStrings::returnLineBreak(QStringLiteral("first#\\#nsecond#\\#n"));
    ASSERT_EQ(written, QStringLiteral("first\r\nsecond\r\n"));
    EXPECT_EQ(written.split(ENDLINE), QStringList({QStringLiteral("first"), QStringLiteral("second"), QString()}));
}

TEST(KxConstants, Separators)
{
    EXPECT_EQ(COLONCHR, QStringLiteral(":"));
    EXPECT_EQ(COMMACHR, QStringLiteral(","));
    EXPECT_EQ(EQUALCHR, QStringLiteral("="));
    EXPECT_EQ(SEMICOLONCHR, QStringLiteral(";"));
    EXPECT_EQ(SPACECHR, QStringLiteral(" "));
    EXPECT_EQ(TABCHR, QStringLiteral("\t"));
    EXPECT_EQ(UNDERSCORE, QStringLiteral("_"));
    EXPECT_EQ(AXYES, QStringLiteral("YES"));
}

TEST(KxConstants, ModuleNamesRaisedByThisLibrary)
{
    EXPECT_EQ(EM_DataImport, QStringLiteral("DataImport"));
    EXPECT_EQ(EM_CSPro, QStringLiteral("CSPro"));
    EXPECT_EQ(EM_CSProValueSet, QStringLiteral("CSProValueSet"));
}

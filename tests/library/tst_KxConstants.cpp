#include "model_KelAdmin.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

// The header constants as the front end uses them: file-dialog filters joined
// into one list, text written with ENDLINE and split back, module names in
// the messages of the errors this library raises.

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

TEST(KxConstants, LinesWrittenWithEndlineSplitBackWithoutCarriageReturn)
{
    // The library writes ENDLINE ("\r\n" on every platform) for each #\#n
    // token; split on ENDLINE, the text gives its lines back with no carriage
    // return left at their ends.
    const QString written = UtilStrings::returnLineBreak(QStringLiteral("first#\\#nsecond#\\#n"));
    ASSERT_EQ(written, QStringLiteral("first\r\nsecond\r\n"));
    EXPECT_EQ(written.split(ENDLINE), QStringList({QStringLiteral("first"), QStringLiteral("second"), QString()}));
}

TEST(KxConstants, ErrorsRaisedByTheLibraryNameTheirModule)
{
    QString message;
    TCSProValueSet set;
    TValueSetItem entry;
    ASSERT_TRUE(kxtest::catchKxError([&] { set.setValueSetItem(5, &entry); }, nullptr, &message));
    EXPECT_TRUE(message.startsWith(QStringLiteral("Class : CSProValueSet\r\n"))) << message.toStdString();

    ASSERT_TRUE(kxtest::catchKxError([] { GetDataClassLoader(QStringLiteral("NONE")); }, nullptr, &message));
    EXPECT_TRUE(message.startsWith(QStringLiteral("Class : DataImport\r\n"))) << message.toStdString();
}

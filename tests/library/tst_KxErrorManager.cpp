#include "model_KelAdmin.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

namespace {

struct CatalogueCase
{
    const char *rowName;
    int number;
    const char *text;
};

class Catalogue : public ::testing::TestWithParam<CatalogueCase>
{
};

TEST_P(Catalogue, NumberGivesItsDefaultText)
{
    KxErrorManager e(EM_DataImport, GetParam().number);
    EXPECT_EQ(e.getMLDBMessage(), QString::fromLatin1(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(
    KxErrorManager, Catalogue,
    ::testing::Values(
        CatalogueCase{"DivByZero", 4, "Division by Zero"},
        CatalogueCase{"BadSelectionFile", 7, "Selection code not found"},
        CatalogueCase{"FileNameEmpty", 11, "File name empty"},
        CatalogueCase{"FileNotFound", 13, "File not found"},
        CatalogueCase{"FileNotLoad", 14, "Could not load from file"},
        CatalogueCase{"FileNotOpen", 15, "Could not open file"},
        CatalogueCase{"FileBusy", 16, "Cannot Save file. It may probably be busy"},
        CatalogueCase{"FileNotASCII", 17, "Incorrect file format. It must be ASCII"},
        CatalogueCase{"FileNotDelBak", 18, "Cannot Delete backup file"},
        CatalogueCase{"FileReadLine", 19, "Could not read line from file"},
        CatalogueCase{"FileInvalidHeader", 20, "Invalid header from file"},
        CatalogueCase{"FileUnknowError", 22, "Cannot Create file. Unknow error"},
        CatalogueCase{"DirNotFound", 31, "Directory not found"},
        CatalogueCase{"IncludeNotCheck", 40, "Error in check includes"},
        CatalogueCase{"IncludeNotFound", 41, "Include not found"},
        CatalogueCase{"PointerNULL", 101, "System Error. Parameter Invalid ( NULL )"},
        CatalogueCase{"FeatureNotSupported", 102, "System Error. Feature not supported"},
        CatalogueCase{"ToDouble", 103, "System Error. Problem converting to integer or real value"},
        CatalogueCase{"SerializeOut", 104, "System Error. Problem serializing out"},
        CatalogueCase{"AlreadyRegister", 105, "System Error. Already Register"},
        CatalogueCase{"RegLoaderNotInit", 106, "System Error. Register Loader not initialized"},
        CatalogueCase{"RegLoaderNotReg", 107, "System Error. Format not registered"},
        CatalogueCase{"ParentNULL", 108, "System Error. Maybe Parent NULL"},
        CatalogueCase{"SectionNameEmpty", 212, "Section name empty"},
        CatalogueCase{"SectionExistsMisspelt", 213, "Section alredy exists"},
        CatalogueCase{"ItemNotFound", 216, "Item not found"},
        CatalogueCase{"InvalidRecType", 221, "Invalid Record Type"},
        CatalogueCase{"InvalidVarType", 222, "Invalid Variable Type"},
        CatalogueCase{"InvalidVarLabel", 223, "Invalid Variable Label"},
        CatalogueCase{"InvalidNumMV", 224, "Invalid Number of Missing Values"},
        CatalogueCase{"SelectionNotFound", 231, "Selection not found"},
        CatalogueCase{"InvalidContents", 242, "Invalid contents in line"},
        CatalogueCase{"InvalidVariableInfo", 243, "Missing variable information"},
        // Numbers without a row, inside and outside 4..243.
        CatalogueCase{"Unknown1", 1, "Unknow or not set error"},
        CatalogueCase{"Unknown2", 2, "Unknow or not set error"},
        CatalogueCase{"Unknown3", 3, "Unknow or not set error"},
        CatalogueCase{"Unknown5", 5, "Unknow or not set error"},
        CatalogueCase{"Unknown211", 211, "Unknow or not set error"},
        CatalogueCase{"Unknown244", 244, "Unknow or not set error"},
        CatalogueCase{"UnknownMinus1", -1, "Unknow or not set error"}),
    [](const ::testing::TestParamInfo<CatalogueCase> &info) { return std::string(info.param.rowName); });

const QString kEnd = QStringLiteral("\r\n");

} // namespace

TEST(KxErrorManager, ConstructorsFillTheFields)
{
    KxErrorManager a(QStringLiteral("M"), 4);
    EXPECT_EQ(a.getErrorNumber(), 4);
    EXPECT_EQ(a.getSourceLine(), 0);
    EXPECT_EQ(a.getClassName(), QStringLiteral("M"));
    EXPECT_TRUE(a.getMessageText().isEmpty());

    KxErrorManager b(QStringLiteral("M"), 4, 12);
    EXPECT_EQ(b.getSourceLine(), 12);
    EXPECT_TRUE(b.getMessageText().isEmpty());

    KxErrorManager c(QStringLiteral("M"), 4, QStringLiteral("t"));
    EXPECT_EQ(c.getSourceLine(), 0);
    EXPECT_EQ(c.getMessageText(), QStringLiteral("t"));

    KxErrorManager d(QStringLiteral("M"), 4, QStringLiteral("t"), 9);
    EXPECT_EQ(d.getSourceLine(), 9);
    EXPECT_EQ(d.getMessageText(), QStringLiteral("t"));
}

TEST(KxErrorManager, OnlyTheTextFormLogsItselfOnConstruction)
{
    kxtest::MessageCollector log;
    KxErrorManager a(EM_DataImport, 107);
    KxErrorManager b(EM_DataImport, 107, 3);
    KxErrorManager d(EM_DataImport, 107, QStringLiteral("SAV"), 3);
    EXPECT_TRUE(log.messages().isEmpty());

    KxErrorManager c(EM_DataImport, 107, QStringLiteral("SAV"));
    ASSERT_EQ(log.messages().size(), 1);
    EXPECT_EQ(log.messages().at(0), c.getErrorMessage());
}

TEST(KxErrorManager, DisplayMessageBoxWritesTheMessageToTheDebugLog)
{
    KxErrorManager e(EM_CSPro, 242, 5);
    kxtest::MessageCollector log;
    e.displayMessageBox();
    ASSERT_EQ(log.messages().size(), 1);
    EXPECT_EQ(log.messages().at(0), e.getErrorMessage());
}

TEST(KxErrorManager, InitAssignsAllFourFields)
{
    KxErrorManager e(QStringLiteral("A"), 4);
    e.init(QStringLiteral("B"), 13, QStringLiteral("file.dat"), 7);
    EXPECT_EQ(e.getClassName(), QStringLiteral("B"));
    EXPECT_EQ(e.getErrorNumber(), 13);
    EXPECT_EQ(e.getMessageText(), QStringLiteral("file.dat"));
    EXPECT_EQ(e.getSourceLine(), 7);
}

TEST(KxErrorManager, FormatNotRegisteredWithTextGivesFiveLines)
{
    KxErrorManager e(EM_DataImport, 107, QStringLiteral("SAV"), 0);
    EXPECT_EQ(e.getErrorMessage(), QStringLiteral("Class : DataImport\r\n"
                                                  "Error : 107\r\n"
                                                  "\r\n"
                                                  "Message : System Error. Format not registered\r\n"
                                                  "[SAV ]"));
}

TEST(KxErrorManager, PositiveSourceLineAddsItsRow)
{
    KxErrorManager e(EM_CSPro, 13, 42);
    EXPECT_EQ(e.getErrorMessage(), QStringLiteral("Class : CSPro") + kEnd + QStringLiteral("Error : 13") + kEnd +
                                       QStringLiteral("Source Line : 42") + kEnd + kEnd +
                                       QStringLiteral("Message : File not found"));
}

TEST(KxErrorManager, ZeroOrNegativeSourceLinePrintsNoLineRow)
{
    KxErrorManager zero(EM_CSPro, 13, 0);
    KxErrorManager negative(EM_CSPro, 13, -5);
    EXPECT_FALSE(zero.getErrorMessage().contains(QStringLiteral("Source Line")));
    EXPECT_FALSE(negative.getErrorMessage().contains(QStringLiteral("Source Line")));
}

TEST(KxErrorManager, NumberTwoWithTextIsTheTextAlone)
{
    KxErrorManager e(EM_CSPro, 2, QStringLiteral("just this"), 3);
    EXPECT_EQ(e.getErrorMessage(), QStringLiteral("just this"));
}

TEST(KxErrorManager, NumberTwoWithoutTextHasTheFullLayout)
{
    KxErrorManager e(EM_CSPro, 2);
    EXPECT_EQ(e.getErrorMessage(), QStringLiteral("Class : CSPro\r\nError : 2\r\n\r\nMessage : Unknow or not set error"));
}

TEST(KxErrorManager, NumberOneWithTextEndsInTheTextAndALineBreak)
{
    KxErrorManager e(EM_CSPro, 1, QStringLiteral("detail"), 0);
    EXPECT_EQ(e.getErrorMessage(), QStringLiteral("Class : CSPro\r\nError : 1\r\n\r\nMessage : detail\r\n"));
}

TEST(KxErrorManager, NumberOneWithoutTextHasNoBracketedPart)
{
    KxErrorManager e(EM_CSPro, 1);
    EXPECT_EQ(e.getErrorMessage(), QStringLiteral("Class : CSPro\r\nError : 1\r\n\r\nMessage : Unknow or not set error"));
}

TEST(KxErrorManager, OtherNumberWithTextEndsInBracketWithoutLineBreak)
{
    KxErrorManager e(EM_CSProValueSet, 211, QString(QChar(5)), 0);
    const QString message = e.getErrorMessage();
    EXPECT_TRUE(message.endsWith(QStringLiteral("Unknow or not set error\r\n[") + QChar(5) + QStringLiteral(" ]")));
}

TEST(KxErrorManager, EmptyClassNamePrintsAsBareLabel)
{
    KxErrorManager e(QString(), 4);
    EXPECT_TRUE(e.getErrorMessage().startsWith(QStringLiteral("Class : \r\nError : 4\r\n")));
}

TEST(KxErrorManager, ThrownAsPointerAndOwnedByTheCatcher)
{
    int number = 0;
    QString text;
    EXPECT_TRUE(kxtest::catchKxError([] { throw new KxErrorManager(EM_DataImport, 106); }, &number, nullptr, &text));
    EXPECT_EQ(number, 106);
    EXPECT_TRUE(text.isEmpty());
}

TEST(MLDBGetMessage, SubstitutesArgumentsInOrder)
{
    EXPECT_EQ(MLDBGetMessage(QStringLiteral("k"), QStringLiteral("%2 and %1"), QStringLiteral("a"), QStringLiteral("b")),
              QStringLiteral("b and a"));
}

TEST(MLDBGetMessage, EmptyArgumentsRemovePlaceholders)
{
    EXPECT_EQ(MLDBGetMessage(QStringLiteral("k"), QStringLiteral("%2 and %1")), QStringLiteral(" and "));
}

TEST(MLDBGetMessage, AllSixPlaceholdersAndRepeats)
{
    EXPECT_EQ(MLDBGetMessage(QStringLiteral("k"), QStringLiteral("%1%2%3%4%5%6%1"), QStringLiteral("a"),
                             QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d"), QStringLiteral("e"),
                             QStringLiteral("f")),
              QStringLiteral("abcdefa"));
}

TEST(MLDBGetMessage, KeyIsIgnored)
{
    EXPECT_EQ(MLDBGetMessage(QStringLiteral("Some.Key"), QStringLiteral("Text %1"), QStringLiteral("x")),
              MLDBGetMessage(QStringLiteral("Other.Key"), QStringLiteral("Text %1"), QStringLiteral("x")));
}

TEST(MLDBGetHelpPage, IsAlwaysNull)
{
    EXPECT_TRUE(MLDBGetHelpPage(QStringLiteral("a"), QStringLiteral("b")).isNull());
}

TEST(KxErrorManager, GlobalsStartCleared)
{
    EXPECT_EQ(_ErrorNumber, 0);
    EXPECT_TRUE(_MsgText.isEmpty());
}

// An application translates the library's messages by defining its own
// MLDBGetMessage: the dynamic linker then binds every call to it, the
// library's own included. This program defines one that records the key and
// marks its text, and checks that every catalogue number and every lookup
// message is worded through it, with its key.
#include "model_KelAdmin.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <vector>

namespace {

std::vector<QString> &keysSeen()
{
    static std::vector<QString> keys;
    return keys;
}

} // namespace

// The application's translation layer: the key is recorded, the default text
// comes back marked, its placeholders filled as the library's own would.
QString MLDBGetMessage(QString key, QString defaultText, QString a1, QString a2, QString a3, QString a4, QString a5,
                       QString a6)
{
    keysSeen().push_back(key);
    const QString args[] = {a1, a2, a3, a4, a5, a6};
    for (int i = 0; i < 6; ++i)
        defaultText.replace(QLatin1Char('%') + QString::number(i + 1), args[i]);
    return QStringLiteral("<tr>") + defaultText + QStringLiteral("</tr>");
}

namespace {

struct CatalogueCase
{
    int number;
    const char *key;
    const char *text;
};

// The catalogue of numbers and keys, as documented; a number without a row
// gives the "unknown" entry.
const CatalogueCase Catalogue[] = {
    {4, "ErrorManager.ErrorMessage.DivByZero", "Division by Zero"},
    {7, "ErrorManager.ErrorMessage.BadSelectionFile", "Selection code not found"},
    {11, "ErrorManager.ErrorMessage.FileNameEmpty", "File name empty"},
    {13, "ErrorManager.ErrorMessage.FileNotFound", "File not found"},
    {14, "ErrorManager.ErrorMessage.FileNotLoad", "Could not load from file"},
    {15, "ErrorManager.ErrorMessage.FileNotOpen", "Could not open file"},
    {16, "ErrorManager.ErrorMessage.FileBusy", "Cannot Save file. It may probably be busy"},
    {17, "ErrorManager.ErrorMessage.FileNotASCII", "Incorrect file format. It must be ASCII"},
    {18, "ErrorManager.ErrorMessage.FileNotDelBak", "Cannot Delete backup file"},
    {19, "ErrorManager.ErrorMessage.FileReadLine", "Could not read line from file"},
    {20, "ErrorManager.ErrorMessage.FileInvalidHeader", "Invalid header from file"},
    {22, "ErrorManager.ErrorMessage.FileUnknowError", "Cannot Create file. Unknow error"},
    {31, "ErrorManager.ErrorMessage.DirNotFound", "Directory not found"},
    {40, "ErrorManager.ErrorMessage.IncludeNotCheck", "Error in check includes"},
    {41, "ErrorManager.ErrorMessage.IncludeNotFound", "Include not found"},
    {101, "ErrorManager.ErrorMessage.PointerNULL", "System Error. Parameter Invalid ( NULL )"},
    {102, "ErrorManager.ErrorMessage.FeatureNotSupported", "System Error. Feature not supported"},
    {103, "ErrorManager.ErrorMessage.ToDouble", "System Error. Problem converting to integer or real value"},
    {104, "ErrorManager.ErrorMessage.SerializeOut", "System Error. Problem serializing out"},
    {105, "ErrorManager.ErrorMessage.AlreadyRegister", "System Error. Already Register"},
    {106, "ErrorManager.ErrorMessage.RegLoaderNotInit", "System Error. Register Loader not initialized"},
    {107, "ErrorManager.ErrorMessage.RegLoaderNotReg", "System Error. Format not registered"},
    {108, "ErrorManager.ErrorMessage.ParentNULL", "System Error. Maybe Parent NULL"},
    {212, "ErrorManager.ErrorMessage.SectionNameEmpty", "Section name empty"},
    {213, "ErrorManager.ErrorMessage.SectionExists", "Section alredy exists"},
    {216, "ErrorManager.ErrorMessage.ItemNotFound", "Item not found"},
    {221, "ErrorManager.ErrorMessage.InvalidRecType", "Invalid Record Type"},
    {222, "ErrorManager.ErrorMessage.InvalidVarType", "Invalid Variable Type"},
    {223, "ErrorManager.ErrorMessage.InvalidVarLabel", "Invalid Variable Label"},
    {224, "ErrorManager.ErrorMessage.InvalidNumMV", "Invalid Number of Missing Values"},
    {231, "ErrorManager.ErrorMessage.SelectionNotFound", "Selection not found"},
    {242, "ErrorManager.ErrorMessage.InvalidContents", "Invalid contents in line"},
    {243, "ErrorManager.ErrorMessage.InvalidVariableInfo", "Missing variable information"},
    // Numbers without a row, and 211, which the library raises itself.
    {1, "ErrorManager.ErrorMessage.ErrorUnknow", "Unknow or not set error"},
    {211, "ErrorManager.ErrorMessage.ErrorUnknow", "Unknow or not set error"},
    {244, "ErrorManager.ErrorMessage.ErrorUnknow", "Unknow or not set error"},
};

class MessageTranslation : public ::testing::Test
{
protected:
    void SetUp() override { keysSeen().clear(); }
};

TEST_F(MessageTranslation, EveryCatalogueNumberIsWordedThroughTheApplicationsFunctionWithItsKey)
{
    ASSERT_EQ(std::size(Catalogue), 33u + 3u);
    for (const CatalogueCase &c : Catalogue) {
        keysSeen().clear();
        KxErrorManager error(EM_DataImport, c.number);
        EXPECT_EQ(error.getMLDBMessage(), QStringLiteral("<tr>") + QLatin1String(c.text) + QStringLiteral("</tr>"))
            << c.number;
        ASSERT_EQ(keysSeen().size(), 1u) << c.number;
        EXPECT_EQ(keysSeen().front(), QLatin1String(c.key)) << c.number;
    }
}

TEST_F(MessageTranslation, TheWholeMessageCarriesTheTranslatedLabelAndText)
{
    KxErrorManager error(EM_DataImport, 107, QStringLiteral("SAV"), 0);
    EXPECT_EQ(error.getErrorMessage(), QStringLiteral("Class : DataImport\r\nError : 107\r\n\r\n<tr>Message</tr> : "
                                                      "<tr>System Error. Format not registered</tr>\r\n[SAV ]"));
    EXPECT_EQ(keysSeen(), (std::vector<QString>{QStringLiteral("ErrorManager.ErrorMessage.Message"),
                                                QStringLiteral("ErrorManager.ErrorMessage.RegLoaderNotReg")}));
}

TEST_F(MessageTranslation, AMissingLookupFileIsWordedThroughItWithItsKey)
{
    QTemporaryDir dir;
    TKxLookup lookup;
    lookup.setFfileName(dir.filePath(QStringLiteral("absent.txt")));
    lookup.setSeparator(1);
    TKxLabelFrequencies frequencies;
    QStringList errors;
    EXPECT_FALSE(lookup.consistencyCheck(eFileChecksAndFrequencies, frequencies, errors));
    EXPECT_EQ(lookup.getMessageText(), QStringLiteral("<tr>Input data file [%1] was not found</tr>")
                                           .arg(dir.filePath(QStringLiteral("absent.txt"))));
    EXPECT_EQ(keysSeen(), std::vector<QString>{QStringLiteral("Workspace.LoadDefinition.InputDataFile")});
}

TEST_F(MessageTranslation, EveryLookupCheckMessageIsWordedThroughItWithItsKey)
{
    QTemporaryDir dir;
    // Line 3 repeats key 02, line 4 has a key of 3 characters, line 5 no tab.
    const QString path = kxtest::writeFile(dir, QStringLiteral("areas.txt"), "01\tNorth\n02\tSouth\n02\tAgain\n"
                                                                              "003\tEast\nnoseparator\n");
    TKxLookup lookup;
    lookup.setFfileName(path);
    lookup.setSeparator(1);
    lookup.setMaxMessages(2);
    TKxLabelFrequencies frequencies;
    QStringList errors;
    ASSERT_TRUE(lookup.consistencyCheck(eFileChecksAndFrequencies, frequencies, errors));
    // In file order: the duplicate key 02 (line 3), the key 003 of size 3
    // (line 4); line 5 has no separator, so it repeats the pair 003/East:
    // no separator, the key size again and a duplicate of 003. The third
    // message, the missing separator, is worded and then replaced by the cap.
    EXPECT_EQ(errors, (QStringList{QStringLiteral("3_<tr>Key [02] already exists</tr>"),
                                   QStringLiteral("4_<tr>Key [003] has a different key size [3] from the first "
                                                  "record [2]</tr>"),
                                   QStringLiteral("5_<tr>Too many error messages [3], only the first [2] will be "
                                                  "shown</tr>"),
                                   QStringLiteral("5_<tr>Key [003] has a different key size [3] from the first "
                                                  "record [2]</tr>"),
                                   QStringLiteral("5_<tr>Key [003] already exists</tr>")}));
    const std::vector<QString> expected{QStringLiteral("KxLookup.importAVL.duplicateKey"),
                                        QStringLiteral("KxLookup.importAVL.wrongKeySize"),
                                        QStringLiteral("KxLookup.splitKeyValueAVL.noSeparator"),
                                        QStringLiteral("System.Common.MaxMessages"),
                                        QStringLiteral("KxLookup.importAVL.wrongKeySize"),
                                        QStringLiteral("KxLookup.importAVL.duplicateKey")};
    EXPECT_EQ(keysSeen(), expected);
}

} // namespace

#include "KxErrorManager.h"

#include "KxConstants.h"

#include <QDebug>
#include <QMessageLogger>

int _ErrorNumber = 0;
QString _MsgText;

namespace {

struct CatalogueRow
{
    int number;
    const char *key;
    const char *text;
};

// The compiled-in catalogue. Gaps in the numbering and the misspellings are
// part of the texts the front end shows.
const CatalogueRow kCatalogue[] = {
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
};

const CatalogueRow kUnknown = {0, "ErrorManager.ErrorMessage.ErrorUnknow", "Unknow or not set error"};

const CatalogueRow &catalogueRow(int number)
{
    for (const CatalogueRow &row : kCatalogue) {
        if (row.number == number)
            return row;
    }
    return kUnknown;
}

} // namespace

KxErrorManager::KxErrorManager(QString className, int number)
{
    init(className, number, QString(), 0);
}

KxErrorManager::KxErrorManager(QString className, int number, int line)
{
    init(className, number, QString(), line);
}

KxErrorManager::KxErrorManager(QString className, int number, QString text)
{
    init(className, number, text, 0);
    displayMessageBox();
}

KxErrorManager::KxErrorManager(QString className, int number, QString text, int line)
{
    init(className, number, text, line);
}

KxErrorManager::~KxErrorManager() = default;

void KxErrorManager::init(QString className, int number, QString text, int line)
{
    this->className = className;
    errorNumber = number;
    messageText = text;
    sourceLine = line;
}

QString KxErrorManager::getMLDBMessage()
{
    const CatalogueRow &row = catalogueRow(errorNumber);
    return MLDBGetMessage(QString::fromLatin1(row.key), QString::fromLatin1(row.text));
}

QString KxErrorManager::getErrorMessage()
{
    if (!messageText.isEmpty() && errorNumber == 2)
        return messageText;

    QString message = QStringLiteral("Class : ") + className + ENDLINE;
    message += QStringLiteral("Error : ") + QString::number(errorNumber) + ENDLINE;
    if (sourceLine > 0)
        message += QStringLiteral("Source Line : ") + QString::number(sourceLine) + ENDLINE;
    message += ENDLINE;
    message += MLDBGetMessage(QStringLiteral("ErrorManager.ErrorMessage.Message"), QStringLiteral("Message"));
    message += QStringLiteral(" : ");

    if (!messageText.isEmpty() && errorNumber == 1)
        return message + messageText + ENDLINE;

    message += getMLDBMessage();
    if (!messageText.isEmpty())
        message += ENDLINE + QStringLiteral("[") + messageText + QStringLiteral(" ]");
    return message;
}

void KxErrorManager::displayMessageBox()
{
    QMessageLogger(nullptr, 0, nullptr).debug().noquote() << getErrorMessage();
}

QString MLDBGetMessage(QString /*key*/, QString defaultText, QString a1, QString a2, QString a3, QString a4,
                       QString a5, QString a6)
{
    const QString args[] = {a1, a2, a3, a4, a5, a6};
    QString result = defaultText;
    for (int i = 0; i < 6; ++i)
        result.replace(QLatin1Char('%') + QString::number(i + 1), args[i], Qt::CaseSensitive);
    return result;
}

QString MLDBGetHelpPage(QString /*key*/, QString /*defaultPage*/)
{
    return QString();
}

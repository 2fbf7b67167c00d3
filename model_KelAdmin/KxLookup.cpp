#include "KxLookup.h"

#include "KxConstants.h"
#include "KxErrorManager.h"
#include "UtilFiles.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextStream>

#include <limits>

namespace {

// Counters read from a file never wrap: they stop at the largest int.
void increment(int &counter)
{
    if (counter < std::numeric_limits<int>::max())
        ++counter;
}

// Files without a byte-order mark are read as UTF-8 whatever the locale; a
// byte-order mark (UTF-8, UTF-16, UTF-32) still selects its own encoding.
void prepareStream(QTextStream &stream)
{
    stream.setCodec("UTF-8");
    stream.setAutoDetectUnicode(true);
}

} // namespace

TKxLookup::TKxLookup() = default;

TKxLookup::~TKxLookup()
{
    closeReader();
}

QString TKxLookup::separatorText(int code)
{
    switch (code) {
    case 1:
        return TABCHR;
    case 2:
        return COMMACHR;
    case 3:
        return SEMICOLONCHR;
    case 4:
        return COLONCHR;
    default:
        return SPACECHR;
    }
}

void TKxLookup::setCurrentLine(const QString &value)
{
    currentLine = value;
    currentLineLength = value.length();
}

void TKxLookup::updateFileName(QString fileName)
{
    ffileName = fileName;
}

bool TKxLookup::consistencyCheck(econsistencyCheck mode, TKxLabelFrequencies &frequencies, QStringList &errors)
{
    consistency = mode;
    return importAVL(frequencies, errors);
}

void TKxLookup::closeReader()
{
    readerStream.reset();
    readerFile.reset();
}

void TKxLookup::nextLine(const QString &line)
{
    setCurrentLine(line);
    increment(lineNumber);
}

bool TKxLookup::openLookup()
{
    closeReader();
    if (!UtilFiles::FileExists(ffileName))
        return false;
    fileSize = QFileInfo(ffileName).size();
    currentLineLength = 0;
    endOfFile = false;
    // A fresh walk with readLookup() counts lines from the start again.
    lineNumber = 0;
    return true;
}

bool TKxLookup::readLookup()
{
    if (endOfFile)
        return false;
    if (!readerStream) {
        readerFile.reset(new QFile(ffileName));
        if (!readerFile->open(QIODevice::ReadOnly | QIODevice::Text)) {
            readerFile.reset();
            endOfFile = true;
            return false;
        }
        readerStream.reset(new QTextStream(readerFile.get()));
        prepareStream(*readerStream);
    }
    if (readerStream->atEnd()) {
        endOfFile = true;
        closeReader();
        return false;
    }
    nextLine(readerStream->readLine());
    return true;
}

bool TKxLookup::importAVL(TKxLabelFrequencies &frequencies, QStringList &errors)
{
    if (!openLookup()) {
        messageText = MLDBGetMessage(QStringLiteral("Workspace.LoadDefinition.InputDataFile"),
                                     QStringLiteral("Input data file [%1] was not found"), ffileName);
        errorFlag = 1;
        return false;
    }

    lookupMap.clear();
    lineNumber = 0;
    currentLine.clear();

    QFile file(ffileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return true; // exists but unreadable: nothing to read, like an empty file
    QTextStream stream(&file);
    prepareStream(stream);

    const bool fileChecks = fileChecksOn();
    const bool labelCount = labelCountOn();
    int referenceKeySize = 0;

    while (!stream.atEnd()) {
        nextLine(stream.readLine());
        splitKeyValueAVL(errors);
        const QString key = currentKey;
        const QString keyLabel = currentLabel;

        if (lineNumber == 1) {
            referenceKeySize = key.length();
        } else if (fileChecks && key.length() != referenceKeySize) {
            issueErrorMessage(errors,
                              MLDBGetMessage(QStringLiteral("KxLookup.importAVL.wrongKeySize"),
                                             QStringLiteral("Key [%1] has a different key size [%2] from the first record [%3]"),
                                             key, QString::number(key.length()), QString::number(referenceKeySize)));
        }

        // One search finds both a duplicate and the place to insert at.
        const auto place = lookupMap.lowerBound(key);
        if (place != lookupMap.end() && place.key() == key) {
            // The first occurrence wins; the repeated line counts for nothing.
            if (fileChecks)
                issueErrorMessage(errors, MLDBGetMessage(QStringLiteral("KxLookup.importAVL.duplicateKey"),
                                                         QStringLiteral("Key [%1] already exists"), key));
            continue;
        }
        lookupMap.insert(place, key, keyLabel);

        if (labelCount) {
            // Every entered line raises the count of its label.
            int &count = frequencies[keyLabel];
            increment(count);
        }
    }

    file.close();
    return true;
}

void TKxLookup::splitKeyValueAVL(QStringList &errors)
{
    const QString separatorChar = separatorText(separator);
    const int at = currentLine.indexOf(separatorChar, 0, Qt::CaseSensitive);
    if (at >= 1) {
        currentKey = currentLine.left(at);
        currentLabel = currentLine.mid(at + 1);
        // Several blanks after the key count as one separator, for code 0 only.
        if (separator == 0) {
            static const QRegularExpression leadingSpace(QStringLiteral("^\\s*"));
            currentLabel.remove(leadingSpace);
        }
        return;
    }
    // No separator, or nothing before it: the previous key and label stay.
    if (fileChecksOn())
        issueErrorMessage(errors, MLDBGetMessage(QStringLiteral("KxLookup.splitKeyValueAVL.noSeparator"),
                                                 QStringLiteral("Separator [%1] does not exist"), separatorChar));
}

void TKxLookup::issueErrorMessage(QStringList &errors, QString message)
{
    const int before = messageCount;
    increment(messageCount);
    if (before >= maxMessages && !capped) {
        capped = true;
        message = MLDBGetMessage(QStringLiteral("System.Common.MaxMessages"),
                                 QStringLiteral("Too many error messages [%1], only the first [%2] will be shown"),
                                 QString::number(messageCount), QString::number(maxMessages));
    }
    errors.append(QString::number(lineNumber) + UNDERSCORE + message);
}

ReportLookup::ReportLookup()
    : titleReport(QCoreApplication::translate("ReportLookup", "Kelvo Lookup Checking"))
    , idLabel(QCoreApplication::translate("ReportLookup", "Lookup Identification"))
    , labelLabel(QCoreApplication::translate("ReportLookup", "Lookup Label"))
    , dataFileLabel(QCoreApplication::translate("ReportLookup", "Lookup File"))
{
}

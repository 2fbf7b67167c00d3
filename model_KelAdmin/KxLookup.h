#ifndef KXLOOKUP_H
#define KXLOOKUP_H

#include "model_kelAdmin_export.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <deque>
#include <memory>
#include <vector>

class QFile;
class QTextStream;

/*! Which checks TKxLookup::importAVL makes, read as two bits: 2 turns on
 * the file checks (key size, duplicate key, missing separator), 1 turns on
 * the label frequency count. */
enum econsistencyCheck {
    eNoCheck = 0,
    eLabelFrequencies = 1,
    eFileChecks = 2,
    eFileChecksAndFrequencies = 3
};

//! Label text to the number of entered lines that carry it.
typedef QMap<QString, int> TKxLabelFrequencies;

/*! \brief A lookup file: one key and label a line, with a chosen separator.
 *
 * Separator codes: 1 tab, 2 comma, 3 semicolon, 4 colon; 0 and any other
 * value mean the blank. Problems found while reading become numbered lines
 * ("<line>_<message>") of the caller's message list, never exceptions.
 */
class MODEL_KELADMIN_EXPORT TKxLookup
{
public:
    TKxLookup();
    ~TKxLookup();
    TKxLookup(const TKxLookup &) = delete;
    TKxLookup &operator=(const TKxLookup &) = delete;

    //! Stores \a mode and reads the file with importAVL().
    bool consistencyCheck(econsistencyCheck mode, TKxLabelFrequencies &frequencies, QStringList &errors);
    /*! Reads the whole file into the lookup map. False (with the error flag
     * and the message text set) when the file does not exist, else true. */
    bool importAVL(TKxLabelFrequencies &frequencies, QStringList &errors);
    //! False when the file does not exist; else prepares readLookup() from the first line.
    bool openLookup();
    //! Reads the next line into the current line; false at the end of the file.
    bool readLookup();
    //! Splits the current line into the current key and label.
    void splitKeyValueAVL(QStringList &errors);
    //! Appends "<line number>_<message>", or the cap message once the maximum is reached.
    void issueErrorMessage(QStringList &errors, QString message);
    //! Replaces the file name.
    void updateFileName(QString fileName);

    //! The identification of the lookup.
    //!@{
    QString getId() const { return id; }
    void setId(const QString &value) { id = value; }
    //!@}
    //! The label of the lookup.
    //!@{
    QString getLabel() const { return label; }
    void setLabel(const QString &value) { label = value; }
    //!@}
    //! 1 once a read found the file missing, else 0.
    //!@{
    int getErrorFlag() const { return errorFlag; }
    void setErrorFlag(int value) { errorFlag = value; }
    //!@}
    //! The separator code: 1 tab, 2 comma, 3 semicolon, 4 colon; anything else the blank.
    //!@{
    int getSeparator() const { return separator; }
    void setSeparator(int value) { separator = value; }
    //!@}
    //! The number of messages after which the cap message is issued instead of the next one.
    //!@{
    int getMaxMessages() const { return maxMessages; }
    void setMaxMessages(int value) { maxMessages = value; }
    //!@}
    //! The keys and labels read; the first line of a key wins.
    const QMap<QString, QString> &getLookupMap() const { return lookupMap; }
    //! True once readLookup() reached the end of the file.
    bool getEndOfFile() const { return endOfFile; }
    //! The key of the current line, as splitKeyValueAVL() or the last import left it.
    //!@{
    QString getCurrentKey() const { return currentKey; }
    void setCurrentKey(const QString &value) { currentKey = value; }
    //!@}
    //! The label of the current line, as splitKeyValueAVL() or the last import left it.
    //!@{
    QString getCurrentLabel() const { return currentLabel; }
    void setCurrentLabel(const QString &value) { currentLabel = value; }
    //!@}
    //! Which checks importAVL() makes.
    //!@{
    econsistencyCheck getConsistency() const { return consistency; }
    void setConsistency(econsistencyCheck value) { consistency = value; }
    //!@}
    //! The path of the lookup file.
    //!@{
    QString getFfileName() const { return ffileName; }
    void setFfileName(const QString &value) { ffileName = value; }
    //!@}
    //! The number of lines read so far.
    //!@{
    int getLineNumber() const { return lineNumber; }
    void setLineNumber(int value) { lineNumber = value; }
    //!@}
    //! The number of messages issued so far.
    //!@{
    int getMessageCount() const { return messageCount; }
    void setMessageCount(int value) { messageCount = value; }
    //!@}
    //! True once the cap message has been issued.
    //!@{
    bool getCapped() const { return capped; }
    void setCapped(bool value) { capped = value; }
    //!@}
    //! The line being read.
    QString getCurrentLine() const { return currentLine; }
    //! Also sets the current line length.
    void setCurrentLine(const QString &value);
    //! The size of the file in bytes, taken by openLookup().
    qint64 getFileSize() const { return fileSize; }
    //! The length of the current line in characters.
    int getCurrentLineLength() const { return currentLineLength; }
    //! The missing-file message of the last importAVL().
    QString getMessageText() const { return messageText; }

    //! The separator character that \a code stands for.
    static QString separatorText(int code);
    //! The separator character that \a code stands for, as one character.
    static QChar separatorChar(int code);

private:
    bool fileChecksOn() const { return (static_cast<int>(consistency) & eFileChecks) != 0; }
    bool labelCountOn() const { return (static_cast<int>(consistency) & eLabelFrequencies) != 0; }
    void closeReader();
    void nextLine(const QString &line);

    // The reading's own types, defined in KxLookupImport_p.h.
    class LineReader;
    struct LookupPair;
    struct PendingMessage;
    enum class KeyOrder;
    // Splits \a line at the separator; false (key and label untouched) when there is none before it.
    bool splitLine(QStringView line, QString &key, QString &label) const;
    // Reads every line into pairs.
    KeyOrder readPairs(LineReader &reader, std::deque<LookupPair> &pairs, std::vector<PendingMessage> &pending);
    void enterPairs(std::deque<LookupPair> &pairs, bool noDuplicates, TKxLabelFrequencies &frequencies,
                    std::vector<PendingMessage> &pending);
    void issuePending(QStringList &errors, std::vector<PendingMessage> &pending);

    QString id;
    QString label;
    int errorFlag = 0;
    int separator = 0;
    int maxMessages = 0;
    QMap<QString, QString> lookupMap;
    bool endOfFile = false;
    QString currentKey;
    QString currentLabel;
    econsistencyCheck consistency = eNoCheck;
    QString ffileName;
    int lineNumber = 0;
    int messageCount = 0;
    bool capped = false;
    QString currentLine;
    qint64 fileSize = 0;
    int currentLineLength = 0;
    QString messageText;
    // The stream that readLookup() walks, opened at its first call.
    std::unique_ptr<QFile> readerFile;
    std::unique_ptr<QTextStream> readerStream;
};

/*! \brief The result of a lookup check, as shown in the report. */
class MODEL_KELADMIN_EXPORT ReportLookup
{
public:
    ReportLookup();

    //! The report's title, "Kelvo Lookup Checking" (translated).
    QString getTitleReport() const { return titleReport; }
    //! The caption of the identification, "Lookup Identification" (translated).
    QString getIdLabel() const { return idLabel; }
    //! The caption of the label, "Lookup Label" (translated).
    QString getLabelLabel() const { return labelLabel; }
    //! The caption of the file, "Lookup File" (translated).
    QString getDataFileLabel() const { return dataFileLabel; }

    //! The lookup's identification shown in the report.
    //!@{
    QString getIdValue() const { return idValue; }
    void setIdValue(const QString &value) { idValue = value; }
    //!@}
    //! The lookup's label shown in the report.
    //!@{
    QString getLabelValue() const { return labelValue; }
    void setLabelValue(const QString &value) { labelValue = value; }
    //!@}
    //! The lookup file shown in the report.
    //!@{
    QString getDataFileValue() const { return dataFileValue; }
    void setDataFileValue(const QString &value) { dataFileValue = value; }
    //!@}
    //! The label frequencies: each label with the number of lines that carry it.
    TKxLabelFrequencies &getFrequenciesTree() { return frequenciesTree; }
    //! The label frequencies, read only.
    const TKxLabelFrequencies &getFrequenciesTree() const { return frequenciesTree; }
    //! Replaces the label frequencies.
    void setFrequenciesTree(const TKxLabelFrequencies &value) { frequenciesTree = value; }
    //! The message list that importAVL() filled; not owned.
    QStringList *getErrorMessages() const { return errorMessages; }
    //! Points the report at the message list that importAVL() filled; not owned.
    void setErrorMessages(QStringList *value) { errorMessages = value; }
    //! The checks the report is about.
    //!@{
    econsistencyCheck getConsistency() const { return consistency; }
    void setConsistency(econsistencyCheck value) { consistency = value; }
    //!@}

private:
    QString titleReport;
    QString idLabel;
    QString labelLabel;
    QString dataFileLabel;
    QString idValue;
    QString labelValue;
    QString dataFileValue;
    TKxLabelFrequencies frequenciesTree;
    QStringList *errorMessages = nullptr;
    econsistencyCheck consistency = eNoCheck;
};

#endif // KXLOOKUP_H

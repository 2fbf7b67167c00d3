#include "model_KelAdmin.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>
#include <random>

using kxtest::writeFile;

namespace {

typedef QMap<QString, QString> KeyMap;

// One lookup read from \a bytes with the given separator code, mode and cap.
struct LookupRun
{
    QTemporaryDir dir;
    TKxLookup lookup;
    TKxLabelFrequencies frequencies;
    QStringList errors;
    bool result = false;

    LookupRun(const QByteArray &bytes, int separator, econsistencyCheck mode, int maxMessages = 100)
    {
        lookup.setFfileName(writeFile(dir, QStringLiteral("lookup.txt"), bytes));
        lookup.setSeparator(separator);
        lookup.setMaxMessages(maxMessages);
        result = lookup.consistencyCheck(mode, frequencies, errors);
    }
    KeyMap map() const { return lookup.getLookupMap(); }
};

QString sizeMessage(int line, const QString &key, int size, int reference)
{
    return QStringLiteral("%1_Key [%2] has a different key size [%3] from the first record [%4]")
        .arg(line)
        .arg(key)
        .arg(size)
        .arg(reference);
}

QString duplicateMessage(int line, const QString &key)
{
    return QStringLiteral("%1_Key [%2] already exists").arg(line).arg(key);
}

QString separatorMessage(int line, const QString &separator)
{
    return QStringLiteral("%1_Separator [%2] does not exist").arg(line).arg(separator);
}

QString capMessage(int line, int count, int maximum)
{
    return QStringLiteral("%1_Too many error messages [%2], only the first [%3] will be shown")
        .arg(line)
        .arg(count)
        .arg(maximum);
}

// Lines "<key>,<label>" of a comma-separated file, each ended by \a end.
QByteArray commaLines(const QList<QPair<QString, QString>> &pairs, const QByteArray &end = "\n")
{
    QByteArray out;
    for (const auto &pair : pairs)
        out += pair.first.toUtf8() + ',' + pair.second.toUtf8() + end;
    return out;
}

// A comma-separated file that mixes every message kind (checks on):
//  1 01,A        reference key size 2
//  2 003,B       key size
//  3 01,C        duplicate of line 1
//  4 NoComma     no separator; the pair of line 3 (01) repeats: duplicate
//  5 003,D       key size, then duplicate of line 2
//  6 0004,E      key size
//  7 ,F          no separator; the pair of line 6 (0004) repeats: key size, duplicate
//  8 02,G        nothing
const QByteArray MixedMessagesFile("01,A\n003,B\n01,C\nNoComma\n003,D\n0004,E\n,F\n02,G\n");

// The messages of MixedMessagesFile in file order, and per line in the order
// separator, key size, duplicate.
QStringList mixedMessages()
{
    return {sizeMessage(2, QStringLiteral("003"), 3, 2),
            duplicateMessage(3, QStringLiteral("01")),
            separatorMessage(4, QStringLiteral(",")),
            duplicateMessage(4, QStringLiteral("01")),
            sizeMessage(5, QStringLiteral("003"), 3, 2),
            duplicateMessage(5, QStringLiteral("003")),
            sizeMessage(6, QStringLiteral("0004"), 4, 2),
            separatorMessage(7, QStringLiteral(",")),
            sizeMessage(7, QStringLiteral("0004"), 4, 2),
            duplicateMessage(7, QStringLiteral("0004"))};
}

} // namespace

// ---- Reading and the missing file ----------------------------------------

TEST(TKxLookupImport, EmptyFileGivesEmptyMapAndTrue)
{
    LookupRun run("", 0, eFileChecksAndFrequencies);
    EXPECT_TRUE(run.result);
    EXPECT_TRUE(run.map().isEmpty());
    EXPECT_TRUE(run.errors.isEmpty());
    EXPECT_TRUE(run.frequencies.isEmpty());
    EXPECT_EQ(run.lookup.getErrorFlag(), 0);
}

TEST(TKxLookupImport, MissingFileGivesFalseErrorFlagAndMessageText)
{
    QTemporaryDir dir;
    const QString missing = dir.filePath(QStringLiteral("none.txt"));
    TKxLookup lookup;
    lookup.updateFileName(missing);
    TKxLabelFrequencies frequencies;
    QStringList errors;
    EXPECT_FALSE(lookup.importAVL(frequencies, errors));
    EXPECT_EQ(lookup.getErrorFlag(), 1);
    EXPECT_EQ(lookup.getMessageText(), QStringLiteral("Input data file [") + missing + QStringLiteral("] was not found"));
    EXPECT_TRUE(errors.isEmpty());
    EXPECT_TRUE(lookup.getLookupMap().isEmpty());
}

TEST(TKxLookupImport, AFolderIsNotALookupFile)
{
    QTemporaryDir dir;
    TKxLookup lookup;
    lookup.setFfileName(dir.path());
    TKxLabelFrequencies frequencies;
    QStringList errors;
    EXPECT_FALSE(lookup.importAVL(frequencies, errors));
    EXPECT_EQ(lookup.getErrorFlag(), 1);
}

TEST(TKxLookupImport, FileThatCannotBeReadIsReadAsAnEmptyFile)
{
    QTemporaryDir dir;
    const QString path = kxtest::unreadableFile(dir);
    if (path.isEmpty())
        GTEST_SKIP() << "no file here that this user cannot read";
    TKxLookup lookup;
    lookup.setFfileName(path);
    TKxLabelFrequencies frequencies;
    QStringList errors;
    EXPECT_TRUE(lookup.consistencyCheck(eFileChecksAndFrequencies, frequencies, errors));
    EXPECT_TRUE(lookup.getLookupMap().isEmpty());
    EXPECT_TRUE(errors.isEmpty());
    EXPECT_TRUE(frequencies.isEmpty());
    EXPECT_EQ(lookup.getErrorFlag(), 0);

    // The file exists, so it opens for a walk, which ends at once.
    ASSERT_TRUE(lookup.openLookup());
    EXPECT_FALSE(lookup.readLookup());
    EXPECT_TRUE(lookup.getEndOfFile());
    EXPECT_EQ(lookup.getLineNumber(), 0);
}

TEST(TKxLookupImport, ReadsPairsInKeyOrder)
{
    LookupRun run("02 South\n01 North\n03 East\n", 0, eNoCheck);
    EXPECT_TRUE(run.result);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QStringLiteral("North")},
                                 {QStringLiteral("02"), QStringLiteral("South")},
                                 {QStringLiteral("03"), QStringLiteral("East")}}));
    EXPECT_EQ(run.lookup.getLineNumber(), 3);
}

TEST(TKxLookupImport, CarriageReturnLineFeedLeavesNoTrailingCarriageReturn)
{
    LookupRun run("01 North\r\n02 South\r\n", 0, eNoCheck);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QStringLiteral("North")},
                                 {QStringLiteral("02"), QStringLiteral("South")}}));
}

TEST(TKxLookupImport, Utf8ByteOrderMarkIsDetectedAndNotPartOfTheKey)
{
    LookupRun run(QByteArray("\xEF\xBB\xBF") + QByteArray("01 Z\xC3\xBCrich\n02 S\xC3\xA3o Paulo\n"), 0, eFileChecks);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QString::fromUtf8("Z\xC3\xBCrich")},
                                 {QStringLiteral("02"), QString::fromUtf8("S\xC3\xA3o Paulo")}}));
    EXPECT_TRUE(run.errors.isEmpty());
}

TEST(TKxLookupImport, FileWithoutByteOrderMarkIsReadAsUtf8)
{
    LookupRun run("01 Z\xC3\xBCrich\n", 0, eNoCheck);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QString::fromUtf8("Z\xC3\xBCrich")}}));
}

TEST(TKxLookupImport, LastLineWithoutLineEndIsRead)
{
    LookupRun run("01 North\n02 South", 0, eNoCheck);
    EXPECT_EQ(run.map().value(QStringLiteral("02")), QStringLiteral("South"));
    EXPECT_EQ(run.lookup.getLineNumber(), 2);
}

TEST(TKxLookupImport, Utf16ByteOrderMarkIsDetected)
{
    const QString text = QString::fromUtf8("01 Z\xC3\xBCrich\n");
    QByteArray bytes("\xFF\xFE", 2);
    bytes.append(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    LookupRun run(bytes, 0, eNoCheck);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QString::fromUtf8("Z\xC3\xBCrich")}}));
}

TEST(TKxLookupImport, MapIsEmptiedAtEachImport)
{
    LookupRun run("01 North\n", 0, eNoCheck);
    run.lookup.setFfileName(writeFile(run.dir, QStringLiteral("second.txt"), "09 West\n"));
    EXPECT_TRUE(run.lookup.importAVL(run.frequencies, run.errors));
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("09"), QStringLiteral("West")}}));
    EXPECT_EQ(run.lookup.getLineNumber(), 1);
}

TEST(TKxLookupImport, ConsistencyCheckStoresTheMode)
{
    LookupRun run("01 North\n", 0, eLabelFrequencies);
    EXPECT_EQ(run.lookup.getConsistency(), eLabelFrequencies);
}

// ---- Separators -----------------------------------------------------------

TEST(TKxLookupSeparator, CodesMapToTabCommaSemicolonColonAndBlank)
{
    EXPECT_EQ(TKxLookup::separatorText(0), QStringLiteral(" "));
    EXPECT_EQ(TKxLookup::separatorText(1), QStringLiteral("\t"));
    EXPECT_EQ(TKxLookup::separatorText(2), QStringLiteral(","));
    EXPECT_EQ(TKxLookup::separatorText(3), QStringLiteral(";"));
    EXPECT_EQ(TKxLookup::separatorText(4), QStringLiteral(":"));
    EXPECT_EQ(TKxLookup::separatorText(5), QStringLiteral(" "));
    EXPECT_EQ(TKxLookup::separatorText(-1), QStringLiteral(" "));
}

TEST(TKxLookupSeparator, EachCodeSplitsAtItsCharacter)
{
    struct Row
    {
        int code;
        QByteArray line;
    };
    const Row rows[] = {{1, "01\tNorth\n"}, {2, "01,North\n"}, {3, "01;North\n"}, {4, "01:North\n"}, {0, "01 North\n"}};
    for (const Row &row : rows) {
        LookupRun run(row.line, row.code, eFileChecks);
        EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QStringLiteral("North")}})) << "code " << row.code;
        EXPECT_TRUE(run.errors.isEmpty()) << "code " << row.code;
    }
}

TEST(TKxLookupSeparator, BlankCodeZeroTreatsSeveralBlanksAsOne)
{
    LookupRun run("01   North\n02 \t South Coast\n", 0, eNoCheck);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QStringLiteral("North")},
                                 {QStringLiteral("02"), QStringLiteral("South Coast")}}));
}

TEST(TKxLookupSeparator, CodeOutsideZeroToFourSplitsAtBlankButKeepsLabelAsItStands)
{
    LookupRun run("01   North\n", 9, eNoCheck);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QStringLiteral("  North")}}));
}

TEST(TKxLookupSeparator, OtherCodesKeepBlanksAfterTheSeparator)
{
    LookupRun run("01,  North\n", 2, eNoCheck);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QStringLiteral("  North")}}));
}

TEST(TKxLookupSeparator, OnlyTheFirstSeparatorSplits)
{
    LookupRun run("01,North,Coast\n", 2, eFileChecks);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QStringLiteral("North,Coast")}}));
}

TEST(TKxLookupSeparator, EmptyLabelAfterSeparatorIsKept)
{
    LookupRun run("01;\n", 3, eFileChecks);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QString()}}));
    EXPECT_TRUE(run.errors.isEmpty());
}

// ---- Missing separator ----------------------------------------------------

TEST(TKxLookupMissingSeparator, WithChecksOffThePreviousPairRepeatsAndIsDroppedSilently)
{
    LookupRun run("01 North\nNoSeparatorHere\n02 South\n", 0, eNoCheck);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QStringLiteral("North")},
                                 {QStringLiteral("02"), QStringLiteral("South")}}));
    EXPECT_TRUE(run.errors.isEmpty());
}

TEST(TKxLookupMissingSeparator, WithChecksOnItIsReportedThenTheRepeatIsADuplicate)
{
    LookupRun run("01 North\nNoSeparatorHere\n02 South\n", 0, eFileChecks);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QStringLiteral("North")},
                                 {QStringLiteral("02"), QStringLiteral("South")}}));
    EXPECT_EQ(run.errors, QStringList({QStringLiteral("2_Separator [ ] does not exist"),
                                       QStringLiteral("2_Key [01] already exists")}));
}

TEST(TKxLookupMissingSeparator, SeparatorAsFirstCharacterCountsAsMissing)
{
    LookupRun run("01,North\n,South\n", 2, eFileChecks);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QStringLiteral("North")}}));
    EXPECT_EQ(run.errors, QStringList({QStringLiteral("2_Separator [,] does not exist"),
                                       QStringLiteral("2_Key [01] already exists")}));
}

TEST(TKxLookupMissingSeparator, MessageNamesTheChosenSeparator)
{
    LookupRun run("01\tNorth\n02 South\n", 1, eFileChecks);
    ASSERT_FALSE(run.errors.isEmpty());
    EXPECT_EQ(run.errors.first(), QStringLiteral("2_Separator [\t] does not exist"));
}

// ---- Key size and duplicate keys -----------------------------------------

TEST(TKxLookupChecks, KeyOfAnotherSizeIsReportedAndStillEntered)
{
    LookupRun run("01 North\n02 South\n003 East\n", 0, eFileChecks);
    EXPECT_EQ(run.errors, QStringList({sizeMessage(3, QStringLiteral("003"), 3, 2)}));
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("003"), QStringLiteral("East")},
                                 {QStringLiteral("01"), QStringLiteral("North")},
                                 {QStringLiteral("02"), QStringLiteral("South")}}));
}

TEST(TKxLookupChecks, FirstLineSetsTheReferenceKeySize)
{
    LookupRun run("0001 A\n02 B\n0003 C\n", 0, eFileChecks);
    EXPECT_EQ(run.errors, QStringList({sizeMessage(2, QStringLiteral("02"), 2, 4)}));
}

TEST(TKxLookupChecks, KeySizesAreNotCheckedWithChecksOff)
{
    LookupRun run("01 North\n02 South\n003 East\n", 0, eLabelFrequencies);
    EXPECT_TRUE(run.errors.isEmpty());
    EXPECT_EQ(run.map().size(), 3);
}

TEST(TKxLookupChecks, RepeatedKeyKeepsTheFirstLabelAndIsReported)
{
    LookupRun run("01 North\n02 South\n01 Elsewhere\n", 0, eFileChecks);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QStringLiteral("North")},
                                 {QStringLiteral("02"), QStringLiteral("South")}}));
    EXPECT_EQ(run.errors, QStringList({QStringLiteral("3_Key [01] already exists")}));
}

TEST(TKxLookupChecks, RepeatedKeyWithChecksOffKeepsTheFirstLabelSilently)
{
    LookupRun run("01 North\n01 Elsewhere\n", 0, eNoCheck);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QStringLiteral("North")}}));
    EXPECT_TRUE(run.errors.isEmpty());
}

TEST(TKxLookupChecks, KeysAreCaseSensitive)
{
    LookupRun run("ab x\nAB y\n", 0, eFileChecks);
    EXPECT_EQ(run.map().size(), 2);
    EXPECT_TRUE(run.errors.isEmpty());
}

TEST(TKxLookupChecks, EachMessageStartsWithItsLineNumberAndUnderscore)
{
    LookupRun run("01 a\n02 b\n03 c\n04 d\n5 e\n06 f\n01 g\n", 0, eFileChecks);
    EXPECT_EQ(run.errors, QStringList({sizeMessage(5, QStringLiteral("5"), 1, 2),
                                       QStringLiteral("7_Key [01] already exists")}));
    EXPECT_EQ(run.lookup.getMessageCount(), 2);
}

// ---- The message cap ------------------------------------------------------

TEST(TKxLookupCap, WithMaximumZeroTheFirstMessageIsReplacedByTheCap)
{
    LookupRun run("01 a\n02 b\n003 c\n0004 d\n", 0, eFileChecks, 0);
    EXPECT_EQ(run.errors,
              QStringList({QStringLiteral("3_Too many error messages [1], only the first [0] will be shown"),
                           sizeMessage(4, QStringLiteral("0004"), 4, 2)}));
    EXPECT_TRUE(run.lookup.getCapped());
}

TEST(TKxLookupCap, WithMaximumTwoTheThirdMessageIsTheCapAndLaterOnesFollow)
{
    LookupRun run("01 a\n003 b\n0004 c\n00005 d\n000006 e\n", 0, eFileChecks, 2);
    EXPECT_EQ(run.errors,
              QStringList({sizeMessage(2, QStringLiteral("003"), 3, 2), sizeMessage(3, QStringLiteral("0004"), 4, 2),
                           QStringLiteral("4_Too many error messages [3], only the first [2] will be shown"),
                           sizeMessage(5, QStringLiteral("000006"), 6, 2)}));
    EXPECT_EQ(run.lookup.getMessageCount(), 4);
}

TEST(TKxLookupCap, CapIsIssuedOnceOnly)
{
    TKxLookup lookup;
    lookup.setMaxMessages(1);
    lookup.setLineNumber(7);
    QStringList errors;
    lookup.issueErrorMessage(errors, QStringLiteral("first"));
    lookup.issueErrorMessage(errors, QStringLiteral("second"));
    lookup.issueErrorMessage(errors, QStringLiteral("third"));
    EXPECT_EQ(errors, QStringList({QStringLiteral("7_first"),
                                   QStringLiteral("7_Too many error messages [2], only the first [1] will be shown"),
                                   QStringLiteral("7_third")}));
}

// ---- Label frequencies ----------------------------------------------------

TEST(TKxLookupFrequencies, EachRepeatRaisesTheCount)
{
    LookupRun run("01 North\n02 South\n03 North\n04 North\n", 0, eLabelFrequencies);
    EXPECT_EQ(run.frequencies, (TKxLabelFrequencies{{QStringLiteral("North"), 3}, {QStringLiteral("South"), 1}}));
    EXPECT_TRUE(run.errors.isEmpty());
}

TEST(TKxLookupFrequencies, CountedWithBothBitsAndNotWithChecksOnly)
{
    const QByteArray file("01 North\n02 North\n003 West\n");
    LookupRun both(file, 0, eFileChecksAndFrequencies);
    EXPECT_EQ(both.frequencies, (TKxLabelFrequencies{{QStringLiteral("North"), 2}, {QStringLiteral("West"), 1}}));
    EXPECT_EQ(both.errors.size(), 1);

    LookupRun checksOnly(file, 0, eFileChecks);
    EXPECT_TRUE(checksOnly.frequencies.isEmpty());
    EXPECT_EQ(checksOnly.errors.size(), 1);

    LookupRun neither(file, 0, eNoCheck);
    EXPECT_TRUE(neither.frequencies.isEmpty());
    EXPECT_TRUE(neither.errors.isEmpty());
}

TEST(TKxLookupFrequencies, EmptyLabelsAreCountedTogether)
{
    // "01 " and "02 " split at their blank into a key and an empty label.
    LookupRun run("01 \n02 \n03 North\n", 0, eLabelFrequencies);
    EXPECT_EQ(run.frequencies, (TKxLabelFrequencies{{QString(), 2}, {QStringLiteral("North"), 1}}));
}

TEST(TKxLookupFrequencies, DroppedDuplicateKeyLineIsNotCounted)
{
    LookupRun run("01 North\n01 North\n", 0, eLabelFrequencies);
    EXPECT_EQ(run.frequencies, (TKxLabelFrequencies{{QStringLiteral("North"), 1}}));
}

TEST(TKxLookupFrequencies, CountsAddToTheCallersMap)
{
    QTemporaryDir dir;
    TKxLookup lookup;
    lookup.setFfileName(writeFile(dir, QStringLiteral("l.txt"), "01 North\n"));
    TKxLabelFrequencies frequencies{{QStringLiteral("North"), 5}};
    QStringList errors;
    EXPECT_TRUE(lookup.consistencyCheck(eLabelFrequencies, frequencies, errors));
    EXPECT_EQ(frequencies.value(QStringLiteral("North")), 6);
}

// ---- Walking the file line by line ---------------------------------------

TEST(TKxLookupRead, OpenLookupIsFalseForAMissingFile)
{
    QTemporaryDir dir;
    TKxLookup lookup;
    lookup.setFfileName(dir.filePath(QStringLiteral("none.txt")));
    EXPECT_FALSE(lookup.openLookup());
}

TEST(TKxLookupRead, OpenLookupRecordsTheSizeAndReadLookupWalksTheLines)
{
    QTemporaryDir dir;
    TKxLookup lookup;
    lookup.setFfileName(writeFile(dir, QStringLiteral("l.txt"), "01 North\r\n2 S\r\n"));
    ASSERT_TRUE(lookup.openLookup());
    EXPECT_EQ(lookup.getFileSize(), 15);
    EXPECT_EQ(lookup.getCurrentLineLength(), 0);
    EXPECT_FALSE(lookup.getEndOfFile());

    ASSERT_TRUE(lookup.readLookup());
    EXPECT_EQ(lookup.getCurrentLine(), QStringLiteral("01 North"));
    EXPECT_EQ(lookup.getCurrentLineLength(), 8);
    EXPECT_EQ(lookup.getLineNumber(), 1);
    ASSERT_TRUE(lookup.readLookup());
    EXPECT_EQ(lookup.getCurrentLine(), QStringLiteral("2 S"));
    EXPECT_EQ(lookup.getLineNumber(), 2);
    EXPECT_FALSE(lookup.readLookup());
    EXPECT_TRUE(lookup.getEndOfFile());
    EXPECT_FALSE(lookup.readLookup());

    // Opening again starts from the first line.
    ASSERT_TRUE(lookup.openLookup());
    ASSERT_TRUE(lookup.readLookup());
    EXPECT_EQ(lookup.getCurrentLine(), QStringLiteral("01 North"));
    EXPECT_EQ(lookup.getLineNumber(), 1);
}

TEST(TKxLookupRead, SplitKeyValueWorksOnTheCurrentLine)
{
    TKxLookup lookup;
    lookup.setSeparator(4);
    QStringList errors;
    lookup.setCurrentLine(QStringLiteral("K1:Label: with colon"));
    lookup.splitKeyValueAVL(errors);
    EXPECT_EQ(lookup.getCurrentKey(), QStringLiteral("K1"));
    EXPECT_EQ(lookup.getCurrentLabel(), QStringLiteral("Label: with colon"));
    lookup.setCurrentLine(QStringLiteral("nothing"));
    lookup.splitKeyValueAVL(errors);
    EXPECT_EQ(lookup.getCurrentKey(), QStringLiteral("K1"));
    EXPECT_EQ(lookup.getCurrentLabel(), QStringLiteral("Label: with colon"));
    EXPECT_TRUE(errors.isEmpty()); // checks are off by default
}

// ---- Hostile input --------------------------------------------------------

TEST(TKxLookupHostile, BinaryGarbageIsReadWithoutFailure)
{
    QByteArray bytes;
    for (int i = 0; i < 4096; ++i)
        bytes.append(static_cast<char>((i * 37 + 11) % 256));
    LookupRun run(bytes, 0, eFileChecksAndFrequencies, 3);
    EXPECT_TRUE(run.result);
    EXPECT_LE(run.map().size(), run.lookup.getLineNumber());
}

TEST(TKxLookupHostile, VeryLongLineIsOneEntry)
{
    const QByteArray label(1 << 20, 'x');
    LookupRun run(QByteArray("01 ") + label + "\n", 0, eFileChecks);
    ASSERT_EQ(run.map().size(), 1);
    EXPECT_EQ(run.map().value(QStringLiteral("01")).size(), 1 << 20);
}

// ---- Order of messages, duplicates far apart, line ends ------------------

TEST(TKxLookupOrder, MessagesOfAllKindsKeepFileOrderAndTheirLineNumbers)
{
    LookupRun run(MixedMessagesFile, 2, eFileChecks);
    EXPECT_EQ(run.errors, mixedMessages());
    EXPECT_EQ(run.lookup.getMessageCount(), 10);
    EXPECT_EQ(run.lookup.getLineNumber(), 8);
    EXPECT_FALSE(run.lookup.getCapped());
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("003"), QStringLiteral("B")},
                                 {QStringLiteral("0004"), QStringLiteral("E")},
                                 {QStringLiteral("01"), QStringLiteral("A")},
                                 {QStringLiteral("02"), QStringLiteral("G")}}));
}

TEST(TKxLookupOrder, CapReplacesTheMessageAfterTheMaximumWhateverItsKind)
{
    // The cap replaces the message issued when the count has reached the
    // maximum: with a maximum of m it is the (m+1)-th message in file order.
    for (int maximum : {0, 1, 3, 4, 9}) {
        LookupRun run(MixedMessagesFile, 2, eFileChecks, maximum);
        QStringList expected = mixedMessages();
        const int line = expected.at(maximum).section(QLatin1Char('_'), 0, 0).toInt();
        expected[maximum] = capMessage(line, maximum + 1, maximum);
        EXPECT_EQ(run.errors, expected) << "maximum " << maximum;
        EXPECT_EQ(run.lookup.getMessageCount(), 10) << "maximum " << maximum;
        EXPECT_TRUE(run.lookup.getCapped()) << "maximum " << maximum;
    }
}

TEST(TKxLookupOrder, CapLandsOnADuplicateMessage)
{
    // Maximum 1: the second message, the duplicate of line 3, becomes the cap.
    LookupRun run(MixedMessagesFile, 2, eFileChecks, 1);
    ASSERT_EQ(run.errors.size(), 10);
    EXPECT_EQ(run.errors.at(0), sizeMessage(2, QStringLiteral("003"), 3, 2));
    EXPECT_EQ(run.errors.at(1), capMessage(3, 2, 1));
    EXPECT_EQ(run.errors.at(2), separatorMessage(4, QStringLiteral(",")));
}

TEST(TKxLookupOrder, MessagesFollowThoseAlreadyInTheList)
{
    QTemporaryDir dir;
    TKxLookup lookup;
    lookup.setFfileName(writeFile(dir, QStringLiteral("l.txt"), "01 a\n01 b\n"));
    lookup.setMaxMessages(10);
    TKxLabelFrequencies frequencies;
    QStringList errors{QStringLiteral("earlier")};
    EXPECT_TRUE(lookup.consistencyCheck(eFileChecks, frequencies, errors));
    EXPECT_EQ(errors, QStringList({QStringLiteral("earlier"), duplicateMessage(2, QStringLiteral("01"))}));
}

// Keys 0000 to 4999 with the labels "Label <n>", in the given line order,
// then two repeats of earlier keys with other labels at the end.
QByteArray farDuplicatesFile(const std::vector<int> &order)
{
    QList<QPair<QString, QString>> pairs;
    for (int n : order)
        pairs.append({QStringLiteral("%1").arg(n, 4, 10, QLatin1Char('0')), QStringLiteral("Label %1").arg(n)});
    pairs.append({QStringLiteral("0002"), QStringLiteral("Elsewhere")});
    pairs.append({QStringLiteral("4999"), QStringLiteral("Late")});
    return commaLines(pairs);
}

void expectFarDuplicates(const std::vector<int> &order)
{
    LookupRun run(farDuplicatesFile(order), 2, eFileChecksAndFrequencies);
    EXPECT_EQ(run.lookup.getLineNumber(), 5002);
    ASSERT_EQ(run.map().size(), 5000);
    EXPECT_EQ(run.map().value(QStringLiteral("0002")), QStringLiteral("Label 2"));
    EXPECT_EQ(run.map().value(QStringLiteral("4999")), QStringLiteral("Label 4999"));
    EXPECT_EQ(run.map().firstKey(), QStringLiteral("0000"));
    EXPECT_EQ(run.map().lastKey(), QStringLiteral("4999"));
    EXPECT_EQ(run.errors, QStringList({duplicateMessage(5001, QStringLiteral("0002")),
                                       duplicateMessage(5002, QStringLiteral("4999"))}));
    // The dropped lines' labels are not counted.
    EXPECT_EQ(run.frequencies.size(), 5000);
    EXPECT_FALSE(run.frequencies.contains(QStringLiteral("Elsewhere")));
    EXPECT_FALSE(run.frequencies.contains(QStringLiteral("Late")));
}

TEST(TKxLookupOrder, FarDuplicatesInAFileInKeyOrderKeepTheFirstLabel)
{
    std::vector<int> order(5000);
    for (int n = 0; n < 5000; ++n)
        order[std::size_t(n)] = n;
    expectFarDuplicates(order);
}

TEST(TKxLookupOrder, FarDuplicatesInAFileInReverseKeyOrderKeepTheFirstLabel)
{
    std::vector<int> order(5000);
    for (int n = 0; n < 5000; ++n)
        order[std::size_t(n)] = 4999 - n;
    expectFarDuplicates(order);
}

TEST(TKxLookupOrder, FarDuplicatesInAShuffledFileKeepTheFirstLabel)
{
    std::vector<int> order(5000);
    for (int n = 0; n < 5000; ++n)
        order[std::size_t(n)] = n;
    std::shuffle(order.begin(), order.end(), std::mt19937(14));
    expectFarDuplicates(order);
}

TEST(TKxLookupOrder, LongKeysSharingTheirStartAreToldApartInAShuffledFile)
{
    // Keys "Region-000001" to "Region-000300" (alike in their first 10
    // characters) in a shuffled order, then a repeat of each of the first 50
    // lines with another label.
    std::vector<int> order(300);
    for (int n = 0; n < 300; ++n)
        order[std::size_t(n)] = n + 1;
    std::shuffle(order.begin(), order.end(), std::mt19937(7));
    QList<QPair<QString, QString>> pairs;
    const auto key = [](int n) { return QStringLiteral("Region-%1").arg(n, 6, 10, QLatin1Char('0')); };
    for (int n : order)
        pairs.append({key(n), QStringLiteral("First %1").arg(n)});
    QStringList expected;
    for (int i = 0; i < 50; ++i) {
        pairs.append({key(order[std::size_t(i)]), QStringLiteral("Again")});
        expected.append(duplicateMessage(301 + i, key(order[std::size_t(i)])));
    }
    LookupRun run(commaLines(pairs), 2, eFileChecks);
    EXPECT_EQ(run.errors, expected);
    ASSERT_EQ(run.map().size(), 300);
    int n = 1;
    for (auto it = run.map().cbegin(); it != run.map().cend(); ++it, ++n) {
        EXPECT_EQ(it.key(), key(n));
        EXPECT_EQ(it.value(), QStringLiteral("First %1").arg(n));
    }
}

TEST(TKxLookupOrder, KeysDifferingOnlyByATrailingNulAreTwoKeys)
{
    LookupRun run(QByteArray("AB\0,second\nAB,first\nAB\0,third\n", 30), 2, eNoCheck);
    const QString withNul = QStringLiteral("AB") + QChar(0);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("AB"), QStringLiteral("first")}, {withNul, QStringLiteral("second")}}));
}

TEST(TKxLookupOrder, EachRepeatOfAKeyIsReportedWithItsOwnLineAndTheFirstLabelStays)
{
    // Key 5 first on line 2, then on lines 4, 6 and 7; keys not in order.
    LookupRun run("9 a\n5 first\n1 b\n5 second\n3 c\n5 third\n5 fourth\n", 0, eFileChecksAndFrequencies);
    EXPECT_EQ(run.errors, QStringList({duplicateMessage(4, QStringLiteral("5")), duplicateMessage(6, QStringLiteral("5")),
                                       duplicateMessage(7, QStringLiteral("5"))}));
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("1"), QStringLiteral("b")},
                                 {QStringLiteral("3"), QStringLiteral("c")},
                                 {QStringLiteral("5"), QStringLiteral("first")},
                                 {QStringLiteral("9"), QStringLiteral("a")}}));
    EXPECT_EQ(run.frequencies.value(QStringLiteral("first")), 1);
    EXPECT_FALSE(run.frequencies.contains(QStringLiteral("fourth")));
}

TEST(TKxLookupOrder, NonAsciiDuplicateKeysAreFoundInAnUnsortedFile)
{
    const QString zu = QString::fromUtf8("Z\xC3\xBC");
    const QString zhongwen = QString::fromUtf8("\xE4\xB8\xAD\xE6\x96\x87");
    LookupRun run(commaLines({{zu, QStringLiteral("1")},
                              {zhongwen, QStringLiteral("2")},
                              {QStringLiteral("AB"), QStringLiteral("3")},
                              {zu, QStringLiteral("4")},
                              {zhongwen, QStringLiteral("5")}}),
                  2, eFileChecks);
    EXPECT_EQ(run.errors, QStringList({duplicateMessage(4, zu), duplicateMessage(5, zhongwen)}));
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("AB"), QStringLiteral("3")},
                                 {zu, QStringLiteral("1")},
                                 {zhongwen, QStringLiteral("2")}}));
}

TEST(TKxLookupOrder, CarriageReturnLineFeedFileWithChecks)
{
    LookupRun run("01,North\r\n002,South\r\n01,Again\r\n", 2, eFileChecksAndFrequencies);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("002"), QStringLiteral("South")},
                                 {QStringLiteral("01"), QStringLiteral("North")}}));
    EXPECT_EQ(run.errors,
              QStringList({sizeMessage(2, QStringLiteral("002"), 3, 2), duplicateMessage(3, QStringLiteral("01"))}));
    EXPECT_EQ(run.frequencies, (TKxLabelFrequencies{{QStringLiteral("North"), 1}, {QStringLiteral("South"), 1}}));
    EXPECT_EQ(run.lookup.getLineNumber(), 3);
    EXPECT_EQ(run.lookup.getCurrentLine(), QStringLiteral("01,Again"));
    EXPECT_EQ(run.lookup.getCurrentLineLength(), 8);
}

TEST(TKxLookupOrder, CarriageReturnLineFeedSplitAcrossLargeReadsIsOneLineEnd)
{
    // 29-byte lines: the carriage return of line 565 is byte 16,384 of the
    // file and its line feed byte 16,385, so any read in blocks of a power
    // of two up to 16 KB separates them somewhere in the file.
    QList<QPair<QString, QString>> pairs;
    for (int n = 1; n <= 1000; ++n)
        pairs.append({QStringLiteral("%1").arg(n, 4, 10, QLatin1Char('0')),
                      QStringLiteral("Label number %1").arg(n, 9, 10, QLatin1Char('0'))});
    const QByteArray bytes = commaLines(pairs, "\r\n");
    ASSERT_EQ(bytes.size(), 29000);
    ASSERT_EQ(bytes.mid(565 * 29 - 2, 2), QByteArray("\r\n"));
    LookupRun run(bytes, 2, eFileChecks);
    EXPECT_TRUE(run.errors.isEmpty()) << qPrintable(run.errors.join(QLatin1Char('\n')));
    ASSERT_EQ(run.map().size(), 1000);
    EXPECT_EQ(run.map().value(QStringLiteral("0565")), QStringLiteral("Label number 000000565"));
    EXPECT_EQ(run.map().value(QStringLiteral("0566")), QStringLiteral("Label number 000000566"));
    EXPECT_EQ(run.lookup.getLineNumber(), 1000);
}

TEST(TKxLookupOrder, MultiByteCharacterAcrossLargeReadsIsDecodedWhole)
{
    // "01,Z" then "\xC3\xBC" (u with diaeresis) at bytes 16,384 and 16,385.
    QByteArray bytes = "00," + QByteArray(16375, 'x') + "\n01,Z";
    ASSERT_EQ(bytes.size(), 16383);
    bytes += "\xC3\xBCrich\n";
    LookupRun run(bytes, 2, eNoCheck);
    EXPECT_EQ(run.map().value(QStringLiteral("01")), QString::fromUtf8("Z\xC3\xBCrich"));
    EXPECT_EQ(run.map().value(QStringLiteral("00")), QString(16375, QLatin1Char('x')));
}

TEST(TKxLookupOrder, EmptyLineInTheMiddleRepeatsThePreviousPair)
{
    LookupRun checked("01 North\n\n02 South\n", 0, eFileChecksAndFrequencies);
    EXPECT_EQ(checked.map(), (KeyMap{{QStringLiteral("01"), QStringLiteral("North")},
                                     {QStringLiteral("02"), QStringLiteral("South")}}));
    EXPECT_EQ(checked.errors, QStringList({separatorMessage(2, QStringLiteral(" ")),
                                           duplicateMessage(2, QStringLiteral("01"))}));
    EXPECT_EQ(checked.frequencies, (TKxLabelFrequencies{{QStringLiteral("North"), 1}, {QStringLiteral("South"), 1}}));
    EXPECT_EQ(checked.lookup.getLineNumber(), 3);

    LookupRun unchecked("01 North\n\n02 South\n", 0, eNoCheck);
    EXPECT_EQ(unchecked.map(), checked.map());
    EXPECT_TRUE(unchecked.errors.isEmpty());
}

TEST(TKxLookupOrder, FirstLineWithoutSeparatorTakesThePairHeldBefore)
{
    QTemporaryDir dir;
    TKxLookup lookup;
    lookup.setFfileName(writeFile(dir, QStringLiteral("l.txt"), "NoSeparator\n01 North\n"));
    lookup.setCurrentKey(QStringLiteral("07"));
    lookup.setCurrentLabel(QStringLiteral("Kept"));
    TKxLabelFrequencies frequencies;
    QStringList errors;
    EXPECT_TRUE(lookup.consistencyCheck(eNoCheck, frequencies, errors));
    EXPECT_EQ(lookup.getLookupMap(), (KeyMap{{QStringLiteral("01"), QStringLiteral("North")},
                                             {QStringLiteral("07"), QStringLiteral("Kept")}}));
}

TEST(TKxLookupOrder, CurrentLineAndPairAreThoseOfTheLastLine)
{
    LookupRun run("01 North\n02 South\n", 0, eNoCheck);
    EXPECT_EQ(run.lookup.getCurrentLine(), QStringLiteral("02 South"));
    EXPECT_EQ(run.lookup.getCurrentLineLength(), 8);
    EXPECT_EQ(run.lookup.getCurrentKey(), QStringLiteral("02"));
    EXPECT_EQ(run.lookup.getCurrentLabel(), QStringLiteral("South"));

    LookupRun repeated("01 North\nlast\n", 0, eNoCheck);
    EXPECT_EQ(repeated.lookup.getCurrentLine(), QStringLiteral("last"));
    EXPECT_EQ(repeated.lookup.getCurrentKey(), QStringLiteral("01"));
    EXPECT_EQ(repeated.lookup.getCurrentLabel(), QStringLiteral("North"));
}

TEST(TKxLookupOrder, Utf16BigEndianByteOrderMarkIsDetected)
{
    const QString text = QString::fromUtf8("02 S\xC3\xA3o Paulo\n01 Z\xC3\xBCrich\n");
    QByteArray bytes("\xFE\xFF", 2);
    for (QChar c : text) {
        bytes.append(char(c.unicode() >> 8));
        bytes.append(char(c.unicode() & 0xFF));
    }
    LookupRun run(bytes, 0, eFileChecks);
    EXPECT_EQ(run.map(), (KeyMap{{QStringLiteral("01"), QString::fromUtf8("Z\xC3\xBCrich")},
                                 {QStringLiteral("02"), QString::fromUtf8("S\xC3\xA3o Paulo")}}));
    EXPECT_TRUE(run.errors.isEmpty());
}

TEST(TKxLookupSeparator, BlankCodeZeroRemovesWhatTheLeadingSpacePatternMatches)
{
    // Every character other than a line end and a lone surrogate, once as
    // the first character of a label: what is left must be what "^\s*" leaves.
    static const QRegularExpression leadingSpace(QStringLiteral("^\\s*"));
    QString text;
    QList<QPair<QString, QString>> expected;
    for (int c = 0; c < 0x10000; ++c) {
        if (c == '\n' || c == '\r' || QChar::isSurrogate(uint(c)))
            continue;
        const QString key = QStringLiteral("%1").arg(c, 4, 16, QLatin1Char('0'));
        const QString label = QString(QChar(c)) + QStringLiteral("x");
        text += key + QLatin1Char(' ') + label + QLatin1Char('\n');
        expected.append({key, QString(label).remove(leadingSpace)});
    }
    LookupRun run(text.toUtf8(), 0, eNoCheck);
    ASSERT_EQ(run.map().size(), expected.size());
    int wrong = 0;
    for (const auto &pair : expected) {
        if (run.map().value(pair.first) != pair.second && ++wrong <= 5)
            ADD_FAILURE() << "character " << qPrintable(pair.first);
    }
    EXPECT_EQ(wrong, 0);
    // Tab, line tabulation, form feed and the blank are among those removed.
    EXPECT_EQ(run.map().value(QStringLiteral("0009")), QStringLiteral("x"));
    EXPECT_EQ(run.map().value(QStringLiteral("000b")), QStringLiteral("x"));
    EXPECT_EQ(run.map().value(QStringLiteral("000c")), QStringLiteral("x"));
    EXPECT_EQ(run.map().value(QStringLiteral("0020")), QStringLiteral("x"));
}

// ---- Report ---------------------------------------------------------------

TEST(ReportLookup, CaptionsAreFixed)
{
    ReportLookup report;
    EXPECT_EQ(report.getTitleReport(), QStringLiteral("Kelvo Lookup Checking"));
    EXPECT_EQ(report.getIdLabel(), QStringLiteral("Lookup Identification"));
    EXPECT_EQ(report.getLabelLabel(), QStringLiteral("Lookup Label"));
    EXPECT_EQ(report.getDataFileLabel(), QStringLiteral("Lookup File"));
}

TEST(ReportLookup, CarriesTheResultOfACheck)
{
    LookupRun run("01 North\n01 South\n", 0, eFileChecksAndFrequencies);
    ReportLookup report;
    report.setIdValue(QStringLiteral("REG"));
    report.setLabelValue(QStringLiteral("Regions"));
    report.setDataFileValue(run.lookup.getFfileName());
    report.setFrequenciesTree(run.frequencies);
    report.setErrorMessages(&run.errors);
    report.setConsistency(eFileChecksAndFrequencies);
    EXPECT_EQ(report.getIdValue(), QStringLiteral("REG"));
    EXPECT_EQ(report.getLabelValue(), QStringLiteral("Regions"));
    EXPECT_EQ(report.getDataFileValue(), run.lookup.getFfileName());
    EXPECT_EQ(report.getFrequenciesTree(), (TKxLabelFrequencies{{QStringLiteral("North"), 1}}));
    EXPECT_EQ(report.getErrorMessages(), &run.errors);
    EXPECT_EQ(*report.getErrorMessages(), QStringList({QStringLiteral("2_Key [01] already exists")}));
    EXPECT_EQ(report.getConsistency(), eFileChecksAndFrequencies);
}

TEST(ReportLookup, DefaultsAreEmpty)
{
    ReportLookup report;
    EXPECT_TRUE(report.getIdValue().isEmpty());
    EXPECT_TRUE(report.getLabelValue().isEmpty());
    EXPECT_TRUE(report.getDataFileValue().isEmpty());
    EXPECT_TRUE(report.getFrequenciesTree().isEmpty());
    EXPECT_EQ(report.getErrorMessages(), nullptr);
}

TEST(TKxLookupDefaults, ConstructionValues)
{
    TKxLookup lookup;
    EXPECT_EQ(lookup.getSeparator(), 0);
    EXPECT_EQ(lookup.getMaxMessages(), 0);
    EXPECT_EQ(lookup.getMessageCount(), 0);
    EXPECT_EQ(lookup.getErrorFlag(), 0);
    EXPECT_FALSE(lookup.getCapped());
    lookup.setId(QStringLiteral("id"));
    lookup.setLabel(QStringLiteral("lbl"));
    EXPECT_EQ(lookup.getId(), QStringLiteral("id"));
    EXPECT_EQ(lookup.getLabel(), QStringLiteral("lbl"));
}

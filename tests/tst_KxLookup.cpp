#include "model_KelAdmin.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

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

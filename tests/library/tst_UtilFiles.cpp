#include "model_KelAdmin.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFont>
#include <QFontInfo>
#include <QFontMetrics>
#include <QLabel>
#include <QTemporaryDir>

#include <unistd.h>

using kxtest::writeFile;

namespace {

// Root may write any file, so the read-only status is checked as an ordinary
// user would meet it: under root the real and effective user become an
// unprivileged id for the scope (root stays the saved id and is taken back at
// the end), and the test folder is opened to that user.
class AsOrdinaryUser
{
public:
    static constexpr uid_t OrdinaryId = 65534; // "nobody"

    AsOrdinaryUser(const QTemporaryDir &dir, const QString &file)
    {
        if (getuid() != 0 && geteuid() != 0) {
            ready = true;
            return;
        }
        // The group too: the process keeps root's group, whose bits then apply.
        QFile::setPermissions(dir.path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner
                                              | QFileDevice::ReadGroup | QFileDevice::ExeGroup
                                              | QFileDevice::ReadOther | QFileDevice::ExeOther);
        dropped = setresuid(OrdinaryId, OrdinaryId, 0) == 0;
        // The file must be visible to that user, or the status would be 2 or 3.
        ready = dropped && QFileInfo::exists(file);
    }
    ~AsOrdinaryUser()
    {
        if (dropped && setresuid(0, 0, 0) != 0)
            ADD_FAILURE() << "could not take the root user back";
    }
    AsOrdinaryUser(const AsOrdinaryUser &) = delete;
    AsOrdinaryUser &operator=(const AsOrdinaryUser &) = delete;

    bool isReady() const { return ready; }

private:
    bool dropped = false;
    bool ready = false;
};

#define AS_ORDINARY_USER(dir, file)                                                                              \
    AsOrdinaryUser ordinaryUser(dir, file);                                                                      \
    if (!ordinaryUser.isReady())                                                                                 \
    GTEST_SKIP() << "cannot run as an unprivileged user here, and root may write every file"

QString makeReadOnly(const QTemporaryDir &dir, const QString &name)
{
    const QString path = writeFile(dir, name, "x");
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther);
    return path;
}

} // namespace

// ---- File status codes ---------------------------------------------------

TEST(UtilFilesStatus, EmptyPathIsNoName1)
{
    EXPECT_EQ(UtilFiles::GetFileStatus(QString()), 1);
    EXPECT_EQ(UtilFiles::GetFileStatus(QStringLiteral("")), 1);
}

TEST(UtilFilesStatus, PathInMissingFolderIs2EvenWithAValidName)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    EXPECT_EQ(UtilFiles::GetFileStatus(dir.filePath(QStringLiteral("missing/data.dat"))), 2);
}

TEST(UtilFilesStatus, NewFileInExistingFolderIs3)
{
    QTemporaryDir dir;
    EXPECT_EQ(UtilFiles::GetFileStatus(dir.filePath(QStringLiteral("new.dat"))), 3);
}

TEST(UtilFilesStatus, ExistingWritableFileIsReady0)
{
    QTemporaryDir dir;
    const QString path = writeFile(dir, QStringLiteral("ready.dat"), "abc");
    EXPECT_EQ(UtilFiles::GetFileStatus(path), 0);
}

TEST(UtilFilesStatus, ReadOnlyFileIs4)
{
    QTemporaryDir dir;
    const QString path = makeReadOnly(dir, QStringLiteral("ro.dat"));
    AS_ORDINARY_USER(dir, path);
    EXPECT_EQ(UtilFiles::GetFileStatus(path), 4);
}

TEST(UtilFilesStatus, SaveStatusFoldsNewFileInto0AndIgnoresSecondArgument)
{
    QTemporaryDir dir;
    EXPECT_EQ(UtilFiles::GetFileSaveStatus(dir.filePath(QStringLiteral("new.dat")), QStringLiteral("ignored")), 0);
    EXPECT_EQ(UtilFiles::GetFileSaveStatus(writeFile(dir, QStringLiteral("a.dat"), "a"), QString()), 0);
    EXPECT_EQ(UtilFiles::GetFileSaveStatus(QString(), QStringLiteral("x")), 1);
    EXPECT_EQ(UtilFiles::GetFileSaveStatus(dir.filePath(QStringLiteral("no/a.dat")), QString()), 2);
}

TEST(UtilFilesStatus, SaveStatusOfReadOnlyFileIs4)
{
    QTemporaryDir dir;
    const QString path = makeReadOnly(dir, QStringLiteral("ro.dat"));
    AS_ORDINARY_USER(dir, path);
    EXPECT_EQ(UtilFiles::GetFileSaveStatus(path, QString()), 4);
}

TEST(UtilFilesStatus, CheckFileStatusEqualsGetFileStatus)
{
    QTemporaryDir dir;
    EXPECT_EQ(UtilFiles::CheckFileStatus(QString()), 1);
    EXPECT_EQ(UtilFiles::CheckFileStatus(dir.filePath(QStringLiteral("no/a.dat"))), 2);
    EXPECT_EQ(UtilFiles::CheckFileStatus(dir.filePath(QStringLiteral("new.dat"))), 3);
    EXPECT_EQ(UtilFiles::CheckFileStatus(writeFile(dir, QStringLiteral("a.dat"), "a")), 0);
}

TEST(UtilFilesStatus, CheckFileSaveIsTrueForNewFileInExistingFolder)
{
    QTemporaryDir dir;
    EXPECT_TRUE(UtilFiles::CheckFileSave(dir.filePath(QStringLiteral("new.dat")), QStringLiteral("ignored")));
    EXPECT_TRUE(UtilFiles::CheckFileSave(writeFile(dir, QStringLiteral("a.dat"), "a"), QString()));
}

TEST(UtilFilesStatus, CheckFileSaveIsFalseWithoutNameOrFolder)
{
    QTemporaryDir dir;
    EXPECT_FALSE(UtilFiles::CheckFileSave(QString(), QString()));
    EXPECT_FALSE(UtilFiles::CheckFileSave(dir.filePath(QStringLiteral("no/a.dat")), QString()));
}

TEST(UtilFilesStatus, CheckFileSaveIsFalseForReadOnlyFile)
{
    QTemporaryDir dir;
    const QString path = makeReadOnly(dir, QStringLiteral("ro.dat"));
    AS_ORDINARY_USER(dir, path);
    EXPECT_FALSE(UtilFiles::CheckFileSave(path, QString()));
}

// ---- Existence, folders and sizes ----------------------------------------

TEST(UtilFiles, GetFileDirIsTheAbsoluteContainingFolder)
{
    QTemporaryDir dir;
    const QString absolute = QDir(dir.path()).absolutePath();
    EXPECT_EQ(UtilFiles::GetFileDir(dir.filePath(QStringLiteral("x.dat"))), absolute);
    EXPECT_EQ(UtilFiles::GetFileDir(QStringLiteral("/d1/d2/f.dat")), QStringLiteral("/d1/d2"));
    EXPECT_EQ(UtilFiles::GetFileDir(QStringLiteral("f.dat")), QDir::current().absolutePath());
    EXPECT_EQ(UtilFiles::GetFileDir(QString()), QString());
}

TEST(UtilFiles, FileExistsOnlyForRegularFiles)
{
    QTemporaryDir dir;
    EXPECT_TRUE(UtilFiles::FileExists(writeFile(dir, QStringLiteral("a.dat"), "a")));
    EXPECT_FALSE(UtilFiles::FileExists(dir.path()));
    EXPECT_FALSE(UtilFiles::FileExists(dir.filePath(QStringLiteral("none.dat"))));
    EXPECT_FALSE(UtilFiles::FileExists(QString()));
}

TEST(UtilFiles, DirExistsOnlyForFolders)
{
    QTemporaryDir dir;
    EXPECT_TRUE(UtilFiles::DirExists(dir.path()));
    EXPECT_FALSE(UtilFiles::DirExists(writeFile(dir, QStringLiteral("a.dat"), "a")));
    EXPECT_FALSE(UtilFiles::DirExists(dir.filePath(QStringLiteral("none"))));
    EXPECT_FALSE(UtilFiles::DirExists(QString()));
}

TEST(UtilFiles, SizeLimitZeroIsNotReachedBy1023BytesButBy1024)
{
    QTemporaryDir dir;
    EXPECT_FALSE(UtilFiles::FileSizeReachedInKB(writeFile(dir, QStringLiteral("a"), QByteArray(1023, 'x')), 0));
    EXPECT_TRUE(UtilFiles::FileSizeReachedInKB(writeFile(dir, QStringLiteral("b"), QByteArray(1024, 'x')), 0));
}

TEST(UtilFiles, SizeCountsWholeKilobytesAndComparesStrictly)
{
    QTemporaryDir dir;
    const QString almostTwo = writeFile(dir, QStringLiteral("a"), QByteArray(2047, 'x'));
    const QString two = writeFile(dir, QStringLiteral("b"), QByteArray(2048, 'x'));
    EXPECT_FALSE(UtilFiles::FileSizeReachedInKB(almostTwo, 1)); // 1 KB is not above 1
    EXPECT_TRUE(UtilFiles::FileSizeReachedInKB(two, 1));
    EXPECT_FALSE(UtilFiles::FileSizeReachedInKB(two, 2));
}

TEST(UtilFiles, MissingFileHasSizeZero)
{
    QTemporaryDir dir;
    const QString missing = dir.filePath(QStringLiteral("none"));
    EXPECT_FALSE(UtilFiles::FileSizeReachedInKB(missing, 0));
    EXPECT_TRUE(UtilFiles::FileSizeReachedInKB(missing, -1));
    // An empty path names no file: size 0 as well.
    EXPECT_FALSE(UtilFiles::FileSizeReachedInKB(QString(), 0));
    EXPECT_TRUE(UtilFiles::FileSizeReachedInKB(QString(), -1));
}

TEST(UtilFiles, EntityFilePathDropsTheSecondToLastFolder)
{
    EXPECT_EQ(UtilFiles::getDataBaseEntityFilePath(QStringLiteral("/d1/d2/d3/F")), QStringLiteral("/d1/d3/F"));
    EXPECT_EQ(UtilFiles::getDataBaseEntityFilePath(QStringLiteral("/base/db/entities/person.kxdb")),
              QStringLiteral("/base/entities/person.kxdb"));
}

TEST(UtilFiles, EntityFilePathOfAFolderJustBelowTheRootHasNoFolderToDrop)
{
    // A = /d1: T = /d1, H is empty, so G is empty too and the result is T/F.
    EXPECT_EQ(UtilFiles::getDataBaseEntityFilePath(QStringLiteral("/d1/F")), QStringLiteral("/d1/F"));
}

TEST(UtilFiles, EntityFilePathDoesNotDependOnExistence)
{
    QTemporaryDir dir;
    QDir(dir.path()).mkpath(QStringLiteral("db/ent"));
    const QString existing = writeFile(dir, QStringLiteral("db/ent/e.dat"), "x");
    const QString root = QDir(dir.path()).absolutePath();
    EXPECT_EQ(UtilFiles::getDataBaseEntityFilePath(existing), root + QStringLiteral("/ent/e.dat"));
    EXPECT_EQ(UtilFiles::getDataBaseEntityFilePath(dir.filePath(QStringLiteral("db/ent/none.dat"))),
              root + QStringLiteral("/ent/none.dat"));
}

// ---- Path shortening ------------------------------------------------------

TEST(UtilStringsPath, ArialResolvesToAMetricCompatibleFont)
{
    const QString family = QFontInfo(QFont(QStringLiteral("Arial"), 10)).family();
    EXPECT_TRUE(family == QStringLiteral("Arial") || family == QStringLiteral("Liberation Sans"))
        << "install fonts-liberation so that Arial resolves; got " << family.toStdString();
}

namespace {

// The forms of D:\a\b\<folder>\f.dat, widest first.
QStringList shortenedForms(const QString &thirdFolder)
{
    return {QStringLiteral("D:\\a\\b\\") + thirdFolder + QStringLiteral("\\f.dat"),
            QStringLiteral("D:\\a\\b\\...\\f.dat"), QStringLiteral("D:\\a\\...\\f.dat"),
            QStringLiteral("D:\\...\\f.dat"), QStringLiteral("...\\f.dat")};
}

// The narrowest width (pixels) at which \a text fits with its ten-per-cent margin.
int fittingWidth(const QFontMetrics &metrics, const QString &text)
{
    return (metrics.horizontalAdvance(text) * 11) / 10 + 1;
}

} // namespace

TEST(UtilStringsPath, ShortensFolderByFolderFromTheRightKeepingTheFirstParts)
{
    // A wide last folder makes every form narrower than the one before it.
    const QStringList forms = shortenedForms(QStringLiteral("collections"));
    const QFontMetrics metrics(QFont(QStringLiteral("Arial"), 10));
    for (int k = 1; k < forms.size(); ++k)
        ASSERT_LT(metrics.horizontalAdvance(forms.at(k)), metrics.horizontalAdvance(forms.at(k - 1)));

    for (int k = 0; k < forms.size(); ++k) {
        const int width = fittingWidth(metrics, forms.at(k));
        EXPECT_EQ(UtilStrings::getBetterPathString(forms.at(0), width, 10), forms.at(k)) << "width " << width;
    }
}

TEST(UtilStringsPath, TheTenPerCentMarginDecidesAtTheBoundary)
{
    const QStringList forms = shortenedForms(QStringLiteral("collections"));
    const QFontMetrics metrics(QFont(QStringLiteral("Arial"), 10));
    for (int k = 0; k + 1 < forms.size(); ++k) {
        // Exactly text + 10 % (integer) does not fit: the next form is taken.
        const int width = (metrics.horizontalAdvance(forms.at(k)) * 11) / 10;
        ASSERT_GT(width, (metrics.horizontalAdvance(forms.at(k + 1)) * 11) / 10);
        EXPECT_EQ(UtilStrings::getBetterPathString(forms.at(0), width, 10), forms.at(k + 1)) << "width " << width;
    }
}

TEST(UtilStringsPath, NarrowestFormIsDotsAndFileNameEvenIfItDoesNotFit)
{
    EXPECT_EQ(UtilStrings::getBetterPathString(QStringLiteral("D:\\a\\b\\c\\f.dat"), 1, 10),
              QStringLiteral("...\\f.dat"));
    EXPECT_EQ(UtilStrings::getBetterPathString(QStringLiteral("D:\\a\\b\\c\\f.dat"), 0, 10),
              QStringLiteral("...\\f.dat"));
}

TEST(UtilStringsPath, PathThatFitsIsReturnedUnchanged)
{
    const QString path = QStringLiteral("D:\\a\\b\\c\\f.dat");
    EXPECT_EQ(UtilStrings::getBetterPathString(path, 10000, 10), QDir::toNativeSeparators(path));
}

TEST(UtilStringsPath, PathThatFitsIsReturnedUnchangedWhateverTheFontSize)
{
    // A font size of 0 is no point size; a path far narrower than the width
    // still fits and comes back whole.
    const QString path = QStringLiteral("D:\\a\\f.dat");
    EXPECT_EQ(UtilStrings::getBetterPathString(path, 100000, 0), QDir::toNativeSeparators(path));
}

TEST(UtilStringsPath, FormWiderThanTheWholePathIsPassedOver)
{
    // With a one-letter folder, "D:\a\b\...\f.dat" is wider than the whole
    // path, so once the whole path does not fit the next narrower form wins.
    const QStringList forms = shortenedForms(QStringLiteral("c"));
    const QFontMetrics metrics(QFont(QStringLiteral("Arial"), 10));
    ASSERT_GT(metrics.horizontalAdvance(forms.at(1)), metrics.horizontalAdvance(forms.at(0)));
    ASSERT_LT(fittingWidth(metrics, forms.at(2)), fittingWidth(metrics, forms.at(0)));
    EXPECT_EQ(UtilStrings::getBetterPathString(forms.at(0), fittingWidth(metrics, forms.at(0)) - 1, 10), forms.at(2));
}

TEST(UtilStringsPath, FontSizeChangesTheWidths)
{
    const QStringList forms = shortenedForms(QStringLiteral("collections"));
    const QFontMetrics small(QFont(QStringLiteral("Arial"), 10));
    const QFontMetrics large(QFont(QStringLiteral("Arial"), 20));
    const int width = fittingWidth(small, forms.at(0));
    ASSERT_LE(width, (large.horizontalAdvance(forms.at(0)) * 11) / 10);
    EXPECT_EQ(UtilStrings::getBetterPathString(forms.at(0), width, 10), forms.at(0));
    EXPECT_NE(UtilStrings::getBetterPathString(forms.at(0), width, 20), forms.at(0));
}

TEST(UtilStringsPath, PathWithForwardSlashesIsReturnedWholeHoweverNarrow)
{
    const QString path = QStringLiteral("/home/user/data/a/very/long/folder/file.dat");
    EXPECT_EQ(UtilStrings::getBetterPathString(path, 1, 10), QDir::toNativeSeparators(path));
}

TEST(UtilStringsPath, EmptyPartsAreKept)
{
    // "\\server\share\f.dat" splits into "", "", "server", "share", "f.dat".
    const QString path = QStringLiteral("\\\\server\\share\\f.dat");
    EXPECT_EQ(UtilStrings::getBetterPathString(path, 1, 10), QStringLiteral("...\\f.dat"));
    const QFontMetrics metrics(QFont(QStringLiteral("Arial"), 10));
    const QString keepsServer = QStringLiteral("\\\\server\\...\\f.dat");
    EXPECT_EQ(UtilStrings::getBetterPathString(path, fittingWidth(metrics, keepsServer), 10), keepsServer);
}

TEST(UtilStringsPath, DockWidgetLabelShowsShortenedEntityPathWithFullToolTip)
{
    QLabel label;
    const QString result =
        UtilStrings::setBetterPathInQDockWidget(QStringLiteral("/d1/d2/d3/f.dat"), 1, &label);
    EXPECT_EQ(result, QStringLiteral("/d1/d3/f.dat"));
    EXPECT_EQ(label.text(), QDir::toNativeSeparators(QStringLiteral("/d1/d3/f.dat")));
    EXPECT_EQ(label.toolTip(), QDir::toNativeSeparators(QStringLiteral("/d1/d3/f.dat")));
}

TEST(UtilStringsPath, DockWidgetWithoutLabelStillReturnsEntityPath)
{
    EXPECT_EQ(UtilStrings::setBetterPathInQDockWidget(QStringLiteral("/d1/d2/d3/f.dat"), 100, nullptr),
              QStringLiteral("/d1/d3/f.dat"));
}

// ---- Escape expansion -----------------------------------------------------

TEST(UtilStringsLineBreak, HashBackslashHashNBecomesCarriageReturnLineFeed)
{
    EXPECT_EQ(UtilStrings::returnLineBreak(QStringLiteral("a#\\#nb")), QStringLiteral("a\r\nb"));
}

TEST(UtilStringsLineBreak, HashBackslashHashTBecomesTab)
{
    EXPECT_EQ(UtilStrings::returnLineBreak(QStringLiteral("a#\\#tb")), QStringLiteral("a\tb"));
    EXPECT_EQ(UtilStrings::returnLineBreak(QStringLiteral("#\\#t#\\#n")), QStringLiteral("\t\r\n"));
}

TEST(UtilStringsLineBreak, LoneHashAndIncompleteTokensAreCopied)
{
    EXPECT_EQ(UtilStrings::returnLineBreak(QStringLiteral("a#b")), QStringLiteral("a#b"));
    EXPECT_EQ(UtilStrings::returnLineBreak(QStringLiteral("#")), QStringLiteral("#"));
    EXPECT_EQ(UtilStrings::returnLineBreak(QStringLiteral("x#\\#")), QStringLiteral("x#\\#"));
    EXPECT_EQ(UtilStrings::returnLineBreak(QStringLiteral("#\\#x")), QStringLiteral("#\\#x"));
}

TEST(UtilStringsLineBreak, EmptyTextGivesEmptyText)
{
    EXPECT_EQ(UtilStrings::returnLineBreak(QString()), QString());
}

// ---- Field cutting --------------------------------------------------------

TEST(UtilStringsWord, CutsFieldsAndAdvancesPositionToMinusOneAtTheEnd)
{
    const QString line = QStringLiteral("a;b;c");
    int pos = 0;
    EXPECT_EQ(UtilStrings::GetWordSeparator(line, pos, QStringLiteral(";"), QString()), QStringLiteral("a"));
    EXPECT_EQ(pos, 2);
    EXPECT_EQ(UtilStrings::GetWordSeparator(line, pos, QStringLiteral(";"), QString()), QStringLiteral("b"));
    EXPECT_EQ(pos, 4);
    EXPECT_EQ(UtilStrings::GetWordSeparator(line, pos, QStringLiteral(";"), QString()), QStringLiteral("c"));
    EXPECT_EQ(pos, -1);
}

TEST(UtilStringsWord, SeparatorAsLastCharacterGivesOneMoreEmptyField)
{
    const QString line = QStringLiteral("a;");
    int pos = 0;
    EXPECT_EQ(UtilStrings::GetWordSeparator(line, pos, QStringLiteral(";"), QString()), QStringLiteral("a"));
    EXPECT_EQ(pos, 2); // the line's length
    EXPECT_EQ(UtilStrings::GetWordSeparator(line, pos, QStringLiteral(";"), QString()), QString());
    EXPECT_EQ(pos, -1);
}

TEST(UtilStringsWord, EmptyFieldsBetweenSeparators)
{
    const QString line = QStringLiteral(";;x");
    int pos = 0;
    EXPECT_EQ(UtilStrings::GetWordSeparator(line, pos, QStringLiteral(";"), QString()), QString());
    EXPECT_EQ(pos, 1);
    EXPECT_EQ(UtilStrings::GetWordSeparator(line, pos, QStringLiteral(";"), QString()), QString());
    EXPECT_EQ(pos, 2);
    EXPECT_EQ(UtilStrings::GetWordSeparator(line, pos, QStringLiteral(";"), QString()), QStringLiteral("x"));
    EXPECT_EQ(pos, -1);
}

TEST(UtilStringsWord, PositionBeyondTheLineGivesEmptyFieldAndEnd)
{
    int pos = 10;
    EXPECT_EQ(UtilStrings::GetWordSeparator(QStringLiteral("abc"), pos, QStringLiteral(";"), QString()), QString());
    EXPECT_EQ(pos, -1);
    pos = -1;
    EXPECT_EQ(UtilStrings::GetWordSeparator(QStringLiteral("abc"), pos, QStringLiteral(";"), QString()), QString());
    EXPECT_EQ(pos, -1);
}

TEST(UtilStringsWord, QuoteIsLookedForAtTheSecondCharacterAndCutFromTheThird)
{
    int pos = 0;
    // Second character is the quote: the first two characters go.
    EXPECT_EQ(UtilStrings::GetWordSeparator(QStringLiteral("x\"abc;d"), pos, QStringLiteral(";"),
                                            QStringLiteral("\"")),
              QStringLiteral("abc"));
    EXPECT_EQ(pos, 6);
    // A quote in first place is not recognised: the field stays as it is.
    pos = 0;
    EXPECT_EQ(UtilStrings::GetWordSeparator(QStringLiteral("\"abc\";d"), pos, QStringLiteral(";"),
                                            QStringLiteral("\"")),
              QStringLiteral("\"abc\""));
    // A one-character field has no second character.
    pos = 0;
    EXPECT_EQ(UtilStrings::GetWordSeparator(QStringLiteral("\""), pos, QStringLiteral(";"), QStringLiteral("\"")),
              QStringLiteral("\""));
}

// ---- TKxList --------------------------------------------------------------

TEST(TKxList, Remove1SetsTheFlagAndRemovesNothing)
{
    TKxList list(false);
    list << QStringLiteral("a") << QStringLiteral("b");
    EXPECT_FALSE(list.getFlag());
    EXPECT_TRUE(list.Remove1(&list));
    EXPECT_TRUE(list.getFlag());
    EXPECT_EQ(list, QStringList({QStringLiteral("a"), QStringLiteral("b")}));
}

TEST(TKxList, NotifyDoesNothing)
{
    TKxList list(true);
    list << QStringLiteral("a");
    list.Notify(nullptr);
    EXPECT_TRUE(list.getFlag());
    EXPECT_EQ(list.size(), 1);
}

#include "model_KelAdmin.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

namespace {

class NotingImport : public TDataImport
{
public:
    QString getDataProviderId() override { return QStringLiteral("NOTING"); }
    QString getDataProviderType() override { return QStringLiteral("NOTING"); }
    bool openFile() override
    {
        openDataImport();
        ++opened;
        addReadNote(TReadNote(opened, QStringLiteral("X"), QLatin1String(TReadNoteKind::LimitReached),
                              QStringLiteral("opened %1").arg(opened)));
        return true;
    }
    int opened = 0;
};

} // namespace

TEST(TReadNote, DefaultNoteHasLineZeroAndEmptyTexts)
{
    const TReadNote note;
    EXPECT_EQ(note.getLine(), 0);
    EXPECT_TRUE(note.getSubject().isEmpty());
    EXPECT_TRUE(note.getKind().isEmpty());
    EXPECT_TRUE(note.getText().isEmpty());
}

TEST(TReadNote, EqualityComparesEveryMember)
{
    const TReadNote a(3, QStringLiteral("AGE"), QStringLiteral("range-code"), QStringLiteral("t"));
    EXPECT_EQ(a, TReadNote(3, QStringLiteral("AGE"), QStringLiteral("range-code"), QStringLiteral("t")));
    EXPECT_NE(a, TReadNote(4, QStringLiteral("AGE"), QStringLiteral("range-code"), QStringLiteral("t")));
    EXPECT_NE(a, TReadNote(3, QStringLiteral("SEX"), QStringLiteral("range-code"), QStringLiteral("t")));
    EXPECT_NE(a, TReadNote(3, QStringLiteral("AGE"), QStringLiteral("limit-reached"), QStringLiteral("t")));
    EXPECT_NE(a, TReadNote(3, QStringLiteral("AGE"), QStringLiteral("range-code"), QStringLiteral("u")));
}

// Kinds are short lower-case texts with dashes, so that scripts can match them.
TEST(TReadNote, KindsAreLowerCaseWordsJoinedByDashes)
{
    const char *const kinds[] = {
        TReadNoteKind::KeyFromOtherLine, TReadNoteKind::SpecialNotRead, TReadNoteKind::ValueSetDropped,
        TReadNoteKind::ValueCodesChanged, TReadNoteKind::LinkedValueSetEmpty, TReadNoteKind::OccurrenceValueSet,
        TReadNoteKind::UndecodableText, TReadNoteKind::DecimalsNotRead, TReadNoteKind::SubitemReadAsItem,
        TReadNoteKind::RangeCode, TReadNoteKind::OccurrenceLabelsNotRead, TReadNoteKind::LimitReached,
        TReadNoteKind::WidthFirstDigit, TReadNoteKind::LabelMinusOneDropped, TReadNoteKind::TextNotAscii,
        TReadNoteKind::LabelSetTruncated, TReadNoteKind::UserMissingNotRead, TReadNoteKind::LabelSetMissing,
        TReadNoteKind::LabelSetUnused};
    for (const char *kind : kinds) {
        const QString text = QLatin1String(kind);
        EXPECT_TRUE(text.contains(QRegularExpression(QStringLiteral("^[a-z]+(-[a-z]+)+$")))) << kind;
    }
    EXPECT_STREQ(TReadNoteKind::KeyFromOtherLine, "key-from-other-line");
    EXPECT_STREQ(TReadNoteKind::LabelSetUnused, "label-set-unused");
}

TEST(TReadNote, EachOpenFileStartsWithNoNotes)
{
    NotingImport importer;
    EXPECT_TRUE(importer.getReadNotes().isEmpty());
    importer.openFile();
    importer.openFile();
    ASSERT_EQ(importer.getReadNotes().size(), 1);
    EXPECT_EQ(importer.getReadNotes().at(0).getText(), QStringLiteral("opened 2"));
}

TEST(ModelKelAdminVersion, RunTimeVersionIsTheCompiledOne)
{
    EXPECT_STREQ(Model_KelAdmin::version(), MODEL_KELADMIN_VERSION_STRING);
    EXPECT_STREQ(MODEL_KELADMIN_VERSION_STRING, "1.1.0");
    EXPECT_EQ(MODEL_KELADMIN_VERSION, MODEL_KELADMIN_VERSION_CHECK(1, 1, 0));
    EXPECT_GT(MODEL_KELADMIN_VERSION, MODEL_KELADMIN_VERSION_CHECK(1, 0, 99));
}

TEST(ModelKelAdminVersion, ReadStatVersionIsThreeNumbers)
{
    EXPECT_TRUE(QString::fromLatin1(Model_KelAdmin::readStatVersion())
                    .contains(QRegularExpression(QStringLiteral("^[0-9]+\\.[0-9]+\\.[0-9]+$"))))
        << Model_KelAdmin::readStatVersion();
}

#include "model_KelAdmin.h"

#include <gtest/gtest.h>

namespace {

TKxSourceField *fieldAt(int start, int size)
{
    auto *f = new TKxSourceField;
    f->setStart(start);
    f->setSize(size);
    return f;
}

} // namespace

TEST(KxSourceField, ProviderTypeNamesKeepTheirSpelling)
{
    TKxSourceField f;
    EXPECT_EQ(*f.getProviderTypeNames(), (QStringList{QStringLiteral("NONE"), QStringLiteral("CSPRO"),
                                                      QStringLiteral("CSV"), QStringLiteral("SSPS"),
                                                      QStringLiteral("STATA")}));
}

TEST(KxSourceField, Defaults)
{
    TKxSourceField f;
    EXPECT_TRUE(f.getFieldName().isEmpty());
    EXPECT_EQ(f.getDecimals(), 0);
    EXPECT_EQ(f.getSize(), 0);
    EXPECT_EQ(f.getStart(), 0);
    EXPECT_FALSE(f.getIsBlankValue());
    EXPECT_EQ(f.getFieldTypeIndex(), 0);
    EXPECT_EQ(f.getDataProviderTypeIndex(), 0);
    EXPECT_TRUE(f.getDataProviderType().isEmpty());
}

TEST(KxSourceField, SetFieldTypeLeavesTheIndex)
{
    TKxSourceField f;
    f.setFieldType(QStringLiteral("STRING"));
    EXPECT_EQ(f.getFieldType(), QStringLiteral("STRING"));
    EXPECT_EQ(f.getFieldTypeIndex(), 0);
    EXPECT_FALSE(f.isString());
    f.setFieldTypeIndex(3);
    EXPECT_TRUE(f.isString());
}

TEST(KxSourceField, SspsIsAcceptedSpssIsNot)
{
    TKxSourceField f;
    f.setDataProviderType(QStringLiteral("SPSS"));
    EXPECT_TRUE(f.getDataProviderType().isEmpty());
    EXPECT_EQ(f.getDataProviderTypeIndex(), 0);
    f.setDataProviderType(QStringLiteral("SSPS"));
    EXPECT_EQ(f.getDataProviderType(), QStringLiteral("SSPS"));
    EXPECT_EQ(f.getDataProviderTypeIndex(), 3);
}

TEST(KxSourceField, AcceptedAndRejectedProviderTypes)
{
    const QList<QPair<QString, int>> accepted{{QStringLiteral("CSPRO"), 1},
                                              {QStringLiteral("CSV"), 2},
                                              {QStringLiteral("SSPS"), 3},
                                              {QStringLiteral("STATA"), 4}};
    for (const auto &c : accepted) {
        TKxSourceField f;
        f.setDataProviderType(c.first);
        EXPECT_EQ(f.getDataProviderTypeIndex(), c.second) << qPrintable(c.first);
        EXPECT_EQ(f.getDataProviderType(), c.first);
    }
    for (const QString &rejected : {QStringLiteral("NONE"), QStringLiteral("CSPRO8"), QStringLiteral("cspro")}) {
        TKxSourceField f;
        f.setDataProviderType(QStringLiteral("CSV"));
        f.setDataProviderType(rejected);
        EXPECT_EQ(f.getDataProviderType(), QStringLiteral("CSV")) << qPrintable(rejected);
        EXPECT_EQ(f.getDataProviderTypeIndex(), 2);
    }
}

TEST(KxSourceField, PositionsOneToSixAndEightToNineAreAcceptedSevenIsNot)
{
    // The rule is on the position in the name list, which callers may extend
    // beyond the five names it starts with.
    TKxSourceField f;
    *f.getProviderTypeNames() << QStringLiteral("P5") << QStringLiteral("P6") << QStringLiteral("P7")
                              << QStringLiteral("P8") << QStringLiteral("P9") << QStringLiteral("P10");
    const QList<QPair<QString, int>> steps{{QStringLiteral("P5"), 5}, {QStringLiteral("P6"), 6},
                                           {QStringLiteral("P7"), 6}, {QStringLiteral("P8"), 8},
                                           {QStringLiteral("P9"), 9}, {QStringLiteral("P10"), 9}};
    for (const auto &step : steps) {
        f.setDataProviderType(step.first);
        EXPECT_EQ(f.getDataProviderTypeIndex(), step.second) << qPrintable(step.first);
        EXPECT_EQ(f.getDataProviderType(), f.getProviderTypeNames()->at(step.second)) << qPrintable(step.first);
    }
}

TEST(KxSourceField, CutsColumnsCountedFromZero)
{
    std::unique_ptr<TKxSourceField> f(fieldAt(1, 3));
    EXPECT_EQ(f->getStringValue(QStringLiteral("ABCDE")), QStringLiteral("BCD"));
}

TEST(KxSourceField, ShortLineYieldsWhatExists)
{
    std::unique_ptr<TKxSourceField> f(fieldAt(1, 3));
    EXPECT_EQ(f->getStringValue(QStringLiteral("AB")), QStringLiteral("B"));
}

TEST(KxSourceField, LineEndingBeforeTheStartYieldsEmpty)
{
    std::unique_ptr<TKxSourceField> f(fieldAt(4, 3));
    EXPECT_TRUE(f->getStringValue(QStringLiteral("ABCD")).isEmpty());
    EXPECT_TRUE(f->getStringValue(QStringLiteral("AB")).isEmpty());
    EXPECT_TRUE(f->getStringValue(QString()).isEmpty());
}

TEST(KxSourceField, LineOfExactlyStartPlusSizeMinusOneCutsTheFullWidth)
{
    // Length 3 is not less than start + size - 1 = 3: the full-width branch.
    std::unique_ptr<TKxSourceField> f(fieldAt(1, 3));
    EXPECT_EQ(f->getStringValue(QStringLiteral("ABC")), QStringLiteral("BC"));
}

TEST(KxSourceField, BlankValueComparison)
{
    std::unique_ptr<TKxSourceField> f(fieldAt(0, 2));
    f->setBlankValue(QStringLiteral("  "));
    f->getStringValue(QStringLiteral("  X"));
    EXPECT_TRUE(f->getIsBlankValue());
    f->getStringValue(QStringLiteral("1 X"));
    EXPECT_FALSE(f->getIsBlankValue());
    // An empty line yields the empty text, which equals an empty blank value.
    f->setBlankValue(QString());
    f->getStringValue(QString());
    EXPECT_TRUE(f->getIsBlankValue());
}

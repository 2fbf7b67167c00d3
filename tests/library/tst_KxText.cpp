// The readers' text helpers answer exactly as the Qt calls they stand for.
#include "KxText_p.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <limits>

TEST(KxText, ToIntAnswersAsQStringToInt)
{
    const QStringList texts = {"0", "7", "-0", "007", "-12", "123456789", "-123456789", "999999999", "1234567890",
                               "2147483647", "2147483648", "-2147483648", "-2147483649", "99999999999", "+5", " 5",
                               "5 ", "", "-", "--1", "1a", "a1", "1.5", "1:20", "A'", QStringLiteral("\u0661\u0662"),
                               QStringLiteral("\uff11"), "0x10", "1e3"};
    for (const QString &text : texts) {
        bool expectedOk = false;
        const int expected = text.toInt(&expectedOk, 10);
        bool ok = !expectedOk;
        EXPECT_EQ(kxtext::toInt(text, &ok), expected) << text.toStdString();
        EXPECT_EQ(ok, expectedOk) << text.toStdString();
    }
}

TEST(KxText, ContainsAnswersAsQStringContains)
{
    const QStringList haystacks = {"Len=3", "Label=Length of stay", "", "L", "DecimalChar=Yes", "xxLenxx", "Le"};
    const QStringList needles = {"Len", "Decimal", "", "L", "Length of stay", "e"};
    for (const QString &haystack : haystacks) {
        for (const QString &needle : needles)
            EXPECT_EQ(kxtext::contains(haystack, needle), haystack.contains(needle))
                << haystack.toStdString() << " / " << needle.toStdString();
    }
}

TEST(KxText, StartsWithNoCaseAnswersAsQStringStartsWithCaseInsensitive)
{
    const QStringList texts = {"Value=1;One", "VALUE=1", "value=", "VALUE", "Valu=", "", "Name=MISSING,Special",
                               "name=x", "NAME", "Link=3", QStringLiteral("LIN\u212A=3"), QStringLiteral("\u00e9VALUE="),
                               QStringLiteral("VAL\u00dcE="), " Value=1"};
    for (const char *prefix : {"VALUE=", "NAME=", "LINK="}) {
        for (const QString &text : texts)
            EXPECT_EQ(kxtext::startsWithNoCase(text, QLatin1String(prefix)),
                      text.startsWith(QLatin1String(prefix), Qt::CaseInsensitive))
                << text.toStdString() << " / " << prefix;
    }
}

TEST(KxText, NumberG6AnswersAsQStringNumberG6)
{
    const double numbers[] = {0.0, -0.0, 1.0, -1.0, 5.0, 99.0, 999999.0, -999999.0, 1e6, -1e6, 1234567.0, 0.5,
                              -2.5, 1.23456789, 123456.7, 1e-5, 1e300, -1e300, 2147483647.0, -2147483648.0,
                              std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN(), 999999999.0, -999999999.0};
    for (const double v : numbers)
        EXPECT_EQ(kxtext::numberG6(v), QString::number(v, 'g', 6)) << v;
}

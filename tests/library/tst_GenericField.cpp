#include "model_KelAdmin.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace {

// A field whose special states the test sets directly.
class TestField : public TGenericField
{
public:
    TestField(int type, int width)
        : TGenericField(nullptr)
    {
        setFieldType(type);
        setSize(width);
    }
    bool isMissing() override { return missing; }
    bool isNotApplicable() override { return notApplicable; }
    bool isBlank() override { return blank; }

    bool missing = false;
    bool notApplicable = false;
    bool blank = false;
};

std::uint64_t bitsOf(double v)
{
    std::uint64_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    return bits;
}

} // namespace

TEST(GenericField, FreshFieldDefaults)
{
    TestField f(0, 0);
    EXPECT_FALSE(f.getImportFlag());
    EXPECT_TRUE(f.getName().isEmpty());
    EXPECT_EQ(f.getFieldType(), 0);
    EXPECT_EQ(f.getSize(), 0);
    EXPECT_EQ(f.getStart(), 0);
    EXPECT_TRUE(f.getDecimalCharPresent());
    EXPECT_FALSE(f.getMissingFlag());
    EXPECT_EQ(f.getIntegerValue(), 0.0);
    EXPECT_TRUE(f.valueText().isEmpty());
    EXPECT_EQ(f.getOwner(), nullptr);
}

TEST(GenericField, FreshRealFieldHoldsTheSentinelNotZero)
{
    TestField f(2, 8);
    EXPECT_EQ(bitsOf(f.getRealValue()), 0x000FFFFE2E8159D0ULL);
    EXPECT_NE(f.getAsFloat(), 0.0);
    EXPECT_NEAR(f.getAsFloat(), 2.22507e-308, 1e-313);
}

TEST(GenericField, ImpliedDecimalsDivideARealValue)
{
    TestField f(2, 5);
    f.setDecimals(QStringLiteral("2"));
    f.setDecimalCharPresent(false);
    f.setAsString(QStringLiteral("345"));
    EXPECT_DOUBLE_EQ(f.getAsFloat(), 3.45);
}

TEST(GenericField, PresentDecimalCharKeepsTheRealValue)
{
    TestField f(2, 5);
    f.setDecimals(QStringLiteral("2"));
    f.setDecimalCharPresent(true);
    f.setAsString(QStringLiteral("345"));
    EXPECT_DOUBLE_EQ(f.getAsFloat(), 345.0);
}

TEST(GenericField, UnparsableDecimalsCountAsZero)
{
    TestField f(2, 5);
    f.setDecimals(QStringLiteral("x"));
    f.setDecimalCharPresent(false);
    f.setAsString(QStringLiteral("345"));
    EXPECT_DOUBLE_EQ(f.getAsFloat(), 345.0);
}

TEST(GenericField, RealAssignmentLeavesIntegerValueAlone)
{
    TestField f(2, 5);
    f.setAsInteger(7);
    f.setAsString(QStringLiteral("1.5"));
    EXPECT_DOUBLE_EQ(f.getRealValue(), 1.5);
    EXPECT_DOUBLE_EQ(f.getIntegerValue(), 7.0);
}

TEST(GenericField, IntegerAssignmentSetsBothNumbers)
{
    TestField f(1, 5);
    f.setAsString(QStringLiteral("42"));
    EXPECT_DOUBLE_EQ(f.getIntegerValue(), 42.0);
    EXPECT_DOUBLE_EQ(f.getRealValue(), 42.0);
    EXPECT_EQ(f.getAsInteger(), 42);
}

TEST(GenericField, NonNumericTextInAnIntegerFieldGivesZero)
{
    TestField f(1, 5);
    f.setAsString(QStringLiteral("abc"));
    EXPECT_EQ(f.getAsInteger(), 0);
    EXPECT_EQ(f.getAsString(), QStringLiteral("0"));
}

TEST(GenericField, SetAsStringCharTrimsBeforeParsing)
{
    TestField f(1, 6);
    f.setAsStringChar(L"  17  ");
    EXPECT_EQ(f.getAsInteger(), 17);
    EXPECT_EQ(f.valueText(), QStringLiteral("  17  "));
}

TEST(GenericField, IntegerTextUsesSixSignificantDigits)
{
    TestField f(1, 9);
    f.setAsString(QStringLiteral("1234567"));
    EXPECT_EQ(f.getAsString(), QStringLiteral("1.23457e+06"));
}

TEST(GenericField, IntegerValueIsTruncatedTowardsZero)
{
    TestField f(1, 9);
    f.setAsString(QStringLiteral("-2.9"));
    EXPECT_EQ(f.getAsInteger(), -2);
    TestField r(2, 9);
    r.setAsString(QStringLiteral("2.9"));
    EXPECT_EQ(r.getAsInteger(), 2);
}

TEST(GenericField, TextLongerThanSizeIsCut)
{
    TestField f(3, 3);
    f.setAsString(QStringLiteral("ABCDE"));
    EXPECT_EQ(f.getAsString(), QStringLiteral("ABC"));
}

TEST(GenericField, ShorterTextIsZeroFilledUpToSize)
{
    TestField f(3, 5);
    f.setAsString(QStringLiteral("ABCDE"));
    f.setAsString(QStringLiteral("XY"));
    EXPECT_EQ(f.getAsString(), QStringLiteral("XY"));
}

TEST(GenericField, TextAsLongAsSizeWritesNoTerminator)
{
    TestField f(3, 5);
    f.setAsString(QStringLiteral("ABCDE"));
    f.setSize(3);
    f.setAsString(QStringLiteral("XYZ"));
    // Positions 3 and 4 still hold the earlier D and E.
    EXPECT_EQ(f.getAsString(), QStringLiteral("XYZDE"));
}

TEST(GenericField, SizeBeyondTheBufferIsClamped)
{
    TestField f(3, 400);
    const QString wide(300, QLatin1Char('w'));
    f.setAsString(wide);
    EXPECT_EQ(f.getAsString(), QString(TGenericField::ValueCapacity, QLatin1Char('w')));
    f.setAsStringChar(std::wstring(300, L'v').c_str());
    EXPECT_EQ(f.getAsString(), QString(TGenericField::ValueCapacity, QLatin1Char('v')));
}

TEST(GenericField, NegativeOrZeroSizeCopiesNothing)
{
    TestField f(3, -4);
    f.setAsString(QStringLiteral("ABC"));
    EXPECT_TRUE(f.getAsString().isEmpty());
}

TEST(GenericField, NullWideTextIsEmpty)
{
    TestField f(3, 4);
    f.setAsStringChar(nullptr);
    EXPECT_TRUE(f.getAsString().isEmpty());
}

TEST(GenericField, MissingValueReturnsMissingCodeEvenForText)
{
    TestField f(3, 4);
    f.setMissingCode(QStringLiteral("9999"));
    f.setAsString(QStringLiteral("ABCD"));
    f.missing = true;
    EXPECT_EQ(f.getAsString(), QStringLiteral("9999"));
    EXPECT_DOUBLE_EQ(f.getAsFloat(), 9999.0);
    EXPECT_EQ(f.getAsInteger(), 9999);
}

TEST(GenericField, NotApplicableReturnsItsCodeAndBlankReturnsEmpty)
{
    TestField f(1, 2);
    f.setNotApplicableCode(QStringLiteral("99"));
    f.setAsString(QStringLiteral("12"));
    f.notApplicable = true;
    EXPECT_EQ(f.getAsString(), QStringLiteral("99"));
    // Not consulted by the numeric getters.
    EXPECT_EQ(f.getAsInteger(), 12);
    f.notApplicable = false;
    f.blank = true;
    EXPECT_TRUE(f.getAsString().isEmpty());
}

TEST(GenericField, SpecialValuesKeepThePreviousNumbers)
{
    TestField f(1, 2);
    f.setAsString(QStringLiteral("12"));
    f.blank = true;
    f.setAsString(QStringLiteral("34"));
    EXPECT_EQ(f.valueText(), QStringLiteral("34"));
    EXPECT_DOUBLE_EQ(f.getIntegerValue(), 12.0);
}

TEST(GenericField, TextAssignmentClearsTheMissingFlag)
{
    TestField f(3, 2);
    f.setMissingFlag(true);
    f.setAsString(QStringLiteral("ab"));
    EXPECT_FALSE(f.getMissingFlag());
    f.setMissingFlag(true);
    f.setAsStringChar(L"cd");
    EXPECT_FALSE(f.getMissingFlag());
}

TEST(GenericField, UnknownTypeMarksTheValueBuffer)
{
    TestField f(0, 5);
    f.setAsString(QStringLiteral("12"));
    EXPECT_EQ(std::uint32_t(f.getValue()[0]), 0x15151515u);
    EXPECT_EQ(std::uint32_t(f.getValue()[1]), 0x15151515u);
    EXPECT_EQ(f.getValue()[2], L'\0');
    EXPECT_TRUE(f.getAsString().isEmpty());
    EXPECT_EQ(f.getAsFloat(), 0.0);
    EXPECT_EQ(f.getAsInteger(), 0);
}

TEST(GenericField, TextFieldGetAsFloatParsesTrimmedText)
{
    TestField f(3, 6);
    f.setAsString(QStringLiteral(" 2.5 "));
    EXPECT_DOUBLE_EQ(f.getAsFloat(), 2.5);
    f.setAsString(QStringLiteral("x"));
    EXPECT_EQ(f.getAsFloat(), 0.0);
    f.setAsString(QStringLiteral(" 31 "));
    EXPECT_EQ(f.getAsInteger(), 31);
}

TEST(GenericField, SetAsFloatAndSetAsIntegerTouchOneMemberEach)
{
    TestField f(2, 5);
    f.setAsFloat(1.25);
    f.setAsInteger(3);
    EXPECT_DOUBLE_EQ(f.getRealValue(), 1.25);
    EXPECT_DOUBLE_EQ(f.getIntegerValue(), 3.0);
    EXPECT_DOUBLE_EQ(f.getAsFloat(), 1.25);
}

TEST(GenericField, IsStringOnlyForTypeThree)
{
    EXPECT_TRUE(TestField(3, 1).isString());
    EXPECT_FALSE(TestField(1, 1).isString());
    EXPECT_FALSE(TestField(2, 1).isString());
}

TEST(GenericField, BaseAddValueLabelAndGroupDoNothing)
{
    TestField f(1, 1);
    f.addValueLabel(QStringLiteral("1"), QStringLiteral("One"));
    EXPECT_TRUE(f.getValueLabels().isEmpty());
    EXPECT_TRUE(f.getGroup().isEmpty());
}

TEST(GenericField, GetValueLabelRewritesTabsAsLineFeeds)
{
    TestField f(1, 1);
    f.setValueLabels(QStringLiteral("1 Male\t2 Female\t"));
    f.getValueLabel(QStringLiteral("2"));
    EXPECT_EQ(f.getValueLabels(), QStringLiteral("1 Male\n2 Female\n"));
}

TEST(GenericField, GetValueLabelSkipsTheFirstCharacterOfTheCode)
{
    TestField f(1, 1);
    f.setValueLabels(QStringLiteral("1 Male\t2 Female\t"));
    // The comparison reads from the second character, so the code 1 is not found.
    EXPECT_TRUE(f.getValueLabel(QStringLiteral("1")).isEmpty());
    EXPECT_TRUE(f.getValueLabel(QStringLiteral("2")).isEmpty());
}

TEST(GenericField, GetValueLabelMatchesOnlyTheFirstEntry)
{
    TestField f(1, 1);
    f.setValueLabels(QStringLiteral("x1 Male\t2 Female\t"));
    EXPECT_EQ(f.getValueLabel(QStringLiteral("1")), QStringLiteral("xMale\n2 Female"));
    EXPECT_TRUE(f.getValueLabel(QStringLiteral("2")).isEmpty());
}

TEST(GenericField, RealTextUsesSixSignificantDigits)
{
    TestField f(2, 10);
    f.setAsString(QStringLiteral("3.14159265"));
    EXPECT_EQ(f.getAsString(), QStringLiteral("3.14159"));
    f.setAsString(QStringLiteral("1234567"));
    EXPECT_EQ(f.getAsString(), QStringLiteral("1.23457e+06"));
}

TEST(GenericField, IntegerFieldGetAsFloatIsTheIntegerValue)
{
    TestField f(1, 5);
    f.setAsString(QStringLiteral("42"));
    EXPECT_DOUBLE_EQ(f.getAsFloat(), 42.0);
    // setAsInteger touches integerValue only, and that is what is read back.
    f.setAsInteger(7);
    EXPECT_DOUBLE_EQ(f.getAsFloat(), 7.0);
    EXPECT_DOUBLE_EQ(f.getRealValue(), 42.0);
}

TEST(GenericField, ImpliedDecimalsWithoutADecimalsTextDoNotDivide)
{
    TestField f(2, 5);
    f.setDecimalCharPresent(false);
    f.setAsString(QStringLiteral("345"));
    EXPECT_DOUBLE_EQ(f.getAsFloat(), 345.0);
}

TEST(GenericField, EachSpecialValueKeepsTheNumbersThroughEitherAssignment)
{
    for (int state = 0; state < 3; ++state) {
        TestField f(1, 4);
        f.setAsString(QStringLiteral("12"));
        f.missing = state == 0;
        f.notApplicable = state == 1;
        f.blank = state == 2;
        f.setAsString(QStringLiteral("34"));
        EXPECT_EQ(f.valueText(), QStringLiteral("34")) << state;
        EXPECT_DOUBLE_EQ(f.getIntegerValue(), 12.0) << state;
        f.setAsStringChar(L"56");
        EXPECT_EQ(f.valueText(), QStringLiteral("56")) << state;
        EXPECT_DOUBLE_EQ(f.getIntegerValue(), 12.0) << state;
        EXPECT_DOUBLE_EQ(f.getRealValue(), 12.0) << state;
    }
}

TEST(GenericField, MissingCodeThatDoesNotParseGivesZero)
{
    TestField f(1, 2);
    f.missing = true;
    f.setMissingCode(QStringLiteral("NA"));
    EXPECT_EQ(f.getAsFloat(), 0.0);
    EXPECT_EQ(f.getAsInteger(), 0);
    // A decimal missing code is a number but no base-10 integer.
    f.setMissingCode(QStringLiteral("9.5"));
    EXPECT_DOUBLE_EQ(f.getAsFloat(), 9.5);
    EXPECT_EQ(f.getAsInteger(), 0);
}

TEST(GenericField, TextFieldGetAsIntegerNeedsABase10Integer)
{
    TestField f(3, 6);
    f.setAsString(QStringLiteral("2.5"));
    EXPECT_EQ(f.getAsInteger(), 0);
    f.setAsString(QStringLiteral("0x1A"));
    EXPECT_EQ(f.getAsInteger(), 0);
    f.setAsString(QStringLiteral("abc"));
    EXPECT_EQ(f.getAsInteger(), 0);
    f.setAsString(QStringLiteral(" -31 "));
    EXPECT_EQ(f.getAsInteger(), -31);
}

TEST(GenericField, TruncationKeepsTheSignOfNumbersBeyondTheIntRange)
{
    // Truncation towards zero never changes the sign, however large the value.
    TestField f(2, 8);
    f.setAsString(QStringLiteral("1e300"));
    EXPECT_DOUBLE_EQ(f.getAsFloat(), 1e300);
    EXPECT_GT(f.getAsInteger(), 0);
    f.setAsString(QStringLiteral("-1e300"));
    EXPECT_LT(f.getAsInteger(), 0);
    TestField i(1, 8);
    i.setAsString(QStringLiteral("5e9"));
    EXPECT_GT(i.getAsInteger(), 0);
}

TEST(GenericField, NotANumberGivesIntegerZero)
{
    // "nan" parses as a double that holds no number; as an integer it counts
    // as 0, like text that does not parse.
    TestField f(1, 3);
    f.setAsString(QStringLiteral("nan"));
    EXPECT_EQ(f.getAsInteger(), 0);
}

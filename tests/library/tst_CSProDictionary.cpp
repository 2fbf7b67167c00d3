#include "model_KelAdmin.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

TCSProValueSet *makeSet(const QStringList &codes, int isNumeric = 1)
{
    auto *set = new TCSProValueSet;
    set->isNumeric = isNumeric;
    for (const QString &code : codes) {
        auto *entry = new TValueSetItem;
        entry->code = code;
        entry->name = QStringLiteral("label ") + code;
        set->addItem(entry);
    }
    return set;
}

QStringList codesOf(TCSProValueSet *set)
{
    QStringList codes;
    for (int i = 0; i < set->getCount(); ++i)
        codes << set->getValueSetItem(i)->code;
    return codes;
}

void freeSet(TCSProValueSet *set)
{
    qDeleteAll(*set->items);
    delete set;
}

} // namespace

// ------------------------------------------------------------------ defaults

TEST(CSProDictionary, RecordDefaults)
{
    TCSProRecord r;
    EXPECT_EQ(r.label, QString());
    EXPECT_EQ(r.name, QString());
    EXPECT_EQ(r.recordTypeValue, QString());
    EXPECT_EQ(r.required, QString());
    EXPECT_EQ(r.maxRecords, 100);
    EXPECT_EQ(r.recordLen, 0);
}

TEST(CSProDictionary, ItemDefaults)
{
    TCSProItem item;
    EXPECT_EQ(item.count, 0);
    EXPECT_EQ(item.isAlpha, 0);
    EXPECT_EQ(item.decimal, 0);
    EXPECT_EQ(item.isSubItem, 0);
    EXPECT_EQ(item.len, 0);
    EXPECT_EQ(item.occurrences, 1);
    EXPECT_EQ(item.start, 1);
    EXPECT_FALSE(item.decimalChar);
    EXPECT_FALSE(item.zeroFill);
    EXPECT_EQ(item.index, 0);
    EXPECT_EQ(item.record, nullptr);
    ASSERT_NE(item.valueSets, nullptr);
    EXPECT_TRUE(item.valueSets->isEmpty());
    EXPECT_EQ(item.parent(), nullptr);
}

TEST(CSProDictionary, ValueSetDefaultsAndMetaObject)
{
    TCSProValueSet set;
    EXPECT_EQ(set.isNumeric, 1);
    EXPECT_EQ(set.note, QString());
    EXPECT_EQ(set.getCount(), 0);
    EXPECT_STREQ(set.metaObject()->className(), "TCSProValueSet");
}

TEST(CSProDictionary, FreshValueSetItemHasCodeU0003)
{
    TValueSetItem entry;
    EXPECT_EQ(entry.code, QString(QChar(3)));
    EXPECT_EQ(entry.code.size(), 1);
    EXPECT_EQ(entry.name, QString());
    EXPECT_EQ(entry.type, 0);
    EXPECT_FALSE(entry.special);
}

TEST(CSProDictionary, AccessorsReadAndWriteTheMembers)
{
    TCSProItem item;
    item.setName(QStringLiteral("AGE"));
    item.setLen(3);
    item.setMissingCode(QStringLiteral("999"));
    EXPECT_EQ(item.name, QStringLiteral("AGE"));
    EXPECT_EQ(item.getLen(), 3);
    EXPECT_EQ(item.getMissingCode(), QStringLiteral("999"));
    TCSProRecord r;
    r.setRecordTypeValue(QStringLiteral("P"));
    EXPECT_EQ(r.recordTypeValue, QStringLiteral("P"));
    TValueSetItem e;
    e.setCode(QStringLiteral("7"));
    EXPECT_EQ(e.getCode(), QStringLiteral("7"));
}

// --------------------------------------------------------------- record stubs

TEST(CSProDictionary, RecordCountIsOneAndItemIsNullEvenAfterItemsWereRead)
{
    TCSPro dict;
    QStringList lines{QStringLiteral("[Record]"), QStringLiteral("Name=PERSON"),
                      QStringLiteral("RecordTypeValue='P'"), QStringLiteral("[Item]"), QStringLiteral("Name=AGE"),
                      QStringLiteral("Len=3"), QStringLiteral("[Item]"), QStringLiteral("Name=SEX")};
    dict.loadFromStr(&lines);
    ASSERT_EQ(dict.getItemsCount(), 2);
    TCSProRecord *record = dict.getItem(0)->record;
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->name, QStringLiteral("PERSON"));
    EXPECT_EQ(record->getCount(), 1);
    EXPECT_EQ(record->getItem(0), nullptr);
    record->addItem(dict.getItem(1));
    EXPECT_EQ(record->getCount(), 1);
    EXPECT_EQ(record->getItem(1), nullptr);
}

// ------------------------------------------------------------- item value sets

TEST(CSProDictionary, SecondAddValueSetIsIgnored)
{
    TCSProItem item;
    TCSProValueSet first;
    TCSProValueSet second;
    item.addValueSet(&first);
    item.addValueSet(&second);
    EXPECT_EQ(item.getCount(), 1);
    EXPECT_EQ(item.getValueSet(0), &first);
}

TEST(CSProDictionary, AddValueSetStoresTheCountBeforeAppending)
{
    TCSProItem item;
    TCSProValueSet first;
    item.addValueSet(&first);
    EXPECT_EQ(item.count, 0);
    EXPECT_TRUE(item.getHasValueSet());
    EXPECT_EQ(item.count, 1);
}

TEST(CSProDictionary, HasValueSetIsFalseWithoutListOrValueSet)
{
    TCSProItem item;
    EXPECT_FALSE(item.getHasValueSet());
    QList<TCSProValueSet *> *list = item.valueSets;
    item.valueSets = nullptr;
    EXPECT_FALSE(item.getHasValueSet());
    item.valueSets = list;
}

// ------------------------------------------------------------------ IsNumeric2

TEST(CSProDictionary, IsNumeric2AcceptsBase10IntsWithSignAndBlanks)
{
    EXPECT_TRUE(IsNumeric2(QStringLiteral("12")));
    EXPECT_TRUE(IsNumeric2(QStringLiteral(" 12 ")));
    EXPECT_TRUE(IsNumeric2(QStringLiteral("-3")));
    EXPECT_TRUE(IsNumeric2(QStringLiteral("+3")));
    EXPECT_FALSE(IsNumeric2(QStringLiteral("1.5")));
    EXPECT_FALSE(IsNumeric2(QStringLiteral("A")));
    EXPECT_FALSE(IsNumeric2(QString()));
    EXPECT_FALSE(IsNumeric2(QStringLiteral("99999999999")));
}

// ------------------------------------------------------------------- IsDecimal

TEST(CSProDictionary, IsDecimalOfPointAloneIsTrueAndOfEmptyIsFalse)
{
    EXPECT_TRUE(IsDecimal(QStringLiteral(".")));
    EXPECT_FALSE(IsDecimal(QString()));
}

TEST(CSProDictionary, IsDecimalIsDigitsPointDigits)
{
    EXPECT_TRUE(IsDecimal(QStringLiteral("1.5")));
    EXPECT_TRUE(IsDecimal(QStringLiteral("1.")));
    EXPECT_TRUE(IsDecimal(QStringLiteral(".5")));
    EXPECT_FALSE(IsDecimal(QStringLiteral("-1.5")));
    EXPECT_FALSE(IsDecimal(QStringLiteral("1,5")));
    EXPECT_FALSE(IsDecimal(QStringLiteral("15")));
    EXPECT_FALSE(IsDecimal(QStringLiteral("1.2.3")));
}

// ---------------------------------------------------------------- comparators

TEST(CSProDictionary, CompareCodesIsTextOrder)
{
    TValueSetItem a, b;
    a.code = QStringLiteral("10");
    b.code = QStringLiteral("9");
    EXPECT_TRUE(CompareCodes(&a, &b));
    EXPECT_FALSE(CompareCodes(&b, &a));
    a.code = QStringLiteral("a");
    b.code = QStringLiteral("B");
    EXPECT_FALSE(CompareCodes(&a, &b)); // case-sensitive: 'B' < 'a'
}

TEST(CSProDictionary, CompareCodesThrowsInvalidArgumentOnNull)
{
    TValueSetItem a;
    try {
        CompareCodes(&a, nullptr);
        FAIL() << "no exception";
    } catch (const std::invalid_argument &e) {
        EXPECT_STREQ(e.what(), "Null pointer passed to CompareCodes");
    }
    EXPECT_THROW(CompareCodes(nullptr, &a), std::invalid_argument);
}

TEST(CSProDictionary, CompareCodesNumericIsNumericOrderForIntegers)
{
    TValueSetItem a, b;
    a.code = QStringLiteral("9");
    b.code = QStringLiteral("10");
    EXPECT_TRUE(CompareCodesNumeric(&a, &b));
    EXPECT_FALSE(CompareCodesNumeric(&b, &a));
    EXPECT_FALSE(CompareCodesNumeric(&a, &a));
}

TEST(CSProDictionary, CompareCodesNumericAnswersTrueForNullAndNonIntegers)
{
    TValueSetItem a, b;
    a.code = QStringLiteral("1");
    b.code = QStringLiteral("X");
    EXPECT_TRUE(CompareCodesNumeric(nullptr, &a));
    EXPECT_TRUE(CompareCodesNumeric(&a, nullptr));
    EXPECT_TRUE(CompareCodesNumeric(&a, &b));
    EXPECT_TRUE(CompareCodesNumeric(&b, &a));
}

// ------------------------------------------------------------------ sortItems

TEST(CSProDictionary, NumericValueSetSortsNumerically)
{
    TCSProValueSet *set = makeSet({"10", "9", "1"}, 1);
    set->sortItems();
    EXPECT_EQ(codesOf(set), (QStringList{"1", "9", "10"}));
    freeSet(set);
}

TEST(CSProDictionary, NonNumericValueSetSortsAsText)
{
    TCSProValueSet *set = makeSet({"10", "9", "1"}, 0);
    set->sortItems();
    EXPECT_EQ(codesOf(set), (QStringList{"1", "10", "9"}));
    freeSet(set);
}

TEST(CSProDictionary, SortKeepsLabelsWithTheirCodes)
{
    TCSProValueSet *set = makeSet({"3", "1", "2"}, 1);
    set->sortItems();
    EXPECT_EQ(set->getValueSetItem(0)->name, QStringLiteral("label 1"));
    EXPECT_EQ(set->getValueSetItem(2)->name, QStringLiteral("label 3"));
    freeSet(set);
}

TEST(CSProDictionary, SortOfNumericSetWithNonIntegerCodesStaysInsideTheList)
{
    // Not an ordering here: the result order is unspecified but the entries survive.
    TCSProValueSet *set = makeSet({"X", "2", "1.5", "Y", "1", "Z", "A", "B", "C", "D", "E", "F", "G", "H", "I",
                                   "J", "K", "L", "M", "N"},
                                  1);
    set->sortItems();
    QStringList codes = codesOf(set);
    codes.sort();
    QStringList expected{"X", "2", "1.5", "Y", "1", "Z", "A", "B", "C", "D", "E", "F", "G", "H", "I",
                         "J", "K", "L", "M", "N"};
    expected.sort();
    EXPECT_EQ(codes, expected);
    freeSet(set);
}

TEST(CSProDictionary, SortFailureBecomesError101)
{
    TCSProValueSet *set = makeSet({"B", "A"}, 0);
    set->items->append(nullptr); // CompareCodes throws on it
    int number = 0;
    EXPECT_TRUE(kxtest::catchKxError([&] { set->sortItems(); }, &number));
    EXPECT_EQ(number, 101);
    set->items->removeAll(nullptr);
    freeSet(set);
}

// -------------------------------------------------------------- validateItems

TEST(CSProDictionary, ValidateMode0RejectsDecimalCodes)
{
    TCSProValueSet *set = makeSet({"1", "2.5"}, 1);
    EXPECT_FALSE(set->validateItems(0));
    freeSet(set);
}

TEST(CSProDictionary, ValidateMode1RejectsNonIntegerCodes)
{
    TCSProValueSet *set = makeSet({"1", "A"}, 1);
    EXPECT_FALSE(set->validateItems(1));
    EXPECT_TRUE(set->validateItems(0)); // 'A' is not decimal
    freeSet(set);
}

TEST(CSProDictionary, ValidateIsTrueForAlphaValueSetWhateverItsCodes)
{
    TCSProValueSet *set = makeSet({"1", "2.5", "A"}, 0);
    EXPECT_TRUE(set->validateItems(0));
    EXPECT_TRUE(set->validateItems(1));
    freeSet(set);
}

TEST(CSProDictionary, ValidateIsTrueForEmptySetAndOtherModes)
{
    TCSProValueSet empty;
    EXPECT_TRUE(empty.validateItems(0));
    EXPECT_TRUE(empty.validateItems(1));
    TCSProValueSet *set = makeSet({"2.5", "A"}, 1);
    EXPECT_TRUE(set->validateItems(2));
    EXPECT_TRUE(set->validateItems(-1));
    freeSet(set);
}

TEST(CSProDictionary, UnsetCodeU0003IsNotNumeric)
{
    auto *set = new TCSProValueSet;
    set->addItem(new TValueSetItem);
    EXPECT_FALSE(set->validateItems(1));
    EXPECT_TRUE(set->validateItems(0));
    freeSet(set);
}

TEST(CSProDictionary, ValidateOfNullEntryBecomesError101)
{
    TCSProValueSet *set = makeSet({"1"}, 1);
    set->items->append(nullptr);
    int number = 0;
    EXPECT_TRUE(kxtest::catchKxError([&] { set->validateItems(1); }, &number));
    EXPECT_EQ(number, 101);
    set->items->removeAll(nullptr);
    freeSet(set);
}

// -------------------------------------------------------------------- repairs

TEST(CSProDictionary, ItemsAsNumberZeroTurnsEveryNonIntegerIntoZero)
{
    TCSProValueSet *set = makeSet({"1", "2.5", "X"}, 1);
    set->itemsAsNumberZero();
    EXPECT_EQ(codesOf(set), (QStringList{"1", "0", "0"}));
    freeSet(set);
}

TEST(CSProDictionary, ItemsAsNumberZeroLeavesAlphaSetAlone)
{
    TCSProValueSet *set = makeSet({"1", "2.5", "X"}, 0);
    set->itemsAsNumberZero();
    EXPECT_EQ(codesOf(set), (QStringList{"1", "2.5", "X"}));
    freeSet(set);
}

TEST(CSProDictionary, ItemsAsIntegerRoundsDecimalCodes)
{
    TCSProValueSet *set = makeSet({"2.7", "1", "X", ".2"}, 1);
    set->itemsAsInteger();
    EXPECT_EQ(codesOf(set), (QStringList{"3", "1", "X", "0"}));
    freeSet(set);
}

TEST(CSProDictionary, ItemsAsIntegerLeavesAlphaSetAlone)
{
    TCSProValueSet *set = makeSet({"2.7"}, 0);
    set->itemsAsInteger();
    EXPECT_EQ(codesOf(set), (QStringList{"2.7"}));
    freeSet(set);
}

// ------------------------------------------------------------ setValueSetItem

TEST(CSProDictionary, SetValueSetItemInsertsBeforeTheIndex)
{
    TCSProValueSet *set = makeSet({"1", "3"}, 1);
    auto *two = new TValueSetItem;
    two->code = QStringLiteral("2");
    set->setValueSetItem(1, two);
    EXPECT_EQ(codesOf(set), (QStringList{"1", "2", "3"}));
    auto *last = new TValueSetItem;
    last->code = QStringLiteral("4");
    set->setValueSetItem(3, last);
    EXPECT_EQ(codesOf(set), (QStringList{"1", "2", "3", "4"}));
    freeSet(set);
}

TEST(CSProDictionary, SetValueSetItemOutOfRangeIsError211WithIndexAsCharacter)
{
    TCSProValueSet *set = makeSet({"1"}, 1);
    TValueSetItem entry;
    int number = 0;
    QString text;
    QString message;
    EXPECT_TRUE(kxtest::catchKxError([&] { set->setValueSetItem(65, &entry); }, &number, &message, &text));
    EXPECT_EQ(number, 211);
    EXPECT_EQ(text, QStringLiteral("A")); // character code 65
    EXPECT_TRUE(message.contains(QStringLiteral("Unknow or not set error"))) << message.toStdString();
    EXPECT_TRUE(kxtest::catchKxError([&] { set->setValueSetItem(-1, &entry); }, &number));
    EXPECT_EQ(set->getCount(), 1);
    freeSet(set);
}

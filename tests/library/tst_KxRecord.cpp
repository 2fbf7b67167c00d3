#include "model_KelAdmin.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

// Record nodes with their dictionary records; nothing in the tree owns
// anything, so the test keeps every object alive and frees them at the end.
struct Tree
{
    std::vector<std::unique_ptr<TCSProRecord>> infos;
    std::vector<std::unique_ptr<TKxRecord>> nodes;

    TKxRecord *node(const QString &name, const QString &code = QString(), const QString &label = QString())
    {
        auto info = std::make_unique<TCSProRecord>();
        info->recordTypeValue = code;
        auto n = std::make_unique<TKxRecord>();
        n->setName(name);
        n->setLabel(label);
        n->setRecordInfo(info.get());
        infos.push_back(std::move(info));
        nodes.push_back(std::move(n));
        return nodes.back().get();
    }
};

QStringList names(TKxRecord *start, bool brothersOnly)
{
    QStringList out;
    for (TKxRecord *n = start; n; n = brothersOnly ? n->preOrderNextBrother() : n->preOrderNext())
        out << n->getName();
    return out;
}

} // namespace

// ------------------------------------------------------------------ TQuestIndex

TEST(QuestIndex, DefaultsAreZeroAndEmpty)
{
    TQuestIndex q;
    EXPECT_EQ(q.recordTypeStart, 0);
    EXPECT_EQ(q.recordTypeLength, 0);
    EXPECT_EQ(q.status, 0);
    EXPECT_TRUE(q.keyText.isEmpty());
    EXPECT_TRUE(q.assembledText.isEmpty());
    EXPECT_EQ(q.lines, nullptr);
    EXPECT_EQ(q.countLines(), 0);
}

TEST(QuestIndex, RecordValueIsTheCodeColumnsOfTheLine)
{
    QStringList lines{"01H0001", "01P0002"};
    TQuestIndex q;
    q.lines = &lines;
    q.recordTypeStart = 2;
    q.recordTypeLength = 1;
    EXPECT_EQ(q.countLines(), 2);
    EXPECT_EQ(q.getRecordValue(0), QStringLiteral("H"));
    EXPECT_EQ(q.getRecordValue(1), QStringLiteral("P"));
}

TEST(QuestIndex, RecordValueAtLineCountIsEmpty)
{
    QStringList lines{"H1", "P1"};
    TQuestIndex q;
    q.lines = &lines;
    q.recordTypeLength = 1;
    EXPECT_EQ(q.getRecordValue(q.countLines()), QString());
    EXPECT_EQ(q.getRecordValue(100), QString());
}

TEST(QuestIndex, RecordValueOfAnyIndexOnAnEmptyListIsEmpty)
{
    QStringList lines;
    TQuestIndex q;
    q.lines = &lines;
    q.recordTypeLength = 1;
    EXPECT_EQ(q.getRecordValue(0), QString());
    EXPECT_EQ(q.getRecordValue(3), QString());
    TQuestIndex noList;
    EXPECT_EQ(noList.getRecordValue(0), QString());
}

TEST(QuestIndex, NegativeLineIndexGivesEmptyText)
{
    // Below the first line there is no line either.
    QStringList lines{"1abc", "2def"};
    TQuestIndex q;
    q.lines = &lines;
    q.recordTypeLength = 1;
    EXPECT_EQ(q.getRecordValue(-1), QString());
    EXPECT_EQ(q.getRecordValue(0), QStringLiteral("1"));
}

TEST(QuestIndex, ShortLineGivesThePartOfTheCodeThatExists)
{
    QStringList lines{"ABC", "AB", "A"};
    TQuestIndex q;
    q.lines = &lines;
    q.recordTypeStart = 1;
    q.recordTypeLength = 3;
    EXPECT_EQ(q.getRecordValue(0), QStringLiteral("BC"));
    EXPECT_EQ(q.getRecordValue(1), QStringLiteral("B"));
    EXPECT_EQ(q.getRecordValue(2), QString());
}

TEST(QuestIndex, CountRecordsIsExactAndCaseSensitive)
{
    QStringList lines{"H1", "P1", "p2", "P3"};
    TQuestIndex q;
    q.lines = &lines;
    q.recordTypeLength = 1;
    EXPECT_EQ(q.countRecords("P"), 2);
    EXPECT_EQ(q.countRecords("p"), 1);
    EXPECT_EQ(q.countRecords("X"), 0);
}

TEST(QuestIndex, RecordStringAnswersWithTheCodeWhenTheOccurrenceExists)
{
    QStringList lines{"H1", "P1", "P2"};
    TQuestIndex q;
    q.lines = &lines;
    q.recordTypeLength = 1;
    EXPECT_EQ(q.getRecordString("P"), QStringLiteral("P"));
    EXPECT_EQ(q.getRecordString("X"), QString());
    EXPECT_EQ(q.getRecordString("P", 0), QStringLiteral("P"));
    EXPECT_EQ(q.getRecordString("P", 1), QStringLiteral("P"));
    EXPECT_EQ(q.getRecordString("P", 2), QString());
}

// ------------------------------------------------------------------ tree shape

TEST(KxRecord, FreshNodeHasNoLinksAndNeutralFields)
{
    TKxRecord r;
    EXPECT_EQ(r.getFirstChild(), nullptr);
    EXPECT_EQ(r.getParent(), nullptr);
    EXPECT_EQ(r.getNextBrother(), nullptr);
    EXPECT_EQ(r.getRecordReferences(), nullptr);
    EXPECT_EQ(r.getRecordInfo(), nullptr);
    EXPECT_EQ(r.getLevel(), -1);
    EXPECT_EQ(r.getMaxOccurrences(), 0);
    EXPECT_FALSE(r.getRequired());
    EXPECT_TRUE(r.getName().isEmpty());
}

TEST(KxRecord, NodeCaptionIsNameAndLabelInParentheses)
{
    TKxRecord r;
    r.setName("H");
    r.setLabel("Household");
    EXPECT_EQ(r.nodeCaption(), QStringLiteral("H (Household)"));
}

TEST(KxRecord, NodeCaptionWithoutLabelIsTheName)
{
    TKxRecord r;
    r.setName("H");
    EXPECT_EQ(r.nodeCaption(), QStringLiteral("H"));
}

TEST(KxRecord, AddChildAppendsAsLastChildAndSetsParent)
{
    Tree t;
    TKxRecord *root = t.node("R");
    TKxRecord *a = t.node("A");
    TKxRecord *b = t.node("B");
    root->addChild(a);
    root->addChild(b);
    EXPECT_EQ(root->getFirstChild(), a);
    EXPECT_EQ(a->getNextBrother(), b);
    EXPECT_EQ(a->getParent(), root);
    EXPECT_EQ(b->getParent(), root);
}

TEST(KxRecord, AddBrotherAppendsAfterLastSiblingWithItsParent)
{
    Tree t;
    TKxRecord *root = t.node("R");
    TKxRecord *a = t.node("A");
    TKxRecord *b = t.node("B");
    TKxRecord *c = t.node("C");
    root->addChild(a);
    a->addBrother(b);
    a->addBrother(c);
    EXPECT_EQ(a->getNextBrother(), b);
    EXPECT_EQ(b->getNextBrother(), c);
    EXPECT_EQ(c->getParent(), root);
}

TEST(KxRecord, InsertChildGoesBeforeTheGivenChild)
{
    Tree t;
    TKxRecord *root = t.node("R");
    TKxRecord *a = t.node("A");
    TKxRecord *c = t.node("C");
    TKxRecord *b = t.node("B");
    TKxRecord *first = t.node("F");
    root->addChild(a);
    root->addChild(c);
    root->insertChild(c, b);
    root->insertChild(a, first);
    EXPECT_EQ(names(root->getFirstChild(), true), QStringList({"F", "A", "B", "C"}));
    EXPECT_EQ(b->getParent(), root);
    EXPECT_EQ(root->getFirstChild(), first);
}

TEST(KxRecord, InsertChildWithNullPositionGoesToTheEnd)
{
    Tree t;
    TKxRecord *root = t.node("R");
    TKxRecord *a = t.node("A");
    TKxRecord *z = t.node("Z");
    root->addChild(a);
    root->insertChild(nullptr, z);
    EXPECT_EQ(a->getNextBrother(), z);
    EXPECT_EQ(z->getParent(), root);
}

TEST(KxRecord, InsertChildBeforeANodeThatIsNoChildGoesToTheEnd)
{
    // A position that is not among this node's children is treated like no
    // position: the child is appended.
    Tree t;
    TKxRecord *root = t.node("R");
    TKxRecord *a = t.node("A");
    TKxRecord *stranger = t.node("S");
    TKxRecord *z = t.node("Z");
    root->addChild(a);
    root->insertChild(stranger, z);
    EXPECT_EQ(names(root->getFirstChild(), true), QStringList({"A", "Z"}));
    EXPECT_EQ(z->getParent(), root);
    EXPECT_EQ(stranger->getNextBrother(), nullptr);
}

TEST(KxRecord, NullNodesAreNotLinked)
{
    Tree t;
    TKxRecord *root = t.node("R");
    TKxRecord *a = t.node("A");
    root->addChild(nullptr);
    EXPECT_EQ(root->getFirstChild(), nullptr);
    root->addChild(a);
    a->addBrother(nullptr);
    root->insertChild(a, nullptr);
    root->insertChild(nullptr, nullptr);
    EXPECT_EQ(root->getFirstChild(), a);
    EXPECT_EQ(a->getNextBrother(), nullptr);
}

TEST(KxRecord, RetrieveRecordSearchesDepthFirst)
{
    Tree t;
    TKxRecord *root = t.node("R");
    TKxRecord *h = t.node("H");
    TKxRecord *p = t.node("P");
    TKxRecord *d = t.node("D");
    TKxRecord *x = t.node("X");
    root->addChild(h);
    h->addChild(p);
    p->addChild(x);
    h->addBrother(d);
    EXPECT_EQ(root->retrieveRecord("R"), root);
    EXPECT_EQ(root->retrieveRecord("X"), x);
    EXPECT_EQ(root->retrieveRecord("D"), d);
    EXPECT_EQ(root->retrieveRecord("nothing"), nullptr);
    EXPECT_EQ(root->retrieveRecord("x"), nullptr);
}

TEST(KxRecord, RetrieveRecordFindsTheFirstNodeOfADuplicatedNameInPreOrder)
{
    Tree t;
    TKxRecord *root = t.node("R");
    TKxRecord *a = t.node("A");
    TKxRecord *deep = t.node("N");
    TKxRecord *later = t.node("N");
    root->addChild(a);
    a->addChild(deep);
    root->addChild(later);
    EXPECT_EQ(root->retrieveRecord("N"), deep);
}

TEST(KxRecord, RetrieveCommonFindsANodeNamedCOMMON)
{
    Tree t;
    TKxRecord *root = t.node("R");
    TKxRecord *common = t.node("COMMON");
    root->addChild(common);
    EXPECT_EQ(root->retrieveRecord("Common"), common);
    EXPECT_EQ(root->retrieveRecord("COMMON"), common);
    EXPECT_EQ(root->retrieveRecord("common"), nullptr);
}

TEST(KxRecord, RetrieveCOMMONDoesNotFindANodeNamedCommon)
{
    Tree t;
    TKxRecord *root = t.node("R");
    TKxRecord *common = t.node("Common");
    root->addChild(common);
    EXPECT_EQ(root->retrieveRecord("Common"), common);
    EXPECT_EQ(root->retrieveRecord("COMMON"), nullptr);
    EXPECT_EQ(root->retrieveRecord("common"), nullptr);
}

TEST(KxRecord, PreOrderWalkVisitsChildrenBeforeBrothers)
{
    Tree t;
    TKxRecord *root = t.node("R");
    TKxRecord *h = t.node("H");
    TKxRecord *p = t.node("P");
    TKxRecord *o = t.node("O");
    TKxRecord *d = t.node("D");
    root->addChild(h);
    h->addChild(p);
    p->addBrother(o);
    root->addChild(d);
    EXPECT_EQ(names(root, false), QStringList({"R", "H", "P", "O", "D"}));
    EXPECT_EQ(o->preOrderNext(), d);
    EXPECT_EQ(d->preOrderNext(), nullptr);
}

TEST(KxRecord, PreOrderNextBrotherSkipsChildren)
{
    Tree t;
    TKxRecord *root = t.node("R");
    TKxRecord *h = t.node("H");
    TKxRecord *p = t.node("P");
    TKxRecord *d = t.node("D");
    root->addChild(h);
    h->addChild(p);
    root->addChild(d);
    EXPECT_EQ(h->preOrderNextBrother(), d);
    EXPECT_EQ(p->preOrderNextBrother(), d);
    EXPECT_EQ(d->preOrderNextBrother(), nullptr);
    EXPECT_EQ(root->preOrderNextBrother(), nullptr);
}

TEST(KxRecord, DeleteChildUnlinksTheChildAndTheNextBrotherTakesItsPlace)
{
    Tree t;
    TKxRecord *root = t.node("R");
    TKxRecord *a = t.node("A");
    TKxRecord *b = t.node("B");
    TKxRecord *c = t.node("C");
    root->addChild(a);
    root->addChild(b);
    root->addChild(c);
    root->deleteChild("B", true);
    EXPECT_EQ(names(root->getFirstChild(), true), QStringList({"A", "C"}));
    EXPECT_EQ(b->getNextBrother(), nullptr);
    root->deleteChild("A", false);
    EXPECT_EQ(root->getFirstChild(), c);
    EXPECT_EQ(a->getNextBrother(), nullptr);
}

// Deleting a name that is absent or not a direct child is a caller error;
// this library answers it by leaving the tree unchanged.
TEST(KxRecord, DeleteChildOfAbsentNameLeavesTheTreeUnchanged)
{
    Tree t;
    TKxRecord *root = t.node("R");
    TKxRecord *a = t.node("A");
    TKxRecord *b = t.node("B");
    root->addChild(a);
    root->addChild(b);
    root->deleteChild("Z");
    EXPECT_EQ(names(root, false), QStringList({"R", "A", "B"}));
}

TEST(KxRecord, DeleteChildOfAGrandchildLeavesTheTreeUnchanged)
{
    Tree t;
    TKxRecord *root = t.node("R");
    TKxRecord *a = t.node("A");
    TKxRecord *g = t.node("G");
    TKxRecord *h = t.node("H");
    root->addChild(a);
    a->addChild(g);
    g->addBrother(h);
    root->deleteChild("G");
    EXPECT_EQ(names(root, false), QStringList({"R", "A", "G", "H"}));
    EXPECT_EQ(g->getNextBrother(), h);
}

TEST(KxRecord, KeysAreAlwaysEmpty)
{
    TKxRecord r;
    EXPECT_EQ(r.getKeyValue("H0001 anything"), QString());
    EXPECT_EQ(r.getParentKeyValue("P0001 anything"), QString());
}

TEST(KxRecord, RecordReferencesAreAddedAndRemovedByPointer)
{
    TKxRecord r;
    TKxRecordReference a(nullptr, "P");
    TKxRecordReference b(nullptr, "D");
    TKxRecordReference absent;
    r.removeRecordReferenceFromList(&absent); // no list yet: nothing happens
    r.addRecordReferenceToList(&a);
    r.addRecordReferenceToList(&b);
    r.addRecordReferenceToList(&a);
    ASSERT_NE(r.getRecordReferences(), nullptr);
    EXPECT_EQ(r.getRecordReferences()->count(), 3);
    r.removeRecordReferenceFromList(&absent);
    EXPECT_EQ(r.getRecordReferences()->count(), 3);
    r.removeRecordReferenceFromList(&a);
    EXPECT_EQ(*r.getRecordReferences(), QList<TKxRecordReference *>({&b, &a}));
}

TEST(KxRecord, RecordTypeCodeIsTheDictionaryRecordTypeValue)
{
    TCSProRecord info;
    info.recordTypeValue = "2";
    TKxRecord r;
    EXPECT_EQ(r.recordTypeCode(), QString());
    r.setRecordInfo(&info);
    EXPECT_EQ(r.recordTypeCode(), QStringLiteral("2"));
}

// ------------------------------------------------------- questionnaire check

namespace {

// Household (1) above persons (2) and a dwelling record (3); code in column 0.
struct Census
{
    Tree t;
    TKxRecord *house;
    TKxRecord *person;
    TKxRecord *dwelling;
    QStringList lines;
    TQuestIndex q;

    explicit Census(const QStringList &l)
        : lines(l)
    {
        house = t.node("HOUSE", "1");
        person = t.node("PERSON", "2");
        dwelling = t.node("DWELL", "3");
        house->addChild(person);
        house->addChild(dwelling);
        q.lines = &lines;
        q.recordTypeStart = 0;
        q.recordTypeLength = 1;
        q.assembledText = "REC";
    }
};

} // namespace

TEST(QuestionnaireCheck, ValidQuestionnaireGivesOneAssembledLinePerRecordLine)
{
    Census c({"1 0001 household", "2 0001 01 person", "2 0001 02 person", "3 0001 dwelling"});
    const QString result = c.house->checkQuestionnaire(&c.q);
    EXPECT_EQ(result, QStringLiteral("REC\r\nREC\r\nREC\r\nREC\r\n"));
    EXPECT_EQ(c.q.status, 0);
}

TEST(QuestionnaireCheck, EmptyKeysMakeEveryChildLineMatchEveryParent)
{
    // Two households: each takes all three child lines, since keys are empty.
    Census c({"1 0001", "2 0001 01", "1 0002", "2 0002 01", "3 0002"});
    const QString result = c.house->checkQuestionnaire(&c.q);
    EXPECT_EQ(result, QString("REC\r\n").repeated(2 * (1 + 3)));
    EXPECT_EQ(c.q.status, 0);
}

TEST(QuestionnaireCheck, RootCodeInNoLineGivesEmptyResultAndLeavesStatus)
{
    Census c({"2 0001 01", "3 0001"});
    c.q.status = 9;
    EXPECT_EQ(c.house->checkQuestionnaire(&c.q), QString());
    EXPECT_EQ(c.q.status, 9);
}

TEST(QuestionnaireCheck, MissingRecordCodeOnCountedLinesSetsStatus6)
{
    // A root without a record-type code counts the lines whose code is
    // missing (too short to reach the code column); such an occurrence reads
    // back empty, which the check reports as a missing record.
    Census c({"", "2 0001 01"});
    TCSProRecord noCode;
    c.house->setRecordInfo(&noCode);
    EXPECT_EQ(c.house->checkQuestionnaire(&c.q), QString());
    EXPECT_EQ(c.q.status, 6);
}

TEST(QuestionnaireCheck, MissingRecordInfoBehavesAsAnEmptyCode)
{
    Census c({"1 0001", ""});
    c.house->setRecordInfo(nullptr);
    EXPECT_EQ(c.house->checkQuestionnaire(&c.q), QString());
    EXPECT_EQ(c.q.status, 6);
}

TEST(QuestionnaireCheck, EmptyAssemblyEndsTheRootCheckWithEmptyResult)
{
    Census c({"1 0001", "2 0001 01"});
    c.q.assembledText.clear();
    EXPECT_EQ(c.house->checkQuestionnaire(&c.q), QString());
    EXPECT_EQ(c.q.status, 0);
}

TEST(QuestionnaireCheck, ChildCheckWalksTheBrothersWithTheSameParentKey)
{
    Census c({"1 0001", "3 0001", "2 0001 01", "3 0002"});
    EXPECT_EQ(c.person->checkQuestionnaire(&c.q, QString()), QStringLiteral("REC\r\nREC\r\nREC\r\n"));
    // The last brother alone covers its own lines only.
    EXPECT_EQ(c.dwelling->checkQuestionnaire(&c.q, QString()), QStringLiteral("REC\r\nREC\r\n"));
}

TEST(QuestionnaireCheck, ChildCheckIgnoresLinesOfAParentKeyThatDoesNotMatch)
{
    // Line keys are always empty, so a non-empty parent key matches no line.
    Census c({"1 0001", "2 0001 01", "3 0001"});
    EXPECT_EQ(c.person->checkQuestionnaire(&c.q, "0001"), QString());
}

TEST(QuestionnaireCheck, ChildCheckWithEmptyAssemblyGivesEmptyResult)
{
    Census c({"1 0001", "2 0001 01", "3 0001"});
    c.q.assembledText.clear();
    EXPECT_EQ(c.person->checkQuestionnaire(&c.q, QString()), QString());
}

TEST(QuestionnaireCheck, AssembleRecordWithKeyReturnsTheAssembledTextUnchanged)
{
    TKxRecord r;
    TQuestIndex q;
    q.assembledText = "any text";
    EXPECT_EQ(r.assembleRecord(&q, "key"), QStringLiteral("any text"));
    EXPECT_EQ(r.assembleRecord(&q, QString()), QStringLiteral("any text"));
}

TEST(QuestionnaireCheck, UniquenessTestWithTwoLinesWithoutCodeSetsStatus4)
{
    Census c({"1 0001", "", "2 0001 01", ""});
    TKxRecordReference ref(c.person, "2");
    c.house->addRecordReferenceToList(&ref);
    EXPECT_EQ(c.house->assembleRecord(&c.q), QString());
    EXPECT_EQ(c.q.status, 4);
}

TEST(QuestionnaireCheck, UniquenessTestDoesNotConsultTheReferenceCodes)
{
    // Two person lines under one reference for code 2 do not trip the test:
    // only lines without a code are counted.
    Census c({"1 0001", "2 0001 01", "2 0001 02", ""});
    TKxRecordReference ref(c.person, "2");
    c.house->addRecordReferenceToList(&ref);
    EXPECT_EQ(c.house->assembleRecord(&c.q), QString());
    EXPECT_EQ(c.q.status, 0);
}

TEST(QuestionnaireCheck, UniquenessTestWithoutReferencesCountsNothing)
{
    Census c({"", "", ""});
    EXPECT_EQ(c.house->assembleRecord(&c.q), QString());
    EXPECT_EQ(c.q.status, 0);
}

TEST(QuestionnaireCheck, RootWithoutChildrenGivesOneAssembledLinePerOccurrence)
{
    Tree t;
    TKxRecord *only = t.node("HOUSE", "1");
    QStringList lines{"1 0001", "2 0001 01", "1 0002"};
    TQuestIndex q;
    q.lines = &lines;
    q.recordTypeLength = 1;
    q.assembledText = "REC";
    EXPECT_EQ(only->checkQuestionnaire(&q), QStringLiteral("REC\r\nREC\r\n"));
    EXPECT_EQ(q.status, 0);
}

TEST(QuestionnaireCheck, ChildCheckDescendsToTheChildsOwnChildren)
{
    // House (1) > person (2) > activity (4): each person line is followed by
    // the part of its own first child, which takes every activity line.
    Census c({"1 0001", "2 0001 01", "4 0001 01 a", "2 0001 02", "4 0001 02 a", "4 0001 02 b"});
    Tree extra;
    TKxRecord *activity = extra.node("ACTIVITY", "4");
    c.person->addChild(activity);
    c.q.assembledText = "R";
    // Per person line: R, then R for each of the three activity lines.
    const QString perPerson = QString("R\r\n").repeated(1 + 3);
    EXPECT_EQ(c.person->checkQuestionnaire(&c.q, QString()), perPerson.repeated(2));
    EXPECT_EQ(c.house->checkQuestionnaire(&c.q), QStringLiteral("R\r\n") + perPerson.repeated(2));
}

TEST(QuestionnaireCheck, NoIndexGivesTheEmptyText)
{
    Census c({"1 0001", "2 0001 01"});
    EXPECT_EQ(c.house->checkQuestionnaire(nullptr), QString());
    EXPECT_EQ(c.person->checkQuestionnaire(nullptr, QString()), QString());
    EXPECT_EQ(c.house->assembleRecord(nullptr), QString());
    EXPECT_EQ(c.house->assembleRecord(nullptr, QStringLiteral("key")), QString());
}

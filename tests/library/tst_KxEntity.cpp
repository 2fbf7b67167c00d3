#include "model_KelAdmin.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <memory>

// Stand-in for the database engine's entity; the model only holds pointers.
class TKelEntity
{
public:
    int id = 0;
};

namespace {

// Model objects are released by the application; the tests release what
// they allocate through this helper.
void release(TKxEntity *entity)
{
    std::unique_ptr<TKxEntity> owner(entity);
}

} // namespace

// ---- TKxVariable ----------------------------------------------------------

TEST(TKxVariable, DefaultHasLevelOneAndEveryStringEmpty)
{
    TKxVariable v;
    EXPECT_EQ(v.getLevel(), 1);
    const QString strings[] = {v.getEntity(), v.getPath(), v.getStorage(), v.getFullName(), v.getName(),
                               v.getAlias(), v.getLabel(), v.getGroup(), v.getVarType(), v.getDocumentation(),
                               v.getRecType(), v.getField(), v.getDataProvider(), v.getDatasetID(),
                               v.getFileName()};
    for (const QString &s : strings)
        EXPECT_TRUE(s.isEmpty());
}

TEST(TKxVariable, DefaultNumbersFlagsListsAndMetadata)
{
    TKxVariable v;
    EXPECT_EQ(v.getStart(), 0);
    EXPECT_EQ(v.getTag(), 0);
    EXPECT_EQ(v.getNotappl(), 0);
    EXPECT_EQ(v.getMissing(), 0);
    EXPECT_EQ(v.getDecimals(), 0);
    EXPECT_EQ(v.getSize(), 0);
    EXPECT_EQ(v.getFieldSize(), 0);
    EXPECT_EQ(v.getFieldRelativePosition(), 0);
    EXPECT_EQ(v.getChecked(), 0);
    EXPECT_FALSE(v.getLocal());
    EXPECT_FALSE(v.getConsistency());
    ASSERT_NE(v.getRange(), nullptr);
    EXPECT_TRUE(v.getRange()->isEmpty());
    ASSERT_NE(v.getValueLabelElementList(), nullptr);
    EXPECT_TRUE(v.getValueLabelElementList()->isEmpty());
    ASSERT_NE(v.getMetadataVariables(), nullptr);
    EXPECT_TRUE(v.getMetadataVariables()->getRecord().isEmpty());
    EXPECT_FALSE(v.getMetadataVariables()->getLookup());
    const VarWipChoice wip = v.getVarWipChoice();
    EXPECT_TRUE(wip.getRecType().isEmpty());
    EXPECT_TRUE(wip.getField().isEmpty());
    EXPECT_TRUE(wip.getDataProvider().isEmpty());
    EXPECT_TRUE(wip.getFormat().isEmpty());
    EXPECT_EQ(wip.getStart(), 0);
}

TEST(TKxVariable, SetCheckedStoresWhetherTheArgumentIsNonZero)
{
    TKxVariable v;
    v.setChecked(2);
    EXPECT_EQ(v.getChecked(), 1);
    v.setChecked(0);
    EXPECT_EQ(v.getChecked(), 0);
    v.setChecked(-5);
    EXPECT_EQ(v.getChecked(), 1);
}

TEST(TKxVariable, TrpMissingIsTheMissingField)
{
    TKxVariable v;
    v.setMissing(9);
    EXPECT_EQ(v.getTrpMissing(), 9);
}

TEST(TKxVariable, QStrSettersDoWhatThePlainSettersDo)
{
    TKxVariable v;
    v.setQStrEntity(QStringLiteral("PERSON"));
    v.setQStrPath(QStringLiteral("p"));
    v.setQStrStorage(QStringLiteral("s"));
    v.setQStrFullName(QStringLiteral("PERSON.AGE"));
    v.setQStrName(QStringLiteral("AGE"));
    v.setQStrAlias(QStringLiteral("age"));
    v.setQStrLabel(QStringLiteral("Age"));
    v.setQStrGroup(QStringLiteral("g"));
    v.setQStrVarType(QStringLiteral("INTEGER"));
    v.setQStrDocumentation(QStringLiteral("doc"));
    v.setQStrRecType(QStringLiteral("2"));
    v.setQStrField(QStringLiteral("P03"));
    v.setQStrDataProvider(QStringLiteral("CSPRO"));
    v.setQStrDatasetID(QStringLiteral("ds"));
    v.setQStrFileName(QStringLiteral("f.dat"));
    EXPECT_EQ(v.getEntity(), QStringLiteral("PERSON"));
    EXPECT_EQ(v.getPath(), QStringLiteral("p"));
    EXPECT_EQ(v.getStorage(), QStringLiteral("s"));
    EXPECT_EQ(v.getFullName(), QStringLiteral("PERSON.AGE"));
    EXPECT_EQ(v.getName(), QStringLiteral("AGE"));
    EXPECT_EQ(v.getAlias(), QStringLiteral("age"));
    EXPECT_EQ(v.getLabel(), QStringLiteral("Age"));
    EXPECT_EQ(v.getGroup(), QStringLiteral("g"));
    EXPECT_EQ(v.getVarType(), QStringLiteral("INTEGER"));
    EXPECT_EQ(v.getDocumentation(), QStringLiteral("doc"));
    EXPECT_EQ(v.getRecType(), QStringLiteral("2"));
    EXPECT_EQ(v.getField(), QStringLiteral("P03"));
    EXPECT_EQ(v.getDataProvider(), QStringLiteral("CSPRO"));
    EXPECT_EQ(v.getDatasetID(), QStringLiteral("ds"));
    EXPECT_EQ(v.getFileName(), QStringLiteral("f.dat"));
}

TEST(TKxVariable, AssignmentSharesTheRangeList)
{
    TKxVariable first;
    TKxVariable second;
    second = first;
    Range range;
    range.setRangeMin(1);
    range.setRangeMax(9);
    first.addItemRange(&range);
    ASSERT_EQ(second.getRange()->size(), 1);
    EXPECT_EQ(second.getRange()->at(0), &range);
    EXPECT_EQ(second.getRange()->at(0)->getRangeMax(), 9);
}

TEST(TKxVariable, CopySharesValueLabelsAndMetadataButNotStrings)
{
    TKxVariable original;
    original.setName(QStringLiteral("AGE"));
    TKxVariable copy(original);
    ValueLabelElement element;
    element.setValue(QStringLiteral("1"));
    element.setLabel(QStringLiteral("Yes"));
    original.addValueLabelElement(&element);
    original.getMetadataVariables()->setRecord(QStringLiteral("PERSON"));
    original.setName(QStringLiteral("SEX"));

    EXPECT_EQ(copy.getValueLabelElementList(), original.getValueLabelElementList());
    ASSERT_EQ(copy.getValueLabelElementList()->size(), 1);
    EXPECT_EQ(copy.getValueLabelElementList()->at(0)->getLabel(), QStringLiteral("Yes"));
    EXPECT_EQ(copy.getMetadataVariables(), original.getMetadataVariables());
    EXPECT_EQ(copy.getMetadataVariables()->getRecord(), QStringLiteral("PERSON"));
    EXPECT_EQ(copy.getName(), QStringLiteral("AGE"));
}

// ---- Small value classes --------------------------------------------------

TEST(MetadataVariables, DefaultsAndRangeList)
{
    MetadataVariables m;
    EXPECT_TRUE(m.getRecord().isEmpty());
    EXPECT_TRUE(m.getField().isEmpty());
    EXPECT_FALSE(m.getLookup());
    ASSERT_NE(m.getRange(), nullptr);
    EXPECT_TRUE(m.getRange()->isEmpty());
    Range r;
    m.addItemRange(&r);
    EXPECT_EQ(m.getRange()->size(), 1);
    auto *replacement = new QList<Range *>;
    m.setRange(replacement);
    EXPECT_EQ(m.getRange(), replacement);
    delete replacement;
}

TEST(VarWipChoice, AccessorsRoundTrip)
{
    VarWipChoice w;
    w.setRecType(QStringLiteral("1"));
    w.setField(QStringLiteral("F"));
    w.setDataProvider(QStringLiteral("CSPRO"));
    w.setStart(12);
    w.setFormat(QStringLiteral("%d"));
    EXPECT_EQ(w.getRecType(), QStringLiteral("1"));
    EXPECT_EQ(w.getField(), QStringLiteral("F"));
    EXPECT_EQ(w.getDataProvider(), QStringLiteral("CSPRO"));
    EXPECT_EQ(w.getStart(), 12);
    EXPECT_EQ(w.getFormat(), QStringLiteral("%d"));
}

// ---- StructVariableItem ---------------------------------------------------

TEST(StructVariableItem, SetDataSharesTheListsOfTheVariable)
{
    StructVariableItem item;
    TKxVariable v;
    v.setName(QStringLiteral("AGE"));
    item.setData(v);
    Range r;
    v.addItemRange(&r);
    const TKxVariable data = item.getData();
    EXPECT_EQ(data.getName(), QStringLiteral("AGE"));
    EXPECT_EQ(data.getRange(), v.getRange());
    EXPECT_EQ(data.getRange()->size(), 1);
}

TEST(StructVariableItem, ChildrenStartEmptyAndAreAppended)
{
    StructVariableItem root;
    ASSERT_NE(root.getChildren(), nullptr);
    EXPECT_TRUE(root.getChildren()->isEmpty());
    StructVariableItem child;
    StructVariableItem *childPointer = &child;
    root.addChildren(childPointer);
    ASSERT_EQ(root.getChildren()->size(), 1);
    EXPECT_EQ(root.getChildren()->at(0), &child);
}

// ---- TKxEntity ------------------------------------------------------------

TEST(TKxEntity, Defaults)
{
    TKxEntity e;
    EXPECT_TRUE(e.getName().isEmpty());
    EXPECT_TRUE(e.getAlias().isEmpty());
    EXPECT_TRUE(e.getLabel().isEmpty());
    EXPECT_TRUE(e.getParent().isEmpty());
    EXPECT_TRUE(e.getFileName().isEmpty());
    EXPECT_TRUE(e.getRecType().isEmpty());
    EXPECT_TRUE(e.getPath().isEmpty());
    EXPECT_FALSE(e.getSelectable());
    EXPECT_FALSE(e.getSequence());
    EXPECT_FALSE(e.getSdc());
    EXPECT_FALSE(e.getSensitiveEntity());
    EXPECT_FALSE(e.getIsvirtual());
    EXPECT_FALSE(e.getCheckDelete());
    EXPECT_EQ(e.getTag(), 0);
    ASSERT_NE(e.getChildren(), nullptr);
    EXPECT_TRUE(e.getChildren()->isEmpty());
    ASSERT_NE(e.getVariables(), nullptr);
    EXPECT_TRUE(e.getVariables()->isEmpty());
}

TEST(TKxEntity, ToStringIsTheNameInUtf8)
{
    TKxEntity e;
    e.setQStrName(QString::fromUtf8("Regi\xC3\xA3o"));
    EXPECT_EQ(e.toString(), std::string("Regi\xC3\xA3o"));
}

TEST(TKxEntity, QStrSettersAndListAppenders)
{
    TKxEntity e;
    e.setQStrAlias(QStringLiteral("hh"));
    e.setQStrLabel(QStringLiteral("Households"));
    e.setQStrFileName(QStringLiteral("hh.dat"));
    e.setQStrDocumentation(QStringLiteral("doc"));
    e.setParent(QStringLiteral("ROOT"));
    EXPECT_EQ(e.getAlias(), QStringLiteral("hh"));
    EXPECT_EQ(e.getLabel(), QStringLiteral("Households"));
    EXPECT_EQ(e.getFileName(), QStringLiteral("hh.dat"));
    EXPECT_EQ(e.getDocumentationEntity(), QStringLiteral("doc"));
    EXPECT_EQ(e.getParent(), QStringLiteral("ROOT"));
    TKxEntity child;
    TKxVariable v;
    e.addChildren(&child);
    e.addVariables(&v);
    EXPECT_EQ(e.getChildren()->value(0), &child);
    EXPECT_EQ(e.getVariables()->value(0), &v);
    e.setNrElements(5000000000LL);
    EXPECT_EQ(e.getNrElements(), 5000000000LL);
}

TEST(TKxEntityFind, LeafWithAnotherNameGivesNullEntityPlaceholder)
{
    TKxEntity leaf;
    leaf.setName(QStringLiteral("PERSON"));
    TKxEntity *found = leaf.findEntity(QStringLiteral("HOUSING"));
    ASSERT_NE(found, nullptr);
    EXPECT_NE(found, &leaf);
    EXPECT_EQ(found->getName(), QStringLiteral("nullEntity"));
    release(found);
}

TEST(TKxEntityFind, GrandchildIsFound)
{
    TKxEntity root, child, grandchild;
    root.setName(QStringLiteral("ROOT"));
    child.setName(QStringLiteral("HOUSEHOLD"));
    grandchild.setName(QStringLiteral("PERSON"));
    root.addChildren(&child);
    child.addChildren(&grandchild);
    EXPECT_EQ(root.findEntity(QStringLiteral("PERSON")), &grandchild);
}

TEST(TKxEntityFind, ItselfIsFoundFirst)
{
    TKxEntity root, child;
    root.setName(QStringLiteral("X"));
    child.setName(QStringLiteral("X"));
    root.addChildren(&child);
    EXPECT_EQ(root.findEntity(QStringLiteral("X")), &root);
}

TEST(TKxEntityFind, DepthFirstInListOrder)
{
    TKxEntity root, a, b, aChild;
    root.setName(QStringLiteral("ROOT"));
    a.setName(QStringLiteral("A"));
    b.setName(QStringLiteral("TARGET"));
    aChild.setName(QStringLiteral("TARGET"));
    root.addChildren(&a);
    root.addChildren(&b);
    a.addChildren(&aChild);
    // The first child's subtree is searched before the second child.
    EXPECT_EQ(root.findEntity(QStringLiteral("TARGET")), &aChild);
}

TEST(TKxEntityFind, NamesAreCaseSensitive)
{
    TKxEntity root;
    root.setName(QStringLiteral("Person"));
    TKxEntity *found = root.findEntity(QStringLiteral("person"));
    EXPECT_EQ(found->getName(), QStringLiteral("nullEntity"));
    release(found);
}

TEST(TKxEntityFind, EntityListedBelowItselfDoesNotLoop)
{
    TKxEntity root;
    root.setName(QStringLiteral("ROOT"));
    root.addChildren(&root);
    root.addChildren(nullptr);
    TKxEntity *found = root.findEntity(QStringLiteral("NONE"));
    EXPECT_EQ(found->getName(), QStringLiteral("nullEntity"));
    release(found);
}

TEST(TKxEntityFind, EntityWithoutAChildListIsALeaf)
{
    // setChildren may take the child list away; such an entity has no subtree.
    TKxEntity root, bare, target;
    root.setName(QStringLiteral("ROOT"));
    bare.setName(QStringLiteral("BARE"));
    target.setName(QStringLiteral("TARGET"));
    QList<TKxEntity *> *list = bare.getChildren();
    bare.setChildren(nullptr);
    root.addChildren(&bare);
    root.addChildren(&target);
    EXPECT_EQ(root.findEntity(QStringLiteral("TARGET")), &target);
    EXPECT_EQ(root.findEntity(QStringLiteral("BARE")), &bare);
    TKxEntity *found = bare.findEntity(QStringLiteral("TARGET"));
    EXPECT_EQ(found->getName(), QStringLiteral("nullEntity"));
    release(found);
    bare.setChildren(list);
}

// ---- SelectionTreeUnit ----------------------------------------------------

TEST(SelectionTreeUnit, DefaultHasCounterOneLevelZeroUncheckedAndInvalidIndex)
{
    SelectionTreeUnit unit;
    EXPECT_EQ(unit.getCounter(), 1);
    EXPECT_EQ(unit.getLevel(), 0);
    EXPECT_EQ(unit.getUnitState(), Qt::Unchecked);
    EXPECT_EQ(static_cast<int>(unit.getUnitState()), 0);
    EXPECT_FALSE(unit.getIndex().isValid());
    EXPECT_EQ(unit.getIndex().row(), -1);
    EXPECT_EQ(unit.getIndex().column(), -1);
}

TEST(SelectionTreeUnit, OtherDefaults)
{
    SelectionTreeUnit unit;
    EXPECT_EQ(static_cast<int>(unit.getUnitView()), 1);
    EXPECT_FALSE(unit.getExpanded());
    EXPECT_EQ(unit.getChild(), nullptr);
    EXPECT_EQ(unit.getParent(), nullptr);
    EXPECT_TRUE(unit.getCode().isEmpty());
    EXPECT_TRUE(unit.getCodeEntity().isEmpty());
    EXPECT_TRUE(unit.getName().isEmpty());
    EXPECT_TRUE(unit.getArea().first.empty());
    EXPECT_TRUE(unit.getArea().second.empty());
    EXPECT_TRUE(unit.getChildAreas().empty());
    EXPECT_TRUE(unit.getInfoProperties().isEmpty());
    ASSERT_NE(unit.getChildren(), nullptr);
    EXPECT_TRUE(unit.getChildren()->isEmpty());
}

TEST(SelectionTreeUnit, HoldsEnginePointersAreasAndChildren)
{
    TKelEntity engineChild, engineParent;
    SelectionTreeUnit unit, sub;
    unit.setChild(&engineChild);
    unit.setParent(&engineParent);
    unit.setArea({"01", "North"});
    unit.setChildAreas({{"0101", "Coast"}, {"0102", "Hills"}});
    unit.addChildren(&sub);
    EXPECT_EQ(unit.getChild(), &engineChild);
    EXPECT_EQ(unit.getParent(), &engineParent);
    EXPECT_EQ(unit.getArea(), SelectionTreeUnit::Area("01", "North"));
    const std::vector<SelectionTreeUnit::Area> areas = unit.getChildAreas();
    ASSERT_EQ(areas.size(), 2u);
    EXPECT_EQ(areas[1].second, "Hills");
    EXPECT_EQ(unit.getChildren()->value(0), &sub);
}

#ifndef KXENTITY_H
#define KXENTITY_H

#include "model_kelAdmin_export.h"

#include <QList>
#include <QModelIndex>
#include <QPair>
#include <QString>

#include <string>
#include <utility>
#include <vector>

class TKxVariable;
class TKelEntity; // the database engine's entity; only held here

/*
 * Value classes of the database model. List members are pointers to lists
 * that the constructors allocate empty; destructors free only the object's
 * own strings and numbers, and copies share the lists. The application frees
 * lists and elements.
 */

//! How a unit of the area-selection tree is shown.
enum eSelectionView {
    eSelectionHidden = 0,
    eSelectionShown = 1,
    eSelectionExpanded = 2
};

/*! \brief One level of the database hierarchy (households, persons, ...)
 * with its child entities and variables. */
class MODEL_KELADMIN_EXPORT TKxEntity
{
public:
    TKxEntity();

    //! The name as UTF-8.
    virtual std::string toString();

    /*! Depth-first search by exact name: this entity, then each child in
     * order. When nothing matches, a new entity named "nullEntity" is
     * returned and the caller owns it. */
    TKxEntity *findEntity(QString name);

    //! The entity name.
    //!@{
    QString getName() const { return name; }
    void setName(const QString &value) { name = value; }
    void setQStrName(QString value) { name = value; }
    //!@}
    //! An alternative name.
    //!@{
    QString getAlias() const { return alias; }
    void setAlias(const QString &value) { alias = value; }
    void setQStrAlias(QString value) { alias = value; }
    //!@}
    //! The label shown to the user.
    //!@{
    QString getLabel() const { return label; }
    void setLabel(const QString &value) { label = value; }
    void setQStrLabel(QString value) { label = value; }
    //!@}
    //! Whether areas of this entity can be selected.
    //!@{
    bool getSelectable() const { return selectable; }
    void setSelectable(bool value) { selectable = value; }
    //!@}
    //! The reference code.
    //!@{
    QString getRefCode() const { return refCode; }
    void setRefCode(const QString &value) { refCode = value; }
    //!@}
    //! The reference label.
    //!@{
    QString getRefLabel() const { return refLabel; }
    void setRefLabel(const QString &value) { refLabel = value; }
    //!@}
    //! A number kept for the application.
    //!@{
    int getTag() const { return tag; }
    void setTag(int value) { tag = value; }
    //!@}
    //! Name of the parent entity.
    QString getParent() const { return parent; }
    //! The name of the parent entity.
    void setParent(QString value) { parent = value; }
    //! The file the entity's data is written to.
    //!@{
    QString getFileName() const { return fileName; }
    void setFileName(const QString &value) { fileName = value; }
    void setQStrFileName(QString value) { fileName = value; }
    //!@}
    //! The child entities; the list and the entities are the application's to free.
    //!@{
    QList<TKxEntity *> *getChildren() const { return children; }
    void setChildren(QList<TKxEntity *> *value) { children = value; }
    void addChildren(TKxEntity *child) { children->append(child); }
    //!@}
    //! The variables; the list and the variables are the application's to free.
    //!@{
    QList<TKxVariable *> *getVariables() const { return variables; }
    void setVariables(QList<TKxVariable *> *value) { variables = value; }
    void addVariables(TKxVariable *variable) { variables->append(variable); }
    //!@}
    //! The level in the hierarchy; not set by the constructor before the caller does.
    //!@{
    int getLevel() const { return level; }
    void setLevel(int value) { level = value; }
    //!@}
    //! The number of elements of the entity.
    //!@{
    qint64 getNrElements() const { return nrElements; }
    void setNrElements(qint64 value) { nrElements = value; }
    //!@}
    //! The sequence option of the entity.
    //!@{
    bool getSequence() const { return sequence; }
    void setSequence(bool value) { sequence = value; }
    //!@}
    //! Whether statistical disclosure control applies to the entity.
    //!@{
    bool getSdc() const { return sdc; }
    void setSdc(bool value) { sdc = value; }
    //!@}
    //! The record type the entity is read from.
    //!@{
    QString getRecType() const { return recType; }
    void setRecType(const QString &value) { recType = value; }
    //!@}
    //! The entity's documentation text.
    //!@{
    QString getDocumentationEntity() const { return documentationEntity; }
    void setDocumentationEntity(const QString &value) { documentationEntity = value; }
    void setQStrDocumentation(QString value) { documentationEntity = value; }
    //!@}
    //! The name of the weight variable.
    //!@{
    QString getWeightVariable() const { return weightVariable; }
    void setWeightVariable(const QString &value) { weightVariable = value; }
    //!@}
    //! Whether the entity holds sensitive data.
    //!@{
    bool getSensitiveEntity() const { return sensitiveEntity; }
    void setSensitiveEntity(bool value) { sensitiveEntity = value; }
    //!@}
    //! Whether the entity is virtual (has no data file of its own).
    //!@{
    bool getIsvirtual() const { return isvirtual; }
    void setIsvirtual(bool value) { isvirtual = value; }
    //!@}
    //! The delete check option.
    //!@{
    bool getCheckDelete() const { return checkDelete; }
    void setCheckDelete(bool value) { checkDelete = value; }
    //!@}
    //! The path of the entity in the hierarchy.
    //!@{
    QString getPath() const { return path; }
    void setPath(const QString &value) { path = value; }
    //!@}
    //! The child areas as lists of (code, label) pairs; not set by the constructor.
    //!@{
    QList<QList<QPair<QString, QString>> *> *getChildAreas() const { return childAreas; }
    void setChildAreas(QList<QList<QPair<QString, QString>> *> *value) { childAreas = value; }
    //!@}

private:
    TKxEntity *searchByName(const QString &wanted);

    QString name;
    QString alias;
    QString label;
    bool selectable = false;
    QString refCode;
    QString refLabel;
    int tag = 0;
    QString parent;
    QString fileName;
    QList<TKxEntity *> *children;
    QList<TKxVariable *> *variables;
    // Set by the caller before use; zeroed here so that they never read garbage.
    int level = 0;
    qint64 nrElements = 0;
    [[maybe_unused]] bool reserved = false; // kept for layout; has no accessors
    bool sequence = false;
    bool sdc = false;
    QString recType;
    QString documentationEntity;
    QString weightVariable;
    bool sensitiveEntity = false;
    bool isvirtual = false;
    bool checkDelete = false;
    QString path;
    QList<QList<QPair<QString, QString>> *> *childAreas = nullptr;
};

//! Where a variable's data comes from in a hierarchy file.
class MODEL_KELADMIN_EXPORT VarWipChoice
{
public:
    //! The record type in the hierarchy file.
    //!@{
    QString getRecType() const { return recType; }
    void setRecType(const QString &value) { recType = value; }
    //!@}
    //! The field name in the hierarchy file.
    //!@{
    QString getField() const { return field; }
    void setField(const QString &value) { field = value; }
    //!@}
    //! The data provider the field comes from.
    //!@{
    QString getDataProvider() const { return dataProvider; }
    void setDataProvider(const QString &value) { dataProvider = value; }
    //!@}
    //! The start position of the field.
    //!@{
    int getStart() const { return start; }
    void setStart(int value) { start = value; }
    //!@}
    //! The format of the field.
    //!@{
    QString getFormat() const { return format; }
    void setFormat(const QString &value) { format = value; }
    //!@}

private:
    QString recType;
    QString field;
    QString dataProvider;
    int start = 0;
    QString format;
};

//! One value label of a variable.
class MODEL_KELADMIN_EXPORT ValueLabelElement
{
public:
    //! The code.
    //!@{
    QString getValue() const { return value; }
    void setValue(QString newValue) { value = newValue; }
    //!@}
    //! The label of the code.
    //!@{
    QString getLabel() const { return label; }
    void setLabel(const QString &newLabel) { label = newLabel; }
    //!@}

private:
    QString value;
    QString label;
};

//! One valid range of a variable.
class MODEL_KELADMIN_EXPORT Range
{
public:
    //! The lowest value of the range.
    //!@{
    double getRangeMin() const { return rangeMin; }
    void setRangeMin(double value) { rangeMin = value; }
    //!@}
    //! The highest value of the range.
    //!@{
    double getRangeMax() const { return rangeMax; }
    void setRangeMax(double value) { rangeMax = value; }
    //!@}

private:
    double rangeMin = 0;
    double rangeMax = 0;
};

//! Where a variable sits in its source record.
class MODEL_KELADMIN_EXPORT MetadataVariables
{
public:
    MetadataVariables();

    //! The record the variable is read from.
    //!@{
    QString getRecord() const { return record; }
    void setRecord(const QString &value) { record = value; }
    //!@}
    //! The field the variable is read from.
    //!@{
    QString getField() const { return field; }
    void setField(const QString &value) { field = value; }
    //!@}
    //! The start position; not set by the constructor.
    //!@{
    int getStart() const { return start; }
    void setStart(int value) { start = value; }
    //!@}
    //! The length; not set by the constructor.
    //!@{
    int getLength() const { return length; }
    void setLength(int value) { length = value; }
    //!@}
    //! Whether the variable is coded through a lookup file.
    //!@{
    bool getLookup() const { return lookup; }
    void setLookup(bool value) { lookup = value; }
    //!@}
    //! The valid ranges; setRange() replaces the list pointer, addItemRange() appends.
    //!@{
    QList<Range *> *getRange() const { return range; }
    void setRange(QList<Range *> *value) { range = value; }
    //!@}
    //! The valid ranges; setRange() replaces the list pointer, addItemRange() appends.
    void addItemRange(Range *item) { range->append(item); }

private:
    QString record;
    QString field;
    // Set by the caller before use; zeroed here.
    int start = 0;
    int length = 0;
    bool lookup = false;
    QList<Range *> *range;
};

/*! \brief One variable of the database model.
 *
 * Copies are shallow: the range list, the value-label list and the metadata
 * are shared between a variable and its copies.
 */
class MODEL_KELADMIN_EXPORT TKxVariable
{
public:
    TKxVariable();

    //! The name of the owning entity.
    //!@{
    QString getEntity() const { return entity; }
    void setEntity(const QString &value) { entity = value; }
    void setQStrEntity(QString value) { entity = value; }
    //!@}
    //! The owning entity; not owned, not set by the constructor.
    //!@{
    TKxEntity *getParent() const { return parent; }
    void setParent(TKxEntity *value) { parent = value; }
    //!@}
    //! The path of the variable in the hierarchy.
    //!@{
    QString getPath() const { return path; }
    void setPath(const QString &value) { path = value; }
    void setQStrPath(QString value) { path = value; }
    //!@}
    //! The storage type.
    //!@{
    QString getStorage() const { return storage; }
    void setStorage(const QString &value) { storage = value; }
    void setQStrStorage(QString value) { storage = value; }
    //!@}
    //! The full name (with its entity).
    //!@{
    QString getFullName() const { return fullName; }
    void setFullName(const QString &value) { fullName = value; }
    void setQStrFullName(QString value) { fullName = value; }
    //!@}
    //! The variable name.
    //!@{
    QString getName() const { return name; }
    void setName(const QString &value) { name = value; }
    void setQStrName(QString value) { name = value; }
    //!@}
    //! An alternative name.
    //!@{
    QString getAlias() const { return alias; }
    void setAlias(const QString &value) { alias = value; }
    void setQStrAlias(QString value) { alias = value; }
    //!@}
    //! The label shown to the user.
    //!@{
    QString getLabel() const { return label; }
    void setLabel(const QString &value) { label = value; }
    void setQStrLabel(QString value) { label = value; }
    //!@}
    //! The group (record) of the variable.
    //!@{
    QString getGroup() const { return group; }
    void setGroup(const QString &value) { group = value; }
    void setQStrGroup(QString value) { group = value; }
    //!@}
    //! The variable type.
    //!@{
    QString getVarType() const { return varType; }
    void setVarType(const QString &value) { varType = value; }
    void setQStrVarType(QString value) { varType = value; }
    //!@}
    //! The variable's documentation text.
    //!@{
    QString getDocumentation() const { return documentation; }
    void setDocumentation(const QString &value) { documentation = value; }
    void setQStrDocumentation(QString value) { documentation = value; }
    //!@}
    //! The record type the variable is read from.
    //!@{
    QString getRecType() const { return recType; }
    void setRecType(const QString &value) { recType = value; }
    void setQStrRecType(QString value) { recType = value; }
    //!@}
    //! The source field.
    //!@{
    QString getField() const { return field; }
    void setField(const QString &value) { field = value; }
    void setQStrField(QString value) { field = value; }
    //!@}
    //! The start position in the data line.
    //!@{
    int getStart() const { return start; }
    void setStart(int value) { start = value; }
    //!@}
    //! The data provider the variable comes from.
    //!@{
    QString getDataProvider() const { return dataProvider; }
    void setDataProvider(const QString &value) { dataProvider = value; }
    void setQStrDataProvider(QString value) { dataProvider = value; }
    //!@}
    //! A number kept for the application.
    //!@{
    int getTag() const { return tag; }
    void setTag(int value) { tag = value; }
    //!@}
    //! The not-applicable code.
    //!@{
    int getNotappl() const { return notappl; }
    void setNotappl(int value) { notappl = value; }
    //!@}
    //! The missing code; getTrpMissing() reads the same value.
    //!@{
    int getMissing() const { return missing; }
    void setMissing(int value) { missing = value; }
    //!@}
    //! Same field as getMissing().
    int getTrpMissing() const { return missing; }
    //! The number of decimals.
    //!@{
    int getDecimals() const { return decimals; }
    void setDecimals(int value) { decimals = value; }
    //!@}
    //! The size of the value.
    //!@{
    int getSize() const { return size; }
    void setSize(int value) { size = value; }
    //!@}
    //! The size of the source field.
    //!@{
    int getFieldSize() const { return fieldSize; }
    void setFieldSize(int value) { fieldSize = value; }
    //!@}
    //! The position of the field relative to its record.
    //!@{
    int getFieldRelativePosition() const { return fieldRelativePosition; }
    void setFieldRelativePosition(int value) { fieldRelativePosition = value; }
    //!@}
    //! The id of the dataset.
    //!@{
    QString getDatasetID() const { return datasetID; }
    void setDatasetID(const QString &value) { datasetID = value; }
    void setQStrDatasetID(QString value) { datasetID = value; }
    //!@}
    //! The file the variable is read from.
    //!@{
    QString getFileName() const { return fileName; }
    void setFileName(const QString &value) { fileName = value; }
    void setQStrFileName(QString value) { fileName = value; }
    //!@}
    //! The valid ranges; shared by copies of the variable.
    //!@{
    QList<Range *> *getRange() const { return range; }
    void setRange(QList<Range *> *value) { range = value; }
    //!@}
    //! The valid ranges; shared by copies of the variable.
    void addItemRange(Range *item) { range->append(item); }
    //! The value labels; shared by copies of the variable.
    //!@{
    QList<ValueLabelElement *> *getValueLabelElementList() const { return valueLabelElementList; }
    void setValueLabelElementList(QList<ValueLabelElement *> *value) { valueLabelElementList = value; }
    void addValueLabelElement(ValueLabelElement *element) { valueLabelElementList->append(element); }
    //!@}
    //! Where the variable's data comes from in a hierarchy file.
    //!@{
    VarWipChoice getVarWipChoice() const { return varWipChoice; }
    void setVarWipChoice(const VarWipChoice &value) { varWipChoice = value; }
    //!@}
    //! The variable's metadata; shared by copies of the variable.
    //!@{
    MetadataVariables *getMetadataVariables() const { return metadataVariables; }
    void setMetadataVariables(MetadataVariables *value) { metadataVariables = value; }
    //!@}
    //! The level in the hierarchy; 1 at first.
    //!@{
    int getLevel() const { return level; }
    void setLevel(int value) { level = value; }
    //!@}
    //! 1 when checked, else 0.
    int getChecked() const { return checked ? 1 : 0; }
    //! Any non-zero value checks the variable.
    void setChecked(int value) { checked = value != 0; }
    //! Whether the variable is local.
    //!@{
    bool getLocal() const { return local; }
    void setLocal(bool value) { local = value; }
    //!@}
    //! Whether the variable takes part in the consistency check.
    //!@{
    bool getConsistency() const { return consistency; }
    void setConsistency(bool value) { consistency = value; }
    //!@}

private:
    QString entity;
    TKxEntity *parent = nullptr; // set by the caller
    QString path;
    QString storage;
    QString fullName;
    QString name;
    QString alias;
    QString label;
    QString group;
    QString varType;
    QString documentation;
    QString recType;
    QString field;
    int start = 0;
    QString dataProvider;
    int tag = 0;
    int notappl = 0;
    int missing = 0;
    int decimals = 0;
    int size = 0;
    int fieldSize = 0;
    int fieldRelativePosition = 0;
    QString datasetID;
    QString fileName;
    QList<Range *> *range;
    QList<ValueLabelElement *> *valueLabelElementList;
    VarWipChoice varWipChoice;
    MetadataVariables *metadataVariables;
    int level = 1;
    bool checked = false;
    bool local = false;
    bool consistency = false;
};

//! A node of the variable tree.
class MODEL_KELADMIN_EXPORT StructVariableItem
{
public:
    StructVariableItem();

    //! The level in the tree; not set by the constructor.
    //!@{
    int getLevel() const { return level; }
    void setLevel(int value) { level = value; }
    //!@}
    //! The check state; not set by the constructor.
    //!@{
    bool getChecked() const { return checked; }
    void setChecked(bool value) { checked = value; }
    //!@}
    //! A shallow copy of the variable (lists and metadata shared).
    TKxVariable getData() const { return data; }
    //! The variable shown by the node, held by value (a shallow copy).
    void setData(const TKxVariable &value) { data = value; }
    //! The child nodes; the application frees them.
    //!@{
    QList<StructVariableItem *> *getChildren() const { return children; }
    void setChildren(QList<StructVariableItem *> *value) { children = value; }
    void addChildren(StructVariableItem *&child) { children->append(child); }
    //!@}

private:
    // Set by the caller before use; zeroed here.
    int level = 0;
    bool checked = false;
    TKxVariable data;
    QList<StructVariableItem *> *children;
};

/*! \brief A node of the area-selection tree. The area pair holds the code
 * first and the label second. */
class MODEL_KELADMIN_EXPORT SelectionTreeUnit
{
public:
    //! An area: its code and its label, as 8-bit texts.
    typedef std::pair<std::string, std::string> Area;

    SelectionTreeUnit();

    //! The child units; the application frees them.
    //!@{
    QList<SelectionTreeUnit *> *getChildren() const { return children; }
    void setChildren(QList<SelectionTreeUnit *> *value) { children = value; }
    void addChildren(SelectionTreeUnit *unit) { children->append(unit); }
    //!@}
    //! Named numbers shown with the unit.
    //!@{
    QList<QPair<QString, int>> getInfoProperties() const { return infoProperties; }
    void setInfoProperties(const QList<QPair<QString, int>> &value) { infoProperties = value; }
    //!@}
    //! The area of the unit as a pair of texts (code and label).
    //!@{
    Area getArea() const { return area; }
    void setArea(const Area &value) { area = value; }
    //!@}
    //! The areas below the unit, as pairs of texts.
    //!@{
    std::vector<Area> getChildAreas() const { return childAreas; }
    void setChildAreas(const std::vector<Area> &value) { childAreas = value; }
    TKelEntity *getChild() const { return child; }
    void setChild(TKelEntity *value) { child = value; }
    //!@}
    //! The engine entity of the parent; not owned.
    //!@{
    TKelEntity *getParent() const { return parent; }
    void setParent(TKelEntity *value) { parent = value; }
    //!@}
    //! The area code.
    //!@{
    QString getCode() const { return code; }
    void setCode(const QString &value) { code = value; }
    //!@}
    //! The code of the area's entity.
    //!@{
    QString getCodeEntity() const { return codeEntity; }
    void setCodeEntity(const QString &value) { codeEntity = value; }
    //!@}
    //! The area name.
    //!@{
    QString getName() const { return name; }
    void setName(const QString &value) { name = value; }
    //!@}
    //! The level in the tree; 0 at first.
    //!@{
    int getLevel() const { return level; }
    void setLevel(int value) { level = value; }
    //!@}
    //! A counter kept for the application; 1 at first.
    //!@{
    int getCounter() const { return counter; }
    void setCounter(int value) { counter = value; }
    //!@}
    //! The check state of the unit.
    //!@{
    Qt::CheckState getUnitState() const { return unitState; }
    void setUnitState(Qt::CheckState value) { unitState = value; }
    //!@}
    //! How the unit is shown.
    //!@{
    eSelectionView getUnitView() const { return unitView; }
    void setUnitView(eSelectionView value) { unitView = value; }
    //!@}
    //! Whether the unit is expanded.
    //!@{
    bool getExpanded() const { return expanded; }
    void setExpanded(bool value) { expanded = value; }
    //!@}
    //! The model index of the unit in the view; invalid at first.
    //!@{
    QModelIndex getIndex() const { return index; }
    void setIndex(const QModelIndex &value) { index = value; }
    //!@}

private:
    QList<SelectionTreeUnit *> *children;
    QList<QPair<QString, int>> infoProperties;
    Area area;
    std::vector<Area> childAreas;
    TKelEntity *child = nullptr;
    TKelEntity *parent = nullptr;
    QString code;
    QString codeEntity;
    QString name;
    int level = 0;
    int counter = 1;
    Qt::CheckState unitState = Qt::Unchecked;
    eSelectionView unitView = eSelectionShown;
    bool expanded = false;
    QModelIndex index;
};

#endif // KXENTITY_H

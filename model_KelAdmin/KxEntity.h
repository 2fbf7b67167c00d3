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

    QString getName() const { return name; }
    void setName(const QString &value) { name = value; }
    void setQStrName(QString value) { name = value; }
    QString getAlias() const { return alias; }
    void setAlias(const QString &value) { alias = value; }
    void setQStrAlias(QString value) { alias = value; }
    QString getLabel() const { return label; }
    void setLabel(const QString &value) { label = value; }
    void setQStrLabel(QString value) { label = value; }
    bool getSelectable() const { return selectable; }
    void setSelectable(bool value) { selectable = value; }
    QString getRefCode() const { return refCode; }
    void setRefCode(const QString &value) { refCode = value; }
    QString getRefLabel() const { return refLabel; }
    void setRefLabel(const QString &value) { refLabel = value; }
    int getTag() const { return tag; }
    void setTag(int value) { tag = value; }
    //! Name of the parent entity.
    QString getParent() const { return parent; }
    void setParent(QString value) { parent = value; }
    QString getFileName() const { return fileName; }
    void setFileName(const QString &value) { fileName = value; }
    void setQStrFileName(QString value) { fileName = value; }
    QList<TKxEntity *> *getChildren() const { return children; }
    void setChildren(QList<TKxEntity *> *value) { children = value; }
    void addChildren(TKxEntity *child) { children->append(child); }
    QList<TKxVariable *> *getVariables() const { return variables; }
    void setVariables(QList<TKxVariable *> *value) { variables = value; }
    void addVariables(TKxVariable *variable) { variables->append(variable); }
    int getLevel() const { return level; }
    void setLevel(int value) { level = value; }
    qint64 getNrElements() const { return nrElements; }
    void setNrElements(qint64 value) { nrElements = value; }
    bool getSequence() const { return sequence; }
    void setSequence(bool value) { sequence = value; }
    bool getSdc() const { return sdc; }
    void setSdc(bool value) { sdc = value; }
    QString getRecType() const { return recType; }
    void setRecType(const QString &value) { recType = value; }
    QString getDocumentationEntity() const { return documentationEntity; }
    void setDocumentationEntity(const QString &value) { documentationEntity = value; }
    void setQStrDocumentation(QString value) { documentationEntity = value; }
    QString getWeightVariable() const { return weightVariable; }
    void setWeightVariable(const QString &value) { weightVariable = value; }
    bool getSensitiveEntity() const { return sensitiveEntity; }
    void setSensitiveEntity(bool value) { sensitiveEntity = value; }
    bool getIsvirtual() const { return isvirtual; }
    void setIsvirtual(bool value) { isvirtual = value; }
    bool getCheckDelete() const { return checkDelete; }
    void setCheckDelete(bool value) { checkDelete = value; }
    QString getPath() const { return path; }
    void setPath(const QString &value) { path = value; }
    QList<QList<QPair<QString, QString>> *> *getChildAreas() const { return childAreas; }
    void setChildAreas(QList<QList<QPair<QString, QString>> *> *value) { childAreas = value; }

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
    bool reserved = false; // kept for layout; has no accessors
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
    QString getRecType() const { return recType; }
    void setRecType(const QString &value) { recType = value; }
    QString getField() const { return field; }
    void setField(const QString &value) { field = value; }
    QString getDataProvider() const { return dataProvider; }
    void setDataProvider(const QString &value) { dataProvider = value; }
    int getStart() const { return start; }
    void setStart(int value) { start = value; }
    QString getFormat() const { return format; }
    void setFormat(const QString &value) { format = value; }

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
    QString getValue() const { return value; }
    void setValue(QString newValue) { value = newValue; }
    QString getLabel() const { return label; }
    void setLabel(const QString &newLabel) { label = newLabel; }

private:
    QString value;
    QString label;
};

//! One valid range of a variable.
class MODEL_KELADMIN_EXPORT Range
{
public:
    double getRangeMin() const { return rangeMin; }
    void setRangeMin(double value) { rangeMin = value; }
    double getRangeMax() const { return rangeMax; }
    void setRangeMax(double value) { rangeMax = value; }

private:
    double rangeMin = 0;
    double rangeMax = 0;
};

//! Where a variable sits in its source record.
class MODEL_KELADMIN_EXPORT MetadataVariables
{
public:
    MetadataVariables();

    QString getRecord() const { return record; }
    void setRecord(const QString &value) { record = value; }
    QString getField() const { return field; }
    void setField(const QString &value) { field = value; }
    int getStart() const { return start; }
    void setStart(int value) { start = value; }
    int getLength() const { return length; }
    void setLength(int value) { length = value; }
    bool getLookup() const { return lookup; }
    void setLookup(bool value) { lookup = value; }
    QList<Range *> *getRange() const { return range; }
    void setRange(QList<Range *> *value) { range = value; }
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

    QString getEntity() const { return entity; }
    void setEntity(const QString &value) { entity = value; }
    void setQStrEntity(QString value) { entity = value; }
    TKxEntity *getParent() const { return parent; }
    void setParent(TKxEntity *value) { parent = value; }
    QString getPath() const { return path; }
    void setPath(const QString &value) { path = value; }
    void setQStrPath(QString value) { path = value; }
    QString getStorage() const { return storage; }
    void setStorage(const QString &value) { storage = value; }
    void setQStrStorage(QString value) { storage = value; }
    QString getFullName() const { return fullName; }
    void setFullName(const QString &value) { fullName = value; }
    void setQStrFullName(QString value) { fullName = value; }
    QString getName() const { return name; }
    void setName(const QString &value) { name = value; }
    void setQStrName(QString value) { name = value; }
    QString getAlias() const { return alias; }
    void setAlias(const QString &value) { alias = value; }
    void setQStrAlias(QString value) { alias = value; }
    QString getLabel() const { return label; }
    void setLabel(const QString &value) { label = value; }
    void setQStrLabel(QString value) { label = value; }
    QString getGroup() const { return group; }
    void setGroup(const QString &value) { group = value; }
    void setQStrGroup(QString value) { group = value; }
    QString getVarType() const { return varType; }
    void setVarType(const QString &value) { varType = value; }
    void setQStrVarType(QString value) { varType = value; }
    QString getDocumentation() const { return documentation; }
    void setDocumentation(const QString &value) { documentation = value; }
    void setQStrDocumentation(QString value) { documentation = value; }
    QString getRecType() const { return recType; }
    void setRecType(const QString &value) { recType = value; }
    void setQStrRecType(QString value) { recType = value; }
    QString getField() const { return field; }
    void setField(const QString &value) { field = value; }
    void setQStrField(QString value) { field = value; }
    int getStart() const { return start; }
    void setStart(int value) { start = value; }
    QString getDataProvider() const { return dataProvider; }
    void setDataProvider(const QString &value) { dataProvider = value; }
    void setQStrDataProvider(QString value) { dataProvider = value; }
    int getTag() const { return tag; }
    void setTag(int value) { tag = value; }
    int getNotappl() const { return notappl; }
    void setNotappl(int value) { notappl = value; }
    int getMissing() const { return missing; }
    void setMissing(int value) { missing = value; }
    //! Same field as getMissing().
    int getTrpMissing() const { return missing; }
    int getDecimals() const { return decimals; }
    void setDecimals(int value) { decimals = value; }
    int getSize() const { return size; }
    void setSize(int value) { size = value; }
    int getFieldSize() const { return fieldSize; }
    void setFieldSize(int value) { fieldSize = value; }
    int getFieldRelativePosition() const { return fieldRelativePosition; }
    void setFieldRelativePosition(int value) { fieldRelativePosition = value; }
    QString getDatasetID() const { return datasetID; }
    void setDatasetID(const QString &value) { datasetID = value; }
    void setQStrDatasetID(QString value) { datasetID = value; }
    QString getFileName() const { return fileName; }
    void setFileName(const QString &value) { fileName = value; }
    void setQStrFileName(QString value) { fileName = value; }
    QList<Range *> *getRange() const { return range; }
    void setRange(QList<Range *> *value) { range = value; }
    void addItemRange(Range *item) { range->append(item); }
    QList<ValueLabelElement *> *getValueLabelElementList() const { return valueLabelElementList; }
    void setValueLabelElementList(QList<ValueLabelElement *> *value) { valueLabelElementList = value; }
    void addValueLabelElement(ValueLabelElement *element) { valueLabelElementList->append(element); }
    VarWipChoice getVarWipChoice() const { return varWipChoice; }
    void setVarWipChoice(const VarWipChoice &value) { varWipChoice = value; }
    MetadataVariables *getMetadataVariables() const { return metadataVariables; }
    void setMetadataVariables(MetadataVariables *value) { metadataVariables = value; }
    int getLevel() const { return level; }
    void setLevel(int value) { level = value; }
    //! 1 when checked, else 0.
    int getChecked() const { return checked ? 1 : 0; }
    //! Any non-zero value checks the variable.
    void setChecked(int value) { checked = value != 0; }
    bool getLocal() const { return local; }
    void setLocal(bool value) { local = value; }
    bool getConsistency() const { return consistency; }
    void setConsistency(bool value) { consistency = value; }

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

    int getLevel() const { return level; }
    void setLevel(int value) { level = value; }
    bool getChecked() const { return checked; }
    void setChecked(bool value) { checked = value; }
    //! A shallow copy of the variable (lists and metadata shared).
    TKxVariable getData() const { return data; }
    void setData(const TKxVariable &value) { data = value; }
    QList<StructVariableItem *> *getChildren() const { return children; }
    void setChildren(QList<StructVariableItem *> *value) { children = value; }
    void addChildren(StructVariableItem *&child) { children->append(child); }

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
    typedef std::pair<std::string, std::string> Area;

    SelectionTreeUnit();

    QList<SelectionTreeUnit *> *getChildren() const { return children; }
    void setChildren(QList<SelectionTreeUnit *> *value) { children = value; }
    void addChildren(SelectionTreeUnit *child) { children->append(child); }
    QList<QPair<QString, int>> getInfoProperties() const { return infoProperties; }
    void setInfoProperties(const QList<QPair<QString, int>> &value) { infoProperties = value; }
    Area getArea() const { return area; }
    void setArea(const Area &value) { area = value; }
    std::vector<Area> getChildAreas() const { return childAreas; }
    void setChildAreas(const std::vector<Area> &value) { childAreas = value; }
    TKelEntity *getChild() const { return child; }
    void setChild(TKelEntity *value) { child = value; }
    TKelEntity *getParent() const { return parent; }
    void setParent(TKelEntity *value) { parent = value; }
    QString getCode() const { return code; }
    void setCode(const QString &value) { code = value; }
    QString getCodeEntity() const { return codeEntity; }
    void setCodeEntity(const QString &value) { codeEntity = value; }
    QString getName() const { return name; }
    void setName(const QString &value) { name = value; }
    int getLevel() const { return level; }
    void setLevel(int value) { level = value; }
    int getCounter() const { return counter; }
    void setCounter(int value) { counter = value; }
    Qt::CheckState getUnitState() const { return unitState; }
    void setUnitState(Qt::CheckState value) { unitState = value; }
    eSelectionView getUnitView() const { return unitView; }
    void setUnitView(eSelectionView value) { unitView = value; }
    bool getExpanded() const { return expanded; }
    void setExpanded(bool value) { expanded = value; }
    QModelIndex getIndex() const { return index; }
    void setIndex(const QModelIndex &value) { index = value; }

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

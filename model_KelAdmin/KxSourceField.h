#ifndef KXSOURCEFIELD_H
#define KXSOURCEFIELD_H

#include "model_kelAdmin_export.h"

#include <QString>
#include <QStringList>

/*! \brief One field of a data-source description: a flat copy of a generic
 * field that can cut its own value out of a fixed-width data line. */
class MODEL_KELADMIN_EXPORT TKxSourceField
{
public:
    TKxSourceField();
    virtual ~TKxSourceField();
    TKxSourceField(const TKxSourceField &) = delete;
    TKxSourceField &operator=(const TKxSourceField &) = delete;

    //! Stores the name only; the type index is left as it is.
    void setFieldType(QString type);
    QString getFieldType() const { return FieldType; }
    int getFieldTypeIndex() const { return fieldTypeIndex; }
    void setFieldTypeIndex(int v) { fieldTypeIndex = v; }
    bool isString() const { return fieldTypeIndex == 3; }

    //! Accepts a name whose position in providerTypeNames is 1 to 6 or 8 to 9.
    void setDataProviderType(QString type);
    QString getDataProviderType() const { return DataProviderType; }
    int getDataProviderTypeIndex() const { return dataProviderTypeIndex; }

    //! Cuts this field's columns (start counted from 0) out of \a line.
    QString getStringValue(QString line);

    QStringList *getProviderTypeNames() const { return providerTypeNames; }
    QString getFieldName() const { return fieldName; }
    void setFieldName(const QString &v) { fieldName = v; }
    QString getLabel() const { return label; }
    void setLabel(const QString &v) { label = v; }
    int getDecimals() const { return decimals; }
    void setDecimals(int v) { decimals = v; }
    int getSize() const { return size; }
    void setSize(int v) { size = v; }
    int getStart() const { return start; }
    void setStart(int v) { start = v; }
    QString getValueLabels() const { return valueLabels; }
    void setValueLabels(const QString &v) { valueLabels = v; }
    QString getMinimum() const { return minimum; }
    void setMinimum(const QString &v) { minimum = v; }
    QString getMaximum() const { return maximum; }
    void setMaximum(const QString &v) { maximum = v; }
    QString getNotApplicableCode() const { return notApplicableCode; }
    void setNotApplicableCode(const QString &v) { notApplicableCode = v; }
    QString getMissingCode() const { return missingCode; }
    void setMissingCode(const QString &v) { missingCode = v; }
    QString getDataProviderId() const { return dataProviderId; }
    void setDataProviderId(const QString &v) { dataProviderId = v; }
    QString getGroup() const { return group; }
    void setGroup(const QString &v) { group = v; }
    QString getBlankValue() const { return blankValue; }
    void setBlankValue(const QString &v) { blankValue = v; }
    bool getIsBlankValue() const { return isBlankValue; }
    void setIsBlankValue(bool v) { isBlankValue = v; }

private:
    QStringList *providerTypeNames;
    QString fieldName;
    QString label;
    int decimals = 0;
    int size = 0;
    int start = 0;
    QString valueLabels;
    QString minimum;
    QString maximum;
    QString notApplicableCode;
    QString missingCode;
    QString dataProviderId;
    QString group;
    QString blankValue;
    bool isBlankValue = false;
    QString FieldType;
    int fieldTypeIndex = 0;
    QString DataProviderType;
    int dataProviderTypeIndex = 0;
};

#endif // KXSOURCEFIELD_H

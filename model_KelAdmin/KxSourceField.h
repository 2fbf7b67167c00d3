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
    //! An empty field with the provider type names "NONE", "CSPRO", "CSV", "SSPS", "STATA".
    TKxSourceField();
    //! Releases the texts.
    virtual ~TKxSourceField();
    TKxSourceField(const TKxSourceField &) = delete;
    TKxSourceField &operator=(const TKxSourceField &) = delete;

    //! Stores the name only; the type index is left as it is.
    void setFieldType(QString type);
    //! The field type name: "INTEGER", "REAL" or "STRING".
    QString getFieldType() const { return FieldType; }
    //! 1 integer, 2 real, 3 text; 0 while not set (setFieldType() does not set it).
    //!@{
    int getFieldTypeIndex() const { return fieldTypeIndex; }
    void setFieldTypeIndex(int v) { fieldTypeIndex = v; }
    //!@}
    //! True exactly when the field type index is 3.
    bool isString() const { return fieldTypeIndex == 3; }

    //! Accepts a name whose position in providerTypeNames is 1 to 6 or 8 to 9.
    void setDataProviderType(QString type);
    //! The data-provider type name accepted by setDataProviderType(); empty at first.
    QString getDataProviderType() const { return DataProviderType; }
    //! The position of getDataProviderType() in the provider type names; 0 at first.
    int getDataProviderTypeIndex() const { return dataProviderTypeIndex; }

    //! Cuts this field's columns (start counted from 0) out of \a line.
    QString getStringValue(QString line);

    //! The data-provider type names, in their fixed order ("SSPS" is spelt so on purpose).
    QStringList *getProviderTypeNames() const { return providerTypeNames; }
    //! The field name.
    //!@{
    QString getFieldName() const { return fieldName; }
    void setFieldName(const QString &v) { fieldName = v; }
    //!@}
    //! The field label.
    //!@{
    QString getLabel() const { return label; }
    void setLabel(const QString &v) { label = v; }
    //!@}
    //! The number of decimals.
    //!@{
    int getDecimals() const { return decimals; }
    void setDecimals(int v) { decimals = v; }
    //!@}
    //! The width in characters.
    //!@{
    int getSize() const { return size; }
    void setSize(int v) { size = v; }
    //!@}
    //! The start position; getStringValue() counts it from 0.
    //!@{
    int getStart() const { return start; }
    void setStart(int v) { start = v; }
    //!@}
    //! The value labels, copied from the generic field (code, blank, label, tab per entry).
    //!@{
    QString getValueLabels() const { return valueLabels; }
    void setValueLabels(const QString &v) { valueLabels = v; }
    //!@}
    //! The lowest valid value, copied from the generic field.
    //!@{
    QString getMinimum() const { return minimum; }
    void setMinimum(const QString &v) { minimum = v; }
    //!@}
    //! The highest valid value, copied from the generic field.
    //!@{
    QString getMaximum() const { return maximum; }
    void setMaximum(const QString &v) { maximum = v; }
    //!@}
    //! The not-applicable code, copied from the generic field.
    //!@{
    QString getNotApplicableCode() const { return notApplicableCode; }
    void setNotApplicableCode(const QString &v) { notApplicableCode = v; }
    //!@}
    //! The missing code, copied from the generic field.
    //!@{
    QString getMissingCode() const { return missingCode; }
    void setMissingCode(const QString &v) { missingCode = v; }
    //!@}
    //! The id of the provider the field came from.
    //!@{
    QString getDataProviderId() const { return dataProviderId; }
    void setDataProviderId(const QString &v) { dataProviderId = v; }
    //!@}
    //! The record name of the field; empty for single-record sources.
    //!@{
    QString getGroup() const { return group; }
    void setGroup(const QString &v) { group = v; }
    //!@}
    //! The text a cut-out value is compared with.
    //!@{
    QString getBlankValue() const { return blankValue; }
    void setBlankValue(const QString &v) { blankValue = v; }
    //!@}
    //! The result of the last comparison made by getStringValue().
    //!@{
    bool getIsBlankValue() const { return isBlankValue; }
    void setIsBlankValue(bool v) { isBlankValue = v; }
    //!@}

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

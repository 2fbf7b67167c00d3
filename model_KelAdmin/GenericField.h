#ifndef GENERICFIELD_H
#define GENERICFIELD_H

#include "model_kelAdmin_export.h"

#include <QString>

class TDataImport;

/*! \brief One imported variable, whatever its source format.
 *
 * Holds the description (name, label, type, position, width, value labels,
 * bounds, special codes) and one current value, kept as raw wide text and as
 * a number. Format importers derive from it and decide what missing,
 * not-applicable and blank mean.
 */
class MODEL_KELADMIN_EXPORT TGenericField
{
public:
    //! Capacity of the value buffer in wide characters.
    static constexpr int ValueCapacity = 255;

    explicit TGenericField(TDataImport *owner);
    virtual ~TGenericField();

    virtual bool isMissing() = 0;
    virtual bool isNotApplicable() = 0;
    virtual bool isBlank() = 0;
    virtual void addValueLabel(QString code, QString label);
    virtual QString getGroup();

    QString getAsString();
    void setAsString(QString text);
    void setAsStringChar(const wchar_t *text);
    double getAsFloat();
    void setAsFloat(double v);
    int getAsInteger();
    void setAsInteger(int v);

    /*! The label of \a code. Rewrites the stored valueLabels (tabs become
     * line feeds) and compares only the first entry, from its second
     * character on; callers that need a reliable lookup use the source
     * format's value set. */
    QString getValueLabel(QString code);
    bool isString() const { return fieldType == 3; }

    //! The value buffer's text up to its first zero or the buffer's end.
    QString valueText() const;

    bool getImportFlag() const { return importFlag; }
    void setImportFlag(bool v) { importFlag = v; }
    QString getName() const { return name; }
    void setName(const QString &v) { name = v; }
    QString getLabel() const { return label; }
    void setLabel(const QString &v) { label = v; }
    int getFieldType() const { return fieldType; }
    void setFieldType(int v) { fieldType = v; }
    int getSize() const { return size; }
    void setSize(int v) { size = v; }
    int getStart() const { return start; }
    void setStart(int v) { start = v; }
    QString getValueLabels() const { return valueLabels; }
    void setValueLabels(const QString &v) { valueLabels = v; }
    QString getMissingCode() const { return missingCode; }
    void setMissingCode(const QString &v) { missingCode = v; }
    QString getNotApplicableCode() const { return notApplicableCode; }
    void setNotApplicableCode(const QString &v) { notApplicableCode = v; }
    QString getMinimum() const { return minimum; }
    void setMinimum(const QString &v) { minimum = v; }
    QString getMaximum() const { return maximum; }
    void setMaximum(const QString &v) { maximum = v; }
    QString getDecimals() const { return decimals; }
    void setDecimals(const QString &v) { decimals = v; }
    bool getDecimalCharPresent() const { return decimalCharPresent; }
    void setDecimalCharPresent(bool v) { decimalCharPresent = v; }
    bool getMissingFlag() const { return missingFlag; }
    void setMissingFlag(bool v) { missingFlag = v; }
    double getRealValue() const { return realValue; }
    double getIntegerValue() const { return integerValue; }
    const wchar_t *getValue() const { return value; }
    TDataImport *getOwner() const { return owner; }

protected:
    //! Copies at most size wide characters (clamped to the buffer) into value.
    void copyIntoValue(const wchar_t *text, int textLength);
    //! copyIntoValue for a QString (converted to UCS-4 wide characters).
    void copyIntoValue(const QString &text);
    /*! Sets the numbers from \a text by fieldType; \a decimalsImplied divides
     * a real value by 10 to the power decimals. */
    void assignNumbers(const QString &text, bool decimalsImplied);
    //! Parses the value buffer's text as a double; 0 when it does not parse.
    static double parseNumber(const QString &text);

    bool importFlag = false;
    QString name;
    QString label;
    int fieldType = 0;
    int size = 0;
    int start = 0;
    QString valueLabels;
    QString missingCode;
    QString notApplicableCode;
    QString minimum;
    QString maximum;
    QString decimals;
    bool decimalCharPresent = true;
    bool missingFlag = false;
    wchar_t value[ValueCapacity];
    double realValue;
    double integerValue = 0.0;
    TDataImport *owner = nullptr;
};

#endif // GENERICFIELD_H

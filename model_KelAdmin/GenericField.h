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

    //! A field with the initial values (no value yet) that \a owner created; the owner is not owned.
    explicit TGenericField(TDataImport *owner);
    //! Releases the texts; owns nothing else.
    virtual ~TGenericField();

    //! Whether the current value stands for a missing answer; the source format decides.
    virtual bool isMissing() = 0;
    //! Whether the current value stands for a not-applicable answer; the source format decides.
    virtual bool isNotApplicable() = 0;
    //! Whether the current value is blank; the source format decides.
    virtual bool isBlank() = 0;
    //! Adds the label of \a code; the base version does nothing.
    virtual void addValueLabel(QString code, QString label);
    //! The record (group) the field belongs to; the base version returns the empty text.
    virtual QString getGroup();

    //! The current value as text.
    QString getAsString();
    /*! Assigns the current value from text: at most size characters are kept,
     * missingFlag is cleared, and unless the value is missing, not applicable
     * or blank the numbers follow (an unparsable number gives 0). */
    void setAsString(QString text);
    //! setAsString() for wide characters taken as they are; integer texts are trimmed first.
    void setAsStringChar(const wchar_t *text);
    //! The current value of a real field.
    double getAsFloat();
    //! Stores \a v as the real value only; the text is not touched.
    void setAsFloat(double v);
    //! The current value of an integer field.
    int getAsInteger();
    //! Stores \a v as the integer value only; the text is not touched.
    void setAsInteger(int v);

    /*! The label of \a code. Rewrites the stored valueLabels (tabs become
     * line feeds) and compares only the first entry, from its second
     * character on; callers that need a reliable lookup use the source
     * format's value set. */
    QString getValueLabel(QString code);
    //! True exactly when the field type is 3 (text).
    bool isString() const { return fieldType == 3; }

    //! The value buffer's text up to its first zero or the buffer's end.
    QString valueText() const;

    //! A flag that format subclasses copy into their own state; the base never reads it.
    //!@{
    bool getImportFlag() const { return importFlag; }
    void setImportFlag(bool v) { importFlag = v; }
    //!@}
    //! The variable name, the key of the owner's name index.
    //!@{
    QString getName() const { return name; }
    void setName(const QString &v) { name = v; }
    //!@}
    //! The variable label (descriptive text).
    //!@{
    QString getLabel() const { return label; }
    void setLabel(const QString &v) { label = v; }
    //!@}
    //! 1 integer ("INTEGER"), 2 real ("REAL"), 3 text ("STRING"); 0 while not set.
    //!@{
    int getFieldType() const { return fieldType; }
    void setFieldType(int v) { fieldType = v; }
    //!@}
    //! The width of the value in characters; also the copy limit of the value buffer.
    //!@{
    int getSize() const { return size; }
    void setSize(int v) { size = v; }
    //!@}
    //! The start position of the value in a fixed-width record, as the source format gives it.
    //!@{
    int getStart() const { return start; }
    void setStart(int v) { start = v; }
    //!@}
    //! All value labels in one text: for each entry the code, a blank, the label and a tab.
    //!@{
    QString getValueLabels() const { return valueLabels; }
    void setValueLabels(const QString &v) { valueLabels = v; }
    //!@}
    //! The text that stands for a missing value; empty when there is none.
    //!@{
    QString getMissingCode() const { return missingCode; }
    void setMissingCode(const QString &v) { missingCode = v; }
    //!@}
    //! The text that stands for a not-applicable value; empty when there is none.
    //!@{
    QString getNotApplicableCode() const { return notApplicableCode; }
    void setNotApplicableCode(const QString &v) { notApplicableCode = v; }
    //!@}
    //! The lowest valid value, as text.
    //!@{
    QString getMinimum() const { return minimum; }
    void setMinimum(const QString &v) { minimum = v; }
    //!@}
    //! The highest valid value, as text.
    //!@{
    QString getMaximum() const { return maximum; }
    void setMaximum(const QString &v) { maximum = v; }
    //!@}
    //! The number of decimal places, as text ("0" for whole numbers).
    //!@{
    QString getDecimals() const { return decimals; }
    void setDecimals(const QString &v) { decimals = v; }
    //!@}
    //! True when the raw text carries its own decimal point; false when the decimals are implied.
    //!@{
    bool getDecimalCharPresent() const { return decimalCharPresent; }
    void setDecimalCharPresent(bool v) { decimalCharPresent = v; }
    //!@}
    //! When true, the CSPro variables report the value as missing whatever it holds.
    //!@{
    bool getMissingFlag() const { return missingFlag; }
    void setMissingFlag(bool v) { missingFlag = v; }
    //!@}
    //! The current value of a real field; a tiny sentinel before anything was assigned.
    double getRealValue() const { return realValue; }
    //! The current value of an integer field, held as a double.
    double getIntegerValue() const { return integerValue; }
    //! The value buffer: the current value as raw wide text (see valueText()).
    const wchar_t *getValue() const { return value; }
    //! The importer that created the field; not owned.
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

    bool importFlag = false;               //!< see getImportFlag()
    QString name;                          //!< see getName()
    QString label;                         //!< see getLabel()
    int fieldType = 0;                     //!< see getFieldType()
    int size = 0;                          //!< see getSize()
    int start = 0;                         //!< see getStart()
    QString valueLabels;                   //!< see getValueLabels()
    QString missingCode;                   //!< see getMissingCode()
    QString notApplicableCode;             //!< see getNotApplicableCode()
    QString minimum;                       //!< see getMinimum()
    QString maximum;                       //!< see getMaximum()
    QString decimals;                      //!< see getDecimals()
    bool decimalCharPresent = true;        //!< see getDecimalCharPresent()
    bool missingFlag = false;              //!< see getMissingFlag()
    wchar_t value[ValueCapacity];          //!< the current value as raw wide text
    double realValue;                      //!< see getRealValue()
    double integerValue = 0.0;             //!< see getIntegerValue()
    TDataImport *owner = nullptr;          //!< see getOwner()
};

#endif // GENERICFIELD_H

#ifndef CSPROVARIABLE_H
#define CSPROVARIABLE_H

#include "model_kelAdmin_export.h"

#include "CSProDictionary.h"
#include "GenericField.h"

#include <QString>

class TDataImport;

/*! \brief One CSPro dictionary item as a generic field.
 *
 * Missing and not-applicable values are those of the dictionary item, which
 * the field points at without owning it.
 */
class MODEL_KELADMIN_EXPORT TCSProVariable : public TGenericField
{
public:
    //! A field for the dictionary item \a item, made by \a owner; neither is owned.
    explicit TCSProVariable(TDataImport *owner, TCSProItem *item = nullptr);
    ~TCSProVariable() override;

    //! True when missingFlag is set or the value is exactly the item's missing code.
    bool isMissing() override;
    //! True when the value is exactly the item's not-applicable code.
    bool isNotApplicable() override;
    bool isBlank() override;
    //! The name of the item's record in a multi-record dictionary, else empty.
    QString getGroup() override;

    /*! Like TGenericField::setAsString, but missingFlag is left as it is and
     * implied decimals follow the item's decimal character. */
    void setAsString(QString text);

    //! The name of the item's record when the dictionary has several record types, else empty.
    //!@{
    QString getRecordName() const { return recordName; }
    void setRecordName(const QString &v) { recordName = v; }
    //!@}
    //! The base's import flag as it was when the field was made (false); the importers never read it.
    //!@{
    bool getCopiedFlag() const { return copiedFlag; }
    void setCopiedFlag(bool v) { copiedFlag = v; }
    //!@}
    //! The dictionary item the field stands for; the dictionary owns it.
    //!@{
    TCSProItem *getItem() const { return item; }
    void setItem(TCSProItem *v) { item = v; }
    //!@}

protected:
    QString recordName;          //!< see getRecordName()
    bool copiedFlag = false;     //!< see getCopiedFlag()
    TCSProItem *item = nullptr;  //!< see getItem()
};

//! One item of a CSPro 8 JSON dictionary as a generic field.
class MODEL_KELADMIN_EXPORT TCSProJsonVariable : public TCSProVariable
{
public:
    //! A field for the dictionary item \a item, made by \a owner; neither is owned.
    explicit TCSProJsonVariable(TDataImport *owner, TCSProItem *item = nullptr);
    ~TCSProJsonVariable() override;
};

#endif // CSPROVARIABLE_H

#include "CSProDataImport.h"

#include "CSProImportCore_p.h"

// ------------------------------------------------------------- TCSProVariable

TCSProVariable::TCSProVariable(TDataImport *owner, TCSProItem *item)
    : TGenericField(owner)
    , copiedFlag(importFlag)
    , item(item)
{
}

TCSProVariable::~TCSProVariable() = default;

bool TCSProVariable::isMissing()
{
    if (missingFlag)
        return true;
    if (!item || item->missingCode.isEmpty())
        return false;
    return item->missingCode == valueText();
}

bool TCSProVariable::isNotApplicable()
{
    if (!item || item->notApplCode.isEmpty())
        return false;
    return item->notApplCode == valueText();
}

bool TCSProVariable::isBlank()
{
    return valueText().trimmed().isEmpty();
}

QString TCSProVariable::getGroup()
{
    return recordName;
}

void TCSProVariable::setAsString(QString text)
{
    // Unlike the base version, missingFlag is left as it is.
    copyIntoValue(text);
    if (isMissing() || isNotApplicable() || isBlank())
        return;
    // Without a dictionary item the field's own flag decides.
    assignNumbers(text, item ? !item->decimalChar : !decimalCharPresent);
}

// ----------------------------------------------------------- TCSProDataImport

template <>
struct CSProImportTraits<TCSPro>
{
    static QString typeName() { return QStringLiteral("CSPRO"); }
    static QString debugName() { return QStringLiteral("TCSProDataImport"); }
};

template class TCSProImportCore<TCSPro, TCSProVariable>;

TCSProDataImport::TCSProDataImport() = default;

TCSProDataImport::TCSProDataImport(QString sourceName)
    : TCSProImportCore(sourceName)
{
}

TCSProDataImport::~TCSProDataImport() = default;

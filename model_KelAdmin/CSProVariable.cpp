#include "CSProVariable.h"

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

// --------------------------------------------------------- TCSProJsonVariable

TCSProJsonVariable::TCSProJsonVariable(TDataImport *owner, TCSProItem *item)
    : TCSProVariable(owner, item)
{
}

TCSProJsonVariable::~TCSProJsonVariable() = default;

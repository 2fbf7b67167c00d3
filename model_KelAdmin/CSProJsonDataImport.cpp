#include "CSProJsonDataImport.h"

TCSProJsonVariable::TCSProJsonVariable(TDataImport *owner, TCSProItem *item)
    : TCSProVariable(owner, item)
{
}

TCSProJsonVariable::~TCSProJsonVariable() = default;

TCSProJsonDataImport::TCSProJsonDataImport() = default;

TCSProJsonDataImport::TCSProJsonDataImport(QString sourceName)
    : TCSProImportCore(sourceName)
{
}

TCSProJsonDataImport::~TCSProJsonDataImport() = default;

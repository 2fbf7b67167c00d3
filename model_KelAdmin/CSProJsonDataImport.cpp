#include "CSProJsonDataImport.h"

#include "CSProImportCore_p.h"

TCSProJsonVariable::TCSProJsonVariable(TDataImport *owner, TCSProItem *item)
    : TCSProVariable(owner, item)
{
}

TCSProJsonVariable::~TCSProJsonVariable() = default;

template <>
struct CSProImportTraits<TCSProJson>
{
    static QString typeName() { return QStringLiteral("CSPRO8"); }
    static QString debugName() { return QStringLiteral("TCSProJsonImport"); }
};

template class TCSProImportCore<TCSProJson, TCSProJsonVariable>;

TCSProJsonDataImport::TCSProJsonDataImport() = default;

TCSProJsonDataImport::TCSProJsonDataImport(QString sourceName)
    : TCSProImportCore(sourceName)
{
}

TCSProJsonDataImport::~TCSProJsonDataImport() = default;

#include "CSProJsonDataImport.h"

#include "CSProImportCore_p.h"

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

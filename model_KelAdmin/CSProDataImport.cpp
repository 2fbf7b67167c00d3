#include "CSProDataImport.h"

#include "CSProImportCore_p.h"

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

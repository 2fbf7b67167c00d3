#include "CSProDataImport.h"

TCSProDataImport::TCSProDataImport() = default;

TCSProDataImport::TCSProDataImport(QString sourceName)
    : TCSProImportCore(sourceName)
{
}

TCSProDataImport::~TCSProDataImport() = default;

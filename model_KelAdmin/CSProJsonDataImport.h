#ifndef CSPROJSONDATAIMPORT_H
#define CSPROJSONDATAIMPORT_H

#include "model_kelAdmin_export.h"

#include "CSProImportCore.h"
#include "CSProJson.h"

//! One item of a CSPro 8 JSON dictionary as a generic field.
class MODEL_KELADMIN_EXPORT TCSProJsonVariable : public TCSProVariable
{
public:
    explicit TCSProJsonVariable(TDataImport *owner, TCSProItem *item = nullptr);
    ~TCSProJsonVariable() override;
};

extern template class TCSProImportCore<TCSProJson, TCSProJsonVariable>;

/*! \brief Importer of a CSPro 8 dictionary in its JSON form ("CSPRO8").
 *
 * The twin of TCSProDataImport, reading through TCSProJson.
 */
class MODEL_KELADMIN_EXPORT TCSProJsonDataImport : public TCSProImportCore<TCSProJson, TCSProJsonVariable>
{
public:
    TCSProJsonDataImport();
    explicit TCSProJsonDataImport(QString sourceName);
    ~TCSProJsonDataImport() override;
};

#endif // CSPROJSONDATAIMPORT_H

#ifndef CSPROJSONDATAIMPORT_H
#define CSPROJSONDATAIMPORT_H

#include "model_kelAdmin_export.h"

#include "CSProDataImport.h"
#include "CSProJson.h"

extern template class TCSProImportCore<TCSProJson, TCSProJsonVariable>;

/*! \brief Importer of a CSPro 8 dictionary in its JSON form ("CSPRO8").
 *
 * The twin of TCSProDataImport, reading through TCSProJson.
 */
class MODEL_KELADMIN_EXPORT TCSProJsonDataImport : public TCSProImportCore<TCSProJson, TCSProJsonVariable>
{
public:
    //! An importer without a path; the group list waits for the first reading.
    TCSProJsonDataImport();
    //! An importer of the JSON dictionary at \a sourceName; writes its debug line and allocates the group list.
    explicit TCSProJsonDataImport(QString sourceName);
    ~TCSProJsonDataImport() override;
};

#endif // CSPROJSONDATAIMPORT_H

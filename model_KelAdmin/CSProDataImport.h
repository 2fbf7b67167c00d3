#ifndef CSPRODATAIMPORT_H
#define CSPRODATAIMPORT_H

#include "model_kelAdmin_export.h"

#include "CSPro.h"
#include "CSProImportCore.h"
#include "CSProVariable.h"

extern template class TCSProImportCore<TCSPro, TCSProVariable>;

/*! \brief Importer of a CSPro dictionary in its text form ("CSPRO").
 *
 * openFile() reads the dictionary with TCSPro and makes one TCSProVariable
 * per item; multi-record dictionaries also give one group per record.
 */
class MODEL_KELADMIN_EXPORT TCSProDataImport : public TCSProImportCore<TCSPro, TCSProVariable>
{
public:
    //! An importer without a path; the group list waits for the first reading.
    TCSProDataImport();
    //! An importer of the text dictionary at \a sourceName; writes its debug line and allocates the group list.
    explicit TCSProDataImport(QString sourceName);
    ~TCSProDataImport() override;
};

#endif // CSPRODATAIMPORT_H

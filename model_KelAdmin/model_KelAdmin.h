#ifndef MODEL_KELADMIN_H
#define MODEL_KELADMIN_H

// Umbrella header: including it alone gives the whole public API.

#include "model_kelAdmin_export.h"

#include "KxConstants.h"
#include "KxErrorManager.h"
#include "GenericField.h"
#include "DataImport.h"
#include "KxSourceField.h"
#include "LoaderManager.h"
#include "SPSSDataImport.h"
#include "STATADataImport.h"
#include "UtilFiles.h"
#include "KxLookup.h"
#include "KxEntity.h"
#include "ConfigModel.h"
#include "CSProDictionary.h"
#include "CSPro.h"
#include "CSProJson.h"
#include "KxRecord.h"
#include "KxDataProvider.h"
#include "CSProImportCore.h"
#include "CSProDataImport.h"
#include "CSProJsonDataImport.h"

//! Marker class of the library.
class MODEL_KELADMIN_EXPORT Model_KelAdmin
{
public:
    Model_KelAdmin();
};

#endif // MODEL_KELADMIN_H

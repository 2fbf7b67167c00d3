#ifndef MODEL_KELADMIN_H
#define MODEL_KELADMIN_H

// Umbrella header: including it alone gives the whole public API.

#include "model_kelAdmin_export.h"
#include "model_KelAdmin_version.h"

#include "KxConstants.h"
#include "KxErrorManager.h"
#include "ReadNote.h"
#include "GenericField.h"
#include "DataImport.h"
#include "KxSourceField.h"
#include "LoaderManager.h"
#include "ReadStatImportCore.h"
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
#include "CSProVariable.h"
#include "CSProDataImport.h"
#include "CSProJsonDataImport.h"

//! Marker class of the library; also tells the versions the loaded library was built with.
class MODEL_KELADMIN_EXPORT Model_KelAdmin
{
public:
    Model_KelAdmin();

    /*! The version of the library loaded at run time, "major.minor.patch";
     * MODEL_KELADMIN_VERSION_STRING is the one a program was compiled against. */
    static const char *version();
    //! The version of the ReadStat library the loaded library was built against, or "unknown".
    static const char *readStatVersion();
};

#endif // MODEL_KELADMIN_H

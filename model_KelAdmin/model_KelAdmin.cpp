#include "model_KelAdmin.h"

#ifndef KX_READSTAT_VERSION
#define KX_READSTAT_VERSION "unknown"
#endif

Model_KelAdmin::Model_KelAdmin() = default;

const char *Model_KelAdmin::version()
{
    return MODEL_KELADMIN_VERSION_STRING;
}

const char *Model_KelAdmin::readStatVersion()
{
    return KX_READSTAT_VERSION;
}

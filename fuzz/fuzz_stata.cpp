// libFuzzer target: Stata data file (TSTATADataImport::openFile).
#include "FuzzTarget.h"

KX_FUZZ_TARGET(kxfuzz::Reader::Stata)

// libFuzzer target: SPSS system file (TSPSSDataImport::openFile).
#include "FuzzTarget.h"

KX_FUZZ_TARGET(kxfuzz::Reader::Spss)

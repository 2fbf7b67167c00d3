// libFuzzer target: CSPro text dictionary (TCSPro::loadFromFile).
#include "FuzzTarget.h"

KX_FUZZ_TARGET(kxfuzz::Reader::CSProText)

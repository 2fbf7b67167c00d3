// libFuzzer target: CSPro 8 JSON dictionary (TCSProJson::loadFromFile).
#include "FuzzTarget.h"

KX_FUZZ_TARGET(kxfuzz::Reader::CSProJson)

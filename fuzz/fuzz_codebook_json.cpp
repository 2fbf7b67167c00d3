// libFuzzer target: the codebook of a CSPro 8 JSON dictionary (KxCodebook::Codebook::fromFile as cspro8).
#include "FuzzTarget.h"

KX_FUZZ_TARGET(kxfuzz::Reader::CodebookJson)

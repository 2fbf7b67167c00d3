// libFuzzer target: the codebook of a CSPro text dictionary (KxCodebook::Codebook::fromFile as cspro).
#include "FuzzTarget.h"

KX_FUZZ_TARGET(kxfuzz::Reader::CodebookText)

// libFuzzer target: the codebook of a Stata data file (KxCodebook::Codebook::fromFile as stata).
#include "FuzzTarget.h"

KX_FUZZ_TARGET(kxfuzz::Reader::CodebookStata)

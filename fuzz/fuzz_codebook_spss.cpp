// libFuzzer target: the codebook of a SPSS system file (KxCodebook::Codebook::fromFile as spss).
#include "FuzzTarget.h"

KX_FUZZ_TARGET(kxfuzz::Reader::CodebookSpss)

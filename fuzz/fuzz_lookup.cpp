// libFuzzer target: lookup file (TKxLookup::consistencyCheck, then the
// readLookup walk). The first byte chooses separator, checks and message
// maximum; the rest is the file.
#include "FuzzTarget.h"

KX_FUZZ_TARGET(kxfuzz::Reader::Lookup)

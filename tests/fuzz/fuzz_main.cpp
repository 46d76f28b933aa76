// One fuzz program: libFuzzer's entry point calling the target named at build time.
#include "fuzz_targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sky::fuzz::SKYLANTRA_FUZZ_TARGET(data, size);
    return 0;
}

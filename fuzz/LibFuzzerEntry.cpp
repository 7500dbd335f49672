// The libFuzzer entry points of one fuzz target; the build names the target's
// function in VIRELINE_FUZZ_TARGET.
#include "fuzz/FuzzSupport.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  vireline::fuzz::UseScratchDeviceRoot();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vireline::fuzz::VIRELINE_FUZZ_TARGET(data, size);
  return 0;
}

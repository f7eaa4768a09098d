#include "FuzzScene.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    return runFuzzedScene("fuzz.wrl", data, size);
}

#ifndef TESTS_FUZZ_FUZZTARGETS_H
#define TESTS_FUZZ_FUZZTARGETS_H

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGLog.h>

#include <cstddef>
#include <cstdint>

// The fuzzed operations, shared by the fuzzers and by the test that replays
// the inputs they once failed on.
namespace fuzz
{

// The first byte picks a file suffix; the rest is read as a file of that
// type from a stream.
int loadModel(const std::uint8_t *data, std::size_t size);

// The first byte picks an image MIME type; the rest is read as an image
// file of that type from a stream.
int readImage(const std::uint8_t *data, std::size_t size);

// The bytes are a program of viewport and light calls, run against a fresh
// deferred viewport over a small scene; raw floats from the input reach the
// light fields and effect settings unfiltered. Needs a current GL context.
int driveViewport(const std::uint8_t *data, std::size_t size);

// Starts the runtime once; every refused input warns, and the fuzzer only
// needs the outcome.
inline void initQuietly()
{
    static bool initialised = false;
    if(!initialised)
    {
        osg::osgInit(0, NULL);
        osg::osgLog().setLogLevel(osg::LOG_FATAL);
        initialised = true;
    }
}

} // namespace fuzz

// The libFuzzer entry point of a fuzzer built around operation.
#ifdef LUMORA_FUZZ_ENTRY
#define LUMORA_FUZZ_TARGET(operation)                                                 \
    extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) \
    {                                                                                 \
        return fuzz::operation(data, size);                                           \
    }
#else
#define LUMORA_FUZZ_TARGET(operation)
#endif

#endif

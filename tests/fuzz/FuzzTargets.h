#ifndef TESTS_FUZZ_FUZZTARGETS_H
#define TESTS_FUZZ_FUZZTARGETS_H

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

} // namespace fuzz

#endif

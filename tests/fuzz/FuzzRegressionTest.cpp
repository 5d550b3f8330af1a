// Replays every input the fuzzers once failed on (and the seeds they start
// from) through the same operations, in the ordinary test build.

#include "fuzz/FuzzTargets.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace
{

struct Target { const char *directory; int (*run)(const std::uint8_t *, std::size_t); };

class FuzzRegression : public ::testing::TestWithParam<Target> {};

TEST_P(FuzzRegression, EveryKeptInputRunsThrough)
{
    const std::filesystem::path dir =
        std::filesystem::path(LUMORA_FUZZ_REGRESSIONS) / GetParam().directory;
    ASSERT_TRUE(std::filesystem::is_directory(dir)) << dir;

    int inputs = 0;
    for(const auto &entry : std::filesystem::directory_iterator(dir))
    {
        if(!entry.is_regular_file())
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<std::uint8_t> data((std::istreambuf_iterator<char>(file)),
                                             std::istreambuf_iterator<char>());
        SCOPED_TRACE(entry.path().filename().string());
        EXPECT_EQ(GetParam().run(data.data(), data.size()), 0);
        ++inputs;
    }
    EXPECT_GT(inputs, 0) << "no inputs kept in " << dir;
}

INSTANTIATE_TEST_SUITE_P(Fuzz, FuzzRegression,
    ::testing::Values(Target{"load_model", &fuzz::loadModel},
                      Target{"read_image", &fuzz::readImage},
                      Target{"drive_viewport", &fuzz::driveViewport}),
    [](const ::testing::TestParamInfo<Target> &info)
    { return std::string(info.param.directory); });

} // namespace

#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSceneFileHandler.h>

#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <map>
#include <string>
#include <vector>

using namespace osg;

namespace
{

const char *s_modelDir = "/usr/share/assimp/models";

std::string lowerSuffix(const std::filesystem::path &file)
{
    std::string suffix = file.extension().string();
    if(!suffix.empty())
        suffix.erase(0, 1);
    std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return suffix;
}

// Debian's assimp-testmodels holds hundreds of valid, odd and deliberately
// broken files in every format assimp knows: each must give a scene or
// NullFC with a warning naming it, and never take the process down.
TEST(AssimpTestModels, EveryModelGivesASceneOrAWarning)
{
    namespace fs = std::filesystem;
    std::error_code error;
    if(!fs::is_directory(s_modelDir, error))
        GTEST_SKIP() << s_modelDir << " is missing: install Debian's assimp-testmodels";

    std::vector<fs::path> files;
    for(fs::recursive_directory_iterator it(s_modelDir, error), end; it != end; it.increment(error))
    {
        if(error)
            break;
        // Textures and reference renderings share the tree with the models.
        if(it->is_regular_file() &&
           SceneFileHandler::the().getFileType(it->path().c_str()) != NULL)
            files.push_back(it->path());
    }
    std::sort(files.begin(), files.end());
    ASSERT_FALSE(files.empty());

    struct Tally { int loaded = 0; int refused = 0; };
    std::map<std::string, Tally> byFormat;
    const auto start = std::chrono::steady_clock::now();

    std::vector<std::pair<double, std::string> > times;
    for(const fs::path &file : files)
    {
        testsupport::LogCapture log;
        const auto fileStart = std::chrono::steady_clock::now();
        NodePtr root = SceneFileHandler::the().read(file.c_str());
        times.emplace_back(std::chrono::duration<double>(
            std::chrono::steady_clock::now() - fileStart).count(), file.string());
        Tally &tally = byFormat[lowerSuffix(file)];
        if(root != NullFC)
        {
            ++tally.loaded;
            addRefCP(root);
            subRefCP(root);
        }
        else
        {
            ++tally.refused;
            EXPECT_TRUE(log.contains(file.string())) << file << ": " << log.text();
            if(std::getenv("LUMORA_LIST_REFUSED") != NULL)
                std::cout << log.text();
        }
    }

    const double seconds = std::chrono::duration<double>(
        std::chrono::steady_clock::now() - start).count();
    Tally total;
    std::cout << "assimp-testmodels, loaded/refused by suffix:\n";
    for(const auto &entry : byFormat)
    {
        std::cout << "  " << std::setw(8) << entry.first << " " << entry.second.loaded
                  << "/" << entry.second.refused << "\n";
        total.loaded  += entry.second.loaded;
        total.refused += entry.second.refused;
    }
    std::sort(times.rbegin(), times.rend());
    std::cout << "  slowest:\n";
    for(std::size_t i = 0; i < std::min<std::size_t>(times.size(), 8); ++i)
        std::cout << "    " << std::fixed << std::setprecision(2) << times[i].first
                  << " s " << times[i].second << "\n";
    std::cout << "  total " << total.loaded << " loaded, " << total.refused
              << " refused, " << std::fixed << std::setprecision(1) << seconds << " s"
              << std::endl;

    // Most of the set is valid; a loader refusing wholesale is broken.
    EXPECT_GT(total.loaded, total.refused);
}

} // namespace

#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGImageFileHandler.h>

#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <set>
#include <string>

using namespace osg;

namespace
{

const char *const ModelDirectory = "/usr/share/assimp/models";

// Images of assimp-testmodels the runtime refuses, relative to the models
// directory, with what the warning gives as the reason. None at present:
// the package ships PNG, JPEG, TGA and BMP files only, and all of them load.
const std::map<std::string, std::string> Refused =
{
};

TEST(TestModelImages, EveryShippedImageLoadsOrIsRefusedWithItsName)
{
    if(!std::filesystem::is_directory(ModelDirectory))
        GTEST_SKIP() << "assimp-testmodels is not installed";

    const std::set<std::string> suffixes = { "png", "jpg", "jpeg", "tga", "bmp", "dds", "tif",
                                             "tiff", "gif", "psd", "hdr", "exr", "ppm", "pgm" };
    int loaded = 0, refused = 0;
    for(const auto &entry : std::filesystem::recursive_directory_iterator(ModelDirectory))
    {
        std::string suffix = entry.path().extension().string();
        std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                       [](unsigned char c) { return char(std::tolower(c)); });
        if(!entry.is_regular_file() || suffix.empty() || suffixes.count(suffix.substr(1)) == 0)
            continue;

        const std::string path = entry.path().string();
        const std::string name = std::filesystem::relative(entry.path(), ModelDirectory).string();
        SCOPED_TRACE(name);
        testsupport::LogCapture log;
        ImagePtr image = ImageFileHandler::the().read(path.c_str());

        const auto refusal = Refused.find(name);
        if(refusal != Refused.end())
        {
            EXPECT_EQ(image, NullFC);
            EXPECT_TRUE(log.contains(path) && log.contains(refusal->second)) << log.text();
            ++refused;
            continue;
        }
        ASSERT_NE(image, NullFC) << log.text();
        addRefCP(image);
        EXPECT_GT(image->getWidth(), 0);
        EXPECT_GT(image->getHeight(), 0);
        EXPECT_EQ(image->getPixel().size(), std::size_t(image->getWidth()) *
                                            image->getHeight() * image->getBpp());
        EXPECT_EQ(log.text(), "");
        subRefCP(image);
        ++loaded;
    }
    EXPECT_EQ(refused, int(Refused.size()));
    EXPECT_GT(loaded, 0);
}

} // namespace

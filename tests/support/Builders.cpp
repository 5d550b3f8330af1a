#include "support/Builders.h"

#include "support/SceneSetup.h"

#include <OpenSG/OSGImageFileHandler.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <stdlib.h>

using namespace osg;

namespace testsupport
{

ImagePtr makeImage(UInt32 pixelFormat, int width, int height, Int32 dataType, UInt8 fill)
{
    ImagePtr image = Image::create();
    editCP(image,
           [&] { image->set(pixelFormat, width, height, 1, 1, 1, 0.0, NULL, dataType, true, 1); });
    if(image->editData() != NULL)
        std::memset(image->editData(), fill, image->getSize());
    return image;
}

ChunkMaterialPtr makeChunkMaterial(std::initializer_list<StateChunkPtr> chunks)
{
    ChunkMaterialPtr mat = ChunkMaterial::create();
    beginEditCP(mat, ChunkMaterial::ChunksFieldMask);
    for(StateChunkPtr chunk : chunks)
        if(chunk != NullFC)
            mat->addChunk(chunk);
    endEditCP(mat, ChunkMaterial::ChunksFieldMask);
    return mat;
}

void setBackgroundColor(SceneSetup &setup, const Color3f &color)
{
    editCP(setup.background, SolidBackground::ColorFieldMask,
           [&] { setup.background->setColor(color); });
}

std::string tempPath(const std::string &name) { return testing::TempDir() + "lumora-test-" + name; }

TempDir::TempDir()
{
    std::string pattern = testing::TempDir() + "lumora-test-XXXXXX";
    if(mkdtemp(&pattern[0]) != NULL)
        _dir = pattern;
    EXPECT_FALSE(_dir.empty()) << "no temporary directory from " << pattern;
}

TempDir::~TempDir()
{
    if(!_dir.empty())
        std::filesystem::remove_all(_dir);
}

std::string TempDir::write(const std::string &name, const std::string &contents) const
{
    std::ofstream(path(name), std::ios::binary) << contents;
    return path(name);
}

std::string TempDir::read(const std::string &name) const
{
    std::ifstream file(path(name), std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

ImagePtr readImageBytes(const std::string &name, const std::string &bytes)
{
    const std::string file = tempPath(name);
    std::ofstream(file, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
    ImagePtr image = ImageFileHandler::the().read(file.c_str());
    std::remove(file.c_str());
    if(image != NullFC)
        addRefCP(image);
    return image;
}

} // namespace testsupport

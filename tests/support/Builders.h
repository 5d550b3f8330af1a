#ifndef TESTS_SUPPORT_BUILDERS_H
#define TESTS_SUPPORT_BUILDERS_H

#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGStateChunk.h>

#include <initializer_list>
#include <string>

namespace testsupport
{

class SceneSetup;

// change() between beginEditCP and endEditCP of ptr for mask.
template <class PtrT, class Change>
void editCP(PtrT ptr, osg::BitVector mask, Change change)
{
    osg::beginEditCP(ptr, mask);
    change();
    osg::endEditCP(ptr, mask);
}

template <class PtrT, class Change>
void editCP(PtrT ptr, Change change)
{
    editCP(ptr, osg::FieldBits::AllFields, change);
}

// p with one more reference, for tests that release it themselves.
template <class PtrT>
PtrT held(PtrT p)
{
    addRefCP(p);
    return p;
}

// A single-level image with its storage filled with fill bytes.
osg::ImagePtr makeImage(osg::UInt32 pixelFormat, int width, int height,
                        osg::Int32 dataType = osg::Image::OSG_UINT8_IMAGEDATA,
                        osg::UInt8 fill = 0);

// A ChunkMaterial holding chunks (NullFC entries skipped), edited once.
osg::ChunkMaterialPtr makeChunkMaterial(std::initializer_list<osg::StateChunkPtr> chunks);

void setBackgroundColor(SceneSetup &setup, const osg::Color3f &color);

// A file name in the test's temporary directory.
std::string tempPath(const std::string &name);

// A fresh directory, removed with all it holds when the object goes.
class TempDir
{
  public:
    TempDir();
    ~TempDir();

    TempDir(const TempDir &)            = delete;
    TempDir &operator=(const TempDir &) = delete;

    std::string path(const std::string &name) const { return _dir + "/" + name; }
    // Writes contents to name; returns the file's path.
    std::string write(const std::string &name, const std::string &contents) const;
    std::string read (const std::string &name) const;

  private:
    std::string _dir;
};

// Writes bytes to a temporary file called name and reads it with the image
// file handler; the image comes back with one reference, or NullFC.
osg::ImagePtr readImageBytes(const std::string &name, const std::string &bytes);

} // namespace testsupport

#endif

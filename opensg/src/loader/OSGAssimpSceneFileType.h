#ifndef _OSGASSIMPSCENEFILETYPE_H_
#define _OSGASSIMPSCENEFILETYPE_H_

#include <OpenSG/OSGSceneFileType.h>

namespace osg
{

// Every model format assimp reads (OBJ, glTF, PLY, 3DS, Collada, ...), as
// one file type whose suffixes are those assimp reports. Meshes become
// indexed Geometry with normals, materials SimpleMaterial or
// SimpleTexturedMaterial, nodes Transforms with Name attachments, lights
// Light cores above the scene, and cameras PerspectiveCameras attached to
// their beacons (see OSGCameraAttachment.h).
class AssimpSceneFileType : public SceneFileType
{
  public:
    static AssimpSceneFileType &the(void);

    virtual ~AssimpSceneFileType(void);

    virtual const Char8 *getName(void) const override;

    virtual NodePtr read    (std::istream &is, const Char8 *fileNameOrExtension) const override;
    virtual NodePtr readFile(const Char8 *fileName) const override;

  protected:
    AssimpSceneFileType(void);

  private:
    static AssimpSceneFileType _the;
};

} // namespace osg

#endif

#include "FuzzTargets.h"

#include <OpenSG/OSGSceneFileHandler.h>
#include <OpenSG/OSGThread.h>

#include <iterator>
#include <sstream>
#include <string>

namespace fuzz
{

int loadModel(const std::uint8_t *data, std::size_t size)
{
    static const char *const suffixes[] = {
        "obj", "ply", "off", "stl", "gltf", "glb", "3ds", "dae", "x", "ase",
        "md2", "md3", "ms3d", "ac", "lwo", "nff", "raw", "smd", "cob", "b3d",
        "irrmesh", "q3o", "ter", "hmp", "mdl", "xgl", "ogex", "bvh", "csm", "fbx",
    };
    initQuietly();
    if(size < 1)
        return 0;

    const char *suffix = suffixes[data[0] % std::size(suffixes)];
    std::istringstream file(std::string(reinterpret_cast<const char *>(data) + 1, size - 1));
    osg::NodePtr scene = osg::SceneFileHandler::the().read(file, suffix);
    if(scene != osg::NullFC)
    {
        osg::addRefCP(scene);
        osg::subRefCP(scene);
    }
    osg::Thread::getCurrentChangeList()->clearAll();
    return 0;
}

} // namespace fuzz

LUMORA_FUZZ_TARGET(loadModel)

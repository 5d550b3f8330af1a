// Loads the model named on the command line through the installed runtime;
// exits 0 only if it gives a scene.
#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSceneFileHandler.h>

#include <iostream>

OSG_USING_NAMESPACE

int main(int argc, char **argv)
{
    if(argc != 2)
    {
        std::cerr << "usage: load_model FILE" << std::endl;
        return 2;
    }
    osgInit(argc, argv);
    NodePtr root = SceneFileHandler::the().read(argv[1]);
    const bool loaded = root != NullFC;
    if(loaded)
    {
        addRefCP(root);
        subRefCP(root);
    }
    std::cout << argv[1] << (loaded ? ": loaded" : ": not loaded") << std::endl;
    osgExit();
    return loaded ? 0 : 1;
}

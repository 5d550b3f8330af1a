#include "common/DemoScene.h"

#include <Lumora/DeferredRenderingViewport.h>

#include <OpenSG/OSGFieldContainerFactory.h>
#include <OpenSG/OSGSceneFileHandler.h>
#include <OpenSG/OSGSolidBackground.h>

#include "support/DeferredScene.h"
#include "support/Lighting.h"
#include "support/LogCapture.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

using namespace osg;
using testsupport::editCP;

namespace
{

const char *s_modelDir = "/usr/share/assimp/models";
const int   Size       = 32;

std::vector<std::filesystem::path> modelFiles(void)
{
    namespace fs = std::filesystem;
    std::vector<fs::path> files;
    std::error_code error;
    for(fs::recursive_directory_iterator it(s_modelDir, error), end; it != end;
        it.increment(error))
    {
        if(error)
            break;
        // Textures and reference renderings share the tree with the models.
        if(it->is_regular_file() &&
           SceneFileHandler::the().getFileType(it->path().c_str()) != NULL)
            files.push_back(it->path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

// Pixels of the window's lower-left Size x Size that differ from colour.
int pixelsOtherThan(const Color3f &colour)
{
    std::vector<UInt8> rgb(Size * Size * 3);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, Size, Size, GL_RGB, GL_UNSIGNED_BYTE, rgb.data());
    int differing = 0;
    for(std::size_t i = 0; i < rgb.size(); i += 3)
    {
        for(int c = 0; c < 3; ++c)
        {
            if(std::abs(int(rgb[i + c]) - int(colour[c] * 255.f + 0.5f)) > 2)
            {
                ++differing;
                break;
            }
        }
    }
    return differing;
}

} // namespace

class TestModelsRender : public testsupport::WindowTest
{
  protected:
    int windowWidth () const override { return Size; }
    int windowHeight() const override { return Size; }
};

// Every file of Debian's assimp-testmodels that the loader turns into a
// scene renders through one deferred viewport, framed by a camera around
// its bounds, with no GL error and, but for a few, something on screen; a
// file the loader refuses leaves a warning naming it.
TEST_F(TestModelsRender, EveryModelRendersOrIsRefusedByName)
{
    std::error_code error;
    if(!std::filesystem::is_directory(s_modelDir, error))
        GTEST_SKIP() << s_modelDir << " is missing: install Debian's assimp-testmodels";
    const std::vector<std::filesystem::path> files = modelFiles();
    ASSERT_FALSE(files.empty());

    const Color3f      backgroundColour(0.2f, 0.4f, 0.6f);
    SolidBackgroundPtr background = SolidBackground::create();
    editCP(background, [&] { background->setColor(backgroundColour); });

    DeferredRenderingViewportPtr viewport = DeferredRenderingViewportPtr::dcast(
        FieldContainerFactory::the()->createFieldContainer("DeferredRenderingViewport"));
    addRefCP(viewport);
    beginEditCP(viewport);
    viewport->setBackground(background);
    viewport->setSize(0, 0, 1, 1);
    endEditCP(viewport);
    addPort(viewport);

    // One unshadowed sun, the same for every model; its beacon need not be
    // in the scene.
    DirectionalLightPtr sun = testsupport::makeLight(
        testsupport::DirectionalLightParams{Vec3f(0.5f, 1.f, 0.7f)});
    editCP(sun, Light::BeaconFieldMask, [&] { sun->setBeacon(demo::makeGroupNode()); });
    viewport->addLight(sun);

    std::vector<std::string> rendered, refused, empty, unseen;
    for(const std::filesystem::path &file : files)
    {
        SCOPED_TRACE(file.string());
        testsupport::LogCapture log;
        NodePtr model = SceneFileHandler::the().read(file.c_str());
        if(model == NullFC)
        {
            EXPECT_TRUE(log.contains(file.string())) << log.text();
            refused.push_back(file.string());
            continue;
        }

        NodePtr root = demo::makeGroupNode();
        addRefCP(root);
        demo::addChild(root, model);
        Pnt3f  center;
        Real32 radius = 0.f;
        if(!demo::boundingSphere(root, center, radius))
        {
            // lumora-render refuses these with a message naming the file.
            empty.push_back(file.string());
            subRefCP(root);
            continue;
        }
        PerspectiveCameraPtr camera = demo::makeFramingCamera(root, center, radius);
        beginEditCP(viewport, Viewport::RootFieldMask | Viewport::CameraFieldMask);
        viewport->setRoot(root);
        viewport->setCamera(camera);
        endEditCP(viewport, Viewport::RootFieldMask | Viewport::CameraFieldMask);
        viewport->prepareScene(root);

        window->render(action);
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        if(pixelsOtherThan(backgroundColour) == 0)
            unseen.push_back(file.string());
        EXPECT_FALSE(log.contains("ERROR")) << log.text();
        rendered.push_back(file.string());

        beginEditCP(viewport, Viewport::RootFieldMask | Viewport::CameraFieldMask);
        viewport->setRoot(NullFC);
        viewport->setCamera(NullFC);
        endEditCP(viewport, Viewport::RootFieldMask | Viewport::CameraFieldMask);
        subRefCP(root);
    }
    std::cout << "assimp-testmodels: " << rendered.size() << " rendered, " << refused.size()
              << " refused by the loader, " << empty.size() << " with nothing to draw"
              << std::endl;
    for(const std::string &name : empty)
        std::cout << "  nothing to draw: " << name << "\n";
    for(const std::string &name : unseen)
        std::cout << "  nothing seen at " << Size << "x" << Size << ": " << name << "\n";

    viewport->subLight(sun);
    subRefCP(sun);
    subPort(viewport);
    subRefCP(viewport);

    // Most of the set is valid; refusing wholesale would be a broken loader.
    EXPECT_GT(rendered.size(), refused.size() + empty.size());
    // A few models cannot show at this size (a single degenerate triangle,
    // small parts spread over a large bounding box); more is a fault.
    EXPECT_LE(unseen.size() * 100, rendered.size() * 2);
}

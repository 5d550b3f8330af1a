#include "VSMShadowMapper.h"

#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGMaterialGroup.h>

#include <Lumora/IDeferredLight.h>
#include <Lumora/PostProcessingTools.h>

#include <cstring>

OSG_BEGIN_NAMESPACE

// Depth normalised to the light camera's near..far range, linear so that the
// moments filter and blur meaningfully.
const char *VSMShadowMapper::s_strVertexShader =
    "uniform vec2 vLightNearFar;\n"
    "\n"
    "varying float linearDepth;\n"
    "\n"
    "void main(void)\n"
    "{\n"
    "    vec3 positionViewSpace = (gl_ModelViewMatrix * gl_Vertex).xyz;\n"
    "    linearDepth = (-positionViewSpace.z - vLightNearFar.x) /\n"
    "                  (vLightNearFar.y - vLightNearFar.x);\n"
    "    gl_Position = ftransform();\n"
    "}\n";

const char *VSMShadowMapper::s_strFragmentShader =
    "varying float linearDepth;\n"
    "\n"
    "void main(void)\n"
    "{\n"
    "    gl_FragColor = vec4(linearDepth, linearDepth * linearDepth, 0.0, 0.0);\n"
    "}\n";

namespace
{
// Where no occluder is: depth 0.5 with a variance of 0.75, which the
// lights' Chebyshev test reads as lit.
const Color4f UncoveredMoments(0.5f, 1.0f, 0.0f, 1.0f);

// Mesa's software rasterisers filter anisotropically texel by texel: with
// it, a frame with a few shadowed lights takes seconds instead of
// milliseconds.
bool isSoftwareRasterizer(void)
{
    const char *renderer = reinterpret_cast<const char *>(glGetString(GL_RENDERER));
    if(renderer == NULL)
        return false;
    return std::strstr(renderer, "llvmpipe") != NULL ||
           std::strstr(renderer, "softpipe") != NULL;
}

void addMomentTexture(RenderTarget &target, Real32 anisotropy)
{
    TextureChunkPtr texture =
        target.addTargetTexture(GL_RGB32F_ARB, GL_RGB, GL_LINEAR, Image::OSG_RGB_PF,
                                Image::OSG_FLOAT32_IMAGEDATA, anisotropy, 1);
    beginEditCP(texture, TextureChunk::WrapSFieldMask | TextureChunk::WrapTFieldMask);
    texture->setWrapS(GL_CLAMP_TO_EDGE);
    texture->setWrapT(GL_CLAMP_TO_EDGE);
    endEditCP(texture, TextureChunk::WrapSFieldMask | TextureChunk::WrapTFieldMask);
}
} // namespace

VSMShadowMapper::VSMShadowMapper(void) :
    window       (NullFC),
    initialized  (false),
    size         (0),
    maxAnisotropy(1.0f),
    renderTarget (),
    renderAction (NULL),
    shader       (NullFC),
    shadowRoot   (NullFC),
    lightCamera  (NullFC),
    cameraFrustum(),
    sceneVolume  (DynamicVolume::BOX_VOLUME),
    rootParent   (NullFC),
    rootIndex    (-1)
{
}

VSMShadowMapper::~VSMShadowMapper(void)
{
    if(!initialized)
        return;

    // A frame that never reached its end must not take the scene along.
    while(shadowRoot->getNChildren() > 0)
        endShadowmapRendering(shadowRoot->getChild(0));

    delete renderAction;
    subRefCP(lightCamera);
    subRefCP(shadowRoot);
    subRefCP(shader);
}

void VSMShadowMapper::initialize(WindowPtr win, UInt16 mapSize)
{
    if(initialized)
        return;

    glGetFloatv(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT, &maxAnisotropy);
    if(isSoftwareRasterizer())
        maxAnisotropy = 1.0f;

    window = win;
    size   = mapSize;

    renderTarget.initialize(window, 0, 0, size - 1, size - 1);
    renderTarget.setBgClear(UncoveredMoments, 1.0f, true, true);
    addMomentTexture(renderTarget, maxAnisotropy);

    shader = SHLChunk::create();
    addRefCP(shader);
    beginEditCP(shader);
    shader->setVertexProgram  (s_strVertexShader);
    shader->setFragmentProgram(s_strFragmentShader);
    endEditCP(shader);

    ChunkMaterialPtr material = ChunkMaterial::create();
    beginEditCP(material, ChunkMaterial::ChunksFieldMask);
    material->addChunk(shader, State::AutoSlotReplace);
    endEditCP(material, ChunkMaterial::ChunksFieldMask);

    MaterialGroupPtr group = MaterialGroup::create();
    beginEditCP(group, MaterialGroup::MaterialFieldMask);
    group->setMaterial(material);
    endEditCP(group, MaterialGroup::MaterialFieldMask);

    shadowRoot = makeNodeFor(group);
    addRefCP(shadowRoot);

    lightCamera = MatrixCamera::create();
    addRefCP(lightCamera);

    renderAction = RenderAction::create();
    renderAction->setWindow(window.getCPtr());

    initialized = true;
}

void VSMShadowMapper::initializeShadowmap(RenderTarget *target)
{
    const int half = size / 2;
    target->initialize(window, 0, 0, half - 1, half - 1);
    target->setBgClear(UncoveredMoments, 1.0f, true, true);
    addMomentTexture(*target, maxAnisotropy);
}

void VSMShadowMapper::beginShadowmapRendering(NodePtr root, CameraPtr camera, Viewport *viewport)
{
    // OpenSG nodes have one parent: note the root's place before taking it,
    // and hold the root so that leaving its parent cannot destroy it.
    if(root->getParent() != shadowRoot)
    {
        rootParent = root->getParent();
        rootIndex  = rootParent != NullFC ? rootParent->findChild(root) : -1;
        addRefCP(root);

        beginEditCP(shadowRoot, Node::ChildrenFieldMask);
        shadowRoot->addChild(root);
        endEditCP(shadowRoot, Node::ChildrenFieldMask);
    }

    root->getWorldVolume(sceneVolume);

    camera->getFrustum(cameraFrustum, *viewport);
    cameraFrustum.setValid();
    cameraFrustum.setEmpty(false);
}

void VSMShadowMapper::updateShadowmap(IDeferredLight *light)
{
    for(UInt16 i = 0; i < light->getNumShadowmaps(); ++i)
    {
        if(!light->updateLightCamera(i, cameraFrustum, sceneVolume, lightCamera))
            continue;

        RenderTarget *target = light->getShadowmap(i);
        if(target == NULL)
            continue;
        if(!target->isInitialized())
            initializeShadowmap(target);

        beginEditCP(shader, ShaderChunk::ParametersFieldMask);
        shader->setUniformParameter("vLightNearFar",
                                    Vec2f(lightCamera->getNear(), lightCamera->getFar()));
        endEditCP(shader, ShaderChunk::ParametersFieldMask);

        renderTarget.renderScene(shadowRoot, lightCamera, renderAction, NullFC);

        PostProcessingTools::getInstance()->downscaleTexture(
            renderTarget.getTargetTexture(0), target,
            PostProcessingTools::DOWNSCALE_2X2, renderAction);
    }
}

void VSMShadowMapper::endShadowmapRendering(NodePtr root)
{
    if(root->getParent() != shadowRoot)
        return;

    beginEditCP(shadowRoot, Node::ChildrenFieldMask);
    shadowRoot->subChild(root);
    endEditCP(shadowRoot, Node::ChildrenFieldMask);

    if(rootParent != NullFC)
    {
        beginEditCP(rootParent, Node::ChildrenFieldMask);
        rootParent->insertChild(UInt32(rootIndex), root);
        endEditCP(rootParent, Node::ChildrenFieldMask);
    }
    rootParent = NullFC;
    rootIndex  = -1;

    // A root nobody else references keeps this one hold rather than being
    // destroyed: the application may still use it.
    if(root.getRefCount() > 1)
        subRefCP(root);
}

OSG_END_NAMESPACE

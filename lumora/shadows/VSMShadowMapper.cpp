#include "VSMShadowMapper.h"

#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSwitch.h>
#include <OpenSG/OSGTransform.h>

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

// A 64-bit digest of what a shadow render draws. Two scenes that hash alike
// would share a stale map, so the mix must spread every bit.
class SceneDigest
{
  public:
    SceneDigest(void) : _hash(0x9E3779B97F4A7C15ULL), _tail(0) {}

    void add(const void *data, UInt64 bytes)
    {
        const UInt8 *byte = static_cast<const UInt8 *>(data);
        for(; bytes >= 8; bytes -= 8, byte += 8)
        {
            UInt64 word;
            std::memcpy(&word, byte, 8);
            mix(word);
        }
        UInt64 last = 0;
        std::memcpy(&last, byte, bytes);
        mix(last ^ (bytes << 56));
    }
    template <class ValueT>
    void add(const ValueT &value) { add(&value, sizeof(value)); }

    UInt64 value(void) const { return _hash; }

  private:
    static UInt64 rotate(UInt64 x, int by) { return (x << by) | (x >> (64 - by)); }
    void mix(UInt64 word)
    {
        word  *= 0x87C37B91114253D5ULL;
        word   = rotate(word, 31);
        word  *= 0x4CF5AD432745937FULL;
        _hash ^= word;
        _hash  = rotate(_hash, 27) * 5 + 0x52DCE729 + ++_tail;
    }

    UInt64 _hash;
    UInt64 _tail;
};

template <class PropertyPtrT>
void addProperty(SceneDigest &digest, const PropertyPtrT &property)
{
    digest.add(property.getCPtr());
    if(property == NullFC)
        return;
    const UInt32 stride = property->getStride() != 0 ?
        property->getStride() : property->getFormatSize() * property->getDimension();
    digest.add(property->getFormat());
    digest.add(property->getSize());
    if(property->getData() != NULL)
        digest.add(property->getData(), UInt64(property->getSize()) * stride);
}

// Everything the depth render reads: traversal masks, transforms, switch
// choices and the geometry's primitives and positions. Materials are not
// read: the mapper's own material replaces them.
void addNode(SceneDigest &digest, const NodePtr &node)
{
    digest.add(node.getCPtr());
    digest.add(node->getTravMask());
    NodeCorePtr core = node->getCore();
    digest.add(core.getCPtr());

    if(TransformPtr transform = TransformPtr::dcast(core))
        digest.add(transform->getMatrix().getValues(), sizeof(Real32) * 16);
    else if(SwitchPtr choice = SwitchPtr::dcast(core))
        digest.add(choice->getChoice());
    else if(GeometryPtr geometry = GeometryPtr::dcast(core))
    {
        addProperty(digest, geometry->getTypes());
        addProperty(digest, geometry->getLengths());
        addProperty(digest, geometry->getIndices());
        addProperty(digest, geometry->getPositions());
        const MFUInt16 *mapping = geometry->getMFIndexMapping();
        digest.add(mapping->size());
        for(UInt32 i = 0; i < mapping->size(); ++i)
            digest.add((*mapping)[i]);
    }

    digest.add(node->getNChildren());
    for(UInt32 i = 0; i < node->getNChildren(); ++i)
        addNode(digest, node->getChild(i));
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
    reuse        (false),
    renderCount  (0),
    sceneStamp   (0),
    stamps       (),
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
    stamps.erase(target);
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

    if(reuse)
    {
        SceneDigest digest;
        addNode(digest, root);
        sceneStamp = digest.value();
    }

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

        MapStamp stamp;
        if(reuse)
        {
            stamp.modelview    = lightCamera->getModelviewMatrix();
            stamp.projection   = lightCamera->getProjectionMatrix();
            stamp.nearDistance = lightCamera->getNear();
            stamp.farDistance  = lightCamera->getFar();
            stamp.scene        = sceneStamp;
            if(isCurrent(target, stamp))
                continue;
        }

        beginEditCP(shader, ShaderChunk::ParametersFieldMask);
        shader->setUniformParameter("vLightNearFar",
                                    Vec2f(lightCamera->getNear(), lightCamera->getFar()));
        endEditCP(shader, ShaderChunk::ParametersFieldMask);

        renderTarget.renderScene(shadowRoot, lightCamera, renderAction, NullFC);

        PostProcessingTools::getInstance()->downscaleTexture(
            renderTarget.getTargetTexture(0), target,
            PostProcessingTools::DOWNSCALE_2X2, renderAction);
        ++renderCount;

        if(reuse)
            stamps[target] = stamp;
        else
            stamps.erase(target);
    }
}

bool VSMShadowMapper::isCurrent(const RenderTarget *target, const MapStamp &stamp) const
{
    std::map<const RenderTarget *, MapStamp>::const_iterator it = stamps.find(target);
    if(it == stamps.end())
        return false;
    const MapStamp &drawn = it->second;
    return drawn.scene        == stamp.scene        &&
           drawn.nearDistance == stamp.nearDistance &&
           drawn.farDistance  == stamp.farDistance  &&
           drawn.modelview .equals(stamp.modelview,  0.0f) &&
           drawn.projection.equals(stamp.projection, 0.0f);
}

void VSMShadowMapper::invalidate(void)
{
    stamps.clear();
}

void VSMShadowMapper::forgetShadowmaps(IDeferredLight *light)
{
    for(UInt16 i = 0; i < light->getNumShadowmaps(); ++i)
        stamps.erase(light->getShadowmap(i));
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

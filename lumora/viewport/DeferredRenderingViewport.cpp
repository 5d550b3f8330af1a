#include "DeferredRenderingViewport.h"

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSHLParameterChunk.h>
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGSpotLight.h>
#include <OpenSG/OSGWindow.h>

#include <Lumora/DeferredDirectionalLight.h>
#include <Lumora/DeferredEmissiveLight.h>
#include <Lumora/DeferredLightBatch.h>
#include <Lumora/DeferredPointLight.h>
#include <Lumora/DeferredSpotLight.h>
#include <Lumora/DeferredAAPostProcessor.h>
#include <Lumora/DeferredCMBPostProcessor.h>
#include <Lumora/DeferredDoFPostProcessor.h>
#include <Lumora/DeferredHDRPostProcessor.h>
#include <Lumora/DeferredSSAOPostProcessor.h>

#include <chrono>
#include <ctime>
#include <cmath>
#include <limits>
#include <map>
#include <set>

OSG_BEGIN_NAMESPACE

StatElemDesc<StatRealElem> DeferredRenderingViewport::statGeometryPassTime(
    "deferredGeometryPassTime", "G-buffer pass time in milliseconds");
StatElemDesc<StatRealElem> DeferredRenderingViewport::statShadowPassTime(
    "deferredShadowPassTime", "light updates and shadow maps in milliseconds");
StatElemDesc<StatRealElem> DeferredRenderingViewport::statLightPassTime(
    "deferredLightPassTime", "light pass time in milliseconds");
StatElemDesc<StatRealElem> DeferredRenderingViewport::statForwardPassTime(
    "deferredForwardPassTime", "forward (transparent) pass time in milliseconds");
StatElemDesc<StatRealElem> DeferredRenderingViewport::statPostProcessTime(
    "deferredPostProcessTime", "post-processing time in milliseconds");
StatElemDesc<StatRealElem> DeferredRenderingViewport::statFinalPassTime(
    "deferredFinalPassTime", "final pass time in milliseconds");

// The G-buffer's shininess channel holds log2(shininess) / 8 so that the
// light shaders' pow(2.0, a * 8.0) gives the material's shininess back.
const char *DeferredRenderingViewport::s_strGBufferVertex =
    "varying vec3 vNormal;\n"
    "\n"
    "void main(void)\n"
    "{\n"
    "    gl_Position = ftransform();\n"
    "    gl_TexCoord[0] = gl_TextureMatrix[0] * gl_MultiTexCoord0;\n"
    "    vNormal = normalize(gl_NormalMatrix * gl_Normal);\n"
    "}\n";

const char *DeferredRenderingViewport::s_strGBufferFragment =
    "uniform bool bUseDiffuseTexture;\n"
    "uniform sampler2D texDiffuse;\n"
    "\n"
    "varying vec3 vNormal;\n"
    "\n"
    "void main(void)\n"
    "{\n"
    "    vec4 diffuse = gl_FrontMaterial.diffuse;\n"
    "    if(bUseDiffuseTexture)\n"
    "        diffuse = texture2D(texDiffuse, gl_TexCoord[0].st);\n"
    "\n"
    "    float fLogShininess = log2(max(gl_FrontMaterial.shininess, 1.0)) / 8.0;\n"
    "\n"
    "    gl_FragData[0] = vec4(vNormal * 0.5 + 0.5, 1.0);\n"
    "    gl_FragData[1] = diffuse;\n"
    "    gl_FragData[2] = vec4(gl_FrontMaterial.specular.rgb, fLogShininess);\n"
    "    gl_FragData[3] = gl_FrontMaterial.emission;\n"
    "}\n";

#ifndef GL_SAMPLES_PASSED
#define GL_SAMPLES_PASSED 0x8914
#endif
#ifndef GL_QUERY_RESULT
#define GL_QUERY_RESULT 0x8866
#endif

namespace
{
// Chunks the deferred viewports put into materials: never the
// application's to silence, whichever viewport meets them.
std::set<const StateChunk *> &viewportChunks(void)
{
    static std::set<const StateChunk *> chunks;
    return chunks;
}

// How many conversions, of any viewport, rely on an application chunk they
// silenced; the last one to go switches it back on.
std::map<const StateChunk *, UInt32> &silencedCounts(void)
{
    static std::map<const StateChunk *, UInt32> counts;
    return counts;
}

// Occlusion queries count the light pass's pixels for pass timing. They are
// newer than GL 1.1, so they come through the window's extension functions.
typedef void (OSG_APIENTRY *GenQueriesProc      )(GLsizei n, GLuint *ids);
typedef void (OSG_APIENTRY *DeleteQueriesProc   )(GLsizei n, const GLuint *ids);
typedef void (OSG_APIENTRY *BeginQueryProc      )(GLenum target, GLuint id);
typedef void (OSG_APIENTRY *EndQueryProc        )(GLenum target);
typedef void (OSG_APIENTRY *GetQueryObjectuivProc)(GLuint id, GLenum name, GLuint *value);

struct QueryFunctionIds
{
    UInt32 extension, gen, del, begin, end, result;
};

// Registered when the first viewport is made, so that the window resolves
// them in its next frameInit, before that viewport first renders.
const QueryFunctionIds &queryFunctionIds(void)
{
    static const UInt32 extension = Window::registerExtension("GL_ARB_occlusion_query");
    static const QueryFunctionIds ids =
    {
        extension,
        Window::registerFunction("glGenQueries",        Int32(extension), 0x0105),
        Window::registerFunction("glDeleteQueries",     Int32(extension), 0x0105),
        Window::registerFunction("glBeginQuery",        Int32(extension), 0x0105),
        Window::registerFunction("glEndQuery",          Int32(extension), 0x0105),
        Window::registerFunction("glGetQueryObjectuiv", Int32(extension), 0x0105)
    };
    return ids;
}

// Counts the samples drawn between begin and end; counts nothing where the
// window has no occlusion queries.
class SampleCounter
{
  public:
    SampleCounter(void) :
        _query(0), _gen(NULL), _del(NULL), _begin(NULL), _end(NULL), _result(NULL)
    {
    }

    void begin(WindowPtr window)
    {
        const QueryFunctionIds &ids = queryFunctionIds();
        if(!window->hasExtension(ids.extension) && window->getGLVersion() < 0x0105)
            return;
        _gen    = reinterpret_cast<GenQueriesProc       >(window->getFunction(ids.gen));
        _del    = reinterpret_cast<DeleteQueriesProc    >(window->getFunction(ids.del));
        _begin  = reinterpret_cast<BeginQueryProc       >(window->getFunction(ids.begin));
        _end    = reinterpret_cast<EndQueryProc         >(window->getFunction(ids.end));
        _result = reinterpret_cast<GetQueryObjectuivProc>(window->getFunction(ids.result));
        if(_gen == NULL || _del == NULL || _begin == NULL || _end == NULL || _result == NULL)
            return;
        _gen(1, &_query);
        _begin(GL_SAMPLES_PASSED, _query);
    }

    UInt64 end(void)
    {
        if(_query == 0)
            return 0;
        GLuint samples = 0;
        _end(GL_SAMPLES_PASSED);
        _result(_query, GL_QUERY_RESULT, &samples);
        _del(1, &_query);
        _query = 0;
        return UInt64(samples);
    }

  private:
    GLuint                _query;
    GenQueriesProc        _gen;
    DeleteQueriesProc     _del;
    BeginQueryProc        _begin;
    EndQueryProc          _end;
    GetQueryObjectuivProc _result;
};
} // namespace

void DeferredRenderingViewport::initMethod(void)
{
}

DeferredRenderingViewport::DeferredRenderingViewport(void) :
    Inherited         (),
    lastWidth         (-1),
    lastHeight        (-1),
    forwardNodes      (),
    deferredNodes     (),
    gbufferTarget     (),
    lightTarget       (),
    shadowMapper      (),
    gbufferShader     (NullFC),
    fullscreenMaterial(NullFC),
    gbufferBlend      (NullFC),
    forwardDepth      (NullFC),
    lightRoot         (NullFC),
    lightRenderAction (NULL),
    fullscreenQuad    (NullFC),
    globalShadowIntensity(1.0f),
    lights            (),
    emissiveLight     (NULL),
    postProcessOn     {false, false, false, false, false},
    postProcessors    {NULL, NULL, NULL, NULL, NULL}
{
    queryFunctionIds();
}

DeferredRenderingViewport::DeferredRenderingViewport(const DeferredRenderingViewport &source) :
    Inherited         (source),
    lastWidth         (source.lastWidth),
    lastHeight        (source.lastHeight),
    forwardNodes      (),
    deferredNodes     (),
    gbufferTarget     (),
    lightTarget       (),
    shadowMapper      (),
    gbufferShader     (NullFC),
    fullscreenMaterial(NullFC),
    gbufferBlend      (NullFC),
    forwardDepth      (NullFC),
    lightRoot         (NullFC),
    lightRenderAction (NULL),
    fullscreenQuad    (NullFC),
    globalShadowIntensity(source.globalShadowIntensity),
    lights            (),
    emissiveLight     (NULL),
    postProcessOn     {source.postProcessOn[0], source.postProcessOn[1],
                       source.postProcessOn[2], source.postProcessOn[3],
                       source.postProcessOn[4]},
    postProcessors    {NULL, NULL, NULL, NULL, NULL}
{
}

DeferredRenderingViewport::~DeferredRenderingViewport(void)
{
}

void DeferredRenderingViewport::onCreate(const DeferredRenderingViewport *)
{
    // The prototype made during start-up owns nothing.
    if(GlobalSystemState == Startup)
        return;

    lightRoot = makeNodeFor(Group::create());
    addRefCP(lightRoot);

    lightRenderAction = RenderAction::create();
    lightRenderAction->setFrustumCulling(false);

    forwardDepth = DepthChunk::create();
    addRefCP(forwardDepth);
    beginEditCP(forwardDepth);
    forwardDepth->setEnable(true);
    forwardDepth->setFunc(GL_LEQUAL);
    forwardDepth->setReadOnly(false);
    endEditCP(forwardDepth);

    gbufferBlend = BlendChunk::create();
    addRefCP(gbufferBlend);
    beginEditCP(gbufferBlend);
    gbufferBlend->setSrcFactor(GL_ONE);
    gbufferBlend->setDestFactor(GL_ZERO);
    endEditCP(gbufferBlend);

    gbufferShader = SHLChunk::create();
    addRefCP(gbufferShader);
    beginEditCP(gbufferShader);
    gbufferShader->setVertexProgram(s_strGBufferVertex);
    gbufferShader->setFragmentProgram(s_strGBufferFragment);
    endEditCP(gbufferShader);
    viewportChunks().insert(gbufferShader.getCPtr());
    viewportChunks().insert(gbufferBlend.getCPtr());

    fullscreenMaterial = ChunkMaterial::create();
    addRefCP(fullscreenMaterial);

    fullscreenQuad = PolygonForeground::create();
    addRefCP(fullscreenQuad);
    beginEditCP(fullscreenQuad);
    fullscreenQuad->getPositions().push_back(Pnt2f(0, 1));
    fullscreenQuad->getPositions().push_back(Pnt2f(0, 0));
    fullscreenQuad->getPositions().push_back(Pnt2f(1, 0));
    fullscreenQuad->getPositions().push_back(Pnt2f(1, 1));
    fullscreenQuad->getTexCoords().push_back(Vec3f(0, 1, 0));
    fullscreenQuad->getTexCoords().push_back(Vec3f(0, 0, 0));
    fullscreenQuad->getTexCoords().push_back(Vec3f(1, 0, 0));
    fullscreenQuad->getTexCoords().push_back(Vec3f(1, 1, 0));
    fullscreenQuad->setMaterial(fullscreenMaterial);
    endEditCP(fullscreenQuad);

    postProcessors[AAPostProcess]   = new DeferredAAPostProcessor();
    postProcessors[SSAOPostProcess] = new DeferredSSAOPostProcessor();
    postProcessors[DoFPostProcess]  = new DeferredDoFPostProcessor();
    postProcessors[HDRPostProcess]  = new DeferredHDRPostProcessor();
    postProcessors[CMBPostProcess]  = new DeferredCMBPostProcessor();

    emissiveLight = new DeferredEmissiveLight();
    beginEditCP(lightRoot, Node::ChildrenFieldMask);
    lightRoot->addChild(emissiveLight->getVolumeRoot());
    endEditCP(lightRoot, Node::ChildrenFieldMask);

    lightBatch = new DeferredLightBatch();
    lightBatch->setShown(false);
    beginEditCP(lightRoot, Node::ChildrenFieldMask);
    lightRoot->addChild(lightBatch->getVolumeRoot());
    endEditCP(lightRoot, Node::ChildrenFieldMask);
}

void DeferredRenderingViewport::onDestroy(void)
{
    // Materials outlive the viewport: each gets back what it had.
    for(const Conversion &conversion : conversions)
        undoConversion(conversion);
    conversions.clear();

    for(LightMap::iterator it = lights.begin(); it != lights.end(); ++it)
    {
        releaseLight(it->second);
        subRefCP(it->first);
    }
    lights.clear();

    for(UInt32 slot = 0; slot < NumPostProcessors; ++slot)
    {
        delete postProcessors[slot];
        postProcessors[slot] = NULL;
    }

    if(gbufferShader != NullFC)
    {
        viewportChunks().erase(gbufferShader.getCPtr());
        viewportChunks().erase(gbufferBlend.getCPtr());
        subRefCP(gbufferShader);
    }
    if(fullscreenMaterial != NullFC)
        subRefCP(fullscreenMaterial);

    delete lightRenderAction;
    lightRenderAction = NULL;

    delete emissiveLight;
    emissiveLight = NULL;
    delete lightBatch;
    lightBatch = NULL;

    subRefCP(gbufferBlend);
    subRefCP(forwardDepth);
    subRefCP(lightRoot);
    subRefCP(fullscreenQuad);

    Inherited::onDestroy();
}

void DeferredRenderingViewport::changed(BitVector whichField, UInt32 origin)
{
    Inherited::changed(whichField, origin);
}

void DeferredRenderingViewport::dump(UInt32, const BitVector) const
{
    SLOG << "Dump DeferredRenderingViewport NI" << std::endl;
}

// --- scene preparation ------------------------------------------------------

void DeferredRenderingViewport::prepareScene(NodePtr root)
{
    if(root == NullFC)
    {
        SWARNING << "DeferredRenderingViewport::prepareScene: no root!" << std::endl;
        return;
    }
    forwardNodes.clear();
    deferredNodes.clear();
    dropOrphanConversions();
    shadowMapper.invalidate();

    traverse(root, osgTypedMethodFunctor1ObjPtrCPtrRef<Action::ResultE,
                                                       DeferredRenderingViewport,
                                                       NodePtr>(
                       this, &DeferredRenderingViewport::prepareNode));
}

Action::ResultE DeferredRenderingViewport::prepareNode(NodePtr &node)
{
    if(node->getTravMask() != 0xFFFFFFFF || node->getCore() == NullFC)
        return Action::Continue;

    MaterialPtr    material;
    NodeCorePtr    core     = node->getCore();
    GeometryPtr    geometry = GeometryPtr::dcast(core);
    MaterialGroupPtr group  = MaterialGroupPtr::dcast(core);

    if(geometry != NullFC)
        material = geometry->getMaterial();
    else if(group != NullFC)
        material = group->getMaterial();
    else
        return Action::Continue;

    ChunkMaterialPtr chunkMaterial = ChunkMaterialPtr::dcast(material);
    if(chunkMaterial == NullFC)
        return Action::Continue;

    if(chunkMaterial->isTransparent())
    {
        forwardNodes.push_back(node);
        if(chunkMaterial->find(forwardDepth) < 0)
        {
            beginEditCP(chunkMaterial, ChunkMaterial::ChunksFieldMask);
            chunkMaterial->addChunk(forwardDepth, State::AutoSlotReplace);
            endEditCP(chunkMaterial, ChunkMaterial::ChunksFieldMask);
            addRefCP(chunkMaterial);
            conversions.push_back(Conversion{chunkMaterial, NullFC, {}});
        }
        return Action::Continue;
    }

    deferredNodes.push_back(node);

    chunkMaterial->rebuildState();
    StatePtr state = chunkMaterial->getState(0);

    if(chunkMaterial->find(gbufferShader) >= 0)
        return Action::Continue;

    // The state holds what the material makes itself; the chunk list also
    // what a later chunk of the same kind, another viewport's, hides there.
    std::vector<StateChunkPtr> candidates(state->getChunks().begin(),
                                          state->getChunks().end());
    candidates.insert(candidates.end(), chunkMaterial->getChunks().begin(),
                      chunkMaterial->getChunks().end());
    std::set<const StateChunk *> seen;

    Conversion conversion{chunkMaterial, NullFC, {}};
    bool useDiffuseTexture = false;
    for(UInt32 i = 0; i < candidates.size(); ++i)
    {
        StateChunkPtr chunk = candidates[i];
        if(chunk == NullFC || !seen.insert(chunk.getCPtr()).second)
            continue;

        if(BlendChunkPtr::dcast(chunk) != NullFC || SHLChunkPtr::dcast(chunk) != NullFC)
        {
            // Another viewport's G-buffer chunks stay; an application chunk
            // switched off by the application itself stays off after us.
            if(viewportChunks().count(chunk.getCPtr()) != 0)
                continue;
            std::map<const StateChunk *, UInt32>::iterator count =
                silencedCounts().find(chunk.getCPtr());
            if(!chunk->getIgnore())
            {
                silencedCounts()[chunk.getCPtr()] = 1;
                conversion.silenced.push_back(chunk);
            }
            else if(count != silencedCounts().end())
            {
                ++count->second;
                conversion.silenced.push_back(chunk);
            }
            beginEditCP(chunk, StateChunk::IgnoreFieldMask);
            chunk->setIgnore(true);
            endEditCP(chunk, StateChunk::IgnoreFieldMask);
        }
        else
        {
            TextureChunkPtr texture = TextureChunkPtr::dcast(chunk);
            if(texture != NullFC && texture->getImage() != NullFC)
                useDiffuseTexture = true;
        }
    }

    SHLParameterChunkPtr parameters = SHLParameterChunk::create();
    beginEditCP(parameters);
    parameters->setSHLChunk(gbufferShader);
    parameters->setUniformParameter("bUseDiffuseTexture", useDiffuseTexture);
    parameters->setUniformParameter("texDiffuse", Int32(0));
    endEditCP(parameters);
    viewportChunks().insert(parameters.getCPtr());

    beginEditCP(chunkMaterial, ChunkMaterial::ChunksFieldMask);
    chunkMaterial->addChunk(gbufferShader, State::AutoSlotReplace);
    chunkMaterial->addChunk(gbufferBlend,  State::AutoSlotReplace);
    chunkMaterial->addChunk(parameters,    State::AutoSlotReplace);
    endEditCP(chunkMaterial, ChunkMaterial::ChunksFieldMask);

    addRefCP(chunkMaterial);
    conversion.parameters = parameters;
    conversions.push_back(conversion);

    return Action::Continue;
}

void DeferredRenderingViewport::undoConversion(const Conversion &conversion)
{
    ChunkMaterialPtr material = conversion.material;
    // The application may have taken some out itself.
    auto remove = [material](StateChunkPtr chunk)
    {
        if(material->find(chunk) >= 0)
            material->subChunk(chunk);
    };
    beginEditCP(material, ChunkMaterial::ChunksFieldMask);
    if(conversion.parameters == NullFC)
    {
        remove(forwardDepth);
    }
    else
    {
        viewportChunks().erase(conversion.parameters.getCPtr());
        remove(gbufferShader);
        remove(gbufferBlend);
        remove(conversion.parameters);
    }
    endEditCP(material, ChunkMaterial::ChunksFieldMask);

    // Another viewport still drawing the material into its G-buffer needs
    // them silenced.
    for(StateChunkPtr chunk : conversion.silenced)
    {
        std::map<const StateChunk *, UInt32>::iterator count =
            silencedCounts().find(chunk.getCPtr());
        if(count != silencedCounts().end() && --count->second > 0)
            continue;
        if(count != silencedCounts().end())
            silencedCounts().erase(count);
        beginEditCP(chunk, StateChunk::IgnoreFieldMask);
        chunk->setIgnore(false);
        endEditCP(chunk, StateChunk::IgnoreFieldMask);
    }
    subRefCP(material);
}

void DeferredRenderingViewport::dropOrphanConversions(void)
{
    // A material only this viewport still holds belongs to a scene that
    // is gone; keeping it would grow with every model loaded and dropped.
    std::vector<Conversion> kept;
    for(const Conversion &conversion : conversions)
    {
        if(conversion.material.getRefCount() <= 1)
            undoConversion(conversion);
        else
            kept.push_back(conversion);
    }
    conversions.swap(kept);
}

// --- light registry -------------------------------------------------------

void DeferredRenderingViewport::addLight(LightPtr light)
{
    if(light == NullFC)
    {
        SWARNING << "DeferredRenderingViewport::addLight: no light!" << std::endl;
        return;
    }
    if(!light->getOn() || lights.find(light) != lights.end())
        return;

    IDeferredLight *deferredLight = createDeferredLight(light);
    if(deferredLight == NULL)
    {
        // Every entry is updated each frame, so none may lack its light.
        SWARNING << "DeferredRenderingViewport::addLight: unsupported light type "
                 << light->getType().getCName() << ", ignored!" << std::endl;
        return;
    }
    // Held while registered: the light is read every frame.
    addRefCP(light);
    lights[light] = deferredLight;
}

void DeferredRenderingViewport::subLight(LightPtr light)
{
    if(light == NullFC)
    {
        SWARNING << "DeferredRenderingViewport::subLight: no light!" << std::endl;
        return;
    }
    nonFiniteLights.erase(light);
    LightMap::iterator it = lights.find(light);
    if(it == lights.end())
        return;

    releaseLight(it->second);
    lights.erase(it);
    subRefCP(light);
}

void DeferredRenderingViewport::releaseLight(IDeferredLight *light)
{
    shadowMapper.forgetShadowmaps(light);

    // A light that never rendered has no volume under the light root.
    NodePtr volume = light->getVolumeRoot();
    if(lightRoot != NullFC && volume->getParent() == lightRoot)
    {
        beginEditCP(lightRoot, Node::ChildrenFieldMask);
        lightRoot->subChild(volume);
        endEditCP(lightRoot, Node::ChildrenFieldMask);
    }
    delete light;
}

void DeferredRenderingViewport::updateLightBatch(const Matrix &projection,
                                                 const Vec2f  &camNearFar)
{
    if(lightBatching)
    {
        if(!lightBatch->isInitialized())
            lightBatch->initialize(gbufferTarget, 5);
        lightRenderAction->setWindow(getParent().getCPtr());
        lightBatch->setLights(batchRecords, projection, camNearFar,
                              getPixelWidth(), getPixelHeight(), getParent(), lightRenderAction);
    }
    lightBatch->setShown(lightBatching);
}

IDeferredLight *DeferredRenderingViewport::createDeferredLight(LightPtr light)
{
    // Exact types: a SpotLight is also a PointLight.
    if(light->getType() == DirectionalLight::getClassType())
        return new DeferredDirectionalLight();
    if(light->getType() == SpotLight::getClassType())
        return new DeferredSpotLight();
    if(light->getType() == PointLight::getClassType())
        return new DeferredPointLight();
    return NULL;
}

void DeferredRenderingViewport::initNewLights(void)
{
    for(LightMap::iterator it = lights.begin(); it != lights.end(); ++it)
    {
        IDeferredLight *light = it->second;
        if(light->isInitialized())
            continue;

        light->initialize(gbufferTarget, 5);
        beginEditCP(lightRoot, Node::ChildrenFieldMask);
        lightRoot->addChild(light->getVolumeRoot());
        endEditCP(lightRoot, Node::ChildrenFieldMask);
    }
}

namespace
{

bool isFinite(const Color4f &c)
{
    return std::isfinite(c[0]) && std::isfinite(c[1]) && std::isfinite(c[2]) &&
           std::isfinite(c[3]);
}

bool isFinite(const Vec3f &v)
{
    return std::isfinite(v[0]) && std::isfinite(v[1]) && std::isfinite(v[2]);
}

bool isFinite(const Matrix &m)
{
    for(UInt32 i = 0; i < 4; ++i)
        for(UInt32 j = 0; j < 4; ++j)
            if(!std::isfinite(m[i][j]))
                return false;
    return true;
}

} // namespace

bool DeferredRenderingViewport::hasFiniteFields(LightPtr light)
{
    if(!isFinite(light->getDiffuse()) || !isFinite(light->getSpecular()) ||
       !isFinite(light->getAmbient()) ||
       !std::isfinite(light->getConstantAttenuation()) ||
       !std::isfinite(light->getLinearAttenuation())   ||
       !std::isfinite(light->getQuadraticAttenuation()) ||
       !std::isfinite(light->getShadowIntensity()))
        return false;

    if(light->getBeacon() != NullFC && !isFinite(light->getBeacon()->getToWorld()))
        return false;

    if(SpotLightPtr spot = SpotLightPtr::dcast(light))
        return isFinite(spot->getPosition().subZero()) && isFinite(spot->getDirection()) &&
               std::isfinite(spot->getSpotExponent()) && std::isfinite(spot->getSpotCutOff());
    if(PointLightPtr point = PointLightPtr::dcast(light))
        return isFinite(point->getPosition().subZero());
    if(DirectionalLightPtr directional = DirectionalLightPtr::dcast(light))
        return isFinite(directional->getDirection());
    return true;
}

bool DeferredRenderingViewport::fitsTheTextureLimit(void)
{
    GLint maxSize = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &maxSize);
    const Int32 width  = getPixelWidth();
    const Int32 height = getPixelHeight();
    if(width <= maxSize && height <= maxSize)
    {
        refusedWidth = refusedHeight = 0;
        return true;
    }
    if(width != refusedWidth || height != refusedHeight)
        SWARNING << "DeferredRenderingViewport::render: " << width << " x " << height
                 << " is larger than the largest texture (" << maxSize
                 << "), nothing drawn!" << std::endl;
    refusedWidth  = width;
    refusedHeight = height;
    return false;
}

UInt16 DeferredRenderingViewport::countInitializedShadowmaps(IDeferredLight *light)
{
    UInt16 count = 0;
    for(UInt16 i = 0; i < light->getNumShadowmaps(); ++i)
    {
        RenderTarget *map = light->getShadowmap(i);
        if(map != NULL && map->isInitialized())
            ++count;
    }
    return count;
}

// --- post-processing ------------------------------------------------------

bool DeferredRenderingViewport::isFiniteSetting(const char *operation, Real32 value)
{
    // One bad value would spread through every later frame's image.
    if(std::isfinite(value))
        return true;
    SWARNING << "DeferredRenderingViewport::" << operation << ": " << value
             << " is not a finite value, ignored!" << std::endl;
    return false;
}

template <class EffectT>
EffectT *DeferredRenderingViewport::effect(PostProcessSlot slot) const
{
    return static_cast<EffectT *>(postProcessors[slot]);
}

void DeferredRenderingViewport::setHDRExposure(Real32 value)
{
    if(!isFiniteSetting("setHDRExposure", value))
        return;
    if(DeferredHDRPostProcessor *hdr = effect<DeferredHDRPostProcessor>(HDRPostProcess))
        hdr->exposure = value;
}

Real32 DeferredRenderingViewport::getHDRExposure(void) const
{
    DeferredHDRPostProcessor *hdr = effect<DeferredHDRPostProcessor>(HDRPostProcess);
    return hdr != NULL ? hdr->exposure : 0.0f;
}

void DeferredRenderingViewport::setHDRBrightPassThreshold(Real32 value)
{
    if(!isFiniteSetting("setHDRBrightPassThreshold", value))
        return;
    if(DeferredHDRPostProcessor *hdr = effect<DeferredHDRPostProcessor>(HDRPostProcess))
        hdr->brightPassThreshold = value;
}

Real32 DeferredRenderingViewport::getHDRBrightPassThreshold(void) const
{
    DeferredHDRPostProcessor *hdr = effect<DeferredHDRPostProcessor>(HDRPostProcess);
    return hdr != NULL ? hdr->brightPassThreshold : 0.0f;
}

void DeferredRenderingViewport::setDoFFocalDepth(Real32 value)
{
    if(!isFiniteSetting("setDoFFocalDepth", value))
        return;
    if(DeferredDoFPostProcessor *dof = effect<DeferredDoFPostProcessor>(DoFPostProcess))
        dof->setFocalDepth(value);
}

Real32 DeferredRenderingViewport::getDoFFocalDepth(void) const
{
    DeferredDoFPostProcessor *dof = effect<DeferredDoFPostProcessor>(DoFPostProcess);
    return dof != NULL ? dof->getFocalDepth() : 0.0f;
}

void DeferredRenderingViewport::setDoFBlurCutoff(Real32 value)
{
    if(!isFiniteSetting("setDoFBlurCutoff", value))
        return;
    if(DeferredDoFPostProcessor *dof = effect<DeferredDoFPostProcessor>(DoFPostProcess))
        dof->setBlurCutoff(value);
}

Real32 DeferredRenderingViewport::getDoFBlurCutoff(void) const
{
    DeferredDoFPostProcessor *dof = effect<DeferredDoFPostProcessor>(DoFPostProcess);
    return dof != NULL ? dof->getBlurCutoff() : 0.0f;
}

void DeferredRenderingViewport::setCMBBlurScale(Real32 value)
{
    if(!isFiniteSetting("setCMBBlurScale", value))
        return;
    if(DeferredCMBPostProcessor *cmb = effect<DeferredCMBPostProcessor>(CMBPostProcess))
        cmb->setBlurScale(value);
}

Real32 DeferredRenderingViewport::getCMBBlurScale(void) const
{
    DeferredCMBPostProcessor *cmb = effect<DeferredCMBPostProcessor>(CMBPostProcess);
    return cmb != NULL ? cmb->blurScale : 0.0f;
}

void DeferredRenderingViewport::setSSAOScale(Real32 value)
{
    if(!isFiniteSetting("setSSAOScale", value))
        return;
    if(DeferredSSAOPostProcessor *ssao = effect<DeferredSSAOPostProcessor>(SSAOPostProcess))
        ssao->scale = value;
}

Real32 DeferredRenderingViewport::getSSAOScale(void) const
{
    DeferredSSAOPostProcessor *ssao = effect<DeferredSSAOPostProcessor>(SSAOPostProcess);
    return ssao != NULL ? ssao->scale : 0.0f;
}

void DeferredRenderingViewport::setSSAOAttenuation(Real32 value)
{
    if(!isFiniteSetting("setSSAOAttenuation", value))
        return;
    if(DeferredSSAOPostProcessor *ssao = effect<DeferredSSAOPostProcessor>(SSAOPostProcess))
        ssao->attenuation = value;
}

Real32 DeferredRenderingViewport::getSSAOAttenuation(void) const
{
    DeferredSSAOPostProcessor *ssao = effect<DeferredSSAOPostProcessor>(SSAOPostProcess);
    return ssao != NULL ? ssao->attenuation : 0.0f;
}

// --- buffers ----------------------------------------------------------------

void DeferredRenderingViewport::initializeBuffers(void)
{
    // The targets are framebuffers of their own: the viewport's size, from
    // their origin, wherever the viewport sits in the window.
    Int32 l = 0;
    Int32 b = 0;
    Int32 r = getPixelWidth()  - 1;
    Int32 t = getPixelHeight() - 1;

    if(gbufferTarget.isInitialized())
    {
        gbufferTarget.resize(l, b, r, t);
    }
    else
    {
        gbufferTarget.initialize(getParent(), l, b, r, t);
        gbufferTarget.setBgClear(Color4f(0, 0, 0, 0), 1.0f, true, true);
        gbufferTarget.addTargetTexture(GL_RGB10_A2, GL_RGBA, GL_NEAREST,
                                       Image::OSG_RGBA_PF, Image::OSG_UINT8_IMAGEDATA, 1.0f, 1);
        gbufferTarget.addTargetTexture(GL_RGBA8, GL_RGBA, GL_NEAREST,
                                       Image::OSG_RGBA_PF, Image::OSG_UINT8_IMAGEDATA, 1.0f, 1);
        gbufferTarget.addTargetTexture(GL_RGBA8, GL_RGBA, GL_NEAREST,
                                       Image::OSG_RGBA_PF, Image::OSG_UINT8_IMAGEDATA, 1.0f, 1);
        gbufferTarget.addTargetTexture(GL_RGBA8, GL_RGBA, GL_NEAREST,
                                       Image::OSG_RGBA_PF, Image::OSG_UINT8_IMAGEDATA, 1.0f, 1);
        gbufferTarget.addTargetTexture(GL_DEPTH_COMPONENT32, GL_DEPTH_COMPONENT, GL_NEAREST,
                                       Image::OSG_L_PF, Image::OSG_INT32_IMAGEDATA, 1.0f, 1);
    }

    if(lightTarget.isInitialized())
    {
        lightTarget.resize(l, b, r, t);
        return;
    }

    lightTarget.initialize(getParent(), l, b, r, t);
    lightTarget.setBgClear(Color4f(0, 0, 0, 0), 1.0f, true, false);
    lightTarget.addTargetTexture(GL_RGB16F_ARB, GL_RGB, GL_LINEAR,
                                 Image::OSG_RGB_PF, Image::OSG_FLOAT16_IMAGEDATA, 1.0f, 1);
    lightTarget.addTargetTexture(gbufferTarget.getTargetTexture(4));
}

void DeferredRenderingViewport::enableNodes(const std::vector<NodePtr> &nodes, bool enable)
{
    // Written directly: hiding nodes for one pass is not a scene change.
    for(NodePtr node : nodes)
        node->setTravMask(enable ? 0xFFFFFFFF : 0);
}

void DeferredRenderingViewport::showTextureFullscreen(RenderActionBase *action,
                                                      TextureChunkPtr   texture)
{
    beginEditCP(fullscreenMaterial, ChunkMaterial::ChunksFieldMask);
    fullscreenMaterial->addChunk(texture, State::AutoSlotReplace);
    endEditCP(fullscreenMaterial, ChunkMaterial::ChunksFieldMask);

    activate();

    fullscreenQuad->draw(action, this);
    for(UInt32 i = 0; i < getForegrounds().size(); ++i)
        getForegrounds()[i]->draw(action, this);

    deactivate();

    beginEditCP(fullscreenMaterial, ChunkMaterial::ChunksFieldMask);
    fullscreenMaterial->subChunk(texture, State::AutoSlotReplace);
    endEditCP(fullscreenMaterial, ChunkMaterial::ChunksFieldMask);
}

namespace
{
Real64 threadCpuMilliseconds(void)
{
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return Real64(now.tv_sec) * 1000.0 + Real64(now.tv_nsec) * 1e-6;
}

Real64 steadyMilliseconds(void)
{
    return std::chrono::duration<Real64, std::milli>(
        std::chrono::steady_clock::now().time_since_epoch()).count();
}

// The timed passes, in the order the frame draws them.
enum TimedPass
{
    GeometryPass = 0,
    ShadowPass,
    LightPass,
    ForwardPass,
    FirstEffectPass,
    FinalPass = FirstEffectPass + DeferredRenderingViewport::NumPostProcessors,
    NumTimedPasses
};
}

// --- the frame --------------------------------------------------------------

void DeferredRenderingViewport::render(RenderActionBase *action)
{
    if(action == NULL)
    {
        SWARNING << "DeferredRenderingViewport::render: no action!" << std::endl;
        return;
    }
    WindowPtr window = getParent();
    if(window == NullFC)
        return;
    if(window->getWidth() == 0 || window->getHeight() == 0)
        return;
    if(getCamera() == NullFC)
    {
        SWARNING << "DeferredRenderingViewport::render: no camera!" << std::endl;
        return;
    }
    if(getBackground() == NullFC)
    {
        SWARNING << "DeferredRenderingViewport::render: no Background!" << std::endl;
        return;
    }
    if(getRoot() == NullFC)
    {
        SWARNING << "DeferredRenderingViewport::render: no Root!" << std::endl;
        return;
    }
    if(!fitsTheTextureLimit())
        return;

    if(lastWidth != window->getWidth() || lastHeight != window->getHeight())
    {
        initializeBuffers();
        lastWidth  = window->getWidth();
        lastHeight = window->getHeight();
        window->frameInit();

        // Switched off or not: an effect switched on later renders at the
        // new size without being initialised again.
        for(UInt32 slot = 0; slot < NumPostProcessors; ++slot)
        {
            if(postProcessors[slot]->initialized)
                postProcessors[slot]->resize(getPixelLeft(), getPixelBottom(),
                                             getPixelRight(), getPixelTop());
        }
    }

    if(!shadowMapper.isInitialized())
        shadowMapper.initialize(window, 2048);

    CameraPtr camera = getCamera();
    if(passTiming)
    {
        gpuTiming = passTimer.begin(window);
        if(!gpuTiming)
            glFinish();
        passStart = steadyMilliseconds();
    }

    action->setViewport(this);
    action->setCamera(camera.getCPtr());
    action->setBackground(getBackground().getCPtr());
    action->setTravMask(getTravMask());

    // Geometry pass: opaque geometry writes the G-buffer.
    enableNodes(forwardNodes, false);
    gbufferTarget.renderScene(getRoot(), camera, action, getBackground());
    endPass(GeometryPass, passCpuTimes.geometry, passTimes.geometry);

    // Light stage: new lights get their shaders and join the light scene,
    // then every light takes this frame's camera and its OpenSG light.
    const Real64 lightsCpuStart = passTiming ? threadCpuMilliseconds() : 0.0;
    if(!emissiveLight->isInitialized())
        emissiveLight->initialize(gbufferTarget, 5);
    initNewLights();

    // The viewport's own size, not the window's: a viewport covering part
    // of the window has its own aspect ratio.
    Vec2f  camNearFar(camera->getNear(), camera->getFar());
    Matrix viewing, projection;
    camera->getViewing   (viewing,    getPixelWidth(), getPixelHeight());
    camera->getProjection(projection, getPixelWidth(), getPixelHeight());

    // Shadow stage inside it: transparent geometry is still hidden, so it
    // casts no shadow.
    batchRecords.clear();
    shadowMapper.beginShadowmapRendering(getRoot(), camera, this);
    for(LightMap::iterator it = lights.begin(); it != lights.end(); ++it)
    {
        IDeferredLight *light = it->second;
        if(!hasFiniteFields(it->first))
        {
            if(nonFiniteLights.insert(it->first).second)
                SWARNING << "DeferredRenderingViewport::render: a "
                         << it->first->getType().getCName()
                         << " has non-finite fields; not drawn until they are finite!"
                         << std::endl;
            light->getVolumeRoot()->setTravMask(0);
            continue;
        }
        nonFiniteLights.erase(it->first);

        light->setBatchingOffered(lightBatching);
        light->update(viewing, projection, camNearFar, it->first, globalShadowIntensity);
        if(light->isBatched())
            batchRecords.push_back(&light->getBatchRecord());
        if(!light->getCastShadows())
            continue;

        // A light binds a shadow map in the update after the map's first
        // render; update again so that this frame already samples it.
        UInt16 mapsBefore = countInitializedShadowmaps(light);
        shadowMapper.updateShadowmap(light);
        if(countInitializedShadowmaps(light) != mapsBefore)
            light->update(viewing, projection, camNearFar, it->first, globalShadowIntensity);
    }
    shadowMapper.endShadowmapRendering(getRoot());
    updateLightBatch(projection, camNearFar);
    endPass(ShadowPass, passCpuTimes.shadows, passTimes.shadows);

    // Light pass: light volumes add into the float buffer; no volume may be
    // cut by the far plane. The farthest plane whose projection OpenSG can
    // compute in float: the depth offset is far times twice near, which
    // must not overflow.
    lightRenderAction->setWindow(window.getCPtr());
    Real32 farDistance = camera->getFar();
    beginEditCP(camera, Camera::FarFieldMask);
    camera->setFar(std::numeric_limits<Real32>::max() /
                   osgMax(1.0f, 2.0f * camera->getNear()));
    endEditCP(camera, Camera::FarFieldMask);

    SampleCounter lightPixels;
    if(passTiming)
        lightPixels.begin(window);
    lightTarget.renderScene(lightRoot, camera, lightRenderAction, NullFC);
    if(passTiming)
    {
        passTimes.lightPixels = lightPixels.end();
        passTimes.lightsCpu   = threadCpuMilliseconds() - lightsCpuStart;
    }

    beginEditCP(camera, Camera::FarFieldMask);
    camera->setFar(farDistance);
    endEditCP(camera, Camera::FarFieldMask);
    endPass(LightPass, passCpuTimes.lights, passTimes.lights);

    // Forward pass: transparent geometry over the lit image, depth-tested
    // against the G-buffer's depth.
    enableNodes(deferredNodes, false);
    enableNodes(forwardNodes, true);
    lightTarget.setBgClear(Color4f(0, 0, 0, 0), 1.0f, false, false);
    lightTarget.renderScene(getRoot(), camera, action, NullFC);
    lightTarget.setBgClear(Color4f(0, 0, 0, 0), 1.0f, true, false);
    enableNodes(deferredNodes, true);
    endPass(ForwardPass, passCpuTimes.forward, passTimes.forward);

    TextureChunkPtr current = runPostProcessors(viewing, projection, camNearFar,
                                                lightTarget.getTargetTexture(0));

    showTextureFullscreen(action, current);
    endPass(FinalPass, passCpuTimes.final, passTimes.final);

    if(passTiming && gpuTiming)
    {
        passTimer.end();
        if(passTimer.hasTimes() && passTimer.getPasses() == NumTimedPasses)
        {
            const Real64 *gpu = passTimer.getTimes();
            passTimes.geometry = gpu[GeometryPass];
            passTimes.shadows  = gpu[ShadowPass];
            passTimes.lights   = gpu[LightPass];
            passTimes.forward  = gpu[ForwardPass];
            for(UInt32 slot = 0; slot < NumPostProcessors; ++slot)
                passTimes.effects[slot] = gpu[FirstEffectPass + slot];
            passTimes.final    = gpu[FinalPass];
            passTimes.measured = true;
            passTimesAge       = passTimer.getAge();
        }
    }
    else if(passTiming)
    {
        passTimes.measured = true;
        passTimesAge       = 0;
    }
    passCpuTimes.measured = passTiming;
    if(passTiming)
        writePassStatistics(action);
}

void DeferredRenderingViewport::endPass(UInt32 pass, Real64 &cpu, Real64 &wall)
{
    if(!passTiming)
        return;
    if(gpuTiming)
        passTimer.mark(pass);
    else
        glFinish();
    const Real64 now = steadyMilliseconds();
    cpu       = now - passStart;
    passStart = now;
    if(!gpuTiming)
        wall = cpu;
}

void DeferredRenderingViewport::writePassStatistics(RenderActionBase *action) const
{
    // A collector the action made for itself has no reader.
    StatCollector *stat = action->getStatistics();
    if(stat == NULL || action->hasOwnStat())
        return;

    Real64 effects = 0.0;
    for(UInt32 slot = 0; slot < NumPostProcessors; ++slot)
        effects += passTimes.effects[slot];

    const struct { StatElemDesc<StatRealElem> *desc; Real64 ms; } times[] = {
        {&statGeometryPassTime, passTimes.geometry},
        {&statShadowPassTime,   passTimes.shadows},
        {&statLightPassTime,    passTimes.lights},
        {&statForwardPassTime,  passTimes.forward},
        {&statPostProcessTime,  effects},
        {&statFinalPassTime,    passTimes.final},
    };
    for(UInt32 i = 0; i < sizeof(times) / sizeof(times[0]); ++i)
    {
        if(StatRealElem *elem = stat->getElem(*times[i].desc, false))
            elem->set(Real32(times[i].ms));
    }
}

TextureChunkPtr DeferredRenderingViewport::runPostProcessors(const Matrix   &viewing,
                                                             const Matrix   &projection,
                                                             const Vec2f    &camNearFar,
                                                             TextureChunkPtr current)
{
    for(UInt32 slot = 0; slot < NumPostProcessors; ++slot)
    {
        if(!postProcessOn[slot])
        {
            // An empty interval keeps the timestamps in pass order.
            if(passTiming && gpuTiming)
                passTimer.mark(FirstEffectPass + slot);
            passCpuTimes.effects[slot] = 0.0;
            if(!gpuTiming)
                passTimes.effects[slot] = 0.0;
            continue;
        }

        IDeferredPostProcessor *effect = postProcessors[slot];
        if(!effect->initialized)
        {
            effect->initialize(getParent(), getPixelLeft(), getPixelBottom(),
                               getPixelRight(), getPixelTop(), gbufferTarget, 5);
        }
        effect->update(viewing, projection, camNearFar);
        current = effect->perform(current);
        endPass(FirstEffectPass + slot, passCpuTimes.effects[slot], passTimes.effects[slot]);
    }
    return current;
}

OSG_END_NAMESPACE

#include "IDeferredLight.h"

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGLog.h>

#include <cmath>
#include <string>

OSG_BEGIN_NAMESPACE

BlendChunkPtr IDeferredLight::s_LightBufferBlending        = NullFC;
DepthChunkPtr IDeferredLight::s_LightRenderingNoDepthTest = NullFC;

UInt32                               IDeferredLight::s_numLights = 0;
std::map<UInt32, SHLChunkPtr>        IDeferredLight::s_sharedPrograms;
std::vector<FieldContainerPtrBase *> IDeferredLight::s_sharedSlots;

IDeferredLight::IDeferredLight(void) :
    enabled        (true),
    initialized    (false),
    volumeRoot     (NullFC),
    material       (NullFC),
    parameterChunk (NullFC),
    castShadows    (false),
    shadowIntensity(1.0f),
    nextTextureUnit(0),
    sharedParameters(NullFC),
    activeParameters(NullFC),
    ownProgram     (NullFC),
    activeProgram  (NullFC),
    sharedProgram  (NULL)
{
    ++s_numLights;
    if(s_LightBufferBlending != NullFC)
        return;

    // Shared by all lights while any exists.
    s_LightBufferBlending = BlendChunk::create();
    addRefCP(s_LightBufferBlending);
    holdShared(s_LightBufferBlending);
    beginEditCP(s_LightBufferBlending);
    s_LightBufferBlending->setSrcFactor (GL_ONE);
    s_LightBufferBlending->setDestFactor(GL_ONE);
    endEditCP(s_LightBufferBlending);

    s_LightRenderingNoDepthTest = DepthChunk::create();
    addRefCP(s_LightRenderingNoDepthTest);
    holdShared(s_LightRenderingNoDepthTest);
    beginEditCP(s_LightRenderingNoDepthTest);
    s_LightRenderingNoDepthTest->setEnable  (false);
    s_LightRenderingNoDepthTest->setFunc    (GL_GEQUAL);
    s_LightRenderingNoDepthTest->setReadOnly(true);
    endEditCP(s_LightRenderingNoDepthTest);
}

IDeferredLight::~IDeferredLight(void)
{
    // The volume holds the geometry, which holds the material and chunks.
    if(volumeRoot != NullFC)
        subRefCP(volumeRoot);
    if(ownProgram != NullFC)
        subRefCP(ownProgram);
    // The light holds the parameter set that is not in the material.
    SHLParameterChunkPtr idle = activeParameters == parameterChunk ? sharedParameters
                                                                   : parameterChunk;
    if(idle != NullFC)
        subRefCP(idle);

    if(--s_numLights == 0)
        releaseShared();
}

void IDeferredLight::holdShared(FieldContainerPtrBase &slot)
{
    s_sharedSlots.push_back(&slot);
}

void IDeferredLight::releaseShared(void)
{
    std::vector<FieldContainerPtrBase *> slots;
    slots.swap(s_sharedSlots);
    for(FieldContainerPtrBase *slot : slots)
    {
        subRefCP(*slot);
        *slot = NullFC;
    }
}

NodePtr IDeferredLight::getVolumeRoot(void)
{
    return volumeRoot;
}

PolygonChunkPtr IDeferredLight::sharedCullingChunk(PolygonChunkPtr &slot, GLenum cullFace)
{
    if(slot != NullFC)
        return slot;

    slot = PolygonChunk::create();
    addRefCP(slot);
    holdShared(slot);
    beginEditCP(slot, PolygonChunk::CullFaceFieldMask);
    slot->setCullFace(cullFace);
    endEditCP(slot, PolygonChunk::CullFaceFieldMask);
    return slot;
}

SHLChunkPtr IDeferredLight::createShaderMaterial(StateChunkPtr culling)
{
    SHLChunkPtr shader = SHLChunk::create();

    parameterChunk = SHLParameterChunk::create();
    beginEditCP(parameterChunk, SHLParameterChunk::SHLChunkFieldMask);
    parameterChunk->setSHLChunk(shader);
    endEditCP(parameterChunk, SHLParameterChunk::SHLChunkFieldMask);
    activeParameters = parameterChunk;

    material = ChunkMaterial::create();
    beginEditCP(material, ChunkMaterial::ChunksFieldMask);
    material->addChunk(shader,                      State::AutoSlotReplace);
    material->addChunk(culling,                     State::AutoSlotReplace);
    material->addChunk(parameterChunk,              State::AutoSlotReplace);
    material->addChunk(s_LightBufferBlending,       State::AutoSlotReplace);
    material->addChunk(s_LightRenderingNoDepthTest, State::AutoSlotReplace);
    endEditCP(material, ChunkMaterial::ChunksFieldMask);
    return shader;
}

void IDeferredLight::createVolume(GeometryPtr geometry, NodeCorePtr placement)
{
    beginEditCP(geometry, Geometry::MaterialFieldMask);
    geometry->setMaterial(material);
    endEditCP(geometry, Geometry::MaterialFieldMask);

    NodePtr geometryNode = makeNodeFor(geometry);
    if(placement == NullFC)
    {
        volumeRoot = geometryNode;
    }
    else
    {
        volumeRoot = Node::create();
        beginEditCP(volumeRoot, Node::CoreFieldMask | Node::ChildrenFieldMask);
        volumeRoot->setCore(placement);
        volumeRoot->addChild(geometryNode);
        endEditCP(volumeRoot, Node::CoreFieldMask | Node::ChildrenFieldMask);
    }
    addRefCP(volumeRoot);
}

void IDeferredLight::setPrograms(SHLChunkPtr shader, ShaderManager::LightType type,
                                 UInt16 numGBufferTextures, UInt16 numSplits)
{
    ShaderManager &shaders = ShaderManager::getInstance();

    beginEditCP(shader, ShaderChunk::VertexProgramFieldMask |
                        ShaderChunk::FragmentProgramFieldMask);
    shader->setVertexProgram  (shaders.generateLightVertexShader(type));
    shader->setFragmentProgram(shaders.generateLightFragmentShader(type, numGBufferTextures,
                                                                   numSplits));
    endEditCP(shader, ShaderChunk::VertexProgramFieldMask |
                      ShaderChunk::FragmentProgramFieldMask);
}

void IDeferredLight::shareProgram(SHLChunkPtr own, ShaderManager::LightType type,
                                  UInt16 numGBufferTextures, UInt16 numSplits)
{
    if(ownProgram == NullFC)
    {
        // Kept while the shared one is in the material.
        ownProgram = own;
        addRefCP(ownProgram);
    }
    activeProgram = own;

    const UInt32 key = UInt32(type) | (UInt32(numGBufferTextures) << 8) |
                       (UInt32(numSplits) << 16);
    sharedProgram = &s_sharedPrograms[key];
    if(*sharedProgram == NullFC)
        createSharedProgram(type, numGBufferTextures, numSplits);

    if(sharedParameters == NullFC)
    {
        // Kept while the own parameters are in the material.
        sharedParameters = SHLParameterChunk::create();
        addRefCP(sharedParameters);
    }
    beginEditCP(sharedParameters, SHLParameterChunk::SHLChunkFieldMask);
    sharedParameters->setSHLChunk(*sharedProgram);
    endEditCP(sharedParameters, SHLParameterChunk::SHLChunkFieldMask);
}

void IDeferredLight::createSharedProgram(ShaderManager::LightType type,
                                         UInt16 numGBufferTextures, UInt16 numSplits)
{
    *sharedProgram = SHLChunk::create();
    addRefCP(*sharedProgram);
    holdShared(*sharedProgram);
    ShaderManager &shaders = ShaderManager::getInstance();
    beginEditCP(*sharedProgram, ShaderChunk::VertexProgramFieldMask |
                                ShaderChunk::FragmentProgramFieldMask);
    (*sharedProgram)->setVertexProgram  (shaders.generateLightVertexShader(type));
    (*sharedProgram)->setFragmentProgram(
        shaders.generateLightFragmentShader(type, numGBufferTextures, numSplits, false));
    endEditCP(*sharedProgram, ShaderChunk::VertexProgramFieldMask |
                              ShaderChunk::FragmentProgramFieldMask);
}

void IDeferredLight::selectProgram(void)
{
    if(sharedProgram == NULL)
        return;
    SHLChunkPtr wanted = castShadows ? ownProgram : *sharedProgram;
    if(wanted == activeProgram)
        return;

    // The parameters go with their program. The material holds one set,
    // the light the other.
    SHLParameterChunkPtr wantedParameters = castShadows ? parameterChunk : sharedParameters;
    addRefCP(activeParameters);
    beginEditCP(material, ChunkMaterial::ChunksFieldMask);
    material->subChunk(activeProgram);
    material->subChunk(activeParameters);
    material->addChunk(wanted,           State::AutoSlotReplace);
    material->addChunk(wantedParameters, State::AutoSlotReplace);
    endEditCP(material, ChunkMaterial::ChunksFieldMask);
    subRefCP(wantedParameters);

    activeProgram    = wanted;
    activeParameters = wantedParameters;
}

void IDeferredLight::setLightCamera(MatrixCameraPtr camera, const Matrix &view,
                                    const Matrix &projection, Real32 nearDist, Real32 farDist)
{
    const BitVector fields = MatrixCamera::ModelviewMatrixFieldMask  |
                             MatrixCamera::ProjectionMatrixFieldMask |
                             Camera::NearFieldMask | Camera::FarFieldMask;
    beginEditCP(camera, fields);
    camera->setModelviewMatrix (view);
    camera->setProjectionMatrix(projection);
    camera->setNear(nearDist);
    camera->setFar (farDist);
    endEditCP(camera, fields);
}

void IDeferredLight::bindTexture(const char *samplerName, StateChunkPtr texture)
{
    setUniform(samplerName, Int32(nextTextureUnit));
    ++nextTextureUnit;

    beginEditCP(material, ChunkMaterial::ChunksFieldMask);
    material->addChunk(texture, State::AutoSlotReplace);
    endEditCP(material, ChunkMaterial::ChunksFieldMask);
}

void IDeferredLight::updateShadowFlags(LightPtr light, Real32 globalShadowIntensity)
{
    if(globalShadowIntensity < 1.0f)
    {
        castShadows     = true;
        shadowIntensity = globalShadowIntensity;
    }
    else
    {
        castShadows     = light->getShadowIntensity() < 1.0f;
        shadowIntensity = light->getShadowIntensity();
    }
}

void IDeferredLight::padDepthRange(Real32 &nearDist, Real32 &farDist,
                                   Real32 minNear, Real32 maxFar)
{
    const Real32 pad = 0.001f * (farDist - nearDist) + 0.0001f * std::fabs(farDist);
    nearDist = osgMax(minNear, nearDist - pad);
    farDist  = osgMin(farDist + pad, maxFar);
    farDist  = osgMax(farDist, nearDist + 0.1f * osgMax(1.0f, nearDist));
}

Vec3f IDeferredLight::normalizedOrAsIs(const Vec3f &v)
{
    Real32 length = v.length();
    return length < 1e-6f ? v : v * (1.0f / length);
}

bool IDeferredLight::joinBatch(bool on)
{
    batched = batchingOffered && on && !castShadows;
    if(batched)
        showVolume(false);
    return batched;
}

void IDeferredLight::showVolume(bool on)
{
    // Written directly, like the viewport's per-pass masks.
    volumeRoot->setTravMask(on ? 0xFFFFFFFF : 0);
}

void IDeferredLight::attachGBuffer(RenderTarget &gbuffer, UInt16 numGBufferTextures)
{
    // All uniforms first, then the textures in the same order, so that
    // texture k lands on unit k.
    for(UInt16 i = 0; i < numGBufferTextures; ++i)
    {
        if(i == 3)
            continue;
        std::string name = "texGBuffer" + std::to_string(i);
        setUniform(name.c_str(), Int32(nextTextureUnit));
        ++nextTextureUnit;
    }

    beginEditCP(material, ChunkMaterial::ChunksFieldMask);
    for(UInt16 i = 0; i < numGBufferTextures; ++i)
    {
        if(i == 3)
            continue;
        material->addChunk(gbuffer.getTargetTexture(UInt8(i)), State::AutoSlotReplace);
    }
    endEditCP(material, ChunkMaterial::ChunksFieldMask);
}

Real32 IDeferredLight::maxLightDistance(Real32 linearAttenuation, Real32 quadraticAttenuation)
{
    if(quadraticAttenuation > 0.0f)
        return std::sqrt(1.0f / (quadraticAttenuation * 0.001f));
    if(linearAttenuation > 0.0f)
        return 1.0f / (0.001f * linearAttenuation);
    return 1000000.0f;
}

bool IDeferredLight::intersectPlanes(const Plane &p1, const Plane &p2, const Plane &p3,
                                     Pnt3f &result)
{
    const Vec3f &n1 = p1.getNormal();
    const Vec3f &n2 = p2.getNormal();
    const Vec3f &n3 = p3.getNormal();

    Vec3f n2xn3 = n2.cross(n3);
    Real32 det = n1.dot(n2xn3);
    if(std::fabs(det) < 0.00001f)
        return false;

    Vec3f sum = n2xn3          * p1.getDistanceFromOrigin() +
                n3.cross(n1)   * p2.getDistanceFromOrigin() +
                n1.cross(n2)   * p3.getDistanceFromOrigin();
    sum /= det;
    result.setValues(sum[0], sum[1], sum[2]);
    return true;
}

MFPnt3f IDeferredLight::getFrustumCorners(const FrustumVolume &frustum)
{
    const Plane *planes = frustum.getPlanes();
    MFPnt3f corners;

    for(UInt32 i = 0; i < 8; ++i)
    {
        Pnt3f corner;
        if(intersectPlanes(planes[i >> 2],
                           planes[2 + ((i >> 1) & 1)],
                           planes[4 + (i & 1)],
                           corner))
        {
            corners.push_back(corner);
        }
        else
        {
            SWARNING << "IDeferredLight::getFrustumAABB - Invalid frustum!" << std::endl;
        }
    }
    return corners;
}

BoxVolume IDeferredLight::getFrustumAABB(const FrustumVolume &frustum)
{
    MFPnt3f   corners = getFrustumCorners(frustum);
    BoxVolume box;
    box.setEmpty();
    for(UInt32 i = 0; i < corners.size(); ++i)
        box.extendBy(corners[i]);
    return box;
}

BoxVolume IDeferredLight::getFrustumAABB(Vec3f  position,
                                         Vec3f  direction,
                                         Vec3f  up,
                                         Real32 nearDist,
                                         Real32 farDist,
                                         Real32 fov,
                                         Real32 aspect)
{
    Real32 t  = std::tan(fov * 0.5f);
    Real32 hn = t * nearDist;
    Real32 hf = t * farDist;
    Real32 wn = aspect * hn;
    Real32 wf = aspect * hf;

    Vec3f  right  = direction.cross(up);
    Real32 length = right.length();
    if(length >= 0.000001f)
        right /= length;

    Vec3f cn = position + direction * nearDist;
    Vec3f cf = position + direction * farDist;

    BoxVolume box;
    box.setEmpty();
    for(int su = -1; su <= 1; su += 2)
    {
        for(int sr = -1; sr <= 1; sr += 2)
        {
            Vec3f far  = cf + up * (su * hf) + right * (sr * wf);
            Vec3f near = cn + up * (su * hn) + right * (sr * wn);
            box.extendBy(Pnt3f(far [0], far [1], far [2]));
            box.extendBy(Pnt3f(near[0], near[1], near[2]));
        }
    }
    return box;
}

OSG_END_NAMESPACE

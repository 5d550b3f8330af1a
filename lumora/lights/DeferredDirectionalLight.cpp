#include "DeferredDirectionalLight.h"

#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGMatrixUtility.h>
#include <OpenSG/OSGSimpleGeometry.h>

#include <Lumora/ShaderManager.h>

#include <cmath>
#include <limits>
#include <string>

OSG_BEGIN_NAMESPACE

PolygonChunkPtr DeferredDirectionalLight::s_CullingOptions = NullFC;

DeferredDirectionalLight::DeferredDirectionalLight(void) :
    IDeferredLight    (),
    splitLambda       (0.8f),
    lightDirection    (0.0f, 0.0f, 0.0f),
    shaderChunk       (NullFC),
    shadowMaps        (),
    splitDistances    {0.0f, 0.0f, 0.0f, 0.0f},
    splitFrusta       (),
    shadowMapsAttached(false),
    lightView         (),
    lightProjections  (),
    lightNearFars     (),
    camView           (),
    viewerNearFar     (0.0f, 0.0f)
{
    for(int split = 0; split < 3; ++split)
    {
        lightProjections.push_back(Matrix());
        lightNearFars   .push_back(Vec2f(0.0f, 0.0f));
    }

    shaderChunk = createShaderMaterial(sharedCullingChunk(s_CullingOptions, GL_BACK));

    // No transform: the vertex shader maps the corners by their signs.
    createVolume(makePlaneGeo(1.0f, 1.0f, 1, 1), NullFC);
}

DeferredDirectionalLight::~DeferredDirectionalLight(void)
{
}

void DeferredDirectionalLight::initialize(RenderTarget &gbuffer, UInt16 numGBufferTextures)
{
    setPrograms(shaderChunk, ShaderManager::DIRECTIONAL_LIGHT, numGBufferTextures, 3);
    shareProgram(shaderChunk, ShaderManager::DIRECTIONAL_LIGHT, numGBufferTextures, 3);

    attachGBuffer(gbuffer, numGBufferTextures);

    initialized = true;
}

void DeferredDirectionalLight::update(const Matrix &viewing,
                                      const Matrix &projection,
                                      const Vec2f  &camNearFar,
                                      LightPtr      light,
                                      Real32        globalShadowIntensity)
{
    if(light == NullFC || light->getType() != DirectionalLight::getClassType())
    {
        SWARNING << "DeferredDirectionalLight::update - Wrong osg light type for update!"
                 << std::endl;
        return;
    }

    // A light that is off keeps its uniforms and its shadow maps.
    enabled = light->getOn();
    showVolume(enabled);
    if(!enabled)
        return;

    DirectionalLightPtr directional = DirectionalLightPtr::dcast(light);
    lightDirection = directional->getDirection();
    if(light->getBeacon() != NullFC)
        light->getBeacon()->getToWorld().multMatrixVec(lightDirection);

    Vec3f eyeDirection;
    viewing.multMatrixVec(lightDirection, eyeDirection);
    eyeDirection = normalizedOrAsIs(eyeDirection);

    updateShadowFlags(light, globalShadowIntensity);
    selectProgram();

    camView = viewing;

    Matrix invProjection;
    projection.inverse(invProjection);

    const Color4f &diffuse  = light->getDiffuse();
    const Color4f &specular = light->getSpecular();

    setUniform("vCamNearFar",      camNearFar);
    setUniform("mCamInvProj",      invProjection);
    setUniform("bCastShadows",     castShadows);
    setUniform("fShadowIntensity", shadowIntensity);
    setUniform("vLightDirection",  eyeDirection);
    setUniform("vLightDiffuse",
                                        Vec3f(diffuse[0], diffuse[1], diffuse[2]));
    setUniform("vLightSpecular",
                                        Vec3f(specular[0], specular[1], specular[2]));

    if(!shadowMapsAttached && shadowMaps[0].isInitialized())
    {
        for(UInt16 split = 0; split < 3; ++split)
        {
            std::string name = "texShadowMap" + std::to_string(split);
            bindTexture(name.c_str(), shadowMaps[split].getTargetTexture(0));
        }
        shadowMapsAttached = true;
    }

    viewerNearFar = camNearFar;
}

UInt16 DeferredDirectionalLight::getNumShadowmaps(void)
{
    return 3;
}

RenderTarget *DeferredDirectionalLight::getShadowmap(UInt16 index)
{
    return index < 3 ? &shadowMaps[index] : NULL;
}

bool DeferredDirectionalLight::updateLightCamera(UInt16           index,
                                                 FrustumVolume   &cameraFrustum,
                                                 DynamicVolume   &sceneVolume,
                                                 MatrixCameraPtr  lightCamera)
{
    if(!enabled || index >= 3)
        return false;

    if(index == 0)
    {
        // Only the depth range that holds scene gets split.
        DynamicVolume viewScene = sceneVolume;
        viewScene.transform(camView);
        Pnt3f viewMin, viewMax;
        viewScene.getBounds(viewMin, viewMax);

        Real32 nearDist = osgMax(viewerNearFar[0], -viewMax[2]);
        Real32 farDist  = -viewMin[2] > 0.02f ? -viewMin[2] : 0.02f;
        updateSplitDistances(nearDist, farDist);
        updateSplitFrusta(cameraFrustum);

        Pnt3f center, sceneMin, sceneMax;
        sceneVolume.getCenter(center);
        sceneVolume.getBounds(sceneMin, sceneMax);
        Real32 radius = (sceneMax - center).length();
        Pnt3f  eye    = center + lightDirection * (5.0f * radius);

        Vec3f up = std::fabs(lightDirection[1]) > 0.99f ? Vec3f(0, 0, 1) : Vec3f(0, 1, 0);

        Matrix lookAt;
        MatrixLookAt(lookAt, eye, center, up);
        lookAt.inverse(lightView);
    }

    DynamicVolume lightScene = sceneVolume;
    lightScene.transform(lightView);
    Pnt3f sceneMin, sceneMax;
    lightScene.getBounds(sceneMin, sceneMax);

    MFPnt3f   corners = getFrustumCorners(splitFrusta[index]);
    BoxVolume splitBox;
    splitBox.setEmpty();
    for(UInt32 i = 0; i < corners.size(); ++i)
    {
        Pnt3f corner;
        lightView.multMatrixPnt(corners[i], corner);
        splitBox.extendBy(corner);
    }
    Pnt3f boxMin, boxMax;
    splitBox.getBounds(boxMin, boxMax);

    // From the scene point nearest the light to the split's far corner.
    Real32 nearDist = -sceneMax[2];
    Real32 farDist  = -boxMin[2];
    padDepthRange(nearDist, farDist, 0.0f, std::numeric_limits<Real32>::max());
    lightNearFars[index].setValues(nearDist, farDist);
    MatrixOrthogonal(lightProjections[index],
                     boxMin[0], boxMax[0], boxMin[1], boxMax[1], nearDist, farDist);

    // Move the projection so that the world origin falls on a texel corner,
    // which keeps the map from shimmering as the view moves. Before the map
    // exists its size is unknown; the projection stays unsnapped.
    Real32 mapSize = shadowMaps[index].getWidth();
    if(mapSize > 0.0f)
    {
        Matrix lightViewProjection = lightProjections[index];
        lightViewProjection.mult(lightView);
        Pnt3f origin;
        lightViewProjection.multFullMatrixPnt(Pnt3f(0.0f, 0.0f, 0.0f), origin);

        Real32 half = mapSize * 0.5f;
        Real32 x    = origin[0] * half;
        Real32 y    = origin[1] * half;
        Matrix snap;
        snap.setTranslate((std::floor(x + 0.5f) - x) / half,
                          (std::floor(y + 0.5f) - y) / half, 0.0f);
        lightProjections[index].multLeft(snap);
    }

    setLightCamera(lightCamera, lightView, lightProjections[index],
                   lightNearFars[index][0], lightNearFars[index][1]);

    if(index == 2)
    {
        // From now on it maps the viewer's eye space into the light's.
        Matrix invCamView;
        camView.inverse(invCamView);
        lightView.mult(invCamView);

        MFReal32 splitFars;
        splitFars.push_back(splitDistances[1]);
        splitFars.push_back(splitDistances[2]);
        splitFars.push_back(splitDistances[3]);

        setUniform("fSplitDistances", splitFars);
        setUniform("vLightNearFar",   lightNearFars);
        setUniform("mLightView",      lightView);
        setUniform("mLightProj",      lightProjections);
    }

    return enabled;
}

void DeferredDirectionalLight::updateSplitDistances(Real32 near, Real32 far)
{
    for(int i = 0; i < 4; ++i)
    {
        Real64 t           = i / 3.0;
        Real32 logarithmic = Real32(near * std::pow(Real64(far) / near, t));
        Real32 uniform     = Real32(near + t * (far - near));
        splitDistances[i]  = splitLambda * logarithmic + (1.0f - splitLambda) * uniform;
    }
}

void DeferredDirectionalLight::updateSplitFrusta(FrustumVolume &cameraFrustum)
{
    Matrix invCamView;
    camView.inverse(invCamView);
    Pnt3f eye;
    invCamView.multFullMatrixPnt(Pnt3f(0.0f, 0.0f, 0.0f), eye);

    const Plane *planes = cameraFrustum.getPlanes();
    const Vec3f &nearNormal = planes[0].getNormal();
    const Vec3f &farNormal  = planes[1].getNormal();

    for(int split = 0; split < 3; ++split)
    {
        Plane nearPlane(nearNormal, eye + nearNormal * splitDistances[split]);
        Plane farPlane (farNormal,  eye - farNormal  * splitDistances[split + 1]);
        splitFrusta[split].setPlanes(nearPlane, farPlane,
                                     planes[2], planes[3], planes[4], planes[5]);
    }
}

OSG_END_NAMESPACE

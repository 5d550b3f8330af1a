#include "DeferredCMBPostProcessor.h"

#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGOrthographicCamera.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGSimpleGeometry.h>
#include <OpenSG/OSGTransform.h>

#include <chrono>
#include <cmath>

OSG_BEGIN_NAMESPACE

namespace
{

// The blur shows the rotation of this long a time, whatever the frame rate.
const Real32 BlurInterval = 40.0f;

DeferredCMBPostProcessor::Clock clockOverride = NULL;

// Whole milliseconds since the first call, as GLUT's elapsed time counts
// them, whether or not the application runs GLUT: two updates within one
// millisecond see no interval rather than a tiny one that would stretch the
// rotation far beyond the frame.
Real32 steadyMilliseconds(void)
{
    static const std::chrono::steady_clock::time_point start =
        std::chrono::steady_clock::now();
    return Real32(std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - start).count());
}

} // namespace

// The sphere around the camera stands in for the scene: projected with both
// view-projections, its points give where each pixel was seen before.
const char *DeferredCMBPostProcessor::s_strVertexShader =
    "uniform vec3 vCamPosition;\n"
    "uniform mat4 mCamViewProj;\n"
    "uniform mat4 mCamViewProjPrev;\n"
    "uniform float fSphereScale;\n"
    "\n"
    "varying vec4 vCurrScreenTC;\n"
    "varying vec4 vPrevScreenTC;\n"
    "\n"
    "void main()\n"
    "{\n"
    "    vec4 vPosition = gl_Vertex;\n"
    "    vPosition.xyz = vPosition.xyz * fSphereScale + vCamPosition;\n"
    "    vec4 vCurrent = mCamViewProj * vPosition;\n"
    "    vec4 vPrevious = mCamViewProjPrev * vPosition;\n"
    "    vCurrScreenTC = vec4((vCurrent.xy + vCurrent.ww) * 0.5, vCurrent.zw);\n"
    "    vPrevScreenTC = vec4((vPrevious.xy + vPrevious.ww) * 0.5, vPrevious.zw);\n"
    "    gl_Position = vCurrent;\n"
    "}\n";

// The divisions wait for the fragment: interpolated before them, the
// coordinates stay correct in perspective.
const char *DeferredCMBPostProcessor::s_strFragmentShader =
    "uniform sampler2D texScene;\n"
    "uniform float fScale;\n"
    "\n"
    "varying vec4 vCurrScreenTC;\n"
    "varying vec4 vPrevScreenTC;\n"
    "\n"
    "const float fWeightStep = 0.125;\n"
    "\n"
    "void main()\n"
    "{\n"
    "    vec2 vCurrent = vCurrScreenTC.xy / vCurrScreenTC.w;\n"
    "    vec2 vPrevious = vPrevScreenTC.xy / vPrevScreenTC.w;\n"
    "    vec2 vVelocity = (vPrevious - vCurrent) * fScale;\n"
    "    vec4 vSum = vec4(0.0);\n"
    "    for(int i = 0; i < 16; ++i)\n"
    "    {\n"
    "        float s = -1.0 + float(i) * fWeightStep;\n"
    "        vSum += texture2D(texScene, vCurrent - vVelocity * s);\n"
    "    }\n"
    "    gl_FragColor = vec4(vSum.rgb / 16.0, 1.0);\n"
    "}\n";

DeferredCMBPostProcessor::DeferredCMBPostProcessor(void) :
    IDeferredPostProcessor(),
    blurScale             (0.03f),
    sphereNode            (NullFC),
    camera                (NullFC),
    previousRotation      (),
    material              (NullFC),
    shader                (NullFC),
    pingPongTarget        ()
{
}

DeferredCMBPostProcessor::~DeferredCMBPostProcessor(void)
{
    if(camera != NullFC)
    {
        // The camera does not count its beacon; the reference is ours.
        NodePtr beacon = camera->getBeacon();
        subRefCP(camera);
        subRefCP(beacon);
    }
    release({sphereNode, material, shader});
}

void DeferredCMBPostProcessor::initialize(WindowPtr     window,
                                          int           left,
                                          int           bottom,
                                          int           right,
                                          int           top,
                                          RenderTarget &,
                                          UInt16)
{
    initializeBase(window, left, bottom, right, top);
    // The vertex program places the sphere; the camera's frustum knows
    // nothing of it.
    renderAction->setFrustumCulling(false);
    initializeTargets({&pingPongTarget}, window, FullSize, ImageFormat,
                      left, bottom, right, top);

    shader = SHLChunk::create();
    addRefCP(shader);
    beginEditCP(shader, ShaderChunk::VertexProgramFieldMask |
                        ShaderChunk::FragmentProgramFieldMask |
                        ShaderChunk::ParametersFieldMask);
    shader->setVertexProgram  (s_strVertexShader);
    shader->setFragmentProgram(s_strFragmentShader);
    shader->setUniformParameter("texScene", Int32(0));
    endEditCP(shader, ShaderChunk::VertexProgramFieldMask |
                      ShaderChunk::FragmentProgramFieldMask |
                      ShaderChunk::ParametersFieldMask);

    // The camera sits inside the sphere.
    PolygonChunkPtr polygon = PolygonChunk::create();
    beginEditCP(polygon, PolygonChunk::CullFaceFieldMask);
    polygon->setCullFace(GL_NONE);
    endEditCP(polygon, PolygonChunk::CullFaceFieldMask);

    material = ChunkMaterial::create();
    addRefCP(material);
    beginEditCP(material, ChunkMaterial::ChunksFieldMask);
    material->addChunk(shader,  State::AutoSlotReplace);
    material->addChunk(polygon, State::AutoSlotReplace);
    endEditCP(material, ChunkMaterial::ChunksFieldMask);

    GeometryPtr sphere = makeSphereGeo(3, 1.0f);
    beginEditCP(sphere, Geometry::MaterialFieldMask);
    sphere->setMaterial(material);
    endEditCP(sphere, Geometry::MaterialFieldMask);
    sphereNode = makeNodeFor(sphere);
    addRefCP(sphereNode);

    NodePtr beacon = makeNodeFor(Transform::create());
    addRefCP(beacon);
    // Only runs the scene render; a valid frustum keeps the runtime from
    // warning about its projection on every pass.
    OrthographicCameraPtr orthographic = OrthographicCamera::create();
    beginEditCP(orthographic);
    orthographic->setBeacon(beacon);
    orthographic->setVerticalSize(2.0f);
    orthographic->setNear(0.1f);
    orthographic->setFar(2.0f);
    endEditCP(orthographic);
    camera = orthographic;
    addRefCP(camera);

    initialized = true;
}

void DeferredCMBPostProcessor::resize(int left, int bottom, int right, int top)
{
    resizeTargets({&renderTarget, &pingPongTarget}, FullSize, left, bottom, right, top);
}

void DeferredCMBPostProcessor::update(const Matrix &viewing,
                                      const Matrix &projection,
                                      const Vec2f  &camNearFar)
{
    // Shared by all instances: with two viewports, dt is the time since
    // either was last updated.
    static Real32 fLastTime  = getElapsedTime();
    static bool   bFirstCall = true;

    const Real32 now = getElapsedTime();
    const Real32 dt  = now - fLastTime;
    fLastTime = now;

    Vec3f      translation;
    Quaternion rotation;
    Vec3f      scaleFactor;
    Quaternion scaleOrientation;
    viewing.getTransform(translation, rotation, scaleFactor, scaleOrientation);

    Matrix toWorld;
    viewing.inverse(toWorld);
    Pnt3f camPosition;
    toWorld.multFullMatrixPnt(Pnt3f(0.0f, 0.0f, 0.0f), camPosition);

    Matrix viewProj = projection;
    viewProj.mult(viewing);

    if(bFirstCall)
    {
        previousRotation = rotation;
        bFirstCall       = false;
    }

    // Only the rotation is estimated 40 ms back; translation and scale stay
    // this frame's. Without a usable interval (the first frame, two updates
    // in one millisecond, a clock set back) the frame counts as one without
    // motion.
    Matrix       viewProjPrev = viewProj;
    const Real32 t            = BlurInterval / dt;
    if(dt > 0.0f && std::isfinite(t))
    {
        Quaternion earlierRotation = Quaternion::slerp(rotation, previousRotation, t);
        Matrix     earlierViewing;
        earlierViewing.setTransform(translation, earlierRotation, scaleFactor,
                                    scaleOrientation);
        viewProjPrev = projection;
        viewProjPrev.mult(earlierViewing);
    }

    beginEditCP(shader, ShaderChunk::ParametersFieldMask);
    shader->setUniformParameter("vCamPosition",     camPosition.subZero());
    shader->setUniformParameter("mCamViewProj",     viewProj);
    shader->setUniformParameter("mCamViewProjPrev", viewProjPrev);
    shader->setUniformParameter("fScale",           blurScale);
    shader->setUniformParameter("fSphereScale",     (camNearFar[0] + camNearFar[1]) * 0.5f);
    endEditCP(shader, ShaderChunk::ParametersFieldMask);

    previousRotation = rotation;
}

TextureChunkPtr DeferredCMBPostProcessor::perform(TextureChunkPtr input)
{
    renderBlurPass(renderTarget,   input);
    renderBlurPass(pingPongTarget, renderTarget.getTargetTexture(0));
    renderBlurPass(renderTarget,   pingPongTarget.getTargetTexture(0));
    return renderTarget.getTargetTexture(0);
}

void DeferredCMBPostProcessor::setBlurScale(Real32 scale)
{
    blurScale = scale;
}

Real32 DeferredCMBPostProcessor::getElapsedTime(void)
{
    if(clockOverride != NULL)
        return clockOverride();
    return steadyMilliseconds();
}

void DeferredCMBPostProcessor::setClock(Clock clock)
{
    clockOverride = clock;
}

void DeferredCMBPostProcessor::renderBlurPass(RenderTarget &target, TextureChunkPtr source)
{
    beginEditCP(material, ChunkMaterial::ChunksFieldMask);
    material->addChunk(source, State::AutoSlotReplace);
    endEditCP(material, ChunkMaterial::ChunksFieldMask);

    target.renderScene(sphereNode, camera, renderAction, NullFC);

    beginEditCP(material, ChunkMaterial::ChunksFieldMask);
    material->subChunk(source, State::AutoSlotReplace);
    endEditCP(material, ChunkMaterial::ChunksFieldMask);
}

OSG_END_NAMESPACE

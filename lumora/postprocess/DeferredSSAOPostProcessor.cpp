#include "DeferredSSAOPostProcessor.h"

#include <Lumora/PostProcessingTools.h>

#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGImage.h>

#include <boost/random/mersenne_twister.hpp>
#include <boost/random/uniform_on_sphere.hpp>
#include <boost/random/uniform_real_distribution.hpp>

#include <vector>

OSG_BEGIN_NAMESPACE

// A sample occludes when it lies behind the depth stored where it lands and
// that surface faces another way (a coplanar neighbour is no occluder),
// fading with the depth gap. Samples are mirrored into the hemisphere above
// the surface, and the per-pixel reflection turns the 32 of them into a
// different set in each of the 4 x 4 pixels of the noise tile.
const char *DeferredSSAOPostProcessor::s_strSSAOFragmentShader =
    "uniform sampler2D texDepth;\n"
    "uniform sampler2D texNormal;\n"
    "uniform sampler2D texNoise;\n"
    "uniform vec2 vNoiseTextureRepeat;\n"
    "uniform vec2 vCamNearFar;\n"
    "uniform float fScale;\n"
    "uniform float fAttenuation;\n"
    "uniform vec3 Samples[32];\n"
    "\n"
    "float linearDepth(float z)\n"
    "{\n"
    "    return vCamNearFar.x / (vCamNearFar.y - z * (vCamNearFar.y - vCamNearFar.x)) * vCamNearFar.y;\n"
    "}\n"
    "\n"
    "vec3 decodeNormal(vec4 vTexel)\n"
    "{\n"
    "    return normalize(vTexel.xyz * 2.0 - 1.0);\n"
    "}\n"
    "\n"
    "void main()\n"
    "{\n"
    "    vec2 vTexCoord = gl_TexCoord[0].st;\n"
    "    vec4 vNormalTexel = texture2D(texNormal, vTexCoord);\n"
    "    if(vNormalTexel.a == 0.0)\n"
    "        discard;\n"
    "\n"
    "    float fCurrentZ = linearDepth(texture2D(texDepth, vTexCoord).r);\n"
    "    vec3 vNormal = decodeNormal(vNormalTexel);\n"
    "    vec3 vRandom = normalize(texture2D(texNoise, vTexCoord * vNoiseTextureRepeat).xyz);\n"
    "\n"
    "    float fRange = vCamNearFar.y - vCamNearFar.x;\n"
    "    float fRadius = fScale * fRange * (1.0 / fCurrentZ);\n"
    "    float fBias = 0.0001 * fRange;\n"
    "\n"
    "    float fOcclusion = 0.0;\n"
    "    for(int i = 0; i < 32; ++i)\n"
    "    {\n"
    "        vec3 vSample = reflect(Samples[i], vRandom) * fRadius;\n"
    "        if(dot(normalize(vSample), vNormal) < 0.0)\n"
    "            vSample = -vSample;\n"
    "\n"
    "        vec2 vSampleCoord = vTexCoord + vSample.xy;\n"
    "        float fSampleZ = linearDepth(texture2D(texDepth, vSampleCoord).r);\n"
    "        vec3 vSampleNormal = decodeNormal(texture2D(texNormal, vSampleCoord));\n"
    "        if(1.0 - dot(vSampleNormal, vNormal) < 0.001)\n"
    "            continue;\n"
    "\n"
    "        float d = fAttenuation * ((fCurrentZ - vSample.z) - fSampleZ - fBias);\n"
    "        fOcclusion += step(0.0, d) / (1.0 + d * d);\n"
    "    }\n"
    "    gl_FragColor = vec4(1.0 - fOcclusion / 32.0);\n"
    "}\n";

// A tap across a crease (normals apart) would carry the other surface's
// occlusion over; it is replaced by the centre's own value instead. Shared
// by both halves of the blur.
#define LUMORA_SSAO_EDGE_AWARE_BLUR                                                        \
    "uniform sampler2D texNormal;\n"                                                      \
    "uniform sampler2D texSSAO;\n"                                                        \
    "uniform vec2 pixelSize;\n"                                                           \
    "uniform vec3 blurKernel[5];\n"                                                       \
    "\n"                                                                                  \
    "const float normalThreshold = 0.92;\n"                                               \
    "\n"                                                                                  \
    "float blurOcclusion(vec2 vTexCoord, vec3 vCentreNormal)\n"                           \
    "{\n"                                                                                 \
    "    float fCentre = texture2D(texSSAO, vTexCoord).r;\n"                              \
    "    float fSum = 0.0;\n"                                                             \
    "    for(int i = 0; i < 5; ++i)\n"                                                    \
    "    {\n"                                                                             \
    "        vec2 vTap = vTexCoord + blurKernel[i].xy * pixelSize.xy;\n"                  \
    "        vec3 vTapNormal = normalize(texture2D(texNormal, vTap).xyz * 2.0 - 1.0);\n"  \
    "        float fTap = fCentre;\n"                                                     \
    "        if(dot(vCentreNormal, vTapNormal) > normalThreshold)\n"                      \
    "            fTap = texture2D(texSSAO, vTap).r;\n"                                    \
    "        fSum += fTap * blurKernel[i].z;\n"                                           \
    "    }\n"                                                                             \
    "    return fSum;\n"                                                                  \
    "}\n"                                                                                 \
    "\n"

const char *DeferredSSAOPostProcessor::s_strBlurHFragmentShader =
    LUMORA_SSAO_EDGE_AWARE_BLUR
    "void main()\n"
    "{\n"
    "    vec2 vTexCoord = gl_TexCoord[0].st;\n"
    "    vec4 vNormalTexel = texture2D(texNormal, vTexCoord);\n"
    "    if(vNormalTexel.a == 0.0)\n"
    "        discard;\n"
    "\n"
    "    gl_FragColor = vec4(blurOcclusion(vTexCoord, normalize(vNormalTexel.xyz * 2.0 - 1.0)));\n"
    "}\n";

// The vertical half of the same blur, applied to the scene; pixels without
// geometry pass through untouched.
const char *DeferredSSAOPostProcessor::s_strBlurVFinalFragmentShader =
    "uniform sampler2D texScene;\n"
    LUMORA_SSAO_EDGE_AWARE_BLUR
    "void main()\n"
    "{\n"
    "    vec2 vTexCoord = gl_TexCoord[0].st;\n"
    "    vec4 vScene = texture2D(texScene, vTexCoord);\n"
    "    vec4 vNormalTexel = texture2D(texNormal, vTexCoord);\n"
    "    if(vNormalTexel.a == 0.0)\n"
    "    {\n"
    "        gl_FragColor = vScene;\n"
    "        return;\n"
    "    }\n"
    "\n"
    "    gl_FragColor = blurOcclusion(vTexCoord, normalize(vNormalTexel.xyz * 2.0 - 1.0)) * vScene;\n"
    "}\n";

#undef LUMORA_SSAO_EDGE_AWARE_BLUR

DeferredSSAOPostProcessor::DeferredSSAOPostProcessor(void) :
    IDeferredPostProcessor(),
    attenuation           (0.0025f),
    scale                 (0.001f),
    ssaoShader            (NullFC),
    blurHShader           (NullFC),
    blurVFinalShader      (NullFC),
    ssaoMaterial          (NullFC),
    blurHMaterial         (NullFC),
    blurVFinalMaterial    (NullFC),
    ssaoTarget            (),
    blurHTarget           (),
    noiseTexture          (NullFC)
{
}

DeferredSSAOPostProcessor::~DeferredSSAOPostProcessor(void)
{
    release({ssaoMaterial, blurHMaterial, blurVFinalMaterial,
             ssaoShader, blurHShader, blurVFinalShader, noiseTexture});
}

void DeferredSSAOPostProcessor::initialize(WindowPtr     window,
                                           int           left,
                                           int           bottom,
                                           int           right,
                                           int           top,
                                           RenderTarget &gbuffer,
                                           UInt16        gbufferTextureCount)
{
    initializeBase(window, left, bottom, right, top);
    initializeTargets({&ssaoTarget, &blurHTarget}, window, FullSize, FactorFormat,
                      left, bottom, right, top);

    const MFVec3f blurKernel = PostProcessingTools::getGaussianBlurKernel(5, 0.0f, 2.0f);

    ssaoShader       = createShader(s_strSSAOFragmentShader,
                                    {"texDepth", "texNormal", "texNoise"});
    blurHShader      = createShader(s_strBlurHFragmentShader, {"texNormal", "texSSAO"});
    blurVFinalShader = createShader(s_strBlurVFinalFragmentShader,
                                    {"texNormal", "texSSAO", "texScene"});
    setUniform(blurHShader,      "blurKernel", blurKernel);
    setUniform(blurVFinalShader, "blurKernel", blurKernel);
    createNoiseAndKernel();
    setSizeUniforms(left, bottom, right, top);

    TextureChunkPtr depth  = gbuffer.getTargetTexture(UInt8(gbufferTextureCount - 1));
    TextureChunkPtr normal = gbuffer.getTargetTexture(0);

    ssaoMaterial       = createMaterial(ssaoShader, {depth, normal, noiseTexture});
    blurHMaterial      = createMaterial(blurHShader, {normal, ssaoTarget.getTargetTexture(0)});
    blurVFinalMaterial = createMaterial(blurVFinalShader,
                                        {normal, blurHTarget.getTargetTexture(0)});

    initialized = true;
}

void DeferredSSAOPostProcessor::resize(int left, int bottom, int right, int top)
{
    resizeTargets({&renderTarget, &ssaoTarget, &blurHTarget}, FullSize,
                  left, bottom, right, top);
    setSizeUniforms(left, bottom, right, top);
}

void DeferredSSAOPostProcessor::update(const Matrix &, const Matrix &, const Vec2f &camNearFar)
{
    beginEditCP(ssaoShader, ShaderChunk::ParametersFieldMask);
    ssaoShader->setUniformParameter("vCamNearFar",  camNearFar);
    ssaoShader->setUniformParameter("fScale",       scale);
    ssaoShader->setUniformParameter("fAttenuation", attenuation);
    endEditCP(ssaoShader, ShaderChunk::ParametersFieldMask);
}

TextureChunkPtr DeferredSSAOPostProcessor::perform(TextureChunkPtr input)
{
    ssaoTarget .renderFullscreenPass(ssaoMaterial,  renderAction);
    blurHTarget.renderFullscreenPass(blurHMaterial, renderAction);
    renderPass(renderTarget, blurVFinalMaterial, input);
    return renderTarget.getTargetTexture(0);
}

// A fixed seed, so that every run darkens the same pixels alike; the
// occlusion program also receives its sample kernel here.
void DeferredSSAOPostProcessor::createNoiseAndKernel(void)
{
    boost::random::mt19937                          generator;
    boost::random::uniform_on_sphere<float>         onSphere(3);
    boost::random::uniform_real_distribution<float> length(0.0f, 1.0f);

    std::vector<Real32> noise;
    for(int i = 0; i < 16; ++i)
    {
        const std::vector<float> v = onSphere(generator);
        noise.insert(noise.end(), v.begin(), v.end());
    }

    MFVec3f samples;
    for(int i = 0; i < 32; ++i)
    {
        const std::vector<float> v = onSphere(generator);
        const float              u = length(generator);
        samples.push_back(Vec3f(v[0] * u, v[1] * u, v[2] * u));
    }

    ImagePtr image = Image::create();
    beginEditCP(image);
    image->set(Image::OSG_RGB_PF, 4, 4, 1, 1, 1, 0.0,
               reinterpret_cast<const UInt8 *>(noise.data()), Image::OSG_FLOAT32_IMAGEDATA);
    endEditCP(image);

    noiseTexture = TextureChunk::create();
    addRefCP(noiseTexture);
    beginEditCP(noiseTexture);
    noiseTexture->setTarget(GL_TEXTURE_2D);
    noiseTexture->setImage(image);
    noiseTexture->setInternalFormat(GL_RGB32F_ARB);
    noiseTexture->setMinFilter(GL_LINEAR);
    noiseTexture->setMagFilter(GL_LINEAR);
    noiseTexture->setWrapS(GL_REPEAT);
    noiseTexture->setWrapT(GL_REPEAT);
    endEditCP(noiseTexture);

    setUniform(ssaoShader, "Samples", samples);
}

// One noise texel per screen pixel; each blur steps one pixel along its
// own axis.
void DeferredSSAOPostProcessor::setSizeUniforms(int left, int bottom, int right, int top)
{
    int width, height;
    getTargetSize(FullSize, left, bottom, right, top, width, height);
    const Vec2f pixel = getPixelSize(FullSize, left, bottom, right, top);

    // One noise texel a pixel: the 4 x 4 texture repeats a quarter of the size.
    setUniform(ssaoShader,       "vNoiseTextureRepeat",
               Vec2f(Real32(width) * 0.25f, Real32(height) * 0.25f));
    setUniform(blurHShader,      "pixelSize", Vec2f(pixel[0], 0.0f));
    setUniform(blurVFinalShader, "pixelSize", Vec2f(0.0f, pixel[1]));
}

OSG_END_NAMESPACE

#include "DeferredHDRPostProcessor.h"

#include <Lumora/PostProcessingTools.h>

#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGImage.h>

OSG_BEGIN_NAMESPACE

namespace
{

const Real32 BloomScale = 1.25f;

} // namespace

// Without adaptation the scene is taken to have a fixed luminance of 0.1;
// the offset keeps the bloom soft, so that only far-over-threshold values
// come near full strength.
const char *DeferredHDRPostProcessor::s_strBrightPassFragmentShader =
    "uniform sampler2D texHDRScaledScene;\n"
    "uniform float g_fExposure;\n"
    "uniform float g_fBrightPassThreshold;\n"
    "\n"
    "const float fAdaptedLuminance = 0.1;\n"
    "const float BRIGHT_PASS_OFFSET = 100.0;\n"
    "\n"
    "void main()\n"
    "{\n"
    "    vec3 vColor = texture2D(texHDRScaledScene, gl_TexCoord[0].st).rgb;\n"
    "    vColor *= g_fExposure / (fAdaptedLuminance + 0.0001);\n"
    "    vColor -= vec3(g_fBrightPassThreshold);\n"
    "    vColor = max(vColor, vec3(0.0));\n"
    "    vColor /= vec3(BRIGHT_PASS_OFFSET) + vColor;\n"
    "    gl_FragColor = vec4(vColor, 1.0);\n"
    "}\n";

const char *DeferredHDRPostProcessor::s_strFinalPassFragmentShader =
    "uniform sampler2D texBloom;\n"
    "uniform sampler2D texHDRScene;\n"
    "uniform float g_fExposure;\n"
    "\n"
    "const float E = 2.718281828459045;\n"
    "\n"
    "void main()\n"
    "{\n"
    "    vec3 vScene = texture2D(texHDRScene, gl_TexCoord[0].st).rgb;\n"
    "    vec3 vBloom = texture2D(texBloom, gl_TexCoord[0].st).rgb;\n"
    "    vec3 vToneMapped = vec3(1.0) - pow(vec3(E), -g_fExposure * vScene);\n"
    "    gl_FragColor = vec4(clamp(vToneMapped + vBloom, 0.0, 1.0), 1.0);\n"
    "}\n";

DeferredHDRPostProcessor::DeferredHDRPostProcessor(void) :
    IDeferredPostProcessor(),
    exposure              (1.64f),
    brightPassThreshold   (1.0f),
    downscaledTarget      (),
    brightPassTarget      (),
    bloomTarget           (),
    blurTarget            (),
    brightPassShader      (NullFC),
    finalPassShader       (NullFC),
    brightPassMaterial    (NullFC),
    finalPassMaterial     (NullFC)
{
}

DeferredHDRPostProcessor::~DeferredHDRPostProcessor(void)
{
    release({finalPassMaterial, brightPassMaterial, finalPassShader, brightPassShader});
}

void DeferredHDRPostProcessor::initialize(WindowPtr     window,
                                          int           left,
                                          int           bottom,
                                          int           right,
                                          int           top,
                                          RenderTarget &,
                                          UInt16)
{
    initializeBase(window, left, bottom, right, top);
    initializeTargets({&downscaledTarget, &brightPassTarget, &bloomTarget, &blurTarget},
                      window, QuarterSize, ImageFormat, left, bottom, right, top);

    brightPassShader = createShader(s_strBrightPassFragmentShader, {"texHDRScaledScene"});
    finalPassShader  = createShader(s_strFinalPassFragmentShader, {"texBloom", "texHDRScene"});
    update(Matrix(), Matrix(), Vec2f());

    brightPassMaterial = createMaterial(brightPassShader, {downscaledTarget.getTargetTexture(0)});
    finalPassMaterial  = createMaterial(finalPassShader,  {bloomTarget.getTargetTexture(0)});

    initialized = true;
}

void DeferredHDRPostProcessor::resize(int left, int bottom, int right, int top)
{
    resizeTargets({&renderTarget}, FullSize, left, bottom, right, top);
    resizeTargets({&downscaledTarget, &brightPassTarget, &bloomTarget, &blurTarget},
                  QuarterSize, left, bottom, right, top);
}

void DeferredHDRPostProcessor::update(const Matrix &, const Matrix &, const Vec2f &)
{
    setUniform(brightPassShader, "g_fExposure",            exposure);
    setUniform(brightPassShader, "g_fBrightPassThreshold", brightPassThreshold);
    setUniform(finalPassShader,  "g_fExposure",            exposure);
}

TextureChunkPtr DeferredHDRPostProcessor::perform(TextureChunkPtr input)
{
    PostProcessingTools *tools = PostProcessingTools::getInstance();

    tools->downscaleTexture(input, &downscaledTarget, PostProcessingTools::DOWNSCALE_4X4,
                            renderAction);

    brightPassTarget.renderFullscreenPass(brightPassMaterial, renderAction);

    tools->blurTexture(brightPassTarget.getTargetTexture(0), &bloomTarget, &blurTarget,
                       PostProcessingTools::GAUSSIAN_13, renderAction, BloomScale);
    tools->blurTexture(blurTarget.getTargetTexture(0), &brightPassTarget, &bloomTarget,
                       PostProcessingTools::GAUSSIAN_13, renderAction, BloomScale);

    renderPass(renderTarget, finalPassMaterial, input);
    return renderTarget.getTargetTexture(0);
}

// Reduced targets, like every target, are framebuffers of their own: a
// quarter of the viewport's size from their own origin.
OSG_END_NAMESPACE

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
    if(finalPassMaterial != NullFC)
        subRefCP(finalPassMaterial);
    if(brightPassMaterial != NullFC)
        subRefCP(brightPassMaterial);
    if(finalPassShader != NullFC)
        subRefCP(finalPassShader);
    if(brightPassShader != NullFC)
        subRefCP(brightPassShader);
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
    addImageTexture(renderTarget);

    initializeReducedTarget(downscaledTarget, window, left, bottom, right, top);
    initializeReducedTarget(brightPassTarget, window, left, bottom, right, top);
    initializeReducedTarget(bloomTarget,      window, left, bottom, right, top);
    initializeReducedTarget(blurTarget,       window, left, bottom, right, top);

    brightPassShader = createShader(s_strBrightPassFragmentShader);
    beginEditCP(brightPassShader, ShaderChunk::ParametersFieldMask);
    brightPassShader->setUniformParameter("texHDRScaledScene", Int32(0));
    brightPassShader->setUniformParameter("g_fExposure",       exposure);
    endEditCP(brightPassShader, ShaderChunk::ParametersFieldMask);

    finalPassShader = createShader(s_strFinalPassFragmentShader);
    beginEditCP(finalPassShader, ShaderChunk::ParametersFieldMask);
    finalPassShader->setUniformParameter("texBloom",    Int32(0));
    finalPassShader->setUniformParameter("texHDRScene", Int32(1));
    finalPassShader->setUniformParameter("g_fExposure", exposure);
    endEditCP(finalPassShader, ShaderChunk::ParametersFieldMask);

    brightPassMaterial = createMaterial(brightPassShader);
    beginEditCP(brightPassMaterial, ChunkMaterial::ChunksFieldMask);
    brightPassMaterial->addChunk(downscaledTarget.getTargetTexture(0), State::AutoSlotReplace);
    endEditCP(brightPassMaterial, ChunkMaterial::ChunksFieldMask);

    finalPassMaterial = createMaterial(finalPassShader);
    beginEditCP(finalPassMaterial, ChunkMaterial::ChunksFieldMask);
    finalPassMaterial->addChunk(bloomTarget.getTargetTexture(0), State::AutoSlotReplace);
    endEditCP(finalPassMaterial, ChunkMaterial::ChunksFieldMask);

    initialized = true;
}

void DeferredHDRPostProcessor::resize(int left, int bottom, int right, int top)
{
    renderTarget.resize(0, 0, right - left, top - bottom);

    const int reducedRight = quarter(right - left + 1) - 1;
    const int reducedTop   = quarter(top - bottom + 1) - 1;
    downscaledTarget.resize(0, 0, reducedRight, reducedTop);
    brightPassTarget.resize(0, 0, reducedRight, reducedTop);
    bloomTarget     .resize(0, 0, reducedRight, reducedTop);
    blurTarget      .resize(0, 0, reducedRight, reducedTop);
}

void DeferredHDRPostProcessor::update(const Matrix &, const Matrix &, const Vec2f &)
{
    beginEditCP(brightPassShader, ShaderChunk::ParametersFieldMask);
    brightPassShader->setUniformParameter("g_fExposure",            exposure);
    brightPassShader->setUniformParameter("g_fBrightPassThreshold", brightPassThreshold);
    endEditCP(brightPassShader, ShaderChunk::ParametersFieldMask);

    beginEditCP(finalPassShader, ShaderChunk::ParametersFieldMask);
    finalPassShader->setUniformParameter("g_fExposure", exposure);
    endEditCP(finalPassShader, ShaderChunk::ParametersFieldMask);
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
void DeferredHDRPostProcessor::initializeReducedTarget(RenderTarget &target, WindowPtr window,
                                                       int left, int bottom,
                                                       int right, int top)
{
    target.initialize(window, 0, 0, quarter(right - left + 1) - 1,
                      quarter(top - bottom + 1) - 1);
    addImageTexture(target);
}

OSG_END_NAMESPACE

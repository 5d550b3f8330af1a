#include "DeferredDoFPostProcessor.h"

#include <Lumora/PostProcessingTools.h>

#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGImage.h>

OSG_BEGIN_NAMESPACE

// In front of the focal plane the blur grows to its full size at the near
// plane; behind it, it grows towards the far plane but stops at the cut-off,
// so a distant background stays recognisable.
const char *DeferredDoFPostProcessor::s_strBlurinessFragmentShader =
    "uniform sampler2D texDepth;\n"
    "uniform vec3 blurParams;\n"
    "uniform vec2 vCamNearFar;\n"
    "uniform float blurCutoff;\n"
    "\n"
    "void main()\n"
    "{\n"
    "    float z = texture2D(texDepth, gl_TexCoord[0].st).r;\n"
    "    float d = vCamNearFar.x / (vCamNearFar.y - z * (vCamNearFar.y - vCamNearFar.x)) * vCamNearFar.y;\n"
    "    float f;\n"
    "    if(d < blurParams.y)\n"
    "        f = (d - blurParams.y) / (blurParams.y - blurParams.x);\n"
    "    else\n"
    "        f = clamp((d - blurParams.y) / (blurParams.z - blurParams.y), 0.0, blurCutoff);\n"
    "    gl_FragColor = vec4(f * 0.5 + 0.5);\n"
    "}\n";

// Each tap mixes sharp and blurred colour by its own blurriness. A tap
// nearer than the centre counts only as much as it is out of focus itself,
// so a sharp foreground does not smear over the blurred background behind.
const char *DeferredDoFPostProcessor::s_strFinalFragmentShader =
    "uniform sampler2D texDownsampled;\n"
    "uniform sampler2D texDepth;\n"
    "uniform sampler2D texScene;\n"
    "uniform vec2 poissonKernel[12];\n"
    "uniform vec2 pixelSizeFullRes;\n"
    "uniform vec2 pixelSizeLowRes;\n"
    "\n"
    "const vec2 maxCoC = vec2(5.0, 10.0);\n"
    "const float radiusScale = 0.4;\n"
    "\n"
    "void main()\n"
    "{\n"
    "    vec2 vTexCoord = gl_TexCoord[0].st;\n"
    "    float fCentreBlur = texture2D(texDepth, vTexCoord).r;\n"
    "    float fRadius = abs(fCentreBlur * maxCoC.y - maxCoC.x);\n"
    "    float fRadiusLow = fRadius * radiusScale;\n"
    "\n"
    "    vec4 vSum = vec4(0.0);\n"
    "    float fWeightSum = 0.0;\n"
    "    for(int i = 0; i < 12; ++i)\n"
    "    {\n"
    "        vec2 vCoordFull = vTexCoord + pixelSizeFullRes * poissonKernel[i] * fRadius;\n"
    "        vec2 vCoordLow = vTexCoord + pixelSizeLowRes * poissonKernel[i] * fRadiusLow;\n"
    "        vec4 vTapFull = vec4(texture2D(texScene, vCoordFull).rgb, texture2D(texDepth, vCoordFull).r);\n"
    "        vec4 vTapLow = vec4(texture2D(texDownsampled, vCoordLow).rgb, texture2D(texDepth, vCoordLow).r);\n"
    "        float fBlend = abs(vTapFull.a * 2.0 - 1.0);\n"
    "        vec4 vTap = mix(vTapFull, vTapLow, fBlend);\n"
    "        float fWeight = 1.0;\n"
    "        if(vTap.a < fCentreBlur)\n"
    "            fWeight = abs(vTap.a * 2.0 - 1.0);\n"
    "        vSum += vTap * fWeight;\n"
    "        fWeightSum += fWeight;\n"
    "    }\n"
    "    gl_FragColor = vec4(vSum.rgb / fWeightSum, 1.0);\n"
    "}\n";

DeferredDoFPostProcessor::DeferredDoFPostProcessor(void) :
    IDeferredPostProcessor(),
    focalDepth            (10.0f),
    blurCutoff            (0.7f),
    finalShader           (NullFC),
    blurinessShader       (NullFC),
    blurinessMaterial     (NullFC),
    finalMaterial         (NullFC),
    blurinessTarget       (),
    downscaledTarget      (),
    blurTempTarget        (),
    blurredTarget         ()
{
}

DeferredDoFPostProcessor::~DeferredDoFPostProcessor(void)
{
    release({finalMaterial, blurinessMaterial, blurinessShader, finalShader});
}

void DeferredDoFPostProcessor::initialize(WindowPtr     window,
                                          int           left,
                                          int           bottom,
                                          int           right,
                                          int           top,
                                          RenderTarget &gbuffer,
                                          UInt16        gbufferTextureCount)
{
    initializeBase(window, left, bottom, right, top);
    initializeTargets({&blurinessTarget}, window, FullSize, FactorFormat,
                      left, bottom, right, top);
    // A quarter of the viewport's own size, so the 4 x 4 reduction lands
    // each output pixel on a block of source texels.
    initializeTargets({&downscaledTarget, &blurTempTarget, &blurredTarget}, window,
                      QuarterSize, ImageFormat, left, bottom, right, top);

    MFVec2f poissonKernel;
    poissonKernel.push_back(Vec2f(-0.326212f, -0.40581f ));
    poissonKernel.push_back(Vec2f(-0.840144f, -0.07358f ));
    poissonKernel.push_back(Vec2f(-0.695914f,  0.457137f));
    poissonKernel.push_back(Vec2f(-0.203345f,  0.620716f));
    poissonKernel.push_back(Vec2f( 0.96234f,  -0.194983f));
    poissonKernel.push_back(Vec2f( 0.473434f, -0.480026f));
    poissonKernel.push_back(Vec2f( 0.519456f,  0.767022f));
    poissonKernel.push_back(Vec2f( 0.185461f, -0.893124f));
    poissonKernel.push_back(Vec2f( 0.507431f,  0.064425f));
    poissonKernel.push_back(Vec2f( 0.89642f,   0.412458f));
    poissonKernel.push_back(Vec2f(-0.32194f,  -0.932615f));
    poissonKernel.push_back(Vec2f(-0.791559f, -0.59771f ));

    blurinessShader = createShader(s_strBlurinessFragmentShader, {"texDepth"});
    finalShader     = createShader(s_strFinalFragmentShader,
                                   {"texDownsampled", "texDepth", "texScene"});
    setUniform(finalShader, "poissonKernel", poissonKernel);
    setPixelSizes(left, bottom, right, top);

    blurinessMaterial = createMaterial(blurinessShader,
        {gbuffer.getTargetTexture(UInt8(gbufferTextureCount - 1))});
    finalMaterial     = createMaterial(finalShader,
        {blurredTarget.getTargetTexture(0), blurinessTarget.getTargetTexture(0)});

    initialized = true;
}

void DeferredDoFPostProcessor::resize(int left, int bottom, int right, int top)
{
    resizeTargets({&renderTarget, &blurinessTarget}, FullSize, left, bottom, right, top);
    resizeTargets({&downscaledTarget, &blurTempTarget, &blurredTarget}, QuarterSize,
                  left, bottom, right, top);
    setPixelSizes(left, bottom, right, top);
}

void DeferredDoFPostProcessor::update(const Matrix &, const Matrix &, const Vec2f &camNearFar)
{
    beginEditCP(blurinessShader, ShaderChunk::ParametersFieldMask);
    blurinessShader->setUniformParameter("blurParams",
                                         Vec3f(camNearFar[0], focalDepth, camNearFar[1]));
    blurinessShader->setUniformParameter("blurCutoff",  blurCutoff);
    blurinessShader->setUniformParameter("vCamNearFar", camNearFar);
    endEditCP(blurinessShader, ShaderChunk::ParametersFieldMask);
}

TextureChunkPtr DeferredDoFPostProcessor::perform(TextureChunkPtr input)
{
    PostProcessingTools *tools = PostProcessingTools::getInstance();

    blurinessTarget.renderFullscreenPass(blurinessMaterial, renderAction);
    tools->downscaleTexture(input, &downscaledTarget, PostProcessingTools::DOWNSCALE_4X4,
                            renderAction);
    tools->blurTexture(downscaledTarget.getTargetTexture(0), &blurTempTarget, &blurredTarget,
                       PostProcessingTools::GAUSSIAN_7, renderAction, 1.0f);
    renderPass(renderTarget, finalMaterial, input);
    return renderTarget.getTargetTexture(0);
}

void DeferredDoFPostProcessor::setPixelSizes(int left, int bottom, int right, int top)
{
    setUniform(finalShader, "pixelSizeFullRes", getPixelSize(FullSize, left, bottom, right, top));
    setUniform(finalShader, "pixelSizeLowRes", getPixelSize(QuarterSize, left, bottom, right, top));
}

OSG_END_NAMESPACE

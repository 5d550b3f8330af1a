#include "PostProcessingTools.h"

#include <OpenSG/OSGImage.h>

#include <cmath>
#include <mutex>
#include <string>

OSG_BEGIN_NAMESPACE

// Texture coordinates from the clip-space position, so any quad covering
// the target samples its source from 0 to 1.
const char *PostProcessingTools::s_strVertexShader =
    "void main(void)\n"
    "{\n"
    "    gl_Position = ftransform();\n"
    "    gl_TexCoord[0].xy = gl_Position.xy * 0.5 + 0.5;\n"
    "}\n";

const char *PostProcessingTools::strDownscaleFragmentShader =
    "uniform sampler2D texSource;\n"
    "uniform vec2 pixelSize;\n"
    "uniform vec2 pixelOffset[NUM_SAMPLES];\n"
    "\n"
    "void main(void)\n"
    "{\n"
    "    vec4 sum = vec4(0.0);\n"
    "    for(int i = 0; i < NUM_SAMPLES; ++i)\n"
    "        sum += texture2D(texSource, gl_TexCoord[0].xy + pixelOffset[i] * pixelSize);\n"
    "    gl_FragColor = sum / float(NUM_SAMPLES);\n"
    "}\n";

const char *PostProcessingTools::strBlurFragmentShader =
    "uniform sampler2D texSource;\n"
    "uniform vec2 pixelSize;\n"
    "uniform vec3 blurKernel[NUM_SAMPLES];\n"
    "uniform float fBloomScale;\n"
    "\n"
    "void main(void)\n"
    "{\n"
    "    vec4 sum = vec4(0.0);\n"
    "    for(int i = 0; i < NUM_SAMPLES; ++i)\n"
    "        sum += texture2D(texSource, gl_TexCoord[0].xy + blurKernel[i].xy * pixelSize.xy) *\n"
    "               blurKernel[i].z;\n"
    "    gl_FragColor = fBloomScale * sum;\n"
    "}\n";

namespace
{
const int BlurTapCounts[4] = {3, 5, 7, 13};

// Source-texel offsets around the output pixel's centre.
MFVec2f offsets2x2(void)
{
    MFVec2f offsets;
    offsets.push_back(Vec2f(-1.0f,  1.0f));
    offsets.push_back(Vec2f(-1.0f, -1.0f));
    offsets.push_back(Vec2f( 1.0f, -1.0f));
    offsets.push_back(Vec2f( 1.0f,  1.0f));
    return offsets;
}

MFVec2f offsets4x4(void)
{
    MFVec2f offsets;
    for(int y = 0; y < 4; ++y)
        for(int x = 0; x < 4; ++x)
            offsets.push_back(Vec2f(x - 1.5f, y - 1.5f));
    return offsets;
}

std::string withSampleCount(int numSamples, const char *text)
{
    return "#define NUM_SAMPLES " + std::to_string(numSamples) + "\n" + text;
}

Vec2f texelSize(TextureChunkPtr texture)
{
    ImagePtr image = texture->getImage();
    return Vec2f(1.0f / Real32(image->getWidth()), 1.0f / Real32(image->getHeight()));
}
} // namespace

PostProcessingTools *PostProcessingTools::getInstance(void)
{
    static std::once_flag      once;
    static PostProcessingTools *instance = NULL;
    std::call_once(once, []() { instance = new PostProcessingTools(); });
    return instance;
}

PostProcessingTools::PostProcessingTools(void) :
    blurShaders      {NullFC, NullFC, NullFC, NullFC},
    downscaleShaders {NullFC, NullFC},
    downscaleMaterial(NullFC),
    blurMaterial     (NullFC)
{
    blurMaterial = ChunkMaterial::create();
    addRefCP(blurMaterial);
    downscaleMaterial = ChunkMaterial::create();
    addRefCP(downscaleMaterial);

    for(int type = 0; type < 4; ++type)
    {
        blurShaders[type] = generateGaussianBlurShader(0.0f, 2.0f, BlurTapCounts[type]);
        addRefCP(blurShaders[type]);
    }

    downscaleShaders[DOWNSCALE_2X2] = generateDownscaleShader(4);
    downscaleShaders[DOWNSCALE_4X4] = generateDownscaleShader(16);

    const MFVec2f offsets[2] = {offsets2x2(), offsets4x4()};
    for(int type = 0; type < 2; ++type)
    {
        addRefCP(downscaleShaders[type]);
        beginEditCP(downscaleShaders[type], ShaderChunk::ParametersFieldMask);
        downscaleShaders[type]->setUniformParameter("pixelOffset", offsets[type]);
        endEditCP(downscaleShaders[type], ShaderChunk::ParametersFieldMask);
    }
}

// Lives as long as the process; never destroyed.
PostProcessingTools::~PostProcessingTools(void)
{
}

Real32 PostProcessingTools::computeGaussianWeight(Real32 x, Real32 mean, Real32 sigma)
{
    const Real32 exponent = std::exp(-(x - mean) * (x - mean) / (2.0f * sigma * sigma));
    return Real32(exponent / std::sqrt(6.2831855 * Real64(sigma) * Real64(sigma)));
}

MFVec3f PostProcessingTools::getGaussianBlurKernel(UInt8 numSamples, Real32 mean, Real32 sigma)
{
    MFVec3f kernel;
    const Real32 centre = (numSamples - 1) * 0.5f;
    Real32 sum = 0.0f;
    for(UInt8 i = 0; i < numSamples; ++i)
    {
        const Real32 x = i - centre;
        const Real32 w = computeGaussianWeight(x, mean, sigma);
        kernel.push_back(Vec3f(x, x, w));
        sum += w;
    }

    for(UInt32 i = 0; i < kernel.size(); ++i)
        kernel[i][2] *= 1.0f / sum;
    return kernel;
}

SHLChunkPtr PostProcessingTools::generateDownscaleShader(int numSamples)
{
    SHLChunkPtr shader = SHLChunk::create();
    beginEditCP(shader);
    shader->setVertexProgram  (s_strVertexShader);
    shader->setFragmentProgram(withSampleCount(numSamples, strDownscaleFragmentShader));
    shader->setUniformParameter("texSource", Int32(0));
    endEditCP(shader);
    return shader;
}

SHLChunkPtr PostProcessingTools::generateGaussianBlurShader(Real32 mean, Real32 sigma,
                                                            int numSamples)
{
    MFVec3f kernel = getGaussianBlurKernel(UInt8(numSamples), mean, sigma);

    SHLChunkPtr shader = SHLChunk::create();
    beginEditCP(shader);
    shader->setVertexProgram  (s_strVertexShader);
    shader->setFragmentProgram(withSampleCount(numSamples, strBlurFragmentShader));
    shader->setUniformParameter("texSource",  Int32(0));
    shader->setUniformParameter("blurKernel", kernel);
    endEditCP(shader);
    return shader;
}

void PostProcessingTools::downscaleTexture(TextureChunkPtr   texture,
                                           RenderTarget     *target,
                                           ScaleType         type,
                                           RenderActionBase *action)
{
    SHLChunkPtr shader = downscaleShaders[type];

    beginEditCP(downscaleMaterial, ChunkMaterial::ChunksFieldMask);
    downscaleMaterial->addChunk(shader,  State::AutoSlotReplace);
    downscaleMaterial->addChunk(texture, State::AutoSlotReplace);
    endEditCP(downscaleMaterial, ChunkMaterial::ChunksFieldMask);

    beginEditCP(shader, ShaderChunk::ParametersFieldMask);
    shader->setUniformParameter("pixelSize", texelSize(texture));
    endEditCP(shader, ShaderChunk::ParametersFieldMask);

    target->renderFullscreenPass(downscaleMaterial, action);

    beginEditCP(downscaleMaterial, ChunkMaterial::ChunksFieldMask);
    downscaleMaterial->clearChunks();
    endEditCP(downscaleMaterial, ChunkMaterial::ChunksFieldMask);
}

void PostProcessingTools::blurTexture(TextureChunkPtr   texture,
                                      RenderTarget     *intermediateTarget,
                                      RenderTarget     *resultTarget,
                                      BlurType          type,
                                      RenderActionBase *action,
                                      Real32            bloomScale)
{
    SHLChunkPtr shader = blurShaders[type];
    const Vec2f texel  = texelSize(texture);

    beginEditCP(blurMaterial, ChunkMaterial::ChunksFieldMask);
    blurMaterial->addChunk(shader,  State::AutoSlotReplace);
    blurMaterial->addChunk(texture, State::AutoSlotReplace);
    endEditCP(blurMaterial, ChunkMaterial::ChunksFieldMask);

    beginEditCP(shader, ShaderChunk::ParametersFieldMask);
    shader->setUniformParameter("pixelSize",   Vec2f(texel[0], 0.0f));
    shader->setUniformParameter("fBloomScale", bloomScale);
    endEditCP(shader, ShaderChunk::ParametersFieldMask);

    intermediateTarget->renderFullscreenPass(blurMaterial, action);

    beginEditCP(blurMaterial, ChunkMaterial::ChunksFieldMask);
    blurMaterial->subChunk(texture, State::AutoSlotReplace);
    blurMaterial->addChunk(intermediateTarget->getTargetTexture(0), State::AutoSlotReplace);
    endEditCP(blurMaterial, ChunkMaterial::ChunksFieldMask);

    // The source's texel height, whatever the intermediate target's size.
    beginEditCP(shader, ShaderChunk::ParametersFieldMask);
    shader->setUniformParameter("pixelSize", Vec2f(0.0f, texel[1]));
    endEditCP(shader, ShaderChunk::ParametersFieldMask);

    resultTarget->renderFullscreenPass(blurMaterial, action);

    beginEditCP(blurMaterial, ChunkMaterial::ChunksFieldMask);
    blurMaterial->clearChunks();
    endEditCP(blurMaterial, ChunkMaterial::ChunksFieldMask);
}

OSG_END_NAMESPACE

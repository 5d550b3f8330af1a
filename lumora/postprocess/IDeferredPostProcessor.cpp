#include "IDeferredPostProcessor.h"

#include <OpenSG/OSGGLEXT.h>
#include <OpenSG/OSGImage.h>

OSG_BEGIN_NAMESPACE

const char *IDeferredPostProcessor::s_strVertexShader =
    "void main()\n"
    "{\n"
    "    gl_Position = ftransform();\n"
    "    gl_TexCoord[0].st = gl_Position.xy * 0.5 + 0.5;\n"
    "}\n";

IDeferredPostProcessor::IDeferredPostProcessor(void) :
    initialized (false),
    renderTarget(),
    renderAction(NULL)
{
}

IDeferredPostProcessor::~IDeferredPostProcessor(void)
{
    delete renderAction;
}

void IDeferredPostProcessor::initializeBase(WindowPtr window, int left, int bottom,
                                            int right, int top)
{
    renderAction = RenderAction::create();
    renderAction->setWindow(window.getCPtr());

    initializeTargets({&renderTarget}, window, FullSize, ImageFormat, left, bottom, right, top);
}

void IDeferredPostProcessor::initializeTargets(std::initializer_list<RenderTarget *> targets,
                                               WindowPtr window, TargetSize size,
                                               TargetFormat format,
                                               int left, int bottom, int right, int top)
{
    int width, height;
    getTargetSize(size, left, bottom, right, top, width, height);
    for(RenderTarget *target : targets)
    {
        target->initialize(window, 0, 0, width - 1, height - 1);
        if(format == ImageFormat)
            target->addTargetTexture(GL_RGB16F_ARB, GL_RGB, GL_LINEAR, Image::OSG_RGB_PF,
                                     Image::OSG_FLOAT16_IMAGEDATA, 1.0f, 1);
        else
            target->addTargetTexture(GL_LUMINANCE8, GL_LUMINANCE, GL_LINEAR, Image::OSG_L_PF,
                                     Image::OSG_UINT8_IMAGEDATA, 1.0f, 1);
    }
}

void IDeferredPostProcessor::resizeTargets(std::initializer_list<RenderTarget *> targets,
                                           TargetSize size,
                                           int left, int bottom, int right, int top)
{
    int width, height;
    getTargetSize(size, left, bottom, right, top, width, height);
    for(RenderTarget *target : targets)
        target->resize(0, 0, width - 1, height - 1);
}

void IDeferredPostProcessor::getTargetSize(TargetSize size,
                                           int left, int bottom, int right, int top,
                                           int &width, int &height)
{
    width  = right - left + 1;
    height = top - bottom + 1;
    if(size == QuarterSize)
    {
        width  = quarter(width);
        height = quarter(height);
    }
}

Vec2f IDeferredPostProcessor::getPixelSize(TargetSize size,
                                           int left, int bottom, int right, int top)
{
    int width, height;
    getTargetSize(size, left, bottom, right, top, width, height);
    return Vec2f(1.0f / Real32(width), 1.0f / Real32(height));
}

SHLChunkPtr IDeferredPostProcessor::createShader(const char *fragmentProgram,
                                                 std::initializer_list<const char *> samplers)
{
    SHLChunkPtr shader = SHLChunk::create();
    addRefCP(shader);
    beginEditCP(shader, ShaderChunk::VertexProgramFieldMask |
                        ShaderChunk::FragmentProgramFieldMask |
                        ShaderChunk::ParametersFieldMask);
    shader->setVertexProgram  (s_strVertexShader);
    shader->setFragmentProgram(fragmentProgram);
    Int32 unit = 0;
    for(const char *sampler : samplers)
        shader->setUniformParameter(sampler, unit++);
    endEditCP(shader, ShaderChunk::VertexProgramFieldMask |
                      ShaderChunk::FragmentProgramFieldMask |
                      ShaderChunk::ParametersFieldMask);
    return shader;
}

ChunkMaterialPtr IDeferredPostProcessor::createMaterial(
    StateChunkPtr shader, std::initializer_list<TextureChunkPtr> textures)
{
    ChunkMaterialPtr material = ChunkMaterial::create();
    addRefCP(material);
    beginEditCP(material, ChunkMaterial::ChunksFieldMask);
    material->addChunk(shader, State::AutoSlotReplace);
    for(TextureChunkPtr texture : textures)
        material->addChunk(texture, State::AutoSlotReplace);
    endEditCP(material, ChunkMaterial::ChunksFieldMask);
    return material;
}

void IDeferredPostProcessor::release(std::initializer_list<FieldContainerPtr> containers)
{
    for(FieldContainerPtr container : containers)
        if(container != NullFC)
            subRefCP(container);
}

void IDeferredPostProcessor::renderPass(RenderTarget &target, ChunkMaterialPtr material,
                                        TextureChunkPtr input)
{
    beginEditCP(material, ChunkMaterial::ChunksFieldMask);
    material->addChunk(input, State::AutoSlotReplace);
    endEditCP(material, ChunkMaterial::ChunksFieldMask);

    target.renderFullscreenPass(material, renderAction);

    beginEditCP(material, ChunkMaterial::ChunksFieldMask);
    material->subChunk(input, State::AutoSlotReplace);
    endEditCP(material, ChunkMaterial::ChunksFieldMask);
}

OSG_END_NAMESPACE

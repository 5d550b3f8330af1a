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

    // A target is a framebuffer of its own: the viewport's size, wherever
    // the viewport sits in the window.
    renderTarget.initialize(window, 0, 0, right - left, top - bottom);
}

void IDeferredPostProcessor::addImageTexture(RenderTarget &target)
{
    target.addTargetTexture(GL_RGB16F_ARB, GL_RGB, GL_LINEAR, Image::OSG_RGB_PF,
                            Image::OSG_FLOAT16_IMAGEDATA, 1.0f, 1);
}

SHLChunkPtr IDeferredPostProcessor::createShader(const char *fragmentProgram)
{
    SHLChunkPtr shader = SHLChunk::create();
    addRefCP(shader);
    beginEditCP(shader, ShaderChunk::VertexProgramFieldMask |
                        ShaderChunk::FragmentProgramFieldMask);
    shader->setVertexProgram  (s_strVertexShader);
    shader->setFragmentProgram(fragmentProgram);
    endEditCP(shader, ShaderChunk::VertexProgramFieldMask |
                      ShaderChunk::FragmentProgramFieldMask);
    return shader;
}

ChunkMaterialPtr IDeferredPostProcessor::createMaterial(StateChunkPtr shader)
{
    ChunkMaterialPtr material = ChunkMaterial::create();
    addRefCP(material);
    beginEditCP(material, ChunkMaterial::ChunksFieldMask);
    material->addChunk(shader, State::AutoSlotReplace);
    endEditCP(material, ChunkMaterial::ChunksFieldMask);
    return material;
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

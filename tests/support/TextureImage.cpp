#include "support/TextureImage.h"

#include <epoxy/gl.h>

namespace testsupport
{

TextureImage::TextureImage(osg::TextureChunkPtr texture)
{
    GLint previous = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &previous);
    glBindTexture(GL_TEXTURE_2D, texture->getGLTextureName());
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH,  &_width);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_HEIGHT, &_height);
    _texels.assign(std::size_t(_width) * std::size_t(_height) * 4, 0.0f);
    GLint alignment = 4;
    glGetIntegerv(GL_PACK_ALIGNMENT, &alignment);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_FLOAT, _texels.data());
    glPixelStorei(GL_PACK_ALIGNMENT, alignment);
    glBindTexture(GL_TEXTURE_2D, GLuint(previous));
}

} // namespace testsupport

#include <OpenSG/OSGShaderChunk.h>

#include <fstream>
#include <sstream>

namespace osg
{

OSG_FC_ABSTRACT_IMPL(ShaderChunk, "ShaderParameterChunk")

ShaderChunk::ShaderChunk(void) :
    Inherited(),
    _sfVertexProgram  (),
    _sfFragmentProgram(),
    _sfGeometryProgram()
{
}

ShaderChunk::ShaderChunk(const ShaderChunk &source) :
    Inherited(source),
    _sfVertexProgram  (source._sfVertexProgram),
    _sfFragmentProgram(source._sfFragmentProgram),
    _sfGeometryProgram(source._sfGeometryProgram)
{
}

ShaderChunk::~ShaderChunk(void)
{
}

namespace
{

bool readStream(std::istream &stream, std::string &text)
{
    std::ostringstream buffer;
    buffer << stream.rdbuf();
    if(stream.bad())
        return false;
    text = buffer.str();
    return true;
}

bool readFile(const char *file, std::string &text, const char *operation)
{
    std::ifstream stream(file != NULL ? file : "");
    if(!stream)
    {
        SWARNING << "ShaderChunk::" << operation << ": cannot open "
                 << (file != NULL ? file : "(null)") << std::endl;
        return false;
    }
    return readStream(stream, text);
}

} // namespace

bool ShaderChunk::readVertexProgram(const char *file)
{
    return readFile(file, editVertexProgram(), "readVertexProgram");
}

bool ShaderChunk::readVertexProgram(std::istream &stream)
{
    return readStream(stream, editVertexProgram());
}

bool ShaderChunk::readFragmentProgram(const char *file)
{
    return readFile(file, editFragmentProgram(), "readFragmentProgram");
}

bool ShaderChunk::readFragmentProgram(std::istream &stream)
{
    return readStream(stream, editFragmentProgram());
}

} // namespace osg

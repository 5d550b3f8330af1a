#include <OpenSG/OSGShaderParameterChunk.h>
#include <OpenSG/OSGShaderParameterBool.h>
#include <OpenSG/OSGShaderParameterInt.h>
#include <OpenSG/OSGShaderParameterReal.h>
#include <OpenSG/OSGShaderParameterVec2f.h>
#include <OpenSG/OSGShaderParameterVec3f.h>
#include <OpenSG/OSGShaderParameterVec4f.h>
#include <OpenSG/OSGShaderParameterMatrix.h>
#include <OpenSG/OSGShaderParameterMInt.h>
#include <OpenSG/OSGShaderParameterMReal.h>
#include <OpenSG/OSGShaderParameterMVec2f.h>
#include <OpenSG/OSGShaderParameterMVec3f.h>
#include <OpenSG/OSGShaderParameterMVec4f.h>
#include <OpenSG/OSGShaderParameterMMatrix.h>

#include <cstring>

namespace osg
{

OSG_FC_ABSTRACT_IMPL(ShaderParameterChunk, "StateChunk")

ShaderParameterChunk::ShaderParameterChunk(void) :
    Inherited(),
    _mfParameters()
{
}

ShaderParameterChunk::ShaderParameterChunk(const ShaderParameterChunk &source) :
    Inherited(source),
    _mfParameters(source._mfParameters)
{
}

ShaderParameterChunk::~ShaderParameterChunk(void)
{
}

// A copy shares the parameters and needs its own references.
void ShaderParameterChunk::onCreate(const ShaderParameterChunk *)
{
    for(UInt32 i = 0; i < _mfParameters.size(); ++i)
        addRefCP(_mfParameters[i]);
}

void ShaderParameterChunk::onDestroy(void)
{
    clearUniformParameters();
    Inherited::onDestroy();
}

Int32 ShaderParameterChunk::findParameter(const char *name) const
{
    if(name == NULL)
        return -1;
    for(UInt32 i = 0; i < _mfParameters.size(); ++i)
    {
        if(_mfParameters[i] != NullFC && _mfParameters[i]->getName() == name)
            return Int32(i);
    }
    return -1;
}

template <class ParamPtrT, class ValueT>
bool ShaderParameterChunk::setParameter(const char *name, const ValueT &value)
{
    typedef typename ParamPtrT::StoredObjectType ParamT;

    if(name == NULL)
    {
        SWARNING << "ShaderParameterChunk::setUniformParameter: no name" << std::endl;
        return false;
    }

    const Int32 index = findParameter(name);
    if(index >= 0)
    {
        ParamPtrT param = ParamPtrT::dcast(_mfParameters[index]);
        if(param == NullFC)
        {
            SWARNING << "ShaderParameterChunk::setUniformParameter: parameter '"
                     << name << "' has type " << _mfParameters[index]->getTypeName()
                     << ", not " << ParamT::getClassType().getCName() << std::endl;
            return false;
        }
        beginEditCP(param, ParamT::ValueFieldMask);
        param->getValue() = value;
        endEditCP(param, ParamT::ValueFieldMask);
        return true;
    }

    ParamPtrT param = ParamT::create();
    if(param == NullFC)
        param = ParamT::createEmpty();
    beginEditCP(param);
    param->setName(name);
    param->getValue() = value;
    endEditCP(param);

    addRefCP(param);
    _mfParameters.push_back(param);
    return true;
}

template <class ParamPtrT, class ValueT>
bool ShaderParameterChunk::getParameter(const char *name, ValueT &value)
{
    const Int32 index = findParameter(name);
    if(index < 0)
        return false;

    ParamPtrT param = ParamPtrT::dcast(_mfParameters[index]);
    if(param == NullFC)
        return false;

    value = param->getValue();
    return true;
}

#define OSG_UNIFORM_ACCESS(PARAMPTR, SETTYPE, GETTYPE)                              \
    bool ShaderParameterChunk::setUniformParameter(const char *name, SETTYPE value) \
    { return setParameter<PARAMPTR>(name, value); }                                 \
    bool ShaderParameterChunk::getUniformParameter(const char *name, GETTYPE &value) \
    { return getParameter<PARAMPTR>(name, value); }

OSG_UNIFORM_ACCESS(ShaderParameterBoolPtr,    bool,             bool)
OSG_UNIFORM_ACCESS(ShaderParameterIntPtr,     Int32,            Int32)
OSG_UNIFORM_ACCESS(ShaderParameterRealPtr,    Real32,           Real32)
OSG_UNIFORM_ACCESS(ShaderParameterVec2fPtr,   const Vec2f &,    Vec2f)
OSG_UNIFORM_ACCESS(ShaderParameterVec3fPtr,   const Vec3f &,    Vec3f)
OSG_UNIFORM_ACCESS(ShaderParameterVec4fPtr,   const Vec4f &,    Vec4f)
OSG_UNIFORM_ACCESS(ShaderParameterMatrixPtr,  const Matrix &,   Matrix)
OSG_UNIFORM_ACCESS(ShaderParameterMIntPtr,    const MFInt32 &,  MFInt32)
OSG_UNIFORM_ACCESS(ShaderParameterMRealPtr,   const MFReal32 &, MFReal32)
OSG_UNIFORM_ACCESS(ShaderParameterMVec2fPtr,  const MFVec2f &,  MFVec2f)
OSG_UNIFORM_ACCESS(ShaderParameterMVec3fPtr,  const MFVec3f &,  MFVec3f)
OSG_UNIFORM_ACCESS(ShaderParameterMVec4fPtr,  const MFVec4f &,  MFVec4f)
OSG_UNIFORM_ACCESS(ShaderParameterMMatrixPtr, const MFMatrix &, MFMatrix)

bool ShaderParameterChunk::subUniformParameter(const char *name)
{
    const Int32 index = findParameter(name);
    if(index < 0)
        return false;

    ShaderParameterPtr param = _mfParameters[index];
    _mfParameters.erase(_mfParameters.begin() + index);
    subRefCP(param);
    return true;
}

bool ShaderParameterChunk::hasUniformParameter(const char *name)
{
    return findParameter(name) >= 0;
}

void ShaderParameterChunk::clearUniformParameters(void)
{
    MFShaderParameterPtr parameters;
    parameters.swap(_mfParameters);
    for(UInt32 i = 0; i < parameters.size(); ++i)
        subRefCP(parameters[i]);
}

} // namespace osg

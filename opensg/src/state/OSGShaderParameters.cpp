#include <OpenSG/OSGShaderParameter.h>
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

namespace osg
{

OSG_FC_ABSTRACT_IMPL(ShaderParameter, "AttachmentContainer")

ShaderParameter::ShaderParameter(void) :
    Inherited(),
    _sfName(),
    _location(-2)
{
}

ShaderParameter::ShaderParameter(const ShaderParameter &source) :
    Inherited(source),
    _sfName(source._sfName),
    _location(source._location)
{
}

ShaderParameter::~ShaderParameter(void)
{
}

#define OSG_SHADER_PARAMETER_IMPL(SUFFIX, MEMBER, DEFAULT)                          \
    OSG_FC_IMPL(ShaderParameter##SUFFIX, "ShaderParameter")                         \
    ShaderParameter##SUFFIX::ShaderParameter##SUFFIX(void) :                        \
        Inherited(), MEMBER(DEFAULT) {}                                             \
    ShaderParameter##SUFFIX::ShaderParameter##SUFFIX(                               \
        const ShaderParameter##SUFFIX &source) :                                    \
        Inherited(source), MEMBER(source.MEMBER) {}                                 \
    ShaderParameter##SUFFIX::~ShaderParameter##SUFFIX(void) {}

OSG_SHADER_PARAMETER_IMPL(Bool,    _sfValue, false)
OSG_SHADER_PARAMETER_IMPL(Int,     _sfValue, 0)
OSG_SHADER_PARAMETER_IMPL(Real,    _sfValue, 0.f)
OSG_SHADER_PARAMETER_IMPL(Vec2f,   _sfValue, )
OSG_SHADER_PARAMETER_IMPL(Vec3f,   _sfValue, )
OSG_SHADER_PARAMETER_IMPL(Vec4f,   _sfValue, )
OSG_SHADER_PARAMETER_IMPL(Matrix,  _sfValue, )
OSG_SHADER_PARAMETER_IMPL(MInt,    _mfValue, )
OSG_SHADER_PARAMETER_IMPL(MReal,   _mfValue, )
OSG_SHADER_PARAMETER_IMPL(MVec2f,  _mfValue, )
OSG_SHADER_PARAMETER_IMPL(MVec3f,  _mfValue, )
OSG_SHADER_PARAMETER_IMPL(MVec4f,  _mfValue, )
OSG_SHADER_PARAMETER_IMPL(MMatrix, _mfValue, )

} // namespace osg

#ifndef _OSGSHADERPARAMETER_H_
#define _OSGSHADERPARAMETER_H_

#include <OpenSG/OSGGL.h>
#include <OpenSG/OSGAttachmentContainer.h>
#include <OpenSG/OSGSFSysTypes.h>
#include <OpenSG/OSGRefPtr.h>

namespace osg
{

OSG_FC_PTR_DECL(ShaderParameter, AttachmentContainerPtr)

// One named uniform; the subclasses hold its value.
class ShaderParameter : public AttachmentContainer
{
    OSG_FC_ABSTRACT_DECL(ShaderParameter, AttachmentContainer)

  public:
    enum
    {
        NameFieldId = Inherited::NextFieldId,
        NextFieldId = NameFieldId + 1
    };
    OSG_FIELD_MASK(Name)

    OSG_SFIELD(SFString, Name)

  public:
    static void initMethod(void) {}

    // The uniform's location, kept here once looked up: -2 not yet looked
    // up, -1 not in the program it was looked up in.
    GLint getLocation(void) const     { return _location;     }
    void  setLocation(GLint location) { _location = location; }

  protected:
    ShaderParameter(void);
    ShaderParameter(const ShaderParameter &source);
    virtual ~ShaderParameter(void);

  private:
    GLint _location;
};

typedef RefPtr<ShaderParameterPtr> ShaderParameterRefPtr;

} // namespace osg

// Declares ShaderParameter<SUFFIX> with a Value field of FIELDTYPE.
#define OSG_SHADER_PARAMETER_DECL(SUFFIX, FIELDTYPE, VALUEDECL)                   \
namespace osg                                                                      \
{                                                                                  \
OSG_FC_PTR_DECL(ShaderParameter##SUFFIX, ShaderParameterPtr)                       \
class ShaderParameter##SUFFIX : public ShaderParameter                             \
{                                                                                  \
    OSG_FC_DECL(ShaderParameter##SUFFIX, ShaderParameter)                          \
  public:                                                                          \
    enum                                                                           \
    {                                                                              \
        ValueFieldId = Inherited::NextFieldId,                                     \
        NextFieldId  = ValueFieldId + 1                                            \
    };                                                                             \
    OSG_FIELD_MASK(Value)                                                          \
    VALUEDECL(FIELDTYPE, Value)                                                    \
  public:                                                                          \
    static void initMethod(void) {}                                                \
  protected:                                                                       \
    ShaderParameter##SUFFIX(void);                                                 \
    ShaderParameter##SUFFIX(const ShaderParameter##SUFFIX &source);                \
    virtual ~ShaderParameter##SUFFIX(void);                                        \
};                                                                                 \
typedef RefPtr<ShaderParameter##SUFFIX##Ptr> ShaderParameter##SUFFIX##RefPtr;      \
}

#endif

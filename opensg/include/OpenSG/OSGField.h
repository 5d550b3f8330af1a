#ifndef _OSGFIELD_H_
#define _OSGFIELD_H_

#include <OpenSG/OSGFieldType.h>

namespace osg
{

class FieldContainer;

class Field
{
  public:
    virtual ~Field(void) {}

    virtual const FieldType &getType       (void) const = 0;
    virtual UInt32           getSize       (void) const = 0;
    virtual bool             isEmpty       (void) const { return getSize() == 0; }

    const DataType          &getContentType(void) const { return getType().getContentType(); }
    FieldType::Cardinality   getCardinality(void) const { return getType().getCardinality(); }

    // The container pointers a field holds, for copies that walk containers
    // generically; value fields hold none and ignore the edits.
    virtual UInt32          getNumContainerPtrs(void) const { return 0; }
    virtual FieldContainer *getContainerPtr    (UInt32) const { return NULL; }
    virtual void            setContainerPtr    (UInt32, FieldContainer *) {}
    virtual void            addContainerPtr    (FieldContainer *) {}
    virtual void            subContainerPtr    (UInt32) {}

  protected:
    Field(void) {}
    Field(const Field &) {}
};

} // namespace osg

#endif

#ifndef _OSGFIELD_H_
#define _OSGFIELD_H_

#include <OpenSG/OSGFieldType.h>

namespace osg
{

class Field
{
  public:
    virtual ~Field(void) {}

    virtual const FieldType &getType       (void) const = 0;
    virtual UInt32           getSize       (void) const = 0;
    virtual bool             isEmpty       (void) const { return getSize() == 0; }

    const DataType          &getContentType(void) const { return getType().getContentType(); }
    FieldType::Cardinality   getCardinality(void) const { return getType().getCardinality(); }

  protected:
    Field(void) {}
    Field(const Field &) {}
};

} // namespace osg

#endif

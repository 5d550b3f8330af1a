#ifndef _OSGFIELDTYPE_H_
#define _OSGFIELDTYPE_H_

#include <OpenSG/OSGDataType.h>

namespace osg
{

class Field;
typedef Field *(*CreateFieldMethod)(void);

class FieldType : public DataType
{
  public:
    enum Cardinality { SINGLE_FIELD, MULTI_FIELD };

    FieldType(const Char8 *szName, const Char8 *szParentName,
              const DataType &contentType, Cardinality cardinality,
              CreateFieldMethod createMethod = NULL) :
        DataType    (szName, szParentName),
        _contentType(contentType),
        _cardinality(cardinality),
        _createMethod(createMethod) {}

    const DataType &getContentType(void) const { return _contentType; }
    Cardinality     getCardinality(void) const { return _cardinality; }
    Field          *createField   (void) const
    { return _createMethod != NULL ? _createMethod() : NULL; }

  private:
    const DataType    &_contentType;
    Cardinality        _cardinality;
    CreateFieldMethod  _createMethod;
};

} // namespace osg

#endif

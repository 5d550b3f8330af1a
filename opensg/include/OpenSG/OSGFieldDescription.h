#ifndef _OSGFIELDDESCRIPTION_H_
#define _OSGFIELDDESCRIPTION_H_

#include <OpenSG/OSGTypeBase.h>
#include <OpenSG/OSGField.h>

#include <string>

namespace osg
{

class FieldContainer;

typedef Field *(FieldContainer::*FieldAccessMethod)(void);
typedef Field *(FieldContainer::*FieldIndexAccessMethod)(UInt32);

class FieldDescription
{
  public:
    FieldDescription(const TypeBase        &elementType,
                     const Char8           *szName,
                     const UInt32           uiFieldId,
                     const BitVector        vFieldMask,
                     const bool             bInternal,
                     FieldAccessMethod      fAccessMethod,
                     const Char8           *defaultValue = NULL) :
        _fieldType    (elementType),
        _szName       (szName != NULL ? szName : ""),
        _uiFieldId    (uiFieldId),
        _vFieldMask   (vFieldMask),
        _bInternal    (bInternal),
        _fAccessMethod(fAccessMethod),
        _defaultValue (defaultValue != NULL ? defaultValue : "") {}

    const Char8    *getCName      (void) const { return _szName.c_str(); }
    const IDString &getName       (void) const { return _szName;      }
    UInt32          getTypeId     (void) const { return _fieldType.getId(); }
    const TypeBase &getFieldType  (void) const { return _fieldType;   }
    BitVector       getFieldMask  (void) const { return _vFieldMask;  }
    UInt32          getFieldId    (void) const { return _uiFieldId;   }
    bool            isInternal    (void) const { return _bInternal;   }

    Field *getField(FieldContainer &fc) const
    { return _fAccessMethod != NULL ? (fc.*_fAccessMethod)() : NULL; }

  private:
    const TypeBase    &_fieldType;
    IDString           _szName;
    UInt32             _uiFieldId;
    BitVector          _vFieldMask;
    bool               _bInternal;
    FieldAccessMethod  _fAccessMethod;
    std::string        _defaultValue;
};

class FieldDescriptionLink;

// The field descriptions of one container class, gathered from its field
// declarations during static initialisation; constant-initialised, so that
// links may join it before anything else of the class exists.
class FieldDescriptionList
{
  public:
    constexpr FieldDescriptionList(void) :
        _first(NULL), _last(NULL), _descs(NULL), _count(0) {}

    // The descriptions as an array, as FieldContainerType takes them; made
    // on first use and kept for the life of the process.
    FieldDescription **getDescriptions(void);
    UInt32             getByteSize    (void);

  private:
    friend class FieldDescriptionLink;

    FieldDescriptionLink  *_first;
    FieldDescriptionLink  *_last;
    FieldDescription     **_descs;
    UInt32                 _count;
};

class FieldDescriptionLink
{
  public:
    typedef FieldDescription *(*DescribeF)(void);

    FieldDescriptionLink(FieldDescriptionList &list, DescribeF describe);

  private:
    friend class FieldDescriptionList;

    DescribeF             _describe;
    FieldDescriptionLink *_next;
};

// A field's description name from its accessor name: "TravMask" gives
// "travMask"; names that start with "GL" keep it.
std::string fieldDescriptionName(const Char8 *accessorName);

} // namespace osg

#endif

#ifndef _OSGTYPEBASE_H_
#define _OSGTYPEBASE_H_

#include <OpenSG/OSGBaseTypes.h>

namespace osg
{

class TypeBase
{
  public:
    TypeBase(const Char8 *szName, const Char8 *szParentName,
             const UInt32 uiNameSpace = 0);
    virtual ~TypeBase(void);

    UInt32          getId         (void) const { return _uiTypeId;   }
    const IDString &getName       (void) const { return _szName;     }
    const Char8    *getCName      (void) const { return _szName.c_str(); }
    const IDString &getParentName (void) const { return _szParentName; }
    const Char8    *getCParentName(void) const { return _szParentName.c_str(); }
    UInt32          getNameSpace  (void) const { return _uiNameSpace; }

    TypeBase       *getParent     (void) const;

    virtual bool isDerivedFrom(const TypeBase &other) const;

    bool operator ==(const TypeBase &other) const { return _uiTypeId == other._uiTypeId; }
    bool operator !=(const TypeBase &other) const { return _uiTypeId != other._uiTypeId; }

  protected:
    UInt32   _uiTypeId;
    UInt32   _uiTypeRootId;
    IDString _szName;
    IDString _szParentName;
    UInt32   _uiNameSpace;

  private:
    TypeBase(const TypeBase &) = delete;
    TypeBase &operator =(const TypeBase &) = delete;
};

class DataType : public TypeBase
{
  public:
    DataType(const Char8 *szName, const Char8 *szParentName,
             const UInt32 uiNameSpace = 0) :
        TypeBase(szName, szParentName, uiNameSpace) {}
};

// Every type registers here by name; ids start at 1 (0 means "no type").
class TypeFactory
{
  public:
    static TypeFactory *the(void);

    UInt32    registerType(TypeBase *pType);
    UInt32    findTypeId  (const Char8 *szName, const UInt32 uiNameSpace = 0);
    TypeBase *findType    (UInt32 uiTypeId);
    TypeBase *findType    (const Char8 *szName, const UInt32 uiNameSpace = 0);
    UInt32    getNumTypes (void);

  private:
    TypeFactory(void) {}
};

} // namespace osg

#endif

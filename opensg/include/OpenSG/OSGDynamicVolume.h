#ifndef _OSGDYNAMICVOLUME_H_
#define _OSGDYNAMICVOLUME_H_

#include <OpenSG/OSGVolume.h>
#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGSphereVolume.h>

namespace osg
{

// Holds a BoxVolume or a SphereVolume in place and forwards to it.
class DynamicVolume : public Volume
{
  public:
    enum Type
    {
        BOX_VOLUME,
        SPHERE_VOLUME
    };

    DynamicVolume(Type type = BOX_VOLUME);
    DynamicVolume(const DynamicVolume &obj);
    virtual ~DynamicVolume(void);

    DynamicVolume &operator =(const DynamicVolume &obj);

    Type getType(void) const { return _type; }

          Volume &getInstance(void);
    const Volume &getInstance(void) const;

    // Call after changing getInstance() directly, to pick up its state.
    void instanceChanged(void);

    // Replaces the instance by an empty one of the new type.
    void setVolumeType(Type type);
    // Converts the instance, keeping the space it encloses.
    void morphToType  (Type type);

    virtual void setValid   (const bool value = true);
    virtual void setEmpty   (const bool value = true);
    virtual void setStatic  (const bool value = true);
    virtual void setInfinite(const bool value = true);

    virtual void  getCenter      (Pnt3f &center) const;
    virtual float getScalarVolume(void) const;
    virtual void  getBounds      (Pnt3f &min, Pnt3f &max) const;

    virtual void extendBy(const Pnt3f  &pt    );
    virtual void extendBy(const Volume &volume);

    virtual bool intersect(const Pnt3f  &point ) const;
    virtual bool intersect(const Line   &line  ) const;
    virtual bool intersect(const Line   &line,
                           Real32 &enter, Real32 &exit) const;
    virtual bool intersect(const Volume &volume) const;

    virtual bool isOnSurface(const Pnt3f &point) const;

    virtual void transform(const Matrix &matrix);

    virtual void dump(UInt32 uiIndent = 0, const BitVector bvFlags = 0) const;

  private:
    void construct(Type type, const Volume *source);
    void destroy  (void);

    static const size_t StorageSize =
        sizeof(BoxVolume) > sizeof(SphereVolume) ? sizeof(BoxVolume)
                                                 : sizeof(SphereVolume);

    Type    _type;
    Volume *_instance;
    alignas(BoxVolume) alignas(SphereVolume) UInt8 _volumeMem[StorageSize];
};

} // namespace osg

// The free intersect/extend functions come with every volume type.
#include <OpenSG/OSGVolumeFunctions.h>

#endif

#ifndef _OSGSCENEFILETYPE_H_
#define _OSGSCENEFILETYPE_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGNode.h>

#include <iosfwd>
#include <list>
#include <string>

namespace osg
{

// One kind of scene file. A concrete type registers itself with the
// SceneFileHandler from a static instance.
class SceneFileType
{
  public:
    enum
    {
        OSG_READ_SUPPORTED  = 1,
        OSG_WRITE_SUPPORTED = 2
    };

    virtual ~SceneFileType(void);

    virtual const Char8 *getName(void) const = 0;

    virtual std::list<IDString> &suffixList(void);
    bool         doOverride (void);
    UInt32       getOverridePriority(void);
    UInt32       getFlags   (void);

    virtual NodePtr read    (std::istream &is, const Char8 *fileNameOrExtension) const;
    virtual NodePtr readFile(const Char8 *fileName) const;
    virtual bool    write   (const NodePtr &node, std::ostream &os,
                             const Char8 *fileNameOrExtension) const;

    void         setOptions(const Char8 *options);
    const Char8 *getOptions(void);

  protected:
    SceneFileType(const Char8 *suffixArray[], UInt16 suffixByteCount,
                  bool override, UInt32 overridePriority,
                  UInt32 flags = OSG_READ_SUPPORTED);
    // For types that learn their suffixes at run time.
    SceneFileType(const std::list<IDString> &suffixes, bool override,
                  UInt32 overridePriority, UInt32 flags = OSG_READ_SUPPORTED);

    std::list<IDString> _suffixList;
    bool                _override;
    UInt32              _overridePriority;
    UInt32              _flags;
    std::string         _options;

  private:
    SceneFileType(const SceneFileType &) = delete;
    SceneFileType &operator=(const SceneFileType &) = delete;
};

} // namespace osg

#endif

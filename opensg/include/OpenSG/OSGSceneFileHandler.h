#ifndef _OSGSCENEFILEHANDLER_H_
#define _OSGSCENEFILEHANDLER_H_

#include <OpenSG/OSGBaseTypes.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGSceneFileType.h>

#include <iosfwd>
#include <list>
#include <map>
#include <string>
#include <vector>

namespace osg
{

class GraphOpSeq;
class PathHandler;

// Reads and writes scene files, choosing the file type by suffix
// (case-insensitive). Graph operation sequences and path handlers are
// accepted but not applied: relative paths in a file resolve against the
// file's own directory.
class SceneFileHandler
{
  public:
    typedef std::vector<FieldContainerPtr> FCPtrStore;
    typedef void (*progresscbfp)(UInt32 p);
    typedef void (*filenamecbfp)(const Char8 *);

    static SceneFileHandler &the(void);

    virtual ~SceneFileHandler(void);

    virtual NodePtr    read(const Char8 *fileName, GraphOpSeq *graphOpSeq = NULL);
    virtual NodePtr    read(std::istream &is, const Char8 *ext, GraphOpSeq *graphOpSeq = NULL);
    virtual FCPtrStore readTopNodes(const Char8 *fileName, GraphOpSeq *graphOpSeq = NULL);

    virtual bool write(const NodePtr &node, const Char8 *fileName, bool compress = false);
    virtual bool write(const NodePtr &node, std::ostream &os, const Char8 *ext,
                       bool compress = false);

    virtual SceneFileType *getFileType(const Char8 *fileNameOrExtension);
    virtual int getSuffixList(std::list<const Char8 *> &suffixList,
                              UInt32 flags = SceneFileType::OSG_READ_SUPPORTED |
                                             SceneFileType::OSG_WRITE_SUPPORTED);

    void setReadProgressCB(progresscbfp fp, bool use_thread = true);
    void setReadBeginCB(filenamecbfp fp);
    void setReadEndCB  (filenamecbfp fp);

    virtual PathHandler *getPathHandler(void);
    virtual void         setPathHandler(PathHandler *pathHandler);

    virtual bool         setOptions(const Char8 *suffix, const Char8 *options);
    virtual const Char8 *getOptions(const Char8 *suffix);

    static bool addSceneFileType(SceneFileType &fileType);

  protected:
    SceneFileHandler(void);

  private:
    SceneFileHandler(const SceneFileHandler &) = delete;
    SceneFileHandler &operator=(const SceneFileHandler &) = delete;

    // Keyed by lower-case suffix.
    std::map<std::string, SceneFileType *> _suffixTypeMap;

    progresscbfp _progressFP;
    filenamecbfp _readBeginFP;
    filenamecbfp _readEndFP;
    PathHandler *_pathHandler;
};

} // namespace osg

#endif

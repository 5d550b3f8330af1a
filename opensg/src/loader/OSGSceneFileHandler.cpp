#include <OpenSG/OSGSceneFileHandler.h>
#include <OpenSG/OSGLog.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <sys/stat.h>

namespace osg
{

namespace
{

std::string lowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return text;
}

// "dir/model.OBJ" and "OBJ" both give "obj".
std::string suffixOf(const Char8 *fileNameOrExtension)
{
    std::string name(fileNameOrExtension);
    const std::string::size_type slash = name.find_last_of("/\\");
    const std::string::size_type dot   = name.rfind('.');
    if(dot != std::string::npos && (slash == std::string::npos || dot > slash))
        name = name.substr(dot + 1);
    else if(slash != std::string::npos)
        name = name.substr(slash + 1);
    return lowerCase(name);
}

} // namespace

SceneFileHandler &SceneFileHandler::the(void)
{
    static SceneFileHandler handler;
    return handler;
}

SceneFileHandler::SceneFileHandler(void) :
    _suffixTypeMap(),
    _progressFP(NULL),
    _readBeginFP(NULL),
    _readEndFP(NULL),
    _pathHandler(NULL)
{
}

SceneFileHandler::~SceneFileHandler(void)
{
}

bool SceneFileHandler::addSceneFileType(SceneFileType &fileType)
{
    SceneFileHandler &handler = the();
    bool added = false;
    for(const IDString &suffix : fileType.suffixList())
    {
        const std::string key = lowerCase(suffix.c_str());
        auto it = handler._suffixTypeMap.find(key);
        if(it == handler._suffixTypeMap.end() ||
           (fileType.doOverride() &&
            fileType.getOverridePriority() >= it->second->getOverridePriority()))
        {
            handler._suffixTypeMap[key] = &fileType;
            added = true;
        }
    }
    return added;
}

SceneFileType *SceneFileHandler::getFileType(const Char8 *fileNameOrExtension)
{
    if(fileNameOrExtension == NULL)
        return NULL;
    auto it = _suffixTypeMap.find(suffixOf(fileNameOrExtension));
    return it != _suffixTypeMap.end() ? it->second : NULL;
}

int SceneFileHandler::getSuffixList(std::list<const Char8 *> &suffixList, UInt32 flags)
{
    int count = 0;
    for(const auto &entry : _suffixTypeMap)
    {
        if((entry.second->getFlags() & flags) == 0)
            continue;
        // The type owns the string; the map's key is only a lower-case copy.
        for(const IDString &suffix : entry.second->suffixList())
        {
            if(lowerCase(suffix.c_str()) == entry.first)
            {
                suffixList.push_back(suffix.c_str());
                ++count;
                break;
            }
        }
    }
    return count;
}

NodePtr SceneFileHandler::read(const Char8 *fileName, GraphOpSeq *)
{
    if(fileName == NULL || *fileName == '\0')
    {
        SWARNING << "SceneFileHandler::read: no file name given" << std::endl;
        return NullFC;
    }

    struct stat info;
    if(stat(fileName, &info) != 0)
    {
        SWARNING << "SceneFileHandler::read: " << fileName
                 << ": no such file" << std::endl;
        return NullFC;
    }
    if(!S_ISREG(info.st_mode))
    {
        SWARNING << "SceneFileHandler::read: " << fileName
                 << ": not a regular file" << std::endl;
        return NullFC;
    }

    SceneFileType *type = getFileType(fileName);
    if(type == NULL)
    {
        SWARNING << "SceneFileHandler::read: " << fileName
                 << ": unknown file type '" << suffixOf(fileName) << "'" << std::endl;
        return NullFC;
    }

    if(_readBeginFP != NULL)
        _readBeginFP(fileName);
    NodePtr root = type->readFile(fileName);
    if(_readEndFP != NULL)
        _readEndFP(fileName);
    if(_progressFP != NULL)
        _progressFP(100);
    return root;
}

NodePtr SceneFileHandler::read(std::istream &is, const Char8 *ext, GraphOpSeq *)
{
    SceneFileType *type = getFileType(ext);
    if(type == NULL)
    {
        SWARNING << "SceneFileHandler::read: stream of type '"
                 << (ext != NULL ? ext : "(null)") << "': unknown file type" << std::endl;
        return NullFC;
    }
    NodePtr root = type->read(is, ext);
    if(_progressFP != NULL)
        _progressFP(100);
    return root;
}

SceneFileHandler::FCPtrStore SceneFileHandler::readTopNodes(const Char8 *fileName,
                                                            GraphOpSeq *graphOpSeq)
{
    FCPtrStore nodes;
    NodePtr root = read(fileName, graphOpSeq);
    if(root != NullFC)
        nodes.push_back(root);
    return nodes;
}

bool SceneFileHandler::write(const NodePtr &node, const Char8 *fileName, bool compress)
{
    SceneFileType *type = getFileType(fileName);
    if(type == NULL || (type->getFlags() & SceneFileType::OSG_WRITE_SUPPORTED) == 0)
    {
        SWARNING << "SceneFileHandler::write: " << (fileName != NULL ? fileName : "(null)")
                 << ": no file type can write this" << std::endl;
        return false;
    }
    std::ofstream os(fileName, std::ios::binary);
    if(!os)
    {
        SWARNING << "SceneFileHandler::write: cannot create " << fileName << std::endl;
        return false;
    }
    return write(node, os, fileName, compress);
}

bool SceneFileHandler::write(const NodePtr &node, std::ostream &os, const Char8 *ext, bool)
{
    SceneFileType *type = getFileType(ext);
    if(type == NULL || (type->getFlags() & SceneFileType::OSG_WRITE_SUPPORTED) == 0)
    {
        SWARNING << "SceneFileHandler::write: '" << (ext != NULL ? ext : "(null)")
                 << "': no file type can write this" << std::endl;
        return false;
    }
    return type->write(node, os, ext);
}

void SceneFileHandler::setReadProgressCB(progresscbfp fp, bool)
{
    _progressFP = fp;
}

void SceneFileHandler::setReadBeginCB(filenamecbfp fp)
{
    _readBeginFP = fp;
}

void SceneFileHandler::setReadEndCB(filenamecbfp fp)
{
    _readEndFP = fp;
}

PathHandler *SceneFileHandler::getPathHandler(void)
{
    return _pathHandler;
}

void SceneFileHandler::setPathHandler(PathHandler *pathHandler)
{
    _pathHandler = pathHandler;
}

bool SceneFileHandler::setOptions(const Char8 *suffix, const Char8 *options)
{
    SceneFileType *type = getFileType(suffix);
    if(type == NULL)
        return false;
    type->setOptions(options);
    return true;
}

const Char8 *SceneFileHandler::getOptions(const Char8 *suffix)
{
    SceneFileType *type = getFileType(suffix);
    return type != NULL ? type->getOptions() : NULL;
}

} // namespace osg

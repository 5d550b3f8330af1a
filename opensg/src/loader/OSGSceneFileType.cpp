#include <OpenSG/OSGSceneFileType.h>
#include <OpenSG/OSGLog.h>

#include <fstream>

namespace osg
{

SceneFileType::SceneFileType(const Char8 *suffixArray[], UInt16 suffixByteCount,
                             bool override, UInt32 overridePriority, UInt32 flags) :
    _suffixList(),
    _override(override),
    _overridePriority(overridePriority),
    _flags(flags),
    _options()
{
    const UInt32 count = suffixByteCount / sizeof(const Char8 *);
    for(UInt32 i = 0; i < count; ++i)
        _suffixList.push_back(IDString(suffixArray[i]));
}

SceneFileType::SceneFileType(const std::list<IDString> &suffixes, bool override,
                             UInt32 overridePriority, UInt32 flags) :
    _suffixList(suffixes),
    _override(override),
    _overridePriority(overridePriority),
    _flags(flags),
    _options()
{
}

SceneFileType::~SceneFileType(void)
{
}

std::list<IDString> &SceneFileType::suffixList(void)
{
    return _suffixList;
}

bool SceneFileType::doOverride(void)
{
    return _override;
}

UInt32 SceneFileType::getOverridePriority(void)
{
    return _overridePriority;
}

UInt32 SceneFileType::getFlags(void)
{
    return _flags;
}

NodePtr SceneFileType::read(std::istream &, const Char8 *fileNameOrExtension) const
{
    SWARNING << getName() << ": reading from a stream is not supported ("
             << (fileNameOrExtension != NULL ? fileNameOrExtension : "") << ")" << std::endl;
    return NullFC;
}

NodePtr SceneFileType::readFile(const Char8 *fileName) const
{
    std::ifstream is(fileName, std::ios::binary);
    if(!is)
    {
        SWARNING << getName() << ": cannot open " << fileName << std::endl;
        return NullFC;
    }
    return read(is, fileName);
}

bool SceneFileType::write(const NodePtr &, std::ostream &,
                          const Char8 *fileNameOrExtension) const
{
    SWARNING << getName() << ": writing is not supported ("
             << (fileNameOrExtension != NULL ? fileNameOrExtension : "") << ")" << std::endl;
    return false;
}

void SceneFileType::setOptions(const Char8 *options)
{
    _options = options != NULL ? options : "";
}

const Char8 *SceneFileType::getOptions(void)
{
    return _options.c_str();
}

} // namespace osg

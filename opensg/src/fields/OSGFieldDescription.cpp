#include <OpenSG/OSGFieldDescription.h>

#include <cctype>

namespace osg
{

FieldDescriptionLink::FieldDescriptionLink(FieldDescriptionList &list, DescribeF describe) :
    _describe(describe),
    _next    (NULL)
{
    if(list._last != NULL)
        list._last->_next = this;
    else
        list._first = this;
    list._last = this;
}

FieldDescription **FieldDescriptionList::getDescriptions(void)
{
    if(_descs != NULL || _first == NULL)
        return _descs;

    for(FieldDescriptionLink *link = _first; link != NULL; link = link->_next)
        ++_count;
    _descs = new FieldDescription *[_count];
    UInt32 i = 0;
    for(FieldDescriptionLink *link = _first; link != NULL; link = link->_next)
        _descs[i++] = link->_describe();
    return _descs;
}

UInt32 FieldDescriptionList::getByteSize(void)
{
    getDescriptions();
    return _count * UInt32(sizeof(FieldDescription *));
}

std::string fieldDescriptionName(const Char8 *accessorName)
{
    std::string name(accessorName != NULL ? accessorName : "");
    if(!name.empty() && name.compare(0, 2, "GL") != 0)
        name[0] = Char8(std::tolower(static_cast<unsigned char>(name[0])));
    return name;
}

} // namespace osg

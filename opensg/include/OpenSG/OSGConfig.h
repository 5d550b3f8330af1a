#ifndef _OSGCONFIG_H_
#define _OSGCONFIG_H_

#include <cassert>

#define OSG osg
#define OSG_BEGIN_NAMESPACE namespace osg {
#define OSG_END_NAMESPACE }
#define OSG_USING_NAMESPACE namespace osg {} using namespace osg;
#define OSG_USING_STD_NAMESPACE using namespace std;

#define OSG_VERSION_STRING "1.8.1Alpha"
#define OSG_VERSION 0x010801
#define OSG_MAJOR_VERSION 1
#define OSG_MINOR_VERSION 8
#define OSG_RELEASE_VERSION 1

#define OSG_NUM_ASPECTS 2

// Where dlsym wants C symbols with their leading underscore; programs that
// look up GL entry points by hand test it. Not on ELF systems.
#if defined(__APPLE__)
#define OSG_DLSYM_UNDERSCORE
#endif

#define OSG_ASSERT(e) assert(e)
#define OSG_CHECK_ARG(x)

// Export and template-mapping macros of the generated sources; a single
// shared-object build needs none of them.
#define OSG_BASE_DLLMAPPING
#define OSG_SYSTEMLIB_DLLMAPPING
#define OSG_SYSTEMLIB_DLLTMPLMAPPING
#define OSG_WINDOWGLUTLIB_DLLMAPPING
#define OSG_DLLEXPORT_DECL1(CLASSNAME, T1, DLLMAPPING)
#define OSG_DLLEXPORT_DECL2(CLASSNAME, T1, T2, DLLMAPPING)

#endif

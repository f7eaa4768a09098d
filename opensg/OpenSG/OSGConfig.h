#pragma once

/// Version, namespace, platform and export macros that every header of the slice starts from.

#define OSG osg

#define OSG_BEGIN_NAMESPACE namespace OSG {
#define OSG_END_NAMESPACE }
#define OSG_USING_NAMESPACE using namespace OSG;

#define OSG_MAJOR_VERSION 1
#define OSG_MINOR_VERSION 8
#define OSG_RELEASE_VERSION 1
#define OSG_VERSION 0x010801
#define OSG_VERSION_STRING "1.8.1"

#define OSG_HAS_NAMESPACE 1
#define OSG_LINUX_TYPES 1
#define OSG_USE_PTHREADS 1
#define OSG_WITH_PNG 1
#define OSG_WITH_JPG 1
#define OSG_WITH_TIF 1

// Value types carry default visibility as well: a template of another library that is instantiated
// with a hidden type would be hidden too, and its type information would not be one across libraries.
#define OSG_BASE_DLLMAPPING __attribute__((visibility("default")))
#define OSG_SYSTEMLIB_DLLMAPPING __attribute__((visibility("default")))

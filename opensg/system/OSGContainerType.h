#pragma once

#include <OpenSG/OSGFieldContainer.h>

/// Defines the type record of a container class, and `create()` for those that can be made.
#define OSG_CONTAINER_TYPE(Class, Parent)                                                                    \
    FieldContainerType& Class::getClassType()                                                                \
    {                                                                                                        \
        static FieldContainerType type(#Class, &Parent::getClassType());                                     \
        return type;                                                                                         \
    }                                                                                                        \
    FieldContainerType& Class::getType() const                                                               \
    {                                                                                                        \
        return getClassType();                                                                               \
    }

#define OSG_CREATABLE_CONTAINER_TYPE(Class, Parent)                                                          \
    OSG_CONTAINER_TYPE(Class, Parent)                                                                        \
    Class##Ptr Class::create()                                                                               \
    {                                                                                                        \
        return Class##Ptr(new Class);                                                                        \
    }

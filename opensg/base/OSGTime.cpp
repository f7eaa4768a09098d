#include "OpenSG/OSGTime.h"

#include <chrono>

namespace osg {

Time getSystemTime()
{
    return std::chrono::duration<Time>(std::chrono::system_clock::now().time_since_epoch()).count();
}

} // namespace osg

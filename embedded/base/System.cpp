#include <OpenSG/OSGBaseFunctions.h>
#include <Orvane/System.h>

namespace Orvane {

System& System::the()
{
    static System the;
    return the;
}

void System::init(int argc, char** argv, int)
{
    if (_initialised)
        return;
    _initialised = true;
    osg::osgInit(argc, argv);
}

void System::exit()
{
    if (!_initialised)
        return;
    _initialised = false;
    osg::osgExit();
}

} // namespace Orvane

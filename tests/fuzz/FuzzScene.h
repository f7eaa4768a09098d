#pragma once

#include <OpenSG/OSGLog.h>
#include <Orvane/Context.h>
#include <Orvane/System.h>
#include <cstddef>
#include <cstdint>
#include <string>

/// Reads any bytes as a scene of that name, and runs a few frames of what comes of them.
inline int runFuzzedScene(const char* name, const std::uint8_t* data, std::size_t size)
{
    static const bool started = [] {
        osg::osgLog().setLogLevel(osg::LOG_LOG);
        Orvane::System::the().init(0, nullptr, 382);
        return true;
    }();
    static_cast<void>(started);
    const std::string text(reinterpret_cast<const char*>(data), size);
    Orvane::Context* context = Orvane::Context::create();
    if (context->load(name, text, Orvane::Context::REPLACE_LT, std::string())) {
        context->setRootState(0.0, Orvane::RUNNING_NS);
        for (int frame = 0; frame < 3; ++frame)
            context->runFrame();
    }
    context->subRef();
    return 0;
}

#pragma once

#include <Orvane/Export.h>
#include <string>
#include <vector>

namespace Orvane {
class Context;
}

namespace SAI {
namespace Base {

/// The browser object of the scene access interface: what a program outside the scene may ask and do.
class ORVANE_API SAIBrowserRef
{
public:
    /// Name and version of the runtime.
    virtual std::string getName() const = 0;
    virtual std::string getVersion() const = 0;
    /// Speed of navigation in metres per second.
    virtual double getCurrentSpeed() const = 0;
    /// Drawn frames per second.
    virtual double getCurrentFrameRate() const = 0;
    /// The context, null when it is gone.
    virtual Orvane::Context* getExecutionContext() const = 0;
    /// Loads the first of \a urls that can be loaded; false when none can.
    virtual bool loadURL(const std::vector<std::string>& urls) = 0;
    /// Sets the text that describes the scene, the title of its windows.
    virtual void setDescription(const std::string& description) = 0;
    /// Writes a line to the log.
    virtual void print(const std::string& text) = 0;
    /// Lets go of the context; the object itself stays.
    virtual void dispose() = 0;

    // Behind the operations, as programs that were built against the interface call them by their place.
    virtual ~SAIBrowserRef();
};

} // namespace Base
} // namespace SAI

typedef SAI::Base::SAIBrowserRef __SAI_SAIBrowserRef;

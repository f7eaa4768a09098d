#pragma once

#include <Orvane/Node.h>

namespace Orvane {

class ViewareaProc;

/// A viewport inside a window.
class ORVANE_API Viewarea : public Node
{
public:
    ~Viewarea() override;

    /// The processing object; null before the node runs.
    ViewareaProc* getViewareaProc();

protected:
    Viewarea();
};

} // namespace Orvane

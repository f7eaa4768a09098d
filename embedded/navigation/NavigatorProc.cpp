#include "navigation/NavigatorCommands.h"
#include <Orvane/NavigatorProc.h>
#include <vector>

namespace Orvane {

namespace {

/// The messages of all commands. Each has its icon where hosts have one for it.
std::vector<NavigatorProc::Message>& messages()
{
    static std::vector<NavigatorProc::Message> list = [] {
        std::vector<NavigatorProc::Message> result;
        for (const NavigatorCommand& command : NavigatorCommands())
            result.push_back({command.name, command.description});
        return result;
    }();
    return list;
}

} // namespace

NavigatorProc::NavigatorProc(Node* node)
    : NodeProc(node)
{
}

NavigatorProc::~NavigatorProc() = default;

unsigned int NavigatorProc::getMessageCount()
{
    return static_cast<unsigned int>(messages().size());
}

NavigatorProc::Message* NavigatorProc::getMessage(unsigned int index)
{
    return index < messages().size() ? &messages()[index] : nullptr;
}

} // namespace Orvane

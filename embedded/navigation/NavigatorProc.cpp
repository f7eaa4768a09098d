#include <Orvane/NavigatorProc.h>

#include <vector>

namespace Orvane {

namespace {

/// The messages in the order in which hosts show them. A message stands here when a navigator acts on it.
std::vector<NavigatorProc::Message>& messages()
{
    static std::vector<NavigatorProc::Message> list;
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

#pragma once

#include <Orvane/NodeProc.h>
#include <string>

namespace Orvane {

/// Processing object of a navigator, and the list of messages that all navigators know.
class ORVANE_API NavigatorProc : public NodeProc
{
public:
    /// A message that `WindowProc::message` takes by its name.
    struct Message
    {
        /// Name, and what the user reads.
        std::string name;
        std::string description; ///< tool tip
    };

    ~NavigatorProc() override;

    /// Number of messages.
    static unsigned int getMessageCount();
    /// The message by index; null when \a index is not below `getMessageCount()`.
    static Message* getMessage(unsigned int index);

protected:
    explicit NavigatorProc(Node* node);
};

} // namespace Orvane

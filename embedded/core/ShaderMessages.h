#pragma once

#include <OpenSG/OSGSHLProgram.h>
#include <Orvane/LoadReport.h>
#include <string>
#include <vector>

namespace Orvane {

class Node;
class ShaderTextProc;

/// What a shader has to say of its texts: each thing once until a text changes, with the place in the file or
/// in the text of the field.
class ShaderMessages
{
public:
    explicit ShaderMessages(Node& node)
        : _node(node)
    {
    }

    /// There is another program: what was said of the last one may be said again.
    void renew() { _said.clear(); }
    /// Sets the places of the texts of the program, in its order.
    void setPlaces(const std::vector<ShaderTextProc*>& parts);

    /// A fault of a node; said once until `renew`.
    void tell(const Node& node, LoadMessage::Severity severity, const std::string& text);
    /// What compiler and linker said of the program.
    void tellLog(const osg::SHLProgram& program);

private:
    struct Place
    {
        LoadMessage message; ///< file and place, without text
        std::string label;
        bool isFile;
    };

    void tellLine(const Place& place, const osg::SHLProgram::Message& message, bool isFaulty);
    void say(LoadMessage message);

    Node& _node;
    std::vector<Place> _places;
    std::vector<std::string> _said;
    unsigned int _reported = 0;
};

} // namespace Orvane

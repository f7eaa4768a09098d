#include "loader/XmlWriter.h"

#include "loader/GraphWalk.h"
#include "loader/SaveNotes.h"
#include "loader/XmlEmitter.h"

namespace Orvane {

std::string xmlText(const Node& root, const SaveOptions& options, std::vector<std::string>& messages)
{
    SaveNotes notes(messages);
    XmlEmitter emitter(options.useTabs, notes);
    GraphWalk(root, options, emitter, notes).run();
    return emitter.takeText();
}

} // namespace Orvane

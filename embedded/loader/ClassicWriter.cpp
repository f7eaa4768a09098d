#include "loader/ClassicWriter.h"

#include "loader/ClassicEmitter.h"
#include "loader/GraphWalk.h"
#include "loader/SaveNotes.h"
#include "loader/Vrml97Emitter.h"

namespace Orvane {

namespace {

template <class Emitter>
std::string textOf(const Node& root, const SaveOptions& options, std::vector<std::string>& messages)
{
    SaveNotes notes(messages);
    Emitter emitter(options.useTabs, notes);
    GraphWalk(root, options, emitter, notes).run();
    return emitter.takeText();
}

} // namespace

std::string classicText(const Node& root, const SaveOptions& options, std::vector<std::string>& notes)
{
    return textOf<ClassicEmitter>(root, options, notes);
}

std::string vrml97Text(const Node& root, const SaveOptions& options, std::vector<std::string>& notes)
{
    return textOf<Vrml97Emitter>(root, options, notes);
}

} // namespace Orvane

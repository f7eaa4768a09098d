#include "loader/ClassicLevels.h"

#include "loader/SceneSink.h"

namespace Orvane {

ClassicLevels::ClassicLevels(SceneSink& sink)
    : _sink(sink)
    , _levels(1)
{
}

void ClassicLevels::begin(Kind kind, Holder holder, std::string_view name, std::size_t offset)
{
    _levels.push_back({kind, holder, name, offset, _declared.size()});
    ++(hasBraces(kind) ? _openBraces : _openBrackets);
}

void ClassicLevels::beginBody()
{
    _levels.back().kind = BODY;
    --_openBrackets;
    ++_openBraces;
    _sink.beginProtoBody();
}

void ClassicLevels::end()
{
    const Level level = _levels.back();
    _levels.pop_back();
    --(hasBraces(level.kind) ? _openBraces : _openBrackets);
    if (level.kind == NODE) {
        _sink.endNode();
    } else if (level.kind != NODES) {
        _sink.endProto();
        forgetProtos(level.protos);
    }
    endHolder(level.holder);
}

/// Only the oldest ones stay.
void ClassicLevels::forgetProtos(std::size_t count)
{
    while (_declared.size() > count) {
        const auto found = _protos.find(_declared.back());
        if (--found->second == 0)
            _protos.erase(found);
        _declared.pop_back();
    }
}

void ClassicLevels::endHolder(Holder holder)
{
    if (holder == FIELD)
        _sink.endFieldNodes();
    else if (holder == DECLARATION)
        _sink.endDeclaration();
}

bool ClassicLevels::isTopClosedBy(bool brace) const
{
    return top().kind != SCENE && hasBraces(top().kind) == brace;
}

void ClassicLevels::declareProto(std::string_view name)
{
    _declared.push_back(name);
    ++_protos[name];
}

} // namespace Orvane

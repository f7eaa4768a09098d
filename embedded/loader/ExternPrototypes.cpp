#include "loader/ExternPrototypes.h"

#include "base/Graph.h"
#include "base/LocalFile.h"
#include "base/Prototype.h"
#include "loader/ExternalFiles.h"
#include "loader/FileScope.h"
#include "loader/FileText.h"
#include "loader/LoadSession.h"
#include "loader/MovedAddresses.h"
#include <Orvane/MFString.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFNode.h>

namespace Orvane {

namespace {

std::vector<std::string> addresses(Context& context, std::string_view urls)
{
    const NodeRef reader = createNode(context, *unknownType("EXTERNPROTO"), LOADER_NC);
    Field& field = *addField(*reader, "url", MFSTRING_DT, FIELDP);
    std::string error;
    return parseFileText(field, urls, error) ? readStrings(*reader, field._desc->id)
                                             : std::vector<std::string>();
}

} // namespace

ExternPrototypes::ExternPrototypes(LoadSession& session)
    : _session(session)
{
}

void ExternPrototypes::add(NodeType& type, std::string_view urls, FileScope& scope, SourcePlace place)
{
    ProtoDeclaration& declaration = *protoDeclaration(type);
    declaration.isExtern = true;
    declaration.urls = addresses(_session.context(), urls);
    for (std::string& address : declaration.urls)
        if (scope.origin)
            address = movedAddress(address, *scope.origin, scope.url);
    _externs.insert_or_assign(&type, Extern{&scope, place}); // the type of a refused file may have been here
}

void ExternPrototypes::resolve(NodeType& type, unsigned int depth)
{
    const auto found = _externs.find(&type);
    if (found == _externs.end() || found->second.state != WAITING)
        return;
    found->second.state = UNDER_WAY;
    std::string reason;
    const Extern declared = found->second; // others may come while the file is read
    if (!findBody(type, declared, depth, reason))
        declared.scope->messages.warn(declared.place,
                                      "EXTERNPROTO " + type.name + ": expected " +
                                          (reason.empty() ? "a readable local file" : reason) + ", found " +
                                          (protoDeclaration(type)->urls.empty()
                                               ? "no address"
                                               : quotedList(protoDeclaration(type)->urls)));
    _externs.at(&type).state = DONE;
}

bool ExternPrototypes::findBody(NodeType& type, const Extern& declared, unsigned int depth,
                                std::string& reason)
{
    const std::vector<std::string>& urls = protoDeclaration(type)->urls;
    for (const std::string& address : urls)
        if (adopt(type, declared, address, depth, reason))
            return true;
    return false;
}

bool ExternPrototypes::adopt(NodeType& type, const Extern& declared, const std::string& address,
                             unsigned int depth, std::string& reason)
{
    const std::size_t mark = address.rfind('#');
    const std::string name = mark == std::string::npos ? std::string() : address.substr(mark + 1);
    FileScope* file = declared.scope;
    while (file->outer)
        file = const_cast<FileScope*>(file->outer);
    if (mark != 0) {
        const LocalFile found = findLocalFile(declared.scope->url, address.substr(0, mark));
        if (found.path.empty())
            return false;
        file = _session.fileOfPrototypes(found, depth);
    }
    if (!file) {
        reason = "a file whose prototypes can be read";
        return false;
    }
    std::shared_ptr<NodeType> body = file->firstPrototype;
    if (!name.empty()) {
        const auto place = file->prototypes.find(name);
        body = place == file->prototypes.end() ? nullptr : place->second;
    }
    if (!body) {
        reason = name.empty()        ? "a file with a prototype"
                 : file->isBeingRead ? "a file that has declared the prototype " + quoted(name) + " by now"
                                     : "a file that declares the prototype " + quoted(name);
        return false;
    }
    const auto other = _externs.find(body.get());
    if (other != _externs.end() && other->second.state == UNDER_WAY) {
        reason = "a prototype that does not lead back to this one";
        return false;
    }
    resolve(*body, depth);
    if (!protoDeclaration(*body)->model) {
        reason = "a prototype with a body";
        return false;
    }
    if (!_session.takeModel(*body)) {
        reason = "prototypes whose bodies have at most " + std::to_string(maxModelNodes) + " nodes";
        return false;
    }
    std::vector<std::string> unmatched;
    adoptModel(_session.context(), type, *body, unmatched);
    for (const std::string& field : unmatched)
        declared.scope->messages.warn(declared.place,
                                      "EXTERNPROTO " + type.name + ": expected fields as the prototype in " +
                                          file->messages.file() + " has them, found " + quoted(field));
    return true;
}

} // namespace Orvane

#pragma once

#include "loader/SourcePlace.h"
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace Orvane {

class LoadMessages;
class SceneSink;
class SourceText;

/// Walks the elements of one document and tells the sink. The walk follows the document's own links, so it
/// needs no more room for a deep document than for a flat one.
class XmlWalk
{
public:
    XmlWalk(const SourceText& text, const char* buffer, SceneSink& sink, LoadMessages& messages)
        : _text(text)
        , _buffer(buffer)
        , _sink(sink)
        , _messages(messages)
    {
    }

    /// False, with an error among the messages, when the document is no scene or the sink gives it up.
    bool readDocument(const pugi::xml_document& document);

private:
    /// What an element is to the sink.
    enum class Element {
        NODE,
        FIELD,
        FIELD_VALUE,
        IS,
        CONNECT,
        ROUTE,
        IMPORT,
        EXPORT,
        PROTO,
        PROTO_INTERFACE,
        PROTO_BODY,
        EXTERN_PROTO,
        INSTANCE
    };

    struct ElementName
    {
        std::string_view name;
        Element element;
    };

    static const ElementName statements[];
    static Element elementOf(std::string_view name);

    SourcePlace place(const char* at) const;
    SourcePlace place(pugi::xml_node node) const;
    SourcePlace place(pugi::xml_attribute attribute) const;
    void warn(SourcePlace at, std::string text);

    void readHead(pugi::xml_node head);
    bool readContent(pugi::xml_node top);
    bool enter(pugi::xml_node node, bool& descend);
    void leave();

    bool beginNode(pugi::xml_node node, std::string_view type, bool isInstance, bool& descend);
    void beginField(pugi::xml_node node);
    void beginFieldValue(pugi::xml_node node);
    std::string_view needed(pugi::xml_node node, const char* attribute);
    void readConnection(pugi::xml_node node);
    void readRoute(pugi::xml_node node);
    void readExchange(pugi::xml_node node, bool isImport);
    void readText(pugi::xml_node node);
    static void moveConnections(pugi::xml_node node);

    const SourceText& _text;
    const char* _buffer;
    SceneSink& _sink;
    LoadMessages& _messages;
    std::vector<Element> _open; ///< the elements between the scene and the present one
    unsigned int _openBodies = 0;
};

} // namespace Orvane

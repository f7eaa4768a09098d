#include "loader/XmlReader.h"

#include "loader/LoadMessages.h"
#include "loader/SourceText.h"
#include "loader/XmlWalk.h"
#include <algorithm>
#include <string>

namespace Orvane {

namespace {

std::string describe(const pugi::xml_parse_result& result, const std::string& found)
{
    switch (result.status) {
    case pugi::status_no_document_element:
        return "expected the root element X3D, found " + found;
    case pugi::status_out_of_memory:
        return "expected room for the document, found none";
    case pugi::status_bad_pi:
        return "expected a processing instruction, found " + found;
    case pugi::status_bad_comment:
        return "expected the end of a comment, found " + found;
    case pugi::status_bad_cdata:
        return "expected the end of a CDATA section, found " + found;
    case pugi::status_bad_doctype:
        return "expected a document type, found " + found;
    case pugi::status_bad_pcdata:
        return "expected text, found " + found;
    case pugi::status_bad_start_element:
        return "expected the name and attributes of an element, found " + found;
    case pugi::status_bad_attribute:
        return "expected an attribute with its value in quotes, found " + found;
    case pugi::status_bad_end_element:
        return "expected an end tag, found " + found;
    case pugi::status_end_element_mismatch:
        return "expected the end tag of the open element, found " + found;
    default:
        return "expected XML, found " + found;
    }
}

/// Place of the first entity that the document declares itself; npos when it declares none.
std::size_t findEntity(std::string_view text)
{
    const std::string_view prologue = text.substr(0, text.find("<X3D"));
    const std::size_t type = prologue.find("<!DOCTYPE");
    return type == std::string_view::npos ? type : prologue.find("<!ENTITY", type);
}

} // namespace

bool isXml(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    return begin != std::string_view::npos && text[begin] == '<';
}

bool readXml(SourceText& text, SceneSink& sink, LoadMessages& messages)
{
    // Texts that stand for a file or for another text many times over have no place in a scene.
    if (const std::size_t entity = findEntity(text.view()); entity != std::string_view::npos)
        messages.warn(text.place(entity), "expected a document type without entities of its own, found one, "
                                          "which is not replaced");
    pugi::xml_document document;
    // The parser would overwrite the last character by a zero byte, if there were none behind it.
    const pugi::xml_parse_result result =
        document.load_buffer_inplace(text.data(), text.size() + 1, pugi::parse_default, pugi::encoding_utf8);
    if (!result) {
        const auto stop = static_cast<std::size_t>(std::max<std::ptrdiff_t>(result.offset, 0));
        const bool atEnd = stop + 1 >= text.size();
        const std::string_view rest = text.view().substr(atEnd ? text.size() : stop, 40);
        messages.error(text.place(atEnd ? text.size() : stop),
                       describe(result, atEnd ? "the end of the file"
                                              : quoted(rest.substr(0, rest.find_first_of("\n\r")))));
        return false;
    }
    return XmlWalk(text, text.data(), sink, messages).readDocument(document);
}

} // namespace Orvane

#include "loader/TextEmitter.h"

#include "loader/FileText.h"
#include <Orvane/MFString.h>

namespace Orvane {

std::string TextEmitter::profileOf(const std::vector<KeptHead>& head)
{
    std::string profile = "Full";
    for (const KeptHead& statement : head)
        if (statement.kind == HeadStatement::PROFILE)
            profile = statement.name;
    return profile;
}

const std::string* TextEmitter::sourceOf(const Field& field)
{
    if (field.dataType() != MFSTRING_DT || std::string_view(field.name()) != "url" || field.size() == 0)
        return nullptr;
    const auto& texts = static_cast<const MFString&>(field);
    const std::string& last = texts[static_cast<int>(texts.size()) - 1];
    const bool isSource = last.find('\n') != std::string::npos && !trimmedText(last).empty();
    return isSource ? &last : nullptr;
}

std::string TextEmitter::noteOfName(std::string_view what, std::string_view own, std::string_view written)
{
    return std::string(what)
        .append(" \"")
        .append(own)
        .append("\": the encoding has no such name; written as ")
        .append(written);
}

} // namespace Orvane

#include "CodeAddress.h"

#include <Orvane/MFString.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <QFileInfo>
#include <QUrl>
#include <QorTools.h>
#include <Relayne/URL.h>

using namespace Orvane::Qt4;

namespace {

/// What is longer is the code itself.
constexpr std::size_t LongestAddress = 4096;

/// The file beside the scene that a value names; empty when there is none.
QString fileOf(const Orvane::MFString& url, const std::string& value)
{
    // A name that was written in an editor can have its line ended.
    const std::string name = value.substr(0, value.find_last_not_of("\r\n") + 1);
    if (name.empty() || name.size() > LongestAddress || name.find('\n') != std::string::npos)
        return {};
    const Orvane::NodeNameSpace* names = url.node() ? url.node()->nameSpace() : nullptr;
    const Relayne::URL base = names ? names->baseURL() : Relayne::URL();
    const QFileInfo file(fromRuntime(base.resolved(Relayne::URL(name)).localFile()));
    return file.isFile() ? file.absoluteFilePath() : QString();
}

} // namespace

CodeAddress::CodeAddress(Orvane::MFString* url)
    : _url(url && url->size() > 0 ? url : nullptr)
{
    if (!_url)
        return;
    _value = (*_url)[0];
    const QString file = fileOf(*_url, _value);
    if (file.isEmpty())
        _url = nullptr;
    else
        (*_url)[0] = toRuntime(QString::fromLatin1(QUrl::fromLocalFile(file).toEncoded()));
}

CodeAddress::~CodeAddress()
{
    if (_url)
        (*_url)[0] = _value;
}

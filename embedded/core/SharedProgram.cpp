#include "core/SharedProgram.h"
#include "core/ShaderProc.h"
#include "core/SharedTable.h"
#include <algorithm>
#include <functional>

namespace Orvane {

namespace {

struct KeyHash
{
    std::size_t operator()(const SharedProgram::Key& key) const
    {
        std::size_t result = key.sources.size();
        const auto mix = [&result](std::size_t value) { result = result * 31 + value; };
        for (const osg::SHLProgram::Source& source : key.sources) {
            mix(source.stage);
            mix(std::hash<std::string>()(source.text));
        }
        for (const std::string& name : key.uniforms)
            mix(std::hash<std::string>()(name));
        return result;
    }
};

using ProgramTable = SharedTable<SharedProgram::Key, SharedProgram, KeyHash>;

ProgramTable& table()
{
    static ProgramTable programs;
    return programs;
}

} // namespace

std::shared_ptr<SharedProgram> SharedProgram::get(const Key& key)
{
    return table().get(key, [&key] { return std::make_unique<SharedProgram>(key); });
}

SharedProgram::SharedProgram(const Key& key)
    : _program(osg::SHLProgram::create())
{
    _program->setSources(key.sources);
    _program->setListener([this] {
        const std::vector<ShaderProc*> users = _users;
        for (ShaderProc* user : users)
            user->programTried();
    });
}

SharedProgram::~SharedProgram()
{
    // A chunk may hold the program itself for longer.
    _program->setListener(nullptr);
}

void SharedProgram::removeUser(ShaderProc& user)
{
    _users.erase(std::remove(_users.begin(), _users.end(), &user), _users.end());
}

std::size_t shaderProgramCount()
{
    return table().size();
}

} // namespace Orvane

#pragma once

#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSHLProgram.h>
#include <Orvane/Export.h>
#include <memory>
#include <string>
#include <vector>

namespace Orvane {

class ShaderProc;

/// A program that all shaders of equal code and of equal uniforms share, so that it is compiled once. It
/// tells them when a window has tried it.
class ORVANE_API SharedProgram
{
public:
    /// What makes programs equal: the texts, and the names of the uniforms that somebody sets.
    struct Key
    {
        std::vector<osg::SHLProgram::Source> sources;
        std::vector<std::string> uniforms; ///< sorted

        bool operator==(const Key& other) const
        {
            return sources == other.sources && uniforms == other.uniforms;
        }
    };

    /// The program for \a key, the same one as long as somebody holds it.
    static std::shared_ptr<SharedProgram> get(const Key& key);

    explicit SharedProgram(const Key& key);
    SharedProgram(const SharedProgram&) = delete;
    SharedProgram& operator=(const SharedProgram&) = delete;
    ~SharedProgram();

    const osg::SHLProgramPtr& program() const { return _program.get(); }

    void addUser(ShaderProc& user) { _users.push_back(&user); }
    void removeUser(ShaderProc& user);

private:
    osg::RefPtr<osg::SHLProgramPtr> _program;
    std::vector<ShaderProc*> _users;
};

/// Number of different programs in use.
ORVANE_API std::size_t shaderProgramCount();

} // namespace Orvane

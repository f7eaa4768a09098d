#pragma once

#include "base/Proc.h"
#include "script/ScriptEnvironment.h"
#include <memory>
#include <string>

namespace Orvane {

struct ScriptCode;

/// Behaviour of `Script`: it runs the code to which the `url` leads, calls its functions for events, and has
/// it read again when the `url` is written. A script begins in its first frame, or when an event comes
/// before.
class ScriptProc final : public Proc
{
public:
    explicit ScriptProc(Node& node);
    ~ScriptProc() override;

    void start(double time) override;
    void tick(double time) override;
    void fieldChanged(Field& field, double time) override;
    void settle(double time) override;
    void fieldsChanged() override;
    /// The variables of the code keep their values.
    bool rest(double) override { return true; }
    void resume(double time) override;
    void leaveWorld() override;
    void ending() override;

private:
    using Environment = std::shared_ptr<ScriptEnvironment>;

    void load(double time);
    void unload(double time);
    /// Looks at how a call went. False when the script, or the node, is not there any more.
    bool survives(const Environment& environment, const ScriptFault& fault);
    void report(const ScriptFault& fault);
    void reportRepeats();
    std::string nameText() const;

    Environment _environment; ///< null while there is no code
    bool _isLoaded = false;   ///< it has been tried
    bool _hasEnded = false;   ///< for good
    std::string _file;        ///< of the code; empty for code in the url itself
    std::string _lastFault;
    unsigned int _repeats = 0; ///< of the last fault
    unsigned int _reported = 0;
};

} // namespace Orvane

#pragma once

#include "base/Proc.h"
#include "core/SceneState.h"
#include <Orvane/Export.h>
#include <memory>

namespace Orvane {

/// Codes of the keys that are no characters, as windows give them.
enum KeyCode : int {
    F1_KC = 257,
    F12_KC = 268,
    HOME_KC = 269,
    END_KC = 270,
    PAGE_UP_KC = 271,
    PAGE_DOWN_KC = 272,
    UP_KC = 273,
    DOWN_KC = 274,
    LEFT_KC = 275,
    RIGHT_KC = 276,
    INSERT_KC = 277,
    DELETE_KC = 278,
    ESCAPE_KC = 279,
    ENTER_KC = 280,
    TAB_KC = 281,
    BACKSPACE_KC = 282,
    SHIFT_KC = 283, ///< given by hosts that tell of the keys which only change others
    CONTROL_KC = 284,
    ALT_KC = 285,
    SPACE_KC = 288
};

/// The character that a key stands for; 0 when it stands for none. Codes of characters above 127 come as
/// signed bytes.
ORVANE_API int characterOf(int code);

/// Behaviour of a node that senses the keyboard, wherever it stands in the scene.
class ORVANE_API KeyDeviceProc : public Proc
{
public:
    using Proc::Proc;
    ~KeyDeviceProc() override;

    void start(double time) override;
    void fieldChanged(Field& field, double time) override;

    bool isEnabled() const;

    /// A key went down, once more for each repetition. True when nobody else is to hear of it.
    virtual bool press(int code, double time) = 0;
    virtual void release(int code, double time) = 0;

protected:
    /// The sensor was switched off: what is under way ends.
    virtual void giveUp(double time) = 0;

private:
    std::shared_ptr<SceneState> _scene;
};

} // namespace Orvane

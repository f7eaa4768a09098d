#pragma once

#include <Orvane/FrameStatistics.h>
#include <Orvane/LoadReport.h>
#include <Orvane/RefCountObject.h>
#include <Orvane/SaveOptions.h>
#include <Orvane/Types.h>
#include <string>
#include <vector>

namespace Orvane {

class Node;
class NodeType;

/// One scene world: its root nodes, its clock and its frames. Lives as long as references to it.
class ORVANE_API Context : public RefCountObject
{
public:
    /// What a load does with the roots that are there.
    enum LoadType : int {
        REPLACE_LT = 0 ///< roots that the scene brings replace those of the same type
    };

    /// A new context with one reference for the caller; null on failure.
    static Context* create();

    /// Loads a scene from an address or file name. True on success; a failed load changes nothing, logs why
    /// and says so in `loadReport()`. \a options is empty.
    bool load(const std::string& url, LoadType type, std::string options);
    /// Loads a scene from \a text, whose relative addresses count from \a url.
    bool load(const std::string& url, const std::string& text, LoadType type, std::string options);

    /// The root node of the given type, or null.
    Node* findRoot(const NodeType& type);
    /// Removes the root of the type; false when there is none.
    bool removeRoot(NodeType& type);
    /// Takes all root nodes, and what hangs below, to a state.
    bool setRootState(const double& time, NodeState state);

    /// Runs one frame: time, sensors, events, drawing. Gives the seconds until the next frame is due, never
    /// negative. Called inside itself it does nothing and gives 0.0.
    double runFrame();

    /// Time stamp of the current frame in seconds.
    double timeStamp() const { return _timeStamp; }

    /// Stops the clock at \a seconds, for pictures of a moment. The clock never goes back: an earlier time
    /// than that of the last frame has no effect. A negative value lets it run again.
    void holdTime(double seconds);

    /// What the last load read and said.
    const LoadReport& loadReport() const;
    FrameStatistics frameStatistics() const;

    /// Writes the scene to a file in the encoding of its suffix. False, with the reason in \a error, when
    /// that fails.
    bool save(const std::string& path, const SaveOptions& options, std::string& error);
    /// What the encoding of the last save has no words for, each thing once: it stands in the file as a
    /// comment, under another name, or as another encoding says it. They go to the log, too.
    const std::vector<std::string>& saveNotes() const;

    struct Data;
    /// The runtime's own data.
    Data* data() const { return _data; }

protected:
    Context();
    ~Context() override;

    double _timeStamp = 0.0;
    Data* _data = nullptr;
};

} // namespace Orvane

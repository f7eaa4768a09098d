#pragma once

namespace Orvane {

/// How a scene is written to a file.
struct SaveOptions
{
    bool skipRoot = false;           ///< leave out the root node, write only what it holds
    bool useTabs = false;            ///< indent by tabs, not by blanks
    bool resolveProtos = false;      ///< write prototype instances as the plain nodes of their bodies
    bool writeProcInfo = false;      ///< write what processing objects computed (output fields) as comments
    bool writeAbstractNodes = false; ///< name the abstract types of each node as comments
    bool writeDefaultValues = false; ///< write fields that hold their default too
};

} // namespace Orvane

#pragma once

namespace Orvane {

struct FileScope;
struct LoadReport;

/// Makes the routes of a file, and says which cannot be made and why.
void makeRoutes(FileScope& scope, LoadReport& report);

} // namespace Orvane

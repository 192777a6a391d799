// Starting what a desktop entry describes.
#pragma once

#include "platform/services/launch_service.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace platform
{

/// The end of a launch, told by the last owner's going. May move to another thread.
class LaunchEnd
{
public:
    explicit LaunchEnd(LaunchReport report) : m_report(report) {}
    ~LaunchEnd() { m_report.finished(m_report.context, m_failure.c_str()); }
    LaunchEnd(const LaunchEnd&) = delete;
    LaunchEnd& operator=(const LaunchEnd&) = delete;
    /// Has the end say why the launch failed, for one that was taken for started.
    void Fail(std::string reason) { m_failure = std::move(reason); }

private:
    LaunchReport m_report;
    std::string m_failure;
};

/// Starts the application of a desktop entry with the URIs, or the one of its actions that is named. Returns "" on
/// success, else the reason in one sentence; a failure that takes long to come is told by `end`, which lives until
/// then.
std::string LaunchEntry(const std::string& entryPath, const std::vector<std::string>& uris,
                        const std::shared_ptr<LaunchEnd>& end, const std::string& action = {});

} // namespace platform

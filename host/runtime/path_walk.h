// SPDX-License-Identifier: MIT
/// The places that decide what a path leads to.
#pragma once

#include <string>

namespace orvan::runtime
{

/// Receives the steps of a walk. Implemented by the file monitor.
class PathVisitor
{
public:
	/// `name` is about to be looked up in `folder`, whose path has no links in it. `isLast` says that nothing follows,
	/// so that the name is the file's or that of a link to it. False ends the walk.
	virtual bool Visit(const std::string& folder, const std::string& name, bool isLast) = 0;

protected:
	~PathVisitor() = default;
};

/// Follows an absolute path as the system does, through all symbolic links, up to the file or the first name that does
/// not exist. A change that makes the path lead elsewhere changes a name that was visited. Throws `std::bad_alloc`.
void WalkPath(const std::string& path, PathVisitor& visitor);

} // namespace orvan::runtime

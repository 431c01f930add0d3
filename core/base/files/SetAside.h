#pragma once

#include "core/base/files/FileUrl.h"

#include <string>

namespace orvane {

// Gives a file of the program's own that is damaged another name beside its place, with ".damaged-" and the time in it,
// and returns where it is. The caller keeps other processes from using the file. Throws std::system_error.
FileUrl setAside(const std::string& path);

}  // namespace orvane

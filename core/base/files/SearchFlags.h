#pragma once

#include <fcntl.h>

namespace orvane {

// Opens a folder only to reach what is inside it, which takes no right to list it; a link at its name is not followed.
// POSIX calls this O_SEARCH; where the system has another name for it, that.
#if defined(O_SEARCH)
constexpr int searchOnlyFlag = O_SEARCH;
#elif defined(O_PATH)
constexpr int searchOnlyFlag = O_PATH;
#else
constexpr int searchOnlyFlag = O_RDONLY;
#endif
constexpr int folderSearchFlags = searchOnlyFlag | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK;

}  // namespace orvane

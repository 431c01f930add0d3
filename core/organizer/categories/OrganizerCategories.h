#pragma once

#include "core/base/files/FileUrl.h"

#include <optional>
#include <span>
#include <string_view>

namespace orvane {

// The organizer's own names of categories: paths below the destination root, such as "Media/Images".

// Of files whose extension no row names.
inline constexpr std::string_view otherCategory = "Other";

// Of a file. The extension is without its dot and compared exactly: lower-case it first.
[[nodiscard]] std::string_view defaultCategoryNameForExtension(std::string_view extension, std::string_view filename);
// Of a folder that moves as a whole: by its name, and where that says nothing by the names of its entries.
[[nodiscard]] std::string_view defaultCategoryNameForFolder(std::string_view folderName,
                                                            const std::optional<FileUrl>& folderURL);

// Whether a name, cut into words at everything but letters and digits and inside camel case, has one of the words, or
// its plural in "s" or "es". The words are lower case.
[[nodiscard]] bool nameHasWord(std::string_view name, std::span<const std::string_view> words);

// Whether a folder is a software project, which must stay whole. False when it cannot be listed.
[[nodiscard]] bool isProjectOrBundleDirectory(const FileUrl& folder);
// Whether an entry of this name makes the folder that holds it such a project.
[[nodiscard]] bool marksProject(std::string_view entryName);

// Whether a category, without the "Documents/" before it, is a kind of documents.
[[nodiscard]] bool isDocumentKind(std::string_view category) noexcept;

// The kinds of file that the organizer names after what they show or play. Lower-case extensions.
[[nodiscard]] bool isImageExtension(std::string_view extension) noexcept;
[[nodiscard]] bool isVideoExtension(std::string_view extension) noexcept;
[[nodiscard]] bool isAudioExtension(std::string_view extension) noexcept;
// Whether a file name, in any case, calls the file a screenshot.
[[nodiscard]] bool nameSaysScreenshot(std::string_view filename);

}  // namespace orvane

#include "core/organizer/categories/OrganizerCategories.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/text/UnicodeText.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <vector>

namespace orvane {
namespace {

using Words = std::span<const std::string_view>;

constexpr std::string_view pdfExtensions[] = {"pdf"};
constexpr std::string_view textExtensions[] = {"doc", "docx", "pages", "rtf", "txt", "md"};
constexpr std::string_view spreadsheetExtensions[] = {"xls", "xlsx", "numbers", "csv"};
constexpr std::string_view presentationExtensions[] = {"ppt", "pptx", "key"};
constexpr std::string_view imageExtensions[] = {"jpg", "jpeg", "png", "heic", "gif", "tiff", "webp", "svg"};
constexpr std::string_view videoExtensions[] = {"mp4", "mov", "mkv", "avi", "webm", "m4v"};
constexpr std::string_view audioExtensions[] = {"mp3", "m4a", "wav", "flac", "aac", "aiff"};
constexpr std::string_view archiveExtensions[] = {"zip", "tar", "gz", "tgz", "bz2", "7z", "rar"};
constexpr std::string_view installerExtensions[] = {"dmg", "pkg", "iso"};
constexpr std::string_view sourceExtensions[] = {"swift", "py",   "js", "ts", "html", "css", "json",
                                                 "yml",   "yaml", "sh", "c",  "cpp",  "h"};

struct ExtensionCategory {
  Words extensions;
  std::string_view category;
};

constexpr std::string_view imagesCategory = "Media/Images";
constexpr std::string_view screenshotsOfMedia = "Media/Screenshots";

constexpr std::array extensionCategories{
    ExtensionCategory{pdfExtensions, "Documents/PDFs"},
    ExtensionCategory{textExtensions, "Documents/Text & Notes"},
    ExtensionCategory{spreadsheetExtensions, "Documents/Spreadsheets"},
    ExtensionCategory{presentationExtensions, "Documents/Presentations"},
    ExtensionCategory{imageExtensions, imagesCategory},
    ExtensionCategory{videoExtensions, "Media/Videos"},
    ExtensionCategory{audioExtensions, "Media/Audio"},
    ExtensionCategory{archiveExtensions, "Archives"},
    ExtensionCategory{installerExtensions, "Installers"},
    ExtensionCategory{sourceExtensions, "Development/Source Code"},
};

constexpr std::string_view developmentWords[] = {"project", "dev", "development", "developer", "code",   "source",
                                                 "src",     "app", "repo",        "git",       "github", "sdk"};
constexpr std::string_view mediaWords[] = {"photo", "video", "image", "pic",   "picture", "art",  "artwork",  "drawing",
                                           "album", "audio", "music", "media", "movie",   "song", "wallpaper"};
constexpr std::string_view installerWords[] = {"installer", "setup"};
constexpr std::string_view archiveWords[] = {"archive", "backup", "zip", "extracted"};
constexpr std::string_view documentWords[] = {"class",  "course",  "lecture", "material", "study",
                                              "school", "college", "paper",   "doc",      "document",
                                              "work",   "report",  "note",    "homework", "assignment"};

struct WordCategory {
  Words words;
  std::string_view category;
};

constexpr std::string_view projectsCategory = "Development/Projects";
constexpr std::string_view mediaFoldersCategory = "Media/Folders";
constexpr std::string_view documentFoldersCategory = "Documents/Folders";

constexpr std::array wordCategories{
    WordCategory{developmentWords, projectsCategory},     WordCategory{mediaWords, mediaFoldersCategory},
    WordCategory{installerWords, "Installers/Folders"},   WordCategory{archiveWords, "Archives/Folders"},
    WordCategory{documentWords, documentFoldersCategory},
};

constexpr std::string_view projectEntries[] = {"package.json", ".git"};
constexpr std::string_view projectEndings[] = {".swift", ".py", ".js"};
constexpr std::string_view mediaEndings[] = {".png", ".jpg", ".jpeg", ".mp4"};
constexpr std::string_view wholeProjectEntries[] = {"package.json",   ".git",    "cargo.toml",
                                                    "cmakelists.txt", "podfile", "gemfile"};

bool contains(Words words, std::string_view word) noexcept {
  return std::find(words.begin(), words.end(), word) != words.end();
}

bool endsWithAny(std::string_view name, Words endings) noexcept {
  return std::any_of(endings.begin(), endings.end(), [&](auto ending) { return name.ends_with(ending); });
}

// The names of a folder's entries in lower case; absent when it cannot be listed.
std::optional<std::vector<std::string>> lowerCaseEntries(const FileUrl& folder) {
  auto reader = DirectoryReader::open(AT_FDCWD, folder.path().c_str(), DirectoryReader::Links::follow);
  if (!reader) return std::nullopt;
  std::vector<std::string> names;
  while (const auto entry = reader->next()) names.push_back(lowercased(entry->name));
  return names;
}

}  // namespace

std::string_view defaultCategoryNameForExtension(std::string_view extension, std::string_view filename) {
  for (const auto& row : extensionCategories) {
    if (!contains(row.extensions, extension)) continue;
    return row.category == imagesCategory && nameSaysScreenshot(filename) ? screenshotsOfMedia : row.category;
  }
  return otherCategory;
}

std::string_view defaultCategoryNameForFolder(std::string_view folderName, const std::optional<FileUrl>& folderURL) {
  for (const auto& row : wordCategories) {
    if (nameHasWord(folderName, row.words)) return row.category;
  }
  const auto entries = folderURL ? lowerCaseEntries(*folderURL) : std::nullopt;
  if (!entries) return documentFoldersCategory;
  const auto belongsToProject = [](const auto& name) {
    return contains(projectEntries, name) || endsWithAny(name, projectEndings);
  };
  if (std::any_of(entries->begin(), entries->end(), belongsToProject)) return projectsCategory;
  const auto isMedia = [](const auto& name) { return endsWithAny(name, mediaEndings); };
  return std::any_of(entries->begin(), entries->end(), isMedia) ? mediaFoldersCategory : documentFoldersCategory;
}

bool nameHasWord(std::string_view name, std::span<const std::string_view> words) {
  const auto pieces = letterDigitRuns(lowercased(spacedCamelCase(name)));
  const std::set<std::string_view> tokens(pieces.begin(), pieces.end());
  return std::any_of(words.begin(), words.end(), [&](std::string_view word) {
    const std::string singular(word);
    return tokens.contains(word) || tokens.contains(singular + "s") || tokens.contains(singular + "es");
  });
}

bool isProjectOrBundleDirectory(const FileUrl& folder) {
  const auto entries = lowerCaseEntries(folder);
  return entries && std::any_of(entries->begin(), entries->end(), marksProject);
}

bool marksProject(std::string_view entryName) {
  return contains(wholeProjectEntries, lowercased(entryName));
}

bool isDocumentKind(std::string_view category) noexcept {
  constexpr std::string_view prefix = "Documents/";
  const auto names = [&](const ExtensionCategory& row) {
    return row.category.starts_with(prefix) && row.category.substr(prefix.size()) == category;
  };
  return std::any_of(extensionCategories.begin(), extensionCategories.end(), names);
}

bool isImageExtension(std::string_view extension) noexcept {
  return contains(imageExtensions, extension);
}

bool isVideoExtension(std::string_view extension) noexcept {
  return contains(videoExtensions, extension);
}

bool isAudioExtension(std::string_view extension) noexcept {
  return contains(audioExtensions, extension);
}

bool nameSaysScreenshot(std::string_view filename) {
  const auto lower = lowercased(filename);
  return lower.find("screen shot") != std::string::npos || lower.find("screenshot") != std::string::npos;
}

}  // namespace orvane

#include "core/organizer/categories/CategoryChooser.h"

#include "core/base/files/PathText.h"
#include "core/base/text/UnicodeText.h"
#include "core/base/values/Calendar.h"
#include "core/organizer/categories/OrganizerCategories.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <span>
#include <utility>

namespace orvane {
namespace {

using Words = std::span<const std::string_view>;

constexpr std::string_view foldersCategory = "Folders";
constexpr std::string_view noExtensionCategory = "No Extension";
constexpr std::string_view filesEnding = " Files";
constexpr std::string_view monthPattern = "yyyy-MM (MMMM)";
constexpr std::string_view documentsPrefix = "Documents/";
constexpr std::string_view mediaPrefix = "Media/";

constexpr std::string_view picturesWords[] = {"image", "photo", "pic", "picture"};
constexpr std::string_view documentsNames[] = {"documents", "document"};
constexpr std::string_view developmentNames[] = {"development", "dev", "code"};

constexpr std::string_view screenshotsCategory = "Screenshots";
constexpr std::string_view photosCategory = "Photos & Pictures";

constexpr std::string_view screenshotFragments[] = {"screenshot", "screen shot", "cleanshot", "capture"};
constexpr std::string_view generatedFragments[] = {"chatgpt", "gemini", "dall-e", "dalle", "midjourney", "synthetic"};
constexpr std::string_view graphicsFragments[] = {"banner", "showcase", "logo",   "mockup",
                                                  "flyer",  "poster",   "header", "graphic"};
constexpr std::string_view cameraExtensions[] = {"heic", "raw", "cr2", "nef", "dng"};
constexpr std::string_view photoFragments[] = {"img_", "dsc_", "photo", "whatsapp image"};
constexpr std::string_view vectorExtensions[] = {"svg", "ai", "eps"};
constexpr std::string_view animationExtensions[] = {"gif"};

enum class Compared : std::uint8_t { nameContains, extensionIs };
struct PictureRow {
  Compared compared;
  Words texts;
  std::string_view category;
};
constexpr std::array pictureRows{
    PictureRow{Compared::nameContains, screenshotFragments, screenshotsCategory},
    PictureRow{Compared::nameContains, generatedFragments, "AI Generated"},
    PictureRow{Compared::nameContains, graphicsFragments, "Banners & Graphics"},
    PictureRow{Compared::extensionIs, cameraExtensions, photosCategory},
    PictureRow{Compared::nameContains, photoFragments, photosCategory},
    PictureRow{Compared::extensionIs, vectorExtensions, "Vectors & Icons"},
    PictureRow{Compared::extensionIs, animationExtensions, "GIFs & Animations"},
};

constexpr std::string_view imageFragments[] = {"image", "photo"};
constexpr std::string_view videoFragments[] = {"video", "movie"};
constexpr std::string_view audioFragments[] = {"audio", "music"};
struct MediaFolderRow {
  Words fragments;
  std::string_view category;
};
constexpr std::array mediaFolderRows{
    MediaFolderRow{imageFragments, "Images"},
    MediaFolderRow{videoFragments, "Videos"},
    MediaFolderRow{audioFragments, "Audio"},
};

bool isOneOf(std::string_view text, Words words) noexcept {
  return std::find(words.begin(), words.end(), text) != words.end();
}

bool containsAny(std::string_view text, Words fragments) noexcept {
  return std::any_of(fragments.begin(), fragments.end(),
                     [&](auto fragment) { return text.find(fragment) != std::string_view::npos; });
}

std::string extensionOf(std::string_view name) {
  return lowercased(splitName(name).extension);
}

std::string byType(const CategoryChooser::Item& item) {
  if (item.kind == ItemKind::folder) return std::string(foldersCategory);
  const auto extension = splitName(item.name).extension;
  if (extension.empty()) return std::string(noExtensionCategory);
  const auto upper = uppercased(extension);
  return std::string(shortenedToBytes(upper, maxNameBytes - filesEnding.size())).append(filesEnding);
}

std::string_view inPicturesFolder(const CategoryChooser::Item& item) {
  if (item.kind == ItemKind::folder) return foldersCategory;
  const auto name = lowercased(item.name);
  const auto extension = extensionOf(item.name);
  for (const auto& row : pictureRows) {
    const bool fits =
        row.compared == Compared::nameContains ? containsAny(name, row.texts) : isOneOf(extension, row.texts);
    if (fits) return row.category;
  }
  return photosCategory;
}

std::string_view inMediaFolder(const CategoryChooser::Item& item) {
  if (item.kind == ItemKind::folder) {
    const auto name = lowercased(item.name);
    for (const auto& row : mediaFolderRows) {
      if (containsAny(name, row.fragments)) return row.category;
    }
    return foldersCategory;
  }
  const auto extension = extensionOf(item.name);
  if (isImageExtension(extension)) return nameSaysScreenshot(item.name) ? screenshotsCategory : "Images";
  if (isVideoExtension(extension)) return "Videos";
  if (isAudioExtension(extension)) return "Audio";
  return otherCategory;
}

std::string withoutDocuments(std::string category) {
  for (auto at = category.find(documentsPrefix); at != std::string::npos; at = category.find(documentsPrefix)) {
    category.erase(at, documentsPrefix.size());
  }
  return category;
}

// Days by the local calendar; only told apart, never counted.
std::int64_t localDay(Date date) {
  const auto seconds = static_cast<std::time_t>(std::floor(unixSeconds(date)));
  std::tm local{};
  ::localtime_r(&seconds, &local);
  return (static_cast<std::int64_t>(local.tm_year) * 12 + local.tm_mon) * 31 + local.tm_mday - 1;
}

}  // namespace

CategoryChooser::CategoryChooser(const FileUrl& targetFolder, OrganizationStrategy strategy,
                                 CategoryPreferencesStore::Categories learned, const SystemProfile& profile)
    : m_strategy(strategy), m_targetKind(kindOf(targetFolder)), m_learned(std::move(learned)), m_profile(profile) {}

CategoryChooser::TargetKind CategoryChooser::kindOf(const FileUrl& folder) {
  const auto name = lowercased(folder.lastPathComponent());
  if (nameHasWord(name, picturesWords)) return TargetKind::pictures;
  if (name == "media") return TargetKind::media;
  if (isOneOf(name, documentsNames)) return TargetKind::documents;
  if (isOneOf(name, developmentNames)) return TargetKind::development;
  return TargetKind::other;
}

bool CategoryChooser::isDocumentsFolder(const FileUrl& folder) {
  return kindOf(folder) == TargetKind::documents;
}

bool CategoryChooser::sortsDocuments(const FileUrl& folder) {
  return isDocumentsFolder(folder) || kindOf(folder) == TargetKind::other;
}

std::string CategoryChooser::categoryOf(const Item& item) const {
  switch (m_strategy) {
    case OrganizationStrategy::byType:
      return byType(item);
    case OrganizationStrategy::byDate:
      return byDate(item);
    case OrganizationStrategy::byCategory:
      break;
  }
  return byKindOfTarget(item);
}

std::string CategoryChooser::byDate(const Item& item) const {
  const auto& time = item.modified ? item.modified : item.created;
  const auto date = time ? time->date() : ReferenceClock::now();
  const auto day = localDay(date);
  const std::lock_guard lock(m_mutex);
  auto found = m_monthOfDay.find(day);
  if (found == m_monthOfDay.end()) found = m_monthOfDay.emplace(day, formatDate(date, monthPattern)).first;
  return found->second;
}

std::string CategoryChooser::byKindOfTarget(const Item& item) const {
  switch (m_targetKind) {
    case TargetKind::pictures:
      return std::string(inPicturesFolder(item));
    case TargetKind::media:
      return std::string(mediaKind(item));
    case TargetKind::documents:
      return withoutDocuments(ordinary(item));
    case TargetKind::development:
      return item.kind == ItemKind::folder ? "Projects" : "Source Code";
    case TargetKind::other:
      break;
  }
  return ordinary(item);
}

std::string CategoryChooser::ordinary(const Item& item) const {
  if (item.kind == ItemKind::folder) return std::string(defaultCategoryNameForFolder(item.name, item.url));
  const auto extension = extensionOf(item.name);
  const auto learned = m_learned.find(extension);
  return learned != m_learned.end() ? learned->second : std::string(categoryOfFile(extension, item.name));
}

std::string_view CategoryChooser::mediaKind(const Item& item) const {
  const auto kind = inMediaFolder(item);
  if (kind != otherCategory) return kind;
  auto category = categoryOfFile(extensionOf(item.name), item.name);
  if (!category.starts_with(mediaPrefix)) return kind;
  category.remove_prefix(mediaPrefix.size());
  return category;
}

std::string_view CategoryChooser::categoryOfFile(std::string_view extension, std::string_view name) const {
  const auto given = defaultCategoryNameForExtension(extension, name);
  if (given != otherCategory) return given;
  const auto kinds = m_profile.fileKinds();
  const auto found = std::ranges::find(kinds, extension, &SystemProfile::FileKind::extension);
  return found != kinds.end() ? found->category : given;
}

}  // namespace orvane

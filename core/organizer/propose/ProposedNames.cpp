#include "core/organizer/propose/ProposedNames.h"

#include "core/base/files/DirectoryReader.h"
#include "core/base/files/FreeName.h"

#include <fcntl.h>

#include <algorithm>

namespace orvane {

bool ProposedNames::add(Names& names, std::string_view name) {
  if (names.contains(name)) return false;
  auto* copy = static_cast<char*>(m_memory.allocate(name.size(), 1));
  std::copy(name.begin(), name.end(), copy);
  return names.insert({copy, name.size()}).second;
}

ProposedNames::Folder& ProposedNames::listed(const FileUrl& folder) {
  const auto [found, isNew] = m_folders.try_emplace(folder, &m_memory);
  if (isNew) {
    auto reader = DirectoryReader::open(AT_FDCWD, folder.path().c_str(), DirectoryReader::Links::follow);
    while (reader) {
      const auto entry = reader->next();
      if (!entry) break;
      add(found->second.names, entry->name);
    }
  }
  return found->second;
}

FileUrl ProposedNames::take(const FileUrl& folder, std::string_view name) {
  auto& listing = listed(folder);
  // Nothing can collide then, so nothing has to be remembered.
  if (m_sources == Sources::oneFolder && listing.names.empty()) return folder.appendingPathComponent(name);
  if (add(listing.names, name)) return folder.appendingPathComponent(name);
  auto& number = listing.lastNumbers[std::string(name)];
  while (true) {
    const auto numbered = numberedName(name, ++number, NumberingStyle::plain);
    if (add(listing.names, numbered)) return folder.appendingPathComponent(numbered);
  }
}

void ProposedNames::note(const FileUrl& place) {
  add(listed(place.deletingLastPathComponent()).names, place.lastPathComponent());
}

}  // namespace orvane

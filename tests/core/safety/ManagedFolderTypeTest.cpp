#include "core/safety/records/ManagedFolderType.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(ManagedFolderType, liesBelowTheHomeFolder) {
  EXPECT_EQ(defaultURL(ManagedFolderType::caches, "/home/u").path(), "/home/u/Library/Caches");
  EXPECT_EQ(defaultURL(ManagedFolderType::pictures, "/home/u").path(), "/home/u/Pictures");
  EXPECT_EQ(title(ManagedFolderType::pictures), "Pictures & Screenshots");
}

TEST(ManagedFolderType, isReadBackFromItsRawValue) {
  for (const auto type : allManagedFolderTypes) EXPECT_EQ(managedFolderTypeFromRawValue(rawValue(type)), type);
  EXPECT_FALSE(managedFolderTypeFromRawValue("Downloads"));
}

}  // namespace
}  // namespace orvane

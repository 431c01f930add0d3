#pragma once

#include "core/base/text/Json.h"
#include "tests/support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Several parts of one thing, asked for in one line.
namespace orvane::test {

// Of paths below a tree: the first are there, and the others are not.
[[nodiscard]] inline testing::AssertionResult holds(const TemporaryTree& tree, const std::vector<std::string>& there,
                                                    const std::vector<std::string>& gone = {}) {
  for (const auto& path : there) {
    if (!exists(tree.path(path))) return testing::AssertionFailure() << path << " is not there";
  }
  for (const auto& path : gone) {
    if (exists(tree.path(path))) return testing::AssertionFailure() << path << " is there";
  }
  return testing::AssertionSuccess();
}

// An object has these keys with these values, and maybe others.
[[nodiscard]] inline testing::AssertionResult tells(const Json& object, const Json& part) {
  auto merged = object;
  merged.merge_patch(part);
  if (merged == object) return testing::AssertionSuccess();
  return testing::AssertionFailure() << object.dump(1) << "\nwas to tell " << part.dump();
}

}  // namespace orvane::test

#pragma once

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

// Nearly every test uses these: the system's calls, the matchers by their plain names, tables of cases, errors' texts.
namespace orvane::test {

namespace fs = std::filesystem;

using testing::AllOf;
using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using testing::Range;
using testing::SizeIs;
using testing::StartsWith;
using testing::UnorderedElementsAre;
using testing::Values;

// One case a row: the columns as a loop names them.
template <typename... Columns>
using Rows = std::vector<std::tuple<Columns...>>;

// The words of a text, as white space parts them.
[[nodiscard]] inline std::vector<std::string> words(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

// Of a stop that was asked for.
[[nodiscard]] std::stop_token stopped();

// The error's text; fails the test where none is thrown.
template <typename Error, typename Call>
[[nodiscard]] std::string messageOf(Call call) {
  try {
    static_cast<void>(call());
  } catch (const Error& error) {
    return error.what();
  }
  ADD_FAILURE() << "nothing was thrown";
  return {};
}

// The names of an object's members, in their order.
[[nodiscard]] std::vector<std::string> keysOf(const auto& json) {
  std::vector<std::string> keys;
  for (const auto& [key, value] : json.items()) keys.push_back(key);
  return keys;
}

}  // namespace orvane::test
